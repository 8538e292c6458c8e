#include "Values.h"

#include "Failure.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

QSize ParseSize(const QString& text, int longest) {
    static const QRegularExpression pattern(
        QStringLiteral("^([1-9][0-9]{0,8})x([1-9][0-9]{0,8})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.isEmpty() || std::max(size.width(), size.height()) > longest)
        throw UsageError{QStringLiteral("'%1' is no size; write 1200x800, at most %2x%2")
                             .arg(text)
                             .arg(longest)};
    return size;
}

QPoint ParsePoint(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral("^(-?[0-9]{1,8}),(-?[0-9]{1,8})$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        throw UsageError{QStringLiteral("'%1' is no position; write 10,25").arg(text)};
    return {match.captured(1).toInt(), match.captured(2).toInt()};
}

QRect ParseRect(const QString& text) {
    static const QRegularExpression pattern(
        QStringLiteral("^(-?[0-9]{1,8},-?[0-9]{1,8}),([0-9]+x[0-9]+)$"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        throw UsageError{QStringLiteral("'%1' is no rectangle; write 10,25,300x200").arg(text)};
    return QRect(ParsePoint(match.captured(1)), ParseSize(match.captured(2), 100000000));
}

QVector<double> ParseNumbers(const QString& text, const QString& what, int fewest, int most) {
    const QStringList parts = text.split(QLatin1Char(','));
    QVector<double> values;
    for (const QString& part : parts) {
        bool isNumber = false;
        values.append(part.toDouble(&isNumber));
        if (!isNumber || !std::isfinite(values.last()))
            throw UsageError{
                QStringLiteral("'%1' is no %2: '%3' is no number").arg(text, what, part)};
    }
    if (values.size() < fewest || values.size() > most)
        throw UsageError{QStringLiteral("'%1' is no %2: wrong count of numbers").arg(text, what)};
    return values;
}

double ParseNumber(const QString& text, const QString& what, double low, double high) {
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !(value >= low && value <= high))
        throw UsageError{QStringLiteral("'%1' is no %2; it goes from %3 to %4")
                             .arg(text, what)
                             .arg(low)
                             .arg(high)};
    return value;
}

int ParseChoice(const QString& text, const QString& what, const QStringList& words) {
    const int place = words.indexOf(text);
    if (place < 0)
        throw UsageError{QStringLiteral("'%1' is no %2; it is one of %3")
                             .arg(text, what, words.join(QStringLiteral(", ")))};
    return place;
}

QColor ParseColor(const QString& text) {
    const QColor color(text);
    if (!color.isValid())
        throw UsageError{
            QStringLiteral("'%1' is no color; write #rrggbb, #aarrggbb or a name").arg(text)};
    return color;
}

int ParseWhole(const QString& text, const QString& what, int low, int high) {
    const double value = ParseNumber(text, what, low, high);
    if (value != int(value))
        throw UsageError{QStringLiteral("'%1' is no %2; it is a whole number").arg(text, what)};
    return int(value);
}
