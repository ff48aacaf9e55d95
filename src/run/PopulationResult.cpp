#include "run/PopulationResult.h"

#include <algorithm>

namespace tavrelle {

namespace {

// "0", "000" and the like: the missing allele, which the check lists as unexpected.
bool IsMissingAllele(const std::string& value) {
    return !value.empty() &&
           std::all_of(value.begin(), value.end(), [](char c) { return c == '0'; });
}

}  // namespace

std::size_t PopulationResult::SuspectCount() const {
    std::size_t count = nonInteger.size() + inconsistent.size();
    for (const SuspectEntry& entry : unexpected)
        if (!IsMissingAllele(entry.value)) ++count;
    return count;
}

}  // namespace tavrelle
