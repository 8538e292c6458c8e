#include "support/ReferenceFilters.h"

#include "support/ReferenceBlend.h"
#include "support/ReferenceBlenders.h"
#include "support/ReferenceBlur.h"
#include "support/ReferenceSteps.h"

#include <cmath>
#include <random>

namespace {

using namespace Reference;

SharedPlane Copy(const Plane& plane) {
    return std::make_shared<Plane>(plane);
}

SharedPlane Blank(int width, int height) {
    return std::make_shared<Plane>(width, height);
}

LXRGBA32i PixelOf(const QColor& color) {
    return Pixel(color.blue(), color.green(), color.red(), color.alpha());
}

LXRGBA32i WithAlpha(LXRGBA32i pixel, int alpha) {
    pixel.alpha = std::uint8_t(alpha);
    return pixel;
}

/// Where a filter with a selection works, and where one without does.
QRect WorkRect(const FilterInput& in) {
    return in.selectionRect.isValid() ? in.selectionRect.translated(in.selectionOffset)
                                      : in.image.Rect();
}

// ---- stages -------------------------------------------------------------------------------------

using Kernel = std::function<LXRGBA32i(const Line&, int)>;

Stage Lines(const SharedPlane& plane, const QRect& rect, bool columns, const Kernel& kernel) {
    const QRect part = rect & plane->Rect();
    const auto step = [=](int n) {
        ChangeOneLine(*plane, part, columns, n, [&](const Line& line, int first, int count) {
            Line changed;
            for (int i = 0; i < count; ++i)
                changed.push_back(kernel(line, first + i));
            return changed;
        });
    };
    return {!part.isValid() ? 0 : columns ? part.width() : part.height(), step};
}

Stage Colours(const SharedPlane& plane, const QRect& rect,
              const std::function<LXRGBA32i(LXRGBA32i)>& change) {
    const std::vector<QRect> tiles = TileParts(rect & plane->Rect());
    return {int(tiles.size()), [=](int n) {
                const QRect tile = tiles[std::size_t(n)];
                for (int y = tile.top(); y <= tile.bottom(); ++y)
                    for (int x = tile.left(); x <= tile.right(); ++x)
                        plane->At(x, y) = change(plane->At(x, y));
            }};
}

/// Along lines and then along columns.
void AddPasses(Plan& plan, const SharedPlane& plane, const QRect& lines, const QRect& columns,
               const Kernel& kernel) {
    plan.Add(Lines(plane, lines, false, kernel));
    plan.Add(Lines(plane, columns, true, kernel));
}

using Mix = std::function<LXRGBA32i(LXRGBA32i, LXRGBA32i)>;

/// One rectangle in one image, from its top left corner on.
QRect Local(const Plane& plane, const QRect& rect) {
    return QRect(QPoint(0, 0), rect.size()) & plane.Rect().translated(-rect.topLeft());
}

/// One rectangle onto another, row by row, through the selection of an input if one is given.
Stage Blended(const SharedPlane& source, const SharedPlane& destination, const QRect& from,
              const QRect& to, const Mix& mix, const FilterInput* input = nullptr) {
    QRect part = Local(*source, from) & Local(*destination, to);
    QPoint toMask;
    SharedPlane mask;
    if (input) {
        toMask = input->selectionRect.topLeft();
        mask = Copy(input->selection);
        part &= Local(*mask, input->selectionRect);
    }
    return {part.height(), [=](int n) {
                for (int x = part.left(); x <= part.right(); ++x) {
                    const QPoint at(x, part.top() + n);
                    const QPoint s = from.topLeft() + at, d = to.topLeft() + at, m = toMask + at;
                    LXRGBA32i& pixel = destination->At(d.x(), d.y());
                    const LXRGBA32i mixed = mix(source->At(s.x(), s.y()), pixel);
                    pixel = mask ? PlainThrough(mixed, pixel, mask->At(m.x(), m.y()).alpha) : mixed;
                }
            }};
}

/// Onto the place of the selection, through it, or onto the whole image.
Stage BlendedBack(const SharedPlane& source, const SharedPlane& image, const QRect& from,
                  const FilterInput& in, const Mix& mix) {
    return Blended(source, image, from, WorkRect(in), mix,
                   in.selectionRect.isValid() ? &in : nullptr);
}

LXRGBA32i TakeSource(LXRGBA32i s, LXRGBA32i) {
    return s;
}

/// A filter that works on the image, or on a copy that a last stage puts back through the
/// selection.
template <class AddStages>
Plan OnImageOrCopy(const FilterInput& in, AddStages addStages) {
    Plan plan;
    const SharedPlane image = Copy(in.image);
    const bool selected = in.selectionRect.isValid();
    const SharedPlane work = selected ? Copy(in.image) : image;
    plan.results = {image};
    addStages(plan, work, WorkRect(in));
    if (selected)
        plan.Add(BlendedBack(work, image, WorkRect(in), in, TakeSource));
    return plan;
}

// ---- a blend in one call ------------------------------------------------------------------------

/// Also without a mask, if what is outside of it blends.
void BlendMasked(Mode mode, const Plane& source, const QRect& from, Plane& destination,
                 const QRect& to, double opacity, const Plane& mask, const QRect& maskRect,
                 bool outsideBlends) {
    const bool masked = !outsideBlends || mask.width != 0 || mask.height != 0;
    const auto op = unsigned(int(opacity * 256.0));
    const QPoint toMask = maskRect.topLeft() - to.topLeft();
    if (op != 0)
        ForOverlap(source, from, destination, to, [&](int x, int y, int sx, int sy) {
            const QPoint m = QPoint(x, y) + toMask;
            const bool inside = mask.Rect().contains(m) && maskRect.contains(m);
            LXRGBA32i& d = destination.At(x, y);
            if (inside || outsideBlends)
                d = Blend(mode, masked ? Shape::Mask : Shape::Tile, false, source.At(sx, sy), d, op,
                          inside ? mask.At(m.x(), m.y()).alpha : 255);
        });
}

// ---- pieces of the filters ----------------------------------------------------------------------

LXRGBA32i Vignetted(LXRGBA32i pixel, double x, double y, double a, double b, double slope,
                    bool linear, LXRGBA32i color) {
    double d;
    if (x - a == 0) {
        d = std::abs(y - b) - b;
    } else if (y - b == 0) {
        d = std::abs(x - a) - a;
    } else {
        const double dx = std::abs(x - a), dy = std::abs(y - b);
        const double t = a * a * (b * b) / (a * a * (dy * dy) / (dx * dx) + b * b);
        d = std::sqrt(dy * dy + dx * dx) - std::sqrt(std::abs(1 - t / (a * a)) * (b * b) + t);
    }
    if (!(d > 0))
        return pixel;
    double k = linear ? slope * d + 1.0 : slope * d * d + 1.0;
    if (k < 0)
        k = 0;
    for (const auto channel : {&LXRGBA32i::red, &LXRGBA32i::green, &LXRGBA32i::blue}) {
        const double v = color.*channel * (1.0 - k) + pixel.*channel * k + 0.5;
        pixel.*channel = std::uint8_t(int(v > 255.5 ? 255.5 : v));
    }
    return pixel;
}

template <class Tap>
Plan ThreeTaps(const FilterInput& in, int amount, int rightAndBottom, Tap tap) {
    return OnImageOrCopy(in, [&](Plan& plan, const SharedPlane& work, const QRect& r) {
        const Kernel kernel = [=](const Line& line, int p) {
            LXRGBA32i pixel{};
            for (const auto channel : Channels)
                pixel.*channel = std::uint8_t(tap(At(line, p - 1).*channel, At(line, p).*channel,
                                                  At(line, p + 1).*channel, amount));
            return pixel;
        };
        AddPasses(plan, work, Grown(r, 1), r.adjusted(0, 0, rightAndBottom, rightAndBottom),
                  kernel);
    });
}

Kernel GaussianKernel(double sigma) {
    const std::vector<double> weights = GaussianWeights(sigma);
    return [weights](const Line& line, int p) { return GaussianPremul(line, p, weights); };
}

int Reach(double sigma) {
    return std::max(int(3.0 * sigma), 1);
}

/// A pixel made of the mean alpha of a window of the line, which goes on with its ends or with
/// nothing.
template <class Make>
Kernel BoxOfAlpha(int radius, bool goesOn, Make make) {
    return [=](const Line& line, int p) {
        int sum = 0;
        for (int i = p - radius; i <= p + radius; ++i)
            if (goesOn || (i >= 0 && i < int(line.size())))
                sum += At(line, i).alpha;
        return make(sum / (2 * radius + 1));
    };
}

LXRGBA32i Black(int alpha) {
    return Pixel(0, 0, 0, alpha);
}

/// The picture of a shadow, cut out by the selection and grown by whole tiles.
SharedPlane CutOut(const FilterInput& in, bool useSelection, int radius, QPoint& offset) {
    const int width = in.image.width, height = in.image.height;
    SharedPlane work = Copy(in.image);
    LXRGBA32i beyond = in.beyond;
    if (!useSelection || (in.selection.width != 0 && in.selection.height != 0)) {
        work = Blank(width, height);
        beyond = {};
        const QRect all = in.image.Rect();
        BlendMasked(Mode::Source, in.image, all, *work, all, 1.0, in.selection,
                    all.translated(-in.selectionOffset), useSelection);
    }
    if (radius == 0)
        return work;
    const int n = (radius + 127) / 128;
    offset = QPoint(-n * 128, -n * 128);
    const auto grown = [&](int size) { return ((size - 1 + radius) / 128 + 1 + n) * 128; };
    const auto tiles = [](int size) { return (size + 127) / 128 * 128; };
    const SharedPlane canvas = Blank(grown(width), grown(height));
    for (int y = 0; width != 0 && y < tiles(height); ++y)
        for (int x = 0; x < tiles(width); ++x)
            canvas->At(n * 128 + x, n * 128 + y) =
                x < width && y < height ? work->At(x, y) : beyond;
    return canvas;
}

Stage Colorized(const SharedPlane& plane, LXRGBA32i color) {
    return Colours(plane, plane->Rect(), [=](LXRGBA32i p) { return WithAlpha(color, p.alpha); });
}

template <class Distribution, class... Arguments>
std::function<LXRGBA32i(LXRGBA32i)> Noise(unsigned int seed, Arguments... arguments) {
    const Distribution one(arguments...);
    return [engine = std::mt19937(seed), red = one, green = one, blue = one,
            alpha = one](LXRGBA32i) mutable {
        const auto draw = [&](Distribution& d) { return std::clamp(int(d(engine)), 0, 255); };
        const int r = draw(red), g = draw(green), b = draw(blue);
        return Pixel(b, g, r, draw(alpha));
    };
}

} // namespace

