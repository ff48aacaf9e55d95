// Every population of a file in turn: a change of population brings the settings back, and each
// run works on the population on screen.
#include "tests/gui/ScreenFixture.h"

#include "Simulator.h"

namespace tavrelle {
namespace {

class PopulationRunsTest : public ScreenTest {
protected:
    // Two populations of different sizes and allele frequencies over the same loci, so that
    // a run on the wrong one shows in its sample count and its homozygote counts.
    void SetUp() override {
        ScreenTest::SetUp();
        simulate::SimulationParameters parameters;
        parameters.seed = 11;
        parameters.sample_counts = {40, 55};
        parameters.differentiation = 0.6;
        for (std::size_t l = 0; l < 3; ++l)
            parameters.loci.push_back(simulate::ResolveLocus({}, parameters.seed, l));
        data = simulate::Simulate(parameters);
        file = WriteFile("two-populations.gen", simulate::FormatGenepop(data));
    }

    // Homozygotes scored at the first locus of a population, whatever their allele.
    int Homozygotes(std::size_t population) const {
        int count = 0;
        for (const simulate::Sample& sample : data.populations.at(population).samples) {
            const simulate::Genotype& genotype = sample.scored.front();
            if (!genotype.IsMissing() && genotype.first == genotype.second) ++count;
        }
        return count;
    }

    // Analyses the population on screen from the settings panel and checks that the run
    // belongs to it.
    void AnalyseAndExpect(std::size_t population) {
        SCOPED_TRACE("population " + std::to_string(population + 1));
        ASSERT_TRUE(Widget("LeftPanel")->isVisible());
        ASSERT_TRUE(Button("ValidateButton")->isEnabled());
        ASSERT_TRUE(Button("RandButton")->isEnabled());
        user.errorChoices.push_back(ErrorDialogChoice::Proceed);
        Button("RandButton")->click();
        ASSERT_TRUE(session.gAnalysis);
        const AlleleAnalysis& run = *session.gAnalysis;
        EXPECT_EQ(run.SampleCount(),
                  static_cast<Int16>(data.populations[population].samples.size()));
        ASSERT_FALSE(run.Loci().empty());
        int homozygotes = 0;
        for (Int16 count : run.Loci().front().observedHomozygotes)
            homozygotes += count;
        EXPECT_EQ(homozygotes, Homozygotes(population));
        EXPECT_FALSE(screen->GraphWindows().empty());
        EXPECT_EQ(Enabled({Action("mnuAnalysis"), Action("mnuNulls"), Action("mnuToggle")}), "111");
    }

    simulate::SimulatedData data;
    std::string file;
};

TEST_F(PopulationRunsTest, EachPopulationIsAnalysedInTurn) {
    Open(file);
    SetAllMotifs(2);
    AnalyseAndExpect(0);
    EXPECT_TRUE(Widget("LeftPanel")->isHidden());  // a run puts the settings away

    Button("NextPopButton")->click();
    EXPECT_EQ(screen->PopulationOnScreen(), 2);
    EXPECT_EQ(Combo("RepeatCombo")->currentIndex(), 2);  // the motifs came along
    AnalyseAndExpect(1);

    Button("PPopButton")->click();
    EXPECT_EQ(screen->PopulationOnScreen(), 1);
    AnalyseAndExpect(0);

    Button("NPopButton")->click();
    EXPECT_EQ(screen->PopulationOnScreen(), 2);
    AnalyseAndExpect(1);
}

}  // namespace
}  // namespace tavrelle
