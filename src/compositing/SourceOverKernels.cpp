#include "LXBlend.h"

#include "compositing/MaskRows.h"
#include "compositing/Shapes.h"

#include <algorithm>

/// The kernels of SourceOver, the one mode that works in all four shapes. Other than the separable
/// modes it rounds the mask in two steps.

using namespace LXBlendRules;

namespace {

using Frame = AlphaFrame<LXFormulas::SourceOver>;

/// Without a mask this is the kernel `Unmasked`, with all its shortcuts. With one, what lies
/// outside the mask is blended by the plain frame: a picture that is cut by a mask shows no seam.
template <class Unmasked, Lock lock>
struct MaskedPicture {
    static void MaskedImage(const QImage& src, LXRGBA32i* dst, int srcX, int srcY, int dstX,
                            int dstY, int width, int height, Word opacity, const LXRGBA32i* mask,
                            int maskX, int maskY, int maskWidth, int maskHeight,
                            bool outsideBlends) {
        if (!mask || maskWidth < 1 || maskHeight < 1)
            return Unmasked::Image(src, dst, srcX, srcY, dstX, dstY, width, height, opacity);
        for (int y = 0; y < height; ++y) {
            const int inside = y < maskHeight ? std::min(width, maskWidth) : 0;
            const LXRGBA32i* const from = At(Unmasked::Pixels(src), srcX, srcY + y, src.width());
            LXRGBA32i* const to = At(dst, dstX, dstY + y);
            if (inside > 0)
                Kernel<Frame, TwoSteps, lock>::MaskedRow(from, At(mask, maskX, maskY + y), to,
                                                         inside, opacity);
            if (outsideBlends)
                Kernel<Frame, Plain, lock>::Row(from + inside, to + inside, width - inside,
                                                opacity);
        }
    }
};

using Picture = Kernel<CopyOr<Frame>>;
using PictureLockA = Kernel<Frame, Plain, Lock::Alpha>; // no shortcut: it would copy alpha

} // namespace

LX_TILE_KERNEL(SourceOver, Kernel<Frame>)
LX_TILE_KERNEL(SourceOverLockA, Kernel<Frame, Plain, Lock::Alpha>)
LX_IMAGE_KERNEL(SourceOverRGBA32iQImage, Picture)
LX_IMAGE_KERNEL(SourceOverRGBA32iQImageLockA, PictureLockA)
LX_MASK_KERNEL(SourceOverMask, Kernel<Frame, TwoSteps>)
LX_MASK_KERNEL(SourceOverMaskLockA, Kernel<Frame, TwoSteps, Lock::Alpha>)
LX_MASKED_IMAGE_KERNEL(SourceOverRGBA32iQImage, MaskedPicture<Picture, Lock::None>)
LX_MASKED_IMAGE_KERNEL(SourceOverRGBA32iQImageLockA, MaskedPicture<PictureLockA, Lock::Alpha>)
