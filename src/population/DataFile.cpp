#include "population/DataFile.h"

#include <exception>

#include "base/ProgramError.h"
#include "population/ExcelTexts.h"

namespace tavrelle {

namespace {

// Passes the load's questions on and keeps every other box, and the example screen, for the
// error.
class DeferringPrompter : public Prompter {
public:
    explicit DeferringPrompter(Prompter& questions) : questions_(questions) {}
    MessageAnswer Show(const Message& message) override {
        if (message.buttons != MessageButtons::Ok) return questions_.Show(message);
        messages.push_back(message);
        return MessageAnswer::Ok;
    }
    void ShowExample(ExampleScreen screen) override { example = screen; }

    std::vector<Message> messages;
    std::optional<ExampleScreen> example;

private:
    Prompter& questions_;
};

DataFileError OpenFailure(const std::string& path, const std::string& description) {
    DataFileError error;
    error.file = path;
    error.expected = "a file that can be read (" + description + ")";
    error.messages.push_back({description, std::string(kOpenErrorCaption), MessageIcon::Exclamation,
                              MessageButtons::Ok});
    return error;
}

// The store, once its load has ended: a refused load becomes the error, with where and why.
OpenedDataFile Outcome(const std::string& path, std::unique_ptr<InputDataSource> store,
                       DeferringPrompter& deferred, Prompter& questions) {
    OpenedDataFile opened;
    if (!store->LocusNames().front().empty()) {
        // A load that went through shows what it had to say at once.
        for (const Message& message : deferred.messages)
            questions.Show(message);
        store->SetPrompter(questions);
        opened.store = std::move(store);
        return opened;
    }
    DataFileError error;
    error.file = path;
    error.where = store->RefusalWhere();
    error.expected = store->RefusalExpected();
    if (error.expected.empty())
        error.expected = deferred.messages.empty() ? "a data file" : deferred.messages.back().text;
    error.messages = std::move(deferred.messages);
    error.example = deferred.example;
    opened.error = std::move(error);
    return opened;
}

}  // namespace

TextFormatReader TextReaderFor(FileKind format) {
    switch (format) {
        // One line per text format: case FileKind::Name: return ReadName;
        case FileKind::Genepop:
        case FileKind::Xls:
        case FileKind::Xlsx:
            break;
    }
    return nullptr;
}

OpenedDataFile OpenDataFileWith(const std::string& path, FileKind format, const std::string& sheet,
                                ExcelSheetReader* workbookReader, Prompter& questions) {
    DeferringPrompter deferred(questions);
    try {
        StoreRequest request;
        request.fileLocation = path;
        request.isExcel = IsExcelKind(format);
        request.excelSheetName = sheet;
        request.excelReader = workbookReader;
        const TextFormatReader reader = TextReaderFor(format);
        if (reader == nullptr)
            return Outcome(path, std::make_unique<InputDataSource>(request, deferred), deferred,
                           questions);
        // The store tells a missing or empty file; the format's reader reads the rest.
        request.newGridLoaded = false;
        request.gridIsNew = true;
        auto probe = std::make_unique<InputDataSource>(request, deferred);
        if (!deferred.messages.empty()) return Outcome(path, std::move(probe), deferred, questions);
        std::variant<PopulationCells, DataFileError> read = reader(ReadWholeFile(path));
        if (auto* error = std::get_if<DataFileError>(&read)) {
            error->file = path;
            OpenedDataFile opened;
            opened.error = std::move(*error);
            return opened;
        }
        OpenedDataFile opened;
        opened.store = std::make_unique<InputDataSource>(std::get<PopulationCells>(std::move(read)),
                                                         questions);
        return opened;
    } catch (const ProgramError& failure) {
        // What the open command shows in its "Error Opening File" box, and which limit it met.
        OpenedDataFile opened;
        opened.error = OpenFailure(
            path, failure.Detail().empty() ? failure.Description()
                                           : failure.Description() + " (" + failure.Detail() + ")");
        return opened;
    } catch (const std::exception& failure) {
        // What the open command shows in its "Error Opening File" box.
        OpenedDataFile opened;
        opened.error = OpenFailure(path, failure.what());
        return opened;
    }
}

}  // namespace tavrelle
