#pragma once

#include "geometry/TileMarks.h"

#include <functional>

class QPainter;

/// What a drawing does with a painter whose coordinates are those of the image.
using LXDrawing = std::function<void(QPainter&)>;

/// The tiles that a drawing can touch. It is found out by drawing once on a device that paints
/// nothing and takes note of where it would. The drawing may move and turn the painter's
/// coordinates but not scale them.
LXTileMarks LXReachOf(const LXDrawing& drawing, unsigned int columns, unsigned int rows);
