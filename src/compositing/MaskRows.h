#pragma once

#include "LXBlend.h"

/// The mask kernels of LXBlend.h once more, under the same names, but on `count` pixels in a row of
/// source, mask and destination: the driver works with these, as a call for each pixel is slow.
namespace LXMaskRows {

using MaskRow = void(const LXRGBA32i* src, const LXRGBA32i* mask, LXRGBA32i* dst, int count,
                     unsigned int opacity);

#define LX_MASK_ROW(mode) MaskRow mode##Mask, mode##MaskLockA;
LX_SEPARABLE_MODES(LX_MASK_ROW)
LX_MASK_ROW(SourceOver)
LX_MASK_ROW(Source)
LX_MASK_ROW(DestinationOut)
#undef LX_MASK_ROW
MaskRow HealRGBAMaskByAlpha, HealRGBAMaskByAlphaLockA;
MaskRow RGBAToMaskSourceOver, RGBAToMaskSourceOverLockA;
MaskRow SourceAlphaToGray, SourceAlphaToGrayLockA;

} // namespace LXMaskRows
