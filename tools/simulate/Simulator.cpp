#include "Simulator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ostream>
#include <stdexcept>
#include <system_error>

#include "Random.h"

namespace tavrelle::simulate {

namespace {

// What a random stream is for; part of every stream's seed. Never renumber these: doing so
// changes every simulated file.
enum StreamPurpose : std::uint64_t {
    kLocusDefaults = 1,
    kLocusShape = 2,
    kPopulationFrequencies = 3,
    kGenotypes = 4,
    kSampleNames = 5,
    kIdentityByDescent = 6,  // its own stream, so that F = 0 leaves every other draw as it was
};

// Draws per genotype, used or not, so that no parameter shifts the draws of later samples.
constexpr int kDrawsPerGenotype = 8;

constexpr int kMaxAlleles = 200;
constexpr int kMaxSamplesPerPopulation = 1'000'000;
constexpr std::size_t kMaxPopulations = 10'000;
constexpr std::size_t kMaxLoci = 10'000;
constexpr std::size_t kMaxNameLength = 64;

// Default allele sizes are placed within this window when they fit.
constexpr int kDefaultLowestSize = 80;
constexpr int kDefaultHighestSize = 400;

std::string Trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(" \t");
    return std::string(text.substr(first, last - first + 1));
}

std::string Lower(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

// Shortest text that reads back as the same double; never depends on the locale.
std::string NumberText(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

int ParseInt(std::string_view key, std::string_view text) {
    int value = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc() || result.ptr != end) {
        throw std::invalid_argument("'" + std::string(key) + "' needs a whole number, not '" +
                                    std::string(text) + "'");
    }
    return value;
}

double ParseDouble(std::string_view key, std::string_view text) {
    double value = 0.0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, std::chars_format::general);
    if (text.empty() || result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) {
        throw std::invalid_argument("'" + std::string(key) + "' needs a number, not '" +
                                    std::string(text) + "'");
    }
    return value;
}

StutterKeep ParseKeep(std::string_view text) {
    const std::string lower = Lower(text);
    if (lower == "larger") return StutterKeep::kLarger;
    if (lower == "smaller") return StutterKeep::kSmaller;
    if (lower == "either") return StutterKeep::kEither;
    throw std::invalid_argument("'stutter_keep' must be larger, smaller or either, not '" +
                                std::string(text) + "'");
}

template <typename T>
void Take(std::optional<T>& field, const std::optional<T>& fallback) {
    if (!field) field = fallback;
}

// A whole number from a uniform draw: lo + floor(u * (hi - lo + 1)), within lo .. hi.
int Scale(double u, int lo, int hi) {
    const int value = lo + static_cast<int>(u * static_cast<double>(hi - lo + 1));
    return std::min(value, hi);
}

std::string LocusError(const LocusParameters& locus) {
    const std::string where = "locus '" + locus.name + "': ";
    if (locus.name.empty()) return "a locus has no name";
    if (locus.name.size() > kMaxNameLength) {
        return where + "names are at most " + std::to_string(kMaxNameLength) + " characters";
    }
    for (const char c : locus.name) {
        if (c <= ' ' || c > '~' || c == ',') {
            return where + "names may not hold blanks, commas or other unusual characters";
        }
    }
    if (Lower(locus.name) == "pop") return where + "'Pop' cannot be a locus name";
    if (locus.repeat < kMinRepeat || locus.repeat > kMaxRepeat) {
        return where + "repeat must be 1..6 bp, not " + std::to_string(locus.repeat);
    }
    if (locus.alleles < 1 || locus.alleles > kMaxAlleles) {
        return where + "alleles must be 1.." + std::to_string(kMaxAlleles) + ", not " +
               std::to_string(locus.alleles);
    }
    if (locus.base < kMinAlleleSize || locus.base > kMaxAlleleSize) {
        return where + "base must be 1..999 bp, not " + std::to_string(locus.base);
    }
    const long largest = static_cast<long>(locus.base) +
                         static_cast<long>(locus.alleles - 1) * static_cast<long>(locus.repeat);
    if (largest > kMaxAlleleSize) {
        return where +
               "the largest allele, base + (alleles - 1) * repeat = " + std::to_string(largest) +
               ", exceeds 999 bp";
    }
    if (locus.mode < 1 || locus.mode > locus.alleles) {
        return where + "mode must be 1.." + std::to_string(locus.alleles) +
               " (an allele number), not " + std::to_string(locus.mode);
    }
    if (!(locus.decay > 0.0 && locus.decay <= 1.0)) {
        return where + "decay must be above 0 and at most 1, not " + NumberText(locus.decay);
    }
    if (!(locus.null_frequency >= 0.0 && locus.null_frequency < 1.0)) {
        return where + "null must be at least 0 and below 1, not " +
               NumberText(locus.null_frequency);
    }
    if (!(locus.stutter >= 0.0 && locus.stutter <= 1.0)) {
        return where + "stutter must be 0..1, not " + NumberText(locus.stutter);
    }
    if (!(locus.dropout >= 0.0 && locus.dropout <= 1.0)) {
        return where + "dropout must be 0..1, not " + NumberText(locus.dropout);
    }
    if (locus.dropout_span < 0 || locus.dropout_span > kMaxAlleleSize) {
        return where + "dropout_span must be 0..999 bp, not " + std::to_string(locus.dropout_span);
    }
    if (!(locus.missing >= 0.0 && locus.missing <= 1.0)) {
        return where + "missing must be 0..1, not " + NumberText(locus.missing);
    }
    return {};
}

// The relative frequencies of a locus's alleles before populations differ: a geometric fall-off
// on both sides of the mode, each allele jittered by a factor 0.6..1.4.
std::vector<double> ShapeWeights(const LocusParameters& locus, std::uint64_t seed,
                                 std::size_t index) {
    Random random(StreamSeed(seed, kLocusShape, index));
    std::vector<double> weights(static_cast<std::size_t>(locus.alleles));
    for (int k = 0; k < locus.alleles; ++k) {
        double weight = 1.0;
        const int steps = std::abs(k - (locus.mode - 1));
        for (int s = 0; s < steps; ++s)
            weight *= locus.decay;
        weights[static_cast<std::size_t>(k)] = weight * (0.6 + 0.8 * random.Uniform());
    }
    return weights;
}

// One population's allele frequencies: the locus shape, each allele scaled by a factor
// 1 - D .. 1 + D for differentiation D, normalised.
std::vector<double> PopulationFrequencies(const std::vector<double>& shape, double differentiation,
                                          std::uint64_t seed, std::size_t locus,
                                          std::size_t population) {
    Random random(StreamSeed(seed, kPopulationFrequencies, locus, population));
    std::vector<double> frequencies(shape.size());
    double total = 0.0;
    for (std::size_t k = 0; k < shape.size(); ++k) {
        const double factor = 1.0 - differentiation + 2.0 * differentiation * random.Uniform();
        frequencies[k] = shape[k] * std::max(factor, 1e-6);
        total += frequencies[k];
    }
    for (double& f : frequencies)
        f /= total;
    return frequencies;
}

std::vector<double> Cumulative(const std::vector<double>& frequencies) {
    std::vector<double> cumulative(frequencies.size());
    double sum = 0.0;
    for (std::size_t k = 0; k < frequencies.size(); ++k) {
        sum += frequencies[k];
        cumulative[k] = sum;
    }
    return cumulative;
}

std::size_t Pick(const std::vector<double>& cumulative, double u) {
    const double target = u * cumulative.back();
    for (std::size_t k = 0; k < cumulative.size(); ++k) {
        if (target < cumulative[k]) return k;
    }
    return cumulative.size() - 1;
}

struct LocusModel {
    const LocusParameters* parameters = nullptr;
    std::vector<int> sizes;
    std::vector<double> cumulative;
    double span = 0.0;  // bp at which drop-out reaches full strength
};

void SimulateGenotype(const LocusModel& model, Random& random, bool identicalByDescent,
                      Genotype& truth, Genotype& scored, std::uint8_t& events) {
    const LocusParameters& locus = *model.parameters;
    double u[kDrawsPerGenotype];
    for (double& draw : u)
        draw = random.Uniform();

    int a = u[2] < locus.null_frequency ? 0 : model.sizes[Pick(model.cumulative, u[0])];
    int b = u[3] < locus.null_frequency ? 0 : model.sizes[Pick(model.cumulative, u[1])];
    if (identicalByDescent) b = a;  // one ancestral copy, null or visible, carried twice
    if (a > b) std::swap(a, b);
    truth = {a, b};
    std::uint8_t happened = kNoEvent;

    if (a == 0 && b == 0) {
        scored = {};
        happened |= kNullNull;
    } else if (a == 0) {
        scored = {b, b};
        happened |= kNullMasked;
    } else if (a == b) {
        scored = {a, b};
    } else {
        const int difference = b - a;
        const double dropout =
            model.span > 0.0
                ? locus.dropout * std::min(1.0, static_cast<double>(difference) / model.span)
                : 0.0;
        if (difference == locus.repeat && u[4] < locus.stutter) {
            bool keepLarger = locus.stutter_keep == StutterKeep::kLarger;
            if (locus.stutter_keep == StutterKeep::kEither) keepLarger = u[7] < 0.5;
            scored = keepLarger ? Genotype{b, b} : Genotype{a, a};
            happened |= kStutter;
        } else if (u[5] < dropout) {
            scored = {a, a};
            happened |= kDropout;
        } else {
            scored = {a, b};
        }
    }
    if (u[6] < locus.missing) {
        scored = {};
        happened |= kMissing;
    }
    events = happened;
}

std::string Padded(std::size_t number, int width) {
    std::string digits = std::to_string(number);
    if (static_cast<int>(digits.size()) < width) {
        digits.insert(0, static_cast<std::size_t>(width) - digits.size(), '0');
    }
    return digits;
}

std::vector<std::string> PopulationCodes(std::size_t count, std::uint64_t seed) {
    Random random(StreamSeed(seed, kSampleNames));
    std::vector<std::string> codes;
    codes.reserve(count);
    while (codes.size() < count) {
        std::string code(3, 'A');
        for (char& c : code)
            c = static_cast<char>('A' + random.Between(0, 25));
        if (code == "POP" || std::find(codes.begin(), codes.end(), code) != codes.end()) continue;
        codes.push_back(code);
    }
    return codes;
}

void AppendGenotype(std::string& out, const Genotype& genotype) {
    char digits[6];
    const int values[2] = {genotype.first, genotype.second};
    for (int i = 0; i < 2; ++i) {
        const int v = values[i];
        digits[3 * i] = static_cast<char>('0' + v / 100);
        digits[3 * i + 1] = static_cast<char>('0' + v / 10 % 10);
        digits[3 * i + 2] = static_cast<char>('0' + v % 10);
    }
    out.append(digits, sizeof digits);
}

// "; null A=0.2 B=0.1" for the loci where a rate is above 0, "; null 0.1 at every locus" when
// all loci share it; nothing when no locus has it.
std::string ListOf(const std::vector<LocusParameters>& loci, double LocusParameters::*field,
                   const std::string& label) {
    std::vector<const LocusParameters*> hits;
    for (const auto& locus : loci) {
        if (locus.*field > 0.0) hits.push_back(&locus);
    }
    if (hits.empty()) return {};
    const double first = hits.front()->*field;
    const bool shared = hits.size() == loci.size() && loci.size() > 1 &&
                        std::all_of(hits.begin(), hits.end(),
                                    [&](const LocusParameters* l) { return l->*field == first; });
    if (shared) return "; " + label + " " + NumberText(first) + " at every locus";
    std::string text = "; " + label;
    constexpr std::size_t kShown = 10;
    for (std::size_t i = 0; i < hits.size() && i < kShown; ++i) {
        text += " " + hits[i]->name + "=" + NumberText(hits[i]->*field);
    }
    if (hits.size() > kShown) text += " and " + std::to_string(hits.size() - kShown) + " more";
    return text;
}

}  // namespace

