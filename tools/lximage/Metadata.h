#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <exiv2/exif.hpp>

/// EXIF in whole files, through exiv2.

/// The fields that a picture file carries; none if it has none or they cannot be read.
Exiv2::ExifData ReadExif(const QByteArray& file);

/// The picture file with the fields in it, or unchanged if its format holds no EXIF or the fields
/// do not fit. Fields that tell how the pixels of the source file were stored are left out.
QByteArray WithExif(const QByteArray& file, const Exiv2::ExifData& exif);

/// Makes those fields that are there true for a picture of this size, or for an upright one.
void CorrectSize(Exiv2::ExifData& exif, int width, int height);
void CorrectOrientation(Exiv2::ExifData& exif);

/// One field in words.
struct ExifText {
    QString tag; ///< group and name, as "Photo.FNumber"
    QString label;
    QString value;
};

QVector<ExifText> ExifInWords(const Exiv2::ExifData& exif);
