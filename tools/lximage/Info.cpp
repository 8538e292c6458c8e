#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Metadata.h"
#include "Picture.h"
#include "Progress.h"
#include "Streams.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace {

/// How the tiles of an image are spent.
struct TileCensus {
    int columns;
    int rows;
    int slotCount;
    int distinct;
    int shared; ///< slots whose tile is also in another slot
};

struct ExifField {
    QString tag; ///< the number of a kind that the library knows, otherwise the name in the file
    QString label;
    QString value;
    QString description; ///< may be empty
};

struct PictureInfo {
    QString path;
    int width;
    int height;
    QString format;
    TileCensus tiles;
    QString profile; ///< empty for none
    QVector<ExifField> exif;
};

TileCensus CountTiles(const LXImageRGBA32i& image) {
    QHash<const void*, int> holders;
    for (unsigned int row = 0; row < image.GetTilesY(); ++row)
        for (unsigned int column = 0; column < image.GetTilesX(); ++column)
            ++holders[image.GetTileRow(row)[column].constData()];

    TileCensus census = {int(image.GetTilesX()), int(image.GetTilesY()), 0, holders.size(), 0};
    census.slotCount = census.columns * census.rows;
    for (const int count : qAsConst(holders))
        census.shared += count > 1 ? count : 0;
    return census;
}

QString ProfileName(const Picture& picture) {
    if (picture.icc.isEmpty())
        return {};
    const RMCMSProfile& profile = picture.pixels.GetProfile();
    if (profile.IsEmpty())
        return QStringLiteral("damaged");
    QString name = profile.GetInfo();
    if (name.endsWith(QChar::Null))
        name.chop(1);
    return name.isEmpty() ? QStringLiteral("without a description") : name;
}

/// The elements that the image holds, and what else is in the file.
QVector<ExifField> Exif(const Picture& picture) {
    QVector<ExifField> fields;
    for (const RMEXIFElement& element : picture.pixels.GetEXIF()) {
        const RMEXIFElement::Type kind = element.GetType();
        const QString tag =
            QStringLiteral("0x%1").arg(RMEXIFElement::GetTag(kind), 4, 16, QLatin1Char('0'));
        fields.append({tag, RMEXIFElement::GetTypeName(kind), element.GetValue().toString(),
                       RMEXIFElement::GetDescription(kind)});
    }
    for (const ExifText& field : OtherExif(picture.exif))
        fields.append({field.tag, field.label, field.value, {}});
    return fields;
}

PictureInfo Examine(const QString& path) {
    const Picture picture = LoadPicture(path);
    return {path,
            int(picture.pixels.GetWidth()),
            int(picture.pixels.GetHeight()),
            QString::fromLatin1(picture.format),
            CountTiles(picture.pixels),
            ProfileName(picture),
            Exif(picture)};
}

/// One line of printable text: what a file says about itself must not steer the terminal.
QString Printable(QString text) {
    constexpr int Longest = 120;
    for (QChar& c : text)
        if (!c.isPrint() && !c.isSurrogate())
            c = QLatin1Char(' ');
    text = text.simplified();
    return text.size() > Longest ? text.left(Longest) + QStringLiteral(" ...") : text;
}

QString AsText(const PictureInfo& info) {
    const TileCensus& tiles = info.tiles;
    QString text = Printable(InputName(info.path)) + QLatin1Char('\n');
    const auto line = [&text](const QString& name, const QString& value) {
        text += QStringLiteral("  %1  %2\n").arg(name, -8).arg(value);
    };
    line(QStringLiteral("Size"), QStringLiteral("%1 x %2 pixels").arg(info.width).arg(info.height));
    line(QStringLiteral("Format"), info.format.toUpper());
    line(QStringLiteral("Tiles"), QStringLiteral("%1 slots (%2 x %3), %4 distinct, %5 shared")
                                      .arg(tiles.slotCount)
                                      .arg(tiles.columns)
                                      .arg(tiles.rows)
                                      .arg(tiles.distinct)
                                      .arg(tiles.shared));
    line(QStringLiteral("Profile"),
         info.profile.isEmpty() ? QStringLiteral("none") : Printable(info.profile));

    int width = 0;
    for (const ExifField& field : info.exif)
        width = qMax(width, field.label.size());
    for (int i = 0; i < info.exif.size(); ++i)
        line(i == 0 ? QStringLiteral("EXIF") : QString(),
             info.exif[i].label.leftJustified(width + 2) + Printable(info.exif[i].value));
    if (info.exif.isEmpty())
        line(QStringLiteral("EXIF"), QStringLiteral("none"));
    return text;
}

QJsonObject AsJson(const PictureInfo& info) {
    const TileCensus& tiles = info.tiles;
    QJsonArray exif;
    for (const ExifField& field : info.exif)
        exif.append(QJsonObject{{QStringLiteral("tag"), field.tag},
                                {QStringLiteral("label"), field.label},
                                {QStringLiteral("value"), field.value},
                                {QStringLiteral("description"), field.description}});
    const QJsonValue profile =
        info.profile.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(info.profile);
    return {{QStringLiteral("path"), info.path},
            {QStringLiteral("width"), info.width},
            {QStringLiteral("height"), info.height},
            {QStringLiteral("format"), info.format},
            {QStringLiteral("tiles"), QJsonObject{{QStringLiteral("columns"), tiles.columns},
                                                  {QStringLiteral("rows"), tiles.rows},
                                                  {QStringLiteral("slots"), tiles.slotCount},
                                                  {QStringLiteral("distinct"), tiles.distinct},
                                                  {QStringLiteral("shared"), tiles.shared}}},
            {QStringLiteral("profile"), profile},
            {QStringLiteral("exif"), exif}};
}

/// What can be told about the files. A bad one is complained about and left out.
QVector<PictureInfo> ExamineAll(const QStringList& files) {
    QVector<PictureInfo> infos;
    for (const QString& path : files) {
        StopIfInterrupted();
        try {
            Progress progress(QStringLiteral("info"), files.size()); // wiped before a complaint
            progress.SetValue(infos.size());
            infos.append(Examine(path));
        } catch (const Failure& failure) {
            Complain(failure.subject + QStringLiteral(": ") + failure.reason);
        } catch (const std::bad_alloc&) {
            Complain(InputName(path) + QStringLiteral(": out of memory"));
        }
    }
    return infos;
}

} // namespace

int RunInfo(const Command& command, const QStringList& arguments) {
    CommandLine line(command,
                     QStringLiteral("Shows size, file format, tiles, colour profile and EXIF.\n"
                                    "Distinct tiles take memory; shared slots take it together."));
    line.AddOption({QStringLiteral("json"), QStringLiteral("Print a JSON array.")});
    line.AddFile(QStringLiteral("FILE"), QStringLiteral("Pictures; - is standard input."));
    if (!line.Parse(arguments, 1))
        return 0;

    const QVector<PictureInfo> infos = ExamineAll(line.Files());
    if (line.IsSet(QStringLiteral("json"))) {
        QJsonArray array;
        for (const PictureInfo& info : infos)
            array.append(AsJson(info));
        Print(QString::fromUtf8(QJsonDocument(array).toJson()));
    } else {
        QStringList texts;
        for (const PictureInfo& info : infos)
            texts.append(AsText(info));
        Print(texts.join(QLatin1Char('\n')));
    }
    return infos.size() == line.Files().size() ? 0 : 1;
}
