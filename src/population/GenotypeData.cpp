#include "population/GenotypeData.h"

#include "base/Numbers.h"

namespace tavrelle {

namespace {

std::string OwnLabel(const GenotypePopulation& population, std::size_t index) {
    if (!population.name.empty()) return population.name;
    if (!population.samples.empty()) {
        std::string_view name = TrimBlanks(population.samples.front().name);
        std::string_view word = name.substr(0, name.find_first_of(" \t"));
        if (!word.empty()) return std::string(word);
    }
    return "Pop" + std::to_string(index + 1);
}

}  // namespace

std::string PopulationLabel(const GenotypeData& data, std::size_t index) {
    const std::string label = OwnLabel(data.populations.at(index), index);
    if (!data.populations[index].name.empty()) return label;
    // A made-up label must not merge two populations in a format that groups by name.
    for (std::size_t other = 0; other < data.populations.size(); ++other)
        if (other != index && OwnLabel(data.populations[other], other) == label)
            return label + "_" + std::to_string(index + 1);
    return label;
}

}  // namespace tavrelle
