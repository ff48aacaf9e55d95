#pragma once

#include <string>
#include <string_view>

#include "population/ReadProblems.h"

namespace tavrelle {

// Genepop text with two or three digits per allele (`0311`, `098102`), the width told from the
// file: the first genotype sets it, and a genotype of the other width is refused naming the line
// that set it. `0` (two or three of them) is a missing allele. Line 1 is the title; locus names
// follow, one a line or comma separated, up to the first "Pop"; then "name , genotypes" lines,
// "Pop" before each population. Every malformed token, a line with a genotype too many or too
// few, and a population without samples are problems; nothing is guessed.
GenotypeRead ReadGenepopText(std::string_view bytes, const std::string& file);

// The digits per allele a Genepop text uses (2 or 3, from its first genotype), 0 when it has
// none that tells.
int GenepopAlleleDigits(std::string_view bytes);

// Genepop text with three digits per allele as the desktop's Save As lays it out: CR LF line
// ends, the title on line 1, the locus names one a line, "Pop", "name TAB , TAB genotypes". Data
// Genepop cannot hold (an allele over 999, a comma in a sample or locus name, a line break in the
// title) are problems of `refusal`, located by population and sample, and nothing is written.
std::string GenepopText(const GenotypeData& data, GenotypeRead& refusal);

// True for a line that opens a population: "Pop" in any case, blanks around it.
bool IsGenepopPopLine(std::string_view line);

}  // namespace tavrelle
