#pragma once

#include "LXFault.h"
#include "LXImage.h"
#include "LXTileAccess.h"
#include "LXTileWalk.h"

#include <QtGui/QImage>

#include <new>
#include <type_traits>
#include <utility>

/// The walks: any value object with a const operator()(LXRGBA32i&) over the pixels of an image, on
/// the calling thread. `Image` is QImage or LXImageRGBA32i.
///
/// The rectangle is cut to the image, as QRect::operator& does it; nothing in it is no failure.
/// Rows go from top to bottom, tiles in rows from left to right, pixels in rows within a tile.
///
/// An object may offer whole runs of neighbouring pixels as well, by a const member
/// `TransformRun(LXRGBA32i* pixels, unsigned int count)`, which must do what operator() does to
/// each of them; the walks then use that. So may visitors: those of colours by
/// `VisitRun(const LXRGBA32i* pixels, unsigned int count)`, those of pixels by
/// `VisitRun(int x, int y, const LXRGBA32i* pixels, unsigned int count)`.

namespace LXWalkDetail {

template <class Transform, class = void>
struct OffersRuns : std::false_type {};
template <class Transform>
struct OffersRuns<Transform, std::void_t<decltype(std::declval<const Transform&>().TransformRun(
                                 std::declval<LXRGBA32i*>(), 0U))>> : std::true_type {};

/// One run through the transform.
template <class Transform>
void TransformRun(const Transform& transform, LXRGBA32i* pixels, unsigned int count) {
    if constexpr (OffersRuns<Transform>::value) {
        transform.TransformRun(pixels, count);
    } else {
        for (unsigned int i = 0; i < count; ++i)
            transform(pixels[i]);
    }
}

template <class Visitor, class = void>
struct TakesRuns : std::false_type {};
template <class Visitor>
struct TakesRuns<Visitor, std::void_t<decltype(std::declval<const Visitor&>().VisitRun(
                              std::declval<const LXRGBA32i*>(), 0U))>> : std::true_type {};

/// One run to a visitor of colours.
template <class Visitor>
void VisitRun(const Visitor& visitor, const LXRGBA32i* pixels, unsigned int count) {
    if constexpr (TakesRuns<Visitor>::value) {
        visitor.VisitRun(pixels, count);
    } else {
        for (unsigned int i = 0; i < count; ++i)
            visitor(pixels[i]);
    }
}

template <class Visitor, class = void>
struct TakesPlacedRuns : std::false_type {};
template <class Visitor>
struct TakesPlacedRuns<Visitor, std::void_t<decltype(std::declval<const Visitor&>().VisitRun(
                                    0, 0, std::declval<const LXRGBA32i*>(), 0U))>>
    : std::true_type {};

/// One run to a visitor of pixels.
template <class Visitor>
void VisitRun(const Visitor& visitor, int x, int y, const LXRGBA32i* pixels, int count) {
    if constexpr (TakesPlacedRuns<Visitor>::value) {
        visitor.VisitRun(x, y, pixels, unsigned(count));
    } else {
        for (int i = 0; i < count; ++i)
            visitor(x + i, y, pixels[i]);
    }
}

/// The place that the log knows the visits by, with the build stamp of each translation unit.
static inline LXFault::Site VisitSite() {
    return {__DATE__, __TIME__, 851, "include/LXTransformImageColors.h"};
}

/// The picture in the one format that the walks read. Throws std::bad_alloc if Qt cannot make it.
inline QImage AsARGB32(const QImage& image) {
    if (image.format() == QImage::Format_ARGB32)
        return image;
    const QImage converted = image.convertToFormat(QImage::Format_ARGB32, Qt::NoOpaqueDetection);
    if (converted.isNull() && !image.isNull())
        throw std::bad_alloc();
    return converted;
}

/// Calls `visit(row, x, y, count)` for each row of the rectangle, from `row` on.
template <class Visit>
void ForRows(const QImage& image, const QRect& rect, Visit visit) {
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const void* const line = image.constScanLine(y);
        visit(static_cast<const LXRGBA32i*>(line) + rect.left(), rect.left(), y, rect.width());
    }
}

