#include "core/conversion/Conversions.h"

#include "LXTileAccess.h"
#include "LXTileWalk.h"

#include <algorithm>
#include <cstring>

/// Conversions that move bytes and compute nothing.

namespace {

constexpr unsigned int TileRowBytes = LXImageRGBA32i::TileWidth * sizeof(LXRGBA32i);

/// How many bytes of a row of `rowBytes` bytes fall into a tile column.
unsigned int BytesInColumn(unsigned int rowBytes, unsigned int column) {
    const unsigned int before = column * TileRowBytes;
    return rowBytes > before ? std::min(rowBytes - before, TileRowBytes) : 0;
}

/// Calls `visit(tile column, tile row, first image row, rows, bytes in a row)` for all tiles of an
/// image whose rows of `rowBytes` bytes are transferred. As with WriteLine a row may end within the
/// image or reach into the padding of the last column.
template <class Visit>
void ForTileRows(const LXImageRGBA32i& image, unsigned int rowBytes, Visit visit) {
    constexpr unsigned int height = LXImageRGBA32i::TileHeight;
    for (unsigned int row = 0; row < image.GetTilesY(); ++row) {
        const unsigned int rows = std::min(image.GetHeight() - row * height, height);
        for (unsigned int column = 0; column < image.GetTilesX(); ++column)
            visit(column, row, row * height, rows, BytesInColumn(rowBytes, column));
    }
}

} // namespace

QImage LXConversions::ToQImage(const LXImageRGBA32i& source) {
    QImage target = MakeQImage(source);
    const std::size_t stride = std::size_t(target.bytesPerLine());
    unsigned char* const bits = target.bits();
    ForTileRows(source, unsigned(stride),
                [&](unsigned int column, unsigned int row, unsigned int y, unsigned int rows,
                    unsigned int bytes) {
                    const LXTileReader tile(source.GetTileRow(row)[column]);
                    unsigned char* out = bits + y * stride + std::size_t(column) * TileRowBytes;
                    for (unsigned int i = 0; tile.Pixels() && i < rows; ++i, out += stride)
                        std::memcpy(out, tile.Row(i), bytes);
                });
    return target;
}

LXImageRGBA32i LXConversions::FromQImage(const QImage& source) {
    LXImageRGBA32i target(unsigned(source.width()), unsigned(source.height()));
    const std::size_t stride = std::size_t(source.bytesPerLine());
    const unsigned char* const bits = source.constBits();
    ForTileRows(target, unsigned(stride),
                [&](unsigned int column, unsigned int row, unsigned int y, unsigned int rows,
                    unsigned int bytes) {
                    const bool whole = rows == LXImageRGBA32i::TileHeight && bytes == TileRowBytes;
                    const LXTileWriter tile(target.GetTileRow(row)[column],
                                            whole ? LXTileContent::Discard : LXTileContent::Keep);
                    const unsigned char* in =
                        bits + y * stride + std::size_t(column) * TileRowBytes;
                    for (unsigned int i = 0; i < rows; ++i, in += stride)
                        std::memcpy(static_cast<void*>(tile.Row(i)), in, bytes);
                });
    return target;
}

LXImageRGBA32i LXConversions::FromRaw(const RGB32iRawImage& source) {
    LXImageRGBA32i target(source.width, source.height);
    const std::size_t step = source.bytesPerPixel;
    LXForTiles<LXImageRGBA32i>(LXImageRect(target), [&](const LXTileSpan& span) {
        const LXTileWriter tile(target.GetTileRow(span.row)[span.column]);
        for (int y = 0; y < span.local.height(); ++y) {
            const std::size_t first =
                std::size_t(span.position.y() + y) * source.width + std::size_t(span.position.x());
            const unsigned char* raw = source.data + first * step;
            LXRGBA32i* const out = tile.Row(unsigned(y));
            for (int x = 0; x < span.local.width(); ++x, raw += step)
                out[x] = LXRGBA32i{raw[2], raw[1], raw[0], 255};
        }
    });
    return target;
}
