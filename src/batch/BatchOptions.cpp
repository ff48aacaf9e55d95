#include "batch/BatchOptions.h"

#include <stdexcept>

#include "base/Numbers.h"

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

// Options that steer an analysis, which mean nothing to a conversion.
bool IsAnalysisOption(const std::string& argument) {
    for (const char* option : {"--population", "--seed", "--randomisations", "--confidence",
                               "--repeat", "--max-allele-size", "--on-suspect", "--json", "--csv",
                               "--report", "--threads", "--bootstrap"})
        if (argument == option) return true;
    return false;
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
        auto value = [&]() -> const std::string& {
            if (i + 1 >= arguments.size()) Refuse(argument + " needs a value.");
            return arguments[++i];
        };
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--sheet") {
            options.sheet = value();
            // As the sheet dialog refuses an empty name.
            if (options.sheet.empty()) Refuse("--sheet: Please enter a sheet name.");
        } else if (argument == "--accept-numeric-names") {
            options.acceptNumericNames = true;
        } else if (options.convert && IsAnalysisOption(argument)) {
            Refuse(argument + " is not used by convert. See --help.");
        } else if (argument == "--population") {
            AddPopulations(value(), options.populations);
        } else if (argument == "--seed") {
            const std::string& text = value();
            // As the seed box takes it: numeric, no point, not negative; 0 is taken.
            if (text.find('.') != std::string::npos || !IsNumeric(text))
                Refuse("--seed: Please enter a positive integer.");
            std::int32_t seed = 0;
            try {
                seed = TextToInt32(text);
            } catch (const ProgramError&) {
                Refuse("--seed: '" + text + "' is larger than a 32-bit seed.");
            }
            if (seed < 0) Refuse("--seed: Please enter a positive integer.");
            options.seed = seed;
        } else if (argument == "--randomisations") {
            const std::string& text = value();
            bool whole = false;
            try {
                whole = IsWholeNumber(text);
            } catch (const ProgramError&) {
            }
            if (!whole) Refuse("--randomisations: Please enter an integer value.");
            std::int32_t count = TextToInt32(text);
            if (count < 1000 || count > 10000)
                Refuse(
                    "--randomisations: The number of randomisations entered is outside normal "
                    "values (1000 to 10000).");
            options.randomisations = static_cast<Int16>(count);
        } else if (argument == "--confidence") {
            const std::string& text = value();
            if (text == "95" || text == "95%")
                options.confidenceCode = 0;
            else if (text == "99" || text == "99%")
                options.confidenceCode = 1;
            else if (text == "100" || text == "100%" || text == "range")
                options.confidenceCode = 2;
            else if (UpperCase(text) == "BONFERRONI")
                options.confidenceCode = 3;
            else
                Refuse("--confidence: choose 95, 99, 100 or bonferroni (got '" + text + "').");
        } else if (argument == "--repeat") {
            const std::string& text = value();
            std::size_t equals = text.rfind('=');
            if (equals == std::string::npos)
                options.repeatForAll = RepeatLength("--repeat", text);
            else
                options.repeatByLocus[text.substr(0, equals)] =
                    RepeatLength("--repeat", text.substr(equals + 1));
        } else if (argument == "--max-allele-size") {
            options.maxAlleleSize = value();
        } else if (argument == "--on-suspect") {
            const std::string& text = value();
            if (text == "stop")
                options.onSuspect = SuspectPolicy::Stop;
            else if (text == "omit")
                options.onSuspect = SuspectPolicy::Omit;
            else if (text == "proceed")
                options.onSuspect = SuspectPolicy::Proceed;
            else
                Refuse("--on-suspect: choose stop, omit or proceed (got '" + text + "').");
        } else if (argument == "--json") {
            options.jsonFile = value();
        } else if (argument == "--csv") {
            options.csvFile = value();
        } else if (argument == "--report") {
            options.reportFile = value();
        } else if (argument == "--threads") {
            std::int32_t threads = WholeNumber("--threads", value());
            if (threads < 1 || threads > 256) Refuse("--threads: give 1 to 256.");
            options.threads = threads;
        } else if (argument == "--bootstrap") {
            std::int32_t replicates = WholeNumber("--bootstrap", value());
            if (replicates < 0 || replicates > 100000) Refuse("--bootstrap: give 0 to 100000.");
            options.bootstrap = replicates;
        } else if (argument.starts_with("--")) {
            Refuse("Unknown option " + argument + ". See --help.");
        } else if (options.file.empty()) {
            options.file = argument;
        } else if (options.convert && options.convertOutput.empty()) {
            options.convertOutput = argument;
        } else if (options.convert) {
            Refuse("convert takes two files, IN and OUT (got a third, '" + argument + "').");
        } else {
            Refuse("Only one data file at a time (got '" + options.file + "' and '" + argument +
                   "').");
        }
    }
    if (options.help) return options;
    if (options.convert && options.convertOutput.empty())
        Refuse("convert needs two files, IN and OUT. See --help.");
    if (options.file.empty()) Refuse("Name a Genepop or Excel data file. See --help.");
    return options;
}