std::vector<int> Reference::Plan::Do(int limit, bool silentToo) const {
    std::vector<int> reported;
    int position = 0, value = 0;
    for (const Stage& stage : stages)
        for (int n = 0; n < stage.steps; ++n) {
            position += stage.report >= 0;
            const int next = stage.report < 0 ? value : stage.report != 0 ? stage.report : position;
            const bool goesOn = stage.always || (silentToo && next == value);
            if (int(reported.size()) >= limit && !goesOn)
                return reported;
            stage.step(n);
            if (next != value)
                reported.push_back(value = next);
        }
    return reported;
}

Plan Reference::Vignette(const FilterInput& in, const LXVignetteProcessing::Params& params) {
    if (params.shape != 0 && params.shape != 1) {
        Plan plan;
        plan.results = {Copy(in.image)};
        return plan;
    }
    const double a = in.image.width * 0.5, b = in.image.height * 0.5;
    const double strength = (100 - params.strength) / 100.0, size = double(params.size);
    const bool linear = params.shape == 0;
    const double slope = (strength - 1.0) / (linear ? size : size * size);
    const LXRGBA32i color = PixelOf(params.color);
    return OnImageOrCopy(in, [&](Plan& plan, const SharedPlane& work, const QRect& r) {
        const std::vector<QRect> tiles = TileParts(r & work->Rect());
        plan.Add({int(tiles.size()), [=](int n) {
                      ForSkippedRows(
                          tiles[std::size_t(n)], work->height, [&](int x, int y, int toldY) {
                              work->At(x, y) =
                                  Vignetted(work->At(x, y), x, toldY, a, b, slope, linear, color);
                          });
                  }});
    });
}

