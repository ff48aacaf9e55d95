// The desktop's Analyse, the study overview and the batch program run one engine from one
// RunSettings: for the same seed they give the same numbers, population by population.
#include <QLineEdit>

#include "run/screens/frmStudyOverview.h"
#include "session/RunController.h"
#include "tests/gui/OverviewRun.h"
#include "tests/gui/ScreenFixture.h"
#include "tests/support/Json.h"
#include "tests/support/ProgramRun.h"

namespace tavrelle {
namespace {

using testing::Json;

const std::string kThree = std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen";
constexpr std::int32_t kSeed = 20260;

// What the three front ends must agree on at one locus.
struct LocusNumbers {
    std::vector<double> meanHomozygotes, meanDifferences;
    std::vector<double> lowerHomozygotes, upperHomozygotes, lowerDifferences, upperDifferences;
    std::vector<double> estimates;
    bool operator==(const LocusNumbers&) const = default;
};

template <class Numbers>
std::vector<double> Doubles(const Numbers& numbers) {
    return std::vector<double>(numbers.begin(), numbers.end());
}

std::vector<LocusNumbers> FromRun(const AlleleAnalysis& run) {
    std::vector<LocusNumbers> loci;
    for (const LocusResult& l : run.Loci())
        loci.push_back({l.meanHomozygotes, l.meanDifferences, Doubles(l.homozygoteBounds.lower),
                        Doubles(l.homozygoteBounds.upper), Doubles(l.differenceBounds.lower),
                        Doubles(l.differenceBounds.upper), Doubles(l.nulls.estimates)});
    return loci;
}

std::vector<double> FromJson(const Json& array) {
    std::vector<double> numbers;
    for (const Json& number : std::get<Json::Array>(array.value))
        numbers.push_back(std::get<double>(number.value));
    return numbers;
}

std::vector<LocusNumbers> FromJsonPopulation(const Json& population) {
    std::vector<LocusNumbers> loci;
    for (const Json& l : std::get<Json::Array>(population["loci"].value)) {
        const Json& e = l["estimates"];
        loci.push_back(
            {FromJson(l["mean_homozygotes"]),
             FromJson(l["mean_differences"]),
             FromJson(l["homozygote_bounds"]["lower"]),
             FromJson(l["homozygote_bounds"]["upper"]),
             FromJson(l["difference_bounds"]["lower"]),
             FromJson(l["difference_bounds"]["upper"]),
             {std::get<double>(e["velmaret"].value), std::get<double>(e["chakraborty"].value),
              std::get<double>(e["brookfield1"].value), std::get<double>(e["brookfield2"].value)}});
    }
    return loci;
}

class FrontEndAgreementTest : public ScreenTest {};

TEST_F(FrontEndAgreementTest, DesktopOverviewAndBatchGiveTheSameNumbersForOneSeed) {
    Open(kThree);
    SetAllMotifs(2);
    screen->Run().seedSource = [] { return kSeed; };

    // The desktop: Analyse on each population in turn, every motif chosen on each.
    std::vector<std::vector<LocusNumbers>> desktop;
    const AlleleAnalysis* previous = nullptr;
    for (int population = 1; population <= 3; ++population) {
        if (population > 1) {
            Button("NextPopButton")->click();
            SetAllMotifs(2);
        }
        user.errorChoices.push_back(ErrorDialogChoice::Proceed);
        Button("RandButton")->click();
        ASSERT_TRUE(session.gAnalysis) << population;
        ASSERT_NE(session.gAnalysis.get(), previous) << user.LastText();
        previous = session.gAnalysis.get();
        EXPECT_EQ(session.gAnalysis->Settings().seed, kSeed);
        desktop.push_back(FromRun(*session.gAnalysis));
        ASSERT_FALSE(desktop.back().empty());
    }

    // The overview, with the seed typed into it.
    Action("mnuStudyOverview")->trigger();
    auto windows = screen->findChildren<frmStudyOverview*>();
    ASSERT_FALSE(windows.isEmpty());
    frmStudyOverview* overview = windows.back();
    ASSERT_TRUE(WaitForRun(overview));
    overview->SeedBox->setText(QString::number(kSeed));
    ASSERT_TRUE(overview->Run());
    ASSERT_TRUE(WaitForRun(overview));
    EXPECT_EQ(overview->Seed(), kSeed);
    ASSERT_EQ(overview->Results().size(), 3U);

    // The batch program, from its command line.
    const Json report = Json::Parse(
        testing::RunCommand(std::string(TAVRELLE_BATCH) + " '" + kThree +
                            "' --repeat 2 --bootstrap 0 --json - --seed " + std::to_string(kSeed))
            .output);
    EXPECT_EQ(std::get<double>(report["seed"].value), kSeed);

    for (std::size_t p = 0; p < 3; ++p) {
        SCOPED_TRACE("population " + std::to_string(p + 1));
        const PopulationResult& fromOverview = overview->Results()[p];
        ASSERT_TRUE(fromOverview.analysis) << fromOverview.error.value_or("");
        EXPECT_EQ(FromRun(*fromOverview.analysis), desktop[p]);
        EXPECT_EQ(FromJsonPopulation(report["populations"][p]), desktop[p]);
    }
}

}  // namespace
}  // namespace tavrelle
