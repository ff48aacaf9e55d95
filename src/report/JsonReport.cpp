#include <cmath>
#include <utility>

#include "base/Version.h"
#include "report/JsonWriter.h"
#include "report/ReportStream.h"

namespace tavrelle {

namespace {

void WriteSuspects(JsonWriter& json, const char* key, const std::vector<SuspectEntry>& entries) {
    json.Key(key);
    json.BeginArray();
    for (const SuspectEntry& entry : entries) {
        json.BeginObject();
        json.Key("value");
        json.String(entry.value);
        json.Key("row");
        json.Integer(entry.row);
        json.Key("column");
        json.Integer(entry.column);
        json.EndObject();
    }
    json.EndArray();
}

void WriteBounds(JsonWriter& json, const char* key, const BoundsTable& bounds) {
    json.Key(key);
    json.BeginObject();
    json.Key("lower");
    json.NumberArray(bounds.lower);
    json.Key("upper");
    json.NumberArray(bounds.upper);
    json.EndObject();
}

void WriteDecisions(JsonWriter& json, const LocusDecisions& d) {
    json.Key("decisions");
    json.BeginObject();
    const std::pair<const char*, bool> decisions[] = {
        {"homozygote_excess", d.homozygoteExcess},
        {"class_wide_excess", d.classWideExcess},
        {"one_repeat_deficit", d.oneRepeatDeficit},
        {"upper_class_excess", d.upperClassExcess},
        {"lower_class_excess", d.lowerClassExcess},
        {"large_differences_scarce", d.largeDifferencesScarce}};
    for (const auto& [name, value] : decisions) {
        json.Key(name);
        json.Bool(value);
    }
    json.EndObject();
}

const char* const kMethodKeys[] = {"velmaret", "chakraborty", "brookfield1", "brookfield2"};

// Each verdict's share of rounds at or beyond the observed count, its Monte Carlo standard
// error, the threshold the share is compared with, and whether it is borderline.
void WriteVerdictFractions(JsonWriter& json, const VerdictFractions& v) {
    json.Key("verdict_fractions");
    json.BeginObject();
    const std::pair<const char*, const VerdictFraction*> verdicts[] = {
        {"null_allele", &v.nullAllele}, {"stutter", &v.stutter}, {"dropout", &v.dropout}};
    for (const auto& [key, verdict] : verdicts) {
        json.Key(key);
        json.BeginObject();
        json.Key("fraction");
        json.Number(verdict->test.fraction);
        json.Key("standard_error");
        json.Number(verdict->test.standardError);
        json.Key("threshold");
        json.Number(verdict->test.threshold);
        json.Key("borderline");
        json.Bool(verdict->borderline);
        json.EndObject();
    }
    json.EndObject();
}

void WriteInterval(JsonWriter& json, const Interval& interval) {
    if (std::isnan(interval.low) && std::isnan(interval.high)) return json.Null();
    json.BeginArray(true);
    json.Number(interval.low);
    json.Number(interval.high);
    json.EndArray();
}

void WriteNullAlleles(JsonWriter& json, const LocusResult& locus, bool withGenotypes,
                      const LocusEstimates* likelihood) {
    json.Key("probability_text");
    json.String(locus.probabilityText);
    json.Key("interpretation_text");
    json.String(locus.interpretationText);
    json.Key("null_present");
    json.String(locus.nullPresent);
    json.Key("estimates");
    json.BeginObject();
    for (std::size_t m = 0; m < 4; ++m) {
        json.Key(kMethodKeys[m]);
        json.Number(locus.nulls.estimates[m]);
    }
    for (std::size_t e = 4; likelihood && e < kEstimateCount; ++e) {
        json.Key(kEstimateKeys[e]);
        json.Number(likelihood->estimates[e]);
    }
    json.EndObject();
    if (likelihood) {
        json.Key("estimate_intervals");
        json.BeginObject();
        for (std::size_t e = 0; e < kEstimateCount; ++e) {
            json.Key(kEstimateKeys[e]);
            WriteInterval(json, likelihood->intervals[e]);
        }
        json.EndObject();
        json.Key("failure_rate");
        json.Number(likelihood->failureRate);
        json.Key("failure_rate_interval");
        WriteInterval(json, likelihood->failureInterval);
    }
    json.Key("estimates_line");
    json.String(locus.nulls.estimatesLine);
    json.Key("adjusted_frequencies_text");
    json.String(locus.nulls.adjustedText);
    json.Key("adjusted_counts");
    json.BeginArray();
    for (const AdjustedCountRow& row : locus.nulls.adjustedCounts) {
        json.BeginArray(true);
        json.Integer(row.size);
        for (std::int32_t count : row.counts)
            json.Integer(count);
        json.EndArray();
    }
    json.EndArray();
    if (!withGenotypes) return;
    json.Key("adjusted_genotypes");
    json.BeginObject();
    for (std::size_t m = 0; m < 4; ++m) {
        json.Key(kMethodKeys[m]);
        json.BeginArray(true);
        for (const AdjustedGenotype& g : locus.adjustedGenotypes[m]) {
            json.BeginArray(true);
            json.Integer(g.low);
            json.Integer(g.high);
            json.EndArray();
        }
        json.EndArray();
    }
    json.EndObject();
}

void WriteLocus(JsonWriter& json, const LocusResult& locus, bool withGenotypes,
                const LocusEstimates* likelihood) {
    json.BeginObject();
    json.Key("index");
    json.Integer(locus.index);
    json.Key("name");
    json.String(locus.name);
    json.Key("repeat");
    json.Integer(locus.repeat);
    json.Key("lowest");
    json.Integer(locus.lowest);
    json.Key("highest");
    json.Integer(locus.highest);
    json.Key("scored");
    json.Integer(locus.Scored());
    json.Key("missing_genotypes");
    json.Integer(locus.missingGenotypes);
    json.Key("observed_homozygotes");
    json.NumberArray(locus.observedHomozygotes);
    json.Key("mean_homozygotes");
    json.NumberArray(locus.meanHomozygotes);
    WriteBounds(json, "homozygote_bounds", locus.homozygoteBounds);
    json.Key("observed_differences");
    json.NumberArray(locus.observedDifferences);
    json.Key("mean_differences");
    json.NumberArray(locus.meanDifferences);
    WriteBounds(json, "difference_bounds", locus.differenceBounds);
    WriteDecisions(json, locus.decisions);
    WriteVerdictFractions(json, locus.verdictFractions);

    const BinomialOutcome& binomial = locus.binomial;
    json.Key("homozygote_totals");
    json.BeginArray(true);
    for (int i = 0; i < 3; ++i) {
        if (i < binomial.totalsComputed)
            json.Number(binomial.homozygoteTotals[static_cast<std::size_t>(i)]);
        else
            json.Null();
    }
    json.EndArray();
    json.Key("class_probabilities");
    json.BeginArray();
    for (const ClassProbability& row : binomial.classProbabilities)
        json.NumberArray(row);
    json.EndArray();
    json.Key("combined_probability");
    json.String(binomial.combinedProbabilityLabel);
    WriteNullAlleles(json, locus, withGenotypes, likelihood);
    json.EndObject();
}

void WriteInbreeding(JsonWriter& json, const std::optional<PopulationEstimates>& likelihood) {
    if (!likelihood) return json.Null();
    const InbreedingResult& inbreeding = likelihood->inbreeding;
    json.BeginObject();
    json.Key("f");
    json.Number(inbreeding.f);
    json.Key("interval");
    WriteInterval(json, inbreeding.interval);
    json.Key("model");
    json.String(kNestedModelNames[static_cast<std::size_t>(inbreeding.model)]);
    json.Key("log_likelihoods");
    json.BeginObject();
    for (std::size_t m = 0; m < kNestedModelCount; ++m) {
        json.Key(kNestedModelNames[m]);
        json.Number(inbreeding.logLikelihoods[m]);
    }
    json.EndObject();
    json.Key("verdict");
    json.String(inbreeding.verdict);
    json.EndObject();
}

void WritePopulation(JsonWriter& json, const PopulationResult& population) {
    json.BeginObject();
    json.Key("number");
    json.Integer(population.number);
    json.Key("name");
    json.String(population.name);
    json.Key("samples");
    json.Integer(population.samples);
    json.Key("check");
    json.BeginObject();
    WriteSuspects(json, "non_integer", population.nonInteger);
    WriteSuspects(json, "unexpected", population.unexpected);
    WriteSuspects(json, "inconsistent", population.inconsistent);
    json.Key("half_missing");
    json.BeginArray();
    for (const HalfMissingGenotype& genotype : population.halfMissing) {
        json.BeginObject();
        json.Key("sample");
        json.String(genotype.sample);
        json.Key("locus");
        json.String(genotype.locus);
        json.Key("allele");
        json.String(genotype.allele);
        json.EndObject();
    }
    json.EndArray();
    json.Key("index_like_alleles");
    json.Bool(population.indexLikeAlleles);
    json.Key("action");
    json.String(population.action);
    json.EndObject();
    json.Key("messages");
    json.BeginArray();
    for (const Message& message : population.messages) {
        json.BeginObject();
        json.Key("caption");
        json.String(message.caption.empty() ? "Tavrelle" : message.caption);
        json.Key("text");
        json.String(message.text);
        json.EndObject();
    }
    json.EndArray();
    json.Key("status");
    json.String(population.Analysed() ? "analysed" : "stopped");
    json.Key("error");
    if (population.error)
        json.String(*population.error);
    else
        json.Null();
    json.Key("error_locus");
    if (population.errorLocus.empty())
        json.Null();
    else
        json.String(population.errorLocus);
    json.Key("loci");
    json.BeginArray();
    if (population.analysis) {
        for (const LocusResult& locus : population.analysis->Loci())
            WriteLocus(json, locus, population.analysis->AnyNullLocus(),
                       population.likelihood
                           ? &population.likelihood->loci.at(static_cast<std::size_t>(locus.index))
                           : nullptr);
    }
    json.EndArray();
    json.Key("summary_text");
    json.String(population.analysis ? population.analysis->SummaryText() : "");
    json.Key("inbreeding");
    WriteInbreeding(json, population.likelihood);
    json.EndObject();
}

// The header and the opening of the populations array first, then each population, then the
// closing brackets; the writer keeps the nesting across the pieces.
class JsonReportStream : public ReportStream {
public:
    std::string Begin(const StudyHeader& header) override {
        json_.BeginObject();
        json_.Key("program");
        json_.String("Tavrelle");
        json_.Key("version");
        json_.String(kProgramVersion);
        json_.Key("file");
        json_.String(header.file);
        json_.Key("title");
        json_.String(header.title);
        const std::pair<const char*, std::int64_t> settings[] = {
            {"seed", header.settings.seed},
            {"randomisations", header.settings.randomisations},
            {"confidence", ConfidenceCode(header.settings.confidence)},
            {"max_allele_size", std::stoi(header.settings.maxAlleleSize)}};
        for (const auto& [key, value] : settings) {
            json_.Key(key);
            json_.Integer(value);
        }
        json_.Key("populations");
        json_.BeginArray();
        return Piece();
    }

    std::string Population(const PopulationResult& population) override {
        WritePopulation(json_, population);
        return Piece();
    }

    std::string End() override {
        json_.EndArray();
        json_.EndObject();
        return Piece();
    }

private:
    std::string Piece() { return std::exchange(text_, std::string()); }

    std::string text_;
    JsonWriter json_{text_};
};

}  // namespace

std::unique_ptr<ReportStream> MakeJsonReport() {
    return std::make_unique<JsonReportStream>();
}

}  // namespace tavrelle
