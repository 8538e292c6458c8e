#pragma once

#include <array>
#include <cstdint>
#include <vector>

/// The two inpaintings on plain arrays, pass by pass and straight from their rules. They share
/// nothing with the library.
namespace Reference {

/// Pixels as words 0xAARRGGBB.
struct Words {
    int width, height;
    std::vector<std::uint32_t> pixels;

    Words(int w, int h, std::uint32_t fill = 0)
        : width(w), height(h), pixels(std::size_t(w) * std::size_t(h), fill) {}
    bool Has(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
    std::uint32_t& At(int x, int y) {
        return pixels[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    }
    std::uint32_t At(int x, int y) const {
        return pixels[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    }
};

/// Edges, inclusive.
struct Bounds {
    int left, top, right, bottom;
    bool Has(int x, int y) const { return x >= left && y >= top && x <= right && y <= bottom; }
};

/// 8 neighbours: the alpha outside is that of the nearest pixel, or 0.
enum class Beyond { Clamped, Zero };
/// Alpha of the edges of a mask within bounds.
Words Gradient(const Words& mask, const Bounds& bounds, Beyond beyond);

/// Fills the picture as a whole, with rounded means.
void InpaintLayers(Words& image);

enum class Order { Tiles, Backwards };

/// Fills through a mask, with truncated means, one pass a call. A pixel that is not in the picture
/// ends the pass.
struct BandInpaint {
    Words& image;
    Words mask, band;
    Bounds maskRect, bandRect;
    int dx, dy;
    bool active = true;

    BandInpaint(Words& picture, const Words& givenMask, const Bounds& rect, int offsetX,
                int offsetY);
    bool Pass(Order order);
};

/// The filler by distances, for a mask of known (0) and unknown pixels and a field.
struct DistanceInpaint {
    Words image;
    Words mask;
    std::vector<float> field;

    double Field(int x, int y) const;
    bool Known(int x, int y) const;
    std::array<double, 2> FieldDirection(int x, int y) const; ///< y, x
    double Solve(int x1, int y1, int x2, int y2) const;
    std::uint32_t Inpaint(int x, int y) const;
};

} // namespace Reference
