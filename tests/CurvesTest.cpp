#include "LXCurvesTransformation.h"
#include "color/LXCurvesTransformation_f.h"
#include "support/AdjustmentChecks.h"

#include <climits>
#include <numeric>

namespace {

using Points = QVector<QPoint>;
using Curves = std::array<Points, 4>;

const Points Line{{0, 0}, {255, 255}};

std::vector<Reference::Knot> Knots(const Points& points) {
    std::vector<Reference::Knot> knots;
    for (const QPoint& p : points)
        knots.push_back({double(p.x()), double(p.y())});
    return knots;
}

/// 3 .. 9 points of ascending x.
Points RandomPoints(RandomPixels& random) {
    Points points;
    int x = int(random.Below(40));
    for (unsigned int n = 3 + random.Below(7); n > 0; --n, x += 1 + int(random.Below(50)))
        points.append(QPoint(x, random.Byte()));
    return points;
}

Reference::Table TableOf(const Points& channel) {
    Curves curves{Line, channel, Line, Line};
    return Entries(LXCurvesTransformation(curves.data(), 100).GetTables().red);
}

} // namespace

TEST(Mix, IsTruncatedAndDefinedForEveryAmount) {
    for (const int amount : {0, 1, 33, 50, 99, 100, -20, 300})
        for (int value = 0; value < 256; ++value)
            for (int i = 0; i < 256; ++i)
                ASSERT_EQ(LXMixWithIdentity(value, i, LXWeightOfPercent(amount)),
                          (value * amount * 2550 + i * (255000 - amount * 2550)) / 255000)
                    << value << " " << i << " " << amount;
    EXPECT_EQ(LXMixWithIdentity(255, 0, LXWeightOfPercent(INT_MAX)), 5476083299LL);
}

TEST(Curves, SplineIsTheOneSolvedByHand) {
    // 400 M1 = 6 (-1 - 1): the only inner second derivative is -0.03.
    const Points points{{0, 0}, {100, 100}, {200, 0}};
    QVector<double> a, b, c;
    LXCurvesTransformation::BuildSplineParts(points, a, b, c);
    EXPECT_DOUBLE_EQ(a[0], -0.00005);
    EXPECT_DOUBLE_EQ(a[1], 0.00005);
    EXPECT_EQ(b[0], 0);
    EXPECT_DOUBLE_EQ(b[1], -0.015);
    EXPECT_DOUBLE_EQ(c[0], 1.5);
    EXPECT_NEAR(c[1], 0, 1e-15); // 1 - 1, in rounded steps
    EXPECT_EQ(a.size(), 3);
    for (const int x : {50, 150}) // 68.75
        EXPECT_EQ(LXCurvesTransformation::SplineValue(x, points, a, b, c), 69);
    // The end cubics go on: y(-100) = 50 - 150, and 0.5 more is truncated towards 0.
    EXPECT_EQ(LXCurvesTransformation::SplineValue(-100, points, a, b, c), -99);
    EXPECT_EQ(LXCurvesTransformation::SplineValue(300, points, a, b, c), -99);
}

TEST(Curves, LookupFindsTheSegment) {
    RandomPixels random(1);
    for (int round = 0; round < 50; ++round) {
        const Points points = RandomPoints(random);
        for (int x = -5; x < 300; ++x) {
            int expected = 0;
            for (int k = 0; k < points.size() - 1; ++k)
                if (points[k].x() <= x)
                    expected = k;
            ASSERT_EQ(LXCurvesTransformation::Lookup(x, points), expected) << x;
        }
    }
    EXPECT_EQ(LXCurvesTransformation::Lookup(5, {}), 0);
    EXPECT_EQ(LXCurvesTransformation::Lookup(5, {{1, 1}}), 0);
}

