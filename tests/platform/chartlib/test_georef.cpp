// Projections against PROJ, and the fitting of plans to their reference
// points: exact where the chart is exact, through every point where it is
// not, and the same after the text form is written and read back.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "core/Val.h"
#include "platform/chartlib/Georef.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

using namespace chartlib;

std::vector<std::string> Split(const std::string& line, char sep) {
    std::vector<std::string> out;
    size_t s = 0;
    while (true) {
        size_t b = line.find(sep, s);
        out.push_back(Trim(line.substr(s, b == std::string::npos ? std::string::npos : b - s)));
        if (b == std::string::npos) break;
        s = b + 1;
    }
    return out;
}

ProjectionKind KindNamed(const std::string& n) {
    if (n == "MERCATOR") return ProjectionKind::Mercator;
    if (n == "TRANSVERSE MERCATOR") return ProjectionKind::TransverseMercator;
    if (n == "LAMBERT CONFORMAL CONIC") return ProjectionKind::LambertConformalConic;
    if (n == "POLYCONIC") return ProjectionKind::Polyconic;
    return ProjectionKind::Polynomial;
}

TEST(Projection, DifferencesAgreeWithProj) {
    std::ifstream f(std::string(OMBRA_TEST_DATA) + "/charts/projection_points.txt");
    std::string line;
    int cases = 0;
    while (std::getline(f, line)) {
        if (line.empty() || line[0] == '#') continue;
        auto col = Split(line, '|');
        ASSERT_EQ(col.size(), 5u);
        SCOPED_TRACE(line);
        auto par = Split(col[1], ' ');
        std::istringstream p1(col[3]), p2(col[4]);
        double lat1, lon1, lat2, lon2;
        p1 >> lat1 >> lon1;
        p2 >> lat2 >> lon2;
        Projection pr;
        ASSERT_TRUE(pr.Init({KindNamed(col[0]), Val(par[0]), Val(par[1]), Val(par[2])}));
        double e1, n1, e2, n2;
        ASSERT_TRUE(pr.Forward(lat1, lon1, e1, n1));
        ASSERT_TRUE(pr.Forward(lat2, lon2, e2, n2));
        std::vector<std::string> argv{"gdaltransform", "-s_srs", "EPSG:4326", "-t_srs", col[2]};
        RunResult r = test::Run(argv, col[3].substr(col[3].find(' ') + 1) + " " + col[3].substr(0, col[3].find(' ')) + "\n" +
                                    col[4].substr(col[4].find(' ') + 1) + " " + col[4].substr(0, col[4].find(' ')) + "\n");
        std::istringstream out(r.out);
        double pe1, pn1, z1, pe2, pn2, z2;
        ASSERT_TRUE(out >> pe1 >> pn1 >> z1 >> pe2 >> pn2 >> z2) << r.err;
        EXPECT_NEAR(e2 - e1, pe2 - pe1, 0.002);
        EXPECT_NEAR(n2 - n1, pn2 - pn1, 0.002);
        // And back.
        double lat, lon;
        ASSERT_TRUE(pr.Reverse(e2, n2, lat, lon));
        EXPECT_NEAR(lat, lat2, 1e-9);
        EXPECT_NEAR(lon, lon2, 1e-9);
        ++cases;
    }
    EXPECT_GE(cases, 5);
}

PlanGeorefSource MercatorSource(double noise) {
    // A chart of 1000 x 800 pixels over 50°-50°20'N, 12°30'-11°50'W, its
    // reference points on the projection (plus noise).
    PlanGeorefSource s;
    s.Projection = ProjectionKind::Mercator;
    Projection pr;
    pr.Init({ProjectionKind::Mercator, -12});
    double e0, n0, e1, n1;
    pr.Forward(50.0 + 20.0 / 60, -12.5, e0, n1);
    pr.Forward(50.0, -12.0 + 10.0 / 60, e1, n0);
    int k = 0;
    for (double fx : {0.0, 0.3, 0.7, 1.0})
        for (double fy : {0.0, 0.4, 1.0}) {
            double lat, lon;
            pr.Reverse(e0 + fx * (e1 - e0), n1 - fy * (n1 - n0), lat, lon);
            ++k;
            s.Refs.push_back({fx * 999 + noise * std::sin(k * 1.3), fy * 799 + noise * std::cos(k * 2.1), lat, lon});
        }
    s.Outline = {{50.3333, -12.5}, {50.3333, -11.8333}, {50.0, -11.8333}, {50.0, -12.5}};
    return s;
}

TEST(Georef, ExactChartNeedsNoCorrectionAndRoundTrips) {
    PlanGeoref g;
    std::string why;
    ASSERT_TRUE(g.Fit(MercatorSource(0), why)) << why;
    EXPECT_EQ(g.Kind(), ProjectionKind::Mercator);
    EXPECT_FALSE(g.UsesCorrection());
    EXPECT_LT(g.MaxRefError(), 1e-6);
    // 20 minutes of latitude over 800 pixels: 40 pixels a mile.
    EXPECT_NEAR(g.PixelsPerNM(), 799.0 / 20.0, 0.2);
    for (double x = -50; x <= 1050; x += 110)
        for (double y = -50; y <= 850; y += 90) {
            double lat, lon, bx, by;
            ASSERT_TRUE(g.ToPosition(x, y, lat, lon));
            ASSERT_TRUE(g.ToPixel(lat, lon, bx, by));
            EXPECT_NEAR(bx, x, 1e-6);
            EXPECT_NEAR(by, y, 1e-6);
        }
}

