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
#include <sstream>

#include "core/Fault.h"
#include "navmath/RLGC.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

constexpr double kMileMetres = 1852.0;
constexpr double kMillimetreInMiles = 0.001 / kMileMetres;

struct Leg {
    double lat1, lon1, lat2, lon2;
    std::string what;
    LatLong From() const { return {lon1 * 3600.0, lat1 * 3600.0}; }
    LatLong To() const { return {lon2 * 3600.0, lat2 * 3600.0}; }
    bool Identical() const { return lat1 == lat2 && std::fmod(lon1 - lon2, 360.0) == 0.0; }
};

std::vector<Leg> ReadLegs() {
    std::vector<Leg> legs;
    std::istringstream in(test::ReadFile(test::SourcePath("tests/data/navmath/course_cases.txt")));
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream ls(line);
        Leg l;
        ls >> l.lat1 >> l.lon1 >> l.lat2 >> l.lon2;
        std::getline(ls, l.what);
        legs.push_back(l);
    }
    return legs;
}

std::string SolverInput(const std::vector<Leg>& legs) {
    std::ostringstream s;
    s.precision(17);
    for (const auto& l : legs) s << l.lat1 << " " << l.lon1 << " " << l.lat2 << " " << l.lon2 << "\n";
    return s.str();
}

// Each output line of a solver as numbers.
std::vector<std::vector<double>> SolverRows(const std::string& out) {
    std::vector<std::vector<double>> rows;
    for (const auto& line : test::SplitLines(out)) {
        std::istringstream ls(line);
        std::vector<double> row;
        double v;
        while (ls >> v) row.push_back(v);
        rows.push_back(row);
    }
    return rows;
}

double CourseOf(double azimuth) { return azimuth < 0 ? azimuth + 360.0 : azimuth; }

// The angle from a to b the short way round, in degrees.
double AngleGap(double a, double b) {
    double d = std::fabs(a - b);
    return std::min(d, 360.0 - d);
}

}  // namespace

TEST(CourseDistance, AgreesWithGeographicLibSolvers) {
    const auto legs = ReadLegs();
    ASSERT_GE(legs.size(), 20u);
    auto rhumb = test::Run({"RhumbSolve", "-i", "-p", "9"}, SolverInput(legs));
    auto geod = test::Run({"GeodSolve", "-i", "-p", "9"}, SolverInput(legs));
    ASSERT_EQ(rhumb.exitCode, 0) << "RhumbSolve (geographiclib-tools) must be installed: " << rhumb.err;
    ASSERT_EQ(geod.exitCode, 0) << "GeodSolve (geographiclib-tools) must be installed: " << geod.err;
    const auto rl = SolverRows(rhumb.out), gc = SolverRows(geod.out);
    ASSERT_EQ(rl.size(), legs.size());
    ASSERT_EQ(gc.size(), legs.size());

    for (size_t i = 0; i < legs.size(); ++i) {
        const Leg& l = legs[i];
        SCOPED_TRACE(l.what);
        double c = -1, d = -1;
        CourseDistanceRL(l.From(), l.To(), c, d);
        EXPECT_NEAR(d, rl[i][1] / kMileMetres, kMillimetreInMiles);
        EXPECT_GE(c, 0.0);
        EXPECT_LT(c, 360.0);
        if (l.Identical()) {
            EXPECT_EQ(c, 0.0);
            EXPECT_EQ(d, 0.0);
        } else {
            EXPECT_LT(AngleGap(c, CourseOf(rl[i][0])), 1e-9);
        }

        CourseDistanceGC(l.From(), l.To(), c, d);
        EXPECT_NEAR(d, gc[i][2] / kMileMetres, kMillimetreInMiles);
        EXPECT_GE(c, 0.0);
        EXPECT_LT(c, 360.0);
        if (l.Identical()) {
            EXPECT_EQ(c, 0.0);  // the solver says 180 for a leg of no length; a plotter says 000
            EXPECT_EQ(d, 0.0);
        } else {
            EXPECT_LT(AngleGap(c, CourseOf(gc[i][0])), 1e-9);
        }
    }
}

