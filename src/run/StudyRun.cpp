#include "run/StudyRun.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "base/CpuCount.h"
#include "base/Numbers.h"
#include "checking/PopulationCheck.h"
#include "checking/SuspectValues.h"
#include "population/InputDataSource.h"
#include "population/PopulationName.h"

namespace tavrelle {

namespace {

std::vector<SuspectEntry> Entries(const Table& table, const std::vector<CellPosition>& cells) {
    std::vector<SuspectEntry> entries;
    for (const CellPosition& cell : cells)
        entries.push_back({table.Cell(cell.row, cell.column), cell.row - 1, cell.column + 1});
    return entries;
}

std::vector<Int16> RepeatCodes(const RunSettings& settings, const Table& table) {
    std::vector<Int16> codes;
    for (int column = 2; column + 1 < table.ColumnCount(); column += 2) {
        auto named = settings.repeatByLocus.find(table.Cell(1, column));
        codes.push_back(named != settings.repeatByLocus.end() ? named->second
                                                              : settings.repeatForAll.value_or(0));
    }
    return codes;
}

std::string RunTimeError(const ProgramError& error) {
    return "Run-time error '" + std::to_string(error.Number()) + "':\r\n\r\n" +
           error.Description() + (error.Detail().empty() ? "" : "\r\n\r\n" + error.Detail());
}

ErrorDialogChoice ChoiceOf(SuspectPolicy policy) {
    switch (policy) {
        case SuspectPolicy::Stop:
            return ErrorDialogChoice::Correct;
        case SuspectPolicy::Omit:
            return ErrorDialogChoice::Omit;
        case SuspectPolicy::Proceed:
            break;
    }
    return ErrorDialogChoice::Proceed;
}

const char* ActionOf(SuspectPolicy policy) {
    switch (policy) {
        case SuspectPolicy::Stop:
            return "stop";
        case SuspectPolicy::Omit:
            return "omit";
        case SuspectPolicy::Proceed:
            break;
    }
    return "proceed";
}

// Results finished by the workers and not yet handed on, in file order.
class DeliveryQueue {
public:
    DeliveryQueue(std::size_t count, std::size_t window) : slots_(count), window_(window) {}

    // The next population to start, or nothing when all have started or the run is cancelled.
    // Waits while the workers are `window` populations ahead of delivery.
    std::optional<std::size_t> Take(const std::atomic<bool>* cancel) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return started_ < delivered_ + window_; });
        if (started_ == slots_.size() || (cancel && cancel->load())) {
            stopped_ = true;
            changed_.notify_all();
            return std::nullopt;
        }
        return started_++;
    }

    void Finish(std::size_t index, PopulationResult&& result, std::exception_ptr failure) {
        std::lock_guard lock(mutex_);
        slots_[index].result = std::move(result);
        slots_[index].failure = failure;
        slots_[index].done = true;
        changed_.notify_all();
    }

    // Hands every result on in order, until the last one or the first that never started.
    void DeliverAll(const std::function<void(PopulationResult&&)>& deliver) {
        for (std::size_t index = 0; index < slots_.size(); ++index) {
            Slot slot;
            {
                std::unique_lock lock(mutex_);
                changed_.wait(
                    lock, [&] { return slots_[index].done || (stopped_ && index >= started_); });
                if (!slots_[index].done) return;
                slot = std::move(slots_[index]);
                slots_[index] = Slot{};
                ++delivered_;
                changed_.notify_all();
            }
            if (slot.failure) std::rethrow_exception(slot.failure);
            deliver(std::move(slot.result));
        }
    }

    // After a failure on the calling thread: no new population starts.
    void Abandon() {
        std::lock_guard lock(mutex_);
        delivered_ = slots_.size();
        started_ = slots_.size();
        changed_.notify_all();
    }

private:
    struct Slot {
        bool done = false;
        PopulationResult result;
        std::exception_ptr failure;
    };
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Slot> slots_;
    std::size_t window_;
    std::size_t started_ = 0;
    std::size_t delivered_ = 0;
    bool stopped_ = false;
};

}  // namespace

namespace {

// Calls `visit` with each population's number, the store at that population, in file order.
template <typename Visit>
void EachPopulation(InputDataSource& store, Visit visit) {
    int number = 1;
    visit(number);
    while (store.IsAnotherPop()) {
        store.NextPopulation();
        visit(++number);
    }
}

}  // namespace

std::vector<StudyPopulation> StudyPopulations(InputDataSource& store) {
    std::vector<StudyPopulation> all;
    EachPopulation(store, [&](int) {
        all.push_back({store.CurrentPopulation(), store.rsAlleleData});
    });
    return all;
}

std::vector<StudyPopulation> StudyPopulations(InputDataSource& store,
                                              const std::vector<int>& numbers, int& count) {
    std::map<int, StudyPopulation> wanted;
    EachPopulation(store, [&](int number) {
        count = number;
        if (std::find(numbers.begin(), numbers.end(), number) != numbers.end())
            wanted.emplace(number, StudyPopulation{store.CurrentPopulation(), store.rsAlleleData});
    });
    std::vector<StudyPopulation> chosen;
    for (int number : numbers)
        if (const auto found = wanted.find(number); found != wanted.end())
            chosen.push_back(found->second);
    return chosen;
}

