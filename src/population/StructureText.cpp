#include "population/StructureText.h"

#include <filesystem>
#include <map>

#include "population/TextRecords.h"

namespace tavrelle {

namespace {

struct WordLine {
    std::size_t number = 0;
    std::vector<std::string_view> words;
};

std::optional<int> StructureAllele(std::string_view word) {
    if (word == "-9") return 0;
    auto value = DigitsValue(word, kLargestAllele);
    if (value && *value == 0) return std::nullopt;
    return value;
}

class StructureParser {
public:
    StructureParser(std::string_view bytes, const std::string& file, StructureForm form)
        : form_(form) {
        read_.file = file;
        for (const NumberedLine& line : SplitLines(WithoutByteOrderMark(bytes))) {
            std::vector<std::string_view> words = Words(line.text);
            if (!words.empty()) lines_.push_back({line.number, std::move(words)});
        }
    }

    GenotypeRead Parse() {
        if (lines_.size() < 2) {
            read_.Problem(0, "", "",
                          "expected at least one individual, got " +
                              std::string(lines_.empty() ? "an empty file" : "one line"));
            return std::move(read_);
        }
        std::size_t first = 0;
        std::optional<std::size_t> loci;
        // A first line shorter than the next is the line of locus names.
        if (lines_[0].words.size() < lines_[1].words.size()) {
            for (std::string_view name : lines_[0].words)
                read_.data.loci.emplace_back(name);
            loci = read_.data.loci.size();
            first = 1;
        }
        const std::size_t columns = lines_[first].words.size();
        for (std::size_t at = first; at < lines_.size(); ++at)
            if (lines_[at].words.size() != columns)
                read_.Problem(lines_[at].number, std::string(lines_[at].words[0]), "",
                              "expected " + std::to_string(columns) + " columns as line " +
                                  std::to_string(lines_[first].number) + ", got " +
                                  std::to_string(lines_[at].words.size()));
        if (!read_.Ok()) return std::move(read_);
        if (!TellRows(first) || !TellPopulationColumn(columns, loci)) return std::move(read_);
        const std::size_t perRow = form_.rows == StructureForm::Rows::Two ? 1 : 2;
        const std::size_t lead = form_.population == StructureForm::PopulationColumn::Yes ? 2 : 1;
        if (columns <= lead || (columns - lead) % perRow != 0) {
            read_.Problem(lines_[first].number, "", "",
                          "expected the label, " +
                              std::string(lead == 2 ? "the population, " : "") +
                              std::to_string(perRow) + " column(s) per locus, got " +
                              std::to_string(columns) + " columns");
            return std::move(read_);
        }
        const std::size_t count = (columns - lead) / perRow;
        if (!loci) {
            for (std::size_t locus = 1; locus <= count; ++locus)
                read_.data.loci.push_back("Locus" + std::to_string(locus));
        } else if (*loci != count) {
            read_.Problem(lines_[0].number, "", "",
                          "expected " + std::to_string(count) +
                              " locus names for the columns, got " + std::to_string(*loci));
            return std::move(read_);
        }
        ReadIndividuals(first, lead, perRow);
        return std::move(read_);
    }

private:
    bool TwoRowLabels(std::size_t first) const {
        if ((lines_.size() - first) % 2 != 0) return false;
        for (std::size_t at = first; at < lines_.size(); at += 2)
            if (lines_[at].words[0] != lines_[at + 1].words[0]) return false;
        return true;
    }

    bool TellRows(std::size_t first) {
        if (form_.rows != StructureForm::Rows::Unknown) return true;
        if (TwoRowLabels(first)) {
            form_.rows = StructureForm::Rows::Two;
            return true;
        }
        std::map<std::string_view, std::size_t> seen;
        for (std::size_t at = first; at < lines_.size(); ++at) {
            auto [found, added] = seen.emplace(lines_[at].words[0], lines_[at].number);
            if (!added) {
                read_.Problem(lines_[at].number, std::string(lines_[at].words[0]), "",
                              "the label stands on line " + std::to_string(found->second) +
                                  " too, but the rows do not pair up: name the form "
                                  "(--format structure-1row or structure-2row)");
                return false;
            }
        }
        form_.rows = StructureForm::Rows::One;
        return true;
    }

