#pragma once

#include <memory>
#include <string>

#include "run/AlleleAnalysis.h"

namespace tavrelle {

// A population analysed as the Analyse command does it: 1000 randomisations, the 95% interval,
// dinucleotide motifs at every locus. Empty when the run failed or stopped.
inline std::unique_ptr<AlleleAnalysis> AnalyseAsTheCommandDoes(const Table& table,
                                                               std::int32_t seed, std::size_t loci,
                                                               const std::string& tables) {
    RecordingPrompter prompter;
    RunSettings settings;
    settings.seed = seed;
    settings.randomisations = 1000;
    settings.repeatCodes.assign(loci, 2);
    settings.tableFolder = tables;
    RunHooks hooks;
    hooks.prompter = &prompter;
    auto analysis = std::make_unique<AlleleAnalysis>(table, settings, hooks);
    if (analysis->RunError() || !analysis->StopMessage().empty()) return nullptr;
    return analysis;
}

}  // namespace tavrelle
