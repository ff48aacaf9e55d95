#pragma once

#include "widgets/Interaction.h"

#include <QString>

class QWidget;

namespace tavrelle {

// The real dialogs: message boxes, the platform's file dialogs, the example screens and the
// program's own modal dialogs.
class DesktopInteraction : public Interaction {
public:
    // Message boxes and dialogs are owned by `owner` while they are open.
    void SetOwner(QWidget* owner) { owner_ = owner; }

    MessageAnswer Show(const Message& message) override;
    void ShowExample(ExampleScreen screen) override;
    std::optional<std::string> OpenFileName(const FileDialogRequest& request) override;
    std::optional<std::string> SaveFileName(const FileDialogRequest& request) override;
    ErrorDialogChoice PossibleErrors() override;
    std::optional<std::vector<std::string>> NewGridLoci() override;
    std::string SheetName(const std::string& workbook,
                          const std::vector<std::string>& sheets) override;
    int OpenDocument(const std::string& path) override;
    void ShowHelp(const std::string& file, const std::string& topic, int command) override;

private:
    QWidget* owner_ = nullptr;
};

// "Name|pattern|Name|pattern" as a Qt file dialog filter ("Name (pattern);;...").
QString QtFilter(const std::string& filter);

}  // namespace tavrelle
