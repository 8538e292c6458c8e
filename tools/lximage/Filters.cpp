#include "Filters.h"

#include "FilterWatch.h"
#include "LXAddNoiseProcessing.h"
#include "LXBlurProcessing.h"
#include "LXDiffuseGlowProcessing.h"
#include "LXHighPassProcessing.h"
#include "LXSharpenProcessing.h"
#include "LXSmoothenProcessing.h"
#include "LXTileWalk.h"
#include "LXVignetteProcessing.h"
#include "RMRefineSelectionProcessing.h"
#include "ShadowLayers.h"

#include <limits>

namespace {

using Image = LXImageRGBA32i;
using Input = FilterInput;
using Values = ParameterValues;
using Kind = ParameterKind;

/// Sets fields from the values of their names.
class Setter {
public:
    Setter(const Values& values, bool onlyGiven) : m_values(values), m_onlyGiven(onlyGiven) {}

    void operator()(const char* name, int& field) const { Set(name, field, &Values::Integer); }
    void operator()(const char* name, double& field) const { Set(name, field, &Values::Number); }
    void operator()(const char* name, bool& field) const { Set(name, field, &Values::Flag); }
    void operator()(const char* name, QColor& field) const {
        const LXRGBA32i colour = m_values.Colour(name);
        if (IsWanted(name))
            field = QColor(colour.red, colour.green, colour.blue);
    }

private:
    template <class Field>
    void Set(const char* name, Field& field, Field (Values::*get)(const char*) const) const {
        if (IsWanted(name))
            field = (m_values.*get)(name);
    }
    bool IsWanted(const char* name) const { return !m_onlyGiven || m_values.IsGiven(name); }

    const Values& m_values;
    bool m_onlyGiven;
};

/// Looks for a field outside its parameter's domain. Any choice has a meaning to its filter.
class Inspector {
public:
    explicit Inspector(const std::vector<Parameter>& parameters) : m_parameters(parameters) {}

    void operator()(const char* name, double field) {
        for (const Parameter& p : m_parameters)
            if (!m_unfit && qstrcmp(p.name, name) == 0 && p.kind != Kind::Choice &&
                !p.Allows(field))
                m_unfit = &p;
    }
    void operator()(const char*, const QColor&) {}

    const Parameter* Unfit() const { return m_unfit; }

private:
    const std::vector<Parameter>& m_parameters;
    const Parameter* m_unfit = nullptr;
};

/// The settings of a filter from its rules: its Params, `Fields(params, visit)`, which calls
/// visit(name, field) for each, and `Run(params, input, values, watch)`.
template <class Rules>
class SettingsOf final : public FilterSettings {
public:
    bool Read(QDataStream& stream) override { return m_params.Read(stream); }
    bool Write(QDataStream& stream) const override { return m_params.Write(stream); }
    void Set(const Values& values, bool onlyGiven) override {
        Rules::Fields(m_params, Setter(values, onlyGiven));
    }
    const Parameter* FirstUnfit(const std::vector<Parameter>& parameters) override {
        Inspector inspector(parameters);
        Rules::Fields(m_params, inspector);
        return inspector.Unfit();
    }
    LXImageAtOffset Run(const Input& input, const Values& values,
                        FilterWatch& watch) const override {
        return Rules::Run(m_params, input, values, watch);
    }

private:
    typename Rules::Params m_params;
};

template <class Rules>
std::unique_ptr<FilterSettings> Make() {
    return std::make_unique<SettingsOf<Rules>>();
}

/// The record of filters that take their parameters whole.
template <class Params>
LXFilterData<Params> Data(const Params& params, const Input& input) {
    return {params, input.image, Image(0, 0), input.selection, input.selectionRect, input.at};
}

/// A run of such a filter without caches.
template <class Processing>
struct PlainRun {
    using Params = typename Processing::Params;
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values&,
                               FilterWatch& watch) {
        return {watch.Run<Processing>(Data(p, input)), {}};
    }
};

struct Vignette : PlainRun<LXVignetteProcessing> {
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("size", p.size);
        visit("strength", p.strength);
        visit("color", p.color);
        visit("shape", p.shape);
    }
};

/// The record of filters with one parameter, which is still to be set.
template <class Record>
Record PassData(const Input& input) {
    Record data;
    data.image = input.image;
    data.selection = input.selection;
    data.selectionRect = input.selectionRect;
    data.selectionOffset = input.at;
    return data;
}

