#include "population/InputDataSource.h"

#include <exception>
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
    : prompter_(&prompter) {
    const std::string& fileName = request.fileLocation;
    bool exists = CheckFileExists(fileName);
    if (fileName.empty() || !exists) {
        if (!request.newGridLoaded) prompter_->Show(PlainBox(kFileMissing + fileName));
        return;
    }

    // Held only while the constructor reads it: the tables keep every line.
    LineInput input(ReadWholeFile(fileName));
    if (input.Eof()) {
        prompter_->Show(PlainBox(kFileEmpty));
        return;
    }

    AddDataMember("1AlleleData");
    rsAllData = Table();
    rsAlleleData = Table();

    if (request.isExcel) {
        input = LineInput();  // the workbook reader opens the file itself
        rsTempData = Table();
        if (request.excelReader != nullptr) {
            SheetRead read =
                request.excelReader->ReadExcelSheet(fileName, request.excelSheetName, *prompter_);
            ExcelFormatValid_ = read.cells.has_value();
            if (read.cells) {
                // A cell the grid cannot hold refuses the sheet, as any error of the reader.
                try {
                    LoadCells(std::move(*read.cells));
                } catch (const std::exception& error) {
                    Refuse("sheet " + request.excelSheetName,
                           std::string("cells the grid can hold (") + error.what() + ")");
                    ExcelFormatValid_ = false;
                }
            } else {
                Refuse(std::move(read.where), std::move(read.expected));
            }
        } else {
            Refuse("", "a workbook this build of the program can read");
            ExcelFormatValid_ = false;
        }
        if (!ExcelFormatValid_) {
            prompter_->ShowExample(ExampleScreen::Excel);
            ResetLocusNames();
            return;
        }
        SetColumnHeaders(rsAlleleData);
    } else {
        if (request.gridIsNew) return;
        ReadGenepopHeader(input);
        if (!GenepopHeaderFound_) {
            Refuse("line " + std::to_string(lineNumber_),
                   "a line \"Pop\" after the title and the locus names");
            prompter_->ShowExample(ExampleScreen::Genepop);
            ResetLocusNames();
            return;
        }
        SetColumnHeaders(rsAllData);
        SetColumnHeaders(rsAlleleData);
        ReadGenepopBody(input);
        if (!GenepopBodyValid_) {
            if (refusalExpected_.empty())
                Refuse("line " + std::to_string(lineNumber_),
                       "a sample: its name, a comma, then one genotype per locus of three digits "
                       "per allele (six per locus)");
            prompter_->ShowExample(ExampleScreen::Genepop);
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
            MessageAnswer answer = prompter_->Show(
                {kDiskNotReadyText, "", MessageIcon::Exclamation, MessageButtons::OkCancel});
            if (answer == MessageAnswer::Ok) continue;
        } else if (failure.Number() == kDeviceUnavailable) {
            prompter_->Show({"The drive or path does not exist: " + fileName, "",
                             MessageIcon::Exclamation, MessageButtons::Ok});
        } else {
            prompter_->Show({"Error number " + std::to_string(failure.Number()) +
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

InputDataSource::InputDataSource(PopulationCells cells, Prompter& prompter) : prompter_(&prompter) {
    AddDataMember("1AlleleData");
    LoadCells(std::move(cells));
    SetColumnHeaders(rsAlleleData);
    DisplayLociNames(rsAlleleData);
    CurrentPopulation_ = 1;
    DisplayPopulation();
}

void InputDataSource::LoadCells(PopulationCells cells) {
    title_ = std::move(cells.title);
    LocusNames_ = std::move(cells.locusNames);
    if (LocusNames_.empty()) ResetLocusNames();
    SetColumnHeaders(rsAllData);
    DisplayLociNames(rsAllData);
    rsAllData.ReserveRows(rsAllData.RecordCount() + static_cast<std::int64_t>(cells.rows.size()));
    std::size_t population = 0;
    const auto columns = static_cast<std::size_t>(ColumnCount_);
    for (std::vector<std::string>& row : cells.rows) {
        // The first sample of each population is where the population starts.
        const bool first = !row.empty() && row[0] == "1";
        rsAllData.AddNew();
        for (std::size_t column = 0; column < row.size() && column < columns; ++column)
            rsAllData.SetField(static_cast<int>(column), std::move(row[column]));
        if (first) {
            if (PopulationBookmarks_.size() <= population)
                PopulationBookmarks_.resize(population + 1);
            PopulationBookmarks_[population++] = rsAllData.GetBookmark();
        }
    }
}

void InputDataSource::Refuse(std::string where, std::string expected) {
    refusalWhere_ = std::move(where);
    refusalExpected_ = std::move(expected);
}

}  // namespace tavrelle
