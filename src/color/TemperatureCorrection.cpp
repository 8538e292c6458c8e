#include "LXTemperatureCorrection.h"

#include "color/ByteTables.h"

namespace {

struct Light {
    int red, green, blue;
};

/// Limited first and then truncated.
template <class Float>
int LimitedLevel(Float value) {
    return TruncateToInt(std::clamp<Float>(value, 0, 255));
}

/// The logarithms are taken in double, the powers in float, as the colours are defined with them.
Light LightOf(int kelvin) {
    if (kelvin == 6500)
        return {255, 255, 255};
    const float t = static_cast<float>(std::clamp(kelvin, 1000, 40000)) / 100.0F;
    Light light{255, 0, 255};
    if (t <= 66) {
        light.green = LimitedLevel(std::log(double(t)) * 99.4708023071289 - 161.11956787109375);
    } else {
        const float u = t - 60;
        light.red = LimitedLevel(std::pow(u, -0.13320476F) * 329.69873F);
        light.green = LimitedLevel(std::pow(u, -0.075514846F) * 288.12216F);
    }
    if (t <= 19)
        light.blue = 0;
    else if (t < 66)
        light.blue =
            LimitedLevel(std::log(double(t - 10)) * 138.51773071289063 - 305.0447998046875);
    return light;
}

} // namespace

LXTemperatureCorrection::LXTemperatureCorrection() = default;

LXTemperatureCorrection::LXTemperatureCorrection(int kelvin, int value, int extra) {
    SetData(kelvin, value, extra);
}

void LXTemperatureCorrection::SetData(int kelvin, int value, int extra) {
    m_amount = Rescale(value, 1275, 1);
    m_extra = extra;
    InitializeRGBfromKelvin(kelvin, extra);
}

void LXTemperatureCorrection::InitializeRGBfromKelvin(int kelvin, int) {
    const Light light = LightOf(kelvin);
    m_red = light.red;
    m_green = light.green;
    m_blue = light.blue;
}

unsigned int LXTemperatureCorrection::GetTemperatureColor(int kelvin) {
    const Light light = LightOf(kelvin);
    return 0xFF000000U | unsigned(light.red) << 16 | unsigned(light.green) << 8 |
           unsigned(light.blue);
}
