#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "base/Prompter.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tavrelle {

// "Excel Sheet Name": which sheet of a workbook holds the data.
class frmSheetDialog : public QDialog {
    Q_OBJECT
public:
    // The workbook's sheet names, when known, are offered to pick from; a name can still be
    // typed.
    explicit frmSheetDialog(Prompter& prompter, const std::vector<std::string>& sheetNames = {},
                            QWidget* parent = nullptr);

    // The sheet to read; empty after Cancel.
    const std::string& SheetName() const { return sheetName_; }

    void OKButton_Click();

    QLabel* SheetLabel;
    QComboBox* SheetList;  // the names offered, with SheetText as its editor
    QLineEdit* SheetText;
    QPushButton *OKButton, *CancelButton;

private:
    Prompter& prompter_;
    std::string sheetName_;
};

}  // namespace tavrelle
