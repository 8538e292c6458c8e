#include "DamagePicture.h"

#include "Interrupt.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <new>
#include <random>

namespace {

/// Places and lengths in units of which the picture is 800 high, the same on every run.
class Scatter {
public:
    explicit Scatter(qreal width) : m_width(width) {}

    qreal Between(qreal low, qreal high) {
        return low + (high - low) * double(m_engine()) / 4294967296.0;
    }
    QPointF Place() { return {Between(0, m_width), Between(0, 800)}; }
    QPointF Step(qreal length) { return {Between(-length, length), Between(-length, length)}; }

private:
    std::mt19937 m_engine{11};
    qreal m_width;
};

/// From top to bottom, nearly straight, as a transport through a camera leaves them.
void PaintScratches(QPainter& painter, Scatter& scatter) {
    for (int i = 0; i < 7; ++i) {
        const QPointF from(scatter.Place().x(), scatter.Between(-50, 500));
        const QPointF to = from + QPointF(scatter.Between(-40, 40), scatter.Between(150, 800));
        QPainterPath path(from);
        path.quadTo((from + to) / 2 + scatter.Step(12), to);
        painter.strokePath(path, QPen(Qt::white, scatter.Between(1, 2.6)));
    }
}

void PaintHairs(QPainter& painter, Scatter& scatter) {
    for (int i = 0; i < 9; ++i) {
        const QPointF from = scatter.Place();
        QPainterPath path(from);
        path.cubicTo(from + scatter.Step(90), from + scatter.Step(90), from + scatter.Step(70));
        painter.strokePath(path, QPen(Qt::white, scatter.Between(1, 2)));
    }
}

void PaintDust(QPainter& painter, Scatter& scatter) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    for (int i = 0; i < 220; ++i) {
        const qreal radius = 0.7 + 4 * scatter.Between(0, 1) * scatter.Between(0, 1);
        painter.drawEllipse(scatter.Place(), radius, radius * scatter.Between(0.6, 1));
    }
}

} // namespace

QImage PaintDamagePicture(const QSize& size) {
    QImage image(size, QImage::Format_ARGB32);
    if (image.isNull())
        throw std::bad_alloc();
    image.fill(Qt::transparent);
    const qreal scale = size.height() / 800.0;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    Scatter scatter(size.width() / scale);
    PaintScratches(painter, scatter);
    StopIfInterrupted();
    PaintHairs(painter, scatter);
    PaintDust(painter, scatter);
    return image;
}
