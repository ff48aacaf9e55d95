#include "formats/ExcelSheetReading.h"

#include <exception>

#include "base/Numbers.h"
#include "population/ExcelTexts.h"

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

namespace {

// "A", "B", ... "Z", "AA": the column as the workbook names it, from 0.
std::string ColumnName(int column) {
    std::string name;
    for (int c = column + 1; c > 0; c = (c - 1) / 26)
        name.insert(name.begin(), static_cast<char>('A' + (c - 1) % 26));
    return name;
}

// Where a refusal stands, for the located error.
struct Cursor {
    std::string sheet;
    std::int64_t row = 0;
    int column = 0;
    std::string expected;
    std::string Where() const {
        return "sheet " + sheet + ", cell " + ColumnName(column) + std::to_string(row + 1);
    }
};

}  // namespace

SheetRead WorkbookSheetReader::ReadSheet(const ExcelSheet& sheet, const std::string& sheetName,
                                         Prompter& prompter) {
    SheetRead read;
    const std::int64_t rows = sheet.RecordCount();
    const int fields = sheet.FieldCount();
    if (fields < 3 || rows < 3) {
        read.where = "sheet " + sheetName;
        read.expected = "locus names in row 2 from column B and samples from row 3";
        return read;
    }
    Cursor at{sheetName, 1, 1, "a locus name"};
    PopulationCells cells;
    try {
        // Row 2 holds a name in every other column from B. The test runs on every name, so a
        // numeric name too large for 32 bits refuses the sheet even after a text name.
        bool allNumeric = true;
        for (int column = 1; column <= fields - 1; column += 2) {
            at.column = column;
            std::string name = TextOf(sheet.Field(1, column));
            allNumeric = IsWholeNumber(name) && allNumeric;
            cells.locusNames.push_back(std::move(name));
        }
        // The store's columns: sample number, name, two per locus; two heading rows above.
        const std::int64_t cellsPerRow = static_cast<std::int64_t>(cells.locusNames.size()) * 2 + 2;
        auto appendRow = [&]() -> std::vector<std::string>& {
            if ((static_cast<std::int64_t>(cells.rows.size()) + 3) * cellsPerRow > kMaxSheetCells)
                throw ProgramError(7, "Out of memory");
            return cells.rows.emplace_back();
        };

        Int16 sample = 1;
        for (std::int64_t row = 2; row < rows;) {
            at.row = row;
            at.column = 0;
            if (IsPopRow(sheet.Field(row, 0))) {
                appendRow() = {"", "Pop"};
                // The row behind the break is read without a test: a break on the last row
                // reads past the sheet's end, which refuses it.
                ++row;
                at.row = row;
                sample = 1;
            }
            at.expected = "a sample name";
            std::optional<std::string> name = sheet.Field(row, 0);
            std::vector<std::string>& cellsOfRow = appendRow();
            cellsOfRow.push_back(std::to_string(sample));
            cellsOfRow.push_back(TextOf(name));
            // Only complete pairs of cells are read: with an even field count the last locus
            // keeps empty allele cells.
            at.expected = "an allele size";
            for (int column = 1; column <= fields - 2; column += 2) {
                at.column = column;
                cellsOfRow.push_back(AlleleText(sheet.Field(row, column)));
                cellsOfRow.push_back(AlleleText(sheet.Field(row, column + 1)));
            }
            ++row;
            sample = Narrow16(sample + 1);
        }

        if (allNumeric) {
            // A sheet without its row of locus names would take the first sample's alleles as
            // names.
            MessageAnswer answer =
                prompter.Show({std::string(kNumericNamesText), std::string(kNumericNamesCaption),
                               MessageIcon::None, MessageButtons::OkCancel});
            if (answer == MessageAnswer::Cancel) {
                read.where = "sheet " + sheetName + ", row 2";
                read.expected = "locus names, not numbers";
                return read;
            }
        }
    } catch (const std::exception&) {
        // Every error refuses the sheet without a message; the store shows the example.
        read.where = at.Where();
        read.expected = at.expected;
        return read;
    }
    read.cells = std::move(cells);
    return read;
}

ExcelWorkbook& WorkbookSheetReader::Workbook(const std::string& fileLocation) {
    if (!workbook_ || openedLocation_ != fileLocation) {
        workbook_.reset();
        workbook_ = OpenWorkbook(fileLocation);
        openedLocation_ = fileLocation;
    }
    return *workbook_;
}

std::vector<std::string> WorkbookSheetReader::SheetNames(const std::string& fileLocation) {
    try {
        return Workbook(fileLocation).SheetNames();
    } catch (const std::exception&) {
        return {};
    }
}

SheetRead WorkbookSheetReader::ReadExcelSheet(const std::string& fileLocation,
                                              const std::string& sheetName, Prompter& prompter) {
    // A file that is no workbook is not this reader's to report: the error reaches the command.
    ExcelWorkbook& workbook = Workbook(fileLocation);
    SheetRead read;
    try {
        std::unique_ptr<ExcelSheet> sheet = workbook.OpenSheet(sheetName);
        if (!sheet) {
            prompter.Show({SheetNotFoundText(sheetName), std::string(kSheetNotFoundCaption),
                           MessageIcon::None, MessageButtons::Ok});
            read.expected = "a sheet named " + sheetName;
            return read;
        }
        return ReadSheet(*sheet, sheetName, prompter);
    } catch (const std::exception&) {
        // Every other error refuses the sheet without a message; the store shows the example.
        read.where = "sheet " + sheetName;
        read.expected = "a sheet the program can read";
    }
    return read;
}

}  // namespace tavrelle
