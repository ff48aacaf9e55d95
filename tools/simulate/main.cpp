// tavrelle-simulate: writes simulated microsatellite data as a Genepop file. See --help and
// docs/simulator.md.

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "Simulator.h"

namespace {

namespace sim = tavrelle::simulate;

constexpr std::string_view kVersion = "tavrelle-simulate 1.0";

constexpr std::string_view kHelp = R"(Usage: tavrelle-simulate [OPTION]...

Writes simulated microsatellite genotypes of diploid populations as a Genepop file, with null
alleles, stutter, large allele drop-out and missing genotypes at chosen loci and rates. The same
options (seed included) give a byte-identical file on any machine.

Options:
  --seed N              random seed, 0 .. 18446744073709551615 (default 1)
  --populations P       number of populations, 1 .. 10000 (default 1, or the length of the
                        --samples list)
  --samples N[,N...]    samples per population: one number for every population, or one number
                        per population, 1 .. 1000000 each (default 50)
  --loci L              number of loci (default: the number of --locus options, or 8 if there
                        are none); loci beyond those described by --locus are made up
  --locus LOCUS         describes the next locus, in file order (repeat the option)
  --default KEYS        key=value,... taken by every locus that does not set the key itself
  --differentiation D   how far the allele frequencies of populations differ: each frequency
                        is scaled by a random factor 1-D .. 1+D per population, 0 <= D < 1
                        (default 0.3)
  --inbreeding F        chance that an individual's two allele copies at a locus are identical
                        by descent, drawn afresh at each locus, 0 <= F < 1 (default 0)
  --names STYLE         sample names: numbered (pop1_001, pop1_002, ...; the default) or coded
                        (a random three-letter code per population: KRV001, KRV002, ...)
  --title TEXT          first line of the file (default: what made it, the seed, the sizes and
                        the loci with null alleles, stutter, drop-out and missing genotypes)
  --out FILE            the Genepop file to write; '-' or no --out: standard output
  --report FILE         also write a tab-separated table of every locus: its parameters and what
                        the simulation did there (null copies, stutter and drop-out events,
                        missing genotypes, heterozygotes); '-': standard output
  -h, --help            this text
  --version             the version

LOCUS is NAME:KEYS, NAME alone, or KEYS alone (the locus is then named Loc01, Loc02, ... by its
position). KEYS is key=value,key=value,... with these keys; a key that neither the locus nor
--default sets is drawn at random for that locus from the seed:
  repeat=R         motif length in bp, 1..6 (drawn: 2 50%, 3 15%, 4 30%, 5 3%, 6 2%)
  alleles=K        number of visible alleles, 1..200 (drawn: 6..15)
  base=B           smallest allele in bp; the alleles are B, B+R, ..., B+(K-1)R and must stay
                   within 1..999 (drawn: so that they lie within 80..400 bp)
  mode=M           the most frequent allele, counted from the smallest, 1..K (drawn near the
                   middle)
  decay=Q          frequency ratio of neighbouring alleles going away from the mode, 0 < Q <= 1
                   (drawn: 0.55..0.85); every allele is also jittered by a factor 0.6..1.4
  null=F           each allele copy is a null allele with probability F, 0 <= F < 1 (default
                   0); null/null is scored 000000, null/A as the homozygote AA
  stutter=S        a heterozygote whose alleles differ by exactly one repeat is scored as a
                   homozygote with probability S, 0..1 (default 0)
  stutter_keep=W   which allele such a homozygote shows: larger (default), smaller, or either
                   (each half the time)
  dropout=D        in a heterozygote A < B the larger allele drops out with probability
                   D * min(1, (B - A) / span) and the sample is scored AA, 0..1 (default 0)
  dropout_span=W   the span in bp; 0 (default) means the allele size range (K-1)*R
  missing=M        probability that a genotype is lost for no genetic reason and scored
                   000000, 0..1 (default 0)
Scoring follows the true genotype in this order: null alleles, then stutter (one-repeat
heterozygotes only), then drop-out (heterozygotes not hit by stutter), then random missing.

Examples:
  tavrelle-simulate --seed 7 --samples 60 --populations 2 --loci 8 --out test.gen \
      --locus "Abc12:repeat=2,alleles=10,base=100,null=0.2" \
      --locus "Abc31:repeat=4,alleles=8,base=220,stutter=0.3,dropout=0.4" \
      --default missing=0.02
  tavrelle-simulate --seed 1 --samples 750 --loci 20 --out bench750.gen
  tavrelle-simulate --seed 1 --samples 1000,1500,2500 --loci 20 --names coded --out big.gen

Exit status: 0 on success, 2 for bad options, 1 when a file cannot be written.
)";

