#pragma once

#include <array>
#include <vector>

/// The tables of the colour adjustments, written straight from their formulas in plain steps. They
/// share nothing with the library.
namespace Reference {

using Table = std::vector<int>; // entries as stored in bytes, unless told otherwise
struct Knot {
    double x, y;
};
struct Spline {
    std::vector<double> a, b, c;
};

/// trunc of the processor: what does not fit is the most negative int.
int Trunc(double v);
int Clamp255(int v);
/// (value * amount * 2550 + i * (255000 - amount * 2550)) / 255000 as a byte.
int Mix(int value, int i, int amount);

Spline SplineParts(const std::vector<Knot>& knots);
int SplineValue(double x, const std::vector<Knot>& knots, const Spline& spline);
Table CurveTable(const std::vector<Knot>& knots);
/// Curves: master, red, green, blue, as they are after the insertion of a third point.
std::array<Table, 3> CurvesTables(const std::array<std::vector<Knot>, 4>& curves, int amount);

struct Levels {
    int inputs[4][2];
    int outputs[4][2];
    double gammas[4];
};
std::array<Table, 3> LevelsTables(const Levels& levels, int amount);

Table BlackAndWhite(bool useLightness, float weight);
Table ColorBalance(const int* amounts);
Table Exposure(double exposure, double offset);
Table Gamma(double gamma);
Table PosterizeLevels(int levels);
Table PosterizeBands(int levels);
/// Red, green, blue.
std::array<int, 3> Temperature(int kelvin);

Table Dodge(double amount, int range);
Table Burn(double amount, int range);
std::vector<int> Threshold(const std::vector<int>& histogram);

} // namespace Reference
