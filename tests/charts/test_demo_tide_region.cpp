// The demo tide region: ombra-cli writes the same region every time, the
// stream model and the tides module read it back, and its streams are what
// the demonstration needs: rotary at sea, racing off the bay's headlands,
// slack in the bay, none on the island.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

#include "charts/DemoChart.h"
#include "charts/DemoTideRegion.h"
#include "core/Angles.h"
#include "core/ErrorReport.h"
#include "instruments/DemoPassage.h"
#include "platform/api/DateTime.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/platform/tidestream/TideRigs.h"
#include "tests/support/TestSupport.h"
#include "tides/Tides.h"

namespace ombra::test {
namespace {

// A position `north` and `east` nautical miles from `from`, or with `out`,
// that many miles further from the island's centre.
LatLong Offset(const LatLong& from, double north, double east) {
    return {from.Long + east * 60.0 / std::cos(from.Lat / 3600.0 * kDegToRad), from.Lat + north * 60.0};
}
LatLong Seaward(const LatLong& p, double out) {
    const LatLong c = DemoChart::IslandCentre();
    const double n = (p.Lat - c.Lat) / 60.0, e = (p.Long - c.Long) / 60.0 * std::cos(c.Lat / 3600.0 * kDegToRad);
    return Offset(p, n / std::hypot(n, e) * out, e / std::hypot(n, e) * out);
}

class DemoTideRegionTest : public ::testing::Test {
protected:
    void SetUp() override {
        const RunResult run = test::Run({CliPath(), "tide", "make-demo", "--out", dir / "Region01"});
        ASSERT_EQ(run.exitCode, 0) << run.err;
        ASSERT_EQ(rig.Path(dir.path() + "/"), 0);
        ASSERT_EQ(rig.Select("Region01"), 0) << rig.stream.LastError();
    }
    // Every half hour through one semi-diurnal cycle of the demo passage's day.
    std::vector<Prediction> Cycle(const LatLong& p) {
        std::vector<Prediction> out;
        for (int step = 0; step < 25; ++step)
            out.push_back(rig.At(p.Lat / 3600.0, p.Long / 3600.0, 2026, 11, 23, 10 + step / 2, step % 2 * 30));
        return out;
    }
    int32_t Peak(const LatLong& p) {
        int32_t peak = 0;
        for (const Prediction& q : Cycle(p)) peak = std::max(peak, q.result == 0 ? q.speed : 0);
        return peak;
    }
    TempDir dir;
    StreamRig rig;
};

TEST_F(DemoTideRegionTest, SameBytesEveryTimeAndWhatTheGeneratorMakes) {
    ASSERT_EQ(test::Run({CliPath(), "tide", "make-demo", "--out", dir / "Again"}).exitCode, 0);
    const std::string hdr = ReadFile(dir / "Region01.Hdr"), hrm = ReadFile(dir / "Region01.Hrm");
    EXPECT_EQ(hdr, ReadFile(dir / "Again.Hdr"));
    EXPECT_EQ(hrm, ReadFile(dir / "Again.Hrm"));
    EXPECT_EQ(hdr, tide::HeaderText(DemoTideRegion()));
    EXPECT_EQ(hrm, tide::HarmonicsBytes(DemoTideRegion()));
    EXPECT_EQ(test::Run({CliPath(), "tide", "make-demo"}).exitCode, 2);
}

TEST_F(DemoTideRegionTest, StreamsTurnAtSeaRaceOffTheHeadlandsSlackenInTheBayNoneAshore) {
    const LatLong c = DemoChart::IslandCentre();
    LatLong east, south;
    DemoChart::BayHeadlands(east, south);
    const LatLong raceEast = Seaward(east, 0.35), raceSouth = Seaward(south, 0.35);
    for (const LatLong& sea : {Offset(c, 4, 0), Offset(c, 0, -4), DemoPassagePosition(0), raceEast, raceSouth,
                               LatLong{(-11 - 41 / 60.0) * 3600, (49 + 51 / 60.0) * 3600}}) {
        SCOPED_TRACE(testing::Message() << sea.Lat << " " << sea.Long);
        ASSERT_GE(DemoChart::DepthAt(sea), 0);
        std::set<int> quadrants;
        for (const Prediction& p : Cycle(sea)) {
            ASSERT_EQ(p.result, 0);
            EXPECT_GT(p.speed, 20);  // never slack: the stream turns rather than stops
            quadrants.insert(p.dir / 900);
        }
        EXPECT_EQ(quadrants.size(), 4u);
    }
    const int32_t bay = Peak(DemoChart::HarbourEntrance()), open = Peak(Offset(c, 4, 0));
    ASSERT_GT(bay, 0);
    for (const LatLong& race : {raceEast, raceSouth}) {
        EXPECT_GT(Peak(race), 3 * bay);
        EXPECT_GT(Peak(race), open);
    }
    for (const LatLong& ashore : {c, Offset(c, 0.5, 0), Offset(c, 0, -0.7)}) {
        ASSERT_LT(DemoChart::DepthAt(ashore), 0);
        EXPECT_EQ(rig.At(ashore.Lat / 3600.0, ashore.Long / 3600.0, 2026, 11, 23, 12, 0).result, kTideNoWater);
    }
}

// The demo set-up puts the region where the plotter's tides module looks at
// start-up, the home's "Dat" folder, in a new home and in an older one.
TEST(DemoTideRegion, DemoSetUpInstallsItWhereTheTidesModuleLooks) {
    TempDir home;
    for (const char* when : {"a new home", "an older home without it"}) {
        SCOPED_TRACE(when);
        std::remove((home / "Dat/Region01.Hdr").c_str());
        const RunResult run = test::Run({"bash", SourcePath("tools/demo-setup.sh"), CliPath(), home.path()});
        ASSERT_EQ(run.exitCode, 0) << run.err;

        ScriptedDialogs dialogs;
        ErrorReporter errors(dialogs, "Ombra");
        HarmonicTideStream stream;
        Tides tides(stream, errors);
        tides.SetDataPath(home / "Dat/");
        tides.ListTideRegions();
        ASSERT_EQ(tides.TideRegionCount(), 1);
        EXPECT_EQ(tides.TideRegions()[1].Name, "Region01");
        EXPECT_TRUE(dialogs.asked.empty());

        const LatLong c = DemoChart::IslandCentre(), sea = DemoPassagePosition(0);
        EXPECT_EQ(tides.FindTideRegion(sea), 1);
        EXPECT_EQ(tides.FindTideRegion(Offset(c, 11, 0)), 0);  // north of the chart
        tides.TideTime = ombra::DateTime{2026, 11, 23, 10, 30, 0}.Serial();
        float drift = 0, set = 0;
        ASSERT_TRUE(tides.GetTide(sea, drift, set));
        EXPECT_GT(drift, 0.1f);
        EXPECT_FALSE(tides.GetTide(c, drift, set));
    }
}

}  // namespace
}  // namespace ombra::test