// A bad command line: reported with a hint to --help, exit status 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Options {
    std::uint64_t seed = 1;
    std::optional<int> populations;
    std::vector<int> samples{50};
    bool samplesGiven = false;
    std::optional<int> loci;
    std::vector<sim::LocusRequest> locusRequests;
    sim::LocusRequest defaults;
    double differentiation = 0.3;
    double inbreeding = 0.0;
    sim::NameStyle names = sim::NameStyle::kNumbered;
    std::optional<std::string> title;
    std::string out = "-";
    std::optional<std::string> report;
    bool help = false;
    bool version = false;
};

template <typename T>
T ParseNumber(std::string_view option, std::string_view text, T lo, T hi) {
    T value{};
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc() || result.ptr != end || value < lo || value > hi) {
        throw UsageError(std::string(option) + " needs a whole number in " + std::to_string(lo) +
                         " .. " + std::to_string(hi) + ", not '" + std::string(text) + "'");
    }
    return value;
}

double ParseFraction(std::string_view option, std::string_view text) {
    double value = 0.0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, std::chars_format::general);
    if (text.empty() || result.ec != std::errc() || result.ptr != end) {
        throw UsageError(std::string(option) + " needs a number, not '" + std::string(text) + "'");
    }
    return value;
}

std::vector<int> ParseSamples(std::string_view text) {
    std::vector<int> counts;
    std::size_t start = 0;
    while (true) {
        const auto comma = text.find(',', start);
        const auto item =
            text.substr(start, comma == std::string_view::npos ? text.npos : comma - start);
        counts.push_back(ParseNumber<int>("--samples", item, 1, 1'000'000));
        if (comma == std::string_view::npos) break;
        start = comma + 1;
    }
    return counts;
}

sim::LocusRequest ParseRequest(std::string_view option, std::string_view text) {
    try {
        return sim::ParseLocusRequest(text);
    } catch (const std::invalid_argument& error) {
        throw UsageError(std::string(option) + " '" + std::string(text) + "': " + error.what());
    }
}

