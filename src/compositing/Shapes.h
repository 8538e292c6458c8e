#pragma once

#include "LXPixel.h"
#include "compositing/PixelRules.h"
#include "core/Clones.h"
#include "core/Prefetch.h"
#include "core/conversion/PixelWords.h"

#include <QtGui/QImage>

#include <cstddef>
#include <cstring>
#include <type_traits>

/// The loops around a pixel rule, and the shapes in which kernels are offered. A source row may be
/// the destination row itself; other rows must not overlap.
namespace LXBlendRules {

/// A row loop is cloned, and all that it calls is part of it: a loop with a call in it is not
/// vectorised, and with many kernels in a file the compiler would not inline everything.
#define LX_ROW_LOOP __attribute__((flatten)) LX_CLONED

/// A full opacity; up to here a weight is at most 255.
constexpr Word FullOpacity = 256;
constexpr int TileStride = 128;

/// How many rows before it is read a row of a picture is asked for; measured.
constexpr int RowsAhead = 4;

/// The pixel (x, y) of rows that are `stride` pixels apart.
template <class Pixel>
inline Pixel* At(Pixel* pixels, int x, int y, int stride = TileStride) {
    return pixels + std::ptrdiff_t(y) * stride + x;
}

template <class Rule, class Weight, Lock lock>
inline LXRGBA32i BlendWord(LXRGBA32i source, LXRGBA32i destination, Word m, Word opacity) {
    const Word s = LXWords::WordOf(source), d = LXWords::WordOf(destination);
    const Word a = Weight::Weight(s >> 24, m, opacity);
    return LXWords::PixelOf<LXRGBA32i>(Locked<lock>(Rule::Pixel(s, d, a, m), d));
}

template <class Rule, class Weight, Lock lock>
LX_ROW_LOOP static void BlendRow(const LXRGBA32i* src, LXRGBA32i* dst, int count, Word opacity) {
    for (int i = 0; i < count; ++i)
        dst[i] = BlendWord<Rule, Weight, lock>(src[i], dst[i], 255, opacity);
}

template <class Rule, class Weight, Lock lock>
LX_ROW_LOOP static void BlendMaskedRow(const LXRGBA32i* src, const LXRGBA32i* mask, LXRGBA32i* dst,
                                       int count, Word opacity) {
    for (int i = 0; i < count; ++i)
        dst[i] =
            BlendWord<Rule, Weight, lock>(src[i], dst[i], LXWords::WordOf(mask[i]) >> 24, opacity);
}

/// The last pixels of a row, less than a block of them, as a whole block of their own. The vectors
/// of the row loops hold up to a block, and a loop takes what is left over pixel by pixel, which
/// costs more than the rest of the row.
class RowEnd {
public:
    static constexpr int Block = 16;

    explicit RowEnd(int count) : m_bytes(std::size_t(count) * sizeof(LXRGBA32i)) {}

    struct Pixels {
        LXRGBA32i pixels[Block];
    };
    Pixels Load(const LXRGBA32i* row) const {
        Pixels block = {};
        std::memcpy(block.pixels, row, m_bytes);
        return block;
    }
    void Store(const Pixels& block, LXRGBA32i* row) const {
        std::memcpy(static_cast<void*>(row), block.pixels, m_bytes);
    }

private:
    std::size_t m_bytes;
};

/// A kernel in its shapes: what it does to a pixel, how its weight arises, and whether alpha is
/// locked.
template <class Rule, class Weight = Plain, Lock lock = Lock::None>
struct Kernel {
    static void Row(const LXRGBA32i* src, LXRGBA32i* dst, int count, Word opacity) {
        if (opacity > FullOpacity && !std::is_same_v<Rule, Wrapping<Rule>>) {
            for (int i = 0; i < count; ++i)
                dst[i] = BlendWord<Wrapping<Rule>, Weight, lock>(src[i], dst[i], 255, opacity);
            return;
        }
        const int left = count % RowEnd::Block, whole = count - left;
        if (whole > 0)
            BlendRow<Rule, Weight, lock>(src, dst, whole, opacity);
        if (left > 0) {
            const RowEnd end(left);
            const RowEnd::Pixels s = end.Load(src + whole);
            RowEnd::Pixels d = end.Load(dst + whole);
            BlendRow<Rule, Weight, lock>(s.pixels, d.pixels, RowEnd::Block, opacity);
            end.Store(d, dst + whole);
        }
    }

