// The Genepop dialect as the store reads it: three characters per allele, six per locus. The
// readers tolerate and refuse by position rules, not by validation; the check does that later.

#include <exception>

#include "base/Numbers.h"
#include "population/InputDataSource.h"
#include "population/StringFunctions.h"

namespace tavrelle {

namespace {

void StoreLocusName(std::vector<std::string>& names, Int16 index, std::string_view name) {
    // The table could not hold the columns: the Overflow it would meet, told at once and named.
    if (index >= Table::kMostLoci)
        throw ProgramError::Overflow().WithDetail("the file names more than " +
                                                  std::to_string(Table::kMostLoci) +
                                                  " loci, the most a population table holds");
    auto at = static_cast<std::size_t>(index);
    if (names.size() <= at) names.resize(at + 1);
    names[at] = std::string(name);
}

}  // namespace

std::string InputDataSource::NextLine(LineInput& input) {
    ++lineNumber_;
    return input.ReadLine();
}

void InputDataSource::ReadGenepopHeader(LineInput& input) {
    title_ = NextLine(input);
    Int16 index = 0;
    while (!input.Eof()) {
        std::string line(TrimBlanks(NextLine(input)));
        if (UpperCase(line) == "POP") {
            GenepopHeaderFound_ = true;
            return;
        }
        long long comma = InStr(line, ",");
        if (comma == 0) {
            StoreLocusName(LocusNames_, index, line);
            index = Narrow16(index + 1);
            continue;
        }
        while (comma > 0) {
            StoreLocusName(LocusNames_, index, Left(line, comma - 1));
            index = Narrow16(index + 1);
            line = std::string(TrimBlanks(Mid(line, comma + 1)));
            comma = InStr(line, ",");
        }
        // The index stays: the next line's first name takes this one's place, so "A,B" then
        // "C,D" gives A, C, D. Files list names on one line or one per line, and both work.
        StoreLocusName(LocusNames_, index, line);
    }
}

void InputDataSource::ReadGenepopBody(LineInput& input) {
    // Any failure while reading is a refusal; the rows built so far stay.
    try {
        ReadGenepopBodyLines(input);
    } catch (const std::exception&) {
        GenepopBodyValid_ = false;
        if (populationOverSampleLimit_ > 0)
            Refuse("line " + std::to_string(lineNumber_),
                   "at most " + std::to_string(kLargestSampleNumber - 1) +
                       " samples in a population: population " +
                       std::to_string(populationOverSampleLimit_) + " has more than " +
                       std::to_string(kLargestSampleNumber - 1) +
                       " samples, the most a population of a Genepop file may have. Divide it "
                       "into smaller populations.");
    }
}

void InputDataSource::ReadGenepopBodyLines(LineInput& input) {
    AddDataMember("AllData");
    Int16 sampleNumber = 1;
    DisplayLociNames(rsAllData);
    // A row a line at most: the table is sized once instead of growing by doubling.
    rsAllData.ReserveRows(rsAllData.RecordCount() + static_cast<std::int64_t>(input.LinesLeft()));
    const Int16 loci = Narrow16(static_cast<long long>(LocusNames_.size()));

    while (!input.Eof()) {
        std::string line(TrimBlanks(NextLine(input)));
        if (UpperCase(line) == "POP") {
            rsAllData.AddNew();
            rsAllData.SetField(1, "Pop");
            CurrentPopulation_ = Narrow16(CurrentPopulation_ + 1);
            sampleNumber = 1;
            line = std::string(TrimBlanks(NextLine(input)));
        }

        // A line without a comma asks Left for a negative length: the file is refused.
        long long comma = InStr(line, ",");
        std::string name(Left(line, comma - 1));
        while (!name.empty() && name.back() == '\t')
            name.pop_back();
        std::string genotypes(TrimBlanks(Mid(line, comma + 1)));
        while (!genotypes.empty() && genotypes.front() == '\t')
            genotypes.erase(0, 1);

        // Only the first genotype is measured: too short, or four digits before its blank.
        if (genotypes.size() < 6 || InStr(genotypes, " ") == 5) {
            GenepopBodyValid_ = false;
            return;
        }
        GenepopBodyValid_ = true;
        long long position = 1;

        rsAllData.AddNew();
        if (sampleNumber == 1) {
            auto index = static_cast<std::size_t>(CurrentPopulation_ - 1);
            if (index >= PopulationBookmarks_.size()) throw ProgramError::SubscriptOutOfRange();
            PopulationBookmarks_[index] = rsAllData.GetBookmark();
            PopulationBookmarks_.emplace_back();
        }
        rsAllData.SetField(0, std::to_string(sampleNumber));
        rsAllData.SetField(1, std::string(TrimBlanks(name)));

        // Each genotype starts at the first blank of what is left; a tab is no blank, and a
        // missing genotype leaves position 0, which Mid refuses.
        for (Int16 locus = 0; locus < loci; ++locus) {
            genotypes = std::string(TrimBlanks(Mid(genotypes, position)));
            rsAllData.SetField(2 + 2 * locus, std::string(TrimBlanks(Mid(genotypes, 1, 3))));
            rsAllData.SetField(3 + 2 * locus, std::string(TrimBlanks(Mid(genotypes, 4, 3))));
            position = InStr(genotypes, " ");
        }
        // The sample numbers are 16-bit: the next one would overflow and refuse the file.
        if (sampleNumber == kLargestSampleNumber) populationOverSampleLimit_ = CurrentPopulation_;
        sampleNumber = Narrow16(sampleNumber + 1);
    }
}

}  // namespace tavrelle
