#pragma once

#include <filesystem>

#include "batch/BatchOptions.h"
#include "batch/BatchReport.h"

namespace tavrelle {

// Loads the file and analyses the chosen populations as the Analyse command would, each with a
// fresh generator from the same seed and its own empty lists of suspect cells. Populations run
// in parallel; the report is the same as from one thread. A file that can't be loaded or a
// population number that isn't there throws std::runtime_error with the message to print.
BatchReport RunBatch(const BatchOptions& options, const std::filesystem::path& tableFolder);

// "convert IN OUT": loads options.file as the open command would and writes every population to
// options.convertOutput as Save As would, each format told by its name's ending: a workbook by
// the Excel writer, anything else by the Genepop writer with the file's name as its title. The
// result is the line to print; a file that can't be loaded or written throws std::runtime_error
// with the message to print.
std::string ConvertDataFile(const BatchOptions& options);

}  // namespace tavrelle