Plan Reference::Smoothen(const FilterInput& in, int amount) {
    return ThreeTaps(in, amount, 2, Box);
}

Plan Reference::SharpenFilter(const FilterInput& in, int amount) {
    return ThreeTaps(in, amount, 0, Sharpen);
}

Plan Reference::HighPass(const FilterInput& in, const LXHighPassProcessing::Params& params,
                         const Plane* cached) {
    const auto index = unsigned(params.modeIndex);
    const Mode modes[] = {Mode::SourceOver, Mode::Overlay, Mode::SoftLight, Mode::HardLight};
    const Mode mode = index < 4 ? modes[index] : Mode::SourceOver;
    const bool selected = in.selectionRect.isValid();
    const QRect r = WorkRect(in);
    Plan plan;
    const SharedPlane image = Copy(in.image), work = Copy(in.image),
                      kept = cached ? Copy(*cached) : Blank(0, 0);
    const SharedPlane cache = plan.kept = Copy(*kept);
    plan.results = {image};
    if (cached) {
        plan.range = 2;
        plan.stages.push_back({1, [](int) {}, 1, true});
    } else {
        const int grow = selected ? int(params.radius) : 0;
        AddPasses(plan, work, Grown(r, grow), r, GaussianKernel(params.radius));
        plan.Add(Blended(image, work, r, r,
                         [](LXRGBA32i s, LXRGBA32i d) { return PlainSubtract(s, d, 128, false); }));
        const int total = plan.range;
        const int extra = total >= 100 ? total / 100 : selected ? 2 : 1;
        plan.range = total + extra;
        const auto keep = [=](int) {
            *kept = selected ? Plane(r.width(), r.height()) : *work;
            if (selected)
                BlendMasked(Mode::Source, *work, r, *kept, kept->Rect(), 1.0, in.selection,
                            in.selectionRect, false);
            if (!image->pixels.empty())
                *cache = *kept;
        };
        plan.stages.push_back({1, keep, selected ? total + extra / 2 : -1});
    }
    const auto blend = [=](int) {
        BlendMasked(mode, *kept, kept->Rect(), *image, r, params.opacity / 100.0,
                    selected ? in.selection : Plane(0, 0), in.selectionRect, !selected);
    };
    plan.stages.push_back({1, blend, plan.range});
    return plan;
}

