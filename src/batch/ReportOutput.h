#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "base/AtomicFile.h"

namespace tavrelle {

// Where a report goes: standard output ("-") or a file that is replaced only when the report is
// whole. A failed write throws std::runtime_error with the path and the system's reason; a
// report given up (destroyed before Close) leaves the old file as it was.
class ReportOutput {
public:
    explicit ReportOutput(std::string target);

    void Write(std::string_view text);
    // Flushes and, for a file, closes and renames it into place.
    void Close();

private:
    [[noreturn]] void Fail(int errnum) const;

    std::string target_;
    std::unique_ptr<AtomicFile> file_;  // absent for standard output
};

// A report's target as given, with the names of standard output (/dev/stdout, /dev/fd/1,
// /proc/self/fd/1) made "-", so that the text report keeps out of it and two reports cannot
// both go there.
std::string ReportTarget(const std::string& target);

// "-" is standard output, named so in messages.
std::string OutputName(const std::string& target);

}  // namespace tavrelle
