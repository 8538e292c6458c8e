#include "DemoPicture.h"

#include "Interrupt.h"
#include "Progress.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <cmath>
#include <iterator>
#include <new>
#include <random>

namespace {

// Everything is drawn in units of which the picture is 800 high. The width follows from its shape,
// within the limits that there is something to draw for.
constexpr qreal Height = 800;
constexpr qreal Shore = 505;
constexpr qreal Pi = 3.14159265358979323846;

struct Canvas {
    QImage image;
    qreal width;  ///< in units
    qreal scaleX; ///< pixels per unit
    qreal scaleY;

    qreal SunX() const { return width * 0.62; }
};

/// A painter on the canvas that works in units.
class Brush : public QPainter {
public:
    explicit Brush(Canvas& canvas) : QPainter(&canvas.image) {
        setRenderHint(Antialiasing);
        scale(canvas.scaleX, canvas.scaleY);
        setPen(Qt::NoPen);
    }
};

/// Numbers that look random and are the same on every run.
class Dice {
public:
    explicit Dice(unsigned int seed) : m_engine(seed) {}
    qreal operator()(qreal low, qreal high) {
        return low + (high - low) * double(m_engine()) / 4294967296.0;
    }

private:
    std::mt19937 m_engine;
};

QColor Mix(const QColor& a, const QColor& b, qreal share) {
    const auto mix = [share](int x, int y) { return qRound(x + (y - x) * share); };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()),
                  mix(a.alpha(), b.alpha()));
}

QLinearGradient Vertical(qreal top, qreal bottom, const QGradientStops& stops) {
    QLinearGradient gradient(0, top, 0, bottom);
    gradient.setStops(stops);
    return gradient;
}

void PaintSky(Canvas& canvas) {
    Brush(canvas).fillRect(QRectF(0, 0, canvas.width, Height),
                           Vertical(0, Shore,
                                    {{0.00, QColor(20, 24, 66)},
                                     {0.30, QColor(62, 50, 110)},
                                     {0.55, QColor(150, 78, 124)},
                                     {0.75, QColor(232, 124, 98)},
                                     {0.90, QColor(253, 184, 112)},
                                     {1.00, QColor(255, 222, 158)}}));
}

void PaintStars(Canvas& canvas) {
    Brush brush(canvas);
    Dice dice(7);
    for (int i = 0; i < 240; ++i) {
        const QPointF at(dice(0, canvas.width), dice(0, 1) * dice(0, 250));
        const qreal bright = (1 - at.y() / 250) * dice(0.2, 1);
        brush.setBrush(QColor(255, 246, 230, qRound(230 * bright)));
        const qreal radius = dice(0.4, 1.0) + (i % 20 == 0 ? 0.8 : 0);
        brush.drawEllipse(at, radius, radius);
    }
}

void PaintSun(Canvas& canvas) {
    Brush brush(canvas);
    const QPointF sun(canvas.SunX(), 372);
    const auto disc = [&](qreal radius, const QGradientStops& stops) {
        QRadialGradient gradient(sun, radius);
        gradient.setStops(stops);
        brush.setBrush(gradient);
        brush.drawEllipse(sun, radius, radius);
    };
    disc(420, {{0, QColor(255, 214, 150, 150)},
               {0.4, QColor(255, 170, 110, 60)},
               {1, QColor(255, 150, 100, 0)}});
    disc(130, {{0, QColor(255, 240, 200, 230)},
               {0.5, QColor(255, 220, 160, 90)},
               {1, QColor(255, 200, 140, 0)}});
    disc(
        46,
        {{0, QColor(255, 253, 240)}, {0.94, QColor(255, 244, 208)}, {1, QColor(255, 240, 200, 0)}});
}

/// Thin streaks, each of many faint ellipses.
void PaintClouds(Canvas& canvas) {
    Brush brush(canvas);
    Dice dice(21);
    for (int cloud = 0; cloud < 11; ++cloud) {
        const QPointF centre(dice(0, canvas.width), dice(90, 350));
        const qreal length = dice(120, 330);
        const QColor colour =
            Mix(QColor(150, 96, 150, 16), QColor(255, 206, 160, 20), (centre.y() - 90) / 260);
        brush.setBrush(colour);
        for (int puff = 0; puff < 70; ++puff) {
            const qreal along = dice(-1, 1) * dice(0.2, 1);
            const qreal thick = (1 - std::abs(along)) * 9 + 1.5;
            brush.drawEllipse(centre + QPointF(along * length, dice(-1, 1) * thick + along * 8),
                              dice(14, 60), dice(0.8, thick * 0.6 + 0.8));
        }
    }
}

