#pragma once

#include "LXExport.h"

/// Luma, chroma and hue of a colour in straight RGB. They are computed inside the library, so that
/// no compiler option of a program changes a bit of them.

/// Y = 0.299 r + 0.587 g + 0.114 b, U = -0.147 r - 0.289 g + 0.436 b,
/// V = 0.615 r - 0.515 g - 0.1 b, on the scale of 255 (the analogue form of ITU-R BT.601).
LIBIMAGE_EXPORT void getYUV(int r, int g, int b, double& y, double& u, double& v);

/// Of r, g, b from 0 to 1: Y 16 .. 235, Cb and Cr 16 .. 240 about 128 (the digital form of
/// ITU-R BT.601). Y = 65.481 r + 128.553 g + 24.966 b + 16,
/// Cb = -37.797 r - 74.203 g + 112 b + 128, Cr = 112 r - 93.786 g - 18.214 b + 128.
LIBIMAGE_EXPORT void getYCbCr(double r, double g, double b, double& y, double& cb, double& cr);

/// The hue of the HSV hexcone in degrees, 0 .. 359, truncated; 0 for gray. Any common scale will
/// do.
LIBIMAGE_EXPORT int getHue(int r, int g, int b);
