#include "LXInpaint.h"
#include "LXTransformImageColors.h"
#include "LXWrappingArithmetic.h"
#include "inpainting/BitPlane.h"
#include "inpainting/Edges.h"
#include "inpainting/Windows.h"
#include "inpainting/Words.h"

#include <QtCore/QPoint>
#include <QtCore/QtAlgorithms>

#include <algorithm>

/// LXInpaint from the mask to the last layer. Its other filler is in DistanceInpaint.cpp.

using namespace Inpainting;

namespace {

constexpr QRgb Unknown = 0xFFFF0000;
constexpr QRgb InBand = 0xFF000000;

} // namespace

struct LXInpaint::Front {
    BitPlane known;
    BitPlane outside; ///< unknown, and not in the band as yet
    BitPlane waiting; ///< in the band, tried in vain, and nothing near it has changed since
    std::vector<QPoint> toTry;
};

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

/// A pixel of the band need not be tried in each pass: if it could not be filled, it can only be
/// once something near it has been. So a pass tries the pixels that are new in the band, and those
/// with a pixel of the last layer around them.
void LXInpaint::operator()(int) {
    Front front = FirstFront();
    while (!front.toTry.empty())
        FillLayer(front);
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
    return m_mask.rect().contains(x, y) && Fill(x, y, Around(x, y));
}

bool LXInpaint::Fill(int x, int y, Surroundings known) {
    const Window* const window = FindWindow(known);
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

LXInpaint::Front LXInpaint::FirstFront() const {
    const int width = m_mask.width(), height = m_mask.height();
    Front front = {BitPlane(width, height), BitPlane(width, height), BitPlane(width, height), {}};
    for (int y = 0; y < height; ++y) {
        const QRgb *const mask = ConstWords(m_mask, y), *const band = ConstWords(m_band, y);
        for (int x = 0; x < width; ++x) {
            if (IsKnownMark(mask[x]))
                front.known.Add(x, y);
            else if (qAlpha(band[x]) == 255)
                front.toTry.emplace_back(x, y);
            else if (m_rect.contains(x, y)) // a pass never looks beyond
                front.outside.Add(x, y);
        }
    }
    return front;
}

/// One pass. What is known changes after it, so that all pixels of a layer see the same, whatever
/// the order.
void LXInpaint::FillLayer(Front& front) {
    std::vector<QPoint> layer;
    for (const QPoint& p : front.toTry) {
        if (Fill(p.x(), p.y(), front.known.Around(p.x(), p.y())))
            layer.push_back(p);
        else
            front.waiting.Add(p.x(), p.y());
    }
    front.toTry.clear();
    for (const QPoint& p : layer) {
        front.known.Add(p.x(), p.y());
        Words(m_mask, p.y())[p.x()] = 0;
        Wake(p.x(), p.y(), front);
    }
}

/// Sends the neighbours of a filled pixel into the band, and has those already in it tried again.
void LXInpaint::Wake(int x, int y, Front& front) const {
    Surroundings woken = (front.outside.Around(x, y) & Neighbours) | front.waiting.Around(x, y);
    for (; woken != 0; woken &= woken - 1) {
        const int bit = qCountTrailingZeroBits(woken);
        const QPoint p(x + bit % 5 - 2, y + bit / 5 - 2);
        front.outside.Remove(p.x(), p.y());
        front.waiting.Remove(p.x(), p.y());
        front.toTry.push_back(p);
    }
}
