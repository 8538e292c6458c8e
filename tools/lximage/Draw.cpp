#include "BlendModes.h"
#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXImagePainter.h"
#include "LXTileWalk.h"
#include "Picture.h"
#include "Progress.h"
#include "SvgPath.h"
#include "TileShortage.h"
#include "Values.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <functional>

namespace {

/// What is drawn, and options are for.
enum Drawing { Path = 1, Text = 2, Image = 4, Any = Path | Text | Image };

struct Option {
    const char* name;
    int drawings;
    const char* text;
    const char* value; ///< what it takes; none for a flag
    const char* fallback;
};

constexpr Option Options[] = {
    {"path", Path, "Draw this path, as SVG writes it: \"M 10 10 h 80 v 60 z\".", "data", ""},
    {"text", Text, "Draw this text.", "text", ""},
    {"image", Image, "Draw this picture.", "file", ""},
    {"at", Any, "Where the origin of the path, or the corner of text or picture comes to lie.",
     "X,Y", "0,0"},
    {"mode", Any, "The blend mode; lximage help blend tells them all. Paths and text know 0 to 37.",
     "name|number", "source-over"},
    {"opacity", Any, "From 0 to 1.", "number", "1"},
    {"lock-alpha", Image, "Picture: keep the transparency of IN.", nullptr, nullptr},
    {"fill", Path | Text, "Path: fill it with this color. Text: its color.", "color", ""},
    {"fill-rule", Path, "Path: what is inside where it crosses itself.", "nonzero|evenodd",
     "nonzero"},
    {"outline", Path, "Path: fill half a pixel more on each side.", nullptr, nullptr},
    {"stroke", Path, "Path: draw its outline in this color, after filling it.", "color", ""},
    {"width", Path, "Path: the width of the outline.", "number", "1"},
    {"join", Path, "Path: the corners of the outline.", "miter|bevel|round", "miter"},
    {"cap", Path, "Path: the ends of the outline.", "flat|square|round", "flat"},
    {"dash", Path, "Path: the pattern of the outline.", "solid|dash|dot|dash-dot", "solid"},
    {"font", Text, "Text: the name of the font.", "family", "sans-serif"},
    {"size", Text, "Text: the height of the font in pixels.", "number", "48"},
    {"bold", Text, "Text: bold.", nullptr, nullptr},
    {"italic", Text, "Text: italic.", nullptr, nullptr},
    {"underline", Text, "Text: underlined.", nullptr, nullptr},
    {"align", Text, "Text: the alignment in its box.", "left|center|right|justify", "left"},
    {"box", Text,
     "Text: break lines in a box of this size. It goes to the edges of IN if not given.", "WxH",
     ""},
    {"rotate", Text, "Text: turn its box about its centre, in degrees clockwise.", "number", "0"},
};

QString Name(const char* name) {
    return QString::fromLatin1(name);
}

void AddOptions(CommandLine& line) {
    for (const Option& option : Options)
        if (option.value)
            line.AddOption(
                {Name(option.name), Name(option.text), Name(option.value), Name(option.fallback)});
        else
            line.AddOption({Name(option.name), Name(option.text)});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
}

/// The options of one call, read when they are asked for.
class Request {
public:
    explicit Request(const CommandLine& line) : m_line(line) {}

