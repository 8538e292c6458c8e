#include "LXBoxBlurIterative.h"
#include "LXGaussian1D.h"
#include "LXIterativeConvolve.h"
#include "LXShiftEdge1D.h"
#include "LXSimpleKernel1D.h"
#include "support/ExhaustionSweep.h"
#include "support/Plane.h"
#include "support/ReferenceSteps.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <stdexcept>
#include <type_traits>

namespace {

using namespace Reference;
using Image = LXImageRGBA32i;

const QRect Parts[] = {QRect(0, 0, 200, 150),   QRect(-20, -20, 300, 300), QRect(0, 0, 10, 10),
                       QRect(190, 140, 40, 40), QRect(100, 0, 60, 150),    QRect(127, 127, 2, 2),
                       QRect(128, 20, 1, 100)};
const QRect Outside(200, 0, 5, 5);
const QRect Inverted(QPoint(50, 50), QPoint(40, 60));
const QRect Huge(QPoint(-2000000000, -2000000000), QPoint(2000000000, 2000000000));

void ForLines(Plane& plane, const QRect& part, bool columns, int lines, const ChangeLine& change) {
    for (int n = 0; n < lines; ++n)
        ChangeOneLine(plane, part, columns, n, change);
}

/// What shells have in common: a stop after any number of steps leaves the lines before it done and
/// the rest untouched, and steps after the last do nothing.
template <class MakeShell>
void CheckSteps(const MakeShell& makeShell, const QRect& part, bool columns,
                const ChangeLine& change) {
    const Plane before = RandomPlane(200, 150, 1);
    const int lines = !part.isValid() ? 0 : columns ? part.width() : part.height();
    for (const int stop : {0, 1, lines / 2, lines, lines + 3}) {
        SCOPED_TRACE(testing::Message() << part.x() << " " << part.y() << " " << part.width() << " "
                                        << part.height() << (columns ? " V " : " H ") << stop);
        Image image = ImageOf(before);
        const Image other = image;
        auto shell = makeShell(image);
        for (int n = 0; n < stop; ++n) {
            if constexpr (std::is_same_v<decltype((*shell)()), bool>)
                EXPECT_EQ((*shell)(), n >= lines);
            else
                (*shell)();
        }
        Plane expected = before;
        ForLines(expected, part, columns, std::min(stop, lines), change);
        ASSERT_TRUE(Same(PlaneOf(image), expected));
        EXPECT_TRUE(Same(PlaneOf(other), before));
    }
}

template <class Kernel>
void CheckConvolve(const Kernel& kernel, const QRect& rect) {
    const QRect all(0, 0, 200, 150);
    const QRect part = rect.isNull() || rect == Huge ? all : rect.isValid() ? rect & all : QRect();
    const ChangeLine change = [&](const Line& line, int first, int count) {
        Kernel k = kernel;
        Line result(std::size_t(count), LXRGBA32i{});
        k.SetSource(&line);
        k.SetDestination(&result);
        k.SetSourceOffset(first);
        for (int i = 0; i < count; ++i)
            k(i);
        return result;
    };
    CheckSteps(
        [&](Image& image) {
            return std::make_unique<LXBlur::LXIterativeConvolveH<Image, Kernel>>(kernel, image,
                                                                                 rect);
        },
        part, false, change);
    CheckSteps(
        [&](Image& image) {
            return std::make_unique<LXBlur::LXIterativeConvolveV<Image, Kernel>>(kernel, image,
                                                                                 rect);
        },
        part, true, change);
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
        Line result;
        for (int i = 0; i < count; ++i) {
            Accumulator sums = accumulator;
            for (int p = first + i - radius; p <= first + i + radius; ++p)
                if (std::is_void_v<Wrapper> || (p >= 0 && p < int(line.size())))
                    sums.Add(Reference::At(line, p));
                else
                    sums.Add(LXRGBA32i{});
            LXRGBA32i pixel{};
            sums.Finalize(pixel);
            result.push_back(pixel);
        }
        return result;
    };
    using H = LXBlur::LXBoxBlurIterativeH<Image, Accumulator, Wrapper>;
    using V = LXBlur::LXBoxBlurIterativeV<Image, Accumulator, Wrapper>;
    CheckSteps([&](Image& image) { return std::make_unique<H>(radius, accumulator, image, rect); },
               part, false, change);
    CheckSteps([&](Image& image) { return std::make_unique<V>(radius, accumulator, image, rect); },
               part, true, change);
}

} // namespace

