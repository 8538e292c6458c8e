#include "LXBlendOn.h"
#include "LXConvertImage.h"
#include "LXImagePainter.h"
#include "LXTileAccess.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"

#include <QtGui/QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <set>

namespace {

const TestPool testPool; // of all tests

using Image = LXImageRGBA32i;
using Drawing = std::function<void(QPainter&)>;

// ---- the plain reference: every tile is drawn on -----------------------------------------------

QImage TileOf(const Image& image, unsigned int column, unsigned int row) {
    const LXTileReader tile(image.GetTileRow(row)[column]);
    const void* const pixels = tile.Pixels();
    return QImage(static_cast<const uchar*>(pixels), 128, 128, 512, QImage::Format_ARGB32).copy();
}

/// The image together with what its tiles have beyond it.
Image WithPadding(const Image& image) {
    return MakeImage(128 * image.GetTilesX(), 128 * image.GetTilesY(), [&](int x, int y) {
        const LXTileReader tile(image.GetTileRow(unsigned(y) / 128)[x / 128]);
        return tile.Row(unsigned(y) % 128)[x % 128];
    });
}

QImage Drawn(QImage tile, unsigned int column, unsigned int row, const Drawing& drawing) {
    QPainter painter(&tile);
    painter.translate(QPointF(-128.0 * column, -128.0 * row));
    drawing(painter);
    return tile;
}

/// Compares all tiles, with what they have beyond the image.
testing::AssertionResult DrawnEverywhere(const Image& before, const Image& after,
                                         const Drawing& drawing) {
    for (unsigned int row = 0; row < before.GetTilesY(); ++row)
        for (unsigned int column = 0; column < before.GetTilesX(); ++column) {
            auto same = SamePixels(TileOf(after, column, row),
                                   Drawn(TileOf(before, column, row), column, row, drawing));
            if (!same)
                return same << " of tile " << column << ", " << row;
        }
    return testing::AssertionSuccess();
}

Drawing PathDrawing(int mode, const QPainterPath& path, const QPen& pen) {
    return [=](QPainter& painter) {
        painter.setCompositionMode(QPainter::CompositionMode(mode));
        painter.setBrush(Qt::NoBrush);
        painter.setPen(pen);
        painter.drawPath(path);
    };
}

Drawing FillDrawing(int mode, const QPainterPath& path, const QBrush& brush, bool outline) {
    return [=](QPainter& painter) {
        painter.setRenderHints(QPainter::RenderHints(5), true);
        painter.setCompositionMode(QPainter::CompositionMode(mode));
        painter.fillPath(path, brush);
        if (outline) {
            painter.setPen(QPen(brush, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
            painter.drawPath(path);
        }
    };
}

struct Text {
    QRectF rect;
    QString words;
    QFont font;
    QBrush brush = Qt::blue;
    double rotation = 0;
    double opacity = 1;
    QTextOption option = QTextOption();
};

QFont Sans(int points) {
    return QFont(QStringLiteral("DejaVu Sans"), points);
}

Drawing TextDrawing(int mode, const Text& t) {
    return [=](QPainter& painter) {
        const double cx = t.rect.x() + t.rect.width() * 0.5;
        const double cy = t.rect.y() + t.rect.height() * 0.5;
        const QTransform turned =
            QTransform().translate(cx, cy).rotate(t.rotation).translate(-cx, -cy);
        painter.setFont(t.font);
        painter.setOpacity(t.opacity);
        painter.setPen(QPen(t.brush, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
        painter.setCompositionMode(QPainter::CompositionMode(mode));
        painter.translate(cx, cy);
        painter.rotate(t.rotation);
        painter.translate(-cx, -cy);
        painter.drawText(turned.mapRect(t.rect), t.words, t.option);
    };
}

void Draw(Image& image, int mode, const Text& t) {
    DrawText(image, mode, t.opacity, t.rect, t.words, t.brush, t.font, t.rotation, t.option);
}

// ---- random drawings ----------------------------------------------------------------------------

class Chance {
public:
    /// All points of one drawing lie near one another, somewhere about the image.
    explicit Chance(unsigned int seed) : m_engine(seed) {
        m_spread = OneOf<double>({2, 10, 30, 60, 200, 1000, 100000});
        m_centre = QPointF(Between(-60, 440), Between(-60, 350));
    }

    unsigned int Below(unsigned int n) { return unsigned(m_engine() % n); }
    double Between(double low, double high) {
        return low + (high - low) * (double(m_engine()) / 4294967296.0);
    }
    template <class T>
    T OneOf(const std::vector<T>& values) {
        return values[Below(unsigned(values.size()))];
    }
    /// Often on a seam.
    QPointF Point() {
        const QPointF point = m_centre + QPointF(Between(-m_spread, m_spread), //
                                                 Between(-m_spread, m_spread));
        return Below(8) ? point : QPointF(qRound(point.x() / 128) * 128, point.y());
    }
    QColor Colour() { return QColor::fromRgba(QRgb(m_engine() | 0x40000000)); }

    QBrush Brush() {
        if (Below(3))
            return QBrush(Colour(), Below(3) ? Qt::SolidPattern : Qt::BrushStyle(Below(15)));
        if (Below(3) == 0)
            return QBrush(RandomQImage(9, 7, Below(100)));
        QLinearGradient gradient(Point(), Point());
        gradient.setColorAt(0, Colour());
        gradient.setColorAt(1, Colour());
        gradient.setCoordinateMode(QGradient::CoordinateMode(Below(4)));
        return gradient;
    }

    QPainterPath Path() {
        QPainterPath path(Point());
        for (unsigned int n = 1 + Below(6); n > 0; --n) {
            const QPointF near = Point();
            const unsigned int kind = Below(6);
            if (kind == 0)
                path.moveTo(near);
            else if (kind == 1) // may turn on the spot
                path.cubicTo(near, Below(2) ? near : Point(), path.currentPosition());
            else if (kind == 2)
                path.cubicTo(Point(), Point(), near);
            else if (kind == 3)
                path.addEllipse(near, Between(0, 50), Between(0, 50));
            else if (kind == 4)
                path.closeSubpath();
            else { // also sharp corners
                path.lineTo(near);
                path.lineTo(near + QPointF(Between(-20, 20), Between(-1, 1)));
            }
        }
        path.setFillRule(Below(2) ? Qt::OddEvenFill : Qt::WindingFill);
        return path;
    }

    QPen Pen() {
        const auto cap = OneOf<Qt::PenCapStyle>({Qt::FlatCap, Qt::SquareCap, Qt::RoundCap});
        const auto join = OneOf<Qt::PenJoinStyle>(
            {Qt::MiterJoin, Qt::BevelJoin, Qt::RoundJoin, Qt::SvgMiterJoin});
        QPen pen(Brush(), Between(0, Below(4) ? 20 : 120), Qt::PenStyle(Below(3) ? 1 : Below(6)),
                 cap, join);
        pen.setMiterLimit(Below(2) ? 2 : Between(0, 12));
        pen.setCosmetic(Below(2) == 0);
        return pen;
    }

    Text RandomText() {
        Text text;
        text.font = Sans(4 + int(Below(Below(4) ? 30 : 200)));
        text.font.setItalic(Below(2));
        text.font.setBold(Below(2));
        text.font.setUnderline(Below(3) == 0);
        text.font.setOverline(Below(5) == 0);
        text.font.setStrikeOut(Below(5) == 0);
        text.option.setAlignment(
            OneOf<Qt::Alignment>({Qt::AlignLeft | Qt::AlignTop, Qt::AlignCenter,
                                  Qt::AlignRight | Qt::AlignBottom, Qt::AlignJustify}));
        text.option.setWrapMode(Below(2) ? QTextOption::WordWrap : QTextOption::NoWrap);
        text.words = QString::fromUtf8(OneOf<const char*>(
            {"fjord", "A line that is long, and another one",
             "Z\u0351\u0352\u0353a\u0301\u0327 \u05E9\u05DC\u05D5\u05DD\nj\tW", "_|\\/"}));
        text.rotation = OneOf<double>({0, 90, 45, -30, 180, Between(-360, 360)});
        text.rect = QRectF(Point(), QSizeF(Between(-200, 500), Between(-100, 300)));
        text.brush = Colour();
        text.opacity = Between(0, 1);
        return text;
    }

private:
    std::mt19937 m_engine;
    double m_spread;
    QPointF m_centre;
};

/// An image of shared tiles, so that each tile that is drawn on takes one from the pool.
Image Shared(unsigned int width, unsigned int height) {
    Image image(width, height);
    image.FastFill({50, 100, 150, 200});
    return image;
}

} // namespace

// ---- tests --------------------------------------------------------------------------------------

TEST(Painter, SkippedTilesAreThoseThatNothingTouches) {
    TestPool pool;
    int skipped = 0, drawn = 0;
    for (unsigned int seed = 0; seed < 1000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Chance chance(seed);
        const int mode = chance.Below(2) ? 0 : int(chance.Below(38));
        const Image before = seed % 8 ? Shared(384, 300) : RandomImage(384, 300, seed);
        Image image(before);
        const unsigned int tiles = pool.InUse();
        Drawing drawing;
        const Text text = chance.RandomText();
        const QPainterPath path = chance.Path();
        if (seed % 3 == 0) {
            const QPen pen = chance.Pen();
            DrawPath(image, mode, path, pen);
            drawing = PathDrawing(mode, path, pen);
        } else if (seed % 3 == 1) {
            const QBrush brush = chance.Brush();
            FillPath(image, mode, path, brush, seed % 4 < 2);
            drawing = FillDrawing(mode, path, brush, seed % 4 < 2);
        } else {
            Draw(image, mode, text);
            drawing = TextDrawing(mode, text);
        }
        drawn += int(pool.InUse() - tiles);
        skipped += int(tiles + 9 - pool.InUse());
        ASSERT_TRUE(DrawnEverywhere(before, image, drawing));
    }
    EXPECT_GT(skipped, drawn) << "tiles are skipped at all";
}

// Qt divides a curve only so often: what it draws of a large one are chords, far from the curve.
TEST(Painter, LargeCurvesAreMarkedWhereTheyAreDrawn) {
    Chance chance(1);
    const Image before = Shared(640, 512);
    int drawn = 0;
    for (int round = 0; round < 800; ++round) {
        const double spread = std::pow(10, chance.Between(3, 6));
        const auto far = [&] {
            return QPointF(chance.Between(-spread, spread), chance.Between(-spread, spread));
        };
        QPainterPath path(far());
        if (round % 4 == 3)
            path.lineTo(far());
        else
            path.cubicTo(far(), far(), far());
        path.translate(QPointF(320, 256) - path.pointAtPercent(chance.Between(0, 1)));
        QPen pen(Qt::red, round % 3 == 0 ? 0 : chance.Between(0, 3));
        pen.setCosmetic(round % 2);
        SCOPED_TRACE(testing::Message() << "round " << round << " spread " << spread);
        Image image(before);
        DrawPath(image, 0, path, pen);
        ASSERT_TRUE(DrawnEverywhere(before, image, PathDrawing(0, path, pen)));
        drawn += !SamePixels(image, before);
    }
    EXPECT_GT(drawn, 300);
}

// Qt is exact here but for antialiased edges, whose coverage it finds a little differently on each
// tile.
TEST(Painter, TilesShowNoSeams) {
    QPainterPath path(QPointF(30.25, 40.5));
    path.lineTo(570.75, 300.5);
    path.cubicTo(400, 600, 100, 450, 128, 128);
    path.addEllipse(QRectF(200.5, 100, 256, 256));
    const QPen pen(QColor(200, 30, 40, 180), 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    const QBrush brush(QColor(20, 220, 40, 128));
    const QImage before = RandomQImage(600, 500, 3);
    Image image = ConvertImage<QImage, Image>(before);
    DrawPath(image, 0, path, pen);
    EXPECT_TRUE(SamePixels(image, Drawn(before, 0, 0, PathDrawing(0, path, pen))));
    // A rectangle of negative size reaches from its corner to the left and upwards.
    for (const QRectF& rect :
         {QRectF(60, 60, 480, 300), QRectF(450, 200, -100, -60), QRectF(450, 200, -100, 60)})
        for (const double rotation : {0.0, 30.0}) {
            Text text = {rect, QStringLiteral("Across"), Sans(50), brush, rotation, 0.7};
            text.option.setAlignment(Qt::AlignCenter);
            const QImage whole = Drawn(before, 0, 0, TextDrawing(0, text));
            EXPECT_NE(whole, before) << rect.width() << " " << rotation;
            image = ConvertImage<QImage, Image>(before);
            Draw(image, 0, text);
            EXPECT_TRUE(SamePixels(image, whole)) << rect.width() << " " << rotation;
        }

    QImage whole(600, 500, QImage::Format_ARGB32);
    whole.fill(Qt::white);
    image = ConvertImage<QImage, Image>(whole);
    FillPath(image, 0, path, brush, true);
    whole = Drawn(whole, 0, 0, FillDrawing(0, path, brush, true));
    for (int y = 0; y < 500; ++y)
        for (int x = 0; x < 600; ++x)
            ASSERT_NEAR(image.GetColor(x, y).red, qRed(whole.pixel(x, y)), 3) << x << ", " << y;
}

TEST(Painter, AThinPathTouchesOnlyItsTiles) {
    TestPool pool;
    Image image(20000, 20000);
    const unsigned int before = pool.InUse();
    const QPointF from(300.5, 15000.25), to(19000, 200);
    QPainterPath path(from);
    path.lineTo(to);
    DrawPath(image, 0, path, QPen(Qt::red, 2));
    std::set<std::pair<int, int>> crossed;
    for (int i = 0; i <= 100000; ++i) {
        const QPointF point = from + (to - from) * i / 100000.0;
        crossed.insert({int(point.x()) / 128, int(point.y()) / 128});
    }
    EXPECT_GE(pool.InUse() - before, crossed.size());
    EXPECT_LE(pool.InUse() - before, crossed.size() * 3 / 2);
    EXPECT_EQ(image.GetColor(9650, 7600).red, 255) << "the line is there";

    const unsigned int line = pool.InUse();
    Draw(image, 0, {QRectF(5020, 150, 9000, 40), QStringLiteral("one tile"), Sans(12)});
    EXPECT_EQ(pool.InUse() - line, 1u);
    FillPath(image, 0, QPainterPath(), QBrush(Qt::blue), true);
    DrawPath(image, 0, path.translated(50000, 0), QPen(Qt::red, 2));
    Draw(image, 0, {QRectF(-9000, -9000, 5, 5), QStringLiteral("outside and cut off"), Sans(12)});
    EXPECT_EQ(pool.InUse() - line, 1u);
}

TEST(Painter, ModesAndImagesAtTheEdgeOfTheDomain) {
    Image empty(0, 10);
    QPainterPath path;
    path.addRect(10, 10, 200, 200);
    DrawPath(empty, 0, path, QPen(Qt::red));
    FillPath(empty, 0, path, QBrush(Qt::red), true);
    InvertImage(empty, 15);

    const Image before = RandomImage(300, 200, 7);
    Image plain(before);
    FillPath(plain, 0, path, QBrush(QColor(1, 2, 3, 100)), false);
    for (const int mode : {64, 95, 38, -1, 1 << 30}) {
        Image image(before);
        FillPath(image, mode, path, QBrush(QColor(1, 2, 3, 100)), false);
        EXPECT_TRUE(SamePixels(image, plain)) << "mode " << mode << " is SourceOver";
    }
    Image image(before);
    image.GetTileRow(0)[1] = nullptr;
    FillPath(image, 0, path, QBrush(Qt::red), true);
    EXPECT_EQ(image.GetColor(50, 50), (LXRGBA32i{0, 0, 255, 255}));
    const Image filled(image);
    InvertImage(image, 15);
    EXPECT_EQ(image.GetTileRow(0)[1].constData(), nullptr) << "a missing tile stays missing";
    EXPECT_EQ(image.GetColor(50, 50), (LXRGBA32i{255, 255, 0, 0}));
    InvertImage(image, 15);
    const double nan = std::nan("");
    DrawText(image, 0, nan, QRectF(nan, 0, 10, 10), QStringLiteral("x"), QBrush(), QFont(), nan,
             QTextOption());
    for (const QPoint& place : {QPoint(5, 5), QPoint(50, 50), QPoint(299, 199)})
        EXPECT_EQ(image.GetColor(place.x(), place.y()), filled.GetColor(place.x(), place.y()));
}

TEST(Painter, DrawImageBlendsTheOverlap) {
    const Image before = RandomImage(300, 200, 1);
    const auto check = [&](const auto& source, const QPoint& at, int mode, bool lock) {
        Image expected(before), image(before);
        const QRect to(QPoint(qMin(at.x(), 1000), qMin(at.y(), 1000)), QSize(300, 200));
        BlendOn(source, QRect(0, 0, 400, 150), unsigned(mode), expected, to, 0.6, lock);
        DrawImage(image, mode, at, source, 0.6, lock);
        EXPECT_TRUE(SamePixels(image, expected)) << at.x() << " mode " << mode << " " << lock;
    };
    const QPoint positions[] = {{0, 0}, {-130, 60}, {250, 190}, {INT_MAX, INT_MIN}, {5, INT_MAX}};
    for (const QPoint& at : positions)
        for (const int mode : {0, 13, 64})
            for (const bool lock : {false, true}) {
                check(RandomImage(400, 150, 2), at, mode, lock);
                check(RandomQImage(400, 150, 2), at, mode, lock);
            }
}

TEST(Painter, InversionTakesPaddingAlong) {
    TestPool pool;
    const Image before = RandomImage(200, 130, 5), padded = WithPadding(before);
    for (unsigned int channels = 0; channels < 32; ++channels) {
        Image image(before);
        const unsigned int tiles = pool.InUse();
        InvertImage(image, channels);
        EXPECT_EQ(pool.InUse() - tiles, 4u) << "all tiles are detached";
        const auto flipped = [&](unsigned int channel, std::uint8_t value) {
            return std::uint8_t(channels & channel ? ~value : value);
        };
        const Image expected = MakeImage(256, 256, [&](int x, int y) {
            const LXRGBA32i p = padded.GetColor(x, y);
            return LXRGBA32i{flipped(4, p.blue), flipped(2, p.green), flipped(1, p.red),
                             flipped(8, p.alpha)};
        });
        ASSERT_TRUE(SamePixels(WithPadding(image), expected)) << channels;
    }
}

TEST(Painter, MasksHaveTheirValueInAlpha) {
    TestPool pool;
    const Image source = RandomImage(200, 130, 6);
    Image masks[4] = {Image(5, 5), Image(5, 5), Image(5, 5), source};
    CreateRevealAllMask(masks[0], source);
    CreateHideAllMask(masks[1], source);
    CreateFromTransparancyMask(masks[2], source);
    CreateFromSourceMask(masks[3], masks[3]);
    const std::uint8_t outside[] = {255, 0, 0, 255};
    for (int kind = 0; kind < 4; ++kind) {
        ASSERT_EQ(SizeOf(masks[kind]), QSize(200, 130));
        const Image expected = MakeImage(256, 256, [&](int x, int y) {
            if (kind < 2 || x >= 200 || y >= 130)
                return LXRGBA32i{0, 0, 0, outside[kind]};
            const LXRGBA32i p = source.GetColor(x, y);
            const int gray = (11 * p.red + 16 * p.green + 5 * p.blue) / 32;
            return LXRGBA32i{0, 0, 0, kind == 2 ? p.alpha : std::uint8_t(gray)};
        });
        EXPECT_TRUE(SamePixels(WithPadding(masks[kind]), expected)) << kind;
    }
}

namespace {

/// All operations end in the log. Those on tiles have done some tiles in full, in their order, and
/// left the rest; `everything` has done all.
unsigned int SweepTiles(int logLines, const std::function<void(Image&)>& operate) {
    const auto make = [] { return Shared(400, 300); };
    return SweepExhaustion(make, operate, [&](const Image& image, const ExhaustionOutcome& end) {
        EXPECT_FALSE(end.threw);
        ASSERT_EQ(end.log.size(), end.handlerCalls ? logLines : 0);
        for (const QString& line : end.log)
            EXPECT_TRUE(line.endsWith(QStringLiteral("Exception content:\"std::bad_alloc\"")));
        EXPECT_TRUE(end.log.isEmpty() ||
                    end.log.last().contains(QStringLiteral("\"src/LXImagePainter.cpp\"")));
        const Image before = make();
        Image everything = make();
        operate(everything);
        bool stopped = false;
        for (unsigned int tile = 0; tile < 12; ++tile) {
            const QImage old = TileOf(before, tile % 4, tile / 4);
            const QImage whole = TileOf(everything, tile % 4, tile / 4);
            const QImage now = TileOf(image, tile % 4, tile / 4);
            if (whole == old)
                continue;
            stopped = stopped || now == old;
            EXPECT_EQ(now, stopped ? old : whole) << "tile " << tile;
        }
        EXPECT_EQ(stopped, end.handlerCalls > 0);
    });
}

} // namespace

TEST(Painter, RunsOutOfTilesHalfDone) {
    QPainterPath path;
    path.addRect(-50, -50, 600, 600);
    const Text text = {QRectF(-20, 0, 700, 400),
                       QStringLiteral("MMMMMMMM\nMMMMMMMM\nMMMMMMMM\nMMMMMMMM\nMMMMMMMM"),
                       Sans(40)};
    EXPECT_EQ(SweepTiles(1, [&](Image& i) { FillPath(i, 0, path, QBrush(Qt::red), true); }), 11u);
    EXPECT_EQ(SweepTiles(1, [&](Image& i) { DrawPath(i, 0, path, QPen(Qt::red, 999)); }), 11u);
    EXPECT_GE(SweepTiles(1, [&](Image& i) { Draw(i, 0, text); }), 8u);
    EXPECT_EQ(SweepTiles(1, [&](Image& i) { InvertImage(i, 7); }), 11u);
    QImage source(400, 300, QImage::Format_ARGB32);
    source.fill(Qt::red);
    EXPECT_GE(SweepTiles(2, [&](Image& i) { DrawImage(i, 0, {0, 0}, source, 1, false); }), 1u);

    using Maker = void (*)(Image&, const Image&);
    for (const Maker maker :
         {CreateRevealAllMask, CreateHideAllMask, CreateFromTransparancyMask, CreateFromSourceMask})
        SweepExhaustion(
            [] { return RandomImage(300, 140, 9); }, [&](Image& image) { maker(image, image); },
            [&](const Image& image, const ExhaustionOutcome& end) {
                EXPECT_FALSE(end.threw);
                EXPECT_EQ(end.log.size(), end.handlerCalls);
                EXPECT_EQ(bool(SamePixels(image, RandomImage(300, 140, 9))), end.handlerCalls > 0)
                    << "the mask is replaced at the end";
            });
}
