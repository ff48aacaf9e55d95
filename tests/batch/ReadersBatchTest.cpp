// The batch program on every format: convert in all directions without a difference, the format
// told from the bytes or named, refusals located, half-missing genotypes and index-like alleles
// told.
#include <gtest/gtest.h>

#include "../support/Json.h"
#include "../support/ProgramRun.h"
#include "../support/SimulatedGenepop.h"
#include "../support/TempFolder.h"

namespace tavrelle {
namespace {

using testing::CommandResult;
using testing::Quoted;
using testing::TempFolder;

CommandResult Batch(const std::string& arguments) {
    return testing::RunBatchProgram(arguments);
}

// From line `first` (1-based) on.
std::string From(const std::string& text, int first) {
    std::size_t at = 0;
    for (int line = 1; line < first && at != std::string::npos; ++line)
        at = text.find('\n', at) + 1;
    return text.substr(at);
}

struct Target {
    const char* to;
    const char* ending;
    bool keepsTitle;
};

TEST(ReadersBatch, ConvertGoesBetweenEveryPairOfFormatsWithoutADifference) {
    TempFolder folder;
    folder.Write("in.gen", testing::SimulatedGenepop({14, 11, 9}, 5));
    ASSERT_EQ(
        Batch("convert " + Quoted(folder.File("in.gen")) + " " + Quoted(folder.File("ref.gen")))
            .exitCode,
        0);
    const std::string reference = folder.Read("ref.gen");
    const std::vector<Target> targets = {
        {"genepop", "gen", true}, {"xlsx", "xlsx", false},        {"xls", "xls", false},
        {"genalex", "csv", true}, {"genalex-xlsx", "xlsx", true}, {"genalex-xls", "xls", true},
        {"tidy", "csv", false},   {"structure", "str", false}};
    for (const Target& a : targets) {
        const std::string first = folder.File(std::string("a.") + a.to + "." + a.ending);
        CommandResult made = Batch("convert " + Quoted(folder.File("in.gen")) + " " +
                                   Quoted(first) + " --to " + a.to);
        ASSERT_EQ(made.exitCode, 0) << made.output;
        EXPECT_NE(made.output.find("34 samples in 3 populations, 3 loci."), std::string::npos)
            << made.output;
        for (const Target& b : targets) {
            SCOPED_TRACE(std::string(a.to) + " -> " + b.to);
            const std::string second = folder.File(std::string("b.") + b.to + "." + b.ending);
            CommandResult step =
                Batch("convert " + Quoted(first) + " " + Quoted(second) + " --to " + b.to);
            ASSERT_EQ(step.exitCode, 0) << step.output;
            CommandResult back =
                Batch("convert " + Quoted(second) + " " + Quoted(folder.File("back.gen")));
            ASSERT_EQ(back.exitCode, 0) << back.output;
            const int line = a.keepsTitle && b.keepsTitle ? 1 : 2;
            EXPECT_EQ(From(folder.Read("back.gen"), line), From(reference, line));
        }
    }
}

TEST(ReadersBatch, RefusedFilesNameTheLineSampleAndLocusOfEachProblem) {
    TempFolder folder;
    const std::string file = folder.Write(
        "bad.gen", "T\nL1\nL2\nPop\na , 182208 100100\nb , 1822088 100100\nc , 100100\n");
    CommandResult run = Batch(Quoted(file) + " --repeat 2");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(
        run.output.find("Could not load " + file + ": 2 problems:\n" + file +
                        ":6: sample 'b', locus 'L1': expected 4 or 6 digits, got '1822088'\n" +
                        file + ":7: sample 'c': expected 2 genotypes, got 1"),
        std::string::npos)
        << run.output;
    CommandResult convert = Batch("convert " + Quoted(file) + " " + Quoted(folder.File("x.csv")));
    EXPECT_EQ(convert.exitCode, 1);
    EXPECT_NE(convert.output.find(file + ":6: sample 'b'"), std::string::npos);

    CommandResult directory = Batch(Quoted(folder.File("")) + " --repeat 2");
    EXPECT_EQ(directory.exitCode, 1);
    EXPECT_NE(directory.output.find("a directory, not a data file"), std::string::npos);

    CommandResult format = Batch(Quoted(file) + " --repeat 2 --format fasta");
    EXPECT_EQ(format.exitCode, 2);
    EXPECT_NE(format.output.find("--format: choose genepop, genalex, structure"),
              std::string::npos);
}

TEST(ReadersBatch, TheFormatComesFromTheBytesOrFromFormat) {
    TempFolder folder;
    // A two-row STRUCTURE file without locus names cannot tell its population column.
    std::string structure;
    for (int sample = 0; sample < 8; ++sample)
        for (int copy = 0; copy < 2; ++copy)
            structure += "s" + std::to_string(sample) + " 1 " +
                         std::to_string(100 + 2 * ((sample + copy) % 4)) + " " +
                         std::to_string(120 + 2 * (sample % 3)) + "\n";
    const std::string file = folder.Write("data.gen", structure);  // the name says nothing
    CommandResult untold = Batch(Quoted(file) + " --repeat 2 --bootstrap 0");
    EXPECT_EQ(untold.exitCode, 1);
    EXPECT_NE(untold.output.find("name the form (--format structure-2row-pop or structure-2row)"),
              std::string::npos)
        << untold.output;
    CommandResult told = Batch(Quoted(file) +
                               " --repeat 2 --bootstrap 0 --format "
                               "structure-2row-pop --json -  2>/dev/null");
    ASSERT_NE(told.exitCode, 1) << told.output;
    testing::Json report = testing::Json::Parse(told.output);
    auto& populations = std::get<testing::Json::Array>(report["populations"].value);
    ASSERT_EQ(populations.size(), 1u);
    EXPECT_EQ(std::get<std::string>(populations[0]["name"].value), "1");
    EXPECT_EQ(std::get<double>(populations[0]["samples"].value), 8.0);
}

// Blank lines and tabs between genotypes, which the store's own load refuses, are read.
TEST(ReadersBatch, GenepopWithBlankLinesAndTabsIsReadAsTheCleanFile) {
    TempFolder folder;
    const std::string clean = testing::SimulatedGenepop({30}, 9);
    std::string loose = clean;
    const std::size_t pop = loose.find("\nPop\n");
    ASSERT_NE(pop, std::string::npos);
    // A tab between the last two genotypes of the first sample, a blank line after "Pop", and
    // one at the end.
    const std::size_t lineEnd = loose.find('\n', pop + 5);
    const std::size_t blank = loose.rfind(' ', lineEnd);
    ASSERT_GT(blank, loose.find(',', pop));
    loose[blank] = '\t';
    loose.insert(pop + 5, "\n");
    loose += "\n";
    const std::string options = " --repeat 2 --seed 3 --bootstrap 0 --json - 2>/dev/null";
    CommandResult a = Batch(Quoted(folder.Write("clean.gen", clean)) + options);
    CommandResult b = Batch(Quoted(folder.Write("loose.gen", loose)) + options);
    ASSERT_EQ(a.exitCode, 0) << a.output;
    ASSERT_EQ(b.exitCode, 0) << b.output;
    const testing::Json first = testing::Json::Parse(a.output);
    const testing::Json second = testing::Json::Parse(b.output);
    EXPECT_EQ(
        testing::FirstDifference(first["populations"][0]["loci"], second["populations"][0]["loci"]),
        "");
}

TEST(ReadersBatch, HalfMissingGenotypesAndIndexLikeAllelesAreTold) {
    TempFolder folder;
    std::string text = "Two digits\nA\nB\nPop\n";
    for (int sample = 0; sample < 10; ++sample)
        text += "s" + std::to_string(sample) + " , 0" + std::to_string(1 + sample % 3) + "0" +
                std::to_string(2 + sample % 2) + (sample == 4 ? " 0300" : " 0304") + "\n";
    const std::string file = folder.Write("two.gen", text);
    CommandResult run =
        Batch(Quoted(file) + " --repeat 2 --bootstrap 0 --json " + Quoted(folder.File("r.json")));
    EXPECT_NE(run.output.find("tavrelle-batch: " + file +
                              ": every allele is below 100 and each locus's alleles are "
                              "consecutive"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("population 1 (s0): 1 genotype(s) with one allele missing, left "
                              "out of the analysis"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find(file + ": two digits per allele, read as the numbers they are; the "
                                     "stutter and large allele drop-out tests need allele sizes "
                                     "in base pairs."),
              std::string::npos)
        << run.output;
    testing::Json report = testing::Json::Parse(folder.Read("r.json"));
    const testing::Json& population = report["populations"][0];
    const testing::Json& check = population["check"];
    EXPECT_TRUE(std::get<bool>(check["index_like_alleles"].value));
    auto& half = std::get<testing::Json::Array>(check["half_missing"].value);
    ASSERT_EQ(half.size(), 1u);
    EXPECT_EQ(std::get<std::string>(half[0]["sample"].value), "s4");
    EXPECT_EQ(std::get<std::string>(half[0]["locus"].value), "B");
    EXPECT_EQ(std::get<std::string>(half[0]["allele"].value), "3");
}

}  // namespace
}  // namespace tavrelle
