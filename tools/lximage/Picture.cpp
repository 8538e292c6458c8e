#include "Picture.h"

#include "Failure.h"
#include "Interrupt.h"
#include "LXConvertImage.h"
#include "Metadata.h"
#include "Streams.h"

#include <QtCore/QBuffer>
#include <QtCore/QFileInfo>
#include <QtGui/QColorSpace>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>
#include <QtGui/QPainter>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

/// The bytes of a file for a decoder. Remembers whether the decoder wanted more than there are:
/// some decoders fill up a truncated picture and say nothing.
class WatchedFile : public QIODevice {
public:
    explicit WatchedFile(const QByteArray& bytes) : m_bytes(bytes) { open(ReadOnly | Unbuffered); }

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_bytes.size(); }

    void StartWatching() { m_readShort = m_readNothing = false; }
    bool WasTooShortFor(const QByteArray& format) const {
        if (format == "bmp") // reads exactly what it needs
            return m_readShort;
        return m_readNothing && QList<QByteArray>{"gif", "jpeg", "xbm"}.contains(format);
    }

protected:
    qint64 readData(char* out, qint64 wanted) override {
        if (StopRequested()) // makes the decoder give up
            return -1;
        const qint64 count = qBound<qint64>(0, m_bytes.size() - pos(), wanted);
        std::memcpy(out, m_bytes.constData() + qMin<qint64>(pos(), m_bytes.size()), size_t(count));
        m_readShort |= count < wanted;
        m_readNothing |= count == 0 && wanted > 0;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
    bool m_readShort = false;
    bool m_readNothing = false;
};

/// Takes the bytes of an encoder, and makes it give up when the user asks to stop.
class EncodedFile : public QBuffer {
public:
    EncodedFile() { open(WriteOnly); }

protected:
    qint64 writeData(const char* in, qint64 count) override {
        return StopRequested() ? -1 : QBuffer::writeData(in, count);
    }
};

[[noreturn]] void FailWith(const QString& name, const char* reason) {
    throw Failure{name, QString::fromLatin1(reason)};
}

/// Refuses, before any memory is spent on it, what the tile pool cannot hold.
void CheckSize(const QSize& size, const QString& name) {
    const auto tiles = [](int length, unsigned int tile) {
        return (quint64(qMax(length, 0)) + tile - 1) / tile;
    };
    if (tiles(size.width(), LXImageRGBA32i::TileWidth) *
            tiles(size.height(), LXImageRGBA32i::TileHeight) >
        RMTileManager64::Instance()->GetAvailableCount())
        throw Failure{
            name, QStringLiteral("too large: %1 x %2 pixels").arg(size.width()).arg(size.height())};
}

/// The file format by the content alone: a name may lie, and standard input has none.
QByteArray RecogniseFormat(WatchedFile& file, const QString& name) {
    if (file.size() == 0)
        FailWith(name, "empty file");
    const QByteArray format = QImageReader::imageFormat(&file);
    if (format.isEmpty())
        FailWith(name, "not a picture in a known format");
    return format;
}

QImage Decode(QImageReader& reader, WatchedFile& file, const QString& name) {
    CheckSize(reader.size(), name);
    file.StartWatching();
    const QImage image = reader.read();
    StopIfInterrupted();
    if (image.isNull())
        FailWith(name, "damaged or unreadable picture");
    if (file.WasTooShortFor(reader.format()))
        FailWith(name, "truncated picture");
    CheckSize(image.size(), name);
    return image;
}

/// The picture turned as the file says it is to be shown. (The reader could do that by itself, but
/// the colour profile gets lost in it.)
QImage Upright(const QImage& image, QImageIOHandler::Transformations turn) {
    const QImage mirrored = image.mirrored(turn.testFlag(QImageIOHandler::TransformationMirror),
                                           turn.testFlag(QImageIOHandler::TransformationFlip));
    return turn.testFlag(QImageIOHandler::TransformationRotate90)
               ? mirrored.transformed(QTransform().rotate(90))
               : mirrored;
}

bool IsOpaque(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (std::any_of(row, row + image.width(), [](QRgb c) { return qAlpha(c) != 255; }))
            return false;
    }
    return true;
}

QImage OnWhite(const QImage& image) {
    QImage result(image.size(), QImage::Format_RGB32);
    if (result.isNull())
        throw std::bad_alloc();
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, image);
    return result;
}

