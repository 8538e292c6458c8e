#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXImagePainter.h"
#include "LXTextHelper.h"
#include "Picture.h"
#include "Progress.h"
#include "Values.h"

#include <QtGui/QFontDatabase>
#include <QtGui/QPainter>

#include <algorithm>
#include <optional>

namespace {

constexpr double LongestSide = 30000;

/// What an editor would ask for.
struct Request {
    QFont font;
    QColor color;
    double bend, horizontal, vertical, angle;
    bool alongY;
    QString words;
    std::optional<QPair<int, int>> selection; ///< first character and how many
    std::optional<int> caret;

    bool IsDeformed() const { return bend != 0 || horizontal != 0 || vertical != 0; }
};

QFont ReadFont(const QString& family, int size) {
    static const QStringList generic = {QStringLiteral("sans-serif"), QStringLiteral("serif"),
                                        QStringLiteral("monospace")};
    if (!(generic + QFontDatabase().families()).contains(family, Qt::CaseInsensitive))
        throw UsageError{QStringLiteral("there is no font '%1'").arg(family)};
    QFont font(family);
    font.setPixelSize(size);
    return font;
}

/// Two whole numbers "A,N" that lie within the text.
QPair<int, int> ReadSelection(const QString& text, int length) {
    const QPoint range = ParsePoint(text);
    if (range.x() < 0 || range.y() < 0 || range.x() + range.y() > length)
        throw UsageError{QStringLiteral("'%1' selects more than the %2 characters of the text")
                             .arg(text)
                             .arg(length)};
    return {range.x(), range.y()};
}

Request ReadRequest(const CommandLine& line) {
    const auto value = [&](const char* name) { return line.Value(QLatin1String(name)); };
    const auto whole = [&](const char* name, int low, int high) {
        return ParseWhole(value(name), QLatin1String(name), low, high);
    };
    const auto number = [&](const char* name, double low, double high) {
        return ParseNumber(value(name), QLatin1String(name), low, high);
    };
    const QVector<double> keystone =
        ParseNumbers(value("keystone"), QStringLiteral("keystone"), 2, 2);
    Request request{ReadFont(value("font"), whole("size", 1, 2000)),
                    ParseColor(value("color")),
                    number("bend", -1000, 1000),
                    keystone[0],
                    keystone[1],
                    number("rotate", -360, 360),
                    line.IsSet(QStringLiteral("along-y")),
                    line.Files().at(0),
                    {},
                    {}};
    if (line.IsSet(QStringLiteral("select")))
        request.selection = ReadSelection(value("select"), request.words.size());
    if (line.IsSet(QStringLiteral("caret")))
        request.caret = whole("caret", 0, request.words.size());
    return request;
}

LXTextHelper MakeText(const Request& request) {
    LXTextHelper text(std::max(1.0f, float(request.font.pixelSize()) / 40));
    text.SetText(request.words);
    text.SetFont(request.font);
    text.SetColor(request.color);
    text.SetStyle(request.IsDeformed() ? 1 : 0);
    text.SetOrientation(request.alongY);
    text.SetBend(request.bend);
    text.SetHDistortion(request.horizontal);
    text.SetVDistortion(request.vertical);
    text.SetRenderMode(2);
    QMatrix4x4 transform;
    transform.rotate(float(request.angle), 0, 0, 1);
    text.SetTransform(transform);
    return text;
}

/// What is seen, where it is seen.
struct Paths {
    QPainterPath text, selection, caret;

    QRectF Bounds() const {
        QRectF bounds;
        for (const QPainterPath& path : {text, selection, caret})
            if (!path.isEmpty())
                bounds |= path.boundingRect().adjusted(-2, -2, 2, 2);
        return bounds;
    }
};

Paths MakePaths(LXTextHelper& text, const Request& request) {
    const auto placed = [&](const QPainterPath& path) {
        return text.TransformPathWithRect(path, path.boundingRect());
    };
    QPainterPath deformed;
    QRectF rect, mapped;
    QPointF offset;
    Paths paths;
    paths.text =
        placed(text.CreatePathByTextWithDeformationWithRect(deformed, rect, mapped, offset));
    if (request.selection)
        paths.selection = placed(text.CreateSelectionAndDeformationPath(
            offset, request.selection->first, request.selection->second));
    if (request.caret)
        paths.caret = placed(text.GetVerticalAndUnderLine(QPoint(), *request.caret, 0));
    return paths;
}

LXImageRGBA32i MakeImage(const LXTextHelper& text, const Paths& paths, const Request& request) {
    const QRectF bounds = paths.Bounds();
    if (bounds.isEmpty())
        throw UsageError{QStringLiteral("there is nothing to see of '%1'").arg(request.words)};
    if (!(bounds.width() <= LongestSide && bounds.height() <= LongestSide))
        throw UsageError{
            QStringLiteral("the picture would be larger than %1 x %1").arg(LongestSide)};
    const QRect canvas = bounds.toAlignedRect();
    LXImageRGBA32i image = text.CreateImage(paths.text, canvas);

    const QTransform toCanvas = QTransform::fromTranslate(-canvas.x(), -canvas.y());
    FillPath(image, QPainter::CompositionMode_DestinationOver, toCanvas.map(paths.selection),
             QColor(90, 150, 255, 130), false);
    if (request.caret) {
        const double width = std::max(2.0, request.font.pixelSize() / 40.0);
        DrawPath(image, QPainter::CompositionMode_SourceOver, toCanvas.map(paths.caret),
                 QPen(QColor(255, 80, 60), width));
    }
    return image;
}

} // namespace

int RunText(const Command& command, const QStringList& arguments) {
    CommandLine line(command, QStringLiteral("Makes a picture of a line of text, bent and turned, "
                                             "with what an editor shows\naround it. Colors are "
                                             "#rrggbb, #aarrggbb or names."));
    const struct {
        const char* name;
        const char* text;
        const char* value;
        const char* fallback;
    } options[] = {
        {"font", "The name of the font.", "family", "sans-serif"},
        {"size", "The height of the font in pixels.", "number", "100"},
        {"color", "The color of the text.", "color", "black"},
        {"bend", "Make a wave, in percent of half the height. It rises on the right.", "number",
         "0"},
        {"keystone",
         "Make the right edge higher and the left one lower, by H percent; the bottom wider and "
         "the top narrower, by V percent.",
         "H,V", "0,0"},
        {"rotate", "Turn clockwise, in degrees.", "number", "0"},
        {"select", "Show N characters from A on as selected.", "A,N", ""},
        {"caret", "Show a caret before this character, and the line below the text.", "A", ""},
    };
    for (const auto& option : options)
        line.AddOption({QString::fromLatin1(option.name), QString::fromLatin1(option.text),
                        QString::fromLatin1(option.value), QString::fromLatin1(option.fallback)});
    line.AddOption({QStringLiteral("along-y"),
                    QStringLiteral("The wave runs down the text and moves it sideways.")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("TEXT"), QStringLiteral("The text."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The picture; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const Request request = ReadRequest(line);
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("text"), 1);
    LXTextHelper text = MakeText(request);
    const LXImageRGBA32i image = MakeImage(text, MakePaths(text, request), request);
    StopIfInterrupted();
    SavePicture({image, format, {}, {}, true}, out, format);
    return 0;
}
