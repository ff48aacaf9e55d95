#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "population/ReadProblems.h"
#include "population/StructureText.h"

namespace tavrelle {

// The data file formats Tavrelle reads. Workbooks (Xls, Xlsx) hold either Tavrelle's layout or
// GenAlEx's; the formats library reads them.
enum class DataFormat { Unknown, Genepop, Genalex, Structure, Tidy, Xls, Xlsx };

// A format as a user names it, with the STRUCTURE form when the name gives it.
struct FormatChoice {
    DataFormat format = DataFormat::Unknown;
    StructureForm structure;
};

// "genepop", "genalex", "structure", "structure-1row", "structure-1row-pop", "structure-2row",
// "structure-2row-pop", "tidy", "xls", "xlsx"; nullopt for any other name.
std::optional<FormatChoice> ParseFormatName(std::string_view name);

// The names ParseFormatName takes, for a usage text: "genepop, genalex, ...".
std::string FormatNames();

// What the format is called in messages: "Genepop", "GenAlEx", "STRUCTURE", "tidy CSV", ...
std::string FormatTitle(DataFormat format);

// The format told from the bytes alone, never the name: a workbook by its signature; a line
// "Pop" makes Genepop; a tidy header a tidy table; a count row of whole numbers GenAlEx; lines of
// words with at least two numbers each STRUCTURE. Unknown when none fits.
DataFormat DetectFormat(std::string_view bytes);

// A text format's reader on the bytes; Unknown is told from them first. A workbook or a file no
// reader recognises gives one problem saying so.
GenotypeRead ReadGenotypeText(std::string_view bytes, const std::string& file,
                              FormatChoice choice = {});

}  // namespace tavrelle