Plan Reference::GaussianBlur(const FilterInput& in, double radius) {
    return OnImageOrCopy(in, [&](Plan& plan, const SharedPlane& work, const QRect& r) {
        AddPasses(plan, work, Grown(r, Reach(radius)), r, GaussianKernel(radius));
    });
}

Plan Reference::BoxBlur(const FilterInput& in, int radius) {
    const Kernel kernel = [=](const Line& line, int p) {
        return WindowMean(line, p, radius, true);
    };
    return OnImageOrCopy(in, [&](Plan& plan, const SharedPlane& work, const QRect& r) {
        AddPasses(plan, work, Grown(r, radius), r, kernel);
    });
}

FilterInput Reference::Extended(FilterInput in, QRect visible, int margin, QPoint& offset) {
    const QRect all = in.image.Rect();
    if (visible == all)
        return in;
    if (in.selectionRect.isValid())
        visible = visible & in.selectionRect.translated(in.selectionOffset);
    const QRect target = Grown(all, margin) & (visible | all);
    if (target == all)
        return in;
    Plane canvas(target.width(), target.height());
    for (int y = 0; y < in.image.height; ++y)
        for (int x = 0; x < in.image.width; ++x)
            canvas.At(x - target.left(), y - target.top()) = in.image.At(x, y);
    in.image = canvas;
    in.selectionOffset -= target.topLeft();
    offset += target.topLeft();
    return in;
}

