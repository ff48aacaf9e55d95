// The batch reports of the demo files at a fixed seed, under every confidence interval, compared
// field by field with the reports kept in tests/data/golden (remade by make_golden.sh there).
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "../support/Json.h"
#include "../support/ProgramRun.h"

namespace tavrelle {
namespace {

using testing::FirstDifference;
using testing::Json;

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string Output(const std::string& command) {
    return testing::RunCommand(command).output;
}

struct Golden {
    std::string demo;
    std::string arguments;
};

std::vector<Golden> Manifest() {
    std::vector<Golden> lines;
    std::ifstream in(std::string(TAVRELLE_TEST_DATA) + "/golden/manifest.txt");
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::size_t tab = line.find('\t');
        lines.push_back({line.substr(0, tab), line.substr(tab + 1)});
    }
    return lines;
}

TEST(GoldenReports, EveryDemoFileUnderEveryConfidenceInterval) {
    std::vector<Golden> manifest = Manifest();
    ASSERT_GE(manifest.size(), 3u);
    for (const Golden& golden : manifest) {
        for (std::string confidence : {"95", "99", "100", "bonferroni"}) {
            SCOPED_TRACE(golden.demo + " at " + confidence);
            std::string command =
                std::string("cd ") + TAVRELLE_SOURCE_DIR + " && " + TAVRELLE_BATCH + " DemoFiles/" +
                golden.demo + ".gen " + golden.arguments +
                " --seed 12345 --randomisations 1000 --confidence " + confidence + " --json -";
            Json actual = Json::Parse(Output(command));
            Json expected = Json::Parse(ReadFile(std::string(TAVRELLE_TEST_DATA) + "/golden/" +
                                                 golden.demo + "." + confidence + ".json"));
            EXPECT_EQ(FirstDifference(expected, actual), "");
        }
    }
}

TEST(GoldenReports, OneThreadAndAllCoresGiveTheSameReport) {
    const Golden golden = Manifest().at(1);  // several populations
    std::string command = std::string("cd ") + TAVRELLE_SOURCE_DIR + " && " + TAVRELLE_BATCH +
                          " DemoFiles/" + golden.demo + ".gen " + golden.arguments +
                          " --seed 777 --json - --threads ";
    std::string one = Output(command + "1");
    EXPECT_FALSE(one.empty());
    EXPECT_EQ(one, Output(command + "3"));
    // A population alone draws on a second thread: the same numbers again.
    std::string second = Output(command + "2 --population 2");
    Json all = Json::Parse(one);
    Json alone = Json::Parse(second);
    EXPECT_EQ(FirstDifference(all["populations"][1], alone["populations"][0]), "");
}

}  // namespace
}  // namespace tavrelle
