#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/AlleleAnalysis.h"
#include "base/Prompter.h"
#include "nulls/LikelihoodEstimates.h"

namespace tavrelle {

// One suspect cell as the check's report shows it: row 1 is the first sample, column 3 the first
// allele column.
struct SuspectEntry {
    std::string value;
    std::int64_t row = 0;
    int column = 0;
};

struct PopulationReport {
    int number = 0;  // 1-based, file order
    std::string name;
    std::int64_t samples = 0;
    std::vector<SuspectEntry> nonInteger;
    std::vector<SuspectEntry> unexpected;
    std::vector<SuspectEntry> inconsistent;
    std::string action = "none";    // none, omit, proceed or stop
    std::vector<Message> messages;  // every box the desktop program would have shown
    std::optional<std::string> error;
    std::string errorLocus;                         // the locus the run had in hand when it failed
    std::unique_ptr<AlleleAnalysis> analysis;       // absent when no run took place
    std::optional<PopulationEstimates> likelihood;  // beside a run that reached every locus
};

struct BatchReport {
    std::string file;
    std::string title;
    std::int32_t seed = 0;
    bool clockSeed = false;
    Int16 randomisations = 1000;
    Int16 confidenceCode = 0;
    Int16 maxAlleleSize = 350;  // as the check leaves it
    std::vector<PopulationReport> populations;
};

// The JSON report other programs read; its field names are a contract.
std::string JsonReport(const BatchReport& report);

// The readable report for people.
std::string TextReport(const BatchReport& report);

// One row per population and locus, for R and spreadsheets.
std::string CsvReport(const BatchReport& report);

}  // namespace tavrelle
