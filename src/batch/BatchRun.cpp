#include "batch/BatchRun.h"

#include <atomic>
#include <stdexcept>
#include <thread>

#include "analysis/ClockSeed.h"
#include "base/Numbers.h"
#include "checking/PopulationCheck.h"
#include "checking/SuspectValues.h"
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

std::string LoadFailure(const std::string& file, const RecordingPrompter& prompter) {
    std::string message = "Could not load " + file + ":";
    for (const Message& m : prompter.messages)
        message += "\n" + m.text;
    if (!prompter.examples.empty()) message += std::string("\n") + kGenepopRefusal;
    for (char& c : message)
        if (c == '\r') c = ' ';
    return message;
}

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
                                   bool threaded) {
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
    RecordingPrompter loadPrompter;
    StoreRequest request;
    request.fileLocation = options.file;
    InputDataSource store(request, loadPrompter);
    if (store.LocusNames().front().empty())
        throw std::runtime_error(LoadFailure(options.file, loadPrompter));

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
                AnalysePopulation(chosen[i], options, report.seed, tableFolder, threaded);
    };
    std::vector<std::thread> pool;
    for (std::size_t w = 1; w < workers; ++w)
        pool.emplace_back(work);
    work();
    for (std::thread& t : pool)
        t.join();
    return report;
}

}  // namespace tavrelle
