#include "analysis/StatisticalTables.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tavrelle {
namespace {

const StatisticalTables& Tables() {
    static const StatisticalTables tables = LoadStatisticalTables(TAVRELLE_TABLE_DIR);
    return tables;
}

TEST(TableValue, RoundsTheTextToTwoDecimalsHalfToEven) {
    EXPECT_EQ(TableValue("11.345"), 11.34);
    EXPECT_EQ(TableValue("11.355"), 11.36);
    EXPECT_EQ(TableValue("3.841"), 3.84);
    EXPECT_EQ(TableValue("  10.828,"), 10.83);
    EXPECT_EQ(TableValue("0.005"), 0.0);
    EXPECT_EQ(TableValue("0.015"), 0.02);
    EXPECT_EQ(TableValue("-1.235"), -1.24);
    EXPECT_EQ(TableValue("0.3450001"), 0.35);
    EXPECT_EQ(TableValue("2.5e1x"), 25.0);
    EXPECT_EQ(TableValue("abc"), 0.0);
    EXPECT_EQ(TableValue(""), 0.0);
}

TEST(StatisticalTables, LoadTheFilesBesideTheProgram) {
    const StatisticalTables& t = Tables();
    EXPECT_EQ(t.chi[1][0], 3.84);  // 3.841
    EXPECT_EQ(t.chi[1][3], 10.83);
    EXPECT_EQ(t.chi[2][0], 5.99);
    EXPECT_GT(t.chi[140][3], t.chi[140][0]);
    EXPECT_EQ(t.normal[0][0], 0.5);
    EXPECT_EQ(t.rank[7][2], 0.56);  // n = 10 at 0.05: 0.564
}

TEST(StatisticalTables, MissingShortOrMalformedFilesArePlatformErrors) {
    auto folder = std::filesystem::temp_directory_path() / "tavrelle-tables-test";
    std::filesystem::create_directories(folder);
    for (const char* name : {kChiSquareTableFile, kNormalCurveTableFile, kRankCorrelationTableFile})
        std::filesystem::copy_file(std::filesystem::path(TAVRELLE_TABLE_DIR) / name, folder / name,
                                   std::filesystem::copy_options::overwrite_existing);
    auto numberOf = [&] {
        try {
            LoadStatisticalTables(folder);
        } catch (const ProgramError& error) {
            return error.Number();
        }
        return 0;
    };
    EXPECT_EQ(numberOf(), 0);
    std::ofstream(folder / kNormalCurveTableFile) << "0.5,0.5\n";
    EXPECT_EQ(numberOf(), 5);  // too few separators
    std::ofstream(folder / kNormalCurveTableFile) << "0.5,0.5,0.5,0.5,0.5,0.5,0.5,0.5,0.5,0.5,\n";
    EXPECT_EQ(numberOf(), 62);  // one line of 39
    std::filesystem::remove(folder / kNormalCurveTableFile);
    EXPECT_EQ(numberOf(), 53);
    std::filesystem::remove_all(folder);
}

TEST(ChiSquareLabel, FallsToTheNextLineOnACriticalValue) {
    const ChiSquareTable& chi = Tables().chi;
    bool significant = true;
    // 2 degrees of freedom: 5.991 is held as 5.99, so 5.991 itself already passes it.
    EXPECT_EQ(ChiSquareLabel(5.99, 1, chi, significant), "> 0.05 (not significant)");
    EXPECT_FALSE(significant);
    EXPECT_EQ(ChiSquareLabel(5.991, 1, chi, significant), "< 0.05 (significant)");
    EXPECT_TRUE(significant);
    EXPECT_EQ(ChiSquareLabel(7.5, 1, chi, significant), "< 0.025 (significant)");
    EXPECT_EQ(ChiSquareLabel(9.3, 1, chi, significant), "< 0.01 (significant)");
    EXPECT_EQ(ChiSquareLabel(13.82, 1, chi, significant), "< 0.01 (significant)");  // 13.816
    EXPECT_EQ(ChiSquareLabel(13.83, 1, chi, significant), "< 0.001 (significant)");
    EXPECT_EQ(ChiSquareLabel(1000, 70, chi, significant), "< 0.001 (significant)");  // row 140
    EXPECT_EQ(ChiSquareLabel(1000, 71, chi, significant), "Not calculated");
    EXPECT_FALSE(significant);
}

TEST(RankCorrelationLabel, LooksUpTheSizeRowAndKeepsTheSign) {
    const RankCorrelationTable& rank = Tables().rank;
    const std::string lead =
        "Significance of correlation between class size and \r\n\testimated null allele "
        "frequency:  ";
    EXPECT_EQ(RankCorrelationLabel(1.0, 10, rank), lead + "< 0.0005");
    EXPECT_EQ(RankCorrelationLabel(1.0000001, 10, rank), "");
    EXPECT_EQ(RankCorrelationLabel(-0.6, 10, rank), lead + "< 0.05 (Negative correlation)");
    EXPECT_EQ(RankCorrelationLabel(0.1, 10, rank), lead + "> 0.25");
    EXPECT_THROW(RankCorrelationLabel(0.5, 2, rank), ProgramError);
    EXPECT_THROW(RankCorrelationLabel(0.5, 101, rank), ProgramError);
}

TEST(CholeskyCheck, DecomposesItsMatrixSilently) {
    RecordingPrompter prompter;
    EXPECT_TRUE(CholeskyCheck(prompter));
    EXPECT_TRUE(prompter.messages.empty());
}

}  // namespace
}  // namespace tavrelle
