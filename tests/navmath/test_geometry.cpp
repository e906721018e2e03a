// Plane geometry: the clipping ray, the crossing of a leg and a border
// edge, the hit test of a line, the quadrant angle and the boundary ring.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "core/Fault.h"
#include "navmath/Geometry.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

TEST(PixelDistance, RoundsTiesToEvenAndGuardsItsSquares) {
    struct Case {
        ChartPoint a, b;
        int32_t want;
    } cases[] = {
        {{0, 0}, {3, 4}, 5},
        {{-3, -4}, {0, 0}, 5},
        {{0, 0}, {1, 2}, 2},        // 2.236
        {{0, 0}, {2, 2}, 3},        // 2.828
        {{0, 0}, {46340, 0}, 46340},
    };
    for (const auto& c : cases) EXPECT_EQ(PixelDistance(c.a, c.b), c.want) << c.b.x << "," << c.b.y;
    // 46341^2 no longer fits 32 bits; nor does the sum of two large squares.
    for (ChartPoint far : {ChartPoint{46341, 0}, ChartPoint{40000, 40000}}) {
        try {
            PixelDistance({0, 0}, far);
            ADD_FAILURE() << "no overflow for " << far.x << "," << far.y;
        } catch (const Fault& f) { EXPECT_EQ(f.Number(), faults::Overflow); }
    }
}

