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
    std::string title;  // the data set's own title line
    RunSettings settings;
    bool clockSeed = true;
};

// What a study report is made from: the header and every population's result in file order.
struct StudyReportInput : StudyReportHeader {
    const std::vector<PopulationResult>* populations = nullptr;
    int populationsInFile = 0;  // more than delivered when the run was cancelled
};

// A study report made one population at a time, so that a population's results can be dropped
// once added: each population's sections are written as it comes, and the overview, which
// needs them all, when the page is asked for.
class StudyReportBuilder {
public:
    explicit StudyReportBuilder(StudyReportHeader header) : header_(std::move(header)) {}
    void Add(const PopulationResult& population);
    // The page; `populationsInFile` above the count added tells that the run was cancelled.
    std::string Page(int populationsInFile) const;

private:
    StudyReportHeader header_;
    StudyTable table_;
    std::string sections_;
    int added_ = 0;
};

// One self-contained HTML page: the settings and seed, the overview table and heat map, then for
// every population and locus the two graphs as inline SVG, the probability table, the verdict
// texts and the estimates. No script, no external file.
std::string StudyReportHtml(const StudyReportInput& input);

}  // namespace tavrelle
