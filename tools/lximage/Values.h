#pragma once

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtGui/QColor>

/// Values in the forms in which options take them. What cannot be read throws UsageError.

/// "1200x800", with sides from 1 to `longest`.
QSize ParseSize(const QString& text, int longest);

/// "-10,25"
QPoint ParsePoint(const QString& text);

/// "-10,25,300x200": the top left corner and the size.
QRect ParseRect(const QString& text);

/// Numbers separated by commas, from `fewest` to `most` of them; `what` says what they are.
QVector<double> ParseNumbers(const QString& text, const QString& what, int fewest, int most);

/// A number from `low` to `high`; `what` says in the message what it is.
double ParseNumber(const QString& text, const QString& what, double low, double high);

/// A whole number from `low` to `high`.
int ParseWhole(const QString& text, const QString& what, int low, int high);

/// The place of a word in a list of them.
int ParseChoice(const QString& text, const QString& what, const QStringList& words);

/// "#rrggbb", "#aarrggbb" or a name, as "red".
QColor ParseColor(const QString& text);