TEST(CourseDistance, FlagChoosesTheKindOfLeg) {
    const LatLong a{-70.0 * 3600, 40.0 * 3600}, b{0.0, 51.0 * 3600};
    double c0, d0, c1, d1, cr, dr, cg, dg;
    CourseDistance(0, a, b, c0, d0);
    CourseDistance(-1, a, b, c1, d1);
    CourseDistanceRL(a, b, cr, dr);
    CourseDistanceGC(a, b, cg, dg);
    EXPECT_EQ(c0, cr);
    EXPECT_EQ(d0, dr);
    EXPECT_EQ(c1, cg);
    EXPECT_EQ(d1, dg);
    EXPECT_GT(d0, d1);  // the great circle is the shorter way
}

TEST(CourseDistance, PositionsPastAPoleAreTakenAtThePole) {
    // Dead reckoning over the top leaves a latitude above 90; measuring from
    // it must still give numbers, the same as from the pole itself.
    const LatLong beyond{0.0, 90.5 * 3600}, pole{0.0, 90.0 * 3600}, to{10.0 * 3600, 80.0 * 3600};
    double c1, d1, c2, d2;
    CourseDistanceRL(beyond, to, c1, d1);
    CourseDistanceRL(pole, to, c2, d2);
    EXPECT_FALSE(std::isnan(c1));
    EXPECT_DOUBLE_EQ(d1, d2);
    CourseDistanceGC(beyond, to, c1, d1);
    CourseDistanceGC(pole, to, c2, d2);
    EXPECT_DOUBLE_EQ(d1, d2);
}

