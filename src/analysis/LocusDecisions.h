#pragma once

#include <vector>

#include "analysis/ConfidenceBounds.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// The six decisions of a locus.
struct LocusDecisions {
    bool homozygoteExcess = false;        // more homozygotes than the rounds allow
    bool classWideExcess = false;         // most size classes hold too many homozygotes
    bool oneRepeatDeficit = false;        // too few pairs one repeat apart: stutter
    bool upperClassExcess = false;        // homozygotes crowd the largest fifth of the classes
    bool lowerClassExcess = false;        // ... or the smallest fifth
    bool largeDifferencesScarce = false;  // few pairs far apart: large allele drop-out

    bool operator==(const LocusDecisions&) const = default;
};

// Homozygote tests by size class.
bool ClassWideExcessTest(const CountArray& observed, const BoundsTable& bounds,
                         const std::vector<double>& means);
bool UpperClassExcessTest(const CountArray& observed, Int16 homozygotes);
bool LowerClassExcessTest(const CountArray& observed, Int16 homozygotes);

// Tests on the size differences of the two alleles of an individual.
bool ZeroClassExcessTest(const CountArray& observed, const BoundsTable& bounds);
bool OneRepeatDeficitTest(const CountArray& observed, const BoundsTable& bounds, Int16 repeat);
bool LargeDifferenceTest(const CountArray& observed);

}  // namespace tavrelle
