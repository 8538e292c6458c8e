#pragma once

#include "LXImage.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QMatrix4x4>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QTransform>

struct LXTextWave;
struct LXTextKeystone;

/// A line of text as an object: its outline, bent and narrowed on request, the picture of that, and
/// the geometry that an editor shows around it.
///
/// The outline is deformed first and made a picture last, so that deformed text stays sharp. It is
/// built from text and font when it is needed, and so is its subdivision into short segments, the
/// costly step; other settings work on a copy of what is cached. Lengths are in pixels; the outline
/// begins at (0, 0), and the text's baseline origin is not kept. Rectangles "rounded" have their x,
/// y, width and height each rounded to the nearest integer, halves upwards; rectangles and offsets
/// in whole pixels are limited to 2^29 on either side of 0, but for what deforming adds to an
/// offset, which is truncated.
///
/// Text needs a QGuiApplication. A text without an outline (empty, or of spaces) gives empty paths
/// and images of 0 x 0; selections, lines and caret go by the font's widths, which it may have.
/// Running out of memory or tiles comes out as std::bad_alloc and leaves the object valid. An
/// object is for one thread at a time; also reading functions may fill its caches.
class LIBIMAGE_EXPORT LXTextHelper {
public:
    /// Subdivision leaves no straight segment of twice `maxSegmentLength` or more. A length that is
    /// not above 0, or 2^31 times shorter than a segment, subdivides nothing, beyond making lines
    /// of curves.
    explicit LXTextHelper(float maxSegmentLength);

    // --- settings --------------------------------------------------------------------------------

    /// Only these two make the cached paths dirty.
    void SetText(const QString& text);
    void SetFont(const QFont& font);

    /// Pen and brush; an invalid colour, as at the start, paints black.
    void SetColor(const QColor& color);
    /// 0, as at the start, is plain text, and any other value deforms it. The lines of the text and
    /// the caret follow the deformation for 1 only.
    void SetStyle(int style);
    /// Whether the wave runs along y and moves x. At the start it runs along x and moves y.
    void SetOrientation(bool orientation);
    /// The height of the wave, in percent of half the path's size across it; 0 at the start. A
    /// positive one raises what is right of the centre.
    void SetBend(double bend);
    /// The keystone in percent; 0 at the start. A horizontal one of 50 makes the right edge 1.5
    /// times as high and the left edge half as high, a vertical one the bottom edge 1.5 times as
    /// wide.
    void SetHDistortion(double distortion);
    void SetVDistortion(double distortion);
    /// The final placing; the identity at the start. Its two-dimensional part is used.
    void SetTransform(const QMatrix4x4& transform);
    /// For the painter of the images. None is set at the start.
    void SetRenderHint(QPainter::RenderHint hint, bool on);
    /// Sets the hints Antialiasing, TextAntialiasing, SmoothPixmapTransform and
    /// HighQualityAntialiasing: to true by 2, to false by 1. Any other mode changes nothing.
    void SetRenderMode(int mode);

    QString GetText() const { return m_text; }
    QFont GetFont() const { return m_font; }
    QColor GetColor() const { return m_color; }
    QMatrix4x4 GetTransform() const { return m_transform; }

    // --- the cached paths ------------------------------------------------------------------------

    /// Builds the outline of the text, with the top left corner of its bounds at (0, 0).
    void CreateTextPath();
    /// Builds its subdivision, and the outline if that is dirty.
    void CreateHeavyTextPath();

    /// Whether the path must be built before it is used; every function here that uses one does so.
    bool IsTextPathDirty() const { return m_textPathDirty; }
    bool IsHeavyPathDirty() const { return m_heavyPathDirty; }
    /// As last built.
    const QPainterPath& GetTextPath() const { return m_textPath; }
    const QPainterPath& GetHeavyPath() const { return m_heavyPath; }
    /// Their bounds.
    QRectF GetTextRect() const { return m_textRect; }
    QRectF GetHeavyRect() const { return m_heavyRect; }
    /// Of the latest deformation: its rounded bounds before the transform, a null rectangle if
    /// there was none; and the offset that was given to it.
    QRect GetDeformedRect() const { return m_deformedRect; }
    QPointF GetDeformedOffset() const { return m_deformedOffset; }

    // --- paths -----------------------------------------------------------------------------------

