#include "nulls/screens/frmLikelihood.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPdfWriter>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QSvgGenerator>
#include <QTableWidget>
#include <QThread>
#include <QVBoxLayout>
#include <array>
#include <cmath>

#include "nulls/EstimateWords.h"

namespace tavrelle {

namespace {

const std::array<QColor, kEstimateCount> kColours = {
    QColor(0x1f, 0x77, 0xb4), QColor(0xff, 0x7f, 0x0e), QColor(0x2c, 0xa0, 0x2c),
    QColor(0xd6, 0x27, 0x28), QColor(0x94, 0x67, 0xbd), QColor(0x8c, 0x56, 0x4b),
    QColor(0x17, 0xbe, 0xcf), QColor(0xe3, 0x77, 0xc2)};

QString Number(double value) {
    return std::isfinite(value) ? QString::number(value, 'f', 3) : QString("–");
}

QString WithInterval(double value, const Interval& interval) {
    if (!std::isfinite(interval.low)) return Number(value);
    return QString("%1 [%2, %3]").arg(Number(value), Number(interval.low), Number(interval.high));
}

}  // namespace

LikelihoodForestPlot::LikelihoodForestPlot(QWidget* parent) : QWidget(parent) {
    setMinimumHeight(260);
}

void LikelihoodForestPlot::SetEstimates(const PopulationEstimates* estimates) {
    estimates_ = estimates;
    update();
}

void LikelihoodForestPlot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    draw(painter, QRectF(rect()));
}

void LikelihoodForestPlot::draw(QPainter& painter, QRectF area) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QFontMetricsF metrics(painter.font());
    const double line = metrics.height();
    if (!estimates_ || estimates_->loci.empty()) {
        painter.drawText(area, Qt::AlignCenter, "No estimates yet.");
        painter.restore();
        return;
    }
    // The scale spans every finite estimate and interval end, and 0.
    double low = 0;
    double high = 0.1;
    for (const LocusEstimates& locus : estimates_->loci) {
        for (std::size_t e = 0; e < kEstimateCount; ++e) {
            for (double v : {locus.estimates[e], locus.intervals[e].low, locus.intervals[e].high})
                if (std::isfinite(v)) low = std::min(low, v), high = std::max(high, v);
        }
    }
    low = std::floor(low * 10) / 10;
    high = std::ceil(high * 10) / 10;
    double nameWidth = 0;
    for (const LocusEstimates& locus : estimates_->loci)
        nameWidth =
            std::max(nameWidth, metrics.horizontalAdvance(QString::fromStdString(locus.name)));
    const QRectF plot(area.left() + nameWidth + 12, area.top() + 2 * line + 4,
                      area.width() - nameWidth - 24, area.height() - 4 * line - 8);
    auto x = [&](double v) { return plot.left() + (v - low) / (high - low) * plot.width(); };

    // Legend along the top.
    double at = plot.left();
    for (std::size_t e = 0; e < kEstimateCount; ++e) {
        painter.setPen(QPen(kColours[e], 2));
        painter.drawLine(QPointF(at, area.top() + line * 0.7),
                         QPointF(at + 14, area.top() + line * 0.7));
        painter.setPen(Qt::black);
        painter.drawText(QPointF(at + 18, area.top() + line), kEstimateLabels[e]);
        at += 30 + metrics.horizontalAdvance(kEstimateLabels[e]);
    }
    // Axis and its ticks every 0.1.
    painter.setPen(Qt::black);
    painter.drawLine(plot.bottomLeft(), plot.bottomRight());
    for (double t = low; t <= high + 1e-9; t += 0.1) {
        painter.setPen(QPen(QColor(std::abs(t) < 1e-9 ? 90 : 220, std::abs(t) < 1e-9 ? 90 : 220,
                                   std::abs(t) < 1e-9 ? 90 : 220)));
        painter.drawLine(QPointF(x(t), plot.top()), QPointF(x(t), plot.bottom()));
        painter.setPen(Qt::black);
        const QString label = QString::number(t, 'f', 1);
        painter.drawText(QPointF(x(t) - metrics.horizontalAdvance(label) / 2, plot.bottom() + line),
                         label);
    }
    painter.drawText(QRectF(plot.left(), plot.bottom() + line + 2, plot.width(), line),
                     Qt::AlignCenter, "Null allele frequency (95% intervals)");

    const double row = plot.height() / static_cast<double>(estimates_->loci.size());
    for (std::size_t l = 0; l < estimates_->loci.size(); ++l) {
        const LocusEstimates& locus = estimates_->loci[l];
        const double top = plot.top() + row * static_cast<double>(l);
        painter.setPen(Qt::black);
        painter.drawText(QRectF(area.left(), top, nameWidth + 6, row),
                         Qt::AlignRight | Qt::AlignVCenter, QString::fromStdString(locus.name));
        for (std::size_t e = 0; e < kEstimateCount; ++e) {
            const double y = top + row * (static_cast<double>(e) + 1) / (kEstimateCount + 1);
            painter.setPen(QPen(kColours[e], 1.5));
            const Interval& i = locus.intervals[e];
            if (std::isfinite(i.low) && std::isfinite(i.high))
                painter.drawLine(QPointF(x(i.low), y), QPointF(x(i.high), y));
            if (std::isfinite(locus.estimates[e])) {
                painter.setBrush(kColours[e]);
                painter.drawEllipse(QPointF(x(locus.estimates[e]), y), 2.5, 2.5);
            }
        }
    }
    painter.restore();
}

