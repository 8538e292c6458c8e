#pragma once

#include <QtCore/QString>

#include <vector>

/// A blend mode as the tool calls it.
struct BlendModeName {
    const char* name;
    unsigned int id;
};

/// All modes that have an effect of their own, in the order of their numbers.
const std::vector<BlendModeName>& BlendModeNames();

/// The number of a mode that is given by name or by number. Throws UsageError for any other text.
unsigned int ParseBlendMode(const QString& text);
