#pragma once

#include "LXChannelArithmetic.h"
#include "LXColorFormulas.h"
#include "LXExport.h"
#include "LXImage.h"
#include "LXIterativeAdjustment.h"
#include "LXWhiteBalanceVisitors.h"

#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QVector>
#include <QtGui/QImage>

#include <vector>

/// White balance and brightness from the picture's own statistics.
///
/// The constructor looks at the picture and keeps what it found, not the picture; the object then
/// changes pixels as any adjustment does, each channel by its own value alone. Alpha stays.
/// Immutable after construction, so that threads may share it.
class LIBIMAGE_EXPORT RMWBTransformation {
public:
    /// What is done to a pixel.
    enum class BalanceFunction : int { Auto, OverExposure, UnderExposure };

    /// What the analysis finds. Levels are on the scale of 255, bins are those of LXHistogram, and
    /// a picture without pixels leaves 0 where there is nothing to find, but for shadowLevel. The
    /// members are steps of the analysis, which the constructors run.
    struct LIBIMAGE_EXPORT AlgorithmData {
        /// Of no picture: all 0.
        AlgorithmData() = default;
        explicit AlgorithmData(const LXImageRGBA32i& image);
        explicit AlgorithmData(const QImage& image);

        double meanLuma = 0; ///< of getYCbCr's Y
        double meanRed = 0;  ///< mean levels
        double meanGreen = 0;
        double meanBlue = 0;
        double hueOffset = 0; ///< 15 minus the hue of the mean colour, as 0 .. 359; for information
        double meanCb = 0;    ///< of getYCbCr
        double meanCr = 0;
        double minLuma = 0; ///< the lowest bin that holds a pixel
        double maxLuma = 0; ///< the highest
        double minRed = 0;  ///< lowest levels
        double minGreen = 0;
        double minBlue = 0;
        double maxRed = 0; ///< highest levels
        double maxGreen = 0;
        double maxBlue = 0;
        double sdRed = 0; ///< standard deviations of the levels
        double sdGreen = 0;
        double sdBlue = 0;
        /// The mean deviation over the channel's own. Infinite for a channel without deviation
        /// beside others, as green alone is looked at: without deviation in green all three are 0.
        double gainRed = 0;
        double gainGreen = 0;
        double gainBlue = 0;
        double shiftRed = 0;   ///< gray-world correction: red moves by shiftRed * 255,
        double scaleGreen = 0; ///< green is multiplied, 0 .. 1,
        double shiftBlue = 0;  ///< and blue moves by shiftBlue * 255
        double minAll = 0;     ///< lowest level of all channels
        double maxAll = 0;     ///< highest level of all channels
        double mix = 0; ///< weight of the stretched level against the moved one; may exceed 1
        QRect rect;     ///< of the picture
        double brightnessMean[2] = {0, 0}; ///< meanLuma, for each side of CalcBrightness
        double shadowLevel = 0;    ///< for information; INT_MIN where its power is no number,
                                   ///< as for no pixels
        double highlightLevel = 0; ///< for information
        double selected = 0;       ///< the curve: 0 brightest .. 1 darkest
        int percent = 0;           ///< the same in percent, truncated
        /// The brightness table: UpdateCurve for (percent - 50) / 50.
        std::vector<unsigned char> curve = std::vector<unsigned char>(256);

        /// Sets the gray-world correction from the gains and the picture's nearly gray pixels.
        void CalcGreyWorld(const LXImageRGBA32i& image);
        void CalcGreyWorld(const QImage& image);
        /// Sets `selected` to 0, and both levels from the luma's range and mean and the
        /// deviations. A picture of white alone leaves the levels as they are.
        void CalcBrightness();

        /// Deals the `n` source bins out to the `n` target bins: target bin i takes from source bin
        /// (i - first) / ((last - first) / n), truncated and limited to the bins. Target bins that
        /// share a source take turns of 10 until nothing is left. Counts are whole numbers. The
        /// target becomes 0 if first is last.
        static void linearScaleOriginalHistogram(double* source, double* target, int n,
                                                 double first, double last);
        /// The curve, 0 brightest .. 1 darkest, that brings the first histogram nearest to the
        /// second: 256 bins each, compared in 8. A curve that fits without any difference is passed
        /// over, as those of empty histograms are, unless it is the brightest, which stands from
        /// the start: that is how it is defined.
        static double SelectBrightnessCorrectionByHistogram(double* original, double* target);
        /// Moves 256 bins to where the curve for `shift`, -1 brightest .. 1 darkest, maps their
        /// levels.
        static void ShiftHistogram(double* in, double* out, double shift);
        /// (0, 0), (1, 1), (d, 255 - d), (254, 254), (255, 255) with d from 1 to 254 as t goes from
        /// -1 to 1; limited to 0 .. 255 beyond.
        static QVector<QPointF> InitializeCurveParameters(double t);
        /// The levels of the curve through these points. While it falls somewhere, its second and
        /// its last but one point give way, as far as black and white.
        static void UpdateCurve(std::vector<unsigned char>& table, double t);
    };

    /// Analyses the picture on the calling thread, whatever the function is; empty pictures and
    /// those of one colour are fine. `amount` is a percentage: 100 is the function alone, 0 leaves
    /// a channel to Auto's curve or as it is; outside that range the low byte of the mix is kept,
    /// and the weight, 2550 for a percent, is limited to an int.
    /// Missing tiles are left out. A QImage in another format than Format_ARGB32 is analysed as a
    /// converted copy.
    ///
    /// Throws std::invalid_argument for a function outside the enumeration, and std::bad_alloc.
    RMWBTransformation(const LXImageRGBA32i& image, BalanceFunction function, int amount);
    RMWBTransformation(const QImage& image, BalanceFunction function, int amount);

    /// As the function says.
    void operator()(LXRGBA32i& pixel) const { (this->*m_function)(pixel); }

    /// The gray-world correction, stretched, and the channel moved to the mean luma: both are mixed
    /// with each other, then with the channel by the amount, and go through the brightness curve.
    void Auto(LXRGBA32i& pixel) const { m_auto(pixel); }
    /// For too much light: c * c / 255, mixed with the channel by the amount.
    void OverExposure(LXRGBA32i& pixel) const { LXApplyTable(m_darker, pixel); }
    /// For too little light: 255 - ((255 - c) * (255 - c) >> 8), mixed with the channel by the
    /// amount.
    void UnderExposure(LXRGBA32i& pixel) const { LXApplyTable(m_lighter, pixel); }

    const AlgorithmData& GetData() const { return m_data; }
    /// As a weight of 255000.
    int GetAmount() const { return m_amount; }

private:
    RMWBTransformation(BalanceFunction function, AlgorithmData data, int amount);

    int m_amount;
    void (RMWBTransformation::*m_function)(LXRGBA32i&) const;
    AlgorithmData m_data;
    LXChannelTables m_auto;
    LXByteTable m_darker;
    LXByteTable m_lighter;
};

using RMIterativeWBTransformation = LXIterativeAdjustment<RMWBTransformation>;
