#include "population/InputDataSource.h"

#include <filesystem>
#include <system_error>

#include "base/Numbers.h"
#include "population/FileErrors.h"

namespace tavrelle {

namespace {

// Two bare carriage returns (not CR LF) part the message from the name.
constexpr const char* kFileMissing = "The file entered does not exist.\r\r";
constexpr const char* kFileEmpty = "The file opened appears to be empty or invalid.";
constexpr const char* kDiskNotReadyText =
    "Put a floppy disk in the drive and close the drive door.";

Message PlainBox(std::string text) {
    return {std::move(text), "", MessageIcon::None, MessageButtons::Ok};
}

// Statements of the save routines run on past their own errors, one by one.
template <typename Statement>
void IgnoringErrors(Statement statement) {
    try {
        statement();
    } catch (const ProgramError&) {
    }
}

}  // namespace

InputDataSource::InputDataSource(const StoreRequest& request, Prompter& prompter)
    : prompter_(prompter) {
    const std::string& fileName = request.fileLocation;
    bool exists = CheckFileExists(fileName);
    if (fileName.empty() || !exists) {
        if (!request.newGridLoaded) prompter_.Show(PlainBox(kFileMissing + fileName));
        return;
    }

    // Held only while the constructor reads it: the tables keep every line.
    LineInput input(ReadWholeFile(fileName));
    if (input.Eof()) {
        prompter_.Show(PlainBox(kFileEmpty));
        return;
    }

    AddDataMember("1AlleleData");
    rsAllData = Table();
    rsAlleleData = Table();

    if (request.isExcel) {
        input = LineInput();  // the workbook reader opens the file itself
        if (request.excelReader != nullptr) {
            request.excelReader->ReadExcelSheet(*this, fileName, request.excelSheetName, prompter_);
        } else {
            ExcelFormatValid_ = false;
        }
        if (!ExcelFormatValid_) {
            prompter_.ShowExample(ExampleScreen::Excel);
            ResetLocusNames();
            return;
        }
        SetColumnHeaders(rsAlleleData);
    } else {
        if (request.gridIsNew) return;
        ReadGenepopHeader(input);
        if (!GenepopHeaderFound_) {
            prompter_.ShowExample(ExampleScreen::Genepop);
            ResetLocusNames();
            return;
        }
        SetColumnHeaders(rsAllData);
        SetColumnHeaders(rsAlleleData);
        ReadGenepopBody(input);
        if (!GenepopBodyValid_) {
            prompter_.ShowExample(ExampleScreen::Genepop);
            ResetLocusNames();
            return;
        }
    }

    DisplayLociNames(rsAlleleData);
    CurrentPopulation_ = 1;
    DisplayPopulation();
}

bool InputDataSource::CheckFileExists(const std::string& fileName) {
    for (;;) {
        std::error_code error;
        std::filesystem::file_status status = std::filesystem::status(fileName, error);
        // A directory is not what the look-up lists, and a missing name is no error.
        if (status.type() == std::filesystem::file_type::not_found) return false;
        if (!error) return status.type() != std::filesystem::file_type::directory;

        ProgramError failure = FileError(error.value());
        if (failure.Number() == kDiskNotReady) {
            MessageAnswer answer = prompter_.Show(
                {kDiskNotReadyText, "", MessageIcon::Exclamation, MessageButtons::OkCancel});
            if (answer == MessageAnswer::Ok) continue;
        } else if (failure.Number() == kDeviceUnavailable) {
            prompter_.Show({"The drive or path does not exist: " + fileName, "",
                            MessageIcon::Exclamation, MessageButtons::Ok});
        } else {
            prompter_.Show({"Error number " + std::to_string(failure.Number()) +
                                " occurred: " + failure.Description(),
                            "", MessageIcon::Critical, MessageButtons::Ok});
        }
        return false;
    }
}

void InputDataSource::SetColumnHeaders(Table& table) {
    // Columns can be appended only while the table is not yet open.
    if (table.ColumnCount() != 0)
        throw ProgramError(3219, "Operation is not allowed in this context.");
    ColumnCount_ = Narrow16((static_cast<long long>(LocusNames_.size())) * 2 + 2);
    for (Int16 column = 1; column <= ColumnCount_; ++column)
        table.AppendColumn("Col_" + std::to_string(column));
}

void InputDataSource::DisplayLociNames(Table& table) {
    table.AddNew();
    table.SetField(1, "Population");
    for (int column = 2; column <= ColumnCount_ - 2; column += 2) {
        table.SetField(column, "Allele A");
        table.SetField(column + 1, "Allele B");
    }
    table.AddNew();
    table.SetField(0, "Sample no.");
    table.SetField(1, title_);
    std::size_t locus = 0;
    for (int column = 2; column <= ColumnCount_ - 2; column += 2) {
        if (locus >= LocusNames_.size()) throw ProgramError::SubscriptOutOfRange();
        table.SetField(column, LocusNames_[locus++]);
    }
}

void InputDataSource::DisplayPopulation() {
    auto index = static_cast<long long>(CurrentPopulation_) - 1;
    if (index < 0 || index >= static_cast<long long>(PopulationBookmarks_.size()))
        throw ProgramError::SubscriptOutOfRange();
    rsAllData.SetBookmark(PopulationBookmarks_[static_cast<std::size_t>(index)]);
    for (;;) {
        if (rsAllData.Eof()) {
            IsAnotherPop_ = false;
            return;
        }
        if (UpperCase(TrimBlanks(rsAllData.Field(1))) == "POP") {
            IsAnotherPop_ = true;
            return;
        }
        rsAlleleData.AddNew();
        for (int column = 0; column < rsAlleleData.ColumnCount(); ++column)
            rsAlleleData.SetField(column, rsAllData.Field(column));
        rsAllData.MoveNext();
    }
}

void InputDataSource::ShowFreshPopulation() {
    rsAlleleData = Table();
    SetColumnHeaders(rsAlleleData);
    DisplayLociNames(rsAlleleData);
    DisplayPopulation();
}

void InputDataSource::NextPopulation() {
    SavePopulation();
    CurrentPopulation_ = Narrow16(CurrentPopulation_ + 1);
    AddDataMember(std::to_string(CurrentPopulation_) + "AlleleData");
    ShowFreshPopulation();
}

void InputDataSource::NextPop() {
    if (!IsAnotherPop_) return;
    SavePopulation();
    CurrentPopulation_ = Narrow16(CurrentPopulation_ + 1);
    rsAllData.MoveNext();
    ShowFreshPopulation();
}

void InputDataSource::PrevPop() {
    SavePopulation();
    CurrentPopulation_ = Narrow16(CurrentPopulation_ - 1);
    ShowFreshPopulation();
}

void InputDataSource::SavePopulation() {
    // Rows are matched by position: an added grid row lands on the next separator, and a
    // deleted one leaves its old row behind.
    IgnoringErrors([&] {
        auto index = static_cast<long long>(CurrentPopulation_) - 1;
        if (index < 0 || index >= static_cast<long long>(PopulationBookmarks_.size()))
            throw ProgramError::SubscriptOutOfRange();
        rsAllData.SetBookmark(PopulationBookmarks_[static_cast<std::size_t>(index)]);
    });
    IgnoringErrors([&] { rsAlleleData.MoveFirst(); });
    IgnoringErrors([&] { rsAlleleData.Move(2); });
    while (!rsAlleleData.Eof()) {
        for (int column = 0; column < rsAlleleData.ColumnCount(); ++column)
            IgnoringErrors([&] { rsAllData.SetField(column, rsAlleleData.Field(column)); });
        IgnoringErrors([&] { rsAllData.MoveNext(); });
        IgnoringErrors([&] { rsAlleleData.MoveNext(); });
    }
}

void InputDataSource::SaveNewPopulation() {
    // Appends without emptying first: a typed grid saved twice stands twice in rsAllData.
    IgnoringErrors([&] { rsAllData.MoveFirst(); });
    IgnoringErrors([&] { rsAllData.Move(1); });
    IgnoringErrors([&] { rsAlleleData.MoveFirst(); });
    IgnoringErrors([&] { rsAlleleData.Move(2); });
    while (!rsAlleleData.Eof()) {
        IgnoringErrors([&] { rsAllData.AddNew(); });
        for (int column = 0; column < rsAlleleData.ColumnCount(); ++column)
            IgnoringErrors([&] { rsAllData.SetField(column, rsAlleleData.Field(column)); });
        IgnoringErrors([&] { rsAllData.MoveNext(); });
        IgnoringErrors([&] { rsAlleleData.MoveNext(); });
    }
}

void InputDataSource::AddDataMember(std::string name) {
    for (const std::string& member : dataMembers_) {
        if (member == name)
            throw ProgramError(457,
                               "This key is already associated with an element of this "
                               "collection");
    }
    dataMembers_.push_back(std::move(name));
}

Table* InputDataSource::GetDataMember(std::string_view dataMember) {
    if (dataMember.empty()) return nullptr;
    if (dataMember == "AllData") return &rsAllData;
    return &rsAlleleData;
}

std::vector<std::string>& ExcelSheetReader::LocusNamesOf(InputDataSource& store) {
    return store.LocusNames_;
}

std::vector<Table::Bookmark>& ExcelSheetReader::PopulationBookmarksOf(InputDataSource& store) {
    return store.PopulationBookmarks_;
}

Int16& ExcelSheetReader::CurrentPopulationOf(InputDataSource& store) {
    return store.CurrentPopulation_;
}

void ExcelSheetReader::SetExcelFormatValid(InputDataSource& store, bool valid) {
    store.ExcelFormatValid_ = valid;
}

}  // namespace tavrelle