/// The height of a ridge at x: waves of halving size.
qreal Ridge(qreal x, qreal length, qreal height, unsigned int seed) {
    Dice dice(seed);
    qreal y = 0;
    for (int octave = 0; octave < 8; ++octave) {
        y += height * std::sin(2 * Pi * x / length + dice(0, 2 * Pi));
        length *= dice(0.42, 0.56);
        height *= 0.5;
    }
    return y;
}

/// A row of firs along a ridge, each a jagged triangle.
void AddFirs(QPainterPath& path, qreal width, qreal base, Dice& dice) {
    for (qreal x = 0; x < width; x += dice(2.5, 8)) {
        const qreal foot = base - Ridge(x, 520, 17, 5) + 3;
        const qreal height = dice(6, 19);
        for (int tier = 0; tier < 4; ++tier) {
            const qreal y = foot - height * (0.1 + 0.22 * tier);
            const qreal half = height * (0.24 - 0.05 * tier);
            path.addPolygon(QPolygonF({{x - half, y}, {x, y - height * 0.36}, {x + half, y}}));
        }
    }
}

void PaintHills(Canvas& canvas) {
    Brush brush(canvas);
    const QColor far(214, 134, 120, 236);
    const QColor near(30, 32, 66, 255);
    constexpr int Layers = 5;
    for (int layer = 0; layer < Layers; ++layer) {
        const qreal share = qreal(layer) / (Layers - 1);
        const qreal base = 392 + 92 * share;
        const auto seed = static_cast<unsigned int>(layer + 1);
        QPainterPath hill(QPointF(0, Shore + 2));
        for (qreal x = 0; x <= canvas.width + 1; x += 1)
            hill.lineTo(x, base - Ridge(x, 820 - 300 * share, 34 - 17 * share, seed));
        hill.lineTo(canvas.width + 1, Shore + 2);
        hill.closeSubpath();
        if (layer == Layers - 1) {
            Dice dice(33);
            AddFirs(hill, canvas.width, base, dice);
            hill.setFillRule(Qt::WindingFill);
        }
        const QColor colour = Mix(far, near, std::pow(share, 0.8));
        const QColor haze = Mix(colour, QColor(255, 196, 150, colour.alpha()), 0.5 * (1 - share));
        brush.fillPath(hill, Vertical(base - 60, Shore, {{0, colour}, {1, haze}}));
    }
}

/// The mirrored land and sky, each row shifted by ripples that grow towards the viewer.
void PaintLake(Canvas& canvas) {
    QImage& image = canvas.image;
    const int shore = qRound(Shore * canvas.scaleY);
    const QImage land = image.copy(0, 0, image.width(), qMax(shore, 1));
    {
        QPainter painter(&image);
        for (int y = shore; y < image.height(); ++y) {
            const qreal depth = (y - shore) / canvas.scaleY / (Height - Shore);
            const qreal wave = std::sin(34 / (depth + 0.12)) + 0.6 * std::sin(83 / (depth + 0.2));
            const int row =
                shore - 1 - qRound((y - shore) * 1.25 + wave * 9 * depth * canvas.scaleY);
            const int shift = qRound(wave * (1 + 5 * depth) * canvas.scaleX);
            painter.drawImage(QRect(-12, y, image.width() + 24, 1), land,
                              QRect(shift, qBound(0, row, land.height() - 1), land.width(), 1));
        }
    }
    Brush(canvas).fillRect(
        QRectF(0, Shore, canvas.width, Height - Shore),
        Vertical(Shore, Height, {{0, QColor(60, 40, 80, 40)}, {1, QColor(10, 12, 44, 190)}}));
}

/// Sunlight on the crests: many short dashes below the sun, and a few fainter ones all over.
void PaintGlitter(Canvas& canvas) {
    Brush brush(canvas);
    Dice dice(99);
    for (int i = 0; i < 1100; ++i) {
        const bool inPath = i < 620;
        const qreal depth = std::pow(dice(0, 1), 1.4);
        const qreal spread = dice(-1, 1) * dice(0, 1) * (26 + 120 * depth);
        const QPointF at(inPath ? canvas.SunX() + spread : dice(0, canvas.width),
                         Shore + 2 + depth * (Height - Shore));
        const int alpha = qRound(inPath ? dice(60, 220) * (1 - 0.55 * depth) : dice(10, 50));
        brush.setBrush(QColor(255, 222, 168, alpha));
        brush.drawEllipse(at, dice(1.5, 4) + 11 * depth, 0.45 + 1.1 * depth);
    }
}

