#pragma once

#include <QDialog>

class QLabel;
class QPushButton;
class QTableWidget;

namespace tavrelle {

// Shown when a sheet cannot be used: the layout a sheet must have, drawn as a small filled sheet
// of two populations.
class frmExcelExample : public QDialog {
    Q_OBJECT
public:
    explicit frmExcelExample(QWidget* parent = nullptr);

    QLabel *ExcelLabel1, *ExcelLabel2;
    QTableWidget* ExcelPicture;
    QPushButton* OKButton;
};

}  // namespace tavrelle
