#include "LXVignetteProcessing.h"

#include "LXTransformImagePixelIterative.h"
#include "core/Truncate.h"
#include "filters/BlendStages.h"
#include "filters/ColorOf.h"

#include <cmath>

namespace {

using Processing = LXVignetteProcessing;

/// The distance from the ellipse around (a, b) with the semi-axes a and b, by the point where the
/// ray from its centre meets it. The order of the operations decides the last bit.
inline double RadialDistance(double a, double b, double x, double y) {
    const double dy = std::abs(y - b);
    if (x - a == 0)
        return dy - b;
    const double dx = std::abs(x - a);
    if (y - b == 0)
        return dx - a;
    const double a2 = a * a, b2 = b * b;
    const double t = a2 * b2 / (a2 * (dy * dy) / (dx * dx) + b2); // the square of the x there
    return std::sqrt(dy * dy + dx * dx) - std::sqrt(std::abs(1 - t / a2) * b2 + t);
}

/// The share `k` of the pixel, and the rest of the colour. Alpha stays.
inline void Mix(LXRGBA32i& pixel, const LXRGBA32i& color, double k) {
    if (k < 0)
        k = 0;
    const auto mixed = [k](std::uint8_t to, std::uint8_t from) {
        const double v = to * (1.0 - k) + from * k + 0.5;
        return static_cast<std::uint8_t>(TruncateToInt(v > 255.5 ? 255.5 : v));
    };
    pixel = {mixed(color.blue, pixel.blue), mixed(color.green, pixel.green),
             mixed(color.red, pixel.red), pixel.alpha};
}

template <class Falloff>
LXImageRGBA32i RunVignette(LXFilterRun& run, const Falloff& falloff,
                           Processing::VignetteData& data) {
    using Steps = LXTransformImagePixelIterative<LXImageRGBA32i, Falloff>;
    const auto change = [&](LXImageRGBA32i& image, const QRect& rect) {
        run.Add(LXStepCount::Tiles(image, rect),
                [&image, &falloff, rect] { return Steps(falloff, image, rect); });
    };
    if (!data.selectionRect.isValid()) {
        change(data.image, LXImageRect(data.image));
        run.Run();
        return data.image;
    }
    // The top row of tiles of a selection comes out as LXTransformImagePixelIterative tells.
    const QRect place = LXMoved(data.selectionRect, data.selectionOffset);
    LXImageRGBA32i work = data.image;
    change(work, place);
    LXStages::BringBack(run, work, data.image, data.selection, place, data.selectionRect);
    run.Run();
    return data.image;
}

} // namespace

Processing::Linear::Linear(double centreX, double centreY, double strength, double size,
                           const LXRGBA32i& color)
    : m_centreX(centreX), m_centreY(centreY), m_slope((strength - 1.0) / size), m_color(color) {}

void Processing::Linear::operator()(int x, int y, LXRGBA32i& pixel) const {
    const double d = RadialDistance(m_centreX, m_centreY, x, y);
    if (d > 0)
        Mix(pixel, m_color, m_slope * d + 1.0);
}

Processing::Parabolic::Parabolic(double centreX, double centreY, double strength, double size,
                                 const LXRGBA32i& color)
    : m_centreX(centreX), m_centreY(centreY), m_slope((strength - 1.0) / (size * size)),
      m_color(color) {}

void Processing::Parabolic::operator()(int x, int y, LXRGBA32i& pixel) const {
    const double d = RadialDistance(m_centreX, m_centreY, x, y);
    if (d > 0)
        Mix(pixel, m_color, m_slope * d * d + 1.0);
}

double Processing::Distance(double a, double b, double x, double y) {
    return RadialDistance(a, b, x, y);
}

LXImageRGBA32i Processing::run(VignetteData data) {
    const double centreX = data.image.GetWidth() * 0.5, centreY = data.image.GetHeight() * 0.5;
    const double strength = (100 - qint64(data.params.strength)) / 100.0;
    const double size = data.params.size;
    const LXRGBA32i color = LXColorOf(data.params.color);
    LXFilterRun run(*this, CancelLock(), CancelFlag());
    if (data.params.shape == 0)
        return RunVignette(run, Linear(centreX, centreY, strength, size, color), data);
    if (data.params.shape == 1)
        return RunVignette(run, Parabolic(centreX, centreY, strength, size, color), data);
    return data.image;
}
