#include "run/StudyTableExport.h"

#include <utility>

#include "base/CsvText.h"

namespace tavrelle {

namespace {

std::string Flag(bool value) {
    return value ? "yes" : "no";
}

std::string Borderline(const LocusFlags& borderline) {
    std::string names;
    for (const auto& [flag, name] :
         {std::pair{borderline.nullAllele, "null_allele"}, std::pair{borderline.stutter, "stutter"},
          std::pair{borderline.dropout, "large_allele_dropout"}})
        if (flag) names += (names.empty() ? "" : " ") + std::string(name);
    return names;
}

// "complete", or what CancelledText says, in lower case as a value.
std::string RunState(const StudyTable& table) {
    if (!table.Incomplete()) return "complete";
    return "cancelled after " + std::to_string(table.Rows().size()) + " of " +
           std::to_string(table.PopulationsInFile()) + " populations";
}

}  // namespace

std::vector<std::vector<std::string>> StudyTableLines(const StudyTable& table) {
    std::vector<std::vector<std::string>> lines;
    lines.push_back({"population", "population_name", "samples", "locus", "null_allele", "stutter",
                     "large_allele_dropout", kEstimateKeys.at(table.Estimate()), "borderline",
                     "blank_samples", "suspect_values", "stopped", "seed", "run"});
    const std::string seed = table.Seed() ? std::to_string(*table.Seed()) : "";
    const std::string run = RunState(table);
    for (const StudyRow& row : table.Rows()) {
        const std::vector<std::string> head = {std::to_string(row.number), row.name,
                                               std::to_string(row.samples)};
        const std::string suspects = std::to_string(row.suspects.size());
        if (row.stopReason) {
            std::vector<std::string> line = head;
            line.insert(line.end(), {row.stopLocus, "", "", "", "", "", "", suspects,
                                     *row.stopReason, seed, run});
            lines.push_back(std::move(line));
            continue;
        }
        for (std::size_t column = 0; column < row.cells.size(); ++column) {
            if (!row.cells[column]) continue;
            const StudyCell& cell = *row.cells[column];
            std::vector<std::string> line = head;
            line.insert(line.end(), {table.Loci()[column], cell.verdict, Flag(cell.flags.stutter),
                                     Flag(cell.flags.dropout), ShortestNumber(cell.estimate),
                                     Borderline(cell.borderline), std::to_string(cell.blanks),
                                     suspects, "", seed, run});
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

std::string StudyTableCsv(const StudyTable& table) {
    std::string csv;
    for (const std::vector<std::string>& line : StudyTableLines(table)) {
        for (std::size_t i = 0; i < line.size(); ++i)
            csv += (i ? "," : "") + CsvField(line[i]);
        csv += "\n";
    }
    return csv;
}

}  // namespace tavrelle
