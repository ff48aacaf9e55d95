#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tavrelle {

// A file written so that the old one is never lost: the bytes go to the partial file
// ".NAME.tavrelle-partial" in the target's folder, which is flushed, synced, closed with its
// errors checked and only then renamed over the target. Until Commit succeeds the target is
// untouched; a file given up (by Abandon, a failure, the destructor, or SIGINT/SIGTERM where
// PartialFiles::RemoveOnSignal is set) leaves no partial file behind. A partial file left by a
// program that was killed outright is removed by the next write of the same target; one that
// another program is writing at that moment is left alone and the write fails with EBUSY.
// A target that exists and is no regular file (standard output, a pipe, a device such as
// /dev/null) is written in place, as there is nothing to keep. Each call that fails returns
// false with errno set.
class AtomicFile {
public:
    explicit AtomicFile(std::string target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Makes the partial file (or opens the device).
    bool Open();
    bool Write(std::string_view bytes);
    // Flush, sync, close and rename; on failure the partial file is removed.
    bool Commit();
    // Closes and removes the partial file; the target stays as it was.
    void Abandon();

    const std::string& Target() const { return target_; }
    // The file being written, for a library that writes by name: call Open first, write the
    // file by this name, then Commit. The target itself when it is written in place.
    const std::string& TemporaryPath() const { return temporary_.empty() ? target_ : temporary_; }

private:
    std::string target_;
    std::string temporary_;  // empty when writing in place
    std::FILE* file_ = nullptr;
    int lock_ = -1;        // holds the partial file's lock from Open to the rename
    int remembered_ = -1;  // the partial file's slot in PartialFiles
};

// The partial file that writing `target` uses: ".NAME.tavrelle-partial" beside it.
std::string PartialFileOf(const std::string& target);

// Writes `bytes` to `target` through an AtomicFile. Returns 0, or the errno of the failure.
int WriteFileAtomically(const std::string& target, std::string_view bytes);

// "PATH: reason" for a failed write, as the batch program and the logs state it.
std::string WriteFailure(const std::string& target, int errnum);

}  // namespace tavrelle
