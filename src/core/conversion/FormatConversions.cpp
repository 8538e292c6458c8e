#include "core/conversion/Conversions.h"

#include "LXTileAccess.h"
#include "core/conversion/Rows.h"

#include <algorithm>

/// Conversions between the working format, whose tiles are 128 rows high, and the formats with 8
/// bytes a pixel, whose tiles are 64 rows high: a high tile stands for two low ones, and only the
/// last row of tiles may have a single low one. Whole tiles are converted, their padding too.

namespace {

constexpr unsigned int HalfTile = LXImageRGBA64i::Block::PixelCount;

template <class Low>
Low ConvertToLow(const LXImageRGBA32i& source,
                 void (*convert)(const LXRGBA32i*, typename Low::Pixel*, unsigned int)) {
    Low target(source.GetWidth(), source.GetHeight());
    for (unsigned int row = 0; row < source.GetTilesY(); ++row) {
        for (unsigned int column = 0; column < source.GetTilesX(); ++column) {
            const LXTileReader high(source.GetTileRow(row)[column]);
            if (!high.Pixels())
                return target;
            for (unsigned int half = 0; half < 2; ++half) {
                const auto slots = target.GetTileRow(2 * row + half);
                if (!slots)
                    break;
                const LXTileWriter low(slots[column], LXTileContent::Discard);
                convert(high.Pixels() + half * HalfTile, low.Pixels(), HalfTile);
            }
        }
    }
    return target;
}

/// Calls `visit(tile column, high tile row, first low tile, second low tile)` for all pairs of low
/// tiles; the second has null pixels where the image ends in the first. A missing tile ends the
/// walk.
template <class Low, class Visit>
void ForLowPairs(const Low& source, Visit visit) {
    for (unsigned int low = 0; low < source.GetTilesY(); low += 2) {
        const auto firstRow = source.GetTileRow(low), secondRow = source.GetTileRow(low + 1);
        for (unsigned int column = 0; column < source.GetTilesX(); ++column) {
            const LXTileReader first(firstRow[column]);
            const LXTileReader second(secondRow ? secondRow[column].constData() : nullptr);
            if (!first.Pixels() || (secondRow && !second.Pixels()))
                return;
            visit(column, low / 2, first, second);
        }
    }
}

template <class Low>
LXImageRGBA32i ConvertFromLow(const Low& source, void (*convert)(const typename Low::Pixel*,
                                                                 LXRGBA32i*, unsigned int)) {
    LXImageRGBA32i target(source.GetWidth(), source.GetHeight());
    ForLowPairs(
        source, [&](unsigned int column, unsigned int row, const auto& first, const auto& second) {
            const LXTileWriter high(target.GetTileRow(row)[column],
                                    second.Pixels() ? LXTileContent::Discard : LXTileContent::Keep);
            convert(first.Pixels(), high.Pixels(), HalfTile);
            if (second.Pixels())
                convert(second.Pixels(), high.Pixels() + HalfTile, HalfTile);
        });
    return target;
}

} // namespace

LXImageRGBA64i LXConversions::ToWide(const LXImageRGBA32i& source) {
    return ConvertToLow<LXImageRGBA64i>(source, LXRows::Widen);
}

LXImageRGBA64f LXConversions::ToHalf(const LXImageRGBA32i& source) {
    return ConvertToLow<LXImageRGBA64f>(source, LXRows::ToHalf);
}

LXImageCMYKA LXConversions::ToCMYK(const LXImageRGBA32i& source) {
    return ConvertToLow<LXImageCMYKA>(source, LXRows::ToCMYK);
}

LXImageHSLA LXConversions::ToHSL(const LXImageRGBA32i& source) {
    return ConvertToLow<LXImageHSLA>(source, LXRows::ToHSL);
}

LXImageRGBA32i LXConversions::FromWide(const LXImageRGBA64i& source) {
    return ConvertFromLow(source, LXRows::Narrow);
}

LXImageRGBA32i LXConversions::FromHalf(const LXImageRGBA64f& source) {
    return ConvertFromLow(source, LXRows::FromHalf);
}

LXImageRGBA32i LXConversions::FromCMYK(const LXImageCMYKA& source) {
    return ConvertFromLow(source, LXRows::FromCMYK);
}

LXImageRGBA32i LXConversions::FromHSL(const LXImageHSLA& source) {
    return ConvertFromLow(source, LXRows::FromHSL);
}

// Limited to the picture: a QImage has no padding to hold the rest of an edge tile.
QImage LXConversions::CMYKToQImage(const LXImageCMYKA& source) {
    constexpr unsigned int tileWidth = LXImageCMYKA::TileWidth;
    constexpr unsigned int lowHeight = LXImageCMYKA::TileHeight, highHeight = 2 * lowHeight;
    QImage target = MakeQImage(source);
    ForLowPairs(source,
                [&](unsigned int column, unsigned int row, const auto& first, const auto& second) {
                    const unsigned int left = column * tileWidth, top = row * highHeight;
                    const unsigned int columns = std::min(source.GetWidth() - left, tileWidth);
                    const unsigned int rows = std::min(source.GetHeight() - top, highHeight);
                    for (unsigned int y = 0; y < rows; ++y) {
                        void* const line = target.scanLine(int(top + y));
                        LXRows::FromCMYK(y < lowHeight ? first.Row(y) : second.Row(y - lowHeight),
                                         static_cast<LXRGBA32i*>(line) + left, columns);
                    }
                });
    return target;
}
