#include "analysis/Randomisation.h"

#include <bit>
#include <cstdlib>

#include "base/ShellSort.h"

namespace tavrelle {

namespace {
Int16 AbsoluteDifference(Int16 a, Int16 b) {
    return Narrow16(std::abs(a - b));
}
}  // namespace

void RandomiseGenotypes(const GenotypeSet& source, GenotypeSet& target, RandomNumGen& generator) {
    struct KeyedCopy {
        double allele;
        double key;
    };
    std::vector<KeyedCopy> copies(source.size() * 2);
    for (std::size_t i = 0; i < source.size(); ++i) {
        copies[2 * i].allele = source[i].first;
        copies[2 * i + 1].allele = source[i].second;
        copies[2 * i].key = generator.GeneratedNumber();
        copies[2 * i + 1].key = generator.GeneratedNumber();
    }
    ShellSort(std::span<KeyedCopy>(copies), [](const KeyedCopy& c) { return c.key; });
    for (std::size_t i = 0; i + 1 < copies.size(); i += 2) {
        auto first = static_cast<Int16>(copies[i].allele);
        auto second = static_cast<Int16>(copies[i + 1].allele);
        target.push_back({first, second, AbsoluteDifference(first, second)});
    }
}

RoundShuffler::RoundShuffler(const GenotypeSet& source) {
    pool_.reserve(source.size() * 2);
    for (const GenotypeRow& row : source) {
        pool_.push_back(row.first);
        pool_.push_back(row.second);
    }
    // As many buckets as copies (a power of two), chosen by the keys' top bits; keys are below
    // 2^31.
    std::size_t buckets = std::bit_ceil(std::max<std::size_t>(pool_.size(), 1));
    bucketShift_ = 31 - std::countr_zero(buckets);
    if (bucketShift_ < 0) bucketShift_ = 0;
    bucketStart_.assign((std::size_t{1} << (31 - bucketShift_)) + 1, 0);
    sorted_.resize(pool_.size());
    ordered_.resize(pool_.size());
}

const std::vector<Int16>& RoundShuffler::Order(std::span<const std::uint32_t> keys) {
    const std::size_t n = pool_.size();
    std::fill(bucketStart_.begin(), bucketStart_.end(), 0U);
    for (std::size_t i = 0; i < n; ++i)
        ++bucketStart_[(keys[i] >> bucketShift_) + 1];
    for (std::size_t b = 1; b < bucketStart_.size(); ++b)
        bucketStart_[b] += bucketStart_[b - 1];
    for (std::size_t i = 0; i < n; ++i) {
        std::uint32_t& next = bucketStart_[keys[i] >> bucketShift_];
        sorted_[next++] = Copy{keys[i], pool_[i]};
    }
    // Buckets now stand in order, each holding about one copy: insertion sort finishes them.
    for (std::size_t i = 1; i < n; ++i) {
        Copy current = sorted_[i];
        std::size_t j = i;
        for (; j > 0 && sorted_[j - 1].key > current.key; --j)
            sorted_[j] = sorted_[j - 1];
        sorted_[j] = current;
    }
    bool tie = false;
    for (std::size_t i = 1; i < n && !tie; ++i)
        tie = sorted_[i - 1].key == sorted_[i].key;
    if (tie) {
        // Equal keys: only the Shell sort's own order of them is right.
        ++roundsWithTies_;
        for (std::size_t i = 0; i < n; ++i)
            sorted_[i] = Copy{keys[i], pool_[i]};
        ShellSort(std::span<Copy>(sorted_), [](const Copy& c) { return c.key; });
    }
    for (std::size_t i = 0; i < n; ++i)
        ordered_[i] = sorted_[i].allele;
    return ordered_;
}

LocusRounds::LocusRounds(const GenotypeSet& observed, Int16 lowest, Int16 range, Int16 rounds)
    : shuffler_(observed),
      lowest_(lowest),
      classes_(range + 1),
      maxCount_(static_cast<int>(observed.size())),
      rounds_(rounds),
      roundHomozygotes_(static_cast<std::size_t>(classes_), 0),
      roundDifferences_(static_cast<std::size_t>(classes_), 0),
      homozygoteFrequencies_(
          static_cast<std::size_t>(classes_) * static_cast<std::size_t>(maxCount_ + 1), 0),
      differenceFrequencies_(homozygoteFrequencies_.size(), 0) {}

void LocusRounds::AddRound(std::span<const std::uint32_t> keys) {
    shuffler_.Pair(keys, [this](Int16 first, Int16 second) {
        int difference = std::abs(first - second);
        if (difference == 0) ++roundHomozygotes_[static_cast<std::size_t>(first - lowest_)];
        ++roundDifferences_[static_cast<std::size_t>(difference)];
    });
    const auto stride = static_cast<std::size_t>(maxCount_ + 1);
    for (std::size_t c = 0; c < static_cast<std::size_t>(classes_); ++c) {
        ++homozygoteFrequencies_[c * stride + static_cast<std::size_t>(roundHomozygotes_[c])];
        ++differenceFrequencies_[c * stride + static_cast<std::size_t>(roundDifferences_[c])];
        roundHomozygotes_[c] = 0;
        roundDifferences_[c] = 0;
    }
    ++roundsAdded_;
}

RoundMatrix LocusRounds::Sorted(const std::vector<std::int32_t>& frequencies) const {
    RoundMatrix matrix(classes_, rounds_);
    const auto stride = static_cast<std::size_t>(maxCount_ + 1);
    for (int c = 0; c < classes_; ++c) {
        std::span<Int16> counts = matrix.Class(c);
        std::size_t rank = 0;
        for (std::size_t k = 0; k < stride; ++k) {
            for (std::int32_t f = frequencies[static_cast<std::size_t>(c) * stride + k]; f > 0; --f)
                counts[rank++] = static_cast<Int16>(k);
        }
    }
    return matrix;
}

std::vector<double> LocusRounds::Means(const std::vector<std::int32_t>& frequencies) const {
    std::vector<double> means(static_cast<std::size_t>(classes_), 0.0);
    const auto stride = static_cast<std::size_t>(maxCount_ + 1);
    for (std::size_t c = 0; c < means.size(); ++c) {
        // The sum of the class's counts over all rounds, as the rounds would add them up.
        std::int64_t sum = 0;
        for (std::size_t k = 0; k < stride; ++k)
            sum += static_cast<std::int64_t>(k) * frequencies[c * stride + k];
        means[c] = static_cast<double>(sum) / static_cast<double>(rounds_);
    }
    return means;
}

}  // namespace tavrelle
