#pragma once

#include <filesystem>
#include <ostream>

#include "batch/BatchOptions.h"

namespace tavrelle {

// How many of the requested populations were analysed and how many stopped.
struct BatchCounts {
    int analysed = 0;
    int stopped = 0;
};

// The exit status a run ends with: 0 every population analysed, 3 some stopped, 4 none analysed.
int ExitStatusOf(const BatchCounts& counts);

// The statistical tables must be in `folder`; a missing one is a std::runtime_error naming its
// path, before any data is read.
void RequireTables(const std::filesystem::path& folder);

// Loads the file and analyses the chosen populations as the Analyse command would, each with a
// fresh generator from the same seed. Populations run in parallel and each is written to every
// report as soon as it and those before it are done, then dropped. A line on `notes` tells each
// population analysed with suspect values as they stand, and each that stopped, with its reason.
// A command line that does not fit the file throws StudyUsageError; a file that can't be read or
// written std::runtime_error with the message to print.
BatchCounts RunBatch(const BatchOptions& options, const std::filesystem::path& tableFolder,
                     std::ostream& notes);

// "convert IN OUT": loads options.file as the open command would and writes every population,
// sample and allele to options.convertOutput, each format told by its name's ending. The result
// is the line to print; a file that can't be loaded or written throws std::runtime_error with the
// message to print.
std::string ConvertDataFile(const BatchOptions& options);

}  // namespace tavrelle