std::string_view ToText(StutterKeep keep) {
    switch (keep) {
        case StutterKeep::kLarger:
            return "larger";
        case StutterKeep::kSmaller:
            return "smaller";
        case StutterKeep::kEither:
            return "either";
    }
    return "larger";
}

LocusRequest ParseLocusRequest(std::string_view text) {
    LocusRequest request;
    std::string_view keys = text;
    const auto colon = text.find(':');
    if (colon != std::string_view::npos) {
        request.name = Trim(text.substr(0, colon));
        keys = text.substr(colon + 1);
        if (request.name.empty())
            throw std::invalid_argument("nothing before ':' in '" + std::string(text) + "'");
    } else if (text.find('=') == std::string_view::npos) {
        request.name = Trim(text);
        keys = {};
        if (request.name.empty()) throw std::invalid_argument("an empty locus description");
    }
    while (!Trim(keys).empty()) {
        const auto comma = keys.find(',');
        const std::string item = Trim(keys.substr(0, comma));
        keys = comma == std::string_view::npos ? std::string_view{} : keys.substr(comma + 1);
        if (item.empty()) continue;
        const auto equals = item.find('=');
        if (equals == std::string::npos) {
            throw std::invalid_argument("'" + item + "' is not key=value");
        }
        const std::string key = Lower(Trim(std::string_view(item).substr(0, equals)));
        const std::string value = Trim(std::string_view(item).substr(equals + 1));
        if (key == "repeat") {
            request.repeat = ParseInt(key, value);
        } else if (key == "alleles") {
            request.alleles = ParseInt(key, value);
        } else if (key == "base") {
            request.base = ParseInt(key, value);
        } else if (key == "mode") {
            request.mode = ParseInt(key, value);
        } else if (key == "decay") {
            request.decay = ParseDouble(key, value);
        } else if (key == "null") {
            request.null_frequency = ParseDouble(key, value);
        } else if (key == "stutter") {
            request.stutter = ParseDouble(key, value);
        } else if (key == "stutter_keep") {
            request.stutter_keep = ParseKeep(value);
        } else if (key == "dropout") {
            request.dropout = ParseDouble(key, value);
        } else if (key == "dropout_span") {
            request.dropout_span = ParseInt(key, value);
        } else if (key == "missing") {
            request.missing = ParseDouble(key, value);
        } else {
            throw std::invalid_argument(
                "unknown key '" + key +
                "' (known: repeat, alleles, base, mode, decay, null, stutter, stutter_keep, "
                "dropout, dropout_span, missing)");
        }
    }
    return request;
}

