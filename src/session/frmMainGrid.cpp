// Editing in the grid: copy, cut, paste, select all and delete of whole rows.
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>

#include "base/Numbers.h"
#include "population/StringFunctions.h"
#include "session/GridView.h"
#include "session/frmMain.h"

namespace tavrelle {

std::vector<Table::Bookmark> frmMain::PickedBookmarks() const {
    std::vector<Table::Bookmark> bookmarks;
    Table& table = session_.gInputData->rsAlleleData;
    for (int row : DataGrid1->PickedRows()) {
        if (row >= table.RecordCount()) continue;  // the blank row of a typed grid
        table.Move(row - table.Position());
        bookmarks.push_back(table.GetBookmark());
    }
    return bookmarks;
}

void frmMain::OnGridSelectionChanged() {
    Apply(DataGrid1->PickedRows().empty() ? ScreenState::NoRowsSelected
                                          : ScreenState::RowsSelected);
}

void frmMain::mnuCopy_Click() {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    if (!session_.gInputData) return;
    Table& table = session_.gInputData->rsAlleleData;
    std::string text;
    // Every field but the sample number, tab-separated, the line trimmed, in picking order.
    for (Table::Bookmark bookmark : PickedBookmarks()) {
        table.SetBookmark(bookmark);
        std::string line;
        for (int field = 1; field < table.ColumnCount() - 1; ++field)
            line += table.Field(field) + "\t";
        line += table.Field(table.ColumnCount() - 1);
        text += std::string(TrimBlanks(line)) + "\r\n";
    }
    if (!text.empty()) clipboard->setText(QString::fromStdString(text));
}

void frmMain::DeleteSelectedRows() {
    if (DataGrid1->PickedRows().empty()) return;
    Table& table = session_.gInputData->rsAlleleData;
    for (Table::Bookmark bookmark : PickedBookmarks()) {
        table.SetBookmark(bookmark);
        table.Delete();
    }
    DataGrid1->ClearPicked();
    gridModel_.Reload();
    flags.UncheckedData = true;
    ChangedData = true;
    OnGridSelectionChanged();
}

void frmMain::GridDeleteRows() {
    const std::vector<int>& picked = DataGrid1->PickedRows();
    if (picked.empty()) return;
    // The grid's own deletion looks at the first picked row only.
    if (picked.front() < 2) {
        interaction_.Show(
            {"This row cannot be deleted.", "", MessageIcon::Exclamation, MessageButtons::Ok});
        return;
    }
    DeleteSelectedRows();
}

void frmMain::mnuCut_Click() {
    mnuCopy_Click();
    DeleteSelectedRows();
}

void frmMain::mnuDelete_Click() {
    DeleteSelectedRows();
}

void frmMain::mnuSelectAll_Click() {
    if (!session_.gInputData) return;
    std::vector<int> rows;
    for (int row = 0; row < session_.gInputData->rsAlleleData.RecordCount(); ++row)
        rows.push_back(row);
    DataGrid1->SetPickedRows(rows);
    DataGrid1->setFocus();
    Apply(ScreenState::RowsSelected);
}

void frmMain::mnuPaste_Click() {
    if (!session_.gInputData) return;
    std::string text = QGuiApplication::clipboard()->text().toStdString();
    if (InStr(text, "\r\n") == 0) return;
    Table& table = session_.gInputData->rsAlleleData;
    std::int64_t counter = table.RecordCount() - 2;
    const int fields = table.ColumnCount();
    const std::string firstLine(Left(text, InStr(text, "\r\n") - 1));
    const auto tabs = std::count(firstLine.begin(), firstLine.end(), '\t');
    if (tabs != fields - 2) {
        interaction_.Show(
            {"The number of loci to be pasted does not\r\nmatch the number of loci "
             "in the DataGrid.",
             "Invalid Paste", MessageIcon::Exclamation, MessageButtons::Ok});
        return;
    }
    try {
        while (InStr(text, "\r\n") > 0) {
            table.AddNew();
            table.SetField(0, std::to_string(++counter));
            for (int field = 1; field < fields - 1; ++field) {
                const long long tab = InStr(text, "\t");
                table.SetField(field, std::string(Left(text, tab - 1)));
                text = std::string(TrimBlanks(Mid(text, tab + 1)));
            }
            const long long end = InStr(text, "\r\n");
            table.SetField(fields - 1, std::string(Left(text, end - 1)));
            text = std::string(TrimBlanks(Mid(text, end + 2)));
        }
    } catch (const ProgramError&) {
        // A later line with fewer fields ends the paste where it stands; the rows added stay.
    }
    gridModel_.Reload();
    flags.UncheckedData = true;
    ChangedData = true;
    StoreCurrentPopulation();
}

}  // namespace tavrelle
