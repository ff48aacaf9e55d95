#pragma once

#include "base/Int16.h"

namespace tavrelle {

// The paging of the questionnaire's locus rows, ten loci to a page. The position is the next
// locus to display; a page holds the loci from position - count to position - 1. Next and Prev
// only move the page: reading the answers back and hiding the rows is the screen's part.
class UserInfoPaging {
public:
    static constexpr Int16 kRowsPerPage = 10;

    explicit UserInfoPaging(Int16 lastLocus) : lastLocus_(lastLocus) { ShowPage(0); }

    // Fills a page from `from`; Next turns on when a full page leaves loci behind it.
    void ShowPage(Int16 from);
    void Next();
    void Prev();

    Int16 Position() const { return position_; }
    Int16 Count() const { return count_; }
    Int16 First() const { return static_cast<Int16>(position_ - count_); }
    Int16 LastLocus() const { return lastLocus_; }
    bool NextEnabled() const { return nextEnabled_; }
    bool PrevEnabled() const { return prevEnabled_; }

private:
    Int16 lastLocus_;
    Int16 position_ = 0;
    Int16 count_ = 0;
    bool nextEnabled_ = false;
    bool prevEnabled_ = false;
};

}  // namespace tavrelle
