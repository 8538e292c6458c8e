#include "LXConvertImage.h"
#include "core/conversion/Rows.h"
#include "support/ExhaustionSweep.h"
#include "support/Plane.h"
#include "support/ReferenceConversions.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace {

using Reference::PlaneOf;
using Reference::Same;

template <class Pixel>
std::array<int, 8> Bytes(const Pixel& pixel) {
    std::array<int, 8> bytes{};
    for (std::size_t i = 0; i < sizeof pixel; ++i)
        bytes[i] = reinterpret_cast<const unsigned char*>(&pixel)[i];
    return bytes;
}

/// Checks a row function against a pixel function, on rows of odd lengths too.
template <class In, class Out, class PixelFunction>
void CheckRow(void (*row)(const In*, Out*, unsigned int), const std::vector<In>& in,
              PixelFunction reference) {
    std::vector<Out> out(in.size());
    for (std::size_t done = 0, n = 1; done < in.size(); done += n, n = n * 3 % 1021 + 1) {
        n = std::min(n, in.size() - done);
        row(&in[done], &out[done], unsigned(n));
    }
    for (std::size_t i = 0; i < in.size(); ++i)
        ASSERT_EQ(Bytes(out[i]), Bytes(Out(reference(in[i]))))
            << testing::PrintToString(Bytes(in[i]));
}

LXRGBA64i Widened(const LXRGBA32i& p) {
    const auto wide = [](int c) { return std::uint16_t(c * 256); };
    return {wide(p.blue), wide(p.green), wide(p.red), wide(p.alpha)};
}

LXRGBA32i Narrowed(const LXRGBA64i& p) {
    const auto high = [](int c) { return std::uint8_t(c / 256); };
    return {high(p.blue), high(p.green), high(p.red), high(p.alpha)};
}

LXRGBA64f Halves(const LXRGBA32i& p) {
    return {{MakeHalfFloat<unsigned char>(p.blue)},
            {MakeHalfFloat<unsigned char>(p.green)},
            {MakeHalfFloat<unsigned char>(p.red)},
            {MakeHalfFloat<unsigned char>(p.alpha)}};
}

LXRGBA32i FromHalves(const LXRGBA64f& p) {
    return {MakeUChar(p.blue.bits), MakeUChar(p.green.bits), MakeUChar(p.red.bits),
            MakeUChar(p.alpha.bits)};
}

/// All colours with a given red, each with an alpha of its own.
std::vector<LXRGBA32i> ColoursWithRed(int red) {
    std::vector<LXRGBA32i> colours;
    colours.reserve(65536);
    for (int i = 0; i < 65536; ++i)
        colours.push_back(
            {std::uint8_t(i), std::uint8_t(i >> 8), std::uint8_t(red), std::uint8_t(i * 31 + red)});
    return colours;
}

} // namespace

TEST(ConversionRows, EveryColourToCMYKAndHSL) {
    for (int red = 0; red < 256; ++red) {
        const auto colours = ColoursWithRed(red);
        CheckRow(LXRows::ToCMYK, colours, Reference::ToCMYK);
        CheckRow(LXRows::ToHSL, colours, Reference::ToHSL);
        if (HasFailure())
            return;
    }
}

TEST(ConversionRows, EveryInkAndBlackBack) {
    std::vector<LXCMYKA> inks;
    for (int i = 0; i < 65536; ++i)
        inks.push_back({std::uint8_t(i),
                        std::uint8_t(i * 7),
                        std::uint8_t(255 - i),
                        std::uint8_t(i >> 8),
                        std::uint8_t(i * 13),
                        {9, 9, 9}});
    CheckRow(LXRows::FromCMYK, inks, Reference::FromCMYK);
}

TEST(ConversionRows, HSLBack) {
    // Hues at and around every turning point with all saturations and lightnesses, then random
    // fields, hues beyond the circle included.
    std::vector<LXHSLA> colours;
    for (const int hue :
         {0,     1,     5999,  6000,  6001,  11999, 12000, 12001, 17999, 18000, 18001,
          23999, 24000, 24001, 29999, 30000, 30001, 35999, 36000, 36001, 65534, 65535})
        for (int i = 0; i < 65536; ++i)
            colours.push_back({std::uint16_t(hue),
                               std::uint8_t(i),
                               std::uint8_t(i >> 8),
                               std::uint8_t(i * 3),
                               {1, 2, 3}});
    RandomPixels random(5);
    for (int i = 0; i < 2000000; ++i) {
        const auto p = random.Pixel();
        colours.push_back({std::uint16_t(random.Below(65536)), p.red, p.green, p.alpha, {0, 0, 0}});
    }
    CheckRow(LXRows::FromHSL, colours, Reference::FromHSL);
}

