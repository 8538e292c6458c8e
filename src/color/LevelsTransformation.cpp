#include "LXLevelsTransformation.h"

#include "color/ByteTables.h"

namespace {

/// A range of levels stretched over another, in truncating integers.
class RangeMapping {
public:
    /// Beyond 2^30, ends count as that, so that no product overflows.
    RangeMapping(const int (&input)[2], const int (&output)[2])
        : m_low(Limit(input[0])), m_high(Limit(input[1])), m_outLow(Limit(output[0])),
          m_outHigh(Limit(output[1])) {}

    /// 0 .. 255: what an output range leads beyond that is cut off.
    unsigned char operator()(int level) const {
        return LXClampToByte(static_cast<int>(Stretch(level)));
    }

private:
    static std::int64_t Limit(int end) { return std::clamp(end, -(1 << 30), 1 << 30); }

    std::int64_t Stretch(int level) const {
        if (level < m_low)
            return m_outLow;
        if (level > m_high)
            return m_outHigh;
        const std::int64_t span = std::max<std::int64_t>(m_high - m_low, 1); // 1: a single level
        return (level - m_low) * (m_outHigh - m_outLow) / span + m_outLow;
    }

    std::int64_t m_low, m_high, m_outLow, m_outHigh;
};

constexpr double MaxGamma = 9.99;

/// The exponent of a colour channel. Both conversions truncate, which makes the gamma of a channel
/// a switch of three positions: -2^31 below 1 (the integer that the processor makes of infinity),
/// 1 below 2, and 0 from there on. That is how levels are defined, so it must not become the
/// fraction 1 / gamma that the master has.
double ChannelExponent(double gamma) {
    const int whole = TruncateToInt(LimitGamma(gamma, MaxGamma));
    return whole == 0 ? std::numeric_limits<int>::min() : TruncateToInt(1.0 / whole);
}

} // namespace

LXLevelsTransformation::LXLevelsTransformation()
    : m_tables{IdentityTable(), IdentityTable(), IdentityTable()} {}

LXLevelsTransformation::LXLevelsTransformation(int (*inputs)[2], int (*outputs)[2], double* gammas,
                                               int amount) {
    const double masterExponent = 1.0 / LimitGamma(gammas[0], MaxGamma);
    const RangeMapping masterRange(inputs[0], outputs[0]);
    const LXByteTable master =
        MakeByteTable([&](int i) { return masterRange(PowerLevel(i, masterExponent)); });

    const auto bake = [&](int channel) {
        const double exponent = ChannelExponent(gammas[channel]);
        const RangeMapping range(inputs[channel], outputs[channel]);
        return MakeByteTable([&](int i) {
            const unsigned char level = range(PowerLevel(i, exponent));
            return LXMixWithIdentity(master[level], i, LXWeightOfPercent(amount));
        });
    };
    m_tables = {bake(1), bake(2), bake(3)};
}
