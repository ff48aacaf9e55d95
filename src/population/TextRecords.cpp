#include "population/TextRecords.h"

#include <algorithm>

namespace tavrelle {

namespace {

std::string_view TrimmedCell(std::string_view text) {
    std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) return {};
    std::size_t end = text.find_last_not_of(" \t");
    return text.substr(start, end - start + 1);
}

}  // namespace

std::vector<NumberedLine> SplitLines(std::string_view bytes) {
    std::vector<NumberedLine> lines;
    std::size_t start = 0;
    std::size_t number = 1;
    while (start < bytes.size()) {
        std::size_t end = bytes.find_first_of("\r\n", start);
        if (end == std::string_view::npos) {
            lines.push_back({number, bytes.substr(start)});
            break;
        }
        lines.push_back({number++, bytes.substr(start, end - start)});
        start =
            end + (bytes[end] == '\r' && end + 1 < bytes.size() && bytes[end + 1] == '\n' ? 2 : 1);
    }
    return lines;
}

std::string CellRow::Cell(std::size_t column) const {
    if (column >= cells.size()) return {};
    return std::string(TrimmedCell(cells[column]));
}

bool CellRow::Blank() const {
    return std::all_of(cells.begin(), cells.end(),
                       [](const std::string& cell) { return TrimmedCell(cell).empty(); });
}

char GuessSeparator(std::string_view bytes) {
    for (const NumberedLine& line : SplitLines(bytes)) {
        if (TrimmedCell(line.text).empty()) continue;
        auto tabs = std::count(line.text.begin(), line.text.end(), '\t');
        auto semicolons = std::count(line.text.begin(), line.text.end(), ';');
        auto commas = std::count(line.text.begin(), line.text.end(), ',');
        if (tabs > commas && tabs > semicolons) return '\t';
        if (semicolons > commas) return ';';
        return ',';
    }
    return ',';
}

std::optional<CellRows> SplitDelimited(std::string_view bytes, char separator,
                                       std::size_t& unclosedLine) {
    CellRows rows;
    CellRow row{1, {}};
    std::string cell;
    std::size_t line = 1;
    bool quoted = false;
    bool any = false;  // the row has begun
    std::size_t quoteLine = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const char c = bytes[at];
        const bool lineEnd = c == '\r' || c == '\n';
        const std::size_t width =
            c == '\r' && at + 1 < bytes.size() && bytes[at + 1] == '\n' ? 2 : 1;
        if (quoted) {
            if (c == '"' && at + 1 < bytes.size() && bytes[at + 1] == '"') {
                cell += '"';
                ++at;
            } else if (c == '"') {
                quoted = false;
            } else {
                cell.append(bytes.substr(at, lineEnd ? width : 1));
                if (lineEnd) {
                    at += width - 1;
                    ++line;
                }
            }
            continue;
        }
        if (c == '"' && TrimmedCell(cell).empty()) {
            cell.clear();
            quoted = true;
            quoteLine = line;
            any = true;
        } else if (c == separator) {
            row.cells.push_back(std::move(cell));
            cell.clear();
            any = true;
        } else if (lineEnd) {
            row.cells.push_back(std::move(cell));
            cell.clear();
            rows.push_back(std::move(row));
            at += width - 1;
            row = CellRow{++line, {}};
            any = false;
        } else {
            cell += c;
            any = true;
        }
    }
    if (quoted) {
        unclosedLine = quoteLine;
        return std::nullopt;
    }
    if (any) {
        row.cells.push_back(std::move(cell));
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<std::string_view> Words(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t at = 0;
    while (true) {
        at = line.find_first_not_of(" \t", at);
        if (at == std::string_view::npos) break;
        std::size_t end = line.find_first_of(" \t", at);
        if (end == std::string_view::npos) end = line.size();
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

std::optional<int> DigitsValue(std::string_view text, int largest) {
    if (text.empty() || text.size() > 9) return std::nullopt;
    int value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
    }
    if (value > largest) return std::nullopt;
    return value;
}

std::string_view WithoutByteOrderMark(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    return bytes;
}

}  // namespace tavrelle
