#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "nulls/PopulationResult.h"

namespace tavrelle {

struct BatchReport {
    std::string file;
    std::string title;
    std::int32_t seed = 0;
    bool clockSeed = false;
    Int16 randomisations = 1000;
    Int16 confidenceCode = 0;
    Int16 maxAlleleSize = 350;  // as the check leaves it
    std::vector<PopulationResult> populations;
};

// The JSON report other programs read; its field names are a contract.
std::string JsonReport(const BatchReport& report);

// The readable report for people.
std::string TextReport(const BatchReport& report);

// One row per population and locus, for R and spreadsheets.
std::string CsvReport(const BatchReport& report);

}  // namespace tavrelle
