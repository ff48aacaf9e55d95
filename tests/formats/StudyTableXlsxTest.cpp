#include "formats/StudyTableXlsx.h"

#include <gtest/gtest.h>

#include "../support/AnalysedStudy.h"
#include "formats/ExcelSheet.h"
#include "formats/XlsxReader.h"
#include "run/StudyTableExport.h"

namespace tavrelle {
namespace {

TEST(StudyTableXlsxTest, ReadsBackAsTheCsvLines) {
    StudyTable table;
    for (const PopulationResult& r : AnalysedStudy())
        table.Add(r);
    const auto lines = StudyTableLines(table);
    std::unique_ptr<ExcelWorkbook> book = OpenXlsxWorkbook(StudyTableXlsx(table));
    ASSERT_TRUE(book);
    std::unique_ptr<ExcelSheet> sheet = book->OpenSheet("Study overview");
    ASSERT_TRUE(sheet);
    ASSERT_EQ(sheet->RecordCount(), static_cast<std::int64_t>(lines.size()));
    // Numbers are stored as numbers; the reader shows them to 16 digits.
    for (std::size_t r = 0; r < lines.size(); ++r) {
        for (std::size_t c = 0; c < lines[r].size(); ++c) {
            const std::string read =
                sheet->Field(static_cast<std::int64_t>(r), static_cast<int>(c)).value_or("");
            if (c == 7 && r > 0 && !read.empty())
                EXPECT_NEAR(std::stod(read), std::stod(lines[r][c]), 1e-15) << r;
            else
                EXPECT_EQ(read, lines[r][c]) << r << "," << c;
        }
    }
}

}  // namespace
}  // namespace tavrelle
