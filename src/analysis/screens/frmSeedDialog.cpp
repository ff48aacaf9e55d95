#include "analysis/screens/frmSeedDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "analysis/SeedText.h"

namespace tavrelle {

frmSeedDialog::frmSeedDialog(std::int32_t& randomSeed, Prompter& prompter,
                             std::function<void()> rerun, QWidget* parent)
    : QDialog(parent), randomSeed_(randomSeed), prompter_(prompter), rerun_(std::move(rerun)) {
    setWindowTitle("Random Number Seed");
    SeedLabel = new QLabel(
        "Click OK to accept the automatically generated seed value (recommended) or enter a "
        "positive integer",
        this);
    SeedLabel->setWordWrap(true);
    SeedTextBox = new QLineEdit(this);
    SeedTextBox->setMaxLength(9);
    SeedTextBox->setText(QString::number(randomSeed_));
    SeedOKButton = new QPushButton("OK", this);
    SeedOKButton->setDefault(true);
    auto* row = new QHBoxLayout;
    row->addWidget(SeedTextBox, 1);
    row->addWidget(SeedOKButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(SeedLabel);
    layout->addLayout(row);
    setFixedWidth(360);
    connect(SeedOKButton, &QPushButton::clicked, this, &frmSeedDialog::SeedOKButton_Click);
}

void frmSeedDialog::SeedOKButton_Click() {
    // The box holds 9 characters at most: that limits the typing, not the rule.
    const SeedReading reading = ParseSeed(SeedTextBox->text().toStdString());
    if (reading.conversionError) {
        // Text that is no number fails in the conversion, before any message.
        error_ = reading.conversionError;
        reject();
        return;
    }
    if (!reading.Accepted()) {
        prompter_.Show(
            {"Please enter a positive integer.", "", MessageIcon::None, MessageButtons::Ok});
        return;
    }
    hide();
    randomSeed_ = reading.seed;
    try {
        if (rerun_) rerun_();
    } catch (const ProgramError& error) {
        error_ = error;
    }
    accept();
}

}  // namespace tavrelle
