// The working logs: their formats when switched on, and nothing at all when off or unwritable.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "analysis/WorkingLogs.h"

namespace tavrelle {
namespace {

class WorkingLogsTest : public ::testing::Test {
protected:
    void SetUp() override {
        folder = std::filesystem::temp_directory_path() / "tavrelle-working-logs";
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    WorkingLogs Logs(bool enabled) {
        WorkingLogs logs(folder, enabled);
        logs.clock = [] { return WorkingLogs::Stamp{"2026-11-21", "06:22:10"}; };
        return logs;
    }
    static std::string Read(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    // Everything a run would write for one locus.
    static void WriteLocus(WorkingLogs& logs) {
        logs.WriteSeedLog(12345);
        logs.WriteHomozygoteHead("KIP001", "Tav107", "95%");
        logs.WriteHomozygoteRow({1, 0, 6}, true);
        logs.WriteRoundRow(1, {0, 0, 2});
        logs.WriteRoundRow(2, {1, 0, 1});
        logs.WriteDifferenceHead("KIP001", "Tav107", "95%", 2);
        logs.WriteDifferenceRow({35, 0, 5});
        logs.Close();
    }

    std::filesystem::path folder;
};

TEST_F(WorkingLogsTest, OffByDefaultAndWriteNothing) {
    WorkingLogs logs(folder);
    EXPECT_FALSE(logs.Enabled());
    WriteLocus(logs);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(WorkingLogsTest, SeedLogIsAppended) {
    WorkingLogs logs = Logs(true);
    logs.WriteSeedLog(12345);
    logs.WriteSeedLog(-7);
    EXPECT_EQ(logs.SeedLogPath().filename(), "SeedLog.Txt");
    EXPECT_EQ(Read(logs.SeedLogPath()),
              "Date: 2026-11-21 06:22:10\r\nSeed: 12345\r\n\r\n"
              "Date: 2026-11-21 06:22:10\r\nSeed: -7\r\n\r\n");
}

TEST_F(WorkingLogsTest, TablesOfALocus) {
    WorkingLogs logs = Logs(true);
    WriteLocus(logs);
    EXPECT_EQ(Read(logs.HomozygoteLogPath()),
              "\r\n\r\nDate: 2026-11-21 06:22:10\r\nPopulation: KIP001\r\nLocus: Tav107\r\n"
              "Homozygote Size (95%)\r\n"
              "\t\t1\t0\t6\r\n"
              "1\t0\t0\t2\r\n"
              "2\t1\t0\t1\r\n");
    EXPECT_EQ(Read(logs.DifferenceLogPath()),
              "\r\n\r\nDate: 2026-11-21 06:22:10\r\nPopulation: KIP001\r\nLocus: Tav107\r\n"
              "Allele differences (95%)\r\n"
              "\t  Size\t0\t1\t2\r\n"
              "\t\t35\t0\t5\r\n");
}

TEST_F(WorkingLogsTest, NoHomozygoteRowWithoutHomozygotes) {
    WorkingLogs logs = Logs(true);
    logs.WriteHomozygoteRow({0, 0}, false);
    logs.Close();
    EXPECT_FALSE(std::filesystem::exists(logs.HomozygoteLogPath()));
}

TEST_F(WorkingLogsTest, AnUnwritableFolderDisturbsNothing) {
    std::ofstream(folder / "not-a-folder") << "x";
    WorkingLogs logs(folder / "not-a-folder", true);
    EXPECT_NO_THROW(WriteLocus(logs));
    EXPECT_EQ(Read(folder / "not-a-folder"), "x");
}

}  // namespace
}  // namespace tavrelle
