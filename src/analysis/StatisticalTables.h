#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/Int16.h"
#include "base/Prompter.h"

namespace tavrelle {

// Critical values of chi-square by degrees of freedom (row) for upper-tail probabilities 0.05,
// 0.025, 0.01 and 0.001.
using ChiSquareTable = std::array<std::array<double, 4>, 141>;
// The standard normal curve; loaded with the others, read by nothing.
using NormalCurveTable = std::array<std::array<double, 10>, 39>;
// Critical values of the rank correlation coefficient for sample sizes 3 to 100 (row = size - 3)
// at probabilities 0.25, 0.1, 0.05, 0.025, 0.01, 0.005, 0.0025, 0.001, 0.0005.
using RankCorrelationTable = std::array<std::array<double, 9>, 98>;

struct StatisticalTables {
    ChiSquareTable chi{};
    NormalCurveTable normal{};
    RankCorrelationTable rank{};
};

inline constexpr const char* kChiSquareTableFile = "ChiSquareTable.txt";
inline constexpr const char* kNormalCurveTableFile = "NormalCurveTable.txt";
inline constexpr const char* kRankCorrelationTableFile = "RankCorrelationTable.txt";

// Loads the three files from `folder`, chi-square first. A missing file, a short file or a line
// with too few separators is a program error.
StatisticalTables LoadStatisticalTables(const std::filesystem::path& folder);

// A table value as it is read: the leading number of the text, rounded to two decimals on its
// decimal text, ties to even (11.345 gives 11.34, 11.355 gives 11.36). No number gives 0. The
// rounding decides which label a statistic close to a critical value gets.
double TableValue(std::string_view text);

// The probability label of a chi-square statistic over `classes` classes (2 x classes degrees of
// freedom); sets `significant`. A value equal to a critical value falls to the next line.
std::string ChiSquareLabel(double value, Int16 classes, const ChiSquareTable& table,
                           bool& significant);

// The significance of a rank correlation of `n` pairs, with its fixed wording; empty above 1.
std::string RankCorrelationLabel(double value, std::int32_t n, const RankCorrelationTable& table);

// Decomposes a fixed positive definite matrix; reports through `prompter` if it ever fails.
// Nothing keeps the result.
bool CholeskyCheck(Prompter& prompter);

}  // namespace tavrelle
