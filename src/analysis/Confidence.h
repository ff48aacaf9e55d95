#pragma once

#include <optional>
#include <string>

#include "base/Int16.h"

namespace tavrelle {

// The confidence interval of a run's bounds. The number of each is the list index of the
// interval lists on the screens and the value the JSON report carries, so it never changes.
enum class Confidence : Int16 { Percent95 = 0, Percent99 = 1, FullRange = 2, Bonferroni = 3 };

inline int ConfidenceCode(Confidence confidence) {
    return static_cast<int>(confidence);
}

// The interval at a list index; nothing for an index outside the list.
inline std::optional<Confidence> ConfidenceFromCode(int code) {
    if (code < 0 || code > 3) return std::nullopt;
    return static_cast<Confidence>(code);
}

// As the interval lists show it: "95%", "99%", "100% (range)", "Bonferroni".
inline std::string ConfidenceText(Confidence confidence) {
    static const char* const kTexts[] = {"95%", "99%", "100% (range)", "Bonferroni"};
    return kTexts[ConfidenceCode(confidence)];
}

}  // namespace tavrelle
