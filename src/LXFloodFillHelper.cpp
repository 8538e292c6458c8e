#include "LXFloodFillHelper.h"

#include "LXFault.h"
#include "LXTileWalk.h"
#include "core/DetachedLine.h"
#include "geometry/SpanFill.h"

#include <optional>
#include <stdexcept>

/// The front door of the fills: it reads the seed, and what it finds outside the image it tells the
/// log.

namespace {

bool IsOnMissingTile(const LXImageRGBA32i& image, const QPoint& seed) {
    if (!LXImageRect(image).contains(seed))
        return false;
    const auto* const tiles = image.GetTileRow(unsigned(seed.y()) / LXImageRGBA32i::TileHeight);
    return !tiles[unsigned(seed.x()) / LXImageRGBA32i::TileWidth].constData();
}

std::optional<LXRGBA32i> ReadSeed(const LXImageRGBA32i& image, const QPoint& seed,
                                  const LXFault::Site& site, const char* complaint) {
    try {
        if (!IsOnMissingTile(image, seed))
            return image.GetColor(seed.x(), seed.y());
    } catch (const std::out_of_range&) {
    }
    LXFault::Trace(site, QString::fromLatin1(complaint));
    return std::nullopt;
}

/// The searches mark in a map of their own and need no colour for it; and yet without one there is
/// no search but a fill of everything. That is how it is defined.
bool HasMarker(const LXRGBA32i& seed, const LXRGBA32i& tolerance) {
    LXRGBA32i marker;
    return GetOutOfRangeColor(seed, tolerance, marker);
}

bool Done(QRect* bounds, const QRect& rect) {
    if (bounds)
        *bounds = rect;
    return true;
}

/// A fill with a marker colour or, if there is none, of everything.
bool FillFrom(const LXRGBA32i& colour, const LXImageRGBA32i& source, LXImageRGBA32i& target,
              const QPoint& seed, const LXRGBA32i& tolerance, const LXRGBA32i& fill,
              QRect* bounds) {
    if (HasMarker(colour, tolerance))
        return Done(bounds, LXFill::Connected(source, target, seed,
                                              LXColourRange::Around(colour, tolerance), fill));
    target.Fill(fill);
    return Done(bounds, LXImageRect(source));
}

QRgb ToRgb(const LXRGBA32i& colour) {
    return qRgba(colour.red, colour.green, colour.blue, colour.alpha);
}

} // namespace

bool LXFloodFillHelper::FloodFill(LXImageRGBA32i& image, const QPoint& seed, const LXRGBA32i& fill,
                                  QRect* bounds) {
    const auto colour = ReadSeed(image, seed, LX_SITE, "FloodFill seed point is out of range.");
    if (!colour)
        return false;
    if (*colour == fill)
        return Done(bounds, QRect());
    return Done(bounds, LXFill::Connected(image, image, seed, {*colour, *colour}, fill));
}

// The %1 is part of the text, here and below; nothing is put in its place.
bool LXFloodFillHelper::FloodFill(LXImageRGBA32i& image, const QPoint& seed,
                                  const LXRGBA32i& tolerance, const LXRGBA32i& fill,
                                  QRect* bounds) {
    if (tolerance == LXRGBA32i{})
        return FloodFill(image, seed, fill, bounds);
    const auto colour = ReadSeed(image, seed, LX_SITE, "FloodFill seed point is out of range %1");
    return colour && FillFrom(*colour, image, image, seed, tolerance, fill, bounds);
}

bool LXFloodFillHelper::FloodFill(QImage& image, const QPoint& seed, const LXRGBA32i& tolerance,
                                  const LXRGBA32i& fill, QRect* bounds) {
    if (!image.rect().contains(seed, false)) {
        LXFault::Trace(LX_SITE, QStringLiteral("FloodFill seed point is out of range (%1, %2)")
                                    .arg(seed.x())
                                    .arg(seed.y()));
        return false;
    }
    if (image.depth() != 32) {
        LXFault::Trace(LX_SITE,
                       QStringLiteral("Wrong input qimage format %1").arg(int(image.format())));
        return false;
    }
    const QRgb pixel = image.pixel(seed);
    const LXRGBA32i colour = {std::uint8_t(qBlue(pixel)), std::uint8_t(qGreen(pixel)),
                              std::uint8_t(qRed(pixel)), std::uint8_t(qAlpha(pixel))};
    if (HasMarker(colour, tolerance))
        return Done(bounds,
                    LXFill::Connected(image, seed, LXColourRange::Around(colour, tolerance), fill));
    LXDetachedLine<uchar>(image, 0);
    image.fill(ToRgb(fill));
    return Done(bounds, image.rect());
}

bool LXFloodFillHelper::FloodFill(const LXImageRGBA32i& source, LXImageRGBA32i& target,
                                  const QPoint& seed, const LXRGBA32i& tolerance,
                                  const LXRGBA32i& fill, QRect* bounds) {
    const auto colour = ReadSeed(source, seed, LX_SITE, "FloodFill seed point is out of range %1");
    return colour && FillFrom(*colour, source, target, seed, tolerance, fill, bounds);
}

bool LXFloodFillHelper::ColorRangeFill(const LXImageRGBA32i& source, LXImageRGBA32i& target,
                                       const QPoint& seed, const LXRGBA32i& tolerance,
                                       const LXRGBA32i& fill, QRect* bounds) {
    target = source;
    const auto colour = ReadSeed(target, seed, LX_SITE, "Seed point is out of range %1");
    if (!colour)
        return false;
    return Done(bounds,
                LXFill::Everywhere(target, seed, LXColourRange::Around(*colour, tolerance), fill));
}
