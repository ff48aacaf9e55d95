#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tavrelle {

// A file written so that the old one is never lost: the bytes go to a temporary file in the
// target's folder, which is flushed, synced, closed with its errors checked and only then
// renamed over the target. Until Commit succeeds the target is untouched, and a file given up
// (by Abandon, a failure or the destructor) leaves no temporary behind. A target that exists and
// is no regular file (a device such as /dev/null or /dev/full, a pipe) is written in place, as
// there is nothing to keep. Each call that fails returns false with errno set.
class AtomicFile {
public:
    explicit AtomicFile(std::string target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Makes the temporary file (or opens the device).
    bool Open();
    bool Write(std::string_view bytes);
    // Flush, sync, close and rename; on failure the temporary is removed.
    bool Commit();
    // Closes and removes the temporary; the target stays as it was.
    void Abandon();

    const std::string& Target() const { return target_; }
    // The temporary's name, for a library that writes by name: call Open first, write the
    // file by this name, then Commit.
    const std::string& TemporaryPath() const { return temporary_; }

private:
    std::string target_;
    std::string temporary_;  // empty when writing in place
    std::FILE* file_ = nullptr;
};

// Writes `bytes` to `target` through an AtomicFile. Returns 0, or the errno of the failure.
int WriteFileAtomically(const std::string& target, std::string_view bytes);

// "PATH: reason" for a failed write, as the batch program and the logs state it.
std::string WriteFailure(const std::string& target, int errnum);

}  // namespace tavrelle
