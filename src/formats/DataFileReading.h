#pragma once

#include <optional>
#include <string>

#include "population/DataFormat.h"
#include "population/ReadProblems.h"

namespace tavrelle {

// The data of a file in a format the store does not read itself, told from its content: Genepop
// with two digits per allele, GenAlEx (text or workbook), STRUCTURE, tidy CSV. nullopt for what
// the store reads as it always has (three-digit Genepop, Tavrelle's workbook layout, a workbook
// without the sheet) and for a file that cannot be read or tells no format, so that the store
// gives its own messages.
std::optional<GenotypeRead> ReadNewFormatFile(const std::string& file, const std::string& sheet,
                                              FormatChoice choice = {});

}  // namespace tavrelle
