#include "batch/DataConversion.h"

#include <array>
#include <filesystem>
#include <stdexcept>

#include "base/AtomicFile.h"
#include "base/Numbers.h"
#include "formats/GenotypeWorkbooks.h"
#include "population/FileErrors.h"
#include "population/GenalexTable.h"
#include "population/GenepopText.h"
#include "population/StructureText.h"
#include "population/TidyGenotypes.h"

namespace tavrelle {

namespace {

struct NamedTarget {
    const char* name;
    ConvertTarget target;
    const char* title;
};

const std::array<NamedTarget, 8> kTargets{{
    {"genepop", ConvertTarget::Genepop, "Genepop file"},
    {"xlsx", ConvertTarget::Xlsx, "Excel workbook"},
    {"xls", ConvertTarget::Xls, "Excel 97-2003 workbook"},
    {"genalex", ConvertTarget::GenalexCsv, "GenAlEx CSV file"},
    {"genalex-xlsx", ConvertTarget::GenalexXlsx, "GenAlEx Excel workbook"},
    {"genalex-xls", ConvertTarget::GenalexXls, "GenAlEx Excel 97-2003 workbook"},
    {"tidy", ConvertTarget::Tidy, "tidy CSV table"},
    {"structure", ConvertTarget::Structure, "STRUCTURE file"},
}};

const NamedTarget& Named(ConvertTarget target) {
    for (const NamedTarget& named : kTargets)
        if (named.target == target) return named;
    return kTargets[0];
}

}  // namespace

ConvertTarget ConvertTargetOf(const BatchOptions& options) {
    if (options.convertTo) {
        for (const NamedTarget& named : kTargets)
            if (*options.convertTo == named.name) return named.target;
        throw std::invalid_argument("--to: choose " + ConvertTargetNames() + " (got '" +
                                    *options.convertTo + "').");
    }
    const std::string upper = UpperCase(options.convertOutput);
    if (upper.ends_with(".XLSX")) return ConvertTarget::Xlsx;
    if (upper.ends_with("XLS")) return ConvertTarget::Xls;
    if (upper.ends_with(".TIDY.CSV")) return ConvertTarget::Tidy;
    if (upper.ends_with(".CSV")) return ConvertTarget::GenalexCsv;
    if (upper.ends_with(".STR")) return ConvertTarget::Structure;
    return ConvertTarget::Genepop;
}

std::string ConvertTargetNames() {
    std::string names;
    for (const NamedTarget& named : kTargets)
        names += (names.empty() ? "" : ", ") + std::string(named.name);
    return names;
}

std::string RefusalText(const GenotypeRead& read) {
    std::string text = read.ProblemText();
    if (!text.empty()) text.pop_back();
    if (read.problemCount > 1) text = std::to_string(read.problemCount) + " problems:\n" + text;
    return text;
}

std::string WriteConversion(const GenotypeData& data, const BatchOptions& options) {
    const std::string& output = options.convertOutput;
    const ConvertTarget target = ConvertTargetOf(options);
    GenotypeRead refusal;
    refusal.file = output;
    std::string bytes;
    switch (target) {
        case ConvertTarget::Genepop: {
            // A file without a title (a workbook's data) is titled after the output, as the
            // desktop's Save As titles it.
            GenotypeData titled = data;
            if (titled.title.empty())
                titled.title =
                    "Title line:  \"" + std::filesystem::path(output).filename().string() + "\"";
            bytes = GenepopText(titled, refusal);
            break;
        }
        case ConvertTarget::Xlsx:
            bytes = TavrelleWorkbookBytes(data, DataFormat::Xlsx);
            break;
        case ConvertTarget::Xls:
            bytes = TavrelleWorkbookBytes(data, DataFormat::Xls);
            break;
        case ConvertTarget::GenalexCsv:
            bytes = GenalexCsv(data);
            break;
        case ConvertTarget::GenalexXlsx:
            bytes = GenalexWorkbookBytes(data, DataFormat::Xlsx);
            break;
        case ConvertTarget::GenalexXls:
            bytes = GenalexWorkbookBytes(data, DataFormat::Xls);
            break;
        case ConvertTarget::Tidy:
            bytes = TidyCsv(data);
            break;
        case ConvertTarget::Structure:
            bytes = StructureText(data, refusal);
            break;
    }
    if (!refusal.Ok())
        throw std::runtime_error("Could not write " + output + " as a " + Named(target).title +
                                 ": " + RefusalText(refusal));
    if (const int failure = WriteFileAtomically(output, bytes); failure != 0) {
        // Worded as the desktop's save tells it.
        RecordingPrompter prompter;
        ReportSaveFailure(FileError(failure), prompter);
        std::string message = "Could not write " + output + ":";
        for (const Message& m : prompter.messages)
            for (char c : "\n" + m.text)
                if (c != '\r') message += c;
        throw std::runtime_error(message);
    }
    std::size_t samples = 0;
    for (const GenotypePopulation& population : data.populations)
        samples += population.samples.size();
    const std::size_t populations = data.populations.size();
    return "Wrote " + output + " (" + Named(target).title + "): " + std::to_string(populations) +
           " population" + (populations == 1 ? "" : "s") + ", " + std::to_string(samples) +
           " samples, " + std::to_string(data.loci.size()) + " loci.\n";
}

}  // namespace tavrelle
