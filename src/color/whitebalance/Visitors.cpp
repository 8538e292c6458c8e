#include "LXColorFormulas.h"
#include "LXWhiteBalanceVisitors.h"
#include "color/whitebalance/Formulas.h"
#include "color/whitebalance/Rows.h"

#include <cmath>

void LXHistogram::operator()(const LXRGBA32i& pixel) const {
    const int r = pixel.red, g = pixel.green, b = pixel.blue, sum = r + g + b;
    ++m_red[r];
    ++m_green[g];
    ++m_blue[b];
    ++m_luma[LXWhiteBalance::LumaBin(r, g, b)];
    *m_chroma += std::sqrt(r * r + g * g + b * b - sum * sum / 3.0);
    ++*m_count;
}

void LXCommonParamsCalculator::operator()(const LXRGBA32i& pixel) const {
    const auto addSquare = [](double* sum, double deviation) { *sum += deviation * deviation; };
    addSquare(m_squareRed, pixel.red - m_meanRed);
    addSquare(m_squareGreen, pixel.green - m_meanGreen);
    addSquare(m_squareBlue, pixel.blue - m_meanBlue);
    double y, cb, cr;
    getYCbCr(pixel.red / 255.0, pixel.green / 255.0, pixel.blue / 255.0, y, cb, cr);
    *m_y += y;
    *m_cb += cb;
    *m_cr += cr;
    ++*m_count;
}

void LXGreyPointsSelector::operator()(const LXRGBA32i& pixel) const {
    if (m_points->size() >= MostPoints)
        return;
    const auto colour = LXWhiteBalance::YUVOf(pixel.red, pixel.green, pixel.blue);
    if (!LXWhiteBalance::IsGrey(colour, m_threshold))
        return;
    m_points->append(pixel);
    *m_y += colour.y;
    *m_u += colour.u;
    *m_v += colour.v;
}

void LXGreyPointsSelector::VisitRun(const LXRGBA32i* pixels, unsigned int count) const {
    if (m_points->size() >= MostPoints || !LXRows::HasGrey(pixels, count, m_threshold))
        return;
    for (unsigned int i = 0; i < count; ++i)
        (*this)(pixels[i]);
}
