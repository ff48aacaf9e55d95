#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/Int16.h"
#include "nulls/StudySettings.h"

namespace tavrelle {

struct BatchOptions {
    std::string file;  // Genepop, .xls or .xlsx, told by its name's ending
    // The workbook's sheet that holds the data, as the sheet dialog would be given it.
    std::string sheet = "Sheet1";
    // A sheet whose locus names are all numbers is loaded as it stands (the OK of the desktop's
    // question); without this it is refused, as Cancel would.
    bool acceptNumericNames = false;
    // "convert IN OUT": file is IN, convertOutput is OUT, and no analysis runs.
    bool convert = false;
    std::string convertOutput;
    std::vector<int> populations;  // 1-based; empty: all
    std::optional<std::int32_t> seed;
    Int16 randomisations = 1000;
    Int16 confidenceCode = 0;
    std::optional<Int16> repeatForAll;
    std::map<std::string, Int16> repeatByLocus;
    std::string maxAlleleSize = "350";  // as typed: the check itself clamps and reports
    SuspectPolicy onSuspect = SuspectPolicy::Stop;
    std::optional<std::string> jsonFile;  // "-" for standard output
    std::optional<std::string> csvFile;
    std::optional<std::string> reportFile;
    int threads = 0;       // 0: every core
    int bootstrap = 1000;  // replicates for the likelihood estimates' intervals; 0: none
    bool help = false;
};

// Reads the command line; a refusal throws std::invalid_argument with the message to print.
BatchOptions ParseBatchOptions(const std::vector<std::string>& arguments);

// The --help text.
std::string BatchUsage();

}  // namespace tavrelle
