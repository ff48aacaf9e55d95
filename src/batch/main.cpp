// tavrelle-batch: the analysis of the desktop program for scripts, pipelines and job arrays.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "analysis/StatisticalTables.h"
#include "base/InstallPaths.h"
#include "batch/BatchOptions.h"
#include "batch/BatchRun.h"
#include "results/StudyReport.h"

namespace {

std::filesystem::path ProgramFolder(const char* argv0) {
    std::error_code error;
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) self = std::filesystem::absolute(argv0);
    return self.parent_path();
}

bool WriteOut(const std::string& target, const std::string& text) {
    if (target == "-") {
        std::cout << text;
        return static_cast<bool>(std::cout);
    }
    std::ofstream out(target, std::ios::binary);
    out << text;
    return static_cast<bool>(out);
}

std::string StudyReport(const tavrelle::BatchOptions& options,
                        const tavrelle::BatchReport& report) {
    tavrelle::StudyReportInput study;
    study.file = report.file;
    study.title = report.title;
    study.clockSeed = report.clockSeed;
    study.populations = &report.populations;
    study.populationsInFile = static_cast<int>(report.populations.size());
    study.settings.seed = report.seed;
    study.settings.randomisations = report.randomisations;
    study.settings.confidenceCode = report.confidenceCode;
    study.settings.repeatForAll = options.repeatForAll;
    study.settings.repeatByLocus = options.repeatByLocus;
    study.settings.onSuspect = options.onSuspect;
    return tavrelle::StudyReportHtml(study);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tavrelle;
    BatchOptions options;
    try {
        options = ParseBatchOptions(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const std::invalid_argument& refusal) {
        std::cerr << "tavrelle-batch: " << refusal.what() << "\n";
        return 2;
    }
    if (options.help) {
        std::cout << BatchUsage();
        return 0;
    }
    if (options.convert) {
        try {
            std::cout << ConvertDataFile(options);
        } catch (const std::exception& failure) {
            std::cerr << "tavrelle-batch: " << failure.what() << "\n";
            return 1;
        }
        return 0;
    }
    try {
        BatchReport report = RunBatch(
            options, InstalledFile(ProgramFolder(argv[0]), kChiSquareTableFile).parent_path());
        bool ok = true;
        if (options.jsonFile) ok = WriteOut(*options.jsonFile, JsonReport(report)) && ok;
        if (options.csvFile) ok = WriteOut(*options.csvFile, CsvReport(report)) && ok;
        if (options.reportFile)
            ok = WriteOut(*options.reportFile, StudyReport(options, report)) && ok;
        if (options.jsonFile != "-" && options.csvFile != "-") std::cout << TextReport(report);
        if (!ok) {
            std::cerr << "tavrelle-batch: a report could not be written.\n";
            return 1;
        }
    } catch (const std::exception& failure) {
        std::cerr << "tavrelle-batch: " << failure.what() << "\n";
        return 1;
    }
    return 0;
}