PopulationResult AnalyseStudyPopulation(StudyPopulation& population, const RunSettings& settings,
                                        bool threaded) {
    PopulationResult result;
    result.number = population.number;
    Table& table = population.table;
    result.name = ShowPopulationName(table);
    result.samples = table.RecordCount() - 2;
    result.halfMissing = HalfMissingGenotypes(table);
    result.indexLikeAlleles = AllelesLookLikeIndices({&table});
    RecordingPrompter prompter;
    // Sample rows are numbered in 16 bits: a larger population cannot be told about.
    if (result.samples > kMostSamples) {
        result.stopReason = StopReason::TooManySamples;
        result.error = "The population has " + std::to_string(result.samples) +
                       " samples; at most " + std::to_string(kMostSamples) +
                       " samples of a population can be analysed. Divide it into smaller groups.";
        return result;
    }
    SuspectCells cells;
    // What the check found, also when something after it failed.
    auto keepFindings = [&] {
        result.nonInteger = Entries(table, cells.NonIntegerCells);
        result.unexpected = Entries(table, cells.UnexpectedCells);
        result.inconsistent = Entries(table, cells.InconsistentCells);
    };
    try {
        const std::vector<Int16> repeatCodes = RepeatCodes(settings, table);
        CheckFlags flags;
        flags.AnalyseInProgress = true;
        CheckOutcome outcome = ValidatePopulation(table, repeatCodes, settings.maxAlleleSize, flags,
                                                  cells, prompter, CountWidth::Bits32);
        keepFindings();
        if (!flags.CheckClean) {
            result.action = ActionOf(settings.onSuspect);
            ApplyErrorDialogChoice(ChoiceOf(settings.onSuspect), table, cells, flags);
        }
        if (flags.AbandonRun || !flags.CheckOk) {
            if (outcome.ending == CheckEnding::MotifMissing) {
                result.stopReason = StopReason::MotifMissing;
                result.error = "Please select a Repeat Motif for all Loci";
            } else if (outcome.ending == CheckEnding::InsufficientData) {
                result.stopReason = StopReason::InsufficientData;
                result.error = "Insufficient data to perform analysis";
            } else {
                result.stopReason = StopReason::SuspectValues;
                result.error = "Suspect values were found and the population was not analysed.";
            }
        } else {
            // The study's settings as they came, with this population's motifs by column.
            RunSettings run = settings;
            run.repeatCodes = repeatCodes;
            run.threaded = threaded;
            run.counts = CountWidth::Bits32;
            RunHooks hooks;
            hooks.prompter = &prompter;
            result.analysis = std::make_unique<AlleleAnalysis>(table, run, hooks);
            if (result.analysis->RunError()) {
                result.stopReason = StopReason::RunError;
                result.error = RunTimeError(*result.analysis->RunError());
                result.errorLocus = result.analysis->ErrorLocus();
            } else if (!result.analysis->StopMessage().empty()) {
                result.stopReason = StopReason::RunStopped;
                result.error = result.analysis->StopMessage();
            } else {
                // A population alone may use every core; one of many, just its own.
                const unsigned cores = threaded ? static_cast<unsigned>(settings.threads) : 1U;
                result.likelihood = EstimateNullAllelesAndInbreeding(
                    table, {static_cast<std::uint32_t>(settings.seed), settings.bootstrap, cores});
            }
        }
    } catch (const ProgramError& error) {
        keepFindings();
        result.stopReason = StopReason::RunError;
        result.error = RunTimeError(error);
    }
    result.messages = prompter.messages;
    return result;
}

void RunStudy(std::vector<StudyPopulation>& populations, const RunSettings& settings,
              const std::function<void(PopulationResult&&)>& deliver,
              const std::atomic<bool>* cancel) {
    if (populations.empty()) return;
    const std::size_t threads =
        static_cast<std::size_t>(settings.threads > 0 ? settings.threads : AvailableCpuCount());
    const std::size_t workers = std::min(threads, populations.size());
    // One population at a time draws its random numbers on a second thread instead.
    const bool threaded = workers <= 1 && threads > 1;
    // One worker needs no thread of its own: the caller runs the populations in turn, which is
    // all a browser's worker can do.
    if (workers == 1) {
        for (StudyPopulation& population : populations) {
            if (cancel && cancel->load()) return;
            PopulationResult result = AnalyseStudyPopulation(population, settings, threaded);
            population.table = Table();
            deliver(std::move(result));
        }
        return;
    }
    DeliveryQueue queue(populations.size(), 2 * workers);
    auto work = [&] {
        while (std::optional<std::size_t> index = queue.Take(cancel)) {
            PopulationResult result;
            std::exception_ptr failure;
            try {
                result = AnalyseStudyPopulation(populations[*index], settings, threaded);
            } catch (...) {
                failure = std::current_exception();
            }
            // A population's table is no longer needed once it has run.
            populations[*index].table = Table();
            queue.Finish(*index, std::move(result), failure);
        }
    };
    std::vector<std::thread> pool;
    for (std::size_t w = 0; w < workers; ++w)
        pool.emplace_back(work);
    try {
        queue.DeliverAll(deliver);
    } catch (...) {
        queue.Abandon();
        for (std::thread& t : pool)
            t.join();
        throw;
    }
    for (std::thread& t : pool)
        t.join();
}

}  // namespace tavrelle
