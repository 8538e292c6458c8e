#pragma once

#include <QtCore/QRect>
#include <QtGui/QTransform>

#include <array>

/// From the pixels of a destination row to places in the source.
namespace LXRows {

/// Rows are worked on in pieces of at most this many pixels.
constexpr unsigned int RunLength = 128;
template <class Value>
using Run = std::array<Value, RunLength>;

/// The places of the centres of `count` pixels from (x, y) on: bit for bit what
/// QTransform::map(double, double, ...) gives for each.
struct Positions {
    Run<double> x;
    Run<double> y;
};
void Map(const QTransform& inverse, int x, int y, unsigned int count, Positions& positions);

/// Pixels of the source; the column is Outside where there is none.
struct Pixels {
    static constexpr int Outside = -2147483647 - 1;
    Run<int> column;
    Run<int> row;
};

/// The pixels of `rect` that contain the places. What lies before 0 by more than rounding noise is
/// in pixel -1.
void Truncate(const Positions& positions, unsigned int count, const QRect& rect, Pixels& pixels);

/// The pixels from which samples are taken, in a source of that size: those that contain the places
/// less `shift`, 0 for the nearest pixel and 0.5 for interpolation. Only the place itself must be
/// inside; what the shift takes beyond the first column or row is there too.
void Locate(const Positions& positions, unsigned int count, const QSize& size, double shift,
            Pixels& pixels);

/// What is left of the places `first` to `last` (excluded), after the pixel and the shift of 0.5,
/// to interpolate by: from -0.5 at the first column or row, where it is an extrapolation, and up
/// to 1. The first one goes to the first fraction.
void Fractions(const Positions& positions, const Pixels& pixels, unsigned int first,
               unsigned int last, Positions& fractions);

} // namespace LXRows