    bool TellPopulationColumn(std::size_t columns, std::optional<std::size_t> loci) {
        if (form_.population != StructureForm::PopulationColumn::Unknown) return true;
        const std::size_t perRow = form_.rows == StructureForm::Rows::Two ? 1 : 2;
        if (loci) {
            if (columns == 1 + perRow * *loci)
                form_.population = StructureForm::PopulationColumn::No;
            if (columns == 2 + perRow * *loci)
                form_.population = StructureForm::PopulationColumn::Yes;
        } else if (perRow == 2) {
            // A label and pairs of columns: an even count leaves room for a population column.
            form_.population = columns % 2 == 0 ? StructureForm::PopulationColumn::Yes
                                                : StructureForm::PopulationColumn::No;
        }
        if (form_.population != StructureForm::PopulationColumn::Unknown) return true;
        read_.Problem(lines_[0].number, "", "",
                      "the file does not tell whether column 2 is a population or a locus: name "
                      "the form (--format structure-2row-pop or structure-2row)");
        return false;
    }

    void ReadIndividuals(std::size_t first, std::size_t lead, std::size_t perRow) {
        const bool twoRows = perRow == 1;
        std::map<std::string, std::size_t> populationIndex;
        const std::size_t loci = read_.data.loci.size();
        for (std::size_t at = first; at < lines_.size(); at += twoRows ? 2 : 1) {
            const WordLine& line = lines_[at];
            const WordLine& second = twoRows ? lines_[at + 1] : line;
            GenotypeSample sample{std::string(line.words[0]), {}};
            std::string population = std::filesystem::path(read_.file).stem().string();
            if (lead == 2) {
                population = std::string(line.words[1]);
                if (!DigitsValue(population, 1 << 30))
                    read_.Problem(
                        line.number, sample.name, "",
                        "expected a population number in column 2, got '" + population + "'");
                if (twoRows && second.words[1] != line.words[1])
                    read_.Problem(second.number, sample.name, "",
                                  "expected population '" + population +
                                      "' as on the line before, got '" +
                                      std::string(second.words[1]) + "'");
            }
            if (twoRows && second.words[0] != line.words[0])
                read_.Problem(second.number, std::string(second.words[0]), "",
                              "expected the second row of '" + sample.name + "'");
            for (std::size_t locus = 0; locus < loci; ++locus) {
                AllelePair pair;
                for (std::size_t copy = 0; copy < 2; ++copy) {
                    const WordLine& source = twoRows && copy == 1 ? second : line;
                    std::string_view word =
                        source.words[lead + (twoRows ? locus : 2 * locus + copy)];
                    std::optional<int> allele = StructureAllele(word);
                    if (!allele)
                        read_.Problem(source.number, sample.name, read_.data.loci[locus],
                                      "expected an allele size (a whole number above 0) or -9, "
                                      "got '" +
                                          std::string(word) + "'");
                    (copy == 0 ? pair.first : pair.second) = allele.value_or(0);
                }
                sample.genotypes.push_back(pair);
            }
            auto [found, added] =
                populationIndex.emplace(population, read_.data.populations.size());
            if (added) read_.data.populations.push_back({population, {}});
            read_.data.populations[found->second].samples.push_back(std::move(sample));
        }
    }

    StructureForm form_;
    std::vector<WordLine> lines_;
    GenotypeRead read_;
};

}  // namespace

GenotypeRead ReadStructureText(std::string_view bytes, const std::string& file,
                               StructureForm form) {
    return StructureParser(bytes, file, form).Parse();
}

std::string StructureText(const GenotypeData& data, GenotypeRead& refusal) {
    auto word = [&](const std::string& text, const std::string& sample, const std::string& locus) {
        if (text.empty() || text.find_first_of(" \t\r\n") != std::string::npos)
            refusal.Problem(0, sample, locus, "STRUCTURE cannot hold a name with blanks");
        return text;
    };
    std::string text;
    for (std::size_t locus = 0; locus < data.loci.size(); ++locus)
        text += (locus > 0 ? " " : "") + word(data.loci[locus], "", data.loci[locus]);
    text += "\n";
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        for (const GenotypeSample& sample : data.populations[p].samples) {
            for (int copy = 0; copy < 2; ++copy) {
                text += word(sample.name, sample.name, "") + " " + std::to_string(p + 1);
                for (const AllelePair& pair : sample.genotypes) {
                    const int allele = copy == 0 ? pair.first : pair.second;
                    text += " " + (allele == 0 ? std::string("-9") : std::to_string(allele));
                }
                text += "\n";
            }
        }
    }
    return text;
}

}  // namespace tavrelle
