#include "LXImageTransformation.h"

#include "core/Truncate.h"
#include "geometry/Interpolation.h"
#include "geometry/PositionRows.h"
#include "geometry/SourceTiles.h"

#include <algorithm>
#include <cstring>

namespace {

using LXRows::Pixels;
using LXRows::Positions;
using LXRows::RunLength;
using Image = LXImageRGBA32i;

QSize SizeOf(const Image& image) {
    return {int(image.GetWidth()), int(image.GetHeight())};
}

/// What an object samples, and its open tile.
struct Origin {
    const Image& source;
    const QTransform& inverse;
    LXHeldTile<Image>& tile;
};

/// Finds the places of a run from (x, y) on, less `shift`, in pieces of RunLength. Calls
/// `sample(positions, places, first, last, pixels)` for each stretch of a piece, `last` excluded,
/// that comes from inside the source; `pixels` are those of the piece.
template <class Sample>
void ForPlaces(const Origin& origin, int x, int y, LXRGBA32i* pixels, unsigned int count,
               double shift, Sample sample) {
    Positions positions;
    Pixels places;
    for (unsigned int from = 0; from < count; from += RunLength) {
        const unsigned int length = std::min(count - from, RunLength);
        LXRows::Map(origin.inverse, x + static_cast<int>(from), y, length, positions);
        LXRows::Locate(positions, length, SizeOf(origin.source), shift, places);
        for (unsigned int i = 0; i < length; ++i) {
            const unsigned int first = i;
            while (i < length && places.column[i] != Pixels::Outside)
                ++i;
            if (i > first)
                sample(positions, places, first, i, pixels + from);
        }
    }
}

/// Reads the Side x Side pixels around places of the source. Coordinates are clamped to it.
template <int Side>
class Neighbourhoods {
public:
    explicit Neighbourhoods(const Origin& origin) : m_source(origin.source), m_tile(origin.tile) {}

    /// Around the places `first` to `last`, `last` excluded: Side pixels for each place go to each
    /// of Side rows, which are `stride` apart.
    void Read(const Pixels& places, unsigned int first, unsigned int last, LXRGBA32i* rows,
              int stride) {
        LXTileWindow<Image> window;
        for (unsigned int i = first; i < last; ++i, rows += Side) {
            const int left = places.column[i] - Before, top = places.row[i] - Before;
            if (!window.Holds(left, top))
                window.Move<Side>(m_source, SizeOf(m_source), m_tile, left, top);
            if (window.Holds(left, top)) {
                Copy(window.At(left, top), rows, stride);
            } else {
                window = {};
                CopyClamped(left, top, rows, stride);
            }
        }
    }

private:
    static constexpr int Before = (Side - 1) / 2;
    static constexpr int TileSide = int(Image::TileWidth);
    static_assert(Image::TileWidth == Image::TileHeight);

    static void Copy(const LXRGBA32i* from, LXRGBA32i* rows, int stride) {
        for (int y = 0; y < Side; ++y)
            std::memcpy(rows + y * stride, from + y * TileSide, Side * sizeof(LXRGBA32i));
    }

    void CopyClamped(int left, int top, LXRGBA32i* rows, int stride) {
        const int maxX = int(m_source.GetWidth()) - 1, maxY = int(m_source.GetHeight()) - 1;
        for (int y = 0; y < Side; ++y)
            for (int x = 0; x < Side; ++x)
                rows[y * stride + x] = At(unsigned(std::clamp(left + x, 0, maxX)),
                                          unsigned(std::clamp(top + y, 0, maxY)));
    }

    LXRGBA32i At(unsigned int x, unsigned int y) {
        const LXRGBA32i* const tile =
            m_tile.Pixels(m_source, x / Image::TileWidth, y / Image::TileHeight);
        return tile ? tile[y % Image::TileHeight * Image::TileWidth + x % Image::TileWidth]
                    : LXRGBA32i{};
    }

    const Image& m_source;
    LXHeldTile<Image>& m_tile;
};

/// `combine(rows, fractions, count, out)` makes pixels of neighbourhoods of Side x Side, whose rows
/// are Side * RunLength apart.
template <int Side, class Combine>
void Interpolate(const Origin& origin, int x, int y, LXRGBA32i* pixels, unsigned int count,
                 Combine combine) {
    Positions fractions;
    LXRGBA32i rows[Side][Side * RunLength];
    Neighbourhoods<Side> neighbours(origin);
    ForPlaces(origin, x, y, pixels, count, 0.5,
              [&](const Positions& positions, const Pixels& places, unsigned int first,
                  unsigned int last, LXRGBA32i* piece) {
                  LXRows::Fractions(positions, places, first, last, fractions);
                  neighbours.Read(places, first, last, rows[0], Side * RunLength);
                  combine(rows, fractions, last - first, piece + first);
              });
}

} // namespace

void LXNearestNeighbourTransformation::TransformRun(int x, int y, LXRGBA32i* pixels,
                                                    unsigned int count) const {
    const Origin origin{*m_source, m_inverse, m_tile};
    Neighbourhoods<1> neighbours(origin);
    ForPlaces(origin, x, y, pixels, count, 0,
              [&](const Positions&, const Pixels& places, unsigned int first, unsigned int last,
                  LXRGBA32i* piece) { neighbours.Read(places, first, last, piece + first, 0); });
}

void LXBilinearTransformation::TransformRun(int x, int y, LXRGBA32i* pixels,
                                            unsigned int count) const {
    Interpolate<2>({*m_source, m_inverse, m_tile}, x, y, pixels, count,
                   [](const auto& rows, const Positions& t, unsigned int n, LXRGBA32i* out) {
                       LXRGBA32i along[2][RunLength];
                       for (int k = 0; k < 2; ++k)
                           LXRows::LinearAlong(rows[k], t.x.data(), along[k], n);
                       LXRows::LinearAcross(along[0], t.y.data(), out, n);
                   });
}

void LXBicubicTransformation::TransformRun(int x, int y, LXRGBA32i* pixels,
                                           unsigned int count) const {
    Interpolate<4>({*m_source, m_inverse, m_tile}, x, y, pixels, count,
                   [](const auto& rows, const Positions& t, unsigned int n, LXRGBA32i* out) {
                       LXRGBA32i along[4][RunLength];
                       for (int k = 0; k < 4; ++k)
                           LXRows::CubicAlong(rows[k], t.x.data(), along[k], n);
                       LXRows::CubicAcross(along[0], t.y.data(), out, n);
                   });
}

LXRGBA32i LXBicubicTransformation::CubicInterpolate(LXRGBA32i* pixels, double t) const {
    const auto channel = [&](std::uint8_t LXRGBA32i::*c) {
        const double value =
            LXInterpolation::Cubic(pixels[0].*c, pixels[1].*c, pixels[2].*c, pixels[3].*c, t);
        return static_cast<std::uint8_t>(std::clamp(TruncateToInt(value), 0, 255));
    };
    return {channel(&LXRGBA32i::blue), channel(&LXRGBA32i::green), channel(&LXRGBA32i::red),
            channel(&LXRGBA32i::alpha)};
}
