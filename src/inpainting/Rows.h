#pragma once

#include <cstdint>

/// Kernels over a row of `count` pixels.

namespace Inpainting {

/// 0 where alpha is 255, and 0xFFFF0000 elsewhere.
void MarkUnknown(const std::uint32_t* words, std::uint32_t* marks, int count);

void AlphaOf(const std::uint32_t* words, std::uint8_t* alphas, int count);

/// gx^2 + gy^2 of the Sobel operator, from three rows of count + 2 alphas.
void EdgeSquares(const std::uint8_t* above, const std::uint8_t* here, const std::uint8_t* below,
                 int* squares, int count);

} // namespace Inpainting
