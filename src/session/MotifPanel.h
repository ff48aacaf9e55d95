#pragma once

#include <QObject>
#include <array>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/Int16.h"
#include "session/ScreenStates.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace tavrelle {

// The repeat motif panel of the main screen: the locus on show, the arrows, the motif list and
// All, and the motif table of each population visited (list index and repeat code per locus).
// The frame builds it into its left panel and tells it when the loci change.
class MotifPanel : public QObject {
    Q_OBJECT
public:
    using Entry = std::array<Int16, 2>;  // list index, repeat code
    // Gives each control its object name and lets the frame's state table reach it.
    using Registrar = std::function<void(Control id, const char* name, QObject* control)>;
    // Runs a handler with the frame's one handler for program errors around it.
    using Guard = std::function<void(const std::function<void()>& handler)>;

    // `population` tells the number of the population on screen, whose table the commands save.
    MotifPanel(QWidget* parent, const Registrar& registrar, Guard guard,
               std::function<Int16()> population);
    QWidget* Widget() const { return box_; }
    QComboBox* Combo() const { return RepeatCombo; }

    // The loci of the population on screen: the panel stands on locus 0.
    void SetLoci(std::vector<std::string> names);
    // A fresh table for the loci of a new population, kept as that population's.
    void StorePopulation(Int16 population, std::vector<std::string> names);
    // Motifs carry over from the previous population locus by locus while the names at the same
    // index agree; the saved table of this population is the one from before the carry-over.
    void CarryOver(Int16 population);
    // A fresh table of `loci` blank motifs (a new grid).
    void Blank(std::size_t loci);
    void Clear();
    void ShowLocus();

    void NLocusButton_Click();
    void PLocusButton_Click();
    void RepeatCombo_Click(int listIndex);
    void AllButton_Click();

    Int16 CurrentLocus() const { return CurrentLocus_; }
    const std::vector<std::string>& LocusNames() const { return LocusNameList; }
    // The repeat code per locus, in column order, as a run takes them.
    std::vector<Int16> RepeatCodes() const;
    // The motifs chosen, by locus name, as a study takes them.
    std::map<std::string, Int16> MotifsByName() const;

    QLabel* RepeatLabel;
    QLineEdit* LocusTextBox;
    QPushButton *PLocusButton, *NLocusButton, *AllButton;
    QComboBox* RepeatCombo;

private:
    void SaveTable();

    QWidget* box_;
    Guard guard_;
    std::function<Int16()> population_;
    Int16 CurrentLocus_ = 0;
    std::vector<std::string> LocusNameList;
    std::vector<Entry> RepeatTable;
    std::vector<std::vector<std::string>> SavedLocusNames;
    std::vector<std::vector<Entry>> SavedRepeatTables;
};

}  // namespace tavrelle