LocusRequest MergeRequests(const LocusRequest& defaults, const LocusRequest& own) {
    LocusRequest merged = own;
    if (merged.name.empty()) merged.name = defaults.name;
    Take(merged.repeat, defaults.repeat);
    Take(merged.alleles, defaults.alleles);
    Take(merged.base, defaults.base);
    Take(merged.mode, defaults.mode);
    Take(merged.decay, defaults.decay);
    Take(merged.null_frequency, defaults.null_frequency);
    Take(merged.stutter, defaults.stutter);
    Take(merged.stutter_keep, defaults.stutter_keep);
    Take(merged.dropout, defaults.dropout);
    Take(merged.dropout_span, defaults.dropout_span);
    Take(merged.missing, defaults.missing);
    return merged;
}

LocusParameters ResolveLocus(const LocusRequest& request, std::uint64_t seed, std::size_t index) {
    // Always the same five draws, whichever fields are open.
    Random random(StreamSeed(seed, kLocusDefaults, index));
    const double repeatDraw = random.Uniform();
    const double allelesDraw = random.Uniform();
    const double baseDraw = random.Uniform();
    const double modeDraw = random.Uniform();
    const double decayDraw = random.Uniform();

    LocusParameters locus;
    locus.name = request.name.empty() ? "Loc" + Padded(index + 1, 2) : request.name;

    // Mostly dinucleotides and tetranucleotides, as in most published panels.
    int repeat = 2;
    if (repeatDraw >= 0.98) {
        repeat = 6;
    } else if (repeatDraw >= 0.95) {
        repeat = 5;
    } else if (repeatDraw >= 0.65) {
        repeat = 4;
    } else if (repeatDraw >= 0.5) {
        repeat = 3;
    }
    locus.repeat = request.repeat.value_or(repeat);
    locus.alleles = request.alleles.value_or(Scale(allelesDraw, 6, 15));

    const long span = static_cast<long>(std::max(locus.alleles - 1, 0)) *
                      static_cast<long>(std::max(locus.repeat, 0));
    int lowest = kDefaultLowestSize;
    long highest = kDefaultHighestSize - span;
    if (highest < lowest) {
        lowest = kMinAlleleSize;
        highest = kMaxAlleleSize - span;
    }
    const int base =
        highest < lowest ? kMinAlleleSize : Scale(baseDraw, lowest, static_cast<int>(highest));
    locus.base = request.base.value_or(base);

    const int alleles = std::max(locus.alleles, 1);
    locus.mode = request.mode.value_or(Scale(modeDraw, 1 + alleles / 4, alleles - alleles / 4));
    locus.decay = request.decay.value_or(std::round(55.0 + 30.0 * decayDraw) / 100.0);
    locus.null_frequency = request.null_frequency.value_or(0.0);
    locus.stutter = request.stutter.value_or(0.0);
    locus.stutter_keep = request.stutter_keep.value_or(StutterKeep::kLarger);
    locus.dropout = request.dropout.value_or(0.0);
    locus.dropout_span = request.dropout_span.value_or(0);
    locus.missing = request.missing.value_or(0.0);
    return locus;
}

