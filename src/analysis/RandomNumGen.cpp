#include "analysis/RandomNumGen.h"

#include "base/ProgramError.h"

namespace tavrelle {

// Reached only for a seed of 0 or below: the table is filled from the first stream, seeded with
// the seed's negation (at least 1).
void RandomNumGen::FillTable() {
    if (idum_ == INT32_MIN) throw ProgramError::Overflow();
    idum_ = -idum_;
    if (idum_ < 1) idum_ = 1;
    idum2_ = idum_;
    for (int j = 39; j >= 0; --j) {
        idum_ = Advance<53668, 40014, 12211, 2147483563>(idum_);
        if (j < 32) iv_[static_cast<std::size_t>(j)] = idum_;
    }
    iy_ = iv_[0];
}

}  // namespace tavrelle