TEST(RayHitsSegment, HitsMissesAndParallelMarkers) {
    struct Case {
        ChartPoint start;
        double angle;
        float length;
        PixelSegment seg;
        bool hit;
        ChartPoint at;  // checked when the lines meet
        const char* what;
    } cases[] = {
        {{0, 0}, 0, 100, {{50, -10}, {50, 10}}, true, {50, 0}, "east into a vertical edge"},
        {{0, 0}, 90, 100, {{-10, -40}, {10, -40}}, true, {0, -40}, "90 goes up the screen"},
        {{0, 0}, 270, 100, {{-10, -40}, {10, -40}}, false, {0, -40}, "270 goes down: the edge is behind"},
        {{0, 0}, 0, 40, {{50, -10}, {50, 10}}, false, {50, 0}, "too short to reach"},
        {{0, 0}, 0, 50, {{50, -10}, {50, 10}}, true, {50, 0}, "reaching the edge exactly counts"},
        {{0, 0}, 0, 100, {{50, 0}, {50, 10}}, true, {50, 0}, "touching the edge's end counts"},
        {{0, 0}, 0, 100, {{50, 1}, {50, 10}}, false, {50, 0}, "passing beside the edge's end"},
        {{100, 100}, 45, 100, {{100, 0}, {200, 100}}, true, {150, 50}, "diagonal"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ChartPoint r{999, 999};
        EXPECT_EQ(RayHitsSegment(c.start, c.angle, c.length, c.seg, r), c.hit);
        EXPECT_EQ(r, c.at);
    }
    // Parallel: a level ray leaves -1, any other leaves 0, and y untouched.
    ChartPoint r{7, 7};
    EXPECT_FALSE(RayHitsSegment({0, 0}, 0, 100, {{0, 10}, {100, 10}}, r));
    EXPECT_EQ(r, (ChartPoint{-1, 7}));
    r = {7, 7};
    EXPECT_FALSE(RayHitsSegment({0, 0}, 90, 100, {{10, 0}, {10, 100}}, r));
    EXPECT_EQ(r, (ChartPoint{0, 7}));
}

TEST(SegmentsCross, LegAgainstBorderEdge) {
    struct Case {
        DoublePoint p1, p2;
        DoubleSegment edge;
        bool cross;
        DoublePoint at;
        const char* what;
    } cases[] = {
        {{0, 0}, {10, 10}, {0, 10, 10, 0}, true, {5, 5}, "an X"},
        {{0, 0}, {4, 4}, {0, 10, 10, 0}, false, {5, 5}, "the leg stops short; the lines still meet"},
        {{0, 0}, {10, 0}, {10, -5, 10, 5}, true, {10, 0}, "the leg's end on the edge counts"},
        {{0, 0}, {10, 0}, {5, 0.5, 5, 5}, false, {5, 0}, "beside the edge's end"},
        {{-36000, 180000}, {36000, 190000}, {0, 0, 0, 324000}, true, {0, 185000}, "a leg across a meridian border"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        DoublePoint r{123, 456};
        EXPECT_EQ(SegmentsCross(c.p1, c.p2, c.edge, r), c.cross);
        EXPECT_NEAR(r.x, c.at.x, 1e-9);
        EXPECT_NEAR(r.y, c.at.y, 1e-9);
    }
    // Parallel: the marker follows the result's own y.
    for (double y : {0.0, 3.0}) {
        DoublePoint r{5, y};
        EXPECT_FALSE(SegmentsCross({0, 0}, {10, 0}, {0, 1, 10, 1}, r));
        EXPECT_EQ(r, (DoublePoint{y == 0 ? -1.0 : 0.0, y}));
    }
    // The LatLong form is the same test with Long as x.
    LatLong ll{0, 0};
    EXPECT_TRUE(SegmentsCross(LatLong{0, 0}, LatLong{10, 10}, DoubleSegment{0, 10, 10, 0}, ll));
    EXPECT_EQ(ll, (LatLong{5, 5}));
}

TEST(PointNearSegment, HitTestOfALine) {
    struct Case {
        ChartPoint a, b, p;
        float tol;
        bool near;
        const char* what;
    } cases[] = {
        {{0, 0}, {200, 0}, {100, 3}, 4, true, "perpendicular from the middle, inside"},
        {{0, 0}, {200, 0}, {100, -4}, 4, true, "perpendicular at the tolerance exactly"},
        {{0, 0}, {200, 0}, {100, 5}, 4, false, "perpendicular beyond the tolerance"},
        {{0, 0}, {200, 200}, {104, 96}, 5, false, "diagonal, 5.7 pixels off"},
        {{0, 0}, {200, 0}, {203, 0}, 4, true, "just past the end"},
        {{0, 0}, {200, 0}, {203, 3}, 4, false, "past the end, off the corner (clamped to the end)"},
        {{0, 0}, {200, 0}, {300, 0}, 4, false, "far along the line's extension"},
        {{50, 50}, {50, 50}, {50, 50}, 4, false, "a segment of no length is never hit"},
        {{0, 100}, {0, 0}, {2, 50}, 3, true, "vertical, ends in either order"},
    };
    for (const auto& c : cases) EXPECT_EQ(PointNearSegment(c.a, c.b, c.p, c.tol), c.near) << c.what;
}

TEST(AngleBetween, QuadrantAnswers) {
    struct Case {
        Vector3 a, b;
        double want;
        const char* what;
    } cases[] = {
        {{1, 0, 0}, {0, 1, 0}, 0, "perpendicular"},
        {{1, 0, 0}, {2, 0, 0}, 90, "same way"},
        {{1, 0, 0}, {-3, 0, 0}, 270, "opposite"},
        {{1e-5, 0, 0}, {1, 0, 0}, 0, "nearly no length"},
        {{1, 0, 0}, {1, std::sqrt(3.0), 0}, -30, "60 degrees apart"},
        {{1, 0, 0}, {-1, std::sqrt(3.0), 0}, 30, "120 degrees apart"},
    };
    for (const auto& c : cases) EXPECT_NEAR(AngleBetween(c.a, c.b), c.want, 1e-9) << c.what;
}

// Rings and points as data: tests/data/navmath/polygons.txt holds blocks of
//   ring x1 y1 x2 y2 ...
//   in x y      (expected inside)
//   out x y     (expected outside)
TEST(PointInPolygon, RingsFromData) {
    std::istringstream in(test::ReadFile(test::SourcePath("tests/data/navmath/polygons.txt")));
    std::string name;
    std::vector<DoublePoint> ring;
    int checked = 0;
    for (std::string line; std::getline(in, line);) {
        std::istringstream ls(line);
        std::string word;
        if (!(ls >> word) || word[0] == '#') continue;
        if (word == "ring") {
            ls >> name;
            ring.clear();
            double x, y;
            while (ls >> x >> y) ring.push_back({x, y});
            continue;
        }
        double x, y;
        ASSERT_TRUE(bool(ls >> x >> y)) << line;
        const bool want = word == "in";
        SCOPED_TRACE(name + ": " + line);
        EXPECT_EQ(PointInPolygon(x, y, ring), want);
        // The same ring in seconds of arc, walked from any vertex, either way.
        std::vector<LatLong> ll;
        for (const auto& p : ring) ll.push_back(ToLatLong(p));
        for (size_t shift = 0; shift < ll.size(); ++shift) {
            std::vector<LatLong> r(ll.begin() + long(shift), ll.end());
            r.insert(r.end(), ll.begin(), ll.begin() + long(shift));
            EXPECT_EQ(PointInPolygon(x, y, r), want) << "from vertex " << shift;
            std::reverse(r.begin(), r.end());
            EXPECT_EQ(PointInPolygon(x, y, r), want) << "reversed, from vertex " << shift;
        }
        ++checked;
    }
    EXPECT_GE(checked, 20);
    EXPECT_FALSE(PointInPolygon(0, 0, std::vector<LatLong>{}));
}
