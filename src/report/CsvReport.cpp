#include <functional>
#include <sstream>
#include <string>

#include "base/CsvText.h"
#include "base/Numbers.h"
#include "report/ReportStream.h"

namespace tavrelle {

namespace {

const char* const kConfidenceNames[] = {"95", "99", "100", "bonferroni"};

// One convention for every yes/no column, read as logical by R and as bool by pandas.
std::string Flag(bool value) {
    return value ? "TRUE" : "FALSE";
}

// A column of the locus part of a row: its name and its value for a locus.
struct LocusColumn {
    std::string name;
    std::function<std::string(const LocusResult&)> value;
};

std::string Total(const LocusResult& l, std::size_t i) {
    const bool computed = static_cast<std::size_t>(l.binomial.totalsComputed) > i;
    return computed ? ShortestNumber(l.binomial.homozygoteTotals[i]) : "";
}

// The estimates of the null allele frequency, one column each; a new estimate is one more row.
const std::vector<LocusColumn>& EstimateColumns() {
    static const std::vector<LocusColumn> columns = {
        {"velmaret", [](const LocusResult& l) { return ShortestNumber(l.nulls.estimates[0]); }},
        {"chakraborty", [](const LocusResult& l) { return ShortestNumber(l.nulls.estimates[1]); }},
        {"brookfield1", [](const LocusResult& l) { return ShortestNumber(l.nulls.estimates[2]); }},
        {"brookfield2", [](const LocusResult& l) { return ShortestNumber(l.nulls.estimates[3]); }},
    };
    return columns;
}

const std::vector<LocusColumn>& LocusColumns() {
    using L = const LocusResult&;
    static const std::vector<LocusColumn> columns = [] {
        std::vector<LocusColumn> c = {
            {"locus", [](L l) { return CsvField(l.name); }},
            {"repeat", [](L l) { return std::to_string(l.repeat); }},
            {"lowest", [](L l) { return std::to_string(l.lowest); }},
            {"highest", [](L l) { return std::to_string(l.highest); }},
            {"scored", [](L l) { return std::to_string(l.Scored()); }},
            {"missing_genotypes", [](L l) { return std::to_string(l.missingGenotypes); }},
            {"observed_homozygotes", [](L l) { return Total(l, 0); }},
            {"expected_homozygotes", [](L l) { return Total(l, 1); }},
            {"homozygote_chi_square", [](L l) { return Total(l, 2); }},
            {"combined_probability",
             [](L l) { return CsvField(l.binomial.combinedProbabilityLabel); }},
            {"combined_significant", [](L l) { return Flag(l.binomial.combinedSignificant); }},
            {"homozygote_excess", [](L l) { return Flag(l.decisions.homozygoteExcess); }},
            {"class_wide_excess", [](L l) { return Flag(l.decisions.classWideExcess); }},
            {"one_repeat_deficit", [](L l) { return Flag(l.decisions.oneRepeatDeficit); }},
            {"upper_class_excess", [](L l) { return Flag(l.decisions.upperClassExcess); }},
            {"lower_class_excess", [](L l) { return Flag(l.decisions.lowerClassExcess); }},
            {"large_differences_scarce",
             [](L l) { return Flag(l.decisions.largeDifferencesScarce); }},
            {"null_present", [](L l) { return Flag(l.nullPresent == "yes"); }},
        };
        c.insert(c.end(), EstimateColumns().begin(), EstimateColumns().end());
        return c;
    }();
    return columns;
}

// The likelihood estimates of a locus, every estimate's 95% interval, and the population's
// inbreeding coefficient: columns read from the population's likelihood results.
struct LikelihoodColumn {
    std::string name;
    std::function<std::string(const PopulationEstimates&, std::size_t locus)> value;
};

const std::vector<LikelihoodColumn>& LikelihoodColumns() {
    using P = const PopulationEstimates&;
    static const std::vector<LikelihoodColumn> columns = [] {
        std::vector<LikelihoodColumn> c;
        auto estimate = [&c](std::size_t e) {
            c.push_back({kEstimateKeys[e], [e](P p, std::size_t l) {
                             return ShortestNumber(p.loci.at(l).estimates[e]);
                         }});
        };
        auto interval = [&c](std::size_t e) {
            const std::string key = kEstimateKeys[e];
            c.push_back({key + "_low", [e](P p, std::size_t l) {
                             return ShortestNumber(p.loci.at(l).intervals[e].low);
                         }});
            c.push_back({key + "_high", [e](P p, std::size_t l) {
                             return ShortestNumber(p.loci.at(l).intervals[e].high);
                         }});
        };
        for (std::size_t e = kEm; e <= kJoint; ++e)
            estimate(e);
        for (std::size_t e = 0; e <= kJoint; ++e)
            interval(e);
        c.push_back(
            {"inbreeding_f", [](P p, std::size_t) { return ShortestNumber(p.inbreeding.f); }});
        c.push_back({"inbreeding_f_low",
                     [](P p, std::size_t) { return ShortestNumber(p.inbreeding.interval.low); }});
        c.push_back({"inbreeding_f_high",
                     [](P p, std::size_t) { return ShortestNumber(p.inbreeding.interval.high); }});
        c.push_back({"inbreeding_model", [](P p, std::size_t) {
                         return std::string(
                             kNestedModelNames[static_cast<std::size_t>(p.inbreeding.model)]);
                     }});
        // Added later: at the end of the row, so that readers by position keep working.
        estimate(kEmFailure);
        interval(kEmFailure);
        c.push_back({"failure_rate",
                     [](P p, std::size_t l) { return ShortestNumber(p.loci.at(l).failureRate); }});
        c.push_back({"failure_rate_low", [](P p, std::size_t l) {
                         return ShortestNumber(p.loci.at(l).failureInterval.low);
                     }});
        c.push_back({"failure_rate_high", [](P p, std::size_t l) {
                         return ShortestNumber(p.loci.at(l).failureInterval.high);
                     }});
        return c;
    }();
    return columns;
}

// Columns added to the contract after the likelihood ones, at the end of the row: each
// verdict's share of rounds at or beyond the observed count, its standard error, and whether it
// is borderline.
const std::vector<LocusColumn>& AddedLocusColumns() {
    using L = const LocusResult&;
    using Verdict = const VerdictFraction& (*)(L);
    static const std::vector<LocusColumn> columns = [] {
        std::vector<LocusColumn> c;
        const std::pair<const char*, Verdict> verdicts[] = {
            {"null_allele",
             [](L l) -> const VerdictFraction& { return l.verdictFractions.nullAllele; }},
            {"stutter", [](L l) -> const VerdictFraction& { return l.verdictFractions.stutter; }},
            {"dropout", [](L l) -> const VerdictFraction& { return l.verdictFractions.dropout; }},
        };
        for (const auto& verdict : verdicts) {
            const std::string name = verdict.first;
            const Verdict of = verdict.second;
            c.push_back(
                {name + "_fraction", [of](L l) { return ShortestNumber(of(l).test.fraction); }});
            c.push_back({name + "_fraction_se",
                         [of](L l) { return ShortestNumber(of(l).test.standardError); }});
            c.push_back({name + "_borderline", [of](L l) { return Flag(of(l).borderline); }});
        }
        return c;
    }();
    return columns;
}

class CsvReportStream : public ReportStream {
public:
    std::string Begin(const StudyHeader& header) override {
        // What every row of the file repeats, so that files from several runs stack.
        const RunSettings& s = header.settings;
        runFields_ = CsvField(header.file) + ',' + std::to_string(s.seed) + ',' +
                     std::to_string(s.randomisations) + ',' +
                     kConfidenceNames[ConfidenceCode(s.confidence)] + ',' + s.maxAlleleSize;
        std::string head =
            "file,seed,randomisations,confidence,max_allele_size,population,population_name,"
            "samples,status,stop_reason,suspect_values,suspect_action";
        for (const LocusColumn& column : LocusColumns())
            head += std::string(",") + column.name;
        for (const LikelihoodColumn& column : LikelihoodColumns())
            head += "," + column.name;
        for (const LocusColumn& column : AddedLocusColumns())
            head += "," + column.name;
        return head + "\n";
    }

