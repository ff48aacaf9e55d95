#pragma once

#include <string>

#include "population/ExcelSheetReader.h"
#include "population/GenotypeData.h"

namespace tavrelle {

// Fills a store with data a reader has already read (GenAlEx, STRUCTURE, tidy CSV, two-digit
// Genepop), through the store's sheet step: the store is built with isExcel and this as its
// sheet reader, and it ignores the file and sheet it is handed. Every sample is kept; the store's
// rows hold the alleles as whole numbers, "0" missing.
class GenotypeDataLoader : public ExcelSheetReader {
public:
    explicit GenotypeDataLoader(GenotypeData data) : data_(std::move(data)) {}
    void ReadExcelSheet(InputDataSource& store, const std::string& fileLocation,
                        const std::string& sheetName, Prompter& prompter) override;

private:
    GenotypeData data_;
};

}  // namespace tavrelle
