#include "LXChannelTransforms.h"
#include "LXColorTransformStack.h"
#include "LXConvertImage.h"
#include "LXTransformImageColors.h"
#include "support/PictureParts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using namespace Reference;
using Image = LXImageRGBA32i;

/// Notes each call, and counts those of its kind that are alive.
class Recorder : public LXColorTransformBase {
public:
    Recorder(char name, std::string& calls) : m_name(name), m_calls(calls) { ++alive; }
    ~Recorder() override { --alive; }

    void operator()(LXRGBA32i& pixel) const override {
        Note("i32 on " + std::to_string(pixel.blue++));
    }
    void operator()(LXRGBA64i&) const override { Note("i64"); }
    void operator()(LXRGBA64f&) const override { Note("f64"); }
    void operator()(LXRGBA128i&) const override { Note("i128"); }
    void operator()(LXRGBA128f&) const override { Note("f128"); }
    void operator()(LXHSLA&) const override { Note("hsl"); }
    void operator()(QImage&) const override { Note("qimage"); }
    void operator()(Image&) const override { Note("image"); }
    void Invert(LXRGBA32i&) const override { Note("-i32"); }
    void Invert(LXRGBA64i&) const override { Note("-i64"); }
    void Invert(LXRGBA64f&) const override { Note("-f64"); }
    void Invert(LXRGBA128i&) const override { Note("-i128"); }
    void Invert(LXRGBA128f&) const override { Note("-f128"); }
    void Invert(QImage&) const override { Note("-qimage"); }
    void Invert(Image&) const override { Note("-image"); }
    void operator()(void* p, unsigned int size) const override { Note(Buffer("", p, size)); }
    void Invert(void* p, unsigned int size) const override { Note(Buffer("-", p, size)); }

    static int alive;

private:
    void Note(const std::string& call) const { m_calls += m_name + call + ' '; }
    static std::string Buffer(const char* sign, void* p, unsigned int size) {
        return sign + std::string(p ? "buffer" : "null") + std::to_string(size);
    }

    char m_name;
    std::string& m_calls;
};

int Recorder::alive = 0;

LXRGBA32i Of(unsigned int word) {
    LXRGBA32i pixel;
    std::memcpy(static_cast<void*>(&pixel), &word, 4);
    return pixel;
}

} // namespace

TEST(ColorTransformStack, AppliesInOrderAndInvertsBackwards) {
    std::string calls;
    LXColorTransformStack stack;
    stack.Push(new Recorder('A', calls));
    stack.Push(nullptr);
    stack.Push(new Recorder('B', calls));
    const auto both = [&](auto subject, const std::string& name) {
        calls.clear();
        stack(subject);
        EXPECT_EQ(calls, "A" + name + " B" + name + " ");
        if constexpr (!std::is_same_v<decltype(subject), LXHSLA>) {
            calls.clear();
            stack.Invert(subject);
            EXPECT_EQ(calls, "B-" + name + " A-" + name + " ");
        }
    };
    both(LXRGBA64i{}, "i64");
    both(LXRGBA64f{}, "f64");
    both(LXRGBA128i{}, "i128");
    both(LXRGBA128f{}, "f128");
    both(LXHSLA{}, "hsl");
    both(QImage(3, 3, QImage::Format_ARGB32), "qimage");
    calls.clear();
    LXRGBA32i pixel{};
    stack.Invert(pixel);
    stack(&pixel, 4);
    stack.Invert(&pixel, 5);
    EXPECT_EQ(calls, "B-i32 A-i32 Abuffer4 Bbuffer4 B-buffer5 A-buffer5 ");
}

