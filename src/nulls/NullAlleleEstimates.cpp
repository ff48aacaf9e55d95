#include "nulls/NullAlleleEstimates.h"

#include <cmath>

#include "base/Numbers.h"
#include "nulls/AlleleCountTable.h"

namespace tavrelle {

namespace {

// The power operation fails, as the run time's does, where a real result does not exist. The
// square and the square root, all the estimates raise to, are computed exactly rounded, as pow is
// not on every platform (the WebAssembly build's differs from glibc's in the last bit).
double Power(double base, double exponent) {
    double result = exponent == 2.0   ? base * base
                    : exponent == 0.5 ? std::sqrt(base)
                                      : std::pow(base, exponent);
    if (std::isnan(result)) throw ProgramError::InvalidCall();
    if (std::isinf(result)) throw ProgramError::Overflow();
    return result;
}

double Divide(double numerator, double denominator) {
    if (denominator == 0) throw ProgramError::DivisionByZero();
    return numerator / denominator;
}

std::vector<ClassCounts> ClassTable(const std::vector<Int16>& all, const std::vector<Int16>& hom,
                                    const std::vector<Int16>& het, CountWidth width) {
    const AlleleCountRows classes = AlleleCountTable(all, width);
    const AlleleCountRows homCounts = AlleleCountTable(hom, width);
    const AlleleCountRows hetCounts =
        het.empty() ? AlleleCountRows{} : AlleleCountTable(het, width);
    std::vector<ClassCounts> rows;
    std::size_t h = 0;
    std::size_t e = 0;
    for (const AlleleCount& c : classes) {
        ClassCounts row{c.allele, 0, 0};
        if (h < homCounts.size() && homCounts[h].allele == c.allele)
            row.homozygotes = homCounts[h++].count;
        if (e < hetCounts.size() && hetCounts[e].allele == c.allele)
            row.heterozygotes = hetCounts[e++].count;
        rows.push_back(row);
    }
    return rows;
}

std::string Rounded(double value) {
    return DefaultText(RoundHalfEven(value, 4));
}

}  // namespace

NullAlleleEstimates CalculateNullAllele(const GenotypeSet& set, Int16 blanks, bool nullSuspected,
                                        CountWidth width) {
    NullAlleleEstimates result;
    const std::int32_t n = NarrowCount(static_cast<long long>(set.size()), width);
    std::vector<Int16> homAlleles;
    std::vector<Int16> hetAlleles;
    std::vector<Int16> allAlleles;
    for (const GenotypeRow& row : set) {
        if (row.difference == 0) {
            homAlleles.push_back(row.first);
        } else {
            hetAlleles.push_back(row.first);
            hetAlleles.push_back(row.second);
        }
        allAlleles.push_back(row.first);
        allAlleles.push_back(row.second);
    }
    const std::int32_t h2 = NarrowCount(static_cast<long long>(hetAlleles.size()), width);
    std::array<double, 4>& r = result.estimates;

    if (!homAlleles.empty() || !hetAlleles.empty()) {
        std::vector<AlleleClassFrequency> frequencies;
        r = ClosedFormEstimates(ClassTable(allAlleles, homAlleles, hetAlleles, width), n, h2,
                                blanks, &frequencies, width);
        AdjustFrequencies(frequencies, n, nullSuspected, result, width);
    }
    result.estimatesLine = Rounded(r[kVelmaret]) + "\t\t" + Rounded(r[kChakraborty]) + "\t\t" +
                           Rounded(r[kBrookfield1]) + "\t\t" + Rounded(r[kBrookfield2]);
    return result;
}

std::array<double, 4> ClosedFormEstimates(const std::vector<ClassCounts>& classes, std::int32_t n,
                                          std::int32_t h2, std::int32_t blanks,
                                          std::vector<AlleleClassFrequency>* frequencies,
                                          CountWidth width) {
    std::array<double, 4> r{};
    const std::int32_t twoN = NarrowCount(2LL * n, width);
    double sumQ = 0;
    double sumP2 = 0;
    for (const ClassCounts& c : classes) {
        const double carriers =
            static_cast<double>(c.heterozygotes) / n + static_cast<double>(c.homozygotes) / n;
        const double root = Power(4 - 4 * carriers, 0.5);
        const double q = 1 - 0.5 * root;
        const std::int32_t copies = NarrowCount(2LL * c.homozygotes + c.heterozygotes, width);
        const double p = static_cast<double>(copies) / twoN;
        sumQ += q;
        sumP2 += Power(p, 2.0);
        if (frequencies) frequencies->push_back({c.size, p, q});
    }
    r[kVelmaret] = 1 - sumQ;
    const double ho = static_cast<double>(h2) / twoN;
    const double he = 1 - sumP2;
    if (he > 0) {
        const double a = (he - ho) / he;
        r[kChakraborty] = a / (2 - a);
        r[kBrookfield1] = (he - ho) / (he + 1);
    }
    r[kBrookfield2] = Brookfield2(he, h2, n, blanks, width);
    return r;
}

double Brookfield2(double he, std::int32_t h2, std::int32_t n, std::int32_t blanks,
                   CountWidth width) {
    const std::int32_t everyone = NarrowCount(static_cast<long long>(blanks) + n, width);
    const double b = Divide(blanks, everyone);
    const double hoAll = Divide(h2, NarrowCount(2LL * everyone, width));
    const double heAdj = Divide(he, Power(1 - b, 2.0));
    const double x = (1 + b) * heAdj - hoAll;
    const double y = 4 * b * (1 - Power(heAdj, 2.0));
    return (x + Power(Power(x, 2.0) + y, 0.5)) / (2 * (1 + heAdj));
}

void AdjustFrequencies(const std::vector<AlleleClassFrequency>& classes, std::int32_t n,
                       bool nullSuspected, NullAlleleEstimates& result, CountWidth width) {
    const std::array<double, 4>& r = result.estimates;
    // Only with evidence, and the Velmaret estimate decides for all four methods.
    const bool adjust = nullSuspected && r[kVelmaret] >= 0.05;
    if (adjust) {
        result.adjustedText =
            "Adjusted allele frequencies of amplified alleles based on the four methods of null "
            "allele estimation.\r\n\r\nClass\tObs. allele freq.\tVelmaret\tChakraborty\t"
            "Brookfield 1\tBrookfield 2\r\n\r\n";
    }
    for (const AlleleClassFrequency& c : classes) {
        AdjustedCountRow row{c.size, {}};
        if (adjust) {
            for (std::size_t m = 0; m < 4; ++m) {
                // A class whose expected null heterozygotes round to none keeps its count 0.
                if (std::nearbyint(r[m] * c.p * n) >= 1)
                    row.counts[m] = width == CountWidth::Bits16 ? ToInt16(2 * r[m] * c.p * n)
                                                                : ToInt32(2 * r[m] * c.p * n);
            }
            result.adjustedText += std::to_string(c.size) + "\t" + Rounded(c.p) + "\t\t" +
                                   Rounded(c.q) + "\t\t" + Rounded((1 - r[kChakraborty]) * c.p) +
                                   "\t\t" + Rounded((1 - r[kBrookfield1]) * c.p) + "\t\t" +
                                   Rounded((1 - r[kBrookfield2]) * c.p) + "\r\n";
        }
        result.adjustedCounts.push_back(row);
    }
}

std::string NullAlleleFrequency(Int16) {
    throw ProgramError::SubscriptOutOfRange();
}

}  // namespace tavrelle