TEST(ConversionRows, EveryChannelValueOfTheWideFormats) {
    std::vector<LXRGBA32i> bytes;
    for (int i = 0; i < 256; ++i)
        bytes.push_back(
            {std::uint8_t(i), std::uint8_t(i + 60), std::uint8_t(i + 120), std::uint8_t(i + 180)});
    CheckRow(LXRows::Widen, bytes, Widened);
    CheckRow(LXRows::ToHalf, bytes, Halves);
    std::vector<LXRGBA64i> words;
    std::vector<LXRGBA64f> halves;
    for (unsigned int i = 0; i < 65536; i += 4) {
        const auto at = [i](unsigned int n) { return static_cast<unsigned short>(i + n); };
        words.push_back({at(0), at(1), at(2), at(3)});
        halves.push_back({{at(0)}, {at(1)}, {at(2)}, {at(3)}});
    }
    CheckRow(LXRows::Narrow, words, Narrowed);
    CheckRow(LXRows::FromHalf, halves, FromHalves);
}

TEST(ConversionRows, KnownColours) {
    const struct {
        LXRGBA32i pixel;
        LXCMYKA inks;
        LXRGBA32i back;
    } cases[] = {{{255, 255, 255, 255}, {0, 0, 0, 0, 255, {}}, {255, 255, 255, 255}},
                 {{0, 0, 255, 255}, {0, 255, 255, 0, 255, {}}, {255, 0, 0, 255}}, // red is blue
                 {{0, 0, 0, 7}, {255, 255, 255, 255, 7, {}}, {0, 0, 0, 7}}};
    for (const auto& c : cases) {
        LXCMYKA inks;
        LXRGBA32i back;
        LXRows::ToCMYK(&c.pixel, &inks, 1);
        LXRows::FromCMYK(&inks, &back, 1);
        EXPECT_EQ(Bytes(inks), Bytes(c.inks));
        EXPECT_EQ(back, c.back);
    }
}

// ---- whole images -------------------------------------------------------------------------------

/// Every size in which tiles pair up differently: one low tile or two in the last row, exact fits,
/// a row of a single pixel.
class ConversionSizes : public testing::TestWithParam<std::pair<unsigned int, unsigned int>> {
protected:
    template <class Low, class Forth, class Back>
    void RoundTrip(Forth forth, Back back) {
        const LXImageRGBA32i source = RandomImage(GetParam().first, GetParam().second, 11);
        const Low low = ConvertImage<LXImageRGBA32i, Low>(source);
        Low expectedLow(source.GetWidth(), source.GetHeight());
        LXImageRGBA32i expectedBack(source.GetWidth(), source.GetHeight());
        for (int y = 0; y < int(source.GetHeight()); ++y)
            for (int x = 0; x < int(source.GetWidth()); ++x) {
                const auto pixel = forth(source.GetColor(x, y));
                expectedLow.SetColor(x, y, pixel);
                expectedBack.SetColor(x, y, back(pixel));
            }
        EXPECT_TRUE(SamePixels(low, expectedLow));
        EXPECT_TRUE(SamePixels(ConvertImage<Low, LXImageRGBA32i>(low), expectedBack));
        if constexpr (std::is_same_v<Low, LXImageCMYKA>) {
            const QImage picture = ConvertImage<LXImageCMYKA, QImage>(low);
            EXPECT_TRUE(SamePixels(ConvertImage<QImage, LXImageRGBA32i>(picture), expectedBack));
        }
    }
};

TEST_P(ConversionSizes, EveryFormatAndBack) {
    RoundTrip<LXImageRGBA64i>(Widened, Narrowed);
    RoundTrip<LXImageRGBA64f>(Halves, FromHalves);
    RoundTrip<LXImageCMYKA>(Reference::ToCMYK, Reference::FromCMYK);
    RoundTrip<LXImageHSLA>(Reference::ToHSL, Reference::FromHSL);
}

