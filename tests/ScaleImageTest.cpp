#include "LXColorTransformBase.h"
#include "LXScaleImage.h"
#include "support/LogCapture.h"
#include "support/Pictures.h"
#include "support/ReferenceGeometry.h"
#include "support/TestPool.h"
#include "support/Uncopyable.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

const TestPool testPool; // of all tests

using Image = LXImageRGBA32i;

/// Inverts blue and counts its calls.
class Counting : public LXColorTransformBase {
public:
    using LXColorTransformBase::operator();
    using LXColorTransformBase::Invert;
    void operator()(LXRGBA32i& pixel) const override {
        ++calls;
        pixel.blue = std::uint8_t(255 - pixel.blue);
    }
    void operator()(void*, unsigned int) const override {}
    void Invert(void*, unsigned int) const override {}
    mutable int calls = 0;
};

class Throwing : public Counting {
public:
    using Counting::operator();
    void operator()(LXRGBA32i&) const override { throw std::runtime_error("no"); }
};

/// Each pixel is another.
QImage Patterned(int width, int height) {
    QImage view(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            view.setPixel(x, y, 0x80000000U + unsigned(y * width + x));
    return view;
}

/// How many runs of one source pixel the line has.
int DistinctOf(const std::vector<int>& line) {
    int count = 0;
    for (std::size_t i = 0; i < line.size(); ++i)
        count += line[i] >= 0 && (i == 0 || line[i] != line[i - 1]);
    return count;
}

/// Compares both forms with the plain walks.
void CheckViews(const Image& source, const QPointF& origin, double scale, const QSize& size) {
    SCOPED_TRACE(testing::Message() << "origin " << origin.x() << ", " << origin.y() << " zoom "
                                    << scale << " view " << size.width() << " x " << size.height());
    const int width = int(source.GetWidth()), height = int(source.GetHeight());
    QImage view = Patterned(size.width(), size.height()), expected = view;
    // Rows have no limits but those of the image.
    const auto [first, last] = Reference::FloatTiles(source, origin.x(), scale, size.width());
    Reference::View(
        Reference::FloatLine(float(origin.y()), scale, height, size.height(), 0, height),
        Reference::FloatLine(float(origin.x()), scale, width, size.width(), first, last), expected,
        [&](int x, int y) { return source.GetColor(x, y); });
    EXPECT_TRUE(ScaleImage(source, origin, scale, view));
    ASSERT_TRUE(SamePixels(view, expected));

    view = Patterned(size.width(), size.height()), expected = view;
    const auto [from, to] = Reference::IntegerTiles(source, origin.x(), scale, size.width());
    const auto rowsShown =
        Reference::IntegerLine(origin.y(), scale, height, size.height(), 0, height);
    const auto columnsShown =
        Reference::IntegerLine(origin.x(), scale, width, size.width(), from, to);
    Reference::View(rowsShown, columnsShown, expected, [&](int x, int y) {
        // Beyond the image there is the cleared buffer.
        LXRGBA32i pixel = x < width ? source.GetColor(x, y) : LXRGBA32i{};
        pixel.blue = std::uint8_t(255 - pixel.blue);
        return pixel;
    });
    const Counting counting;
    EXPECT_TRUE(ScaleImage(source, origin, scale, view, counting));
    ASSERT_TRUE(SamePixels(view, expected));
    EXPECT_EQ(counting.calls, DistinctOf(rowsShown) * DistinctOf(columnsShown));
}

} // namespace

TEST(ScaleImage, ShowsWhatThePlainWalksShow) {
    const Image source = RandomImage(517, 391, 1);
    RandomPixels random(2);
    for (const double scale :
         {0.05, 0.1, 0.25, 0.37, 0.5, 0.77, 1.0, 1.5, 2.0, 3.3, 4.0, 8.0, 32.0})
        for (int round = 0; round < 24; ++round) {
            const auto origin = [&](int side) {
                const int whole = int(random.Below(unsigned(side) * 2)) - side / 2;
                return round % 3 == 0 ? whole : whole + random.Below(64) / 64.0 + round * 1e-3;
            };
            const QPointF place(origin(517), origin(391));
            CheckViews(source, place, scale,
                       QSize(1 + int(random.Below(300)), 1 + int(random.Below(200))));
            if (HasFailure())
                return;
        }
    // The pixel after the last tile column, and the first one beyond the image.
    const Image whole = RandomImage(256, 128, 3);
    for (int x = -3; x <= 260; ++x)
        CheckViews(whole, QPointF(x, 0), 1.0, QSize(128, 2));
}