/// Smoothen and sharpen.
template <class Processing>
struct ThreeTap {
    using Params = typename Processing::Params;
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("amount", p.amount);
    }
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values&,
                               FilterWatch& watch) {
        auto data = PassData<LXThreeTapData>(input);
        data.amount = p.amount;
        return {watch.Run<Processing>(data), {}};
    }
};

struct HighPass {
    using Params = LXHighPassProcessing::Params;
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("radius", p.radius);
        visit("mode", p.modeIndex);
        visit("opacity", p.opacity);
    }
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values&,
                               FilterWatch& watch) {
        QReadWriteLock lock;
        double cachedRadius = std::numeric_limits<double>::quiet_NaN();
        Image cachedResult(0, 0);
        return {watch.Run<LXHighPassProcessing>(Data(p, input), lock, cachedRadius, cachedResult),
                {}};
    }
};

/// Gaussian and box blur.
template <class Processing>
struct Blur {
    using Params = typename Processing::Params;
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("radius", p.radius);
    }
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values& values,
                               FilterWatch& watch) {
        auto data = PassData<typename Processing::BlurDataEx>(input);
        data.radius = p.radius;
        if (!values.Flag("grow"))
            return {watch.Run<Processing>(data), {}};
        // The filter limits it to its reach.
        constexpr int beyond = 100000;
        data.visibleRect = LXImageRect(input.image).adjusted(-beyond, -beyond, beyond, beyond);
        return watch.RunEx<Processing>(data);
    }
};

struct DiffuseGlow : PlainRun<LXDiffuseGlowProcessing> {
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("opacity", p.opacity);
        visit("radius", p.radius);
        visit("threshold", p.threshold);
        visit("color", p.color);
        visit("mode", p.mode);
    }
};

struct AddNoise {
    using Params = LXAddNoiseProcessing::Params;
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("amount", p.amount);
        visit("distribution", p.distribution);
        visit("keep-alpha", p.keepAlpha);
    }
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values&,
                               FilterWatch& watch) {
        QReadWriteLock lock;
        Image uniform(0, 0), gaussian(0, 0);
        return {watch.Run<LXAddNoiseProcessing>(Data(p, input), lock, uniform, gaussian), {}};
    }
};

/// What both shadows have in common.
template <class Processing>
struct Shadow {
    using Params = typename Processing::Params;
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("color", p.color);
        visit("radius", p.blurRadius);
    }
    static LXShadowData<Params> Data(const Params& p, const Input& input) {
        LXShadowData<Params> data;
        data.params = p;
        data.image = input.image;
        data.selection = input.selection;
        data.selectionOrigin = input.at;
        data.useSelection = !input.selectionRect.isValid(); // the whole picture
        return data;
    }
    static QPoint Distance(const Values& values) {
        const QVector<int> distance = values.Integers("distance");
        return {distance[0], distance[1]};
    }
    static double Opacity(const Values& values) { return values.Number("opacity") / 100.0; }
};

struct DropShadow : Shadow<LXDropShadowProcessing> {
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values& values,
                               FilterWatch& watch) {
        LXImageAtOffset shadow = watch.Run<LXDropShadowProcessing>(Data(p, input));
        const QPoint distance = Distance(values);
        shadow.offset += distance;
        if (!values.Flag("compose"))
            return shadow;
        const int r = p.blurRadius;
        const QRect reach = LXImageRect(input.image).adjusted(-r, -r, r, r).translated(distance);
        return LayUnder(input.image, shadow, Opacity(values), reach);
    }
};

struct InnerShadow : Shadow<LXInnerShadowProcessing> {
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values& values,
                               FilterWatch& watch) {
        const auto shadow = watch.Run<LXInnerShadowProcessing>(Data(p, input));
        const Image layer = InnerLayer(shadow, Distance(values));
        if (!values.Flag("compose"))
            return {layer, {}};
        Image picture = input.image;
        LayOver(picture, layer, Opacity(values));
        return {picture, {}};
    }
};

struct RefineSelection {
    using Params = RMRefineSelectionProcessing::Params;
    template <class Visit>
    static void Fields(Params& p, Visit&& visit) {
        visit("smooth", p.smoothRadius);
        visit("shift", p.shift);
    }
    static LXImageAtOffset Run(const Params& p, const Input& input, const Values& values,
                               FilterWatch& watch) {
        const QRect mask = LXImageRect(input.image);
        const QVector<int> canvas = values.Integers("canvas");
        RMRefineSelectionProcessing::RefineSelectionData data;
        data.image = input.image;
        data.selectionRect = mask;
        data.position = input.at;
        data.canvasSize = QSize(canvas[0] > 0 ? canvas[0] : mask.width(),
                                canvas[1] > 0 ? canvas[1] : mask.height());
        data.params = p;
        return watch.Run<RMRefineSelectionProcessing>(data);
    }
};

