#include "LXImage.h"
#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "support/ExhaustionSweep.h"
#include "support/GuardedBytes.h"
#include "support/Pictures.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using Image = LXImageRGBA32i;

constexpr LXRGBA32i Red{0, 0, 255, 255};
constexpr LXRGBA32i Nothing{0, 0, 0, 0};

/// The pixel that fills a picture of any format in these tests: no byte is like the next.
template <class Pixel>
Pixel Sample(unsigned char seed) {
    Pixel pixel;
    for (std::size_t i = 0; i < sizeof pixel; ++i)
        reinterpret_cast<unsigned char*>(&pixel)[i] = static_cast<unsigned char>(seed + i);
    return pixel;
}

template <class Pixel>
bool Same(const Pixel& a, const Pixel& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class AnyImage>
std::size_t DistinctTiles(const AnyImage& image) {
    std::set<const void*> blocks;
    for (unsigned int row = 0; row < image.GetTilesY(); ++row)
        for (unsigned int column = 0; column < image.GetTilesX(); ++column)
            blocks.insert(image.GetTileRow(row)[column].constData());
    return blocks.size();
}

/// The image as the grid holds it, padding included: a plain array of bytes.
template <class AnyImage>
struct Grid {
    explicit Grid(const AnyImage& image)
        : stride(image.GetTilesX() * AnyImage::TileWidth * sizeof(typename AnyImage::Pixel)),
          rows(image.GetTilesY() * AnyImage::TileHeight), bytes(std::size_t(stride) * rows) {
        constexpr std::size_t tileRow = LXTileBytes / AnyImage::TileHeight;
        for (unsigned int y = 0; y < rows; ++y)
            for (unsigned int c = 0; c < image.GetTilesX(); ++c) {
                const LXTileReader tile(image.GetTileRow(y / AnyImage::TileHeight)[c]);
                std::memcpy(&bytes[y * std::size_t(stride) + c * tileRow],
                            tile.Row(y % AnyImage::TileHeight), tileRow);
            }
    }
    unsigned int stride, rows;
    std::vector<unsigned char> bytes;
};

} // namespace

template <class AnyImage>
class EveryFormat : public testing::Test {
protected:
    TestPool pool;
};

using Formats =
    testing::Types<LXImageRGBA32i, LXImageRGBA64i, LXImageRGBA64f, LXImageCMYKA, LXImageHSLA>;
TYPED_TEST_SUITE(EveryFormat, Formats);

TYPED_TEST(EveryFormat, TakesAtMostFourTilesForAUniformPicture) {
    const unsigned int h = TypeParam::TileHeight;
    const struct {
        unsigned int width, height, slots, tiles;
    } cases[] = {{0, 10, 0, 0},      {10, 0, 0, 0},
                 {128, h, 1, 1},     {100, h - 1, 1, 1},
                 {128, h - 1, 1, 1}, {129, 1, 2, 2},
                 {256, 2 * h, 4, 1}, {256, 2 * h + 1, 6, 2},
                 {257, 2 * h, 6, 2}, {20000, 20000, 157 * ((20000 + h - 1) / h), 4}};
    for (const auto& c : cases) {
        TypeParam image(c.width, c.height);
        EXPECT_EQ(image.GetTilesX() * image.GetTilesY(), c.slots);
        EXPECT_EQ(DistinctTiles(image), c.tiles) << c.width << " x " << c.height;
        EXPECT_EQ(this->pool.InUse(), c.tiles) << c.width << " x " << c.height;
        image.Fill(Sample<typename TypeParam::Pixel>(1));
        EXPECT_EQ(this->pool.InUse(), c.tiles) << c.width << " x " << c.height;
    }
    EXPECT_EQ(this->pool.InUse(), 0u);
}

