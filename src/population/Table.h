#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "population/CellStore.h"

namespace tavrelle {

// A small in-memory table of text cells with a cursor and bookmarks: the store's populations,
// the grid's rows and the scratch sheets all live in one. Cells hold at most 255 characters,
// packed (CellStore.h): reading a cell makes a copy of its text. Moving the cursor outside the rows
// or reading a cell where there is no current row is a program error, as writing an over-long cell
// is.
class Table {
public:
    using Bookmark = std::int64_t;
    static constexpr std::size_t kMaxCellLength = CellStore::kMaxTextLength;
    // Two columns a locus and two before them, in 16 bits.
    static constexpr int kMostLoci = (32767 - 2) / 2;

    void AppendColumn(std::string name);
    int ColumnCount() const { return static_cast<int>(columnNames_.size()); }
    const std::string& ColumnName(int column) const;

    // Appends an empty row and makes it the current one.
    void AddNew();
    // Removes the current row; the cursor moves to the row that took its place.
    void Delete();
    std::int64_t RecordCount() const { return static_cast<std::int64_t>(ids_.size()); }

    void MoveFirst() { position_ = 0; }
    void MoveLast() { position_ = RecordCount() - 1; }
    void MoveNext() { Move(1); }
    void MovePrevious() { Move(-1); }
    // Moves by n rows from the current one; landing on the end (one past the last row) or the
    // beginning (one before the first) is allowed, beyond is an error.
    void Move(std::int64_t n);
    bool Eof() const { return position_ >= RecordCount(); }
    bool Bof() const { return position_ < 0; }
    std::int64_t Position() const { return position_; }

    Bookmark GetBookmark() const;
    void SetBookmark(Bookmark bookmark);

    // Cells of the current row.
    std::string Field(int column) const { return Cell(position_, column); }
    void SetField(int column, std::string_view text) { SetCell(position_, column, text); }

    // Direct access by 0-based row, for readers that walk a whole table.
    std::string Cell(std::int64_t row, int column) const;
    void SetCell(std::int64_t row, int column, std::string_view text);

    // Room for this many rows in all, so that a reader that knows its size grows the table once.
    void ReserveRows(std::int64_t rows);

private:
    std::size_t RowIndex(std::int64_t row) const;
    std::size_t CellIndex(std::int64_t row, int column) const;

    std::vector<std::string> columnNames_;
    // Row by row, each row's cells in column order; ids_ holds each row's bookmark.
    std::vector<Bookmark> ids_;
    CellStore cells_;
    std::int64_t position_ = 0;
    Bookmark nextId_ = 1;
};

}  // namespace tavrelle