TEST_P(ConversionSizes, QImageAndRawMoveBytes) {
    const int width = int(GetParam().first), height = int(GetParam().second);
    const QImage source = RandomQImage(width, height, 12);
    const auto tiled = ConvertImage<QImage, LXImageRGBA32i>(source);
    EXPECT_TRUE(Same(PlaneOf(tiled), PlaneOf(source)));
    EXPECT_EQ(source, (ConvertImage<LXImageRGBA32i, QImage>(tiled)));

    for (const unsigned int step : {3, 4, 7}) {
        std::vector<unsigned char> bytes;
        for (int i = 0; i < width * height; ++i) {
            const QRgb colour = source.pixel(i % width, i / width);
            for (const int byte : {qRed(colour), qGreen(colour), qBlue(colour)})
                bytes.push_back(static_cast<unsigned char>(byte));
            bytes.resize(bytes.size() + step - 3, 0x77);
        }
        const RGB32iRawImage raw{static_cast<quint16>(height), static_cast<quint16>(width),
                                 static_cast<quint16>(step), bytes.data()};
        const auto image = ConvertImage<RGB32iRawImage, LXImageRGBA32i>(raw);
        EXPECT_EQ(
            (ConvertImage<LXImageRGBA32i, QImage>(image)),
            source.convertToFormat(QImage::Format_RGB32).convertToFormat(QImage::Format_ARGB32));
    }
}

// Pictures beyond the caches take another way, by whole vectors where the lines allow it.
TEST(Conversion, LargePicturesMoveBytesToo) {
    const QImage large = RandomQImage(2101, 2100, 7);
    for (const int width : {2100, 2101}) {
        const QImage source = large.copy(0, 0, width, 2100);
        const auto tiled = ConvertImage<QImage, LXImageRGBA32i>(source);
        EXPECT_TRUE(Same(PlaneOf(tiled), PlaneOf(source)));
        EXPECT_EQ((ConvertImage<LXImageRGBA32i, QImage>(tiled)), source);
    }
}

TEST(Conversion, PaddingIsConvertedToo) {
    LXImageRGBA32i image(10, 10);
    image.FastFill({1, 2, 3, 4});
    const auto wide = ConvertImage<LXImageRGBA32i, LXImageRGBA64i>(image);
    std::vector<unsigned char> line(1024);
    ASSERT_TRUE(wide.ReadLine(0, line.data(), 1024));
    EXPECT_EQ(line[1023], 4);
    auto cmyk = ConvertImage<LXImageRGBA32i, LXImageCMYKA>(LXImageRGBA32i(10, 10));
    ASSERT_TRUE(cmyk.ReadLine(9, line.data(), 1024));
    EXPECT_EQ(line[1016], 255) << "cyan of black outside the image";
}

/// All pixels of the grid outside the image, read with it.
TEST_P(ConversionSizes, PaddingIsZeroWhereNothingIsConvertedToIt) {
    const auto [width, height] = GetParam();
    const QImage opaque(int(width), int(height), QImage::Format_ARGB32);
    const std::vector<unsigned char> bytes(std::size_t(width) * height * 3, 0xFF);
    const RGB32iRawImage raw{quint16(height), quint16(width), 3, bytes.data()};
    LXImageRGBA64i wide(width, height);
    wide.FastFill({0xFF00, 0xFF00, 0xFF00, 0xFF00});
    const unsigned int lowRows = wide.GetTilesY() * LXImageRGBA64i::TileHeight;
    const struct {
        LXImageRGBA32i image;
        unsigned int columns, rows; ///< what the source fills
    } cases[] = {
        {ConvertImage<QImage, LXImageRGBA32i>(opaque), width, height},
        {ConvertImage<RGB32iRawImage, LXImageRGBA32i>(raw), width, height},
        {ConvertImage<LXImageRGBA64i, LXImageRGBA32i>(wide), wide.GetTilesX() * 128, lowRows}};
    for (const auto& c : cases)
        for (unsigned int y = 0; y < c.image.GetTilesY() * 128; ++y)
            for (unsigned int x = 0; x < c.image.GetTilesX() * 128; ++x) {
                if (x < c.columns && y < c.rows)
                    continue;
                const LXTileReader tile(c.image.GetTileRow(y / 128)[x / 128]);
                ASSERT_EQ(tile.Row(y % 128)[x % 128], (LXRGBA32i{0, 0, 0, 0})) << x << " " << y;
            }
}

