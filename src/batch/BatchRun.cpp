#include "batch/BatchRun.h"

#include <stdexcept>

#include "analysis/ClockSeed.h"
#include "analysis/StatisticalTables.h"
#include "base/Numbers.h"
#include "batch/BatchInput.h"
#include "batch/DataConversion.h"
#include "batch/LocusMotifs.h"
#include "batch/ReportOutput.h"
#include "checking/AlleleCoding.h"
#include "formats/SheetReaders.h"
#include "population/ExcelTexts.h"
#include "population/FileKind.h"
#include "population/GenotypeTables.h"
#include "population/InputDataSource.h"
#include "report/ReportStream.h"
#include "run/StudyRun.h"

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
            // Appended piece by piece: a literal before a temporary string sets off GCC 12's
            // -Wrestrict false positive in Release builds.
            (((message += '\n') += kExcelExampleLabel1) += '\n') += kExcelExampleLabel2;
        }
    }
    if (numericNames) message += "\n(--accept-numeric-names loads such a sheet as it stands.)";
    return OneLine(message);
}

// The store of a data file, loaded as the open command loads it: the format by the name's
// ending, a workbook from the sheet named. A file that does not load throws std::runtime_error
// with the message to print.
struct LoadedStore {
    LoadedStore(const BatchOptions& options, const BatchInput& input)
        : kind(input.kind), prompter(options.acceptNumericNames) {
        std::unique_ptr<ExcelSheetReader> reader = MakeExcelSheetReader(kind);
        StoreRequest request;
        request.fileLocation = input.loadPath;
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
        if (store->LocusNames().front().empty() && store->PopulationOverSampleLimit() > 0)
            throw std::runtime_error(
                "Could not load " + options.file + ": population " +
                std::to_string(store->PopulationOverSampleLimit()) + " has more than " +
                std::to_string(kLargestSampleNumber - 1) +
                " samples, the most a population of a Genepop file may have. Divide it into "
                "smaller populations.");
        if (store->LocusNames().front().empty())
            throw std::runtime_error(LoadFailure(options.file, prompter));
    }

    FileKind kind;
    LoadPrompter prompter;
    std::unique_ptr<InputDataSource> store;
};

void CheckPopulationNumbers(const BatchOptions& options, int count) {
    for (int number : options.populations)
        if (number > count)
            throw BatchUsageError(
                "--population: " + options.file + " has " + std::to_string(count) +
                " population(s): there is no population " + std::to_string(number) + ".");
}

std::vector<StudyPopulation> ChosenPopulations(InputDataSource& store,
                                               const BatchOptions& options) {
    if (options.populations.empty()) return StudyPopulations(store);
    int count = 0;
    std::vector<StudyPopulation> chosen = StudyPopulations(store, options.populations, count);
    CheckPopulationNumbers(options, count);
    return chosen;
}

// The reports the options ask for, each with where it goes; the text report takes standard
// output when no other report does.
struct Reports {
    struct Entry {
        std::unique_ptr<ReportStream> stream;
        ReportOutput output;
    };
    std::vector<Entry> entries;

    Reports(const BatchOptions& options, const StudySettings& settings) {
        if (options.jsonFile)
            entries.push_back({MakeJsonReport(), ReportOutput(*options.jsonFile)});
        if (options.csvFile) entries.push_back({MakeCsvReport(), ReportOutput(*options.csvFile)});
        if (options.reportFile)
            entries.push_back({MakeHtmlReport(settings), ReportOutput(*options.reportFile)});
        if (options.jsonFile != "-" && options.csvFile != "-" && options.reportFile != "-")
            entries.push_back({MakeTextReport(), ReportOutput("-")});
    }
    template <typename Piece>
    void Write(Piece piece) {
        for (Entry& entry : entries)
            entry.output.Write(piece(*entry.stream));
    }
    void Close() {
        for (Entry& entry : entries)
            entry.output.Close();
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
    const std::map<std::string, Int16> table = options.repeatsFile
                                                   ? ReadRepeatTable(*options.repeatsFile)
                                                   : std::map<std::string, Int16>{};
    BatchInput input(options, false);
    for (const std::string& note : input.notes)
        notes << "tavrelle-batch: " << note << "\n";
    std::optional<LoadedStore> loaded;
    std::vector<std::string> loci;
    std::string title;
    std::vector<StudyPopulation> chosen;
    std::vector<std::string> populationNames;  // as formats that name populations give them
    StudySettings settings;
    if (input.storeLoad) {
        loaded.emplace(options, input);
        InputDataSource& store = *loaded->store;
        loci = store.LocusNames();
        title = store.TitleLine();
        settings.repeatByLocus =
            MotifsOfLoci(loci, options.repeatByLocus, table, options.repeatForAll, notes);
        chosen = ChosenPopulations(store, options);
        // Each population now has its own table; the store's copy of the whole file is not
        // needed.
        store.rsAllData = Table();
        store.rsAlleleData = Table();
    } else {
        const GenotypeData& data = input.read->data;
        title = data.title;
        settings.repeatByLocus =
            MotifsOfLoci(data.loci, options.repeatByLocus, table, options.repeatForAll, notes);
        int count = 0;
        chosen = StudyPopulationsOf(data, options.populations, count);
        CheckPopulationNumbers(options, count);
        for (const GenotypePopulation& population : data.populations)
            populationNames.push_back(population.name);
        // Each population now has its own table.
        input.read.reset();
    }
    std::vector<const Table*> tables;
    for (const StudyPopulation& population : chosen)
        tables.push_back(&population.table);
    if (AllelesLookLikeIndices(tables))
        notes << "tavrelle-batch: " << (options.file == "-" ? "standard input" : options.file)
              << ": " << kIndexLikeAllelesText << "\n";

    BatchHeader header;
    header.file = options.file == "-" ? "standard input" : options.file;
    header.title = title;
    header.clockSeed = !options.seed;
    header.seed = options.seed ? *options.seed : SeedFromClock();
    header.randomisations = options.randomisations;
    header.confidenceCode = options.confidenceCode;
    header.maxAlleleSize = static_cast<Int16>(std::stoi(options.maxAlleleSize));

    settings.seed = header.seed;
    settings.randomisations = options.randomisations;
    settings.confidenceCode = options.confidenceCode;
    settings.repeatForAll = options.repeatForAll;
    settings.maxAlleleSize = options.maxAlleleSize;
    settings.onSuspect = options.onSuspect;
    settings.tableFolder = tableFolder;
    settings.isExcel = input.storeLoad && IsExcelKind(input.kind);
    settings.threads = options.threads;
    settings.bootstrap = options.bootstrap;

    Reports reports(options, settings);
    reports.Write([&](ReportStream& stream) { return stream.Begin(header); });
    BatchCounts counts;
    RunStudy(chosen, settings, [&](PopulationResult&& population) {
        // The engine's message leaves out what stopped the run; here an option did.
        if (population.stopReason == StopReason::SuspectValues && population.action == "stop")
            population.error->insert(population.error->size() - 1, " (--on-suspect stop)");
        // Formats that name their populations give the name the report shows.
        const auto index = static_cast<std::size_t>(population.number - 1);
        if (index < populationNames.size() && !populationNames[index].empty())
            population.name = populationNames[index];
        Note(notes, population);
        ++(population.Analysed() ? counts.analysed : counts.stopped);
        reports.Write([&](ReportStream& stream) { return stream.Population(population); });
    });
    reports.Write([&](ReportStream& stream) { return stream.End(); });
    reports.Close();
    return counts;
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
