#include "run/AlleleAnalysis.h"

#include <algorithm>
#include <cstdlib>
#include <exception>

#include "analysis/ClassLists.h"
#include "analysis/KeyPipeline.h"
#include "analysis/Randomisation.h"
#include "base/Numbers.h"
#include "nulls/SummaryText.h"
#include "population/PopulationName.h"
#include "results/LocusInterpretation.h"

namespace tavrelle {

namespace {

const Message kInsufficientData{"There are insufficient samples remaining for analysis to proceed.",
                                "Insufficient Data", MessageIcon::Exclamation, MessageButtons::Ok};

const Message kTooManySamples{
    "There may be too many samples for Tavrelle to analyse.\r\nThe maximum is usually around 750 "
    "samples.\r\nPlease divide the population into smaller groups and try again.",
    "Too many samples", MessageIcon::Exclamation, MessageButtons::Ok};

// The allele copies of the desktop's run are 16-bit.
constexpr int kMostAnalysedSamples = 32767;

template <class Hook, class... Args>
void Call(const Hook& hook, Args&&... args) {
    if (hook) hook(std::forward<Args>(args)...);
}

}  // namespace

// A locus as read from the table before the rounds: its scored individuals and missing count,
// or the error that reading met (raised only when the run reaches the locus).
struct AlleleAnalysis::LocusInput {
    GenotypeSet genotypes;
    Int16 missing = 0;
    std::exception_ptr error;
};

AlleleAnalysis::AlleleAnalysis(const Table& rsAlleleData, RunSettings settings, RunHooks hooks)
    : settings_(std::move(settings)), hooks_(std::move(hooks)) {
    try {
        tables_ = LoadStatisticalTables(settings_.tableFolder);
        Run(rsAlleleData);
        CholeskyCheck(*hooks_.prompter);
    } catch (const ProgramError& error) {
        runError_ = error;
        // 2 x samples is the first count to leave 16 bits; say so, with the way round it.
        if (error.Number() == ProgramError::Overflow().Number() &&
            settings_.counts == CountWidth::Bits16 && 2 * sampleCount_ > kMostAnalysedSamples)
            runError_ = error.WithDetail(
                "The population " + GridCaptionName(rsAlleleData) + " has " +
                std::to_string(sampleCount_) + " samples; Analyse counts allele copies in 16 " +
                "bits and takes at most " + std::to_string(kMostAnalysedSamples / 2) +
                " samples. Tools > Study Overview and tavrelle-batch analyse up to 32766.");
        errorLocus_ = locusInHand_;
        Call(hooks_.endProgress);
    }
}

AlleleAnalysis::LocusInput AlleleAnalysis::ReadLocus(const Table& rsAlleleData, int column,
                                                     Int16 sampleCount) {
    LocusInput input;
    try {
        for (std::int64_t row = 2; row < 2 + sampleCount; ++row) {
            Int16 first = TextToInt16(rsAlleleData.Cell(row, column));
            Int16 second = TextToInt16(rsAlleleData.Cell(row, column + 1));
            if (first > 0 && second > 0) {
                input.genotypes.push_back({first, second, Narrow16(std::abs(first - second))});
            } else if (first <= 0 && second <= 0) {
                input.missing = Narrow16(input.missing + 1);
            }
        }
        if (input.genotypes.size() > 32767) throw ProgramError::Overflow();
    } catch (const ProgramError&) {
        input.error = std::current_exception();
    }
    return input;
}

void AlleleAnalysis::Run(const Table& rsAlleleData) {
    const int columns = rsAlleleData.ColumnCount();
    sampleCount_ = Narrow16(rsAlleleData.RecordCount() - 2);
    const int lastLocus = (columns - 2) / 2 - 1;
    Call(hooks_.startProgress, columns, std::string(kProgressCaption));
    Call(hooks_.progress, 1);

    if (settings_.isExcel) {
        populationName_ = rsAlleleData.Cell(1, 1);
    } else {
        // The text up to and including its first space; nothing when it has none.
        const std::string& name = rsAlleleData.Cell(4, 1);
        std::size_t space = name.find(' ');
        populationName_ = space == std::string::npos ? "" : name.substr(0, space + 1);
    }

    // Every locus is read first so that the random numbers of all rounds can be drawn ahead;
    // a locus that could not be read, or is too small, ends the drawing before it.
    std::vector<LocusInput> inputs;
    std::vector<KeyPipeline::Job> jobs;
    bool drawing = true;
    for (int locus = 0; locus <= lastLocus; ++locus) {
        inputs.push_back(ReadLocus(rsAlleleData, 2 + 2 * locus, sampleCount_));
        drawing = drawing && !inputs.back().error && inputs.back().genotypes.size() >= 4;
        if (drawing)
            jobs.push_back(
                {RoundPool(inputs.back().genotypes).size() * 2, settings_.randomisations});
    }
    RandomNumGen generator;
    generator.SetSeedValue(settings_.seed);
    KeyPipeline keys(generator, std::move(jobs), settings_.threaded);

    for (int locus = 0; locus <= lastLocus; ++locus) {
        const int column = 2 + 2 * locus;
        LocusInput& input = inputs[static_cast<std::size_t>(locus)];
        LocusResult result;
        result.index = static_cast<Int16>(locus);
        result.name = rsAlleleData.Cell(1, column);
        locusInHand_ = result.name;
        if (input.error) std::rethrow_exception(input.error);
        if (input.genotypes.size() < 4) {
            hooks_.prompter->Show(kInsufficientData);
            Call(hooks_.endProgress);
            stopMessage_ = kInsufficientData.text;
            return;
        }
        Call(hooks_.progress, column);
        result.genotypes = std::move(input.genotypes);
        result.missingGenotypes = input.missing;
        if (static_cast<std::size_t>(locus) >= settings_.repeatCodes.size())
            throw ProgramError::SubscriptOutOfRange();
        result.repeat = settings_.repeatCodes[static_cast<std::size_t>(locus)];
        loci_.push_back(std::move(result));
        try {
            AnalyseLocus(loci_.back(), keys);
        } catch (const ProgramError&) {
            loci_.pop_back();  // a report keeps only the loci finished before the failure
            throw;
        }
    }
    locusInHand_.clear();
    Call(hooks_.endProgress);
    Summarise();
}

void AlleleAnalysis::Summarise() {
    std::vector<LocusSummaryLine> lines;
    for (const LocusResult& locus : loci_)
        lines.push_back({locus.name, locus.nullPresent, locus.nulls.estimatesLine});
    summaryText_ = tavrelle::SummaryText(lines);
    anyNullLocus_ = NullLocusCount(lines) >= 1;
    if (anyNullLocus_) {
        for (LocusResult& locus : loci_)
            locus.adjustedGenotypes =
                CorrectGenotypesForAllMethods(locus.prepared.sorted, locus.nulls.adjustedCounts);
    }
}

std::optional<std::pair<std::string, std::string>> AlleleAnalysis::DisplayInitAnalysis(
    const std::string& locusName) const {
    for (const LocusResult& locus : loci_)
        if (locus.name == locusName)
            return std::make_pair(locus.probabilityText, locus.interpretationText);
    return std::nullopt;
}

void AlleleAnalysis::AnalyseLocus(LocusResult& locus, KeyPipeline& keys) {
    const int column = 2 + 2 * locus.index;
    for (const GenotypeRow& row : locus.genotypes) {
        locus.sortedAlleles.push_back(row.first);
        locus.sortedAlleles.push_back(row.second);
    }
    std::sort(locus.sortedAlleles.begin(), locus.sortedAlleles.end());
    locus.lowest = locus.sortedAlleles.front();
    locus.highest = locus.sortedAlleles.back();
    locus.range = Narrow16(locus.highest - locus.lowest);

    locus.observedHomozygotes =
        ExpandClasses(HomozygoteClassList(locus.genotypes), locus.range, locus.lowest);
    locus.prepared = PrepareLocusGenotypes(locus.genotypes, settings_.counts);
    locus.observedDifferences = ExpandClasses(DifferenceClassList(locus.genotypes), locus.range, 0);
    Call(hooks_.progress, column + 1);

    LocusRounds rounds(RoundPool(locus.genotypes), locus.lowest, locus.range,
                       settings_.randomisations);
    for (int r = 0; r < settings_.randomisations; ++r)
        rounds.AddRound(keys.NextRound());
    roundsWithTies_ += rounds.RoundsWithTies();
    Call(hooks_.progress, column + 2);
    locus.randomHomozygotes = rounds.SortedHomozygotes();
    locus.randomDifferences = rounds.SortedDifferences();
    locus.meanHomozygotes = rounds.MeanHomozygotes();
    locus.meanDifferences = rounds.MeanDifferences();

    LocusAnalysis(locus.index, settings_.confidence);
    ClassBinomialTest(locus.observedHomozygotes, locus.sortedAlleles, locus.randomHomozygotes,
                      tables_.chi, locus.binomial, settings_.counts);
    if (locus.binomial.overflowed) ReportTooManySamples();

    LocusConclusions conclusions = LocusInterpretation(locus);
    locus.probabilityText = std::move(conclusions.probabilityText);
    locus.interpretationText = std::move(conclusions.interpretationText);
    locus.nullPresent = std::move(conclusions.nullPresent);
    locus.nullSuspected = conclusions.nullSuspected;
    locus.nulls = CalculateNullAllele(locus.genotypes, locus.missingGenotypes, locus.nullSuspected,
                                      settings_.counts);
}

GenotypeSet AlleleAnalysis::RoundPool(const GenotypeSet& observed) const {
    if (!settings_.heterozygotesOnly) return observed;
    GenotypeSet heterozygotes;
    for (const GenotypeRow& row : observed)
        if (row.first != row.second) heterozygotes.push_back(row);
    return heterozygotes;
}

void AlleleAnalysis::ReportTooManySamples() {
    tooManySamples_ = true;
    hooks_.prompter->Show(kTooManySamples);
    Call(hooks_.endProgress);
    Call(hooks_.resetDisplay);
}

void AlleleAnalysis::LocusAnalysis(Int16 locus, Confidence confidence) {
    if (locus < 0 || static_cast<std::size_t>(locus) >= loci_.size())
        throw ProgramError::SubscriptOutOfRange();
    LocusResult& l = loci_[static_cast<std::size_t>(locus)];
    const Int16 n = settings_.randomisations;
    l.differenceBounds = ConfidenceBounds(l.randomDifferences, n, confidence);
    l.decisions.homozygoteExcess = ZeroClassExcessTest(l.observedDifferences, l.differenceBounds);
    l.homozygoteBounds = ConfidenceBounds(l.randomHomozygotes, n, confidence);
    l.decisions.classWideExcess =
        ClassWideExcessTest(l.observedHomozygotes, l.homozygoteBounds, l.meanHomozygotes);
    l.decisions.oneRepeatDeficit =
        OneRepeatDeficitTest(l.observedDifferences, l.differenceBounds, l.repeat);
    l.decisions.upperClassExcess =
        UpperClassExcessTest(l.observedHomozygotes, l.observedDifferences.at(0));
    l.decisions.lowerClassExcess =
        LowerClassExcessTest(l.observedHomozygotes, l.observedDifferences.at(0));
    l.decisions.largeDifferencesScarce = LargeDifferenceTest(l.observedDifferences);
    l.verdictFractions = VerdictFractionsOf(l, n, confidence);
}

}  // namespace tavrelle
