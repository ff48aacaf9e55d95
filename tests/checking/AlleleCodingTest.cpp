// Half-missing genotypes and alleles that look like indices, on populations in the store's layout.
#include <gtest/gtest.h>

#include "checking/AlleleCoding.h"
#include "population/GenotypeTables.h"

namespace tavrelle {
namespace {

TEST(AlleleCoding, HalfMissingGenotypesAreListedWithTheAllelePresent) {
    GenotypeData data{
        "", {"A", "B"}, {{"P", {{"s1", {{305, 0}, {0, 0}}}, {"s2", {{0, 98}, {98, 100}}}}}}};
    Table table = PopulationTable(data, 0);
    EXPECT_EQ(HalfMissingGenotypes(table),
              (std::vector<HalfMissingGenotype>{{"s1", "A", "305"}, {"s2", "A", "98"}}));
    // As the Genepop reader stores them: "000" is missing too; text that is no number is the
    // check's to report.
    table.SetCell(3, 3, "000");
    table.SetCell(3, 4, "x");
    table.SetCell(3, 5, "");
    EXPECT_EQ(HalfMissingGenotypes(table), (std::vector<HalfMissingGenotype>{{"s1", "A", "305"}}));
}

TEST(AlleleCoding, IndexLikeAllelesAreConsecutiveAndBelowAHundred) {
    auto looks = [](std::vector<std::vector<AllelePair>> samples) {
        GenotypeData data{"", {"A", "B"}, {{"P", {}}}};
        for (auto& genotypes : samples)
            data.populations[0].samples.push_back({"s", genotypes});
        Table table = PopulationTable(data, 0);
        return AllelesLookLikeIndices({&table});
    };
    EXPECT_TRUE(looks({{{1, 2}, {5, 6}}, {{3, 3}, {0, 7}}}));
    EXPECT_FALSE(looks({{{1, 3}, {5, 6}}}));     // a gap at A
    EXPECT_FALSE(looks({{{1, 2}, {99, 100}}}));  // a size of 100
    EXPECT_FALSE(looks({{{0, 0}, {0, 0}}}));     // nothing scored
}

}  // namespace
}  // namespace tavrelle
