#pragma once

#include <QDialog>
#include <QWidget>
#include <memory>
#include <string>

#include "nulls/LikelihoodEstimates.h"

class QLabel;
class QPushButton;
class QSpinBox;
class QTableWidget;
class QThread;

namespace tavrelle {

// Estimate and 95% interval of every locus, one colour per estimator.
class LikelihoodForestPlot : public QWidget {
public:
    explicit LikelihoodForestPlot(QWidget* parent = nullptr);
    void SetEstimates(const PopulationEstimates* estimates);
    // The one drawing, for the screen and every file format.
    void draw(QPainter& painter, QRectF area) const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const PopulationEstimates* estimates_ = nullptr;
};

// "Likelihood Estimates": the seven null allele estimates of every locus with their intervals,
// the population's inbreeding coefficient and what it says, and their forest plot.
class frmLikelihood : public QDialog {
    Q_OBJECT
public:
    frmLikelihood(Table population, std::uint64_t seed, QWidget* parent = nullptr);
    ~frmLikelihood() override;

    // Computes afresh with the replicates set, on a worker thread.
    void Compute();
    bool Busy() const { return worker_ != nullptr; }
    // The plot as PNG, SVG or PDF, told by the file name's ending.
    bool SavePlot(const std::string& path) const;

    QSpinBox* ReplicatesBox;
    QPushButton *ComputeButton, *SavePlotButton, *CloseButton;
    QTableWidget* EstimatesTable;
    QLabel* InbreedingLabel;
    LikelihoodForestPlot* Plot;

signals:
    void Computed();

private:
    void ShowResult();
    void WidenToTable();

    Table population_;
    std::uint64_t seed_;
    std::shared_ptr<PopulationEstimates> computing_;
    PopulationEstimates result_;
    QThread* worker_ = nullptr;
};

}  // namespace tavrelle
