#pragma once

#include "LXPixel.h"

namespace LXRows {

/// Each pixel of the row becomes gray by its luminance; alpha stays.
void ToGray(LXRGBA32i* row, unsigned int count);

} // namespace LXRows
