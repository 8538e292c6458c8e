#include "support/ReferenceWhiteBalance.h"

#include "support/ReferenceAdjustments.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <utility>

using namespace Reference;

namespace {

using Doubles = std::vector<double>;
using Pixels = std::vector<LXRGBA32i>;

double Clamp(double v) {
    return v > 0 ? std::fmin(v, 255) : 0;
}

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

int Luma(const LXRGBA32i& p) {
    return (11 * p.red + 59 * p.green + 30 * p.blue) / 100;
}

/// Of the levels that there are. Without pixels all stay 0.
template <class Level>
void Measure(const Pixels& pixels, Level level, double& min, double& max, double& mean,
             double& deviation) {
    const auto count = double(pixels.size());
    if (count == 0)
        return;
    min = 255;
    for (const LXRGBA32i& p : pixels) {
        min = std::fmin(min, level(p));
        max = std::fmax(max, level(p));
        mean += level(p);
    }
    mean /= count;
    for (const LXRGBA32i& p : pixels)
        deviation += (level(p) - mean) * (level(p) - mean);
    deviation = std::sqrt(deviation / count);
}

void GreyWorld(WhiteBalance& d, const Pixels& pixels) {
    d.shiftRed = d.gainRed * 0.1;
    d.scaleGreen = std::clamp(d.gainGreen, 0.0, 1.0);
    d.shiftBlue = d.gainBlue * 0.1;
    const Pixels selected = GreyPoints(pixels, 0.75);
    const auto meanChroma = [&](auto corrected) {
        double U = 0, V = 0;
        for (const LXRGBA32i& p : selected) {
            const LXRGBA32i q = corrected(p);
            const auto [y, u, v] = YUV(q.red, q.green, q.blue);
            U += u;
            V += v;
        }
        return std::pair(U / double(selected.size()), V / double(selected.size()));
    };
    auto [U, V] = meanChroma([](const LXRGBA32i& p) { return p; });
    for (int round = 0; round < 256 && !selected.empty() && U != V; ++round) {
        if (std::abs(Trunc(V)) > std::abs(Trunc(U)))
            d.shiftRed += (V * -0.5) / 255;
        else
            d.shiftBlue += (U * -0.5) / 255;
        const auto [nextU, nextV] = meanChroma([&](LXRGBA32i p) {
            p.red = std::uint8_t(Trunc(Clamp(p.red + d.shiftRed * 255)));
            p.green = std::uint8_t(Trunc(Clamp(p.green * d.scaleGreen)));
            p.blue = std::uint8_t(Trunc(Clamp(p.blue + d.shiftBlue * 255)));
            return p;
        });
        if (std::abs(Trunc(U - nextU)) < 1 && std::abs(Trunc(V - nextV)) < 1)
            break;
        U = nextU;
        V = nextV;
    }
}

void Brightness(WhiteBalance& d) {
    const double lo = d.minLuma, hi = d.maxLuma;
    const double c = std::log((hi + lo) * 0.5 / 255);
    if (c == 0)
        return;
    const double p = std::log(d.meanLuma / 255) / c;
    const double p3 =
        -0.689233281 / (std::log((d.sdRed + d.sdGreen + d.sdBlue) / 3) - 5.541263545158426);
    d.shadowLevel = Trunc(std::pow(lo / 255, 1 / p) * 255);
    d.highlightLevel = std::pow(hi / 255, 1 / p3) * 255;
}

Doubles Shifted(const Doubles& in, double shift) {
    const std::vector<int> table = BrightnessCurve(shift);
    Doubles out(256);
    for (std::size_t i = 0; i < 256; ++i)
        out[At(table[i])] += in[i];
    return out;
}

Doubles Folded(const Doubles& histogram) {
    Doubles folded(8);
    for (std::size_t i = 0; i < 256; ++i)
        folded[i / 32] += histogram[i];
    return folded;
}

double Total(const Doubles& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

/// The low byte. The weight is limited to an int.
int Mixed(int value, int level, int percent) {
    const auto weight = std::clamp<std::int64_t>(std::int64_t(2550) * percent, INT_MIN, INT_MAX);
    return int((value * weight + level * (255000 - weight)) / 255000 & 255);
}

} // namespace

std::array<double, 3> Reference::YUV(int r, int g, int b) {
    return {0.299 * r + 0.587 * g + 0.114 * b, -0.147 * r - 0.289 * g + 0.436 * b,
            0.615 * r - 0.515 * g - 0.1 * b};
}

std::array<double, 3> Reference::YCbCr(double r, double g, double b) {
    return {65.481 * r + 128.553 * g + 24.966 * b + 16, -37.797 * r - 74.203 * g + 112 * b + 128,
            112 * r - 93.786 * g - 18.214 * b + 128};
}

Pixels Reference::GreyPoints(const Pixels& pixels, double threshold) {
    Pixels selected;
    for (const LXRGBA32i& p : pixels) {
        const auto [y, u, v] = YUV(p.red, p.green, p.blue);
        const int chroma = std::abs(Trunc(u)) + std::abs(Trunc(v));
        if (chroma / (y + 0.00001) < threshold && selected.size() <= 2048)
            selected.push_back(p);
    }
    return selected;
}

int Reference::Hue(int r, int g, int b) {
    const int max = std::max({r, g, b});
    const double delta = max - std::min({r, g, b});
    if (delta == 0)
        return 0;
    const double h = max == r   ? (g - b) / delta
                     : max == g ? (b - r) / delta + 2
                                : (r - g) / delta + 4;
    return Trunc((h - 6 * std::floor(h / 6)) * 60);
}

std::vector<int> Reference::BrightnessCurve(double t) {
    const double d = std::clamp((t + 1) * 253 * 0.5 + 1, 0.0, 255.0);
    double y1 = 1, y3 = 254;
    for (;;) {
        const Table table = CurveTable({{0, 0}, {1, y1}, {d, 255 - d}, {254, y3}, {255, 255}});
        int falling = 1;
        while (falling < 256 && table[At(falling)] >= table[At(falling - 1)])
            ++falling;
        if (falling == 256 || (y1 == 0 && y3 == 255))
            return table;
        const bool isLow = falling <= 128;
        if (isLow)
            y1 = std::fmax(y1 - 0.255, 0);
        if (!isLow || y1 == 0)
            y3 = std::fmin(y3 + 0.255, 255);
        if (!isLow && y3 == 255)
            y1 = std::fmax(y1 - 0.255, 0);
    }
}

Doubles Reference::Stretch(Doubles source, double first, double last) {
    const int n = int(source.size());
    Doubles target(source.size());
    const double step = (last - first) / n;
    for (bool again = step != 0; again;) {
        again = false;
        for (int i = 0; i < n; ++i) {
            double& pile = source[At(std::clamp(Trunc((i - first) / step), 0, n - 1))];
            const double share = std::fmin(pile, 10);
            target[At(i)] += share;
            pile -= share;
            again = again || pile > 0;
        }
    }
    return target;
}

double Reference::SelectBrightness(const Doubles& original, const Doubles& target) {
    const Doubles ref = Folded(target);
    Doubles score(40);
    for (int k = 0; k < 40; ++k) {
        const Doubles cand = Folded(Shifted(original, k * 0.0499 + 0.01 - 1));
        const double D = std::sqrt(Total(cand) * Total(ref));
        if (!(D > 0))
            continue;
        double sum = 0;
        for (int i = 0; i < 8; ++i) {
            const double e = i - 4, difference = ref[At(i)] - cand[At(i)];
            double t = (std::abs(Trunc(e)) + 1) * (difference * difference) * (e * e * 0.5 + 1) / D;
            if ((i == 0 || i == 7) && cand[At(i)] > 0.03)
                t = t * t;
            sum += t;
        }
        score[At(k)] = std::sqrt(sum);
    }
    int best = 0;
    for (int k = 0; k < 40; ++k)
        if (score[At(k)] != 0 && score[At(k)] < score[At(best)])
            best = k;
    return std::clamp((best * 0.0499 + 0.01) * 0.5, 0.0, 1.0);
}

WhiteBalance Reference::Analyse(const Pixels& pixels) {
    WhiteBalance d{};
    double unused[2] = {};
    Measure(pixels, Luma, d.minLuma, d.maxLuma, unused[0], unused[1]);
    const auto red = [](const LXRGBA32i& p) { return int(p.red); };
    const auto green = [](const LXRGBA32i& p) { return int(p.green); };
    const auto blue = [](const LXRGBA32i& p) { return int(p.blue); };
    Measure(pixels, red, d.minRed, d.maxRed, d.meanRed, d.sdRed);
    Measure(pixels, green, d.minGreen, d.maxGreen, d.meanGreen, d.sdGreen);
    Measure(pixels, blue, d.minBlue, d.maxBlue, d.meanBlue, d.sdBlue);
    d.minAll = std::min({d.minRed, d.minGreen, d.minBlue});
    d.maxAll = std::max({d.maxRed, d.maxGreen, d.maxBlue});
    if (!pixels.empty()) {
        d.hueOffset = 15 - Hue(Trunc(d.meanRed), Trunc(d.meanGreen), Trunc(d.meanBlue));
        if (d.hueOffset < 0)
            d.hueOffset += 360;
    }
    for (const LXRGBA32i& p : pixels) {
        const auto [y, cb, cr] = YCbCr(p.red / 255.0, p.green / 255.0, p.blue / 255.0);
        d.meanLuma += y;
        d.meanCb += cb;
        d.meanCr += cr;
    }
    for (double* mean : {&d.meanLuma, &d.meanCb, &d.meanCr})
        *mean /= std::max<double>(double(pixels.size()), 1);
    if (d.sdGreen != 0) {
        const double all = d.sdRed + d.sdGreen + d.sdBlue;
        d.gainRed = all / (3 * d.sdRed);
        d.gainGreen = all / (3 * d.sdGreen);
        d.gainBlue = all / (3 * d.sdBlue);
    }
    const double spread =
        std::max({d.sdRed, d.sdGreen, d.sdBlue}) - std::min({d.sdRed, d.sdGreen, d.sdBlue});
    d.mix = (std::abs(Trunc(d.meanCb - d.meanCr)) + std::abs(Trunc(spread))) / 200.0;
    GreyWorld(d, pixels);
    Brightness(d);
    Doubles histogram(256);
    for (const LXRGBA32i& p : pixels)
        ++histogram[At(Luma(p))];
    if (!pixels.empty())
        d.selected = SelectBrightness(histogram, Stretch(histogram, d.minLuma, d.maxLuma));
    d.percent = Trunc(d.selected * 100);
    d.curve = BrightnessCurve(std::clamp((d.percent - 50) / 50.0, -1.0, 1.0));
    return d;
}

LXRGBA32i Reference::Auto(const WhiteBalance& d, LXRGBA32i p, int percent) {
    const auto channel = [&](int c, double corrected, double min, double max, double mean) {
        const double first = Clamp(corrected);
        const double second = Clamp((first - min) / (max - min) * d.maxAll + d.minAll);
        const double third = Clamp(c + (d.meanLuma - mean));
        const int value = Trunc(third * (1 - d.mix) + second * d.mix);
        return std::uint8_t(d.curve[At(Mixed(value, c, percent))]);
    };
    p.red = channel(p.red, d.shiftRed * 255 + p.red, d.minRed, d.maxRed, d.meanRed);
    p.green = channel(p.green, d.scaleGreen * p.green, d.minGreen, d.maxGreen, d.meanGreen);
    p.blue = channel(p.blue, d.shiftBlue * 255 + p.blue, d.minBlue, d.maxBlue, d.meanBlue);
    return p;
}

LXRGBA32i Reference::OverExposure(LXRGBA32i p, int percent) {
    for (std::uint8_t* c : {&p.red, &p.green, &p.blue})
        *c = std::uint8_t(Mixed(*c * *c / 255, *c, percent));
    return p;
}

LXRGBA32i Reference::UnderExposure(LXRGBA32i p, int percent) {
    for (std::uint8_t* c : {&p.red, &p.green, &p.blue})
        *c = std::uint8_t(Mixed(255 - ((255 - *c) * (255 - *c) >> 8), *c, percent));
    return p;
}
