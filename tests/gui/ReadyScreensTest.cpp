// The screens that stand ready behind no menu entry: the seed dialog, the questionnaire and the
// results screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include "analysis/screens/frmSeedDialog.h"
#include "results/screens/frmAnalysisResults.h"
#include "results/screens/frmUserInfo.h"
#include "tests/gui/Screenshot.h"
#include "widgets/Twips.h"

namespace tavrelle {
namespace {

// --- frmSeedDialog -------------------------------------------------------------------------

class SeedDialogTest : public ::testing::Test {
protected:
    // Types `text` and presses OK; the dialog's result, -1 while it stays open.
    int Press(const QString& text) {
        dialog.show();
        dialog.SeedTextBox->setText(text);
        dialog.SeedOKButton->click();
        return dialog.isVisible() ? -1 : dialog.result();
    }
    std::int32_t seed = 730151;
    RecordingPrompter prompter;
    int reruns = 0;
    frmSeedDialog dialog{seed, prompter, [this] { ++reruns; }};
};

TEST_F(SeedDialogTest, ShowsTheSeedInABoxOfNine) {
    EXPECT_EQ(dialog.windowTitle(), "Random Number Seed");
    EXPECT_EQ(dialog.SeedLabel->text(),
              "Click OK to accept the automatically generated seed value (recommended) or enter a "
              "positive integer");
    EXPECT_EQ(dialog.SeedTextBox->text(), "730151");
    EXPECT_EQ(dialog.SeedTextBox->maxLength(), 9);
    dialog.SeedTextBox->setText("1234567890");
    EXPECT_EQ(dialog.SeedTextBox->text(), "123456789");
    GrabWindow(dialog, "seed-dialog");
}

TEST_F(SeedDialogTest, PointsAndNegativesAreRefused) {
    for (const char* text : {"1.5", "-3", "-0.5"}) {
        prompter.messages.clear();
        EXPECT_EQ(Press(text), -1) << text;
        ASSERT_EQ(prompter.messages.size(), 1u);
        EXPECT_EQ(prompter.messages[0], (Message{"Please enter a positive integer.", "",
                                                 MessageIcon::None, MessageButtons::Ok}));
        EXPECT_EQ(dialog.SeedTextBox->text(), text);
    }
    EXPECT_EQ(seed, 730151);
    EXPECT_EQ(reruns, 0);
}

TEST_F(SeedDialogTest, ZeroIsTakenAndTheRunRepeated) {
    EXPECT_EQ(Press("0"), QDialog::Accepted);
    EXPECT_EQ(seed, 0);
    EXPECT_EQ(reruns, 1);
    EXPECT_TRUE(prompter.messages.empty());
}

TEST_F(SeedDialogTest, NineDigitsAndExponentsAreTaken) {
    EXPECT_EQ(Press("123456789"), QDialog::Accepted);
    EXPECT_EQ(seed, 123456789);
    EXPECT_EQ(Press("1e3"), QDialog::Accepted);
    EXPECT_EQ(seed, 1000);
    EXPECT_EQ(reruns, 2);
}

TEST_F(SeedDialogTest, TextThatIsNoNumberIsAProgramError) {
    EXPECT_EQ(Press("abc"), QDialog::Rejected);
    ASSERT_TRUE(dialog.Error());
    EXPECT_EQ(dialog.Error()->Number(), 13);
    EXPECT_TRUE(prompter.messages.empty());
    EXPECT_EQ(seed, 730151);
}

// --- frmUserInfo ---------------------------------------------------------------------------

std::vector<std::string> Loci(int count) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        names.push_back("Tav" + std::to_string(101 + i));
    return names;
}

class UserInfoTest : public ::testing::Test {
protected:
    std::unique_ptr<frmUserInfo> Questionnaire(int loci) {
        results = std::make_unique<frmAnalysisResults>(Loci(loci));
        auto form = std::make_unique<frmUserInfo>(Loci(loci), [this] { return results.get(); });
        form->show();
        QApplication::processEvents();
        return form;
    }
    // The loci whose rows are visible, as "first-last".
    static std::string Shown(const frmUserInfo& form) {
        int first = -1, last = -1;
        for (std::size_t i = 0; i < form.Rows.size(); ++i) {
            if (form.Rows[i].label->isVisible() != form.Rows[i].stutFrame->isVisible()) return "?";
            if (!form.Rows[i].label->isVisible()) continue;
            if (first < 0) first = static_cast<int>(i);
            last = static_cast<int>(i);
        }
        return std::to_string(first) + "-" + std::to_string(last);
    }
    std::unique_ptr<frmAnalysisResults> results;
};

TEST_F(UserInfoTest, OneLocus) {
    auto form = Questionnaire(1);
    EXPECT_EQ(form->windowTitle(), "Additional Information");
    EXPECT_EQ(form->Frame1->height(), TwipsToPixels(1400, form.get()));
    EXPECT_EQ(Shown(*form), "0-0");
    EXPECT_FALSE(form->NextButton->isEnabled());
    EXPECT_FALSE(form->PrevButton->isEnabled());
    EXPECT_EQ(form->Rows[0].label->text(), "Does Tav101 display signs of :");
    EXPECT_EQ(form->Rows[0].label->objectName(), "lbl0");
    EXPECT_EQ(form->Rows[0].ampOptionY->toolTip(),
              "Were some samples not amplified compared to the same sample at another locus?");
    EXPECT_EQ(form->Rows[0].stutOptionMod->toolTip(),
              "Were there signs of stuttering at this locus?");
    EXPECT_TRUE(form->Rows[0].ampOptionN->isChecked());
    EXPECT_TRUE(form->Rows[0].stutOptionNone->isChecked());
    GrabWindow(*form, "user-info-1");
}

TEST_F(UserInfoTest, TenLociFillOnePage) {
    auto form = Questionnaire(10);
    EXPECT_EQ(form->Frame1->height(), TwipsToPixels(1400 + 330 * 9, form.get()));
    EXPECT_EQ(Shown(*form), "0-9");
    EXPECT_FALSE(form->NextButton->isEnabled());
    GrabWindow(*form, "user-info-10");
}

TEST_F(UserInfoTest, ElevenLociPageAndKeepTheirAnswers) {
    auto form = Questionnaire(11);
    EXPECT_EQ(Shown(*form), "0-9");
    EXPECT_TRUE(form->NextButton->isEnabled());
    form->Rows[3].ampOptionY->setChecked(true);
    form->Rows[3].stutOptionMod->setChecked(true);
    form->NextButton->click();
    EXPECT_EQ(Shown(*form), "10-10");
    EXPECT_FALSE(form->NextButton->isEnabled());
    EXPECT_TRUE(form->PrevButton->isEnabled());
    GrabWindow(*form, "user-info-11-page-2");
    form->Rows[10].stutOptionHigh->setChecked(true);
    form->PrevButton->click();
    EXPECT_EQ(Shown(*form), "0-9");
    EXPECT_TRUE(form->Rows[3].ampOptionY->isChecked());
    EXPECT_TRUE(form->Rows[3].stutOptionMod->isChecked());
    EXPECT_TRUE(form->NextButton->isEnabled());
    EXPECT_FALSE(form->PrevButton->isEnabled());

    form->AncientOptionY->setChecked(true);
    form->PrimerOptionDK->setChecked(true);
    form->OKButton->click();
    EXPECT_EQ(form->result(), QDialog::Accepted);
    EXPECT_EQ(results->OptionalAnswers(), (std::vector<Int16>{1, 2, 0, 0}));
    const std::vector<std::array<Int16, 3>>& answers = results->LocusAnswers();
    ASSERT_EQ(answers.size(), 11u);
    EXPECT_EQ(answers[3], (std::array<Int16, 3>{1, 1, 0}));
    EXPECT_EQ(answers[10], (std::array<Int16, 3>{0, 2, 0}));
    EXPECT_EQ(answers[0], (std::array<Int16, 3>{0, 0, 0}));
}

TEST_F(UserInfoTest, CancelInformsNobody) {
    auto form = Questionnaire(3);
    form->EthanolOptionY->setChecked(true);
    form->Rows[1].stutOptionHigh->setChecked(true);
    form->CancelButton->click();
    EXPECT_EQ(form->result(), QDialog::Rejected);
    EXPECT_TRUE(results->OptionalAnswers().empty());
    EXPECT_EQ(form->GeneralAnswers(), (std::vector<Int16>{3, 3, 3, 3}));
    for (const auto& locus : form->LocusAnswers())
        EXPECT_EQ(locus, (std::array<Int16, 3>{0, 0, 2}));
}

// --- frmAnalysisResults --------------------------------------------------------------------

class AnalysisResultsTest : public ::testing::Test {
protected:
    AnalysisResultsTest() : screen(Loci(3)) {
        screen.displayInitAnalysis = [this](const std::string& name) { shown.push_back(name); };
        screen.programError = [this](const ProgramError& error) {
            errors.push_back(error.Number());
        };
        screen.show();
    }
    frmAnalysisResults screen;
    std::vector<std::string> shown;
    std::vector<int> errors;
};

TEST_F(AnalysisResultsTest, OpensAtTheFirstLocus) {
    EXPECT_EQ(screen.windowTitle(), "Analysis Of Results");
    EXPECT_EQ(screen.LocusTextBox->text(), "Tav101");
    EXPECT_FALSE(screen.PrevButton->isEnabled());
    EXPECT_TRUE(screen.NextButton->isEnabled());
    EXPECT_FALSE(screen.NullButton->isVisible());
    EXPECT_EQ(screen.RecomLabel->text(), "Recommendations");
    EXPECT_EQ(screen.StutLabel->text(), "Evidence of stuttering");
    EXPECT_FALSE(frmAnalysisResults(Loci(1)).NextButton->isEnabled());
}

TEST_F(AnalysisResultsTest, YesNoGridAndTheDisplayButton) {
    EXPECT_THROW(screen.DisplayYesNo(), ProgramError);
    screen.YesNoValue({true, true, false, false});
    screen.DisplayYesNo();
    EXPECT_EQ(screen.YesTextBox[0]->text(), "X");
    EXPECT_EQ(screen.NoTextBox[1]->text(), "");
    EXPECT_EQ(screen.NoTextBox[2]->text(), "X");
    EXPECT_EQ(screen.YesTextBox[3]->text(), "");
    EXPECT_TRUE(screen.NullButton->isVisible() && screen.NullButton->isEnabled());
    screen.NullButton->click();
    EXPECT_EQ(screen.RecomLabel->text(), "Estimated Allele Frequencies");
    EXPECT_EQ(errors, (std::vector<int>{9}));
    screen.YesNoValue({true, false, false, false});
    screen.DisplayYesNo();
    EXPECT_FALSE(screen.NullButton->isVisible());
}

TEST_F(AnalysisResultsTest, StatementsAndAdviceFromTheAnswers) {
    screen.OptionalInfo({1, 0, 2, 0}, {});
    screen.DisplayUserInfo();
    EXPECT_EQ(screen.UserText[0]->toPlainText(), "");
    EXPECT_EQ(screen.UserText[2]->toPlainText(),
              "Ancient DNA was used.\nIt is not known if samples stored in ethanol or cold "
              "storage that may have degraded were used.\nThese conditions may increase the "
              "liklihood of large allele dropout.");
    screen.ResultsOfAnalysis(true, false, true, false);
    EXPECT_EQ(screen.RecomText[1]->toPlainText(),
              "Ancient DNA is more prone to null alleles\nTo reduce the incidence of null "
              "alleles, try the following:\n1. Reduce stringency\n2. Redesign primers");
    EXPECT_EQ(screen.RecomText[2]->toPlainText(), "");
    EXPECT_TRUE(screen.RecomText[3]->toPlainText().startsWith(
        "Ancient DNA is more prone to stuttering\nTo reduce the incidence of stuttering"));
    screen.Interpretation(0, {"Homozygote excess", "Null alleles", "", ""});
    EXPECT_EQ(screen.InterpText[1]->toPlainText(), "Null alleles");
    screen.YesNoValue({true, true, false, true});
    screen.DisplayYesNo();
    GrabWindow(screen, "analysis-results");
}

TEST_F(AnalysisResultsTest, NextAndPrevMoveThroughTheLoci) {
    screen.YesNoValue({false, false, false, false});
    screen.ResultsOfAnalysis(true, true, true, true);
    screen.NextButton->click();
    EXPECT_EQ(screen.LocusTextBox->text(), "Tav102");
    EXPECT_EQ(screen.RecomText[1]->toPlainText(), "");
    screen.NextButton->click();
    EXPECT_FALSE(screen.NextButton->isEnabled());
    EXPECT_TRUE(screen.PrevButton->isEnabled());
    screen.PrevButton->click();
    screen.PrevButton->click();
    EXPECT_FALSE(screen.PrevButton->isEnabled());
    EXPECT_EQ(shown, (std::vector<std::string>{"Tav102", "Tav103", "Tav102", "Tav101"}));
    EXPECT_TRUE(errors.empty());
}

TEST_F(AnalysisResultsTest, MovingWithoutYesNoValuesIsAProgramError) {
    screen.NextButton->click();
    EXPECT_EQ(errors, (std::vector<int>{9}));
}

}  // namespace
}  // namespace tavrelle