// Dead reckoning: cases a navigator works by hand on the traverse table,
// where a minute of arc is a mile. Positions in degrees.
TEST(DeadReckon, KnownRuns) {
    struct Case {
        double lat, lon, course, distance, scale, wantLat, wantLon;
        const char* what;
    } cases[] = {
        {0, 10, 90, 60, 3600, 0, 11, "east along the equator: 60 miles is a degree"},
        {0, 0, 0, 60, 3600, 1, 0, "north along the meridian"},
        {10, 0, 180, 600, 3600, 0, 0, "south to the equator"},
        {60, 0, 90, 60, 3600, 60, 2, "east at 60N: a degree of longitude is 30 miles"},
        {0, 0, 270, 90, 3600, 0, -1.5, "west"},
        {50, -5, 0, 6, 600, 50 + 1.0 / 60, -5, "6 knots for 10 minutes is a mile"},
        {89.5, 0, 0, 60, 3600, 90.5, 0, "latitude is not limited at the pole"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        LatLong p;
        DeadReckon(p, LatLong{c.lon * 3600, c.lat * 3600}, c.course, c.distance, c.scale);
        EXPECT_NEAR(p.Lat / 3600, c.wantLat, 1e-9);
        EXPECT_NEAR(p.Long / 3600, c.wantLon, 1e-9);
    }
}

TEST(DeadReckon, LongitudeWrapsOnceAtTheAntimeridian) {
    struct Case {
        double fromLonSeconds, course, distance, wantLonSeconds;
        const char* what;
    } cases[] = {
        {644400, 90, 60, 648000, "landing on 180E exactly stays +648,000"},
        {-644400, 270, 60, -648000, "landing on 180W exactly stays -648,000"},
        {644400, 90, 61, 648060 - 1296000, "past 180E becomes west"},
        {-646200, 270, 60, -649800 + 1296000, "past 180W becomes east"},
        {0, 90, 60, 3600, "nothing to wrap"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        LatLong p;
        DeadReckon(p, LatLong{c.fromLonSeconds, 0.0}, c.course, c.distance, 3600.0);
        EXPECT_NEAR(p.Long, c.wantLonSeconds, 1e-7);
        EXPECT_EQ(p.Long > 0, c.wantLonSeconds > 0);
    }
}

TEST(DeadReckon, ShortRunsFollowTheRhumbLine) {
    // Mid-latitude sailing on a minute-a-mile sphere against the ellipsoidal
    // rhumb line: within the half percent the sphere costs, on every course.
    for (double lat : {-70.0, -30.0, 0.0, 45.0, 65.0}) {
        for (double course = 5; course < 360; course += 40) {
            SCOPED_TRACE(testing::Message() << "lat " << lat << " course " << course);
            const LatLong from{20.0 * 3600, lat * 3600};
            LatLong to;
            DeadReckon(to, from, course, 20.0, 3600.0);
            double c, d;
            CourseDistanceRL(from, to, c, d);
            EXPECT_NEAR(d, 20.0, 20.0 * 0.006);
            EXPECT_LT(AngleGap(c, course), 0.25);
        }
    }
}

TEST(GeodesicDirect, MatchesGeographicLibAtRadarRanges) {
    const auto& g = GeographicLib::Geodesic::WGS84();
    for (double lat : {-75.0, -45.0, -10.0, 0.0, 30.0, 52.0, 80.0}) {
        for (float bearing = 0; bearing < 360; bearing += 37.5f) {
            for (float range : {0.0f, 50.0f, 1852.0f, 11112.0f, 44448.0f}) {
                SCOPED_TRACE(testing::Message() << lat << " " << bearing << " " << range);
                const float az = float(bearing * kDegToRad);
                const LatLong from{-4.0 * kDegToRad, lat * kDegToRad};
                LatLong to;
                GeodesicDirect(from, range, az, to);
                double lat2, lon2;
                g.Direct(lat, -4.0, double(az) * kRadToDeg, double(range), lat2, lon2);
                // Metres of error along and across the meridian.
                const double north = (to.Lat * kRadToDeg - lat2) * 111000.0;
                const double east = (to.Long * kRadToDeg - lon2) * 111000.0 * std::cos(lat * kDegToRad);
                EXPECT_LT(std::hypot(north, east), 0.001 + range * 1e-7);
            }
        }
    }
}

TEST(GeodesicDirect, HelpersAndTheirGuard) {
    EXPECT_DOUBLE_EQ(ArcSine(0.5), M_PI / 6);
    EXPECT_DOUBLE_EQ(ArcSine(-1.0), -M_PI / 2);
    EXPECT_DOUBLE_EQ(ArcSine(1.0), M_PI / 2);
    EXPECT_DOUBLE_EQ(PrimeVerticalRadius(6378137.0, 0.0066943799901413165, 0.0), 6378137.0);
    EXPECT_NEAR(PrimeVerticalRadius(6378137.0, 0.0066943799901413165, 1.0), 6399593.6258, 1e-3);
    EXPECT_EQ(PrimeVerticalRadius(6378137.0, 2.0, 1.0), 0.0);  // negative under the root: empty
}

TEST(AngleConversion, CompassAndMathematicalDegrees) {
    struct Case {
        double compass, math;
    } cases[] = {{0, 90}, {90, 0}, {180, 270}, {270, 180}, {45, 45}, {30, 60}, {135, 315},
                 {225, 225}, {315, 135}, {359, 91}, {1, 89}, {200, 250}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.compass);
        const bool quadrant = std::fmod(c.compass, 90.0) == 0.0;
        if (quadrant) {
            EXPECT_EQ(CompassToMath(c.compass), c.math);
            EXPECT_EQ(MathToCompass(c.math), c.compass);
        } else {
            EXPECT_NEAR(CompassToMath(c.compass), c.math, 1e-10);
            EXPECT_NEAR(MathToCompass(c.math), c.compass, 1e-10);
        }
        const double back = MathToCompass(CompassToMath(c.compass));
        EXPECT_LT(AngleGap(back, c.compass), 1e-10);
        EXPECT_GE(CompassToMath(c.compass), 0.0);
        EXPECT_LT(CompassToMath(c.compass), 360.0);
    }
}

TEST(GreatCircleSplit, SegmentCountRoundsTiesToEvenAndStopsAtTen) {
    struct Case {
        double miles;
        int pieces;
    } cases[] = {{0, 1},     {29.9, 1},  {30, 1},    {30.1, 2},  {89.9, 2},  {90, 3},   {150, 3},
                 {210, 5},   {480, 9},   {510, 9},   {540, 10},  {2000, 10}, {1e6, 10}, {NAN, 10}};
    for (const auto& c : cases) EXPECT_EQ(GreatCircleSegments(c.miles), c.pieces) << c.miles;
}

TEST(GreatCircleSplit, ChainFollowsTheGeodesic) {
    struct Case {
        double lat1, lon1, lat2, lon2;
    } cases[] = {{50, -10, 40, -60}, {-34, 18, -33, 151}, {60, 170, 55, -130}, {10, 0, 10.2, 0.3}, {0, 0, 0, 0.5}};
    const auto& g = GeographicLib::Geodesic::WGS84();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.lat1 << " " << c.lon1 << " -> " << c.lat2 << " " << c.lon2);
        const LatLong from{c.lon1 * 3600, c.lat1 * 3600}, to{c.lon2 * 3600, c.lat2 * 3600};
        double course, distance;
        CourseDistanceGC(from, to, course, distance);
        const auto chain = GreatCircleChain(from, to);
        const int n = GreatCircleSegments(distance);
        ASSERT_EQ(chain.size(), size_t(n) + 1);
        EXPECT_EQ(chain.front(), from);
        EXPECT_EQ(chain.back(), to);
        // Each inner point lies near the geodesic: far nearer than the rhumb
        // line's point at the same share of the way (the chain is made of
        // rhumb steps of up to a tenth of the leg, so it strays a little).
        // Steps are 1/n of the leg.
        double rlCourse, rlDistance;
        CourseDistanceRL(from, to, rlCourse, rlDistance);
        const auto line = g.Line(c.lat1, c.lon1, course);
        auto offGeodesic = [&](const LatLong& p) {
            auto gapAt = [&](double s) {
                double lat, lon, unusedCourse, gap;
                line.Position(s * kMileMetres, lat, lon);
                CourseDistanceGC(p, LatLong{lon * 3600, lat * 3600}, unusedCourse, gap);
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
            const double gap = offGeodesic(chain[size_t(i)]);
            const double rhumbGap = offGeodesic(DeadReckon(from, rlCourse, rlDistance * i / n));
            EXPECT_LT(gap, std::max(0.4 * rhumbGap, 0.5)) << "point " << i << ", the rhumb line strays " << rhumbGap;
            double stepCourse, step;
            CourseDistanceGC(chain[size_t(i) - 1], chain[size_t(i)], stepCourse, step);
            EXPECT_NEAR(step, distance / n, distance / n * 0.006) << "step " << i;
        }
    }
}

