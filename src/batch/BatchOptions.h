#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/Int16.h"
#include "population/DataFormat.h"
#include "run/RunSettings.h"

namespace tavrelle {

struct BatchOptions {
    std::string commandLine;  // as typed, for the study report's header
    std::string file;  // Genepop, .xls or .xlsx, told by its name's ending; "-" standard input
    // The workbook's sheet that holds the data, as the sheet dialog would be given it.
    std::string sheet = "Sheet1";
    // A sheet whose locus names are all numbers is loaded as it stands (the OK of the desktop's
    // question); without this it is refused, as Cancel would.
    bool acceptNumericNames = false;
    // "convert IN OUT": file is IN, convertOutput is OUT, and no analysis runs.
    bool convert = false;
    std::string convertOutput;
    // --format: the input's format when its bytes should not decide (a STRUCTURE form above all).
    std::optional<FormatChoice> format;
    // --to: convert's output format by name (ConvertTarget); else the output name's ending.
    std::optional<std::string> convertTo;
    std::vector<int> populations;  // 1-based; empty: all
    // The run's settings as the options give them: seed (the clock's without --seed),
    // randomisations, interval, --repeat N for every locus, maximum allele size (a whole number,
    // 50 to 700), --on-suspect, bootstrap, threads. The table folder and the file's kind are
    // added when the file is read.
    RunSettings settings;
    std::map<std::string, Int16> repeatByLocus;  // --repeat NAME=N
    std::optional<std::string> repeatsFile;      // locus, motif table; --repeat NAME=N wins over it
    std::optional<std::string> jsonFile;         // "-" for standard output
    std::optional<std::string> csvFile;
    std::optional<std::string> reportFile;  // the HTML study report
    bool help = false;
    bool version = false;
};

// Reads the command line; a refusal throws std::invalid_argument with the message to print.
BatchOptions ParseBatchOptions(const std::vector<std::string>& arguments);

// The --help text.
std::string BatchUsage();

// The command line as a shell would take it back: arguments with spaces or quotes in single
// quotes.
std::string CommandLineText(const std::vector<std::string>& arguments);

}  // namespace tavrelle
