#include "base/AtomicFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/PartialFiles.h"

namespace tavrelle {

namespace {

// The folder and the name of a path, "." for a bare name.
std::pair<std::string, std::string> SplitPath(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return {".", path};
    return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

// A link is followed, so that the file it names is replaced and the link stays.
std::string Resolved(const std::string& target) {
    char buffer[4096];
    std::string path = target;
    for (int hops = 0; hops < 16; ++hops) {
        const ssize_t length = readlink(path.c_str(), buffer, sizeof buffer - 1);
        if (length < 0) break;
        std::string link(buffer, static_cast<std::size_t>(length));
        path = link.starts_with('/') ? link : SplitPath(path).first + "/" + link;
    }
    return path;
}

// The errno of the first failure is the one reported; cleaning up must not overwrite it.
class KeepErrno {
public:
    KeepErrno() : saved_(errno) {}
    ~KeepErrno() { errno = saved_; }
    KeepErrno(const KeepErrno&) = delete;
    KeepErrno& operator=(const KeepErrno&) = delete;

private:
    int saved_;
};

// /dev/stdout, /dev/stderr, /dev/fd/N and /proc/self/fd/N.
bool NamesDescriptor(const std::string& target) {
    return target == "/dev/stdout" || target == "/dev/stderr" || target.starts_with("/dev/fd/") ||
           target.starts_with("/proc/self/fd/");
}

// A partial file nobody holds the lock of was left by a program that was killed: it goes. One
// that is locked belongs to a write under way, and the target is busy.
bool RemoveStalePartial(const std::string& partial) {
    const int fd = open(partial.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) return errno == ENOENT || (errno == ELOOP && unlink(partial.c_str()) == 0);
    const bool stale = flock(fd, LOCK_EX | LOCK_NB) == 0;
    const bool removed = stale && unlink(partial.c_str()) == 0;
    close(fd);
    if (!stale) errno = EBUSY;
    return removed;
}

}  // namespace

AtomicFile::AtomicFile(std::string target) : target_(std::move(target)) {}

AtomicFile::~AtomicFile() {
    Abandon();
}

std::string PartialFileOf(const std::string& target) {
    const auto [folder, name] = SplitPath(Resolved(target));
    return folder + "/." + name + ".tavrelle-partial";
}

bool AtomicFile::Open() {
    Abandon();
    // Standard output and its kin name a descriptor of this program (a pipe, a terminal, a file
    // the shell opened): written in place, never replaced, whatever it leads to.
    struct stat old {};
    const bool exists = stat(target_.c_str(), &old) == 0;
    if (exists && S_ISDIR(old.st_mode)) {
        errno = EISDIR;
        return false;
    }
    if (NamesDescriptor(target_) || (exists && !S_ISREG(old.st_mode))) {
        file_ = std::fopen(target_.c_str(), "wb");
        return file_ != nullptr;
    }
    const std::string partial = PartialFileOf(target_);
    if (!RemoveStalePartial(partial)) return false;
    // 0666 less the umask, as a new file gets; an existing file keeps its own mode.
    const int fd = open(partial.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) {
        // Made by another writer between the check and here.
        if (errno == EEXIST) errno = EBUSY;
        return false;
    }
    temporary_ = partial;
    remembered_ = PartialFiles::Remember(partial);
    lock_ = fcntl(fd, F_DUPFD_CLOEXEC, 0);
    if (lock_ < 0 || flock(lock_, LOCK_EX | LOCK_NB) != 0) {
        KeepErrno keep;
        close(fd);
        Abandon();
        return false;
    }
    if (exists) (void)fchmod(fd, old.st_mode & 07777);
    file_ = fdopen(fd, "wb");
    if (file_ == nullptr) {
        KeepErrno keep;
        close(fd);
        Abandon();
        return false;
    }
    return true;
}

bool AtomicFile::Write(std::string_view bytes) {
    if (file_ == nullptr) {
        errno = EBADF;
        return false;
    }
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) == bytes.size()) return true;
    if (errno == 0) errno = EIO;
    return false;
}

bool AtomicFile::Commit() {
    if (file_ == nullptr && temporary_.empty()) {
        errno = EBADF;
        return false;
    }
    bool ok = true;
    if (file_ != nullptr) {
        errno = 0;
        ok = std::fflush(file_) == 0;
        // A device such as /dev/null cannot be synced; only a real file needs it.
        if (ok && !temporary_.empty()) ok = fsync(fileno(file_)) == 0;
        int failure = errno;
        if (std::fclose(file_) != 0 && ok) {
            ok = false;
            failure = errno;
        }
        file_ = nullptr;
        errno = failure;
    }
    if (ok && !temporary_.empty()) {
        ok = std::rename(temporary_.c_str(), Resolved(target_).c_str()) == 0;
        if (ok) {
            PartialFiles::Forget(remembered_);
            remembered_ = -1;
            temporary_.clear();
        }
    }
    if (!ok) {
        if (errno == 0) errno = EIO;
        Abandon();
    }
    if (lock_ >= 0) close(lock_);
    lock_ = -1;
    return ok;
}

void AtomicFile::Abandon() {
    KeepErrno keep;
    if (file_ != nullptr) std::fclose(file_);
    file_ = nullptr;
    if (!temporary_.empty()) unlink(temporary_.c_str());
    temporary_.clear();
    PartialFiles::Forget(remembered_);
    remembered_ = -1;
    if (lock_ >= 0) close(lock_);
    lock_ = -1;
}

int WriteFileAtomically(const std::string& target, std::string_view bytes) {
    AtomicFile file(target);
    if (file.Open() && file.Write(bytes) && file.Commit()) return 0;
    return errno != 0 ? errno : EIO;
}

std::string WriteFailure(const std::string& target, int errnum) {
    return "could not write " + target + ": " + std::strerror(errnum);
}

}  // namespace tavrelle
