#include <optional>

#include "report/ReportStream.h"
#include "report/StudyReport.h"

namespace tavrelle {

namespace {

class HtmlReport : public ReportStream {
public:
    explicit HtmlReport(const StudySettings& settings) : settings_(settings) {}

    std::string Begin(const BatchHeader& header) override {
        StudyReportHeader study;
        study.file = header.file;
        study.title = header.title;
        study.settings = settings_;
        study.settings.seed = header.seed;
        study.clockSeed = header.clockSeed;
        builder_.emplace(std::move(study));
        return builder_->Begin();
    }
    // Each population's sections are written as it comes, so memory stays flat.
    std::string Population(const PopulationResult& population) override {
        ++populations_;
        return builder_->Add(population);
    }
    std::string End() override { return builder_->End(populations_); }

private:
    StudySettings settings_;
    std::optional<StudyReportBuilder> builder_;
    int populations_ = 0;
};

}  // namespace

std::unique_ptr<ReportStream> MakeHtmlReport(const StudySettings& settings) {
    return std::make_unique<HtmlReport>(settings);
}

}  // namespace tavrelle
