#pragma once

#include <QDialog>

class QProgressBar;

namespace tavrelle {

// The progress of a run. The run holds the one thread, so the bar is repainted by hand.
class frmProgressBar : public QDialog {
    Q_OBJECT
public:
    explicit frmProgressBar(QWidget* parent = nullptr);

    void maxGraphs(int maximum);
    void CurrentGraph(int value);
    // With 1: disables every other window but the main one, then shows itself without blocking.
    void Display(int mode);

    QProgressBar* ProgressBar1;
};

}  // namespace tavrelle
