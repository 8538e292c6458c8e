#include "text/RoundedRect.h"
#include "text/TextDeformation.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QVector2D>

/// What an editor shows around the text: selection, lines, caret, and the character under the
/// mouse.
///
/// The text and its selection deform with any style but 0; lines and caret do with 1 alone. The two
/// lines are not alike either: the lower one is never moved to its position, and each has a share
/// of the keystone and a centre of its own. That is how they are defined.

namespace {

constexpr int FollowingStyle = 1;

/// The keystone's halves come from the text whatever it is that is narrowed.
QRectF NeverFlat(const QRectF& textRect) {
    const auto side = [](double length) { return length == 0 ? 0.01 : length; };
    return QRectF(textRect.topLeft(), QSizeF(side(textRect.width()), side(textRect.height())));
}

/// How large the text is in lengths of the path; `flat` stands in for a side of 0.
QSizeF ShareOf(const QRectF& text, const QRectF& path, double flat) {
    return QSizeF(text.width() / (path.width() == 0 ? flat : path.width()),
                  text.height() / (path.height() == 0 ? flat : path.height()));
}

} // namespace

QList<int> LXTextHelper::Boundaries() const {
    const QFontMetrics metrics(m_font);
    QList<int> boundaries = {0};
    for (int i = 1; i <= m_text.size(); ++i)
        boundaries.append(metrics.horizontalAdvance(m_text.left(i)));
    return boundaries;
}

/// Each boundary gets its vertex, also where a character has no width: QPainterPath leaves out
/// points that repeat, so they are put into place afterwards.
QPainterPath LXTextHelper::LineAt(int y) const {
    const QList<int> boundaries = Boundaries();
    QPainterPath line(QPointF(0, y));
    for (int i = 1; i < boundaries.size(); ++i)
        line.lineTo(i, y);
    for (int i = 1; i < boundaries.size(); ++i)
        line.setElementPositionAt(i, boundaries[i], y);
    return line;
}

int LXTextHelper::GlyphHeight() const {
    const QRect bounds = QFontMetrics(m_font).tightBoundingRect(m_text);
    return bounds.bottom() - bounds.top();
}

QRectF LXTextHelper::SelectionRect(int start, int length) {
    RequireTextPath();
    const QRect text = LXRoundedRect(m_textRect);
    const QFontMetrics metrics(m_font);
    return QRectF(metrics.horizontalAdvance(m_text.left(start)), text.top(),
                  metrics.horizontalAdvance(m_text.mid(start, length)), text.height());
}

QPainterPath LXTextHelper::CreateSelectionPath(QPointF&, int start, int length) {
    QPainterPath path;
    if (unsigned(length) + 1 > 1)
        path.addRect(SelectionRect(start, length));
    return path;
}

// Bottom and left by the full height, top and right by the step: the outline is not closed.
QPainterPath LXTextHelper::CreateSelectionPath(const QPointF& origin, const QSize& size,
                                               unsigned long count) const {
    QPainterPath path(origin);
    if (count == 0)
        return path;
    const double n = double(count);
    const int stepX = qRound(size.width() / n), stepY = qRound(size.height() / n);
    const double right = origin.x() + n * stepX, height = size.height();
    for (unsigned long i = 0; i++ < count;)
        path.lineTo(origin.x() + double(i) * stepX, origin.y());
    for (unsigned long i = 0; i++ < count;)
        path.lineTo(right, origin.y() + double(i) * stepY);
    for (unsigned long i = 0; i++ < count;)
        path.lineTo(origin.x() + double(count - i) * stepX, origin.y() + height * n);
    for (unsigned long i = 0; i++ < count;)
        path.lineTo(origin.x(), origin.y() + height * double(count - i));
    return path;
}

QPainterPath LXTextHelper::CreateSelectionAndDeformationPath(QPointF& offset, int start,
                                                             int length) {
    const QPainterPath plain = CreateSelectionPath(offset, start, length);
    if (m_style == 0)
        return plain;
    RequireHeavyPath();
    QPainterPath text = m_heavyPath;
    const Deformation deformation = DeformText(text, offset);
    QPainterPath selection = PreparePath(plain);
    Bend(selection, deformation.wave);
    Narrow(selection, deformation.keystone, QSizeF(1, 1));
    return selection;
}

QPainterPath LXTextHelper::GetUpperLine(const QPoint& position) const {
    return LineAt(0).translated(position);
}

QPainterPath LXTextHelper::GetUnderLine(const QPoint&, unsigned long, unsigned long) const {
    return LineAt(GlyphHeight());
}

QPainterPath LXTextHelper::GetUpperLine(const QPoint& position, const QRect& rect) {
    QPainterPath line = LineAt(0);
    if (m_style == FollowingStyle) {
        RequireTextPath();
        const QRect bounds = LXRoundedRect(line.boundingRect());
        const QRect united = rect | bounds;
        const QSizeF share(rect.width() / (bounds.width() == 0 ? 1.0 : united.width()),
                           rect.height() / (bounds.height() == 0 ? 1.0 : united.height()));
        Bend(line, LXTextWave(rect, m_orientation));
        LXTextKeystone keystone(NeverFlat(m_textRect));
        keystone.centre = united.center();
        Narrow(line, keystone, share);
    }
    return line.translated(position);
}

QPainterPath LXTextHelper::GetUnderLine(const QPoint&, unsigned long, unsigned long,
                                        const QRect& rect) {
    QPainterPath line = LineAt(GlyphHeight());
    if (m_style != FollowingStyle)
        return line;
    RequireTextPath();
    const QRect bounds = LXRoundedRect(line.boundingRect());
    const QRectF text = NeverFlat(m_textRect);
    Bend(line, LXTextWave(rect, m_orientation));
    Narrow(line, LXTextKeystone(text), ShareOf(text, bounds, 1));
    return line;
}

QPainterPath LXTextHelper::GetVerticalAndUnderLine(const QPoint& position, int index, int) {
    const QFontMetrics metrics(m_font);
    QRect glyphs = metrics.tightBoundingRect(m_text);
    // Letters that reach above and below the line.
    if (m_text.isEmpty() || !glyphs.isValid())
        glyphs = metrics.tightBoundingRect(QStringLiteral("qf"));
    const int x = index == 0 ? 0 : metrics.horizontalAdvance(m_text.left(index));

    QPainterPath caret(QPointF(x, glyphs.bottom() - glyphs.top()));
    caret.lineTo(x, 0);
    caret.addPath(GetUnderLine(position, 0, 0));
    caret = PreparePath(caret);
    if (m_style == FollowingStyle) {
        RequireTextPath();
        const QRectF bounds = caret.boundingRect(), text = NeverFlat(m_textRect);
        QPointF unused;
        FlagFunction(unused, caret);
        Narrow(caret, LXTextKeystone(text), ShareOf(text, bounds, 0.01));
    }
    return caret;
}

QPainterPath LXTextHelper::GetCharPath(const QPoint& position) {
    RequireTextPath();
    return GetUpperLine(position, LXRoundedRect(m_textRect));
}

int LXTextHelper::FindSelectedChar(const QPoint& position, const QPoint& point) {
    const QPainterPath boundaries = GetCharPath(position);
    int nearest = -1;
    float best = 0;
    for (int i = 0; i < boundaries.elementCount(); ++i) {
        const float distance = QVector2D(boundaries.elementAt(i) - QPointF(point)).length();
        if (i == 0 || distance < best) {
            nearest = i;
            best = distance;
        }
    }
    return nearest;
}
