#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXConvertImage.h"
#include "LXHistogrammCalculator.h"
#include "LXTransformImageColors.h"
#include "Picture.h"
#include "Progress.h"
#include "Streams.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

namespace {

using Bins = std::array<int, 256>;

struct Channel {
    const char* name;
    QColor colour;
    Bins bins;
};

using Channels = std::array<Channel, 4>;

Channels Count(const LXImageRGBA32i& image) {
    Channels channels = {{{"red", QColor(240, 70, 70), {}},
                          {"green", QColor(70, 210, 90), {}},
                          {"blue", QColor(80, 130, 255), {}},
                          {"luminance", QColor(235, 235, 235), {}}}};
    LXHistogrammCalculator counter;
    counter.SetOutput(channels[0].bins.data(), channels[1].bins.data(), channels[2].bins.data(),
                      channels[3].bins.data());
    for (int y = 0; y < int(image.GetHeight()); ++y) {
        StopIfInterrupted();
        LXVisitImageColors<LXImageRGBA32i, LXHistogrammCalculator>()(
            image, QRect(0, y, int(image.GetWidth()), 1), counter);
    }
    return channels;
}

QString Thresholds(const Channels& channels) {
    QString text;
    for (const Channel& channel : channels) {
        const std::vector<int> ends = LXHistogrammCalculator::Threshold(channel.bins.data());
        text += QStringLiteral("%1 %2 .. %3\n")
                    .arg(QLatin1String(channel.name), -10)
                    .arg(ends[0])
                    .arg(ends[1]);
    }
    return text;
}

constexpr int PlotWidth = 256 * 3, PlotHeight = 360, Margin = 24;

/// The outline of a channel's bins; heights by the square root, so that small ones show too.
QPainterPath Outline(const Bins& bins, double highest) {
    QPainterPath path(QPointF(Margin, Margin + PlotHeight));
    for (int level = 0; level < 256; ++level) {
        const double height = highest > 0 ? std::sqrt(bins[std::size_t(level)] / highest) : 0;
        path.lineTo(Margin + (level + 0.5) * 3, Margin + PlotHeight * (1 - height));
    }
    path.lineTo(Margin + PlotWidth, Margin + PlotHeight);
    path.closeSubpath();
    return path;
}

QImage Draw(const Channels& channels) {
    QImage image(PlotWidth + 2 * Margin, PlotHeight + 2 * Margin,
                 QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        throw std::bad_alloc();
    image.fill(QColor(27, 28, 30));
    int highest = 0;
    for (const Channel& channel : channels)
        highest = std::max(highest, *std::max_element(channel.bins.begin(), channel.bins.end()));

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(60, 61, 66));
    for (int quarter = 0; quarter <= 4; ++quarter)
        painter.drawLine(Margin + quarter * PlotWidth / 4, Margin, Margin + quarter * PlotWidth / 4,
                         Margin + PlotHeight);
    for (const Channel& channel : channels) {
        const bool filled = &channel != &channels.back();
        painter.setCompositionMode(filled ? QPainter::CompositionMode_Screen
                                          : QPainter::CompositionMode_SourceOver);
        painter.setPen(QPen(channel.colour, 1.2));
        QColor fill = channel.colour;
        fill.setAlpha(filled ? 120 : 0);
        painter.setBrush(fill);
        painter.drawPath(Outline(channel.bins, highest));
    }
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

} // namespace

int RunHistogram(const Command& command, const QStringList& arguments) {
    CommandLine line(command,
                     QStringLiteral("Counts the levels of red, green, blue and luminance, and\n"
                                    "prints between which of them nearly all pixels lie. OUT gets\n"
                                    "a drawing of the counts."));
    line.AddFormatOption();
    line.AddFile(QStringLiteral("FILE"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The drawing; may be left out."));
    if (!line.Parse(arguments, 1, 2))
        return 0;
    const QString out = line.Files().value(1);
    if (out == QLatin1String("-"))
        throw UsageError{QStringLiteral("standard output is for the numbers")};
    const QByteArray format =
        out.isEmpty() ? QByteArray() : OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("histogram"), 2);
    const Picture picture = LoadPicture(line.Files().at(0));
    progress.SetValue(1);
    const Channels channels = Count(picture.pixels);
    progress.SetValue(2);
    if (!out.isEmpty())
        SavePicture({ConvertImage<QImage, LXImageRGBA32i>(Draw(channels)), format, {}, {}, true},
                    out, format);
    Print(Thresholds(channels));
    return 0;
}