    /// The path with lines for its curves, and with points along each line P Q of
    /// 2 `maxSegmentLength` or more: at P + d, P + 2 d ... with |d| = `maxSegmentLength`, one fewer
    /// than that length fits into the line. Lines below that stay whole.
    QPainterPath PreparePath(const QPainterPath& path) const;
    /// Does that to the outline.
    void PreparePath();

    /// The wave: moves each element of the path by -sin((x - centre.x) pi / halfLength) times
    /// bend / 100 halfBreadth in y, or with x and y exchanged, as the orientation says. The offset
    /// is not used. A half length of 0 moves nothing.
    void FlagFunction(QPointF& offset, QPainterPath& path, const QPointF& centre, float halfLength,
                      double halfBreadth) const;
    /// The same with centre and halves, in integers, of the path's rounded bounds: one period along
    /// the path.
    void FlagFunction(QPointF& offset, QPainterPath& path) const;

    /// The keystone. With (x, y) from the centre, `mode` 1 adds horizontal x / halfWidth y to y,
    /// 2 adds vertical y / halfHeight x to x, 3 does both and any other bit nothing. An axis whose
    /// half is below 2.220446e-16 does nothing.
    void Distortion(QPainterPath& path, int mode, float halfWidth, float halfHeight,
                    float horizontal, float vertical, const QPointF& centre) const;
    /// The same with centre and halves of the path's bounds.
    void Distortion(QPainterPath& path, int mode, float horizontal, float vertical) const;

    /// Adds the path through `transform` to `out`, with lines for its curves. The two are one and
    /// the same.
    void TransformPath(const QPainterPath& path, const QTransform& transform,
                       QPainterPath& out) const;
    void TransformPathWithRect(const QPainterPath& path, const QTransform& transform,
                               QPainterPath& out) const;
    /// The path through the object's transform, moved so that `rect` comes to lie at the origin.
    QPainterPath TransformPath(const QPainterPath& path, const QRectF& rect) const;
    /// Also tells how far from the transformed corner of `rect` to place an image of the result, so
    /// that the centre of `rect` stays where it is if `rect` begins at the origin: half the size of
    /// `rect` - transformed centre + top left of the result's bounds.
    QPainterPath TransformPath(const QPainterPath& path, const QRectF& rect, QPointF& offset) const;
    /// The path through the object's transform, where that puts it.
    QPainterPath TransformPathWithRect(const QPainterPath& path, const QRectF& rect) const;
    /// Also tells where `rect` comes to lie, and how far its corner moved.
    QPainterPath TransformPathWithRect(const QPainterPath& path, const QRectF& rect,
                                       QRectF& outRect, QPointF& offset) const;

    /// The outline, not transformed; its bounds, and where the transform would put these. The
    /// offset is not touched.
    QPainterPath CreatePathByTextWithRect(QRectF& rect, QRectF& mappedRect, QPointF& offset);
    /// The same deformed, also to `path`; how far the deformation moved the corner of the bounds,
    /// in whole pixels, is added to the offset. With style 0 as above, and `path` is not touched.
    QPainterPath CreatePathByTextWithDeformationWithRect(QPainterPath& path, QRectF& rect,
                                                         QRectF& mappedRect, QPointF& offset);

    // --- images ----------------------------------------------------------------------------------

    /// The path filled with the colour, and its edge drawn one pixel wide, by QPainter with the
    /// render hints and CompositionMode_Source, tile by tile. What lies beyond the rounded bounds
    /// of the path, or beyond the rounded `rect`, is cut off: half of the edge line, for the
    /// former. A negative side counts as 0.
    LXImageRGBA32i CreateImage(const QPainterPath& path) const;
    LXImageRGBA32i CreateImage(const QPainterPath& path, const QRectF& rect) const;

    /// The image through the object's transform, by nearest pixels, of the size of its bounds then.
    LXImageRGBA32i TransformImage(const LXImageRGBA32i& image) const;
    /// The transformed path on an image of the bounds of the transformed `rect`, and how far these
    /// moved, in whole pixels.
    LXImageRGBA32i TransformAndCreateImage(const QPainterPath& path, const QRectF& rect,
                                           QPointF& offset) const;