/// The same for a tiled image, tile by tile; missing tiles are passed over.
template <class Visit>
void ForRows(const LXImageRGBA32i& image, const QRect& rect, Visit visit) {
    LXForTiles<LXImageRGBA32i>(rect, [&](const LXTileSpan& span) {
        const LXTileReader tile(image.GetTileRow(span.row)[span.column]);
        for (int y = 0; tile.Pixels() && y < span.local.height(); ++y)
            visit(tile.Row(unsigned(span.local.top() + y)) + span.local.left(), span.position.x(),
                  span.position.y() + y, span.local.width());
    });
}

/// Runs a visit; over a tiled image in the lenient guard, over a QImage without any.
template <class Body>
bool Guarded(const LXImageRGBA32i&, Body body) {
    return LXFault::LenientGuard(VisitSite(), false, [&] {
        body();
        return true;
    });
}
template <class Body>
bool Guarded(const QImage&, Body body) {
    body();
    return true;
}

inline QRect RectOf(const QImage& image) {
    return image.rect();
}
inline QRect RectOf(const LXImageRGBA32i& image) {
    return LXImageRect(image);
}

inline const LXImageRGBA32i& Readable(const LXImageRGBA32i& image) {
    return image;
}
inline QImage Readable(const QImage& image) {
    return AsARGB32(image);
}

/// A whole visit: `visit(row, x, y, count)` for each row of the part of the rectangle that lies in
/// the image.
template <class Image, class Visit>
bool VisitRows(const Image& image, const QRect& rect, Visit visit) {
    return Guarded(image, [&] {
        const QRect part = rect & RectOf(image);
        if (!part.isEmpty())
            ForRows(Readable(image), part, visit);
    });
}

} // namespace LXWalkDetail

/// Changes pixels. Always true. What the transform throws goes to the caller.
template <class Image, class Transform>
struct LXTransformImageColors;

/// If there is a pixel to change, an image in another format becomes Format_ARGB32 first.
template <class Transform>
struct LXTransformImageColors<QImage, Transform> {
    bool operator()(QImage& image, const QRect& rect, const Transform& transform) const {
        const QRect part = rect & image.rect();
        if (part.isEmpty())
            return true;
        if (image.format() != QImage::Format_ARGB32)
            image = LXWalkDetail::AsARGB32(image);
        image.detach();
        if (image.isNull())
            throw std::bad_alloc();
        for (int y = part.top(); y <= part.bottom(); ++y) {
            void* const line = image.scanLine(y);
            LXWalkDetail::TransformRun(transform, static_cast<LXRGBA32i*>(line) + part.left(),
                                       unsigned(part.width()));
        }
        return true;
    }
};

/// Shared tiles under the rectangle are detached; if none is left, std::bad_alloc, and the tiles
/// before are done. Missing tiles are passed over.
template <class Transform>
struct LXTransformImageColors<LXImageRGBA32i, Transform> {
    bool operator()(LXImageRGBA32i& image, const QRect& rect, const Transform& transform) const {
        const QRect part = rect & LXImageRect(image);
        LXForTiles<LXImageRGBA32i>(part, [&](const LXTileSpan& span) {
            const LXTileWriter tile(image.GetTileRow(span.row)[span.column]);
            for (int y = 0; tile.Pixels() && y < span.local.height(); ++y)
                LXWalkDetail::TransformRun(
                    transform, tile.Row(unsigned(span.local.top() + y)) + span.local.left(),
                    unsigned(span.local.width()));
        });
        return true;
    }
};

/// Shows pixels to `visitor(int x, int y, const LXRGBA32i&)`, which is const and keeps what it
/// finds elsewhere.
///
/// Over a tiled image a std::exception of the visitor ends in a log line and false; any other is
/// logged and goes on. Over a QImage all go to the caller. An image in another format than
/// Format_ARGB32 is visited as a converted copy.
template <class Image, class Visitor>
struct LXVisitImagePixel {
    bool operator()(const Image& image, const QRect& rect, const Visitor& visitor) const {
        return LXWalkDetail::VisitRows(image, rect,
                                       [&](const LXRGBA32i* row, int x, int y, int count) {
                                           LXWalkDetail::VisitRun(visitor, x, y, row, count);
                                       });
    }
};

/// The same with `visitor(const LXRGBA32i&)`.
template <class Image, class Visitor>
struct LXVisitImageColors {
    bool operator()(const Image& image, const QRect& rect, const Visitor& visitor) const {
        return LXWalkDetail::VisitRows(image, rect, [&](const LXRGBA32i* row, int, int, int count) {
            LXWalkDetail::VisitRun(visitor, row, unsigned(count));
        });
    }
};