std::string BatchUsage() {
    return R"(Usage: tavrelle-batch FILE [options]
       tavrelle-batch convert IN OUT [--sheet NAME] [--accept-numeric-names]

Analyses every population of a data file (or the ones chosen) for null alleles, stutter and
large allele drop-out, as the desktop program does, and reports the results as text on standard
output, and optionally as JSON and CSV.

The format is told by the file name's ending alone, as in the desktop program: ".xlsx" (any
case) is an Excel workbook, a name ending in "xls" (any case) an Excel 97-2003 workbook, and
any other name a Genepop file. A workbook sheet holds a title row, a row of locus names (one
name per two columns, from column B), then one sample per row: the name in column A and the two
alleles of each locus; "*" or an empty cell is a missing allele, and a row with "pop" in column A
starts the next population.

Options:
  --sheet NAME             The workbook's sheet that holds the data. Default Sheet1. Names are
                           compared without regard to case. Example: --sheet "Field data"
  --accept-numeric-names   Load a sheet whose locus names are all numbers as it stands. Without
                           it such a sheet is refused, since it usually lacks its row of locus
                           names and its first sample would be taken for them.
  --repeat N               Repeat motif length in bases (1 to 6) for every locus.
                           Example: --repeat 2
  --repeat NAME=N          Repeat motif of one locus by its name; repeat the option for more
                           loci. Overrides the value for every locus.
                           Example: --repeat Loc3=4 --repeat "Loc 7=3"
  --seed S                 Seed of the random number generator (0 or more). Default: the clock
                           seed, printed in the report. Example: --seed 12345
  --randomisations N       Randomised samples per locus, 1000 to 10000. Default 1000.
                           Example: --randomisations 10000
  --confidence C           Confidence interval: 95, 99, 100 (the full range) or bonferroni.
                           Default 95. Example: --confidence 99
  --max-allele-size N      Largest allele size expected (the check keeps it within 50 to 700).
                           Default 350. Example: --max-allele-size 500
  --on-suspect A           What to do with values the check finds suspect: stop (the population
                           is not analysed), omit (the suspect alleles become missing, 0) or
                           proceed (only values that are no whole number become 0).
                           Default stop. Example: --on-suspect omit
  --population LIST        Analyse only these populations, numbered from 1 in file order.
                           Example: --population 1,3-5
  --json FILE              Write the JSON report to FILE ("-" for standard output, which then
                           carries the JSON alone). Example: --json report.json
  --csv FILE               Write one row per population and locus for R and spreadsheets.
                           Example: --csv loci.csv
  --report FILE            Write the study report: one HTML page with the settings, the overview
                           table, the heat map and every locus's graphs and verdicts.
                           Example: --report report.html
  --threads N              Populations analysed at once. Default: every core. The results do
                           not depend on it.
  --bootstrap N            Bootstrap replicates for the 95% intervals of the null allele
                           estimates and of F, 0 for none. Default 1000. Example: --bootstrap 200
  --help                   This text.

Each population is its own run with a fresh generator seeded with the seed, so a population's
result does not depend on the others or on --population. The JSON report's "title" is '' for a
workbook, which has no title line.

convert IN OUT reads IN and writes every population to OUT, each in the format its name tells,
with the rules of the desktop program's Save As: a workbook gets one sheet, Sheet1, in the
layout above; a Genepop file gets the title line 'Title line:  "OUT"' (the file's name) and
three-digit alleles as they stand. Workbook data written to Genepop lose the first sample of
every population after the first: the Genepop writer passes over the row behind each Pop line
of workbook data, as the desktop program does. A workbook does not keep a Genepop title.

Examples:
  tavrelle-batch DemoFiles/DemoNullAlleles.gen --repeat 2 --seed 12345 --json report.json
  tavrelle-batch DemoFiles/DemoThreePopulations.xlsx --repeat 2 --seed 7 --csv loci.csv
  tavrelle-batch samples.xls --sheet Run2 --repeat 2 --on-suspect omit
  tavrelle-batch convert DemoFiles/DemoNullAlleles.gen DemoNullAlleles.xls
  tavrelle-batch convert field.xlsx field.gen --sheet Sheet2
)";
}

}  // namespace tavrelle
