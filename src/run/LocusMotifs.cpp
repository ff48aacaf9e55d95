#include "run/LocusMotifs.h"

#include <algorithm>

#include "base/Numbers.h"
#include "population/LineInput.h"

namespace tavrelle {

namespace {

std::size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::string Listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "'" : ", '") + name + "'";
    return list;
}

}  // namespace

RepeatTable ReadRepeatTable(const std::string& path) {
    std::string bytes;
    try {
        bytes = ReadWholeFile(path);
    } catch (const ProgramError& error) {
        throw std::runtime_error("could not read " + path + ": " + error.Description());
    }
    RepeatTable table{path, {}, {}};
    LineInput lines(std::move(bytes));
    for (int number = 1; !lines.Eof(); ++number) {
        const std::string line = lines.ReadLine();
        const std::string_view trimmed = TrimBlanks(line);
        if (trimmed.empty() || trimmed.starts_with('#')) continue;
        const std::size_t separator = line.find_last_of("\t,");
        const std::string name = separator == std::string::npos
                                     ? ""
                                     : std::string(TrimBlanks(line.substr(0, separator)));
        const std::string motif = separator == std::string::npos
                                      ? ""
                                      : std::string(TrimBlanks(line.substr(separator + 1)));
        const bool valid = !name.empty() && motif.size() == 1 && motif[0] >= '1' && motif[0] <= '6';
        if (!valid)
            throw StudyUsageError("--repeats " + path + ", line " + std::to_string(number) +
                                  ": give a locus name and its motif (1 to 6), separated by a "
                                  "tab or a comma (got '" +
                                  line + "').");
        const auto value = static_cast<Int16>(motif[0] - '0');
        const auto [given, fresh] = table.motifs.emplace(name, value);
        if (!fresh && given->second != value)
            throw StudyUsageError("--repeats " + path + ": line " + std::to_string(number) +
                                  " gives locus '" + name + "' the motif " + motif + ", line " +
                                  std::to_string(table.lines[name]) + " gave it " +
                                  std::to_string(given->second) + ". Keep one of them.");
        if (fresh) table.lines[name] = number;
    }
    return table;
}

std::vector<std::string> ClosestNames(const std::string& name,
                                      const std::vector<std::string>& names) {
    const std::string upper = UpperCase(name);
    // Only the nearest: a name that differs in case alone hides those a letter away.
    std::size_t nearest = std::max<std::size_t>(2, name.size() / 3);
    std::vector<std::string> closest;
    for (const std::string& candidate : names) {
        const std::size_t distance = EditDistance(upper, UpperCase(candidate));
        if (distance < nearest) closest.clear();
        if (distance <= nearest && closest.size() < 3) closest.push_back(candidate);
        nearest = std::min(nearest, distance);
    }
    return closest;
}

std::map<std::string, Int16> MotifsOfLoci(const std::vector<std::string>& loci,
                                          const std::map<std::string, Int16>& byOption,
                                          const RepeatTable& byTable, std::optional<Int16> forAll,
                                          std::ostream& notes) {
    auto known = [&](const std::string& name) {
        return std::find(loci.begin(), loci.end(), name) != loci.end();
    };
    for (const auto& [name, motif] : byOption) {
        if (known(name)) continue;
        const std::vector<std::string> closest = ClosestNames(name, loci);
        throw StudyUsageError("--repeat " + name + "=" + std::to_string(motif) +
                              ": the file has no locus '" + name + "'." +
                              (closest.empty() ? " Its loci: " + Listed(loci) + "."
                                               : " Did you mean " + Listed(closest) + "?"));
    }
    for (const auto& [name, motif] : byTable.motifs) {
        if (known(name)) continue;
        std::vector<std::string> sameButCase;
        for (const std::string& locus : loci)
            if (UpperCase(locus) == UpperCase(name)) sameButCase.push_back(locus);
        if (!sameButCase.empty())
            throw StudyUsageError("--repeats " + byTable.path + ", line " +
                                  std::to_string(byTable.lines.at(name)) +
                                  ": the file has no locus '" + name + "' (names are told apart " +
                                  "by case). Did you mean " + Listed(sameButCase) + "?");
        notes << "tavrelle-batch: note: the --repeats table names '" << name
              << "', which the file has no locus of; it is not used.\n";
    }
    std::map<std::string, Int16> motifs;
    std::vector<std::string> without;
    for (const std::string& locus : loci) {
        if (auto named = byOption.find(locus); named != byOption.end())
            motifs[locus] = named->second;
        else if (auto listed = byTable.motifs.find(locus); listed != byTable.motifs.end())
            motifs[locus] = listed->second;
        else if (forAll)
            motifs[locus] = *forAll;
        else
            without.push_back(locus);
    }
    if (!without.empty())
        throw StudyUsageError("no repeat motif for " + std::to_string(without.size()) +
                              " locus/loci: " + Listed(without) +
                              ". Give --repeat N for every locus, --repeat NAME=N, or --repeats "
                              "FILE.");
    return motifs;
}

}  // namespace tavrelle
