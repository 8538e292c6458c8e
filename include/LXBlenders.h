#pragma once

#include "LXPixel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The blends of the step objects in LXIterativeBlend.h: small functors that change one pixel of a
/// line. Their integer formulas are their own, and differ from the kernels of LXBlend.h. All
/// divisions truncate. s and d are a channel of source and destination, sa and da their alpha.
///
/// `opacity` is 0 to 256 for full. The formulas go on beyond that, from -8192 to 8192; what lies
/// farther out counts as these.
///
/// Threads may share a mode, and a blender for different pixels.
namespace LXBlend {

inline int LXLimitedOpacity(int opacity) {
    return std::clamp(opacity, -8192, 8192);
}

/// The source pixel as a whole.
template <bool>
struct LXSource;
template <>
struct LXSource<false> {
    LXRGBA32i operator()(const LXRGBA32i& s, const LXRGBA32i&) const { return s; }
};

/// The source over the destination. The colours are those of the blend also if the destination
/// keeps its alpha; only where that blend comes to alpha 0 the pixel is 0 as a whole, kept alpha or
/// not.
template <bool keepAlpha>
class LXSourceOver {
public:
    explicit LXSourceOver(int opacity) : m_opacity(LXLimitedOpacity(opacity)) {}

    LXRGBA32i operator()(const LXRGBA32i& s, const LXRGBA32i& d) const {
        return Blend(s, d, LXRGBA32i{});
    }
    /// The same, but `nothing` where the blend comes to alpha 0.
    LXRGBA32i Blend(const LXRGBA32i& s, const LXRGBA32i& d, const LXRGBA32i& nothing) const {
        const int sa = s.alpha * m_opacity >> 8;
        const int wd = (255 - sa) * d.alpha, ws = sa * 255;
        const int outAlpha = std::min((wd + ws) / 255, 255), den = outAlpha * 255;
        if (den == 0)
            return nothing;
        const auto mix = [=](int sc, int dc) {
            return static_cast<std::uint8_t>(std::min((dc * wd + sc * ws) / den, 255));
        };
        return {mix(s.blue, d.blue), mix(s.green, d.green), mix(s.red, d.red),
                keepAlpha ? d.alpha : static_cast<std::uint8_t>(outAlpha)};
    }

private:
    int m_opacity;
};

/// The source where the destination lets it through from below. The colour is left premultiplied,
/// and colours of transparent pixels take part: that is how it is defined.
template <bool>
class LXDestinationOver;
template <>
class LXDestinationOver<false> {
public:
    explicit LXDestinationOver(int opacity) : m_opacity(LXLimitedOpacity(opacity)) {}

    LXRGBA32i operator()(const LXRGBA32i& s, const LXRGBA32i& d) const {
        const int sa = s.alpha * m_opacity >> 8, da = d.alpha;
        const auto mix = [=](int sc, int dc) {
            return Over65025((dc * (255 - sa) + sc * (255 - da)) * 255 + dc * sa * da);
        };
        return {mix(s.blue, d.blue), mix(s.green, d.green), mix(s.red, d.red),
                Over65025((sa * 255 + da * (255 - sa)) * 255)};
    }

private:
    static std::uint8_t Over65025(int v) {
        return static_cast<std::uint8_t>(v >= 256 * 65025 ? 255 : v / 65025);
    }

    int m_opacity;
};

/// s - d + offset in each colour, within 0 .. 255; the destination's alpha stays.
class LXSubtractRGBSrcByDst {
public:
    explicit LXSubtractRGBSrcByDst(int offset) : m_offset(std::clamp(offset, -510, 510)) {}

    LXRGBA32i operator()(const LXRGBA32i& s, const LXRGBA32i& d) const {
        const auto difference = [this](int sc, int dc) {
            return static_cast<std::uint8_t>(std::clamp(sc - dc + m_offset, 0, 255));
        };
        return {difference(s.blue, d.blue), difference(s.green, d.green), difference(s.red, d.red),
                d.alpha};
    }

private:
    int m_offset;
};

/// d - s + offset in each colour, within 0 .. 255; the destination's alpha stays.
class LXSubtractRGBDstBySrc {
public:
    explicit LXSubtractRGBDstBySrc(int offset) : m_subtract(offset) {}

    LXRGBA32i operator()(const LXRGBA32i& s, const LXRGBA32i& d) const {
        LXRGBA32i result = m_subtract(d, s);
        result.alpha = d.alpha;
        return result;
    }

private:
    LXSubtractRGBSrcByDst m_subtract;
};

/// The modes of blends through a selection: what a mask value of 255 gives.
struct LXSourceBySelection : LXSource<false> {};

template <bool keepAlpha>
class LXSourceOverBySelection {
public:
    explicit LXSourceOverBySelection(int opacity) : m_over(opacity) {}

    /// A mix with alpha 0 is 0 in all channels, except that a kept alpha is the destination's.
    LXRGBA32i operator()(const LXRGBA32i& s, const LXRGBA32i& d) const {
        return m_over.Blend(s, d, LXRGBA32i{0, 0, 0, keepAlpha ? d.alpha : std::uint8_t(0)});
    }

private:
    LXSourceOver<keepAlpha> m_over;
};

template <bool keepAlpha>
class LXDestinationOverBySelection;
template <>
class LXDestinationOverBySelection<false> : public LXDestinationOver<false> {
public:
    using LXDestinationOver<false>::LXDestinationOver;
};

/// Changes element i of a destination line by the source line's and a mode. The lines are borrowed;
/// a step object sets its own.
template <class Pixel, class Mode>
class LXBlender {
public:
    explicit LXBlender(const Mode& mode) : m_mode(mode) {}

    void SetSource(const std::vector<Pixel>* line) { m_source = line; }
    void SetDestination(std::vector<Pixel>* line) { m_destination = line; }

    void operator()(int i) const {
        Pixel& d = (*m_destination)[std::size_t(i)];
        d = m_mode((*m_source)[std::size_t(i)], d);
    }

private:
    const std::vector<Pixel>* m_source = nullptr;
    std::vector<Pixel>* m_destination = nullptr;
    Mode m_mode;
};

/// The same through a mask line, with m the mask pixel's alpha: each channel becomes
/// (d * 255 + (mix - d) * m) / 255.
template <class Pixel, class Mode, class MaskPixel>
class LXSelectionBlender {
public:
    explicit LXSelectionBlender(const Mode& mode) : m_mode(mode) {}

    void SetSource(const std::vector<Pixel>* line) { m_source = line; }
    void SetDestination(std::vector<Pixel>* line) { m_destination = line; }
    void SetMask(const std::vector<MaskPixel>* line) { m_mask = line; }

    void operator()(int i) const {
        Pixel& d = (*m_destination)[std::size_t(i)];
        const Pixel mix = m_mode((*m_source)[std::size_t(i)], d);
        const int m = (*m_mask)[std::size_t(i)].alpha;
        const auto through = [m](int dc, int mc) {
            return static_cast<std::uint8_t>((dc * 255 + (mc - dc) * m) / 255);
        };
        d = {through(d.blue, mix.blue), through(d.green, mix.green), through(d.red, mix.red),
             through(d.alpha, mix.alpha)};
    }

private:
    const std::vector<Pixel>* m_source = nullptr;
    std::vector<Pixel>* m_destination = nullptr;
    const std::vector<MaskPixel>* m_mask = nullptr;
    Mode m_mode;
};

} // namespace LXBlend
