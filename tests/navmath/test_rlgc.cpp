// Course, distance, dead reckoning and the great-circle chain.
//
// Course and distance are checked leg by leg against GeographicLib's own
// command-line solvers, run as separate programs over the legs in
// tests/data/navmath/course_cases.txt, so a slip in units, signs, the
// antimeridian or the poles shows up as a disagreement with the reference.
#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/GeodesicLine.hpp>
#include <cmath>
#include <iterator>
#include <sstream>

#include "navmath/RLGC.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

constexpr double kMileMetres = 1852.0;

struct Leg {
    double lat1, lon1, lat2, lon2;
    std::string what;
    LatLong From() const { return {lon1 * 3600.0, lat1 * 3600.0}; }
    LatLong To() const { return {lon2 * 3600.0, lat2 * 3600.0}; }
};

// Each line of text as numbers.
std::vector<std::vector<double>> Rows(const std::string& text) {
    std::vector<std::vector<double>> rows;
    for (const auto& line : test::SplitLines(text)) {
        std::istringstream ls(line);
        rows.emplace_back(std::istream_iterator<double>(ls), std::istream_iterator<double>());
    }
    return rows;
}

// The angle from a to b the short way round, in degrees.
double AngleGap(double a, double b) {
    const double d = std::fabs(std::fmod(a - b + 720.0, 360.0));
    return std::min(d, 360.0 - d);
}

}  // namespace

TEST(CourseDistance, AgreesWithGeographicLibSolvers) {
    std::vector<Leg> legs;
    std::ostringstream input;
    input.precision(17);
    std::istringstream in(test::ReadFile(test::SourcePath("tests/data/navmath/course_cases.txt")));
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream ls(line);
        Leg l;
        ls >> l.lat1 >> l.lon1 >> l.lat2 >> l.lon2;
        std::getline(ls, l.what);
        legs.push_back(l);
        input << l.lat1 << " " << l.lon1 << " " << l.lat2 << " " << l.lon2 << "\n";
    }
    ASSERT_GE(legs.size(), 20u);
    // Per solver: its rows, and the columns of course and distance.
    struct Solver {
        const char* program;
        size_t distanceColumn;
        void (*ours)(const LatLong&, const LatLong&, double&, double&);
    } solvers[] = {{"RhumbSolve", 1, CourseDistanceRL}, {"GeodSolve", 2, CourseDistanceGC}};
    for (const auto& s : solvers) {
        auto run = test::Run({s.program, "-i", "-p", "9"}, input.str());
        ASSERT_EQ(run.exitCode, 0) << s.program << " (geographiclib-tools) must be installed: " << run.err;
        const auto rows = Rows(run.out);
        ASSERT_EQ(rows.size(), legs.size());
        for (size_t i = 0; i < legs.size(); ++i) {
            const Leg& l = legs[i];
            SCOPED_TRACE(s.program + l.what);
            double c = -1, d = -1;
            s.ours(l.From(), l.To(), c, d);
            EXPECT_NEAR(d, rows[i][s.distanceColumn] / kMileMetres, 0.001 / kMileMetres);
            EXPECT_GE(c, 0.0);
            EXPECT_LT(c, 360.0);
            if (l.lat1 == l.lat2 && std::fmod(l.lon1 - l.lon2, 360.0) == 0.0)
                EXPECT_EQ(c, 0.0);  // GeodSolve says 180 for a leg of no length; a plotter says 000
            else
                EXPECT_LT(AngleGap(c, rows[i][0]), 1e-9);
        }
    }
}

TEST(CourseDistance, PositionsPastAPoleAreTakenAtThePole) {
    // Dead reckoning over the top leaves a latitude above 90; measuring from
    // it must give the same numbers as from the pole itself.
    const LatLong beyond{0.0, 90.5 * 3600}, pole{0.0, 90.0 * 3600}, to{10.0 * 3600, 80.0 * 3600};
    for (int16_t gc : {0, -1}) {
        double c1, d1, c2, d2;
        CourseDistance(gc, beyond, to, c1, d1);
        CourseDistance(gc, pole, to, c2, d2);
        EXPECT_FALSE(std::isnan(c1)) << gc;
        EXPECT_DOUBLE_EQ(d1, d2) << gc;
    }
}

