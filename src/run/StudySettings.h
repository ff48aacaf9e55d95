#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "base/Int16.h"

namespace tavrelle {

// What is done with a population in which the check found suspect values, where no one is there
// to answer the Possible Errors dialog: stop (the dialog's Correct), omit the values, or analyse
// them as they stand.
enum class SuspectPolicy { Stop, Omit, Proceed };

// The settings every population of a study is analysed with: one seed for all (each population
// gets a fresh generator from it), as the batch program and the study overview both run it.
struct StudySettings {
    std::int32_t seed = 0;
    Int16 randomisations = 1000;
    Int16 confidenceCode = 0;
    std::optional<Int16> repeatForAll;           // the motif of every locus not named below
    std::map<std::string, Int16> repeatByLocus;  // by locus name as the file spells it
    std::string maxAlleleSize = "350";           // as typed: the check clamps and reports
    SuspectPolicy onSuspect = SuspectPolicy::Proceed;
    std::filesystem::path tableFolder;  // where the statistical tables are
    bool isExcel = false;               // the data came from a workbook
    int threads = 0;                    // 0: the CPUs this process may run on
    int bootstrap = 1000;  // replicates for the likelihood estimates' intervals; 0: none
};

}  // namespace tavrelle