Options ParseCommandLine(const std::vector<std::string_view>& args) {
    Options options;
    for (std::size_t i = 0; i < args.size(); ++i) {
        std::string_view arg = args[i];
        if (arg == "-h" || arg == "--help") {
            options.help = true;
            continue;
        }
        if (arg == "--version") {
            options.version = true;
            continue;
        }
        if (arg.substr(0, 2) != "--") {
            throw UsageError("unexpected argument '" + std::string(arg) + "'");
        }
        // --option=value or --option value
        std::string_view name = arg;
        std::string_view value;
        const auto equals = arg.find('=');
        if (equals != std::string_view::npos) {
            name = arg.substr(0, equals);
            value = arg.substr(equals + 1);
        }
        static constexpr std::string_view kKnown[] = {
            "--seed",  "--populations", "--samples",         "--loci",
            "--locus", "--default",     "--differentiation", "--names",
            "--title", "--out",         "--report",          "--inbreeding"};
        bool known = false;
        for (const auto k : kKnown)
            known = known || k == name;
        if (!known) throw UsageError("unknown option '" + std::string(name) + "'");
        if (equals == std::string_view::npos) {
            if (i + 1 >= args.size()) {
                throw UsageError(std::string(name) + " needs a value");
            }
            value = args[++i];
        }

        if (name == "--seed") {
            options.seed = ParseNumber<std::uint64_t>(name, value, 0, UINT64_MAX);
        } else if (name == "--populations") {
            options.populations = ParseNumber<int>(name, value, 1, 10'000);
        } else if (name == "--samples") {
            options.samples = ParseSamples(value);
            options.samplesGiven = true;
        } else if (name == "--loci") {
            options.loci = ParseNumber<int>(name, value, 1, 10'000);
        } else if (name == "--locus") {
            options.locusRequests.push_back(ParseRequest(name, value));
        } else if (name == "--default") {
            sim::LocusRequest request = ParseRequest(name, value);
            if (!request.name.empty()) {
                throw UsageError("--default takes keys only (key=value,...), not a locus name");
            }
            options.defaults = sim::MergeRequests(options.defaults, request);
        } else if (name == "--differentiation") {
            options.differentiation = ParseFraction(name, value);
        } else if (name == "--inbreeding") {
            options.inbreeding = ParseFraction(name, value);
        } else if (name == "--names") {
            if (value == "numbered") {
                options.names = sim::NameStyle::kNumbered;
            } else if (value == "coded") {
                options.names = sim::NameStyle::kCoded;
            } else {
                throw UsageError("--names must be numbered or coded, not '" + std::string(value) +
                                 "'");
            }
        } else if (name == "--title") {
            options.title = std::string(value);
        } else if (name == "--out") {
            if (value.empty()) throw UsageError("--out needs a file name");
            options.out = std::string(value);
        } else if (name == "--report") {
            if (value.empty()) throw UsageError("--report needs a file name");
            options.report = std::string(value);
        }
    }
    return options;
}

sim::SimulationParameters BuildParameters(const Options& options) {
    sim::SimulationParameters parameters;
    parameters.seed = options.seed;

    std::vector<int> counts = options.samples;
    if (options.populations) {
        const auto wanted = static_cast<std::size_t>(*options.populations);
        if (counts.size() == 1) {
            counts.assign(wanted, counts.front());
        } else if (counts.size() != wanted) {
            throw UsageError("--samples lists " + std::to_string(counts.size()) +
                             " populations but --populations says " + std::to_string(wanted));
        }
    }
    parameters.sample_counts = counts;

    const std::size_t described = options.locusRequests.size();
    std::size_t lociCount = described == 0 ? 8 : described;
    if (options.loci) {
        lociCount = static_cast<std::size_t>(*options.loci);
        if (lociCount < described) {
            throw UsageError("--loci " + std::to_string(lociCount) + " is fewer than the " +
                             std::to_string(described) + " loci described by --locus");
        }
    }
    for (std::size_t l = 0; l < lociCount; ++l) {
        const sim::LocusRequest own =
            l < described ? options.locusRequests[l] : sim::LocusRequest{};
        parameters.loci.push_back(
            sim::ResolveLocus(sim::MergeRequests(options.defaults, own), options.seed, l));
    }

    parameters.differentiation = options.differentiation;
    parameters.inbreeding = options.inbreeding;
    parameters.name_style = options.names;
    if (options.title) {
        if (options.title->empty()) throw UsageError("--title cannot be empty");
        parameters.title = *options.title;
    }
    const std::string error = sim::Validate(parameters);
    if (!error.empty()) throw UsageError(error);
    return parameters;
}

// Writes text to a file (binary, so the line ends stay LF) or to standard output for "-".
bool WriteText(const std::string& path, const std::string& text) {
    if (path == "-") {
        std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
        std::cout.flush();
        return static_cast<bool>(std::cout);
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) return false;
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
}

int Run(const std::vector<std::string_view>& args) {
    const Options options = ParseCommandLine(args);
    if (options.help) {
        std::cout << kHelp;
        return 0;
    }
    if (options.version) {
        std::cout << kVersion << '\n';
        return 0;
    }
    const sim::SimulationParameters parameters = BuildParameters(options);
    const sim::SimulatedData data = sim::Simulate(parameters);

    if (!WriteText(options.out, sim::FormatGenepop(data))) {
        std::cerr << "tavrelle-simulate: cannot write '" << options.out << "'\n";
        return 1;
    }
    if (options.report && !WriteText(*options.report, sim::FormatReport(data))) {
        std::cerr << "tavrelle-simulate: cannot write '" << *options.report << "'\n";
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::vector<std::string_view> args;
        for (int i = 1; i < argc; ++i)
            args.emplace_back(argv[i]);
        return Run(args);
    } catch (const UsageError& error) {
        std::cerr << "tavrelle-simulate: " << error.what()
                  << "\nTry 'tavrelle-simulate --help' for the options.\n";
        return 2;
    } catch (const std::invalid_argument& error) {
        std::cerr << "tavrelle-simulate: " << error.what() << '\n';
        return 2;
    } catch (const std::bad_alloc&) {
        std::cerr << "tavrelle-simulate: out of memory\n";
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "tavrelle-simulate: " << error.what() << '\n';
        return 1;
    }
}
