#include "session/MotifPanel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>

#include "base/Numbers.h"

namespace tavrelle {

namespace {
// Repeat codes by list index of the motif list; "Di-tetra complex" counts as a dinucleotide.
constexpr std::array<Int16, 8> kRepeatCodes = {0, 1, 2, 3, 4, 5, 6, 2};

std::size_t Element(Int16 population) {
    return static_cast<std::size_t>(std::max<Int16>(population, 1) - 1);
}
}  // namespace

MotifPanel::MotifPanel(QWidget* parent, const Registrar& registrar, Guard guard,
                       std::function<Int16()> population)
    : QObject(parent),
      box_(new QGroupBox(parent)),
      guard_(std::move(guard)),
      population_(std::move(population)) {
    auto add = [&](Control id, const char* name, auto* control) {
        control->setObjectName(name);
        registrar(id, name, control);
        return control;
    };
    auto* layout = new QGridLayout(box_);
    RepeatLabel = add(Control::RepeatLabel, "RepeatLabel",
                      new QLabel("Enter the Repeat Motif for each Locus", box_));
    RepeatLabel->setWordWrap(true);
    LocusTextBox = add(Control::LocusTextBox, "LocusTextBox", new QLineEdit(box_));
    LocusTextBox->setReadOnly(true);
    PLocusButton = add(Control::PLocusButton, "PLocusButton", new QPushButton("<", box_));
    PLocusButton->setToolTip("Move to the previous Locus");
    NLocusButton = add(Control::NLocusButton, "NLocusButton", new QPushButton(">", box_));
    NLocusButton->setToolTip("Move to the next Locus");
    for (QPushButton* arrow : {PLocusButton, NLocusButton})
        arrow->setFixedWidth(28);
    RepeatCombo = add(Control::RepeatCombo, "RepeatCombo", new QComboBox(box_));
    RepeatCombo->addItems({"", "Mononucleotide", "Dinucleotide", "Trinucleotide", "Tetranucleotide",
                           "Pentanucleotide", "Hexanucleotide", "Di-tetra complex"});
    RepeatCombo->setToolTip("Select a Repeat Motif from the dropdown");
    AllButton = add(Control::AllButton, "AllButton", new QPushButton("All", box_));
    AllButton->setToolTip("Set all loci to this repeat motif");
    layout->addWidget(RepeatLabel, 0, 0, 1, 3);
    layout->addWidget(PLocusButton, 1, 0);
    layout->addWidget(LocusTextBox, 1, 1);
    layout->addWidget(NLocusButton, 1, 2);
    layout->addWidget(RepeatCombo, 2, 0, 1, 2);
    layout->addWidget(AllButton, 2, 2);

    auto connectButton = [this](QPushButton* button, void (MotifPanel::*handler)()) {
        connect(button, &QPushButton::clicked, this,
                [this, handler] { guard_([this, handler] { (this->*handler)(); }); });
    };
    connectButton(NLocusButton, &MotifPanel::NLocusButton_Click);
    connectButton(PLocusButton, &MotifPanel::PLocusButton_Click);
    connectButton(AllButton, &MotifPanel::AllButton_Click);
    connect(RepeatCombo, &QComboBox::activated, this,
            [this](int index) { guard_([this, index] { RepeatCombo_Click(index); }); });
}

void MotifPanel::SetLoci(std::vector<std::string> names) {
    LocusNameList = std::move(names);
    CurrentLocus_ = 0;
    if (RepeatTable.size() != LocusNameList.size())
        RepeatTable.assign(LocusNameList.size(), {0, 0});
    ShowLocus();
    PLocusButton->setEnabled(false);
    NLocusButton->setEnabled(LocusNameList.size() > 1);
}

void MotifPanel::ShowLocus() {
    const auto locus = static_cast<std::size_t>(CurrentLocus_);
    LocusTextBox->setText(
        locus < LocusNameList.size() ? QString::fromStdString(LocusNameList[locus]) : QString());
    LocusTextBox->setEnabled(true);
    RepeatCombo->setCurrentIndex(locus < RepeatTable.size() ? RepeatTable[locus][0] : 0);
}

void MotifPanel::StorePopulation(Int16 population, std::vector<std::string> names) {
    RepeatTable.assign(names.size(), {0, 0});
    SetLoci(std::move(names));
    const std::size_t element = Element(population);
    if (SavedLocusNames.size() <= element) SavedLocusNames.resize(element + 1);
    if (SavedRepeatTables.size() <= element) SavedRepeatTables.resize(element + 1);
    SavedLocusNames[element] = LocusNameList;
    SavedRepeatTables[element] = RepeatTable;
    // Each list keeps one spare element behind the last population.
    SavedLocusNames.resize(element + 2);
    SavedRepeatTables.resize(element + 2);
    NLocusButton->setEnabled(LocusNameList.size() >= 2);
}

void MotifPanel::CarryOver(Int16 population) {
    const auto previous = static_cast<std::size_t>(population - 2);
    const std::vector<std::string>& oldNames = SavedLocusNames[previous];
    const std::vector<Entry>& oldTable = SavedRepeatTables[previous];
    for (std::size_t i = 0; i < LocusNameList.size() && i < oldNames.size() && i < oldTable.size();
         ++i) {
        if (oldNames[i] == LocusNameList[i]) RepeatTable[i] = oldTable[i];
    }
    CurrentLocus_ = 0;
    ShowLocus();
}

void MotifPanel::Blank(std::size_t loci) {
    RepeatTable.assign(loci, {0, 0});
}

void MotifPanel::Clear() {
    LocusTextBox->clear();
    SavedLocusNames.assign(1, {});
    SavedRepeatTables.assign(1, {});
}

void MotifPanel::NLocusButton_Click() {
    CurrentLocus_ = Narrow16(CurrentLocus_ + 1);
    ShowLocus();
    NLocusButton->setEnabled(static_cast<std::size_t>(CurrentLocus_) + 1 < LocusNameList.size());
    PLocusButton->setEnabled(true);
}

void MotifPanel::PLocusButton_Click() {
    CurrentLocus_ = Narrow16(CurrentLocus_ - 1);
    ShowLocus();
    PLocusButton->setEnabled(CurrentLocus_ >= 1);
    NLocusButton->setEnabled(true);
}

void MotifPanel::SaveTable() {
    const std::size_t element = Element(population_());
    if (SavedRepeatTables.size() <= element) SavedRepeatTables.resize(element + 1);
    SavedRepeatTables[element] = RepeatTable;
}

void MotifPanel::RepeatCombo_Click(int listIndex) {
    const auto locus = static_cast<std::size_t>(CurrentLocus_);
    if (locus >= RepeatTable.size()) return;
    const bool known = listIndex >= 0 && listIndex < static_cast<int>(kRepeatCodes.size());
    RepeatTable[locus] = {static_cast<Int16>(known ? listIndex : 0),
                          known ? kRepeatCodes[static_cast<std::size_t>(listIndex)] : Int16{0}};
    SaveTable();
}

void MotifPanel::AllButton_Click() {
    const auto locus = static_cast<std::size_t>(CurrentLocus_);
    if (locus >= RepeatTable.size()) return;
    const Entry motif = RepeatTable[locus];
    for (Entry& entry : RepeatTable)
        entry = motif;
    SaveTable();
}

std::vector<Int16> MotifPanel::RepeatCodes() const {
    std::vector<Int16> codes;
    for (const Entry& entry : RepeatTable)
        codes.push_back(entry[1]);
    return codes;
}

std::map<std::string, Int16> MotifPanel::MotifsByName() const {
    std::map<std::string, Int16> motifs;
    for (std::size_t i = 0; i < LocusNameList.size() && i < RepeatTable.size(); ++i)
        if (RepeatTable[i][1] != 0) motifs[LocusNameList[i]] = RepeatTable[i][1];
    return motifs;
}

}  // namespace tavrelle