INSTANTIATE_TEST_SUITE_P(Sizes, ConversionSizes,
                         testing::Values(std::pair{1u, 1u}, std::pair{128u, 128u},
                                         std::pair{129u, 64u}, std::pair{127u, 65u},
                                         std::pair{200u, 192u}, std::pair{130u, 193u},
                                         std::pair{300u, 257u}));

TEST(Conversion, EmptyPicturesStayEmpty) {
    const auto tiled = ConvertImage<QImage, LXImageRGBA32i>(QImage());
    EXPECT_EQ(tiled.GetWidth() + tiled.GetHeight(), 0u);
    EXPECT_TRUE((ConvertImage<LXImageRGBA32i, QImage>(LXImageRGBA32i(0, 10))).isNull());
    EXPECT_EQ((ConvertImage<LXImageRGBA32i, LXImageHSLA>(LXImageRGBA32i(0, 10))).GetHeight(), 10u);
    EXPECT_TRUE((ConvertImage<LXImageCMYKA, QImage>(LXImageCMYKA(3, 0))).isNull());
    const RGB32iRawImage raw{0, 5, 3, nullptr};
    EXPECT_EQ((ConvertImage<RGB32iRawImage, LXImageRGBA32i>(raw)).GetWidth(), 5u);
}

TEST(Conversion, TakesTheBytesOfAnyQImageFormat) {
    QImage gray(200, 3, QImage::Format_Grayscale8); // 200 bytes a row: 50 pixels of the image
    gray.fill(9);
    const auto small = ConvertImage<QImage, LXImageRGBA32i>(gray);
    EXPECT_EQ(small.GetColor(49, 2), (LXRGBA32i{9, 9, 9, 9}));
    EXPECT_EQ(small.GetColor(50, 2), (LXRGBA32i{0, 0, 0, 0}));
    QImage deep(100, 3, QImage::Format_RGBA64); // 800 bytes a row: more than the grid is wide
    deep.fill(Qt::white);
    const auto wide = ConvertImage<QImage, LXImageRGBA32i>(deep);
    EXPECT_EQ(wide.GetColor(99, 2), (LXRGBA32i{255, 255, 255, 255}));
}

TEST(Conversion, ResultHasNoMetadata) {
    LXImageRGBA32i image(3, 3);
    image.SetEXIF({RMEXIFElement(RMEXIFElement::Artist, 1)});
    EXPECT_TRUE((ConvertImage<LXImageRGBA32i, LXImageRGBA64i>(image)).GetEXIF().isEmpty());
}

TEST(Conversion, TakesOnlyWhatBelongsToThePicture) {
    // A window of 100 pixels into a picture of 1000, at its right edge: nothing lies behind the
    // last line.
    const std::vector<unsigned char> bytes(1000 * 50 * 4, 0xFF);
    const QImage window(bytes.data() + 900 * 4, 100, 50, 1000 * 4, QImage::Format_ARGB32);
    const auto image = ConvertImage<QImage, LXImageRGBA32i>(window);
    EXPECT_EQ(image.GetColor(99, 49), (LXRGBA32i{255, 255, 255, 255}));
    const LXTileReader tile(image.GetTileRow(0)[0]);
    EXPECT_EQ(tile.Row(0)[100], (LXRGBA32i{0, 0, 0, 0}));

    const LogCapture log;
    const RGB32iRawImage noData{5, 5, 3, nullptr}, flat{5, 5, 2, bytes.data()};
    for (const RGB32iRawImage& raw : {noData, flat})
        EXPECT_THROW((ConvertImage<RGB32iRawImage, LXImageRGBA32i>(raw)), std::invalid_argument);
    EXPECT_EQ(LogCapture::Lines().size(), 2);
}

