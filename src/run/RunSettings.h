#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analysis/Confidence.h"
#include "base/CountWidth.h"
#include "base/Int16.h"
#include "base/Prompter.h"
#include "nulls/LikelihoodEstimates.h"

namespace tavrelle {

// The null allele estimate (an index into kEstimateKeys) a study overview shows in its cells,
// colours and heat map unless the user chooses another: the one that tells failed amplifications
// from null alleles, as an estimate that reads every blank as a null homozygote paints loci with
// many failed samples as heavy with null alleles.
inline constexpr std::size_t kDefaultStudyEstimate = kEmFailure;

// What is done with a population in which the check found suspect values, where no one is there
// to answer the Possible Errors dialog: stop (the dialog's Correct), omit the values, or analyse
// them as they stand.
enum class SuspectPolicy { Stop, Omit, Proceed };

// The settings of a run, built once by the front end that starts it (the desktop's Analyse, the
// study overview, the batch program, R, the web page) and handed down as they are: a run copies
// them, so that it never reads the screen and several runs can go at once. A study gives every
// population the same seed (each gets a fresh generator from it) and motifs by locus name.
struct RunSettings {
    std::int32_t seed = 0;  // 0 to 2147483647 (ParseSeed)
    bool clockSeed = true;  // the seed came from the clock; reports say so
    Int16 randomisations = 1000;
    Confidence confidence = Confidence::Percent95;
    std::string maxAlleleSize = "350";  // as typed: the check clamps and reports

    // The motifs: per locus in column order for the population on screen, or, in a study, by
    // locus name as the file spells it with one for every locus not named.
    std::vector<Int16> repeatCodes;
    std::optional<Int16> repeatForAll;
    std::map<std::string, Int16> repeatByLocus;

    SuspectPolicy onSuspect = SuspectPolicy::Proceed;  // a study's answer to the check
    std::filesystem::path tableFolder;                 // where the statistical tables are
    bool isExcel = false;  // the data came from a workbook (its name is elsewhere)
    int threads = 0;       // a study's workers; 0: the CPUs this process may run on
    int bootstrap = 1000;  // replicates for the likelihood estimates' intervals; 0: none
    std::size_t overviewEstimate = kDefaultStudyEstimate;  // what a study's overview shows
    bool threaded = false;  // one population: draw the random numbers on a second thread
    // The desktop's Analyse counts in 16 bits, as prescribed (2 x samples overflows at 16,384
    // samples); a study run counts in 32.
    CountWidth counts = CountWidth::Bits16;
    // Keeps homozygotes out of the pool the rounds draw from. Every run of the program leaves it
    // off, so that the pool always holds all valid genotypes; the branch stands ready.
    bool heterozygotesOnly = false;
};

// What a run tells its caller while it works. Every member may be left empty but the prompter.
struct RunHooks {
    Prompter* prompter = nullptr;
    std::function<void(int maximum, const std::string& caption)> startProgress;
    std::function<void(int value)> progress;
    std::function<void()> endProgress;
    // The run met too many samples: the screen shows the data afresh.
    std::function<void()> resetDisplay;
};

}  // namespace tavrelle