constexpr Parameter Percent(const char* name, const char* text, const char* fallback) {
    return {name, Kind::Integer, text, fallback, 0, 100};
}

constexpr Parameter Sigma(const char* fallback) {
    return {"radius", Kind::Number, "sigma of the gaussian in pixels", fallback, 0.01, 1000};
}

constexpr Parameter Colour(const char* text, const char* fallback) {
    return {"color", Kind::Colour, text, fallback};
}

constexpr Parameter Grow = {"grow", Kind::Flag, "let it spread beyond the picture's edges", ""};

std::vector<Parameter> ShadowParameters(const char* text, const char* compose) {
    return {Colour(text, "#000000"),
            {"radius", Kind::Integer, "of a box blur, in pixels", "20", 0, 10000},
            {"distance", Kind::Range, "to the right and down", "0,0", -10000, 10000},
            {"compose", Kind::Flag, compose, ""},
            Percent("opacity", "of the shadow that is composed", "75")};
}

} // namespace

const std::vector<Filter>& Filters() {
    static const std::vector<Filter> filters = {
        {"add-noise",
         "lay noise over the picture",
         {Percent("amount", "of noise", "50"),
          {"distribution", Kind::Choice, "of the noise", "uniform", 0, 0, "uniform|gaussian"},
          {"keep-alpha", Kind::Choice, "keep the transparency", "yes", 0, 0, "no|yes"}},
         Make<AddNoise>},
        {"box-blur",
         "the mean of a square",
         {{"radius", Kind::Integer, "pixels beside the middle", "5", 0, 10000}, Grow},
         Make<Blur<LXBoxBlurProcessing>>},
        {"diffuse-glow",
         "bright parts glow",
         {Percent("opacity", "of the glow", "100"),
          {"radius", Kind::Integer, "of the glow", "5", 1, 1000},
          {"threshold", Kind::Integer, "what is as bright glows", "128", 0, 256},
          Colour("of the glow", "#ffffff"),
          {"mode", Kind::Choice, "where the glow lies", "over", 0, 0, "over|under"}},
         Make<DiffuseGlow>},
        {"drop-shadow", "the shadow that the picture drops",
         ShadowParameters("of the shadow", "lay it under the picture"), Make<DropShadow>},
        {"gaussian-blur", "a gaussian", {Sigma("5"), Grow}, Make<Blur<LXGaussianBlurProcessing>>},
        {"high-pass",
         "blend the details over the picture",
         {Sigma("10"),
          {"mode", Kind::Choice, "how to blend", "overlay", 0, 0,
           "normal|overlay|soft-light|hard-light"},
          Percent("opacity", "of the details", "100")},
         Make<HighPass>},
        {"inner-shadow", "the shadow that the picture's edge throws on it",
         ShadowParameters("of the shadow", "lay it over the picture"), Make<InnerShadow>},
        {"refine-selection",
         "smooth and move the edge of a mask",
         {{"smooth", Kind::Number, "radius of three box blurs", "0", 0, 1000},
          {"shift", Kind::Integer, "pixels to shrink or grow by", "0", -1000, 1000},
          {"canvas", Kind::Range, "width and height to grow within, 0 for the mask's", "0,0", 0,
           100000}},
         Make<RefineSelection>,
         true},
        {"sharpen",
         "more contrast between neighbours",
         {{"amount", Kind::Integer, "of contrast", "10", 0, 2000}},
         Make<ThreeTap<LXSharpenProcessing>>},
        {"smoothen",
         "less contrast between neighbours",
         {{"amount", Kind::Integer, "up to the mean of three", "10", 0, 255}},
         Make<ThreeTap<LXSmoothenProcessing>>},
        {"vignette",
         "towards one colour outside an ellipse",
         {{"size", Kind::Integer, "pixels over which it grows", "1", 1, 100000},
          Percent("strength", "where it is strongest", "100"),
          Colour("it goes to", "#000000"),
          {"shape", Kind::Choice, "how it grows", "parabolic", 0, 0, "linear|parabolic"}},
         Make<Vignette>},
    };
    return filters;
}
