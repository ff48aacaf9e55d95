#include "population/GenotypeData.h"

#include <set>

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

std::vector<std::string> PopulationLabels(const GenotypeData& data) {
    const std::size_t count = data.populations.size();
    std::vector<std::string> own(count);
    std::set<std::string> taken;
    for (std::size_t p = 0; p < count; ++p) {
        own[p] = OwnLabel(data.populations[p], p);
        if (!data.populations[p].name.empty()) taken.insert(own[p]);
    }
    // A made-up label must not merge two populations in a format that groups by name, nor take
    // the name another population has or was given.
    std::vector<std::string> labels(count);
    for (std::size_t p = 0; p < count; ++p) {
        std::string label = own[p];
        if (data.populations[p].name.empty()) {
            const std::string suffix = "_" + std::to_string(p + 1);
            for (std::size_t other = 0; other < count; ++other)
                if (other != p && own[other] == label) {
                    label += suffix;
                    break;
                }
            while (taken.contains(label))
                label += suffix;
            taken.insert(label);
        }
        labels[p] = std::move(label);
    }
    return labels;
}

}  // namespace tavrelle
