#include "LXInpaintIterative.h"
#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "LXTransformImageColors.h"
#include "LXWorkRect.h"
#include "LXWrappingArithmetic.h"
#include "inpainting/BitPlane.h"
#include "inpainting/Edges.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <utility>
#include <vector>

/// LXInpaintIterative and the visitor of its passes.

using namespace Inpainting;

namespace {

using Image = LXImageRGBA32i;

constexpr LXRGBA32i InBand = {0, 0, 0, 255};

/// The part of a rectangle that an image covers; nothing of one that is not valid.
QRect Covered(const QRect& rect, const Image& image) {
    return LXClipped(rect, LXImageRect(image));
}

/// Reads the alpha of a row from `left` on; that of a missing tile is 0.
void ReadAlpha(const Image& image, int left, int y, std::vector<LXRGBA32i>& line,
               std::uint8_t* alphas, int count) {
    line.assign(image.GetWidth(), LXRGBA32i{});
    image.ReadLine(unsigned(y), reinterpret_cast<unsigned char*>(line.data()),
                   unsigned(line.size() * sizeof(LXRGBA32i)));
    for (int i = 0; i < count; ++i)
        alphas[i] = line[std::size_t(left + i)].alpha;
}

/// Whether one of `Count` pixels has an alpha other than 0.
template <unsigned int Count>
bool AnyAlpha(const LXRGBA32i* pixels) {
    std::uint64_t all = 0;
    for (unsigned int i = 0; i < Count; i += 2) {
        std::uint64_t pair;
        std::memcpy(&pair, pixels + i, sizeof pair);
        all |= pair;
    }
    return (all & 0xFF000000FF000000) != 0;
}

} // namespace

/// Mask and band. The mask is kept as a set of pixels, with (0, 0) for the corner of `knowable`.
struct Q_DECL_HIDDEN LXInpaintIterative::Private {
    Private(Image& picture, const Image& mask, Image firstBand, const QRect& imageRect,
            const QRect& givenMaskRect)
        : image(&picture), band(std::move(firstBand)), maskRect(givenMaskRect),
          bandRect(Covered(givenMaskRect, mask)), knowable(bandRect),
          known(knowable.width(), knowable.height()),
          offset(LXWrappingSubtract(imageRect.left(), maskRect.left()),
                 LXWrappingSubtract(imageRect.top(), maskRect.top())),
          active(maskRect.isValid()) {
        for (int y = 0; y < knowable.height(); ++y)
            known.AddRow(y);
        ForUnknown(mask,
                   [this](int x, int y) { known.Remove(x - knowable.left(), y - knowable.top()); });
        // Without this they would never come into the band: around a lone pixel the edges cancel.
        ForUnknown(mask, [this](int x, int y) {
            if (IsSurrounded(Around(x, y)))
                band.SetColor(x, y, InBand);
        });
    }

    /// visit(x, y) for the pixels that a mask marks as unknown. What it throws goes to the caller:
    /// that is why this is no walk of LXVisitImagePixel, which would log it and end.
    template <class Visit>
    void ForUnknown(const Image& mask, Visit visit) const {
        LXForTiles<Image>(knowable, [&](const LXTileSpan& span) {
            const LXTileReader tile(mask.GetTileRow(span.row)[span.column]);
            for (int y = 0; tile.Pixels() && y < span.local.height(); ++y) {
                const LXRGBA32i* const row =
                    tile.Row(unsigned(span.local.top() + y)) + span.local.left();
                for (int x = 0; x < span.local.width(); ++x)
                    if (row[x].alpha == 255)
                        visit(span.position.x() + x, span.position.y() + y);
            }
        });
    }

    /// For a place that is knowable.
    Surroundings Around(int x, int y) const {
        return known.Around(x - knowable.left(), y - knowable.top());
    }

    Image* image;
    Image band;
    QRect maskRect;
    QRect bandRect;
    QRect knowable; ///< the part of maskRect that the mask covers
    BitPlane known;
    QPoint offset;
    bool active;
    std::int64_t filledCount = 0;
};

LXInpaintIterative::LXInpaintIterative(Image& image, const Image& mask, const QRect& imageRect,
                                       const QRect& maskRect)
    : m_private(new Private(image, mask, Gradient(mask, maskRect), imageRect, maskRect)) {}

