#include "nulls/screens/frmGenotypes.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "nulls/GenotypeListText.h"
#include "nulls/NullAlleleEstimates.h"
#include "widgets/ShownText.h"

namespace tavrelle {

frmGenotypes::frmGenotypes(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Adjusted Genotypes");
    GenotypesText = new QPlainTextEdit(this);
    GenotypesText->setReadOnly(true);
    GenotypesText->setTabStopDistance(40);
    Label1 = new QLabel("Correction algorithm", this);
    AdjustCombo = new QComboBox(this);
    for (const char* name : kNullMethodNames)
        AdjustCombo->addItem(name);
    SelectAllButton = new QPushButton("Select &All", this);
    MoreInfoButton = new QPushButton("&More Info", this);
    CloseButton = new QPushButton("&Close", this);
    auto* layout = new QGridLayout(this);
    layout->addWidget(Label1, 0, 0);
    layout->addWidget(AdjustCombo, 0, 1);
    layout->addWidget(GenotypesText, 1, 0, 1, 4);
    layout->addWidget(SelectAllButton, 2, 0);
    layout->addWidget(MoreInfoButton, 2, 2);
    layout->addWidget(CloseButton, 2, 3);
    layout->setRowStretch(1, 1);
    resize(420, 520);
    connect(AdjustCombo, &QComboBox::currentIndexChanged, this,
            [this](int method) { DisplayGenotypes(locus_, method); });
    connect(SelectAllButton, &QPushButton::clicked, this, [this] {
        GenotypesText->selectAll();
        GenotypesText->setFocus();
    });
    connect(MoreInfoButton, &QPushButton::clicked, this, [this] {
        if (moreInfo) moreInfo();
    });
    connect(CloseButton, &QPushButton::clicked, this, &QDialog::close);
}

void frmGenotypes::CorrectedGenotypes(std::vector<std::string> locusNames,
                                      std::vector<std::array<AdjustedGenotypeList, 4>> table) {
    names_ = std::move(locusNames);
    table_ = std::move(table);
}

void frmGenotypes::DisplayGenotypes(int locus, int method) {
    locus_ = locus;
    if (locus < 0 || static_cast<std::size_t>(locus) >= table_.size() || method < 0 || method > 3)
        return;
    const auto at = static_cast<std::size_t>(locus);
    GenotypesText->setPlainText(
        ShownText(GenotypeListText(names_[at], table_[at][static_cast<std::size_t>(method)])));
}

}  // namespace tavrelle
