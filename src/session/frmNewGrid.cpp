#include "session/frmNewGrid.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include "base/Numbers.h"

namespace tavrelle {

frmNewGrid::frmNewGrid(Prompter& prompter, QWidget* parent) : QDialog(parent), prompter_(prompter) {
    setWindowTitle("Create an empty DataGrid");
    LocusCountLabel = new QLabel("Enter the number of loci in this new population:", this);
    CountText = new QLineEdit("1", this);
    CountText->setFixedWidth(60);
    // The scale runs downwards from its maximum, so that the up arrow adds a locus.
    VScroll1 = new QScrollBar(Qt::Vertical, this);
    VScroll1->setRange(1, 200);
    VScroll1->setSingleStep(1);
    VScroll1->setValue(200);
    VScroll1->setFixedHeight(CountText->sizeHint().height());
    OKButton = new QPushButton("OK", this);
    OKButton->setDefault(true);
    CancelButton = new QPushButton("Cancel", this);
    auto* layout = new QGridLayout(this);
    layout->addWidget(LocusCountLabel, 0, 0, 1, 3);
    layout->addWidget(CountText, 1, 0);
    layout->addWidget(VScroll1, 1, 1);
    layout->addWidget(OKButton, 2, 1);
    layout->addWidget(CancelButton, 2, 2);
    connect(VScroll1, &QScrollBar::valueChanged, this, &frmNewGrid::VScroll1_Change);
    connect(OKButton, &QPushButton::clicked, this, &frmNewGrid::OKButton_Click);
    connect(CancelButton, &QPushButton::clicked, this, &frmNewGrid::CancelButton_Click);
}

void frmNewGrid::VScroll1_Change(int position) {
    count_ = static_cast<Int16>(201 - position);
    // At the far end the count is 200 but the text still shows 199, and OK refuses it.
    if (count_ >= 1 && count_ < 200) CountText->setText(QString::number(count_));
}

void frmNewGrid::OKButton_Click() {
    const Message refusal{"Please select a number between 1 and 200.", "", MessageIcon::Exclamation,
                          MessageButtons::Ok};
    const std::string text = CountText->text().toStdString();
    bool whole = false;
    try {
        whole = IsWholeNumber(text);
    } catch (const ProgramError&) {
    }
    if (!whole) {
        prompter_.Show(refusal);
        return;
    }
    if (count_ < 1 || count_ >= 200) {
        CountText->setText("1");
        prompter_.Show(refusal);
        return;
    }
    // The test above is on the scroll's count; a typed number is taken as it stands.
    const std::int32_t typed = TextToInt32(text);
    if (typed < 1 || typed > 32767 / 2 - 2) {
        error_ = typed < 1 ? ProgramError::SubscriptOutOfRange() : ProgramError::Overflow();
        reject();
        return;
    }
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < typed; ++i)
        names.push_back("Locus " + std::to_string(i + 1));
    loci_ = std::move(names);
    accept();
}

void frmNewGrid::CancelButton_Click() {
    loci_.reset();
    reject();
}

}  // namespace tavrelle