LXInpaintIterative::~LXInpaintIterative() = default;

std::int64_t LXInpaintIterative::GetFilledCount() const {
    return m_private->filledCount;
}

LXImageRGBA32i LXInpaintIterative::Gradient(const Image& mask, const QRect& rect) const {
    Image edges(mask.GetWidth(), mask.GetHeight());
    const QRect part = Covered(rect, mask);
    std::vector<LXRGBA32i> line;
    // Everything outside the rectangle is 0: so the ends of a row stay as they are.
    const auto read = [&](int y, AlphaRow& row) {
        std::fill(row.begin(), row.end(), std::uint8_t(0));
        if (y >= part.top() && y <= part.bottom())
            ReadAlpha(mask, part.left(), y, line, &row[1], part.width());
    };
    ForEdges(part.top(), part.bottom(), part.width(), read, [&](int i, int y, int strength) {
        edges.SetColor(part.left() + i, y, {0, 0, 0, static_cast<std::uint8_t>(strength)});
    });
    return edges;
}

bool LXInpaintIterative::operator()() {
    Private& my = *m_private;
    if (!my.active)
        return false;
    IterateBandPixels pass(*this);
    LXVisitImagePixel<Image, IterateBandPixels>()(my.band, my.bandRect, pass);
    pass.Finish();
    my.bandRect = pass.GetBandBoundRect();
    my.active = pass.CanContinue();
    my.filledCount += pass.GetFilledCount();
    return my.active;
}

using Pass = LXInpaintIterative::IterateBandPixels;

Pass::IterateBandPixels(LXInpaintIterative& owner)
    : m_owner(owner.m_private.get()), m_bound{INT_MAX, INT_MIN, INT_MAX, INT_MIN} {}

void Pass::VisitRun(int x, int y, const LXRGBA32i* pixels, unsigned int count) const {
    constexpr unsigned int Step = 8;
    unsigned int i = 0;
    for (; i + Step <= count; i += Step)
        if (AnyAlpha<Step>(pixels + i))
            for (unsigned int k = i; k < i + Step; ++k)
                (*this)(x + int(k), y, pixels[k]);
    for (; i < count; ++i)
        (*this)(x + int(i), y, pixels[i]);
}

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
    return m_owner->knowable.contains(x, y) && (m_owner->Around(x, y) & Bit(0, 0)) != 0;
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
    m_owner->image->SetColor(at.x(), at.y(), MakeColor(a, r, g, b, 8));
    return true;
}

/// A place that is not knowable cannot be filled.
Surroundings Pass::Around(int x, int y) const {
    return m_owner->knowable.contains(x, y) ? m_owner->Around(x, y) : 0;
}

QPoint Pass::InPicture(int x, int y) const {
    return {LXWrappingAdd(x, m_owner->offset.x()), LXWrappingAdd(y, m_owner->offset.y())};
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
    LXWalkDetail::Guarded(m_owner->band, [this] {
        for (const Change& change : m_changes)
            Apply(change);
    });
    m_changes.clear();
}

/// In this order: if no tile is left, the pixel stays in the band for another visit. The change
/// counts last, so that passes which can write nothing come to an end.
void Pass::Apply(const Change& change) {
    if (change.filled) {
        MarkNeighbours(change);
        m_owner->known.Add(change.x - m_owner->knowable.left(), change.y - m_owner->knowable.top());
        ++m_filledCount;
    }
    m_owner->band.SetColor(change.x, change.y, {});
    m_changed = true;
}

/// Takes the unknown neighbours into the band, but for those in the rightmost column of maskRect:
/// that is how the band is defined.
void Pass::MarkNeighbours(const Change& change) {
    const QRect markable = LXClipped(m_owner->maskRect.adjusted(0, 0, -1, 0), m_owner->knowable);
    ForOthers(0, 0, [&](int dx, int dy) {
        const int x = change.x + dx, y = change.y + dy;
        const bool known = (change.surroundings & Bit(dx, dy)) != 0;
        if (!known && markable.contains(x, y))
            m_owner->band.SetColor(x, y, InBand);
    });
}
