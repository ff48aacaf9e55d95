#include "batch/BatchRun.h"

#include <stdexcept>

#include "analysis/ClockSeed.h"
#include "analysis/StatisticalTables.h"
#include "base/Numbers.h"
#include "batch/BatchInput.h"
#include "batch/DataConversion.h"
#include "batch/ReportOutput.h"
#include "checking/AlleleCoding.h"
#include "formats/SheetReaders.h"
#include "population/ExcelTexts.h"
#include "population/FileKind.h"
#include "population/GenotypeCells.h"
#include "population/GenotypeTables.h"
#include "population/InputDataSource.h"
#include "report/ReportSink.h"
#include "run/LocusMotifs.h"
#include "run/StudyDriver.h"

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

// The located line first, then what the desktop would have shown, line by line: the questions
// the load asked, its boxes and its example screen.
std::string LoadFailure(const std::string& file, const DataFileError& error,
                        const std::vector<Message>& questions) {
    std::string message = "Could not load " + file + ": " +
                          (error.where.empty() ? "" : error.where + ": ") + "expected " +
                          error.expected;
    bool numericNames = false;
    for (const Message& m : questions) {
        message += "\n" + m.text;
        numericNames = numericNames || m.caption == kNumericNamesCaption;
    }
    for (const Message& m : error.messages) {
        message += "\n";
        if (m.caption == kOpenErrorCaption) (message += kOpenErrorCaption) += ": ";
        message += m.text;
    }
    if (error.example == ExampleScreen::Genepop) {
        message += std::string("\n") + kGenepopRefusal;
    } else if (error.example == ExampleScreen::Excel) {
        // Appended piece by piece: a literal before a temporary string sets off GCC 12's
        // -Wrestrict false positive in Release builds.
        (((message += '\n') += kExcelExampleLabel1) += '\n') += kExcelExampleLabel2;
    }
    if (numericNames) message += "\n(--accept-numeric-names loads such a sheet as it stands.)";
    return OneLine(message);
}

// The store of a data file, opened as the open command opens it: the format by the name's
// ending, a workbook from the sheet named. A file that does not load throws std::runtime_error
// with the message to print.
struct LoadedStore {
    // `input` says how: the store's own load for three-digit Genepop and Tavrelle's workbooks,
    // or the data another format's reader has read.
    LoadedStore(const BatchOptions& options, BatchInput& input)
        : kind(input.kind), prompter(options.acceptNumericNames) {
        if (!input.storeLoad) {
            store = std::make_unique<InputDataSource>(GenotypeCells(input.read->data), prompter);
            return;
        }
        OpenedDataFile opened = OpenDataFile(input.loadPath, kind, options.sheet, prompter);
        if (opened.error)
            throw std::runtime_error(LoadFailure(options.file, *opened.error, prompter.messages));
        store = std::move(opened.store);
    }

    FileKind kind;
    LoadPrompter prompter;
    std::unique_ptr<InputDataSource> store;
};

// The reports the options ask for, each with where it goes; the text report takes standard
// output when no other report does.
struct Reports : StudySink {
    const BatchOptions& options;
    std::ostream& notes;
    std::vector<ReportOutput> outputs;
    ReportSink sink;

    Reports(const BatchOptions& batchOptions, std::ostream& notesTo)
        : options(batchOptions), notes(notesTo) {}
    // The outputs open only once the study fits the file.
    void Begin(const StudyHeader& header) override {
        outputs.reserve(4);
        auto add = [&](std::unique_ptr<ReportStream> stream, const std::string& path) {
            ReportOutput& output = outputs.emplace_back(path);
            sink.Add(std::move(stream),
                     [&output](const std::string& piece) { output.Write(piece); });
        };
        if (options.jsonFile) add(MakeJsonReport(), *options.jsonFile);
        if (options.csvFile) add(MakeCsvReport(), *options.csvFile);
        if (options.reportFile) add(MakeHtmlReport(), *options.reportFile);
        if (options.jsonFile != "-" && options.csvFile != "-" && options.reportFile != "-")
            add(MakeTextReport(), "-");
        sink.Begin(header);
    }
    void Population(const PopulationResult& population) override;
    void End() override {
        sink.End();
        for (ReportOutput& output : outputs)
            output.Close();
    }
};

