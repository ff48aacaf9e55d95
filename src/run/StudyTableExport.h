#pragma once

#include <string>
#include <vector>

#include "base/CsvText.h"
#include "run/StudyTable.h"

namespace tavrelle {

// The overview as a tidy table, one line per population and locus (a stopped population has one
// line with its reason), ready to filter or pivot: the header, then the rows, as text. The
// estimate's column is named by its key; `borderline` names the verdicts that are; every line
// carries the run's seed and whether it is complete or was cancelled.
std::vector<std::vector<std::string>> StudyTableLines(const StudyTable& table);

// The same lines as CSV, fields quoted where they hold a separator, quote or line break.
std::string StudyTableCsv(const StudyTable& table);

}  // namespace tavrelle
