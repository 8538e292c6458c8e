#include "SvgPath.h"

#include "Failure.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QtMath>

#include <cmath>

namespace {

/// Coordinates beyond are a mistake, and Qt cannot draw them.
constexpr double Farthest = 1e7;

/// Reads numbers and commands from left to right.
class Scanner {
public:
    explicit Scanner(const QString& text) : m_text(text) { SkipSpace(); }

    bool AtEnd() const { return m_place == m_text.size(); }
    /// A letter is next, or the end: no further numbers for the last command.
    bool AtCommand() const { return AtEnd() || m_text[m_place].isLetter(); }

    QChar TakeCommand() {
        if (!m_text[m_place].isLetter())
            Refuse("a command is missing");
        if (!QStringLiteral("MLHVCSQTAZ").contains(m_text[m_place].toUpper()))
            Refuse("there is no such command");
        const QChar command = m_text[m_place++];
        SkipSpace();
        return command;
    }

    double TakeNumber() {
        static const QRegularExpression pattern(
            QStringLiteral("[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)?"));
        const auto match = pattern.match(m_text, m_place, QRegularExpression::NormalMatch,
                                         QRegularExpression::AnchoredMatchOption);
        if (!match.hasMatch())
            Refuse("a number is missing");
        const double number = match.captured().toDouble();
        if (!(std::abs(number) <= Farthest))
            Refuse("the number is too large");
        m_place = match.capturedEnd();
        SkipSeparator();
        return number;
    }

    /// One digit; what follows need not be apart from it.
    bool TakeFlag() {
        const QChar digit = AtEnd() ? QChar() : m_text[m_place];
        if (digit != QLatin1Char('0') && digit != QLatin1Char('1'))
            Refuse("a flag, 0 or 1, is missing");
        ++m_place;
        SkipSeparator();
        return digit == QLatin1Char('1');
    }

    [[noreturn]] void Refuse(const char* reason) const {
        throw UsageError{QStringLiteral("the path is wrong at character %1: %2")
                             .arg(m_place + 1)
                             .arg(QLatin1String(reason))};
    }

private:
    void SkipSpace() {
        while (!AtEnd() && m_text[m_place].isSpace())
            ++m_place;
    }
    /// Space with at most one comma in it, which must not be the last word.
    void SkipSeparator() {
        SkipSpace();
        if (AtEnd() || m_text[m_place] != QLatin1Char(','))
            return;
        ++m_place;
        SkipSpace();
        if (AtCommand())
            Refuse("a number is missing");
    }

    const QString m_text;
    int m_place = 0;
};

/// An elliptical arc between two points, as SVG 1.1, F.6, tells.
struct Arc {
    double rx, ry;
    double rotation; ///< of the ellipse, in radians
    bool large, sweep;

    void AppendTo(QPainterPath& path, const QPointF& to) const;
};

/// The angle from one vector to another.
double AngleBetween(const QPointF& from, const QPointF& to) {
    return std::atan2(from.x() * to.y() - from.y() * to.x(), QPointF::dotProduct(from, to));
}

/// An arc of the unit circle as cubic curves of a quarter at most, mapped to where it belongs and
/// ending exactly at `end`.
void AppendUnitArc(QPainterPath& path, double start, double span, const QTransform& map,
                   const QPointF& end) {
    const int pieces = std::max(1, int(std::ceil(std::abs(span) / M_PI_2 - 1e-9)));
    const double step = span / pieces, handle = 4.0 / 3 * std::tan(step / 4);
    for (int i = 0; i < pieces; ++i) {
        const double a = start + i * step, b = a + step;
        const QPointF from(std::cos(a), std::sin(a)), to(std::cos(b), std::sin(b));
        path.cubicTo(map.map(from + handle * QPointF(-from.y(), from.x())),
                     map.map(to - handle * QPointF(-to.y(), to.x())),
                     i + 1 < pieces ? map.map(to) : end);
    }
}

void Arc::AppendTo(QPainterPath& path, const QPointF& to) const {
    const QPointF from = path.currentPosition();
    if (from == to)
        return;
    double a = std::abs(rx), b = std::abs(ry);
    if (a == 0 || b == 0)
        return path.lineTo(to);
    QTransform turn;
    turn.rotateRadians(rotation);
    const QPointF half = turn.inverted().map((from - to) / 2);
    const double excess = std::hypot(half.x() / a, half.y() / b);
    if (excess > 1) { // radii that do not reach are enlarged until they do
        a *= excess;
        b *= excess;
    }
    // On the unit circle the two points are at p and -p from the middle between them.
    const QPointF p(half.x() / a, half.y() / b);
    const double square = QPointF::dotProduct(p, p);
    const double distance = std::sqrt(std::max(0.0, (1 - square) / square));
    const QPointF centre = (large == sweep ? -distance : distance) * QPointF(p.y(), -p.x());
    const QPointF first = p - centre, last = -p - centre;
    double span = AngleBetween(first, last);
    if (sweep && span < 0)
        span += 2 * M_PI;
    else if (!sweep && span > 0)
        span -= 2 * M_PI;
    const QPointF middle = (from + to) / 2;
    const QTransform map =
        QTransform::fromScale(a, b) * turn * QTransform::fromTranslate(middle.x(), middle.y());
    AppendUnitArc(path, std::atan2(first.y(), first.x()), span,
                  QTransform::fromTranslate(centre.x(), centre.y()) * map, to);
}

/// Carries out command after command.
class Builder {
public:
    explicit Builder(const QString& text) : m_scanner(text) { m_path.setFillRule(Qt::WindingFill); }