TEST(LineSteps, ConvolveLineByLine) {
    const TestPool pool;
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
    const TestPool pool;
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
    const TestPool pool;
    struct Copy : LXGaussian1DPremul {
        Copy() : LXGaussian1DPremul(3.0) {}
        void SetSource(const std::vector<LXRGBA32i>* line) { source = line; }
        void SetDestination(std::vector<LXRGBA32i>* line) { destination = line; }
        void SetSourceOffset(int o) { offset = o; }
        void operator()(int i) const {
            (*destination)[std::size_t(i)] = (*source)[std::size_t(i + offset)];
        }
        const std::vector<LXRGBA32i>* source = nullptr;
        std::vector<LXRGBA32i>* destination = nullptr;
        int offset = 0;
    };
    Image image = RandomImage(200, 10, 5);
    LXBlur::LXIterativeConvolveH<Image, Copy> steps(Copy(), image, QRect());
    steps();
    EXPECT_TRUE(SamePixels(image, RandomImage(200, 10, 5)));
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

} // namespace

TEST(LineSteps, EndAtALineThatCannotBeWrittenButNotAtAColumn) {
    const TestPool pool;
    using Sums = LXAlphaBlurAccumulator;
    using BoxH = LXBlur::LXBoxBlurIterativeH<StubbornImage, Sums, void>;
    using BoxV = LXBlur::LXBoxBlurIterativeV<StubbornImage, Sums, void>;
    const auto tried = [](auto makeShell) {
        StubbornImage image(RandomImage(20, 20, 1));
        auto shell = makeShell(image);
        for (int i = 0; i < 25; ++i)
            (*shell)();
        return 3 - image.lines;
    };
    using Kernel = LXSimpleBoxKernel1D;
    using ConvolveH = LXBlur::LXIterativeConvolveH<StubbornImage, Kernel>;
    using ConvolveV = LXBlur::LXIterativeConvolveV<StubbornImage, Kernel>;
    EXPECT_EQ(tried([](auto& i) { return std::make_unique<BoxH>(1, Sums(1), i, QRect()); }), 4);
    EXPECT_EQ(tried([](auto& i) { return std::make_unique<BoxV>(1, Sums(1), i, QRect()); }), 20);
    EXPECT_EQ(tried([](auto& i) { return std::make_unique<ConvolveH>(Kernel(9), i, QRect()); }), 4);
    EXPECT_EQ(tried([](auto& i) { return std::make_unique<ConvolveV>(Kernel(9), i, QRect()); }),
              20);
}

TEST(LineSteps, NothingInImagesWithoutPixels) {
    const TestPool pool;
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
    const TestPool pool;
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
    const TestPool pool;
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
    const TestPool pool;
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
    TestPool pool;
    struct Thrower : Neighbour {
        using Neighbour::Neighbour;
        void operator()(int i) {
            if (i == 120)
                throw std::runtime_error("no");
            Neighbour::operator()(i);
        }
    };
    std::atomic<int> calls{0};
    {
        Image image = RandomImage(200, 150, 3);
        LXBlur::LXIterativeConvolveH<Image, Thrower> steps(Thrower(&calls), image, QRect());
        EXPECT_THROW(steps(), std::exception);
        EXPECT_TRUE(SamePixels(image, RandomImage(200, 150, 3)));
    }
    EXPECT_EQ(pool.InUse(), 0u);
}

TEST(LineSteps, RunOutOfTiles) {
    const auto sweep = [](auto run) {
        return SweepExhaustion([] { return Image(300, 280); }, run,
                               [](const Image&, const ExhaustionOutcome& outcome) {
                                   EXPECT_EQ(outcome.handlerCalls, outcome.threw ? 1 : 0);
                               });
    };
    EXPECT_GE(sweep([](Image& image) {
                  LXBlur::LXIterativeConvolveV<Image, LXSimpleBoxKernel1D> steps(
                      LXSimpleBoxKernel1D(9), image, QRect());
                  for (int i = 0; i < 300; ++i)
                      steps();
              }),
              3u);
    EXPECT_GE(sweep([](Image& image) {
                  using Sums = LXAlphaBlurAccumulator;
                  LXBlur::LXBoxBlurIterativeV<Image, Sums, void> steps(2, Sums(2), image, QRect());
                  while (!steps()) {
                  }
              }),
              3u);
}
