#include "Parameters.h"

#include "Failure.h"
#include "Values.h"

#include <QtCore/QStringList>
#include <QtGui/QColor>

namespace {

[[noreturn]] void Refuse(const Parameter& parameter, const QString& text) {
    throw UsageError{QStringLiteral("'%1' is no value for --%2: %3")
                         .arg(text, QLatin1String(parameter.name), parameter.Domain())};
}

double ReadNumber(const Parameter& parameter, const QString& text) {
    bool isNumber = false;
    const double value =
        parameter.kind == ParameterKind::Number ? text.toDouble(&isNumber) : text.toInt(&isNumber);
    if (!isNumber || !parameter.Allows(value))
        Refuse(parameter, text);
    return value;
}

/// Integers with commas between them, or slashes, which part the points of a curve.
QVector<int> ReadIntegers(const Parameter& parameter, QString text) {
    QVector<int> integers;
    const QString whole = text;
    for (const QString& part :
         text.replace(QLatin1Char('/'), QLatin1Char(',')).split(QLatin1Char(','))) {
        bool isNumber = false;
        const int value = part.toInt(&isNumber);
        if (!isNumber || !parameter.Allows(value))
            Refuse(parameter, whole);
        integers.append(value);
    }
    const int count = integers.size();
    const bool fits = parameter.kind == ParameterKind::Triple  ? count == 3
                      : parameter.kind == ParameterKind::Range ? count == 2
                                                               : count % 2 == 0;
    if (!fits)
        Refuse(parameter, whole);
    return integers;
}

LXRGBA32i ReadColour(const Parameter& parameter, const QString& text) {
    const QColor colour(text);
    if (!colour.isValid())
        Refuse(parameter, text);
    return {static_cast<std::uint8_t>(colour.blue()), static_cast<std::uint8_t>(colour.green()),
            static_cast<std::uint8_t>(colour.red()), 255};
}

int ReadChoice(const Parameter& parameter, const QString& text) {
    const int place = QString::fromLatin1(parameter.choices).split(QLatin1Char('|')).indexOf(text);
    if (place < 0)
        Refuse(parameter, text);
    return place;
}

} // namespace

QString Parameter::Domain() const {
    const QString limits = QStringLiteral("%1 .. %2").arg(low).arg(high);
    switch (kind) {
    case ParameterKind::Integer:
    case ParameterKind::Number:
        return limits;
    case ParameterKind::Flag:
        return QStringLiteral("given or not");
    case ParameterKind::Choice:
        return QString::fromLatin1(choices);
    case ParameterKind::Colour:
        return QStringLiteral("#rrggbb or a name");
    case ParameterKind::Triple:
        return QStringLiteral("three of ") + limits;
    case ParameterKind::Range:
        return QStringLiteral("two of ") + limits;
    case ParameterKind::Points:
        return QStringLiteral("x,y/x,y/... in ") + limits;
    }
    return {};
}

void ParameterValues::Set(const Parameter& parameter, const QString& text, bool given) {
    Value value;
    value.given = given;
    switch (parameter.kind) {
    case ParameterKind::Integer:
    case ParameterKind::Number:
        value.number = ReadNumber(parameter, text);
        break;
    case ParameterKind::Flag:
        value.number = text.isEmpty() ? 0 : 1;
        break;
    case ParameterKind::Choice:
        value.number = ReadChoice(parameter, text);
        break;
    case ParameterKind::Colour:
        value.colour = ReadColour(parameter, text);
        break;
    case ParameterKind::Triple:
    case ParameterKind::Range:
    case ParameterKind::Points:
        value.integers = ReadIntegers(parameter, text);
        break;
    }
    m_values.insert(QString::fromLatin1(parameter.name), value);
}

const ParameterValues::Value& ParameterValues::At(const char* name) const {
    const auto found = m_values.constFind(QString::fromLatin1(name));
    Q_ASSERT_X(found != m_values.constEnd(), "ParameterValues", name);
    return *found;
}

double ParameterValues::Number(const char* name) const {
    return At(name).number;
}

bool ParameterValues::Flag(const char* name) const {
    return At(name).number != 0;
}

int ParameterValues::Choice(const char* name) const {
    return int(At(name).number);
}

LXRGBA32i ParameterValues::Colour(const char* name) const {
    return At(name).colour;
}

QVector<int> ParameterValues::Integers(const char* name) const {
    return At(name).integers;
}

QVector<QPoint> ParameterValues::Points(const char* name) const {
    const QVector<int> integers = Integers(name);
    QVector<QPoint> points;
    for (int i = 0; i + 1 < integers.size(); i += 2)
        points.append({integers[i], integers[i + 1]});
    return points;
}
