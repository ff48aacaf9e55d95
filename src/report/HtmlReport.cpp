#include <optional>

#include "report/ReportStream.h"
#include "report/StudyReport.h"

namespace tavrelle {

namespace {

class HtmlReport : public ReportStream {
public:
    std::string Begin(const StudyHeader& header) override {
        StudyReportHeader study;
        study.file = header.file;
        study.fileSha256 = header.fileSha256;
        study.command = header.command;
        study.title = header.title;
        study.settings = header.settings;
        study.clockSeed = header.settings.clockSeed;
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
    std::optional<StudyReportBuilder> builder_;
    int populations_ = 0;
};

}  // namespace

std::unique_ptr<ReportStream> MakeHtmlReport() {
    return std::make_unique<HtmlReport>();
}

}  // namespace tavrelle