qreal BankHeight(const Canvas& canvas, qreal x) {
    const qreal side = std::abs(x / canvas.width - 0.52) * 2;
    return 742 - 66 * side * side - Ridge(x, 400, 7, 12);
}

void PaintBank(Canvas& canvas) {
    Brush brush(canvas);
    QPainterPath bank(QPointF(0, Height));
    for (qreal x = 0; x <= canvas.width + 2; x += 2)
        bank.lineTo(x, BankHeight(canvas, x));
    bank.lineTo(canvas.width + 2, Height);
    brush.fillPath(bank, Vertical(670, Height, {{0, QColor(24, 20, 44)}, {1, QColor(9, 8, 20)}}));

    Dice dice(64);
    for (qreal x = 0; x < canvas.width; x += dice(0.8, 2.6)) {
        const QPointF foot(x, BankHeight(canvas, x) + 3);
        const QPointF tip = foot + QPointF(dice(-7, 7), -dice(6, 24));
        QPainterPath blade(foot);
        blade.quadTo(QPointF(foot.x(), (foot.y() + tip.y()) / 2), tip);
        brush.strokePath(blade, QPen(QColor(20, 17, 38), dice(0.5, 1.1)));
    }
}

/// One branch and all that grows from it.
void PaintBranch(Brush& brush, Dice& dice, const QPointF& foot, qreal angle, qreal length,
                 int generations) {
    const QPointF tip = foot + length * QPointF(std::sin(angle), -std::cos(angle));
    const qreal thickness = qMax(0.35, length * length * 0.0021 + 0.25);
    brush.setPen(QPen(QColor(16, 13, 30), thickness, Qt::SolidLine, Qt::RoundCap));
    brush.drawLine(foot, tip);
    if (generations == 0)
        return;
    PaintBranch(brush, dice, tip, angle - dice(0.16, 0.52), length * dice(0.70, 0.84),
                generations - 1);
    PaintBranch(brush, dice, tip, angle + dice(0.16, 0.52), length * dice(0.70, 0.84),
                generations - 1);
}

void PaintTrees(Canvas& canvas) {
    Brush brush(canvas);
    Dice dice(5);
    const auto tree = [&](qreal x, qreal length, int generations) {
        PaintBranch(brush, dice, {x, BankHeight(canvas, x) + 8}, dice(-0.06, 0.06), length,
                    generations);
    };
    tree(canvas.width * 0.15, 104, 12);
    tree(canvas.width * 0.26, 52, 10);
    tree(canvas.width * 0.93, 74, 11);
}

/// Flat patches: six hues above, six greys below.
void PaintColourChart(Canvas& canvas) {
    Brush brush(canvas);
    const QPointF corner(canvas.width - 232, Height - 104);
    const QColor hues[] = {{204, 52, 52}, {232, 150, 40}, {240, 222, 70},
                           {70, 160, 84}, {56, 106, 190}, {140, 74, 164}};
    brush.setBrush(QColor(18, 17, 26, 220));
    brush.drawRoundedRect(QRectF(corner, QSizeF(180, 66)), 7, 7);
    for (int i = 0; i < 6; ++i) {
        const int grey = 255 * i / 5;
        const QRectF patch(corner + QPointF(6 + 28 * i, 6), QSizeF(28, 27));
        brush.fillRect(patch, hues[i]);
        brush.fillRect(patch.translated(0, 27), QColor(grey, grey, grey));
    }
}

/// Rays that meet: the closer to the centre, the finer.
void PaintRayStar(Canvas& canvas) {
    Brush brush(canvas);
    const QPointF centre(canvas.width - 276, Height - 71);
    constexpr qreal Radius = 33;
    constexpr int Rays = 36;
    brush.setBrush(QColor(245, 240, 230));
    brush.drawEllipse(centre, Radius, Radius);
    brush.setBrush(QColor(14, 12, 22));
    const QRectF disc(centre.x() - Radius, centre.y() - Radius, 2 * Radius, 2 * Radius);
    for (int ray = 0; ray < Rays; ++ray)
        brush.drawPie(disc, ray * 360 * 16 / Rays, 180 * 16 / Rays);
}

