#include "results/screens/frmUserInfo.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "results/screens/frmAnalysisResults.h"
#include "widgets/Twips.h"

namespace tavrelle {

namespace {

constexpr int kFormWidth = 8600;
constexpr int kFrameTop = 2340;
// Below the frame's caption: the two heading lines, then the rows.
constexpr int kHeadTop = 300;
constexpr int kFirstRowTop = 760;
constexpr int kRowStep = 330;
constexpr int kRowHeight = 280;
constexpr int kAmplifyLeft = 4400;
constexpr int kStutterLeft = 6200;

// The index of the checked button, or `none`.
Int16 Checked(const std::vector<QRadioButton*>& options, Int16 none) {
    for (std::size_t i = 0; i < options.size(); ++i)
        if (options[i]->isChecked()) return static_cast<Int16>(i);
    return none;
}

}  // namespace

frmUserInfo::frmUserInfo(std::vector<std::string> locusNames,
                         std::function<frmAnalysisResults*()> resultsScreen, QWidget* parent)
    : QDialog(parent),
      locusNames_(std::move(locusNames)),
      resultsScreen_(std::move(resultsScreen)),
      lastLocus_(Narrow16(static_cast<long long>(locusNames_.size()) - 1)),
      generalAnswers_(4, 0),
      locusAnswers_(locusNames_.size(), std::array<Int16, 3>{0, 0, 0}),
      paging_(lastLocus_) {
    setWindowTitle("Additional Information");

    OptionalLabel = new QLabel("Supplying additional information is optional.", this);
    InfoLabel = new QLabel(
        "This information may help to provide a more accurate analysis of the data.", this);
    UseLabel = new QLabel("Did you use :", this);
    YesNoDKLabel = new QLabel("No    Yes   Don't Know", this);
    Question1 = new QLabel(
        "a) Ancient DNA? \nb) Primers developed for other species? \nc) Ethanol or cold stored "
        "samples that have degraded? ",
        this);
    Question1->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QFont bold = OptionalLabel->font();
    bold.setBold(true);
    OptionalLabel->setFont(bold);
    Place(OptionalLabel, 240, 120, kFormWidth - 480, 300);
    Place(InfoLabel, 240, 420, kFormWidth - 480, 300);
    Place(UseLabel, 240, 840, 2000, 300);
    Place(YesNoDKLabel, 5700, 840, 2600, 300);
    const int lineSpacing = Question1->fontMetrics().lineSpacing();
    Place(Question1, 240, 1140, 5400, 1100);

    // The three study questions, one option group beside each line of Question1.
    const std::vector<QString> generalWords{"No", "Yes", "Don't Know"};
    std::vector<std::vector<QRadioButton*>> general;
    QWidget** frames[] = {&AncientFrame, &PrimerFrame, &EthanolFrame};
    for (int i = 0; i < 3; ++i) {
        QWidget* frame = new QWidget(this);
        *frames[i] = frame;
        frame->setGeometry(YesNoDKLabel->x(), Question1->y() + i * lineSpacing,
                           YesNoDKLabel->width(), lineSpacing);
        general.push_back(Options(frame, YesNoDKLabel, generalWords, QString()));
    }
    AncientOptionN = general[0][0], AncientOptionY = general[0][1], AncientOptionDK = general[0][2];
    PrimerOptionN = general[1][0], PrimerOptionY = general[1][1], PrimerOptionDK = general[1][2];
    EthanolOptionN = general[2][0], EthanolOptionY = general[2][1], EthanolOptionDK = general[2][2];
    const std::array<QString, 3> groupNames{"Ancient", "Primer", "Ethanol"};
    const std::array<QString, 3> suffixes{"N", "Y", "DK"};
    for (std::size_t i = 0; i < 3; ++i) {
        (*frames[i])->setObjectName(groupNames[i] + "Frame");
        for (std::size_t j = 0; j < 3; ++j)
            general[i][j]->setObjectName(groupNames[i] + "Option" + suffixes[j]);
    }

    // The locus rows: height 1400 twips and 330 for each page row after the first.
    Frame1 = new QGroupBox("For each locus", this);
    const int frameHeight = 1400 + kRowStep * std::min<int>(lastLocus_, 9);
    Place(Frame1, 120, kFrameTop, kFormWidth - 240, frameHeight);
    amplifyLabel = new QLabel("Non-amplification", Frame1);
    amplifyLabel2 = new QLabel("No      Yes", Frame1);
    stutterLabel = new QLabel("Stuttering", Frame1);
    stutterLabel2 = new QLabel("None   Mod   High", Frame1);
    Place(amplifyLabel, kAmplifyLeft, kHeadTop, 1700, 220);
    Place(amplifyLabel2, kAmplifyLeft, kHeadTop + 220, 1700, 220);
    Place(stutterLabel, kStutterLeft, kHeadTop, 1900, 220);
    Place(stutterLabel2, kStutterLeft, kHeadTop + 220, 1900, 220);

    const QString ampTip =
        "Were some samples not amplified compared to the same sample at another locus?";
    const QString stutTip = "Were there signs of stuttering at this locus?";
    for (std::size_t i = 0; i < locusNames_.size(); ++i) {
        LocusRow row{};
        row.label = new QLabel(
            "Does " + QString::fromStdString(locusNames_[i]) + " display signs of :", Frame1);
        row.label->setObjectName("lbl" + QString::number(i));
        row.ampFrame = new QWidget(Frame1);
        row.ampFrame->setObjectName("ampFrame");
        Place(row.ampFrame, kAmplifyLeft, kFirstRowTop, 1700, kRowHeight);
        const std::vector<QRadioButton*> amp =
            Options(row.ampFrame, amplifyLabel2, {"No", "Yes"}, ampTip);
        row.ampOptionN = amp[0];
        row.ampOptionY = amp[1];
        row.stutFrame = new QWidget(Frame1);
        row.stutFrame->setObjectName("stutFrame");
        Place(row.stutFrame, kStutterLeft, kFirstRowTop, 1900, kRowHeight);
        const std::vector<QRadioButton*> stut =
            Options(row.stutFrame, stutterLabel2, {"None", "Mod", "High"}, stutTip);
        row.stutOptionNone = stut[0];
        row.stutOptionMod = stut[1];
        row.stutOptionHigh = stut[2];
        for (QWidget* widget : {static_cast<QWidget*>(row.label), row.ampFrame, row.stutFrame})
            widget->hide();
        Rows.push_back(row);
    }

    PrevButton = new QPushButton("Prev 10", Frame1);
    NextButton = new QPushButton("Next 10", Frame1);
    Place(PrevButton, 240, frameHeight - 350, 1100, 320);
    Place(NextButton, 1440, frameHeight - 350, 1100, 320);
    PrevButton->setEnabled(false);
    NextButton->setEnabled(false);

    CancelButton = new QPushButton("&Cancel", this);
    OKButton = new QPushButton("OK", this);
    OKButton->setDefault(true);
    const int buttonsTop = kFrameTop + frameHeight + 180;
    Place(CancelButton, kFormWidth - 2760, buttonsTop, 1200, 400);
    Place(OKButton, kFormWidth - 1440, buttonsTop, 1200, 400);
    setFixedSize(TwipsToPixels(kFormWidth, this), TwipsToPixels(buttonsTop + 400 + 180, this));

    ShowPage();

    connect(NextButton, &QPushButton::clicked, this, &frmUserInfo::NextButton_Click);
    connect(PrevButton, &QPushButton::clicked, this, &frmUserInfo::PrevButton_Click);
    connect(OKButton, &QPushButton::clicked, this, &frmUserInfo::OKButton_Click);
    connect(CancelButton, &QPushButton::clicked, this, &frmUserInfo::CancelButton_Click);
}

void frmUserInfo::Place(QWidget* widget, int left, int top, int width, int height) {
    widget->setGeometry(TwipsToPixels(left, this), TwipsToPixels(top, this),
                        TwipsToPixels(width, this), TwipsToPixels(height, this));
}

std::vector<QRadioButton*> frmUserInfo::Options(QWidget* frame, const QLabel* heading,
                                                const std::vector<QString>& words,
                                                const QString& tip) {
    // Each option stands centred under its word of the heading.
    const QFontMetrics metrics = heading->fontMetrics();
    const QString text = heading->text();
    std::vector<QRadioButton*> options;
    qsizetype from = 0;
    for (const QString& word : words) {
        const qsizetype at = text.indexOf(word, from);
        from = at + word.size();
        auto* option = new QRadioButton(frame);
        option->setToolTip(tip);
        const QSize size = option->sizeHint();
        const int centre =
            metrics.horizontalAdvance(text.left(at)) + metrics.horizontalAdvance(word) / 2;
        option->setGeometry(centre - size.width() / 2, (frame->height() - size.height()) / 2,
                            size.width(), size.height());
        options.push_back(option);
    }
    return options;
}

void frmUserInfo::ShowPage() {
    // The paging has filled the page; make its rows visible with the answers held for them.
    for (Int16 locus = paging_.First(); locus < paging_.Position(); ++locus) {
        const auto at = static_cast<std::size_t>(locus);
        const int pageRow = locus - paging_.First();
        LocusRow& row = Rows.at(at);
        const int top = kFirstRowTop + kRowStep * pageRow;
        Place(row.label, 240, top, kAmplifyLeft - 360, kRowHeight);
        for (QWidget* frame : {row.ampFrame, row.stutFrame})
            frame->move(frame->x(), TwipsToPixels(top, this));
        (locusAnswers_[at][0] == 1 ? row.ampOptionY : row.ampOptionN)->setChecked(true);
        const Int16 stutter = locusAnswers_[at][1];
        (stutter == 2   ? row.stutOptionHigh
         : stutter == 1 ? row.stutOptionMod
                        : row.stutOptionNone)
            ->setChecked(true);
        for (QWidget* widget : {static_cast<QWidget*>(row.label), row.ampFrame, row.stutFrame})
            widget->show();
    }
    NextButton->setEnabled(paging_.NextEnabled());
    PrevButton->setEnabled(paging_.PrevEnabled());
}

void frmUserInfo::ReadPageBack() {
    for (Int16 locus = paging_.First(); locus < paging_.Position(); ++locus) {
        const auto at = static_cast<std::size_t>(locus);
        LocusRow& row = Rows.at(at);
        locusAnswers_[at][1] =
            Checked({row.stutOptionNone, row.stutOptionMod, row.stutOptionHigh}, 0);
        locusAnswers_[at][0] = Checked({row.ampOptionN, row.ampOptionY}, 0);
        for (QWidget* widget : {static_cast<QWidget*>(row.label), row.ampFrame, row.stutFrame})
            widget->hide();
    }
}

void frmUserInfo::NextButton_Click() {
    ReadPageBack();
    paging_.Next();
    ShowPage();
}

void frmUserInfo::PrevButton_Click() {
    ReadPageBack();
    paging_.Prev();
    ShowPage();
}

void frmUserInfo::OKButton_Click() {
    generalAnswers_[0] = Checked({AncientOptionN, AncientOptionY, AncientOptionDK}, 0);
    generalAnswers_[1] = Checked({PrimerOptionN, PrimerOptionY, PrimerOptionDK}, 0);
    generalAnswers_[2] = Checked({EthanolOptionN, EthanolOptionY, EthanolOptionDK}, 0);
    ReadPageBack();
    if (frmAnalysisResults* results = resultsScreen_ ? resultsScreen_() : nullptr)
        results->OptionalInfo(generalAnswers_, locusAnswers_);
    accept();
}

void frmUserInfo::CancelButton_Click() {
    generalAnswers_.assign(4, 3);
    locusAnswers_.assign(locusNames_.size(), std::array<Int16, 3>{0, 0, 2});
    reject();
}

}  // namespace tavrelle
