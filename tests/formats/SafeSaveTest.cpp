// Saves never destroy: a save that fails part way leaves the user's old file byte for byte and
// no temporary beside it, in every writer; a conversion keeps every sample and allele.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "../support/SimulatedGenepop.h"
#include "../support/TempFolder.h"
#include "base/AtomicFile.h"
#include "formats/ExcelWorkbookWriter.h"
#include "population/FileKind.h"
#include "population/GenepopWriter.h"

namespace tavrelle {
namespace {

using testing::FileRequest;
using testing::TempFolder;

// A disk that holds only `bytes` more of a file: writes beyond fail with EFBIG, as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved_);
        signal_ = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = saved_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, signal_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit saved_{};
    void (*signal_)(int) = nullptr;
};

using Save = std::function<bool(InputDataSource&, const std::string&, Prompter&)>;

bool SaveGenepop(InputDataSource& store, const std::string& path, Prompter& prompter) {
    return SaveGenepopFile(store, path, "t", false, false, prompter) == SaveOutcome::Saved;
}

bool SaveWorkbook(InputDataSource& store, const std::string& path, Prompter& prompter) {
    return SaveExcelFile(store, path, "t", false, prompter).outcome == SaveOutcome::Saved;
}

bool WriteBytes(InputDataSource&, const std::string& path, Prompter&) {
    return WriteFileAtomically(path, std::string(20000, 'x')) == 0;
}

TEST(SafeSave, AFailedSaveLeavesTheOldFileInEveryWriter) {
    const struct {
        const char* target;
        Save save;
    } writers[] = {
        {"out.gen", SaveGenepop},
        {"out.xls", SaveWorkbook},
        {"out.xlsx", SaveWorkbook},
        {"graph.png", WriteBytes},  // what the graph and report saves call
    };
    TempFolder folder;
    const std::string data = folder.Write("in.gen", testing::SimulatedGenepop({150, 150}));
    for (const auto& writer : writers) {
        SCOPED_TRACE(writer.target);
        RecordingPrompter prompter;
        InputDataSource store(FileRequest(data), prompter);
        const std::string old = "the user's old file\n";
        const std::string target = folder.Write(writer.target, old);
        {
            FileSizeLimit full(4096);
            EXPECT_FALSE(writer.save(store, target, prompter));
        }
        EXPECT_EQ(folder.Read(writer.target), old);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2);
        // With room on the disk the same save replaces the file.
        EXPECT_TRUE(writer.save(store, target, prompter));
        EXPECT_NE(folder.Read(writer.target), old);
        std::filesystem::remove(target);
    }
}

TEST(SafeSave, DevicesAreWrittenInPlaceAndLinksKept) {
    TempFolder folder;
    EXPECT_EQ(WriteFileAtomically("/dev/null", "x"), 0);
    EXPECT_EQ(WriteFileAtomically("/dev/full", "x"), ENOSPC);
    EXPECT_EQ(WriteFileAtomically(folder.Path().string(), "x"), EISDIR);
    EXPECT_EQ(WriteFileAtomically(folder.File("no/such/file"), "x"), ENOENT);
    const std::string real = folder.Write("real.txt", "old");
    std::filesystem::permissions(real, std::filesystem::perms::owner_read |
                                           std::filesystem::perms::owner_write |
                                           std::filesystem::perms::group_read);
    std::filesystem::create_symlink("real.txt", folder.File("link.txt"));
    EXPECT_EQ(WriteFileAtomically(folder.File("link.txt"), "new"), 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link.txt")));
    EXPECT_EQ(folder.Read("real.txt"), "new");
    EXPECT_EQ(std::filesystem::status(real).permissions() & std::filesystem::perms::all,
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write |
                  std::filesystem::perms::group_read);
}

}  // namespace
}  // namespace tavrelle