Plan Reference::DiffuseGlow(const FilterInput& in, const LXDiffuseGlowProcessing::Params& params) {
    const double sigma = params.radius;
    const std::vector<double> weights = GaussianWeights(sigma);
    const Kernel kernel = [=](const Line& line, int p) {
        return WithAlpha(At(line, p), Gaussian(line, p, weights).alpha);
    };
    const bool selected = in.selectionRect.isValid();
    const QRect r = selected ? Grown(WorkRect(in), 2 * Reach(sigma)) : in.image.Rect();
    const LXRGBA32i color = PixelOf(params.color);
    const int threshold = params.threshold, opacity = (params.opacity << 8) / 100;
    Plan plan;
    const SharedPlane image = Copy(in.image), glow = Copy(in.image);
    plan.results = {image};
    plan.Add(Colours(glow, r, [=](LXRGBA32i p) {
        const int luma = (p.blue * 11 + p.green * 59 + p.red * 30) / 100;
        return WithAlpha(color, luma < threshold ? 0 : 255);
    }));
    AddPasses(plan, glow, r, r, kernel);
    plan.Add(
        Colours(glow, r, [=](LXRGBA32i p) { return WithAlpha(p, p.alpha < threshold ? 0 : 255); }));
    AddPasses(plan, glow, r, r, kernel);
    const Mix mix = [=, over = params.mode == 0](LXRGBA32i s, LXRGBA32i d) {
        return over ? PlainSourceOver(s, d, opacity, true, selected)
                    : PlainDestinationOver(s, d, opacity);
    };
    plan.Add(BlendedBack(glow, image, WorkRect(in), in, mix));
    return plan;
}

Plan Reference::AddNoise(const FilterInput& in, const LXAddNoiseProcessing::Params& params,
                         const Plane* cached, unsigned int seed) {
    const bool selected = in.selectionRect.isValid();
    Plan plan;
    const SharedPlane image = Copy(in.image);
    const QRect size = selected ? in.selectionRect : in.image.Rect();
    const SharedPlane noise = Copy(cached ? *cached : Plane(size.width(), size.height()));
    plan.results = {image};
    plan.kept = cached ? noise : Blank(0, 0);
    if (!cached) {
        plan.Add(Colours(noise, noise->Rect(),
                         params.distribution == 0
                             ? Noise<std::uniform_int_distribution<int>>(seed, 0, 255)
                             : Noise<std::normal_distribution<double>>(seed, 255.0, 255.0)));
        const SharedPlane kept = plan.kept;
        plan.stages.push_back({1, [=](int) { *kept = *noise; }, -1});
    }
    const int opacity = (params.amount << 8) / 100;
    const Mix mix = [=, keepAlpha = params.keepAlpha](LXRGBA32i s, LXRGBA32i d) {
        return PlainSourceOver(s, d, opacity, keepAlpha, selected);
    };
    plan.Add(BlendedBack(noise, image, noise->Rect(), in, mix));
    return plan;
}

Plan Reference::DropShadow(const FilterInput& in, const LXShadowParams& params, bool useSelection) {
    const int radius = params.blurRadius;
    const LXRGBA32i color = PixelOf(params.color);
    Plan plan;
    const SharedPlane work = CutOut(in, useSelection, radius, plan.offset);
    plan.results = {work};
    if (radius == 0) {
        plan.Add(Colorized(work, color));
        return plan;
    }
    const auto coloured = [=](int alpha) { return WithAlpha(color, alpha); };
    plan.Add(Lines(work, work->Rect(), false, BoxOfAlpha(radius, true, Black)));
    plan.Add(Lines(work, work->Rect(), true, BoxOfAlpha(radius, true, coloured)));
    return plan;
}

