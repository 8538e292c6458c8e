#include "LXColorFormulas.h"

#include "color/whitebalance/Formulas.h"

#include <algorithm>
#include <cmath>

void getYUV(int r, int g, int b, double& y, double& u, double& v) {
    const LXWhiteBalance::YUV colour = LXWhiteBalance::YUVOf(r, g, b);
    y = colour.y;
    u = colour.u;
    v = colour.v;
}

void getYCbCr(double r, double g, double b, double& y, double& cb, double& cr) {
    const auto mix = [=](int k) {
        using namespace LXWhiteBalance;
        return YCbCrWeights[0][k] * r + YCbCrWeights[1][k] * g + YCbCrWeights[2][k] * b +
               YCbCrOffsets[k];
    };
    y = mix(0);
    cb = mix(1);
    cr = mix(2);
}

int getHue(int r, int g, int b) {
    const int max = std::max({r, g, b}), min = std::min({r, g, b});
    // In floating point, as the difference of two int may not fit one.
    const double delta = double(max) - min;
    if (max == min)
        return 0;
    double h;
    if (r == max) {
        h = (double(g) - b) / delta;
        h -= std::floor(h / 6) * 6;
    } else if (g == max) {
        h = (double(b) - r) / delta + 2;
    } else {
        h = (double(r) - g) / delta + 4;
    }
    const double degrees = h * 60;
    return static_cast<int>(degrees < 0 ? degrees + 360 : degrees);
}
