#pragma once

#include <string>
#include <vector>

namespace tavrelle {

// One locus's line of the comparison across loci.
struct LocusSummaryLine {
    std::string name;
    std::string nullPresent;  // "yes" or "no"
    std::string estimatesLine;
};

// The table of every locus's verdict and estimates, and the conclusion about Hardy Weinberg
// equilibrium drawn from how many loci show a null allele.
std::string SummaryText(const std::vector<LocusSummaryLine>& loci);

// How many loci say "yes".
int NullLocusCount(const std::vector<LocusSummaryLine>& loci);

}  // namespace tavrelle
