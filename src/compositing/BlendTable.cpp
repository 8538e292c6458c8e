#include "compositing/BlendTable.h"

/// The numbers of the blend modes and the kernels behind them.

namespace {

using namespace LXBlend;

/// The kernels of modes that a driver does not know. With locked alpha they are the plain ones: the
/// lock is lost.
constexpr LXBlendCell<TileKernel> UnknownTile = {SourceOver, SourceOver};
constexpr LXBlendCell<ImageKernel> UnknownImage = {SourceOverRGBA32iQImage,
                                                   SourceOverRGBA32iQImage};
constexpr LXBlendCell<LXMaskRows::MaskRow> UnknownMask = {LXMaskRows::SourceOverMask,
                                                          LXMaskRows::SourceOverMask};
constexpr LXBlendCell<MaskedImageKernel> UnknownMaskedImage = {SourceRGBA32iQImage,
                                                               SourceRGBA32iQImage};

/// Cells with the kernels of a name.
#define LX_TILE(name)                                                                              \
    { name, name##LockA }
#define LX_IMAGE(name)                                                                             \
    { name##RGBA32iQImage, name##RGBA32iQImageLockA }
#define LX_MASK(name)                                                                              \
    { LXMaskRows::name, LXMaskRows::name##LockA }
/// A cell of a mode without a locked form: under lock it is SourceOver, and the lock is lost.
#define LX_TILE_UNLOCKED(name)                                                                     \
    { name, SourceOver }
/// A mode in all four drivers.
#define LX_ROW(id, name)                                                                           \
    { id, LX_TILE(name), LX_IMAGE(name), LX_MASK(name##Mask), LX_IMAGE(name) }
/// A mode that only a tiled source knows.
#define LX_TILE_ROW(id, cell)                                                                      \
    { id, cell, UnknownImage, UnknownMask, UnknownMaskedImage }

// One row for each mode, in each cell what the driver does with it. The table is not as regular as
// it could be, and that is on purpose: the numbers with all that they do are the interface, say,
// mode 2 clearing from a tiled source but compositing as SourceOver from a QImage, mode 6 not
// knowing a mask, and modes 92 to 95 losing the lock. Do not complete a row, and do not lock what
// is not locked.
constexpr LXBlendMode Modes[] = {
    LX_ROW(0, SourceOver),
    LX_TILE_ROW(2, LX_TILE(Clear)),
    LX_ROW(3, Source),
    {6, LX_TILE(DestinationIn), LX_IMAGE(DestinationIn), UnknownMask, LX_IMAGE(DestinationIn)},
    LX_ROW(8, DestinationOut),
    LX_ROW(12, Plus),
    LX_ROW(13, Multiply),
    LX_ROW(14, Screen),
    LX_ROW(15, Overlay),
    LX_ROW(16, Darken),
    LX_ROW(17, Lighten),
    LX_ROW(18, ColorDodge),
    LX_ROW(19, ColorBurn),
    LX_ROW(20, HardLight),
    LX_ROW(21, SoftLight),
    LX_ROW(22, Difference),
    LX_ROW(23, Exclusion),
    LX_TILE_ROW(24, LX_TILE(RasterSourceOrDestination)),
    LX_TILE_ROW(25, LX_TILE(RasterSourceAndDestination)),
    LX_TILE_ROW(31, LX_TILE(RasterNotSourceAndDestination)),
    {64, LX_TILE(RGBAToMaskSourceOver), UnknownImage, LX_MASK(RGBAToMaskSourceOver),
     UnknownMaskedImage},
    {88, LX_TILE(SourceAlphaToGray), UnknownImage, LX_MASK(SourceAlphaToGray), UnknownMaskedImage},
    LX_TILE_ROW(89, LX_TILE(SourceRGBAToGray)),
    {90, LX_TILE(HealRGBAByAlpha), LX_IMAGE(Heal), LX_MASK(HealRGBAMaskByAlpha), LX_IMAGE(Heal)},
    LX_TILE_ROW(91, LX_TILE(SourceWidthAlpha)),
    LX_TILE_ROW(92, LX_TILE_UNLOCKED(DestinationInFullAlpha)),
    LX_TILE_ROW(93, LX_TILE_UNLOCKED(UniteAlpha)),
    LX_TILE_ROW(94, LX_TILE_UNLOCKED(IntersectAlpha)),
    LX_TILE_ROW(95, LX_TILE_UNLOCKED(SubtractAlpha)),
};

constexpr LXBlendMode UnknownMode = LX_TILE_ROW(~0U, UnknownTile);

} // namespace

const LXBlendMode& LXFindBlendMode(unsigned int id) {
    for (const LXBlendMode& mode : Modes)
        if (mode.id == id)
            return mode;
    return UnknownMode;
}
