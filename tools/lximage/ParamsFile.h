#pragma once

#include "Filters.h"

/// Files of filter parameters: a stream of one filter's.

/// Throws Failure for a file that is not a whole one of that filter, and for parameters that the
/// tool does not take from the command line either.
void LoadParams(const QString& path, const Filter& filter, FilterSettings& settings);

void SaveParams(const QString& path, const FilterSettings& settings);
