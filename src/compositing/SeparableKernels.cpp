#include "LXBlend.h"

#include "compositing/MaskRows.h"
#include "compositing/Shapes.h"

/// The kernels of all separable modes but SourceOver: the alpha frame around one formula each.

using namespace LXBlendRules;

#define LX_SEPARABLE(mode)                                                                         \
    LX_TILE_KERNEL(mode, Kernel<AlphaFrame<LXFormulas::mode>>)                                     \
    LX_TILE_KERNEL(mode##LockA, Kernel<AlphaFrame<LXFormulas::mode>, Plain, Lock::Alpha>)          \
    LX_IMAGE_KERNEL(mode##RGBA32iQImage, Kernel<AlphaFrame<LXFormulas::mode>>)                     \
    LX_IMAGE_KERNEL(mode##RGBA32iQImageLockA,                                                      \
                    Kernel<AlphaFrame<LXFormulas::mode>, Plain, Lock::Alpha>)                      \
    LX_MASK_KERNEL(mode##Mask, Kernel<AlphaFrame<LXFormulas::mode>, OneStep>)                      \
    LX_MASK_KERNEL(mode##MaskLockA, Kernel<AlphaFrame<LXFormulas::mode>, OneStep, Lock::Alpha>)    \
    LX_MASKED_IMAGE_KERNEL(mode##RGBA32iQImage, Nothing)                                           \
    LX_MASKED_IMAGE_KERNEL(mode##RGBA32iQImageLockA, Nothing)

LX_SEPARABLE_MODES(LX_SEPARABLE)