    std::string Population(const PopulationResult& p) override {
        const std::string populationFields = runFields_ + ',' + std::to_string(p.number) + ',' +
                                             CsvField(p.name) + ',' + std::to_string(p.samples) +
                                             ',' + (p.Analysed() ? "analysed" : "stopped") + ',' +
                                             CsvField(p.error ? Reason(p) : "") + ',' +
                                             std::to_string(p.SuspectCount()) + ',' + p.action;
        std::ostringstream out;
        const bool anyLocus = p.analysis && !p.analysis->Loci().empty();
        if (anyLocus) {
            for (const LocusResult& locus : p.analysis->Loci()) {
                out << populationFields;
                for (const LocusColumn& column : LocusColumns())
                    out << ',' << column.value(locus);
                for (const LikelihoodColumn& column : LikelihoodColumns())
                    out << ','
                        << (p.likelihood
                                ? column.value(*p.likelihood, static_cast<std::size_t>(locus.index))
                                : "");
                for (const LocusColumn& column : AddedLocusColumns())
                    out << ',' << column.value(locus);
                out << '\n';
            }
        } else {
            out << populationFields
                << std::string(LocusColumns().size() + LikelihoodColumns().size() +
                                   AddedLocusColumns().size(),
                               ',')
                << '\n';
        }
        return out.str();
    }

    std::string End() override { return {}; }

private:
    // The stop's message on one line, with the locus the run had in hand.
    static std::string Reason(const PopulationResult& p) {
        std::string reason;
        for (char c : *p.error)
            if (c != '\r') reason += c == '\n' ? ' ' : c;
        while (reason.find("  ") != std::string::npos)
            reason.erase(reason.find("  "), 1);
        if (!p.errorLocus.empty()) reason += " (at locus " + p.errorLocus + ")";
        return reason;
    }

    std::string runFields_;
};

}  // namespace

std::unique_ptr<ReportStream> MakeCsvReport() {
    return std::make_unique<CsvReportStream>();
}

}  // namespace tavrelle
