#pragma once

#include "LXAdjustmentProcessing.h"
#include "Operation.h"

#include <memory>

class FilterWatch;
class QDataStream;

/// What a filter works on.
struct FilterInput {
    LXImageRGBA32i image{0, 0};
    LXImageRGBA32i selection{0, 0};
    QRect selectionRect{}; ///< of the selection; invalid for none
    QPoint at{};           ///< where its corner lies on the image
};

/// The library's parameters of one filter, and its run with them.
class FilterSettings {
public:
    virtual ~FilterSettings() = default;

    virtual bool Read(QDataStream& stream) = 0;
    virtual bool Write(QDataStream& stream) const = 0;

    /// Takes over what the user has given, or all values.
    virtual void Set(const ParameterValues& values, bool onlyGiven) = 0;
    /// The first parameter that a stream has left outside its domain; null if there is none.
    virtual const Parameter* FirstUnfit(const std::vector<Parameter>& parameters) = 0;

    /// The result, and where its corner lies on the image. `values` has what is the tool's own.
    virtual LXImageAtOffset Run(const FilterInput& input, const ParameterValues& values,
                                FilterWatch& watch) const = 0;
};

/// A filter as the tool offers it. Its parameters are those of the library, under the names that
/// its settings know, and some of the tool's own.
struct Filter : Operation {
    std::unique_ptr<FilterSettings> (*makeSettings)();
    bool changesMask = false; ///< the image is a mask, and there is no selection
};

/// All of them, by name.
const std::vector<Filter>& Filters();
