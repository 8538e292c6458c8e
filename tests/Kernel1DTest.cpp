#include "LXBlurAccumulator.h"
#include "LXGaussian1D.h"
#include "LXPixelFunctors.h"
#include "LXShiftEdge1D.h"
#include "LXSimpleKernel1D.h"
#include "support/Plane.h"
#include "support/ReferenceKernels.h"

#include <climits>
#include <thread>

namespace {

using Reference::Line;
using Reference::Through;

Line RandomLine(int size, unsigned int seed) {
    return Reference::RandomPlane(size, 1, seed).pixels;
}

Line AlphaLine(std::initializer_list<int> alphas) {
    Line line;
    for (const int a : alphas)
        line.push_back({1, 2, 3, std::uint8_t(a)});
    return line;
}

/// The kernel on short and long lines, with windows that leave them on both sides.
template <class Kernel, class Expected>
void CheckOnLines(const Kernel& kernel, int reach, Expected expected) {
    ASSERT_EQ(kernel.Left(), reach);
    ASSERT_EQ(kernel.Right(), reach);
    for (const int size : {1, 2, 3, 7, 40, 130}) {
        const Line source = RandomLine(size, unsigned(size));
        for (const int offset : {0, 3, -5}) {
            const Line result = Through(kernel, source, offset, source.size());
            for (int i = 0; i < size; ++i)
                ASSERT_EQ(result[std::size_t(i)], expected(source, i + offset))
                    << size << " " << offset << " " << i;
        }
    }
}

} // namespace

namespace {

/// A formula on each channel of three neighbours.
template <class Formula>
auto OfNeighbours(Formula formula, int weight) {
    return [=](const Line& line, long long c) {
        LXRGBA32i result{};
        for (const auto n : Reference::Channels)
            result.*n =
                std::uint8_t(formula(Reference::At(line, c - 1).*n, Reference::At(line, c).*n,
                                     Reference::At(line, c + 1).*n, weight));
        return result;
    };
}

/// Every sum of two sides with every centre, and sides of 0 in a channel.
template <class Kernel, class Formula>
void CheckNeighbourhoods(Formula formula) {
    for (const int weight : {0, 1, 100, 255, 382, 383, 765, -1, -900, 20000})
        for (int sides = 0; sides <= 510; ++sides) {
            const auto l = std::uint8_t(std::min(sides, 255)), r = std::uint8_t(sides - l);
            Line line;
            for (int i = 0; i < 256; ++i) {
                const auto c = std::uint8_t(i);
                line.insert(line.end(), {{l, r, 0, l}, {c, c, 0, c}, {r, l, 0, r}});
            }
            const Line result = Through(Kernel(weight), line, 0, line.size());
            for (std::size_t c = 1; c < line.size(); c += 3)
                ASSERT_EQ(result[c], OfNeighbours(formula, weight)(line, (long long)c))
                    << weight << " " << sides << " " << c / 3;
        }
}

} // namespace

TEST(SimpleKernels, EveryNeighbourhoodOfOneChannel) {
    CheckNeighbourhoods<LXSimpleBoxKernel1D>(Reference::Box);
    CheckNeighbourhoods<LXSimpleSharpenKernel1D>(Reference::Sharpen);
}

TEST(SimpleKernels, Lines) {
    for (int weight = -3; weight <= 400; weight += 13) {
        CheckOnLines(LXSimpleBoxKernel1D(weight), 1, OfNeighbours(Reference::Box, weight));
        CheckOnLines(LXSimpleSharpenKernel1D(weight), 1, OfNeighbours(Reference::Sharpen, weight));
    }
}

TEST(Gaussians, Lines) {
    for (const double sigma : {0.1, 0.34, 0.5, 1.0, 1.7, 4.99, 15.0, 60.3}) {
        const auto weights = Reference::GaussianWeights(sigma);
        const int radius = int(weights.size() / 2);
        CheckOnLines(LXGaussian1D(sigma), radius, [&](const Line& line, long long c) {
            return Reference::Gaussian(line, c, weights);
        });
        CheckOnLines(LXGaussian1DPremul(sigma), radius, [&](const Line& line, long long c) {
            return Reference::GaussianPremul(line, c, weights);
        });
        CheckOnLines(LXGaussianAlpha1D(sigma), radius, [&](const Line& line, long long c) {
            LXRGBA32i expected = Reference::At(line, c);
            expected.alpha = Reference::Gaussian(line, c, weights).alpha;
            return expected;
        });
    }
    EXPECT_EQ(LXGaussian1D(0.1).Left(), 1);
    EXPECT_EQ(LXGaussian1D(2.0 / 3).Left(), 2);
    const Line clear(9, LXRGBA32i{200, 100, 50, 0});
    EXPECT_EQ(Through(LXGaussian1DPremul(2), clear, 0, 9), Line(9));
}

