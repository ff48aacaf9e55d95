#pragma once

#include <QDialog>
#include <string>

#include "base/Prompter.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace tavrelle {

// "Excel Sheet Name": which sheet of a workbook holds the data.
class frmSheetDialog : public QDialog {
    Q_OBJECT
public:
    explicit frmSheetDialog(Prompter& prompter, QWidget* parent = nullptr);

    // The sheet to read; empty after Cancel.
    const std::string& SheetName() const { return sheetName_; }

    void OKButton_Click();

    QLabel* SheetLabel;
    QLineEdit* SheetText;
    QPushButton *OKButton, *CancelButton;

private:
    Prompter& prompter_;
    std::string sheetName_;
};

}  // namespace tavrelle
