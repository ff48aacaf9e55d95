#pragma once

#include <QDialog>
#include <optional>
#include <string>
#include <vector>

#include "base/Int16.h"
#include "base/Prompter.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace tavrelle {

// "Create an empty DataGrid": how many loci a typed population has.
class frmNewGrid : public QDialog {
    Q_OBJECT
public:
    frmNewGrid(Prompter& prompter, QWidget* parent = nullptr);

    // The locus names after OK ("Locus 1", ...), nothing after Cancel.
    const std::optional<std::vector<std::string>>& Loci() const { return loci_; }
    // A typed count that cannot make a grid (0 loci, or too many for the columns) is a program
    // error; the dialog closes and hands it to the command that opened it.
    const std::optional<ProgramError>& Error() const { return error_; }

    void VScroll1_Change(int position);
    void OKButton_Click();
    void CancelButton_Click();

    QLineEdit* CountText;
    QScrollBar* VScroll1;
    QLabel* LocusCountLabel;
    QPushButton *OKButton, *CancelButton;

private:
    Prompter& prompter_;
    Int16 count_ = 1;
    std::optional<std::vector<std::string>> loci_;
    std::optional<ProgramError> error_;
};

}  // namespace tavrelle
