#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "base/Prompter.h"
#include "population/DataFileError.h"
#include "population/ExcelSheetReader.h"
#include "population/FileKind.h"
#include "population/InputDataSource.h"
#include "population/PopulationCells.h"

namespace tavrelle {

// A data file opened: the store, or why the file did not load.
struct OpenedDataFile {
    std::unique_ptr<InputDataSource> store;
    std::optional<DataFileError> error;
};

// A reader of one text format: the bytes of a file to its cells, or where it stopped and what
// it expected there (the file name and the desktop's messages are filled in by the caller).
using TextFormatReader = std::variant<PopulationCells, DataFileError> (*)(const std::string& bytes);

// The reader of a text format other than Genepop (which the store reads itself); nothing for
// Genepop and the workbooks. A new format is one line here and one FileKind.
TextFormatReader TextReaderFor(FileKind format);

// Opens a data file as the open command does. `questions` is asked what a load asks (a disk not
// ready, locus names that are all numbers) and stays with the store; every other box the load
// would show goes into the error, in the order the desktop shows them. A workbook is read by
// `workbookReader` (the formats library's; without one a workbook is refused), from `sheet`.
OpenedDataFile OpenDataFileWith(const std::string& path, FileKind format, const std::string& sheet,
                                ExcelSheetReader* workbookReader, Prompter& questions);

}  // namespace tavrelle
