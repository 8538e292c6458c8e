#pragma once

#include "LXBlend.h"
#include "compositing/MaskRows.h"

/// The kernel of a mode in one driver, plain and with locked alpha.
template <class KernelType>
struct LXBlendCell {
    KernelType* plain;
    KernelType* lockA;

    KernelType* operator()(bool lockAlpha) const { return lockAlpha ? lockA : plain; }
};

/// A mode: its kernels in the four drivers.
struct LXBlendMode {
    unsigned int id;
    LXBlendCell<LXBlend::TileKernel> tile;
    LXBlendCell<LXBlend::ImageKernel> image;
    LXBlendCell<LXMaskRows::MaskRow> mask;
    LXBlendCell<LXBlend::MaskedImageKernel> maskedImage;
};

/// The mode with this id; unknown ids have one of their own in common.
const LXBlendMode& LXFindBlendMode(unsigned int id);
