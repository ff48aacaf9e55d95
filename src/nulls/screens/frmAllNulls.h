#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace tavrelle {

// "Summary Statistics Null Allele Estimates": the comparison across loci.
class frmAllNulls : public QDialog {
    Q_OBJECT
public:
    explicit frmAllNulls(QWidget* parent = nullptr);

    QPlainTextEdit* NullTextBox;
    QPushButton *HelpButton, *CloseButton;

protected:
    void resizeEvent(QResizeEvent* event) override;
};

}  // namespace tavrelle
