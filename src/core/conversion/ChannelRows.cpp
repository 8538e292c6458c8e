#include "core/conversion/Rows.h"

#include "core/conversion/RowLoop.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

/// Conversions in which each channel goes by itself. All channels of a row are one array.

namespace {

constexpr float FullScale = 256.87841796875F;
constexpr float ByteScale = 0.9926875233650208F;

/// The bias of the float exponent over that of the half, in place.
constexpr std::uint32_t ExponentShift = 112U << 23;

inline std::uint16_t WideOfByte(std::uint8_t byte) {
    return static_cast<std::uint16_t>(byte << 8);
}

inline std::uint8_t ByteOfWide(std::uint16_t wide) {
    return static_cast<std::uint8_t>(wide >> 8);
}

/// MakeHalfFloat<unsigned char>. All bytes but 0 become normal halves in the range of its table, so
/// that the table and the rounding shift are one subtraction and one shift.
inline std::uint16_t HalfOfByte(std::uint8_t byte) {
    const float value = static_cast<float>(byte) / 255.0F * FullScale;
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return static_cast<std::uint16_t>(byte == 0 ? 0 : (bits - ExponentShift + 0x1000) >> 13);
}

/// MakeUChar. Halves below 1 truncate to 0; infinities and NaNs truncate to the most negative
/// integer, whose low byte is 0 as well; the rest are normal and fit an integer.
inline std::uint8_t ByteOfHalf(std::uint16_t half) {
    constexpr std::uint32_t one = 0x3C00, infinity = 0x7C00;
    const std::uint32_t magnitude = half & 0x7FFFU;
    const std::uint32_t bits = (magnitude << 13) + ExponentShift;
    float value;
    std::memcpy(&value, &bits, sizeof value);
    value = magnitude >= one && magnitude < infinity ? value : 0.0F;
    const int truncated = static_cast<int>(value * ByteScale);
    return static_cast<std::uint8_t>(half & 0x8000U ? -truncated : truncated);
}

/// The row as one array of channels.
template <class Channel, class Pixel>
auto Channels(Pixel* pixels) {
    static_assert(sizeof(Pixel) == 4 * sizeof(Channel));
    if constexpr (std::is_const_v<Pixel>)
        return static_cast<const Channel*>(static_cast<const void*>(pixels));
    else
        return static_cast<Channel*>(static_cast<void*>(pixels));
}

} // namespace

void LXRows::Widen(const LXRGBA32i* in, LXRGBA64i* out, unsigned int count) {
    ConvertRow<std::uint8_t, std::uint16_t, WideOfByte>(Channels<std::uint8_t>(in),
                                                        Channels<std::uint16_t>(out), 4 * count);
}

void LXRows::Narrow(const LXRGBA64i* in, LXRGBA32i* out, unsigned int count) {
    ConvertRow<std::uint16_t, std::uint8_t, ByteOfWide>(Channels<std::uint16_t>(in),
                                                        Channels<std::uint8_t>(out), 4 * count);
}

void LXRows::ToHalf(const LXRGBA32i* in, LXRGBA64f* out, unsigned int count) {
    ConvertRow<std::uint8_t, std::uint16_t, HalfOfByte>(Channels<std::uint8_t>(in),
                                                        Channels<std::uint16_t>(out), 4 * count);
}

void LXRows::FromHalf(const LXRGBA64f* in, LXRGBA32i* out, unsigned int count) {
    ConvertRow<std::uint16_t, std::uint8_t, ByteOfHalf>(Channels<std::uint16_t>(in),
                                                        Channels<std::uint8_t>(out), 4 * count);
}
