#pragma once

#include <string>

#include "batch/BatchOptions.h"
#include "formats/DataFileWriting.h"
#include "population/ReadProblems.h"

namespace tavrelle {

// What convert writes: the target --to names, else the one OUT's ending tells. An unknown --to
// name throws std::invalid_argument.
DataFileTarget ConvertTargetOf(const BatchOptions& options);

// Writes the data to options.convertOutput as its target says, whole or not at all, and returns
// the line to print. Data the target cannot hold (an allele over 999 in Genepop, a blank in a
// STRUCTURE name) throw std::runtime_error with their located problems; nothing is written.
std::string WriteConversion(const GenotypeData& data, const BatchOptions& options);

// The refusal of a file with problems, as the batch program prints it: the count and each
// located problem on its own line.
std::string RefusalText(const GenotypeRead& read);

}  // namespace tavrelle
