#pragma once

#include "LXImage.h"
#include "LXImageAxis.h"
#include "LXTileWalk.h"

#include <QtGui/QImage>

#include <algorithm>
#include <vector>

/// Rows of either kind of image, for operators that are the same on both. QImages are in
/// QImage::Format_ARGB32.
namespace LXPictureRows {

using Line = std::vector<LXRGBA32i>;

inline QRect RectOf(const LXImageRGBA32i& image) {
    return LXImageRect(image);
}
inline QRect RectOf(const QImage& image) {
    return image.rect();
}

inline const LXRGBA32i* ConstRow(const QImage& image, int y) {
    return static_cast<const LXRGBA32i*>(static_cast<const void*>(image.constScanLine(y)));
}
inline LXRGBA32i* Row(QImage& image, int y) {
    return static_cast<LXRGBA32i*>(static_cast<void*>(image.scanLine(y)));
}

/// As many pixels as the line has, from (x, y) on.
inline bool ReadRow(const LXImageRGBA32i& image, int y, int x, Line& line) {
    return LXAlongRows::Read(image, y, x, line);
}
inline bool ReadRow(const QImage& image, int y, int x, Line& line) {
    std::copy_n(ConstRow(image, y) + x, line.size(), line.begin());
    return true;
}

inline bool WriteRow(LXImageRGBA32i& image, int y, int x, const Line& line) {
    return LXAlongRows::Write(image, y, x, line);
}
inline bool WriteRow(QImage& image, int y, int x, const Line& line) {
    std::copy(line.begin(), line.end(), Row(image, y) + x);
    return true;
}

/// A QImage becomes QImage::Format_ARGB32, or null if Qt cannot convert it.
inline void MakeARGB32(QImage& image) {
    image = image.convertToFormat(QImage::Format_ARGB32, Qt::NoOpaqueDetection);
}

} // namespace LXPictureRows
