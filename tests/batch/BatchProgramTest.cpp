// tavrelle-batch as a script calls it: options, refusals, exit statuses and the reports.
#include <gtest/gtest.h>
#include <sched.h>

#include <filesystem>

#include "../support/Json.h"
#include "../support/ProgramRun.h"
#include "../support/SimulatedGenepop.h"
#include "../support/TempFolder.h"
#include "base/Sha256.h"
#include "batch/BatchOptions.h"
#include "run/StudyRun.h"

namespace tavrelle {
namespace {

using testing::Json;
using testing::Quoted;
using testing::RunBatchProgram;
using testing::RunCommand;
using testing::TempFolder;

// Five samples of two loci; the second locus is monomorphic.
const std::string kSmallFile =
    "Small test file\nLocA\nLocB\nPop\n"
    "a1 , 100102 150150\na2 , 102104 150150\na3 , 104104 150150\na4 , 100100 150150\n"
    "a5 , 102102 150150\n";

// The small file, and a second population of one sample, too few to analyse.
const std::string kOneTooSmall = kSmallFile + "Pop\nb1 , 100102 150150\n";
const std::string kOneStandardOutput =
    "Only one of --json, --csv and --report may write to standard output (\"-\"); send the "
    "others to files.";

// Sample a3 has 999 at LocA, above the maximum size.
std::string WithSuspect() {
    std::string text = kSmallFile;
    text.replace(text.find("104104 150150"), 13, "104999 150150");
    return text;
}

std::string Refusal(const std::vector<std::string>& arguments) {
    try {
        ParseBatchOptions(arguments);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

TEST(BatchOptions, RefusalsNameTheOptionAndTheRule) {
    const struct {
        std::vector<std::string> arguments;
        std::string refusal;  // empty: accepted
    } cases[] = {
        {{"f.gen", "--randomisations", "999"},
         "--randomisations: The number of randomisations entered is outside normal values "
         "(1000 to 10000)."},
        {{"f.gen", "--randomisations", "1000.0"},
         "--randomisations: Please enter an integer value."},
        {{"f.gen", "--randomisations", "1e3"}, ""},  // numeric, counts as 1000
        {{"f.gen", "--seed", "-3"}, "--seed: Please enter a positive integer."},
        {{"f.gen", "--seed", "0"}, ""},
        {{"f.gen", "--max-allele-size", "-5"}, "--max-allele-size: '-5' is not a whole number."},
        {{"f.gen", "--max-allele-size", "99999"},
         "--max-allele-size: give a whole number from 50 to 700 (got '99999')."},
        {{"f.gen", "--max-allele-size", "49"},
         "--max-allele-size: give a whole number from 50 to 700 (got '49')."},
        {{"f.gen", "--max-allele-size", "700"}, ""},
        {{"f.gen", "--json", "-", "--csv", "-"}, kOneStandardOutput},
        {{"f.gen", "--csv", "-", "--report", "-"}, kOneStandardOutput},
        {{"f.gen", "--json", "-"}, ""},
        {{"f.gen", "--bootstrap", "-1"}, "--bootstrap: '-1' is not a whole number."},
        {{"f.gen", "--threads", "0"}, "--threads: give a whole number from 1 to 256 (got '0')."},
        {{"f.gen", "--overview-estimate", "EM"},
         "--overview-estimate: choose one of velmaret, chakraborty, brookfield1, brookfield2, em, "
         "em_missing, joint, em_failure (got 'EM')."},
        {{"f.gen", "--overview-estimate", "em_missing"}, ""},
        {{"f.gen", "--repeat", "7"},
         "--repeat: the repeat motif is its length in bases, 1 to 6 (got '7')."},
        {{"f.gen", "--frobnicate"}, "Unknown option --frobnicate. See --help."},
        {{"f.gen", "--json"}, "--json needs a value."},
        {{"convert", "a.gen", "b.xls", "--seed", "1"},
         "--seed is not used by convert. See --help."},
        {{"-"}, ""},  // standard input
        {{}, "Name a Genepop or Excel data file. See --help."},
        {{"--version"}, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Refusal(c.arguments), c.refusal) << c.arguments.size();
    BatchOptions options = ParseBatchOptions(
        {"f.gen", "--repeat", "2", "--repeat", "Loc 7=3", "--population", "1,3-4"});
    EXPECT_EQ(options.repeatByLocus.at("Loc 7"), 3);
    EXPECT_EQ(options.populations, (std::vector<int>{1, 3, 4}));
    EXPECT_EQ(options.settings.onSuspect, SuspectPolicy::Proceed);
    EXPECT_EQ(options.settings.bootstrap, 1000);
}

class BatchProgram : public ::testing::Test {
protected:
    std::string File(const std::string& name, const std::string& text) {
        return Quoted(folder.Write(name, text));
    }
    TempFolder folder;
};

TEST_F(BatchProgram, TheExitStatusTellsWhatHappened) {
    const std::string small = File("small.gen", kSmallFile);
    const std::string suspect = File("suspect.gen", WithSuspect());
    const std::string twoPops = File("two.gen", kOneTooSmall);
    std::string huge = "Too many\nLocA\nLocB\nPop\n";
    for (int sample = 0; sample <= 32767; ++sample)
        huge += "s , 100102 100100\n";
    const std::string tooMany = File("huge.gen", huge);
    const struct {
        std::string arguments;
        int status;
        std::string said;  // on standard error or output
    } cases[] = {
        {"--help", 0, "Exit status:"},
        {"--version", 0, "tavrelle-batch "},
        {small + " --repeat 2 --seed 1", 0, "Population 1"},
        {suspect + " --repeat 2 --seed 1", 0,
         "population 1 (a1): 2 suspect value(s) besides missing alleles; analysed with the "
         "values as they stand"},
        {twoPops + " --repeat 2 --seed 1", 3, "population 2 (b1) was not analysed: "},
        {suspect + " --repeat 2 --seed 1 --on-suspect stop", 4,
         "was not analysed: Suspect values were found"},
        {tooMany + " --repeat 2", 1,
         "population 1 has more than 32766 samples, the most a population of a Genepop file may "
         "have."},
        {"", 2, "Name a Genepop or Excel data file."},
        {small + " --seed 1", 2,
         "no repeat motif for 2 locus/loci: 'LocA', 'LocB'. Give --repeat N"},
        {small + " --repeat 2 --repeat loca=4", 2,
         "--repeat loca=4: the file has no locus 'loca'. Did you mean 'LocA'?"},
        {small + " --repeat 2 --repeat Nothing=4", 2, "Its loci: 'LocA', 'LocB'."},
        {small + " --repeat 2 --population 2", 2, "there is no population 2"},
        {small + " --repeat 2 --max-allele-size abc", 2, "--max-allele-size: 'abc'"},
        {"/no/such/file.gen --repeat 2", 1, "The file entered does not exist."},
        {File("plain.gen", "just text\n") + " --repeat 2", 1,
         "plain.gen: not a data file Tavrelle can tell: expected Genepop, GenAlEx, STRUCTURE"},
        // The located line comes first: the file, the line, what was expected there.
        {File("twopop.gen", "title\nL1\nPop\na , 100102\nPop\n") + " --repeat 2", 1,
         "twopop.gen:5: population 2 has no samples"},
        {File("empty.gen", "") + " --repeat 2", 1, "appears to be empty or invalid"},
        {"/dev/zero --repeat 2", 1, "/dev/zero is a device, not a data file."},
        {small + " --repeat 2 --csv /dev/full", 1,
         "could not write /dev/full: No space left on device"},
        {small + " --repeat 2 --json /dev/full", 1, "could not write /dev/full"},
        {small + " --repeat 2 --json " + Quoted(folder.File("no/such/r.json")), 1,
         "no/such/r.json: No such file or directory"},
        {small + " --repeat 2 > /dev/full", 1,
         "could not write standard output: No space left on device"},
        {"--help > /dev/full", 1, "could not write standard output"},
    };
    for (const auto& c : cases) {
        testing::CommandResult result = RunBatchProgram(c.arguments);
        EXPECT_EQ(result.exitCode, c.status) << c.arguments << "\n" << result.output;
        EXPECT_NE(result.output.find(c.said), std::string::npos) << c.arguments << "\n"
                                                                 << result.output;
    }
}

TEST_F(BatchProgram, WorkbooksReadWhateverTmpdirSays) {
    const std::string book = Quoted(folder.File("demo.xls"));
    ASSERT_EQ(RunBatchProgram("convert " + File("small.gen", kSmallFile) + " " + book).exitCode, 0);
    const std::string expected = RunBatchProgram(book + " --repeat 2 --seed 2 --csv -").output;
    for (const char* environment : {"env -u TMPDIR", "env TMPDIR=/no/such/folder", "env TMPDIR="})
        EXPECT_EQ(RunCommand(std::string(environment) + " " + TAVRELLE_BATCH + " 2>&1 " + book +
                             " --repeat 2 --seed 2 --csv -")
                      .output,
                  expected)
            << environment;
}

TEST_F(BatchProgram, WithoutItsTablesTheProgramStopsAtOnceNamingThePath) {
    const std::filesystem::path copy = folder.Path() / "tavrelle-batch";
    std::filesystem::copy_file(TAVRELLE_BATCH, copy);
    testing::CommandResult result = RunCommand(Quoted(copy.string()) + " " +
                                               File("small.gen", kSmallFile) + " --repeat 2 2>&1");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output.find((folder.Path() / "ChiSquareTable.txt").string() + " is missing"),
              std::string::npos)
        << result.output;
}

TEST_F(BatchProgram, MotifsComeFromATableStandardInputAndTheCommandLineAlike) {
    const std::string file = File("small.gen", kSmallFile);
    const std::string json = " --seed 5 --json - 2>/dev/null";
    auto repeats = [&](const std::string& arguments) {
        Json report = Json::Parse(RunBatchProgram(arguments + json).output);
        const Json& loci = report["populations"][0]["loci"];
        return std::to_string(std::get<double>(loci[0]["repeat"].value)) + "," +
               std::to_string(std::get<double>(loci[1]["repeat"].value));
    };
    const std::string expected = repeats(file + " --repeat LocA=2 --repeat LocB=4");
    const struct {
        std::string table;
        std::string extra;
    } cases[] = {
        {"LocA\t2\nLocB\t4\n", ""},
        {"# locus,motif\nLocA, 2\r\nLocB,4", ""},
        {"LocA,3\nLocB,4\n", " --repeat LocA=2"},  // the command line wins
        {"LocA,2\n", " --repeat 4"},               // the rest from --repeat N
    };
    for (const auto& c : cases)
        EXPECT_EQ(repeats(file + " --repeats " + File("motifs.txt", c.table) + c.extra), expected)
            << c.table;
    EXPECT_EQ(repeats("- --repeat LocA=2 --repeat LocB=4 < " + file), expected);
    testing::CommandResult bad =
        RunBatchProgram(file + " --repeats " + File("bad.txt", "LocA 9\n"));
    EXPECT_EQ(bad.exitCode, 2);
    EXPECT_NE(bad.output.find("line 1: give a locus name and its motif"), std::string::npos);
}

TEST_F(BatchProgram, StudyReportNamesTheCommandAndTheFilesHashFromFileOrStandardInput) {
    const std::string text = testing::SimulatedGenepop({30, 25});
    const std::string file = File("study.gen", text);
    const std::string hash = Sha256Hex(text);
    const std::string fromFile =
        RunBatchProgram(file + " --repeat 2 --seed 9 --bootstrap 0 --report - 2>/dev/null").output;
    EXPECT_NE(fromFile.find(hash), std::string::npos);
    EXPECT_NE(fromFile.find("--repeat 2 --seed 9 --bootstrap 0 --report -"), std::string::npos);
    const std::string fromInput =
        RunBatchProgram("- --repeat 2 --seed 9 --bootstrap 0 --report - 2>/dev/null < " + file)
            .output;
    EXPECT_NE(fromInput.find(hash), std::string::npos);

    // The overview shows em_failure unless told otherwise, and names it in its legend.
    EXPECT_NE(fromFile.find("the EM with failures estimate"), std::string::npos);
    const std::string em =
        RunBatchProgram(file + " --repeat 2 --seed 9 --bootstrap 0 --overview-estimate em " +
                        "--report - 2>/dev/null")
            .output;
    EXPECT_NE(em.find("the EM estimate"), std::string::npos);
    EXPECT_NE(em.find("Estimate shown in the overview</th><td>EM</td>"), std::string::npos);
}

TEST(CommandLineText, QuotesWhatAShellWouldSplitOrExpand) {
    const struct {
        std::vector<std::string> arguments;
        const char* text;
    } cases[] = {
        {{"tavrelle-batch", "data.gen", "--repeat", "Loc3=4", "--seed", "7"},
         "tavrelle-batch data.gen --repeat Loc3=4 --seed 7"},
        {{"tavrelle-batch", "my data.gen", "--repeat", "Loc 7=3"},
         "tavrelle-batch 'my data.gen' --repeat 'Loc 7=3'"},
        {{"b", "it's", ""}, "b 'it'\\''s' ''"},
        {{"b", "$HOME", "a;b"}, "b '$HOME' 'a;b'"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CommandLineText(c.arguments), c.text);
}

TEST_F(BatchProgram, StandardInputGivesTheSameReportAsTheFile) {
    const std::string file = File("study.gen", testing::SimulatedGenepop({30, 25}));
    const std::string options = " --repeat 2 --seed 9 --csv - 2>/dev/null";
    std::string fromFile = RunBatchProgram(file + options).output;
    std::string fromInput = RunBatchProgram("-" + options + " < " + file).output;
    fromFile.replace(0, fromFile.find('\n'), "");  // the file column differs, not the results
    ASSERT_GT(std::count(fromFile.begin(), fromFile.end(), '\n'), 3);
    std::size_t at = 0;
    while ((at = fromFile.find(folder.File("study.gen"), at)) != std::string::npos)
        fromFile.replace(at, folder.File("study.gen").size(), "standard input");
    fromInput.replace(0, fromInput.find('\n'), "");
    EXPECT_EQ(fromInput, fromFile);
}

TEST_F(BatchProgram, TheCsvIsOneTidyRowPerPopulationAndLocus) {
    const std::string file = File("two.gen", kOneTooSmall);
    const std::string csv =
        RunBatchProgram(file + " --repeat 2 --seed 3 --csv - 2>/dev/null").output;
    std::vector<std::string> rows;
    for (std::size_t start = 0, end; (end = csv.find('\n', start)) != std::string::npos;
         start = end + 1)
        rows.push_back(csv.substr(start, end - start));
    ASSERT_EQ(rows.size(), 4u);  // header, two loci of population 1, population 2 stopped
    auto fields = [](const std::string& row) { return std::count(row.begin(), row.end(), ','); };
    for (const std::string& row : rows)
        EXPECT_EQ(fields(row), fields(rows[0])) << row;
    EXPECT_TRUE(
        rows[0].starts_with("file,seed,randomisations,confidence,max_allele_size,"
                            "population,population_name,samples,status,stop_reason,"));
    EXPECT_NE(rows[1].find(",3,1000,95,350,1,a1,5,analysed,,0,none,LocA,2,"), std::string::npos)
        << rows[1];
    EXPECT_NE(rows[3].find(",2,b1,1,stopped,"), std::string::npos) << rows[3];
    // Columns added to the contract come after every earlier one.
    EXPECT_TRUE(rows[0].ends_with(
        ",joint_high,inbreeding_f,inbreeding_f_low,inbreeding_f_high,inbreeding_model,"
        "em_failure,em_failure_low,em_failure_high,failure_rate,failure_rate_low,"
        "failure_rate_high,null_allele_fraction,null_allele_fraction_se,null_allele_borderline,"
        "stutter_fraction,stutter_fraction_se,stutter_borderline,dropout_fraction,"
        "dropout_fraction_se,dropout_borderline"))
        << rows[0];
    for (const std::string& row : rows)
        for (const char* other : {",yes", ",no,", ",true", ",false"})
            EXPECT_EQ(row.find(other), std::string::npos) << row;
}

TEST_F(BatchProgram, AnOldReportSurvivesARunThatFails) {
    const std::string report = folder.Write("report.json", "old report\n");
    const std::string small = File("small.gen", kSmallFile);
    const std::string cases[] = {
        // A disk that fills up: the shell's file size limit stops the write part way.
        "sh -c 'trap \"\" XFSZ; ulimit -f 1; exec " + std::string(TAVRELLE_BATCH) + " " + small +
            " --repeat 2 --json " + Quoted(report) + "' 2>&1",
        std::string(TAVRELLE_BATCH) + " /no/such.gen --repeat 2 --json " + Quoted(report),
        std::string(TAVRELLE_BATCH) + " " + small + " --json " + Quoted(report),
    };
    for (const std::string& command : cases) {
        EXPECT_NE(RunCommand(command + " 2>&1").exitCode, 0) << command;
        EXPECT_EQ(folder.Read("report.json"), "old report\n") << command;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2);
}

TEST(StudyThreads, TheDefaultFollowsTheCpuAffinity) {
    cpu_set_t saved;
    ASSERT_EQ(sched_getaffinity(0, sizeof saved, &saved), 0);
    std::size_t first = 0;
    while (!CPU_ISSET(first, &saved))
        ++first;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(AvailableCpuCount(), 1);
    ASSERT_EQ(sched_setaffinity(0, sizeof saved, &saved), 0);
    EXPECT_EQ(AvailableCpuCount(), CPU_COUNT(&saved));
    // The program run on one CPU gives the report it gives on every CPU.
    const std::string file = std::string(TAVRELLE_DEMO_FILES) + "/DemoNullAlleles.gen";
    const std::string options = " --repeat 2 --seed 4 --json - 2>/dev/null";
    EXPECT_EQ(RunCommand("taskset -c " + std::to_string(first) + " " + TAVRELLE_BATCH + " " + file +
                         options)
                  .output,
              RunBatchProgram(file + options).output);
}

TEST(BatchProgramReports, APopulationThatCannotBeAnalysedSaysWhy) {
    TempFolder folder;
    const std::string file = Quoted(folder.Write("small.gen", kSmallFile));
    // Bonferroni at 10000 rounds over one counted class (the monomorphic LocB) takes a rank
    // beyond the rounds: the run error names the locus, and the locus before it is kept.
    Json bonferroni = Json::Parse(
        RunBatchProgram(file + " --repeat 2 --seed 1 --randomisations 10000 --confidence "
                               "bonferroni --json - 2>/dev/null")
            .output);
    const Json& population = bonferroni["populations"][0];
    EXPECT_EQ(std::get<std::string>(population["error"].value),
              "Run-time error '9':\r\n\r\nSubscript out of range");
    EXPECT_EQ(std::get<std::string>(population["error_locus"].value), "LocB");
    EXPECT_EQ(std::get<Json::Array>(population["loci"].value).size(), 1u);
}

TEST(BatchProgramReports, SuspectValuesStopOmitOrProceed) {
    TempFolder folder;
    const std::string file = Quoted(folder.Write("suspect.gen", WithSuspect()));
    auto run = [&](const std::string& policy) {
        return Json::Parse(RunBatchProgram(file + " --repeat 2 --seed 3 --json - --on-suspect " +
                                           policy + " 2>/dev/null")
                               .output)["populations"][0];
    };
    Json stop = run("stop");
    EXPECT_EQ(std::get<std::string>(stop["check"]["action"].value), "stop");
    EXPECT_EQ(std::get<std::string>(stop["status"].value), "stopped");
    EXPECT_EQ(std::get<std::string>(stop["error"].value),
              "Suspect values were found and the population was not analysed (--on-suspect "
              "stop).");
    const Json& unexpected = stop["check"]["unexpected"][0];
    EXPECT_EQ(std::get<std::string>(unexpected["value"].value), "999");
    EXPECT_EQ(std::get<double>(unexpected["row"].value), 3);
    EXPECT_EQ(std::get<double>(unexpected["column"].value), 4);
    EXPECT_TRUE(std::get<Json::Array>(stop["loci"].value).empty());
    Json omit = run("omit");
    EXPECT_EQ(std::get<double>(omit["loci"][0]["scored"].value), 4);  // a3 is now missing one
    Json proceed = run("proceed");
    EXPECT_EQ(std::get<double>(proceed["loci"][0]["highest"].value), 999);
    EXPECT_EQ(std::get<std::string>(proceed["status"].value), "analysed");
}

}  // namespace
}  // namespace tavrelle
