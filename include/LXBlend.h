#pragma once

#include "LXExport.h"
#include "LXPixel.h"

class QImage;

/// The blend kernels: the arithmetic of every mode on 8-bit pixels with straight alpha, bit for bit
/// defined, in unsigned 32-bit integers whose divisions truncate.
///
/// A kernel blends source pixels onto destination pixels and knows nothing of images; LXBlendOn.h
/// has the functions that do. In the tables below s and d are a colour channel of source and
/// destination, sa and da their alpha, a the weight of the source: sa * opacity >> 8, and with a
/// mask the same scaled by the mask's alpha m. Y is the luminance (16 green + 11 red + 5 blue)
/// >> 5.
///
/// `opacity` is 0 to 256, and 256 is full. A larger one is not refused: the arithmetic goes on in
/// 32 bits, wraps where it does not fit, and a result is cut to its lowest 8 bits where the rule
/// does not limit it. Such calls are slow.
///
/// The suffix LockA names the variant of a kernel that leaves the destination's alpha as it is.
/// Some are empty, as a mode that works on alpha alone has then nothing to do.
///
/// Kernels check no pointer (but a null mask is defined where it is told) and no position, and
/// never throw. A source pixel may be the very destination pixel; other overlaps are not allowed.
/// They have no state: threads may call them at once on different destination pixels.
namespace LXBlend {

/// A rectangle within two tiles: `src` and `dst` are the first pixels of tiles of 128 x 128, all
/// positions and sizes in pixels. Does nothing if `width` or `height` is below 1.
using TileKernel = void(const LXRGBA32i* src, LXRGBA32i* dst, int srcX, int srcY, int dstX,
                        int dstY, int width, int height, const unsigned int& opacity);

/// One pixel, with the alpha of the pixel (maskX, maskY) of the tile `mask` as its weight. The two
/// integers without a name are reserved: pass 0.
using MaskKernel = void(const LXRGBA32i* src, LXRGBA32i* dst, const LXRGBA32i* mask, int srcX,
                        int srcY, int dstX, int dstY, int maskX, int maskY, int, int,
                        const unsigned int& opacity);

/// As TileKernel, but the source is a picture in QImage::Format_ARGB32 whose rows are
/// QImage::width() pixels apart. The format is not checked: the bytes of any other are taken for
/// that.
using ImageKernel = void(const QImage& src, LXRGBA32i* dst, int srcX, int srcY, int dstX, int dstY,
                         int width, int height, const unsigned int& opacity);

/// As ImageKernel, through a mask tile. The rectangle's first pixel meets (maskX, maskY), and
/// `maskWidth` x `maskHeight` pixels of mask follow from there; what lies beyond them blends
/// without a mask if `outsideBlends`, and stays as it is if not.
using MaskedImageKernel = void(const QImage& src, LXRGBA32i* dst, int srcX, int srcY, int dstX,
                               int dstY, int width, int height, const unsigned int& opacity,
                               const LXRGBA32i* mask, int maskX, int maskY, int maskWidth,
                               int maskHeight, bool outsideBlends);

/// The modes that blend colour by a formula B(s, d) and alpha as SourceOver does.
///
/// With wd = (255 - a) da, ws = (255 - da) a, wb = a da the new alpha is
/// A = min((255 a + wd) / 255, 255), and each channel becomes
/// min((d wd + s ws + B(s, d) wb) / (255 A), 255); a pixel whose A is 0 becomes 0.
#define LX_SEPARABLE_MODES(X)                                                                      \
    X(Plus)       /* s + d */                                                                      \
    X(Multiply)   /* d * s / 255 */                                                                \
    X(Screen)     /* 255 - ((255 - d) * (255 - s) >> 8): a shift, so black on black gives 1 */     \
    X(Overlay)    /* HardLight with s and d exchanged */                                           \
    X(Darken)     /* the smaller */                                                                \
    X(Lighten)    /* the larger */                                                                 \
    X(ColorDodge) /* min(d * 255 / (255 - s), 255), and 255 for s = 255 */                         \
    X(ColorBurn)  /* max(0, 255 - (255 - d) * 256 / s), and 0 for s = 0 */                         \
    X(HardLight)  /* s < 128: 2 * d * s / 255; else 255 - (255 - s) * (510 - 2 * d) / 255 */       \
    X(SoftLight)  /* h = (s & 254) + 128; d < 128: d * h / 255, else 255 - (255-d) (510-h) / 255   \
                     in fractions, truncated at the end */                                         \
    X(Difference) /* |d - s| */                                                                    \
    X(Exclusion)  /* d + s - d * s * 2 / 255 */

/// A mode in every shape, and with LockA in each. Multiply, for instance, is Multiply,
/// MultiplyMask, MultiplyRGBA32iQImage and its overload with a mask.
#define LX_IN_ALL_SHAPES(mode)                                                                     \
    LIBIMAGE_EXPORT TileKernel mode, mode##LockA;                                                  \
    LIBIMAGE_EXPORT MaskKernel mode##Mask, mode##MaskLockA;                                        \
    LIBIMAGE_EXPORT ImageKernel mode##RGBA32iQImage, mode##RGBA32iQImageLockA;                     \
    LIBIMAGE_EXPORT MaskedImageKernel mode##RGBA32iQImage, mode##RGBA32iQImageLockA;

/// The overloads with a QImage and a mask are empty for all modes but SourceOver. Weight with a
/// mask: m * (sa * opacity) / 65280.
LX_SEPARABLE_MODES(LX_IN_ALL_SHAPES)

/// B(s, d) = s. Weight with a mask: m * (sa * opacity >> 8) / 255, so not that of the others.
///
/// SourceOverRGBA32iQImage copies the source pixel whole, its alpha not scaled by opacity, where a
/// is 255 or da is 0; LockA does not. The overload with a mask does so only if `mask` is null or
/// `maskWidth` or `maskHeight` is below 1: it is then the unmasked kernel.
LX_IN_ALL_SHAPES(SourceOver)

/// Colour copied, alpha a. Weight with a mask: m * (sa * opacity) / 65280.
LX_IN_ALL_SHAPES(Source)

/// da = (255 - a) da / 255; all of LockA is empty. Weight with a mask: m * (sa * opacity) / 65280.
LX_IN_ALL_SHAPES(DestinationOut)

/// da = da a / 255; LockA is empty, and so are the overloads with a mask.
LIBIMAGE_EXPORT TileKernel DestinationIn, DestinationInLockA;
LIBIMAGE_EXPORT ImageKernel DestinationInRGBA32iQImage, DestinationInRGBA32iQImageLockA;
LIBIMAGE_EXPORT MaskedImageKernel DestinationInRGBA32iQImage, DestinationInRGBA32iQImageLockA;

/// The luminance of the source, weighted by a, under the colour offsets of the destination:
/// L = min((Ys a + (255 - a) Yd) / 255, 255), each d = L + (d - Yd) da / 255, limited to 0..255.
/// Alpha stays. LockA is a mode of its own: a is sa whatever the opacity, and colour becomes white
/// where sa is 0.
LIBIMAGE_EXPORT TileKernel HealRGBAByAlpha, HealRGBAByAlphaLockA;
/// Heal with a mask: alpha becomes 255, and the offset is not weighted: d = d - Yd + L. LockA is
/// empty. Weight: m * (sa * opacity >> 8) / 255.
LIBIMAGE_EXPORT MaskKernel HealRGBAMaskByAlpha, HealRGBAMaskByAlphaLockA;
/// Under the name of the heal these are SourceRGBA32iQImage and its LockA; with a mask, empty.
LIBIMAGE_EXPORT ImageKernel HealRGBA32iQImage, HealRGBA32iQImageLockA;
LIBIMAGE_EXPORT MaskedImageKernel HealRGBA32iQImage, HealRGBA32iQImageLockA;

/// The luminance of the source goes over the destination's alpha: t = da (255 - a) + Y a,
/// da = min(t * 255 / 65025, 255). Colour stays, LockA is empty. Weight with a mask:
/// m * (sa * opacity >> 8) / 255.
LIBIMAGE_EXPORT TileKernel RGBAToMaskSourceOver, RGBAToMaskSourceOverLockA;
LIBIMAGE_EXPORT MaskKernel RGBAToMaskSourceOver, RGBAToMaskSourceOverLockA;

/// Colour becomes the gray sa * opacity >> 8, alpha 255; with a mask alpha becomes m, and the gray
/// is the same.
LIBIMAGE_EXPORT TileKernel SourceAlphaToGray, SourceAlphaToGrayLockA;
LIBIMAGE_EXPORT MaskKernel SourceAlphaToGray, SourceAlphaToGrayLockA;

/// Colour becomes the luminance of the source, white where sa is 0; alpha 255. No opacity.
LIBIMAGE_EXPORT TileKernel SourceRGBAToGray, SourceRGBAToGrayLockA;

/// As Source where sa is not 0; elsewhere nothing.
LIBIMAGE_EXPORT TileKernel SourceWidthAlpha, SourceWidthAlphaLockA;

/// da = 0 where a is not 0. Colour stays, LockA is empty.
LIBIMAGE_EXPORT TileKernel Clear, ClearLockA;

/// Bitwise, colour with s and alpha with a: d & s, d & ~s, d | s.
LIBIMAGE_EXPORT TileKernel RasterSourceAndDestination, RasterSourceAndDestinationLockA;
LIBIMAGE_EXPORT TileKernel RasterNotSourceAndDestination, RasterNotSourceAndDestinationLockA;
LIBIMAGE_EXPORT TileKernel RasterSourceOrDestination, RasterSourceOrDestinationLockA;

/// Alpha as a set; colour stays. The first is DestinationIn with any sa but 0 counted as 255; the
/// others do not look at opacity: min(da + sa, 255), min(da, sa), max(da - sa, 0).
LIBIMAGE_EXPORT TileKernel DestinationInFullAlpha;
LIBIMAGE_EXPORT TileKernel UniteAlpha, IntersectAlpha, SubtractAlpha;

#undef LX_IN_ALL_SHAPES

} // namespace LXBlend
