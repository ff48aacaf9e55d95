#include "run/StudyTable.h"

#include <gtest/gtest.h>

#include <sstream>

#include "../support/AnalysedStudy.h"
#include "report/StudyReport.h"
#include "run/StudyRun.h"
#include "run/StudyTableExport.h"

namespace tavrelle {
namespace {

TEST(StudyFlagsTest, FollowTheInterpretationOfTheDecisions) {
    // homozygote excess, class-wide excess, one-repeat deficit -> null, stutter, drop-out
    struct Case {
        bool excess, classWide, oneRepeat;
        bool null, stutter, dropout;
    };
    const Case cases[] = {
        {false, false, false, false, false, false},
        {false, true, true, false, false, false},  // nothing without a homozygote excess
        {true, true, false, true, false, false},
        {true, true, true, true, true, false},
        {true, false, false, false, false, true},
        {true, false, true, false, true, true},
    };
    for (const Case& c : cases) {
        LocusResult locus;
        locus.decisions.homozygoteExcess = c.excess;
        locus.decisions.classWideExcess = c.classWide;
        locus.decisions.oneRepeatDeficit = c.oneRepeat;
        locus.decisions.largeDifferencesScarce = true;  // read by no verdict
        locus.nullPresent = c.excess && c.classWide ? "yes" : "no";
        const LocusFlags flags = FlagsOf(locus);
        SCOPED_TRACE(std::to_string(c.excess) + std::to_string(c.classWide) +
                     std::to_string(c.oneRepeat));
        EXPECT_EQ(flags.nullAllele, c.null);
        EXPECT_EQ(flags.stutter, c.stutter);
        EXPECT_EQ(flags.dropout, c.dropout);
    }
}

class StudyTableTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        results_ = new std::vector<PopulationResult>(AnalysedStudy());
        for (const PopulationResult& r : *results_)
            table_.Add(r);
    }
    static void TearDownTestSuite() { delete results_; }
    static std::vector<PopulationResult>* results_;
    static StudyTable table_;
};
std::vector<PopulationResult>* StudyTableTest::results_ = nullptr;
StudyTable StudyTableTest::table_;

TEST_F(StudyTableTest, CellsAndTotalsAgreeWithTheRuns) {
    ASSERT_EQ(table_.Rows().size(), 5U);
    ASSERT_EQ(table_.Loci().size(), 3U);
    std::vector<FlagTotals> byLocus(3);
    for (std::size_t r = 0; r < 4; ++r) {
        const StudyRow& row = table_.Rows()[r];
        EXPECT_FALSE(row.stopReason);
        FlagTotals own;
        for (const LocusResult& locus : (*results_)[r].analysis->Loci()) {
            const std::size_t c = static_cast<std::size_t>(locus.index);
            ASSERT_TRUE(row.cells[c]);
            EXPECT_EQ(table_.Loci()[c], locus.name);
            EXPECT_EQ(row.cells[c]->verdict, locus.nullPresent);
            EXPECT_EQ(row.cells[c]->estimate, StudyEstimate((*results_)[r], locus));
            own.Add(row.cells[c]->flags);
            byLocus[c].Add(row.cells[c]->flags);
        }
        EXPECT_EQ(row.totals.nullAllele, own.nullAllele);
        EXPECT_EQ(row.totals.dropout, own.dropout);
    }
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_EQ(table_.LocusTotals()[c].analysed, 4);
        EXPECT_EQ(table_.LocusTotals()[c].nullAllele, byLocus[c].nullAllele);
        EXPECT_EQ(table_.LocusTotals()[c].stutter, byLocus[c].stutter);
    }
    EXPECT_GE(table_.LocusTotals()[2].nullAllele, 1) << "the simulated null allele is found";
    const StudyRow& stopped = table_.Rows()[4];
    EXPECT_EQ(stopped.stopReason.value_or(""), "Please select a Repeat Motif for all Loci");
    EXPECT_EQ(stopped.totals.analysed, 0);
}

TEST_F(StudyTableTest, CsvHasALinePerCellAndOneForTheStoppedPopulation) {
    const std::string csv = StudyTableCsv(table_);
    std::istringstream lines(csv);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line,
              "population,population_name,samples,locus,null_allele,stutter,"
              "large_allele_dropout,em_failure,borderline,blank_samples,suspect_values,stopped,"
              "seed,run");
    int count = 0;
    while (std::getline(lines, line))
        ++count;
    EXPECT_EQ(count, 4 * 3 + 1);
    EXPECT_NE(csv.find("5,\"Ridge, north\",0,,,,,,,,0,Please select a Repeat Motif for all "
                       "Loci,,complete\n"),
              std::string::npos);
    const LocusResult& first = (*results_)[0].analysis->Loci()[0];
    EXPECT_NE(csv.find("," + first.name + "," + first.nullPresent + ","), std::string::npos);
    EXPECT_NE(csv.find("," + ShortestNumber(StudyEstimate((*results_)[0], first)) + ","),
              std::string::npos);
}

TEST_F(StudyTableTest, ReportIsOnePageWithEveryLocusAndNothingFetched) {
    StudyReportInput input;
    input.file = "study.gen";
    input.title = "Simulated <study> & co";
    input.settings.seed = 99;
    input.settings.repeatForAll = 2;
    input.clockSeed = false;
    input.populations = results_;
    input.populationsInFile = 5;
    const std::string html = StudyReportHtml(input);
    for (const char* absent : {"<script", " src=", "href=\"http", "url(http", "@import"})
        EXPECT_EQ(html.find(absent), std::string::npos) << absent;
    EXPECT_NE(html.find("Simulated &lt;study&gt; &amp; co"), std::string::npos);
    EXPECT_NE(html.find("99 (set)"), std::string::npos);
    EXPECT_NE(html.find("stopped: Please select a Repeat Motif for all Loci"), std::string::npos);
    auto count = [&](const std::string& what) {
        std::size_t n = 0;
        for (std::size_t at = html.find(what); at != std::string::npos;
             at = html.find(what, at + 1))
            ++n;
        return n;
    };
    // Two graphs for each of 4 x 3 cells, the heat map, and the graphs' shared frames and legend.
    EXPECT_EQ(count("<svg"), 4U * 3U * 2U + 3U);
    EXPECT_EQ(count("<svg"), count("</svg>"));
    EXPECT_EQ(count("The count axis starts at zero"), 1U);
    EXPECT_EQ(count("<details id="), 4U * 3U);
    for (const LocusResult& locus : (*results_)[3].analysis->Loci())
        EXPECT_NE(html.find("<summary>Locus " + locus.name + "<"), std::string::npos);
}

}  // namespace
}  // namespace tavrelle
