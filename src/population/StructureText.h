#pragma once

#include <string>
#include <string_view>

#include "population/ReadProblems.h"

namespace tavrelle {

// The layout of a STRUCTURE file: two rows per individual (one allele of every locus on each)
// or one row (two columns per locus), and whether a population column follows the label.
// Unknown parts are told from the file where it can tell: a first line of locus names gives the
// number of loci; labels repeated on row pairs give the two-row form.
struct StructureForm {
    enum class Rows { Unknown, One, Two } rows = Rows::Unknown;
    enum class PopulationColumn { Unknown, Yes, No } population = PopulationColumn::Unknown;
};

// A STRUCTURE file: words parted by blanks or tabs, an optional first line of locus names, then
// the label, the population (whole numbers; populations in order of their first sample) and the
// alleles, `-9` missing. Without a population column every sample is in one population named
// after the file. A file that does not tell its form, and was not told, is refused with a
// problem that says which form to name.
GenotypeRead ReadStructureText(std::string_view bytes, const std::string& file,
                               StructureForm form = {});

// STRUCTURE text in the two-row form with a line of locus names and a population column
// (populations numbered from 1 in order), `-9` missing. Names with blanks cannot be written and
// are problems of `refusal`.
std::string StructureText(const GenotypeData& data, GenotypeRead& refusal);

}  // namespace tavrelle
