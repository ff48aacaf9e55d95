#include "population/DataFormat.h"

#include <array>

#include "population/GenalexTable.h"
#include "population/GenepopText.h"
#include "population/TextRecords.h"
#include "population/TidyGenotypes.h"

namespace tavrelle {

namespace {

using Rows = StructureForm::Rows;
using Column = StructureForm::PopulationColumn;

struct NamedFormat {
    const char* name;
    FormatChoice choice;
};

const std::array<NamedFormat, 10> kFormats{{
    {"genepop", {DataFormat::Genepop, {}}},
    {"genalex", {DataFormat::Genalex, {}}},
    {"structure", {DataFormat::Structure, {}}},
    {"structure-1row", {DataFormat::Structure, {Rows::One, Column::No}}},
    {"structure-1row-pop", {DataFormat::Structure, {Rows::One, Column::Yes}}},
    {"structure-2row", {DataFormat::Structure, {Rows::Two, Column::No}}},
    {"structure-2row-pop", {DataFormat::Structure, {Rows::Two, Column::Yes}}},
    {"tidy", {DataFormat::Tidy, {}}},
    {"xls", {DataFormat::Xls, {}}},
    {"xlsx", {DataFormat::Xlsx, {}}},
}};

// The first few non-blank lines are enough to tell a format.
constexpr std::size_t kLinesLooked = 50;

}  // namespace

std::optional<FormatChoice> ParseFormatName(std::string_view name) {
    for (const NamedFormat& format : kFormats)
        if (name == format.name) return format.choice;
    return std::nullopt;
}

std::string FormatNames() {
    std::string names;
    for (const NamedFormat& format : kFormats)
        names += (names.empty() ? "" : ", ") + std::string(format.name);
    return names;
}

std::string FormatTitle(DataFormat format) {
    switch (format) {
        case DataFormat::Genepop:
            return "Genepop";
        case DataFormat::Genalex:
            return "GenAlEx";
        case DataFormat::Structure:
            return "STRUCTURE";
        case DataFormat::Tidy:
            return "tidy CSV";
        case DataFormat::Xls:
            return "Excel 97-2003 workbook";
        case DataFormat::Xlsx:
            return "Excel workbook";
        case DataFormat::Unknown:
            break;
    }
    return "unknown";
}

DataFormat DetectFormat(std::string_view bytes) {
    if (bytes.starts_with("PK\x03\x04")) return DataFormat::Xlsx;
    if (bytes.starts_with("\xD0\xCF\x11\xE0")) return DataFormat::Xls;
    bytes = WithoutByteOrderMark(bytes);
    std::vector<NumberedLine> lines = SplitLines(bytes);
    std::vector<std::string_view> looked;
    for (const NumberedLine& line : lines) {
        if (IsGenepopPopLine(line.text)) return DataFormat::Genepop;
        if (!Words(line.text).empty() && looked.size() < kLinesLooked) looked.push_back(line.text);
    }
    if (looked.empty()) return DataFormat::Unknown;
    const std::string_view first = looked.front();
    std::size_t unclosed = 0;
    if (std::optional<CellRows> rows = SplitDelimited(first, GuessSeparator(first), unclosed);
        rows && !rows->empty()) {
        if (IsTidyHeader(rows->front())) return DataFormat::Tidy;
        if (IsGenalexCountRow(rows->front())) return DataFormat::Genalex;
    }
    // STRUCTURE: every line looked at (but a first line of names) has a label and numbers.
    for (std::size_t at = 1; at < looked.size(); ++at) {
        std::vector<std::string_view> words = Words(looked[at]);
        std::size_t numbers = 0;
        for (std::string_view word : words)
            if (word == "-9" || DigitsValue(word, 1 << 30)) ++numbers;
        if (words.size() < 3 || numbers + 1 < words.size()) return DataFormat::Unknown;
    }
    return looked.size() >= 2 ? DataFormat::Structure : DataFormat::Unknown;
}

GenotypeRead ReadGenotypeText(std::string_view bytes, const std::string& file,
                              FormatChoice choice) {
    if (choice.format == DataFormat::Unknown) choice.format = DetectFormat(bytes);
    switch (choice.format) {
        case DataFormat::Genepop:
            return ReadGenepopText(bytes, file);
        case DataFormat::Genalex:
            return ReadGenalexCsv(bytes, file);
        case DataFormat::Structure:
            return ReadStructureText(bytes, file, choice.structure);
        case DataFormat::Tidy:
            return ReadTidyCsv(bytes, file);
        case DataFormat::Xls:
        case DataFormat::Xlsx:
        case DataFormat::Unknown:
            break;
    }
    GenotypeRead read;
    read.file = file;
    read.Problem(0, "", "",
                 choice.format == DataFormat::Unknown
                     ? "not a data file Tavrelle can tell: expected Genepop, GenAlEx, STRUCTURE, "
                       "a tidy CSV table or a workbook (name the format with --format)"
                     : "a workbook, which is no text format");
    return read;
}

}  // namespace tavrelle
