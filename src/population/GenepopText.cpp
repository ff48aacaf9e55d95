#include "population/GenepopText.h"

#include "population/Table.h"

#include "base/Numbers.h"
#include "population/Table.h"
#include "population/TextRecords.h"

namespace tavrelle {

namespace {

std::string_view Trimmed(std::string_view text) {
    std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) return {};
    return text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

// The width the first genotype of the body sets, and the line that set it.
struct Width {
    std::size_t digits = 0;
    std::size_t line = 0;
};

class GenepopParser {
public:
    GenepopParser(std::string_view bytes, const std::string& file)
        : lines_(SplitLines(WithoutByteOrderMark(bytes))) {
        read_.file = file;
    }

    GenotypeRead Parse() {
        if (lines_.empty()) {
            read_.Problem(0, "", "", "the file is empty");
            return std::move(read_);
        }
        read_.data.title = std::string(lines_[0].text);
        std::size_t at = 1;
        for (; at < lines_.size() && !IsGenepopPopLine(lines_[at].text); ++at)
            for (std::string_view name : Split(lines_[at].text))
                if (!name.empty()) read_.data.loci.emplace_back(name);
        if (at == lines_.size()) {
            read_.Problem(lines_.back().number, "", "",
                          "expected a line 'Pop' after the locus names, got the end of the file");
            return std::move(read_);
        }
        if (read_.data.loci.empty())
            read_.Problem(lines_[at].number, "", "", "expected locus names before the first 'Pop'");
        if (read_.data.loci.size() > static_cast<std::size_t>(Table::kMostLoci)) {
            read_.Problem(lines_[at].number, "", "",
                          "the file names more than " + std::to_string(Table::kMostLoci) +
                              " loci, the most a population table holds");
            return std::move(read_);
        }
        std::size_t popLine = 0;
        for (; at < lines_.size(); ++at) {
            const NumberedLine& line = lines_[at];
            if (IsGenepopPopLine(line.text)) {
                ClosePopulation(popLine);
                popLine = line.number;
                read_.data.populations.emplace_back();
            } else if (!Trimmed(line.text).empty()) {
                ReadSample(line);
            }
        }
        ClosePopulation(popLine);
        return std::move(read_);
    }

private:
    static std::vector<std::string_view> Split(std::string_view line) {
        std::vector<std::string_view> names;
        std::size_t start = 0;
        for (std::size_t comma; (comma = line.find(',', start)) != std::string_view::npos;
             start = comma + 1)
            names.push_back(Trimmed(line.substr(start, comma - start)));
        names.push_back(Trimmed(line.substr(start)));
        return names;
    }

    void ClosePopulation(std::size_t popLine) {
        if (popLine > 0 && read_.data.populations.back().samples.empty())
            read_.Problem(
                popLine, "", "",
                "population " + std::to_string(read_.data.populations.size()) + " has no samples");
    }

    void ReadSample(const NumberedLine& line) {
        const std::size_t comma = line.text.find(',');
        if (comma == std::string_view::npos) {
            read_.Problem(line.number, "", "",
                          "expected 'name , genotypes' or 'Pop', got '" +
                              std::string(Trimmed(line.text)) + "'");
            return;
        }
        GenotypeSample sample;
        sample.name = std::string(Trimmed(line.text.substr(0, comma)));
        const std::vector<std::string_view> tokens = Words(line.text.substr(comma + 1));
        const std::vector<std::string>& loci = read_.data.loci;
        if (tokens.size() != loci.size())
            read_.Problem(line.number, sample.name, "",
                          "expected " + std::to_string(loci.size()) + " genotype" +
                              (loci.size() == 1 ? "" : "s") + ", got " +
                              std::to_string(tokens.size()));
        for (std::size_t locus = 0; locus < loci.size(); ++locus) {
            AllelePair pair;
            if (locus < tokens.size())
                pair = Genotype(line.number, sample.name, loci[locus], tokens[locus]);
            sample.genotypes.push_back(pair);
        }
        read_.data.populations.back().samples.push_back(std::move(sample));
    }

