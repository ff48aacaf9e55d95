#pragma once

#include <QWidget>

class QLabel;

namespace tavrelle {

// The splash at start-up: the product's name and version.
class frmSplash : public QWidget {
    Q_OBJECT
public:
    explicit frmSplash(QWidget* parent = nullptr);

    QLabel *lblProductName, *lblVersion;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};

}  // namespace tavrelle
