#include "LXConvertImage.h"
#include "LXTextHelper.h"
#include "LXTileWalk.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"

#include <QtGui/QFontMetrics>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

const TestPool testPool; // of all tests

using Image = LXImageRGBA32i;

// ---- the plain reference ------------------------------------------------------------------------

struct Settings {
    bool alongY = false;
    double bend = 60, h = 30, v = -20;
};
const Settings BothWays[] = {{}, {true, 60, 30, -20}};

/// A path moved point by point.
template <class Move>
QPainterPath Moved(QPainterPath path, Move move) {
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPointF to = move(QPointF(path.elementAt(i)));
        path.setElementPositionAt(i, to.x(), to.y());
    }
    return path;
}

/// The wave of a box of whole pixels.
QPainterPath Waved(const QPainterPath& path, const Settings& s, const QRect& box) {
    const double halfLength = (s.alongY ? box.height() : box.width()) / 2;
    const double amplitude = s.bend / 100 * ((s.alongY ? box.width() : box.height()) / 2);
    const QPoint centre = box.center();
    return Moved(path, [=](const QPointF& p) {
        const double place = s.alongY ? p.y() - centre.y() : p.x() - centre.x();
        const double turns = halfLength == 0 ? 0 : 3.141592653589793 / halfLength;
        const double by = std::sin(place * turns) * amplitude;
        return s.alongY ? QPointF(p.x() - by, p.y()) : QPointF(p.x(), p.y() - by);
    });
}

/// `share` is of the settings' keystone.
QPainterPath Keystoned(const QPainterPath& path, const Settings& s, const QSizeF& size,
                       const QPointF& centre, const QSizeF& share = QSizeF(1, 1)) {
    return Moved(path, [=](const QPointF& p) {
        const double dx = p.x() - centre.x(), dy = p.y() - centre.y();
        return QPointF(p.x() + dx * dy * s.v / 100 * share.height() / (size.height() / 2),
                       p.y() + dx * dy * s.h / 100 * share.width() / (size.width() / 2));
    });
}

QRect Rounded(const QRectF& r) {
    return QRect(qRound(r.x()), qRound(r.y()), qRound(r.width()), qRound(r.height()));
}

/// Equal but for what floats lose.
testing::AssertionResult Near(const QPainterPath& a, const QPainterPath& b) {
    if (a.elementCount() != b.elementCount())
        return testing::AssertionFailure() << a.elementCount() << " and " << b.elementCount();
    for (int i = 0; i < a.elementCount(); ++i) {
        const QPointF p = a.elementAt(i), q = b.elementAt(i);
        const double lost = 1e-3 + 2e-7 * q.manhattanLength();
        if (!((p - q).manhattanLength() < lost) || a.elementAt(i).type != b.elementAt(i).type)
            return testing::AssertionFailure() << "element " << i << ": " << p.x() << ", " << p.y()
                                               << " and " << q.x() << ", " << q.y();
    }
    return testing::AssertionSuccess();
}

/// The path as Qt paints it on one bitmap.
QImage Painted(const QPainterPath& path, const QRect& area, const QColor& color, bool smooth) {
    QImage picture(area.size(), QImage::Format_ARGB32);
    picture.fill(0);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing, smooth);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.translate(-area.topLeft());
    painter.setPen(color);
    painter.setBrush(color);
    painter.drawPath(path);
    return picture;
}

/// The same with a bitmap for each tile. That is not quite the same: Qt lets the edge line depend a
/// little on where it is cut off.
Image PaintedByTiles(const QPainterPath& path, const QRect& area, const QColor& color,
                     bool smooth) {
    Image image(unsigned(area.width()), unsigned(area.height()));
    for (int x = 0; x < area.width(); x += 128)
        for (int y = 0; y < area.height(); y += 128) {
            const QImage tile =
                Painted(path, QRect(area.x() + x, area.y() + y, 128, 128), color, smooth);
            for (int row = 0; row < std::min(128, area.height() - y); ++row)
                image.WriteLine(unsigned(y + row), unsigned(x), tile.constScanLine(row), 512);
        }
    return image;
}

