#include "LXInpaintIterative.h"
#include "LXTransformImageColors.h"
#include "LXWrappingArithmetic.h"
#include "inpainting/Edges.h"
#include "inpainting/Windows.h"

#include <algorithm>
#include <climits>
#include <utility>

/// LXInpaintIterative and the visitor of its passes.

using namespace Inpainting;

namespace {

using Image = LXImageRGBA32i;

constexpr LXRGBA32i InBand = {0, 0, 0, 255};

/// The part of a rectangle that an image covers; nothing of one that is not valid.
QRect Covered(const QRect& rect, const Image& image) {
    return rect.isValid() ? rect & LXImageRect(image) : QRect();
}

/// The tile that has the pixel, and which of the tile's it is.
struct Place {
    unsigned int row, column, y, x;

    Place(int px, int py)
        : row(unsigned(py) / Image::TileHeight), column(unsigned(px) / Image::TileWidth),
          y(unsigned(py) % Image::TileHeight), x(unsigned(px) % Image::TileWidth) {}
};

} // namespace

LXInpaintIterative::LXInpaintIterative(Image& image, const Image& mask, const QRect& imageRect,
                                       const QRect& maskRect)
    : m_image(&image), m_mask(mask), m_band(Gradient(mask, maskRect)), m_imageRect(imageRect),
      m_maskRect(maskRect), m_bandRect(maskRect), m_active(maskRect.isValid()) {
    const IterateBandPixels pass(image, m_mask, m_band, imageRect, maskRect);
    const auto isKnown = [&pass](int x, int y) { return pass.IsKnown(x, y); };
    const auto look = [&](int x, int y, const LXRGBA32i& mark) {
        if (!IsKnownMark(mark) && IsSurrounded(x, y, isKnown))
            m_band.SetColor(x, y, InBand);
    };
    LXVisitImagePixel<Image, decltype(look)>()(m_mask, Covered(maskRect, mask), look);
}

LXImageRGBA32i LXInpaintIterative::Gradient(const Image& mask, const QRect& rect) const {
    Image edges(mask.GetWidth(), mask.GetHeight());
    const QRect part = Covered(rect, mask);
    std::vector<LXRGBA32i> line(mask.GetWidth());
    // Everything outside the rectangle is 0: so the ends of a row stay as they are.
    const auto read = [&](int y, AlphaRow& row) {
        std::fill(row.begin(), row.end(), std::uint8_t(0));
        if (y < part.top() || y > part.bottom())
            return;
        std::fill(line.begin(), line.end(), LXRGBA32i{});
        mask.ReadLine(unsigned(y), reinterpret_cast<unsigned char*>(line.data()),
                      unsigned(line.size() * sizeof(LXRGBA32i)));
        std::transform(line.begin() + part.left(), line.begin() + part.right() + 1, row.begin() + 1,
                       [](const LXRGBA32i& pixel) { return pixel.alpha; });
    };
    ForEdges(part.top(), part.bottom(), part.width(), read, [&](int i, int y, int strength) {
        edges.SetColor(part.left() + i, y, {0, 0, 0, static_cast<std::uint8_t>(strength)});
    });
    return edges;
}

bool LXInpaintIterative::operator()() {
    if (!m_active)
        return false;
    IterateBandPixels pass(*m_image, m_mask, m_band, m_imageRect, m_maskRect);
    LXVisitImagePixel<Image, IterateBandPixels>()(m_band, m_bandRect, pass);
    pass.Finish();
    m_bandRect = pass.GetBandBoundRect();
    m_active = pass.CanContinue();
    m_filledCount += pass.GetFilledCount();
    return m_active;
}

using Pass = LXInpaintIterative::IterateBandPixels;

Pass::IterateBandPixels(Image& image, Image& maskOut, Image& bandOut, const QRect& imageRect,
                        const QRect& maskRect)
    : m_image(&image), m_maskOut(&maskOut), m_bandOut(&bandOut), m_maskRect(maskRect),
      m_knowable(Covered(maskRect, maskOut)),
      m_offset(LXWrappingSubtract(imageRect.left(), maskRect.left()),
               LXWrappingSubtract(imageRect.top(), maskRect.top())),
      m_bound{INT_MAX, INT_MIN, INT_MAX, INT_MIN} {}

