// tavrelle-batch at the edges a pipeline meets: reports into pipes and standard output, partial
// files left by a killed run or removed on a signal, conflicting motif tables, and a header too
// long for any population table.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

#include "../support/Json.h"
#include "../support/ProgramRun.h"
#include "../support/SimulatedGenepop.h"
#include "../support/TempFolder.h"
#include "base/AtomicFile.h"

namespace tavrelle {
namespace {

using testing::Json;
using testing::Quoted;
using testing::RunBatchProgram;
using testing::RunCommand;
using testing::TempFolder;

const std::string kSmallFile =
    "Small test file\nLocA\nLocB\nPop\n"
    "a1 , 100102 150152\na2 , 102104 150150\na3 , 104104 152152\na4 , 100100 150152\n"
    "a5 , 102102 150150\n";

std::size_t FilesIn(const TempFolder& folder) {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder.Path()), {}));
}

TEST(BatchOutputs, StandardOutputByAnyNameCarriesOneReportIntoAPipeOrAFile) {
    TempFolder folder;
    const std::string file = Quoted(folder.Write("small.gen", kSmallFile));
    const std::string run = file + " --repeat 2 --seed 1 --bootstrap 0 ";
    for (const char* name : {"-", "/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
        SCOPED_TRACE(name);
        // The text report keeps out of it, or the JSON would not parse.
        const testing::CommandResult piped =
            RunBatchProgram(run + "--json " + name + " 2>/dev/null | cat");
        EXPECT_EQ(piped.exitCode, 0);
        EXPECT_EQ(std::get<double>(Json::Parse(piped.output)["seed"].value), 1);
        const std::string target = Quoted(folder.File("out.json"));
        EXPECT_EQ(RunBatchProgram(run + "--json " + name + " > " + target).exitCode, 0);
        EXPECT_EQ(std::get<double>(Json::Parse(folder.Read("out.json"))["seed"].value), 1);
        EXPECT_NE(
            RunBatchProgram(run + "--json " + name + " --csv /dev/stdout")
                .output.find("Only one of --json, --csv and --report may write to standard output"),
            std::string::npos);
    }
    // A named pipe is written in place, as a device is.
    const std::string fifo = folder.File("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const testing::CommandResult read =
        RunCommand("(cat " + Quoted(fifo) + " &) ; " + TAVRELLE_BATCH + " " + run + "--csv " +
                   Quoted(fifo) + " >/dev/null 2>&1; echo status $?");
    EXPECT_NE(read.output.find("file,seed,"), std::string::npos) << read.output;
    EXPECT_NE(read.output.find("status 0"), std::string::npos) << read.output;
}

TEST(BatchOutputs, APartialFileLeftByAKilledRunIsRemovedAndOneInUseIsLeftAlone) {
    TempFolder folder;
    const std::string file = Quoted(folder.Write("small.gen", kSmallFile));
    const std::string report = folder.File("report.json");
    const std::string partial = PartialFileOf(report);
    EXPECT_EQ(partial, folder.File(".report.json.tavrelle-partial"));
    folder.Write(".report.json.tavrelle-partial", "half a report from a run killed with -9");
    const std::string run = file + " --repeat 2 --seed 1 --json " + Quoted(report);
    EXPECT_EQ(RunBatchProgram(run).exitCode, 0);
    EXPECT_FALSE(std::filesystem::exists(partial));
    EXPECT_EQ(FilesIn(folder), 2u);
    const std::string written = folder.Read("report.json");

    // Another program writing the same report holds its partial file's lock.
    folder.Write(".report.json.tavrelle-partial", "being written");
    const int held = open(partial.c_str(), O_RDONLY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    const testing::CommandResult busy = RunBatchProgram(run);
    close(held);
    EXPECT_EQ(busy.exitCode, 1);
    EXPECT_NE(busy.output.find("could not write " + report + ": Device or resource busy"),
              std::string::npos)
        << busy.output;
    EXPECT_EQ(folder.Read(".report.json.tavrelle-partial"), "being written");
    EXPECT_EQ(folder.Read("report.json"), written);
}

TEST(BatchOutputs, ASignalRemovesThePartialFilesAndKeepsTheOldReports) {
    TempFolder folder;
    // Enough to keep the program busy until the signal comes.
    folder.Write("big.gen", testing::SimulatedGenepop({3000, 3000}));
    folder.Write("r.json", "old\n");
    for (const char* signal : {"TERM", "HUP"}) {
        SCOPED_TRACE(signal);
        const testing::CommandResult run =
            RunCommand("cd " + Quoted(folder.Path().string()) + "; (exec " + TAVRELLE_BATCH +
                       " big.gen --repeat 2 --randomisations 10000 --json r.json --csv r.csv "
                       ">/dev/null 2>&1) & pid=$!; for i in $(seq 400); do "
                       "[ -e .r.csv.tavrelle-partial ] && break; sleep 0.05; done; kill -" +
                       signal + " $pid; wait $pid; echo status $?");
        EXPECT_EQ(run.output.find("status 0"), std::string::npos) << run.output;
        EXPECT_EQ(folder.Read("r.json"), "old\n");
        EXPECT_FALSE(std::filesystem::exists(folder.File("r.csv")));
        EXPECT_EQ(FilesIn(folder), 2u);
    }
}

TEST(BatchRepeats, ATableRefusesWhatTheCommandLineRefuses) {
    TempFolder folder;
    const std::string file = Quoted(folder.Write("small.gen", kSmallFile));
    const struct {
        std::string table;  // or, starting with "--", command-line options
        std::string refusal;
    } cases[] = {
        {"LocA,2\nLocB,4\n# again\nLocA,3\n",
         "--repeats motifs.txt: line 4 gives locus 'LocA' the motif 3, line 1 gave it 2. Keep "
         "one of them."},
        {"LocA\t2\nlocb\t4\n",
         "--repeats motifs.txt, line 2: the file has no locus 'locb' (names are told apart by "
         "case). Did you mean 'LocB'?"},
        {"--repeat LocA=2 --repeat LocA=3 --repeat 2",
         "--repeat LocA=3: locus 'LocA' was given the motif 2 before. Keep one of them."},
        {"LocA,2\nLocB,4\nLocA,2\n", ""},  // the same motif twice is no conflict
        {"LocA,2\nLocB,4\nLocZ,3\n", ""},  // a locus of another file: a note only
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.table);
        const std::string options = c.table.starts_with("--") ? c.table : "--repeats motifs.txt";
        if (!c.table.starts_with("--")) folder.Write("motifs.txt", c.table);
        const testing::CommandResult result =
            RunCommand("cd " + Quoted(folder.Path().string()) + " && " + TAVRELLE_BATCH + " " +
                       file + " " + options + " --seed 1 --bootstrap 0 --csv /dev/null 2>&1");
        EXPECT_EQ(result.exitCode, c.refusal.empty() ? 0 : 2) << result.output;
        EXPECT_NE(result.output.find(c.refusal), std::string::npos) << result.output;
    }
}

TEST(BatchLimits, AHeaderOfMoreLociThanATableHoldsIsRefusedNamingTheLimitAndTheFile) {
    TempFolder folder;
    std::string header = "Many loci\n";
    for (int locus = 0; locus < 1280000; ++locus)
        header += "L" + std::to_string(locus) + "\n";
    const std::string file = folder.Write("many.gen", header + "Pop\na1 , 100102\n");
    const testing::CommandResult result = RunBatchProgram(Quoted(file) + " --repeat 2");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output.find("Could not load " + file), std::string::npos);
    EXPECT_NE(result.output.find("the file names more than 16382 loci, the most a population "
                                 "table holds"),
              std::string::npos)
        << result.output.substr(0, 300);
}

}  // namespace
}  // namespace tavrelle