QImage ImageFor(const QByteArray& format, const LXImageRGBA32i& pixels) {
    static const QList<QByteArray> WithAlpha = {"cur", "icns", "ico",  "png",
                                                "tif", "tiff", "webp", "xpm"};
    const QImage image = ConvertImage<LXImageRGBA32i, QImage>(pixels);
    if (image.isNull() && pixels.GetWidth() > 0)
        throw std::bad_alloc();
    if (IsOpaque(image))
        return image.convertToFormat(QImage::Format_RGB32);
    return WithAlpha.contains(format) ? image : OnWhite(image);
}

/// Formats with loss lose nothing that can be seen; the others take their own default.
int Quality(const QByteArray& format) {
    if (format == "jpg" || format == "jpeg")
        return 95;
    return format == "webp" ? 100 : -1;
}

/// Pixels are written as RGB, for which no other profile is true. Of a profile that is not matrix
/// and curves the encoders but that for JPEG keep nothing.
void SetProfile(QImage& image, const Picture& picture, const QString& name,
                const QByteArray& format) {
    if (picture.icc.isEmpty())
        return;
    RMCMSProfile profile;
    if (!profile.FromByteArray(picture.icc) || !IsForRGB(profile)) {
        Complain(name + QStringLiteral(": colour profile not kept, it is damaged or not for RGB"));
        return;
    }
    const QColorSpace space = QColorSpace::fromIccProfile(picture.icc);
    image.setColorSpace(space);
    if (!space.isValid() && QList<QByteArray>{"png", "tif", "tiff", "webp"}.contains(format))
        Complain(name + QStringLiteral(": colour profile not kept, it is of an unusual kind"));
}

QByteArray Encode(const Picture& picture, const QString& name, const QByteArray& format) {
    QImage image = ImageFor(format, picture.pixels);
    SetProfile(image, picture, name, format);
    StopIfInterrupted();

    EncodedFile file;
    QImageWriter writer(&file, format);
    writer.setQuality(Quality(format));
    const bool written = writer.write(image);
    StopIfInterrupted();
    if (!written)
        throw Failure{name, writer.errorString()};
    if (picture.exif.empty())
        return file.data();
    Exiv2::ExifData exif = picture.exif;
    CorrectSize(exif, image.width(), image.height());
    if (picture.isUpright)
        CorrectOrientation(exif);
    return WithExif(file.data(), exif);
}

} // namespace

Picture LoadPicture(const QString& path) {
    const QString name = InputName(path);
    const QByteArray bytes = ReadBytes(path);
    WatchedFile file(bytes);
    const QByteArray format = RecogniseFormat(file, name);
    QImageReader reader(&file, format);
    reader.setAutoTransform(false);
    const QImage image = Decode(reader, file, name);

    const QImage argb =
        Upright(image.convertToFormat(QImage::Format_ARGB32), reader.transformation());
    if (argb.isNull())
        throw std::bad_alloc();
    Picture picture{ConvertImage<QImage, LXImageRGBA32i>(argb), format,
                    image.colorSpace().iccProfile(), ReadExif(bytes),
                    reader.supportsOption(QImageIOHandler::ImageTransformation)};
    RMCMSProfile profile;
    profile.FromByteArray(picture.icc); // a damaged one is none to the library
    picture.pixels.SetProfile(profile);
    picture.pixels.SetEXIF(ExifElements(picture.exif));
    StopIfInterrupted();
    return picture;
}

void SavePicture(const Picture& picture, const QString& path, const QByteArray& format) {
    WriteBytes(path, Encode(picture, OutputName(path), format));
}

QByteArray OutputFormat(const QString& path, const QString& option) {
    const bool toStandardOutput = path == QLatin1String("-");
    const QString wanted = !option.isEmpty()  ? option
                           : toStandardOutput ? QStringLiteral("png")
                                              : QFileInfo(path).suffix();
    const QByteArray format = wanted.toLatin1().toLower();
    if (QImageWriter::supportedImageFormats().contains(format))
        return format;
    if (!option.isEmpty())
        throw UsageError{QStringLiteral("cannot write the file format '%1'").arg(option)};
    FailWith(path, "cannot tell a file format from this name; use --format");
}
