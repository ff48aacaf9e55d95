#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/Int16.h"
#include "base/ProgramError.h"
#include "results/AnalysisAdvice.h"

class QFrame;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace tavrelle {

// "Analysis Of Results": for one locus at a time, a yes/no grid of the four kinds of evidence,
// the user's statements from the questionnaire and the laboratory advice built from both. It
// stands ready behind no menu entry: nothing in a run feeds it yet. Rows: 0 homozygote excess,
// 1 null alleles, 2 large allele dropout, 3 stuttering.
class frmAnalysisResults : public QDialog {
    Q_OBJECT
public:
    frmAnalysisResults(std::vector<std::string> locusNames, QWidget* parent = nullptr);

    // Puts the texts of the locus into the main screen's panes, as the graph windows do.
    std::function<void(const std::string& locusName)> displayInitAnalysis;
    // A program error of a button ends the session: the owner shows it and ends.
    std::function<void(const ProgramError&)> programError;

    void Interpretation(Int16 index, const std::array<std::string, 4>& texts);
    void userInfo(const std::array<std::string, 4>& texts);
    void Recomendation(Int16 value);
    void YesNoValue(const std::array<bool, 4>& values);
    // The questionnaire's answers: the study answers and the answers by locus.
    void OptionalInfo(const std::vector<Int16>& answers,
                      const std::vector<std::array<Int16, 3>>& moreAnswers);
    void DisplayUserInfo();
    // Throws ProgramError 9 when no yes/no values were given.
    void DisplayYesNo();
    void ResultsOfAnalysis(bool nulls, bool dropout, bool stutter, bool fourth);

    void NextButton_Click();
    void PrevButton_Click();
    void NullButton_Click();

    Int16 LocusIndex() const { return locusIndex_; }
    const std::vector<Int16>& OptionalAnswers() const { return optionalInfo_; }
    const std::vector<std::array<Int16, 3>>& LocusAnswers() const { return locusAnswers_; }
    const AnalysisAdvice& Advice() const { return advice_; }

    QLineEdit* LocusTextBox;
    QPushButton *NullButton, *NextButton, *PrevButton;
    QFrame *RecomFrame, *UserFrame, *InterpFrame, *YesNoFrame;
    QLabel *RecomLabel, *UserLabel, *InterpLabel;
    std::array<QPlainTextEdit*, 4> RecomText, UserText, InterpText;
    std::array<QLineEdit*, 4> YesTextBox, NoTextBox;
    QLabel *HmzXSLabel, *NullLabel, *LADLabel, *StutLabel;

private:
    void ShowLocus();
    void ResetRecommendations();
    void Guarded(const std::function<void()>& command);

    std::vector<std::string> locusNames_;
    Int16 locusIndex_ = 0;
    std::vector<Int16> optionalInfo_;
    std::vector<std::array<Int16, 3>> locusAnswers_;
    std::optional<std::array<bool, 4>> yesNo_;
    AnalysisAdvice advice_;
};

}  // namespace tavrelle