std::vector<int> AlleleSizes(const LocusParameters& locus) {
    std::vector<int> sizes;
    sizes.reserve(static_cast<std::size_t>(std::max(locus.alleles, 0)));
    for (int k = 0; k < locus.alleles; ++k)
        sizes.push_back(locus.base + k * locus.repeat);
    return sizes;
}

std::string Validate(const SimulationParameters& parameters) {
    if (parameters.sample_counts.empty()) return "there must be at least one population";
    if (parameters.sample_counts.size() > kMaxPopulations) {
        return "at most " + std::to_string(kMaxPopulations) + " populations";
    }
    for (const int count : parameters.sample_counts) {
        if (count < 1 || count > kMaxSamplesPerPopulation) {
            return "samples per population must be 1.." + std::to_string(kMaxSamplesPerPopulation) +
                   ", not " + std::to_string(count);
        }
    }
    if (parameters.loci.empty()) return "there must be at least one locus";
    if (parameters.loci.size() > kMaxLoci) {
        return "at most " + std::to_string(kMaxLoci) + " loci";
    }
    for (std::size_t i = 0; i < parameters.loci.size(); ++i) {
        const std::string error = LocusError(parameters.loci[i]);
        if (!error.empty()) return error;
        for (std::size_t j = 0; j < i; ++j) {
            if (Lower(parameters.loci[j].name) == Lower(parameters.loci[i].name)) {
                return "two loci are named '" + parameters.loci[i].name + "'";
            }
        }
    }
    if (!(parameters.differentiation >= 0.0 && parameters.differentiation < 1.0)) {
        return "differentiation must be at least 0 and below 1, not " +
               NumberText(parameters.differentiation);
    }
    if (!(parameters.inbreeding >= 0.0 && parameters.inbreeding < 1.0)) {
        return "inbreeding must be at least 0 and below 1, not " +
               NumberText(parameters.inbreeding);
    }
    if (parameters.title.find_first_of("\r\n") != std::string::npos) {
        return "the title must be a single line";
    }
    std::int64_t samples = 0;
    for (const int count : parameters.sample_counts)
        samples += count;
    const auto loci = static_cast<std::int64_t>(parameters.loci.size());
    if (samples > kMaxGenotypes / loci) {
        return "samples x loci = " + std::to_string(samples) + " x " + std::to_string(loci) +
               " exceeds the limit of " + std::to_string(kMaxGenotypes) + " genotypes";
    }
    return {};
}