TYPED_TEST(EveryFormat, FillLeavesThePaddingZeroAndFastFillDoesNot) {
    const auto colour = Sample<typename TypeParam::Pixel>(9);
    for (const auto& size :
         {std::pair<unsigned int, unsigned int>{200, 150}, {128, 150}, {200, 128}, {5, 3}}) {
        TypeParam image(size.first, size.second);
        image.Fill(colour);
        const Grid<TypeParam> filled(image);
        for (unsigned int y = 0; y < filled.rows; ++y)
            for (unsigned int x = 0; x < filled.stride / sizeof colour; ++x) {
                const bool inside = x < size.first && y < size.second;
                const auto expected = inside ? colour : typename TypeParam::Pixel{};
                ASSERT_EQ(
                    std::memcmp(&filled.bytes[y * std::size_t(filled.stride) + x * sizeof colour],
                                &expected, sizeof colour),
                    0)
                    << x << ", " << y;
            }
        image.FastFill(colour);
        EXPECT_EQ(this->pool.InUse(), 1u);
        const LXTileReader tile(image.GetTileRow(0)[0]);
        EXPECT_TRUE(Same(tile.Row(TypeParam::TileHeight - 1)[127], colour));
    }
}

TYPED_TEST(EveryFormat, MovesRowsAndColumnsAsItsGridLies) {
    TypeParam image(300, 200);
    Grid<TypeParam> expected(image);
    constexpr unsigned int size = sizeof(typename TypeParam::Pixel);
    RandomPixels random(1);
    for (int round = 0; round < 400; ++round) {
        const unsigned int x = random.Below(310), y = random.Below(210);
        const unsigned int bytes =
            random.Below(3) ? random.Below(4 * expected.stride / 3) : random.Below(9);
        const unsigned int kind = random.Below(3);
        GuardedBytes data(bytes);
        for (unsigned int i = 0; i < bytes; ++i)
            data[i] = random.Byte();
        const bool inside = y < 200 && (kind == 0 || x < 300);
        const unsigned int start = kind == 0 ? 0 : x;
        // Write through the image and, byte by byte, into the plain array.
        const bool wrote = kind == 0   ? image.WriteLine(y, data.Data(), bytes)
                           : kind == 1 ? image.WriteLine(y, x, data.Data(), bytes)
                                       : image.WriteColumn(x, y, data.Data(), bytes);
        ASSERT_EQ(wrote, inside);
        const auto place = [&](unsigned int i) -> unsigned char* {
            const unsigned int row = kind == 2 ? y + i / size : y;
            const unsigned int at = start * size + (kind == 2 ? i % size : i);
            const bool whole = kind != 2 || i / size < bytes / size;
            return inside && whole && row < expected.rows && at < expected.stride
                       ? &expected.bytes[row * std::size_t(expected.stride) + at]
                       : nullptr;
        };
        for (unsigned int i = 0; i < bytes; ++i)
            if (unsigned char* byte = place(i))
                *byte = data[i];
        ASSERT_EQ(Grid<TypeParam>(image).bytes, expected.bytes) << "round " << round;
        // And read the same back; what is not delivered stays as it was.
        GuardedBytes back(bytes, 0x55);
        const bool read = kind == 0   ? image.ReadLine(y, back.Data(), bytes)
                          : kind == 1 ? image.ReadLine(y, x, back.Data(), bytes)
                                      : image.ReadColumn(x, y, back.Data(), bytes);
        ASSERT_EQ(read, inside);
        for (unsigned int i = 0; i < bytes; ++i) {
            const unsigned char* byte = place(i);
            ASSERT_EQ(back[i], byte ? *byte : 0x55) << "round " << round << " byte " << i;
        }
        ASSERT_TRUE(back.Intact() && data.Intact()) << "round " << round;
    }
}