TEST(ColorTransformStack, TakesAPixelOrATileThroughTheChain) {
    TestPool pool;
    std::string calls;
    LXColorTransformStack stack;
    stack.Push(new Recorder('A', calls));
    stack.Push(new Recorder('B', calls));
    LXRGBA32i pixel{};
    stack(pixel);
    EXPECT_EQ(calls, "Ai32 on 0 Bi32 on 1 ");
    Image image(200, 100), shared(image);
    image.GetTileRow(0)[1] = nullptr;
    const unsigned int before = pool.InUse();
    calls.clear();
    stack(image);
    EXPECT_EQ(calls, "Abuffer16384 Bbuffer16384 Anull16384 Bnull16384 ");
    EXPECT_EQ(pool.InUse(), before + 1) << "shared tiles are detached";
    calls.clear();
    stack.Invert(image);
    EXPECT_EQ(calls, "B-buffer16384 A-buffer16384 B-null16384 A-null16384 ");

    // A transform that takes the size for bytes treats a quarter of each tile.
    LXColorTransformStack gray;
    gray.Push(new LXTCGrayscaleFromRGBA32iAlpha);
    Image picture(128, 128);
    picture.Fill({1, 2, 3, 0x80});
    gray(picture);
    EXPECT_EQ(picture.GetColor(127, 31), Of(0xFF808080U));
    EXPECT_EQ(picture.GetColor(0, 32), Of(0x80030201U));
}

/// Throws from every operation.
class Thrower : public LXColorTransformBase {
public:
    void operator()(LXRGBA32i&) const override { throw std::runtime_error("no"); }
    void operator()(QImage&) const override { throw std::runtime_error("no"); }
    void operator()(void*, unsigned int) const override { throw std::runtime_error("no"); }
    void Invert(void*, unsigned int) const override { throw std::runtime_error("no"); }
    using LXColorTransformBase::operator();
    using LXColorTransformBase::Invert;
};

TEST(ColorTransformStack, IsFreeAgainAfterAnElementThrew) {
    LXColorTransformStack stack;
    stack.Push(nullptr);
    Image image(300, 100);
    stack(image); // null elements meet tiles too
    stack.Invert(image);
    delete stack.Pop();
    stack.Push(new Thrower);
    QImage picture(3, 3, QImage::Format_ARGB32);
    LXRGBA32i pixel{};
    EXPECT_THROW(stack(pixel), std::runtime_error);
    EXPECT_THROW(stack(picture), std::runtime_error);
    EXPECT_THROW(stack(image), std::runtime_error);
    EXPECT_THROW(stack.Invert(image), std::runtime_error);
    EXPECT_FALSE(stack.isEmpty());
    image.SetColor(0, 0, {1, 1, 1, 1});
}

TEST(ColorTransformStack, OwnsItsElementsButForPopAll) {
    std::string calls;
    auto* const kept = new Recorder('A', calls);
    auto* const popped = new Recorder('B', calls);
    {
        LXColorTransformStack stack;
        EXPECT_TRUE(stack.isEmpty());
        LXRGBA32i pixel = Of(0x12345678);
        stack(pixel);
        EXPECT_EQ(pixel, Of(0x12345678));
        stack.Push(kept);
        stack.Push(popped);
        EXPECT_EQ(stack.Top(), popped);
        EXPECT_EQ(stack.Pop(), popped);
        EXPECT_EQ(stack.Top(), kept);
        stack.Push(popped);
        stack.PopAll();
        EXPECT_TRUE(stack.isEmpty());
        EXPECT_EQ(Recorder::alive, 2);
        stack.Push(kept);
    }
    EXPECT_EQ(Recorder::alive, 1) << "the destructor deletes what is left";
    delete popped;
}

TEST(ChannelTransforms, FilterChannels) {
    const unsigned int word = 0x12345678;
    const unsigned int expected[] = {0x12345678, 0x12345600, 0x12340078, 0x12005678,
                                     0x12343434, 0x12565656, 0x12787878, 0x12345678};
    for (const int value : {0, 1, 2, 3, 4, 5, 6, 7, 300, -1}) {
        TestPool pool;
        LXRGBChannelFilter filter;
        filter.SetChannelFilter(static_cast<LXRGBChannelFilter::RGBFilter>(value));
        const LXRGBChannelFilter copy(filter);
        EXPECT_EQ(copy.GetChannelFilter(), value);
        LXRGBA32i pixel = Of(word);
        copy(pixel);
        const unsigned int result = value >= 0 && value < 8 ? expected[value] : word;
        EXPECT_EQ(pixel, Of(result));

        Image image(300, 100);
        image.Fill(Of(word));
        const Image before(image);
        const unsigned int tiles = pool.InUse();
        copy(image);
        EXPECT_EQ(image.GetColor(299, 99), Of(result));
        EXPECT_EQ(before.GetColor(299, 99), Of(word));
        EXPECT_EQ(pool.InUse(), value == 0 ? tiles : tiles + 3);

        QImage picture(5, 3, QImage::Format_ARGB32_Premultiplied);
        picture.fill(word);
        copy(picture);
        EXPECT_EQ(*reinterpret_cast<const unsigned int*>(picture.constScanLine(2) + 16), result);
        EXPECT_EQ(picture.format(), QImage::Format_ARGB32_Premultiplied) << "bytes are bytes";

        LXRGBA32i row[3] = {Of(word), Of(word), Of(word)};
        copy(row, 11); // two pixels and some bytes
        copy(nullptr, 16);
        copy.Invert(row, 12);
        EXPECT_EQ(row[1], Of(result));
        EXPECT_EQ(row[2], Of(word));
    }
}

