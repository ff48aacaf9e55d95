#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "run/LocusMotifs.h"
#include "run/PopulationResult.h"
#include "run/RunSettings.h"

namespace tavrelle {

class InputDataSource;

// What every report of a study states once, before the populations: the file as the reports
// name it, the data set's title line, and the settings every population was run with.
struct StudyHeader {
    std::string file;
    std::string fileSha256;  // empty when not known
    std::string command;     // the command line that ran the study, if any
    std::string title;
    RunSettings settings;
};

// A study of a loaded store, as the batch program runs it. The R package and the web page give
// the same job and get the same reports.
struct StudyJob {
    std::string file;        // as the reports name it
    std::string fileSha256;  // of the bytes read; empty when not known
    std::string command;     // the command line that ran the study, if any
    // As the front end built them, the seed already chosen (the clock's or the user's); the
    // motifs for all loci in repeatForAll, the table folder, and isExcel for a workbook. The
    // reports print maxAlleleSize as a number: give a whole number (the batch takes 50 to 700).
    RunSettings settings;
    std::vector<int> populations;               // 1-based, in this order; empty: all
    std::map<std::string, Int16> repeatByName;  // motifs named one by one
    RepeatTable repeatTable;                    // a table of motifs; named ones win
    // The names a format gives its populations (GenAlEx, tidy CSV), in file order; an empty
    // or missing one leaves the name the store gives (its first sample's).
    std::vector<std::string> populationNames;
};

// Where a study's results go: the header once, then each population in file order as soon as
// it and those before it are done (it may be dropped after the call), then the end.
class StudySink {
public:
    virtual ~StudySink() = default;
    virtual void Begin(const StudyHeader& header) = 0;
    virtual void Population(const PopulationResult& population) = 0;
    virtual void End() = 0;
};

struct StudyCounts {
    int analysed = 0;
    int stopped = 0;
};

// Runs the job on `store` (whose tables it empties once each chosen population has its copy):
// resolves every locus's motif, chooses the populations, and runs them in parallel with a fresh
// generator each from the one seed, feeding `sink`. Notes about motif table entries the file
// lacks, and alleles that look like indices rather than sizes, go to `notes`. A job that does not
// fit the file (a motif for a missing locus, a locus without one, a population beyond the file's)
// throws StudyUsageError before anything runs.
StudyCounts RunStudyJob(InputDataSource& store, const StudyJob& job, StudySink& sink,
                        std::ostream& notes);

}  // namespace tavrelle
