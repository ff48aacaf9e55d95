#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "base/Int16.h"
#include "population/GenotypeSet.h"

namespace tavrelle {

// The working logs of a run: a log of seeds and two plain-text tables of the observed and
// randomised counts of each locus. They are kept so that their format stays available; no run of
// the program writes them, and they stay off unless a caller switches them on. Writing never
// disturbs a run: a log that cannot be opened or written is passed over in silence.
//
// Lines end in CR LF, as every text of the program. The seed log is appended to; each table is
// opened afresh by the first write of a WorkingLogs object, so that one object serves one run.
class WorkingLogs {
public:
    static constexpr const char* kSeedLogName = "SeedLog.Txt";
    static constexpr const char* kHomozygoteLogName = "Homozygotes.txt";
    static constexpr const char* kDifferenceLogName = "AlleleSizeDiff.txt";
    static constexpr const char* kHomozygoteLogLabel = "Location of Results File";
    static constexpr const char* kDifferenceLogLabel = "Location of Allele Size Differences File";

    // The date and the time as the logs show them.
    struct Stamp {
        std::string date;
        std::string time;
    };

    // The logs go into `folder` (the LogFiles folder of the program); off unless switched on.
    explicit WorkingLogs(std::filesystem::path folder, bool enabled = false);

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { enabled_ = enabled; }
    const std::filesystem::path& Folder() const { return folder_; }

    // The local date (year-month-day) and time (hours:minutes:seconds); tests fix it.
    std::function<Stamp()> clock;

    // "Date: " date " " time, "Seed: " seed and a blank line, appended to the seed log.
    void WriteSeedLog(std::int32_t seed) noexcept;

    // The head of a locus in the homozygote table: a blank line, the date, the population, the
    // locus and "Homozygote Size (" argument ")".
    void WriteHomozygoteHead(const std::string& populationName, const std::string& locusName,
                             const std::string& argument) noexcept;
    // The head of a locus in the difference table, the same with "Allele differences (" argument
    // ")", followed by the "  Size" line of the classes 0 to alleleRange, left without its end.
    void WriteDifferenceHead(const std::string& populationName, const std::string& locusName,
                             const std::string& argument, Int16 alleleRange) noexcept;

    // The observed homozygotes by class: a tab, then a tab before each count. Nothing when the
    // locus has no homozygote.
    void WriteHomozygoteRow(const CountArray& counts, bool hasHomozygotes) noexcept;
    // The observed pairs by difference: the line end of the "  Size" line, then as above.
    void WriteDifferenceRow(const CountArray& counts) noexcept;
    // One round: its number from 1, then a tab before each count; to the homozygote table.
    void WriteRoundRow(int round, const CountArray& counts) noexcept;

    // Closes both tables; the next write opens them afresh.
    void Close() noexcept;

    std::filesystem::path SeedLogPath() const { return folder_ / kSeedLogName; }
    std::filesystem::path HomozygoteLogPath() const { return folder_ / kHomozygoteLogName; }
    std::filesystem::path DifferenceLogPath() const { return folder_ / kDifferenceLogName; }

    // The local date and time now.
    static Stamp Now();

private:
    std::ofstream* Table(std::ofstream& stream, bool& opened, const std::filesystem::path& path);
    void WriteHead(std::ofstream* log, const std::string& populationName,
                   const std::string& locusName, const std::string& title);
    static std::string CountsText(const CountArray& counts);

    std::filesystem::path folder_;
    bool enabled_;
    std::ofstream homozygoteLog_;
    std::ofstream differenceLog_;
    bool homozygoteOpened_ = false;
    bool differenceOpened_ = false;
};

}  // namespace tavrelle
