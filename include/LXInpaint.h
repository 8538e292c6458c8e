#pragma once

#include "LXExport.h"

#include <QtCore/QRect>
#include <QtGui/QImage>

#include <memory>

class QVector2D;

/// Fills what is not opaque in a picture from what is. A pixel of alpha 255 is known; any other is
/// unknown and gets a new colour and alpha.
///
/// There are two fillers. The call operator uses `inpaint0`, layer by layer from the rim of a hole
/// inwards, until no pixel can be filled any more. `inpaint`, by distances to the rim, is for a
/// caller that chooses the order itself, as are the field and its `solve`.
///
/// An object serves one filling of one picture, on one thread.
class LIBIMAGE_EXPORT LXInpaint {
public:
    /// The image is changed in place; it must outlive the object and keep its size. In another
    /// format than Format_ARGB32 it becomes that at once, or, if all of it is opaque, before a
    /// pixel is written. Throws std::bad_alloc without the memory, as what writes does.
    explicit LXInpaint(QImage& image);
    ~LXInpaint();
    LXInpaint(const LXInpaint&) = delete;
    LXInpaint& operator=(const LXInpaint&) = delete;

    /// Fills from the rim, as far as it gets. Each pass fills one layer: a pixel counts as known
    /// only from the next pass on. It is tried if it lies on an edge of the hole, stands alone, or
    /// has a neighbour that was filled; what never is tried, or never has a complete window of
    /// known pixels, stays as it is, as all does in a picture without known pixels. The integer is
    /// not used.
    void operator()(int);

    /// 0 where the picture is opaque and 0xFFFF0000 elsewhere.
    QImage makeMask(const QImage& image) const;
    /// The edges of a mask: in alpha trunc(sqrt(gx^2 + gy^2)), at most 255, of the Sobel operator
    /// on its alpha, as if its outermost pixels went on beyond it; green is 255, red and blue 0.
    QImage gradient(const QImage& mask) const;
    /// The bounds of all pixels whose alpha is not 0 in the rectangle, or in the whole image if
    /// that is not valid; an empty rectangle if there are none.
    QRect maskRect(const QImage& image, const QRect& rect) const;

    /// Whether the pixel is known by now; nothing outside the image is.
    bool IsKnown(int x, int y) const;

    /// Writes the mean, rounded, of the eight others in the first complete 3 x 3 window around the
    /// pixel; false if there is none. The pixel does not become known by that.
    bool inpaint0(int x, int y);

    /// Writes the mean of the known pixels in the square of radius 3, but for those in the row and
    /// the column of the pixel. Each is carried on along its gradient, and has the weight
    /// (dot / len) * (1 / len^2) * (1 / (|difference of the field| + 1)), where dot is the product
    /// of the field's direction and the way to it; weights may be negative. Channels end in
    /// 0 .. 255, truncated; without any weight they are 0. Nothing happens outside the image.
    void inpaint(int x, int y);

    /// Begins the distance field: 0 where the pixel is known, 1e7 elsewhere.
    void initializeField();
    /// Distances are kept as floats. Nothing happens outside the image.
    void setField(int x, int y, double distance);
    /// 1e7 outside the image, and everywhere before initializeField.
    double field(int x, int y) const;
    /// The direction of the field by forward differences, of length 1 unless it is flat, with y
    /// before x. Coordinates are clamped to the image. A null `out` is left alone.
    void gradField(int x, int y, QVector2D* out) const;
    /// The distance of a pixel between two neighbours, a step of solving |gradient| = 1. With one
    /// of them known that one's plus 1; 1000000 if there is no solution.
    double solve(int x1, int y1, int x2, int y2) const;

    /// The Sobel operator on channels of the image, coordinates clamped to it; x to the right, y
    /// upwards. Null outputs are left alone.
    void grad(int x, int y, QVector2D* red, QVector2D* green, QVector2D* blue,
              QVector2D* alpha) const;
    /// Adds the channels of a pixel; nothing outside the image.
    void sum(int x, int y, int& a, int& r, int& g, int& b);
    /// The colour whose channels are (v + 4) / 8, as low bytes.
    QRgb color(int a, int r, int g, int b);

private:
    struct Private;
    const std::unique_ptr<Private> m_private;
};