std::string Describe(const SimulationParameters& parameters) {
    const auto& counts = parameters.sample_counts;
    std::string text = "Simulated by tavrelle-simulate, seed " + std::to_string(parameters.seed) +
                       ": " + std::to_string(counts.size()) +
                       (counts.size() == 1 ? " population (" : " populations (");
    const bool allEqual =
        std::all_of(counts.begin(), counts.end(), [&](int c) { return c == counts.front(); });
    if (counts.size() > 1 && allEqual) {
        text += std::to_string(counts.front()) + " samples each";
    } else if (counts.size() <= 10) {
        for (std::size_t i = 0; i < counts.size(); ++i) {
            text += (i == 0 ? "" : ", ") + std::to_string(counts[i]);
        }
        text += counts.size() == 1 && counts.front() == 1 ? " sample" : " samples";
    } else {
        std::int64_t total = 0;
        for (const int c : counts)
            total += c;
        text += std::to_string(total) + " samples in all";
    }
    text += "), " + std::to_string(parameters.loci.size()) +
            (parameters.loci.size() == 1 ? " locus" : " loci");
    if (counts.size() > 1) text += ", differentiation " + NumberText(parameters.differentiation);
    if (parameters.inbreeding > 0.0) text += ", inbreeding F " + NumberText(parameters.inbreeding);

    const auto& loci = parameters.loci;
    text += ListOf(loci, &LocusParameters::null_frequency, "null");
    text += ListOf(loci, &LocusParameters::stutter, "stutter");
    text += ListOf(loci, &LocusParameters::dropout, "dropout");
    text += ListOf(loci, &LocusParameters::missing, "missing");
    const bool clean = std::all_of(loci.begin(), loci.end(), [](const LocusParameters& l) {
        return l.null_frequency == 0.0 && l.stutter == 0.0 && l.dropout == 0.0 && l.missing == 0.0;
    });
    if (clean) text += "; no null alleles, stutter, drop-out or missing genotypes";
    return text;
}

