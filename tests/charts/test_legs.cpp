// Legs on the chart view: pieces plan by plan, cut at the borders, the
// label on the longest piece in view, hit tests, great-circle chains.
#include <gtest/gtest.h>

#include <cmath>

#include "charts/LegDrawing.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "platform/fake/RecordingCanvas.h"
#include "tests/charts/ChartFixture.h"

namespace ombra::test {
namespace {

// Plan 0 over the demo area on the left 600 pixels; plan 1, a harbour
// plan, in the right part of the raster.
struct LegWorld : ChartWorld {
    LegWorld() {
        FixtureChart c = DefaultFixture();
        c.Height = 600;
        c.Plans[0].X1 = c.Plans[0].Y1 = 600;
        c.Plans.push_back({50.02, 49.98, -12.03, -11.97, 650, 50, 950, 450, "Harbour", "12500", true, 3});
        charts.View.SetViewSize(1000, 600);
        ok = Install(c) && charts.Charts.NewChart("1234A");
        charts.View.ShowHiRes();
        charts.View.CentreOnPixel(500, 300);
    }
    NavPoint At(double lat, double lon) { return charts.View.LocatePosition(LatLong{lon * 3600, lat * 3600}); }
    bool ok = false;
};

TEST(Legs, BothEndsOnAPlanIsOnePieceWithItsLabel) {
    LegWorld w;
    ASSERT_TRUE(w.ok);
    RecordingCanvas c(1000, 600);
    NavPoint a = w.At(49.90, -12.25), b = w.At(50.10, -12.05);
    ASSERT_TRUE(a.In(0));
    ASSERT_TRUE(b.In(0));
    w.charts.Legs.DrawRhumbLine(c, a, b, true, 0, 0.0);
    auto lines = c.Of("Line");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].points[0], w.charts.View.ChartToScreen(a.Pixel[0]));
    EXPECT_EQ(lines[0].points[1], w.charts.View.ChartToScreen(b.Pixel[0]));
    auto texts = c.Of("Text");
    ASSERT_EQ(texts.size(), 1u);
    double course, distance;
    CourseDistanceRL(a.Wgs84, b.Wgs84, course, distance);
    // The course shown is the one the plan's pixels show: north-east here.
    EXPECT_EQ(texts[0].text.substr(3), " °T " + w.units.ToDisplay(UnitKind::Distance, float(distance), "0.000") + " NM RL");
    // This plan is stretched (its pixels are not square on the ground), so
    // the course on the plan differs from the rhumb line's.
    double dx = b.Pixel[0].x - a.Pixel[0].x, dy = -(b.Pixel[0].y - a.Pixel[0].y);
    double onPlan = std::fmod(90.0 - std::atan2(dy, dx) * kRadToDeg + 360.0, 360.0);
    EXPECT_NEAR(Val(texts[0].text.substr(0, 3)), onPlan, 0.5);
    EXPECT_GT(std::fabs(onPlan - course), 2.0);
    // The box under the label is filled in the background colour.
    auto boxes = c.Of("Rectangle");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].brush.colour, MakeRgb(255, 255, 255));

    // Label modes: forced off, forced on.
    RecordingCanvas off, on;
    w.charts.Legs.LabelMode = 2;
    w.charts.Legs.DrawRhumbLine(off, a, b, true, 0, 0.0);
    EXPECT_TRUE(off.Of("Text").empty());
    w.charts.Legs.LabelMode = 1;
    w.charts.Legs.DrawRhumbLine(on, a, b, false, 0, 0.0);
    EXPECT_EQ(on.Of("Text").size(), 1u);
    w.charts.Legs.LabelMode = 0;
}

TEST(Legs, LabelTextsByCourseMode) {
    LegWorld w;
    ASSERT_TRUE(w.ok);
    w.host.deviation = [](double mag) { return mag > 40 && mag < 60 ? 2.0 : -1.0; };
    struct Case {
        double course, distance;
        int16_t mode;
        double variation;
        const char* text;
        const char* rangeDP;
    } cases[] = {
        {45.4, 2.5, 0, 0.0, "045 °T 2.500 NM RL", "3"},
        {45.4, 2.5, 1, -5.0, "050 °M 2.500 NM RL", "3"},
        {45.4, 2.5, 2, -5.0, "052 °C 2.50 NM RL", "2"},
        {3.0, 0.125, 1, 7.0, "356 °M 0.13 NM RL", "2"},
        {359.7, 10, 0, 0.0, "360 °T 10.000 NM RL", "3"},
    };
    for (const Case& c : cases) {
        w.registry.SaveSetting(Key::RangeDP, c.rangeDP);
        EXPECT_EQ(w.charts.Legs.RhumbLabel(c.course, c.distance, c.mode, c.variation), c.text);
    }
}

