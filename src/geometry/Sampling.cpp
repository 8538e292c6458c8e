#include "LXImageTransformation.h"

#include "core/Truncate.h"
#include "core/conversion/PixelWords.h"
#include "geometry/Interpolation.h"
#include "geometry/PositionRows.h"

#include <algorithm>

namespace {

using LXRows::Pixels;
using LXRows::Positions;
using LXRows::RunLength;
using LXWords::PixelOf;
using LXWords::WordOf;
using Image = LXImageRGBA32i;

QSize SizeOf(const Image& image) {
    return {int(image.GetWidth()), int(image.GetHeight())};
}

/// Cuts a run into pieces that the rows can hold.
template <class Sample>
void ForPieces(int x, LXRGBA32i* pixels, unsigned int count, Sample sample) {
    for (unsigned int i = 0; i < count; i += RunLength)
        sample(x + static_cast<int>(i), pixels + i, std::min(count - i, RunLength));
}

/// Calls `sample(first, last)` for each piece of the run that comes from inside the source.
template <class Sample>
void ForInside(const Pixels& places, unsigned int count, Sample sample) {
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned int first = i;
        while (i < count && places.column[i] != Pixels::Outside)
            ++i;
        if (i > first)
            sample(first, i);
    }
}

/// Reads the Side x Side pixels around places of the source. Coordinates are clamped to it.
template <int Side>
class Neighbourhoods {
public:
    Neighbourhoods(const Image& source, LXHeldTile<Image>& tile)
        : m_source(source), m_tile(tile), m_maxX(int(source.GetWidth()) - 1),
          m_maxY(int(source.GetHeight()) - 1) {}

    /// Around the places `first` to `last`, `last` excluded.
    void Read(const Pixels& places, unsigned int first, unsigned int last) {
        for (unsigned int i = first; i < last; ++i)
            ReadOne(places.column[i] - Before, places.row[i] - Before, i - first);
    }

    /// Pixel by pixel, row by row of the neighbourhood, and then place by place.
    std::uint32_t words[Side * Side][RunLength];

private:
    static constexpr int Before = (Side - 1) / 2;
    static constexpr int TileSide = int(Image::TileWidth);
    static_assert(Image::TileWidth == Image::TileHeight);

    /// From (left, top) on.
    void ReadOne(int left, int top, unsigned int i) {
        const int right = left + Side - 1, bottom = top + Side - 1;
        const int column = left / TileSide, row = top / TileSide;
        const bool isInOneTile = left >= 0 && top >= 0 && right <= m_maxX && bottom <= m_maxY &&
                                 right / TileSide == column && bottom / TileSide == row;
        if (!isInOneTile)
            return ReadClamped(left, top, i);
        const LXRGBA32i* from = m_tile.Pixels(m_source, unsigned(column), unsigned(row));
        if (!from)
            return ReadClamped(left, top, i);
        from += (top % TileSide) * TileSide + left % TileSide;
        for (int y = 0; y < Side; ++y)
            for (int x = 0; x < Side; ++x)
                words[y * Side + x][i] = WordOf(from[y * TileSide + x]);
    }

    void ReadClamped(int left, int top, unsigned int i) {
        for (int y = 0; y < Side; ++y)
            for (int x = 0; x < Side; ++x)
                words[y * Side + x][i] = Word(unsigned(std::clamp(left + x, 0, m_maxX)),
                                              unsigned(std::clamp(top + y, 0, m_maxY)));
    }

    std::uint32_t Word(unsigned int x, unsigned int y) {
        const LXRGBA32i* const tile =
            m_tile.Pixels(m_source, x / Image::TileWidth, y / Image::TileHeight);
        return tile ? WordOf(tile[y % Image::TileHeight * Image::TileWidth + x % Image::TileWidth])
                    : 0;
    }

    const Image& m_source;
    LXHeldTile<Image>& m_tile;
    int m_maxX;
    int m_maxY;
};

/// Interpolates a piece of a row: `combine(neighbourhoods, fractions, count, out)` makes words of
/// neighbourhoods.
template <int Side, class Combine>
void Interpolate(const Image& source, const QTransform& inverse, LXHeldTile<Image>& tile, int x,
                 int y, LXRGBA32i* pixels, unsigned int count, Combine combine) {
    Positions positions, fractions;
    Pixels places;
    LXRows::Map(inverse, x, y, count, positions);
    LXRows::Locate(positions, count, SizeOf(source), 0.5, places);
    Neighbourhoods<Side> neighbours(source, tile);
    ForInside(places, count, [&](unsigned int first, unsigned int last) {
        LXRows::Fractions(positions, places, first, last, fractions);
        neighbours.Read(places, first, last);
        std::uint32_t out[RunLength];
        combine(neighbours.words, fractions, last - first, out);
        for (unsigned int i = first; i < last; ++i)
            pixels[i] = PixelOf<LXRGBA32i>(out[i - first]);
    });
}

} // namespace

void LXNearestNeighbourTransformation::TransformRun(int x, int y, LXRGBA32i* pixels,
                                                    unsigned int count) const {
    ForPieces(x, pixels, count, [&](int left, LXRGBA32i* piece, unsigned int length) {
        Positions positions;
        Pixels places;
        LXRows::Map(m_inverse, left, y, length, positions);
        LXRows::Locate(positions, length, SizeOf(*m_source), 0, places);
        Neighbourhoods<1> neighbours(*m_source, m_tile);
        ForInside(places, length, [&](unsigned int first, unsigned int last) {
            neighbours.Read(places, first, last);
            for (unsigned int i = first; i < last; ++i)
                piece[i] = PixelOf<LXRGBA32i>(neighbours.words[0][i - first]);
        });
    });
}

void LXBilinearTransformation::TransformRun(int x, int y, LXRGBA32i* pixels,
                                            unsigned int count) const {
    const auto combine = [](const auto& words, const Positions& t, unsigned int n,
                            std::uint32_t* out) {
        std::uint32_t upper[RunLength], lower[RunLength];
        LXRows::Linear(words[0], words[1], t.x.data(), upper, n);
        LXRows::Linear(words[2], words[3], t.x.data(), lower, n);
        LXRows::Linear(upper, lower, t.y.data(), out, n);
    };
    ForPieces(x, pixels, count, [&](int left, LXRGBA32i* piece, unsigned int length) {
        Interpolate<2>(*m_source, m_inverse, m_tile, left, y, piece, length, combine);
    });
}

void LXBicubicTransformation::TransformRun(int x, int y, LXRGBA32i* pixels,
                                           unsigned int count) const {
    const auto combine = [](const auto& words, const Positions& t, unsigned int n,
                            std::uint32_t* out) {
        std::uint32_t rows[4][RunLength];
        for (int k = 0; k < 4; ++k)
            LXRows::Cubic(words[4 * k], words[4 * k + 1], words[4 * k + 2], words[4 * k + 3],
                          t.x.data(), rows[k], n);
        LXRows::Cubic(rows[0], rows[1], rows[2], rows[3], t.y.data(), out, n);
    };
    ForPieces(x, pixels, count, [&](int left, LXRGBA32i* piece, unsigned int length) {
        Interpolate<4>(*m_source, m_inverse, m_tile, left, y, piece, length, combine);
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
