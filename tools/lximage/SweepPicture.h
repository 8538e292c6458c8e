#pragma once

#include <QtGui/QImage>

/// All hues from left to right, from white over the full colour to black downwards, and ever more
/// transparent towards the right. In Format_ARGB32.
QImage PaintSweepPicture(const QSize& size);
