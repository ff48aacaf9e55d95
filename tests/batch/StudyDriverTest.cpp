// The engine's study driver, as the R package and the web page call it, gives the batch
// program's reports byte for byte.
#include <gtest/gtest.h>

#include <sstream>

#include "../support/ProgramRun.h"
#include "formats/SheetReaders.h"
#include "report/ReportSink.h"
#include "run/LocusMotifs.h"
#include "run/StudyDriver.h"

namespace tavrelle {
namespace {

const std::string kThree = std::string(TAVRELLE_DEMO_FILES) + "/DemoThreePopulations.gen";

StudyJob Job(std::vector<int> populations = {}) {
    StudyJob job;
    job.file = kThree;
    job.settings.seed = 4321;
    job.settings.clockSeed = false;
    job.settings.confidence = Confidence::Percent99;
    job.settings.repeatForAll = 2;
    job.settings.bootstrap = 30;
    job.settings.tableFolder = TAVRELLE_TABLE_DIR;
    job.populations = std::move(populations);
    return job;
}

std::string Report(std::unique_ptr<ReportStream> stream, const StudyJob& job) {
    RecordingPrompter prompter;
    OpenedDataFile opened = OpenDataFile(job.file, FileKind::Genepop, "", prompter);
    EXPECT_TRUE(opened.store);
    return StudyReportText(*opened.store, job, std::move(stream));
}

TEST(StudyDriver, GivesTheBatchProgramsReports) {
    const std::string options = "'" + kThree +
                                "' --seed 4321 --confidence 99 --repeat 2 --bootstrap 30 "
                                "--population 3,1 ";
    const StudyJob job = Job({3, 1});
    EXPECT_EQ(Report(MakeJsonReport(), job),
              testing::RunCommand(std::string(TAVRELLE_BATCH) + " " + options + "--json -").output);
    EXPECT_EQ(Report(MakeCsvReport(), job),
              testing::RunCommand(std::string(TAVRELLE_BATCH) + " " + options + "--csv -").output);
}

TEST(StudyDriver, RefusesAJobThatDoesNotFitTheFileBeforeRunning) {
    struct Case {
        StudyJob job;
        const char* refusal;
    };
    StudyJob beyond = Job({4});
    StudyJob unnamed = Job();
    unnamed.settings.repeatForAll.reset();
    StudyJob stranger = Job();
    stranger.repeatByName["NoSuchLocus"] = 2;
    for (const Case& c : {Case{beyond, "there is no population 4"},
                          Case{unnamed, "no repeat motif for"}, Case{stranger, "NoSuchLocus"}}) {
        RecordingPrompter prompter;
        OpenedDataFile opened = OpenDataFile(kThree, FileKind::Genepop, "", prompter);
        std::ostringstream notes;
        ReportSink sink;
        bool begun = false;
        sink.Add(MakeJsonReport(), [&](const std::string&) { begun = true; });
        try {
            RunStudyJob(*opened.store, c.job, sink, notes);
            ADD_FAILURE() << c.refusal;
        } catch (const StudyUsageError& error) {
            EXPECT_NE(std::string(error.what()).find(c.refusal), std::string::npos) << error.what();
        }
        EXPECT_FALSE(begun) << c.refusal;
    }
}

}  // namespace
}  // namespace tavrelle
