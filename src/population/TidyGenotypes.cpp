#include "population/TidyGenotypes.h"

#include <algorithm>
#include <map>

#include "base/Numbers.h"
#include "population/GenalexTable.h"

namespace tavrelle {

namespace {

std::string Lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::optional<int> TidyAllele(const std::string& cell) {
    if (cell.empty() || cell == "NA") return 0;
    return DigitsValue(cell, kLargestAllele);
}

bool IsLongHeader(const CellRow& row) {
    return row.cells.size() == 5 && Lower(row.Cell(2)) == "locus" &&
           Lower(row.Cell(3)) == "allele1" && Lower(row.Cell(4)) == "allele2";
}

// The locus of a wide column pair, or nullopt when the two names do not pair up.
std::optional<std::string> PairedLocus(const std::string& a, const std::string& b) {
    for (auto [first, second] : {std::pair{"_a", "_b"}, std::pair{"_1", "_2"}})
        if (a.size() > 2 && a.ends_with(first) && b.ends_with(second) &&
            a.substr(0, a.size() - 2) == b.substr(0, b.size() - 2))
            return a.substr(0, a.size() - 2);
    return std::nullopt;
}

// Populations and samples in order of first appearance. A name may stand for several samples
// (files that name every sample after its population): the k-th row of a name at a locus goes
// to the k-th sample of that name, and every such sample must then have every locus.
class TidySamples {
public:
    explicit TidySamples(GenotypeRead& read) : read_(read) {}

    std::size_t Population(const std::string& name) {
        auto [found, added] = populations_.emplace(name, read_.data.populations.size());
        if (added) read_.data.populations.push_back({name, {}});
        return found->second;
    }

    // The genotypes of the sample that takes this row's locus; nullptr after a problem.
    GenotypeSample* SampleFor(const CellRow& row, std::size_t locus) {
        const std::string name = row.Cell(0);
        const std::string population = row.Cell(1);
        if (population.empty()) {
            read_.Problem(row.line, name, "", "expected a population in column 2, got nothing");
            return nullptr;
        }
        const std::size_t p = Population(population);
        auto [where, first] = names_.emplace(name, Instances{p, {}});
        if (where->second.population != p) {
            read_.Problem(row.line, name, "",
                          "the sample is listed under population '" +
                              read_.data.populations[where->second.population].name +
                              "' before, here under '" + population + "'");
            return nullptr;
        }
        for (Instance& instance : where->second.list) {
            if (instance.loci.size() <= locus) instance.loci.resize(locus + 1, 0);
            if (instance.loci[locus] == 0) {
                instance.loci[locus] = row.line;
                return &read_.data.populations[p].samples[instance.index];
            }
        }
        std::vector<GenotypeSample>& samples = read_.data.populations[p].samples;
        where->second.list.push_back({samples.size(), {}});
        where->second.list.back().loci.resize(locus + 1, 0);
        where->second.list.back().loci[locus] = row.line;
        samples.push_back({name, {}});
        return &samples.back();
    }

