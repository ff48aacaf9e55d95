#include "nulls/screens/frmAllNulls.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QResizeEvent>

#include "nulls/EstimateWords.h"
#include "widgets/Twips.h"

namespace tavrelle {

frmAllNulls::frmAllNulls(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Summary Statistics Null Allele Estimates");
    NullTextBox = new QPlainTextEdit(this);
    NullTextBox->setReadOnly(true);
    // The conclusion under the table is a long sentence: it wraps at the window's edge.
    NullTextBox->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    NullTextBox->setTabStopDistance(48);
    // The closed formulas' estimates in the table can be negative.
    NullTextBox->setToolTip(kNegativeEstimateNote);
    HelpButton = new QPushButton("&More Info", this);
    CloseButton = new QPushButton("&Close", this);
    setMinimumSize(TwipsToPixels(3500, this), TwipsToPixels(2200, this));
    resize(TwipsToPixels(9000, this), TwipsToPixels(5000, this));
    connect(CloseButton, &QPushButton::clicked, this, &QDialog::close);
}

void frmAllNulls::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    // Measures of the window in twips, as the screen was laid out.
    const double width = PixelsToTwips(event->size().width(), this);
    const double height = PixelsToTwips(event->size().height(), this);
    auto px = [this](double twips) { return TwipsToPixels(twips, this); };
    NullTextBox->setGeometry(px(80), px(100), px(width - 250), px(height - 1100));
    CloseButton->setGeometry(px(width - 1100), px(height - 900), px(900), px(400));
    HelpButton->setGeometry(px(width - 2200), px(height - 900), px(1000), px(400));
}

}  // namespace tavrelle
