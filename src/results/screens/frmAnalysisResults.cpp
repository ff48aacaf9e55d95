#include "results/screens/frmAnalysisResults.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "nulls/NullAlleleEstimates.h"

namespace tavrelle {

namespace {

constexpr int kRowHeight = 104;
constexpr int kHeadHeight = 26;

QString Shown(const std::string& text) {
    return QString::fromStdString(text).replace("\r\n", "\n");
}

QFrame* Column(QWidget* parent) {
    auto* frame = new QFrame(parent);
    frame->setFrameShape(QFrame::StyledPanel);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    return frame;
}

QLabel* Head(const QString& text, QFrame* frame) {
    auto* label = new QLabel(text, frame);
    label->setFixedHeight(kHeadHeight);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    frame->layout()->addWidget(label);
    return label;
}

QPlainTextEdit* Cell(QFrame* frame) {
    auto* text = new QPlainTextEdit(frame);
    text->setReadOnly(true);
    text->setFixedHeight(kRowHeight);
    frame->layout()->addWidget(text);
    return text;
}

}  // namespace

frmAnalysisResults::frmAnalysisResults(std::vector<std::string> locusNames, QWidget* parent)
    : QDialog(parent), locusNames_(std::move(locusNames)) {
    setWindowTitle("Analysis Of Results");

    LocusTextBox = new QLineEdit(this);
    LocusTextBox->setReadOnly(true);
    PrevButton = new QPushButton("<", this);
    NextButton = new QPushButton(">", this);
    PrevButton->setToolTip("Previous locus");
    NextButton->setToolTip("Next locus");
    PrevButton->setFixedWidth(40);
    NextButton->setFixedWidth(40);
    auto* locusRow = new QHBoxLayout;
    locusRow->addWidget(new QLabel("Locus:", this));
    locusRow->addWidget(PrevButton);
    locusRow->addWidget(LocusTextBox);
    locusRow->addWidget(NextButton);
    locusRow->addStretch(1);

    // The evidence grid: a row label, then the yes and no marks.
    YesNoFrame = Column(this);
    auto* marks = new QWidget(YesNoFrame);
    auto* grid = new QGridLayout(marks);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(4);
    auto* yes = new QLabel("Yes", marks);
    auto* no = new QLabel("No", marks);
    yes->setFixedHeight(kHeadHeight);
    no->setFixedHeight(kHeadHeight);
    grid->addWidget(yes, 0, 1, Qt::AlignHCenter);
    grid->addWidget(no, 0, 2, Qt::AlignHCenter);
    HmzXSLabel = new QLabel("Evidence of homozygote excess", marks);
    NullLabel = new QLabel("Evidence of null alleles", marks);
    LADLabel = new QLabel("Evidence of large allele dropout", marks);
    StutLabel = new QLabel("Evidence of stuttering", marks);
    const std::array<QLabel*, 4> rowLabels{HmzXSLabel, NullLabel, LADLabel, StutLabel};
    for (int i = 0; i < 4; ++i) {
        const auto at = static_cast<std::size_t>(i);
        rowLabels[at]->setWordWrap(true);
        rowLabels[at]->setFixedSize(130, kRowHeight);
        YesTextBox[at] = new QLineEdit(marks);
        NoTextBox[at] = new QLineEdit(marks);
        for (QLineEdit* box : {YesTextBox[at], NoTextBox[at]}) {
            box->setReadOnly(true);
            box->setAlignment(Qt::AlignCenter);
            box->setFixedWidth(34);
        }
        grid->addWidget(rowLabels[at], i + 1, 0);
        grid->addWidget(YesTextBox[at], i + 1, 1);
        grid->addWidget(NoTextBox[at], i + 1, 2);
    }
    YesNoFrame->layout()->addWidget(marks);

    InterpFrame = Column(this);
    InterpLabel = Head("Interpretation", InterpFrame);
    UserFrame = Column(this);
    UserLabel = Head("User supplied information", UserFrame);
    RecomFrame = Column(this);
    RecomLabel = Head("Recommendations", RecomFrame);
    for (std::size_t i = 0; i < 4; ++i) {
        InterpText[i] = Cell(InterpFrame);
        UserText[i] = Cell(UserFrame);
        RecomText[i] = Cell(RecomFrame);
    }

    auto* columns = new QHBoxLayout;
    columns->addWidget(YesNoFrame);
    columns->addWidget(InterpFrame, 1);
    columns->addWidget(UserFrame, 1);
    columns->addWidget(RecomFrame, 1);

    NullButton = new QPushButton("&Display", this);
    NullButton->setToolTip("Display the estimated null allele frequencies of this locus");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(NullButton);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(locusRow);
    layout->addLayout(columns);
    layout->addLayout(buttons);
    resize(1080, 620);

    // Load: the first locus, Prev off, Next on with two loci or more.
    if (!locusNames_.empty()) LocusTextBox->setText(QString::fromStdString(locusNames_.front()));
    PrevButton->setEnabled(false);
    NextButton->setEnabled(locusNames_.size() >= 2);
    NullButton->setVisible(false);
    NullButton->setEnabled(false);

    connect(NextButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { NextButton_Click(); }); });
    connect(PrevButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { PrevButton_Click(); }); });
    connect(NullButton, &QPushButton::clicked, this,
            [this] { Guarded([this] { NullButton_Click(); }); });
}