TEST(ChannelTransforms, ShowAlphaButNotOfOnePixel) {
    const LXTCGrayscaleFromRGBA32iAlpha show;
    for (unsigned int alpha = 0; alpha < 256; ++alpha) {
        unsigned int word = alpha << 24 | 0x123456;
        show(word);
        ASSERT_EQ(word, 0xFF000000U | alpha * 0x10101);
    }
    LXRGBA32i pixel = Of(0x80123456);
    show(pixel);
    EXPECT_EQ(pixel, Of(0x80123456));
    Image image(130, 130);
    image.Fill(Of(0x80123456));
    show(image);
    EXPECT_EQ(image.GetColor(129, 129), Of(0xFF808080U));
    const LXTileReader corner(image.GetTileRow(1)[1]);
    EXPECT_EQ(corner.Row(127)[127], Of(0xFF000000U)) << "whole tiles";
    QImage picture(4, 4, QImage::Format_ARGB32);
    picture.fill(0x40FFFFFF);
    show(picture);
    EXPECT_EQ(picture.pixel(3, 3), 0xFF404040U);
    show(nullptr, 64);
    show.Invert(&pixel, 4);
    EXPECT_EQ(pixel, Of(0x80123456));
}

TEST(ToGrayScale, WeighsChannels) {
    const Plane before = RandomPlane(200, 150, 3);
    Image image = ImageOf(before);
    LXToGrayScaleImage()(image);
    const Plane gray = Changed(before, before.Rect(), [](int, int, LXRGBA32i& p) {
        p.blue = p.green = p.red = std::uint8_t((5 * p.blue + 16 * p.green + 11 * p.red) / 32);
    });
    EXPECT_TRUE(Same(PlaneOf(image), gray));
    Image padded(10, 10);
    padded.FastFill(Of(0xFF0000FF));
    LXToGrayScaleImage()(padded);
    const LXTileReader tile(padded.GetTileRow(0)[0]);
    EXPECT_EQ(tile.Row(9)[9], Of(0xFF272727));
    EXPECT_EQ(tile.Row(9)[10], Of(0xFF0000FF)) << "what lies outside stays";

    QImage premultiplied(3, 3, QImage::Format_ARGB32_Premultiplied);
    premultiplied.fill(0x80404040U);
    LXToGrayScaleImage()(premultiplied);
    EXPECT_EQ(premultiplied.format(), QImage::Format_ARGB32);
    EXPECT_EQ(premultiplied.pixel(1, 1), 0x807F7F7FU);
    QImage empty;
    LXToGrayScaleImage()(empty);
    EXPECT_TRUE(empty.isNull());
}

// ---- walks --------------------------------------------------------------------------------------

namespace {

/// Adds one to blue: a pixel that is visited twice shows it.
struct Step {
    void operator()(LXRGBA32i& pixel) const { ++pixel.blue; }
};

/// The same by runs only.
struct Runs {
    void operator()(LXRGBA32i&) const { FAIL() << "runs were offered"; }
    void TransformRun(LXRGBA32i* pixels, unsigned int count) const {
        for (unsigned int i = 0; i < count; ++i)
            ++pixels[i].blue;
    }
};

QRect RandomRect(RandomPixels& random) {
    const auto coordinate = [&] { return int(random.Below(400)) - 50; };
    return {QPoint(coordinate(), coordinate()), QPoint(coordinate(), coordinate())};
}

} // namespace

