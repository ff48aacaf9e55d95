#include "population/screens/frmSheetDialog.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "population/ExcelTexts.h"

namespace tavrelle {

namespace {
QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}
}  // namespace

frmSheetDialog::frmSheetDialog(Prompter& prompter, const std::vector<std::string>& sheetNames,
                               QWidget* parent)
    : QDialog(parent), prompter_(prompter) {
    setWindowTitle(Text(kSheetDialogCaption));
    SheetLabel = new QLabel(Text(kSheetLabel), this);
    SheetList = new QComboBox(this);
    SheetList->setEditable(true);
    SheetList->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string& name : sheetNames)
        SheetList->addItem(QString::fromStdString(name));
    SheetText = SheetList->lineEdit();
    SheetText->setText(Text(kDefaultSheetName));
    OKButton = new QPushButton("OK", this);
    OKButton->setDefault(true);
    CancelButton = new QPushButton("Cancel", this);
    auto* layout = new QGridLayout(this);
    layout->addWidget(SheetLabel, 0, 0, 1, 3);
    layout->addWidget(SheetList, 1, 0, 1, 3);
    layout->addWidget(OKButton, 2, 1);
    layout->addWidget(CancelButton, 2, 2);
    connect(OKButton, &QPushButton::clicked, this, &frmSheetDialog::OKButton_Click);
    connect(CancelButton, &QPushButton::clicked, this, [this] {
        sheetName_.clear();
        reject();
    });
}

void frmSheetDialog::OKButton_Click() {
    if (SheetText->text().isEmpty()) {
        prompter_.Show({std::string(kSheetNameMissing), std::string(kSheetDialogCaption),
                        MessageIcon::Exclamation, MessageButtons::Ok});
        return;
    }
    sheetName_ = SheetText->text().toStdString();
    accept();
}

}  // namespace tavrelle
