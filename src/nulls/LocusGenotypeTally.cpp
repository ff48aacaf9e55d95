#include "nulls/LocusGenotypeTally.h"

#include <algorithm>

namespace tavrelle {

double LocusGenotypeTally::Scored() const {
    double homozygous = 0;
    for (double h : homozygotes)
        homozygous += h;
    return homozygous + heterozygotes;
}

CodedLocus CodeLocus(std::vector<std::pair<Int16, Int16>> sizes) {
    CodedLocus locus;
    for (const auto& [a, b] : sizes) {
        if (a > 0 && b > 0) {
            locus.alleles.push_back(a);
            locus.alleles.push_back(b);
        }
    }
    std::sort(locus.alleles.begin(), locus.alleles.end());
    locus.alleles.erase(std::unique(locus.alleles.begin(), locus.alleles.end()),
                        locus.alleles.end());
    auto index = [&](Int16 size) {
        return static_cast<Int16>(
            std::lower_bound(locus.alleles.begin(), locus.alleles.end(), size) -
            locus.alleles.begin());
    };
    for (const auto& [a, b] : sizes) {
        CodedGenotype coded;
        if (a > 0 && b > 0) {
            coded = {CodedGenotype::kScored, index(std::min(a, b)), index(std::max(a, b))};
        } else if (a <= 0 && b <= 0) {
            coded.kind = CodedGenotype::kBlank;
        }
        locus.genotypes.push_back(coded);
    }
    locus.sizes = std::move(sizes);
    return locus;
}

LocusGenotypeTally TallyLocus(const CodedLocus& locus, const std::vector<int>& multiplicity) {
    LocusGenotypeTally tally;
    TallyLocus(locus, multiplicity, tally);
    return tally;
}

void TallyLocus(const CodedLocus& locus, const std::vector<int>& multiplicity,
                LocusGenotypeTally& tally) {
    tally.alleles = locus.alleles;
    tally.homozygotes.assign(locus.alleles.size(), 0.0);
    tally.heterozygousCopies.assign(locus.alleles.size(), 0.0);
    tally.heterozygotes = 0;
    tally.blanks = 0;
    for (std::size_t i = 0; i < locus.genotypes.size(); ++i) {
        const int times = multiplicity[i];
        if (times == 0) continue;
        const CodedGenotype& g = locus.genotypes[i];
        if (g.kind == CodedGenotype::kBlank) {
            tally.blanks += times;
        } else if (g.kind == CodedGenotype::kScored) {
            if (g.first == g.second) {
                tally.homozygotes[static_cast<std::size_t>(g.first)] += times;
            } else {
                tally.heterozygotes += times;
                tally.heterozygousCopies[static_cast<std::size_t>(g.first)] += times;
                tally.heterozygousCopies[static_cast<std::size_t>(g.second)] += times;
            }
        }
    }
}

}  // namespace tavrelle
