#pragma once

#include "LXInpaint.h"
#include "inpainting/Hole.h"
#include "inpainting/Words.h"

#include <QtCore/QRect>
#include <QtGui/QImage>

#include <array>

/// Mask and band are those of a hole.
struct Q_DECL_HIDDEN LXInpaint::Private {
    explicit Private(QImage& picture) : image(&picture), hole(picture.rect()) {}

    /// One pass over the pixels of the image; whether it filled some.
    bool FillLayer(const Inpainting::Pixels& pixels);
    /// For a pixel of the image. It does not become known by that.
    bool Fill(int x, int y, const Inpainting::Pixels& pixels) const;

    /// Alpha, red, green, blue; not limited to 0 .. 255.
    using Colour = std::array<int, 4>;
    Colour CarriedOn(int i, int j, int di, int dj) const;

    bool Contains(int x, int y) const;
    bool Knows(int x, int y) const { return Contains(x, y) && hole.known.Has(x, y); }
    QRgb PixelAt(int x, int y) const; ///< 0 outside the image
    /// To be written: the image is ARGB32 then, and shared with nobody.
    Inpainting::Pixels OwnedPixels();

    QImage* image;
    Inpainting::Hole hole;
    /// The bounds of all edges: no pass looks beyond. A lone pixel has edges around it.
    QRect bandRect;
    QImage distanceField;
};
