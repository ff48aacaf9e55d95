#include "analysis/StatisticalTables.h"

#include <cmath>
#include <fstream>
#include <span>

#include "base/DoubleText.h"
#include "base/Numbers.h"
#include "base/ProgramError.h"

namespace tavrelle {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// The text of the leading number: sign, digits, point, digits, exponent.
struct LeadingNumber {
    bool negative = false;
    std::string digits;     // all mantissa digits
    long long pointAt = 0;  // digits before the decimal point, exponent included
};

LeadingNumber ReadLeadingNumber(std::string_view text) {
    LeadingNumber number;
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) number.negative = text[i++] == '-';
    while (i < text.size() && IsDigit(text[i]))
        number.digits += text[i++];
    number.pointAt = static_cast<long long>(number.digits.size());
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && IsDigit(text[i]))
            number.digits += text[i++];
    }
    if (!number.digits.empty() && i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        bool negativeExponent = false;
        if (j < text.size() && (text[j] == '+' || text[j] == '-'))
            negativeExponent = text[j++] == '-';
        long long exponent = 0;
        std::size_t start = j;
        while (j < text.size() && IsDigit(text[j]) && exponent < 100000)
            exponent = exponent * 10 + (text[j++] - '0');
        if (j > start) number.pointAt += negativeExponent ? -exponent : exponent;
    }
    return number;
}

// Adds one to a string of decimal digits.
void Increment(std::string& digits) {
    for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
        if (*it != '9') {
            ++*it;
            return;
        }
        *it = '0';
    }
    digits.insert(digits.begin(), '1');
}

std::ifstream OpenTable(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw ProgramError::FileNotFound();
    return in;
}

std::string ReadTableLine(std::ifstream& in) {
    std::string line;
    if (!std::getline(in, line)) throw ProgramError::InputPastEndOfFile();
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

// Reads one line's values: each followed by `separator`, or, with `lastEndsLine`, the last one
// standing alone at the end of the line.
void ReadRow(std::string_view line, char separator, bool lastEndsLine, std::span<double> row) {
    for (std::size_t k = 0; k < row.size(); ++k) {
        std::string_view rest = TrimBlanks(line);
        std::size_t at = rest.find(separator);
        if (at == std::string_view::npos) {
            if (!(lastEndsLine && k + 1 == row.size())) throw ProgramError::InvalidCall();
            at = rest.size();
        }
        row[k] = TableValue(rest.substr(0, at));
        line = at < rest.size() ? rest.substr(at + 1) : std::string_view{};
    }
}

template <std::size_t Rows, std::size_t Columns>
void LoadTable(const std::filesystem::path& file, char separator, bool lastEndsLine,
               std::array<std::array<double, Columns>, Rows>& table) {
    std::ifstream in = OpenTable(file);
    for (auto& row : table)
        ReadRow(ReadTableLine(in), separator, lastEndsLine, row);
}

}  // namespace

double TableValue(std::string_view text) {
    LeadingNumber number = ReadLeadingNumber(text);
    if (number.digits.empty()) return 0.0;
    // Hundredths as a digit string, and the digits behind them that decide the rounding.
    long long keep = number.pointAt + 2;
    std::string hundredths;
    std::string rest;
    if (keep <= 0) {
        hundredths = "0";
        rest = std::string(static_cast<std::size_t>(-keep), '0') + number.digits;
    } else if (static_cast<std::size_t>(keep) >= number.digits.size()) {
        hundredths =
            number.digits + std::string(static_cast<std::size_t>(keep) - number.digits.size(), '0');
    } else {
        hundredths = number.digits.substr(0, static_cast<std::size_t>(keep));
        rest = number.digits.substr(static_cast<std::size_t>(keep));
    }
    if (!rest.empty() && rest[0] >= '5') {
        bool exactHalf = rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
        bool odd = ((hundredths.back() - '0') & 1) != 0;
        if (!exactHalf || odd) Increment(hundredths);
    }
    double value = 0.0;
    ReadDouble(hundredths.data(), hundredths.data() + hundredths.size(), value);
    value /= 100.0;
    return number.negative ? -value : value;
}

StatisticalTables LoadStatisticalTables(const std::filesystem::path& folder) {
    StatisticalTables tables;
    LoadTable(folder / kChiSquareTableFile, ',', false, tables.chi);
    LoadTable(folder / kNormalCurveTableFile, ',', false, tables.normal);
    LoadTable(folder / kRankCorrelationTableFile, '\t', true, tables.rank);
    return tables;
}

std::string ChiSquareLabel(double value, Int16 classes, const ChiSquareTable& table,
                           bool& significant) {
    significant = false;
    if (classes >= 71) return "Not calculated";
    int row = 2 * classes;
    if (row < 0) throw ProgramError::SubscriptOutOfRange();
    const auto& critical = table[static_cast<std::size_t>(row)];
    significant = true;
    if (value > critical[3]) return "< 0.001 (significant)";
    if (value > critical[2]) return "< 0.01 (significant)";
    if (value > critical[1]) return "< 0.025 (significant)";
    if (value > critical[0]) return "< 0.05 (significant)";
    significant = false;
    return "> 0.05 (not significant)";
}

std::string RankCorrelationLabel(double value, std::int32_t n, const RankCorrelationTable& table) {
    static constexpr std::array<const char*, 9> kLabels = {"< 0.25",   "< 0.1",   "< 0.05",
                                                           "< 0.025",  "< 0.01",  "< 0.005",
                                                           "< 0.0025", "< 0.001", "< 0.0005"};
    std::string suffix;
    if (value < 0) {
        suffix = " (Negative correlation)";
        value = std::fabs(value);
    }
    if (value > 1) return "";
    if (n < 3 || n > 100) throw ProgramError::SubscriptOutOfRange();
    const auto& critical = table[static_cast<std::size_t>(n - 3)];
    std::string label = "> 0.25";
    for (std::size_t column = critical.size(); column-- > 0;) {
        if (value > critical[column]) {
            label = kLabels[column];
            break;
        }
    }
    return "Significance of correlation between class size and \r\n\testimated null allele "
           "frequency:  " +
           label + suffix;
}

bool CholeskyCheck(Prompter& prompter) {
    double a[5][5] = {
        {0, 0, 0, 0, 0}, {0, 30, 2, 1, 3}, {0, 2, 20, 7, 9}, {0, 1, 7, 40, 8}, {0, 3, 9, 8, 60}};
    double p[5] = {};
    for (int i = 1; i <= 4; ++i) {
        for (int j = i; j <= 4; ++j) {
            double sum = a[i][j];
            for (int k = i - 1; k >= 1; --k)
                sum -= a[i][k] * a[j][k];
            if (i == j) {
                if (sum <= 0) {
                    prompter.Show({"Cholesky decomposition failed.", "", MessageIcon::Exclamation,
                                   MessageButtons::Ok});
                    return false;
                }
                p[i] = std::sqrt(sum);
            } else {
                a[j][i] = sum / p[i];
            }
        }
    }
    return true;
}

}  // namespace tavrelle
