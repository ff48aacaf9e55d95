#pragma once

#include <string>

#include "batch/BatchOptions.h"
#include "population/ReadProblems.h"

namespace tavrelle {

// What convert writes. The name given to --to, else the output's ending: ".xlsx" and ".xls"
// Tavrelle's workbook layout, ".csv" GenAlEx (".tidy.csv" the tidy table), ".str" STRUCTURE,
// anything else Genepop.
enum class ConvertTarget {
    Genepop,
    Xlsx,
    Xls,
    GenalexCsv,
    GenalexXlsx,
    GenalexXls,
    Tidy,
    Structure
};

// The target of the options; an unknown --to name throws std::invalid_argument.
ConvertTarget ConvertTargetOf(const BatchOptions& options);

// The names --to takes, for the usage text.
std::string ConvertTargetNames();

// Writes the data to options.convertOutput as its target says, whole or not at all, and returns
// the line to print. Data the target cannot hold (an allele over 999 in Genepop, a blank in a
// STRUCTURE name) throw std::runtime_error with their located problems; nothing is written.
std::string WriteConversion(const GenotypeData& data, const BatchOptions& options);

// The refusal of a file with problems, as the batch program prints it: the count and each
// located problem on its own line.
std::string RefusalText(const GenotypeRead& read);

}  // namespace tavrelle
