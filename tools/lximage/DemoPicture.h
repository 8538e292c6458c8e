#pragma once

#include <QtGui/QImage>

class Progress;

/// An evening landscape in Format_ARGB32, the same for the same size. It has what shows image
/// operations off: wide gradients, soft transparency, fine detail, flat patches, lettering.
QImage PaintDemoPicture(const QSize& size, Progress& progress);
