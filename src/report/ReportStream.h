#pragma once

#include <memory>
#include <string>

#include "run/PopulationResult.h"
#include "run/RunSettings.h"
#include "run/StudyDriver.h"

namespace tavrelle {

// A report made one population at a time, so that a population's results can be dropped as soon
// as they are written: each call gives the next piece of text.
class ReportStream {
public:
    virtual ~ReportStream() = default;
    virtual std::string Begin(const StudyHeader& header) = 0;
    virtual std::string Population(const PopulationResult& population) = 0;
    virtual std::string End() = 0;
};

// The JSON report other programs read; its field names are a contract.
std::unique_ptr<ReportStream> MakeJsonReport();

// The readable report for people.
std::unique_ptr<ReportStream> MakeTextReport();

// The study report: one HTML page, written whole at the end, as its overview needs every
// population; each population's sections are made as it comes and its results dropped.
std::unique_ptr<ReportStream> MakeHtmlReport();

// The tidy table for R and pandas: one row per population and locus, one row for a population
// that was not analysed.
std::unique_ptr<ReportStream> MakeCsvReport();

}  // namespace tavrelle
