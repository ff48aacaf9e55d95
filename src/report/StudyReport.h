#pragma once

#include <string>
#include <vector>

#include "run/PopulationResult.h"
#include "run/RunSettings.h"
#include "run/StudyTable.h"

namespace tavrelle {

// What a study report states before the populations: the file, the settings and seed of the run.
struct StudyReportHeader {
    std::string file;
    std::string fileSha256;  // of the file as it was read; empty when not known
    std::string title;       // the data set's own title line
    std::string command;     // the command line that ran the study; empty from a window
    std::string created;     // when the report was made; empty: now (SOURCE_DATE_EPOCH if set)
    RunSettings settings;
    bool clockSeed = true;
};

// What a study report is made from: the header and every population's result in file order.
struct StudyReportInput : StudyReportHeader {
    const std::vector<PopulationResult>* populations = nullptr;
    int populationsInFile = 0;  // more than delivered when the run was cancelled
};

// A study report written one population at a time, so that neither a population's results nor
// its sections are kept once added: the page is Begin(), then what each Add() returns, in file
// order, then End(). The settings, overview and heat map need every population, so they come
// last in the file, and the page's style shows them above the populations' sections.
class StudyReportBuilder {
public:
    explicit StudyReportBuilder(StudyReportHeader header);
    std::string Begin() const;
    // The sections of one population.
    std::string Add(const PopulationResult& population);
    // The rest of the page; `populationsInFile` above the count added tells that the run was
    // cancelled.
    std::string End(int populationsInFile);

private:
    StudyReportHeader header_;
    StudyTable table_;
    int added_ = 0;
};

// One self-contained HTML page for a paper's supplement: the program, its version, the date, the
// file and its SHA-256, the command or settings in full and the methods; the overview table and
// heat map; for every population its estimates with intervals, failure rates, F, model and verdict,
// and for every locus the two graphs as inline SVG, the probability table and the verdict texts
// (folded on screen, printed in full); the references and how to cite the program. No script, no
// external file. Its print style suits A4 and Letter paper.
std::string StudyReportHtml(const StudyReportInput& input);

}  // namespace tavrelle
