#include "population/ReadProblems.h"

namespace tavrelle {

std::string LocatedText(const std::string& file, const ReadProblem& problem) {
    std::string text = file;
    if (problem.line > 0) text += ":" + std::to_string(problem.line);
    text += ": ";
    if (!problem.sample.empty()) text += "sample '" + problem.sample + "', ";
    if (!problem.locus.empty()) text += "locus '" + problem.locus + "', ";
    if (!problem.sample.empty() || !problem.locus.empty()) {
        text.erase(text.size() - 2);
        text += ": ";
    }
    return text + problem.what;
}

void GenotypeRead::Problem(std::size_t line, std::string sample, std::string locus,
                           std::string what) {
    ++problemCount;
    if (problems.size() < kProblemsKept)
        problems.push_back({line, std::move(sample), std::move(locus), std::move(what)});
}

void GenotypeRead::Note(std::size_t line, std::string what) {
    notes.push_back({line, "", "", std::move(what)});
}

std::string GenotypeRead::ProblemText() const {
    std::string text;
    for (const ReadProblem& problem : problems)
        text += LocatedText(file, problem) + "\n";
    if (problemCount > problems.size())
        text += "... and " + std::to_string(problemCount - problems.size()) + " more problem" +
                (problemCount - problems.size() == 1 ? "" : "s") + "\n";
    return text;
}

}  // namespace tavrelle
