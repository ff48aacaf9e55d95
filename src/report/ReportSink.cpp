#include <sstream>

#include "report/ReportSink.h"

namespace tavrelle {

void ReportSink::Add(std::unique_ptr<ReportStream> stream, Writer writer) {
    reports_.emplace_back(std::move(stream), std::move(writer));
}

void ReportSink::Begin(const StudyHeader& header) {
    for (auto& [stream, write] : reports_)
        write(stream->Begin(header));
}

void ReportSink::Population(const PopulationResult& population) {
    for (auto& [stream, write] : reports_)
        write(stream->Population(population));
}

void ReportSink::End() {
    for (auto& [stream, write] : reports_)
        write(stream->End());
}

std::string StudyReportText(InputDataSource& store, const StudyJob& job,
                            std::unique_ptr<ReportStream> stream) {
    std::string text;
    ReportSink sink;
    sink.Add(std::move(stream), [&text](const std::string& piece) { text += piece; });
    std::ostringstream notes;
    RunStudyJob(store, job, sink, notes);
    return text;
}

}  // namespace tavrelle
