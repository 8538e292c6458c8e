#include "LXTransformImageColors.h"
#include "RMWBTransformation.h"
#include "color/whitebalance/Formulas.h"
#include "core/Truncate.h"

#include <algorithm>
#include <cstdlib>

using namespace LXWhiteBalance;

namespace {

struct Chroma {
    double u = 0;
    double v = 0;
};

/// The nearly gray pixels and their mean chroma.
struct GreyPoints {
    QVector<LXRGBA32i> pixels;
    Chroma mean;
};

template <class Image>
GreyPoints SelectGreyPoints(const Image& image) {
    constexpr double Threshold = 0.75;
    const QRect rect = LXWalkDetail::RectOf(image);
    GreyPoints points;
    points.pixels.reserve(static_cast<int>(std::min<std::int64_t>(
        std::int64_t(rect.width()) * rect.height(), LXGreyPointsSelector::MostPoints)));
    double y = 0;
    LXVisitImageColors<Image, LXGreyPointsSelector>()(
        image, rect,
        LXGreyPointsSelector(Threshold, &points.pixels, &y, &points.mean.u, &points.mean.v));
    if (!points.pixels.isEmpty()) {
        points.mean.u /= points.pixels.size();
        points.mean.v /= points.pixels.size();
    }
    return points;
}

struct Correction {
    double shiftRed;
    double scaleGreen;
    double shiftBlue;

    YUV Corrected(const LXRGBA32i& pixel) const {
        const auto level = [](double value) { return static_cast<int>(LimitedLevel(value)); };
        return YUVOf(level(pixel.red + shiftRed * 255), level(pixel.green * scaleGreen),
                     level(pixel.blue + shiftBlue * 255));
    }
};

Chroma MeanChroma(const QVector<LXRGBA32i>& pixels, const Correction& correction) {
    Chroma sum;
    for (const LXRGBA32i& pixel : pixels) {
        const YUV colour = correction.Corrected(pixel);
        sum.u += colour.u;
        sum.v += colour.v;
    }
    return {sum.u / pixels.size(), sum.v / pixels.size()};
}

int Size(double chroma) {
    return std::abs(TruncateToInt(chroma));
}

/// Takes half of the larger chroma away, until what that changes is below 1.
void Iterate(const GreyPoints& points, Correction& correction) {
    constexpr int MostRounds = 256;
    Chroma mean = points.mean;
    for (int round = 0; round < MostRounds && mean.u != mean.v; ++round) {
        if (Size(mean.u) >= Size(mean.v))
            correction.shiftBlue += mean.u * -0.5 / 255;
        else
            correction.shiftRed += mean.v * -0.5 / 255;
        const Chroma next = MeanChroma(points.pixels, correction);
        if (Size(mean.u - next.u) < 1 && Size(mean.v - next.v) < 1)
            return;
        mean = next;
    }
}

template <class Image>
void Calculate(RMWBTransformation::AlgorithmData& data, const Image& image) {
    Correction correction{data.gainRed * 0.1, std::clamp(data.gainGreen, 0.0, 1.0),
                          data.gainBlue * 0.1};
    const GreyPoints points = SelectGreyPoints(image);
    if (!points.pixels.isEmpty())
        Iterate(points, correction);
    data.shiftRed = correction.shiftRed;
    data.scaleGreen = correction.scaleGreen;
    data.shiftBlue = correction.shiftBlue;
}

} // namespace

void RMWBTransformation::AlgorithmData::CalcGreyWorld(const LXImageRGBA32i& image) {
    Calculate(*this, image);
}

void RMWBTransformation::AlgorithmData::CalcGreyWorld(const QImage& image) {
    Calculate(*this, image);
}
