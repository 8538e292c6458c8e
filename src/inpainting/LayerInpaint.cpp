#include "LXInpaint.h"
#include "LXTransformImageColors.h"
#include "LXWrappingArithmetic.h"
#include "inpainting/Edges.h"
#include "inpainting/Windows.h"
#include "inpainting/Words.h"

#include <QtCore/QPoint>

#include <algorithm>

/// LXInpaint from the mask to the last layer. Its other filler is in DistanceInpaint.cpp.

using namespace Inpainting;

namespace {

constexpr QRgb Unknown = 0xFFFF0000;
constexpr QRgb InBand = 0xFF000000;

} // namespace

LXInpaint::LXInpaint(QImage& image) : m_image(&image) {
    m_mask = makeMask(image);
    m_band = gradient(m_mask);
    const auto isKnown = [this](int x, int y) { return IsKnown(x, y); };
    for (int y = 0; y < m_mask.height(); ++y)
        for (int x = 0; x < m_mask.width(); ++x)
            if (!IsKnown(x, y) && IsSurrounded(x, y, isKnown))
                Words(m_band, y)[x] = InBand;
    m_rect = maskRect(m_band, QRect());
    image = LXWalkDetail::AsARGB32(image);
}

/// Walks the front alone, the unknown pixels of the band. Known ones, there from the beginning or
/// filled next to each other, would only be cleared from it.
void LXInpaint::operator()(int) {
    std::vector<QPoint> front = UnknownBand();
    while (FillLayer(front)) {
    }
}

QImage LXInpaint::makeMask(const QImage& image) const {
    const QImage picture = LXWalkDetail::AsARGB32(image);
    QImage mask = NewARGB32(picture.size());
    for (int y = 0; y < mask.height(); ++y) {
        const QRgb* const from = ConstWords(picture, y);
        std::transform(from, from + mask.width(), Words(mask, y),
                       [](QRgb colour) { return qAlpha(colour) == 255 ? 0 : Unknown; });
    }
    return mask;
}

QImage LXInpaint::gradient(const QImage& mask) const {
    constexpr QRgb Green = 0xFF00;
    const QImage picture = LXWalkDetail::AsARGB32(mask);
    const int width = picture.width(), height = picture.height();
    QImage edges = NewARGB32(picture.size());
    edges.fill(Green);
    // Beyond the mask its outermost pixels go on.
    const auto read = [&](int y, AlphaRow& row) {
        const QRgb* const words = ConstWords(picture, std::clamp(y, 0, height - 1));
        std::transform(words, words + width, row.begin() + 1,
                       [](QRgb word) { return static_cast<std::uint8_t>(word >> 24); });
        row.front() = row[1];
        row.back() = row[std::size_t(width)];
    };
    ForEdges(0, height - 1, width, read, [&](int x, int y, int strength) {
        Words(edges, y)[x] = QRgb(strength) << 24 | Green;
    });
    return edges;
}

QRect LXInpaint::maskRect(const QImage& image, const QRect& rect) const {
    const QImage picture = LXWalkDetail::AsARGB32(image);
    const QRect part = rect.isValid() ? rect & picture.rect() : picture.rect();
    QRect bounds;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const QRgb* const row = ConstWords(picture, y);
        int first = part.left(), last = part.right();
        while (first <= last && qAlpha(row[first]) == 0)
            ++first;
        while (first <= last && qAlpha(row[last]) == 0)
            --last;
        if (first <= last)
            bounds |= QRect(QPoint(first, y), QPoint(last, y));
    }
    return bounds;
}

bool LXInpaint::IsKnown(int x, int y) const {
    return m_mask.rect().contains(x, y) && IsKnownMark(ConstWords(m_mask, y)[x]);
}

bool LXInpaint::inpaint0(int x, int y) {
    const bool inside = m_mask.rect().contains(x, y);
    const Window* const window = inside ? FindWindow(Around(x, y)) : nullptr;
    if (!window)
        return false;
    int a = 0, r = 0, g = 0, b = 0;
    ForOthers(window->centreX, window->centreY,
              [&](int dx, int dy) { sum(x + dx, y + dy, a, r, g, b); });
    Words(*m_image, y)[x] = color(a, r, g, b);
    return true;
}

void LXInpaint::sum(int x, int y, int& a, int& r, int& g, int& b) {
    const QRgb pixel = PixelAt(x, y);
    a += qAlpha(pixel);
    r += qRed(pixel);
    g += qGreen(pixel);
    b += qBlue(pixel);
}

QRgb LXInpaint::color(int a, int r, int g, int b) {
    const auto mean = [](int v) { return LXWrappingAdd(v, 4) / 8; };
    return qRgba(mean(r), mean(g), mean(b), mean(a));
}

QRgb LXInpaint::PixelAt(int x, int y) const {
    return m_image->rect().contains(x, y) ? ConstWords(*m_image, y)[x] : 0;
}

/// For a pixel of the image.
Surroundings LXInpaint::Around(int x, int y) const {
    if (m_mask.rect().contains(QRect(x - 2, y - 2, 5, 5)))
        return LookAroundInside([&](int i) { return ConstWords(m_mask, y - 2 + i) + x - 2; });
    return LookAround(x, y, [this](int i, int j) { return IsKnown(i, j); });
}

std::vector<QPoint> LXInpaint::UnknownBand() const {
    std::vector<QPoint> front;
    for (int y = m_rect.top(); y <= m_rect.bottom(); ++y)
        for (int x = m_rect.left(); x <= m_rect.right(); ++x)
            if (qAlpha(ConstWords(m_band, y)[x]) == 255 && !IsKnown(x, y))
                front.emplace_back(x, y);
    return front;
}

/// One pass; false if it fills nothing. The mask changes after it, so that all pixels of a layer
/// see the same known ones, whatever the order.
bool LXInpaint::FillLayer(std::vector<QPoint>& front) {
    const auto filled = std::partition(front.begin(), front.end(),
                                       [this](const QPoint& p) { return !inpaint0(p.x(), p.y()); });
    const std::vector<QPoint> layer(filled, front.end());
    front.erase(filled, front.end());
    for (const QPoint& p : layer)
        Words(m_mask, p.y())[p.x()] = Words(m_band, p.y())[p.x()] = 0;
    for (const QPoint& p : layer)
        MarkNeighbours(p.x(), p.y(), front);
    return !layer.empty();
}

/// Takes the unknown neighbours into the band. What lies outside the bounds of the first band is
/// never filled: so at an edge of the picture that a hole covers from end to end.
void LXInpaint::MarkNeighbours(int x, int y, std::vector<QPoint>& front) {
    ForOthers(0, 0, [&](int dx, int dy) {
        const QPoint p(x + dx, y + dy);
        if (!m_rect.contains(p) || IsKnown(p.x(), p.y()))
            return;
        QRgb& mark = Words(m_band, p.y())[p.x()];
        if (qAlpha(mark) != 255)
            front.push_back(p);
        mark = InBand;
    });
}