TEST(GreatCircleSplit, HighLatitudeChainBowsPolewardOfTheRhumbLine) {
    // 50N 10W to 40N 60W: the great circle runs north of the rhumb line.
    const LatLong from{-10.0 * 3600, 50.0 * 3600}, to{-60.0 * 3600, 40.0 * 3600};
    const auto chain = GreatCircleChain(from, to);
    ASSERT_EQ(chain.size(), 11u);
    double rlCourse, rlDistance;
    CourseDistanceRL(from, to, rlCourse, rlDistance);
    for (size_t i = 1; i + 1 < chain.size(); ++i) {
        // The rhumb line's latitude at this point's longitude, by walking it.
        double lo = 0, hi = rlDistance;
        for (int k = 0; k < 60; ++k) {
            double mid = (lo + hi) / 2;
            LatLong p = DeadReckon(from, rlCourse, mid);
            (p.Long > chain[i].Long ? lo : hi) = mid;
        }
        const LatLong onRhumb = DeadReckon(from, rlCourse, lo);
        EXPECT_GT(chain[i].Lat, onRhumb.Lat + 60.0) << "point " << i;
    }
}

TEST(GreatCircleSplit, EqualEndsMakeNoChain) {
    const LatLong p{3600.0, 3600.0};
    EXPECT_TRUE(GreatCircleChain(p, p).empty());
    EXPECT_TRUE(GreatCircleChain(p, p, 0.0, 0.0).empty());
}
