#pragma once

#include <string>
#include <string_view>

#include "population/ReadProblems.h"
#include "population/TextRecords.h"

namespace tavrelle {

// GenAlEx's layout, in a CSV file or a sheet: a count row (loci, samples, populations, then each
// population's size), a title row (the title in the first cell, the population names above their
// sizes), a header row (sample, population, then each locus name above its two allele columns),
// then one row per sample. `0` or an empty cell is a missing allele. Populations come from the
// population column in file order; where the count row disagrees the rows are trusted and a note
// says so. A cell right after the last locus must be empty: columns after that gap (GenAlEx's
// optional extra data) are not read.
GenotypeRead ReadGenalexRows(const CellRows& rows, const std::string& file);

// A GenAlEx CSV file (comma, semicolon or tab separated, told from the file).
GenotypeRead ReadGenalexCsv(std::string_view bytes, const std::string& file);

// True when a row's first three cells are whole numbers: GenAlEx's count row.
bool IsGenalexCountRow(const CellRow& row);

// The rows GenAlEx's layout puts on a sheet or in a CSV file; a population without a name gets
// its label from PopulationLabels.
CellRows GenalexRows(const GenotypeData& data);

// Those rows as CSV text, comma separated, LF line ends.
std::string GenalexCsv(const GenotypeData& data);

// Rows as CSV text, each field quoted when it must be.
std::string CsvText(const CellRows& rows);

}  // namespace tavrelle