frmLikelihood::frmLikelihood(Table population, std::uint64_t seed, QWidget* parent)
    : QDialog(parent), population_(std::move(population)), seed_(seed) {
    setWindowTitle("Likelihood Estimates");
    ReplicatesBox = new QSpinBox(this);
    ReplicatesBox->setRange(0, 100000);
    ReplicatesBox->setSingleStep(100);
    ReplicatesBox->setValue(1000);
    ReplicatesBox->setToolTip("Bootstrap replicates for the 95% intervals; 0 for none");
    ComputeButton = new QPushButton("&Compute", this);
    SavePlotButton = new QPushButton("&Save Plot...", this);
    CloseButton = new QPushButton("&Close", this);
    EstimatesTable = new QTableWidget(this);
    EstimatesTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    InbreedingLabel = new QLabel(this);
    InbreedingLabel->setWordWrap(true);
    InbreedingLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Plot = new LikelihoodForestPlot(this);

    auto* controls = new QHBoxLayout;
    controls->addWidget(new QLabel("Bootstrap replicates:", this));
    controls->addWidget(ReplicatesBox);
    controls->addWidget(ComputeButton);
    controls->addStretch();
    controls->addWidget(SavePlotButton);
    controls->addWidget(CloseButton);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(controls);
    layout->addWidget(InbreedingLabel);
    layout->addWidget(EstimatesTable, 1);
    layout->addWidget(Plot, 1);
    resize(1000, 720);

    connect(ComputeButton, &QPushButton::clicked, this, &frmLikelihood::Compute);
    connect(CloseButton, &QPushButton::clicked, this, &QDialog::close);
    connect(SavePlotButton, &QPushButton::clicked, this, [this] {
        const QString file = QFileDialog::getSaveFileName(this, "Save Plot", "forest.png",
                                                          "Pictures (*.png *.svg *.pdf)");
        if (!file.isEmpty()) SavePlot(file.toStdString());
    });
    Compute();
}

frmLikelihood::~frmLikelihood() {
    if (worker_) worker_->wait();
}

void frmLikelihood::Compute() {
    if (worker_) return;
    ComputeButton->setEnabled(false);
    InbreedingLabel->setText("Computing...");
    auto computing = std::make_shared<PopulationEstimates>();
    const LikelihoodSettings settings{seed_, ReplicatesBox->value(), 0};
    worker_ = QThread::create([computing, settings, this] {
        *computing = EstimateNullAllelesAndInbreeding(population_, settings);
    });
    connect(worker_, &QThread::finished, this, [this, computing] {
        result_ = std::move(*computing);
        worker_->deleteLater();
        worker_ = nullptr;
        ShowResult();
    });
    worker_->start();
}

