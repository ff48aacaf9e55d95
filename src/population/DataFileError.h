#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Prompter.h"

namespace tavrelle {

// Why a data file did not load: the file, where in it (a line or a cell; empty for the file as
// a whole) and what was expected there, for a front end that prints one located line; and what
// the desktop shows for it, in order: its message boxes, then the example screen of the format.
struct DataFileError {
    std::string file;
    std::string where;     // "line 7", "sheet Sheet1, cell A5"
    std::string expected;  // "a line \"Pop\" after the locus names"
    std::vector<Message> messages;
    std::optional<ExampleScreen> example;

    // "file, line 7: expected a line \"Pop\" after the locus names"
    std::string Located() const {
        return file + (where.empty() ? "" : ", " + where) + ": " + expected;
    }
};

}  // namespace tavrelle
