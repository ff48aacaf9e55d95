#include "formats/StudyTableXlsx.h"

#include "formats/XlsxWriter.h"
#include "run/StudyTableExport.h"

namespace tavrelle {

std::string StudyTableXlsx(const StudyTable& table) {
    WorksheetCells cells;
    const std::vector<std::vector<std::string>> lines = StudyTableLines(table);
    for (std::size_t row = 0; row < lines.size(); ++row)
        for (std::size_t column = 0; column < lines[row].size(); ++column)
            if (!lines[row][column].empty())
                cells.push_back({static_cast<std::int64_t>(row), static_cast<std::int64_t>(column),
                                 lines[row][column]});
    return XlsxWorkbookFile(cells, "Study overview");
}

}  // namespace tavrelle