/// But for one pixel in ten thousand, and for a few levels.
testing::AssertionResult Seamless(const Image& image, const QImage& whole) {
    int differ = 0;
    for (int y = 0; y < whole.height(); ++y)
        for (int x = 0; x < whole.width(); ++x)
            differ += std::abs(image.GetColor(x, y).alpha - qAlpha(whole.pixel(x, y))) > 4;
    if (differ > whole.width() * whole.height() / 10000)
        return testing::AssertionFailure() << differ << " pixels differ";
    return testing::AssertionSuccess();
}

// ---- what is tested on --------------------------------------------------------------------------

LXTextHelper TextOf(const char* words, int size = 60, int style = 1,
                    const Settings& settings = {}) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(size);
    LXTextHelper text(4);
    text.SetText(QString::fromUtf8(words));
    text.SetFont(font);
    text.SetColor(QColor(200, 30, 90, 180));
    text.SetStyle(style);
    text.SetOrientation(settings.alongY);
    text.SetBend(settings.bend);
    text.SetHDistortion(settings.h);
    text.SetVDistortion(settings.v);
    text.CreateHeavyTextPath();
    return text;
}

QMatrix4x4 Turned(float degrees) {
    QMatrix4x4 matrix;
    matrix.translate(40, 20);
    matrix.rotate(degrees, 0, 0, 1);
    return matrix;
}

QPainterPath LineTo(double x, double y) {
    QPainterPath path(QPointF(0, 0));
    path.lineTo(x, y);
    return path;
}

/// What a path shares with its copies: it is a pointer to that.
const void* DataOf(const QPainterPath& path) {
    const void* data;
    static_assert(sizeof path == sizeof data);
    std::memcpy(&data, static_cast<const void*>(&path), sizeof data);
    return data;
}

} // namespace

TEST(TextPath, Subdivision) {
    const struct {
        float max;
        double length;
        int added;
    } cases[] = {{10, 10, 0}, {10, 19.9, 0}, {10, 20, 1}, {10, 25, 1},  {10, 30, 2},
                 {10, 59, 4}, {0, 50, 0},    {-1, 50, 0}, {NAN, 50, 0}, {10, 1e6, 99999}};
    for (const auto& c : cases) {
        const QPainterPath path =
            LXTextHelper(c.max).PreparePath(LineTo(0.6 * c.length, 0.8 * c.length));
        ASSERT_EQ(path.elementCount(), c.added + 2) << c.length << " in " << c.max;
        for (int i = 1; i <= std::min(c.added, 4); ++i)
            EXPECT_LT(QLineF(path.elementAt(i), QPointF(6, 8) * i).length(), 1e-5) << i;
    }
    LXTextHelper text = TextOf("Qg&");
    const QPainterPath& heavy = text.GetHeavyPath();
    for (int i = 1; i < heavy.elementCount(); ++i) {
        EXPECT_FALSE(heavy.elementAt(i).isCurveTo());
        const QLineF line(heavy.elementAt(i - 1), heavy.elementAt(i));
        EXPECT_LT(heavy.elementAt(i).isLineTo() ? line.length() : 0, 8 + 1e-3);
    }
    text.PreparePath();
    EXPECT_EQ(text.GetTextPath(), heavy);
}

TEST(TextPath, DraggingDeformsWhatIsCached) {
    LXTextHelper text = TextOf("Headline");
    EXPECT_FALSE(text.IsTextPathDirty() || text.IsHeavyPathDirty());
    EXPECT_EQ(text.GetTextRect().topLeft(), QPointF(0, 0));
    // A path that is built again has its data elsewhere, as the first one is kept here.
    const QPainterPath kept = text.GetHeavyPath();
    for (int i = 0; i < 40; ++i) {
        text.SetBend(i);
        text.SetHDistortion(i / 2.0);
        text.SetVDistortion(-i);
        text.SetOrientation(i % 2 != 0);
        text.SetStyle(i % 3);
        text.SetColor(Qt::red);
        text.SetTransform(Turned(float(i)));
        text.SetRenderMode(i % 3);
        QPointF offset;
        text.CreateImageByTextWithDeformation(offset);
        text.CreateSelectionAndDeformationPath(offset, 1, 3);
        EXPECT_EQ(DataOf(text.GetHeavyPath()), DataOf(kept)) << "deforming subdivided again";
    }

    const double height = text.GetTextRect().height();
    QFont larger(text.GetFont());
    larger.setPixelSize(90);
    text.SetFont(larger);
    EXPECT_TRUE(text.IsTextPathDirty() && text.IsHeavyPathDirty());
    text.CreateTextPath();
    EXPECT_TRUE(!text.IsTextPathDirty() && text.IsHeavyPathDirty());
    EXPECT_GT(text.GetTextRect().height(), height * 1.4);
    text.SetText(QStringLiteral("H"));
    text.SetStyle(1);
    text.GetUpperLine(QPoint(), QRect(0, 0, 9, 9));
    EXPECT_FALSE(text.IsTextPathDirty());
}

