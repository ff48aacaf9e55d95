#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "analysis/Confidence.h"
#include "base/Int16.h"
#include "population/InputDataSource.h"
#include "run/AlleleAnalysis.h"

namespace tavrelle {

// The session's shared state: the one population store, the engine of the last run, and the
// values a run takes with it. The desktop program owns one; nothing in the engine reads it.
struct Session {
    std::unique_ptr<InputDataSource> gInputData;
    // The engine of the last run; replaced only once a new run has finished.
    std::unique_ptr<AlleleAnalysis> gAnalysis;
    std::int32_t gRandomSeed = 0;
    Confidence gConfidenceCode = Confidence::Percent95;
    Int16 gRandomisations = 1000;
    std::vector<Int16> gRepeatTable;  // repeat code per locus of the population under analysis
    std::string SummaryText;
    std::string gExcelSheetName;
    bool gGridIsNew = false;
    bool gNewGridLoaded = false;
};

}  // namespace tavrelle
