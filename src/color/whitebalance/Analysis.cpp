#include "LXTransformImageColors.h"
#include "RMWBTransformation.h"
#include "color/whitebalance/Statistics.h"
#include "core/Truncate.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace LXWhiteBalance;

namespace {

using Data = RMWBTransformation::AlgorithmData;

struct Histograms {
    explicit Histograms(const Census& census)
        : luma(census.Total(&LXRows::Levels::luma)), red(census.Total(&LXRows::Levels::red)),
          green(census.Total(&LXRows::Levels::green)), blue(census.Total(&LXRows::Levels::blue)) {}
    Histogram luma, red, green, blue;
};

/// The lowest and the highest bin with a count; 0 and 0 if all are empty.
void FindEnds(const Histogram& histogram, double& lowest, double& highest) {
    const auto counted = [](std::int64_t count) { return count != 0; };
    const auto first = std::find_if(histogram.begin(), histogram.end(), counted);
    const auto last = std::find_if(histogram.rbegin(), histogram.rend(), counted);
    lowest = first == histogram.end() ? 0 : double(first - histogram.begin());
    highest = last == histogram.rend() ? 0 : double(histogram.rend() - last - 1);
}

void SetRanges(Data& data, const Histograms& histograms) {
    FindEnds(histograms.luma, data.minLuma, data.maxLuma);
    FindEnds(histograms.red, data.minRed, data.maxRed);
    FindEnds(histograms.green, data.minGreen, data.maxGreen);
    FindEnds(histograms.blue, data.minBlue, data.maxBlue);
    data.minAll = std::min({data.minRed, data.minGreen, data.minBlue});
    data.maxAll = std::max({data.maxRed, data.maxGreen, data.maxBlue});
}

double MeanLevel(const Histogram& histogram, std::int64_t count) {
    std::int64_t sum = 0;
    for (std::size_t level = 0; level < histogram.size(); ++level)
        sum += std::int64_t(level) * histogram[level];
    return double(sum) / double(count);
}

void SetMeans(Data& data, const Histograms& histograms, std::int64_t count) {
    data.meanRed = MeanLevel(histograms.red, count);
    data.meanGreen = MeanLevel(histograms.green, count);
    data.meanBlue = MeanLevel(histograms.blue, count);
    const int hue = getHue(static_cast<int>(data.meanRed), static_cast<int>(data.meanGreen),
                           static_cast<int>(data.meanBlue));
    data.hueOffset = hue > 15 ? 15 - hue + 360 : 15 - hue;
}

void SetColour(Data& data, const LXRows::YCbCrSums& sums, std::int64_t count) {
    data.meanLuma = sums.y / double(count);
    data.meanCb = sums.cb / double(count);
    data.meanCr = sums.cr / double(count);
}

void SetDeviations(Data& data, const PerChannel& squares, std::int64_t count) {
    data.sdRed = std::sqrt(squares.red / double(count));
    data.sdGreen = std::sqrt(squares.green / double(count));
    data.sdBlue = std::sqrt(squares.blue / double(count));
    // Green alone is asked: without deviation in red or blue the gain there is infinite.
    if (data.sdGreen == 0)
        return;
    const double sum = data.sdRed + data.sdGreen + data.sdBlue;
    data.gainRed = sum / (3 * data.sdRed);
    data.gainGreen = sum / (3 * data.sdGreen);
    data.gainBlue = sum / (3 * data.sdBlue);
}

/// Colour casts and unlike deviations call for the stretch.
double MixOf(const Data& data) {
    const auto deviations = std::minmax({data.sdRed, data.sdGreen, data.sdBlue});
    return (std::abs(TruncateToInt(data.meanCb - data.meanCr)) +
            std::abs(TruncateToInt(deviations.second - deviations.first))) /
           200.0;
}

/// The brightness at which the luma comes nearest to its own histogram stretched.
double SelectBrightness(const Histogram& luma) {
    double original[256], stretched[256];
    std::copy(luma.begin(), luma.end(), original);
    const auto counted = [](double count) { return count > 0.001; };
    const double* const first = std::find_if(original, original + 256, counted);
    const double* last = original + 255;
    while (last > first && !counted(*last))
        --last;
    Data::linearScaleOriginalHistogram(original, stretched, 256, double(first - original),
                                       double(last - original));
    return Data::SelectBrightnessCorrectionByHistogram(original, stretched);
}

template <class Image>
void Analyse(Data& data, const Image& image) {
    const Census census = TakeCensus(image);
    const std::int64_t count = census.Count();
    const Histograms histograms(census);
    SetRanges(data, histograms);
    if (count > 0) {
        SetMeans(data, histograms, count);
        SetColour(data, census.sums, count);
        SetDeviations(
            data, SumSquares(image, census, {data.meanRed, data.meanGreen, data.meanBlue}), count);
    }
    data.mix = MixOf(data);
    data.CalcGreyWorld(image);
    data.rect = LXWalkDetail::RectOf(image);
    data.brightnessMean[0] = data.brightnessMean[1] = data.meanLuma;
    data.CalcBrightness();
    if (count > 0)
        data.selected = SelectBrightness(histograms.luma);
    data.percent = TruncateToInt(data.selected * 100);
    Data::UpdateCurve(data.curve, std::clamp((data.percent - 50) / 50.0, -1.0, 1.0));
}

} // namespace

RMWBTransformation::AlgorithmData::AlgorithmData(const LXImageRGBA32i& image) {
    Analyse(*this, image);
}

RMWBTransformation::AlgorithmData::AlgorithmData(const QImage& image) {
    Analyse(*this, LXWalkDetail::AsARGB32(image));
}