template <class Transform>
class ImageWalks : public testing::Test {};
using Transforms = testing::Types<Step, Runs>;
TYPED_TEST_SUITE(ImageWalks, Transforms);

TYPED_TEST(ImageWalks, TreatExactlyThePixelsOfTheRectangle) {
    RandomPixels random(6);
    const Plane before = RandomPlane(290, 270, 4);
    for (int round = 0; round < 30; ++round) {
        const QRect rect = round == 0 ? QRect() : RandomRect(random);
        Image image = ImageOf(before);
        EXPECT_TRUE((LXTransformImageColors<Image, TypeParam>()(image, rect, TypeParam())));
        QImage picture = PictureOf(before);
        EXPECT_TRUE((LXTransformImageColors<QImage, TypeParam>()(picture, rect, TypeParam())));
        const Plane expected =
            Changed(before, rect & before.Rect(), [](int, int, LXRGBA32i& pixel) { ++pixel.blue; });
        ASSERT_TRUE(Same(PlaneOf(image), expected)) << "round " << round;
        ASSERT_TRUE(Same(PlaneOf(picture), expected)) << "round " << round;
    }
}

TEST(ImageWalk, ConvertsAPictureOnlyIfItHasWork) {
    QImage picture(10, 10, QImage::Format_RGB32);
    picture.fill(0xFF102030U);
    EXPECT_TRUE((LXTransformImageColors<QImage, Step>()(picture, QRect(20, 20, 5, 5), Step())));
    EXPECT_EQ(picture.format(), QImage::Format_RGB32);
    EXPECT_TRUE((LXTransformImageColors<QImage, Step>()(picture, QRect(9, 9, 5, 5), Step())));
    EXPECT_EQ(picture.format(), QImage::Format_ARGB32);
    EXPECT_EQ(picture.pixel(9, 9), 0xFF102031U);
    EXPECT_EQ(picture.pixel(8, 9), 0xFF102030U);
}

TEST(ImageWalk, LeavesTilesOutsideShared) {
    TestPool pool;
    Image image(600, 600);
    const unsigned int before = pool.InUse();
    LXTransformImageColors<Image, Step>()(image, QRect(127, 127, 2, 2), Step());
    EXPECT_EQ(pool.InUse(), before + 4);
}

TEST(ImageWalk, PassesOverMissingTiles) {
    Image image(300, 100);
    image.GetTileRow(0)[1] = nullptr;
    LXTransformImageColors<Image, Step>()(image, LXImageRect(image), Step());
    LXTCGrayscaleFromRGBA32iAlpha()(image);
    LXRGBChannelFilter(LXRGBChannelFilter::HideRed)(image);
    LXToGrayScaleImage()(image);
    EXPECT_EQ(image.GetTileRow(0)[1].constData(), nullptr);
    EXPECT_EQ(image.GetColor(299, 99).alpha, 255);
}

TEST(ImageWalk, PassesOnWhatATransformThrows) {
    Image image(10, 10);
    const Thrower thrower;
    const LogCapture log;
    EXPECT_THROW((LXTransformImageColors<Image, Thrower>()(image, QRect(0, 0, 9, 9), thrower)),
                 std::runtime_error);
    EXPECT_TRUE(LogCapture::Lines().isEmpty());
}

TEST(ImageWalk, RunsOutOfTilesCleanly) {
    using Shared = std::pair<Image, const Image>;
    LXColorTransformStack stack;
    stack.Push(new LXRGBChannelFilter(LXRGBChannelFilter::BlueAsGray));
    const std::function<void(Image&)> walks[] = {
        [](Image& image) {
            LXTransformImageColors<Image, Step>()(image, LXImageRect(image), Step());
        },
        [](Image& image) { LXTCGrayscaleFromRGBA32iAlpha()(image); },
        [](Image& image) { LXToGrayScaleImage()(image); }, [&](Image& image) { stack(image); }};
    const auto make = [] {
        const Image image(300, 200);
        return Shared(image, image);
    };
    const auto check = [](const Shared& images, const ExhaustionOutcome& outcome) {
        EXPECT_EQ(outcome.handlerCalls, outcome.threw ? 1 : 0);
        for (unsigned int i = 0; i < 6; ++i) {
            const auto tile = [&](const Image& image) {
                return image.GetTileRow(i / 3)[i % 3].constData();
            };
            EXPECT_EQ(tile(images.first) != tile(images.second), i < outcome.freeTiles);
        }
    };
    for (const auto& walk : walks)
        EXPECT_EQ(SweepExhaustion(
                      make, [&](Shared& images) { walk(images.first); }, check),
                  6u);
    // What a walk finished before the pool ran dry stays done; the stack is free again.
    EXPECT_FALSE(stack.isEmpty());
}