TEST(ScaleImage, CropsAtZoomOneAndPassesOverOtherFormats) {
    const Image source = RandomImage(300, 200, 4);
    QImage view = Patterned(100, 50);
    ScaleImage(source, QPointF(130, 20), 1, view);
    EXPECT_TRUE(SamePixels(
        view, MakeImage(100, 50, [&](int x, int y) { return source.GetColor(130 + x, 20 + y); })));
    // A view of other bytes than 32-bit pixels does not change.
    for (const QImage::Format format :
         {QImage::Format_Grayscale8, QImage::Format_RGB888, QImage::Format_RGBA64}) {
        QImage other(40, 30, format), filled;
        other.fill(Qt::gray);
        filled = other.copy();
        EXPECT_TRUE(ScaleImage(source, QPointF(), 1, other));
        EXPECT_TRUE(ScaleImage(source, QPointF(), 1, other, Counting()));
        EXPECT_EQ(other, filled) << int(format);
    }
    QImage none;
    EXPECT_TRUE(ScaleImage(source, QPointF(), 1, none));
    EXPECT_TRUE(ScaleImage(Image(0, 10), QPointF(), 1, view));
}

TEST(ScaleImage, SurvivesSenselessPlaces) {
    const Image source = RandomImage(200, 150, 5);
    const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
    const auto leavesTheView = [&](const QPointF& origin, double scale) {
        QImage view(20, 20, QImage::Format_ARGB32); // of equal rows, as rows may be repeated
        view.fill(0x12345678U);
        const QImage before = view.copy();
        const bool done = ScaleImage(source, origin, scale, view) &&
                          ScaleImage(source, origin, scale, view, Counting());
        return done && view == before;
    };
    for (const double scale : {0.0, -1.0, inf, -inf, nan})
        EXPECT_TRUE(leavesTheView(QPointF(3, 3), scale)) << scale;
    for (const double x : {1e300, -1e300, inf, -inf, nan})
        for (const double zoom : {0.1, 1.0, 7.0})
            for (const QPointF& origin : {QPointF(x, 3), QPointF(3, x), QPointF(x, -x)})
                EXPECT_TRUE(leavesTheView(origin, zoom)) << x << " zoom " << zoom;
    for (const double scale : {1e-3, 1e6})
        CheckViews(source, QPointF(3, 3), scale, QSize(20, 20));
    for (const double scale : {1e-300, 1e-9, 1e9, 1e300}) { // scaled lengths that do not fit
        QImage view = Patterned(20, 20);
        EXPECT_TRUE(ScaleImage(source, QPointF(3, 3), scale, view, Counting()));
        EXPECT_TRUE(ScaleImage(source, QPointF(3, 3), scale, view));
        EXPECT_EQ(RowOf(view, 0)[0], source.GetColor(3, 3)) << scale;
    }
    // Far to the right: the tile column that the view begins with does not exist, and the first
    // pixel of it is shown by the form with a transform only.
    for (const double x : {-1e9, -1e6, 256.0, 1280.0, 1e9})
        CheckViews(source, QPointF(x, 3), 1, QSize(20, 20));
}

TEST(ScaleImage, MissingTilesShowAsZero) {
    for (const int missing : {0, 1, 3}) {
        Image source = RandomImage(520, 100, 8), zero(source);
        source.GetTileRow(0)[missing] = nullptr;
        zero.GetTileRow(0)[missing] = Image(128, 128).GetTileRow(0)[0];
        for (const QPointF& origin : {QPointF(), QPointF(140, 7)}) {
            QImage view = Patterned(480, 90), expected = Patterned(480, 90);
            ScaleImage(source, origin, 1, view);
            ScaleImage(zero, origin, 1, expected);
            EXPECT_TRUE(SamePixels(view, expected)) << missing << " from " << origin.x();
            ScaleImage(source, origin, 1, view, Counting());
            ScaleImage(zero, origin, 1, expected, Counting());
            EXPECT_TRUE(SamePixels(view, expected)) << missing << " from " << origin.x();
        }
    }
}