TEST(TextPath, Wave) {
    LXTextHelper text(1);
    text.SetBend(50);
    QPointF offset(7, 8);
    // 201 x 41 whole pixels: centre (100, 20), half length 100, amplitude 10.
    QPainterPath path(QPointF(0, 0)), narrow;
    for (const int x : {50, 100, 150, 201})
        path.lineTo(x, 20);
    path.lineTo(0, 41);
    QPainterPath waved = path;
    text.FlagFunction(offset, waved);
    EXPECT_EQ(offset, QPointF(7, 8));
    EXPECT_EQ(waved, Waved(path, {false, 50}, QRect(0, 0, 201, 41)));
    EXPECT_EQ(QPointF(waved.elementAt(1)), QPointF(50, 30)) << "upwards is right of the centre";
    const QTransform exchanged(0, 1, 1, 0, 0, 0);
    QPainterPath other = exchanged.map(path);
    text.SetOrientation(true);
    text.FlagFunction(offset, other);
    EXPECT_TRUE(Near(other, exchanged.map(waved)));

    narrow.addRect(5, 3, 50, 1);
    const QPainterPath before = narrow;
    text.FlagFunction(offset, narrow);
    EXPECT_EQ(narrow, before);
}

TEST(TextPath, Keystone) {
    const LXTextHelper text(1);
    QPainterPath square, flat = LineTo(30, 0);
    square.addRect(10, 20, 100, 60);
    for (const int mode : {0, 1, 2, 3, 4, 7}) {
        const Settings s = {false, 0, mode & 1 ? 50.0 : 0, mode & 2 ? 25.0 : 0};
        QPainterPath path = square;
        text.Distortion(path, mode, 0.5f, 0.25f);
        EXPECT_EQ(path, Keystoned(square, s, QSizeF(100, 60), QPointF(60, 50))) << mode;
    }
    text.Distortion(flat, 3, 1, 1);
    EXPECT_EQ(flat, LineTo(30, 0));
}

TEST(TextPath, DeformedTextAndSelection) {
    for (const Settings& s : BothWays) {
        LXTextHelper text = TextOf("Bent, and narrowed", 60, 1, s);
        text.SetTransform(Turned(30));
        const QRect box = Rounded(text.GetHeavyRect());
        const QPainterPath waved = Waved(text.GetHeavyPath(), s, box);
        const QRectF bounds = waved.boundingRect();
        QPainterPath path;
        QRectF rect, mapped;
        QPointF offset(1000, 2000);
        EXPECT_EQ(text.CreatePathByTextWithDeformationWithRect(path, rect, mapped, offset), path);
        EXPECT_TRUE(Near(path, Keystoned(waved, s, bounds.size(), bounds.center())));
        EXPECT_EQ(rect, path.boundingRect());
        EXPECT_EQ(mapped, text.GetTransform().toTransform().mapRect(rect));
        EXPECT_EQ(offset, QPointF(1000 + int(rect.left()), 2000 + int(rect.top())));
        EXPECT_EQ(text.GetDeformedRect(), Rounded(rect));
        EXPECT_EQ(text.GetDeformedOffset(), QPointF(1000, 2000));

        const QPainterPath plain = text.CreateSelectionPath(offset, 2, 3);
        const QPainterPath selection = Waved(text.PreparePath(plain), s, box);
        const QPointF before = offset;
        EXPECT_TRUE(Near(text.CreateSelectionAndDeformationPath(offset, 2, 3),
                         Keystoned(selection, s, bounds.size(), bounds.center())));
        EXPECT_EQ(offset, before);
        EXPECT_EQ(text.GetDeformedOffset(), before);

        const QPainterPath deformed = path,
                           bent = text.CreateSelectionAndDeformationPath(offset, 2, 3);
        text.SetStyle(2);
        EXPECT_EQ(text.CreatePathByTextWithDeformationWithRect(path, rect, mapped, offset),
                  deformed);
        EXPECT_EQ(text.CreateSelectionAndDeformationPath(offset, 2, 3), bent);

        text.SetStyle(0);
        EXPECT_EQ(text.CreatePathByTextWithDeformationWithRect(path, rect, mapped, offset),
                  text.GetTextPath());
        EXPECT_EQ(path, deformed);
        EXPECT_EQ(rect, text.GetTextRect());
        EXPECT_EQ(text.CreateSelectionAndDeformationPath(offset, 2, 3), plain);
    }
}

