#include "population/screens/frmGenepopExample.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tavrelle {

frmGenepopExample::frmGenepopExample(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Tavrelle");
    GenepopLabel1 = new QLabel("The requested Genepop file is not in the required format.", this);
    QFont bold = GenepopLabel1->font();
    bold.setBold(true);
    GenepopLabel1->setFont(bold);
    GenepopLabel2 = new QLabel(
        "Please ensure that the data in the Genepop file are in the format shown below with a "
        "three-digit size per allele (six digits per locus).",
        this);
    GenepopLabel2->setWordWrap(true);
    Picture1 = new QPlainTextEdit(this);
    Picture1->setReadOnly(true);
    Picture1->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    Picture1->setPlainText(
        "Trout from three rivers, 2024\n"
        "Tav101\nTav107\nTav114\n"
        "Pop\n"
        "RIV001,  112118 150154 214222\n"
        "RIV002,  114114 000000 210214\n"
        "RIV003,  116120 152160 218218\n"
        "Pop\n"
        "BRK001,  112112 154156 222230\n"
        "BRK002,  118120 150150 214226\n");
    OKButton = new QPushButton("OK", this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(GenepopLabel1);
    layout->addWidget(GenepopLabel2);
    layout->addWidget(Picture1, 1);
    layout->addWidget(OKButton, 0, Qt::AlignRight);
    connect(OKButton, &QPushButton::clicked, this, &QDialog::accept);
    resize(520, 380);
}

}  // namespace tavrelle
