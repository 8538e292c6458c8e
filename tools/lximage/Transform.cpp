#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXImageTransformation.h"
#include "LXTileWalk.h"
#include "Picture.h"
#include "Progress.h"
#include "Values.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr char NothingLeft[] = "the transform leaves nothing of a picture";

struct Quality {
    const char* name;
    bool (*transform)(const LXImageRGBA32i& source, const QTransform& transform,
                      LXImageRGBA32i& destination, const QRect& rect);
};

const Quality qualities[] = {
    {"nearest", NearestNeighbourTransformImage},
    {"bilinear", BilinearTransformImage},
    {"bicubic", BicubicTransformImage},
};

const Quality& FindQuality(const QString& name) {
    for (const Quality& quality : qualities)
        if (name == QLatin1String(quality.name))
            return quality;
    throw UsageError{QStringLiteral("there is no quality '%1'").arg(name)};
}

QTransform Rotation(const QString& text) {
    QTransform transform;
    transform.rotate(ParseNumbers(text, QStringLiteral("angle"), 1, 1).at(0));
    return transform;
}

QTransform Scaling(const QString& text) {
    const QVector<double> v = ParseNumbers(text, QStringLiteral("scale"), 1, 2);
    return QTransform::fromScale(v.first(), v.last());
}

QTransform Shearing(const QString& text) {
    const QVector<double> v = ParseNumbers(text, QStringLiteral("shear"), 2, 2);
    return QTransform(1, v[1], v[0], 1, 0, 0);
}

QTransform Matrix(const QString& text) {
    const QVector<double> v = ParseNumbers(text, QStringLiteral("matrix"), 6, 9);
    if (v.size() == 6)
        return QTransform(v[0], v[1], v[2], v[3], v[4], v[5]);
    if (v.size() == 9)
        return QTransform(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]);
    throw UsageError{QStringLiteral("'%1' is no matrix: it has 6 or 9 numbers").arg(text)};
}

struct Kind {
    const char* option;
    const char* value;
    const char* text;
    QTransform (*parse)(const QString& text);
};

const Kind kinds[] = {
    {"rotate", "degrees", "Turn clockwise.", Rotation},
    {"scale", "SX[,SY]", "Scale; a negative number mirrors.", Scaling},
    {"shear", "X,Y", "Move rows and columns along, by so much for each pixel.", Shearing},
    {"matrix", "numbers",
     "Any transform: the six elements M11,M12,M21,M22,DX,DY of an affine matrix, or "
     "M11,M12,M13,M21,M22,M23,M31,M32,M33 of a perspective one.",
     Matrix},
};

/// Of the one option that says what to do.
QTransform ParseTransform(const CommandLine& line) {
    const Kind* given = nullptr;
    for (const Kind& kind : kinds)
        if (line.IsSet(QString::fromLatin1(kind.option))) {
            if (given)
                throw UsageError{
                    QStringLiteral("--%1 and --%2 are two transforms; give one")
                        .arg(QLatin1String(given->option), QLatin1String(kind.option))};
            given = &kind;
        }
    if (!given)
        throw UsageError{QStringLiteral("no transform is given")};
    const QTransform transform = given->parse(line.Value(QString::fromLatin1(given->option)));
    if (!transform.isInvertible())
        throw UsageError{QString::fromLatin1(NothingLeft)};
    return transform;
}

/// The whole picture, transformed, on a canvas of just its size.
LXImageRGBA32i Transform(const LXImageRGBA32i& image, const QTransform& transform,
                         const Quality& quality, const QString& file) {
    constexpr double longest = 60000, rounding = 1e-6;
    const QRectF box = transform.mapRect(QRectF(LXImageRect(image)))
                           .adjusted(rounding, rounding, -rounding, -rounding);
    if (!(box.width() <= longest && box.height() <= longest && std::abs(box.left()) < 1e9 &&
          std::abs(box.top()) < 1e9))
        throw Failure{file, QStringLiteral("the result would be too large")};
    const QRect canvas = box.toAlignedRect();
    const QTransform toCanvas =
        transform * QTransform::fromTranslate(-canvas.left(), -canvas.top());
    if (toCanvas.mapRect(LXImageRect(image)).isEmpty())
        throw Failure{file, QString::fromLatin1(NothingLeft)};
    LXImageRGBA32i result(unsigned(std::max(canvas.width(), 1)),
                          unsigned(std::max(canvas.height(), 1)));
    if (!quality.transform(image, toCanvas, result, QRect()))
        throw Failure{file, QStringLiteral("there is no memory for the result")};
    return result;
}

} // namespace

int RunTransform(const Command& command, const QStringList& arguments) {
    const QString qualityOption = QStringLiteral("quality");
    CommandLine line(command, QStringLiteral("Transforms a picture; the result is as large as its "
                                             "bounding box. One of these says how:\n"
                                             "--rotate, --scale, --shear, --matrix."));
    for (const Kind& kind : kinds)
        line.AddOption({QString::fromLatin1(kind.option), QString::fromLatin1(kind.text),
                        QString::fromLatin1(kind.value)});
    line.AddOption({qualityOption, QStringLiteral("nearest, bilinear or bicubic."),
                    QStringLiteral("name"), QStringLiteral("bicubic")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const QTransform transform = ParseTransform(line);
    const Quality& quality = FindQuality(line.Value(qualityOption));
    const QString in = line.Files().at(0), out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("transform"), 3);
    Picture picture = LoadPicture(in);
    progress.SetValue(1);
    picture.pixels = Transform(picture.pixels, transform, quality, in);
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