    static void MaskedRow(const LXRGBA32i* src, const LXRGBA32i* mask, LXRGBA32i* dst, int count,
                          Word opacity) {
        if (opacity > FullOpacity && !std::is_same_v<Rule, Wrapping<Rule>>) {
            for (int i = 0; i < count; ++i)
                dst[i] =
                    BlendWord<Wrapping<Rule>, Weight, lock>(src[i], dst[i], mask[i].alpha, opacity);
            return;
        }
        const int left = count % RowEnd::Block, whole = count - left;
        if (whole > 0)
            BlendMaskedRow<Rule, Weight, lock>(src, mask, dst, whole, opacity);
        if (left > 0) {
            const RowEnd end(left);
            const RowEnd::Pixels s = end.Load(src + whole), m = end.Load(mask + whole);
            RowEnd::Pixels d = end.Load(dst + whole);
            BlendMaskedRow<Rule, Weight, lock>(s.pixels, m.pixels, d.pixels, RowEnd::Block,
                                               opacity);
            end.Store(d, dst + whole);
        }
    }

    static void Tile(const LXRGBA32i* src, LXRGBA32i* dst, int srcX, int srcY, int dstX, int dstY,
                     int width, int height, Word opacity) {
        for (int y = 0; y < height; ++y)
            Row(At(src, srcX, srcY + y), At(dst, dstX, dstY + y), width, opacity);
    }

    static void Image(const QImage& src, LXRGBA32i* dst, int srcX, int srcY, int dstX, int dstY,
                      int width, int height, Word opacity) {
        for (int y = 0; y < height; ++y) {
            if (y + RowsAhead < height)
                PrefetchRow(At(Pixels(src), srcX, srcY + y + RowsAhead, src.width()), width);
            Row(At(Pixels(src), srcX, srcY + y, src.width()), At(dst, dstX, dstY + y), width,
                opacity);
        }
    }

    static void MaskedPixel(const LXRGBA32i* src, LXRGBA32i* dst, const LXRGBA32i* mask, int srcX,
                            int srcY, int dstX, int dstY, int maskX, int maskY, Word opacity) {
        MaskedRow(At(src, srcX, srcY), At(mask, maskX, maskY), At(dst, dstX, dstY), 1, opacity);
    }

    static const LXRGBA32i* Pixels(const QImage& image) {
        return static_cast<const LXRGBA32i*>(static_cast<const void*>(image.constBits()));
    }
};

/// The kernel that is there to do nothing.
struct Nothing {
    template <class... Arguments>
    static void Tile(const Arguments&...) {}
    template <class... Arguments>
    static void Image(const Arguments&...) {}
    template <class... Arguments>
    static void MaskedPixel(const Arguments&...) {}
    template <class... Arguments>
    static void MaskedRow(const Arguments&...) {}
    template <class... Arguments>
    static void MaskedImage(const Arguments&...) {}
};

} // namespace LXBlendRules

/// The exported functions of LXBlend.h: LX_..._KERNEL(name, kernel). A mask kernel comes in a
/// second form, the row of MaskRows.h.
#define LX_TILE_KERNEL(name, ...)                                                                  \
    void LXBlend::name(const LXRGBA32i* src, LXRGBA32i* dst, int srcX, int srcY, int dstX,         \
                       int dstY, int width, int height, const unsigned int& opacity) {             \
        __VA_ARGS__::Tile(src, dst, srcX, srcY, dstX, dstY, width, height, opacity);               \
    }

#define LX_IMAGE_KERNEL(name, ...)                                                                 \
    void LXBlend::name(const QImage& src, LXRGBA32i* dst, int srcX, int srcY, int dstX, int dstY,  \
                       int width, int height, const unsigned int& opacity) {                       \
        __VA_ARGS__::Image(src, dst, srcX, srcY, dstX, dstY, width, height, opacity);              \
    }

#define LX_MASKED_IMAGE_KERNEL(name, ...)                                                          \
    void LXBlend::name(const QImage& src, LXRGBA32i* dst, int srcX, int srcY, int dstX, int dstY,  \
                       int width, int height, const unsigned int& opacity, const LXRGBA32i* mask,  \
                       int maskX, int maskY, int maskWidth, int maskHeight, bool outsideBlends) {  \
        __VA_ARGS__::MaskedImage(src, dst, srcX, srcY, dstX, dstY, width, height, opacity, mask,   \
                                 maskX, maskY, maskWidth, maskHeight, outsideBlends);              \
    }

#define LX_MASK_KERNEL(name, ...)                                                                  \
    void LXBlend::name(const LXRGBA32i* src, LXRGBA32i* dst, const LXRGBA32i* mask, int srcX,      \
                       int srcY, int dstX, int dstY, int maskX, int maskY, int, int,               \
                       const unsigned int& opacity) {                                              \
        __VA_ARGS__::MaskedPixel(src, dst, mask, srcX, srcY, dstX, dstY, maskX, maskY, opacity);   \
    }                                                                                              \
    void LXMaskRows::name(const LXRGBA32i* src, const LXRGBA32i* mask, LXRGBA32i* dst, int count,  \
                          unsigned int opacity) {                                                  \
        __VA_ARGS__::MaskedRow(src, mask, dst, count, opacity);                                    \
    }
