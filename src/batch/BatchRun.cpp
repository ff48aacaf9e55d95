#include "batch/BatchRun.h"

#include <atomic>
#include <stdexcept>
#include <thread>

#include "analysis/ClockSeed.h"
#include "base/Numbers.h"
#include "checking/PopulationCheck.h"
#include "checking/SuspectValues.h"
#include "population/ExcelTexts.h"
#include "population/ExcelWorkbookWriter.h"
#include "population/FileKind.h"
#include "population/GenepopWriter.h"
#include "population/InputDataSource.h"
#include "population/PopulationName.h"

namespace tavrelle {

namespace {

const char* const kGenepopRefusal =
    "The requested Genepop file is not in the required format.\nPlease ensure that the data in "
    "the Genepop file are in the format shown below with a three-digit size per allele (six "
    "digits per locus).";

struct LoadedPopulation {
    int number;
    Table table;
};

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

std::vector<SuspectEntry> Entries(const Table& table, const std::vector<CellPosition>& cells) {
    std::vector<SuspectEntry> entries;
    for (const CellPosition& cell : cells)
        entries.push_back({table.Cell(cell.row, cell.column), cell.row - 1, cell.column + 1});
    return entries;
}

std::vector<Int16> RepeatCodes(const BatchOptions& options, const Table& table) {
    std::vector<Int16> codes;
    for (int column = 2; column + 1 < table.ColumnCount(); column += 2) {
        auto named = options.repeatByLocus.find(table.Cell(1, column));
        codes.push_back(named != options.repeatByLocus.end() ? named->second
                                                             : options.repeatForAll.value_or(0));
    }
    return codes;
}

std::string RunTimeError(const ProgramError& error) {
    return "Run-time error '" + std::to_string(error.Number()) + "':\r\n\r\n" + error.Description();
}

// The Analyse command on one population: check, the choice about suspect values, the run.
PopulationReport AnalysePopulation(LoadedPopulation& population, const BatchOptions& options,
                                   std::int32_t seed, const std::filesystem::path& tableFolder,
                                   bool threaded, bool isExcel) {
    PopulationReport report;
    report.number = population.number;
    Table& table = population.table;
    report.name = ShowPopulationName(table);
    report.samples = table.RecordCount() - 2;
    RecordingPrompter prompter;
    try {
        const std::vector<Int16> repeatCodes = RepeatCodes(options, table);
        CheckFlags flags;
        flags.AnalyseInProgress = true;
        SuspectCells cells;
        CheckOutcome outcome =
            ValidatePopulation(table, repeatCodes, options.maxAlleleSize, flags, cells, prompter);
        report.nonInteger = Entries(table, cells.NonIntegerCells);
        report.unexpected = Entries(table, cells.UnexpectedCells);
        report.inconsistent = Entries(table, cells.InconsistentCells);
        if (!flags.CheckClean) {
            switch (options.onSuspect) {
                case SuspectPolicy::Stop:
                    report.action = "stop";
                    ApplyErrorDialogChoice(ErrorDialogChoice::Correct, table, cells, flags);
                    break;
                case SuspectPolicy::Omit:
                    report.action = "omit";
                    ApplyErrorDialogChoice(ErrorDialogChoice::Omit, table, cells, flags);
                    break;
                case SuspectPolicy::Proceed:
                    report.action = "proceed";
                    ApplyErrorDialogChoice(ErrorDialogChoice::Proceed, table, cells, flags);
                    break;
            }
        }
        if (flags.AbandonRun || !flags.CheckOk) {
            if (outcome.ending == CheckEnding::MotifMissing)
                report.error = "Please select a Repeat Motif for all Loci";
            else if (outcome.ending == CheckEnding::InsufficientData)
                report.error = "Insufficient data to perform analysis";
            else
                report.error =
                    "Suspect values were found and the population was not analysed "
                    "(--on-suspect stop).";
        } else {
            RunSettings settings;
            settings.seed = seed;
            settings.randomisations = options.randomisations;
            settings.confidenceCode = options.confidenceCode;
            settings.repeatCodes = repeatCodes;
            settings.tableFolder = tableFolder;
            settings.threaded = threaded;
            settings.isExcel = isExcel;
            RunHooks hooks;
            hooks.prompter = &prompter;
            report.analysis = std::make_unique<AlleleAnalysis>(table, settings, hooks);
            if (report.analysis->RunError()) {
                report.error = RunTimeError(*report.analysis->RunError());
                report.errorLocus = report.analysis->ErrorLocus();
            } else if (!report.analysis->StopMessage().empty())
                report.error = report.analysis->StopMessage();
        }
    } catch (const ProgramError& error) {
        report.error = RunTimeError(error);
    }
    report.messages = prompter.messages;
    return report;
}

}  // namespace

BatchReport RunBatch(const BatchOptions& options, const std::filesystem::path& tableFolder) {
    LoadedStore loaded(options);
    InputDataSource& store = *loaded.store;
    const bool isExcel = IsExcelKind(loaded.kind);

    std::vector<LoadedPopulation> all;
    all.push_back({1, store.rsAlleleData});
    while (store.IsAnotherPop()) {
        store.NextPopulation();
        all.push_back({store.CurrentPopulation(), store.rsAlleleData});
    }
    std::vector<LoadedPopulation> chosen;
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
    report.populations.resize(chosen.size());

    const std::size_t threads = options.threads > 0
                                    ? static_cast<std::size_t>(options.threads)
                                    : std::max(1U, std::thread::hardware_concurrency());
    const std::size_t workers = std::min(threads, chosen.size());
    // One population alone draws its random numbers on a second thread instead.
    const bool threaded = workers <= 1 && threads > 1;
    std::atomic<std::size_t> next{0};
    auto work = [&] {
        for (std::size_t i = next++; i < chosen.size(); i = next++)
            report.populations[i] =
                AnalysePopulation(chosen[i], options, report.seed, tableFolder, threaded, isExcel);
    };
    std::vector<std::thread> pool;
    for (std::size_t w = 1; w < workers; ++w)
        pool.emplace_back(work);
    work();
    for (std::thread& t : pool)
        t.join();
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
