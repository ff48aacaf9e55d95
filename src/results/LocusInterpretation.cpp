#include "results/LocusInterpretation.h"

#include <cmath>

#include "base/Numbers.h"

namespace tavrelle {

namespace {

std::string ProbabilityTable(const BinomialOutcome& binomial) {
    std::string table;
    bool hasProbabilities = true;
    for (const ClassProbability& row : binomial.classProbabilities) {
        if (row[1] == 0) {
            if (table.empty()) {
                hasProbabilities = false;
                table = binomial.binomialNote;
            }
            continue;
        }
        table += "\r\n\t\t" + DefaultText(row[0]) + "\t" + DefaultText(RoundHalfEven(row[1], 4)) +
                 "\t\t" + DefaultText(RoundHalfEven(row[3], 4)) + "\t";
        hasProbabilities = true;
    }
    if (table.empty() || !hasProbabilities) {
        return "\r\n\r\n\tMore than 50% of the alleles at this locus are of one allele size "
               "class.\r\n\tBinomial analysis could not be performed.\r\n";
    }
    return "Probability of observed homozygote class frequency: \r\n\t\t\tBinomial based\tRank "
           "based" +
           table +
           "\r\n\t\tCombined probability for all classes: " + binomial.combinedProbabilityLabel;
}

}  // namespace

LocusConclusions LocusInterpretation(const LocusTestResult& locus) {
    LocusConclusions conclusions;
    conclusions.nullPresent = "no";
    const double expected = std::floor(locus.binomial.homozygoteTotals[1] * 1000) / 1000;
    std::string text =
        "Locus: " + locus.name + "\r\n\tTotal expected homozygotes: " + DefaultText(expected) +
        "\r\n\tTotal observed homozygotes: " + DefaultText(locus.binomial.homozygoteTotals[0]) +
        "\r\n";
    std::string nullText = "No evidence for null alleles.";
    std::string dropoutText = "No evidence for large allele dropout.";
    std::string stutterText = "No evidence for scoring error due to stuttering.";
    const LocusDecisions& d = locus.decisions;
    if (d.homozygoteExcess) {
        text += "\r\n\tAnalysis indicates homozygote excess at this locus.\r\n";
        if (d.oneRepeatDeficit) {
            stutterText =
                "Stuttering might have resulted in scoring errors, \r\n\tas is indicated by the "
                "highly significant shortage of heterozygote genotypes \r\n\twith alleles of one "
                "repeat unit difference.";
        }
        if (d.classWideExcess) {
            nullText =
                "Null alleles may be present at this locus, as is suggested by the general "
                "excess of \r\n\thomozygotes for most allele size classes.\r\n\r\n\tClick on the "
                "Estimate Frequencies button to calculate estimated allele size "
                "frequencies.\r\n\tClick on the Compare Loci button to compare null allele "
                "frequencies across all loci.";
            conclusions.nullPresent = "yes";
            conclusions.nullSuspected = true;
        } else {
            dropoutText =
                "Large allele drop-out and/or deviations from panmixia \r\n\tmight have "
                "resulted in homozygote excess.";
        }
    }
    text += "\r\n\t" + stutterText + "\r\n\r\n\t" + dropoutText + "\r\n\r\n\t" + nullText;
    conclusions.interpretationText = text;
    conclusions.probabilityText =
        "Locus: " + locus.name + "\r\n\t" + ProbabilityTable(locus.binomial);
    return conclusions;
}

}  // namespace tavrelle
