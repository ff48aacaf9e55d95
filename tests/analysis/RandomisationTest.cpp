#include "analysis/Randomisation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "analysis/ClassLists.h"
#include "base/ShellSort.h"

namespace tavrelle {
namespace {

GenotypeSet Genotypes(std::initializer_list<std::pair<int, int>> pairs) {
    GenotypeSet set;
    for (auto [a, b] : pairs)
        set.push_back(
            {static_cast<Int16>(a), static_cast<Int16>(b), static_cast<Int16>(std::abs(a - b))});
    return set;
}

std::map<Int16, int> Pool(const GenotypeSet& set) {
    std::map<Int16, int> pool;
    for (const GenotypeRow& row : set)
        ++pool[row.first], ++pool[row.second];
    return pool;
}

TEST(ShellSort, SettlesEqualKeysItsOwnWayNotStably) {
    // Gaps 4 then 1 over nine rows; equal keys cross over in the gap-4 pass.
    struct Row {
        int key;
        char tag;
    };
    std::vector<Row> rows = {{2, 'a'}, {1, 'b'}, {1, 'c'}, {1, 'd'}, {1, 'e'},
                             {0, 'f'}, {0, 'g'}, {0, 'h'}, {0, 'i'}};
    ShellSort(std::span<Row>(rows), [](const Row& r) { return r.key; });
    std::string order;
    for (const Row& r : rows)
        order += r.tag;
    // By hand: gap 4 takes e to the front, then f, g, h behind it, and i past e and a to the
    // front; gap 1 finds them in order.
    EXPECT_EQ(order, "ifghebcda");
    std::vector<Row> stable = {{2, 'a'}, {1, 'b'}, {1, 'c'}, {1, 'd'}, {1, 'e'},
                               {0, 'f'}, {0, 'g'}, {0, 'h'}, {0, 'i'}};
    std::stable_sort(stable.begin(), stable.end(),
                     [](const Row& x, const Row& y) { return x.key < y.key; });
    std::string stableOrder;
    for (const Row& r : stable)
        stableOrder += r.tag;
    EXPECT_NE(order, stableOrder);
}

TEST(Randomisation, EveryRoundKeepsThePoolAndTheNumberOfGenotypes) {
    GenotypeSet source = Genotypes({{100, 102}, {104, 104}, {100, 108}, {102, 106}, {106, 106}});
    RandomNumGen generator;
    generator.SetSeedValue(99);
    for (int round = 0; round < 200; ++round) {
        GenotypeSet target;
        RandomiseGenotypes(source, target, generator);
        ASSERT_EQ(target.size(), source.size());
        ASSERT_EQ(Pool(target), Pool(source));
        for (const GenotypeRow& row : target)
            ASSERT_EQ(row.difference, std::abs(row.first - row.second));
    }
}

TEST(Randomisation, FastRoundsPairExactlyAsTheRuleOverManyRounds) {
    GenotypeSet source;
    for (int i = 0; i < 60; ++i)
        source.push_back({static_cast<Int16>(100 + 2 * (i % 7)),
                          static_cast<Int16>(100 + 2 * (i % 5)),
                          static_cast<Int16>(std::abs(2 * (i % 7) - 2 * (i % 5)))});
    RandomNumGen literal;
    RandomNumGen keyed;
    literal.SetSeedValue(2024);
    keyed.SetSeedValue(2024);
    RoundShuffler shuffler(source);
    std::vector<std::uint32_t> keys(shuffler.PoolSize());
    for (int round = 0; round < 3000; ++round) {
        GenotypeSet expected;
        RandomiseGenotypes(source, expected, literal);
        for (std::uint32_t& key : keys)
            key = keyed.GeneratedKey();
        GenotypeSet actual;
        shuffler.Pair(keys, [&](Int16 a, Int16 b) {
            actual.push_back({a, b, static_cast<Int16>(std::abs(a - b))});
        });
        ASSERT_EQ(actual, expected) << "round " << round;
    }
}

TEST(Randomisation, RoundsWithEqualKeysFollowTheShellSort) {
    GenotypeSet source = Genotypes({{1, 2}, {3, 4}, {5, 6}, {7, 8}, {9, 10}, {11, 12}});
    RoundShuffler shuffler(source);
    // Many equal keys, including the clamped top value.
    std::vector<std::uint32_t> keys = {5, 5, 3, 5, 3, 9, 1, 5, 3, 2147483400, 2147483400, 1};
    struct Copy {
        Int16 allele;
        std::uint32_t key;
    };
    std::vector<Copy> copies;
    for (std::size_t i = 0; i < keys.size(); ++i)
        copies.push_back({static_cast<Int16>(i + 1), keys[i]});
    ShellSort(std::span<Copy>(copies), [](const Copy& c) { return c.key; });
    std::vector<Int16> expected;
    for (const Copy& c : copies)
        expected.push_back(c.allele);
    std::vector<Int16> actual;
    shuffler.Pair(keys, [&](Int16 a, Int16 b) {
        actual.push_back(a);
        actual.push_back(b);
    });
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(shuffler.RoundsWithTies(), 1);
}

TEST(ClassLists, CountHomozygotesBySizeAndPairsByDifference) {
    GenotypeSet set =
        Genotypes({{104, 104}, {100, 102}, {104, 104}, {100, 100}, {120, 124}, {124, 120}});
    EXPECT_EQ(HomozygoteClassList(set), (ClassList{{100, 1}, {104, 2}}));
    EXPECT_EQ(DifferenceClassList(set), (ClassList{{0, 3}, {2, 1}, {4, 2}}));
    EXPECT_EQ(
        ExpandClasses(HomozygoteClassList(set), 24, 100),
        (CountArray{1, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(HomozygoteClassList(Genotypes({{100, 102}})).empty());
    EXPECT_EQ(DifferenceClassList(Genotypes({{100, 106}})), (ClassList{{6, 1}}));
}

TEST(LocusRounds, MatricesAreSortedAndMeansMatchTheCounts) {
    GenotypeSet source = Genotypes({{100, 102},
                                    {104, 104},
                                    {100, 108},
                                    {102, 106},
                                    {106, 106},
                                    {100, 100},
                                    {102, 104},
                                    {108, 108}});
    const Int16 rounds = 500;
    LocusRounds locus(source, 100, 8, rounds);
    RandomNumGen generator;
    generator.SetSeedValue(5);
    std::vector<std::uint32_t> keys(locus.PoolSize());
    for (int r = 0; r < rounds; ++r) {
        for (std::uint32_t& key : keys)
            key = generator.GeneratedKey();
        locus.AddRound(keys);
    }
    RoundMatrix differences = locus.SortedDifferences();
    std::vector<double> means = locus.MeanDifferences();
    double meanPairs = 0;
    for (int c = 0; c < differences.Classes(); ++c) {
        auto counts = differences.Class(c);
        EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
        double sum = 0;
        for (Int16 count : counts)
            sum += count;
        EXPECT_DOUBLE_EQ(means[static_cast<std::size_t>(c)], sum / rounds);
        meanPairs += means[static_cast<std::size_t>(c)];
    }
    // Every round pairs all eight individuals anew; odd differences can't occur here.
    EXPECT_DOUBLE_EQ(meanPairs, 8.0);
    EXPECT_EQ(differences.At(1, rounds - 1), 0);
}

TEST(LocusRounds, AMonomorphicLocusGivesTheSameCountsEveryRound) {
    GenotypeSet source = Genotypes({{150, 150}, {150, 150}, {150, 150}, {150, 150}});
    LocusRounds locus(source, 150, 0, 1000);
    RandomNumGen generator;
    generator.SetSeedValue(1);
    std::vector<std::uint32_t> keys(locus.PoolSize());
    for (int r = 0; r < 1000; ++r) {
        for (std::uint32_t& key : keys)
            key = generator.GeneratedKey();
        locus.AddRound(keys);
    }
    EXPECT_EQ(locus.SortedHomozygotes().At(0, 0), 4);
    EXPECT_EQ(locus.SortedHomozygotes().At(0, 999), 4);
    EXPECT_EQ(locus.MeanDifferences(), std::vector<double>{4.0});
}

}  // namespace
}  // namespace tavrelle
