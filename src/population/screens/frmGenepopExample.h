#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace tavrelle {

// Shown when a file is refused: the layout a Genepop file must have.
class frmGenepopExample : public QDialog {
    Q_OBJECT
public:
    explicit frmGenepopExample(QWidget* parent = nullptr);

    QLabel *GenepopLabel1, *GenepopLabel2;
    QPlainTextEdit* Picture1;
    QPushButton* OKButton;
};

}  // namespace tavrelle
