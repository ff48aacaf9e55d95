#include <charconv>
#include <sstream>

#include "base/Numbers.h"
#include "batch/BatchReport.h"

namespace tavrelle {

namespace {

// A field quoted when it holds a separator, a quote or a line break.
std::string Field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

// Shortest text that reads back to the same double.
std::string Number(double value) {
    char buffer[32];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, end);
}

std::string Flag(bool value) {
    return value ? "TRUE" : "FALSE";
}

}  // namespace

std::string CsvReport(const BatchReport& report) {
    std::ostringstream out;
    out << "population,population_name,locus,samples,scored,missing_genotypes,"
           "observed_homozygotes,expected_homozygotes,homozygote_excess,class_wide_excess,"
           "one_repeat_deficit,upper_class_excess,lower_class_excess,large_differences_scarce,"
           "null_present,velmaret,chakraborty,brookfield1,brookfield2\n";
    for (const PopulationResult& p : report.populations) {
        if (!p.analysis) continue;
        for (const LocusResult& l : p.analysis->Loci()) {
            const BinomialOutcome& b = l.binomial;
            const LocusDecisions& d = l.decisions;
            out << p.number << ',' << Field(p.name) << ',' << Field(l.name) << ',' << p.samples
                << ',' << l.Scored() << ',' << l.missingGenotypes << ','
                << (b.totalsComputed >= 2 ? DefaultText(b.homozygoteTotals[0]) : "") << ','
                << (b.totalsComputed >= 2 ? DefaultText(b.homozygoteTotals[1]) : "") << ','
                << Flag(d.homozygoteExcess) << ',' << Flag(d.classWideExcess) << ','
                << Flag(d.oneRepeatDeficit) << ',' << Flag(d.upperClassExcess) << ','
                << Flag(d.lowerClassExcess) << ',' << Flag(d.largeDifferencesScarce) << ','
                << l.nullPresent;
            for (double estimate : l.nulls.estimates)
                out << ',' << Number(estimate);
            out << '\n';
        }
    }
    return out.str();
}

}  // namespace tavrelle
