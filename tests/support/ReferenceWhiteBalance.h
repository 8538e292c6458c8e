#pragma once

#include "LXPixel.h"

#include <array>
#include <vector>

/// White balance, written straight from its formulas in plain loops over the pixels. It shares
/// nothing with the library.
namespace Reference {

struct WhiteBalance {
    double meanLuma, meanRed, meanGreen, meanBlue, hueOffset, meanCb, meanCr;
    double minLuma, maxLuma, minRed, minGreen, minBlue, maxRed, maxGreen, maxBlue;
    double sdRed, sdGreen, sdBlue, gainRed, gainGreen, gainBlue;
    double shiftRed, scaleGreen, shiftBlue, minAll, maxAll, mix;
    double shadowLevel, highlightLevel, selected;
    int percent;
    std::vector<int> curve;
};

/// Of pixels in the order of the walk.
WhiteBalance Analyse(const std::vector<LXRGBA32i>& pixels);

/// The first 2049 nearly gray ones.
std::vector<LXRGBA32i> GreyPoints(const std::vector<LXRGBA32i>& pixels, double threshold);

LXRGBA32i Auto(const WhiteBalance& data, LXRGBA32i pixel, int percent);
LXRGBA32i OverExposure(LXRGBA32i pixel, int percent);
LXRGBA32i UnderExposure(LXRGBA32i pixel, int percent);

std::array<double, 3> YUV(int r, int g, int b);
std::array<double, 3> YCbCr(double r, double g, double b);
int Hue(int r, int g, int b);

std::vector<int> BrightnessCurve(double t);
std::vector<double> Stretch(std::vector<double> source, double first, double last);
double SelectBrightness(const std::vector<double>& original, const std::vector<double>& target);

} // namespace Reference
