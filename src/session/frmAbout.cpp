#include "session/frmAbout.h"
#include "session/Resources.h"

#include <QDir>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>
#include <QtGlobal>

#ifdef Q_OS_WIN
#include <QProcess>
#include <QSettings>
#endif

#include "base/Version.h"

namespace tavrelle {

frmAbout::frmAbout(std::filesystem::path programFolder, QWidget* parent)
    : QDialog(parent), programFolder_(std::move(programFolder)) {
    LoadResources();
    setWindowTitle("About Tavrelle");
    picIcon = new QLabel(this);
    picIcon->setPixmap(QIcon(":/icons/tavrelle.svg").pixmap(64, 64));
    picIcon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    lblTitle = new QLabel("Tavrelle", this);
    QFont title = lblTitle->font();
    title.setPointSizeF(title.pointSizeF() * 1.8);
    title.setBold(true);
    lblTitle->setFont(title);
    lblVersion = new QLabel(QString("Version ") + kProgramVersion, this);
    lblDescription = new QLabel(kDescription, this);
    lblComment = new QLabel(
        "The Chakraborty and Brookfield estimates follow Chakraborty et al. (1992) and "
        "Brookfield (1996). Tavrelle is built with Qt, FreeXL, libgsf, libxlsxwriter, libzip "
        "and expat; our thanks to their authors, and to the population geneticists whose "
        "questions about null alleles shaped the program.",
        this);
    lblAuthor = new QLabel("Written by the Tavrelle developers.", this);
    lblDisclaimer = new QLabel(
        "Copyright \u00a9 the Tavrelle developers. "
        "Free software under the GNU General Public License, version 3 or later. "
        "Tavrelle is provided as it is, without "
        "warranty of any kind. Its verdicts and estimates are statistical guides: check them "
        "against your knowledge of the loci and, where you can, against repeated genotyping.",
        this);
    for (QLabel* label : {lblDescription, lblComment, lblAuthor, lblDisclaimer}) {
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    }
    QFont small = lblDisclaimer->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    lblDisclaimer->setFont(small);

    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    cmdOK = new QPushButton("OK", this);
    cmdOK->setDefault(true);
    cmdSysInfo = new QPushButton("&System Info...", this);

    auto* texts = new QVBoxLayout;
    texts->addWidget(lblTitle);
    texts->addWidget(lblVersion);
    texts->addSpacing(8);
    texts->addWidget(lblDescription);
    texts->addSpacing(6);
    texts->addWidget(lblComment);
    texts->addWidget(lblAuthor);
    texts->addStretch(1);
    auto* top = new QHBoxLayout;
    top->addWidget(picIcon, 0, Qt::AlignTop);
    top->addSpacing(12);
    top->addLayout(texts, 1);
    auto* bottom = new QGridLayout;
    bottom->addWidget(lblDisclaimer, 0, 0, 2, 1);
    bottom->addWidget(cmdOK, 0, 1);
    bottom->addWidget(cmdSysInfo, 1, 1);
    bottom->setColumnStretch(0, 1);
    bottom->setHorizontalSpacing(16);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addWidget(line);
    layout->addLayout(bottom);
    setFixedSize(560, 380);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);
}

QString frmAbout::SystemInformation() const {
    const QString folder = QDir::toNativeSeparators(
        QFileInfo(QString::fromStdString(programFolder_.string())).absoluteFilePath());
    return QString(
               "Tavrelle %1\n\nOperating system: %2\nKernel: %3 %4\nProcessor: %5 "
               "(built for %6)\nHost name: %7\n\nQt: %8 (built with %9)\nProgram folder: %10")
        .arg(kProgramVersion, QSysInfo::prettyProductName(), QSysInfo::kernelType(),
             QSysInfo::kernelVersion(), QSysInfo::currentCpuArchitecture(),
             QSysInfo::buildCpuArchitecture(), QSysInfo::machineHostName(), qVersion(),
             QT_VERSION_STR, folder);
}

void frmAbout::cmdSysInfo_Click() {
#ifdef Q_OS_WIN
    // The system information program, where the registry says it lies.
    QString program = QSettings(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools\MSINFO)",
                                QSettings::NativeFormat)
                          .value("PATH")
                          .toString();
    if (program.isEmpty()) {
        const QString folder =
            QSettings(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools Location)",
                      QSettings::NativeFormat)
                .value("MSINFO")
                .toString();
        if (!folder.isEmpty() && QFileInfo::exists(folder + R"(\MSINFO32.EXE)"))
            program = folder + R"(\MSINFO32.EXE)";
    }
    if (program.isEmpty() || !QProcess::startDetached(program, {})) {
        QMessageBox::information(this, windowTitle(),
                                 "System Information Is Unavailable At This Time");
    }
#else
    QMessageBox box(QMessageBox::Information, "System Information", SystemInformation(),
                    QMessageBox::Ok, this);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.exec();
#endif
}

}  // namespace tavrelle
