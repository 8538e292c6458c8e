#pragma once

#include "RMCMSProfile.h"
#include "RMEXIFElement.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <exiv2/exif.hpp>

/// What comes with a picture. EXIF is in whole files, through exiv2.

/// The fields that a picture file carries; none if it has none or they cannot be read.
Exiv2::ExifData ReadExif(const QByteArray& file);

/// The picture file with the fields in it, or unchanged if its format holds no EXIF or the fields
/// do not fit. Fields that tell how the pixels of the source file were stored are left out.
QByteArray WithExif(const QByteArray& file, const Exiv2::ExifData& exif);

/// Makes those fields that are there true for a picture of this size, for an upright one, or for
/// one in sRGB or in another space.
void CorrectSize(Exiv2::ExifData& exif, int width, int height);
void CorrectOrientation(Exiv2::ExifData& exif);
void CorrectColorSpace(Exiv2::ExifData& exif, bool isSRGB);

/// Whether pixels of red, green and blue can be in this profile.
bool IsForRGB(const RMCMSProfile& profile);

/// The fields of kinds that the library knows, each with its value in words.
QList<RMEXIFElement> ExifElements(const Exiv2::ExifData& exif);

/// A field of another kind, in words.
struct ExifText {
    QString tag; ///< group and name, as "GPSInfo.GPSLatitude"
    QString label;
    QString value;
};

/// All other fields, but for those that only say where fields are.
QVector<ExifText> OtherExif(const Exiv2::ExifData& exif);
