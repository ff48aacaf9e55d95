#pragma once

#include <QDialog>
#include <cstdint>
#include <functional>
#include <optional>

#include "base/ProgramError.h"
#include "base/Prompter.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace tavrelle {

// "Random Number Seed": a seed typed by the user in place of the clock's. Nothing in the program
// opens it; it stands ready. On an accepted seed it stores it and asks its caller to run the
// analysis again with it.
class frmSeedDialog : public QDialog {
    Q_OBJECT
public:
    // `randomSeed` is the session's seed, shown at start and replaced on acceptance; `rerun`
    // runs the analysis of the population again.
    frmSeedDialog(std::int32_t& randomSeed, Prompter& prompter, std::function<void()> rerun,
                  QWidget* parent = nullptr);

    void SeedOKButton_Click();

    // Text that is no number at all cannot be converted: that is a program error, which the
    // dialog hands to the command that opened it, closing.
    const std::optional<ProgramError>& Error() const { return error_; }

    QLabel* SeedLabel;
    QLineEdit* SeedTextBox;
    QPushButton* SeedOKButton;

private:
    std::int32_t& randomSeed_;
    Prompter& prompter_;
    std::function<void()> rerun_;
    std::optional<ProgramError> error_;
};

}  // namespace tavrelle
