#include "LXInpaint.h"
#include "LXTransformImageColors.h"
#include "LXWorkRect.h"
#include "LXWrappingArithmetic.h"
#include "inpainting/Edges.h"
#include "inpainting/InpaintPrivate.h"
#include "inpainting/Words.h"

#include <algorithm>

/// LXInpaint from the mask to the last layer. Its other filler is in DistanceInpaint.cpp.

using namespace Inpainting;

namespace {

constexpr QRgb Green = 0xFF00;

} // namespace

LXInpaint::LXInpaint(QImage& image) : m_private(new Private(image)) {
    const QImage mask = makeMask(image), band = gradient(mask);
    Hole& hole = m_private->hole;
    for (int y = 0; y < mask.height(); ++y) {
        hole.Open(ConstWords(mask, y), 0, y, mask.width());
        hole.AddToBand(ConstWords(band, y), 0, y, mask.width());
    }
    hole.AddLone();
    m_private->bandRect = maskRect(band, QRect());
    if (!maskRect(mask, QRect()).isEmpty())
        image = LXWalkDetail::AsARGB32(image);
}

LXInpaint::~LXInpaint() = default;

void LXInpaint::operator()(int) {
    if (m_private->bandRect.isEmpty())
        return;
    const Pixels pixels = m_private->OwnedPixels();
    while (m_private->FillLayer(pixels)) {
    }
}

QImage LXInpaint::makeMask(const QImage& image) const {
    const QImage picture = LXWalkDetail::AsARGB32(image);
    QImage mask = NewARGB32(picture.size());
    for (int y = 0; y < mask.height(); ++y)
        MarkUnknown(ConstWords(picture, y), Words(mask, y), mask.width());
    return mask;
}

QImage LXInpaint::gradient(const QImage& mask) const {
    const QImage picture = LXWalkDetail::AsARGB32(mask);
    const int width = picture.width(), height = picture.height();
    QImage edges = NewARGB32(picture.size());
    edges.fill(Green);
    // Beyond the mask its outermost pixels go on.
    const auto read = [&](int y, AlphaRow& row) {
        AlphaOf(ConstWords(picture, std::clamp(y, 0, height - 1)), &row[1], width);
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
    const QRect part = LXInvalidIsWhole(rect, picture.rect());
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
    return m_private->Knows(x, y);
}

bool LXInpaint::inpaint0(int x, int y) {
    return m_private->Contains(x, y) && m_private->Fill(x, y, m_private->OwnedPixels());
}

void LXInpaint::sum(int x, int y, int& a, int& r, int& g, int& b) {
    const QRgb pixel = m_private->PixelAt(x, y);
    a = LXWrappingAdd(a, qAlpha(pixel));
    r = LXWrappingAdd(r, qRed(pixel));
    g = LXWrappingAdd(g, qGreen(pixel));
    b = LXWrappingAdd(b, qBlue(pixel));
}

QRgb LXInpaint::color(int a, int r, int g, int b) {
    const auto mean = [](int v) { return LXWrappingAdd(v, 4) / 8; };
    return qRgba(mean(r), mean(g), mean(b), mean(a));
}

bool LXInpaint::Private::Contains(int x, int y) const {
    return x >= 0 && y >= 0 && x < image->width() && y < image->height();
}

Pixels LXInpaint::Private::OwnedPixels() {
    *image = LXWalkDetail::AsARGB32(*image);
    return OwnPixels(*image);
}

QRgb LXInpaint::Private::PixelAt(int x, int y) const {
    if (!Contains(x, y))
        return 0;
    // In another format all is opaque, and multiplied by alpha or not is the same.
    return image->format() == QImage::Format_ARGB32 ? ConstWords(*image, y)[x] : image->pixel(x, y);
}