/// Line is operator() many times over, byte for byte: on opaque, random and faint pixels.
TEST(Gaussians, WholeLines) {
    for (const double sigma : {0.1, 0.7, 5.0, 15.0, 40.0})
        for (const unsigned int kind : {0U, 1U, 2U}) {
            Line source = RandomLine(1000, kind);
            for (LXRGBA32i& pixel : source)
                pixel.alpha = kind == 0 ? std::uint8_t(255)
                                        : std::uint8_t(pixel.alpha / (kind == 1 ? 1 : 60));
            LXGaussian1DPremul kernel(sigma);
            const Line whole = Through(kernel, source, 0, 1000);
            for (const auto& [first, last] :
                 {std::pair(0, 1000), std::pair(3, 4), std::pair(70, 399)}) {
                Line line(1000, LXRGBA32i{9, 9, 9, 9}), expected = line;
                std::copy(whole.begin() + first, whole.begin() + last, expected.begin() + first);
                kernel.SetSource(&source);
                kernel.SetDestination(&line);
                kernel.Line(first, last);
                for (std::size_t i = 0; i < line.size(); ++i)
                    ASSERT_EQ(line[i], expected[i]) << sigma << " " << kind << " " << i;
            }
        }
}

TEST(Gaussians, ValuesThatAreNoSigma) {
    const Line source = RandomLine(20, 1);
    for (const double sigma : {0.0, 1e-200, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        ASSERT_EQ(LXGaussian1D(sigma).Right(), 1) << sigma;
        EXPECT_EQ(Through(LXGaussian1D(sigma), source, 0, 20), Line(20)) << sigma;
        EXPECT_EQ(Through(LXGaussian1DPremul(sigma), source, 0, 20), Line(20)) << sigma;
    }
    CheckOnLines(LXGaussian1D(-2), 1, [](const Line& line, long long c) {
        return Reference::Gaussian(line, c, Reference::GaussianWeights(-2));
    });
    LXGaussian1D full(3);
    const LXGaussian1D taken = std::move(full);
    EXPECT_EQ(Through(full, source, 0, 20), Line(20));
    EXPECT_NE(Through(taken, source, 0, 20), Line(20));
    // Squares of taps beyond the range of int.
    EXPECT_EQ(Through(LXGaussian1D(16000), Line(1, LXRGBA32i{7, 70, 170, 255}), 0, 1)[0],
              (LXRGBA32i{7, 70, 170, 255}));
}

TEST(ShiftEdge, Lines) {
    for (int shift = -50; shift <= 50; ++shift)
        CheckOnLines(LXShiftEdge1D(shift), std::abs(shift), [&](const Line& line, long long c) {
            LXRGBA32i expected = Reference::At(line, c);
            expected.alpha = std::uint8_t(Reference::ShiftedAlpha(line, c, shift));
            return expected;
        });
    EXPECT_EQ(Through(LXShiftEdge1D(2), AlphaLine({0, 0, 255, 0, 0}), 0, 5),
              AlphaLine({255, 255, 255, 255, 255}));
    EXPECT_EQ(Through(LXShiftEdge1D(-1), AlphaLine({255, 255, 255, 255}), 0, 4),
              AlphaLine({0, 255, 255, 0}));
}

TEST(Kernels, ExtremesAreHarmless) {
    const Line source = AlphaLine({10, 200, 30});
    EXPECT_EQ(Through(LXShiftEdge1D(INT_MAX), source, 0, 3), AlphaLine({200, 200, 200}));
    EXPECT_EQ(Through(LXShiftEdge1D(INT_MIN), source, 0, 3), AlphaLine({0, 0, 0}));
    EXPECT_EQ(LXShiftEdge1D(INT_MIN).Left(), INT_MAX);
    EXPECT_EQ(Through(LXShiftEdge1D(0), source, INT_MAX, 3), AlphaLine({30, 30, 30}));
    EXPECT_EQ(Through(LXGaussianAlpha1D(1), source, INT_MIN, 1), AlphaLine({10}));
    EXPECT_EQ(Through(LXGaussian1D(1), source, INT_MAX, 2), AlphaLine({30, 30}));
    // On an even line the terms of the weight cancel, even where they wrap around.
    for (const int weight : {INT_MIN, INT_MAX, 1 << 30}) {
        EXPECT_EQ(Through(LXSimpleBoxKernel1D(weight), AlphaLine({9}), 0, 1), AlphaLine({9}));
        EXPECT_EQ(Through(LXSimpleSharpenKernel1D(weight), AlphaLine({9}), 0, 1), AlphaLine({9}));
    }
}

TEST(Kernels, ThreadsShareOne) {
    const Line source = RandomLine(4000, 3);
    LXGaussian1DPremul kernel(2);
    const Line expected = Through(kernel, source, 0, source.size());
    Line result(source.size());
    kernel.SetSource(&source);
    kernel.SetDestination(&result);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&kernel, t] {
            for (int i = t; i < 4000; i += 4)
                kernel(i);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(result, expected);
}

namespace {

/// Slides a window along the line, and compares each result with that of a plain sum.
template <class Accumulator, class Expected>
void CheckWindow(Accumulator accumulator, const Line& line, Expected expected) {
    const int radius = accumulator.Radius();
    accumulator.Add({1, 2, 3, 4});
    accumulator.Reset();
    for (int p = -1 - radius; p <= radius - 1; ++p)
        accumulator.Add(Reference::At(line, p));
    for (int c = 0; c < int(line.size()); ++c) {
        accumulator.Subtract(Reference::At(line, c - radius - 1));
        accumulator.Add(Reference::At(line, c + radius));
        LXRGBA32i result{11, 22, 33, 44};
        accumulator.Finalize(result);
        ASSERT_EQ(result, expected(c)) << line.size() << " " << radius << " " << c;
    }
}

} // namespace

TEST(BlurAccumulators, AreWindowMeans) {
    const LXRGBA32i colour{5, 6, 7, 8};
    for (const int size : {1, 2, 13, 90})
        for (int radius = 0; radius <= 300 && !HasFatalFailure(); ++radius) {
            const Line line = RandomLine(size, unsigned(radius) + 1);
            const auto mean = [&](bool premultiplied) {
                return [&, premultiplied](int c) {
                    return Reference::WindowMean(line, c, radius, premultiplied);
                };
            };
            const auto alpha = [&](int c) { return mean(false)(c).alpha; };
            CheckWindow(LXRGBABlurAccumulator(radius), line, mean(false));
            CheckWindow(LXRGBABlurAccumulatorPremul(radius), line, mean(true));
            CheckWindow(LXAlphaBlurAccumulator(radius), line, [&](int c) {
                return LXRGBA32i{11, 22, 33, alpha(c)};
            });
            CheckWindow(LXAlphaBlurAccumulatorWithInvert(radius), line, [&](int c) {
                return LXRGBA32i{11, 22, 33, std::uint8_t(255 - alpha(c))};
            });
            CheckWindow(LXAlphaBlurAccumulatorWithRGBColorize(radius, colour), line, [&](int c) {
                return LXRGBA32i{5, 6, 7, alpha(c)};
            });
        }
}

TEST(BlurAccumulators, RadiiThatAreNone) {
    const int product = LXWrappingDivide(INT_MIN, -1);
    EXPECT_EQ(product, INT_MIN);
    for (const int radius : {-1, INT_MAX}) { // a window of -1 pixel
        LXRGBABlurAccumulator mean(radius);
        mean.Add({1, 2, 3, 4});
        LXRGBA32i result{};
        mean.Finalize(result);
        EXPECT_EQ(result, (LXRGBA32i{255, 254, 253, 252})) << radius;
    }
}

TEST(PixelFunctors, EveryValue) {
    for (int v = 0; v < 256; ++v) {
        const auto a = std::uint8_t(v), b = std::uint8_t(v / 2), c = std::uint8_t(255 - v);
        LXRGBA32i coloured{1, 2, 3, a}, inverted{a, c, b, b}, transparent{a, b, c, a};
        LXColorize<LXRGBA32i>(LXRGBA32i{a, b, c, 77})(coloured);
        LXInvertColor<LXRGBA32i>()(inverted);
        LXInvertColorAlpha<LXRGBA32i>()(transparent);
        EXPECT_EQ(coloured, (LXRGBA32i{a, b, c, a}));
        EXPECT_EQ(inverted, (LXRGBA32i{c, a, std::uint8_t(255 - b), b}));
        EXPECT_EQ(transparent, (LXRGBA32i{a, b, c, c}));
    }
}