/// The letters as strokes, so that the picture needs no font: a small letter is 1 high.
QPainterPath Lettering() {
    QPainterPath path;
    const auto stroke = [&path](qreal x, qreal top, qreal bottom) {
        path.moveTo(x, top);
        path.lineTo(x, bottom);
    };
    const auto bowl = [&path](qreal left) { path.addEllipse(QRectF(left, -1, 1, 1)); };
    const auto i = [&](qreal x) {
        stroke(x, -1, 0);
        stroke(x, -1.42, -1.419);
    };
    stroke(0, -1.5, 0);
    i(0.45);
    stroke(0.9, -1.5, 0); // b
    bowl(0.9);
    i(2.35);
    stroke(2.8, -1, 0); // m
    for (const qreal left : {2.8, 3.46}) {
        path.moveTo(left, -0.67);
        path.arcTo(QRectF(left, -1, 0.66, 0.66), 180, -180);
        path.lineTo(left + 0.66, 0);
    }
    bowl(4.57); // a
    stroke(5.57, -1, 0);
    bowl(6.02); // g
    stroke(7.02, -1, 0.05);
    path.arcTo(QRectF(6.02, -0.45, 1, 1), 0, -150);
    path.moveTo(7.47, -0.5); // e
    path.lineTo(8.47, -0.5);
    path.arcTo(QRectF(7.47, -1, 1, 1), 0, 315);
    return path;
}

void PaintName(Canvas& canvas) {
    Brush brush(canvas);
    brush.translate(58, Height - 52);
    brush.scale(34, 34);
    const QPainterPath letters = Lettering();
    const auto draw = [&](const QColor& colour, qreal width) {
        brush.strokePath(letters, QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    };
    for (int step = 5; step > 0; --step)
        draw(QColor(255, 170, 110, 10), 0.19 + 0.12 * step);
    draw(QColor(255, 236, 208), 0.19);
}

/// Rounded corners that fade out, so that the picture has every degree of transparency.
void FeatherEdges(Canvas& canvas) {
    constexpr qreal Radius = 46;
    constexpr qreal Feather = 14;
    const qreal halfWidth = canvas.width / 2;
    const qreal halfHeight = Height / 2;
    for (int y = 0; y < canvas.image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(canvas.image.scanLine(y));
        const qreal down = std::abs((y + 0.5) / canvas.scaleY - halfHeight) - halfHeight + Radius;
        for (int x = 0; x < canvas.image.width(); ++x) {
            const qreal across =
                std::abs((x + 0.5) / canvas.scaleX - halfWidth) - halfWidth + Radius;
            const qreal outwards =
                down > 0 && across > 0 ? std::hypot(down, across) : qMax(down, across);
            const qreal inside = qBound(0.0, (Radius - outwards) / Feather, 1.0);
            const int alpha = qRound(255 * inside * inside * (3 - 2 * inside));
            if (alpha < 255)
                row[x] = qRgba(qRed(row[x]) * alpha / 255, qGreen(row[x]) * alpha / 255,
                               qBlue(row[x]) * alpha / 255, alpha);
        }
    }
}

constexpr void (*stages[])(Canvas&) = {
    PaintSky,  PaintStars, PaintSun,         PaintClouds,  PaintHills, PaintLake,    PaintGlitter,
    PaintBank, PaintTrees, PaintColourChart, PaintRayStar, PaintName,  FeatherEdges,
};

} // namespace

QImage PaintDemoPicture(const QSize& size, Progress& progress) {
    const qreal width = qBound(400.0, Height * size.width() / size.height(), 6400.0);
    Canvas canvas = {QImage(size, QImage::Format_ARGB32_Premultiplied), width, size.width() / width,
                     size.height() / Height};
    if (canvas.image.isNull())
        throw std::bad_alloc();
    canvas.image.fill(Qt::black);
    progress.SetRange(0, int(std::size(stages)));
    for (int done = 0; done < int(std::size(stages)); ++done) {
        StopIfInterrupted();
        stages[done](canvas);
        progress.SetValue(done + 1);
    }
    return std::move(canvas.image).convertToFormat(QImage::Format_ARGB32);
}
