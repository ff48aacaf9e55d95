#include "nulls/SummaryText.h"

namespace tavrelle {

int NullLocusCount(const std::vector<LocusSummaryLine>& loci) {
    int count = 0;
    for (const LocusSummaryLine& locus : loci)
        count += locus.nullPresent == "yes" ? 1 : 0;
    return count;
}

std::string SummaryText(const std::vector<LocusSummaryLine>& loci) {
    std::string table =
        "Locus\t   Null Present\tVelmaret\tChakraborty\tBrookfield 1\tBrookfield 2\r\n\r\n";
    std::string names;
    int count = 0;
    for (const LocusSummaryLine& locus : loci) {
        const std::string name = locus.name.substr(0, 12);
        table += name + std::string(15 - name.size(), ' ') + "\t" + locus.nullPresent + "\t" +
                 locus.estimatesLine + "\r\n";
        if (locus.nullPresent == "yes") {
            names += name + ", ";
            ++count;
        }
    }
    const int last = static_cast<int>(loci.size()) - 1;
    std::string conclusion;
    if (count == 0) {
        conclusion =
            "No loci show evidence for a null allele.\r\nThis population is probably in "
            "Hardy Weinberg equilibrium.";
    } else if (count == 1) {
        conclusion =
            "One locus shows evidence for a null allele.\r\nThis population is possibly "
            "in Hardy Weinberg equilibrium with locus " +
            names + "showing signs of a null allele.";
    } else if (count <= last) {
        conclusion =
            "Several loci show evidence for a null allele.\r\nThis population is "
            "possibly in Hardy Weinberg equilibrium with loci " +
            names + "showing signs of a null allele.";
    } else {
        conclusion =
            "All loci show evidence for a null allele.\r\nThis population is probably "
            "not in Hardy Weinberg equilibrium.";
    }
    return table + "\r\n\r\n" + conclusion;
}

}  // namespace tavrelle
