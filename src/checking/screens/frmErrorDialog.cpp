#include "checking/screens/frmErrorDialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "checking/screens/ErrorDialogTexts.h"

namespace tavrelle {

namespace {
QString Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size())).replace("\r\n", "\n");
}
}  // namespace

frmErrorDialog::frmErrorDialog(QWidget* parent) : QDialog(parent) {
    setWindowTitle(Text(kErrorDialogCaption));
    auto* layout = new QGridLayout(this);
    PossibleLabel = new QLabel(Text(kPossibleLabel), this);
    WarningLabel = new QLabel(Text(kWarningLabel), this);
    QFont bold = WarningLabel->font();
    bold.setBold(true);
    WarningLabel->setFont(bold);
    CorrectButton = new QPushButton(Text(kCorrectButton), this);
    OmitButton = new QPushButton(Text(kOmitButton), this);
    ProceedButton = new QPushButton(Text(kProceedButton), this);
    CorrectLabel = new QLabel(Text(kCorrectLabel), this);
    OmitLabel = new QLabel(Text(kOmitLabel), this);
    ProceedLabel = new QLabel(Text(kProceedLabel), this);
    layout->addWidget(PossibleLabel, 0, 0, 1, 2);
    layout->addWidget(WarningLabel, 1, 0, 1, 2);
    layout->addWidget(CorrectButton, 2, 0);
    layout->addWidget(CorrectLabel, 2, 1);
    layout->addWidget(OmitButton, 3, 0);
    layout->addWidget(OmitLabel, 3, 1);
    layout->addWidget(ProceedButton, 4, 0);
    layout->addWidget(ProceedLabel, 4, 1);
    auto choose = [this](ErrorDialogChoice choice) {
        choice_ = choice;
        accept();
    };
    connect(CorrectButton, &QPushButton::clicked, this,
            [=] { choose(ErrorDialogChoice::Correct); });
    connect(OmitButton, &QPushButton::clicked, this, [=] { choose(ErrorDialogChoice::Omit); });
    connect(ProceedButton, &QPushButton::clicked, this,
            [=] { choose(ErrorDialogChoice::Proceed); });
}

}  // namespace tavrelle
