#pragma once

#include <QtCore/QDataStream>
#include <QtGui/QColor>

#include <cstring>
#include <string>
#include <tuple>
#include <utility>

/// The form of filter parameters on a stream: the letters of a header, and then the fields. Each
/// filter has one description of it, from which reading and writing come.
namespace LXParameterStream {

/// `fields` are pointers to members, in the order of the stream.
template <class... Fields>
struct Description {
    const char* header;
    std::tuple<Fields...> fields;
    const char* writeError;
    const char* readError;
};

template <class... Fields>
constexpr Description<Fields...> Describe(const char* header, const char* writeError,
                                          const char* readError, Fields... fields) {
    return {header, std::tuple<Fields...>(fields...), writeError, readError};
}

inline bool WriteHeader(QDataStream& stream, const char* header) {
    const int length = int(std::strlen(header));
    return stream.writeRawData(header, length) == length;
}

/// As many bytes as the header has, or what there is.
inline std::string ReadHeader(QDataStream& stream, const char* header) {
    std::string text(std::strlen(header), '\0');
    const int count = stream.readRawData(&text[0], int(text.size()));
    text.resize(std::size_t(count < 0 ? 0 : count));
    return text;
}

inline void WriteField(QDataStream& stream, bool value) {
    stream << qint32(value);
}
template <class Value>
void WriteField(QDataStream& stream, const Value& value) {
    stream << value;
}

/// Sets the field if all of it was there. A stream that had failed before keeps that failure.
template <class Value>
void ReadField(QDataStream& stream, Value& value) {
    const QDataStream::Status before = stream.status();
    stream.resetStatus();
    Value read = value;
    stream >> read;
    if (stream.status() == QDataStream::Ok)
        value = read;
    if (before != QDataStream::Ok) {
        stream.resetStatus(); // setStatus changes nothing but Ok
        stream.setStatus(before);
    }
}
inline void ReadField(QDataStream& stream, bool& value) {
    qint32 number = value;
    ReadField(stream, number);
    value = number != 0;
}

template <class Params, class... Fields>
bool Write(QDataStream& stream, const Params& params, const Description<Fields...>& block) {
    if (!WriteHeader(stream, block.header))
        return false;
    std::apply([&](auto... field) { (WriteField(stream, params.*field), ...); }, block.fields);
    return stream.status() == QDataStream::Ok;
}

template <class Params, class... Fields>
bool ReadFields(QDataStream& stream, Params& params, const std::tuple<Fields...>& fields) {
    std::apply([&](auto... field) { (ReadField(stream, params.*field), ...); }, fields);
    return stream.status() == QDataStream::Ok;
}

template <class Params, class... Fields>
bool Read(QDataStream& stream, Params& params, const Description<Fields...>& block) {
    return ReadHeader(stream, block.header) == block.header &&
           ReadFields(stream, params, block.fields);
}

} // namespace LXParameterStream
