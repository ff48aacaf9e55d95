// Files in the formats geneticists keep through File Open, their refusals with their places, and
// Save Data As in every format.
#include "tests/gui/ScreenFixture.h"

#include "population/GenepopText.h"
#include "population/LineInput.h"

namespace tavrelle {
namespace {

const char* const kGenalex =
    "2,6,2,3,3\nField study,,,North,South\nInd,Pop,LocA,,LocB,\n"
    "n1,North,100,102,200,204\nn2,North,102,102,0,0\nn3,North,100,104,202,204\n"
    "s1,South,100,100,200,200\ns2,South,104,102,204,0\ns3,South,102,102,200,202\n";

TEST_F(ScreenTest, OtherFormatsOpenAndSaveInEveryFormat) {
    Open(WriteFile("field.csv", kGenalex));
    ASSERT_TRUE(screen->GridVisible());
    EXPECT_FALSE(screen->ReadsWorkbook());
    EXPECT_EQ(session.gInputData->LocusNames(), (std::vector<std::string>{"LocA", "LocB"}));
    EXPECT_TRUE(Button("NextPopButton")->isEnabled());
    EXPECT_TRUE(Action("mnuSaveDataAs")->isEnabled());
    Grab("formats-genalex-open");

    const std::string saved = (folder / "field.gen").string();
    user.saveNames.push_back(saved);
    Action("mnuSaveDataAs")->trigger();
    EXPECT_NE(user.dialogs.back().filter.find("Genepop (gen)|*.gen"), std::string::npos);
    GenotypeRead back = ReadGenepopText(ReadWholeFile(saved), saved);
    ASSERT_TRUE(back.Ok()) << back.ProblemText();
    ASSERT_EQ(back.data.populations.size(), 2u);  // every sample kept, none behind a "Pop"
    EXPECT_EQ(back.data.populations[1].samples.size(), 3u);
    EXPECT_EQ(back.data.populations[1].samples[1].genotypes[1], (AllelePair{204, 0}));
}

TEST_F(ScreenTest, ARefusedFileSaysWhereItGoesWrong) {
    Open(WriteFile("two.gen", "T\nL1\nL2\nPop\na , 0102 0304\nb , 0102 03045\n"));
    EXPECT_FALSE(screen->GridVisible());
    ASSERT_FALSE(user.messages.empty());
    EXPECT_EQ(user.messages.back().caption, "Error Opening File");
    EXPECT_NE(user.LastText().find("two.gen:6: sample 'b', locus 'L2': expected 4 or 6 digits, "
                                   "got '03045'"),
              std::string::npos)
        << user.LastText();
}

}  // namespace
}  // namespace tavrelle
