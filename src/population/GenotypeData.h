#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tavrelle {

// One genotype: two allele sizes, 0 for a missing allele. Sizes run from 1 to kLargestAllele.
struct AllelePair {
    int first = 0;
    int second = 0;

    bool operator==(const AllelePair&) const = default;
};

// The largest allele a run can count (its counts are 16-bit).
inline constexpr int kLargestAllele = 32767;

struct GenotypeSample {
    std::string name;
    std::vector<AllelePair> genotypes;  // one per locus, in locus order

    bool operator==(const GenotypeSample&) const = default;
};

// A population: its name (empty where the file names none, as Genepop) and its samples in file
// order.
struct GenotypePopulation {
    std::string name;
    std::vector<GenotypeSample> samples;

    bool operator==(const GenotypePopulation&) const = default;
};

// Every format's data as the readers hand them over and the writers take them: what a study
// needs and nothing of any one layout.
struct GenotypeData {
    std::string title;
    std::vector<std::string> loci;
    std::vector<GenotypePopulation> populations;

    bool operator==(const GenotypeData&) const = default;
};

// The name a population goes by where a format needs one: its own, else the first word of its
// first sample's name (as the grid's caption), else "Pop" and its number from 1; a made-up name
// that another population's would equal gets "_" and the population's number from 1 (again
// while it still equals a label given before), so that no two labels are the same.
std::vector<std::string> PopulationLabels(const GenotypeData& data);

}  // namespace tavrelle
