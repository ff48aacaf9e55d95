// tavrelle-batch with workbooks: the format by the name's ending, --sheet, the refusals as
// report lines, and convert between the three formats.
#include <gtest/gtest.h>

#include "../support/Json.h"
#include "ExcelTestTools.h"
#include "batch/BatchOptions.h"

namespace tavrelle {
namespace {

using testing::CommandResult;
using testing::Json;
using testing::Quoted;
using testing::WorkbookFolder;

CommandResult Batch(const std::string& arguments) {
    return testing::RunBatchProgram(arguments);
}

const std::string kDemo = std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen";

TEST(ExcelBatchOptions, SheetAndConvert) {
    BatchOptions plain = ParseBatchOptions({"f.xls"});
    EXPECT_EQ(plain.sheet, "Sheet1");
    EXPECT_FALSE(plain.acceptNumericNames);
    BatchOptions sheet =
        ParseBatchOptions({"f.xlsx", "--sheet", "Run 2", "--accept-numeric-names"});
    EXPECT_EQ(sheet.sheet, "Run 2");
    EXPECT_TRUE(sheet.acceptNumericNames);
    BatchOptions convert = ParseBatchOptions({"convert", "in.gen", "out.xls", "--sheet", "S"});
    EXPECT_TRUE(convert.convert);
    EXPECT_EQ(convert.file, "in.gen");
    EXPECT_EQ(convert.convertOutput, "out.xls");

    auto refusal = [](std::vector<std::string> arguments) {
        try {
            ParseBatchOptions(arguments);
        } catch (const std::invalid_argument& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(refusal({"f.xls", "--sheet", ""}), "--sheet: Please enter a sheet name.");
    EXPECT_EQ(refusal({"convert", "in.gen"}), "convert needs two files, IN and OUT. See --help.");
    EXPECT_EQ(refusal({"convert", "a", "b", "c"}),
              "convert takes two files, IN and OUT (got a third, 'c').");
    EXPECT_EQ(refusal({"convert", "a", "b", "--seed", "1"}),
              "--seed is not used by convert. See --help.");
}

TEST(ExcelBatchProgram, HelpExplainsWorkbooksAndConvert) {
    CommandResult help = Batch("--help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* text : {"--sheet NAME", "--accept-numeric-names", "convert IN OUT",
                             "tavrelle-batch convert DemoFiles/DemoNullAlleles.gen"})
        EXPECT_NE(help.output.find(text), std::string::npos) << text;
}

// A missing allele reads "000" from a Genepop file and "0" from a workbook: the same value.
Json ZerosAsZero(Json report) {
    auto& populations =
        std::get<Json::Array>(std::get<Json::Object>(report.value)["populations"].value);
    for (Json& population : populations) {
        auto& check =
            std::get<Json::Object>(std::get<Json::Object>(population.value)["check"].value);
        for (Json& entry : std::get<Json::Array>(check["unexpected"].value)) {
            std::string& value =
                std::get<std::string>(std::get<Json::Object>(entry.value)["value"].value);
            if (value.find_first_not_of('0') == std::string::npos) value = "0";
        }
    }
    return report;
}

// The same analysis from the Genepop file and from workbooks made from it by convert; only the
// file and the title differ, the title being '' for a workbook.
TEST(ExcelBatchProgram, WorkbooksAnalyseAsTheirGenepopFile) {
    WorkbookFolder folder;
    const std::string options = " --repeat 2 --seed 4242 --population 2 --json - 2>/dev/null";
    CommandResult genepop = Batch(Quoted(kDemo) + options);
    ASSERT_EQ(genepop.exitCode, 0) << genepop.output;
    Json expected = ZerosAsZero(Json::Parse(genepop.output));
    for (const char* ending : {".xls", ".xlsx", ".XLS"}) {
        const std::string book = folder.File(std::string("demo") + ending);
        CommandResult converted = Batch("convert " + Quoted(kDemo) + " " + Quoted(book));
        ASSERT_EQ(converted.exitCode, 0) << converted.output;
        EXPECT_NE(converted.output.find("3 populations, 6 loci."), std::string::npos);
        CommandResult run = Batch(Quoted(book) + options);
        ASSERT_EQ(run.exitCode, 0) << run.output;
        Json actual = ZerosAsZero(Json::Parse(run.output));
        EXPECT_EQ(std::get<std::string>(actual["title"].value), "");
        EXPECT_EQ(std::get<std::string>(actual["file"].value), book);
        EXPECT_EQ(testing::FirstDifference(expected["populations"], actual["populations"]), "");
    }
}

TEST(ExcelBatchProgram, ConvertsWorkbooksToGenepopKeepingEverySample) {
    WorkbookFolder folder;
    const std::string book = folder.File("demo.xlsx");
    ASSERT_EQ(Batch("convert " + Quoted(kDemo) + " " + Quoted(book)).exitCode, 0);
    CommandResult back = Batch("convert " + Quoted(book) + " " + Quoted(folder.File("back.gen")));
    ASSERT_EQ(back.exitCode, 0) << back.output;
    const std::string text = folder.Read("back.gen");
    EXPECT_EQ(text.rfind("Title line:  \"back.gen\"\r\nTav205\r\n", 0), 0U);
    for (const char* sample : {"pop1_001\t,\t", "pop2_001\t,\t", "pop3_001\t,\t"})
        EXPECT_NE(text.find(sample), std::string::npos) << sample;
}

TEST(ExcelBatchProgram, RefusalsReadAsTheDesktopShowsThem) {
    WorkbookFolder folder;
    const std::string book = folder.File("demo.xls");
    ASSERT_EQ(Batch("convert " + Quoted(kDemo) + " " + Quoted(book)).exitCode, 0);

    CommandResult missing = Batch(Quoted(book) + " --sheet Nope --repeat 2");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.output.find("The sheet named Nope has not been found."), std::string::npos);
    EXPECT_NE(missing.output.find("The requested Excel file is not in the required format."),
              std::string::npos);

    // The bytes tell the format, whatever the name: a damaged workbook is still a workbook.
    CommandResult notBook = Batch(Quoted(folder.Write("text.gen", "\xD0\xCF\x11\xE0 damaged")));
    EXPECT_EQ(notBook.exitCode, 1);
    EXPECT_NE(
        notBook.output.find("Error Opening File: External table is not in the expected format."),
        std::string::npos);

    CommandResult convertMissing =
        Batch("convert " + Quoted(book) + " " + Quoted(folder.File("x.gen")) + " --sheet Nope");
    EXPECT_EQ(convertMissing.exitCode, 1);
    EXPECT_NE(convertMissing.output.find("has not been found."), std::string::npos);

    CommandResult unwritable =
        Batch("convert " + Quoted(kDemo) + " " + Quoted(folder.File("no/such/x.xlsx")));
    EXPECT_EQ(unwritable.exitCode, 1);
    EXPECT_NE(unwritable.output.find("The drive or path does not exist."), std::string::npos);
}

TEST(ExcelBatchProgram, NumericLocusNamesNeedTheirOption) {
    WorkbookFolder folder;
    testing::WorkbookTool tool(folder);
    std::string rows = "[[0, 0, \"P\"], [1, 1, 1], [1, 3, 2]";
    for (int sample = 0; sample < 6; ++sample)
        rows += ", [" + std::to_string(sample + 2) + ", 0, \"s" + std::to_string(sample) +
                "\"], [" + std::to_string(sample + 2) + ", 1, " + std::to_string(100 + 2 * sample) +
                "], [" + std::to_string(sample + 2) + ", 2, 102], [" + std::to_string(sample + 2) +
                ", 3, 104], [" + std::to_string(sample + 2) + ", 4, 106]";
    std::string book = tool.Make(
        "numeric.xls", "{\"sheets\": [{\"name\": \"Sheet1\", \"cells\": " + rows + "]}]}");
    CommandResult refused = Batch(Quoted(book) + " --repeat 2 --seed 1");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.output.find("All the loci names appear to be numeric."), std::string::npos);
    EXPECT_NE(refused.output.find("--accept-numeric-names"), std::string::npos);
    CommandResult accepted =
        Batch(Quoted(book) + " --repeat 2 --seed 1 --accept-numeric-names --json - 2>/dev/null");
    ASSERT_EQ(accepted.exitCode, 0) << accepted.output;
    Json report = Json::Parse(accepted.output);
    EXPECT_EQ(std::get<std::string>(report["populations"][0]["loci"][1]["name"].value), "2");
}

}  // namespace
}  // namespace tavrelle
