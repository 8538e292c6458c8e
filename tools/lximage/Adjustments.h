#pragma once

#include "LXImage.h"
#include "Parameters.h"

#include <vector>

/// A colour adjustment as the tool offers it.
struct Adjustment {
    const char* name;
    const char* summary;
    std::vector<Parameter> parameters;
    void (*apply)(LXImageRGBA32i& image, const ParameterValues& values);
};

/// All of them, by name.
const std::vector<Adjustment>& Adjustments();

/// The adjustment of that name. Throws UsageError if there is none.
const Adjustment& FindAdjustment(const QString& name);