// From the corner of the transformed bounds on, that is.
TEST(TextPath, OffsetsKeepTheCentre) {
    LXTextHelper text = TextOf("Centre");
    const QRectF rect = text.GetTextRect();
    for (const float angle : {0.f, 30.f, 90.f, 200.f}) {
        text.SetTransform(Turned(angle));
        const QTransform transform = text.GetTransform().toTransform();
        const QRectF mapped = transform.mapRect(rect);
        QPointF offset;
        const QPainterPath out = text.TransformPath(text.GetTextPath(), rect, offset);
        EXPECT_TRUE(Near(out, text.TransformPath(text.GetTextPath(), rect)));
        const QPointF inImage =
            transform.map(rect.center()) - mapped.topLeft() - out.boundingRect().topLeft();
        EXPECT_LT(QLineF(mapped.topLeft() + offset + inImage, rect.center()).length(), 1e-9);

        QRectF outRect;
        const QPainterPath there =
            text.TransformPathWithRect(text.GetTextPath(), rect, outRect, offset);
        EXPECT_EQ(outRect, mapped);
        EXPECT_EQ(offset, mapped.topLeft() - rect.topLeft());
        EXPECT_TRUE(Near(there.translated(-mapped.topLeft()), out));
    }
}

TEST(TextSelection, LinesHaveAVertexForEachBoundary) {
    LXTextHelper text = TextOf("WAVe\u0301 fi", 60, 2); // the accent has no width
    const QString words = text.GetText();
    const QFontMetrics metrics(text.GetFont());
    const QRect glyphs = metrics.tightBoundingRect(words), rect(0, 0, 300, 60);
    const QPoint at(100, 50);
    const QPainterPath upper = text.GetUpperLine(at), under = text.GetUnderLine(at, 1, 2);
    ASSERT_EQ(upper.elementCount(), words.size() + 1);
    ASSERT_EQ(under.elementCount(), words.size() + 1);
    for (int i = 0; i <= words.size(); ++i) {
        const int x = metrics.horizontalAdvance(words.left(i));
        EXPECT_EQ(QPointF(upper.elementAt(i)), QPointF(100 + x, 50));
        EXPECT_EQ(QPointF(under.elementAt(i)), QPointF(x, glyphs.bottom() - glyphs.top()));
    }
    EXPECT_EQ(text.GetUpperLine(at, rect), upper) << "style 2 deforms images only";
    EXPECT_EQ(text.GetUnderLine(at, 1, 2, rect), under);
}

