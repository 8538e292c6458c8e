#pragma once

#include "LXImage.h"
#include "Operation.h"

/// A colour adjustment as the tool offers it.
struct Adjustment : Operation {
    void (*apply)(LXImageRGBA32i& image, const ParameterValues& values);
};

/// All of them, by name.
const std::vector<Adjustment>& Adjustments();
