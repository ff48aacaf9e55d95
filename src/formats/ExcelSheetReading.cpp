#include "formats/ExcelSheetReading.h"

#include <exception>

#include "base/Numbers.h"
#include "population/ExcelTexts.h"
#include "population/InputDataSource.h"

namespace tavrelle {

namespace {

// An empty cell where text must be stored: the error ends the load as a refusal. This is how a
// row emptied with "Clear Contents", which the sheet still delivers, refuses the sheet.
std::string TextOf(const std::optional<std::string>& cell) {
    if (!cell) throw ProgramError(94, "Invalid use of Null");
    return *cell;
}

bool IsPopRow(const std::optional<std::string>& firstCell) {
    return firstCell && UpperCase(TrimBlanks(*firstCell)) == "POP";
}

// "*", blanks and empty cells are the sheet's ways of marking a missing allele.
std::string AlleleText(const std::optional<std::string>& cell) {
    if (!cell || *cell == "*" || TrimBlanks(*cell).empty()) return "0";
    return *cell;
}

}  // namespace

ProgramError WorkbookUnreadable() {
    return ProgramError(-2147467259, "External table is not in the expected format.");
}

void WorkbookSheetReader::LoadSheet(InputDataSource& store, const ExcelSheet& sheet,
                                    Prompter& prompter) {
    const std::int64_t rows = sheet.RecordCount();
    const int fields = sheet.FieldCount();
    if (fields < 3 || rows < 3) {
        SetExcelFormatValid(store, false);
        return;
    }

    // Row 2 holds a name in every other column from B. The test runs on every name, so a
    // numeric name too large for 32 bits refuses the sheet even after a text name.
    bool allNumeric = true;
    std::vector<std::string>& names = LocusNamesOf(store);
    std::size_t locus = 0;
    for (int column = 1; column <= fields - 1; column += 2) {
        std::string name = TextOf(sheet.Field(1, column));
        allNumeric = IsWholeNumber(name) && allNumeric;
        if (names.size() <= locus) names.resize(locus + 1);
        names[locus++] = std::move(name);
    }

    Table& all = store.rsAllData;
    store.SetColumnHeaders(all);
    store.DisplayLociNames(all);
    const std::int64_t cellsPerRow = store.ColumnCount();
    std::vector<Table::Bookmark>& bookmarks = PopulationBookmarksOf(store);
    Int16& population = CurrentPopulationOf(store);

    auto appendRow = [&] {
        if ((all.RecordCount() + 1) * cellsPerRow > kMaxSheetCells)
            throw ProgramError(7, "Out of memory");
        all.AddNew();
    };

    Int16 sample = 1;
    for (std::int64_t row = 2; row < rows;) {
        if (IsPopRow(sheet.Field(row, 0))) {
            appendRow();
            all.SetField(1, "Pop");
            // The row behind the break is read without a test: a break on the last row reads
            // past the sheet's end, which refuses it.
            ++row;
            sample = 1;
        }
        std::optional<std::string> name = sheet.Field(row, 0);
        appendRow();
        all.SetField(0, std::to_string(sample));
        all.SetField(1, TextOf(name));
        if (sample == 1) {
            const auto index = static_cast<std::size_t>(population - 1);
            if (bookmarks.size() <= index) bookmarks.resize(index + 1);
            bookmarks[index] = all.GetBookmark();
            population = Narrow16(population + 1);
        }
        // Only complete pairs of cells are read: with an even field count the last locus keeps
        // empty allele cells.
        for (int column = 1; column <= fields - 2; column += 2) {
            all.SetField(column + 1, AlleleText(sheet.Field(row, column)));
            all.SetField(column + 2, AlleleText(sheet.Field(row, column + 1)));
        }
        ++row;
        sample = Narrow16(sample + 1);
    }

    if (allNumeric) {
        // A sheet without its row of locus names would take the first sample's alleles as names.
        MessageAnswer answer =
            prompter.Show({std::string(kNumericNamesText), std::string(kNumericNamesCaption),
                           MessageIcon::None, MessageButtons::OkCancel});
        if (answer == MessageAnswer::Cancel) SetExcelFormatValid(store, false);
    }
}

std::vector<std::string> WorkbookSheetReader::SheetNames(const std::string& fileLocation) {
    try {
        return OpenWorkbook(fileLocation)->SheetNames();
    } catch (const std::exception&) {
        return {};
    }
}

void WorkbookSheetReader::ReadExcelSheet(InputDataSource& store, const std::string& fileLocation,
                                         const std::string& sheetName, Prompter& prompter) {
    store.rsTempData = Table();
    // A file that is no workbook is not this reader's to report: the error reaches the command.
    std::unique_ptr<ExcelWorkbook> workbook = OpenWorkbook(fileLocation);
    try {
        CurrentPopulationOf(store) = 1;
        std::unique_ptr<ExcelSheet> sheet = workbook->OpenSheet(sheetName);
        if (!sheet) {
            prompter.Show({SheetNotFoundText(sheetName), std::string(kSheetNotFoundCaption),
                           MessageIcon::None, MessageButtons::Ok});
            SetExcelFormatValid(store, false);
            return;
        }
        LoadSheet(store, *sheet, prompter);
    } catch (const std::exception&) {
        // Every other error refuses the sheet without a message; the store shows the example.
        SetExcelFormatValid(store, false);
    }
}

}  // namespace tavrelle
