#pragma once

#include <optional>
#include <string>

#include "population/DataFormat.h"
#include "population/ReadProblems.h"

namespace tavrelle {

// The sheet of a workbook (Xls or Xlsx) read as GenAlEx's layout when its first row is
// GenAlEx's count row; nullopt when it is not (Tavrelle's own layout, read by the store), and
// for a workbook that cannot be opened or has no such sheet, which the store refuses.
std::optional<GenotypeRead> ReadGenalexWorkbook(const std::string& file, DataFormat kind,
                                                const std::string& sheet);

// The bytes of a one-sheet workbook ("Sheet1") in GenAlEx's layout.
std::string GenalexWorkbookBytes(const GenotypeData& data, DataFormat kind);

// The bytes of a one-sheet workbook ("Sheet1") in Tavrelle's layout, every sample kept: a row
// "Population", "Allele A", "Allele B", ...; the title and the locus names; the samples, with
// "Pop" alone in column A between populations.
std::string TavrelleWorkbookBytes(const GenotypeData& data, DataFormat kind);

}  // namespace tavrelle
