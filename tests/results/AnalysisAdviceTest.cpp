// The laboratory advice of the results screen, for every answer of the questionnaire and every
// combination of evidence.
#include <gtest/gtest.h>

#include "results/AnalysisAdvice.h"

namespace tavrelle {
namespace {

// The statements of each answer (0 no, 1 yes, 2 don't know, 3 not supplied), by question.
const char* const kAncient[] = {"Ancient DNA was not used.", "Ancient DNA was used.",
                                "It is not known if ancient DNA was used",
                                "No user information supplied."};
const char* const kPrimers[] = {"Primers developed for other species were not used.",
                                "Primers developed for other species were used.",
                                "It is not known if primers developed for other species were used.",
                                ""};
const char* const kStored[] = {
    "Samples stored in ethanol or cold storage that may have degraded were not used.",
    "Samples stored in ethanol or cold storage that may have degraded were used.",
    ("It is not known if samples stored in ethanol or cold storage that may have degraded were "
     "used."),
    ""};

TEST(AnalysisAdviceTest, StatementsForEveryAnswer) {
    for (Int16 a = 0; a < 4; ++a) {
        for (Int16 p = 0; p < 4; ++p) {
            for (Int16 s = 0; s < 4; ++s) {
                AnalysisAdvice advice;
                const AnalysisAdvice::Texts texts = advice.UserStatements({a, p, s});
                const std::string ancient = kAncient[a], stored = kStored[s];
                const bool nullRisk = a == 1 || p == 1 || s == 1;
                const bool otherRisk = a == 1 || s == 1;
                EXPECT_EQ(texts[0], "");
                EXPECT_EQ(texts[1], ancient + "\r\n" + kPrimers[p] + "\r\n" + stored + "\r\n" +
                                        (nullRisk ? "These conditions may increase the liklihood "
                                                    "of null alleles."
                                                  : ""));
                EXPECT_EQ(texts[2], ancient + "\r\n" + stored + "\r\n" +
                                        (otherRisk ? "These conditions may increase the liklihood "
                                                     "of large allele dropout."
                                                   : ""));
                EXPECT_EQ(texts[3], ancient + "\r\n" + stored + "\r\n" +
                                        (otherRisk ? "These conditions may increase the liklihood "
                                                     "of stuttering."
                                                   : ""));
                EXPECT_EQ(advice.ancientUsed, a == 1);
                EXPECT_EQ(advice.primersUsed, p == 1);
                EXPECT_EQ(advice.degradedUsed, s == 1);
            }
        }
    }
}

TEST(AnalysisAdviceTest, AYesStaysInForceAndMissingAnswersCountAsNotSupplied) {
    AnalysisAdvice advice;
    advice.UserStatements({1, 1, 1});
    const AnalysisAdvice::Texts later = advice.UserStatements({0, 0, 0});
    EXPECT_TRUE(advice.ancientUsed && advice.primersUsed && advice.degradedUsed);
    EXPECT_EQ(later[2],
              "Ancient DNA was not used.\r\nSamples stored in ethanol or cold storage that may "
              "have degraded were not used.\r\nThese conditions may increase the liklihood of "
              "large allele dropout.");
    EXPECT_EQ(AnalysisAdvice().UserStatements({})[1], "No user information supplied.\r\n\r\n\r\n");
}

TEST(AnalysisAdviceTest, RecommendationsForEveryEvidenceAndCondition) {
    const std::string nullSteps =
        "To reduce the incidence of null alleles, try the following:\r\n1. Reduce "
        "stringency\r\n2. Redesign primers";
    const std::string dropoutSteps =
        "To reduce the incidence of large allele dropout, try the following:\r\n1. Reduce "
        "stringency\r\n2. Increase extension time";
    const std::string stutterSteps =
        "To reduce the incidence of stuttering, try the following:\r\n1. Increase "
        "stringency\r\n2. Reduce the number of PCR cycles";
    for (int conditions = 0; conditions < 8; ++conditions) {
        AnalysisAdvice advice;
        advice.ancientUsed = conditions & 1;
        advice.primersUsed = conditions & 2;
        advice.degradedUsed = conditions & 4;
        std::string nullAdvice, dropoutAdvice, stutterAdvice;
        if (advice.ancientUsed) {
            nullAdvice = "Ancient DNA is more prone to null alleles\r\n";
            dropoutAdvice = "Ancient DNA is more prone to large allele dropout\r\n";
            stutterAdvice = "Ancient DNA is more prone to stuttering\r\n";
        }
        if (advice.primersUsed)
            nullAdvice += "Primers designed for other species are more prone to null alleles\r\n";
        if (advice.degradedUsed) {
            nullAdvice += "Degraded DNA is more prone to null alleles\r\n";
            dropoutAdvice += "Degraded DNA is more prone to large allele dropout\r\n";
            stutterAdvice += "Degraded DNA is more prone to stuttering\r\n";
        }
        for (int evidence = 0; evidence < 16; ++evidence) {
            const bool nulls = evidence & 1, dropout = evidence & 2, stutter = evidence & 4,
                       fourth = evidence & 8;
            const AnalysisAdvice::Texts texts =
                advice.Recommendations(nulls, dropout, stutter, fourth);
            SCOPED_TRACE(std::to_string(conditions) + " " + std::to_string(evidence));
            EXPECT_EQ(texts[0], "");
            EXPECT_EQ(texts[1], nulls ? nullAdvice + nullSteps : "");
            EXPECT_EQ(texts[2], dropout ? dropoutAdvice + dropoutSteps : "");
            // The fourth kind replaces the stuttering advice by the plain steps.
            EXPECT_EQ(texts[3], fourth    ? stutterSteps
                                : stutter ? stutterAdvice + stutterSteps
                                          : "");
        }
    }
}

}  // namespace
}  // namespace tavrelle
