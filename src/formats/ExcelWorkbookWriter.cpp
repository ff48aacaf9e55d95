#include "formats/ExcelWorkbookWriter.h"

#include <cerrno>
#include <functional>

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

namespace {

// Column A takes table column 1; the allele columns follow from B, two per locus. The sample
// number in column 0 is not written.
void EachSheetCell(const Table& rsAllData, const std::function<void(const WorksheetCell&)>& cell) {
    WorksheetCell c;
    for (std::int64_t row = 0; row < rsAllData.RecordCount(); ++row) {
        for (int column = 1; column < rsAllData.ColumnCount(); ++column) {
            const std::string& text = rsAllData.Cell(row, column);
            if (text.empty()) continue;
            c.row = row;
            c.column = column - 1;
            c.text = text;
            cell(c);
        }
    }
}

// An .xlsx workbook goes to the partial file as the library makes it, a row at a time, never
// whole in memory; a target written in place (a pipe) cannot be seeked, so it gets the bytes.
void WriteXlsxFile(const Table& rsAllData, const std::string& fileName, Prompter& prompter) {
    AtomicFile file(fileName);
    Repeating(prompter, [&] { return file.Open(); });
    if (file.TemporaryPath() == fileName) {
        if (!file.Write(XlsxWorkbookFile(SheetCellsOf(rsAllData), kDefaultSheetName)) ||
            !file.Commit())
            throw FileError(errno);
        return;
    }
    WriteXlsxWorkbook(
        file.TemporaryPath(),
        [&](const std::function<void(const WorksheetCell&)>& cell) {
            EachSheetCell(rsAllData, cell);
        },
        kDefaultSheetName);
    if (!file.Commit()) throw FileError(errno);
}

}  // namespace

WorksheetCells SheetCellsOf(const Table& rsAllData) {
    WorksheetCells cells;
    EachSheetCell(rsAllData, [&](const WorksheetCell& cell) { cells.push_back(cell); });
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
        if (KindOfFile(fileName) == FileKind::Xlsx)
            WriteXlsxFile(store.rsAllData, fileName, prompter);
        else
            WriteWorkbook(fileName,
                          XlsWorkbookFile(SheetCellsOf(store.rsAllData), kDefaultSheetName),
                          prompter);
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