TEST(TextSelection, LinesAndCaretFollowTheDeformation) {
    const QRect rect(-20, 10, 301, 85);
    const QPoint at(100, 50);
    const auto orElse = [](double length, double standIn) {
        return length == 0 ? standIn : length;
    };
    for (const Settings& s : BothWays)
        for (const char* const words : {"Lines", "  ", ""}) {
            LXTextHelper text = TextOf(words, 60, 1, s);
            const QRectF outline = text.GetTextRect();
            const QSizeF all(orElse(outline.width(), 0.01), orElse(outline.height(), 0.01));
            const QPointF centre = QRectF(outline.topLeft(), all).center();
            // A line is flat, so that 1 stands in for its height.
            const QPainterPath upper = text.GetUpperLine(QPoint());
            const QPainterPath under = text.GetUnderLine(at, 0, 0);
            const QRect upperBox = Rounded(upper.boundingRect()), united = rect | upperBox;
            const QSizeF ofUpper(rect.width() / (upperBox.width() == 0 ? 1.0 : united.width()),
                                 rect.height());
            EXPECT_TRUE(Near(
                text.GetUpperLine(at, rect),
                Keystoned(Waved(upper, s, rect), s, all, united.center(), ofUpper).translated(at)))
                << words;
            const QSizeF ofUnder(all.width() / orElse(Rounded(under.boundingRect()).width(), 1),
                                 all.height());
            EXPECT_TRUE(Near(text.GetUnderLine(at, 0, 0, rect),
                             Keystoned(Waved(under, s, rect), s, all, centre, ofUnder)))
                << words;

            const int index = text.GetText().size() / 2;
            const QPainterPath caret = text.GetVerticalAndUnderLine(at, index, 0);
            text.SetStyle(2);
            const QPainterPath plain = text.GetVerticalAndUnderLine(at, index, 0);
            const QRectF bounds = plain.boundingRect();
            const QSizeF ofCaret(all.width() / orElse(bounds.width(), 0.01),
                                 all.height() / orElse(bounds.height(), 0.01));
            EXPECT_TRUE(
                Near(caret, Keystoned(Waved(plain, s, Rounded(bounds)), s, all, centre, ofCaret)))
                << words;
        }
}

TEST(TextSelection, Caret) {
    for (const char* const words : {"abc", "", "  "}) {
        LXTextHelper text = TextOf(words, 60, 0);
        const QFontMetrics metrics(text.GetFont());
        const QString measured = QString::fromLatin1(words[0] == 'a' ? "abc" : "qf");
        const QRect glyphs = metrics.tightBoundingRect(measured);
        for (const int index : {0, text.GetText().size()}) {
            const auto parts = text.GetVerticalAndUnderLine(QPoint(9, 9), index, 5);
            const QPolygonF caret = parts.toSubpathPolygons().first();
            const int x = metrics.horizontalAdvance(text.GetText().left(index));
            EXPECT_EQ(caret.first(), QPointF(x, glyphs.bottom() - glyphs.top())) << words;
            EXPECT_EQ(caret.last(), QPointF(x, 0)) << words;
            EXPECT_GT(caret.size(), 5) << "not subdivided";
        }
    }
}

TEST(TextSelection, CharacterUnderTheMouse) {
    const QPoint at(100, 50), farRight = at + QPoint(100000, 0);
    for (const int style : {0, 1, 2})
        for (const Settings& s : BothWays) {
            LXTextHelper text = TextOf("HOW WIDE", 60, style, s);
            const QPainterPath line = text.GetCharPath(at);
            for (int i = 0; i < line.elementCount(); ++i)
                EXPECT_EQ(text.FindSelectedChar(at, QPointF(line.elementAt(i)).toPoint()), i)
                    << "style " << style << (s.alongY ? " along y" : " along x");
        }
    LXTextHelper text = TextOf("iiiii", 60, 0);
    const QPainterPath line = text.GetUpperLine(at);
    int ties = 0;
    for (int i = 1; i < line.elementCount(); ++i) {
        const int sum = int(line.elementAt(i - 1).x + line.elementAt(i).x);
        if (sum % 2 != 0)
            continue;
        ++ties;
        EXPECT_EQ(text.FindSelectedChar(at, QPoint(sum / 2, -40)), i - 1);
        EXPECT_EQ(text.FindSelectedChar(at, QPoint(sum / 2 + 1, -40)), i);
    }
    EXPECT_GT(ties, 0);
    text.SetText(QStringLiteral("o\u0301x"));
    EXPECT_EQ(text.FindSelectedChar(at, farRight), 3);
    text.SetText(QString());
    EXPECT_EQ(text.FindSelectedChar(at, farRight), 0);
}

