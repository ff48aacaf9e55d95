// convert keeps every population, sample name and allele: Genepop -> .xls -> .xlsx -> Genepop
// gives back what it was given.
#include <gtest/gtest.h>

#include "../support/ProgramRun.h"
#include "../support/SimulatedGenepop.h"
#include "../support/TempFolder.h"
#include "population/InputDataSource.h"

namespace tavrelle {
namespace {

using testing::Quoted;
using testing::TempFolder;

// The sample rows of a loaded file: names and alleles, "Pop" rows included.
std::vector<std::vector<std::string>> Samples(const std::string& path) {
    RecordingPrompter prompter;
    InputDataSource store(testing::FileRequest(path), prompter);
    store.SavePopulation();
    std::vector<std::vector<std::string>> rows;
    for (std::int64_t row = 2; row < store.rsAllData.RecordCount(); ++row) {
        std::vector<std::string> cells;
        for (int column = 1; column < store.rsAllData.ColumnCount(); ++column)
            cells.push_back(store.rsAllData.Cell(row, column));
        rows.push_back(cells);
    }
    return rows;
}

TEST(Convert, ARoundTripThroughBothWorkbookFormatsKeepsEverySample) {
    TempFolder folder;
    const std::string text = testing::SimulatedGenepop({20, 15, 12});
    ASSERT_NE(text.find("090"), std::string::npos);  // alleles under 100 take part
    const std::string source = folder.Write("in.gen", text);
    const std::string steps[][2] = {
        {"in.gen", "step.xls"}, {"step.xls", "step.xlsx"}, {"step.xlsx", "out.gen"}};
    for (const auto& step : steps) {
        testing::CommandResult result = testing::RunBatchProgram(
            "convert " + Quoted(folder.File(step[0])) + " " + Quoted(folder.File(step[1])));
        ASSERT_EQ(result.exitCode, 0) << result.output;
        EXPECT_NE(result.output.find("3 populations, 3 loci"), std::string::npos) << result.output;
    }
    const auto original = Samples(source);
    ASSERT_EQ(original.size(), 20u + 15u + 12u + 2u);
    EXPECT_EQ(Samples(folder.File("out.gen")), original);
    // Alleles under 100 keep three digits, so the Genepop file reads back as written.
    EXPECT_NE(folder.Read("out.gen").find("\t090"), std::string::npos);
}

}  // namespace
}  // namespace tavrelle
