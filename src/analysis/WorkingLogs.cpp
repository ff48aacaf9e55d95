#include "analysis/WorkingLogs.h"

#include <chrono>
#include <ctime>

namespace tavrelle {

namespace {
constexpr const char* kLineEnd = "\r\n";

// The fields of a date and a time, 0 to 99.
std::string TwoDigits(int value) {
    std::string text = std::to_string(value);
    return text.size() < 2 ? std::string(2 - text.size(), '0').append(text) : text;
}
}  // namespace

WorkingLogs::WorkingLogs(std::filesystem::path folder, bool enabled)
    : clock(&WorkingLogs::Now), folder_(std::move(folder)), enabled_(enabled) {}

WorkingLogs::Stamp WorkingLogs::Now() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return {
        std::to_string(local.tm_year + 1900) + "-" + TwoDigits(local.tm_mon + 1) + "-" +
            TwoDigits(local.tm_mday),
        TwoDigits(local.tm_hour) + ":" + TwoDigits(local.tm_min) + ":" + TwoDigits(local.tm_sec)};
}

void WorkingLogs::WriteSeedLog(std::int32_t seed) noexcept {
    if (!enabled_) return;
    try {
        std::ofstream log(SeedLogPath(), std::ios::binary | std::ios::app);
        if (!log) return;
        const Stamp stamp = clock();
        log << "Date: " << stamp.date << " " << stamp.time << kLineEnd << "Seed: " << seed
            << kLineEnd << kLineEnd;
    } catch (...) {
        // A log is never worth a run.
    }
}

std::ofstream* WorkingLogs::Table(std::ofstream& stream, bool& opened,
                                  const std::filesystem::path& path) {
    if (!enabled_) return nullptr;
    if (!opened) {
        opened = true;
        stream.open(path, std::ios::binary | std::ios::trunc);
    }
    return stream.is_open() && stream.good() ? &stream : nullptr;
}

void WorkingLogs::WriteHead(std::ofstream* log, const std::string& populationName,
                            const std::string& locusName, const std::string& title) {
    const Stamp stamp = clock();
    // The first line holds a line break of its own, so that two lines end there.
    *log << kLineEnd << kLineEnd << "Date: " << stamp.date << " " << stamp.time << kLineEnd
         << "Population: " << populationName << kLineEnd << "Locus: " << locusName << kLineEnd
         << title << kLineEnd;
}

void WorkingLogs::WriteHomozygoteHead(const std::string& populationName,
                                      const std::string& locusName,
                                      const std::string& argument) noexcept {
    try {
        if (std::ofstream* log = Table(homozygoteLog_, homozygoteOpened_, HomozygoteLogPath()))
            WriteHead(log, populationName, locusName, "Homozygote Size (" + argument + ")");
    } catch (...) {
    }
}

void WorkingLogs::WriteDifferenceHead(const std::string& populationName,
                                      const std::string& locusName, const std::string& argument,
                                      Int16 alleleRange) noexcept {
    try {
        std::ofstream* log = Table(differenceLog_, differenceOpened_, DifferenceLogPath());
        if (!log) return;
        WriteHead(log, populationName, locusName, "Allele differences (" + argument + ")");
        *log << "\t  Size";
        for (int i = 0; i <= alleleRange; ++i)
            *log << "\t" << i;
    } catch (...) {
    }
}

std::string WorkingLogs::CountsText(const CountArray& counts) {
    std::string text;
    for (Int16 count : counts) {
        text += '\t';
        text += std::to_string(count);
    }
    return text;
}

void WorkingLogs::WriteHomozygoteRow(const CountArray& counts, bool hasHomozygotes) noexcept {
    if (!hasHomozygotes) return;
    try {
        if (std::ofstream* log = Table(homozygoteLog_, homozygoteOpened_, HomozygoteLogPath()))
            *log << "\t" << CountsText(counts) << kLineEnd;
    } catch (...) {
    }
}

void WorkingLogs::WriteDifferenceRow(const CountArray& counts) noexcept {
    try {
        if (std::ofstream* log = Table(differenceLog_, differenceOpened_, DifferenceLogPath()))
            *log << kLineEnd << "\t" << CountsText(counts) << kLineEnd;
    } catch (...) {
    }
}

void WorkingLogs::WriteRoundRow(int round, const CountArray& counts) noexcept {
    try {
        if (std::ofstream* log = Table(homozygoteLog_, homozygoteOpened_, HomozygoteLogPath()))
            *log << round << CountsText(counts) << kLineEnd;
    } catch (...) {
    }
}

void WorkingLogs::Close() noexcept {
    try {
        homozygoteLog_.close();
        differenceLog_.close();
    } catch (...) {
    }
    homozygoteOpened_ = false;
    differenceOpened_ = false;
}

}  // namespace tavrelle
