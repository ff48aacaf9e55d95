#pragma once

#include <vector>

#include "base/Int16.h"
#include "population/Table.h"

namespace tavrelle {

// A cell of rsAlleleData, 0-based.
struct CellPosition {
    Int16 column = 0;
    Int16 row = 0;

    bool operator==(const CellPosition&) const = default;
};

// What the check found, kept by the main screen for the Possible Errors dialog. A list is
// replaced only by a check that adds to it; otherwise it stays as an earlier check left it, also
// across populations and files, and the dialog's actions apply it all the same.
struct SuspectCells {
    std::vector<CellPosition> NonIntegerCells;
    std::vector<CellPosition> UnexpectedCells;
    std::vector<Table::Bookmark> UnexpectedBookmarks;
    std::vector<CellPosition> InconsistentCells;
    std::vector<Table::Bookmark> InconsistentBookmarks;

    // Opening a file empties the bookmarks only; the cell lists stay.
    void ClearBookmarks() {
        UnexpectedBookmarks.clear();
        InconsistentBookmarks.clear();
    }
    // A store rebuilt after a failed run starts with no lists at all.
    void Clear() { *this = SuspectCells(); }
};

}  // namespace tavrelle
