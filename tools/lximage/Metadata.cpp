#include "Metadata.h"

#include <QtCore/QDebug>

#include <exiv2/error.hpp>
#include <exiv2/image.hpp>

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

const Exiv2::byte* Bytes(const QByteArray& file) {
    return reinterpret_cast<const Exiv2::byte*>(file.constData());
}

bool HoldsExif(Exiv2::Image& image) {
    return (image.checkMode(Exiv2::mdExif) & Exiv2::amWrite) != 0;
}

/// Fields of the main directory that belong to the pixels of one file: their storage, their size,
/// their place. In another file they would be wrong, or would break it.
bool IsStorageTag(std::uint16_t tag) {
    static constexpr std::uint16_t Tags[] = {0x00fe, 0x00ff, 0x0100, 0x0101, 0x0102, 0x0103, 0x0106,
                                             0x010a, 0x0111, 0x0115, 0x0116, 0x0117, 0x0118, 0x0119,
                                             0x011c, 0x0120, 0x0121, 0x013d, 0x0140, 0x0142, 0x0143,
                                             0x0144, 0x0145, 0x014a, 0x0152, 0x0153, 0x015b, 0x0201,
                                             0x0202, 0x0211, 0x0212, 0x0213, 0x02bc, 0x8773};
    return std::binary_search(std::begin(Tags), std::end(Tags), tag);
}

/// Previews are left behind as well: they show the picture as it was.
bool Travels(const Exiv2::Exifdatum& field) {
    const std::string group = field.groupName();
    if (group == "Image")
        return !IsStorageTag(field.tag());
    return group != "Thumbnail" && group.rfind("Sub", 0) != 0 && group.rfind("Image", 0) != 0;
}

QByteArray ContentOf(Exiv2::BasicIo& io) {
    io.open();
    QByteArray bytes(int(io.size()), Qt::Uninitialized);
    io.seek(0, Exiv2::BasicIo::beg);
    io.read(reinterpret_cast<Exiv2::byte*>(bytes.data()), bytes.size());
    return bytes;
}

template <class Number>
void Correct(Exiv2::ExifData& exif, const char* key, Number value) {
    if (exif.findKey(Exiv2::ExifKey(key)) != exif.end())
        exif[key] = value;
}

/// Fields that only say where other fields are.
bool IsPointer(const Exiv2::Exifdatum& field) {
    return field.tag() == 0x8769 || field.tag() == 0x8825 || field.tag() == 0xa005;
}

/// The library's kind of a field. Only in the main directories the tags mean what they do there.
RMEXIFElement::Type KindOf(const Exiv2::Exifdatum& field) {
    const std::string group = field.groupName();
    if (group == "Image" || group == "Photo")
        for (int kind = RMEXIFElement::Unknown + 1; kind <= RMEXIFElement::SceneType; ++kind)
            if (RMEXIFElement::GetTag(RMEXIFElement::Type(kind)) == field.tag())
                return RMEXIFElement::Type(kind);
    return RMEXIFElement::Unknown;
}

/// The name that people know a field by.
QString FieldLabel(const Exiv2::Exifdatum& field) {
    const std::string label = field.tagLabel();
    return QString::fromStdString(label.empty() ? field.tagName() : label);
}

/// Empty for a field that exiv2 stumbles over.
QString FieldValue(const Exiv2::Exifdatum& field, const Exiv2::ExifData& exif) {
    try {
        return QString::fromStdString(field.print(&exif));
    } catch (const std::exception& fault) {
        qDebug() << "EXIF field not read:" << fault.what();
        return {};
    }
}

} // namespace

Exiv2::ExifData ReadExif(const QByteArray& file) {
    // exiv2 throws for formats it does not know and for broken fields. Neither keeps anyone from
    // working with the picture.
    try {
        const auto image = Exiv2::ImageFactory::open(Bytes(file), file.size());
        image->readMetadata();
        return image->exifData();
    } catch (const std::exception& fault) {
        qDebug() << "EXIF not read:" << fault.what();
        return {};
    }
}

QByteArray WithExif(const QByteArray& file, const Exiv2::ExifData& exif) {
    try {
        const auto image = Exiv2::ImageFactory::open(Bytes(file), file.size());
        image->readMetadata();
        if (!HoldsExif(*image))
            return file;
        for (const Exiv2::Exifdatum& field : exif)
            if (Travels(field))
                image->exifData()[field.key()] = field.value();
        image->writeMetadata();
        return ContentOf(image->io());
    } catch (const std::exception& fault) {
        qDebug() << "EXIF not written:" << fault.what();
        return file;
    }
}

bool IsForRGB(const RMCMSProfile& profile) {
    constexpr quint32 Signature = 0x52474220; // "RGB "
    return profile.GetColorSpace() == Signature;
}

void CorrectSize(Exiv2::ExifData& exif, int width, int height) {
    Correct(exif, "Exif.Photo.PixelXDimension", std::uint32_t(width));
    Correct(exif, "Exif.Photo.PixelYDimension", std::uint32_t(height));
}

void CorrectOrientation(Exiv2::ExifData& exif) {
    Correct(exif, "Exif.Image.Orientation", std::uint16_t(1));
}

void CorrectColorSpace(Exiv2::ExifData& exif, bool isSRGB) {
    constexpr std::uint16_t SRGB = 1, Uncalibrated = 0xffff;
    Correct(exif, "Exif.Photo.ColorSpace", isSRGB ? SRGB : Uncalibrated);
}

QList<RMEXIFElement> ExifElements(const Exiv2::ExifData& exif) {
    QList<RMEXIFElement> elements;
    for (const Exiv2::Exifdatum& field : exif) {
        const RMEXIFElement::Type kind = KindOf(field);
        if (kind != RMEXIFElement::Unknown)
            elements.append(RMEXIFElement(kind, FieldValue(field, exif)));
    }
    return elements;
}

QVector<ExifText> OtherExif(const Exiv2::ExifData& exif) {
    QVector<ExifText> words;
    for (const Exiv2::Exifdatum& field : exif) {
        if (IsPointer(field) || KindOf(field) != RMEXIFElement::Unknown)
            continue;
        const QString tag = QString::fromStdString(field.groupName() + '.' + field.tagName());
        words.append({tag, FieldLabel(field), FieldValue(field, exif)});
    }
    return words;
}
