#include "CommandLine.h"
#include "DemoPicture.h"
#include "Failure.h"
#include "LXConvertImage.h"
#include "Picture.h"
#include "Progress.h"

#include <QtCore/QRegularExpression>

static QSize ParseSize(const QString& text) {
    constexpr int Longest = 16384;
    static const QRegularExpression pattern(
        QStringLiteral("^([1-9][0-9]{0,4})x([1-9][0-9]{0,4})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.isEmpty() || size.width() > Longest || size.height() > Longest)
        throw UsageError{QStringLiteral("'%1' is no size; write 1200x800, at most %2x%2")
                             .arg(text)
                             .arg(Longest)};
    return size;
}

int RunScene(const Command& command, const QStringList& arguments) {
    const QString sizeOption = QStringLiteral("size");
    CommandLine line(command,
                     QStringLiteral("Paints an evening at a lake, the same on every run: soft\n"
                                    "gradients, fine detail, a colour chart, transparent edges."));
    line.AddOption({sizeOption, QStringLiteral("Width and height in pixels."),
                    QStringLiteral("WxH"), QStringLiteral("1200x800")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The picture; - is standard output."));
    if (!line.Parse(arguments, 1, 1))
        return 0;

    const QSize size = ParseSize(line.Value(sizeOption));
    const QString out = line.Files().at(0);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));
    Progress progress(QStringLiteral("scene"), 1);
    const QImage image = PaintDemoPicture(size, progress);
    SavePicture({ConvertImage<QImage, LXImageRGBA32i>(image), format, {}, {}, true}, out, format);
    return 0;
}
