#include "run/StudyTableExport.h"

#include <cctype>

#include "base/CsvText.h"

namespace tavrelle {

namespace {

std::string Flag(bool value) {
    return value ? "yes" : "no";
}

std::string Lower(std::string text) {
    for (char& c : text)
        c = c == ' ' ? '_' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

std::vector<std::vector<std::string>> StudyTableLines(const StudyTable& table) {
    std::vector<std::vector<std::string>> lines;
    lines.push_back({"population", "population_name", "samples", "locus", "null_allele", "stutter",
                     "large_allele_dropout", Lower(kStudyEstimateName), "suspect_values",
                     "stopped"});
    for (const StudyRow& row : table.Rows()) {
        const std::vector<std::string> head = {std::to_string(row.number), row.name,
                                               std::to_string(row.samples)};
        const std::string suspects = std::to_string(row.suspects.size());
        if (row.stopReason) {
            std::vector<std::string> line = head;
            line.insert(line.end(), {row.stopLocus, "", "", "", "", suspects, *row.stopReason});
            lines.push_back(std::move(line));
            continue;
        }
        for (std::size_t column = 0; column < row.cells.size(); ++column) {
            if (!row.cells[column]) continue;
            const StudyCell& cell = *row.cells[column];
            std::vector<std::string> line = head;
            line.insert(line.end(),
                        {table.Loci()[column], cell.verdict, Flag(cell.flags.stutter),
                         Flag(cell.flags.dropout), ShortestNumber(cell.estimate), suspects, ""});
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
