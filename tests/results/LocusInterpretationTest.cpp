#include "results/LocusInterpretation.h"

#include <gtest/gtest.h>

namespace tavrelle {
namespace {

LocusTestResult Locus(bool excess, bool classWide, bool oneRepeat) {
    LocusTestResult locus;
    locus.name = "Ab7";
    locus.decisions.homozygoteExcess = excess;
    locus.decisions.classWideExcess = classWide;
    locus.decisions.oneRepeatDeficit = oneRepeat;
    locus.binomial.homozygoteTotals = {12, 8.12345, 0};
    locus.binomial.classProbabilities = {{100, 0.25, 0, 0.31234}, {102, 0.012345, 0, 0.05}};
    locus.binomial.combinedProbabilityLabel = "< 0.05 (significant)";
    return locus;
}

const std::string kHead =
    "Locus: Ab7\r\n\tTotal expected homozygotes: 8.123\r\n\tTotal observed homozygotes: 12\r\n";
const std::string kNoStutter = "No evidence for scoring error due to stuttering.";
const std::string kNoDropout = "No evidence for large allele dropout.";
const std::string kNoNull = "No evidence for null alleles.";
const std::string kExcess = "\r\n\tAnalysis indicates homozygote excess at this locus.\r\n";
const std::string kStutter =
    "Stuttering might have resulted in scoring errors, \r\n\tas is indicated by the highly "
    "significant shortage of heterozygote genotypes \r\n\twith alleles of one repeat unit "
    "difference.";
const std::string kNull =
    "Null alleles may be present at this locus, as is suggested by the general excess of "
    "\r\n\thomozygotes for most allele size classes.\r\n\r\n\tClick on the Estimate Frequencies "
    "button to calculate estimated allele size frequencies.\r\n\tClick on the Compare Loci "
    "button to compare null allele frequencies across all loci.";
const std::string kDropout =
    "Large allele drop-out and/or deviations from panmixia \r\n\tmight have resulted in "
    "homozygote excess.";

std::string Verdicts(const std::string& stutter, const std::string& dropout,
                     const std::string& null) {
    return "\r\n\t" + stutter + "\r\n\r\n\t" + dropout + "\r\n\r\n\t" + null;
}

TEST(LocusInterpretation, VerdictsFollowTheHomozygoteExcess) {
    LocusConclusions all = LocusInterpretation(Locus(true, true, true));
    EXPECT_EQ(all.interpretationText, kHead + kExcess + Verdicts(kStutter, kNoDropout, kNull));
    EXPECT_EQ(all.nullPresent, "yes");
    EXPECT_TRUE(all.nullSuspected);

    LocusConclusions dropout = LocusInterpretation(Locus(true, false, false));
    EXPECT_EQ(dropout.interpretationText,
              kHead + kExcess + Verdicts(kNoStutter, kDropout, kNoNull));
    EXPECT_EQ(dropout.nullPresent, "no");

    // Without the excess nothing else is said, even with a one-repeat shortage.
    LocusConclusions none = LocusInterpretation(Locus(false, true, true));
    EXPECT_EQ(none.interpretationText, kHead + Verdicts(kNoStutter, kNoDropout, kNoNull));
    EXPECT_FALSE(none.nullSuspected);
}

TEST(LocusInterpretation, ProbabilityTableOrTheOneClassNote) {
    LocusConclusions c = LocusInterpretation(Locus(false, false, false));
    EXPECT_EQ(c.probabilityText,
              "Locus: Ab7\r\n\tProbability of observed homozygote class frequency: \r\n\t\t\t"
              "Binomial based\tRank based\r\n\t\t100\t0.25\t\t0.3123\t\r\n\t\t102\t0.0123\t\t"
              "0.05\t\r\n\t\tCombined probability for all classes: < 0.05 (significant)");
    const std::string note =
        "Locus: Ab7\r\n\t\r\n\r\n\tMore than 50% of the alleles at this locus are of one allele "
        "size class.\r\n\tBinomial analysis could not be performed.\r\n";
    LocusTestResult single = Locus(false, false, false);
    single.binomial.classProbabilities = {{150, 0, 0, 1}};
    EXPECT_EQ(LocusInterpretation(single).probabilityText, note);
    // A zero first class sets the note, but a later non-zero class brings the table back.
    LocusTestResult later = Locus(false, false, false);
    later.binomial.classProbabilities = {{100, 0, 0, 1}, {102, 0.5, 0, 0.4}};
    EXPECT_EQ(LocusInterpretation(later).probabilityText,
              "Locus: Ab7\r\n\tProbability of observed homozygote class frequency: \r\n\t\t\t"
              "Binomial based\tRank based\r\n\t\t102\t0.5\t\t0.4\t\r\n\t\tCombined probability "
              "for all classes: < 0.05 (significant)");
}

}  // namespace
}  // namespace tavrelle
