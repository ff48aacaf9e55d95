#include "nulls/NullAlleleEm.h"

#include <limits>

#include "nulls/NullInbreedingModel.h"

namespace tavrelle {

double EmNullFrequency(const LocusGenotypeTally& locus) {
    if (locus.Individuals() <= 0) return std::numeric_limits<double>::quiet_NaN();
    return FitModel({locus}, {.nulls = true, .inbreeding = false}).nulls[0];
}

double EmMissingNullFrequency(const LocusGenotypeTally& locus) {
    LocusGenotypeTally scored = locus;
    scored.blanks = 0;
    return EmNullFrequency(scored);
}

}  // namespace tavrelle