    /// The plain text, transformed. Placed at `offset`, in whole pixels, from the transformed
    /// corner of its bounds it keeps its centre; that is (0, 0) for the identity.
    LXImageRGBA32i CreateImageByText(QPointF& offset);
    /// The deformed text, transformed; the offset as of the deformed path, which begins with the
    /// one that is given. With style 0 it is CreateImageByText().
    LXImageRGBA32i CreateImageByTextWithDeformation(QPointF& offset);
    /// The plain text with `length` characters from `start` on shown as selected: as holes in a
    /// rectangle. A length of 0 or -1 selects nothing, a lower one all that follows. The offset is
    /// as that of CreateImageByText(), for the text with its rectangle.
    LXImageRGBA32i CreateImageByTextWithSelection(QPointF& offset, int start, int length);
    /// The deformed text, without any selection: an editor draws
    /// CreateSelectionAndDeformationPath() on top.
    LXImageRGBA32i CreateImageByTextWithSelectionAndDeformation(QPointF& offset, int start,
                                                                int length);

    // --- selection and caret ---------------------------------------------------------------------

    /// A rectangle over `length` characters from `start` on, by the font's widths. A length of 0 or
    /// -1 gives an empty path, a lower one means all that follows. The offset is not used.
    QPainterPath CreateSelectionPath(QPointF& offset, int start, int length);
    /// An outline with `count` points a side, and of time and memory to match; with 0 the origin
    /// alone. The steps are the sides over `count`, rounded. Bottom and left are `count` times the
    /// full height away from the top, so that with more than one point a side the outline does not
    /// meet itself.
    QPainterPath CreateSelectionPath(const QPointF& origin, const QSize& size,
                                     unsigned long count) const;
    /// The selection's rectangle, subdivided and deformed as the text is. The offset stays as it
    /// is and is remembered.
    QPainterPath CreateSelectionAndDeformationPath(QPointF& offset, int start, int length);

    /// Lines along the top and the bottom, with one vertex for each boundary between characters,
    /// ends included. The upper one begins at `position`; the lower one, at the height of the
    /// glyphs less 1, is not moved, and its other arguments are not used either.
    QPainterPath GetUpperLine(const QPoint& position) const;
    QPainterPath GetUnderLine(const QPoint& position, unsigned long, unsigned long) const;
    /// The same deformed, with style 1, by the wave of a text with the bounds `rect`. A line has no
    /// height, so the vertical share of its keystone is the height of `rect` itself, not a ratio.
    QPainterPath GetUpperLine(const QPoint& position, const QRect& rect);
    QPainterPath GetUnderLine(const QPoint& position, unsigned long, unsigned long,
                              const QRect& rect);

    /// The caret in front of character `index`, upwards, with the lower line; deformed with style
    /// 1. The other arguments are not used. A text without glyphs gets a caret as high as "qf".
    QPainterPath GetVerticalAndUnderLine(const QPoint& position, int index, int);

    /// The upper line, deformed with the bounds of the text.
    QPainterPath GetCharPath(const QPoint& position);
    /// The boundary whose vertex of that line is nearest to `point`: the number of characters in
    /// front of it. The first of several. A line has at least the vertex before its first
    /// character.
    int FindSelectedChar(const QPoint& position, const QPoint& point);

private:
    struct Deformation;

    void RequireTextPath();
    void RequireHeavyPath();

    void Bend(QPainterPath& path, const LXTextWave& wave) const;
    void Narrow(QPainterPath& path, const LXTextKeystone& keystone, const QSizeF& share) const;
    Deformation DeformText(QPainterPath& text, const QPointF& offset);
    QPainterPath DeformedText(QPointF& offset);

    QList<int> Boundaries() const;
    QPainterPath LineAt(int y) const;
    int GlyphHeight() const;
    QRectF SelectionRect(int start, int length);

    QString m_text;
    QFont m_font;
    QColor m_color;
    QPainterPath m_textPath;
    QRectF m_textRect;
    QPainterPath m_heavyPath;
    QRectF m_heavyRect;
    bool m_textPathDirty = true;
    bool m_heavyPathDirty = true;
    float m_maxSegmentLength;
    int m_style = 0;
    bool m_orientation = false;
    double m_bend = 0;
    double m_hDistortion = 0;
    double m_vDistortion = 0;
    QRect m_deformedRect;
    QPointF m_deformedOffset;
    QMatrix4x4 m_transform;
    QMap<QPainter::RenderHint, bool> m_renderHints;
};