TEST(Georef, NoisyPointsAreMetThroughTheCorrection) {
    PlanGeoref g;
    std::string why;
    ASSERT_TRUE(g.Fit(MercatorSource(0.45), why)) << why;
    EXPECT_TRUE(g.UsesCorrection());
    EXPECT_LT(g.MaxRefError(), 0.01);
    for (double x = 0; x <= 1000; x += 125)
        for (double y = 0; y <= 800; y += 100) {
            double lat, lon, bx, by;
            ASSERT_TRUE(g.ToPosition(x, y, lat, lon));
            ASSERT_TRUE(g.ToPixel(lat, lon, bx, by));
            EXPECT_LT(std::hypot(bx - x, by - y), 0.001);
        }
}

TEST(Georef, TextFormRoundTrips) {
    for (double noise : {0.0, 0.45}) {
        PlanGeorefSource src = MercatorSource(noise);
        src.HasShift = true;
        src.ShiftLatSeconds = -3.0;
        src.ShiftLonSeconds = 4.5;
        PlanGeoref a, b;
        std::string why;
        ASSERT_TRUE(a.Fit(src, why));
        ASSERT_TRUE(b.FromText(a.ToText(), why)) << why;
        EXPECT_EQ(b.UsesCorrection(), a.UsesCorrection());
        EXPECT_TRUE(b.HasShift());
        EXPECT_EQ(b.ShiftLatSeconds(), -3.0);
        EXPECT_EQ(b.ShiftLonSeconds(), 4.5);
        EXPECT_EQ(b.Outline(), a.Outline());
        for (auto& r : src.Refs) {
            double ax, ay, bx, by;
            ASSERT_TRUE(a.ToPixel(r.lat, r.lon, ax, ay));
            ASSERT_TRUE(b.ToPixel(r.lat, r.lon, bx, by));
            EXPECT_NEAR(ax, bx, 1e-9);
            EXPECT_NEAR(ay, by, 1e-9);
        }
    }
}

TEST(Georef, DamagedTextIsRefused) {
    PlanGeoref a;
    std::string why;
    ASSERT_TRUE(a.Fit(MercatorSource(0.45), why));
    const std::string good = a.ToText();
    struct Case {
        std::string from, to, message;
    } cases[] = {
        {"GEOREF=1", "GEOREF=2", "unknown version"},
        {"PROJECTION=MERCATOR", "PROJECTION=STEREO", "unknown projection"},
        {"AFFINE=", "AFFINE=1,2,", "affine map is damaged"},
        {"AFFINE=", "XAFFINE=", "affine map is missing"},
        {"TPSAFFINE=", "TPSAFFINE=nan,", "correction is damaged"},
        {"\nREF=", "\nREF=1,2,3", "reference point"},
        {"PLY=", "PLY=95,1\r\nPLY=", "border is damaged"},
        {"SHIFT=NONE", "SHIFT=1e9,0", "datum shift"},
        {"PARAMETERS=", "PARAMETERS=inf,", "projection parameters are damaged"},
    };
    for (const Case& c : cases) {
        std::string t = good;
        size_t at = t.find(c.from);
        ASSERT_NE(at, std::string::npos) << c.from;
        t.replace(at, c.from.size(), c.to);
        PlanGeoref b;
        EXPECT_FALSE(b.FromText(t, why)) << c.to;
        EXPECT_NE(why.find(c.message), std::string::npos) << c.to << ": " << why;
    }
    PlanGeoref b;
    EXPECT_FALSE(b.FromText("", why));
    EXPECT_FALSE(b.FromText("GEOREF=1\r\nPROJECTION=POLYNOMIAL\r\nPOLYX=1,2,3\r\n", why));
}

