#pragma once

#include "LXExport.h"
#include "LXPixel.h"
#include "LXWrappingArithmetic.h"

/// Running sums of a window that slides along a line: add the pixel that enters, subtract the one
/// that leaves, and ask for the mean. So a box blur costs the same at every radius. An accumulator
/// is for one thread.
///
/// All have the same members, with no base in common:
///   constructor(radius)   a window of count = 2 radius + 1 pixels, empty as yet
///   Add, Subtract         a pixel enters or leaves
///   Finalize(result)      the means, sum / count, truncated; as low bytes, should they not fit
///   Reset()               empties the window
/// The divisor is count, however many pixels were added. Radii are 0 or more, and up to 4 million
/// no sum can overflow; beyond that, and below 0, sums and count wrap around at 2^32.

constexpr int LXWindowSize(int radius) {
    return LXWrappingAdd(LXWrappingMultiply(2, radius), 1); // odd, so never 0
}

/// The means of alpha, red, green and blue, each for itself.
class LIBIMAGE_EXPORT LXRGBABlurAccumulator {
public:
    explicit LXRGBABlurAccumulator(int radius) : m_radius(radius), m_count(LXWindowSize(radius)) {}

    void Add(const LXRGBA32i& pixel) {
        m_alpha = LXWrappingAdd(m_alpha, pixel.alpha);
        m_red = LXWrappingAdd(m_red, pixel.red);
        m_green = LXWrappingAdd(m_green, pixel.green);
        m_blue = LXWrappingAdd(m_blue, pixel.blue);
    }
    void Subtract(const LXRGBA32i& pixel) {
        m_alpha = LXWrappingSubtract(m_alpha, pixel.alpha);
        m_red = LXWrappingSubtract(m_red, pixel.red);
        m_green = LXWrappingSubtract(m_green, pixel.green);
        m_blue = LXWrappingSubtract(m_blue, pixel.blue);
    }
    void Finalize(LXRGBA32i& result) const {
        const auto mean = [this](int sum) {
            return static_cast<std::uint8_t>(LXWrappingDivide(sum, m_count));
        };
        result = {mean(m_blue), mean(m_green), mean(m_red), mean(m_alpha)};
    }
    void Reset() { m_alpha = m_red = m_green = m_blue = 0; }
    int Radius() const { return m_radius; }

private:
    int m_radius;
    int m_count;
    int m_alpha = 0, m_red = 0, m_green = 0, m_blue = 0;
};

/// The means of alpha and of the colours premultiplied, made straight again: transparent pixels
/// have no part in the colour. A pixel whose alpha comes to 0 is 0 as a whole.
class LIBIMAGE_EXPORT LXRGBABlurAccumulatorPremul {
public:
    explicit LXRGBABlurAccumulatorPremul(int radius)
        : m_radius(radius), m_count(LXWindowSize(radius)) {}

    void Add(const LXRGBA32i& pixel) {
        m_alpha = LXWrappingAdd(m_alpha, pixel.alpha);
        m_red = LXWrappingAdd(m_red, pixel.red * pixel.alpha / 255);
        m_green = LXWrappingAdd(m_green, pixel.green * pixel.alpha / 255);
        m_blue = LXWrappingAdd(m_blue, pixel.blue * pixel.alpha / 255);
    }
    /// Truncates as Add does, so that the sums do not drift.
    void Subtract(const LXRGBA32i& pixel) {
        m_alpha = LXWrappingSubtract(m_alpha, pixel.alpha);
        m_red = LXWrappingSubtract(m_red, pixel.red * pixel.alpha / 255);
        m_green = LXWrappingSubtract(m_green, pixel.green * pixel.alpha / 255);
        m_blue = LXWrappingSubtract(m_blue, pixel.blue * pixel.alpha / 255);
    }
    /// (sum / count) * 255 / alpha, with both divisions truncated.
    void Finalize(LXRGBA32i& result) const {
        const int alpha = LXWrappingDivide(m_alpha, m_count);
        if (alpha < 1) {
            result = {};
            return;
        }
        const auto straight = [this, alpha](int sum) {
            const int mean = LXWrappingDivide(sum, m_count);
            return static_cast<std::uint8_t>(LXWrappingMultiply(mean, 255) / alpha);
        };
        result = {straight(m_blue), straight(m_green), straight(m_red),
                  static_cast<std::uint8_t>(alpha)};
    }
    void Reset() { m_alpha = m_red = m_green = m_blue = 0; }
    int Radius() const { return m_radius; }

private:
    int m_radius;
    int m_count;
    int m_alpha = 0, m_red = 0, m_green = 0, m_blue = 0;
};

/// The mean of alpha. The colours of the result stay as they were.
class LIBIMAGE_EXPORT LXAlphaBlurAccumulator {
public:
    explicit LXAlphaBlurAccumulator(int radius) : m_radius(radius), m_count(LXWindowSize(radius)) {}

    void Add(const LXRGBA32i& pixel) { m_alpha = LXWrappingAdd(m_alpha, pixel.alpha); }
    void Subtract(const LXRGBA32i& pixel) { m_alpha = LXWrappingSubtract(m_alpha, pixel.alpha); }
    void Finalize(LXRGBA32i& result) const {
        result.alpha = static_cast<std::uint8_t>(LXWrappingDivide(m_alpha, m_count));
    }
    void Reset() { m_alpha = 0; }
    int Radius() const { return m_radius; }

private:
    int m_radius;
    int m_count;
    int m_alpha = 0;
};

/// 255 less the mean of alpha. The colours of the result stay as they were.
class LIBIMAGE_EXPORT LXAlphaBlurAccumulatorWithInvert {
public:
    explicit LXAlphaBlurAccumulatorWithInvert(int radius) : m_mean(radius) {}

    void Add(const LXRGBA32i& pixel) { m_mean.Add(pixel); }
    void Subtract(const LXRGBA32i& pixel) { m_mean.Subtract(pixel); }
    void Finalize(LXRGBA32i& result) const {
        m_mean.Finalize(result);
        result.alpha = static_cast<std::uint8_t>(255 - result.alpha);
    }
    void Reset() { m_mean.Reset(); }
    int Radius() const { return m_mean.Radius(); }

private:
    LXAlphaBlurAccumulator m_mean;
};

/// One colour, with the mean of alpha for its alpha.
class LIBIMAGE_EXPORT LXAlphaBlurAccumulatorWithRGBColorize {
public:
    /// The alpha of the colour does not matter.
    LXAlphaBlurAccumulatorWithRGBColorize(int radius, const LXRGBA32i& color)
        : m_mean(radius), m_color(color) {}

    void Add(const LXRGBA32i& pixel) { m_mean.Add(pixel); }
    void Subtract(const LXRGBA32i& pixel) { m_mean.Subtract(pixel); }
    void Finalize(LXRGBA32i& result) const {
        result = m_color;
        m_mean.Finalize(result);
    }
    void Reset() { m_mean.Reset(); }
    int Radius() const { return m_mean.Radius(); }

private:
    LXAlphaBlurAccumulator m_mean;
    LXRGBA32i m_color;
};
