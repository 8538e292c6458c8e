#pragma once

#include "LXPixel.h"

#include <QtCore/QMap>
#include <QtCore/QPoint>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <vector>

/// What kind of value a parameter takes.
enum class ParameterKind {
    Integer, ///< from low to high
    Number,  ///< from low to high
    Flag,    ///< given or not
    Choice,  ///< a word of a list that is separated by |
    Colour,  ///< #rrggbb
    Triple,  ///< three integers from low to high, as 10,-5,0
    Range,   ///< two integers from low to high, as 0,255
    Points   ///< points of a curve from low to high, as 0,0/128,150/255,255
};

/// One parameter of an operation that the command line sets.
struct Parameter {
    const char* name;
    ParameterKind kind;
    const char* text;
    const char* fallback;
    double low = 0;
    double high = 0;
    const char* choices = "";

    /// What values it takes, as "0 .. 255".
    QString Domain() const;
    /// Whether a number is from low to high.
    bool Allows(double value) const { return value >= low && value <= high; }
};

/// The values of the parameters of an operation. All are checked when they are set; reading one
/// that is not there, or as another kind, is a mistake of the program.
class ParameterValues {
public:
    /// Throws UsageError if the text is no value of the parameter. `given` tells that it is the
    /// user's, and not a fallback.
    void Set(const Parameter& parameter, const QString& text, bool given = true);

    bool IsGiven(const char* name) const { return At(name).given; }
    int Integer(const char* name) const { return int(Number(name)); }
    double Number(const char* name) const;
    bool Flag(const char* name) const;
    int Choice(const char* name) const; ///< the place in the list, from 0
    LXRGBA32i Colour(const char* name) const;
    QVector<int> Integers(const char* name) const;
    QVector<QPoint> Points(const char* name) const;

private:
    struct Value {
        double number = 0;
        LXRGBA32i colour{};
        QVector<int> integers;
        bool given = false;
    };
    const Value& At(const char* name) const;

    QMap<QString, Value> m_values;
};
