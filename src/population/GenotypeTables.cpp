#include "population/GenotypeTables.h"

#include "base/Numbers.h"
#include "population/TextRecords.h"

namespace tavrelle {

Table PopulationTable(const GenotypeData& data, std::size_t population) {
    Table table;
    const int columns = static_cast<int>(data.loci.size()) * 2 + 2;
    for (int column = 1; column <= columns; ++column)
        table.AppendColumn("Col_" + std::to_string(column));
    const std::vector<GenotypeSample>& samples = data.populations.at(population).samples;
    table.ReserveRows(static_cast<std::int64_t>(samples.size()) + 2);
    table.AddNew();
    table.SetField(1, "Population");
    for (int column = 2; column < columns; column += 2) {
        table.SetField(column, "Allele A");
        table.SetField(column + 1, "Allele B");
    }
    table.AddNew();
    table.SetField(0, "Sample no.");
    table.SetField(1, data.title.substr(0, Table::kMaxCellLength));
    for (std::size_t locus = 0; locus < data.loci.size(); ++locus)
        table.SetField(2 + 2 * static_cast<int>(locus),
                       data.loci[locus].substr(0, Table::kMaxCellLength));
    for (std::size_t s = 0; s < samples.size(); ++s) {
        table.AddNew();
        table.SetField(0, std::to_string(s + 1));
        table.SetField(1, samples[s].name.substr(0, Table::kMaxCellLength));
        for (std::size_t locus = 0; locus < samples[s].genotypes.size(); ++locus) {
            const int column = 2 + 2 * static_cast<int>(locus);
            table.SetField(column, std::to_string(samples[s].genotypes[locus].first));
            table.SetField(column + 1, std::to_string(samples[s].genotypes[locus].second));
        }
    }
    return table;
}

namespace {

// The sample rows of a table in the store's layout (from row 2, "Pop" rows parting populations)
// appended to the read's data.
void ReadRows(const Table& table, GenotypeRead& read) {
    const std::size_t loci = read.data.loci.size();
    read.data.populations.emplace_back();
    for (std::int64_t row = 2; row < table.RecordCount(); ++row) {
        if (UpperCase(TrimBlanks(table.Cell(row, 1))) == "POP") {
            read.data.populations.emplace_back();
            continue;
        }
        GenotypeSample sample{std::string(TrimBlanks(table.Cell(row, 1))), {}};
        for (std::size_t locus = 0; locus < loci; ++locus) {
            AllelePair pair;
            for (int copy = 0; copy < 2; ++copy) {
                const int column = 2 + 2 * static_cast<int>(locus) + copy;
                const std::string cell =
                    column < table.ColumnCount() ? table.Cell(row, column) : "";
                const std::string_view trimmed = TrimBlanks(cell);
                std::optional<int> allele =
                    trimmed.empty() ? 0 : DigitsValue(trimmed, kLargestAllele);
                if (!allele)
                    read.Problem(
                        static_cast<std::size_t>(row) + 1, sample.name, read.data.loci[locus],
                        "expected an allele size (a whole number) or 0, got '" + cell + "'");
                (copy == 0 ? pair.first : pair.second) = allele.value_or(0);
            }
            sample.genotypes.push_back(pair);
        }
        read.data.populations.back().samples.push_back(std::move(sample));
    }
}

}  // namespace

GenotypeRead GenotypeDataOfStore(InputDataSource& store, const std::string& file) {
    GenotypeRead read;
    read.file = file;
    store.SavePopulation();
    read.data.title = store.TitleLine();
    read.data.loci = store.LocusNames();
    ReadRows(store.rsAllData, read);
    return read;
}

GenotypeRead GenotypeDataOfGrid(const InputDataSource& store, const std::string& file) {
    GenotypeRead read;
    read.file = file;
    read.data.loci = store.LocusNames();
    ReadRows(store.rsAlleleData, read);
    return read;
}

}  // namespace tavrelle
