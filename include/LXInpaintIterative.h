#pragma once

#include "LXExport.h"
#include "LXImage.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace Inpainting {
struct Window;
}

/// Fills a hole in a tiled picture from its rim, one layer a call:
///
///     LXInpaintIterative inpaint(image, mask, imageRect, maskRect);
///     while (inpaint()) {
///         // look at a cancel flag, tell the progress
///     }
///
/// The mask has coordinates of its own: (x, y) in it is the pixel (x, y) + imageRect.topLeft() -
/// maskRect.topLeft() of the picture. A pixel of the mask whose alpha is 255 is unknown and to be
/// filled; any other is known. Outside maskRect, and outside the mask, nothing is known and nothing
/// is filled. The colours of pixels marked as unknown are not read.
///
/// A pixel is filled with the mean, truncated, of the eight others in the first complete 3 x 3
/// window that it lies in, and counts as known from the next pass on. It is tried if it lies on an
/// edge of the hole, stands alone among known pixels, or has a neighbour that was filled; but
/// the rightmost column of maskRect is tried for the first reason alone. What never is tried,
/// or never has a complete window, stays as it is: so does a lone pixel at the border of maskRect,
/// as beyond that nothing is known.
///
/// An object serves one filling, on one thread. Between two passes the picture holds the layers
/// that are filled, each complete, and the caller may stop.
class LIBIMAGE_EXPORT LXInpaintIterative {
public:
    class IterateBandPixels;

    /// The image must outlive the object, and have all its tiles; of the mask some may be missing.
    /// Three bits are kept for each pixel of maskRect that the mask covers, and nothing of the mask
    /// itself. Of imageRect only the top left corner counts; its differences from that of maskRect
    /// must fit an int, and wrap around otherwise. Throws std::bad_alloc without the memory.
    LXInpaintIterative(LXImageRGBA32i& image, const LXImageRGBA32i& mask, const QRect& imageRect,
                       const QRect& maskRect);
    ~LXInpaintIterative();
    LXInpaintIterative(const LXInpaintIterative&) = delete;
    LXInpaintIterative& operator=(const LXInpaintIterative&) = delete;

    /// The edges of a mask in a rectangle: alpha trunc(sqrt(gx^2 + gy^2)), at most 255, of the
    /// Sobel operator on its alpha, where everything outside the rectangle counts as 0. An image of
    /// the mask's size, colours 0, and 0 outside the rectangle.
    LXImageRGBA32i Gradient(const LXImageRGBA32i& mask, const QRect& rect) const;

    /// One pass: true if it changed something, and another may change more. False at once if
    /// maskRect is not valid, and after a pass that changed nothing.
    ///
    /// A pixel of the picture that is not there (std::out_of_range) or cannot be written as no tile
    /// is left (std::bad_alloc) is logged and ends the pass early; the next pass goes on in the
    /// bounds of what this one saw. After a pass that changed nothing, neither filling a pixel
    /// nor letting a known one leave the band, the object is done, also if the hole is not.
    bool operator()();

    /// How many pixels the passes of operator() have made known so far.
    std::int64_t GetFilledCount() const;

private:
    struct Private;
    const std::unique_ptr<Private> m_private;
};

/// The visitor of one pass over the band. It fills pixels of the picture at once, and notes which:
/// the mask stands still under the walk, frozen without a copy, so that the order of the visits
/// does not matter to the picture. Finish puts it all in afterwards.
/// Coordinates are those of the mask.
class LIBIMAGE_EXPORT LXInpaintIterative::IterateBandPixels {
public:
    /// A pass of `owner`, which must outlive it.
    explicit IterateBandPixels(LXInpaintIterative& owner);

    /// A pixel with alpha 0 is not in the band. A known one leaves the band, an unknown one is
    /// filled if it can be. A walk shows its visitor as const, so what it finds is mutable.
    void operator()(int x, int y, const LXRGBA32i& bandPixel) const {
        if (bandPixel.alpha != 0)
            Visit(x, y);
    }

    /// Puts what was filled into mask and band, in the order of the visits; the next pass may
    /// begin.
    void Finish();

    /// The bounds of all pixels of the band that were visited; a null rectangle if there were none.
    QRect GetBandBoundRect() const;
    /// Whether a visit changed anything.
    bool CanContinue() const { return m_changed; }
    /// How many times a visit has filled a pixel.
    std::int64_t GetFilledCount() const { return m_filledCount; }

    /// Whether the pixel is known: until Finish, when the pass began. Nothing outside maskRect is.
    bool IsKnown(int x, int y) const;
    /// Writes the mean of the first complete window into the picture; false if there is none.
    bool Inpaint(int x, int y) const;
    void AddBoundPoint(int x, int y) const { AddBounds(x, x, y); }
    /// Adds the channels of the picture's pixel under (x, y). Throws std::out_of_range outside it.
    void Add(int x, int y, int& a, int& r, int& g, int& b) const;
    /// Each value divided by n, truncated, as a low byte; 0 if n is 0.
    LXRGBA32i MakeColor(int a, int r, int g, int b, int n) const;

private:
    friend class LXInpaintIterative;

    void AddBounds(int left, int right, int y) const {
        m_bound[0] = std::min(m_bound[0], left);
        m_bound[1] = std::max(m_bound[1], right);
        m_bound[2] = std::min(m_bound[2], y);
        m_bound[3] = std::max(m_bound[3], y);
    }
    void Visit(int x, int y) const;
    Q_DECL_HIDDEN void VisitBand() const;
    Q_DECL_HIDDEN void VisitRun(int x, int y, std::uint32_t band) const;
    Q_DECL_HIDDEN void Fill(int x, int y, const Inpainting::Window& window) const;
    Q_DECL_HIDDEN QPoint InPicture(int x, int y) const;

    Private* m_owner;
    mutable int m_bound[4]; ///< smallest and largest x, smallest and largest y
    mutable bool m_changed = false;
    mutable std::int64_t m_filledCount = 0;
};