TEST(Curves, TablesAreThoseOfTheFormulas) {
    RandomPixels random(2);
    for (int round = 0; round < 300; ++round) {
        Curves curves;
        std::array<std::vector<Reference::Knot>, 4> knots;
        for (std::size_t c = 0; c < 4; ++c) {
            curves[c] = RandomPoints(random);
            const int middle = curves[c].size() / 2;
            if (random.Below(5) == 0) // an x twice
                curves[c][middle].setX(curves[c][middle - 1].x());
            knots[c] = Knots(curves[c]);
        }
        const int amount = round % 3 == 0 ? 100 : int(random.Below(101));
        const LXCurvesTransformation curve(curves.data(), amount);
        ASSERT_EQ(Entries(curve.GetTables()), Reference::CurvesTables(knots, amount)) << round;

        QVector<QPointF> halves;
        std::vector<Reference::Knot> halfKnots = knots[1];
        for (Reference::Knot& knot : halfKnots) {
            knot = {knot.x * 0.77, knot.y + 0.3};
            halves.append({knot.x, knot.y});
        }
        const LXCurvesTransformation_f single(halves);
        ASSERT_EQ(Entries(single.GetTable()), Reference::CurveTable(halfKnots)) << round;
    }
}

TEST(Curves, LineKeepsAThirdPointInTheCallersVector) {
    Curves curves{Line, Line, Line, Line};
    const LXCurvesTransformation identity(curves.data(), 100);
    for (const Points& points : curves)
        EXPECT_EQ(points, (Points{{0, 0}, {128, 128}, {255, 255}}));
    for (const Reference::Table& table : Entries(identity.GetTables()))
        EXPECT_EQ(table, Identity());

    // No rounding for the curve of floats: the point is (127.5, 127.5), and the line is exact.
    EXPECT_EQ(Entries(LXCurvesTransformation_f({{0, 0}, {255, 255}}).GetTable()), Identity());
    const LXCurvesTransformation_f inverted({{0, 255}, {255, 0}});
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(inverted.GetTable()[std::size_t(i)], 255 - i);
    LXCurvesTransformation_f moved({{0, 0}, {255, 255}});
    moved.Update({{0, 0.75}, {255, 255.75}});
    EXPECT_EQ(moved.GetTable()[7], 8);
}

TEST(Curves, ShapesThatUsersDraw) {
    EXPECT_EQ(TableOf({}), Reference::Table(256, 0));
    EXPECT_EQ(TableOf({{90, 40}}), Reference::Table(256, 40));
    EXPECT_EQ(TableOf({{50, 50}, {200, 200}}), Identity()) << "ends go on";
    // An x twice: each point's level up to the next, the first one's before it too.
    const Reference::Table stairs = TableOf({{20, 10}, {60, 90}, {60, 120}, {200, 30}});
    for (int x = 0; x < 256; ++x)
        ASSERT_EQ(stairs[std::size_t(x)], x < 60 ? 10 : 120) << x; // ends on the last but one
    const Reference::Table steep = TableOf({{0, 0}, {100, 250}, {120, 250}, {255, 255}});
    EXPECT_EQ(*std::max_element(steep.begin(), steep.end()), 255) << "overshoot is cut off";
    EXPECT_EQ(steep[100], 250);
    // An S through even steps rises everywhere.
    const Reference::Table s = TableOf({{0, 0}, {64, 40}, {128, 128}, {192, 216}, {255, 255}});
    EXPECT_TRUE(std::is_sorted(s.begin(), s.end()));
}

TEST(Curves, ChannelRunsBeforeTheMaster) {
    // The channel moves 10 to 20, the master 20 to 200 and 10 to 5.
    Curves curves{Points{{0, 0}, {10, 5}, {20, 200}, {255, 255}},
                  Points{{0, 0}, {10, 20}, {255, 255}}, Line, Line};
    const LXCurvesTransformation curve(curves.data(), 100);
    EXPECT_EQ(curve.GetTables().red[10], 200);
    EXPECT_EQ(curve.GetTables().green[10], 5);
    const LXByteTable& blue = curve.GetTables().blue;
    ExpectColour(curve, {10, 10, 200}, {200, 5, blue[200]});

    const LXCurvesTransformation none(curves.data(), 0);
    for (const Reference::Table& table : Entries(none.GetTables()))
        EXPECT_EQ(table, Identity());
    CheckSibling<LXIterativeCurvesTransformation, LXCurvesTransformation>(curves.data(), 70);
}
