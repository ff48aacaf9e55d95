#include "checking/AlleleCoding.h"

#include <set>

#include "base/Numbers.h"

namespace tavrelle {

namespace {

// The allele a cell holds: 0 missing, -1 for anything that is no whole number.
long Allele(const std::string& cell) {
    std::string_view text = TrimBlanks(cell);
    if (text.empty()) return 0;
    if (text.size() > 9 || text.find_first_not_of("0123456789") != std::string_view::npos)
        return -1;
    return std::stol(std::string(text));
}

}  // namespace

std::vector<HalfMissingGenotype> HalfMissingGenotypes(const Table& rsAlleleData) {
    std::vector<HalfMissingGenotype> found;
    const int columns = rsAlleleData.ColumnCount();
    for (std::int64_t row = 2; row < rsAlleleData.RecordCount(); ++row) {
        for (int column = 2; column + 1 < columns; column += 2) {
            const std::string first = rsAlleleData.Cell(row, column);
            const std::string second = rsAlleleData.Cell(row, column + 1);
            const long a = Allele(first);
            const long b = Allele(second);
            if ((a == 0) == (b == 0) || a < 0 || b < 0) continue;
            found.push_back({std::string(TrimBlanks(rsAlleleData.Cell(row, 1))),
                             rsAlleleData.Cell(1, column),
                             std::string(TrimBlanks(a == 0 ? second : first))});
        }
    }
    return found;
}

bool AllelesLookLikeIndices(const std::vector<const Table*>& populations) {
    std::vector<std::set<long>> loci;
    for (const Table* table : populations) {
        const int columns = table->ColumnCount();
        const auto pairs = static_cast<std::size_t>(columns / 2);
        if (loci.size() < pairs) loci.resize(pairs);
        for (std::int64_t row = 2; row < table->RecordCount(); ++row)
            for (int column = 2; column < columns; ++column) {
                const long allele = Allele(table->Cell(row, column));
                if (allele >= 100 || allele < 0) return false;
                if (allele > 0) loci[static_cast<std::size_t>(column / 2)].insert(allele);
            }
    }
    bool any = false;
    for (const std::set<long>& alleles : loci) {
        if (alleles.empty()) continue;
        any = true;
        if (*alleles.rbegin() - *alleles.begin() + 1 != static_cast<long>(alleles.size()))
            return false;
    }
    return any;
}

}  // namespace tavrelle
