#include "population/screens/frmExcelExample.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "population/ExcelTexts.h"
#include "widgets/ShownText.h"

namespace tavrelle {

frmExcelExample::frmExcelExample(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Tavrelle");
    ExcelLabel1 = new QLabel(ShownText(std::string(kExcelExampleLabel1)), this);
    QFont bold = ExcelLabel1->font();
    bold.setBold(true);
    ExcelLabel1->setFont(bold);
    ExcelLabel2 = new QLabel(ShownText(std::string(kExcelExampleLabel2)), this);
    ExcelLabel2->setWordWrap(true);

    // A title row, the locus names, five samples, "pop" on row 8, and a second population.
    const char* const sheet[][7] = {
        {"Trout, three loci", "", "", "", "", "", ""},
        {"", "Tav101", "", "Tav107", "", "Tav114", ""},
        {"RIV001", "112", "118", "150", "154", "214", "222"},
        {"RIV002", "114", "114", "*", "*", "210", "214"},
        {"RIV003", "116", "120", "152", "160", "218", "218"},
        {"RIV004", "112", "116", "154", "154", "214", "230"},
        {"RIV005", "118", "118", "150", "152", "", ""},
        {"pop", "", "", "", "", "", ""},
        {"BRK001", "112", "112", "154", "156", "222", "230"},
        {"BRK002", "118", "120", "150", "150", "214", "226"},
        {"BRK003", "114", "116", "152", "158", "218", "222"},
    };
    constexpr int rows = static_cast<int>(std::size(sheet));
    ExcelPicture = new QTableWidget(rows, 7, this);
    ExcelPicture->setHorizontalHeaderLabels({"A", "B", "C", "D", "E", "F", "G"});
    ExcelPicture->setEditTriggers(QAbstractItemView::NoEditTriggers);
    ExcelPicture->setSelectionMode(QAbstractItemView::NoSelection);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < 7; ++c)
            ExcelPicture->setItem(r, c, new QTableWidgetItem(sheet[r][c]));
    ExcelPicture->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    ExcelPicture->verticalHeader()->setDefaultSectionSize(20);

    OKButton = new QPushButton("OK", this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(ExcelLabel1);
    layout->addWidget(ExcelLabel2);
    layout->addWidget(ExcelPicture, 1);
    layout->addWidget(OKButton, 0, Qt::AlignRight);
    connect(OKButton, &QPushButton::clicked, this, &QDialog::accept);
    resize(620, 520);
}

}  // namespace tavrelle
