#include "formats/XlsxWriter.h"

#include <xlsxwriter.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "base/ProgramError.h"
#include "base/TemporaryFolder.h"
#include "formats/WorkbookText.h"
#include "population/LineInput.h"

namespace tavrelle {

namespace {

ProgramError LibraryError(lxw_error error) {
    return ProgramError(1004, lxw_strerror(error));
}

// The library writes its file, and its own scratch files, by name: they go to a folder of their
// own, and the caller writes the finished bytes where the user asked, with the file errors the
// user is told about.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (TemporaryFolder() / "tavrelle-xlsx-XXXXXX").string();
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        if (mkdtemp(name.data()) == nullptr)
            throw ProgramError(1004, "No folder for temporary files could be made.");
        path_ = name.data();
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

struct WorkbookFree {
    void operator()(lxw_workbook* workbook) const { lxw_workbook_free(workbook); }
};

}  // namespace

void WriteXlsxWorkbook(const std::string& fileName, const WorksheetCellSource& cells,
                       std::string_view sheetName) {
    ScratchFolder scratch;
    std::string scratchName = scratch.Path().string();
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = scratchName.data();
    std::unique_ptr<lxw_workbook, WorkbookFree> workbook(
        workbook_new_opt(fileName.c_str(), &options));
    if (!workbook) throw LibraryError(LXW_ERROR_MEMORY_MALLOC_FAILED);
    const std::string name = ToUtf8(sheetName);
    lxw_worksheet* sheet = workbook_add_worksheet(workbook.get(), name.c_str());
    if (sheet == nullptr) throw ProgramError(1004, "The worksheet could not be added.");

    cells([&](const WorksheetCell& cell) {
        if (cell.row < 0 || cell.row >= kXlsxMaxRows || cell.column < 0 ||
            cell.column >= kXlsxMaxColumns)
            throw ProgramError(1004,
                               "The data need more than 1048576 rows or 16384 columns, the most "
                               "an Excel sheet holds.");
        const auto row = static_cast<lxw_row_t>(cell.row);
        const auto column = static_cast<lxw_col_t>(cell.column);
        lxw_error error = LXW_NO_ERROR;
        if (std::optional<double> number = LosslessNumber(cell.text)) {
            error = worksheet_write_number(sheet, row, column, *number, nullptr);
        } else {
            error = worksheet_write_string(sheet, row, column, ToUtf8(cell.text).c_str(), nullptr);
        }
        if (error != LXW_NO_ERROR) throw LibraryError(error);
    });
    // Closing writes the file and frees the workbook, whatever the outcome.
    lxw_error closed = workbook_close(workbook.release());
    if (closed != LXW_NO_ERROR) throw LibraryError(closed);
}

std::string XlsxWorkbookFile(const WorksheetCells& cells, std::string_view sheetName) {
    ScratchFolder scratch;
    const std::string fileName = (scratch.Path() / "book.xlsx").string();
    WriteXlsxWorkbook(
        fileName,
        [&](const std::function<void(const WorksheetCell&)>& cell) {
            for (const WorksheetCell& c : cells)
                cell(c);
        },
        sheetName);
    return ReadWholeFile(fileName);
}

}  // namespace tavrelle
