#include "LXInpaintIterative.h"
#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "LXTransformImageColors.h"
#include "LXWorkRect.h"
#include "LXWrappingArithmetic.h"
#include "inpainting/BandInpaintPrivate.h"
#include "inpainting/Edges.h"

#include <algorithm>
#include <climits>
#include <vector>

/// LXInpaintIterative and the visitor of its passes.

using namespace Inpainting;

namespace {

using Image = LXImageRGBA32i;

/// The part of a rectangle that an image covers; nothing of one that is not valid.
QRect Covered(const QRect& rect, const Image& image) {
    return LXClipped(rect, LXImageRect(image));
}

/// A row of the part of a tile, as words.
const std::uint32_t* TileWords(const LXTileReader<Image::Block>& tile, const LXTileSpan& span,
                               int row = 0) {
    const void* const pixels = tile.Row(unsigned(span.local.top() + row)) + span.local.left();
    return static_cast<const std::uint32_t*>(pixels);
}

/// Reads the alpha of a row from `left` on. Where a tile is missing nothing is written.
void ReadAlpha(const Image& image, int left, int y, std::uint8_t* alphas, int count) {
    LXForTiles<Image>(QRect(left, y, count, 1), [&](const LXTileSpan& span) {
        const LXTileReader tile(image.GetTileRow(span.row)[span.column]);
        if (tile.Pixels())
            AlphaOf(TileWords(tile, span), alphas + span.position.x() - left, span.local.width());
    });
}

/// Calls `found(x, y, strength)` wherever a mask has an edge in the part of the rectangle that it
/// covers. Everything outside the rectangle is 0.
template <class Found>
void ForMaskEdges(const Image& mask, const QRect& rect, Found found) {
    const QRect part = Covered(rect, mask);
    // The ends of a row stay 0, and what a missing tile would hold.
    const auto read = [&](int y, AlphaRow& row) {
        std::fill(row.begin(), row.end(), std::uint8_t(0));
        if (y >= part.top() && y <= part.bottom())
            ReadAlpha(mask, part.left(), y, &row[1], part.width());
    };
    ForEdges(part.top(), part.bottom(), part.width(), read,
             [&](int i, int y, int strength) { found(part.left() + i, y, strength); });
}

} // namespace

LXInpaintIterative::Private::Private(Image& picture, const Image& mask, const QRect& imageRect,
                                     const QRect& maskRect)
    : image(&picture), bandRect(Covered(maskRect, mask)), hole(bandRect),
      offset(LXWrappingSubtract(imageRect.left(), maskRect.left()),
             LXWrappingSubtract(imageRect.top(), maskRect.top())),
      active(maskRect.isValid()) {
    // What this throws goes to the caller: that is why it is no walk of LXVisitImagePixel, which
    // would log it and end.
    LXForTiles<Image>(bandRect, [&](const LXTileSpan& span) {
        const LXTileReader tile(mask.GetTileRow(span.row)[span.column]);
        for (int y = 0; tile.Pixels() && y < span.local.height(); ++y)
            hole.Open(TileWords(tile, span, y), span.position.x(), span.position.y() + y,
                      span.local.width());
    });
    // A neighbour that was filled takes no pixel of the rightmost column into the band; only the
    // edges of the mask do. That asymmetry is how the band is defined.
    for (int y = bandRect.top(); bandRect.right() == maskRect.right() && y <= bandRect.bottom();
         ++y)
        hole.markable.Remove(bandRect.right(), y);
    ForMaskEdges(mask, maskRect, [this](int x, int y, int) { hole.band.Add(x, y); });
    hole.AddLone();
}

LXInpaintIterative::LXInpaintIterative(Image& image, const Image& mask, const QRect& imageRect,
                                       const QRect& maskRect)
    : m_private(new Private(image, mask, imageRect, maskRect)) {}

LXInpaintIterative::~LXInpaintIterative() = default;

std::int64_t LXInpaintIterative::GetFilledCount() const {
    return m_private->filledCount;
}

LXImageRGBA32i LXInpaintIterative::Gradient(const Image& mask, const QRect& rect) const {
    Image edges(mask.GetWidth(), mask.GetHeight());
    ForMaskEdges(mask, rect, [&](int x, int y, int strength) {
        edges.SetColor(x, y, {0, 0, 0, static_cast<std::uint8_t>(strength)});
    });
    return edges;
}

bool LXInpaintIterative::operator()() {
    Private& my = *m_private;
    if (!my.active)
        return false;
    IterateBandPixels pass(*this);
    LXWalkDetail::Guarded(*my.image, [&pass] { pass.VisitBand(); });
    pass.Finish();
    // Without the neighbours that have just come into the band: they lie inside the hole, and so
    // within the band around it.
    my.bandRect = pass.GetBandBoundRect();
    my.active = pass.CanContinue();
    my.filledCount += pass.GetFilledCount();
    return my.active;
}

using Pass = LXInpaintIterative::IterateBandPixels;

Pass::IterateBandPixels(LXInpaintIterative& owner)
    : m_owner(owner.m_private.get()), m_bound{INT_MAX, INT_MIN, INT_MAX, INT_MIN} {}

bool Pass::IsKnown(int x, int y) const {
    return (m_owner->Around(x, y) & Bit(0, 0)) != 0;
}

void Pass::Add(int x, int y, int& a, int& r, int& g, int& b) const {
    const QPoint at = InPicture(x, y);
    const LXRGBA32i pixel = m_owner->image->GetColor(at.x(), at.y());
    a = LXWrappingAdd(a, pixel.alpha);
    r = LXWrappingAdd(r, pixel.red);
    g = LXWrappingAdd(g, pixel.green);
    b = LXWrappingAdd(b, pixel.blue);
}

LXRGBA32i Pass::MakeColor(int a, int r, int g, int b, int n) const {
    if (n == 0)
        return {};
    const auto mean = [n](int v) { return static_cast<std::uint8_t>(LXWrappingDivide(v, n)); };
    return {mean(b), mean(g), mean(r), mean(a)};
}

QRect Pass::GetBandBoundRect() const {
    const bool any = m_bound[0] <= m_bound[1] && m_bound[2] <= m_bound[3];
    return any ? QRect(QPoint(m_bound[0], m_bound[2]), QPoint(m_bound[1], m_bound[3])) : QRect();
}

void Pass::Finish() {
    m_owner->hole.Close(m_owner->filled);
}
