#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/CountWidth.h"
#include "base/Int16.h"
#include "base/Prompter.h"

namespace tavrelle {

// What a run takes from the screen that starts it: a copy, so that the run never reads the
// screen and several runs can go at once.
struct RunSettings {
    std::int32_t seed = 0;
    Int16 randomisations = 1000;
    Int16 confidenceCode = 0;
    std::vector<Int16> repeatCodes;  // per locus: the repeat length in bases
    bool isExcel = false;            // the population came from a workbook (its name is elsewhere)
    std::filesystem::path tableFolder;
    bool threaded = false;  // draw the random numbers on a second thread
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
