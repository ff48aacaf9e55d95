#pragma once

#include <string>

#include "run/RunSettings.h"

namespace tavrelle {

// The study report's methods: the randomisation test with the run's rounds and confidence, every
// estimator with its formula, the likelihood models and their choice, and the bootstrap with the
// run's replicates. HTML, for the report's page.
std::string MethodsHtml(const RunSettings& settings);

// The papers behind the estimators and the models, as a list.
std::string ReferencesHtml();

// How to cite Tavrelle: the program's CITATION.cff, embedded when the program was built.
std::string CitationHtml();

}  // namespace tavrelle
