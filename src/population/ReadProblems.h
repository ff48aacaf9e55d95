#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "population/GenotypeData.h"

namespace tavrelle {

// One thing wrong in a data file, where it is: the line (or sheet row) from 1, 0 for the file
// as a whole; the sample and locus when known; what was expected and what was found.
struct ReadProblem {
    std::size_t line = 0;
    std::string sample;
    std::string locus;
    std::string what;

    bool operator==(const ReadProblem&) const = default;
};

// "FILE:LINE: sample 'S', locus 'L': what", each part only when known.
std::string LocatedText(const std::string& file, const ReadProblem& problem);

// What a reader gives: the data, or the problems that refuse the file (the first
// kProblemsKept of them, and how many there were in all), and notes on what was read as it
// stands but should be said (a count row that disagrees with the rows).
struct GenotypeRead {
    static constexpr std::size_t kProblemsKept = 10;

    std::string file;
    GenotypeData data;
    std::vector<ReadProblem> problems;
    std::size_t problemCount = 0;
    std::vector<ReadProblem> notes;

    bool Ok() const { return problemCount == 0; }
    void Problem(std::size_t line, std::string sample, std::string locus, std::string what);
    void Note(std::size_t line, std::string what);
    // Every kept problem on its own line, then "... and N more" when some were not kept.
    std::string ProblemText() const;
};

}  // namespace tavrelle
