#include <sstream>

#include "base/Numbers.h"
#include "batch/BatchReport.h"

namespace tavrelle {

namespace {

const char* const kConfidenceNames[] = {"95%", "99%", "100% (range)", "Bonferroni"};

std::string YesNo(bool value) { return value ? "yes" : "no"; }

// Texts of the program use CR LF; a terminal report uses the platform's line ends.
std::string PlainLines(std::string text) {
    std::string out;
    for (char c : text)
        if (c != '\r') out += c;
    return out;
}

void WriteSuspects(std::ostream& out, const char* heading, const std::vector<SuspectEntry>& list) {
    if (list.empty()) return;
    out << "  " << heading << " (value, row, column):";
    for (const SuspectEntry& e : list) out << "  " << e.value << " (" << e.row << ", " << e.column << ")";
    out << "\n";
}

void WriteCounts(std::ostream& out, const char* label, const CountArray& counts) {
    out << "      " << label;
    for (Int16 c : counts) out << ' ' << c;
    out << "\n";
}

void WriteLocus(std::ostream& out, const LocusResult& locus) {
    const BinomialOutcome& b = locus.binomial;
    const LocusDecisions& d = locus.decisions;
    out << "\n  Locus " << locus.name << " (repeat " << locus.repeat << " bp): sizes "
        << locus.lowest << " to " << locus.highest << ", " << locus.Scored()
        << " scored, " << locus.missingGenotypes << " missing\n";
    if (b.totalsComputed >= 2)
        out << "    Homozygotes: observed " << DefaultText(b.homozygoteTotals[0]) << ", expected "
            << DefaultText(RoundHalfEven(b.homozygoteTotals[1], 4))
            << (b.totalsComputed == 3
                    ? ", chi-square " + DefaultText(RoundHalfEven(b.homozygoteTotals[2], 4))
                    : "")
            << "\n";
    out << "    Homozygote excess: " << YesNo(d.homozygoteExcess)
        << "   excess in most size classes: " << YesNo(d.classWideExcess)
        << "   one-repeat deficit (stutter): " << YesNo(d.oneRepeatDeficit) << "\n"
        << "    Upper class excess: " << YesNo(d.upperClassExcess)
        << "   lower class excess: " << YesNo(d.lowerClassExcess)
        << "   large differences scarce: " << YesNo(d.largeDifferencesScarce) << "\n";
    WriteCounts(out, "Observed homozygotes by size: ", locus.observedHomozygotes);
    WriteCounts(out, "Observed pairs by difference: ", locus.observedDifferences);
    if (!b.classProbabilities.empty()) {
        out << "    Size\tBinomial\tRank based\n";
        for (const ClassProbability& row : b.classProbabilities)
            out << "    " << DefaultText(row[0]) << "\t" << DefaultText(RoundHalfEven(row[1], 4))
                << "\t\t" << DefaultText(RoundHalfEven(row[3], 4)) << "\n";
    }
    if (!b.combinedProbabilityLabel.empty())
        out << "    Combined probability for all classes: " << b.combinedProbabilityLabel << "\n";
}

}  // namespace

std::string TextReport(const BatchReport& report) {
    std::ostringstream out;
    out << "Tavrelle " << kProgramVersion << "\n"
        << "File: " << report.file << "\n";
    if (!report.title.empty()) out << "Title: " << report.title << "\n";
    out << "Seed: " << report.seed << (report.clockSeed ? " (from the clock)" : "") << "\n"
        << "Randomisations: " << report.randomisations << "\n"
        << "Confidence interval: " << kConfidenceNames[report.confidenceCode] << "\n"
        << "Maximum allele size: " << report.maxAlleleSize << "\n";
    for (const PopulationReport& p : report.populations) {
        out << "\nPopulation " << p.number << ": " << p.name << " (" << p.samples
            << " samples)\n";
        WriteSuspects(out, "Non-integer values", p.nonInteger);
        WriteSuspects(out, "Unexpected values", p.unexpected);
        WriteSuspects(out, "Inconsistent values", p.inconsistent);
        if (p.action != "none") out << "  Suspect values: " << p.action << "\n";
        for (const Message& m : p.messages)
            out << "  [" << (m.caption.empty() ? "Tavrelle" : m.caption) << "] "
                << PlainLines(m.text) << "\n";
        if (p.analysis)
            for (const LocusResult& locus : p.analysis->Loci()) WriteLocus(out, locus);
        if (p.error) out << "  The run stopped: " << PlainLines(*p.error) << "\n";
    }
    return out.str();
}

}  // namespace tavrelle
