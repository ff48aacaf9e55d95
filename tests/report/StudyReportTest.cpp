#include "report/StudyReport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "../support/AnalysedStudy.h"
#include "base/Version.h"
#include "base/XmlText.h"
#include "report/ColumnGroups.h"
#include "results/GraphSvg.h"

namespace tavrelle {
namespace {

class StudyReportTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        results_ = new std::vector<PopulationResult>(AnalysedStudy());
        StudyReportInput input;
        input.file = "study.gen";
        input.fileSha256 = std::string(64, 'a');
        input.command = "tavrelle-batch study.gen --report <out>.html";
        input.title = "Simulated study";
        input.settings.seed = 99;
        input.settings.repeatForAll = 2;
        input.settings.maxAlleleSize = "420";
        input.settings.bootstrap = 250;
        input.clockSeed = false;
        input.populations = results_;
        input.populationsInFile = 5;
        // The report's time from the environment, as reproducible builds set it.
        ::setenv("SOURCE_DATE_EPOCH", "31536000", 1);
        html_ = new std::string(StudyReportHtml(input));
        ::unsetenv("SOURCE_DATE_EPOCH");
    }
    static void TearDownTestSuite() {
        delete results_;
        delete html_;
    }
    static bool Has(const std::string& text) { return html_->find(text) != std::string::npos; }
    static std::size_t Count(const std::string& text) {
        std::size_t n = 0;
        for (std::size_t at = html_->find(text); at != std::string::npos;
             at = html_->find(text, at + 1))
            ++n;
        return n;
    }
    static std::vector<PopulationResult>* results_;
    static std::string* html_;
};
std::vector<PopulationResult>* StudyReportTest::results_ = nullptr;
std::string* StudyReportTest::html_ = nullptr;

TEST_F(StudyReportTest, HeaderNamesProgramTimeFileHashCommandAndEverySetting) {
    for (const std::string& text :
         {std::string("Tavrelle ") + kProgramVersion, std::string("1971-01-01 00:00:00 UTC"),
          std::string(64, 'a'), std::string("tavrelle-batch study.gen --report &lt;out&gt;.html"),
          std::string("<th>Maximum allele size</th><td>420</td>"),
          std::string("<th>Bootstrap replicates</th><td>250</td>"),
          std::string("<th>Randomisations</th><td>1000</td>"), std::string("99 (set)"),
          std::string("every locus: 2 bp"), std::string("analysed as they stand")})
        EXPECT_TRUE(Has(text)) << text;
}

TEST_F(StudyReportTest, MethodsGiveEachFormulaAndTheReferencesAndCitationFollow) {
    for (const char* text :
         {"<h2>Methods</h2>", "(H<sub>e</sub> &minus; H<sub>o</sub>) / (1 + H<sub>e</sub>)",
          "P(blank) = &beta; + (1 &minus; &beta;) r<sup>2</sup>", "AIC = 2k &minus; 2 log L",
          "a negative estimate is read as no null allele", "250 resamples",
          "Brookfield, J. F. Y. (1996)", "Chakraborty, R., De Andrade, M.",
          "<h2>How to cite Tavrelle</h2>"})
        EXPECT_TRUE(Has(text)) << text;
    // The citation is the repository's file as it stands.
    std::ifstream in(std::string(TAVRELLE_SOURCE_DIR) + "/CITATION.cff");
    std::stringstream cff;
    cff << in.rdbuf();
    ASSERT_FALSE(cff.str().empty());
    EXPECT_TRUE(Has(EscapeXml(cff.str())));
}

TEST_F(StudyReportTest, EveryAnalysedPopulationHasItsEstimatesFAndVerdictOnItsOwnPage) {
    EXPECT_EQ(Count("<section class=\"population\">"), 5U);
    std::size_t analysed = 0;
    for (const PopulationResult& population : *results_) {
        if (!population.likelihood) continue;
        ++analysed;
        EXPECT_TRUE(Has(EscapeXml(population.likelihood->inbreeding.verdict)));
    }
    ASSERT_EQ(analysed, 4U);
    EXPECT_EQ(Count("<h3>Likelihood estimates and failure rates</h3>"), analysed);
    EXPECT_EQ(
        Count("<td>inbreeding_failures</td>") + Count("<td>inbreeding_failures (chosen)</td>"),
        analysed);
    EXPECT_EQ(Count("<th>Failure rate &beta;</th>"), analysed);
    EXPECT_TRUE(Has("section.population, div.closing { break-before: page; }"));
    EXPECT_TRUE(Has("@page { margin: 15mm; }"));
    EXPECT_TRUE(Has("details::details-content { content-visibility: visible;"));
}

TEST_F(StudyReportTest, GraphsAreCompactWithOneLegendAndWholeCoordinates) {
    EXPECT_EQ(Count("Legend of the graphs"), 1U);
    EXPECT_EQ(Count("<marker id=\"gx\""), 1U);
    std::size_t paths = 0;
    for (const char* kind : {"seen", "mean", "bound", "grid"}) {
        const std::string head = std::string("<path class=\"") + kind + "\" d=\"";
        for (std::size_t at = html_->find(head); at != std::string::npos;
             at = html_->find(head, at + 1)) {
            ++paths;
            const std::size_t begin = at + head.size();
            const std::string d = html_->substr(begin, html_->find('"', begin) - begin);
            EXPECT_EQ(d.find('.'), std::string::npos) << d;
        }
    }
    EXPECT_GT(paths, 4U * 3U * 2U * 2U);
    // Styles are shared: only the overview's cells carry their colour inline.
    EXPECT_EQ(Count("style=\""), Count("<td class=\"c"));
}

TEST(GraphDefsSvg, NameEveryConfidenceIntervalInTheFramesTitles) {
    for (Confidence confidence : {Confidence::Percent95, Confidence::Percent99,
                                  Confidence::FullRange, Confidence::Bonferroni}) {
        const std::string defs = GraphDefsSvg(confidence);
        const std::string label =
            "(CI: " + EscapeXml(GraphModel::ConfidenceLabel(confidence)) + ")";
        std::size_t titles = 0;
        for (std::size_t at = defs.find(label); at != std::string::npos;
             at = defs.find(label, at + 1))
            ++titles;
        EXPECT_EQ(titles, 2U) << label;
    }
}

TEST(ColumnGroups, CutColumnsIntoEvenGroupsThatFit) {
    using Groups = std::vector<std::pair<std::size_t, std::size_t>>;
    const struct {
        std::size_t columns, perGroup;
        Groups groups;
    } cases[] = {
        {0, 9, {}},
        {5, 9, {{0, 5}}},
        {9, 9, {{0, 9}}},
        {10, 9, {{0, 5}, {5, 10}}},
        {28, 9, {{0, 7}, {7, 14}, {14, 21}, {21, 28}}},
        {40, 9, {{0, 8}, {8, 16}, {16, 24}, {24, 32}, {32, 40}}},
        {3, 0, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ColumnGroups(c.columns, c.perGroup), c.groups) << c.columns << " " << c.perGroup;
}

}  // namespace
}  // namespace tavrelle
