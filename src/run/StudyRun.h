#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/CpuCount.h"
#include "run/PopulationResult.h"
#include "run/RunSettings.h"

namespace tavrelle {

class InputDataSource;

// Every population of a loaded store, in file order; the store's current population is left at
// the last one.
std::vector<StudyPopulation> StudyPopulations(InputDataSource& store);

// The populations numbered `numbers` (from 1, in that order, repeats kept), copying no other;
// a number beyond the file's populations is left out. `count` receives how many there are.
std::vector<StudyPopulation> StudyPopulations(InputDataSource& store,
                                              const std::vector<int>& numbers, int& count);

// The most samples a population of a study may have: its sample rows are numbered in 16 bits
// (the first is row 2). Its counts are 32-bit (CountWidth).
inline constexpr std::int64_t kMostSamples = 32766;

// The Analyse command on one population with nobody at the dialogs: the check, the choice about
// suspect values that the settings make, and the run with a fresh generator from the seed.
// `threaded` draws the random numbers on a second thread.
PopulationResult AnalyseStudyPopulation(StudyPopulation& population, const RunSettings& settings,
                                        bool threaded);

// Analyses the populations in parallel, each on its own, and hands each result to `deliver` in
// file order as soon as it and those before it are done, so that a caller that writes and drops
// them keeps only a few in memory. `deliver` runs on the calling thread. When `cancel` becomes
// true no new population starts; those under way finish and are delivered, and the rest are not.
void RunStudy(std::vector<StudyPopulation>& populations, const RunSettings& settings,
              const std::function<void(PopulationResult&&)>& deliver,
              const std::atomic<bool>* cancel = nullptr);

}  // namespace tavrelle
