#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "report/ReportStream.h"
#include "run/StudyDriver.h"

namespace tavrelle {

// A study's sink that writes reports: each stream's pieces go to its writer as they are made.
class ReportSink : public StudySink {
public:
    using Writer = std::function<void(const std::string& piece)>;
    void Add(std::unique_ptr<ReportStream> stream, Writer writer);
    void Begin(const StudyHeader& header) override;
    void Population(const PopulationResult& population) override;
    void End() override;

private:
    std::vector<std::pair<std::unique_ptr<ReportStream>, Writer>> reports_;
};

// The whole text of one report of a study, as the batch program writes it: what the R package
// and the web page call. `stream` is MakeJsonReport(), MakeCsvReport(), MakeHtmlReport() or
// MakeTextReport(). Throws as RunStudyJob does.
std::string StudyReportText(InputDataSource& store, const StudyJob& job,
                            std::unique_ptr<ReportStream> stream);

}  // namespace tavrelle
