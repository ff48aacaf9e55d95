#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "analysis/RandomNumGen.h"
#include "analysis/RoundMatrix.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// One round as the rule states it: pool both alleles of every source row (first, then second),
// give each copy a number from the generator in that order, sort the copies on their numbers
// with the Shell sort, and pair neighbours into the target. Kept as the reference the fast path
// below is tested against.
void RandomiseGenotypes(const GenotypeSet& source, GenotypeSet& target, RandomNumGen& generator);

// The fast round: the pool's copies are put in key order by a bucket pass (keys are uniform), and
// only a round in which two keys are equal goes through the Shell sort, which alone settles ties.
class RoundShuffler {
public:
    explicit RoundShuffler(const GenotypeSet& source);

    std::size_t PoolSize() const { return pool_.size(); }

    // Pairs the pool in the order of `keys` (one per copy, in draw order) and calls
    // onPair(first, second) for each new genotype in order.
    template <class OnPair>
    void Pair(std::span<const std::uint32_t> keys, OnPair&& onPair) {
        const std::vector<Int16>& ordered = Order(keys);
        for (std::size_t i = 0; i + 1 < ordered.size(); i += 2)
            onPair(ordered[i], ordered[i + 1]);
    }

    // Rounds so far that needed the Shell sort for equal keys.
    std::int64_t RoundsWithTies() const { return roundsWithTies_; }

private:
    struct Copy {
        std::uint32_t key;
        Int16 allele;
    };
    const std::vector<Int16>& Order(std::span<const std::uint32_t> keys);

    std::vector<Int16> pool_;
    int bucketShift_ = 0;
    std::vector<std::uint32_t> bucketStart_;
    std::vector<Copy> sorted_;
    std::vector<Int16> ordered_;
    std::int64_t roundsWithTies_ = 0;
};

// The N rounds of a locus: counts of homozygotes by size and of pairs by size difference per
// round, kept as a frequency of each count per class, which is all the sorted round matrices and
// the means need.
class LocusRounds {
public:
    LocusRounds(const GenotypeSet& observed, Int16 lowest, Int16 range, Int16 rounds);

    std::size_t PoolSize() const { return shuffler_.PoolSize(); }
    void AddRound(std::span<const std::uint32_t> keys);

    // Each class's N counts in ascending order.
    RoundMatrix SortedHomozygotes() const { return Sorted(homozygoteFrequencies_); }
    RoundMatrix SortedDifferences() const { return Sorted(differenceFrequencies_); }
    // Sum over the N rounds divided by N, per class.
    std::vector<double> MeanHomozygotes() const { return Means(homozygoteFrequencies_); }
    std::vector<double> MeanDifferences() const { return Means(differenceFrequencies_); }

    std::int64_t RoundsWithTies() const { return shuffler_.RoundsWithTies(); }

private:
    RoundMatrix Sorted(const std::vector<std::int32_t>& frequencies) const;
    std::vector<double> Means(const std::vector<std::int32_t>& frequencies) const;

    RoundShuffler shuffler_;
    Int16 lowest_;
    int classes_;
    int maxCount_;
    Int16 rounds_;
    int roundsAdded_ = 0;
    std::vector<Int16> roundHomozygotes_;
    std::vector<Int16> roundDifferences_;
    // frequencies[c * (maxCount + 1) + k]: rounds in which class c counted k.
    std::vector<std::int32_t> homozygoteFrequencies_;
    std::vector<std::int32_t> differenceFrequencies_;
};

}  // namespace tavrelle