void frmLikelihood::ShowResult() {
    const InbreedingResult& f = result_.inbreeding;
    // The log-likelihoods the choice rests on (least AIC = 2 parameters - 2 log L).
    QStringList fits;
    for (std::size_t m = 0; m < f.logLikelihoods.size(); ++m) {
        const double logL = f.logLikelihoods[m];
        fits << (std::isfinite(logL) ? QString("%1 %2 (%3 parameters, AIC %4)")
                                           .arg(kNestedModelNames[m], QString::number(logL, 'f', 1))
                                           .arg(f.parameters[m])
                                           .arg(2.0 * f.parameters[m] - 2 * logL, 0, 'f', 1)
                                     : QString("%1 impossible (blanks)").arg(kNestedModelNames[m]));
    }
    // The verdict itself says when F's interval includes 0 ("No clear evidence of inbreeding").
    InbreedingLabel->setText(QString("Model with the least AIC: %1.  %2\nLog-likelihoods: %3.")
                                 .arg(kNestedModelNames[static_cast<std::size_t>(f.model)],
                                      QString::fromStdString(f.verdict), fits.join(", ")));
    EstimatesTable->clear();
    EstimatesTable->setRowCount(static_cast<int>(result_.loci.size()));
    EstimatesTable->setColumnCount(static_cast<int>(kEstimateCount) + 1);
    QStringList headers;
    for (const char* label : kEstimateLabels)
        headers << label;
    headers << "Failure rate";
    EstimatesTable->setHorizontalHeaderLabels(headers);
    const QString negative = kNegativeEstimateNote;
    for (int e = 0; e < 4; ++e)
        EstimatesTable->horizontalHeaderItem(e)->setToolTip(negative);
    EstimatesTable->horizontalHeaderItem(static_cast<int>(kEmFailure))
        ->setToolTip("Null allele frequency when blanks may also be failed amplifications");
    EstimatesTable->horizontalHeaderItem(static_cast<int>(kEstimateCount))
        ->setToolTip("Share of samples whose amplification failed, whatever they carry");
    QStringList names;
    for (std::size_t l = 0; l < result_.loci.size(); ++l) {
        const LocusEstimates& locus = result_.loci[l];
        names << QString::fromStdString(locus.name);
        for (std::size_t e = 0; e < kEstimateCount; ++e) {
            auto* item = new QTableWidgetItem(WithInterval(locus.estimates[e], locus.intervals[e]));
            if (locus.estimates[e] < 0) item->setToolTip(negative);
            EstimatesTable->setItem(static_cast<int>(l), static_cast<int>(e), item);
        }
        EstimatesTable->setItem(
            static_cast<int>(l), static_cast<int>(kEstimateCount),
            new QTableWidgetItem(WithInterval(locus.failureRate, locus.failureInterval)));
    }
    EstimatesTable->setVerticalHeaderLabels(names);
    EstimatesTable->resizeColumnsToContents();
    WidenToTable();
    Plot->SetEstimates(&result_);
    ComputeButton->setEnabled(true);
    emit Computed();
}

// Eight estimates and a failure rate with intervals are wider than the window's first size: the
// window grows to show every column, as far as the screen allows.
void frmLikelihood::WidenToTable() {
    int needed = EstimatesTable->verticalHeader()->width() + 2 * EstimatesTable->frameWidth();
    for (int column = 0; column < EstimatesTable->columnCount(); ++column)
        needed += EstimatesTable->columnWidth(column);
    needed += width() - EstimatesTable->width();  // the margins around the table
    const QScreen* shown = screen();
    const int most = shown ? shown->availableGeometry().width() : needed;
    if (needed > width()) resize(std::min(needed, std::max(most, width())), height());
}

bool frmLikelihood::SavePlot(const std::string& path) const {
    const QString file = QString::fromStdString(path);
    const QString suffix = QFileInfo(file).suffix().toLower();
    const QSize size(900, std::max(400, 60 + 70 * static_cast<int>(result_.loci.size())));
    const QRectF area(QPointF(0, 0), QSizeF(size));
    if (suffix == "svg") {
        QSvgGenerator svg;
        svg.setFileName(file);
        svg.setSize(size);
        svg.setViewBox(area);
        svg.setTitle(windowTitle());
        QPainter painter(&svg);
        Plot->draw(painter, area);
        painter.end();
        return QFileInfo::exists(file);
    }
    if (suffix == "pdf") {
        QPdfWriter pdf(file);
        pdf.setPageSize(QPageSize(QSizeF(size), QPageSize::Point));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        pdf.setResolution(72);
        pdf.setTitle(windowTitle());
        QPainter painter(&pdf);
        Plot->draw(painter, area);
        painter.end();
        return QFileInfo::exists(file);
    }
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    Plot->draw(painter, area);
    painter.end();
    return image.save(file, "PNG");
}

}  // namespace tavrelle
