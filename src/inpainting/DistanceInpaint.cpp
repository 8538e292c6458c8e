#include "core/Truncate.h"
#include "inpainting/InpaintPrivate.h"
#include "inpainting/Words.h"

#include <QtGui/QVector2D>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

/// The filler of LXInpaint that goes by distances, and its field.

using namespace Inpainting;

namespace {

constexpr float Far = 1e7F;
constexpr double NoSolution = 1000000;

/// The pixels of a distance field hold the bits of floats.
QRgb BitsOf(float distance) {
    QRgb bits;
    static_assert(sizeof bits == sizeof distance);
    std::memcpy(&bits, &distance, sizeof bits);
    return bits;
}

float DistanceOf(QRgb bits) {
    float distance;
    std::memcpy(&distance, &bits, sizeof distance);
    return distance;
}

/// A coordinate moved by `step`, clamped to a side of the image.
int Clamped(int at, int step, int length) {
    return int(std::clamp<qint64>(qint64(at) + step, 0, std::max(length - 1, 0)));
}

using Channels = std::array<int, 4>;

Channels ChannelsOf(QRgb pixel) {
    return {qAlpha(pixel), qRed(pixel), qGreen(pixel), qBlue(pixel)};
}

} // namespace

void LXInpaint::initializeField() {
    QImage field = NewARGB32(m_private->image->size());
    for (int y = 0; y < field.height(); ++y)
        for (int x = 0; x < field.width(); ++x)
            Words(field, y)[x] = BitsOf(m_private->hole.known.Has(x, y) ? 0 : Far);
    m_private->distanceField = field;
}

void LXInpaint::setField(int x, int y, double distance) {
    if (m_private->distanceField.rect().contains(x, y))
        Words(m_private->distanceField, y)[x] = BitsOf(static_cast<float>(distance));
}

double LXInpaint::field(int x, int y) const {
    if (!m_private->distanceField.rect().contains(x, y))
        return Far;
    return DistanceOf(ConstWords(m_private->distanceField, y)[x]);
}

void LXInpaint::gradField(int x, int y, QVector2D* out) const {
    if (!out)
        return;
    const auto at = [&](int dx, int dy) {
        return field(Clamped(x, dx, m_private->image->width()),
                     Clamped(y, dy, m_private->image->height()));
    };
    const double t = at(0, 0);
    double dx = at(1, 0) - t, dy = at(0, 1) - t;
    const double m = std::sqrt(dx * dx + dy * dy);
    if (m > 0.0001) {
        dx /= m;
        dy /= m;
    }
    // y before x: that is how inpaint takes it.
    *out = QVector2D(static_cast<float>(dy), static_cast<float>(dx));
}

double LXInpaint::solve(int x1, int y1, int x2, int y2) const {
    const bool known1 = IsKnown(x1, y1), known2 = IsKnown(x2, y2);
    const double t1 = field(x1, y1), t2 = field(x2, y2);
    if (!known1 || !known2)
        return known1 ? t1 + 1 : known2 ? t2 + 1 : NoSolution;
    const double d = 2 - (t1 - t2) * (t1 - t2);
    if (d < 0)
        return NoSolution;
    const double s = std::sqrt(d);
    const double r = (t1 + t2 - s) * 0.5;
    if (r >= t1 && r >= t2)
        return r;
    const double r2 = s + r;
    return r2 < t1 || r2 < t2 ? NoSolution : r2;
}

void LXInpaint::grad(int x, int y, QVector2D* red, QVector2D* green, QVector2D* blue,
                     QVector2D* alpha) const {
    const auto at = [&](int dx, int dy) {
        return ChannelsOf(m_private->PixelAt(Clamped(x, dx, m_private->image->width()),
                                             Clamped(y, dy, m_private->image->height())));
    };
    const Channels nw = at(-1, -1), n = at(0, -1), ne = at(1, -1);
    const Channels w = at(-1, 0), e = at(1, 0);
    const Channels sw = at(-1, 1), s = at(0, 1), se = at(1, 1);
    QVector2D* const outs[] = {alpha, red, green, blue};
    for (std::size_t c = 0; c < 4; ++c)
        if (outs[c]) {
            const int gx = (ne[c] - nw[c]) + 2 * (e[c] - w[c]) + (se[c] - sw[c]);
            const int gy = (nw[c] + 2 * n[c] + ne[c]) - (sw[c] + 2 * s[c] + se[c]);
            *outs[c] = QVector2D(float(gx), float(gy));
        }
}

namespace {

/// The weight of (i, j) for (x, y).
double Weight(const LXInpaint& inpaint, int x, int y, int i, int j) {
    const float di = float(i - x), dj = float(j - y);
    QVector2D g;
    inpaint.gradField(i, j, &g);
    const float len = std::sqrt(di * di + dj * dj);
    const float dot = g.x() * di + g.y() * dj;
    const double difference = std::abs(inpaint.field(i, j) - inpaint.field(x, y));
    return (dot / len) * (1 / (len * len)) * (1 / (difference + 1));
}

} // namespace

/// Alpha, red, green and blue at (i, j) carried on by (di, dj) along central differences, which are
/// 0 unless all four neighbours are known.
LXInpaint::Private::Colour LXInpaint::Private::CarriedOn(int i, int j, int di, int dj) const {
    const bool slopes = Knows(i + 1, j) && Knows(i - 1, j) && Knows(i, j + 1) && Knows(i, j - 1);
    const Channels here = ChannelsOf(PixelAt(i, j));
    const Channels e = ChannelsOf(PixelAt(i + 1, j)), w = ChannelsOf(PixelAt(i - 1, j));
    const Channels s = ChannelsOf(PixelAt(i, j + 1)), n = ChannelsOf(PixelAt(i, j - 1));
    Colour result{};
    for (std::size_t c = 0; c < result.size(); ++c) {
        const int gx = slopes ? e[c] - w[c] : 0, gy = slopes ? s[c] - n[c] : 0;
        result[c] = here[c] + gx * di + gy * dj;
    }
    return result;
}

void LXInpaint::inpaint(int x, int y) {
    if (!m_private->Contains(x, y))
        return;
    std::array<double, 4> sums{};
    double weights = 0; // the same for all channels
    for (int j = y - 3; j <= y + 3; ++j)
        for (int i = x - 3; i <= x + 3; ++i) {
            // The whole row and column of the pixel are left out, not only the pixel: that is how
            // the mean is defined.
            if (j == y || i == x || !IsKnown(i, j))
                continue;
            const double w = Weight(*this, x, y, i, j);
            const Private::Colour colour = m_private->CarriedOn(i, j, i - x, j - y);
            for (std::size_t c = 0; c < sums.size(); ++c)
                sums[c] += w * colour[c];
            weights += w;
        }
    // The quotient may be infinite, or none.
    const auto channel = [&](std::size_t c) {
        return TruncateToInt(std::clamp(sums[c] / weights, 0.0, 255.0));
    };
    m_private->OwnedPixels().At(x, y) = qRgba(channel(1), channel(2), channel(3), channel(0));
}
