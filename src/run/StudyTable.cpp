#include "run/StudyTable.h"

#include <cmath>

#include <algorithm>

namespace tavrelle {

LocusFlags FlagsOf(const LocusResult& locus) {
    // As the interpretation reads the decisions: without a homozygote excess nothing is
    // concluded; with one, an excess across most classes says null allele, otherwise drop-out,
    // and a shortage of one-repeat pairs says stutter beside either.
    const LocusDecisions& d = locus.decisions;
    LocusFlags flags;
    flags.nullAllele = locus.nullPresent == "yes";
    flags.stutter = d.homozygoteExcess && d.oneRepeatDeficit;
    flags.dropout = d.homozygoteExcess && !d.classWideExcess;
    return flags;
}

LocusFlags BorderlineOf(const LocusResult& locus) {
    const VerdictFractions& f = locus.verdictFractions;
    return {f.nullAllele.borderline, f.stutter.borderline, f.dropout.borderline};
}

double StudyEstimate(const PopulationResult& population, const LocusResult& locus,
                     std::size_t estimate) {
    if (!population.likelihood) return kNoValue;
    const auto index = static_cast<std::size_t>(locus.index);
    if (index >= population.likelihood->loci.size()) return kNoValue;
    return population.likelihood->loci[index].estimates.at(estimate);
}

std::string StudyEstimateName(std::size_t estimate) {
    return kEstimateLabels.at(estimate);
}

StudyTable::StudyTable(std::size_t estimate) : estimate_(estimate) {
    (void)kEstimateKeys.at(estimate);  // refuses an estimate that does not exist
}

void StudyTable::SetRun(std::int64_t seed, int populationsInFile) {
    seed_ = seed;
    populationsInFile_ = populationsInFile;
}

std::string CancelledText(const StudyTable& table) {
    if (!table.Incomplete()) return {};
    const std::string done = std::to_string(table.Rows().size());
    return "Run cancelled after " + done + " of " + std::to_string(table.PopulationsInFile()) +
           " populations: the totals count those " + done + " only.";
}

void FlagTotals::Add(const LocusFlags& flags) {
    ++analysed;
    nullAllele += flags.nullAllele ? 1 : 0;
    stutter += flags.stutter ? 1 : 0;
    dropout += flags.dropout ? 1 : 0;
}

std::size_t StudyTable::Column(const std::string& locus) {
    auto found = std::find(loci_.begin(), loci_.end(), locus);
    if (found != loci_.end()) return static_cast<std::size_t>(found - loci_.begin());
    loci_.push_back(locus);
    locusTotals_.emplace_back();
    for (StudyRow& row : rows_)
        row.cells.resize(loci_.size());
    return loci_.size() - 1;
}

void StudyTable::Add(const PopulationResult& population) {
    StudyRow row;
    row.number = population.number;
    row.name = population.name;
    row.samples = population.samples;
    row.suspectAction = population.action;
    row.halfMissing = population.halfMissing.size();
    row.indexLikeAlleles = population.indexLikeAlleles;
    // Missing alleles ("0", "000") are listed by the check as unexpected but are no suspects.
    auto missing = [](const std::string& value) {
        return value.find_first_not_of('0') == std::string::npos;
    };
    row.suspects = population.nonInteger;
    for (const SuspectEntry& entry : population.unexpected)
        if (!missing(entry.value)) row.suspects.push_back(entry);
    row.suspects.insert(row.suspects.end(), population.inconsistent.begin(),
                        population.inconsistent.end());
    if (!population.Analysed()) {
        row.stopReason = population.error;
        row.stopLocus = population.errorLocus;
    }
    std::vector<std::pair<std::size_t, StudyCell>> cells;
    if (population.Analysed() && population.analysis) {
        for (const LocusResult& locus : population.analysis->Loci()) {
            StudyCell cell;
            cell.verdict = locus.nullPresent;
            cell.flags = FlagsOf(locus);
            cell.borderline = BorderlineOf(locus);
            cell.estimate = StudyEstimate(population, locus, estimate_);
            cell.blanks = locus.missingGenotypes;
            cell.samples = locus.Scored() + locus.missingGenotypes;
            const std::size_t column = Column(locus.name);
            locusTotals_[column].Add(cell.flags);
            row.totals.Add(cell.flags);
            // A locus with no estimate takes no part in the colour scale.
            if (std::isfinite(cell.estimate)) {
                lowest_ = anyCell_ ? std::min(lowest_, cell.estimate) : cell.estimate;
                highest_ = anyCell_ ? std::max(highest_, cell.estimate) : cell.estimate;
                anyCell_ = true;
            }
            cells.emplace_back(column, std::move(cell));
        }
    }
    row.cells.resize(loci_.size());
    for (auto& [column, cell] : cells)
        row.cells[column] = std::move(cell);
    rows_.push_back(std::move(row));
}

std::string SuspectSummary(const StudyRow& row, std::size_t shown) {
    if (row.suspects.empty()) return {};
    const char* fate = row.suspectAction == "omit"   ? " omitted"
                       : row.suspectAction == "stop" ? " found; the population was not analysed"
                                                     : " analysed as they stand";
    std::string text = std::to_string(row.suspects.size()) +
                       (row.suspects.size() == 1 ? " suspect value" : " suspect values") + fate +
                       ": ";
    for (std::size_t i = 0; i < row.suspects.size() && i < shown; ++i) {
        const SuspectEntry& entry = row.suspects[i];
        text += (i ? ", " : "") + entry.value + " (row " + std::to_string(entry.row) + ", column " +
                std::to_string(entry.column) + ")";
    }
    if (row.suspects.size() > shown) text += ", ...";
    return text;
}

std::string AlleleCodingSummary(const StudyRow& row) {
    std::string text;
    if (row.halfMissing > 0)
        text = std::to_string(row.halfMissing) +
               (row.halfMissing == 1 ? " genotype" : " genotypes") +
               " with one allele missing, left out of the analysis.";
    if (row.indexLikeAlleles) {
        std::string indices = kIndexLikeAllelesText;
        indices[0] = 'E';
        text += (text.empty() ? "" : " ") + indices;
    }
    return text;
}

}  // namespace tavrelle