    // Names that stand for several samples must give each one every locus.
    void CheckRepeatedNames(std::size_t loci) {
        for (auto& [name, instances] : names_) {
            if (instances.list.size() < 2) continue;
            for (std::size_t locus = 0; locus < loci; ++locus) {
                std::size_t given = 0;
                std::size_t line = 0;
                for (Instance& instance : instances.list)
                    if (locus < instance.loci.size() && instance.loci[locus] != 0) {
                        ++given;
                        line = std::max(line, instance.loci[locus]);
                    }
                if (given != instances.list.size())
                    read_.Problem(line, name, read_.data.loci[locus],
                                  "the name stands for " + std::to_string(instances.list.size()) +
                                      " samples but has " + std::to_string(given) +
                                      " row(s) at this locus");
            }
        }
    }

private:
    struct Instance {
        std::size_t index = 0;          // in its population's samples
        std::vector<std::size_t> loci;  // the line that gave each locus, 0 none
    };
    struct Instances {
        std::size_t population = 0;
        std::vector<Instance> list;
    };
    GenotypeRead& read_;
    std::map<std::string, std::size_t> populations_;
    std::map<std::string, Instances> names_;
};

AllelePair ReadPair(GenotypeRead& read, const CellRow& row, std::size_t column,
                    const std::string& locus) {
    AllelePair pair;
    for (std::size_t copy = 0; copy < 2; ++copy) {
        const std::string cell = row.Cell(column + copy);
        std::optional<int> allele = TidyAllele(cell);
        if (!allele)
            read.Problem(
                row.line, row.Cell(0), locus,
                "expected an allele size (a whole number), 0, NA or nothing, got '" + cell + "'");
        (copy == 0 ? pair.first : pair.second) = allele.value_or(0);
    }
    return pair;
}

void ReadLong(GenotypeRead& read, const CellRows& rows, std::size_t header) {
    TidySamples samples(read);
    std::map<std::string, std::size_t> loci;
    for (std::size_t r = header + 1; r < rows.size(); ++r) {
        const CellRow& row = rows[r];
        if (row.Blank()) continue;
        if (row.cells.size() != 5) {
            read.Problem(row.line, row.Cell(0), "",
                         "expected 5 columns, got " + std::to_string(row.cells.size()));
            continue;
        }
        const std::string locusName = row.Cell(2);
        auto [locus, newLocus] = loci.emplace(locusName, read.data.loci.size());
        if (newLocus) read.data.loci.push_back(locusName);
        GenotypeSample* sample = samples.SampleFor(row, locus->second);
        if (sample == nullptr) continue;
        if (sample->genotypes.size() <= locus->second) sample->genotypes.resize(locus->second + 1);
        sample->genotypes[locus->second] = ReadPair(read, row, 3, locusName);
    }
    samples.CheckRepeatedNames(read.data.loci.size());
    for (GenotypePopulation& population : read.data.populations)
        for (GenotypeSample& sample : population.samples)
            sample.genotypes.resize(read.data.loci.size());
}

void ReadWide(GenotypeRead& read, const CellRows& rows, std::size_t header) {
    const CellRow& names = rows[header];
    if (names.cells.size() < 4 || names.cells.size() % 2 != 0) {
        read.Problem(names.line, "", "",
                     "expected sample, population and two columns per locus, got " +
                         std::to_string(names.cells.size()) + " columns");
        return;
    }
    for (std::size_t column = 2; column + 1 < names.cells.size(); column += 2) {
        std::optional<std::string> locus = PairedLocus(names.Cell(column), names.Cell(column + 1));
        if (!locus) {
            read.Problem(names.line, "", "",
                         "expected a pair of columns LOCUS_a, LOCUS_b, got '" + names.Cell(column) +
                             "', '" + names.Cell(column + 1) + "'");
            continue;
        }
        read.data.loci.push_back(*locus);
    }
    if (!read.Ok()) return;
    TidySamples samples(read);
    for (std::size_t r = header + 1; r < rows.size(); ++r) {
        const CellRow& row = rows[r];
        if (row.Blank()) continue;
        if (row.cells.size() != names.cells.size()) {
            read.Problem(row.line, row.Cell(0), "",
                         "expected " + std::to_string(names.cells.size()) + " columns, got " +
                             std::to_string(row.cells.size()));
            continue;
        }
        if (row.Cell(1).empty()) {
            read.Problem(row.line, row.Cell(0), "",
                         "expected a population in column 2, got nothing");
            continue;
        }
        // Each row is a sample of its own.
        GenotypeSample sample{row.Cell(0), {}};
        for (std::size_t locus = 0; locus < read.data.loci.size(); ++locus)
            sample.genotypes.push_back(ReadPair(read, row, 2 + 2 * locus, read.data.loci[locus]));
        read.data.populations[samples.Population(row.Cell(1))].samples.push_back(std::move(sample));
    }
}

}  // namespace

bool IsTidyHeader(const CellRow& row) {
    const std::string population = Lower(row.Cell(1));
    return row.cells.size() >= 4 && Lower(row.Cell(0)) == "sample" &&
           (population == "population" || population == "pop");
}

GenotypeRead ReadTidyCsv(std::string_view bytes, const std::string& file) {
    GenotypeRead read;
    read.file = file;
    bytes = WithoutByteOrderMark(bytes);
    std::size_t unclosed = 0;
    std::optional<CellRows> rows = SplitDelimited(bytes, GuessSeparator(bytes), unclosed);
    if (!rows) {
        read.Problem(unclosed, "", "", "a quote opened here is never closed");
        return read;
    }
    std::size_t header = 0;
    while (header < rows->size() && (*rows)[header].Blank())
        ++header;
    if (header == rows->size() || !IsTidyHeader((*rows)[header])) {
        read.Problem(header < rows->size() ? (*rows)[header].line : 0, "", "",
                     "expected the header 'sample,population,locus,allele1,allele2' or "
                     "'sample,population,L1_a,L1_b,...'");
        return read;
    }
    if (IsLongHeader((*rows)[header]))
        ReadLong(read, *rows, header);
    else
        ReadWide(read, *rows, header);
    if (read.Ok() && read.data.populations.empty())
        read.Problem((*rows)[header].line, "", "", "expected sample rows after the header");
    return read;
}

std::string TidyCsv(const GenotypeData& data) {
    CellRows rows{{1, {"sample", "population", "locus", "allele1", "allele2"}}};
    auto allele = [](int value) { return value == 0 ? std::string() : std::to_string(value); };
    const std::vector<std::string> labels = PopulationLabels(data);
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        const std::string& label = labels[p];
        for (const GenotypeSample& sample : data.populations[p].samples)
            for (std::size_t locus = 0; locus < data.loci.size(); ++locus)
                rows.push_back(
                    {0,
                     {sample.name, label, data.loci[locus], allele(sample.genotypes[locus].first),
                      allele(sample.genotypes[locus].second)}});
    }
    return CsvText(rows);
}

}  // namespace tavrelle
