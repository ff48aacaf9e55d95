#include "population/GenotypeDataLoader.h"

#include "base/Numbers.h"
#include "population/InputDataSource.h"

namespace tavrelle {

void GenotypeDataLoader::ReadExcelSheet(InputDataSource& store, const std::string&,
                                        const std::string&, Prompter&) {
    LocusNamesOf(store) = data_.loci;
    Table& all = store.rsAllData;
    store.SetColumnHeaders(all);
    store.DisplayLociNames(all);
    std::vector<Table::Bookmark>& bookmarks = PopulationBookmarksOf(store);
    Int16& population = CurrentPopulationOf(store);
    population = 1;
    for (std::size_t p = 0; p < data_.populations.size(); ++p) {
        if (p > 0) {
            all.AddNew();
            all.SetField(1, "Pop");
        }
        Int16 number = 1;
        for (const GenotypeSample& sample : data_.populations[p].samples) {
            all.AddNew();
            all.SetField(0, std::to_string(number));
            all.SetField(1, sample.name.substr(0, Table::kMaxCellLength));
            for (std::size_t locus = 0; locus < sample.genotypes.size(); ++locus) {
                const int column = 2 + 2 * static_cast<int>(locus);
                all.SetField(column, std::to_string(sample.genotypes[locus].first));
                all.SetField(column + 1, std::to_string(sample.genotypes[locus].second));
            }
            if (number == 1) {
                const auto index = static_cast<std::size_t>(population - 1);
                if (bookmarks.size() <= index) bookmarks.resize(index + 1);
                bookmarks[index] = all.GetBookmark();
                population = Narrow16(population + 1);
            }
            number = Narrow16(number + 1);
        }
    }
}

}  // namespace tavrelle