    AllelePair Genotype(std::size_t line, const std::string& sample, const std::string& locus,
                        std::string_view token) {
        const bool digits = DigitsValue(token.substr(0, 1), 9).has_value() &&
                            token.find_first_not_of("0123456789") == std::string_view::npos;
        if (!digits || (token.size() != 4 && token.size() != 6)) {
            read_.Problem(line, sample, locus,
                          "expected 4 or 6 digits, got '" + std::string(token) + "'");
            return {};
        }
        if (width_.digits == 0) width_ = {token.size(), line};
        if (token.size() != width_.digits) {
            read_.Problem(line, sample, locus,
                          "expected " + std::to_string(width_.digits) + " digits (" +
                              std::to_string(width_.digits / 2) + " per allele, as from line " +
                              std::to_string(width_.line) + "), got '" + std::string(token) +
                              "': a file uses one width throughout");
            return {};
        }
        const std::size_t half = token.size() / 2;
        return {*DigitsValue(token.substr(0, half), 999), *DigitsValue(token.substr(half), 999)};
    }

    std::vector<NumberedLine> lines_;
    GenotypeRead read_;
    Width width_;
};

}  // namespace

bool IsGenepopPopLine(std::string_view line) {
    return UpperCase(Trimmed(line)) == "POP";
}

GenotypeRead ReadGenepopText(std::string_view bytes, const std::string& file) {
    return GenepopParser(bytes, file).Parse();
}

int GenepopAlleleDigits(std::string_view bytes) {
    bool body = false;
    for (const NumberedLine& line : SplitLines(WithoutByteOrderMark(bytes))) {
        if (line.number == 1) continue;
        if (IsGenepopPopLine(line.text)) {
            body = true;
            continue;
        }
        const std::size_t comma = line.text.find(',');
        if (!body || comma == std::string_view::npos) continue;
        const std::vector<std::string_view> tokens = Words(line.text.substr(comma + 1));
        if (tokens.empty()) continue;
        if (tokens.front().size() == 4) return 2;
        if (tokens.front().size() == 6) return 3;
        return 0;
    }
    return 0;
}

std::string GenepopText(const GenotypeData& data, GenotypeRead& refusal) {
    auto three = [](int allele) {
        std::string digits = std::to_string(allele);
        return std::string(3 - std::min<std::size_t>(3, digits.size()), '0') + digits;
    };
    if (data.title.find_first_of("\r\n") != std::string::npos)
        refusal.Problem(0, "", "", "the title has a line break, which a Genepop title cannot hold");
    // A reader takes a byte order mark at the start of a file for one, not for the title's.
    const bool titleStartsWithMark = data.title.starts_with("\xEF\xBB\xBF");
    std::string text = (titleStartsWithMark ? "\xEF\xBB\xBF" : "") + data.title + "\r\n";
    for (const std::string& locus : data.loci) {
        if (locus.find(',') != std::string::npos || IsGenepopPopLine(locus) ||
            Trimmed(locus).empty() || locus.find_first_of("\r\n") != std::string::npos)
            refusal.Problem(0, "", locus, "Genepop cannot hold this locus name");
        text += locus + "\r\n";
    }
    for (std::size_t p = 0; p < data.populations.size(); ++p) {
        text += "Pop\r\n";
        for (const GenotypeSample& sample : data.populations[p].samples) {
            if (sample.name.find_first_of(",\r\n") != std::string::npos ||
                IsGenepopPopLine(sample.name))
                refusal.Problem(0, sample.name, "",
                                "Genepop cannot hold a sample name with a comma or line break");
            text += sample.name + "\t,\t";
            for (std::size_t locus = 0; locus < sample.genotypes.size(); ++locus) {
                const AllelePair& pair = sample.genotypes[locus];
                if (pair.first > 999 || pair.second > 999)
                    refusal.Problem(0, sample.name, data.loci.at(locus),
                                    "an allele over 999 does not fit Genepop's three digits");
                if (locus > 0) text += ' ';
                text += three(pair.first) + three(pair.second);
            }
            text += "\r\n";
        }
    }
    return text;
}

}  // namespace tavrelle