// Dead reckoning: cases worked by hand on the traverse table, where a
// minute of arc is a mile; and the longitude's one wrap at 180.
TEST(DeadReckon, KnownRunsAndTheAntimeridian) {
    struct Case {
        double lat, lon, course, distance, scale, wantLat, wantLon;
        const char* what;
    } cases[] = {
        {0, 10, 90, 60, 3600, 0, 11, "east along the equator: 60 miles is a degree"},
        {10, 0, 180, 600, 3600, 0, 0, "south to the equator"},
        {60, 0, 90, 60, 3600, 60, 2, "east at 60N: a degree of longitude is 30 miles"},
        {0, 0, 270, 90, 3600, 0, -1.5, "west"},
        {50, -5, 0, 6, 600, 50 + 1.0 / 60, -5, "6 knots for 10 minutes is a mile"},
        {89.5, 0, 0, 60, 3600, 90.5, 0, "latitude is not limited at the pole"},
        {0, 179, 90, 60, 3600, 0, 180, "landing on 180E exactly stays east"},
        {0, -179, 270, 60, 3600, 0, -180, "landing on 180W exactly stays west"},
        {0, 179, 90, 61, 3600, 0, 180 + 1.0 / 60 - 360, "past 180E becomes west"},
        {0, -179.5, 270, 60, 3600, 0, -180.5 + 360, "past 180W becomes east"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        LatLong p;
        DeadReckon(p, LatLong{c.lon * 3600, c.lat * 3600}, c.course, c.distance, c.scale);
        EXPECT_NEAR(p.Lat / 3600, c.wantLat, 1e-9);
        EXPECT_NEAR(p.Long / 3600, c.wantLon, 1e-9);
        EXPECT_EQ(p.Long > 0, c.wantLon > 0);
    }
}

TEST(GeodesicDirect, MatchesGeographicLibAtRadarRanges) {
    const auto& g = GeographicLib::Geodesic::WGS84();
    for (double lat : {-75.0, -10.0, 0.0, 52.0, 80.0})
        for (float bearing = 0; bearing < 360; bearing += 37.5f)
            for (float range : {0.0f, 50.0f, 11112.0f, 44448.0f}) {
                SCOPED_TRACE(testing::Message() << lat << " " << bearing << " " << range);
                const float az = float(bearing * kDegToRad);
                LatLong to;
                GeodesicDirect(LatLong{-4.0 * kDegToRad, lat * kDegToRad}, range, az, to);
                double lat2, lon2;
                g.Direct(lat, -4.0, double(az) * kRadToDeg, double(range), lat2, lon2);
                // Metres of error along and across the meridian.
                const double north = (to.Lat * kRadToDeg - lat2) * 111000.0;
                const double east = (to.Long * kRadToDeg - lon2) * 111000.0 * std::cos(lat * kDegToRad);
                EXPECT_LT(std::hypot(north, east), 0.001 + range * 1e-7);
            }
    EXPECT_EQ(PrimeVerticalRadius(6378137.0, 2.0, 1.0), 0.0);  // negative under the root: empty
}

TEST(AngleConversion, CompassAndMathematicalDegrees) {
    const double cases[][2] = {{0, 90}, {90, 0}, {180, 270}, {270, 180}, {30, 60}, {135, 315}, {359, 91}, {1, 89}};
    for (const auto& c : cases) {
        EXPECT_NEAR(CompassToMath(c[0]), c[1], 1e-10) << c[0];
        EXPECT_NEAR(MathToCompass(c[1]), c[0], 1e-10) << c[0];
    }
}

TEST(GreatCircleSplit, SegmentCountRoundsTiesToEvenAndStopsAtTen) {
    const double cases[][2] = {{0, 1},  {30, 1},  {30.1, 2}, {90, 3},   {150, 3},  {210, 5},
                               {510, 9}, {540, 10}, {2000, 10}, {1e6, 10}, {NAN, 10}};
    for (const auto& c : cases) EXPECT_EQ(GreatCircleSegments(c[0]), int(c[1])) << c[0];
    const LatLong p{3600.0, 3600.0};
    EXPECT_TRUE(GreatCircleChain(p, p).empty());
}

TEST(GreatCircleSplit, ChainFollowsTheGeodesic) {
    const double cases[][4] = {{50, -10, 40, -60}, {-34, 18, -33, 151}, {60, 170, 55, -130}, {10, 0, 10.2, 0.3}};
    const auto& g = GeographicLib::Geodesic::WGS84();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c[0] << " " << c[1] << " -> " << c[2] << " " << c[3]);
        const LatLong from{c[1] * 3600, c[0] * 3600}, to{c[3] * 3600, c[2] * 3600};
        double course, distance, rlCourse, rlDistance;
        CourseDistanceGC(from, to, course, distance);
        CourseDistanceRL(from, to, rlCourse, rlDistance);
        const auto chain = GreatCircleChain(from, to);
        const int n = GreatCircleSegments(distance);
        ASSERT_EQ(chain.size(), size_t(n) + 1);
        EXPECT_EQ(chain.front(), from);
        EXPECT_EQ(chain.back(), to);
        // Each inner point lies near the geodesic: far nearer than the rhumb
        // line's point at the same share of the way, and steps are 1/n of it.
        const auto line = g.Line(c[0], c[1], course);
        auto offGeodesic = [&](const LatLong& p) {
            auto gapAt = [&](double s) {
                double lat, lon, unused, gap;
                line.Position(s * kMileMetres, lat, lon);
                CourseDistanceGC(p, LatLong{lon * 3600, lat * 3600}, unused, gap);
                return gap;
            };
            double lo = 0, hi = distance;
            for (int k = 0; k < 100; ++k) {
                const double m1 = lo + (hi - lo) / 3, m2 = hi - (hi - lo) / 3;
                (gapAt(m1) < gapAt(m2) ? hi : lo) = (gapAt(m1) < gapAt(m2) ? m2 : m1);
            }
            return gapAt((lo + hi) / 2);
        };
        for (int i = 1; i < n; ++i) {
            const double rhumbGap = offGeodesic(DeadReckon(from, rlCourse, rlDistance * i / n));
            EXPECT_LT(offGeodesic(chain[size_t(i)]), std::max(0.4 * rhumbGap, 0.5)) << "point " << i;
            double stepCourse, step;
            CourseDistanceGC(chain[size_t(i) - 1], chain[size_t(i)], stepCourse, step);
            EXPECT_NEAR(step, distance / n, distance / n * 0.006) << "step " << i;
        }
    }
}
