#include "ReferenceInpaint.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>

namespace Reference {

namespace {

int Alpha(std::uint32_t word) {
    return int(word >> 24);
}

int Channel(std::uint32_t word, int shift) {
    return int(word >> shift & 0xFF);
}

/// First column and row of the windows, seen from the pixel.
const int windows[9][2] = {{-1, -1}, {-1, -2}, {-1, 0}, {-2, -1}, {0, -1},
                           {-2, -2}, {0, -2},  {0, 0},  {-2, 0}};

/// The mean of the eight others in the first window of known pixels.
template <class Known>
bool WindowMean(const Words& image, int x, int y, int dx, int dy, int rounding, Known known,
                std::uint32_t& mean) {
    for (const auto& window : windows) {
        const int left = x + window[0], top = y + window[1];
        const auto forOthers = [&](auto visit) {
            for (int j = top; j < top + 3; ++j)
                for (int i = left; i < left + 3; ++i)
                    if (i != x || j != y)
                        visit(i, j);
        };
        bool complete = true;
        forOthers([&](int i, int j) { complete = complete && known(i, j); });
        if (!complete)
            continue;
        int sums[4] = {0, 0, 0, 0};
        forOthers([&](int i, int j) {
            if (!image.Has(i + dx, j + dy))
                throw std::out_of_range("picture");
            for (int c = 0; c < 4; ++c)
                sums[c] += Channel(image.At(i + dx, j + dy), 8 * c);
        });
        mean = 0;
        for (int c = 0; c < 4; ++c)
            mean |= std::uint32_t((sums[c] + rounding) >> 3) << 8 * c;
        return true;
    }
    return false;
}

template <class Known>
void AddLonePixels(Words& band, const Bounds& bounds, Known known) {
    for (int y = bounds.top; y <= bounds.bottom; ++y)
        for (int x = bounds.left; x <= bounds.right; ++x) {
            int neighbours = 0;
            for (int j = y - 1; j <= y + 1; ++j)
                for (int i = x - 1; i <= x + 1; ++i)
                    neighbours += (i != x || j != y) && known(i, j);
            if (neighbours == 8 && band.Has(x, y) && !known(x, y))
                band.At(x, y) = 0xFF000000;
        }
}

} // namespace

Words Gradient(const Words& mask, const Bounds& bounds, Beyond beyond) {
    Words result(mask.width, mask.height);
    for (int y = bounds.top; y <= bounds.bottom; ++y)
        for (int x = bounds.left; x <= bounds.right; ++x) {
            if (!mask.Has(x, y))
                continue;
            const auto a = [&](int i, int j) {
                if (beyond == Beyond::Zero)
                    return bounds.Has(i, j) && mask.Has(i, j) ? Alpha(mask.At(i, j)) : 0;
                return Alpha(mask.At(std::clamp(i, bounds.left, bounds.right),
                                     std::clamp(j, bounds.top, bounds.bottom)));
            };
            const int gx = a(x + 1, y - 1) - a(x - 1, y - 1) - 2 * a(x - 1, y) + 2 * a(x + 1, y) -
                           a(x - 1, y + 1) + a(x + 1, y + 1);
            const int gy = a(x - 1, y - 1) + 2 * a(x, y - 1) + a(x + 1, y - 1) - a(x - 1, y + 1) -
                           2 * a(x, y + 1) - a(x + 1, y + 1);
            int m = 0;
            while (m < 255 && (m + 1) * (m + 1) <= gx * gx + gy * gy)
                ++m;
            result.At(x, y) = std::uint32_t(m) << 24;
        }
    return result;
}

void InpaintLayers(Words& image) {
    const Bounds all = {0, 0, image.width - 1, image.height - 1};
    Words mask(image.width, image.height);
    for (std::size_t i = 0; i < mask.pixels.size(); ++i)
        mask.pixels[i] = Alpha(image.pixels[i]) == 255 ? 0 : 0xFFFF0000;
    const auto known = [&](int x, int y) { return mask.Has(x, y) && mask.At(x, y) < 0xFF000000; };
    Words band = Gradient(mask, all, Beyond::Clamped);
    AddLonePixels(band, all, known);
    Bounds rect = {INT_MAX, INT_MAX, -1, -1};
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            if (Alpha(band.At(x, y)) != 0)
                rect = {std::min(rect.left, x), std::min(rect.top, y), std::max(rect.right, x),
                        std::max(rect.bottom, y)};
    for (bool changed = true; changed;) {
        changed = false;
        Words nextMask = mask;
        const Words frozenBand = band;
        for (int y = rect.top; y <= rect.bottom; ++y)
            for (int x = rect.left; x <= rect.right; ++x) {
                if (Alpha(frozenBand.At(x, y)) != 255)
                    continue;
                std::uint32_t mean;
                if (known(x, y)) {
                    band.At(x, y) = 0;
                    changed = true;
                } else if (WindowMean(image, x, y, 0, 0, 4, known, mean)) {
                    image.At(x, y) = mean;
                    nextMask.At(x, y) = band.At(x, y) = 0;
                    changed = true;
                    for (int j = y - 1; j <= y + 1; ++j)
                        for (int i = x - 1; i <= x + 1; ++i)
                            if ((i != x || j != y) && mask.Has(i, j) && !known(i, j))
                                band.At(i, j) = 0xFF000000;
                }
            }
        mask = nextMask;
    }
}

BandInpaint::BandInpaint(Words& picture, const Words& givenMask, const Bounds& rect, int offsetX,
                         int offsetY)
    : image(picture), mask(givenMask), band(Gradient(givenMask, rect, Beyond::Zero)),
      maskRect(rect), bandRect(rect), dx(offsetX), dy(offsetY) {
    AddLonePixels(band, rect, [&](int x, int y) {
        return maskRect.Has(x, y) && mask.Has(x, y) && mask.At(x, y) < 0xFF000000;
    });
}

bool BandInpaint::Pass(Order order) {
    if (!active)
        return false;
    const Words frozenMask = mask, frozenBand = band;
    const auto known = [&](int x, int y) {
        return maskRect.Has(x, y) && mask.Has(x, y) && frozenMask.At(x, y) < 0xFF000000;
    };
    const auto mark = [&](int x, int y) { // beyond the mask there is no band
        if (mask.Has(x, y) && !known(x, y))
            band.At(x, y) = 0xFF000000;
    };
    int minX = INT_MAX, maxX = INT_MIN, minY = INT_MAX, maxY = INT_MIN;
    bool changed = false;
    const auto visit = [&](int x, int y) {
        if (!bandRect.Has(x, y) || Alpha(frozenBand.At(x, y)) == 0)
            return;
        std::uint32_t mean;
        if (known(x, y)) {
            band.At(x, y) = 0;
            changed = true;
        } else if (WindowMean(image, x, y, dx, dy, 0, known, mean)) {
            if (!image.Has(x + dx, y + dy))
                throw std::out_of_range("picture");
            image.At(x + dx, y + dy) = mean;
            changed = true;
            mask.At(x, y) = band.At(x, y) = 0;
            for (int j = y - 1; j <= y + 1; ++j) {
                if (j < maskRect.top || j > maskRect.bottom)
                    continue;
                if (x > maskRect.left && x <= maskRect.right)
                    mark(x - 1, j);
                if (j != y && x >= maskRect.left && x < maskRect.right)
                    mark(x, j);
                if (x + 1 >= maskRect.left && x + 1 < maskRect.right)
                    mark(x + 1, j);
            }
        }
        minX = std::min(minX, x);
        maxX = std::max(maxX, x);
        minY = std::min(minY, y);
        maxY = std::max(maxY, y);
    };
    const auto walk = [&] {
        if (order == Order::Backwards) {
            for (int y = mask.height - 1; y >= 0; --y)
                for (int x = mask.width - 1; x >= 0; --x)
                    visit(x, y);
        } else {
            for (int top = 0; top < mask.height; top += 128)
                for (int left = 0; left < mask.width; left += 128)
                    for (int y = top; y < std::min(top + 128, mask.height); ++y)
                        for (int x = left; x < std::min(left + 128, mask.width); ++x)
                            visit(x, y);
        }
    };
    try {
        walk();
    } catch (const std::out_of_range&) { // the rest of the pass is left out
    }
    bandRect = minX <= maxX && minY <= maxY ? Bounds{minX, minY, maxX, maxY} : Bounds{0, 0, -1, -1};
    active = changed;
    return active;
}

double DistanceInpaint::Field(int x, int y) const {
    if (!mask.Has(x, y))
        return 1e7;
    return double(field[std::size_t(y) * std::size_t(mask.width) + std::size_t(x)]);
}

bool DistanceInpaint::Known(int x, int y) const {
    return mask.Has(x, y) && mask.At(x, y) < 0xFF000000;
}

std::array<double, 2> DistanceInpaint::FieldDirection(int x, int y) const {
    const auto at = [&](int i, int j) {
        return Field(std::clamp(i, 0, mask.width - 1), std::clamp(j, 0, mask.height - 1));
    };
    double dx = at(x + 1, y) - at(x, y), dy = at(x, y + 1) - at(x, y);
    const double m = std::sqrt(dx * dx + dy * dy);
    if (m > 0.0001)
        dx /= m, dy /= m;
    return {dy, dx};
}

double DistanceInpaint::Solve(int x1, int y1, int x2, int y2) const {
    const double t1 = Field(x1, y1), t2 = Field(x2, y2);
    if (Known(x1, y1) && Known(x2, y2)) {
        const double d = 2 - (t1 - t2) * (t1 - t2);
        if (d < 0)
            return 1000000;
        const double s = std::sqrt(d), r = (t1 + t2 - s) * 0.5;
        if (r >= t1 && r >= t2)
            return r;
        return s + r < t1 || s + r < t2 ? 1000000 : s + r;
    }
    if (Known(x1, y1))
        return t1 + 1;
    return Known(x2, y2) ? t2 + 1 : 1000000;
}

std::uint32_t DistanceInpaint::Inpaint(int x, int y) const {
    double sums[4] = {0, 0, 0, 0}, weights[4] = {0, 0, 0, 0};
    for (int j = y - 3; j <= y + 3; ++j)
        for (int i = x - 3; i <= x + 3; ++i) {
            if (j == y || i == x || !Known(i, j))
                continue;
            const float di = float(i - x), dj = float(j - y);
            const std::array<double, 2> g = FieldDirection(i, j);
            const float len = std::sqrt(di * di + dj * dj);
            const float dot = float(g[0]) * di + float(g[1]) * dj;
            const double w =
                (dot / len) * (1 / (len * len)) * (1 / (std::abs(Field(i, j) - Field(x, y)) + 1));
            const bool inner =
                Known(i + 1, j) && Known(i - 1, j) && Known(i, j + 1) && Known(i, j - 1);
            for (int c = 0; c < 4; ++c) {
                const int gx =
                    inner ? Channel(image.At(i + 1, j), 8 * c) - Channel(image.At(i - 1, j), 8 * c)
                          : 0;
                const int gy =
                    inner ? Channel(image.At(i, j + 1), 8 * c) - Channel(image.At(i, j - 1), 8 * c)
                          : 0;
                sums[c] += w * double(float(Channel(image.At(i, j), 8 * c)) + float(gx) * di +
                                      float(gy) * dj);
                weights[c] += w;
            }
        }
    std::uint32_t result = 0;
    for (int c = 0; c < 4; ++c) {
        const double v = sums[c] / weights[c];
        const int level = v >= 255 ? 255 : v >= 0 ? int(v) : 0;
        result |= std::uint32_t(level) << 8 * c;
    }
    return result;
}

} // namespace Reference
