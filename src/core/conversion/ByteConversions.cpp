#include "core/conversion/Conversions.h"

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "core/CopyBytes.h"

#include <algorithm>
#include <deque>
#include <stdexcept>
#include <vector>

/// Conversions that move bytes and compute nothing.

namespace {

constexpr unsigned int TileRowBytes = LXImageRGBA32i::TileWidth * sizeof(LXRGBA32i);

/// The tiles of a row of tiles, open for the first `bytes` of each of their first `rows` lines.
/// A tile that is to be covered in full is not copied when it is detached.
class TileRowWriter {
public:
    TileRowWriter(LXImageRGBA32i& image, unsigned int row, unsigned int rows, unsigned int bytes) {
        for (unsigned int column = 0; column < image.GetTilesX() && bytes > 0; ++column) {
            m_bytes.push_back(std::min(bytes, TileRowBytes));
            const bool whole = m_bytes.back() == TileRowBytes && rows == LXImageRGBA32i::TileHeight;
            m_tiles.emplace_back(image.GetTileRow(row)[column],
                                 whole ? LXTileContent::Discard : LXTileContent::Keep);
            bytes -= m_bytes.back();
        }
    }

    void Write(unsigned int y, const unsigned char* line, const PictureCopier& copy) {
        for (std::size_t column = 0; column < m_tiles.size(); line += m_bytes[column++])
            copy(m_tiles[column].Row(y), line, m_bytes[column]);
    }

private:
    std::deque<LXTileWriter<LXImageRGBA32i::Block>> m_tiles;
    std::vector<unsigned int> m_bytes;
};

/// The bytes of a line that belong to the picture. A QImage that shows a part of a larger one has
/// lines farther apart than that, and nothing behind the last.
unsigned int LineBytes(const QImage& image) {
    const qint64 own = (qint64(image.width()) * image.depth() + 31) / 32 * 4;
    return unsigned(std::min<qint64>(own, image.bytesPerLine()));
}

} // namespace

// The picture is read through in the order of its memory, and written piece by piece: here by
// tiles, in the other direction by lines.
QImage LXConversions::ToQImage(const LXImageRGBA32i& source) {
    QImage target = MakeQImage(source);
    unsigned char* const bits = target.bits();
    const std::size_t stride = std::size_t(target.bytesPerLine());
    const PictureCopier copy(std::size_t(target.sizeInBytes()));
    LXForTiles<LXImageRGBA32i>(LXImageRect(source), [&](const LXTileSpan& span) {
        const LXTileReader tile(source.GetTileRow(span.row)[span.column]);
        unsigned char* out = bits + std::size_t(span.position.y()) * stride +
                             std::size_t(span.position.x()) * sizeof(LXRGBA32i);
        const std::size_t bytes = std::size_t(span.local.width()) * sizeof(LXRGBA32i);
        for (int y = 0; tile.Pixels() && y < span.local.height(); ++y, out += stride)
            copy(out, tile.Row(unsigned(y)), bytes);
    });
    return target;
}

// A line is its bytes, whatever the format of the picture: it may end within the image, or reach
// into the padding of the last tile.
LXImageRGBA32i LXConversions::FromQImage(const QImage& source) {
    constexpr unsigned int tileHeight = LXImageRGBA32i::TileHeight;
    LXImageRGBA32i target(unsigned(source.width()), unsigned(source.height()));
    const PictureCopier copy(std::size_t(source.sizeInBytes()));
    for (unsigned int row = 0; row < target.GetTilesY(); ++row) {
        const unsigned int first = row * tileHeight;
        const unsigned int rows = std::min(target.GetHeight() - first, tileHeight);
        TileRowWriter tiles(target, row, rows, LineBytes(source));
        for (unsigned int y = 0; y < rows; ++y)
            tiles.Write(y, source.constScanLine(int(first + y)), copy);
    }
    return target;
}

LXImageRGBA32i LXConversions::FromRaw(const RGB32iRawImage& source) {
    if (source.width != 0 && source.height != 0 && (!source.data || source.bytesPerPixel < 3))
        throw std::invalid_argument("ConvertImage: raw picture without data");
    LXImageRGBA32i target(source.width, source.height);
    const std::size_t step = source.bytesPerPixel;
    LXForTiles<LXImageRGBA32i>(LXImageRect(target), [&](const LXTileSpan& span) {
        const bool whole = span.local.size() == QSize(128, 128);
        const LXTileWriter tile(target.GetTileRow(span.row)[span.column],
                                whole ? LXTileContent::Discard : LXTileContent::Keep);
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