    bool Has(const char* name) const { return m_line.IsSet(Name(name)); }
    QString Value(const char* name) const { return m_line.Value(Name(name)); }
    double Number(const char* name, double low, double high) const {
        return ParseNumber(Value(name), Name(name), low, high);
    }
    /// The place of a word among those that the option takes.
    int Choice(const char* name) const {
        const auto* const option =
            std::find_if(std::begin(Options), std::end(Options),
                         [&](const Option& o) { return Name(o.name) == Name(name); });
        return ParseChoice(Value(name), Name(name), Name(option->value).split(QLatin1Char('|')));
    }
    /// With the opacity in it.
    QColor Color(const char* name, const char* fallback) const {
        QColor color = ParseColor(Has(name) ? Value(name) : Name(fallback));
        color.setAlphaF(color.alphaF() * Opacity());
        return color;
    }
    QPoint At() const { return ParsePoint(Value("at")); }
    double Opacity() const { return Number("opacity", 0, 1); }
    int Mode() const { return int(ParseBlendMode(Value("mode"))); }
    /// One that QPainter knows.
    int PainterMode() const {
        const int mode = Mode();
        if (mode < 0 || mode > QPainter::RasterOp_NotDestination)
            throw UsageError{QStringLiteral("paths and text have no mode '%1'").arg(Value("mode"))};
        return mode;
    }

private:
    const CommandLine& m_line;
};

/// What is to be done to the picture, with all options read.
using Job = std::function<void(LXImageRGBA32i&)>;

QPen ReadPen(const Request& request, const QColor& color) {
    constexpr Qt::PenStyle styles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
    constexpr Qt::PenCapStyle caps[] = {Qt::FlatCap, Qt::SquareCap, Qt::RoundCap};
    constexpr Qt::PenJoinStyle joins[] = {Qt::MiterJoin, Qt::BevelJoin, Qt::RoundJoin};
    return QPen(color, request.Number("width", 0, 10000), styles[request.Choice("dash")],
                caps[request.Choice("cap")], joins[request.Choice("join")]);
}

Job PathJob(const Request& request) {
    QPainterPath path = ParseSvgPath(request.Value("path")).translated(request.At());
    path.setFillRule(request.Choice("fill-rule") == 0 ? Qt::WindingFill : Qt::OddEvenFill);
    const int mode = request.PainterMode();
    const bool filled = request.Has("fill"), stroked = request.Has("stroke") || !filled;
    const bool outline = request.Has("outline");
    const QColor fill = request.Color("fill", "black");
    const QPen pen = ReadPen(request, request.Color("stroke", "black"));
    return [=](LXImageRGBA32i& image) {
        if (filled)
            FillPath(image, mode, path, fill, outline);
        if (stroked)
            DrawPath(image, mode, path, pen);
    };
}

QFont ReadFont(const Request& request) {
    QFont font(request.Value("font"));
    font.setPixelSize(ParseWhole(request.Value("size"), Name("size"), 1, 10000));
    font.setBold(request.Has("bold"));
    font.setItalic(request.Has("italic"));
    font.setUnderline(request.Has("underline"));
    return font;
}

Job TextJob(const Request& request) {
    constexpr Qt::AlignmentFlag alignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight,
                                                Qt::AlignJustify};
    const QTextOption option(alignments[request.Choice("align")]);
    const QFont font = ReadFont(request);
    const QColor color = ParseColor(request.Has("fill") ? request.Value("fill") : Name("black"));
    const QString text = request.Value("text");
    const int mode = request.PainterMode();
    const double opacity = request.Opacity(), rotation = request.Number("rotate", -360, 360);
    const QPoint at = request.At();
    const QSize box = request.Has("box") ? ParseSize(request.Value("box"), 100000) : QSize();
    return [=](LXImageRGBA32i& image) {
        const QPoint corner = LXImageRect(image).bottomRight();
        const QRect rect = box.isValid() ? QRect(at, box) : QRect(at, corner);
        DrawText(image, mode, opacity, rect, text, color, font, rotation, option);
    };
}

Job ImageJob(const Request& request) {
    const QString file = request.Value("image");
    const int mode = request.Mode();
    const double opacity = request.Opacity();
    const QPoint at = request.At();
    const bool lock = request.Has("lock-alpha");
    return [=](LXImageRGBA32i& image) {
        DrawImage(image, mode, at, LoadPicture(file).pixels, opacity, lock);
    };
}

/// Throws UsageError if an option is given that means nothing for the drawing.
void RequireMeaning(const Request& request, const char* drawingOption, Drawing drawing) {
    for (const Option& option : Options)
        if (request.Has(option.name) && !(option.drawings & drawing))
            throw UsageError{QStringLiteral("--%1 does not go with --%2")
                                 .arg(Name(option.name), Name(drawingOption))};
}

Job ReadJob(const Request& request) {
    constexpr struct {
        const char* option;
        Drawing drawing;
        Job (*read)(const Request&);
    } jobs[] = {{"path", Path, PathJob}, {"text", Text, TextJob}, {"image", Image, ImageJob}};
    for (const auto& job : jobs)
        if (request.Has(job.option)) {
            RequireMeaning(request, job.option, job.drawing);
            return job.read(request);
        }
    throw UsageError{QStringLiteral("one of --path, --text and --image is needed")};
}

} // namespace

int RunDraw(const Command& command, const QStringList& arguments) {
    CommandLine line(command,
                     QStringLiteral("Draws a path, text or a picture on a picture. Colors\n"
                                    "are #rrggbb, #aarrggbb or names."));
    AddOptions(line);
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const Job job = ReadJob(Request(line));
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("draw"), 3);
    Picture picture = LoadPicture(line.Files().at(0));
    progress.SetValue(1);
    const TileShortage shortage;
    job(picture.pixels);
    shortage.Check();
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
