// Workbooks in GenAlEx's layout and in Tavrelle's, written from data and read back the same.
#include <gtest/gtest.h>

#include "../support/SimulatedGenepop.h"
#include "../support/TempFolder.h"
#include "formats/GenotypeWorkbooks.h"
#include "formats/SheetReaders.h"
#include "population/GenepopText.h"
#include "population/GenotypeTables.h"

namespace tavrelle {
namespace {

GenotypeData Simulated() {
    GenotypeData data = ReadGenepopText(testing::SimulatedGenepop({10, 6}, 3), "sim.gen").data;
    data.populations[0].name = "North";
    data.populations[1].name = "South";
    return data;
}

TEST(GenotypeWorkbooks, GenalexWorkbooksGiveBackTheirData) {
    testing::TempFolder folder;
    const GenotypeData data = Simulated();
    for (DataFormat kind : {DataFormat::Xlsx, DataFormat::Xls}) {
        const std::string file = folder.Write(kind == DataFormat::Xls ? "g.xls" : "g.xlsx",
                                              GenalexWorkbookBytes(data, kind));
        std::optional<GenotypeRead> read = ReadGenalexWorkbook(file, kind, "sheet1");
        ASSERT_TRUE(read.has_value());
        ASSERT_TRUE(read->Ok()) << read->ProblemText();
        EXPECT_EQ(read->data, data);
        EXPECT_TRUE(read->notes.empty());
        // A sheet the workbook lacks is the store's to refuse, in its own words.
        EXPECT_FALSE(ReadGenalexWorkbook(file, kind, "Other").has_value());
    }
}

TEST(GenotypeWorkbooks, TavrelleWorkbooksReadThroughTheStoreKeepEverySample) {
    testing::TempFolder folder;
    GenotypeData data = Simulated();
    for (DataFormat kind : {DataFormat::Xlsx, DataFormat::Xls}) {
        const std::string file = folder.Write(kind == DataFormat::Xls ? "t.xls" : "t.xlsx",
                                              TavrelleWorkbookBytes(data, kind));
        // Not GenAlEx's layout: the store reads it.
        EXPECT_FALSE(ReadGenalexWorkbook(file, kind, "Sheet1").has_value());
        const FileKind fileKind = kind == DataFormat::Xls ? FileKind::Xls : FileKind::Xlsx;
        std::unique_ptr<ExcelSheetReader> reader = MakeExcelSheetReader(fileKind);
        StoreRequest request;
        request.fileLocation = file;
        request.isExcel = true;
        request.excelSheetName = "Sheet1";
        request.excelReader = reader.get();
        RecordingPrompter prompter;
        InputDataSource store(request, prompter);
        GenotypeRead read = GenotypeDataOfStore(store, file);
        ASSERT_TRUE(read.Ok()) << read.ProblemText();
        GenotypeData expected = data;
        expected.title.clear();  // the layout keeps no title
        for (GenotypePopulation& population : expected.populations)
            population.name.clear();  // nor population names
        EXPECT_EQ(read.data, expected);
    }
}

}  // namespace
}  // namespace tavrelle
