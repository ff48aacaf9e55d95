#include "analysis/screens/frmProgressBar.h"

#include <QApplication>
#include <QProgressBar>
#include <QVBoxLayout>

namespace tavrelle {

frmProgressBar::frmProgressBar(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Randomising the data. Please wait...");
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setTextVisible(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(ProgressBar1);
    resize(420, 60);
}

void frmProgressBar::maxGraphs(int maximum) {
    ProgressBar1->setMaximum(maximum);
}

void frmProgressBar::CurrentGraph(int value) {
    ProgressBar1->setValue(value);
    ProgressBar1->repaint();
}

void frmProgressBar::Display(int mode) {
    if (mode == 1) {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window != this && window != parentWidget() && window->isVisible())
                window->setEnabled(false);
    }
    show();
    repaint();
}

}  // namespace tavrelle
