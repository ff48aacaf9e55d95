#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavrelle {

// A small in-memory table of text cells with a cursor and bookmarks: the store's populations,
// the grid's rows and the scratch sheets all live in one. Cells hold at most 255 characters.
// Moving the cursor outside the rows or reading a cell where there is no current row is a
// program error, as writing an over-long cell is.
class Table {
public:
    using Bookmark = std::int64_t;
    static constexpr std::size_t kMaxCellLength = 255;

    void AppendColumn(std::string name);
    int ColumnCount() const { return static_cast<int>(columnNames_.size()); }
    const std::string& ColumnName(int column) const;

    // Appends an empty row and makes it the current one.
    void AddNew();
    // Removes the current row; the cursor moves to the row that took its place.
    void Delete();
    std::int64_t RecordCount() const { return static_cast<std::int64_t>(rows_.size()); }

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
    const std::string& Field(int column) const;
    void SetField(int column, std::string text);

    // Direct access by 0-based row, for readers that walk a whole table.
    const std::string& Cell(std::int64_t row, int column) const;
    void SetCell(std::int64_t row, int column, std::string text);

private:
    struct Row {
        Bookmark id;
        std::vector<std::string> cells;
    };
    const Row& CurrentRow() const;
    Row& CurrentRow();
    std::size_t RowIndex(std::int64_t row) const;
    static std::size_t ColumnIndex(const Row& row, int column);

    std::vector<std::string> columnNames_;
    std::vector<Row> rows_;
    std::int64_t position_ = 0;
    Bookmark nextId_ = 1;
};

}  // namespace tavrelle
