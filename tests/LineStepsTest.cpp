#include "LXBoxBlurIterative.h"
#include "LXGaussian1D.h"
#include "LXIterativeConvolve.h"
#include "LXShiftEdge1D.h"
#include "LXSimpleKernel1D.h"
#include "support/PictureParts.h"
#include "support/ReferenceSteps.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <stdexcept>
#include <type_traits>

namespace {

using namespace Reference;
using Image = LXImageRGBA32i;

const QRect Huge(QPoint(-2000000000, -2000000000), QPoint(2000000000, 2000000000));

/// What shells have in common: a stop after any number of steps leaves the lines before it done and
/// the rest untouched, and steps after the last do nothing.
template <class Shell, class... Arguments>
void CheckSteps(const QRect& rect, const QRect& part, bool columns, const ChangeLine& change,
                const Arguments&... arguments) {
    const Plane before = RandomPlane(200, 150, 1);
    const int lines = !part.isValid() ? 0 : columns ? part.width() : part.height();
    for (const int stop : {0, 1, lines / 2, lines, lines + 3}) {
        SCOPED_TRACE(testing::Message() << rect << (columns ? " V " : " H ") << stop);
        Image image = ImageOf(before);
        const Image other = image;
        Plane expected = before;
        Shell shell(arguments..., image, rect);
        for (int n = 0; n < stop; ++n) {
            if constexpr (std::is_same_v<decltype(shell()), bool>)
                EXPECT_EQ(shell(), n >= lines);
            else
                shell();
            if (n < lines)
                ChangeOneLine(expected, part, columns, n, change);
        }
        ASSERT_TRUE(Same(PlaneOf(image), expected));
        EXPECT_TRUE(Same(PlaneOf(other), before));
    }
}

template <class Kernel>
void CheckConvolve(const Kernel& kernel, const QRect& rect) {
    const QRect all(0, 0, 200, 150);
    const QRect part = rect.isNull() || rect == Huge ? all : rect.isValid() ? rect & all : QRect();
    const ChangeLine change = [&](const Line& line, int first, int count) {
        return Through(kernel, line, first, std::size_t(count));
    };
    using namespace LXBlur;
    CheckSteps<LXIterativeConvolveH<Image, Kernel>>(rect, part, false, change, kernel);
    CheckSteps<LXIterativeConvolveV<Image, Kernel>>(rect, part, true, change, kernel);
}

/// An application's own: the neighbour at some distance, tinted. It counts its calls.
class Neighbour {
public:
    explicit Neighbour(std::atomic<int>* calls, int distance = -1)
        : m_calls(calls), m_distance(distance) {}
    void SetSource(const std::vector<LXRGBA32i>* source) { m_source = source; }
    void SetDestination(std::vector<LXRGBA32i>* destination) { m_destination = destination; }
    void SetSourceOffset(int offset) { m_offset = offset; }
    int Left() const { return std::max(-m_distance, 0); }
    int Right() const { return std::max(m_distance, 0); }
    void operator()(int i) {
        ++*m_calls;
        const int p = std::clamp(i + m_offset + m_distance, 0, int(m_source->size()) - 1);
        LXRGBA32i pixel = (*m_source)[std::size_t(p)];
        pixel.blue ^= 0x55;
        (*m_destination)[std::size_t(i)] = pixel;
    }

private:
    std::atomic<int>* m_calls;
    int m_distance;
    const std::vector<LXRGBA32i>* m_source = nullptr;
    std::vector<LXRGBA32i>* m_destination = nullptr;
    int m_offset = 0;
};

template <class Wrapper, class Accumulator>
void CheckBoxBlur(const Accumulator& accumulator, int radius, const QRect& rect) {
    const QRect all(0, 0, 200, 150);
    const QRect part = radius < 0 ? QRect() : rect.isValid() ? rect & all : all;
    const ChangeLine change = [&](const Line& line, int first, int count) {
        Line result(std::size_t(count), LXRGBA32i{});
        for (int i = 0; i < count; ++i) {
            Accumulator sums = accumulator;
            for (int p = first + i - radius; p <= first + i + radius; ++p) {
                const bool inside = p >= 0 && p < int(line.size());
                sums.Add(std::is_void_v<Wrapper> || inside ? Reference::At(line, p) : LXRGBA32i{});
            }
            sums.Finalize(result[std::size_t(i)]);
        }
        return result;
    };
    using H = LXBlur::LXBoxBlurIterativeH<Image, Accumulator, Wrapper>;
    using V = LXBlur::LXBoxBlurIterativeV<Image, Accumulator, Wrapper>;
    CheckSteps<H>(rect, part, false, change, radius, accumulator);
    CheckSteps<V>(rect, part, true, change, radius, accumulator);
}

} // namespace

