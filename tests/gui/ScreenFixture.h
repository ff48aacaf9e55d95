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
#include <filesystem>
#include <fstream>

#include "session/GridView.h"
#include "session/frmMain.h"
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

    // Opens a file through File Open as a user would.
    void Open(const std::string& path) {
        user.openNames.push_back(path);
        screen->mnuFileOpen->trigger();
    }

    // Rows picked with Ctrl and the mouse, as the grid sees them when the button comes up.
    void Pick(std::vector<int> rows) {
        screen->DataGrid1->SetPickedRows(std::move(rows));
        screen->DataGrid1->onSelectionMouseUp();
    }

    void SetAllMotifs(int listIndex) {
        screen->RepeatCombo->setCurrentIndex(listIndex);
        screen->RepeatCombo_Click(listIndex);
        screen->AllButton_Click();
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
    QAction* Tool(int position) const { return screen->ToolbarButtons.at(position); }

    // The columns of the state tables: save, paste/select all/delete, cut/copy, toggle,
    // close graphs, estimate/compare, analyse data.
    std::string MenuState() const {
        frmMain& s = *screen;
        return Enabled({s.mnuSaveAs, Tool(4)}) + " " +
               Enabled({s.mnuPaste, s.mnuSelectAll, s.mnuDelete, Tool(8)}) + " " +
               Enabled({s.mnuCut, s.mnuCopy, Tool(6), Tool(7)}) + " " +
               Enabled({s.mnuToggle, Tool(10)}) + " " + Enabled({Tool(12)}) + " " +
               Enabled({s.mnuAnalysis, s.mnuNulls, Tool(14), Tool(16)}) + " " +
               Enabled({s.mnuDisplayGraphs, s.RandButton});
    }

    void Grab(const std::string& name) {
        QApplication::processEvents();
        const char* folderName = std::getenv("TAVRELLE_SCREENSHOTS");
        if (!folderName) return;
        QDir().mkpath(folderName);
        screen->grab().save(QString("%1/%2.png").arg(folderName, QString::fromStdString(name)));
    }

    Session session;
    ScriptedInteraction user;
    std::unique_ptr<frmMain> screen;
    std::filesystem::path folder;
    int endedWith = -1;
};

}  // namespace tavrelle
