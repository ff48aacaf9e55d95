// Moving among populations, and the repeat motif panel.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "session/GridView.h"
#include "session/frmMain.h"

namespace tavrelle {

namespace {
// Repeat codes by list index of the motif list; "Di-tetra complex" counts as a dinucleotide.
constexpr std::array<Int16, 8> kRepeatCodes = {0, 1, 2, 3, 4, 5, 6, 2};
}  // namespace

void frmMain::LocusNameListRoutine() {
    LocusNameList = session_.gInputData->LocusNames();
    CurrentLocus = 0;
    if (RepeatTable.size() != LocusNameList.size())
        RepeatTable.assign(LocusNameList.size(), {0, 0});
    ShowLocus();
    PLocusButton->setEnabled(false);
    NLocusButton->setEnabled(LocusNameList.size() > 1);
}

void frmMain::ShowLocus() {
    const auto locus = static_cast<std::size_t>(CurrentLocus);
    LocusTextBox->setText(
        locus < LocusNameList.size() ? QString::fromStdString(LocusNameList[locus]) : QString());
    LocusTextBox->setEnabled(true);
    RepeatCombo->setCurrentIndex(locus < RepeatTable.size() ? RepeatTable[locus][0] : 0);
}

void frmMain::StoreCurrentPopulation() {
    RepeatTable.assign(session_.gInputData->LocusNames().size(), {0, 0});
    LocusNameListRoutine();
    const auto element = static_cast<std::size_t>(std::max<Int16>(PopulationNumber, 1) - 1);
    if (SavedLocusNames.size() <= element) SavedLocusNames.resize(element + 1);
    if (SavedRepeatTables.size() <= element) SavedRepeatTables.resize(element + 1);
    SavedLocusNames[element] = LocusNameList;
    SavedRepeatTables[element] = RepeatTable;
    // Each list keeps one spare element behind the last population.
    SavedLocusNames.resize(element + 2);
    SavedRepeatTables.resize(element + 2);
    NLocusButton->setEnabled(LocusNameList.size() >= 2);
}

void frmMain::NextPopButton_Click() {
    CurrentLocus = 0;
    PopulationNumber = Narrow16(PopulationNumber + 1);
    LoadedPopulations = PopulationNumber;
    Apply(ScreenState::NextPopulation);
    flags.UncheckedData = true;
    mnuCloseGraphs_Click();
    LocationText->clear();
    ShowGrid(true);
    ShowSettingsAgain();
    ShowMessageBar(false);  // the graphs and their texts are gone
    session_.gInputData->NextPopulation();
    StoreCurrentPopulation();

    // Motifs carry over locus by locus while the names at the same index agree.
    const auto previous = static_cast<std::size_t>(PopulationNumber - 2);
    const std::vector<std::string>& oldNames = SavedLocusNames[previous];
    const std::vector<std::array<Int16, 2>>& oldTable = SavedRepeatTables[previous];
    for (std::size_t i = 0; i < LocusNameList.size() && i < oldNames.size() && i < oldTable.size();
         ++i) {
        if (oldNames[i] == LocusNameList[i]) RepeatTable[i] = oldTable[i];
    }
    // The saved table of this population was taken before the carry-over, as it always was; a
    // motif chosen here saves the table again.
    CurrentLocus = 0;
    ShowLocus();

    BindGrid();
    NoMorePopulations = session_.gInputData->IsAnotherPop();
    NextPopButton->setEnabled(NoMorePopulations);
    ShowPopulationCaption();
}

// A run hides the settings panel; a change of population brings it back, so that the population
// now on screen can be checked and analysed in turn.
void frmMain::ShowSettingsAgain() {
    ShowLeftPanel(true);
}

void frmMain::NPopButton_Click() {
    Apply(ScreenState::BrowsePopulations);
    ShowGrid(true);
    ShowSettingsAgain();
    PopulationNumber = Narrow16(PopulationNumber + 1);
    if (PopulationNumber == LoadedPopulations) {
        NPopButton->setEnabled(false);
        NextPopButton->setEnabled(NoMorePopulations);
    }
    PPopButton->setEnabled(true);
    session_.gInputData->NextPop();
    BindGrid();
    flags.UncheckedData = true;
    ShowPopulationCaption();
}

void frmMain::PPopButton_Click() {
    Apply(ScreenState::BrowsePopulations);
    ShowGrid(true);
    ShowSettingsAgain();
    NextPopButton->setEnabled(false);
    PopulationNumber = Narrow16(PopulationNumber - 1);
    NPopButton->setEnabled(true);
    if (PopulationNumber == 1) PPopButton->setEnabled(false);
    session_.gInputData->PrevPop();
    BindGrid();
    flags.UncheckedData = true;
    ShowPopulationCaption();
}

void frmMain::NLocusButton_Click() {
    CurrentLocus = Narrow16(CurrentLocus + 1);
    ShowLocus();
    NLocusButton->setEnabled(static_cast<std::size_t>(CurrentLocus) + 1 < LocusNameList.size());
    PLocusButton->setEnabled(true);
}

void frmMain::PLocusButton_Click() {
    CurrentLocus = Narrow16(CurrentLocus - 1);
    ShowLocus();
    PLocusButton->setEnabled(CurrentLocus >= 1);
    NLocusButton->setEnabled(true);
}

void frmMain::RepeatCombo_Click(int listIndex) {
    const auto locus = static_cast<std::size_t>(CurrentLocus);
    if (locus >= RepeatTable.size()) return;
    const bool known = listIndex >= 0 && listIndex < static_cast<int>(kRepeatCodes.size());
    RepeatTable[locus] = {static_cast<Int16>(known ? listIndex : 0),
                          known ? kRepeatCodes[static_cast<std::size_t>(listIndex)] : Int16{0}};
    const auto element = static_cast<std::size_t>(std::max<Int16>(PopulationNumber, 1) - 1);
    if (SavedRepeatTables.size() <= element) SavedRepeatTables.resize(element + 1);
    SavedRepeatTables[element] = RepeatTable;
}

void frmMain::AllButton_Click() {
    const auto locus = static_cast<std::size_t>(CurrentLocus);
    if (locus >= RepeatTable.size()) return;
    const std::array<Int16, 2> motif = RepeatTable[locus];
    for (std::array<Int16, 2>& entry : RepeatTable)
        entry = motif;
    const auto element = static_cast<std::size_t>(std::max<Int16>(PopulationNumber, 1) - 1);
    if (SavedRepeatTables.size() <= element) SavedRepeatTables.resize(element + 1);
    SavedRepeatTables[element] = RepeatTable;
}

}  // namespace tavrelle
