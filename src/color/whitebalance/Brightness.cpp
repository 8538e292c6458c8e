#include "RMWBTransformation.h"
#include "color/LXCurvesTransformation_f.h"
#include "core/Truncate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <vector>

using Data = RMWBTransformation::AlgorithmData;

// ---- levels -------------------------------------------------------------------------------------

void Data::CalcBrightness() {
    selected = 0;
    const double middle = std::log((maxLuma + minLuma) * 0.5 / 255);
    if (middle == 0)
        return;
    const auto shadow = [&](double mean) {
        const double power = std::log(mean / 255) / middle;
        return TruncateToInt(std::pow(minLuma / 255, 1 / power) * 255);
    };
    const double power =
        -0.689233281 / (std::log((sdRed + sdGreen + sdBlue) / 3) - 5.541263545158426);
    shadowLevel = std::min(shadow(brightnessMean[0]), shadow(brightnessMean[1]));
    highlightLevel = std::pow(maxLuma / 255, 1 / power) * 255;
}

// ---- stretch ------------------------------------------------------------------------------------

namespace {

/// What the one whose turn it is in `turn` gets of a pile, when `members` take turns of 10 and the
/// last turn takes what is left.
double ShareOf(double pile, std::int64_t turn, std::int64_t members) {
    const std::int64_t lastTurn =
        std::max<std::int64_t>(TruncateToInt64(std::ceil(pile / 10)), 1) - 1;
    if (turn > lastTurn)
        return 0;
    const std::int64_t own = (lastTurn - turn) / members;
    const bool hasLast = lastTurn % members == turn;
    return double(own) * 10 + (hasLast ? pile - double(lastTurn) * 10 : 10);
}

} // namespace

void Data::linearScaleOriginalHistogram(double* source, double* target, int n, double first,
                                        double last) {
    const auto bins = static_cast<std::size_t>(std::max(n, 0));
    const std::vector<double> piles(source, source + bins);
    std::fill_n(target, bins, 0.0);
    const double step = (last - first) / n;
    if (step == 0)
        return;
    std::vector<std::size_t> sourceOf(bins);
    std::vector<std::int64_t> members(bins), turns(bins);
    for (int i = 0; i < n; ++i) {
        const int j = std::clamp(TruncateToInt((i - first) / step), 0, n - 1);
        sourceOf[std::size_t(i)] = std::size_t(j);
        ++members[std::size_t(j)];
    }
    for (std::size_t i = 0; i < bins; ++i) {
        const std::size_t j = sourceOf[i];
        target[i] = ShareOf(piles[j], turns[j]++, members[j]);
    }
}

// ---- search -------------------------------------------------------------------------------------

namespace {

using Folded = std::array<double, 8>;

/// 256 bins in 8.
Folded Fold(const double* histogram) {
    Folded folded{};
    for (std::size_t level = 0; level < 256; ++level)
        folded[level / 32] += histogram[level];
    return folded;
}

double Sum(const Folded& folded) {
    double sum = 0;
    for (const double bin : folded)
        sum += bin;
    return sum;
}

/// How far the candidate lies from the reference; bins far from the middle weigh more, and most
/// those of black and white, once there is anything in them. 0 if either is empty.
double Distance(const Folded& reference, const Folded& candidate) {
    const double scale = std::sqrt(Sum(candidate) * Sum(reference));
    if (!(scale > 0))
        return 0;
    double sum = 0;
    for (int i = 0; i < 8; ++i) {
        const double there = candidate[std::size_t(i)];
        const double difference = reference[std::size_t(i)] - there;
        const double e = i - 4;
        double term = (std::abs(i - 4) + 1) * (difference * difference) * (e * e * 0.5 + 1) / scale;
        if ((i == 0 || i == 7) && there > 0.03)
            term *= term;
        sum += term;
    }
    return std::sqrt(sum);
}

constexpr int Candidates = 40;

/// 0 .. 2.
double CandidateOf(int k) {
    return k * 0.0499 + 0.01;
}

} // namespace

double Data::SelectBrightnessCorrectionByHistogram(double* original, double* target) {
    const Folded reference = Fold(target);
    std::array<double, Candidates> distances;
    for (int k = 0; k < Candidates; ++k) {
        double shifted[256];
        ShiftHistogram(original, shifted, CandidateOf(k) - 1);
        distances[std::size_t(k)] = Distance(reference, Fold(shifted));
    }
    // A distance of 0 is not chosen over another: that of an empty histogram, but that of a perfect
    // match as well. That is how it is defined.
    std::size_t best = 0;
    for (std::size_t k = 1; k < distances.size(); ++k)
        if (distances[k] != 0 && distances[k] < distances[best])
            best = k;
    return std::clamp(CandidateOf(int(best)) * 0.5, 0.0, 1.0);
}

void Data::ShiftHistogram(double* in, double* out, double shift) {
    std::vector<unsigned char> table;
    UpdateCurve(table, shift);
    std::fill(out, out + 256, 0.0);
    for (std::size_t level = 0; level < table.size(); ++level)
        out[table[level]] += in[level];
}

// ---- curve --------------------------------------------------------------------------------------

QVector<QPointF> Data::InitializeCurveParameters(double t) {
    const double d = std::clamp((t + 1) * 253 * 0.5 + 1, 0.0, 255.0);
    return {{0, 0}, {1, 1}, {d, 255 - d}, {254, 254}, {255, 255}};
}

void Data::UpdateCurve(std::vector<unsigned char>& table, double t) {
    constexpr double Step = 0.255;
    QVector<QPointF> points = InitializeCurveParameters(t);
    const auto lower = [&] { points[1].setY(std::max(points[1].y() - Step, 0.0)); };
    const auto raise = [&] { points[3].setY(std::min(points[3].y() + Step, 255.0)); };

    LXCurvesTransformation_f curve(points);
    for (;;) {
        const LXByteTable& levels = curve.GetTable();
        const auto fall = std::is_sorted_until(levels.begin(), levels.end());
        if (fall == levels.end() || (points[1].y() == 0 && points[3].y() == 255))
            break;
        if (fall - levels.begin() <= 128) {
            lower();
            if (points[1].y() == 0)
                raise();
        } else {
            raise();
            if (points[3].y() == 255)
                lower();
        }
        curve.Update(points);
    }
    table = curve.GetTable();
}
