#pragma once

#include <string>

#include "analysis/LocusTestResult.h"

namespace tavrelle {

// The plain-language reading of a locus's tests.
struct LocusConclusions {
    std::string probabilityText;     // the per-class probability table
    std::string interpretationText;  // homozygote totals and the three verdicts
    std::string nullPresent;         // "yes" when a null allele is suspected
    bool nullSuspected = false;      // homozygote excess in general and across size classes
};

// Without an excess of homozygotes no verdict is possible; with one, an excess across most size
// classes says null allele, otherwise large allele drop-out; a shortage of one-repeat pairs says
// stutter, beside either.
LocusConclusions LocusInterpretation(const LocusTestResult& locus);

}  // namespace tavrelle
