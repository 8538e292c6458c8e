#include "geometry/PaintReach.h"

#include <QtGui/QImage>
#include <QtGui/QPaintDevice>
#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>

namespace {

/// For antialiased edges, rounding to pixels, and the ways of lines that are one pixel wide.
constexpr double Slack = 2;

/// How far a stroke goes from the lines of its path. Half of the width would do but for the corners
/// of caps and joins, and for the curves that the stroker puts beside those of the path. How far a
/// drawn curve is from that of the path is known to the marks.
double StrokeReach(const QPen& pen) {
    const double width = std::max(pen.widthF(), 1.0); // 0 means one pixel
    const bool mitered = pen.joinStyle() == Qt::MiterJoin || pen.joinStyle() == Qt::SvgMiterJoin;
    return width * (1 + (mitered ? std::max(pen.miterLimit(), 0.0) : 0)) + Slack;
}

/// Receives all that a QPainter draws, and marks where it goes.
class MarkingEngine : public QPaintEngine {
public:
    explicit MarkingEngine(LXTileMarks& marks) : QPaintEngine(AllFeatures), m_marks(marks) {}

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState&) override {}

    void drawPath(const QPainterPath& path) override {
        Mark(path, painter()->brush().style() != Qt::NoBrush);
    }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPainterPath path;
        for (int i = 0; i < count; ++i)
            i == 0 ? path.moveTo(points[i]) : path.lineTo(points[i]);
        if (mode != PolylineMode)
            path.closeSubpath();
        Mark(path, mode != PolylineMode);
    }
    using QPaintEngine::drawPolygon;

    void drawPoints(const QPointF* points, int count) override {
        for (int i = 0; i < count; ++i)
            drawPolygon(points + i, 1, PolylineMode);
    }
    using QPaintEngine::drawPoints;

    void drawPixmap(const QRectF& rect, const QPixmap&, const QRectF&) override { Mark(rect); }
    void drawTiledPixmap(const QRectF& rect, const QPixmap&, const QPointF&) override {
        Mark(rect);
    }
    void drawImage(const QRectF& rect, const QImage&, const QRectF&,
                   Qt::ImageConversionFlags) override {
        Mark(rect);
    }

    /// By the outlines of the glyphs, as they reach beyond their lines; and by the lines, as glyphs
    /// may be pictures. What is painted is the glyphs fitted to pixels, and perhaps made bold:
    /// hence the slack of a quarter of the height.
    void drawTextItem(const QPointF& position, const QTextItem& item) override {
        const double height = item.ascent() + item.descent();
        m_glyphSlack = height / 4;
        QPaintEngine::drawTextItem(position, item);
        m_glyphSlack = 0;

        const double middle = position.y() + (item.descent() - item.ascent()) / 2;
        QPainterPath line(QPointF(position.x(), middle));
        line.lineTo(position.x() + item.width(), middle);
        LimitToClip();
        m_marks.MarkOutline(ToImage().map(line), height * 3 / 4 + Slack);
    }

private:
    QTransform ToImage() const { return painter()->deviceTransform(); }

    /// A rectangle of negative size, as text may have it, clips to the same one of positive size;
    /// if it is not of whole pixels Qt calls it empty on this device, and then nothing is known of
    /// it.
    void LimitToClip() {
        const QRectF clip = painter()->clipBoundingRect().normalized();
        if (painter()->hasClipping() && !clip.isEmpty())
            m_marks.SetLimits(ToImage().mapRect(clip).adjusted(-Slack, -Slack, Slack, Slack));
        else
            m_marks.ResetLimits();
    }

    void Mark(const QPainterPath& path, bool filled) {
        LimitToClip();
        const QPainterPath inImage = ToImage().map(path);
        if (filled)
            m_marks.MarkArea(inImage, Slack + m_glyphSlack);
        if (painter()->pen().style() != Qt::NoPen)
            m_marks.MarkOutline(inImage, StrokeReach(painter()->pen()));
    }
    void Mark(const QRectF& rect) {
        LimitToClip();
        m_marks.MarkBox(ToImage().mapRect(rect).adjusted(-Slack, -Slack, Slack, Slack));
    }

    LXTileMarks& m_marks;
    double m_glyphSlack = 0;
};

/// As good as a QImage to those who ask for its resolution, by which text is laid out.
class MarkingDevice : public QPaintDevice {
public:
    explicit MarkingDevice(LXTileMarks& marks) : m_engine(marks) {}

    QPaintEngine* paintEngine() const override { return &m_engine; }
    /// As inherited, which is inline in Qt: this library would export a copy of it.
    int devType() const override { return QInternal::UnknownDevice; }

protected:
    int metric(PaintDeviceMetric what) const override {
        switch (what) {
        case PdmWidth:
            return m_model.width();
        case PdmHeight:
            return m_model.height();
        case PdmWidthMM:
            return m_model.widthMM();
        case PdmHeightMM:
            return m_model.heightMM();
        case PdmNumColors:
            return m_model.colorCount();
        case PdmDepth:
            return m_model.depth();
        case PdmDpiX:
            return m_model.logicalDpiX();
        case PdmDpiY:
            return m_model.logicalDpiY();
        case PdmPhysicalDpiX:
            return m_model.physicalDpiX();
        case PdmPhysicalDpiY:
            return m_model.physicalDpiY();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        }
        return 0;
    }

private:
    mutable MarkingEngine m_engine;
    const QImage m_model{1, 1, QImage::Format_ARGB32};
};

} // namespace

LXTileMarks LXReachOf(const LXDrawing& drawing, unsigned int columns, unsigned int rows) {
    LXTileMarks marks(columns, rows);
    MarkingDevice device(marks);
    QPainter painter(&device);
    drawing(painter);
    return marks;
}
