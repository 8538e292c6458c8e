#pragma once

#include "LXExport.h"
#include "LXPixel.h"

#include <QtCore/QVector>

/// Visitors that measure a picture for its white balance; see LXTransformImageColors.h for the
/// walks that take them. They add to what the caller owns, which must outlive the visit, and are
/// for one thread. Alpha counts for nothing.

/// Counts levels. The histograms have 256 bins; no bin may go beyond an int.
class LIBIMAGE_EXPORT LXHistogram {
public:
    LXHistogram(int* red, int* green, int* blue, int* luma, double* chroma, int* count)
        : m_red(red), m_green(green), m_blue(blue), m_luma(luma), m_chroma(chroma), m_count(count) {
    }

    /// One in each histogram and in the count. The luma bin is (11 r + 59 g + 30 b) / 100, cut: the
    /// weights of red and blue stand the other way round than in getYUV, by definition. The chroma
    /// grows by sqrt(r^2 + g^2 + b^2 - (r + g + b)^2 / 3), the distance from the gray axis.
    void operator()(const LXRGBA32i& pixel) const;

private:
    int* m_red;
    int* m_green;
    int* m_blue;
    int* m_luma;
    double* m_chroma;
    int* m_count;
};

/// Sums what deviations and mean colour are made of.
class LIBIMAGE_EXPORT LXCommonParamsCalculator {
public:
    /// Sums of squares about the three means, and of getYCbCr.
    LXCommonParamsCalculator(double* squareRed, double* squareGreen, double* squareBlue, double* y,
                             double* cb, double* cr, int* count, double meanRed, double meanGreen,
                             double meanBlue)
        : m_squareRed(squareRed), m_squareGreen(squareGreen), m_squareBlue(squareBlue), m_y(y),
          m_cb(cb), m_cr(cr), m_count(count), m_meanRed(meanRed), m_meanGreen(meanGreen),
          m_meanBlue(meanBlue) {}

    void operator()(const LXRGBA32i& pixel) const;

private:
    double* m_squareRed;
    double* m_squareGreen;
    double* m_squareBlue;
    double* m_y;
    double* m_cb;
    double* m_cr;
    int* m_count;
    double m_meanRed;
    double m_meanGreen;
    double m_meanBlue;
};

/// Picks pixels that are nearly gray: the first 2049 of the walk.
class LIBIMAGE_EXPORT LXGreyPointsSelector {
public:
    static constexpr int MostPoints = 2049;

    /// A pixel is picked if (|U| + |V|) / (Y + 0.00001) is below the threshold, with U and V cut to
    /// whole numbers. Its Y, U and V, uncut, go to the sums.
    LXGreyPointsSelector(double threshold, QVector<LXRGBA32i>* points, double* y, double* u,
                         double* v)
        : m_threshold(threshold), m_points(points), m_y(y), m_u(u), m_v(v) {}

    void operator()(const LXRGBA32i& pixel) const;
    /// Runs without such a pixel pass quickly, and all runs once the picking is over.
    void VisitRun(const LXRGBA32i* pixels, unsigned int count) const;

private:
    double m_threshold;
    QVector<LXRGBA32i>* m_points;
    double* m_y;
    double* m_u;
    double* m_v;
};
