#pragma once

#include "LXInpaint.h"
#include "inpainting/BitPlane.h"
#include "inpainting/Words.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtGui/QImage>

#include <array>
#include <vector>

/// Mask and band, as sets of pixels.
///
/// Literally, each pass tries all unknown pixels of the band. But one that could not be filled can
/// only be once something near it has been. So a pass tries those that are new in the band, and
/// those with a pixel of the last layer around them. Known pixels of the band do not matter: a pass
/// only clears them from it.
struct Q_DECL_HIDDEN LXInpaint::Private {
    explicit Private(QImage& picture);

    /// What is known at first.
    void SetMask(const QImage& mask);
    /// The first band, and its bounds, which no pass looks beyond.
    void SetBand(const QImage& band, const QRect& rect);

    /// Of an unknown pixel, whether it is a hole by itself.
    bool IsLone(int x, int y) const;

    /// One pass over the pixels of the image.
    void FillLayer(const Inpainting::Pixels& pixels);
    /// For a pixel of the image. It does not become known by that.
    bool Fill(int x, int y, const Inpainting::Pixels& pixels) const;

    /// Alpha, red, green, blue; not limited to 0 .. 255.
    using Colour = std::array<int, 4>;
    Colour CarriedOn(int i, int j, int di, int dj) const;

    bool Contains(int x, int y) const;
    bool Knows(int x, int y) const { return Contains(x, y) && known.Has(x, y); }
    QRgb PixelAt(int x, int y) const; ///< 0 outside the image

    QImage* image;
    Inpainting::BitPlane known;
    Inpainting::BitPlane outside; ///< unknown, and not in the band
    Inpainting::BitPlane waiting; ///< in the band, and tried in vain
    std::vector<QPoint> toTry;    ///< in the band
    QImage distanceField;
};
