#include "ParamsFile.h"

#include "Streams.h"

#include <QtCore/QDataStream>

namespace {

/// Of both directions: Qt's form of numbers and colours depends on it.
constexpr QDataStream::Version StreamVersion = QDataStream::Qt_5_15;

bool ReadWhole(const QByteArray& bytes, FilterSettings& settings) {
    QDataStream stream(bytes);
    stream.setVersion(StreamVersion);
    return settings.Read(stream) && stream.atEnd();
}

QString WhyUnread(const QByteArray& bytes, const Filter& filter) {
    for (const Filter& other : Filters())
        if (ReadWhole(bytes, *other.makeSettings()))
            return QStringLiteral("it holds parameters of %1, and not of %2")
                .arg(QLatin1String(other.name), QLatin1String(filter.name));
    return QStringLiteral("this is not a whole file of parameters of %1")
        .arg(QLatin1String(filter.name));
}

} // namespace

void LoadParams(const QString& path, const Filter& filter, FilterSettings& settings) {
    const QByteArray bytes = ReadBytes(path);
    if (!ReadWhole(bytes, settings))
        throw Failure{InputName(path), WhyUnread(bytes, filter)};
    if (const Parameter* unfit = settings.FirstUnfit(filter.parameters))
        throw Failure{InputName(path), QStringLiteral("its value for --%1 is not in %2")
                                           .arg(QLatin1String(unfit->name), unfit->Domain())};
}

void SaveParams(const QString& path, const FilterSettings& settings) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(StreamVersion);
    if (!settings.Write(stream))
        throw Failure{OutputName(path), QStringLiteral("the parameters cannot be written")};
    WriteBytes(path, bytes);
}
