#pragma once

#include "LXPixel.h"

/// A box of colours: the limits of each channel, both included.
struct LXColourRange {
    LXRGBA32i low;
    LXRGBA32i high;

    /// The colours that match a seed, as Compare() tells.
    static LXColourRange Around(const LXRGBA32i& seed, const LXRGBA32i& tolerance);

    bool Contains(const LXRGBA32i& pixel) const;
};
