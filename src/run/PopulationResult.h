#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Prompter.h"
#include "checking/AlleleCoding.h"
#include "nulls/LikelihoodEstimates.h"
#include "population/Table.h"
#include "run/AlleleAnalysis.h"

namespace tavrelle {

// One suspect cell as the check's report shows it: row 1 is the first sample, column 3 the first
// allele column.
struct SuspectEntry {
    std::string value;
    std::int64_t row = 0;
    int column = 0;
};

// One population of a study, as the store holds it.
struct StudyPopulation {
    int number = 0;  // 1-based, file order
    Table table;
};

// Why a population's run did not finish, so that a caller can word it for its own users; the
// result's `error` holds the desktop program's message.
enum class StopReason {
    None,              // analysed
    TooManySamples,    // more than a run can count
    MotifMissing,      // a locus has no repeat motif
    InsufficientData,  // too few samples
    SuspectValues,     // the check found suspect values and the run was abandoned
    RunError,          // a run-time error, in the run or before it
    RunStopped,        // the run ended itself with a message
};

// What the Analyse command gives for one population: the check's findings, what was done with
// them, and the run, or why there was none.
struct PopulationResult {
    int number = 0;  // 1-based, file order
    std::string name;
    std::int64_t samples = 0;
    std::vector<SuspectEntry> nonInteger;
    std::vector<SuspectEntry> unexpected;
    std::vector<SuspectEntry> inconsistent;
    std::vector<HalfMissingGenotype> halfMissing;  // one allele scored, the other missing
    bool indexLikeAlleles = false;                 // AllelesLookLikeIndices of this population
    std::string action = "none";                   // none, omit, proceed or stop
    std::vector<Message> messages;                 // every box the desktop program would have shown
    std::optional<std::string> error;
    StopReason stopReason = StopReason::None;       // set with `error`
    std::string errorLocus;                         // the locus the run had in hand when it failed
    std::unique_ptr<AlleleAnalysis> analysis;       // absent when no run took place
    std::optional<PopulationEstimates> likelihood;  // with every run that finished

    bool Analysed() const { return !error.has_value(); }
    // Suspect values besides missing alleles ("0"), which every real data set has.
    std::size_t SuspectCount() const;
};

}  // namespace tavrelle
