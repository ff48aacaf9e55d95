#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QToolButton>
#include <filesystem>
#include <fstream>

#include "session/GridView.h"
#include "session/frmMain.h"
#include "tests/gui/Screenshot.h"
#include "tests/gui/ScriptedInteraction.h"
#include "widgets/ShownText.h"

namespace tavrelle {

// A main screen with a scripted user, and the enabling of every control the screen's states
// decide.
class ScreenTest : public ::testing::Test {
protected:
    void SetUp() override {
        QSettings("Tavrelle", "Tavrelle").clear();
        screen = std::make_unique<frmMain>(session, user, TAVRELLE_TABLE_DIR);
        screen->endSession = [this](int code) { endedWith = code; };
        screen->resize(1100, 760);
        screen->show();
        folder = std::filesystem::temp_directory_path() / "tavrelle-gui-tests";
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { screen.reset(); }

    std::string WriteFile(const std::string& name, const std::string& text) {
        std::ofstream(folder / name, std::ios::binary) << text;
        return (folder / name).string();
    }

    // The screen's controls, found by the names the program gives them.
    template <class Control = QWidget>
    Control* Widget(const char* name) const {
        auto* control = screen->findChild<Control*>(name);
        if (!control) ADD_FAILURE() << "the main screen has no control " << name;
        return control;
    }
    QAction* Action(const char* name) const { return Widget<QAction>(name); }
    QPushButton* Button(const char* name) const { return Widget<QPushButton>(name); }
    QLineEdit* Edit(const char* name) const { return Widget<QLineEdit>(name); }
    QPlainTextEdit* Pane(const char* name) const { return Widget<QPlainTextEdit>(name); }
    QLabel* Label(const char* name) const { return Widget<QLabel>(name); }
    QComboBox* Combo(const char* name) const { return Widget<QComboBox>(name); }

    // Opens a file through File Open as a user would.
    void Open(const std::string& path) {
        user.openNames.push_back(path);
        Action("mnuFileOpen")->trigger();
    }

    // Rows picked with Ctrl and the mouse, as the grid sees them when the button comes up.
    void Pick(std::vector<int> rows) {
        screen->Grid().SetPickedRows(std::move(rows));
        screen->Grid().onSelectionMouseUp();
    }

    void SetAllMotifs(int listIndex) {
        Combo("RepeatCombo")->setCurrentIndex(listIndex);
        emit Combo("RepeatCombo")->activated(listIndex);
        Button("AllButton")->click();
    }

    // Enabled state of the controls, as a string of 0 and 1 in a fixed order, for readable
    // expectations.
    std::string Enabled(std::initializer_list<QObject*> controls) const {
        std::string state;
        for (QObject* control : controls) {
            bool on = false;
            if (auto* action = qobject_cast<QAction*>(control))
                on = action->isEnabled();
            else if (auto* widget = qobject_cast<QWidget*>(control))
                on = widget->isEnabled();
            state += on ? '1' : '0';
        }
        return state;
    }

    // The columns of the state tables: save, paste/select all/delete, cut/copy, toggle,
    // close graphs, estimate/compare, analyse data.
    std::string MenuState() const {
        return Enabled({Action("mnuSaveAs"), Action("Save")}) + " " +
               Enabled({Action("mnuPaste"), Action("mnuSelectAll"), Action("mnuDelete"),
                        Action("Paste")}) +
               " " + Enabled({Action("mnuCut"), Action("mnuCopy"), Action("Cut"), Action("Copy")}) +
               " " + Enabled({Action("mnuToggle"), Action("Toggle")}) + " " +
               Enabled({Action("CloseGraphs")}) + " " +
               Enabled({Action("mnuAnalysis"), Action("mnuNulls"), Action("Analysis"),
                        Action("Nulls")}) +
               " " + Enabled({Action("mnuDisplayGraphs"), Button("RandButton")});
    }

    void Grab(const std::string& name) { GrabWindow(*screen, name); }

    Session session;
    ScriptedInteraction user;
    std::unique_ptr<frmMain> screen;
    std::filesystem::path folder;
    int endedWith = -1;
};

}  // namespace tavrelle
