#pragma once

#include <string>

#include "run/StudyTable.h"

namespace tavrelle {

// The overview's tidy table as an .xlsx workbook's bytes, numbers stored as numbers. Throws
// ProgramError when the library fails.
std::string StudyTableXlsx(const StudyTable& table);

}  // namespace tavrelle
