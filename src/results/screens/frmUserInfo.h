#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "base/Int16.h"
#include "results/UserInfoPaging.h"

class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QWidget;

namespace tavrelle {

class frmAnalysisResults;

// "Additional Information": an optional questionnaire about the study as a whole and about each
// locus, ten loci to a page, whose answers qualify the advice of the results screen. It stands
// ready behind no menu entry. Modal; it changes no population data.
class frmUserInfo : public QDialog {
    Q_OBJECT
public:
    // `resultsScreen` hands out the main screen's one results screen, which OK informs.
    frmUserInfo(std::vector<std::string> locusNames,
                std::function<frmAnalysisResults*()> resultsScreen, QWidget* parent = nullptr);

    // The option buttons of one locus.
    struct LocusRow {
        QLabel* label;
        QWidget* ampFrame;
        QRadioButton *ampOptionN, *ampOptionY;
        QWidget* stutFrame;
        QRadioButton *stutOptionNone, *stutOptionMod, *stutOptionHigh;
    };

    void NextButton_Click();
    void PrevButton_Click();
    void OKButton_Click();
    void CancelButton_Click();

    // 0 ancient DNA, 1 primers, 2 storage, 3 not written by OK: 0 No, 1 Yes, 2 Don't Know.
    const std::vector<Int16>& GeneralAnswers() const { return generalAnswers_; }
    // By locus: 0 non-amplification (0 No, 1 Yes), 1 stuttering (0 None, 1 Mod, 2 High), 2 not
    // written by OK.
    const std::vector<std::array<Int16, 3>>& LocusAnswers() const { return locusAnswers_; }
    const UserInfoPaging& Paging() const { return paging_; }

    QLabel *OptionalLabel, *InfoLabel, *UseLabel, *YesNoDKLabel, *Question1;
    QWidget *AncientFrame, *PrimerFrame, *EthanolFrame;
    QRadioButton *AncientOptionN, *AncientOptionY, *AncientOptionDK;
    QRadioButton *PrimerOptionN, *PrimerOptionY, *PrimerOptionDK;
    QRadioButton *EthanolOptionN, *EthanolOptionY, *EthanolOptionDK;
    QGroupBox* Frame1;
    QLabel *amplifyLabel, *amplifyLabel2, *stutterLabel, *stutterLabel2;
    std::vector<LocusRow> Rows;  // one per locus
    QPushButton *PrevButton, *NextButton, *CancelButton, *OKButton;

private:
    void ShowPage();
    void ReadPageBack();
    void Place(QWidget* widget, int left, int top, int width, int height);
    // Three options under the words of a heading label, in a frame at the label's columns.
    std::vector<QRadioButton*> Options(QWidget* frame, const QLabel* heading,
                                       const std::vector<QString>& words, const QString& tip);

    std::vector<std::string> locusNames_;
    std::function<frmAnalysisResults*()> resultsScreen_;
    Int16 lastLocus_;
    std::vector<Int16> generalAnswers_;
    std::vector<std::array<Int16, 3>> locusAnswers_;
    UserInfoPaging paging_;
};

}  // namespace tavrelle
