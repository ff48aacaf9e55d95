#include "batch/BatchRun.h"

#include <stdexcept>

#include "analysis/ClockSeed.h"
#include "base/Numbers.h"
#include "nulls/StudyRun.h"
#include "population/ExcelTexts.h"
#include "population/ExcelWorkbookWriter.h"
#include "population/FileKind.h"
#include "population/GenepopWriter.h"
#include "population/InputDataSource.h"

namespace tavrelle {

namespace {

const char* const kGenepopRefusal =
    "The requested Genepop file is not in the required format.\nPlease ensure that the data in "
    "the Genepop file are in the format shown below with a three-digit size per allele (six "
    "digits per locus).";

// Records what the load shows, and answers the all-numeric names question as the options say;
// every other box gets the answer that lets work go on without repeating anything.
class LoadPrompter : public RecordingPrompter {
public:
    explicit LoadPrompter(bool acceptNumericNames) : acceptNumericNames_(acceptNumericNames) {}
    MessageAnswer Show(const Message& message) override {
        MessageAnswer answer = RecordingPrompter::Show(message);
        if (message.caption == kNumericNamesCaption && acceptNumericNames_)
            return MessageAnswer::Ok;
        return answer;
    }

private:
    bool acceptNumericNames_;
};

std::string OneLine(std::string message) {
    for (std::size_t at; (at = message.find("\r\n")) != std::string::npos;)
        message.replace(at, 2, "\n");
    for (char& c : message)
        if (c == '\r') c = ' ';
    return message;
}

std::string LoadFailure(const std::string& file, const RecordingPrompter& prompter) {
    std::string message = "Could not load " + file + ":";
    bool numericNames = false;
    for (const Message& m : prompter.messages) {
        message += "\n" + m.text;
        numericNames = numericNames || m.caption == kNumericNamesCaption;
    }
    for (ExampleScreen example : prompter.examples) {
        if (example == ExampleScreen::Genepop) {
            message += std::string("\n") + kGenepopRefusal;
        } else {
            message +=
                "\n" + std::string(kExcelExampleLabel1) + "\n" + std::string(kExcelExampleLabel2);
        }
    }
    if (numericNames) message += "\n(--accept-numeric-names loads such a sheet as it stands.)";
    return OneLine(message);
}

// The store of a data file, loaded as the open command loads it: the format by the name's
// ending, a workbook from the sheet named. A file that does not load throws std::runtime_error
// with the message to print.
struct LoadedStore {
    explicit LoadedStore(const BatchOptions& options)
        : kind(KindOfFile(options.file)), prompter(options.acceptNumericNames) {
        std::unique_ptr<ExcelSheetReader> reader = MakeExcelSheetReader(kind);
        StoreRequest request;
        request.fileLocation = options.file;
        request.isExcel = IsExcelKind(kind);
        request.excelSheetName = options.sheet;
        request.excelReader = reader.get();
        try {
            store = std::make_unique<InputDataSource>(request, prompter);
        } catch (const ProgramError& error) {
            // What the open command shows in its "Error Opening File" box.
            throw std::runtime_error("Could not load " + options.file + ":\n" +
                                     std::string(kOpenErrorCaption) + ": " + error.Description());
        }
        if (store->LocusNames().front().empty())
            throw std::runtime_error(LoadFailure(options.file, prompter));
    }

    FileKind kind;
    LoadPrompter prompter;
    std::unique_ptr<InputDataSource> store;
};

}  // namespace

BatchReport RunBatch(const BatchOptions& options, const std::filesystem::path& tableFolder) {
    LoadedStore loaded(options);
    InputDataSource& store = *loaded.store;

    std::vector<StudyPopulation> all = StudyPopulations(store);
    std::vector<StudyPopulation> chosen;
    if (options.populations.empty()) {
        chosen = std::move(all);
    } else {
        for (int number : options.populations) {
            if (number > static_cast<int>(all.size()))
                throw std::runtime_error(options.file + " has " + std::to_string(all.size()) +
                                         " population(s): there is no population " +
                                         std::to_string(number) + ".");
            chosen.push_back(all[static_cast<std::size_t>(number - 1)]);
        }
    }

    BatchReport report;
    report.file = options.file;
    report.title = store.TitleLine();
    report.clockSeed = !options.seed;
    report.seed = options.seed ? *options.seed : SeedFromClock();
    report.randomisations = options.randomisations;
    report.confidenceCode = options.confidenceCode;
    try {
        // The size as the check leaves it.
        report.maxAlleleSize =
            std::clamp(TextToInt16(options.maxAlleleSize), Int16{50}, Int16{700});
    } catch (const ProgramError&) {
        report.maxAlleleSize = 0;
    }

    StudySettings settings;
    settings.seed = report.seed;
    settings.randomisations = options.randomisations;
    settings.confidenceCode = options.confidenceCode;
    settings.repeatForAll = options.repeatForAll;
    settings.repeatByLocus = options.repeatByLocus;
    settings.maxAlleleSize = options.maxAlleleSize;
    settings.onSuspect = options.onSuspect;
    settings.tableFolder = tableFolder;
    settings.isExcel = IsExcelKind(loaded.kind);
    settings.threads = options.threads;
    settings.bootstrap = options.bootstrap;
    RunStudy(chosen, settings, [&](PopulationResult&& population) {
        if (population.action == "stop" && population.error &&
            population.error->starts_with("Suspect values"))
            population.error->insert(population.error->size() - 1, " (--on-suspect stop)");
        report.populations.push_back(std::move(population));
    });
    return report;
}

std::string ConvertDataFile(const BatchOptions& options) {
    LoadedStore loaded(options);
    InputDataSource& store = *loaded.store;
    const std::string& output = options.convertOutput;
    const FileKind outputKind = KindOfFile(output);
    const std::string title = std::filesystem::path(output).filename().string();

    // Populations and samples as the writers will see them, after the current population is
    // saved back.
    store.SavePopulation();
    int populations = 1;
    for (std::int64_t row = 2; row < store.rsAllData.RecordCount(); ++row)
        if (UpperCase(TrimBlanks(store.rsAllData.Cell(row, 1))) == "POP") ++populations;

    LoadPrompter prompter(false);
    SaveOutcome outcome =
        IsExcelKind(outputKind)
            ? SaveExcelFile(store, output, title, false, prompter).outcome
            : SaveGenepopFile(store, output, title, false, IsExcelKind(loaded.kind), prompter);
    if (outcome != SaveOutcome::Saved) {
        std::string message = "Could not write " + output + ":";
        for (const Message& m : prompter.messages)
            message += "\n" + m.text;
        throw std::runtime_error(OneLine(message));
    }

    const char* format = outputKind == FileKind::Xlsx  ? "Excel workbook"
                         : outputKind == FileKind::Xls ? "Excel 97-2003 workbook"
                                                       : "Genepop file";
    std::string summary = "Wrote " + output + " (" + format + "): " + std::to_string(populations) +
                          " population" + (populations == 1 ? "" : "s") + ", " +
                          std::to_string(store.LocusNames().size()) + " loci.\n";
    if (IsExcelKind(loaded.kind) && !IsExcelKind(outputKind) && populations > 1)
        summary +=
            "Note: as the Genepop writer does with workbook data, the first sample of each "
            "population after the first was not written.\n";
    return summary;
}

}  // namespace tavrelle