TEST(ScaleImage, FaultsAreLoggedAndGoOn) {
    const Image source = RandomImage(200, 150, 5);
    QImage view = Patterned(300, 100);
    const LogCapture log;
    EXPECT_THROW(ScaleImage(source, QPointF(), 1, view, Throwing()), std::runtime_error);
    ASSERT_EQ(LogCapture::Lines().size(), 1);
    EXPECT_TRUE(LogCapture::Lines()[0].contains(QStringLiteral("src/LXImage.cpp")));
}

TEST(ScaleImage, AViewThatCannotBeDetachedStays) {
    const Image source = RandomImage(20, 15, 5);
    ExpectThatAPictureWhichCannotBeDetachedStays(
        [&](QImage& view) { ScaleImage(source, QPointF(), 1, view); });
    ExpectThatAPictureWhichCannotBeDetachedStays(
        [&](QImage& view) { ScaleImage(source, QPointF(), 1, view, Counting()); });
}

TEST(ScaleLine, StretchesByIntegers) {
    std::vector<LXRGBA32i> source = RowOf(RandomQImage(100, 1, 6), 0);
    for (int from = 0; from <= 60; ++from)
        for (int to = 1; to <= 60; ++to) {
            std::vector<LXRGBA32i> target(std::size_t(to) + 1, LXRGBA32i{9, 9, 9, 9});
            ScaleLine(source.data(), target.data(), from, to);
            for (int i = 0; i < to; ++i)
                ASSERT_EQ(target[std::size_t(i)], source[std::size_t(i * from / to)])
                    << from << " " << to;
            ASSERT_EQ(target.back(), (LXRGBA32i{9, 9, 9, 9}));
        }
    ScaleLine(source.data(), nullptr, 5, -1);
}

TEST(ScaleLine, WalksByFloats) {
    std::vector<LXRGBA32i> source = RowOf(RandomQImage(384, 1, 8), 0);
    RandomPixels random(7);
    for (int round = 0; round < 2000; ++round) {
        const double scale = std::pow(2.0, random.Below(1000) / 100.0 - 5);
        const float start = float(random.Below(6000)) / 10 - 250;
        const int length = 1 + int(random.Below(384));
        const int first = int(random.Below(3)), last = first + int(random.Below(3));
        const auto expected = [&](int firstTile, int lastTile) {
            std::vector<LXRGBA32i> line(200);
            const auto shown = Reference::FloatLine(start, scale, length, 200, firstTile, lastTile);
            for (std::size_t i = 0; i < shown.size(); ++i)
                if (shown[i] >= 0)
                    line[i] = source[std::size_t(shown[i])];
            return line;
        };
        std::vector<LXRGBA32i> target(200), whole(200);
        scaleLineNew(source.data() + 128 * first, target.data(), start, scale, length, 200, first,
                     last);
        ASSERT_EQ(target, expected(first, last)) << "round " << round;
        if (start >= 0 || start != float(int(start))) { // else the starts of the two differ
            ScaleLine(source.data(), whole.data(), start, scale, length, 200);
            ASSERT_EQ(whole, expected(0, 3)) << "round " << round;
        }
    }
    // A whole negative start is one pixel further on here, and there not.
    LXRGBA32i row[4] = {};
    ScaleLine(source.data(), row, -2.0F, 1.0, 10, 4);
    EXPECT_EQ(row[1], source[0]);
    LXRGBA32i other[4] = {};
    scaleLineNew(source.data(), other, -2.0F, 1.0, 10, 4, 0, 0);
    EXPECT_EQ(other[1], LXRGBA32i{});
    EXPECT_EQ(other[2], source[0]);
}

TEST(AdjustValue, AddsHalfAStepToACount) {
    EXPECT_EQ(AdjustValue(0.4, 4), 0.25 * 1); // 1.6 + 0.125
    EXPECT_EQ(AdjustValue(0.5, 4), 0.5);      // 2 + 0.125
    EXPECT_EQ(AdjustValue(-0.5, 4), -0.5);    // -2 - 0.125
    EXPECT_EQ(AdjustValue(0.5, 0.25), 4 * 2); // 0.125 + 2
    EXPECT_EQ(AdjustValue(-0.5, 0.25), -8);
}
