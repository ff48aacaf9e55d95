#pragma once

#include <QDialog>
#include <functional>

#include "run/AlleleAnalysis.h"

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace tavrelle {

// "Estimated Allele Frequencies": the adjusted frequencies of one locus at a time.
class frmNullAllele : public QDialog {
    Q_OBJECT
public:
    frmNullAllele(const AlleleAnalysis& analysis, QWidget* parent = nullptr);

    static constexpr const char* kNoEvidence =
        "There is no significant evidence for the presence of a null allele at this locus.\r\n\r\n"
        "The estimated allele frequencies have therefore not been calculated.";

    void ShowLocus(int locus);

    std::function<void(int locus)> displayGenotypes;
    std::function<void()> moreInfo;

    QLineEdit* LocusTextBox;
    QPlainTextEdit* NullText;
    QPushButton *DisplayGenosButton, *PrevButton, *NextButton, *HelpButton, *CloseButton;

private:
    std::vector<std::string> names_;
    std::vector<std::string> texts_;  // the adjusted frequency text of each locus
    int locus_ = 0;
};

}  // namespace tavrelle