SimulatedData Simulate(const SimulationParameters& parameters) {
    const std::string error = Validate(parameters);
    if (!error.empty()) throw std::invalid_argument(error);

    SimulatedData data;
    data.title = parameters.title.empty() ? Describe(parameters) : parameters.title;
    data.loci = parameters.loci;

    const std::size_t lociCount = data.loci.size();
    std::vector<std::vector<double>> shapes;
    std::vector<LocusModel> models(lociCount);
    for (std::size_t l = 0; l < lociCount; ++l) {
        const LocusParameters& locus = data.loci[l];
        shapes.push_back(ShapeWeights(locus, parameters.seed, l));
        models[l].parameters = &data.loci[l];
        models[l].sizes = AlleleSizes(locus);
        const int span =
            locus.dropout_span > 0 ? locus.dropout_span : (locus.alleles - 1) * locus.repeat;
        models[l].span = static_cast<double>(span);
    }

    const auto& counts = parameters.sample_counts;
    const int maxCount = *std::max_element(counts.begin(), counts.end());
    const int width = std::max(3, static_cast<int>(std::to_string(maxCount).size()));
    std::vector<std::string> codes;
    if (parameters.name_style == NameStyle::kCoded) {
        codes = PopulationCodes(counts.size(), parameters.seed);
    }

    data.populations.resize(counts.size());
    for (std::size_t p = 0; p < counts.size(); ++p) {
        Population& population = data.populations[p];
        const auto n = static_cast<std::size_t>(counts[p]);
        population.samples.resize(n);
        const std::string prefix = parameters.name_style == NameStyle::kCoded
                                       ? codes[p]
                                       : "pop" + std::to_string(p + 1) + "_";
        for (std::size_t i = 0; i < n; ++i) {
            Sample& sample = population.samples[i];
            sample.name = prefix + Padded(i + 1, width);
            sample.scored.resize(lociCount);
            sample.truth.resize(lociCount);
            sample.events.resize(lociCount);
        }
        population.frequencies.resize(lociCount);
        for (std::size_t l = 0; l < lociCount; ++l) {
            population.frequencies[l] =
                PopulationFrequencies(shapes[l], parameters.differentiation, parameters.seed, l, p);
            LocusModel& model = models[l];
            model.cumulative = Cumulative(population.frequencies[l]);
            Random random(StreamSeed(parameters.seed, kGenotypes, l, p));
            Random descent(StreamSeed(parameters.seed, kIdentityByDescent, l, p));
            for (Sample& sample : population.samples) {
                const bool identical = descent.Uniform() < parameters.inbreeding;
                SimulateGenotype(model, random, identical, sample.truth[l], sample.scored[l],
                                 sample.events[l]);
            }
        }
    }
    return data;
}

