#include "session/frmSplash.h"
#include "session/Resources.h"

#include <QLabel>
#include <QVBoxLayout>

#include "base/Version.h"

namespace tavrelle {

frmSplash::frmSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint) {
    LoadResources();
    setObjectName("frmSplash");
    setStyleSheet("#frmSplash { background: #23406a; } QLabel { color: #dfe8f3; }");
    auto* icon = new QLabel(this);
    icon->setPixmap(QIcon(":/icons/tavrelle.svg").pixmap(96, 96));
    lblProductName = new QLabel("Tavrelle", this);
    QFont title = lblProductName->font();
    title.setPointSize(28);
    title.setBold(true);
    lblProductName->setFont(title);
    lblVersion = new QLabel(QString("Version ") + kProgramVersion, this);
    auto* about =
        new QLabel("Null alleles, stutter and large allele drop-out\nin microsatellite data", this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(40, 30, 40, 30);
    for (QLabel* label : {icon, lblProductName, lblVersion, about}) {
        label->setAlignment(Qt::AlignCenter);
        layout->addWidget(label);
    }
    resize(460, 300);
}

void frmSplash::keyPressEvent(QKeyEvent*) {
    close();
}
void frmSplash::mousePressEvent(QMouseEvent*) {
    close();
}

}  // namespace tavrelle
