#pragma once

#include <string>
#include <vector>

#include "run/PopulationResult.h"

namespace tavrelle {

// The populations of a data file as it stands on disc, read as the open command reads it.
struct StudyFile {
    std::string title;
    bool isExcel = false;
    std::vector<StudyPopulation> populations;
};

// Reads `file` (a workbook from `sheet`) afresh, answering the load's questions as a user who
// has opened the file before did. A file that does not load throws std::runtime_error naming it.
StudyFile LoadStudyFile(const std::string& file, const std::string& sheet);

}  // namespace tavrelle