TYPED_TEST(EveryFormat, CopiesShareUntilOneIsWritten) {
    const auto a = Sample<typename TypeParam::Pixel>(1), b = Sample<typename TypeParam::Pixel>(50);
    TypeParam image(300, 300);
    image.Fill(a);
    TypeParam copy(image);
    EXPECT_EQ(this->pool.InUse(), 4u);
    copy.SetColor(130, 140, b);
    EXPECT_EQ(this->pool.InUse(), 5u) << "one pixel costs one tile";
    copy.SetColor(131, 140, b);
    EXPECT_EQ(this->pool.InUse(), 5u) << "and the next in that tile none";
    EXPECT_TRUE(Same(image.GetColor(130, 140), a));
    EXPECT_TRUE(Same(copy.GetColor(130, 140), b));
    EXPECT_TRUE(Same(copy.GetColor(129, 140), a));
    image.SetColor(0, 0, b);
    EXPECT_TRUE(Same(copy.GetColor(0, 0), a));
    image = copy;
    EXPECT_TRUE(Same(image.GetColor(131, 140), b));
    EXPECT_EQ(this->pool.InUse(), 5u);
}

class TiledImage : public testing::Test {
protected:
    TestPool pool;
};

TEST_F(TiledImage, RefusesMoreTilesThanItsLimit) {
    EXPECT_THROW(Image(128 * 1001, 128 * 1000), std::bad_alloc);
    EXPECT_THROW(Image(128U << 16, 128U << 16), std::bad_alloc) << "2^32 tiles are not 0";
    EXPECT_THROW(Image(UINT_MAX, UINT_MAX), std::bad_alloc);
    EXPECT_EQ(pool.InUse(), 0u);
    const Image largest(128 * 1000, 128 * 1000);
    EXPECT_EQ(largest.GetTilesX() * largest.GetTilesY(), Image::MaxTiles);
    EXPECT_EQ(pool.InUse(), 1u);
}

TEST_F(TiledImage, GuardsItsPixels) {
    Image image(130, 10);
    const auto message = [&](auto operation) {
        try {
            operation();
        } catch (const std::out_of_range& fault) {
            return std::string(fault.what());
        }
        return std::string("nothing thrown");
    };
    for (const QPoint& p : {QPoint(-1, 0), QPoint(0, -1), QPoint(130, 0), QPoint(0, 10),
                            QPoint(INT_MIN, 0), QPoint(0, INT_MAX)}) {
        EXPECT_EQ(message([&] { image.GetColor(p.x(), p.y()); }), "LXImage::GetColor");
        EXPECT_EQ(message([&] { image.SetColor(p.x(), p.y(), Red); }), "LXImage::SetColor");
    }
    image.SetColor(129, 9, Red);
    EXPECT_EQ(image.GetColor(129, 9), Red);
}

TEST_F(TiledImage, CarriesItsMetadata) {
    Image image(10, 10);
    EXPECT_TRUE(image.GetProfile().IsEmpty());
    EXPECT_TRUE(image.GetEXIF().isEmpty());
    EXPECT_EQ(image.GetUserValue(0), 0);
    image.SetUserValue(0, 5);
    image.SetUserValue(1, -6);
    image.SetEXIF({RMEXIFElement(RMEXIFElement::Artist, QStringLiteral("me"))});
    const Image copy(image);
    Image assigned(500, 1);
    assigned = copy;
    Image& self = assigned;
    assigned = self;
    Image moved(std::move(assigned));
    for (const Image* each : {&copy, static_cast<const Image*>(&moved)}) {
        EXPECT_EQ(each->GetUserValue(0), 5);
        EXPECT_EQ(each->GetUserValue(1), -6);
        ASSERT_EQ(each->GetEXIF().size(), 1);
        EXPECT_EQ(each->GetEXIF()[0].GetValue().toString(), QStringLiteral("me"));
        EXPECT_EQ(each->GetWidth(), 10u);
    }
    EXPECT_EQ(assigned.GetWidth() + assigned.GetTilesX(), 0u) << "moved from: an empty image";
    EXPECT_TRUE(assigned.GetProfile().IsEmpty());
    EXPECT_FALSE(assigned.ReadLine(0, nullptr, 0));
    assigned = moved;
    EXPECT_TRUE(SamePixels(assigned, copy));
}