TEST(LineSteps, ConvolveLineByLine) {
    for (const QRect& rect : Parts)
        CheckConvolve(LXGaussian1DPremul(2.0), rect);
    for (const QRect& rect :
         {QRect(), QRect(10, 10, 0, 0), Huge, Outside, Inverted, QRect(50, 40, 60, 30)}) {
        CheckConvolve(LXSimpleBoxKernel1D(200), rect);
        CheckConvolve(LXSimpleSharpenKernel1D(200), rect);
        CheckConvolve(LXGaussian1D(1.0), rect);
        CheckConvolve(LXGaussianAlpha1D(60.0), rect);
        CheckConvolve(LXShiftEdge1D(-3), rect);
    }
}

TEST(LineSteps, TakeTheKernelsOfApplications) {
    std::atomic<int> calls{0};
    Image image = RandomImage(200, 150, 2);
    LXBlur::LXIterativeConvolveH<Image, Neighbour> steps(Neighbour(&calls), image,
                                                         QRect(10, 5, 190, 20));
    const LXRGBA32i left = image.GetColor(9, 24);
    for (int n = 1; n <= 20; ++n) {
        steps();
        EXPECT_EQ(calls, 190 * n) << "once for each index";
    }
    EXPECT_EQ(image.GetColor(10, 24),
              (LXRGBA32i{std::uint8_t(left.blue ^ 0x55), left.green, left.red, left.alpha}));
    CheckConvolve(Neighbour(&calls), QRect());
    CheckConvolve(Neighbour(&calls, 7), QRect(20, 10, 60, 50));
}

/// One derived from a kernel that offers whole lines is asked by its own operator.
TEST(LineSteps, TakeDerivedKernels) {
    struct Counter : LXGaussian1DPremul {
        explicit Counter(std::atomic<int>* calls) : LXGaussian1DPremul(3.0), m_calls(calls) {}
        void operator()(int) const { ++*m_calls; }
        std::atomic<int>* m_calls;
    };
    std::atomic<int> calls{0};
    Image image(200, 10);
    LXBlur::LXIterativeConvolveH<Image, Counter> steps(Counter(&calls), image, QRect());
    steps();
    EXPECT_EQ(calls, 200);
}

TEST(LineSteps, MapsCopyTheirFunctor) {
    struct Counter {
        int calls = 0;
        int* sum;
        void operator()(int) { *sum += ++calls; }
    };
    int sum = 0;
    const Counter counter{0, &sum};
    std::vector<LXIndexRun> runs = LXIndexRuns(10); // one, so on one thread
    LXMapIndices(runs, counter);
    LXMapIndices(runs, counter);
    EXPECT_EQ(sum, 2 * 55);
    EXPECT_EQ(LXIndexRuns(INT_MAX).back().last, INT_MAX);
    EXPECT_TRUE(LXIndexRuns(0).empty());
}

namespace {

/// An image that takes no more than a number of lines.
struct StubbornImage : Image {
    explicit StubbornImage(const Image& image) : Image(image) {}
    int lines = 3;
    template <class... Arguments>
    bool WriteLine(Arguments... arguments) {
        return lines-- > 0 && Image::WriteLine(arguments...);
    }
    template <class... Arguments>
    bool WriteColumn(Arguments... arguments) {
        return lines-- > 0 && Image::WriteColumn(arguments...);
    }
};

/// How many lines or columns of the stubborn image are written or tried.
template <class Shell, class... Arguments>
int Tried(const Arguments&... arguments) {
    StubbornImage image(RandomImage(20, 20, 1));
    Shell shell(arguments..., image, QRect());
    for (int i = 0; i < 25; ++i)
        shell();
    return 3 - image.lines;
}

} // namespace

TEST(LineSteps, EndAtALineThatCannotBeWrittenButNotAtAColumn) {
    using namespace LXBlur;
    using Sums = LXAlphaBlurAccumulator;
    using Kernel = LXSimpleBoxKernel1D;
    EXPECT_EQ((Tried<LXBoxBlurIterativeH<StubbornImage, Sums, void>>(1, Sums(1))), 4);
    EXPECT_EQ((Tried<LXBoxBlurIterativeV<StubbornImage, Sums, void>>(1, Sums(1))), 20);
    EXPECT_EQ((Tried<LXIterativeConvolveH<StubbornImage, Kernel>>(Kernel(9))), 4);
    EXPECT_EQ((Tried<LXIterativeConvolveV<StubbornImage, Kernel>>(Kernel(9))), 20);
}

TEST(LineSteps, NothingInImagesWithoutPixels) {
    using Sums = LXRGBABlurAccumulatorPremul;
    for (const auto& [width, height] : {std::pair(0U, 0U), std::pair(5U, 0U), std::pair(0U, 5U)}) {
        Image image(width, height);
        EXPECT_TRUE((LXBlur::LXBoxBlurIterativeH<Image, Sums, void>(1, Sums(1), image, QRect())()));
        EXPECT_TRUE((LXBlur::LXBoxBlurIterativeV<Image, Sums, void>(1, Sums(1), image, QRect())()));
        LXBlur::LXIterativeConvolveV<Image, LXSimpleBoxKernel1D>(LXSimpleBoxKernel1D(1), image,
                                                                 QRect())();
    }
}

