// tavrelle-batch as a script calls it: options, refusals, exit codes and the report's contents.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "../support/Json.h"
#include "batch/BatchOptions.h"

namespace tavrelle {
namespace {

using testing::Json;

struct Result {
    int exitCode = -1;
    std::string output;  // standard output and error together
};

Result RunBatch(const std::string& arguments) {
    Result result;
    std::string command = std::string(TAVRELLE_BATCH) + " " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 65536> buffer{};
    for (std::size_t n; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        result.output.append(buffer.data(), n);
    int status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

std::string WriteFile(const std::string& name, const std::string& text) {
    auto path = std::filesystem::temp_directory_path() / ("tavrelle-batch-" + name);
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
}

// Four samples of two loci; the second locus is monomorphic.
const std::string kSmallFile =
    "Small test file\nLocA\nLocB\nPop\n"
    "a1 , 100102 150150\na2 , 102104 150150\na3 , 104104 150150\na4 , 100100 150150\n"
    "a5 , 102102 150150\n";

TEST(BatchOptions, RefuseWhatTheDesktopWouldRefuse) {
    auto refusal = [](std::vector<std::string> arguments) {
        try {
            ParseBatchOptions(arguments);
        } catch (const std::invalid_argument& error) {
            return std::string(error.what());
        }
        return std::string();
    };
    EXPECT_EQ(refusal({"f.gen", "--randomisations", "999"}),
              "--randomisations: The number of randomisations entered is outside normal values "
              "(1000 to 10000).");
    EXPECT_EQ(refusal({"f.gen", "--randomisations", "1000.0"}),
              "--randomisations: Please enter an integer value.");
    EXPECT_EQ(refusal({"f.gen", "--randomisations", "1e3"}), "");  // numeric, counts as 1000
    EXPECT_EQ(refusal({"f.gen", "--seed", "-3"}), "--seed: Please enter a positive integer.");
    EXPECT_EQ(refusal({"f.gen", "--seed", "1.5"}), "--seed: Please enter a positive integer.");
    EXPECT_EQ(refusal({"f.gen", "--seed", "0"}), "");
    EXPECT_NE(refusal({"f.gen", "--repeat", "7"}), "");
    EXPECT_NE(refusal({"f.gen", "--confidence", "90"}), "");
    EXPECT_NE(refusal({"f.gen", "--population", "0"}), "");
    EXPECT_NE(refusal({"f.gen", "--frobnicate"}), "");
    EXPECT_NE(refusal({}), "");
    BatchOptions options = ParseBatchOptions(
        {"f.gen", "--repeat", "2", "--repeat", "Loc 7=3", "--population", "1,3-4"});
    EXPECT_EQ(options.repeatByLocus.at("Loc 7"), 3);
    EXPECT_EQ(options.populations, (std::vector<int>{1, 3, 4}));
}

TEST(BatchProgram, HelpAndUsageErrors) {
    Result help = RunBatch("--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("--on-suspect"), std::string::npos);
    EXPECT_EQ(RunBatch("").exitCode, 2);
    EXPECT_EQ(RunBatch("x.gen --randomisations 20000").exitCode, 2);
}

TEST(BatchProgram, FilesThatCannotBeReadAreReportedNotCrashedOn) {
    Result missing = RunBatch("/no/such/file.gen --repeat 2");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.output.find("The file entered does not exist."), std::string::npos);
    Result notGenepop =
        RunBatch(WriteFile("plain.gen", "just some text\nwithout a pop line\n") + " --repeat 2");
    EXPECT_EQ(notGenepop.exitCode, 1);
    EXPECT_NE(notGenepop.output.find("not in the required format"), std::string::npos);
    Result empty = RunBatch(WriteFile("empty.gen", "") + " --repeat 2");
    EXPECT_EQ(empty.exitCode, 1);
    EXPECT_NE(empty.output.find("appears to be empty or invalid"), std::string::npos);
    Result noSuchPopulation = RunBatch(WriteFile("small.gen", kSmallFile) + " --population 2");
    EXPECT_EQ(noSuchPopulation.exitCode, 1);
    EXPECT_NE(noSuchPopulation.output.find("there is no population 2"), std::string::npos);
}

TEST(BatchProgram, APopulationThatCannotBeAnalysedSaysWhy) {
    const std::string file = WriteFile("small.gen", kSmallFile);
    Json noMotif = Json::Parse(RunBatch(file + " --seed 1 --json -").output);
    EXPECT_EQ(std::get<std::string>(noMotif["populations"][0]["error"].value),
              "Please select a Repeat Motif for all Loci");
    // Bonferroni at 10000 rounds over one counted class (the monomorphic LocB) takes a rank
    // beyond the rounds: the run error names the locus, and the locus before it is kept.
    Json bonferroni = Json::Parse(
        RunBatch(file + " --repeat 2 --seed 1 --randomisations 10000 --confidence bonferroni "
                        "--json -")
            .output);
    const Json& population = bonferroni["populations"][0];
    EXPECT_EQ(std::get<std::string>(population["error"].value),
              "Run-time error '9':\r\n\r\nSubscript out of range");
    EXPECT_EQ(std::get<std::string>(population["error_locus"].value), "LocB");
    EXPECT_EQ(std::get<Json::Array>(population["loci"].value).size(), 1u);
}

TEST(BatchProgram, SuspectValuesStopOmitOrProceed) {
    // Sample a3 has 999 at LocA, above the maximum size.
    std::string text = kSmallFile;
    text.replace(text.find("104104 150150"), 13, "104999 150150");
    const std::string file = WriteFile("suspect.gen", text);
    auto run = [&](const std::string& policy) {
        return Json::Parse(RunBatch(file + " --repeat 2 --seed 3 --json - --on-suspect " + policy)
                               .output)["populations"][0];
    };
    Json stop = run("stop");
    EXPECT_EQ(std::get<std::string>(stop["check"]["action"].value), "stop");
    const Json& unexpected = stop["check"]["unexpected"][0];
    EXPECT_EQ(std::get<std::string>(unexpected["value"].value), "999");
    EXPECT_EQ(std::get<double>(unexpected["row"].value), 3);
    EXPECT_EQ(std::get<double>(unexpected["column"].value), 4);
    EXPECT_TRUE(std::get<Json::Array>(stop["loci"].value).empty());
    Json omit = run("omit");
    EXPECT_EQ(std::get<double>(omit["loci"][0]["scored"].value), 4);  // a3 is now missing one
    Json proceed = run("proceed");
    EXPECT_EQ(std::get<double>(proceed["loci"][0]["highest"].value), 999);
}

}  // namespace
}  // namespace tavrelle
