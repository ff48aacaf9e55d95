#include "analysis/ClassBinomialTest.h"

#include <cmath>

#include "base/Numbers.h"

namespace tavrelle {

namespace {

// Where doubles would quietly become infinite, the test counts it as the overflow it is.
double Finite(double value) {
    if (!std::isfinite(value)) throw ProgramError::Overflow();
    return value;
}

struct AlleleClass {
    Int16 size;
    std::int32_t copies;
};

std::vector<AlleleClass> RunCount(const std::vector<Int16>& sortedAlleles, CountWidth width) {
    std::vector<AlleleClass> classes;
    for (Int16 allele : sortedAlleles) {
        if (classes.empty() || classes.back().size != allele) classes.push_back({allele, 0});
        classes.back().copies = NarrowCount(classes.back().copies + 1, width);
    }
    return classes;
}

// Probability of fewer than `obs` homozygotes in n draws of chance g, computed term by term with
// the factors scaled by 100 so that the products stay in range as long as they can.
double BinomialBelow(Int16 obs, Int16 n, double g) {
    double p = 0;
    for (Int16 t = 0; t <= obs - 1; t = Narrow16(t + 1)) {
        double product = 1;
        for (int j = n; j >= n - t; --j)
            product = Finite(product * (j / 100.0));
        int factors = t + 1;
        product = product / (n - t);
        product = product / Factorial(t);
        double term = std::pow(g, t) * product * std::pow(1 - g, n - t);
        p = Finite(p + Finite(std::pow(100.0, factors)) * term);
    }
    return p;
}

}  // namespace

double Factorial(Int16 n) {
    double product = 1;
    for (int k = n; k >= 2; --k)
        product = Finite(product * k);
    return product;
}

void ClassBinomialTest(const CountArray& observedHomozygotes,
                       const std::vector<Int16>& sortedAlleles, const RoundMatrix& rounds,
                       const ChiSquareTable& chiTable, BinomialOutcome& outcome, CountWidth width) {
    const auto alleleCount = static_cast<double>(sortedAlleles.size());
    if (sortedAlleles.size() < 4) return;
    const Int16 n = ToInt16(alleleCount / 2);
    const std::vector<AlleleClass> classes = RunCount(sortedAlleles, width);
    const Int16 lowest = sortedAlleles.front();
    outcome.classProbabilities.assign(classes.size(), ClassProbability{});

    bool tooCommon = false;
    for (const AlleleClass& c : classes)
        tooCommon = tooCommon || c.copies > n;

    if (!tooCommon) {
        try {
            double logSum = 0;
            Int16 used = 0;
            const Int16 rankCount = static_cast<Int16>(rounds.Rounds());
            for (std::size_t i = 0; i < classes.size(); ++i) {
                const AlleleClass& c = classes[i];
                ClassProbability& row = outcome.classProbabilities[i];
                const std::size_t classIndex = static_cast<std::size_t>(c.size - lowest);
                const Int16 obs = observedHomozygotes.at(classIndex);
                const std::int32_t het = NarrowCount(c.copies - 2LL * obs, width);
                double p = 0;
                if (static_cast<double>(het) / n <= 0.5) {
                    double carriers = static_cast<double>(het) / n + static_cast<double>(obs) / n;
                    double f = 1 - std::sqrt(4 - carriers * 4) * 0.5;
                    double g = f * f;
                    if (obs >= 1) p = BinomialBelow(obs, n, g);
                    if (obs == 0) {
                        outcome.binomialNote.clear();
                        if (het > 1) p = (n * f - 1) * (n * f) / ((n - 1.0) * n);
                    }
                }
                row[0] = c.size;
                if (p > 0.999) p = 0.999;
                if (p > 0) row[1] = 1 - p;

                // Mean rank of the rounds that counted exactly the observed number.
                std::int32_t rankSum = 0;
                Int16 ties = 0;
                std::span<const Int16> counts = rounds.Class(static_cast<int>(classIndex));
                for (std::size_t r = 0; r < counts.size(); ++r) {
                    if (counts[r] == obs) {
                        rankSum = Narrow32(static_cast<long long>(rankSum) +
                                           static_cast<long long>(r) + 1);
                        ties = Narrow16(ties + 1);
                    }
                }
                if (het >= 2 && ties >= 2 && obs >= 1)
                    row[3] = 1 - (static_cast<double>(rankSum) / ties) / rankCount;
                else if (obs > 0)
                    row[3] = 1.0 / rankCount;
                else if (ties == rankCount)
                    row[3] = 1.0 / rankCount;
                else
                    row[3] = 1;

                if (row[1] > 0 && row[1] < 1) {
                    row[2] = std::log(row[1]);
                    logSum += row[2];
                    used = Narrow16(used + 1);
                }
            }
            // Fisher's combination of the class probabilities.
            double combined = logSum * -2;
            if (combined != 0) {
                outcome.combinedProbabilityLabel =
                    ChiSquareLabel(combined, used, chiTable, outcome.combinedSignificant);
            }
        } catch (const ProgramError&) {
            outcome.overflowed = true;
            return;
        }
    }

    double expected = 0;
    for (const AlleleClass& c : classes)
        expected += (c.copies / alleleCount) * (c.copies / alleleCount) * n;
    double observed = 0;
    for (Int16 count : observedHomozygotes)
        observed += count;
    const double heterozygotesObserved = n - observed;
    const double heterozygotesExpected = n - expected;
    outcome.homozygoteTotals[0] = observed;
    outcome.homozygoteTotals[1] = expected;
    outcome.totalsComputed = 2;
    if (heterozygotesExpected != 0) {
        outcome.homozygoteTotals[2] = (heterozygotesObserved - heterozygotesExpected) *
                                          (heterozygotesObserved - heterozygotesExpected) /
                                          heterozygotesExpected +
                                      (observed - expected) * (observed - expected) / expected;
        outcome.totalsComputed = 3;
    }
}

}  // namespace tavrelle
