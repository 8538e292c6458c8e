#pragma once

#include <QtCore/QString>
#include <QtGui/QPainterPath>

/// The path that SVG path data describe, as "M 10 10 h 80 v 60 z": the commands M L H V C S Q T A Z
/// in either case. Throws UsageError that tells where the text goes wrong.
QPainterPath ParseSvgPath(const QString& text);
