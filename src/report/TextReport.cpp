#include <sstream>

#include "base/Numbers.h"
#include "base/Version.h"
#include "report/ReportStream.h"

namespace tavrelle {

namespace {

std::string YesNo(bool value) {
    return value ? "yes" : "no";
}

// Texts of the program use CR LF; a terminal report uses the platform's line ends.
std::string PlainLines(std::string text) {
    std::string out;
    for (char c : text)
        if (c != '\r') out += c;
    return out;
}

// The program's own texts, CR LF and tabs as they are, set in by four blanks.
std::string Indented(const std::string& text) {
    std::string out = "    ";
    for (char c : PlainLines(text)) {
        out += c;
        if (c == '\n') out += "    ";
    }
    return out;
}

// The estimates line takes two tabs between values; one keeps the columns under their heads.
std::string Columns(const std::string& line) {
    std::string out;
    for (std::size_t i = 0; i < line.size(); ++i)
        if (!(line[i] == '\t' && i + 1 < line.size() && line[i + 1] == '\t')) out += line[i];
    return out;
}

void WriteSuspects(std::ostream& out, const char* heading, const std::vector<SuspectEntry>& list) {
    if (list.empty()) return;
    out << "  " << heading << " (value, row, column):";
    for (const SuspectEntry& e : list)
        out << "  " << e.value << " (" << e.row << ", " << e.column << ")";
    out << "\n";
}

void WriteCounts(std::ostream& out, const char* label, const CountArray& counts) {
    out << "      " << label;
    for (Int16 c : counts)
        out << ' ' << c;
    out << "\n";
}

void WriteLocus(std::ostream& out, const LocusResult& locus) {
    const BinomialOutcome& b = locus.binomial;
    const LocusDecisions& d = locus.decisions;
    out << "\n  Locus " << locus.name << " (repeat " << locus.repeat << " bp): sizes "
        << locus.lowest << " to " << locus.highest << ", " << locus.Scored() << " scored, "
        << locus.missingGenotypes << " missing\n";
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
    out << "\n"
        << Indented(locus.probabilityText) << "\n\n"
        << Indented(locus.interpretationText) << "\n\n    Null allele frequency estimates:\n"
        << "    Velmaret\tChakraborty\tBrookfield 1\tBrookfield 2\n    "
        << Columns(locus.nulls.estimatesLine) << "\n";
    if (!locus.nulls.adjustedText.empty())
        out << "\n" << Indented(locus.nulls.adjustedText) << "\n";
}

void WritePopulation(std::ostream& out, const PopulationResult& p) {
    out << "\nPopulation " << p.number << ": " << p.name << " (" << p.samples << " samples)\n";
    WriteSuspects(out, "Non-integer values", p.nonInteger);
    WriteSuspects(out, "Unexpected values", p.unexpected);
    WriteSuspects(out, "Inconsistent values", p.inconsistent);
    if (p.action != "none") out << "  Suspect values: " << p.action << "\n";
    for (const Message& m : p.messages)
        out << "  [" << (m.caption.empty() ? "Tavrelle" : m.caption) << "] " << PlainLines(m.text)
            << "\n";
    if (p.analysis)
        for (const LocusResult& locus : p.analysis->Loci())
            WriteLocus(out, locus);
    if (p.error)
        out << "  The run stopped" << (p.errorLocus.empty() ? "" : " at locus " + p.errorLocus)
            << ": " << PlainLines(*p.error) << "\n";
    if (p.analysis && !p.error)
        out << "\n  Comparison across loci:\n" << Indented(p.analysis->SummaryText()) << "\n";
}

class TextReportStream : public ReportStream {
public:
    std::string Begin(const StudyHeader& header) override {
        std::ostringstream out;
        out << "Tavrelle " << kProgramVersion << "\n"
            << "File: " << header.file << "\n";
        if (!header.title.empty()) out << "Title: " << header.title << "\n";
        const RunSettings& s = header.settings;
        out << "Seed: " << s.seed << (s.clockSeed ? " (from the clock)" : "") << "\n"
            << "Randomisations: " << s.randomisations << "\n"
            << "Confidence interval: " << ConfidenceText(s.confidence) << "\n"
            << "Maximum allele size: " << s.maxAlleleSize << "\n";
        return out.str();
    }

    std::string Population(const PopulationResult& population) override {
        std::ostringstream out;
        WritePopulation(out, population);
        return out.str();
    }

    std::string End() override { return {}; }
};

}  // namespace

std::unique_ptr<ReportStream> MakeTextReport() {
    return std::make_unique<TextReportStream>();
}

}  // namespace tavrelle