TEST_F(TiledImage, ToleratesMissingTilesAsItsTransfersSay) {
    Image image(400, 130);
    image.Fill(Red);
    std::vector<unsigned char> line(1600, 0x55);
    const auto drop = [&](unsigned int row, unsigned int column) {
        image.GetTileRow(row)[column] = nullptr;
    };
    drop(0, 1);
    EXPECT_TRUE(image.ReadLine(0, line.data(), 1600)) << "a read of a whole line passes over it";
    EXPECT_EQ(line[512], 0x55);
    EXPECT_EQ(line[1024], 0);
    EXPECT_TRUE(image.ReadLine(0, 128, line.data(), 1000)) << "a first tile too";
    EXPECT_FALSE(image.ReadLine(0, 127, line.data(), 1000)) << "but not a later one";
    EXPECT_TRUE(image.ReadLine(0, 127, line.data(), 4)) << "unless it is not reached";
    EXPECT_TRUE(image.WriteLine(0, line.data(), 1600));
    EXPECT_TRUE(image.WriteLine(0, 127, line.data(), 1000));
    EXPECT_TRUE(image.ReadColumn(130, 0, line.data(), 4 * 130));
    EXPECT_TRUE(image.WriteColumn(130, 0, line.data(), 4 * 130));
    image.SetColor(130, 0, Red);
    EXPECT_EQ(image.GetTileRow(0)[1].constData(), nullptr);
    EXPECT_EQ(image.GetTileRow(2), nullptr);
}

TEST_F(TiledImage, TransfersTilesAsAPlainLoopWould) {
    const Image source = RandomImage(128 * 4, 128 * 3, 3);
    RandomPixels random(4);
    const auto coordinate = [&] { return int(random.Below(13)) - 6; };
    for (int round = 0; round < 500; ++round) {
        Image target(128 * 3, 128 * 4);
        const QRect rect(QPoint(coordinate(), coordinate()), QPoint(coordinate(), coordinate()));
        const QPoint position(coordinate(), coordinate());
        target.TransferBlocks(source, rect, position);
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 3; ++column) {
                const int fromX = rect.left() + column - position.x();
                const int fromY = rect.top() + row - position.y();
                const bool shared =
                    fromX >= std::max(rect.left(), 0) && fromX <= std::min(rect.right(), 3) &&
                    fromY >= std::max(rect.top(), 0) && fromY <= std::min(rect.bottom(), 2);
                const auto* expected =
                    shared ? source.GetTileRow(unsigned(fromY))[fromX].constData() : nullptr;
                const auto* found = target.GetTileRow(unsigned(row))[column].constData();
                if (shared) {
                    ASSERT_EQ(found, expected) << "round " << round;
                } else {
                    ASSERT_EQ(target.GetColor(column * 128, row * 128), Nothing) << round;
                }
            }
    }
    Image same(source);
    const unsigned int before = pool.InUse();
    same.TransferBlocks(same, QRect(0, 0, 9, 9), QPoint(0, 0));
    same.TransferBlocks(source, QRect(QPoint(INT_MIN, 0), QPoint(INT_MAX, 9)),
                        QPoint(INT_MAX, INT_MIN));
    EXPECT_EQ(pool.InUse(), before);
    EXPECT_TRUE(SamePixels(same, source));
}

TEST_F(TiledImage, WalkHandsOutEachPixelOnce) {
    const Image image(300, 400);
    for (const QRect& rect : {QRect(0, 0, 300, 400), QRect(127, 127, 2, 2), QRect(5, 130, 250, 1),
                              QRect(128, 128, 128, 128), QRect(10, 10, 0, 5)}) {
        std::set<std::pair<int, int>> seen;
        LXForTiles<Image>(rect, [&](const LXTileSpan& span) {
            for (int y = 0; y < span.local.height(); ++y)
                for (int x = 0; x < span.local.width(); ++x) {
                    const QPoint p = span.position + QPoint(x, y);
                    EXPECT_TRUE(rect.contains(p));
                    EXPECT_EQ(p, QPoint(int(span.column) * 128, int(span.row) * 128) +
                                     span.local.topLeft() + QPoint(x, y));
                    EXPECT_TRUE(QRect(0, 0, 128, 128).contains(span.local));
                    EXPECT_TRUE(seen.insert({p.x(), p.y()}).second);
                }
        });
        EXPECT_EQ(int(seen.size()), rect.width() * rect.height());
    }
}

