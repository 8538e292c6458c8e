#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"

/// The light of a colour temperature on the picture: a pixel is multiplied by the light's colour
/// and mixed with itself. 6500 K is white and changes nothing. Alpha stays.
///
/// Threads may share it while nobody sets.
class LIBIMAGE_EXPORT LXTemperatureCorrection {
public:
    /// White light.
    LXTemperatureCorrection();
    /// As SetData.
    LXTemperatureCorrection(int kelvin, int value, int extra);

    /// `value` is the strength: 0 is the identity, 200 the whole multiplication, and it acts within
    /// these limits only. `extra` is kept for the application and changes no pixel.
    void SetData(int kelvin, int value, int extra);
    /// Sets the light; the second number is not used.
    void InitializeRGBfromKelvin(int kelvin, int unused);

    /// The colour of a black body, white at exactly 6500 K, as 0xFFRRGGBB. The temperature is
    /// limited to 1000 .. 40000 K. Approximated by logarithms and powers.
    static unsigned int GetTemperatureColor(int kelvin);

    void operator()(LXRGBA32i& pixel) const {
        const auto lit = [](int v, int light) {
            return static_cast<std::uint8_t>(v * light / 255);
        };
        const LXRGBA32i value = {lit(pixel.blue, m_blue), lit(pixel.green, m_green),
                                 lit(pixel.red, m_red), pixel.alpha};
        pixel = LXMixWithIdentity(value, pixel, m_amount);
    }
    /// As a weight of 255000.
    int GetAmount() const { return m_amount; }
    int GetExtra() const { return m_extra; }
    /// 0 .. 255.
    int GetRed() const { return m_red; }
    int GetGreen() const { return m_green; }
    int GetBlue() const { return m_blue; }

private:
    // 50 stands beside a factor of 1275 for what is set: a weight of next to nothing. That is how
    // the default is defined. The light is white, so no pixel changes.
    int m_amount = 50;
    int m_extra = 0;
    int m_red = 255;
    int m_green = 255;
    int m_blue = 255;
};
