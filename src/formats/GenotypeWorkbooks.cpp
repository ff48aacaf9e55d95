#include "formats/GenotypeWorkbooks.h"

#include <exception>

#include "formats/Biff8Writer.h"
#include "formats/XlsReader.h"
#include "formats/XlsxReader.h"
#include "formats/XlsxWriter.h"
#include "population/ExcelTexts.h"
#include "population/GenalexTable.h"
#include "population/LineInput.h"

namespace tavrelle {

namespace {

std::string WorkbookBytes(const WorksheetCells& cells, DataFormat kind) {
    return kind == DataFormat::Xls ? XlsWorkbookFile(cells, kDefaultSheetName)
                                   : XlsxWorkbookFile(cells, kDefaultSheetName);
}

void AddRow(WorksheetCells& cells, std::int64_t row, const std::vector<std::string>& texts) {
    for (std::size_t column = 0; column < texts.size(); ++column)
        if (!texts[column].empty())
            cells.push_back({row, static_cast<std::int64_t>(column), texts[column]});
}

}  // namespace

std::optional<GenotypeRead> ReadGenalexWorkbook(const std::string& file, DataFormat kind,
                                                const std::string& sheet) {
    // A workbook that cannot be opened, or lacks the sheet, is the store's to refuse in the
    // words the desktop uses.
    try {
        std::unique_ptr<ExcelWorkbook> workbook =
            kind == DataFormat::Xls ? OpenXlsWorkbook(file) : OpenXlsxWorkbook(ReadWholeFile(file));
        std::unique_ptr<ExcelSheet> opened = workbook->OpenSheet(sheet);
        if (!opened || opened->RecordCount() == 0) return std::nullopt;
        const int fields = opened->FieldCount();
        if (opened->RecordCount() * std::max(fields, 1) > kMaxSheetCells) return std::nullopt;
        CellRows rows;
        for (std::int64_t row = 0; row < opened->RecordCount(); ++row) {
            CellRow cells{static_cast<std::size_t>(row) + 1, {}};
            for (int field = 0; field < fields; ++field)
                cells.cells.push_back(opened->Field(row, field).value_or(""));
            rows.push_back(std::move(cells));
            if (row == 0 && !IsGenalexCountRow(rows.front())) return std::nullopt;
        }
        return ReadGenalexRows(rows, file);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::string GenalexWorkbookBytes(const GenotypeData& data, DataFormat kind) {
    WorksheetCells cells;
    std::int64_t row = 0;
    for (const CellRow& cellRow : GenalexRows(data))
        AddRow(cells, row++, cellRow.cells);
    return WorkbookBytes(cells, kind);
}

std::string TavrelleWorkbookBytes(const GenotypeData& data, DataFormat kind) {
    WorksheetCells cells;
    std::vector<std::string> heading{"Population"};
    std::vector<std::string> names{data.title};
    for (const std::string& locus : data.loci) {
        heading.insert(heading.end(), {"Allele A", "Allele B"});
        names.insert(names.end(), {locus, ""});
    }
    AddRow(cells, 0, heading);
    AddRow(cells, 1, names);
    std::int64_t row = 2;
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        if (p > 0) AddRow(cells, row++, {"Pop"});
        for (const GenotypeSample& sample : data.populations[p].samples) {
            std::vector<std::string> texts{sample.name};
            for (const AllelePair& pair : sample.genotypes)
                texts.insert(texts.end(),
                             {std::to_string(pair.first), std::to_string(pair.second)});
            AddRow(cells, row++, texts);
        }
    }
    return WorkbookBytes(cells, kind);
}

}  // namespace tavrelle
