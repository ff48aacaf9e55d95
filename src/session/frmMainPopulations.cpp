// Moving among populations.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "session/GridView.h"
#include "session/MotifPanel.h"
#include "session/frmMain.h"

namespace tavrelle {

void frmMain::StoreCurrentPopulation() {
    motifs_->StorePopulation(PopulationNumber, session_.gInputData->LocusNames());
}

void frmMain::NextPopButton_Click() {
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

    motifs_->CarryOver(PopulationNumber);

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

}  // namespace tavrelle
