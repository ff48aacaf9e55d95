#include "results/UserInfoPaging.h"

namespace tavrelle {

void UserInfoPaging::ShowPage(Int16 from) {
    count_ = 0;
    position_ = from;
    while (position_ <= lastLocus_) {
        if (count_ == kRowsPerPage) {
            nextEnabled_ = true;
            return;
        }
        count_ = Narrow16(count_ + 1);
        position_ = Narrow16(position_ + 1);
    }
}

void UserInfoPaging::Next() {
    nextEnabled_ = position_ + kRowsPerPage <= lastLocus_;
    prevEnabled_ = true;
    // Never true with the pages Next can be pressed on; kept so that a short page steps back.
    if (count_ < kRowsPerPage) position_ = Narrow16(position_ - count_);
    ShowPage(position_);
}

void UserInfoPaging::Prev() {
    const Int16 from = Narrow16(position_ - count_ - kRowsPerPage);
    nextEnabled_ = true;
    prevEnabled_ = from >= 1;
    ShowPage(from);
}

}  // namespace tavrelle
