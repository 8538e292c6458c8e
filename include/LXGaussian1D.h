#pragma once

#include "LXKernelLines.h"

/// Gaussian kernels, in doubles. The members are those told at LXKernelLines; the cost of a pixel
/// grows with sigma. Sums run from left to right, and a result is rounded half up.

/// The taps of a gaussian: 2 radius + 1 weights in all, radius = max(int(3 sigma), 1), of sum 1.
class LIBIMAGE_EXPORT LXGaussianTaps {
public:
    /// Sigma is in pixels, above 0; its sign does not change the weights, but a negative one has
    /// radius 1. Where the formula gives no numbers, as for 0, infinity and NaN, the weights are
    /// NaN and every sum rounds to 0. From 2^31 / 3 the radius is 1. Without the memory for the
    /// weights it throws std::bad_alloc.
    explicit LXGaussianTaps(double sigma);

    int Radius() const { return m_radius; }
    const std::vector<double>& Weights() const { return m_weights; }

    /// add(pixel, weight) for each tap around destination i. Kernels moved from have no taps.
    template <class Add>
    void ForEach(const LXKernelLines& lines, int i, Add add) const {
        const std::int64_t first = lines.Centre(i) - m_radius;
        const std::size_t count = m_weights.size();
        if (lines.Contains(first) && lines.Contains(first + std::int64_t(count) - 1)) {
            const LXRGBA32i* const pixels = &lines.Source(first);
            for (std::size_t j = 0; j < count; ++j)
                add(pixels[j], m_weights[j]);
        } else {
            for (std::size_t j = 0; j < count; ++j)
                add(lines.Source(first + std::int64_t(j)), m_weights[j]);
        }
    }

    /// int(value + 0.5) within 0 .. 255, and 0 for NaN. The value is never far outside.
    static std::uint8_t Rounded(double value) {
        const double v = value + 0.5;
        return static_cast<std::uint8_t>(v >= 255 ? 255 : v >= 1 ? static_cast<int>(v) : 0);
    }

private:
    int m_radius;
    std::vector<double> m_weights;
};

/// Blurs each channel for itself: sum(channel * weight).
class LIBIMAGE_EXPORT LXGaussian1D {
public:
    explicit LXGaussian1D(double sigma) : m_taps(sigma) {}

    void SetSource(const std::vector<LXRGBA32i>* source) { m_lines.SetSource(source); }
    void SetDestination(std::vector<LXRGBA32i>* line) { m_lines.SetDestination(line); }
    void SetSourceOffset(int offset) { m_lines.SetSourceOffset(offset); }
    int Left() const { return m_taps.Radius(); }
    int Right() const { return m_taps.Radius(); }

    void operator()(int i) const {
        double blue = 0, green = 0, red = 0, alpha = 0;
        m_taps.ForEach(m_lines, i, [&](const LXRGBA32i& pixel, double weight) {
            blue += pixel.blue * weight;
            green += pixel.green * weight;
            red += pixel.red * weight;
            alpha += pixel.alpha * weight;
        });
        using Taps = LXGaussianTaps;
        m_lines.Destination(i) = {Taps::Rounded(blue), Taps::Rounded(green), Taps::Rounded(red),
                                  Taps::Rounded(alpha)};
    }

private:
    LXGaussianTaps m_taps;
    LXKernelLines m_lines;
};

/// Blurs colours by their alpha, so that transparent neighbours do not darken them. With
/// A = sum(alpha * weight), rounded, a colour is sum(colour * alpha * weight) / A. A pixel whose
/// alpha comes to 0 is 0 as a whole.
class LIBIMAGE_EXPORT LXGaussian1DPremul {
public:
    explicit LXGaussian1DPremul(double sigma) : m_taps(sigma) {}

    void SetSource(const std::vector<LXRGBA32i>* source) { m_lines.SetSource(source); }
    void SetDestination(std::vector<LXRGBA32i>* line) { m_lines.SetDestination(line); }
    void SetSourceOffset(int offset) { m_lines.SetSourceOffset(offset); }
    int Left() const { return m_taps.Radius(); }
    int Right() const { return m_taps.Radius(); }

    /// The order of the operations decides the last bit. Above all, (x * 255) / 255.0 is not
    /// always x, so opaque lines take no shorter way.
    void operator()(int i) const {
        double blue = 0, green = 0, red = 0, alphaSum = 0;
        m_taps.ForEach(m_lines, i, [&](const LXRGBA32i& pixel, double weight) {
            const double a = pixel.alpha;
            alphaSum += weight * a;
            blue += pixel.blue * weight * a / 255.0;
            green += pixel.green * weight * a / 255.0;
            red += pixel.red * weight * a / 255.0;
        });
        const std::uint8_t alpha = LXGaussianTaps::Rounded(alphaSum);
        const auto straight = [alpha](double sum) {
            return LXGaussianTaps::Rounded(sum * 255.0 / alpha);
        };
        m_lines.Destination(i) =
            alpha < 1 ? LXRGBA32i{}
                      : LXRGBA32i{straight(blue), straight(green), straight(red), alpha};
    }

    /// The same for first .. last - 1 at once, and several times as fast; see LXMapIndices.
    using LinesOf = LXGaussian1DPremul;
    void Line(int first, int last) const;

private:
    LXGaussianTaps m_taps;
    LXKernelLines m_lines;
};

/// Blurs alpha only: sum(alpha * weight). Colours stay.
class LIBIMAGE_EXPORT LXGaussianAlpha1D {
public:
    explicit LXGaussianAlpha1D(double sigma) : m_taps(sigma) {}

    void SetSource(const std::vector<LXRGBA32i>* source) { m_lines.SetSource(source); }
    void SetDestination(std::vector<LXRGBA32i>* line) { m_lines.SetDestination(line); }
    void SetSourceOffset(int offset) { m_lines.SetSourceOffset(offset); }
    int Left() const { return m_taps.Radius(); }
    int Right() const { return m_taps.Radius(); }

    void operator()(int i) const {
        double alpha = 0;
        m_taps.ForEach(m_lines, i, [&alpha](const LXRGBA32i& pixel, double weight) {
            alpha += pixel.alpha * weight;
        });
        LXRGBA32i& result = m_lines.Destination(i);
        result = m_lines.Source(m_lines.Centre(i));
        result.alpha = LXGaussianTaps::Rounded(alpha);
    }

private:
    LXGaussianTaps m_taps;
    LXKernelLines m_lines;
};
