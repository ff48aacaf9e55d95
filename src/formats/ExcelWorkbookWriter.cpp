#include "formats/ExcelWorkbookWriter.h"

#include <cerrno>

#include "base/AtomicFile.h"
#include "formats/Biff8Writer.h"
#include "formats/XlsxWriter.h"
#include "population/ExcelTexts.h"
#include "population/FileErrors.h"
#include "population/FileKind.h"

namespace tavrelle {

namespace {

// The save was given up at the disk-not-ready question; no further message follows.
struct SaveCancelled {};

// A drive that is not ready may be made ready: OK repeats the failed statement.
template <typename Statement>
void Repeating(Prompter& prompter, Statement statement) {
    for (;;) {
        errno = 0;
        if (statement()) return;
        ProgramError error = FileError(errno);
        if (error.Number() != kDiskNotReady) throw error;
        MessageAnswer answer = prompter.Show(
            {"Put a floppy disk in the drive and close the drive door.\r\n" + error.Description(),
             "", MessageIcon::Exclamation, MessageButtons::OkCancel});
        if (answer != MessageAnswer::Ok) throw SaveCancelled{};
    }
}

// The workbook is made whole in memory and written to a temporary file beside the target, which
// replaces the target only when complete: a write that fails leaves the user's old file as it was.
void WriteWorkbook(const std::string& fileName, const std::string& bytes, Prompter& prompter) {
    AtomicFile file(fileName);
    Repeating(prompter, [&] { return file.Open(); });
    if (!file.Write(bytes) || !file.Commit()) throw FileError(errno);
}

}  // namespace

WorksheetCells SheetCellsOf(const Table& rsAllData) {
    WorksheetCells cells;
    // Column A takes table column 1; the allele columns follow from B, two per locus. The sample
    // number in column 0 is not written.
    for (std::int64_t row = 0; row < rsAllData.RecordCount(); ++row) {
        for (int column = 1; column < rsAllData.ColumnCount(); ++column) {
            const std::string& text = rsAllData.Cell(row, column);
            if (!text.empty()) cells.push_back({row, column - 1, text});
        }
    }
    return cells;
}

ExcelSaveOutcome SaveExcelFile(InputDataSource& store, const std::string& fileName,
                               const std::string& fileTitle, bool gridIsNew, Prompter& prompter) {
    ExcelSaveOutcome result;
    try {
        if (gridIsNew) {
            store.SaveNewPopulation();
        } else {
            store.SavePopulation();
        }
        const WorksheetCells cells = SheetCellsOf(store.rsAllData);
        const std::string bytes = KindOfFile(fileName) == FileKind::Xlsx
                                      ? XlsxWorkbookFile(cells, kDefaultSheetName)
                                      : XlsWorkbookFile(cells, kDefaultSheetName);
        WriteWorkbook(fileName, bytes, prompter);
    } catch (const SaveCancelled&) {
        return result;
    } catch (const ProgramError& error) {
        ReportSaveFailure(error, prompter, "\r\nPlease try saving in a different format.");
        return result;
    } catch (const std::bad_alloc&) {
        ReportSaveFailure(ProgramError(7, "Out of memory"), prompter,
                          "\r\nPlease try saving in a different format.");
        return result;
    }
    result.outcome = SaveOutcome::Saved;
    result.clearChangedData = true;
    result.titleBar = "Tavrelle - " + fileTitle;
    store.rsAllData.MoveFirst();
    return result;
}

}  // namespace tavrelle