// ---- running out of tiles -----------------------------------------------------------------------

TYPED_TEST(EveryFormat, RunsOutOfTilesCleanly) {
    const auto old = Sample<typename TypeParam::Pixel>(1),
               fresh = Sample<typename TypeParam::Pixel>(9);
    const auto construct = [](unsigned int size) {
        return SweepExhaustion([] { return 0; }, [=](int&) { TypeParam(size, size); },
                               [](int&, const ExhaustionOutcome& outcome) {
                                   EXPECT_EQ(outcome.threw, outcome.handlerCalls == 1);
                                   EXPECT_EQ(outcome.tilesAfter, 0u);
                                   EXPECT_TRUE(outcome.log.isEmpty());
                               });
    };
    EXPECT_EQ(construct(300), 4u);
    EXPECT_EQ(construct(50), 3u) << "the body is held to the end of the fill";

    const auto make = [&] {
        TypeParam image(300, 300);
        image.Fill(old);
        return image;
    };
    const auto allOrNothing = [&](const TypeParam& image, const ExhaustionOutcome& outcome) {
        EXPECT_TRUE(Same(image.GetColor(0, 0), outcome.threw ? old : fresh));
        EXPECT_EQ(outcome.threw, outcome.handlerCalls == 1);
    };
    const auto sweep = [&](auto operate) { return SweepExhaustion(make, operate, allOrNothing); };
    // The first new tile replaces all old ones, and the edges then take theirs.
    EXPECT_EQ(sweep([&](TypeParam& image) { image.Fill(fresh); }), 1u);
    EXPECT_EQ(sweep([&](TypeParam& image) { image.FastFill(fresh); }), 1u);
    EXPECT_EQ(sweep([&](TypeParam& image) { image.SetColor(0, 0, fresh); }), 1u);
    EXPECT_EQ(SweepExhaustion(
                  make, [&](TypeParam& image) { image.MakeBorderTile(3, 4, fresh, fresh); },
                  [&](const TypeParam& image, const ExhaustionOutcome&) {
                      EXPECT_TRUE(Same(image.GetColor(0, 0), old));
                  }),
              1u);
}

/// Four shared tiles along a line: those before the missing one are written.
TEST(Exhaustion, LinesAndColumns) {
    const auto make = [] {
        Image image(500, 500);
        image.Fill(Red);
        return image;
    };
    const std::vector<unsigned char> zeros(4 * 500, 0);
    const auto sweep = [&](auto write, const QPoint& toNextTile) {
        return SweepExhaustion(make, write,
                               [&](const Image& image, const ExhaustionOutcome& outcome) {
                                   for (int i = 0; i < 4; ++i) {
                                       const QPoint at = QPoint(7, 7) + i * toNextTile;
                                       EXPECT_EQ(image.GetColor(at.x(), at.y()),
                                                 i < int(outcome.freeTiles) ? Nothing : Red)
                                           << i;
                                   }
                               });
    };
    const QPoint right(128, 0), down(0, 128);
    EXPECT_EQ(sweep([&](Image& i) { i.WriteLine(7, zeros.data(), 2000); }, right), 4u);
    EXPECT_EQ(sweep([&](Image& i) { i.WriteLine(7, 0, zeros.data(), 2000); }, right), 4u);
    EXPECT_EQ(sweep([&](Image& i) { i.WriteColumn(7, 0, zeros.data(), 2000); }, down), 4u);
}
