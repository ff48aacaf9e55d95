#pragma once

#include <memory>
#include <string>

#include "population/DataFile.h"
#include "population/ExcelSheetReader.h"
#include "population/FileKind.h"

namespace tavrelle {

// The sheet reader for a workbook kind; nullptr for a text format.
std::unique_ptr<ExcelSheetReader> MakeExcelSheetReader(FileKind kind);

// Opens a data file of any format, a workbook from `sheet`: the store, or an error naming the
// file, the line or cell and what was expected there, with the boxes the desktop shows for it.
// `questions` is asked what the load asks. (OpenDataFileWith with the format's sheet reader.)
OpenedDataFile OpenDataFile(const std::string& path, FileKind format, const std::string& sheet,
                            Prompter& questions);

}  // namespace tavrelle
