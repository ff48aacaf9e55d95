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
    const std::size_t before = columnNames_.size();
    columnNames_.push_back(std::move(name));
    if (ids_.empty()) return;
    // Every row gets an empty cell at its end.
    CellStore widened;
    widened.Reserve(ids_.size() * columnNames_.size());
    for (std::size_t row = 0; row < ids_.size(); ++row) {
        widened.AppendEmpty(columnNames_.size());
        for (std::size_t column = 0; column < before; ++column)
            widened.Set(row * columnNames_.size() + column, cells_.Text(row * before + column));
    }
    cells_ = std::move(widened);
}

const std::string& Table::ColumnName(int column) const {
    if (column < 0 || column >= ColumnCount()) throw ProgramError::SubscriptOutOfRange();
    return columnNames_[static_cast<std::size_t>(column)];
}

void Table::AddNew() {
    ids_.push_back(nextId_++);
    cells_.AppendEmpty(columnNames_.size());
    position_ = RecordCount() - 1;
}

void Table::Delete() {
    const std::size_t row = RowIndex(position_);
    ids_.erase(ids_.begin() + static_cast<std::ptrdiff_t>(row));
    cells_.Erase(row * columnNames_.size(), columnNames_.size());
}

void Table::Move(std::int64_t n) {
    std::int64_t target = position_ + n;
    if (target < -1 || target > RecordCount()) throw ProgramError::NoCurrentRecord();
    position_ = target;
}

Table::Bookmark Table::GetBookmark() const {
    return ids_[RowIndex(position_)];
}

void Table::SetBookmark(Bookmark bookmark) {
    // Ids grow with every appended row, so the rows stay ordered by id.
    auto it = std::lower_bound(ids_.begin(), ids_.end(), bookmark);
    if (it == ids_.end() || *it != bookmark) throw ProgramError::NoCurrentRecord();
    position_ = it - ids_.begin();
}

std::string Table::Cell(std::int64_t row, int column) const {
    return cells_.Text(CellIndex(row, column));
}

void Table::SetCell(std::int64_t row, int column, std::string_view text) {
    if (text.size() > kMaxCellLength) throw CellTooLong();
    cells_.Set(CellIndex(row, column), text);
}

void Table::ReserveRows(std::int64_t rows) {
    if (rows <= RecordCount()) return;
    ids_.reserve(static_cast<std::size_t>(rows));
    cells_.Reserve(static_cast<std::size_t>(rows) * columnNames_.size());
}

std::size_t Table::RowIndex(std::int64_t row) const {
    if (row < 0 || row >= RecordCount()) throw ProgramError::NoCurrentRecord();
    return static_cast<std::size_t>(row);
}

std::size_t Table::CellIndex(std::int64_t row, int column) const {
    const std::size_t r = RowIndex(row);
    if (column < 0 || column >= ColumnCount()) throw ProgramError::SubscriptOutOfRange();
    return r * columnNames_.size() + static_cast<std::size_t>(column);
}

}  // namespace tavrelle
