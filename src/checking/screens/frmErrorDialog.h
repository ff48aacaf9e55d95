#pragma once

#include <QDialog>

#include "checking/SuspectValues.h"

class QLabel;
class QPushButton;

namespace tavrelle {

// "Possible Errors": what to do with the values the check found suspect.
class frmErrorDialog : public QDialog {
    Q_OBJECT
public:
    explicit frmErrorDialog(QWidget* parent = nullptr);

    ErrorDialogChoice Choice() const { return choice_; }

    QLabel *PossibleLabel, *WarningLabel, *CorrectLabel, *OmitLabel, *ProceedLabel;
    QPushButton *CorrectButton, *OmitButton, *ProceedButton;

private:
    ErrorDialogChoice choice_ = ErrorDialogChoice::Correct;
};

}  // namespace tavrelle
