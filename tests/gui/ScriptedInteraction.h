#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "widgets/Interaction.h"

namespace tavrelle {

// The user of the tests: records every message box and example screen, and answers file
// dialogs, the Possible Errors dialog, the new-grid dialog and the sheet dialog from queues.
class ScriptedInteraction : public Interaction {
public:
    MessageAnswer Show(const Message& message) override { return recorder.Show(message); }
    void ShowExample(ExampleScreen screen) override { recorder.ShowExample(screen); }
    std::optional<std::string> OpenFileName(const FileDialogRequest& request) override {
        dialogs.push_back(request);
        return Next(openNames);
    }
    std::optional<std::string> SaveFileName(const FileDialogRequest& request) override {
        dialogs.push_back(request);
        return Next(saveNames);
    }
    ErrorDialogChoice PossibleErrors() override {
        ++errorDialogs;
        ErrorDialogChoice choice = errorChoices.empty() ? defaultErrorChoice : errorChoices.front();
        if (!errorChoices.empty()) errorChoices.pop_front();
        return choice;
    }
    std::optional<std::vector<std::string>> NewGridLoci() override { return Next(newGrids); }
    std::string SheetName(const std::string&, const std::vector<std::string>&) override {
        std::optional<std::string> name = Next(sheetNames);
        return name.value_or("");
    }

    std::string LastText() const {
        return messages.empty() ? "(no message)" : messages.back().text;
    }

    int OpenDocument(const std::string& path) override {
        documents.push_back(path);
        return documentCode;
    }
    void ShowHelp(const std::string& file, const std::string& topic, int command) override {
        help.push_back({file, topic, command});
    }

    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const Message& m : messages)
            texts.push_back(m.text);
        return texts;
    }

    struct HelpCall {
        std::string file;
        std::string topic;
        int command;
    };
    std::vector<std::string> documents;
    int documentCode = 0;
    std::vector<HelpCall> help;
    // Message boxes and example screens, in order, answered from `answers` first.
    RecordingPrompter recorder;
    std::vector<Message>& messages = recorder.messages;
    std::vector<ExampleScreen>& examples = recorder.examples;
    std::deque<MessageAnswer>& answers = recorder.answers;
    std::vector<FileDialogRequest> dialogs;
    int errorDialogs = 0;
    ErrorDialogChoice defaultErrorChoice = ErrorDialogChoice::Correct;
    std::deque<std::optional<std::string>> openNames;
    std::deque<std::optional<std::string>> saveNames;
    std::deque<ErrorDialogChoice> errorChoices;
    std::deque<std::optional<std::vector<std::string>>> newGrids;
    std::deque<std::optional<std::string>> sheetNames;

private:
    template <class T>
    static std::optional<T> Next(std::deque<std::optional<T>>& queue) {
        if (queue.empty()) return std::nullopt;
        std::optional<T> value = queue.front();
        queue.pop_front();
        return value;
    }
};

}  // namespace tavrelle
