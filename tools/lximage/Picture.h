#pragma once

#include "LXImage.h"

#include <QtGui/QImage>

#include <exiv2/exif.hpp>

/// A picture between two files: its pixels, and what travels with them.
struct Picture {
    LXImageRGBA32i pixels; ///< with profile and EXIF, as far as the library understands them
    QByteArray format;     ///< of the file it was read from, as "png"
    QByteArray icc;        ///< the bytes of its colour profile as in the file; none for none
    Exiv2::ExifData exif;  ///< as in the file
    /// The pixels are turned as the file says. Otherwise the decoder does not know how, and the
    /// orientation in the EXIF is still true.
    bool isUpright;
};

/// Reads a file, or standard input for "-". Its pixels are turned upright.
Picture LoadPicture(const QString& path);

/// Writes a file, or standard output for "-". Profile and EXIF go along if the format holds them;
/// one that holds no transparency gets the picture on white.
void SavePicture(const Picture& picture, const QString& path, const QByteArray& format);

/// The file format to write: that of the option --format if given, otherwise by the suffix of the
/// file name. Throws UsageError for an option and Failure for a suffix that cannot be written.
QByteArray OutputFormat(const QString& path, const QString& option);