TEST(Legs, LegsLeavingAPlanAreCutAtItsBorder) {
    LegWorld w;
    ASSERT_TRUE(w.ok);
    // From plan 0 to a position beyond the chart's western edge.
    NavPoint a = w.At(50.0, -12.2), b = w.At(50.0, -12.6);
    ASSERT_TRUE(a.In(0));
    EXPECT_EQ(b.FirstPlanShown(), -1);
    double course, distance;
    auto pieces = w.charts.Legs.Pieces(a, b, course, distance);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].a, a.Pixel[0]);
    EXPECT_NEAR(pieces[0].b.x, 0, 1);          // the western border
    EXPECT_NEAR(pieces[0].b.y, a.Pixel[0].y, 1);
    // The other way round the piece keeps the leg's order.
    pieces = w.charts.Legs.Pieces(b, a, course, distance);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].b, a.Pixel[0]);

    // A leg through the harbour plan with both ends outside it is drawn on
    // plan 1 between the two border crossings, and on plan 0 whole.
    NavPoint c = w.At(50.0, -12.1), d = w.At(50.0, -11.9);
    ASSERT_FALSE(c.In(1));
    ASSERT_FALSE(d.In(1));
    pieces = w.charts.Legs.Pieces(c, d, course, distance);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[1].plan, 1);
    EXPECT_NEAR(pieces[1].a.x, 650, 2);  // plan 1's west edge
    EXPECT_NEAR(pieces[1].b.x, 950, 2);  // and its east edge
    EXPECT_TRUE(w.library.IsChartPtInPlan(1, {800, pieces[1].a.y}));

    // A ray too short to reach the border meets nothing.
    ChartPoint hit;
    EXPECT_FALSE(w.charts.Legs.RayToPlanEdge(0, a.Pixel[0], 180.0, 0.5, hit));
}

TEST(Legs, HitTestsOnTheVisiblePiece) {
    LegWorld w;
    ASSERT_TRUE(w.ok);
    NavPoint a = w.At(49.90, -12.25), b = w.At(50.10, -12.05);
    ChartPoint mid{(a.Pixel[0].x + b.Pixel[0].x) / 2, (a.Pixel[0].y + b.Pixel[0].y) / 2};
    bool hit = false;
    EXPECT_TRUE(w.charts.Legs.HitRhumbLine(hit, 0, a, b, mid, 3.0f));
    EXPECT_TRUE(hit);
    EXPECT_FALSE(w.charts.Legs.HitRhumbLine(hit, 0, a, b, {mid.x + 30, mid.y + 30}, 3.0f));
    // On a plan that does not show the leg there is nothing to hit.
    EXPECT_FALSE(w.charts.Legs.HitRhumbLine(hit, 1, a, b, mid, 3.0f));
    // A great circle's chain is hit along its pieces.
    EXPECT_TRUE(w.charts.Legs.HitGreatCircle(hit, 0, a, b, mid, 3.0f));
}

TEST(Legs, GreatCircleChains) {
    LegWorld w;
    ASSERT_TRUE(w.ok);
    NavPoint a = w.At(50.05, -12.1);
    ASSERT_FALSE(a.In(1));
    NavPoint far = w.charts.View.LocatePosition(LatLong{-70 * 3600.0, 40 * 3600.0});
    double course, distance;
    CourseDistanceGC(a.Wgs84, far.Wgs84, course, distance);
    ASSERT_GT(distance, 1800);
    auto chain = w.charts.Legs.GreatCircleNavChain(a, far, course, distance);
    ASSERT_EQ(chain.size(), 11u);  // at most 10 pieces
    EXPECT_EQ(chain.back().Wgs84, far.Wgs84);
    // Drawn: the one piece on the chart runs from `a` to plan 0's border.
    RecordingCanvas c(1000, 600);
    w.charts.Legs.DrawGreatCircle(c, a, far, course, distance, "GC label");
    auto lines = c.Of("Line");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].points[0], w.charts.View.ChartToScreen(a.Pixel[0]));
    EXPECT_EQ(c.Of("Text").at(0).text, "GC label");
    // A short great circle inside the plan: one piece from end to end.
    NavPoint b = w.At(50.08, -12.2);
    CourseDistanceGC(a.Wgs84, b.Wgs84, course, distance);
    RecordingCanvas c2(1000, 600);
    w.charts.Legs.DrawGreatCircle(c2, a, b, course, distance, "");
    ASSERT_EQ(c2.Of("Line").size(), 1u);
    EXPECT_EQ(c2.Of("Line")[0].points[1], w.charts.View.ChartToScreen(b.Pixel[0]));
    EXPECT_TRUE(c2.Of("Text").empty());
}

}  // namespace
}  // namespace ombra::test
