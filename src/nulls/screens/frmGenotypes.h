#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <vector>

#include "nulls/CorrectGenotypes.h"

class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace tavrelle {

// "Adjusted Genotypes": a locus's genotypes with the homozygotes each method reassigns.
class frmGenotypes : public QDialog {
    Q_OBJECT
public:
    explicit frmGenotypes(QWidget* parent = nullptr);

    // The run's tables: per locus, its name and the four methods' lists.
    void CorrectedGenotypes(std::vector<std::string> locusNames,
                            std::vector<std::array<AdjustedGenotypeList, 4>> table);
    void DisplayGenotypes(int locus, int method);

    std::function<void()> moreInfo;

    QPlainTextEdit* GenotypesText;
    QComboBox* AdjustCombo;
    QLabel* Label1;
    QPushButton *SelectAllButton, *MoreInfoButton, *CloseButton;

private:
    std::vector<std::string> names_;
    std::vector<std::array<AdjustedGenotypeList, 4>> table_;
    int locus_ = 0;
};

}  // namespace tavrelle
