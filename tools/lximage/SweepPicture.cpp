#include "SweepPicture.h"

#include "Interrupt.h"

#include <QtGui/QColor>

#include <cmath>
#include <new>

QImage PaintSweepPicture(const QSize& size) {
    QImage image(size, QImage::Format_ARGB32);
    if (image.isNull())
        throw std::bad_alloc();
    for (int y = 0; y < size.height(); ++y) {
        StopIfInterrupted();
        const double lightness = 1 - (y + 0.5) / size.height();
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double across = (x + 0.5) / size.width();
            const double alpha = std::pow(1 - across * across, 0.7);
            row[x] = QColor::fromHslF(across, 0.9, lightness, alpha).rgba();
        }
    }
    return image;
}
