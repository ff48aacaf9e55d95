#include "population/GenotypeData.h"

#include "base/Numbers.h"

namespace tavrelle {

std::string PopulationLabel(const GenotypeData& data, std::size_t index) {
    const GenotypePopulation& population = data.populations.at(index);
    if (!population.name.empty()) return population.name;
    if (!population.samples.empty()) {
        std::string_view name = TrimBlanks(population.samples.front().name);
        std::string_view word = name.substr(0, name.find_first_of(" \t"));
        if (!word.empty()) return std::string(word);
    }
    return "Pop" + std::to_string(index + 1);
}

}  // namespace tavrelle
