#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "population/ReadProblems.h"

namespace tavrelle {

// The formats data can be written in: Genepop (three digits), Tavrelle's workbook layout,
// GenAlEx (CSV or workbook), the long tidy CSV table and two-row STRUCTURE.
enum class DataFileTarget {
    Genepop,
    Xlsx,
    Xls,
    GenalexCsv,
    GenalexXlsx,
    GenalexXls,
    Tidy,
    Structure
};

// "genepop", "xlsx", "xls", "genalex", "genalex-xlsx", "genalex-xls", "tidy", "structure".
std::optional<DataFileTarget> DataFileTargetNamed(std::string_view name);
std::string DataFileTargetNames();

// The target a file name's ending tells: ".genalex.xlsx" and ".genalex.xls" GenAlEx's workbook,
// ".xlsx" and ".xls" Tavrelle's layout, ".tidy.csv" the
// tidy table, ".csv" GenAlEx, ".str" STRUCTURE, anything else Genepop.
DataFileTarget DataFileTargetOfName(std::string_view fileName);

// What the target is called: "Genepop file", "GenAlEx CSV file", ...
std::string DataFileTargetTitle(DataFileTarget target);

// The file's bytes. Data the target cannot hold are problems of `refusal` (then the bytes are
// not to be written). A Genepop file of data without a title is titled 'Title line:  "NAME"'
// after `fileName`, as the desktop's Save As titles it.
std::string DataFileBytes(const GenotypeData& data, DataFileTarget target,
                          const std::string& fileName, GenotypeRead& refusal);

}  // namespace tavrelle
