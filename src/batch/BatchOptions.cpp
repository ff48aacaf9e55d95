#include "batch/BatchOptions.h"

#include <functional>
#include <stdexcept>

#include "analysis/SeedText.h"
#include "base/Numbers.h"
#include "batch/ReportOutput.h"

namespace tavrelle {

namespace {

[[noreturn]] void Refuse(const std::string& message) {
    throw std::invalid_argument(message);
}

// A whole number as the program's own boxes test one.
std::int32_t WholeNumber(const std::string& option, const std::string& text) {
    try {
        if (IsWholeNumber(text)) return TextToInt32(text);
    } catch (const ProgramError&) {
    }
    Refuse(option + ": '" + text + "' is not a whole number.");
}

std::int32_t WholeNumberIn(const std::string& option, const std::string& text, std::int32_t low,
                           std::int32_t high) {
    const std::int32_t number = WholeNumber(option, text);
    if (number < low || number > high)
        Refuse(option + ": give a whole number from " + std::to_string(low) + " to " +
               std::to_string(high) + " (got '" + text + "').");
    return number;
}

Int16 RepeatLength(const std::string& option, const std::string& text) {
    std::int32_t repeat = WholeNumber(option, text);
    if (repeat < 1 || repeat > 6)
        Refuse(option + ": the repeat motif is its length in bases, 1 to 6 (got '" + text + "').");
    return static_cast<Int16>(repeat);
}

void AddPopulations(const std::string& text, std::vector<int>& populations) {
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t comma = text.find(',', start);
        std::string item = text.substr(start, comma == std::string::npos ? comma : comma - start);
        std::size_t dash = item.find('-');
        std::int32_t first = WholeNumber("--population", item.substr(0, dash));
        std::int32_t last =
            dash == std::string::npos ? first : WholeNumber("--population", item.substr(dash + 1));
        if (first < 1 || last < first || last > 32767)
            Refuse("--population: '" + item + "' is no population number or range (from 1).");
        for (std::int32_t p = first; p <= last; ++p)
            populations.push_back(p);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
}

void SetSeed(const std::string& text, RunSettings& settings) {
    const SeedReading reading = ParseSeed(text);
    if (reading.refusal == SeedReading::Refusal::TooLarge)
        Refuse("--seed: '" + text + "' is larger than a 32-bit seed.");
    if (!reading.Accepted()) Refuse("--seed: Please enter a positive integer.");
    settings.seed = reading.seed;
    settings.clockSeed = false;
}

Int16 Randomisations(const std::string& text) {
    bool whole = false;
    try {
        whole = IsWholeNumber(text);
    } catch (const ProgramError&) {
    }
    if (!whole) Refuse("--randomisations: Please enter an integer value.");
    std::int32_t count = TextToInt32(text);
    if (count < 1000 || count > 10000)
        Refuse(
            "--randomisations: The number of randomisations entered is outside normal values "
            "(1000 to 10000).");
    return static_cast<Int16>(count);
}

Confidence ConfidenceOption(const std::string& text) {
    if (text == "95" || text == "95%") return Confidence::Percent95;
    if (text == "99" || text == "99%") return Confidence::Percent99;
    if (text == "100" || text == "100%" || text == "range") return Confidence::FullRange;
    if (UpperCase(text) == "BONFERRONI") return Confidence::Bonferroni;
    Refuse("--confidence: choose 95, 99, 100 or bonferroni (got '" + text + "').");
}

void AddRepeat(const std::string& text, BatchOptions& options) {
    std::size_t equals = text.rfind('=');
    if (equals == std::string::npos) {
        options.settings.repeatForAll = RepeatLength("--repeat", text);
        return;
    }
    const std::string name = text.substr(0, equals);
    const Int16 motif = RepeatLength("--repeat", text.substr(equals + 1));
    const auto [given, fresh] = options.repeatByLocus.emplace(name, motif);
    if (!fresh && given->second != motif)
        Refuse("--repeat " + text + ": locus '" + name + "' was given the motif " +
               std::to_string(given->second) + " before. Keep one of them.");
}

SuspectPolicy Policy(const std::string& text) {
    if (text == "stop") return SuspectPolicy::Stop;
    if (text == "omit") return SuspectPolicy::Omit;
    if (text == "proceed") return SuspectPolicy::Proceed;
    Refuse("--on-suspect: choose stop, omit or proceed (got '" + text + "').");
}

std::size_t OverviewEstimate(const std::string& text) {
    std::string keys;
    for (std::size_t e = 0; e < kEstimateKeys.size(); ++e) {
        if (text == kEstimateKeys[e]) return e;
        keys += (e ? ", " : "") + std::string(kEstimateKeys[e]);
    }
    Refuse("--overview-estimate: choose one of " + keys + " (got '" + text + "').");
}

// One option: its name, whether it steers an analysis (and so means nothing to convert), and
// what it does with its value (an empty value for a flag).
struct OptionRow {
    const char* name;
    bool takesValue;
    bool analysisOnly;
    std::function<void(const std::string&, BatchOptions&)> apply;
};

const std::vector<OptionRow>& OptionTable() {
    using O = BatchOptions;
    using S = const std::string&;
    static const std::vector<OptionRow> table = {
        {"--help", false, false, [](S, O& o) { o.help = true; }},
        {"-h", false, false, [](S, O& o) { o.help = true; }},
        {"--version", false, false, [](S, O& o) { o.version = true; }},
        {"--sheet", true, false,
         [](S v, O& o) {
             // As the sheet dialog refuses an empty name.
             if (v.empty()) Refuse("--sheet: Please enter a sheet name.");
             o.sheet = v;
         }},
        {"--accept-numeric-names", false, false, [](S, O& o) { o.acceptNumericNames = true; }},
        {"--format", true, false,
         [](S v, O& o) {
             o.format = ParseFormatName(v);
             if (!o.format) Refuse("--format: choose " + FormatNames() + " (got '" + v + "').");
         }},
        {"--to", true, false, [](S v, O& o) { o.convertTo = v; }},
        {"--population", true, true, [](S v, O& o) { AddPopulations(v, o.populations); }},
        {"--seed", true, true, [](S v, O& o) { SetSeed(v, o.settings); }},
        {"--randomisations", true, true,
         [](S v, O& o) { o.settings.randomisations = Randomisations(v); }},
        {"--confidence", true, true,
         [](S v, O& o) { o.settings.confidence = ConfidenceOption(v); }},
        {"--repeat", true, true, [](S v, O& o) { AddRepeat(v, o); }},
        {"--repeats", true, true, [](S v, O& o) { o.repeatsFile = v; }},
        {"--max-allele-size", true, true,
         [](S v, O& o) {
             o.settings.maxAlleleSize =
                 std::to_string(WholeNumberIn("--max-allele-size", v, 50, 700));
         }},
        {"--on-suspect", true, true, [](S v, O& o) { o.settings.onSuspect = Policy(v); }},
        {"--json", true, true, [](S v, O& o) { o.jsonFile = ReportTarget(v); }},
        {"--csv", true, true, [](S v, O& o) { o.csvFile = ReportTarget(v); }},
        {"--report", true, true, [](S v, O& o) { o.reportFile = ReportTarget(v); }},
        {"--overview-estimate", true, true,
         [](S v, O& o) { o.settings.overviewEstimate = OverviewEstimate(v); }},
        {"--bootstrap", true, true,
         [](S v, O& o) { o.settings.bootstrap = WholeNumberIn("--bootstrap", v, 0, 100000); }},
        {"--threads", true, true,
         [](S v, O& o) { o.settings.threads = WholeNumberIn("--threads", v, 1, 256); }},
    };
    return table;
}

void AddFile(const std::string& argument, BatchOptions& options) {
    if (options.file.empty()) {
        options.file = argument;
    } else if (options.convert && options.convertOutput.empty()) {
        options.convertOutput = argument;
    } else if (options.convert) {
        Refuse("convert takes two files, IN and OUT (got a third, '" + argument + "').");
    } else {
        Refuse("Only one data file at a time (got '" + options.file + "' and '" + argument + "').");
    }
}

// Standard output carries one report at most, or two would run together.
void CheckStandardOutput(const BatchOptions& options) {
    const int toStandardOutput =
        (options.jsonFile == "-") + (options.csvFile == "-") + (options.reportFile == "-");
    if (toStandardOutput > 1)
        Refuse(
            "Only one of --json, --csv and --report may write to standard output (\"-\"); "
            "send the others to files.");
    if (options.convert && options.convertOutput == "-")
        Refuse("convert writes to a file; name one for OUT.");
}

}  // namespace

BatchOptions ParseBatchOptions(const std::vector<std::string>& arguments) {
    BatchOptions options;
    std::size_t first = 0;
    if (!arguments.empty() && arguments[0] == "convert") {
        options.convert = true;
        first = 1;
    }
    for (std::size_t i = first; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const OptionRow* row = nullptr;
        for (const OptionRow& candidate : OptionTable())
            if (argument == candidate.name) row = &candidate;
        if (row == nullptr) {
            // "-" alone is standard input; anything else starting with "-" is an option.
            if (argument.starts_with('-') && argument != "-")
                Refuse("Unknown option " + argument + ". See --help.");
            AddFile(argument, options);
            continue;
        }
        if (options.convert && row->analysisOnly)
            Refuse(argument + " is not used by convert. See --help.");
        if (row->takesValue && i + 1 >= arguments.size()) Refuse(argument + " needs a value.");
        row->apply(row->takesValue ? arguments[++i] : std::string(), options);
    }
    if (options.help || options.version) return options;
    if (options.convert && options.convertOutput.empty())
        Refuse("convert needs two files, IN and OUT. See --help.");
    if (options.file.empty()) Refuse("Name a Genepop or Excel data file. See --help.");
    if (options.convertTo && !options.convert) Refuse("--to is used by convert only. See --help.");
    CheckStandardOutput(options);
    return options;
}

std::string CommandLineText(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments) {
        if (!line.empty()) line += ' ';
        const bool plain =
            !argument.empty() && argument.find_first_not_of(
                                     "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRS"
                                     "TUVWXYZ0123456789-_./=,:+@%") == std::string::npos;
        if (plain) {
            line += argument;
            continue;
        }
        line += '\'';
        for (char c : argument)
            line += c == '\'' ? std::string("'\\''") : std::string(1, c);
        line += '\'';
    }
    return line;
}

}  // namespace tavrelle
