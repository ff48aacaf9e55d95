#include "batch/BatchOptions.h"

namespace tavrelle {

std::string BatchUsage() {
    return R"(Usage: tavrelle-batch FILE [options]
       tavrelle-batch convert IN OUT [--to F] [--format F] [--sheet NAME]
                              [--accept-numeric-names]

Analyses every population of a data file (or the ones chosen) for null alleles, stutter and
large allele drop-out, as the desktop program does, and reports the results as text on standard
output, and optionally as JSON and CSV. FILE "-" reads the data from standard input.

The format is told from the file's content, never its name (--format names it):
  Genepop      title line, locus names, "Pop", then "name , genotypes" with two or three digits
               per allele (0311 or 003011; one width per file), 0 for a missing allele
  GenAlEx      a count row (loci, samples, populations, population sizes), a title row, a
               header row (sample, population, each locus name over its two columns), then one
               sample a row; 0 or empty is missing. As .csv or in a workbook (.xlsx, .xls)
  STRUCTURE    an optional line of locus names, then per individual two rows (one allele of
               each locus per row) or one row (two columns per locus), the label first and an
               optional population number next; -9 is missing
  tidy CSV     sample,population,locus,allele1,allele2 (one row per sample and locus) or
               sample,population,L1_a,L1_b,... (one row per sample); empty, 0 or NA is missing
  workbook     Tavrelle's layout: a title row, a row of locus names (one name per two columns,
               from column B), then one sample per row, the name in column A; "*" or an empty
               cell is missing, a row with "pop" in column A starts the next population
A Genepop file may be up to 1 GiB. Alleles are read as the numbers they are: the stutter and
large allele drop-out tests need allele sizes in base pairs, and a file whose alleles look like
allele numbers (all below 100 and consecutive) is warned about. A file with malformed values is
refused, each problem named by file, line, sample and locus; nothing is guessed.

Options:
  --repeat N               Repeat motif length in bases (1 to 6) for every locus.
                           Example: --repeat 2
  --repeat NAME=N          Repeat motif of one locus by its name as the file spells it; repeat
                           the option for more loci. Overrides --repeat N and --repeats.
                           Example: --repeat Loc3=4 --repeat "Loc 7=3"
  --repeats FILE           A table of motifs, one locus a line: name, then motif, separated by a
                           tab or a comma. Lines starting with # are comments. A locus given
                           two motifs, or named in another case than the file's, is refused.
                           Every locus needs a motif from one of these three options.
  --seed S                 Seed of the random number generator, 0 to 2147483647. Default: the
                           clock seed, printed in the report. Example: --seed 12345
  --randomisations N       Randomised samples per locus, 1000 to 10000. Default 1000.
  --confidence C           Confidence interval: 95, 99, 100 (the full range) or bonferroni.
                           Default 95. Example: --confidence 99
  --max-allele-size N      Largest allele size expected, a whole number from 50 to 700.
                           Default 350. Example: --max-allele-size 500
  --on-suspect A           What to do with values the check finds suspect (other than missing
                           alleles): proceed (analyse them as they stand; one line on standard
                           error names the population and the count, the JSON "check" lists
                           them), stop (the population is not analysed) or omit (the suspect
                           alleles become missing, 0). Default proceed.
  --population LIST        Analyse only these populations, numbered from 1 in file order.
                           Example: --population 1,3-5
  --json FILE              Write the JSON report to FILE ("-" for standard output).
  --csv FILE               Write the tidy table to FILE ("-" for standard output): one row per
                           population and locus, for R and pandas. See docs/batch-output.md.
                           Only one report may go to standard output; the text report goes
                           there when neither does.
  --report FILE            Write the study report ("-" for standard output): one HTML page
                           with the settings, the overview table, the heat map and every
                           locus's graphs and verdicts.
  --overview-estimate E    The null allele estimate the report's overview and heat map show:
                           em_failure (default: blanks read as failed amplifications or null
                           homozygotes, as the data say), em (every blank a null homozygote),
                           em_missing, joint, velmaret, chakraborty, brookfield1, brookfield2.
  --bootstrap N            Resamples for the intervals of the estimates; 0 for none.
                           Default 1000.
  --threads N              Populations analysed at once, 1 to 256. Default: the CPUs this
                           process may run on. The results do not depend on it.
  --sheet NAME             The workbook's sheet that holds the data. Default Sheet1. Names are
                           compared without regard to case. Example: --sheet "Field data"
  --format F               The input's format, when its content should not decide: genepop,
                           genalex, structure, tidy, xls, xlsx, or a STRUCTURE form the file
                           cannot tell: structure-1row, structure-1row-pop, structure-2row,
                           structure-2row-pop (-pop: a population column follows the label).
  --to F                   convert only: the output's format: genepop, xlsx, xls (Tavrelle's
                           workbook layout), genalex (CSV), genalex-xlsx, genalex-xls, tidy,
                           structure. Default: told by OUT's ending (.xlsx, .xls, .csv GenAlEx,
                           .tidy.csv, .str STRUCTURE, anything else Genepop).
  --accept-numeric-names   Load a sheet whose locus names are all numbers as it stands. Without
                           it such a sheet is refused, since it usually lacks its row of locus
                           names and its first sample would be taken for them.
  --version                The program's version.
  --help                   This text.

Every file is written whole or not at all: a report goes to .NAME.tavrelle-partial beside it,
which replaces the old file only once complete, and is removed on Ctrl-C or kill; one left by a
run killed outright is removed by the next run. Standard output (-, /dev/stdout), a named pipe
or a device is written in place.

Exit status:
  0  every requested population was analysed
  3  some populations were analysed and some stopped (each with its reason on standard error)
  4  no population was analysed
  2  a usage error: an unknown or malformed option, a locus left without a motif, a locus name
     the file does not have
  1  a file that could not be read or written (its path and the reason on standard error), or
     the program's table files are missing

Each population is its own run with a fresh generator seeded with the seed, so a population's
result does not depend on the others or on --population. The JSON report's "title" is '' for a
workbook, which has no title line.

convert IN OUT reads IN in any format above and writes every population, every sample and
every allele to OUT, in the format --to or OUT's ending names: Genepop with three-digit alleles
(98 is written 098; a file without a title gets 'Title line:  "OUT"'), a workbook of one sheet,
Sheet1, in Tavrelle's layout or GenAlEx's, GenAlEx or tidy CSV, or two-row STRUCTURE with a
population column. What OUT's format cannot hold is refused, never dropped: a workbook keeps no
title, Genepop no population names and no allele over 999, STRUCTURE no name with blanks.

Examples:
  tavrelle-batch DemoFiles/DemoNullAlleles.gen --repeat 2 --seed 12345 --json report.json
  tavrelle-batch DemoFiles/DemoThreePopulations.xlsx --repeat 2 --seed 7 --csv loci.csv
  tavrelle-batch samples.xls --sheet Run2 --repeats motifs.tsv --on-suspect omit
  gunzip -c big.gen.gz | tavrelle-batch - --repeat 2 --csv - > loci.csv
  tavrelle-batch convert DemoFiles/DemoNullAlleles.gen DemoNullAlleles.xls
  tavrelle-batch convert field.xlsx field.gen --sheet Sheet2
  tavrelle-batch convert lab.csv lab.xlsx --to genalex-xlsx
  tavrelle-batch run1.str --format structure-2row-pop --repeat 2
)";
}

}  // namespace tavrelle
