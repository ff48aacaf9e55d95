#include "batch/ReportOutput.h"

#include <cerrno>
#include <cstdio>
#include <stdexcept>

namespace tavrelle {

std::string ReportTarget(const std::string& target) {
    if (target == "/dev/stdout" || target == "/dev/fd/1" || target == "/proc/self/fd/1") return "-";
    return target;
}

std::string OutputName(const std::string& target) {
    return target == "-" ? "standard output" : target;
}

ReportOutput::ReportOutput(std::string target) : target_(std::move(target)) {
    if (target_ == "-") return;
    file_ = std::make_unique<AtomicFile>(target_);
    if (!file_->Open()) Fail(errno);
}

void ReportOutput::Write(std::string_view text) {
    if (text.empty()) return;
    if (file_) {
        if (!file_->Write(text)) Fail(errno);
        return;
    }
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) Fail(errno);
}

void ReportOutput::Close() {
    if (file_) {
        if (!file_->Commit()) Fail(errno);
        return;
    }
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) Fail(errno);
}

void ReportOutput::Fail(int errnum) const {
    throw std::runtime_error(WriteFailure(OutputName(target_), errnum != 0 ? errnum : EIO));
}

}  // namespace tavrelle
