#include "nulls/screens/frmNullAllele.h"

#include <QFontMetricsF>
#include <QGridLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QTextOption>
#include <algorithm>

#include "widgets/ShownText.h"

namespace tavrelle {

namespace {

// The table's rows put two tabs between their values and its heading one between its words, so
// every column needs a stop of its own plus one between: after the widest value, before the
// end of the column's heading, so that a value's second tab and the heading's one tab both reach
// the next column.
QTextOption TableTabs(const QFont& font) {
    const QFontMetricsF metrics(font);
    const double value = metrics.horizontalAdvance("-0.0000");
    const double gap = metrics.horizontalAdvance("   ");
    QList<QTextOption::Tab> tabs;
    double column = 0;
    for (const char* heading :
         {"Class", "Obs. allele freq.", "Velmaret", "Chakraborty", "Brookfield 1"}) {
        const double width = std::max(value, metrics.horizontalAdvance(heading));
        if (tabs.size() > 0)
            tabs.append(QTextOption::Tab(column + (value + width) / 2, QTextOption::LeftTab));
        column += width + gap;
        tabs.append(QTextOption::Tab(column, QTextOption::LeftTab));
    }
    QTextOption option;
    option.setTabs(tabs);
    option.setWrapMode(QTextOption::NoWrap);
    return option;
}

}  // namespace

frmNullAllele::frmNullAllele(const AlleleAnalysis& analysis, QWidget* parent) : QDialog(parent) {
    setWindowTitle("Estimated Allele Frequencies");
    for (const LocusResult& locus : analysis.Loci()) {
        names_.push_back(locus.name);
        texts_.push_back(locus.nulls.adjustedText);
    }
    LocusTextBox = new QLineEdit(this);
    LocusTextBox->setReadOnly(true);
    NullText = new QPlainTextEdit(this);
    NullText->setReadOnly(true);
    NullText->setLineWrapMode(QPlainTextEdit::NoWrap);
    NullText->document()->setDefaultTextOption(TableTabs(NullText->font()));
    DisplayGenosButton = new QPushButton("&Display Genotypes", this);
    PrevButton = new QPushButton("< &Previous", this);
    NextButton = new QPushButton("&Next >", this);
    HelpButton = new QPushButton("&More Info", this);
    CloseButton = new QPushButton("&Close", this);
    auto* layout = new QGridLayout(this);
    layout->addWidget(PrevButton, 0, 0);
    layout->addWidget(LocusTextBox, 0, 1, 1, 2);
    layout->addWidget(NextButton, 0, 3);
    layout->addWidget(NullText, 1, 0, 1, 4);
    layout->addWidget(DisplayGenosButton, 2, 0);
    layout->addWidget(HelpButton, 2, 2);
    layout->addWidget(CloseButton, 2, 3);
    layout->setRowStretch(1, 1);
    setMinimumSize(480, 300);
    resize(640, 400);
    PrevButton->setEnabled(false);
    NextButton->setEnabled(names_.size() > 1);
    connect(NextButton, &QPushButton::clicked, this, [this] {
        ShowLocus(locus_ + 1);
        PrevButton->setEnabled(true);
        NextButton->setEnabled(locus_ + 1 < static_cast<int>(names_.size()));
    });
    connect(PrevButton, &QPushButton::clicked, this, [this] {
        ShowLocus(locus_ - 1);
        NextButton->setEnabled(true);
        PrevButton->setEnabled(locus_ > 0);
    });
    connect(CloseButton, &QPushButton::clicked, this, &QDialog::close);
    connect(DisplayGenosButton, &QPushButton::clicked, this, [this] {
        if (displayGenotypes) displayGenotypes(locus_);
    });
    connect(HelpButton, &QPushButton::clicked, this, [this] {
        if (moreInfo) moreInfo();
    });
    if (!names_.empty()) ShowLocus(0);
}

void frmNullAllele::ShowLocus(int locus) {
    locus_ = locus;
    const auto at = static_cast<std::size_t>(locus);
    LocusTextBox->setText(QString::fromStdString(names_.at(at)));
    const bool evidence = !texts_.at(at).empty();
    NullText->setPlainText(ShownText(evidence ? texts_[at] : kNoEvidence));
    DisplayGenosButton->setEnabled(evidence);
}

}  // namespace tavrelle