TEST(ImageVisit, ShowsEachPixelOnceWithItsPlace) {
    RandomPixels random(9);
    const Plane plane = RandomPlane(290, 270, 5);
    const auto check = [&](const auto& picture, const QRect& rect) {
        using Picture = std::decay_t<decltype(picture)>;
        const QRect inside = rect & plane.Rect();
        int count = 0;
        const auto look = [&](int x, int y, const LXRGBA32i& pixel) {
            EXPECT_EQ(pixel, plane.At(x, y));
            EXPECT_TRUE(inside.contains(x, y));
            ++count;
        };
        EXPECT_TRUE((LXVisitImagePixel<Picture, decltype(look)>()(picture, rect, look)));
        EXPECT_EQ(count, inside.width() * inside.height());
        const auto tally = [&](const LXRGBA32i&) { --count; };
        EXPECT_TRUE((LXVisitImageColors<Picture, decltype(tally)>()(picture, rect, tally)));
        EXPECT_EQ(count, 0);
    };
    for (int round = 0; round < 30; ++round) {
        const QRect rect = RandomRect(random);
        check(ImageOf(plane), rect);
        check(PictureOf(plane), rect);
    }
}

TEST(ImageVisit, ReadsAndDetachesNothing) {
    TestPool pool;
    Image image(300, 300);
    image.GetTileRow(0)[1] = nullptr;
    const unsigned int before = pool.InUse();
    int count = 0;
    const auto tally = [&](const LXRGBA32i&) { ++count; };
    EXPECT_TRUE((LXVisitImageColors<Image, decltype(tally)>()(image, LXImageRect(image), tally)));
    EXPECT_EQ(count, 300 * 300 - 128 * 128) << "a missing tile is passed over";
    EXPECT_EQ(pool.InUse(), before);
    QImage premultiplied(1, 1, QImage::Format_ARGB32_Premultiplied);
    premultiplied.fill(0x80404040U);
    const auto look = [](const LXRGBA32i& pixel) { EXPECT_EQ(pixel.red, 0x7F); };
    LXVisitImageColors<QImage, decltype(look)>()(premultiplied, premultiplied.rect(), look);
    EXPECT_EQ(premultiplied.format(), QImage::Format_ARGB32_Premultiplied);
}

TEST(ImageVisit, EndsStandardExceptionsOnTiles) {
    const Image image(10, 10);
    const LogCapture log;
    const auto standard = [](const LXRGBA32i&) { throw std::runtime_error("seen enough"); };
    EXPECT_FALSE(
        (LXVisitImageColors<Image, decltype(standard)>()(image, LXImageRect(image), standard)));
    const auto other = [](int, int, const LXRGBA32i&) { throw 7; };
    EXPECT_THROW((LXVisitImagePixel<Image, decltype(other)>()(image, LXImageRect(image), other)),
                 int);
    const QImage picture(3, 3, QImage::Format_ARGB32);
    EXPECT_THROW(
        (LXVisitImageColors<QImage, decltype(standard)>()(picture, picture.rect(), standard)),
        std::runtime_error);
    ASSERT_EQ(LogCapture::Lines().size(), 2) << "a QImage is visited without a guard";
    EXPECT_TRUE(LogCapture::Lines()[0].endsWith(
        QStringLiteral("Unexpected exception: line=851, file=\"include/LXTransformImageColors.h\". "
                       "Exception content:\"seen enough\"")));
    EXPECT_TRUE(LogCapture::Lines()[1].endsWith(QStringLiteral(
        "Unexpected unknown exception: line=851, file=\"include/LXTransformImageColors.h\"")));
}
