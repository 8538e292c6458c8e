#pragma once

#include "LXAddNoiseProcessing.h"
#include "LXDiffuseGlowProcessing.h"
#include "LXHighPassProcessing.h"
#include "LXShadowProcessing.h"
#include "LXVignetteProcessing.h"
#include "Plane.h"
#include "RMRefineSelectionProcessing.h"

#include <array>
#include <functional>
#include <memory>
#include <vector>

/// The filters as lists of plain passes over planes. They share nothing with the library but the
/// parameters and the pixel type.
namespace Reference {

using SharedPlane = std::shared_ptr<Plane>;

/// A pass: `step(0)` to `step(steps - 1)`.
struct Stage {
    int steps;
    std::function<void(int)> step;
    int report = 0;      ///< progress after the step instead of its position; below 0 there is none
    bool always = false; ///< is not cancelled
};

/// What a run does.
struct Plan {
    int range = 0; ///< 0: none is set
    std::vector<Stage> stages;
    std::vector<SharedPlane> results;
    QPoint offset;
    SharedPlane kept; ///< what the cache gets, when the stages have come to it

    void Add(const Stage& stage) {
        stages.push_back(stage);
        range += stage.steps;
    }
    /// Runs until the progress was reported `limit` times, or up to the next report if `silentToo`,
    /// and returns what was reported.
    std::vector<int> Do(int limit, bool silentToo = false) const;
};

/// The arguments of a filter. `selectionOffset` is the origin of a shadow's selection, and the
/// position of the mask that is refined.
struct FilterInput {
    Plane image, selection;
    QRect selectionRect;
    QPoint selectionOffset;
    LXRGBA32i beyond; ///< what the image's tiles hold outside of it
};

Plan Vignette(const FilterInput& in, const LXVignetteProcessing::Params& params);
Plan Smoothen(const FilterInput& in, int amount);
Plan SharpenFilter(const FilterInput& in, int amount);
/// With a cache that has the radius, or without.
Plan HighPass(const FilterInput& in, const LXHighPassProcessing::Params& params,
              const Plane* cached);
Plan GaussianBlur(const FilterInput& in, double radius);
Plan BoxBlur(const FilterInput& in, int radius);
/// What runEx makes of its arguments; `offset` is moved along.
FilterInput Extended(FilterInput in, QRect visible, int margin, QPoint& offset);
Plan DiffuseGlow(const FilterInput& in, const LXDiffuseGlowProcessing::Params& params);
/// With a cache that has the size, or with noise from the seed.
Plan AddNoise(const FilterInput& in, const LXAddNoiseProcessing::Params& params,
              const Plane* cached, unsigned int seed);
Plan DropShadow(const FilterInput& in, const LXShadowParams& params, bool useSelection);
Plan InnerShadow(const FilterInput& in, const LXShadowParams& params, bool useSelection);
Plan RefineSelection(const FilterInput& in, QSize canvas,
                     const RMRefineSelectionProcessing::Params& params);

/// Distance, x0, x1, with the special form's own ways on the axes.
std::array<double, 3> PlainDistancePointEllipse(double e0, double e1, double y0, double y1);
std::array<double, 3> PlainDistancePointEllipseSpecial(double e0, double e1, double y0, double y1);

} // namespace Reference
