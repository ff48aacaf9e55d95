// The batch reports of the demo files at a fixed seed, under every confidence interval, compared
// field by field with the reports kept in tests/data/golden (remade by make_golden.sh there).
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "../support/Json.h"
#include "../support/ProgramRun.h"
#include "nulls/JointNullInbreeding.h"

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

// The likelihood estimates sit beside the prescribed fields: the goldens hold the prescribed
// fields alone, so the additions are checked for their shape and then taken out.
Json Prescribed(Json report) {
    for (Json& population :
         std::get<Json::Array>(std::get<Json::Object>(report.value)["populations"].value)) {
        auto& fields = std::get<Json::Object>(population.value);
        const bool stopped = !std::holds_alternative<std::nullptr_t>(fields.at("error").value);
        EXPECT_EQ(std::get<std::string>(fields.at("status").value),
                  stopped ? "stopped" : "analysed");
        fields.erase("status");
        auto& check = std::get<Json::Object>(fields.at("check").value);
        EXPECT_TRUE(std::holds_alternative<Json::Array>(check.at("half_missing").value));
        EXPECT_TRUE(std::holds_alternative<bool>(check.at("index_like_alleles").value));
        check.erase("half_missing");
        check.erase("index_like_alleles");
        const Json& inbreeding = fields.at("inbreeding");
        if (std::holds_alternative<std::nullptr_t>(inbreeding.value)) {
            fields.erase("inbreeding");  // no run, or one that stopped: no estimates beside it
            continue;
        }
        EXPECT_EQ(std::get<Json::Object>(inbreeding["log_likelihoods"].value).size(),
                  kNestedModelCount);
        EXPECT_EQ(std::get<Json::Array>(inbreeding["interval"].value).size(), 2u);
        EXPECT_FALSE(std::get<std::string>(inbreeding["verdict"].value).empty());
        fields.erase("inbreeding");
        for (Json& locus : std::get<Json::Array>(fields.at("loci").value)) {
            auto& l = std::get<Json::Object>(locus.value);
            EXPECT_EQ(std::get<Json::Object>(l.at("estimate_intervals").value).size(), 8u);
            l.erase("estimate_intervals");
            EXPECT_EQ(l.erase("failure_rate"), 1u);
            EXPECT_EQ(l.erase("failure_rate_interval"), 1u);
            auto& estimates = std::get<Json::Object>(l.at("estimates").value);
            for (const char* key : {"em", "em_missing", "joint", "em_failure"})
                EXPECT_EQ(estimates.erase(key), 1u) << key;
        }
    }
    return report;
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
                " --seed 12345 --randomisations 1000 --bootstrap 40 --confidence " + confidence +
                " --json -";
            Json actual = Prescribed(Json::Parse(Output(command)));
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
                          " --seed 777 --bootstrap 100 --json - --threads ";
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
