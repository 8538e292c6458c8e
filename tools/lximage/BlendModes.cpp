#include "BlendModes.h"

#include "Failure.h"

const std::vector<BlendModeName>& BlendModeNames() {
    static const std::vector<BlendModeName> names = {
        {"source-over", 0},
        {"clear", 2},
        {"source", 3},
        {"destination-in", 6},
        {"destination-out", 8},
        {"plus", 12},
        {"multiply", 13},
        {"screen", 14},
        {"overlay", 15},
        {"darken", 16},
        {"lighten", 17},
        {"color-dodge", 18},
        {"color-burn", 19},
        {"hard-light", 20},
        {"soft-light", 21},
        {"difference", 22},
        {"exclusion", 23},
        {"source-or-destination", 24},
        {"source-and-destination", 25},
        {"not-source-and-destination", 31},
        {"luminance-to-alpha", 64},
        {"alpha-to-gray", 88},
        {"luminance-to-gray", 89},
        {"heal", 90},
        {"source-where-visible", 91},
        {"destination-in-any-alpha", 92},
        {"unite-alpha", 93},
        {"intersect-alpha", 94},
        {"subtract-alpha", 95},
    };
    return names;
}

unsigned int ParseBlendMode(const QString& text) {
    for (const BlendModeName& mode : BlendModeNames())
        if (text == QLatin1String(mode.name))
            return mode.id;
    bool isNumber = false;
    const unsigned int id = text.toUInt(&isNumber);
    if (!isNumber)
        throw UsageError{QStringLiteral("there is no blend mode '%1'").arg(text)};
    return id;
}