void frmAnalysisResults::Guarded(const std::function<void()>& command) {
    try {
        command();
    } catch (const ProgramError& error) {
        if (programError) programError(error);
    }
}

void frmAnalysisResults::Interpretation(Int16, const std::array<std::string, 4>& texts) {
    for (std::size_t i = 0; i < 4; ++i)
        InterpText[i]->setPlainText(Shown(texts[i]));
}

void frmAnalysisResults::userInfo(const std::array<std::string, 4>& texts) {
    for (std::size_t i = 0; i < 4; ++i)
        UserText[i]->setPlainText(Shown(texts[i]));
}

void frmAnalysisResults::Recomendation(Int16) {}

void frmAnalysisResults::YesNoValue(const std::array<bool, 4>& values) {
    yesNo_ = values;
}

void frmAnalysisResults::OptionalInfo(const std::vector<Int16>& answers,
                                      const std::vector<std::array<Int16, 3>>& moreAnswers) {
    optionalInfo_ = answers;
    locusAnswers_ = moreAnswers;
}

void frmAnalysisResults::DisplayUserInfo() {
    userInfo(advice_.UserStatements(optionalInfo_));
}

void frmAnalysisResults::DisplayYesNo() {
    if (!yesNo_) throw ProgramError::SubscriptOutOfRange();
    for (std::size_t i = 0; i < 4; ++i) {
        YesTextBox[i]->setText((*yesNo_)[i] ? "X" : "");
        NoTextBox[i]->setText((*yesNo_)[i] ? "" : "X");
    }
    NullButton->setVisible((*yesNo_)[1]);
    NullButton->setEnabled((*yesNo_)[1]);
}

void frmAnalysisResults::ResultsOfAnalysis(bool nulls, bool dropout, bool stutter, bool fourth) {
    const AnalysisAdvice::Texts texts = advice_.Recommendations(nulls, dropout, stutter, fourth);
    for (std::size_t i = 1; i < 4; ++i)
        RecomText[i]->setPlainText(Shown(texts[i]));
}

void frmAnalysisResults::ShowLocus() {
    const std::string& name = locusNames_.at(static_cast<std::size_t>(locusIndex_));
    LocusTextBox->setText(QString::fromStdString(name));
    if (displayInitAnalysis) displayInitAnalysis(name);
    DisplayYesNo();
}

void frmAnalysisResults::NextButton_Click() {
    locusIndex_ = Narrow16(locusIndex_ + 1);
    ShowLocus();
    NextButton->setEnabled(static_cast<std::size_t>(locusIndex_) + 1 < locusNames_.size());
    PrevButton->setEnabled(true);
    ResetRecommendations();
}

void frmAnalysisResults::PrevButton_Click() {
    locusIndex_ = Narrow16(locusIndex_ - 1);
    ShowLocus();
    PrevButton->setEnabled(locusIndex_ > 0);
    NextButton->setEnabled(true);
    ResetRecommendations();
}

void frmAnalysisResults::ResetRecommendations() {
    RecomLabel->setText("Recommendations");
    for (QPlainTextEdit* text : RecomText)
        text->clear();
}

void frmAnalysisResults::NullButton_Click() {
    RecomLabel->setText("Estimated Allele Frequencies");
    RecomText[0]->setPlainText(Shown(NullAlleleFrequency(locusIndex_)));
}

}  // namespace tavrelle
