#include "RMWBTransformation.h"
#include "color/ByteTables.h"
#include "color/whitebalance/Formulas.h"

#include <stdexcept>
#include <utility>

namespace {

using LXWhiteBalance::LimitedLevel;
using Data = RMWBTransformation::AlgorithmData;
using Function = RMWBTransformation::BalanceFunction;

struct Range {
    double min, max, mean;
};

/// Auto on one level of a channel; `corrected` is what the gray-world correction makes of it.
unsigned char AutoLevel(const Data& data, const Range& channel, int level, double corrected,
                        int amount) {
    // The factor is maxAll, not maxAll - minAll: so the stretch is defined.
    const double stretched = LimitedLevel((LimitedLevel(corrected) - channel.min) /
                                              (channel.max - channel.min) * data.maxAll +
                                          data.minAll);
    const double moved = LimitedLevel(level + (data.meanLuma - channel.mean));
    const int balanced = TruncateToInt(moved * (1 - data.mix) + stretched * data.mix);
    return data.curve[std::size_t(LXMixWithIdentity(balanced, level, amount) & 255)];
}

LXChannelTables AutoTables(const Data& d, int amount) {
    const Range red{d.minRed, d.maxRed, d.meanRed}, green{d.minGreen, d.maxGreen, d.meanGreen},
        blue{d.minBlue, d.maxBlue, d.meanBlue};
    return {
        MakeByteTable([&](int c) { return AutoLevel(d, red, c, d.shiftRed * 255 + c, amount); }),
        MakeByteTable([&](int c) { return AutoLevel(d, green, c, d.scaleGreen * c, amount); }),
        MakeByteTable([&](int c) { return AutoLevel(d, blue, c, d.shiftBlue * 255 + c, amount); })};
}

// One divides by 255 and the other shifts by 8, so that black does not stay black in UnderExposure
// as white stays white in OverExposure. Both are defined so.

LXByteTable DarkerTable(int amount) {
    return MakeByteTable([=](int c) { return LXMixWithIdentity(c * c / 255, c, amount); });
}

LXByteTable LighterTable(int amount) {
    return MakeByteTable(
        [=](int c) { return LXMixWithIdentity(255 - ((255 - c) * (255 - c) >> 8), c, amount); });
}

/// The step for a function; null for one outside the enumeration.
auto StepOf(Function function) -> void (RMWBTransformation::*)(LXRGBA32i&) const {
    switch (function) {
    case Function::Auto:
        return &RMWBTransformation::Auto;
    case Function::OverExposure:
        return &RMWBTransformation::OverExposure;
    case Function::UnderExposure:
        return &RMWBTransformation::UnderExposure;
    }
    return nullptr;
}

/// Lets a function of the enumeration through.
Function Known(Function function) {
    if (!StepOf(function))
        throw std::invalid_argument("RMWBTransformation");
    return function;
}

} // namespace

// Braces, as they have the function looked at before the picture.
RMWBTransformation::RMWBTransformation(const LXImageRGBA32i& image, BalanceFunction function,
                                       int amount)
    : RMWBTransformation{Known(function), AlgorithmData(image), amount} {}

RMWBTransformation::RMWBTransformation(const QImage& image, BalanceFunction function, int amount)
    : RMWBTransformation{Known(function), AlgorithmData(image), amount} {}

RMWBTransformation::RMWBTransformation(BalanceFunction function, AlgorithmData data, int amount)
    : m_amount(Rescale(amount, 2550, 1)), m_function(StepOf(function)), m_data(std::move(data)),
      m_auto(AutoTables(m_data, m_amount)), m_darker(DarkerTable(m_amount)),
      m_lighter(LighterTable(m_amount)) {}
