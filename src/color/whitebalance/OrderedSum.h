#pragma once

#include "color/whitebalance/Rows.h"

#include <array>
#include <cmath>

/// Sums of doubles that are defined with their order of addition, taken from a histogram.
///
/// Each addition rounds to a multiple of the sum's unit in the last place. Between two powers of
/// two that unit stays the same, so each addition adds its term rounded to the unit, whatever the
/// sum is by then: the order makes no difference, and the rounded terms add up without error. Only
/// a term half-way between two multiples goes to either side as the sum happens to be.
namespace LXOrderedSum {

/// Terms of at least 0, one for each level.
using Terms = std::array<double, 256>;

/// True if the terms of all levels that were counted are 0.
inline bool IsNothing(const Terms& terms, const LXRows::LevelCounts& counts) {
    for (std::size_t level = 0; level < terms.size(); ++level)
        if (counts[level] != 0 && terms[level] != 0)
            return false;
    return true;
}

/// Adds each level's term as often as the level was counted: the same bits as one addition after
/// the other in any order. False, and the sum is as it was, if it would not stay between two powers
/// of two, or stay 0, or a term is half-way.
inline bool AddCounted(double& sum, const Terms& terms, const LXRows::LevelCounts& counts) {
    if (sum == 0)
        return IsNothing(terms, counts);
    int exponent;
    std::frexp(sum, &exponent);
    const double limit = std::ldexp(1.0, exponent);
    const double halfUnit = std::ldexp(1.0, exponent - 54);
    double total = sum;
    for (std::size_t level = 0; level < terms.size(); ++level) {
        if (counts[level] == 0)
            continue;
        const double rounded = (sum + terms[level]) - sum;
        total += rounded * counts[level];
        if (!(std::fabs(terms[level] - rounded) < halfUnit && total < limit))
            return false;
    }
    sum = total;
    return true;
}

} // namespace LXOrderedSum
