#include "population/GenalexTable.h"

#include <map>

#include "base/CsvText.h"
#include "base/Numbers.h"

namespace tavrelle {

namespace {

// An allele cell: empty or 0 missing, else a whole number from 1 to kLargestAllele. A
// spreadsheet may hand a whole number over as "102.0".
std::optional<int> AlleleCell(const std::string& cell) {
    if (cell.empty()) return 0;
    if (auto digits = DigitsValue(cell, kLargestAllele)) return digits;
    if (cell.ends_with(".0")) return DigitsValue(cell.substr(0, cell.size() - 2), kLargestAllele);
    return std::nullopt;
}

}  // namespace

bool IsGenalexCountRow(const CellRow& row) {
    if (row.cells.size() < 3) return false;
    for (std::size_t column = 0; column < 3; ++column)
        if (!AlleleCell(row.Cell(column)) || row.Cell(column).empty()) return false;
    return true;
}

GenotypeRead ReadGenalexRows(const CellRows& rows, const std::string& file) {
    GenotypeRead read;
    read.file = file;
    std::size_t at = 0;
    while (at < rows.size() && rows[at].Blank())
        ++at;
    if (at + 2 >= rows.size()) {
        read.Problem(rows.empty() ? 0 : rows.back().line, "", "",
                     "expected GenAlEx's count row, title row and header row, got the end of the "
                     "file");
        return read;
    }
    const CellRow& counts = rows[at];
    const CellRow& titles = rows[at + 1];
    const CellRow& header = rows[at + 2];
    if (!IsGenalexCountRow(counts)) {
        read.Problem(counts.line, "", "",
                     "expected GenAlEx's count row (loci, samples, populations), got '" +
                         counts.Cell(0) + "'");
        return read;
    }
    read.data.title = titles.Cell(0);
    // Locus names stand above the first of their two columns, from the third column.
    std::size_t columnsEnd = 2;
    for (std::size_t column = 2; column < header.cells.size(); column += 2) {
        if (header.Cell(column).empty()) break;
        if (!header.Cell(column + 1).empty())
            read.Problem(header.line, "", header.Cell(column),
                         "expected the second allele column of the locus to have an empty "
                         "header, got '" +
                             header.Cell(column + 1) + "'");
        read.data.loci.push_back(header.Cell(column));
        columnsEnd = column + 2;
    }
    if (read.data.loci.empty()) {
        read.Problem(header.line, "", "", "expected locus names in the header row from column 3");
        return read;
    }
    const std::vector<std::string>& loci = read.data.loci;
    std::map<std::string, std::size_t> populationIndex;
    std::size_t samples = 0;
    for (std::size_t r = at + 3; r < rows.size(); ++r) {
        const CellRow& row = rows[r];
        if (row.Blank()) continue;
        const std::string name = row.Cell(0);
        const std::string population = row.Cell(1);
        if (population.empty()) {
            read.Problem(row.line, name, "", "expected a population in column 2, got nothing");
            continue;
        }
        GenotypeSample sample{name, {}};
        for (std::size_t locus = 0; locus < loci.size(); ++locus) {
            AllelePair pair;
            for (std::size_t copy = 0; copy < 2; ++copy) {
                const std::string cell = row.Cell(2 + 2 * locus + copy);
                std::optional<int> allele = AlleleCell(cell);
                if (!allele)
                    read.Problem(
                        row.line, name, loci[locus],
                        "expected an allele size (a whole number) or 0, got '" + cell + "'");
                (copy == 0 ? pair.first : pair.second) = allele.value_or(0);
            }
            sample.genotypes.push_back(pair);
        }
        if (!row.Cell(columnsEnd).empty())
            read.Problem(row.line, name, "",
                         "expected " + std::to_string(loci.size()) +
                             " loci, got a value after "
                             "the last: '" +
                             row.Cell(columnsEnd) + "'");
        auto [found, added] = populationIndex.emplace(population, read.data.populations.size());
        if (added) {
            read.data.populations.push_back({population, {}});
        } else if (found->second + 1 != read.data.populations.size()) {
            read.Problem(row.line, name, "",
                         "population '" + population +
                             "' comes back after another population; its samples must stand "
                             "together");
        }
        read.data.populations[found->second].samples.push_back(std::move(sample));
        ++samples;
    }
    if (samples == 0) read.Problem(header.line, "", "", "expected sample rows after the header");

    // GenAlEx's own counts: trusted less than the rows, and said so when they differ.
    auto countNote = [&](std::size_t column, std::size_t actual, const char* what) {
        const std::string said = counts.Cell(column);
        if (said != std::to_string(actual))
            read.Note(counts.line, "the count row says " + said + " " + what + ", the file has " +
                                       std::to_string(actual) + "; the rows are used");
    };
    countNote(0, loci.size(), "loci");
    countNote(1, samples, "samples");
    countNote(2, read.data.populations.size(), "populations");
    return read;
}

GenotypeRead ReadGenalexCsv(std::string_view bytes, const std::string& file) {
    bytes = WithoutByteOrderMark(bytes);
    std::size_t unclosed = 0;
    std::optional<CellRows> rows = SplitDelimited(bytes, GuessSeparator(bytes), unclosed);
    if (!rows) {
        GenotypeRead read;
        read.file = file;
        read.Problem(unclosed, "", "", "a quote opened here is never closed");
        return read;
    }
    return ReadGenalexRows(*rows, file);
}

CellRows GenalexRows(const GenotypeData& data) {
    CellRows rows(3);
    std::size_t samples = 0;
    for (const GenotypePopulation& population : data.populations)
        samples += population.samples.size();
    rows[0].cells = {std::to_string(data.loci.size()), std::to_string(samples),
                     std::to_string(data.populations.size())};
    rows[1].cells = {data.title, "", ""};
    rows[2].cells = {"Ind", "Pop"};
    const std::vector<std::string> labels = PopulationLabels(data);
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        rows[0].cells.push_back(std::to_string(data.populations[p].samples.size()));
        rows[1].cells.push_back(labels[p]);
    }
    for (const std::string& locus : data.loci) {
        rows[2].cells.push_back(locus);
        rows[2].cells.emplace_back();
    }
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        for (const GenotypeSample& sample : data.populations[p].samples) {
            CellRow row{0, {sample.name, labels[p]}};
            for (const AllelePair& pair : sample.genotypes) {
                row.cells.push_back(std::to_string(pair.first));
                row.cells.push_back(std::to_string(pair.second));
            }
            rows.push_back(std::move(row));
        }
    }
    for (std::size_t r = 0; r < rows.size(); ++r)
        rows[r].line = r + 1;
    return rows;
}

std::string CsvText(const CellRows& rows) {
    std::string text;
    for (const CellRow& row : rows) {
        for (std::size_t column = 0; column < row.cells.size(); ++column) {
            if (column > 0) text += ',';
            text += CsvField(row.cells[column]);
        }
        text += '\n';
    }
    return text;
}

std::string GenalexCsv(const GenotypeData& data) {
    return CsvText(GenalexRows(data));
}

}  // namespace tavrelle
