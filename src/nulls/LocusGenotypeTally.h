#pragma once

#include <vector>

#include "base/Int16.h"

namespace tavrelle {

// What the likelihood estimators need from the individuals of one locus: per visible allele
// the apparent homozygotes and the copies in heterozygotes, the heterozygous individuals and
// the blanks (both alleles missing). Counts are doubles so that a bootstrap sample's
// multiplicities add straight in.
struct LocusGenotypeTally {
    std::vector<Int16> alleles;  // sizes, ascending
    std::vector<double> homozygotes;
    std::vector<double> heterozygousCopies;
    double heterozygotes = 0;
    double blanks = 0;

    double Scored() const;
    double Individuals() const { return Scored() + blanks; }
};

// One individual at one locus, as the likelihood estimators read it: a scored genotype (both
// alleles above 0) by its alleles' indices in the locus's allele list, a blank (both alleles
// 0), or left out (one allele 0).
struct CodedGenotype {
    enum Kind : unsigned char { kScored, kBlank, kLeftOut };
    Kind kind = kLeftOut;
    Int16 first = 0;  // allele indices, for kScored
    Int16 second = 0;
};

// The alleles of a locus's scored genotypes, ascending, and each genotype coded against them.
struct CodedLocus {
    std::vector<Int16> alleles;
    std::vector<CodedGenotype> genotypes;        // one per individual
    std::vector<std::pair<Int16, Int16>> sizes;  // the alleles as given, one pair per individual
};

// Codes one locus from its allele pairs (0 = missing allele).
CodedLocus CodeLocus(std::vector<std::pair<Int16, Int16>> sizes);

// The tally of a locus over the individuals with the given multiplicities (one per individual;
// all 1 for the sample itself).
LocusGenotypeTally TallyLocus(const CodedLocus& locus, const std::vector<int>& multiplicity);
// The same into an existing tally, reusing its storage (a bootstrap tallies every replicate).
void TallyLocus(const CodedLocus& locus, const std::vector<int>& multiplicity,
                LocusGenotypeTally& tally);

}  // namespace tavrelle