TEST(TextSelection, Rectangles) {
    LXTextHelper text = TextOf("Selected");
    const QFontMetrics metrics(text.GetFont());
    QPointF offset;
    for (const int length : {3, -2}) {
        QPainterPath expected;
        expected.addRect(metrics.horizontalAdvance(QStringLiteral("Se")), 0,
                         metrics.horizontalAdvance(text.GetText().mid(2, length)),
                         qRound(text.GetTextRect().height()));
        EXPECT_EQ(text.CreateSelectionPath(offset, 2, length), expected);
    }
    for (const int length : {0, -1}) {
        EXPECT_TRUE(text.CreateSelectionPath(offset, 2, length).isEmpty());
        EXPECT_TRUE(text.CreateSelectionAndDeformationPath(offset, 2, length).isEmpty());
    }
    QPainterPath outline;
    outline.addPolygon(QVector<QPointF>{
        {10, 20}, {26, 20}, {42, 20}, {42, 28}, {42, 36}, {26, 50}, {10, 50}, {10, 35}, {10, 20}});
    EXPECT_EQ(text.CreateSelectionPath(QPointF(10, 20), QSize(31, 15), 2), outline);
    EXPECT_EQ(text.CreateSelectionPath(QPointF(1, 2), QSize(31, 15), 0).elementCount(), 1);
}

TEST(TextImage, IsWhatQtPaints) {
    RandomPixels random(5);
    QPolygonF points;
    for (int i = 0; i < 300; ++i) {
        const double x = random.Below(60000) / 100.0 - 100;
        points << QPointF(x, random.Below(40000) / 100.0 - 60);
    }
    QPainterPath curves(QPointF(-50, 20)), star;
    star.addPolygon(points);
    star.setFillRule(Qt::WindingFill);
    for (int i = 0; i < 27; i += 3)
        curves.cubicTo(points[i], points[i + 1], points[i + 2]);

    LXTextHelper text = TextOf("Seams of tiles & more", 200);
    QPainterPath bent;
    QRectF rect, mapped;
    QPointF offset;
    text.CreatePathByTextWithDeformationWithRect(bent, rect, mapped, offset);
    for (const int mode : {0, 1, 2}) {
        text.SetRenderMode(mode);
        const QRectF part(-30.4, 11.5, 400.4, 300.5);
        for (const QPainterPath& path :
             {text.GetTextPath(), bent, star, curves, LineTo(300, 200)}) {
            const auto painted = [&](const QRectF& area) {
                return PaintedByTiles(path, Rounded(area), text.GetColor(), mode == 2);
            };
            SCOPED_TRACE(testing::Message() << "mode " << mode << ", " << path.elementCount());
            EXPECT_TRUE(SamePixels(text.CreateImage(path), painted(path.boundingRect())));
            EXPECT_TRUE(SamePixels(text.CreateImage(path, part), painted(part)));
        }
        EXPECT_TRUE(Seamless(text.CreateImage(bent),
                             Painted(bent, Rounded(rect), text.GetColor(), mode == 2)));
    }
}

