#include "LXImageConvolution.h"

#include "convolution/PictureRows.h"
#include "core/Truncate.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using namespace LXPictureRows;

/// A kernel and where its entries fall: entry (i, j) meets the pixel at (w / 2 - i, h / 2 - j) from
/// the one that is computed.
struct Taps {
    const double* kernel;
    QSize size;

    qint64 X(int x, int i) const { return qint64(x) + size.width() / 2 - i; }
    qint64 Y(int y, int j) const { return qint64(y) + size.height() / 2 - j; }
};

/// The source rows that the taps of one row of the result fall on, in the order of the kernel's
/// rows; one beyond the image is empty.
using Rows = std::vector<Line>;

inline int Limited(int value) {
    return std::clamp(value, 0, 255);
}

struct AllChannels {
    static constexpr bool edgeGoesOn = true;

    static LXRGBA32i Result(const Taps& taps, const Rows& rows, int x, int width) {
        double blue = 0, green = 0, red = 0, alpha = 0;
        const double* entry = taps.kernel;
        for (const Line& row : rows) {
            for (int i = 0; i < taps.size.width(); ++i, ++entry) {
                const qint64 at = std::clamp<qint64>(taps.X(x, i), 0, width - 1);
                const LXRGBA32i& p = row[std::size_t(at)];
                blue += p.blue * *entry;
                green += p.green * *entry;
                red += p.red * *entry;
                alpha += p.alpha * *entry;
            }
        }
        if (TruncateToInt(alpha) <= 0)
            return {};
        const auto channel = [](double sum) { return std::uint8_t(Limited(TruncateToInt(sum))); };
        return {channel(blue), channel(green), channel(red), channel(alpha)};
    }
};

struct AlphaOnly {
    static constexpr bool edgeGoesOn = false;

    /// The sum is a float, and each term is added to it as a double: that is how it is defined.
    static LXRGBA32i Result(const Taps& taps, const Rows& rows, int x, int width) {
        float sum = 0;
        const double* entry = taps.kernel;
        for (const Line& row : rows) {
            for (int i = 0; i < taps.size.width(); ++i, ++entry) {
                const qint64 at = taps.X(x, i);
                if (!row.empty() && at >= 0 && at < width)
                    sum = static_cast<float>(double(sum) + row[std::size_t(at)].alpha * *entry);
            }
        }
        return {0, 0, 0, std::uint8_t(Limited(sum >= 255.0F ? 255 : TruncateToInt(sum)))};
    }
};

template <class Rule, class Image>
void Convolve(Image& image, const Taps& taps) {
    const QRect rect = RectOf(image);
    if (taps.size.width() < 1 || taps.size.height() < 1 || rect.isEmpty())
        return;
    const Image source = image;
    const std::size_t width = std::size_t(rect.width());
    Rows rows(std::size_t(taps.size.height()), Line(width));
    Line result(width);
    for (int y = 0; y < rect.height(); ++y) {
        for (int j = 0; j < taps.size.height(); ++j) {
            const qint64 wanted = taps.Y(y, j);
            const qint64 at = std::clamp<qint64>(wanted, 0, rect.height() - 1);
            Line& row = rows[std::size_t(j)];
            row.resize(Rule::edgeGoesOn || at == wanted ? width : 0);
            if (!row.empty())
                ReadRow(source, int(at), 0, row);
        }
        for (int x = 0; x < rect.width(); ++x)
            result[std::size_t(x)] = Rule::Result(taps, rows, x, rect.width());
        WriteRow(image, y, 0, result);
    }
}

} // namespace

void LXImageConvolution::operator()(LXImageRGBA32i& image) const {
    Convolve<AllChannels>(image, {m_kernel, m_size});
}

void LXImageConvolution::operator()(QImage& image) const {
    MakeARGB32(image);
    Convolve<AllChannels>(image, {m_kernel, m_size});
}

void LXImageConvoluteAlpha::operator()(LXImageRGBA32i& image) const {
    Convolve<AlphaOnly>(image, {m_kernel, m_size});
}

void LXImageConvoluteAlpha::operator()(QImage& image) const {
    MakeARGB32(image);
    Convolve<AlphaOnly>(image, {m_kernel, m_size});
}
