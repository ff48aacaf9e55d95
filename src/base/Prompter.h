#pragma once

#include <deque>
#include <string>
#include <vector>

namespace tavrelle {

enum class MessageIcon { None, Critical, Question, Exclamation, Information };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MessageAnswer { Ok, Cancel, Yes, No };
enum class ExampleScreen { Genepop, Excel };

// A modal message box as the user sees it. An empty caption stands for the program's title.
struct Message {
    std::string text;
    std::string caption;
    MessageIcon icon = MessageIcon::None;
    MessageButtons buttons = MessageButtons::Ok;

    bool operator==(const Message&) const = default;
};

// Where engine work needs the user in the middle of it (a refused file, an overflowing run), it
// asks through this interface: the desktop program shows real boxes and example screens, tests
// record, the batch program turns them into report lines. Calls come in the order users see them.
class Prompter {
public:
    virtual ~Prompter() = default;
    virtual MessageAnswer Show(const Message& message) = 0;
    virtual void ShowExample(ExampleScreen screen) = 0;
};

// The answer that lets work go on without repeating anything: OK, Cancel, No.
constexpr MessageAnswer ProceedingAnswer(MessageButtons buttons) {
    switch (buttons) {
        case MessageButtons::Ok:
            return MessageAnswer::Ok;
        case MessageButtons::OkCancel:
        case MessageButtons::YesNoCancel:
            return MessageAnswer::Cancel;
        case MessageButtons::YesNo:
            return MessageAnswer::No;
    }
    return MessageAnswer::Ok;
}

// Keeps every message and example screen in order; answers from a script, then with the
// proceeding answer.
class RecordingPrompter : public Prompter {
public:
    MessageAnswer Show(const Message& message) override {
        messages.push_back(message);
        if (!answers.empty()) {
            MessageAnswer answer = answers.front();
            answers.pop_front();
            return answer;
        }
        return ProceedingAnswer(message.buttons);
    }
    void ShowExample(ExampleScreen screen) override { examples.push_back(screen); }

    std::vector<Message> messages;
    std::vector<ExampleScreen> examples;
    std::deque<MessageAnswer> answers;
};

}  // namespace tavrelle
