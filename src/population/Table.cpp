#include "population/Table.h"

#include <algorithm>

#include "base/ProgramError.h"

namespace tavrelle {

namespace {
ProgramError CellTooLong() {
    return {3421, "A cell holds at most 255 characters."};
}
}  // namespace

void Table::AppendColumn(std::string name) {
    columnNames_.push_back(std::move(name));
    for (Row& row : rows_)
        row.cells.emplace_back();
}

const std::string& Table::ColumnName(int column) const {
    if (column < 0 || column >= ColumnCount()) throw ProgramError::SubscriptOutOfRange();
    return columnNames_[static_cast<std::size_t>(column)];
}

void Table::AddNew() {
    rows_.push_back(Row{nextId_++, std::vector<std::string>(columnNames_.size())});
    position_ = RecordCount() - 1;
}

void Table::Delete() {
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(RowIndex(position_)));
}

void Table::Move(std::int64_t n) {
    std::int64_t target = position_ + n;
    if (target < -1 || target > RecordCount()) throw ProgramError::NoCurrentRecord();
    position_ = target;
}

Table::Bookmark Table::GetBookmark() const {
    return CurrentRow().id;
}

void Table::SetBookmark(Bookmark bookmark) {
    // Ids grow with every appended row, so the rows stay ordered by id.
    auto it = std::lower_bound(rows_.begin(), rows_.end(), bookmark,
                               [](const Row& row, Bookmark id) { return row.id < id; });
    if (it == rows_.end() || it->id != bookmark) throw ProgramError::NoCurrentRecord();
    position_ = it - rows_.begin();
}

const std::string& Table::Field(int column) const {
    const Row& row = CurrentRow();
    return row.cells[ColumnIndex(row, column)];
}

void Table::SetField(int column, std::string text) {
    SetCell(position_, column, std::move(text));
}

const std::string& Table::Cell(std::int64_t row, int column) const {
    const Row& r = rows_[RowIndex(row)];
    return r.cells[ColumnIndex(r, column)];
}

void Table::SetCell(std::int64_t row, int column, std::string text) {
    if (text.size() > kMaxCellLength) throw CellTooLong();
    Row& r = rows_[RowIndex(row)];
    r.cells[ColumnIndex(r, column)] = std::move(text);
}

const Table::Row& Table::CurrentRow() const {
    return rows_[RowIndex(position_)];
}
Table::Row& Table::CurrentRow() {
    return rows_[RowIndex(position_)];
}

std::size_t Table::RowIndex(std::int64_t row) const {
    if (row < 0 || row >= RecordCount()) throw ProgramError::NoCurrentRecord();
    return static_cast<std::size_t>(row);
}

std::size_t Table::ColumnIndex(const Row& row, int column) {
    if (column < 0 || static_cast<std::size_t>(column) >= row.cells.size())
        throw ProgramError::SubscriptOutOfRange();
    return static_cast<std::size_t>(column);
}

}  // namespace tavrelle
