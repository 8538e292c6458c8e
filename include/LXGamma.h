#pragma once

#include "LXExport.h"

/// The value limited to low .. high; a NaN stays a NaN.
LIBIMAGE_EXPORT float Clamp(float value, float low, float high);

/// The 8-bit sRGB code of a linear value (IEC 61966-2-1), rounded. Values below 0 give 0, above 1
/// give 255, and a NaN gives 0.
LIBIMAGE_EXPORT unsigned char MakeGamma(float linear);

/// The linear value of an sRGB-encoded one (IEC 61966-2-1). Nothing is clamped.
LIBIMAGE_EXPORT float VoltageToIntensitySrgb(float encoded);