/// Converts a white picture with a tile missing in the middle and looks on both sides of the hole.
template <class Low>
void CheckMissingTiles(const typename Low::Pixel& white) {
    const LXRGBA32i opaque{255, 255, 255, 255}, nothing{0, 0, 0, 0};
    LXImageRGBA32i high(400, 100);
    high.Fill(opaque);
    high.GetTileRow(0)[1] = nullptr;
    const Low forth = ConvertImage<LXImageRGBA32i, Low>(high);
    EXPECT_EQ(Bytes(forth.GetColor(127, 99)), Bytes(white));
    EXPECT_EQ(Bytes(forth.GetColor(128, 0)), Bytes(typename Low::Pixel{}));
    EXPECT_EQ(Bytes(forth.GetColor(399, 99)), Bytes(typename Low::Pixel{}));
    for (const unsigned int missing : {0U, 1U}) { // the upper or the lower of a pair
        Low low(400, 100);
        low.Fill(white);
        low.GetTileRow(missing)[1] = nullptr;
        const auto back = ConvertImage<Low, LXImageRGBA32i>(low);
        EXPECT_NE(back.GetColor(127, 99), nothing);
        EXPECT_EQ(back.GetColor(128, 0), nothing);
        EXPECT_EQ(back.GetColor(399, 99), nothing);
    }
}

TEST(Conversion, AMissingSourceTileEndsTheWalk) {
    CheckMissingTiles<LXImageRGBA64i>({0xFF00, 0xFF00, 0xFF00, 0xFF00});
    CheckMissingTiles<LXImageRGBA64f>({{0x5C04}, {0x5C04}, {0x5C04}, {0x5C04}});
    CheckMissingTiles<LXImageCMYKA>({0, 0, 0, 0, 255, {0, 0, 0}});
    CheckMissingTiles<LXImageHSLA>({0, 0, 255, 255, {0, 0, 0}});
    LXImageCMYKA inks(400, 200);
    inks.Fill({0, 0, 0, 0, 255, {0, 0, 0}});
    inks.GetTileRow(3)[1] = nullptr; // below the picture's first row of pairs, in its second pair
    const QImage picture = ConvertImage<LXImageCMYKA, QImage>(inks);
    EXPECT_EQ(picture.pixel(399, 127), 0xFFFFFFFFU);
    EXPECT_EQ(picture.pixel(127, 199), 0xFFFFFFFFU);
}

/// Sweeps a conversion of a source that `make` makes.
template <class Make, class Convert>
unsigned int SweepConversion(Make make, Convert convert) {
    return SweepExhaustion(
        make, [&](const auto& source) { convert(source); },
        [](const auto&, const ExhaustionOutcome& outcome) {
            EXPECT_EQ(outcome.threw, outcome.handlerCalls == 1);
            EXPECT_EQ(outcome.log.size(), outcome.threw ? 1 : 0);
            for (const QString& line : outcome.log) {
                EXPECT_TRUE(line.contains(QStringLiteral("file=\"src/LXImage.cpp\"")));
                EXPECT_TRUE(line.contains(QStringLiteral("std::bad_alloc")));
            }
            EXPECT_EQ(outcome.tilesAfter, outcome.tilesBefore);
        });
}

TEST(Conversion, RunsOutOfTilesCleanly) {
    // Three tiles across; one high tile down is two low ones. While they are made, tiles of the
    // uniform beginning are alive as well.
    const auto source = [] { return RandomImage(300, 100, 2); };
    const auto both = [&](auto forth, auto back) {
        EXPECT_GE(SweepConversion(source, forth), 6u);
        EXPECT_GE(SweepConversion([&] { return forth(source()); }, back), 3u);
    };
    both(ConvertImage<LXImageRGBA32i, LXImageRGBA64i>,
         ConvertImage<LXImageRGBA64i, LXImageRGBA32i>);
    both(ConvertImage<LXImageRGBA32i, LXImageRGBA64f>,
         ConvertImage<LXImageRGBA64f, LXImageRGBA32i>);
    both(ConvertImage<LXImageRGBA32i, LXImageCMYKA>, ConvertImage<LXImageCMYKA, LXImageRGBA32i>);
    both(ConvertImage<LXImageRGBA32i, LXImageHSLA>, ConvertImage<LXImageHSLA, LXImageRGBA32i>);
    const auto picture = [] { return RandomQImage(300, 200, 3); };
    EXPECT_GE(SweepConversion(picture, ConvertImage<QImage, LXImageRGBA32i>), 6u);
    const std::vector<unsigned char> bytes(300 * 200 * 3);
    const auto raw = [&] { return RGB32iRawImage{200, 300, 3, bytes.data()}; };
    EXPECT_GE(SweepConversion(raw, ConvertImage<RGB32iRawImage, LXImageRGBA32i>), 6u);
}
