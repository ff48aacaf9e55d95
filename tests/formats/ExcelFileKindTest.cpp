// The format of a data file by its name, and how workbook cells and the store's text meet.
#include <gtest/gtest.h>

#include "formats/OoxmlPackage.h"
#include "formats/SheetReaders.h"
#include "formats/WorkbookText.h"
#include "population/FileKind.h"

namespace tavrelle {
namespace {

TEST(FileKinds, ToldByTheNamesEndingAlone) {
    for (const char* name : {"a.xls", "A.XLS", "data.Xls", "noDotxls", "/path.d/b.xLs"})
        EXPECT_EQ(KindOfFile(name), FileKind::Xls) << name;
    for (const char* name : {"a.xlsx", "A.XLSX", "c.XlsX", "/x/y.gen.xlsx"})
        EXPECT_EQ(KindOfFile(name), FileKind::Xlsx) << name;
    for (const char* name : {"a.gen", "a.txt", "a.dat", "axlsx", "a.xlsm", "a.xls.txt", "", "xl"})
        EXPECT_EQ(KindOfFile(name), FileKind::Genepop) << name;
    EXPECT_FALSE(IsExcelKind(FileKind::Genepop));
    EXPECT_TRUE(IsExcelKind(FileKind::Xls));
    EXPECT_EQ(MakeExcelSheetReader(FileKind::Genepop), nullptr);
    EXPECT_NE(MakeExcelSheetReader(FileKind::Xls), nullptr);
    EXPECT_NE(MakeExcelSheetReader(FileKind::Xlsx), nullptr);
}

TEST(CellTexts, NumbersAreWrittenOnlyWhenTheyReadBackTheSame) {
    EXPECT_EQ(NumberCellText(102.0), "102");
    EXPECT_EQ(NumberCellText(-0.0), "0");
    EXPECT_EQ(NumberCellText(1.5), "1.5");
    EXPECT_EQ(NumberCellText(123456789012.0), "123456789012");
    for (const char* text : {"102", "0", "1.5", "-3", "0.1", "123456789012"})
        EXPECT_EQ(LosslessNumber(text), std::stod(text)) << text;
    for (const char* text : {"098", "000", " 7", "7 ", "1e3", "+5", "-0", "1.50", ".5", "5.", "",
                             "inf", "NaN", "0x1A"})
        EXPECT_EQ(LosslessNumber(text), std::nullopt) << text;
}

TEST(CellTexts, TextThatIsNotUtf8IsTakenAsLatin1) {
    EXPECT_TRUE(IsValidUtf8("plain"));
    EXPECT_TRUE(IsValidUtf8("\u00e9\u6728\U0001F600"));
    EXPECT_FALSE(IsValidUtf8("\xE9t\xE9"));
    EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));          // overlong
    EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));      // a surrogate
    EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));  // beyond U+10FFFF
    EXPECT_EQ(ToUtf8("\xE9t\xE9"), "\u00e9t\u00e9");
    EXPECT_EQ(ToUtf8("\u00e9t\u00e9"), "\u00e9t\u00e9");
    EXPECT_EQ(ToUtf16("\xE9t"), u"\u00e9t");
    EXPECT_EQ(ToUtf16("\u6728\U0001F600"), u"\u6728\U0001F600");
}

TEST(PackageParts, RelationshipTargetsResolveAgainstTheirPart) {
    EXPECT_EQ(ResolvePartName("xl/workbook.xml", "worksheets/sheet1.xml"),
              "xl/worksheets/sheet1.xml");
    EXPECT_EQ(ResolvePartName("xl/workbook.xml", "/xl/sharedStrings.xml"), "xl/sharedStrings.xml");
    EXPECT_EQ(ResolvePartName("xl/workbook.xml", "../docProps/./app.xml"), "docProps/app.xml");
    EXPECT_EQ(ResolvePartName("", "xl/workbook.xml"), "xl/workbook.xml");
}

}  // namespace
}  // namespace tavrelle