// Each key of the text form refuses its own damage with its own message;
// unknown keys are passed over and nothing after END is read.
TEST(Georef, TextKeysAndTheirRefusals) {
    std::string why;
    PlanGeoref projected, polynomial;
    ASSERT_TRUE(projected.Fit(MercatorSource(0.45), why)) << why;
    PlanGeorefSource ps = MercatorSource(0);
    ps.Projection = ProjectionKind::Polynomial;
    ASSERT_TRUE(polynomial.Fit(ps, why)) << why;
    ASSERT_EQ(polynomial.Kind(), ProjectionKind::Polynomial);
    const std::string texts[] = {projected.ToText(), polynomial.ToText()};
    struct Case {
        int text;  // 0 projected, 1 polynomial
        std::string from, to, message;  // message "" when the text still reads
    } cases[] = {
        {0, "LONREF=", "LONREF=400\r\nX=", "the plan's reference longitude is damaged"},
        {0, "LONREF=", "LONREF=1,2\r\nX=", "the plan's reference longitude is damaged"},
        {0, "TPSPOINT=", "TPSPOINT=1,2,3\r\nX=", "the plan's correction is damaged"},
        {0, "AFFINE=", "AFFINE=0,0,0,0,0,0\r\nX=", "the plan's affine map cannot be inverted"},
        {0, "PROJECTION=MERCATOR", "PROJECTION=mercator", "the plan names an unknown projection"},
        {0, "GEOREF=1", "GEOREF=1\r\nWHATEVER=1,2\r\nGEOREF", ""},
        {0, "SHIFT=NONE", "SHIFT=NONE\r\nEND\r\nREF=damaged", ""},
        {0, "SHIFT=NONE", "SHIFT=3,-4", ""},
        {0, "\r\n", "\n", ""},
        {1, "POLYCENTRE=", "POLYCENTRE=1\r\nX=", "the plan's polynomial centre is damaged"},
        {1, "POLYX=", "POLYX=1,2\r\nX=", "the plan's polynomial is damaged"},
        {1, "SEEDY=", "SEEDY=1,2,3,4,5,6,7,8,9,10,11\r\nX=", "the plan's polynomial is damaged"},
        {1, "SEEDX=", "XSEEDX=", "the plan's polynomial is incomplete"},
        {1, "GEOREF=1\r\n", "", "the plan has no georeferencing"},
    };
    for (const Case& c : cases) {
        std::string t = texts[c.text];
        size_t at = t.find(c.from);
        ASSERT_NE(at, std::string::npos) << c.from;
        t.replace(at, c.from.size(), c.to);
        if (c.from == "\r\n")
            for (size_t p; (p = t.find("\r\n")) != std::string::npos;) t.replace(p, 2, "\n");
        PlanGeoref g;
        why.clear();
        EXPECT_EQ(g.FromText(t, why), c.message.empty()) << c.to;
        EXPECT_EQ(why, c.message) << c.to;
    }
    std::string endless = texts[0];
    endless.insert(endless.find("END"), std::string(50000, '\n'));
    PlanGeoref g;
    EXPECT_FALSE(g.FromText(endless, why));
    EXPECT_EQ(why, "the plan's georeferencing is too long");
}

// The shift read back is the one written, whatever came before it.
TEST(Georef, LaterShiftLinesOverrideEarlierOnes) {
    PlanGeoref a, b;
    std::string why;
    ASSERT_TRUE(a.Fit(MercatorSource(0), why));
    std::string t = a.ToText();
    t.replace(t.find("SHIFT=NONE"), 10, "SHIFT=3,-4\r\nSHIFT=-1.5,2");
    ASSERT_TRUE(b.FromText(t, why)) << why;
    EXPECT_TRUE(b.HasShift());
    EXPECT_EQ(b.ShiftLatSeconds(), -1.5);
    EXPECT_EQ(b.ShiftLonSeconds(), 2.0);
}

TEST(Georef, ChartPolynomialsAreUsedWhenTheyAgreeWithTheirPoints) {
    // An unknown projection whose WPX/WPY are exact affine maps of (lon, lat).
    PlanGeorefSource s;
    s.Projection = ProjectionKind::Polynomial;
    auto px = [](double lon, double) { return 500 + (lon + 12) * 3000; };
    auto py = [](double, double lat) { return 400 - (lat - 50) * 4500; };
    for (double lat : {49.95, 50.0, 50.05})
        for (double lon : {-12.1, -12.0, -11.9}) s.Refs.push_back({px(lon, lat), py(lon, lat), lat, lon});
    s.Wpx = {500 + 12 * 3000, 3000, 0};
    s.Wpy = {400 + 50 * 4500, 0, -4500};
    PlanGeoref g;
    std::string why;
    ASSERT_TRUE(g.Fit(s, why)) << why;
    EXPECT_EQ(g.Kind(), ProjectionKind::Polynomial);
    EXPECT_LT(g.MaxRefError(), 1e-6);
    double lat, lon;
    ASSERT_TRUE(g.ToPosition(650, 175, lat, lon));
    EXPECT_NEAR(lon, -11.95, 1e-9);
    EXPECT_NEAR(lat, 50.05, 1e-9);
    // Coefficients that disagree with the points are replaced by a fit.
    s.Wpx = {0, 1, 0};
    ASSERT_TRUE(g.Fit(s, why)) << why;
    EXPECT_LT(g.MaxRefError(), 0.01);
}

TEST(Georef, UnusableSourcesSayWhy) {
    PlanGeorefSource s = MercatorSource(0);
    s.Refs.resize(2);
    PlanGeoref g;
    std::string why;
    EXPECT_FALSE(g.Fit(s, why));
    EXPECT_NE(why.find("fewer than three"), std::string::npos);
    s = MercatorSource(0);
    for (auto& r : s.Refs) r.x = r.y = 10;  // every point on one pixel
    EXPECT_FALSE(g.Fit(s, why));
    s = MercatorSource(0);
    s.Refs[0].lat = 95;
    EXPECT_FALSE(g.Fit(s, why));
    EXPECT_NE(why.find("not a position"), std::string::npos);
}

}  // namespace
}  // namespace ombra::test
