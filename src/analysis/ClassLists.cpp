#include "analysis/ClassLists.h"

#include "base/ShellSort.h"

namespace tavrelle {

namespace {

// Counts runs of equal keys in rows sorted on that key.
template <class KeyOf>
ClassList CountRuns(GenotypeSet rows, KeyOf keyOf) {
    ClassList classes;
    if (rows.empty()) return classes;
    if (rows.size() > 1) ShellSort(std::span<GenotypeRow>(rows), keyOf);
    for (const GenotypeRow& row : rows) {
        if (classes.empty() || classes.back().classValue != keyOf(row))
            classes.push_back({keyOf(row), 0});
        classes.back().count = Narrow16(classes.back().count + 1);
    }
    return classes;
}

}  // namespace

ClassList HomozygoteClassList(const GenotypeSet& set) {
    GenotypeSet homozygotes;
    for (const GenotypeRow& row : set)
        if (row.difference == 0) homozygotes.push_back(row);
    return CountRuns(std::move(homozygotes), [](const GenotypeRow& r) { return r.first; });
}

ClassList DifferenceClassList(const GenotypeSet& set) {
    return CountRuns(set, [](const GenotypeRow& r) { return r.difference; });
}

CountArray ExpandClasses(const ClassList& classes, Int16 upperBound, Int16 classOffset) {
    CountArray counts(static_cast<std::size_t>(upperBound) + 1, 0);
    for (const ClassCount& c : classes) {
        int index = c.classValue - classOffset;
        if (index < 0 || index > upperBound) throw ProgramError::SubscriptOutOfRange();
        counts[static_cast<std::size_t>(index)] = c.count;
    }
    return counts;
}

}  // namespace tavrelle
