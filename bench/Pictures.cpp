#include "Pictures.h"

#include "LXConvertImage.h"
#include "LXTileAccess.h"
#include "LXTileWalk.h"

#include <cstdint>
#include <cstring>
#include <random>

namespace {

QImage RandomPicture(unsigned int seed) {
    std::mt19937 random(seed);
    QImage picture(int(Bench::Width), int(Bench::Height), QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const auto word = static_cast<std::uint32_t>(random());
            std::memcpy(picture.scanLine(y) + 4 * x, &word, 4);
        }
    return picture;
}

} // namespace

const QImage& Bench::Picture() {
    static const QImage picture = RandomPicture(1);
    return picture;
}

const QImage& Bench::OtherPicture() {
    static const QImage picture = RandomPicture(2);
    return picture;
}

LXImageRGBA32i Bench::TiledPicture() {
    return ConvertImage<QImage, LXImageRGBA32i>(Picture());
}

void Bench::XorTile(const LXRGBA32i* source, LXRGBA32i* destination) {
    std::uint64_t words[2][8];
    for (unsigned int i = 0; i < LXTileBytes / sizeof words[0]; ++i) {
        auto* const to = reinterpret_cast<unsigned char*>(destination) + i * sizeof words[0];
        std::memcpy(words[0], reinterpret_cast<const unsigned char*>(source) + i * sizeof words[0],
                    sizeof words[0]);
        std::memcpy(words[1], to, sizeof words[0]);
        for (int k = 0; k < 8; ++k)
            words[1][k] ^= words[0][k];
        std::memcpy(to, words[1], sizeof words[0]);
    }
}

void Bench::XorImage(const LXImageRGBA32i& source, LXImageRGBA32i& destination) {
    LXForTiles<LXImageRGBA32i>(LXImageRect(source), [&](const LXTileSpan& span) {
        const LXTileReader from(source.GetTileRow(span.row)[span.column]);
        const LXTileWriter to(destination.GetTileRow(span.row)[span.column]);
        XorTile(from.Pixels(), to.Pixels());
    });
}
