#pragma once

#include <memory>

#include "population/ExcelSheetReader.h"
#include "population/FileKind.h"

namespace tavrelle {

// The sheet reader for a workbook kind; nullptr for Genepop.
std::unique_ptr<ExcelSheetReader> MakeExcelSheetReader(FileKind kind);

}  // namespace tavrelle
