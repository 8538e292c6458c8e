#include "core/conversion/Rows.h"

#include "core/conversion/PixelWords.h"
#include "core/conversion/RowLoop.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace LXWords;

/// The ink of a channel, by the largest channel of the pixel and the channel itself. Black is
/// 255 minus the largest channel, so nothing else enters. No integer formula gives the same bytes:
/// the rounding of the doubles decides ties.
class InkTable {
public:
    InkTable() {
        for (int max = 0; max < 256; ++max)
            for (int channel = 0; channel <= max; ++channel)
                m_ink[max][channel] = static_cast<std::uint8_t>(Ink(max, channel));
    }

    std::uint32_t operator()(int max, int channel) const { return m_ink[max][channel]; }

private:
    static int Ink(int max, int channel) {
        const double black = 1 - Fraction(max);
        double ink = 1 - Fraction(channel);
        if (std::abs(black - 1) > 1e-12)
            ink = (ink - black) / (1 - black);
        return StoredByte(ink);
    }

    std::uint8_t m_ink[256][256] = {};
};

/// 1 - (ink * (1 - black) + black) of the stored bytes, that is (1 - ink) * (1 - black), as a
/// stored byte. In units of a byte 1 is 65535 / 256; the small summand carries the rounding. Exact
/// for all pairs, as a test shows.
inline std::uint32_t Light(int ink, int black) {
    constexpr float one = 255.99609375F;
    const float product = (one - static_cast<float>(ink)) * (one - static_cast<float>(black)) / one;
    return static_cast<std::uint32_t>(static_cast<int>(product + 0.001953125F));
}

/// Cyan, which came from red, goes to position 0, which is blue: the way back exchanges red and
/// blue. That is how the conversion is defined, so it must not be put right here.
inline LXRGBA32i RGBOf(LXCMYKA pixel) {
    const std::uint64_t word = WordOf(pixel);
    const int black = Byte(word, 3);
    return PixelOf<LXRGBA32i>(Light(Byte(word, 0), black) | Light(Byte(word, 1), black) << 8 |
                              Light(Byte(word, 2), black) << 16 |
                              static_cast<std::uint32_t>(Byte(word, 4)) << 24);
}

} // namespace

void LXRows::ToCMYK(const LXRGBA32i* in, LXCMYKA* out, unsigned int count) {
    static const InkTable ink;
    for (unsigned int i = 0; i < count; ++i) {
        const int blue = in[i].blue, green = in[i].green, red = in[i].red;
        const int max = std::max({red, green, blue});
        const std::uint32_t inks = ink(max, red) | ink(max, green) << 8 | ink(max, blue) << 16 |
                                   static_cast<std::uint32_t>(255 - max) << 24;
        out[i] = PixelOf<LXCMYKA>(inks | static_cast<std::uint64_t>(in[i].alpha) << 32);
    }
}

void LXRows::FromCMYK(const LXCMYKA* in, LXRGBA32i* out, unsigned int count) {
    ConvertRow<LXCMYKA, LXRGBA32i, RGBOf>(in, out, count);
}
