#pragma once

#include "core/Clones.h"

/// The loop of all conversions: `Convert` of each element. Static, so that every user has its own
/// and none is seen outside the library. The rows must not overlap.
template <class In, class Out, Out (*Convert)(In)>
LX_CLONED static void ConvertRow(const In* in, Out* out, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i)
        out[i] = Convert(in[i]);
}
