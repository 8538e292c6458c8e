#pragma once

#include "LXScaleImage.h"
#include "core/Truncate.h"

#include <algorithm>
#include <cmath>

/// The steps from source pixel to source pixel of a zoomed view, along a row or down a column. A
/// view pixel forward is a whole number of source pixels, and one more each time that the
/// remainders add up to the scaled length.

/// How the remainder of a walk in floats begins at a negative start. A start that is a whole number
/// is one source pixel further on by the first rule.
enum class LXNegativeStart { AlwaysFromBelow, FractionsFromBelow };

/// In floats.
class LXFloatWalk {
public:
    LXFloatWalk(float start, double scale, int length, LXNegativeStart rule)
        : m_position(start), m_scaled(static_cast<float>(length * scale)) {
        const int pixel = TruncateToInt(start);
        m_error = (start - static_cast<float>(pixel)) * m_scaled;
        if (start < 0 && (rule == LXNegativeStart::AlwaysFromBelow || m_error != 0))
            m_error = static_cast<float>(m_scaled * (static_cast<double>(start) + 1 - pixel));
        m_whole = static_cast<float>(TruncateToInt(static_cast<float>(length) / m_scaled));
        m_part = std::fabs(static_cast<float>(length) - m_scaled * m_whole);
    }

    float Position() const { return m_position; }
    /// Position 0, with room for what rounding takes from it.
    bool HasReachedImage() const { return static_cast<double>(m_position) > -1e-10; }
    bool IsPast(int length) const { return m_position >= static_cast<double>(length); }
    void Step() {
        m_position += m_whole;
        m_error += m_part;
        if (m_error >= m_scaled) {
            m_error -= m_scaled;
            m_position += 1;
        }
    }

private:
    float m_position;
    float m_scaled;
    float m_error;
    float m_whole;
    float m_part;
};

/// In integers; only the start is found in doubles.
class LXIntegerWalk {
public:
    LXIntegerWalk(double start, double scale, int length) {
        const double half = 1 / scale * 0.5;
        m_scaled = TruncateToInt(length * scale + half);
        if (m_scaled == 0)
            return;
        m_whole = length / m_scaled;
        m_part = length % m_scaled;
        const auto error = [&](double fraction) {
            return TruncateToInt(static_cast<double>(m_scaled) * AdjustValue(fraction, scale) +
                                 half);
        };
        if (start < 0) {
            m_position = TruncateToInt(start - half);
            m_error = error(start - static_cast<double>(m_position) + 1);
            if (m_error >= m_scaled) {
                m_error -= m_scaled;
                ++m_position;
            }
        } else {
            m_position = TruncateToInt(start + half);
            m_error = error(start - static_cast<double>(m_position));
            if (m_error < 0) {
                m_error += m_scaled;
                --m_position;
            }
        }
    }

    /// The scaled length is 0: there is nothing to walk on.
    bool IsEmpty() const { return m_scaled == 0; }
    qint64 Position() const { return m_position; }
    bool HasReachedImage() const { return m_position >= 0; }
    bool IsPast(int length) const { return m_position >= length; }
    void Step() {
        m_position += m_whole;
        m_error += m_part;
        if (m_error >= m_scaled) {
            m_error -= m_scaled;
            ++m_position;
        }
    }

private:
    // 32 bits but for the sums, which may run over after a start that does not fit.
    qint64 m_position = 0;
    qint64 m_error = 0;
    qint64 m_scaled;
    qint64 m_whole = 0;
    qint64 m_part = 0;
};

constexpr int LXScaleTile = int(LXImageRGBA32i::TileWidth);

/// Within these a walk in floats reads a row of which only some tile columns are at hand.
struct LXFloatLimits {
    LXFloatLimits(int firstTile, int lastTile, int length)
        : low(static_cast<float>(qint64(LXScaleTile) * firstTile - 1e-10)),
          high(static_cast<float>(
              std::min(qint64(LXScaleTile) * lastTile + LXScaleTile, qint64(length)))) {}

    bool Contain(float position) const { return position >= low && position < high; }
    bool ArePassed(float position) const { return position >= high; }
    /// Of the pixel from the first that is at hand.
    int IndexOf(float position) const { return TruncateToInt(position - low); }

    float low;
    float high;
};