void Pass::Visit(int x, int y) const {
    if (IsKnown(x, y)) {
        m_changes.push_back({x, y, false, 0});
    } else {
        const Surroundings surroundings = Around(x, y);
        if (Fill(x, y, surroundings))
            m_changes.push_back({x, y, true, surroundings});
    }
    // Also if it could not be filled: then the next pass looks here again.
    AddBoundPoint(x, y);
}

bool Pass::IsKnown(int x, int y) const {
    if (!m_knowable.contains(x, y))
        return false;
    const Place at(x, y);
    const LXTileReader tile(std::as_const(*m_maskOut).GetTileRow(at.row)[at.column]);
    return !tile.Pixels() || IsKnownMark(tile.Row(at.y)[at.x]);
}

bool Pass::Inpaint(int x, int y) const {
    return Fill(x, y, Around(x, y));
}

bool Pass::Fill(int x, int y, Surroundings surroundings) const {
    const Window* const window = FindWindow(surroundings);
    if (!window)
        return false;
    int a = 0, r = 0, g = 0, b = 0;
    ForOthers(window->centreX, window->centreY,
              [&](int dx, int dy) { Add(x + dx, y + dy, a, r, g, b); });
    const QPoint at = InPicture(x, y);
    // Unlike LXInpaint, which rounds.
    m_image->SetColor(at.x(), at.y(), MakeColor(a, r, g, b, 8));
    return true;
}

/// A place that cannot be filled has none.
Surroundings Pass::Around(int x, int y) const {
    if (!m_knowable.contains(x, y))
        return 0;
    if (m_knowable.contains(QRect(x - 2, y - 2, 5, 5))) {
        const Place at(x - 2, y - 2);
        const LXTileReader tile(std::as_const(*m_maskOut).GetTileRow(at.row)[at.column]);
        if (tile.Pixels() && at.x + 5 <= Image::TileWidth && at.y + 5 <= Image::TileHeight)
            return LookAroundInside([&](int i) { return tile.Row(at.y + unsigned(i)) + at.x; });
    }
    return LookAround(x, y, [this](int i, int j) { return IsKnown(i, j); });
}

QPoint Pass::InPicture(int x, int y) const {
    return {LXWrappingAdd(x, m_offset.x()), LXWrappingAdd(y, m_offset.y())};
}

void Pass::Add(int x, int y, int& a, int& r, int& g, int& b) const {
    const QPoint at = InPicture(x, y);
    const LXRGBA32i pixel = m_image->GetColor(at.x(), at.y());
    a += pixel.alpha;
    r += pixel.red;
    g += pixel.green;
    b += pixel.blue;
}

LXRGBA32i Pass::MakeColor(int a, int r, int g, int b, int n) const {
    if (n == 0)
        return {};
    const auto mean = [n](int v) { return static_cast<std::uint8_t>(LXWrappingDivide(v, n)); };
    return {mean(b), mean(g), mean(r), mean(a)};
}

void Pass::AddBoundPoint(int x, int y) const {
    m_bound[0] = std::min(m_bound[0], x);
    m_bound[1] = std::max(m_bound[1], x);
    m_bound[2] = std::min(m_bound[2], y);
    m_bound[3] = std::max(m_bound[3], y);
}

QRect Pass::GetBandBoundRect() const {
    const bool any = m_bound[0] <= m_bound[1] && m_bound[2] <= m_bound[3];
    return any ? QRect(QPoint(m_bound[0], m_bound[2]), QPoint(m_bound[1], m_bound[3])) : QRect();
}

void Pass::Finish() {
    LXWalkDetail::Guarded(*m_maskOut, [this] {
        for (const Change& change : m_changes)
            Apply(change);
    });
    m_changes.clear();
}

/// In this order: if no tile is left, the pixel stays in the band for another visit.
void Pass::Apply(const Change& change) {
    if (change.filled) {
        MarkNeighbours(change);
        m_maskOut->SetColor(change.x, change.y, {});
        ++m_filledCount;
    }
    m_bandOut->SetColor(change.x, change.y, {});
    m_changed = true;
}

/// Takes the unknown neighbours into the band, but for those in the rightmost column of maskRect:
/// that is how the band is defined.
void Pass::MarkNeighbours(const Change& change) {
    const QRect markable = m_knowable & m_maskRect.adjusted(0, 0, -1, 0);
    ForOthers(0, 0, [&](int dx, int dy) {
        const int x = change.x + dx, y = change.y + dy;
        const bool known = (change.surroundings & Bit(dx, dy)) != 0;
        if (!known && markable.contains(x, y))
            m_bandOut->SetColor(x, y, InBand);
    });
}
