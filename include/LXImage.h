#pragma once

#include "LXDataBlock.h"
#include "LXPixel.h"
#include "RMCMSProfile.h"
#include "RMEXIFElement.h"

#include <QtCore/QList>
#include <QtCore/QSharedDataPointer>

#include <array>
#include <vector>

class QPoint;
class QRect;

/// A picture of any size as a grid of copy-on-write tiles.
///
/// Copying an image copies no pixels: both share the tiles until one of them writes, and then that
/// one tile is copied. A uniform image of whatever size holds at most four tiles. Tile memory comes
/// from RMTileManager64; an operation that needs a tile when none is left throws std::bad_alloc and
/// leaves the image valid.
///
/// Rows and columns count from 0 at the top left. Pixels of an edge tile that lie outside the image
/// are ordinary memory: operations on whole tiles carry them along.
///
/// Two threads may read one image, and may use two images that share tiles. Two threads must not
/// write the same tile of one image.
template <class PixelType, unsigned int Width, unsigned int Height>
class LXImage {
public:
    using Pixel = PixelType;
    using Block = DataBlock<Pixel, Width, Height>;
    using Slot = QSharedDataPointer<Block>;
    static constexpr unsigned int TileWidth = Width;
    static constexpr unsigned int TileHeight = Height;
    /// No image has more tiles than this.
    static constexpr unsigned int MaxTiles = 1000000;

    /// An image with all pixels 0. Throws std::bad_alloc above MaxTiles.
    LXImage(unsigned int width, unsigned int height);
    /// Copies share all tiles, and carry profile, EXIF and user values.
    LXImage(const LXImage& other);
    LXImage& operator=(const LXImage& other);
    /// A moved-from image is empty: 0 x 0, without profile and EXIF.
    LXImage(LXImage&& other) noexcept;
    LXImage& operator=(LXImage&& other) noexcept;
    ~LXImage();

    unsigned int GetWidth() const { return m_width; }
    unsigned int GetHeight() const { return m_height; }
    unsigned int GetTilesX() const { return m_tilesX; }
    unsigned int GetTilesY() const { return m_tilesY; }

    /// The slots of a row of tiles, or null for a row past the end. Open a slot with LXTileReader
    /// or LXTileWriter.
    const Slot* GetTileRow(unsigned int row) const {
        return row < m_tilesY ? m_blocks.data() + std::size_t(row) * m_tilesX : nullptr;
    }
    Slot* GetTileRow(unsigned int row) {
        return row < m_tilesY ? m_blocks.data() + std::size_t(row) * m_tilesX : nullptr;
    }

    const RMCMSProfile& GetProfile() const { return m_profile; }
    void SetProfile(const RMCMSProfile& profile) { m_profile = profile; }
    const QList<RMEXIFElement>& GetEXIF() const { return m_exif; }
    void SetEXIF(const QList<RMEXIFElement>& elements) { m_exif = elements; }

    /// Two integers for the application: 0 in a new image, copied with it, and never read by the
    /// library. Any other index than 0 and 1 throws std::out_of_range.
    qint32 GetUserValue(unsigned int index) const { return m_userValues.at(index); }
    void SetUserValue(unsigned int index, qint32 value) { m_userValues.at(index) = value; }

    /// Sets all pixels of the image; those outside it in edge tiles become 0. If a tile is missing
    /// for the body the old content stays; if one for an edge is, some tiles are already replaced.
    void Fill(const Pixel& colour);
    /// Sets all pixels of all tiles, also outside the image, with a single tile.
    void FastFill(const Pixel& colour);
    /// A new block, `inside` for x < w and y < h, `outside` elsewhere.
    Slot MakeBorderTile(unsigned int w, unsigned int h, Pixel inside, Pixel outside) const;

    /// Rows and columns as raw bytes, straight through the tiles. False, and nothing done, if the
    /// start lies outside the image. What goes beyond the grid of tiles is not transferred, and
    /// that is no failure; what lies between image and grid is edge padding and is transferred. A
    /// slot that somebody set to null is passed over; only ReadLine from an x ends there with
    /// false, unless it is the first.
    bool ReadLine(unsigned int y, unsigned char* out, unsigned int bytes) const;
    bool ReadLine(unsigned int y, unsigned int x, unsigned char* out, unsigned int bytes) const;
    bool WriteLine(unsigned int y, const unsigned char* in, unsigned int bytes);
    bool WriteLine(unsigned int y, unsigned int x, const unsigned char* in, unsigned int bytes);
    /// As lines, downwards from (x, y); bytes beyond a whole pixel are ignored.
    bool ReadColumn(unsigned int x, unsigned int y, unsigned char* out, unsigned int bytes) const;
    bool WriteColumn(unsigned int x, unsigned int y, const unsigned char* in, unsigned int bytes);

    /// One pixel. Throws std::out_of_range outside the image.
    Pixel GetColor(int x, int y) const;
    void SetColor(int x, int y, const Pixel& colour);

    /// Shares the tiles of `source` in `tileRect` (inclusive, in tiles, clipped to the source) with
    /// this image from `tilePosition` on, also in tiles. Tiles that would land outside are left
    /// out.
    void TransferBlocks(const LXImage& source, const QRect& tileRect,
                        const QPoint& tilePosition) noexcept;

private:
    void Swap(LXImage& other) noexcept;
    void CheckInside(int x, int y, const char* operation) const;

    std::vector<Slot> m_blocks; // row-major
    unsigned int m_tilesX = 0;
    unsigned int m_tilesY = 0;
    unsigned int m_width = 0;
    unsigned int m_height = 0;
    RMCMSProfile m_profile;
    std::array<qint32, 2> m_userValues = {0, 0};
    QList<RMEXIFElement> m_exif;
};

using LXImageRGBA32i = LXImage<LXRGBA32i, 128, 128>;
using LXImageRGBA64i = LXImage<LXRGBA64i, 128, 64>;
using LXImageRGBA64f = LXImage<LXRGBA64f, 128, 64>;
using LXImageCMYKA = LXImage<LXCMYKA, 128, 64>;
using LXImageHSLA = LXImage<LXHSLA, 128, 64>;

extern template class LIBIMAGE_EXPORT LXImage<LXRGBA32i, 128, 128>;
extern template class LIBIMAGE_EXPORT LXImage<LXRGBA64i, 128, 64>;
extern template class LIBIMAGE_EXPORT LXImage<LXRGBA64f, 128, 64>;
extern template class LIBIMAGE_EXPORT LXImage<LXCMYKA, 128, 64>;
extern template class LIBIMAGE_EXPORT LXImage<LXHSLA, 128, 64>;
