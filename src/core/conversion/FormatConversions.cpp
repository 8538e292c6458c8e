#include "core/conversion/Conversions.h"

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "core/conversion/Rows.h"

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

template <class Low>
LXImageRGBA32i ConvertFromLow(const Low& source, void (*convert)(const typename Low::Pixel*,
                                                                 LXRGBA32i*, unsigned int)) {
    LXImageRGBA32i target(source.GetWidth(), source.GetHeight());
    for (unsigned int row = 0; row < target.GetTilesY(); ++row) {
        const auto firstRow = source.GetTileRow(2 * row),
                   secondRow = source.GetTileRow(2 * row + 1);
        for (unsigned int column = 0; column < target.GetTilesX(); ++column) {
            const LXTileReader first(firstRow[column]);
            const LXTileReader second(secondRow ? secondRow[column].constData() : nullptr);
            if (!first.Pixels() || (secondRow && !second.Pixels()))
                return target;
            const LXTileWriter high(target.GetTileRow(row)[column],
                                    secondRow ? LXTileContent::Discard : LXTileContent::Keep);
            convert(first.Pixels(), high.Pixels(), HalfTile);
            if (second.Pixels())
                convert(second.Pixels(), high.Pixels() + HalfTile, HalfTile);
        }
    }
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
    QImage target = MakeQImage(source);
    LXForTiles<LXImageCMYKA>(LXImageRect(source), [&](const LXTileSpan& span) {
        const LXTileReader tile(source.GetTileRow(span.row)[span.column]);
        for (int y = 0; tile.Pixels() && y < span.local.height(); ++y) {
            void* const line = target.scanLine(span.position.y() + y);
            LXRows::FromCMYK(tile.Row(unsigned(y)),
                             static_cast<LXRGBA32i*>(line) + span.position.x(),
                             unsigned(span.local.width()));
        }
    });
    return target;
}
