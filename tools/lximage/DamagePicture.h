#pragma once

#include <QtGui/QImage>

/// What befalls a photo in a drawer: scratches, hairs and dust, white on transparent ground, the
/// same for the same size. In Format_ARGB32.
QImage PaintDamagePicture(const QSize& size);