TEST(TextImage, OfTheText) {
    LXTextHelper text = TextOf("Picture", 150);
    text.SetRenderMode(2);
    text.SetTransform(Turned(25));
    const auto shows = [&](const Image& image, const QPainterPath& path) {
        return SamePixels(
            image, PaintedByTiles(path, Rounded(path.boundingRect()), text.GetColor(), true));
    };
    QPointF offset(-7, 11), again(-7, 11);
    const Image bent = text.CreateImageByTextWithDeformation(offset);
    QPainterPath path, there;
    QRectF rect, mapped;
    text.CreatePathByTextWithDeformationWithRect(path, rect, mapped, again);
    EXPECT_TRUE(shows(bent, text.TransformPath(path, rect)));
    EXPECT_EQ(offset, again);
    EXPECT_TRUE(SamePixels(text.CreateImageByTextWithSelectionAndDeformation(offset, 2, 3), bent));
    text.TransformPath(path, text.GetTransform().toTransform(), there);
    EXPECT_TRUE(SamePixels(text.TransformAndCreateImage(path, rect, offset),
                           PaintedByTiles(there, Rounded(mapped), text.GetColor(), true)));
    EXPECT_EQ(offset, QPointF((mapped.topLeft() - rect.topLeft()).toPoint()));
    text.SetStyle(2);
    EXPECT_TRUE(SamePixels(text.CreateImageByTextWithDeformation(offset), bent));

    text.SetStyle(0);
    const QPainterPath plain = text.TransformPath(text.GetTextPath(), text.GetTextRect(), again);
    const Image image = text.CreateImageByText(offset);
    EXPECT_TRUE(shows(image, plain));
    EXPECT_EQ(offset, QPointF(again.toPoint()));
    EXPECT_TRUE(SamePixels(text.CreateImageByTextWithDeformation(offset), image));
    EXPECT_TRUE(SamePixels(text.CreateImageByTextWithSelection(offset, 1, 0), image));
    QPainterPath joined = text.GetTextPath();
    joined.addPath(text.CreateSelectionPath(offset, 1, 4));
    const QPainterPath both = text.TransformPath(joined, joined.boundingRect(), again);
    offset = QPointF(0, 0);
    EXPECT_TRUE(shows(text.CreateImageByTextWithSelection(offset, 1, 4), both));
    EXPECT_EQ(offset, QPointF(again.toPoint()));

    text.SetTransform(QMatrix4x4());
    text.CreateImageByText(offset);
    EXPECT_EQ(offset, QPointF(0, 0));
    text.SetText(QString());
    for (const int style : {0, 1}) {
        text.SetStyle(style);
        EXPECT_TRUE(SamePixels(text.CreateImageByTextWithDeformation(offset), Image(0, 0)));
    }
}

TEST(TextImage, TransformsImages) {
    QMatrix4x4 quarter;
    quarter.rotate(90, 0, 0, 1);
    LXTextHelper text(4);
    text.SetTransform(quarter);
    const Image before = RandomImage(200, 130, 3), after = text.TransformImage(before);
    const QImage turned = ConvertImage<Image, QImage>(before).transformed(quarter.toTransform());
    EXPECT_TRUE(SamePixels(after, turned));
}

TEST(TextImage, NoTileLeft) {
    const auto make = [] { return TextOf("Tiles", 150); };
    const auto draw = [](LXTextHelper& text) {
        QPointF offset;
        return text.TransformImage(text.CreateImageByTextWithDeformation(offset));
    };
    const auto check = [&](LXTextHelper& text, const ExhaustionOutcome& outcome) {
        EXPECT_EQ(outcome.threw, outcome.handlerCalls > 0);
        EXPECT_EQ(outcome.tilesAfter, outcome.tilesBefore);
        LXTextHelper fresh = make();
        EXPECT_TRUE(SamePixels(draw(text), draw(fresh)));
    };
    EXPECT_GT(SweepExhaustion(make, draw, check), 10u);
}

TEST(TextImage, RubbishIsHarmless) {
    const auto attempt = [](auto operation) {
        try {
            operation();
        } catch (const std::bad_alloc&) {
        }
    };
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {double(NAN), infinity, -infinity, 1e300, -1e9}) {
        LXTextHelper text = TextOf("x", 20, 1, {false, value, value, value});
        QPointF offset;
        attempt([&] { text.CreateImageByTextWithDeformation(offset); });
        text.CreateSelectionAndDeformationPath(offset, -5, 99);
        text.GetVerticalAndUnderLine(QPoint(), 99, 0);
        text.FindSelectedChar(QPoint(), QPoint());
        attempt([&] { text.CreateImage(LineTo(5, 5), QRectF(value, value, value, 10)); });
        QMatrix4x4 matrix;
        matrix.scale(float(value));
        text.SetTransform(matrix);
        attempt([&] { text.CreateImageByText(offset); });
        attempt([&] { text.TransformImage(Image(10, 10)); });
    }
    const Image none = LXTextHelper(4).CreateImage(LineTo(5, 5), QRectF(0, 0, -3, 9));
    EXPECT_EQ(LXImageRect(none).size(), QSize(0, 9));
}
