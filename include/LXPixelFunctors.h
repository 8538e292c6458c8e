#pragma once

#include "LXExport.h"
#include "LXPixel.h"

/// What a walk over pixels can do to each: functor(pixel) changes it in place. They do not change
/// themselves, so that threads may share them.

template <class Pixel>
class LXColorize;

/// Red, green and blue become those of one colour. Alpha stays.
template <>
class LIBIMAGE_EXPORT LXColorize<LXRGBA32i> {
public:
    /// The alpha of the colour does not matter.
    explicit LXColorize(const LXRGBA32i& color) : m_color(color) {}

    void operator()(LXRGBA32i& p) const { p = {m_color.blue, m_color.green, m_color.red, p.alpha}; }

private:
    LXRGBA32i m_color;
};

template <class Pixel>
class LXInvertColor;

/// v becomes 255 - v in red, green and blue. Alpha stays.
template <>
class LIBIMAGE_EXPORT LXInvertColor<LXRGBA32i> {
public:
    void operator()(LXRGBA32i& p) const {
        const auto inverted = [](int v) { return static_cast<std::uint8_t>(255 - v); };
        p = {inverted(p.blue), inverted(p.green), inverted(p.red), p.alpha};
    }
};

template <class Pixel>
class LXInvertColorAlpha;

/// v becomes 255 - v in alpha. The colour stays.
template <>
class LIBIMAGE_EXPORT LXInvertColorAlpha<LXRGBA32i> {
public:
    void operator()(LXRGBA32i& p) const { p.alpha = static_cast<std::uint8_t>(255 - p.alpha); }
};