Plan Reference::InnerShadow(const FilterInput& in, const LXShadowParams& params,
                            bool useSelection) {
    const int radius = params.blurRadius;
    Plan plan;
    const SharedPlane color = CutOut(in, useSelection, 0, plan.offset);
    const SharedPlane mask = CutOut(in, useSelection, radius, plan.offset);
    plan.results = {color, mask};
    if (radius == 0) {
        plan.Add(
            Colours(mask, mask->Rect(), [](LXRGBA32i p) { return WithAlpha(p, 255 - p.alpha); }));
    } else {
        const auto inverted = [](int alpha) { return Black(255 - alpha); };
        plan.Add(Lines(mask, mask->Rect(), false, BoxOfAlpha(radius, true, Black)));
        plan.Add(Lines(mask, mask->Rect(), true, BoxOfAlpha(radius, true, inverted)));
    }
    plan.Add(Colorized(color, PixelOf(params.color)));
    return plan;
}

Plan Reference::RefineSelection(const FilterInput& in, QSize canvas,
                                const RMRefineSelectionProcessing::Params& params) {
    const double smooth = params.smoothRadius;
    const int shift = params.shift;
    Plan plan;
    plan.results = {Blank(0, 0)};
    if (!in.selectionRect.isValid())
        return plan;
    SharedPlane result = Copy(in.image);
    plan.offset = in.selectionOffset;
    if (smooth != 0 || shift > 0) {
        const int margin = std::max(shift, 0) + (smooth != 0 ? int(smooth * 3.0 + 1.0) : 0);
        const QRect target = QRect(QPoint(0, 0), canvas) &
                             Grown(in.image.Rect().translated(in.selectionOffset), margin);
        plan.offset = target.topLeft();
        result = Blank(target.width(), target.height());
        plan.Add(Blended(Copy(in.image), result, target.translated(-in.selectionOffset),
                         result->Rect(), TakeSource));
    }
    plan.results = {result};
    const QRect all = result->Rect();
    for (int round = 0; round < 3 && smooth != 0; ++round)
        AddPasses(plan, result, all, all, BoxOfAlpha(int(smooth), false, Black));
    if (shift != 0) {
        const Kernel kernel = [=](const Line& line, int p) {
            return WithAlpha(At(line, p), ShiftedAlpha(line, p, shift));
        };
        AddPasses(plan, result, all, all, kernel);
    }
    return plan;
}

std::array<double, 3> Reference::PlainDistancePointEllipseSpecial(double e0, double e1, double y0,
                                                                  double y1) {
    const double esqr0 = e0 * e0, esqr1 = e1 * e1, ey0 = e0 * y0, ey1 = e1 * y1;
    if (y0 > 0 && y1 > 0) {
        double t0 = -esqr1 - ey1, t1 = -esqr1 + std::sqrt(ey0 * ey0 + ey1 * ey1), t = t0;
        for (int round = 0; round < 256; ++round) {
            t = (t0 + t1) * 0.5;
            if (t == t0 || t == t1)
                break;
            const double u = ey0 / (t + esqr0), v = ey1 / (t + esqr1), f = u * u + v * v - 1;
            (f > 0 ? t0 : t1) = t;
            if (f == 0)
                break;
        }
        const double x0 = esqr0 * y0 / (t + esqr0), x1 = esqr1 * y1 / (t + esqr1);
        return {std::sqrt((x0 - y0) * (x0 - y0) + (x1 - y1) * (x1 - y1)), x0, x1};
    }
    if (y0 > 0)
        return {std::abs(y1 - e1), 0, 0};
    const double denom = esqr0 - esqr1;
    if (!(denom > ey0))
        return {std::abs(y0 - e0), 0, 0};
    const double xde = ey0 / denom, x0 = xde * e0, x1 = std::sqrt(std::abs(1 - xde * xde));
    return {std::sqrt(x1 * x1 + (x0 - y0) * (x0 - y0)), x0, x1};
}

std::array<double, 3> Reference::PlainDistancePointEllipse(double e0, double e1, double y0,
                                                           double y1) {
    const bool swapped = e1 > e0;
    std::array<double, 3> special =
        swapped ? PlainDistancePointEllipseSpecial(e1, e0, std::abs(y1), std::abs(y0))
                : PlainDistancePointEllipseSpecial(e0, e1, std::abs(y0), std::abs(y1));
    if (swapped)
        std::swap(special[1], special[2]);
    return {special[0], y0 < 0 ? -special[1] : special[1], y1 < 0 ? -special[2] : special[2]};
}