/// Along columns a missing tile is nothing, and what is there stays.
TEST(LineSteps, PassOverMissingTiles) {
    Image image = RandomImage(300, 10, 4);
    image.GetTileRow(0)[1] = nullptr;
    const LXRGBA32i last = image.GetColor(299, 9);
    using Sums = LXRGBABlurAccumulator;
    LXBlur::LXBoxBlurIterativeV<Image, Sums, void> steps(0, Sums(0), image, QRect());
    while (!steps()) {
    }
    EXPECT_EQ(image.GetColor(299, 9), last);
    EXPECT_EQ(image.GetTileRow(0)[1].constData(), nullptr);
}

TEST(LineSteps, BoxBlurLineByLine) {
    using Surrounded = LXBlur::LXRGBA32iColorWrapper<0U>;
    const LXRGBA32i colour{5, 6, 7, 8};
    for (const QRect& rect : Parts)
        CheckBoxBlur<void>(LXRGBABlurAccumulatorPremul(6), 6, rect);
    for (const QRect& rect : {QRect(), Outside, Inverted, QRect(50, 40, 60, 30)})
        for (const int radius : {0, 20}) {
            CheckBoxBlur<void>(LXRGBABlurAccumulatorPremul(radius), radius, rect);
            CheckBoxBlur<void>(LXRGBABlurAccumulator(radius), radius, rect);
            CheckBoxBlur<void>(LXAlphaBlurAccumulator(radius), radius, rect);
            CheckBoxBlur<Surrounded>(LXAlphaBlurAccumulator(radius), radius, rect);
            CheckBoxBlur<Surrounded>(LXRGBABlurAccumulatorPremul(radius), radius, rect);
            CheckBoxBlur<void>(LXAlphaBlurAccumulatorWithInvert(radius), radius, rect);
            CheckBoxBlur<void>(LXAlphaBlurAccumulatorWithRGBColorize(radius, colour), radius, rect);
        }
    CheckBoxBlur<void>(LXAlphaBlurAccumulator(170), 170, QRect());
    CheckBoxBlur<Surrounded>(LXAlphaBlurAccumulator(170), 170, QRect());
    CheckBoxBlur<void>(LXAlphaBlurAccumulator(-1), -1, QRect());
    CheckBoxBlur<void>(LXAlphaBlurAccumulator(INT_MIN), INT_MIN, QRect(1, 1, 5, 5));
}

/// A strip of an image so high that its results are limited to fewer columns.
TEST(LineSteps, BoxBlurOfAHighImage) {
    Image image(100, 60000);
    for (int y = 0; y < 60000; y += 7)
        image.SetColor(y % 100, y, LXRGBA32i{1, 2, 3, std::uint8_t(y)});
    const Plane before = PlaneOf(image);
    using Sums = LXAlphaBlurAccumulator;
    LXBlur::LXBoxBlurIterativeV<Image, Sums, void> steps(3, Sums(3), image, QRect());
    while (!steps()) {
    }
    for (int x = 0; x < 100; ++x)
        for (int y = 0; y < 60000; y += 501) {
            int sum = 0;
            for (int k = -3; k <= 3; ++k)
                sum += before.Clamped(x, y + k).alpha;
            ASSERT_EQ(image.GetColor(x, y), (LXRGBA32i{0, 0, 0, std::uint8_t(sum / 7)})) << x;
        }
}

TEST(LineSteps, PassOnWhatAKernelThrows) {
    struct Thrower : Neighbour {
        using Neighbour::Neighbour;
        void operator()(int i) {
            if (i == 120)
                throw std::runtime_error("no");
            Neighbour::operator()(i);
        }
    };
    std::atomic<int> calls{0};
    Image image = RandomImage(200, 150, 3);
    LXBlur::LXIterativeConvolveH<Image, Thrower> steps(Thrower(&calls), image, QRect());
    EXPECT_THROW(steps(), std::exception);
    EXPECT_TRUE(SamePixels(image, RandomImage(200, 150, 3)));
}

TEST(LineSteps, RunOutOfTiles) {
    const auto convolve = [](Image& image) {
        using Kernel = LXSimpleBoxKernel1D;
        LXBlur::LXIterativeConvolveV<Image, Kernel> steps(Kernel(9), image, QRect());
        for (int i = 0; i < 300; ++i)
            steps();
    };
    const auto blur = [](Image& image) {
        using Sums = LXAlphaBlurAccumulator;
        LXBlur::LXBoxBlurIterativeV<Image, Sums, void> steps(2, Sums(2), image, QRect());
        while (!steps()) {
        }
    };
    EXPECT_GE(SweepOnSharedTiles(convolve), 6u);
    EXPECT_GE(SweepOnSharedTiles(blur), 6u);
}