void Note(std::ostream& notes, const PopulationResult& p) {
    const std::string who =
        "tavrelle-batch: population " + std::to_string(p.number) + " (" + p.name + ")";
    if (!p.halfMissing.empty())
        notes << who << ": " << p.halfMissing.size()
              << " genotype(s) with one allele missing, left out of the analysis (the JSON "
                 "\"check\" lists them in \"half_missing\").\n";
    const std::size_t suspects = p.SuspectCount();
    if (suspects > 0 && p.action == "proceed")
        notes << who << ": " << suspects
              << " suspect value(s) besides missing alleles; analysed with the values as they "
                 "stand (the JSON \"check\" lists them).\n";
    else if (suspects > 0 && p.action == "omit")
        notes << who << ": " << suspects
              << " suspect value(s) besides missing alleles were made missing (0) and the rest "
                 "analysed.\n";
    if (!p.Analysed()) {
        std::string reason;
        for (char c : *p.error)
            if (c != '\r') reason += c == '\n' ? ' ' : c;
        notes << who << " was not analysed"
              << (p.errorLocus.empty() ? "" : " (stopped at locus " + p.errorLocus + ")") << ": "
              << reason << "\n";
    }
}

void Reports::Population(const PopulationResult& population) {
    Note(notes, population);
    sink.Population(population);
}

}  // namespace

int ExitStatusOf(const BatchCounts& counts) {
    if (counts.stopped == 0) return 0;
    return counts.analysed > 0 ? 3 : 4;
}

void RequireTables(const std::filesystem::path& folder) {
    for (const char* name :
         {kChiSquareTableFile, kNormalCurveTableFile, kRankCorrelationTableFile}) {
        const std::filesystem::path path = folder / name;
        std::error_code error;
        if (!std::filesystem::is_regular_file(path, error))
            throw std::runtime_error("the program's table file " + path.string() +
                                     " is missing; reinstall Tavrelle or put the tables beside "
                                     "the program.");
    }
    try {
        LoadStatisticalTables(folder);
    } catch (const ProgramError& error) {
        throw std::runtime_error("the program's tables in " + folder.string() +
                                 " could not be read: " + error.Description());
    }
}

BatchCounts RunBatch(const BatchOptions& options, const std::filesystem::path& tableFolder,
                     std::ostream& notes) {
    RequireTables(tableFolder);
    const RepeatTable table =
        options.repeatsFile ? ReadRepeatTable(*options.repeatsFile) : RepeatTable{};
    BatchInput input(options, false);
    for (const std::string& note : input.notes)
        notes << "tavrelle-batch: " << note << "\n";
    StudyJob job;
    job.file = options.file == "-" ? "standard input" : options.file;
    job.fileSha256 = input.sha256;
    job.command = options.commandLine;
    if (!input.storeLoad) {
        // Formats that name their populations give the names the reports show.
        for (const GenotypePopulation& population : input.read->data.populations)
            job.populationNames.push_back(population.name);
    }
    LoadedStore loaded(options, input);
    input.read.reset();  // the store holds the data now

    job.settings = options.settings;
    if (job.settings.clockSeed) job.settings.seed = SeedFromClock();
    job.settings.tableFolder = tableFolder;
    job.settings.isExcel = input.storeLoad && IsExcelKind(loaded.kind);
    job.populations = options.populations;
    job.repeatByName = options.repeatByLocus;
    job.repeatTable = table;
    Reports reports(options, notes);
    const StudyCounts counts = RunStudyJob(*loaded.store, job, reports, notes);
    return {counts.analysed, counts.stopped};
}

std::string ConvertDataFile(const BatchOptions& options) {
    ConvertTargetOf(options);  // an unknown --to is refused before anything is read
    BatchInput input(options, true);
    std::string summary;
    for (const std::string& note : input.notes)
        summary += "Note: " + note + "\n";
    if (input.read) return summary + WriteConversion(input.read->data, options);
    // Tavrelle's own workbooks load through the store, which says why it refuses one.
    LoadedStore loaded(options, input);
    GenotypeRead read = GenotypeDataOfStore(*loaded.store, options.file);
    if (!read.Ok())
        throw std::runtime_error("Could not load " + options.file + ": " + RefusalText(read));
    return summary + WriteConversion(read.data, options);
}

}  // namespace tavrelle
