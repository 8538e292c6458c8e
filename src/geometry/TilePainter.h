#pragma once

#include "LXImage.h"
#include "geometry/PaintReach.h"

/// Carries out a drawing on one tile, whose top left corner is at `corner`; nothing for a missing
/// tile.
void LXDrawOnTile(LXImageRGBA32i::Slot& slot, const QPointF& corner, const LXDrawing& drawing);

/// Carries out a drawing on each tile that it can touch, row by row, with one tile open at a time.
/// Missing tiles are passed over. Whatever is thrown leaves the tiles before drawn and those after
/// untouched.
void LXDrawOnTiles(LXImageRGBA32i& image, const LXDrawing& drawing);
