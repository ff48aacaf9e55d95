#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "population/DataFormat.h"
#include "population/GenalexTable.h"
#include "population/GenepopText.h"
#include "population/StructureText.h"
#include "population/TidyGenotypes.h"

namespace tavrelle::fuzz {

// Bytes through one text reader. A file it reads must come back the same through the writers
// that keep everything (Genepop when it can hold the data, GenAlEx always); a refusal must name
// a problem. Anything else (a crash, a hang, a difference) is a finding.
inline int ReadGenotypeBytes(const std::uint8_t* data, std::size_t size, FormatChoice choice) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const GenotypeRead read = ReadGenotypeText(bytes, "fuzz", choice);
    if (!read.Ok()) {
        if (read.problems.empty()) std::abort();
        return 0;
    }
    for (const GenotypePopulation& population : read.data.populations)
        for (const GenotypeSample& sample : population.samples)
            if (sample.genotypes.size() != read.data.loci.size()) std::abort();
    GenotypeRead refusal;
    const std::string genepop = GenepopText(read.data, refusal);
    if (refusal.Ok()) {
        GenotypeData back = ReadGenepopText(genepop, "back").data;
        GenotypeData expected = read.data;
        for (GenotypePopulation& population : expected.populations)
            population.name.clear();
        if (!(back == expected)) std::abort();
    }
    GenotypeData expected = read.data;
    const std::vector<std::string> labels = PopulationLabels(expected);
    for (std::size_t p = 0; p < expected.populations.size(); ++p)
        expected.populations[p].name = labels[p];
    const GenotypeRead genalex = ReadGenalexCsv(GenalexCsv(read.data), "back");
    if (!genalex.Ok() || !(genalex.data.loci == expected.loci) ||
        !(genalex.data.populations == expected.populations))
        std::abort();
    return 0;
}

}  // namespace tavrelle::fuzz
