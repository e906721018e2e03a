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
#include "core/ErrorReport.h"
#include "platform/api/DateTime.h"
#include "instruments/DemoPassage.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/platform/tidestream/TideRigs.h"
#include "tests/support/TestSupport.h"
#include "tides/Tides.h"

namespace ombra::test {
namespace {

// A position `north` and `east` nautical miles from `from`.
LatLong Offset(const LatLong& from, double north, double east) {
    return {from.Long + east * 60.0 / std::cos(from.Lat / 3600.0 * 0.017453292519943295), from.Lat + north * 60.0};
}
// A position `miles` further out from the island's centre than `p`.
LatLong Seaward(const LatLong& p, double miles) {
    const LatLong c = DemoChart::IslandCentre();
    const double n = (p.Lat - c.Lat) / 60.0, e = (p.Long - c.Long) / 60.0 * std::cos(c.Lat / 3600.0 * 0.017453292519943295);
    const double r = std::hypot(n, e);
    return Offset(p, n / r * miles, e / r * miles);
}

class DemoTideRegionTest : public ::testing::Test {
protected:
    void SetUp() override {
        const RunResult run = test::Run({CliPath(), "tide", "make-demo", "--out", dir / "Region01"});
        ASSERT_EQ(run.exitCode, 0) << run.err;
        ASSERT_EQ(rig.Path(dir.path() + "/"), 0);
        ASSERT_EQ(rig.Select("Region01"), 0) << rig.stream.LastError();
    }

    // The stream at a position every half hour through one semi-diurnal
    // cycle, from 10:00 UTC on the day of the demo passage.
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
    const RunResult again = test::Run({CliPath(), "tide", "make-demo", "--out", dir / "Again"});
    ASSERT_EQ(again.exitCode, 0) << again.err;
    const std::string hdr = ReadFile(dir / "Region01.Hdr"), hrm = ReadFile(dir / "Region01.Hrm");
    EXPECT_EQ(hdr, ReadFile(dir / "Again.Hdr"));
    EXPECT_EQ(hrm, ReadFile(dir / "Again.Hrm"));
    const tide::RegionData made = DemoTideRegion();
    EXPECT_EQ(hdr, tide::HeaderText(made));
    EXPECT_EQ(hrm, tide::HarmonicsBytes(made));
    // Its box is the demo chart's.
    std::string why;
    auto read = tide::ParseRegion(hdr, hrm, &why);
    ASSERT_TRUE(read) << why;
    EXPECT_NEAR(read->south, 49 + 50 / 60.0, 1e-9);
    EXPECT_NEAR(read->east, -11 - 40 / 60.0, 1e-9);

    EXPECT_EQ(test::Run({CliPath(), "tide", "make-demo"}).exitCode, 2);
    EXPECT_NE(test::Run({CliPath(), "tide", "make-demo", "--out", dir / "missing/Region02"}).exitCode, 0);
}

TEST_F(DemoTideRegionTest, RotaryStreamEverywhereAtSea) {
    const LatLong c = DemoChart::IslandCentre();
    LatLong east, south;
    DemoChart::BayHeadlands(east, south);
    const struct {
        const char* where;
        LatLong pos;
    } cases[] = {
        {"4 miles north", Offset(c, 4, 0)},
        {"4 miles west", Offset(c, 0, -4)},
        {"the passage's start", DemoPassagePosition(0)},
        {"off the east headland", Seaward(east, 0.35)},
        {"off the south headland", Seaward(south, 0.35)},
        {"near the chart's south-east corner", {(-11 - 41 / 60.0) * 3600, (49 + 51 / 60.0) * 3600}},
    };
    for (const auto& k : cases) {
        SCOPED_TRACE(k.where);
        ASSERT_GE(DemoChart::DepthAt(k.pos), 0);
        std::set<int> quadrants;
        for (const Prediction& p : Cycle(k.pos)) {
            ASSERT_EQ(p.result, 0);
            EXPECT_GT(p.speed, 20);  // never slack: the stream turns rather than stops
            quadrants.insert(p.dir / 900);
        }
        EXPECT_EQ(quadrants.size(), 4u);
    }
}

TEST_F(DemoTideRegionTest, RacesOffTheHeadlandsSlackInTheBayNoneAshore) {
    const LatLong c = DemoChart::IslandCentre();
    LatLong east, south;
    DemoChart::BayHeadlands(east, south);
    const int32_t bay = Peak(DemoChart::HarbourEntrance()), open = Peak(Offset(c, 4, 0));
    ASSERT_GT(bay, 0);
    for (const LatLong& headland : {east, south}) {
        const int32_t race = Peak(Seaward(headland, 0.35));
        EXPECT_GT(race, 3 * bay);
        EXPECT_GT(race, open);
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
    const std::vector<std::string> setUp = {"bash", SourcePath("tools/demo-setup.sh"), CliPath(), home.path()};
    for (const char* when : {"a new home", "an older home without it"}) {
        SCOPED_TRACE(when);
        std::remove((home / "Dat/Region01.Hdr").c_str());
        const RunResult run = test::Run(setUp);
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
        EXPECT_EQ(tides.FindTideRegion(c), 1);
        EXPECT_EQ(tides.FindTideRegion(Offset(c, 11, 0)), 0);  // north of the chart
        tides.TideTime = ombra::DateTime{2026, 11, 23, 10, 30, 0}.Serial();
        float drift = 0, set = 0;
        ASSERT_TRUE(tides.GetTide(sea, drift, set));
        EXPECT_GT(drift, 0.1f);
        EXPECT_LT(drift, 5.0f);
        EXPECT_FALSE(tides.GetTide(c, drift, set));
    }
}

}  // namespace
}  // namespace ombra::test
