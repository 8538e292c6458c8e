#include "LXBlend.h"

#include "compositing/MaskRows.h"
#include "compositing/Shapes.h"

/// The kernels of the modes that copy, clear, make masks and grays, heal, and compute with alpha.
/// A mode whose whole effect is on alpha has none when alpha is locked: it is there as Nothing.

using namespace LXBlendRules;

LX_TILE_KERNEL(Source, Kernel<LXBlendRules::Source>)
LX_TILE_KERNEL(SourceLockA, Kernel<LXBlendRules::Source, Plain, Lock::Alpha>)
LX_IMAGE_KERNEL(SourceRGBA32iQImage, Kernel<LXBlendRules::Source>)
LX_IMAGE_KERNEL(SourceRGBA32iQImageLockA, Kernel<LXBlendRules::Source, Plain, Lock::Alpha>)
LX_MASK_KERNEL(SourceMask, Kernel<LXBlendRules::Source, OneStep>)
LX_MASK_KERNEL(SourceMaskLockA, Kernel<LXBlendRules::Source, OneStep, Lock::Alpha>)
LX_MASKED_IMAGE_KERNEL(SourceRGBA32iQImage, Nothing)
LX_MASKED_IMAGE_KERNEL(SourceRGBA32iQImageLockA, Nothing)

LX_TILE_KERNEL(DestinationOut, Kernel<LXBlendRules::DestinationOut>)
LX_TILE_KERNEL(DestinationOutLockA, Nothing)
LX_IMAGE_KERNEL(DestinationOutRGBA32iQImage, Kernel<LXBlendRules::DestinationOut>)
LX_IMAGE_KERNEL(DestinationOutRGBA32iQImageLockA, Nothing)
LX_MASK_KERNEL(DestinationOutMask, Kernel<LXBlendRules::DestinationOut, OneStep>)
LX_MASK_KERNEL(DestinationOutMaskLockA, Nothing)
LX_MASKED_IMAGE_KERNEL(DestinationOutRGBA32iQImage, Nothing)
LX_MASKED_IMAGE_KERNEL(DestinationOutRGBA32iQImageLockA, Nothing)

LX_TILE_KERNEL(DestinationIn, Kernel<LXBlendRules::DestinationIn>)
LX_TILE_KERNEL(DestinationInLockA, Nothing)
LX_IMAGE_KERNEL(DestinationInRGBA32iQImage, Kernel<LXBlendRules::DestinationIn>)
LX_IMAGE_KERNEL(DestinationInRGBA32iQImageLockA, Nothing)
LX_MASKED_IMAGE_KERNEL(DestinationInRGBA32iQImage, Nothing)
LX_MASKED_IMAGE_KERNEL(DestinationInRGBA32iQImageLockA, Nothing)

// A heal of its own in each shape, and none from a picture: that only copies.
LX_TILE_KERNEL(HealRGBAByAlpha, Kernel<Heal>)
LX_TILE_KERNEL(HealRGBAByAlphaLockA, Kernel<HealOrWhite, AlphaAlone, Lock::Alpha>)
LX_MASK_KERNEL(HealRGBAMaskByAlpha, Kernel<HealOpaque, TwoSteps>)
LX_MASK_KERNEL(HealRGBAMaskByAlphaLockA, Nothing)
LX_IMAGE_KERNEL(HealRGBA32iQImage, Kernel<LXBlendRules::Source>)
LX_IMAGE_KERNEL(HealRGBA32iQImageLockA, Kernel<LXBlendRules::Source, Plain, Lock::Alpha>)
LX_MASKED_IMAGE_KERNEL(HealRGBA32iQImage, Nothing)
LX_MASKED_IMAGE_KERNEL(HealRGBA32iQImageLockA, Nothing)

LX_TILE_KERNEL(RGBAToMaskSourceOver, Kernel<RGBAToMask>)
LX_TILE_KERNEL(RGBAToMaskSourceOverLockA, Nothing)
LX_MASK_KERNEL(RGBAToMaskSourceOver, Kernel<RGBAToMask, TwoSteps>)
LX_MASK_KERNEL(RGBAToMaskSourceOverLockA, Nothing)

LX_TILE_KERNEL(SourceAlphaToGray, Kernel<LXBlendRules::SourceAlphaToGray>)
LX_TILE_KERNEL(SourceAlphaToGrayLockA, Kernel<LXBlendRules::SourceAlphaToGray, Plain, Lock::Alpha>)
LX_MASK_KERNEL(SourceAlphaToGray, Kernel<LXBlendRules::SourceAlphaToGray>)
LX_MASK_KERNEL(SourceAlphaToGrayLockA, Kernel<LXBlendRules::SourceAlphaToGray, Plain, Lock::Alpha>)

LX_TILE_KERNEL(SourceRGBAToGray, Kernel<LXBlendRules::SourceRGBAToGray>)
LX_TILE_KERNEL(SourceRGBAToGrayLockA, Kernel<LXBlendRules::SourceRGBAToGray, Plain, Lock::Alpha>)
LX_TILE_KERNEL(SourceWidthAlpha, Kernel<LXBlendRules::SourceWidthAlpha>)
LX_TILE_KERNEL(SourceWidthAlphaLockA, Kernel<LXBlendRules::SourceWidthAlpha, Plain, Lock::Alpha>)
LX_TILE_KERNEL(Clear, Kernel<LXBlendRules::Clear>)
LX_TILE_KERNEL(ClearLockA, Nothing)

LX_TILE_KERNEL(RasterSourceAndDestination, Kernel<RasterAnd>)
LX_TILE_KERNEL(RasterSourceAndDestinationLockA, Kernel<RasterAnd, Plain, Lock::Alpha>)
LX_TILE_KERNEL(RasterNotSourceAndDestination, Kernel<RasterNotAnd>)
LX_TILE_KERNEL(RasterNotSourceAndDestinationLockA, Kernel<RasterNotAnd, Plain, Lock::Alpha>)
LX_TILE_KERNEL(RasterSourceOrDestination, Kernel<RasterOr>)
LX_TILE_KERNEL(RasterSourceOrDestinationLockA, Kernel<RasterOr, Plain, Lock::Alpha>)

LX_TILE_KERNEL(DestinationInFullAlpha, Kernel<LXBlendRules::DestinationIn, AnyAlphaFull>)
LX_TILE_KERNEL(UniteAlpha, Kernel<LXBlendRules::UniteAlpha, AlphaAlone>)
LX_TILE_KERNEL(IntersectAlpha, Kernel<LXBlendRules::IntersectAlpha, AlphaAlone>)
LX_TILE_KERNEL(SubtractAlpha, Kernel<LXBlendRules::SubtractAlpha, AlphaAlone>)