std::string FormatGenepop(const SimulatedData& data) {
    std::string out;
    std::size_t samples = 0;
    for (const auto& population : data.populations)
        samples += population.samples.size();
    out.reserve(data.title.size() + 16 * data.loci.size() + samples * (24 + 7 * data.loci.size()) +
                8 * data.populations.size());

    out += data.title;
    out += '\n';
    for (const auto& locus : data.loci) {
        out += locus.name;
        out += '\n';
    }
    for (const auto& population : data.populations) {
        out += "Pop\n";
        for (const auto& sample : population.samples) {
            out += sample.name;
            out += ", ";
            for (const auto& genotype : sample.scored) {
                out += ' ';
                AppendGenotype(out, genotype);
            }
            out += '\n';
        }
    }
    return out;
}

void WriteGenepop(std::ostream& out, const SimulatedData& data) {
    const std::string text = FormatGenepop(data);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

std::vector<LocusSummary> Summarize(const SimulatedData& data) {
    std::vector<LocusSummary> summaries(data.loci.size());
    for (std::size_t l = 0; l < data.loci.size(); ++l)
        summaries[l].name = data.loci[l].name;
    for (const auto& population : data.populations) {
        for (const auto& sample : population.samples) {
            for (std::size_t l = 0; l < data.loci.size(); ++l) {
                LocusSummary& s = summaries[l];
                const Genotype& truth = sample.truth[l];
                const Genotype& scored = sample.scored[l];
                const std::uint8_t events = sample.events[l];
                ++s.genotypes;
                if (scored.IsMissing()) ++s.scored_missing;
                s.null_copies += (truth.first == 0 ? 1 : 0) + (truth.second == 0 ? 1 : 0);
                if (events & kNullMasked) ++s.null_masked;
                if (events & kNullNull) ++s.null_null;
                if (events & kStutter) ++s.stutter;
                if (events & kDropout) ++s.dropout;
                if (events & kMissing) ++s.random_missing;
                if (truth.first != 0 && truth.first != truth.second) ++s.true_heterozygotes;
                if (!scored.IsMissing() && scored.first != scored.second) {
                    ++s.scored_heterozygotes;
                }
            }
        }
    }
    return summaries;
}

std::string FormatReport(const SimulatedData& data) {
    std::string out =
        "locus\trepeat\talleles\tsmallest\tlargest\tmode\tdecay\tnull\tstutter\tstutter_keep\t"
        "dropout\tdropout_span\tmissing\tsamples\tscored_missing\tnull_copies\t"
        "realised_null\tnull_masked\tnull_null\tstutter_events\tdropout_events\t"
        "random_missing\ttrue_heterozygotes\tscored_heterozygotes\n";
    const auto summaries = Summarize(data);
    for (std::size_t l = 0; l < data.loci.size(); ++l) {
        const LocusParameters& p = data.loci[l];
        const LocusSummary& s = summaries[l];
        const int span = p.dropout_span > 0 ? p.dropout_span : (p.alleles - 1) * p.repeat;
        const double realised = s.genotypes > 0 ? static_cast<double>(s.null_copies) /
                                                      (2.0 * static_cast<double>(s.genotypes))
                                                : 0.0;
        const double rounded = std::round(realised * 10000.0) / 10000.0;
        out += p.name + '\t' + std::to_string(p.repeat) + '\t' + std::to_string(p.alleles) + '\t' +
               std::to_string(p.base) + '\t' + std::to_string(p.base + (p.alleles - 1) * p.repeat) +
               '\t' + std::to_string(p.mode) + '\t' + NumberText(p.decay) + '\t' +
               NumberText(p.null_frequency) + '\t' + NumberText(p.stutter) + '\t' +
               std::string(ToText(p.stutter_keep)) + '\t' + NumberText(p.dropout) + '\t' +
               std::to_string(span) + '\t' + NumberText(p.missing) + '\t' +
               std::to_string(s.genotypes) + '\t' + std::to_string(s.scored_missing) + '\t' +
               std::to_string(s.null_copies) + '\t' + NumberText(rounded) + '\t' +
               std::to_string(s.null_masked) + '\t' + std::to_string(s.null_null) + '\t' +
               std::to_string(s.stutter) + '\t' + std::to_string(s.dropout) + '\t' +
               std::to_string(s.random_missing) + '\t' + std::to_string(s.true_heterozygotes) +
               '\t' + std::to_string(s.scored_heterozygotes) + '\n';
    }
    return out;
}

}  // namespace tavrelle::simulate
