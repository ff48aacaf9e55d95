#include "base/InstallPaths.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace tavrelle {
namespace {

namespace fs = std::filesystem;

// A prefix with bin/ and share/tavrelle/, and a file in whichever of the two places a case asks.
class InstalledFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        prefix_ = fs::temp_directory_path() / ("tavrelle-install-" + std::to_string(::getpid()));
        fs::create_directories(prefix_ / "bin");
        fs::create_directories(prefix_ / "share/tavrelle");
    }
    void TearDown() override { fs::remove_all(prefix_); }
    void Place(const fs::path& relative) {
        fs::create_directories((prefix_ / relative).parent_path());
        std::ofstream(prefix_ / relative) << "x";
    }
    fs::path prefix_;
};

TEST_F(InstalledFileTest, BesideTheProgramFirstThenTheShareFolder) {
    struct Case {
        const char* besideProgram;
        std::vector<const char*> present;  // relative to the prefix
        const char* expected;              // relative to the prefix
    };
    const Case cases[] = {
        {"ChiSquareTable.txt",
         {"bin/ChiSquareTable.txt", "share/tavrelle/ChiSquareTable.txt"},
         "bin/ChiSquareTable.txt"},
        {"ChiSquareTable.txt",
         {"share/tavrelle/ChiSquareTable.txt"},
         "share/tavrelle/ChiSquareTable.txt"},
        {"ChiSquareTable.txt", {}, "bin/ChiSquareTable.txt"},  // missing: named beside
        {"../DemoFiles", {"DemoFiles/a.gen", "share/tavrelle/DemoFiles/a.gen"}, "DemoFiles"},
        {"../DemoFiles", {"share/tavrelle/DemoFiles/a.gen"}, "share/tavrelle/DemoFiles"},
        {"../DemoFiles", {}, "DemoFiles"},
    };
    for (const Case& c : cases) {
        fs::remove_all(prefix_ / "DemoFiles");
        fs::remove_all(prefix_ / "share");
        fs::remove_all(prefix_ / "bin");
        fs::create_directories(prefix_ / "bin");
        for (const char* file : c.present)
            Place(file);
        EXPECT_EQ(InstalledFile(prefix_ / "bin", c.besideProgram),
                  (prefix_ / c.expected).lexically_normal())
            << c.besideProgram << " with " << c.present.size() << " present";
    }
}

}  // namespace
}  // namespace tavrelle