    QPainterPath Build() {
        if (m_scanner.AtEnd())
            m_scanner.Refuse("there is nothing in it");
        while (!m_scanner.AtEnd()) {
            const QChar letter = m_scanner.TakeCommand();
            QChar command = letter.toUpper();
            m_relative = letter.isLower();
            if (m_last.isNull() && command != QLatin1Char('M'))
                m_scanner.Refuse("a path begins with M");
            if (command == QLatin1Char('Z')) {
                Close();
                continue;
            }
            do { // once at least
                Draw(command);
                m_last = command;
                if (command == QLatin1Char('M')) // further points are lines
                    command = QLatin1Char('L');
            } while (!m_scanner.AtCommand());
        }
        return m_path;
    }

private:
    QPointF Here() const { return m_path.currentPosition(); }
    QPointF Origin() const { return m_relative ? Here() : QPointF(); }
    QPointF TakePoint() {
        const double x = m_scanner.TakeNumber();
        return Origin() + QPointF(x, m_scanner.TakeNumber());
    }
    /// The last control point mirrored at the current one, if the last command was of this kind.
    QPointF Mirrored(const char* commands) const {
        return QString::fromLatin1(commands).contains(m_last) ? 2 * Here() - m_control : Here();
    }

    void Close() {
        m_path.closeSubpath();
        m_last = QLatin1Char('Z');
    }

    void CubicTo(const QPointF& first, const QPointF& second, const QPointF& end) {
        m_control = second;
        m_path.cubicTo(first, second, end);
    }
    void QuadTo(const QPointF& control, const QPointF& end) {
        m_control = control;
        m_path.quadTo(control, end);
    }

    void DrawArc() {
        Arc arc{};
        arc.rx = m_scanner.TakeNumber();
        arc.ry = m_scanner.TakeNumber();
        arc.rotation = qDegreesToRadians(m_scanner.TakeNumber());
        arc.large = m_scanner.TakeFlag();
        arc.sweep = m_scanner.TakeFlag();
        arc.AppendTo(m_path, TakePoint());
    }

    void Draw(QChar command) {
        const bool cubic = command == QLatin1Char('C'), quadratic = command == QLatin1Char('Q');
        switch (command.toLatin1()) {
        case 'M':
            return m_path.moveTo(TakePoint());
        case 'L':
            return m_path.lineTo(TakePoint());
        case 'H':
            return m_path.lineTo(Origin().x() + m_scanner.TakeNumber(), Here().y());
        case 'V':
            return m_path.lineTo(Here().x(), Origin().y() + m_scanner.TakeNumber());
        case 'C':
        case 'S': {
            const QPointF first = cubic ? TakePoint() : Mirrored("CS"), second = TakePoint();
            return CubicTo(first, second, TakePoint());
        }
        case 'Q':
        case 'T': {
            const QPointF control = quadratic ? TakePoint() : Mirrored("QT");
            return QuadTo(control, TakePoint());
        }
        case 'A':
            return DrawArc();
        }
    }

    Scanner m_scanner;
    QPainterPath m_path;
    bool m_relative = false;
    QChar m_last;
    QPointF m_control; // of the last curve
};

} // namespace

QPainterPath ParseSvgPath(const QString& text) {
    return Builder(text).Build();
}
