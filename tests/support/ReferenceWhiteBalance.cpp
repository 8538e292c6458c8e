#include "support/ReferenceWhiteBalance.h"

#include "support/ReferenceAdjustments.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>

using namespace Reference;

namespace {

using Doubles = std::vector<double>;

double Clamp(double v) {
    if (!(v > 0))
        return 0;
    return v > 255 ? 255 : v;
}

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

/// Lowest and highest bin with something in it.
void Ends(const std::vector<int>& histogram, double& low, double& high) {
    low = high = 0;
    for (int i = 255; i >= 0; --i)
        if (histogram[At(i)] > 0)
            low = i;
    for (int i = 0; i < 256; ++i)
        if (histogram[At(i)] > 0)
            high = i;
}

double Mean(const std::vector<int>& histogram, int count) {
    double sum = 0;
    for (int i = 0; i < 256; ++i)
        sum += double(i) * histogram[At(i)];
    return sum / count;
}

void GreyWorld(WhiteBalance& d, const std::vector<LXRGBA32i>& pixels) {
    double shiftRed = d.gainRed * 0.1, shiftBlue = d.gainBlue * 0.1;
    double scaleGreen = d.gainGreen < 0 ? 0 : d.gainGreen > 1 ? 1 : d.gainGreen;
    std::vector<LXRGBA32i> selected;
    double U = 0, V = 0;
    for (const LXRGBA32i& p : pixels) {
        const auto [y, u, v] = YUV(p.red, p.green, p.blue);
        if ((std::abs(Trunc(u)) + std::abs(Trunc(v))) / (y + 0.00001) < 0.75 &&
            selected.size() <= 2048) {
            selected.push_back(p);
            U += u;
            V += v;
        }
    }
    const auto n = double(selected.size());
    U /= n;
    V /= n;
    for (int round = 0; round < 256 && n > 0; ++round) {
        if (U == V)
            break;
        if (std::abs(Trunc(V)) > std::abs(Trunc(U)))
            shiftRed += (V * -0.5) / 255;
        else
            shiftBlue += (U * -0.5) / 255;
        std::vector<LXRGBA32i> moved = selected;
        double nextU = 0, nextV = 0;
        for (LXRGBA32i& p : moved) {
            p.red = std::uint8_t(Trunc(Clamp(p.red + shiftRed * 255)));
            p.green = std::uint8_t(Trunc(Clamp(p.green * scaleGreen)));
            p.blue = std::uint8_t(Trunc(Clamp(p.blue + shiftBlue * 255)));
            const auto [y, u, v] = YUV(p.red, p.green, p.blue);
            nextU += u;
            nextV += v;
        }
        nextU /= n;
        nextV /= n;
        const int changeU = std::abs(Trunc(U - nextU)), changeV = std::abs(Trunc(V - nextV));
        if (changeU < 1 && changeV < 1)
            break;
        U = nextU;
        V = nextV;
    }
    d.shiftRed = shiftRed;
    d.scaleGreen = scaleGreen;
    d.shiftBlue = shiftBlue;
}

void Brightness(WhiteBalance& d) {
    const double lo = d.minLuma, hi = d.maxLuma;
    const double c = std::log((hi + lo) * 0.5 / 255);
    d.selected = 0;
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
    for (int i = 0; i < 256; ++i)
        out[At(table[At(i)])] += in[At(i)];
    return out;
}

Doubles Folded(const Doubles& histogram) {
    Doubles folded(8);
    for (std::size_t i = 0; i < 256; ++i)
        folded[i / 32] += histogram[i];
    return folded;
}

double Total(const Doubles& values) {
    double sum = 0;
    for (const double v : values)
        sum += v;
    return sum;
}

/// The low byte. The weight is limited to an int.
int Mixed(int value, int level, int percent) {
    const std::int64_t whole = std::int64_t(2550) * percent;
    const std::int64_t weight = whole < INT_MIN ? INT_MIN : whole > INT_MAX ? INT_MAX : whole;
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

int Reference::Hue(int r, int g, int b) {
    const int max = r > g ? (r > b ? r : b) : (g > b ? g : b);
    const int min = r < g ? (r < b ? r : b) : (g < b ? g : b);
    const double delta = max - min;
    double h = 0;
    if (delta == 0)
        return 0;
    if (max == r) {
        h = (g - b) / delta;
        h = h - 6 * std::floor(h / 6);
    } else if (max == g) {
        h = (b - r) / delta + 2;
    } else {
        h = (r - g) / delta + 4;
    }
    h = h * 60;
    if (h < 0)
        h += 360;
    return Trunc(h);
}

std::vector<int> Reference::BrightnessCurve(double t) {
    double d = (t + 1) * 253 * 0.5 + 1;
    d = d < 0 ? 0 : d > 255 ? 255 : d;
    double y1 = 1, y3 = 254;
    const auto lowerFirst = [&] { y1 = y1 - 0.255 < 0 ? 0 : y1 - 0.255; };
    const auto raiseThird = [&] { y3 = y3 + 0.255 > 255 ? 255 : y3 + 0.255; };
    for (;;) {
        const Table table = CurveTable({{0, 0}, {1, y1}, {d, 255 - d}, {254, y3}, {255, 255}});
        int falling = 0;
        for (int i = 255; i >= 1; --i)
            if (table[At(i)] < table[At(i - 1)])
                falling = i;
        if (falling == 0 || (y1 == 0 && y3 == 255))
            return table;
        if (falling <= 128) {
            lowerFirst();
            if (y1 == 0)
                raiseThird();
        } else {
            raiseThird();
            if (y3 == 255)
                lowerFirst();
        }
    }
}

Doubles Reference::Stretch(Doubles source, double first, double last) {
    const int n = int(source.size());
    Doubles target(source.size());
    const double step = (last - first) / n;
    if (step == 0)
        return target;
    for (bool again = true; again;) {
        again = false;
        for (int i = 0; i < n; ++i) {
            int j = Trunc((i - first) / step);
            j = j < 0 ? 0 : j > n - 1 ? n - 1 : j;
            if (source[At(j)] <= 10) {
                target[At(i)] += source[At(j)];
                source[At(j)] = 0;
            } else {
                target[At(i)] += 10;
                source[At(j)] -= 10;
                again = true;
            }
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
    const double result = (best * 0.0499 + 0.01) * 0.5;
    return result < 0 ? 0 : result > 1 ? 1 : result;
}

WhiteBalance Reference::Analyse(const std::vector<LXRGBA32i>& pixels) {
    WhiteBalance d{};
    const int count = int(pixels.size());
    std::vector<int> red(256), green(256), blue(256), luma(256);
    for (const LXRGBA32i& p : pixels) {
        ++red[p.red];
        ++green[p.green];
        ++blue[p.blue];
        ++luma[At((11 * p.red + 59 * p.green + 30 * p.blue) / 100)];
    }
    Ends(luma, d.minLuma, d.maxLuma);
    Ends(red, d.minRed, d.maxRed);
    Ends(green, d.minGreen, d.maxGreen);
    Ends(blue, d.minBlue, d.maxBlue);
    d.minAll = std::fmin(d.minRed, std::fmin(d.minGreen, d.minBlue));
    d.maxAll = std::fmax(d.maxRed, std::fmax(d.maxGreen, d.maxBlue));
    if (count >= 1) {
        d.meanRed = Mean(red, count);
        d.meanGreen = Mean(green, count);
        d.meanBlue = Mean(blue, count);
        d.hueOffset = 15 - Hue(Trunc(d.meanRed), Trunc(d.meanGreen), Trunc(d.meanBlue));
        if (d.hueOffset < 0)
            d.hueOffset += 360;
        double sums[6] = {};
        for (const LXRGBA32i& p : pixels) {
            sums[0] += (p.red - d.meanRed) * (p.red - d.meanRed);
            sums[1] += (p.green - d.meanGreen) * (p.green - d.meanGreen);
            sums[2] += (p.blue - d.meanBlue) * (p.blue - d.meanBlue);
            const auto [y, cb, cr] = YCbCr(p.red / 255.0, p.green / 255.0, p.blue / 255.0);
            sums[3] += y;
            sums[4] += cb;
            sums[5] += cr;
        }
        d.sdRed = std::sqrt(sums[0] / count);
        d.sdGreen = std::sqrt(sums[1] / count);
        d.sdBlue = std::sqrt(sums[2] / count);
        d.meanLuma = sums[3] / count;
        d.meanCb = sums[4] / count;
        d.meanCr = sums[5] / count;
        const double all = d.sdRed + d.sdGreen + d.sdBlue;
        if (d.sdGreen != 0) {
            d.gainRed = all / (3 * d.sdRed);
            d.gainGreen = all / (3 * d.sdGreen);
            d.gainBlue = all / (3 * d.sdBlue);
        }
    }
    const double sdMax = std::fmax(d.sdRed, std::fmax(d.sdGreen, d.sdBlue));
    const double sdMin = std::fmin(d.sdRed, std::fmin(d.sdGreen, d.sdBlue));
    d.mix = (std::abs(Trunc(d.meanCb - d.meanCr)) + std::abs(Trunc(sdMax - sdMin))) / 200.0;
    GreyWorld(d, pixels);
    Brightness(d);
    if (count > 0) {
        const Doubles original(luma.begin(), luma.end());
        d.selected = SelectBrightness(original, Stretch(original, d.minLuma, d.maxLuma));
    }
    d.percent = Trunc(d.selected * 100);
    d.curve = BrightnessCurve(std::fmax(-1, std::fmin(1, (d.percent - 50) / 50.0)));
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
    for (std::uint8_t* c : {&p.red, &p.green, &p.blue}) {
        const int t = *c * *c / 255;
        *c = std::uint8_t(Mixed(t > 255 ? 255 : t, *c, percent));
    }
    return p;
}

LXRGBA32i Reference::UnderExposure(LXRGBA32i p, int percent) {
    for (std::uint8_t* c : {&p.red, &p.green, &p.blue})
        *c = std::uint8_t(Mixed(255 - ((255 - *c) * (255 - *c) >> 8), *c, percent));
    return p;
}
