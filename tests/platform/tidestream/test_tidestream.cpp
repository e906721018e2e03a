// Predictions through the service's four operations, on regions the tests
// write: against a second predictor built from XTide's own astronomy, the
// interpolation between nodes and stations, the region's clock, and every
// way a prediction is refused.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "platform/tidestream/TideAstronomy.h"
#include "tests/platform/tidestream/TideRigs.h"

namespace ombra::test {
namespace {

constexpr double kRad = 3.14159265358979323846 / 180.0;

struct Rig : StreamRig {
    TempDir dir;
    void Save(const tide::RegionData& r, const std::string& base = "Region01") {
        std::string err;
        ASSERT_TRUE(tide::SaveRegion(r, dir.path(), base, &err)) << err;
        Path(dir.path() + "/");
    }
};

TEST(TideStream, PredictionsAgreeWithASecondPredictorOnXtideAstronomy) {
    const auto xt = XtideAstronomy();
    const struct {
        const char* name;
        double speed;                 // XTide's speed, degrees an hour
        tide::NodeHarmonic h;         // m/s and degrees
    } cons[] = {
        {"M2", 28.9841042, {1.2f, 40, 0.6f, 130}}, {"S2", 30.0, {0.4f, 80, 0.2f, 170}},
        {"N2", 28.4397295, {0.25f, 20, 0.1f, 110}}, {"K1", 15.0410686, {0.1f, 200, 0.05f, 290}},
        {"O1", 13.9430356, {0.08f, 180, 0.04f, 270}}, {"M4", 57.9682084, {0.05f, 300, 0.02f, 30}},
    };
    std::vector<std::string> names;
    std::vector<tide::NodeHarmonic> hs;
    for (const auto& c : cons) {
        names.push_back(c.name);
        hs.push_back(c.h);
    }
    Rig rig;
    rig.Save(UniformGrid(names, hs));
    ASSERT_EQ(rig.Select("Region01"), 0) << rig.stream.LastError();
    const struct {
        int y, mo, d, h, mi;
    } times[] = {{2020, 1, 1, 0, 0},  {2021, 3, 14, 6, 25}, {2024, 2, 29, 12, 0},
                 {2026, 7, 4, 18, 45}, {2031, 11, 30, 23, 59}, {2035, 6, 15, 3, 10}};
    for (const auto& t : times) {
        const double hours = (tide::DaysFromJ2000(t.y, t.mo, t.d, t.h, t.mi, 0) -
                              tide::DaysFromJ2000(t.y, 1, 1, 0, 0, 0)) * 24.0;
        double east = 0, north = 0;
        for (const auto& c : cons) {
            const XtideYear ref = xt.at({c.name, t.y});
            const double arg = ref.v0u + c.speed * hours;
            east += ref.f * c.h.eastAmp * std::cos((arg - c.h.eastPhase) * kRad);
            north += ref.f * c.h.northAmp * std::cos((arg - c.h.northPhase) * kRad);
        }
        const Prediction p = rig.At(50.3, -1.7, t.y, t.mo, t.d, t.h, t.mi);
        ASSERT_EQ(p.result, 0);
        EXPECT_NEAR(p.east, east * 1000, 5) << t.y << "-" << t.mo << "-" << t.d;
        EXPECT_NEAR(p.north, north * 1000, 5) << t.y << "-" << t.mo << "-" << t.d;
    }
}

TEST(TideStream, RotaryStreamKeepsItsSpeedAndTurnsThroughEveryQuadrant) {
    // East cos(x - 0), north cos(x - 90): a circle of radius f * 1 m/s.
    Rig rig;
    rig.Save(UniformGrid({"M2"}, {{1.0f, 0, 1.0f, 90}}));
    ASSERT_EQ(rig.Select("Region01"), 0);
    const double f = XtideAstronomy().at({"M2", 2027}).f;
    bool quadrant[4] = {};
    for (int minute = 0; minute < 750; minute += 15) {
        const Prediction p = rig.At(50.5, -1.5, 2027, 5, 1, minute / 60, minute % 60);
        ASSERT_EQ(p.result, 0);
        EXPECT_NEAR(p.speed, f * 1000, 1.5) << minute;
        EXPECT_NEAR(std::hypot(p.east, p.north), p.speed, 1.0);
        ASSERT_GE(p.dir, 0);
        ASSERT_LT(p.dir, 3600);
        const double dir = std::atan2(p.east, p.north) / kRad;
        EXPECT_NEAR(std::remainder(p.dir / 10.0 - dir, 360.0), 0, 0.15) << minute;
        quadrant[p.dir / 900] = true;
    }
    for (bool q : quadrant) EXPECT_TRUE(q);
}

TEST(TideStream, GridInterpolatesBilinearlyAndMasksLand) {
    // Amplitude grows with the column; the middle node of a 3x3 grid is land.
    auto r = UniformGrid({"M2"}, {{0, 0, 0, 0}});
    for (int n = 0; n < 9; ++n) r.harmonics[size_t(n)] = {0.5f * float(n % 3 + 1), 30, 0.2f * float(n / 3 + 1), 30};
    r.sea[4] = 0;
    Rig rig;
    rig.Save(r);
    ASSERT_EQ(rig.Select("Region01"), 0);
    // Cells are half a degree square; node (row, col) at 50 + row/2, -2 + col/2.
    auto at = [&](double row, double col) { return rig.At(50 + row / 2, -2 + col / 2, 2025, 9, 1, 10, 0); };
    const Prediction n00 = at(0, 0), n01 = at(0, 1), n10 = at(1, 0), n02 = at(0, 2);
    const struct {
        double row, col;
        int result;
        double w00, w01, w10;  // expected weights of three water nodes (renormalised)
    } cases[] = {
        {0, 0, 0, 1, 0, 0},
        {0, 0.5, 0, 0.5, 0.5, 0},
        {0.25, 0, 0, 0.75, 0, 0.25},
        {0.25, 0.25, 0, 0.5625 / 0.9375, 0.1875 / 0.9375, 0.1875 / 0.9375},  // land weight dropped
        {0.8, 0.8, 4, 0, 0, 0},    // mostly land: no stream
        {1, 1, 4, 0, 0, 0},        // on the land node
    };
    for (const auto& c : cases) {
        const Prediction p = at(c.row, c.col);
        EXPECT_EQ(p.result, c.result) << c.row << "," << c.col;
        if (c.result != 0) continue;
        EXPECT_NEAR(p.east, c.w00 * n00.east + c.w01 * n01.east + c.w10 * n10.east, 1.5) << c.row << "," << c.col;
        EXPECT_NEAR(p.north, c.w00 * n00.north + c.w01 * n01.north + c.w10 * n10.north, 1.5) << c.row << "," << c.col;
    }
    EXPECT_NEAR(n02.east, 3 * n00.east, 1.5);  // the far column, inclusive edge
}

TEST(TideStream, StationsAnswerWithinTheirRadiusOnly) {
    tide::RegionData r;
    r.name = "Stations";
    r.south = 50;
    r.west = -2;
    r.north = 51;
    r.east = -1;
    r.constituents = {"M2"};
    r.layout = tide::Layout::Stations;
    r.radiusNm = 5;
    // A runs east, B (2 miles north of A) runs north, in phase; C is flagged dry.
    r.stations = {{50.5, -1.5, "A"}, {50.5 + 2.0 / 60, -1.5, "B"}, {50.9, -1.1, "C"}};
    r.sea = {1, 1, 0};
    r.harmonics = {{1, 0, 0, 0}, {0, 0, 1, 0}, {1, 0, 1, 0}};
    Rig rig;
    rig.Save(r);
    ASSERT_EQ(rig.Select("Region01"), 0);
    const Prediction a = rig.At(50.5, -1.5, 2030, 1, 10, 4, 0);
    ASSERT_EQ(a.result, 0);
    EXPECT_EQ(a.north, 0);
    EXPECT_EQ(a.nodes, 1);
    const Prediction mid = rig.At(50.5 + 1.0 / 60, -1.5, 2030, 1, 10, 4, 0);
    ASSERT_EQ(mid.result, 0);
    EXPECT_EQ(mid.nodes, 2);
    EXPECT_NEAR(mid.east, a.east / 2.0, 1);
    EXPECT_NEAR(mid.north, a.east / 2.0, 1);
    const Prediction nearB = rig.At(50.5 + 1.5 / 60, -1.5, 2030, 1, 10, 4, 0);  // 1.5 from A, 0.5 from B
    EXPECT_NEAR(nearB.north / double(nearB.east), 9.0, 0.2);
    EXPECT_EQ(rig.At(50.9, -1.1, 2030, 1, 10, 4, 0).result, 4);  // only the dry station is near
    EXPECT_EQ(rig.At(50.5 + 7.5 / 60, -1.5, 2030, 1, 10, 4, 0).result, 4);  // 5.5 miles from B
}

TEST(TideStream, HarmonicsReferredToAnotherClockShiftThePrediction) {
    auto utc = UniformGrid({"M2", "K1"}, {{1, 10, 0.5f, 100}, {0.3f, 50, 0.2f, 140}});
    auto plusOne = utc;
    plusOne.timeOffsetMinutes = 60;
    Rig rig;
    rig.Save(utc, "Region01");
    rig.Save(plusOne, "Region02");
    for (int hour = 1; hour < 24; hour += 5) {
        ASSERT_EQ(rig.Select("Region01"), 0);
        const Prediction a = rig.At(50.5, -1.5, 2028, 8, 8, hour - 1, 20);
        ASSERT_EQ(rig.Select("Region02"), 0);
        const Prediction b = rig.At(50.5, -1.5, 2028, 8, 8, hour, 20);
        EXPECT_EQ(a.east, b.east) << hour;
        EXPECT_EQ(a.north, b.north) << hour;
        EXPECT_NE(rig.At(50.5, -1.5, 2028, 8, 8, hour - 1, 20).east, a.east) << "the offset must matter";
    }
}

TEST(TideStream, RefusalsAndTheBoxGiveResultsOfOneOrMore) {
    Rig rig;
    rig.Save(UniformGrid({"M2"}, {{1, 0, 1, 90}}));
    int32_t e, w, n, s;
    EXPECT_EQ(rig.Select(""), 1);  // nothing selected at all
    EXPECT_EQ(rig.stream.WrapperModelDomain(e, w, n, s), 1);
    const struct {
        const char* hdr;
        const char* hrm;
        const char* reason;
    } names[] = {
        {"", "", "no tide region"},
        {".Hdr", ".Hrm", "no tide region"},
        {"../Region01.Hdr", "Region01.Hrm", "no tide region"},
        {"Region09.Hdr", "Region09.Hrm", "cannot open"},
        {"Region01.Hdr", "Region09.Hrm", "cannot open"},
    };
    for (const auto& c : names) {
        EXPECT_EQ(rig.Select(c.hdr, c.hrm), 1) << c.hdr;
        EXPECT_NE(rig.stream.LastError().find(c.reason), std::string::npos) << rig.stream.LastError();
        const Prediction p = rig.At(50.5, -1.5, 2025, 1, 1, 0, 0);
        EXPECT_EQ(p.result, 1) << c.hdr;
        EXPECT_EQ(p.speed + p.dir + p.east + p.north, 0);
    }
    ASSERT_EQ(rig.Select("region01.hdr", "REGION01.HRM"), 0) << "names are found whatever their case";
    EXPECT_TRUE(rig.stream.LastError().empty());
    EXPECT_EQ(rig.stream.WrapperModelDomain(e, w, n, s), 0);
    EXPECT_EQ(std::vector<int32_t>({e, w, n, s}), std::vector<int32_t>({-10000000, -20000000, 510000000, 500000000}));
    const struct {
        double lat, lon;
        int y, mo, d, h, mi, sec;
        int result;
    } cases[] = {
        {50, -2, 2025, 1, 1, 0, 0, 0, 0},       {51, -1, 2025, 1, 1, 0, 0, 0, 0},  // edges inclusive
        {49.9999999, -1.5, 2025, 1, 1, 0, 0, 0, 3}, {50.5, -0.9999999, 2025, 1, 1, 0, 0, 0, 3},
        {50.5, -1.5, 2024, 2, 29, 12, 0, 0, 0}, {50.5, -1.5, 2023, 2, 29, 12, 0, 0, 2},
        {50.5, -1.5, 2025, 13, 1, 0, 0, 0, 2},  {50.5, -1.5, 2025, 0, 1, 0, 0, 0, 2},
        {50.5, -1.5, 2025, 4, 31, 0, 0, 0, 2},  {50.5, -1.5, 2025, 1, 1, 24, 0, 0, 2},
        {50.5, -1.5, 2025, 1, 1, 23, 60, 0, 2}, {50.5, -1.5, 2025, 1, 1, 23, 59, 60, 2},
        {50.5, -1.5, 1000, 1, 1, 0, 0, 0, 2},   {50.5, -1.5, 2025, 1, 1, -1, 0, 0, 2},
    };
    for (const auto& c : cases)
        EXPECT_EQ(rig.At(c.lat, c.lon, c.y, c.mo, c.d, c.h, c.mi, c.sec).result, c.result)
            << c.lat << " " << c.lon << " " << c.y << "-" << c.mo << "-" << c.d << " " << c.h << ":" << c.mi << ":" << c.sec;
}

TEST(TideStream, RegionsAreReadOnceAndRefusedRegionsNeverPredict) {
    Rig rig;
    rig.Save(UniformGrid({"M2"}, {{1, 0, 1, 90}}));
    ASSERT_EQ(rig.Select("Region01"), 0);
    const Prediction before = rig.At(50.5, -1.5, 2025, 3, 3, 3, 3);
    std::remove((rig.dir / "Region01.Hdr").c_str());
    std::remove((rig.dir / "Region01.Hrm").c_str());
    ASSERT_EQ(rig.Select("Region02"), 1);
    ASSERT_EQ(rig.Select("Region01"), 0) << "kept after the first read";
    EXPECT_EQ(rig.At(50.5, -1.5, 2025, 3, 3, 3, 3).east, before.east);
    // Declaring the folder again reads afresh: now a truncated pair.
    const std::string hrm = tide::HarmonicsBytes(UniformGrid({"M2"}, {{1, 0, 1, 90}}));
    WriteFile(rig.dir / "Region01.Hdr", tide::HeaderText(UniformGrid({"M2"}, {{1, 0, 1, 90}})));
    WriteFile(rig.dir / "Region01.Hrm", hrm.substr(0, hrm.size() - 7));
    rig.Path(rig.dir.path());
    EXPECT_EQ(rig.Select("Region01"), 1);
    EXPECT_NE(rig.stream.LastError().find("truncated"), std::string::npos) << rig.stream.LastError();
    EXPECT_EQ(rig.At(50.5, -1.5, 2025, 3, 3, 3, 3).result, 1);
}

}  // namespace
}  // namespace ombra::test
