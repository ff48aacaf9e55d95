#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/Int16.h"

namespace tavrelle {

// Settings that do not fit the data (a motif for a locus the file lacks, a population it does
// not have), told after the file is read; the batch program exits with status 2.
struct StudyUsageError : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

// The motifs of a --repeats table: one locus a line, its name and its motif (1 to 6) separated
// by a tab or a comma; blank lines and lines starting with # are passed over. A malformed line
// is a StudyUsageError naming the file and the line; a file that cannot be read a runtime_error.
std::map<std::string, Int16> ReadRepeatTable(const std::string& path);

// Names like `name` (the same but for case, or a few edits away): the nearest, three at most.
std::vector<std::string> ClosestNames(const std::string& name,
                                      const std::vector<std::string>& names);

// The motif of every locus of the file: a motif by name (from --repeat NAME=N over the table)
// or the one for all. A --repeat name the file lacks, and a locus left without a motif, are
// StudyUsageErrors; table entries for loci the file lacks get a note on `notes`.
std::map<std::string, Int16> MotifsOfLoci(const std::vector<std::string>& loci,
                                          const std::map<std::string, Int16>& byOption,
                                          const std::map<std::string, Int16>& byTable,
                                          std::optional<Int16> forAll, std::ostream& notes);

}  // namespace tavrelle
