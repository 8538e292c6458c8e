#include "LXGamma.h"

#include "core/Truncate.h"

#include <cmath>

float Clamp(float value, float low, float high) {
    if (value < low)
        return low;
    return high < value ? high : value;
}

// The sRGB constants are float values widened to double, as the results are defined with them.
unsigned char MakeGamma(float linear) {
    float code;
    if (linear < 0)
        code = 0;
    else if (linear > 1)
        code = 1;
    else if (static_cast<double>(linear) <= 0.0031308)
        code = linear * 12.92F;
    else
        code = static_cast<float>(std::pow(static_cast<double>(linear), 0.4166666567325592) *
                                      1.0549999475479126 -
                                  0.054999999701976776);
    return static_cast<unsigned char>(TruncateToInt(code * 255.0F + 0.5F));
}

float VoltageToIntensitySrgb(float encoded) {
    if (static_cast<double>(encoded) <= 0.04045)
        return encoded / 12.92F;
    const float base = (encoded + 0.055F) / 1.055F;
    return static_cast<float>(std::pow(static_cast<double>(base), 2.4000000953674316));
}
