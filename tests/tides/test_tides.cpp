// The tides module over its model: which files make the region list and in
// what order, which region answers a position, and the model's integers
// turned into a set and a drift.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/fake/ScriptedDialogs.h"
#include "tests/platform/tidestream/TideRigs.h"
#include "tests/support/TestSupport.h"
#include "tests/tides/FakeTideStream.h"
#include "tides/Tides.h"

using namespace ombra;
using namespace ombra::test;

namespace {

struct ListRig {
    TempDir dir;
    ScriptedDialogs dialogs;
    ErrorReporter errors{dialogs, "Ombra"};
    HarmonicTideStream stream;
    Tides tides{stream, errors};
    ListRig() { tides.SetDataPath(dir.path() + "/"); }
    // A region saved under `base`, its files then renamed to `hdr` and `hrm`.
    void Region(double south, const std::string& hdr, const std::string& hrm) {
        auto r = UniformGrid({"M2"}, {{1.0f, 0, 1.0f, 90}});
        r.south = south;
        r.north = south + 1;
        std::string why;
        ASSERT_TRUE(tide::SaveRegion(r, dir.path(), "tmp", &why)) << why;
        std::filesystem::rename(dir / "tmp.Hdr", dir / hdr);
        std::filesystem::rename(dir / "tmp.Hrm", dir / hrm);
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> n;
        for (int16_t i = 1; i <= tides.TideRegionCount(); ++i) n.push_back(tides.TideRegions()[size_t(i)].Name);
        return n;
    }
};

}  // namespace

TEST(TideRegionList, PrefixAnyCaseKeptInFolderOrderAndRefusedRegionsLeftOut) {
    ListRig rig;
    rig.Region(52, "Region02.Hdr", "Region02.Hrm");
    rig.Region(50, "REGION01.Hdr", "REGION01.Hrm");
    rig.Region(54, "Region03.hdr", "Region03.hrm");  // the extension's case differs
    rig.Region(56, "Tide05.Hdr", "Tide05.Hrm");      // not a region by its name
    rig.Region(58, "Region04.Hdr", "Region04.Hrm");
    const std::string hrm = ReadFile(rig.dir / "Region04.Hrm");
    WriteFile(rig.dir / "Region04.Hrm", hrm.substr(0, hrm.size() / 2));  // truncated
    WriteFile(rig.dir / "Region09.txt", "not a header");
    rig.tides.ListTideRegions();
    EXPECT_EQ(rig.Names(), (std::vector<std::string>{"REGION01", "Region02", "Region03"}));
    // Boxes come back in seconds of arc, as the model gave them.
    EXPECT_FLOAT_EQ(rig.tides.TideRegions()[2].LatMin, 52 * 3600.0f);
    EXPECT_FLOAT_EQ(rig.tides.TideRegions()[2].LatMax, 53 * 3600.0f);
    EXPECT_FLOAT_EQ(rig.tides.TideRegions()[2].LongMin, -2 * 3600.0f);
    // The truncated one is named to the navigator.
    ASSERT_EQ(rig.dialogs.asked.size(), 1u);
    EXPECT_NE(rig.dialogs.asked[0].text.find("Region04"), std::string::npos) << rig.dialogs.asked[0].text;

    // Listing again starts from scratch; an emptied or missing folder gives
    // an empty list without a message.
    for (const char* f : {"REGION01.Hdr", "Region02.Hdr", "Region03.hdr", "Region04.Hdr", "Tide05.Hdr"})
        std::filesystem::remove(rig.dir / f);
    rig.dialogs.asked.clear();
    rig.tides.ListTideRegions();
    EXPECT_EQ(rig.tides.TideRegionCount(), 0);
    rig.tides.SetDataPath(rig.dir / "nowhere/");
    rig.tides.ListTideRegions();
    EXPECT_EQ(rig.tides.TideRegionCount(), 0);
    EXPECT_TRUE(rig.dialogs.asked.empty());
}

namespace {

// Two overlapping boxes: Region01 50-51N 2-1W, where the model has no
// stream at all; Region02 50.5-52N 1.5W-0, a steady stream.
struct FindRig {
    TempDir dir;
    ScriptedDialogs dialogs;
    ErrorReporter errors{dialogs, "Ombra"};
    FakeTideStream stream;
    Tides tides{stream, errors};
    FindRig() {
        stream.regions["Region01.Hdr"] = {E7(-1), E7(-2), E7(51), E7(50), 1, 0, 0};
        stream.regions["Region02.Hdr"] = {E7(0), E7(-1.5), E7(52), E7(50.5), 0, 500, 450};
        WriteFile(dir / "Region01.Hdr", "");
        WriteFile(dir / "Region02.Hdr", "");
        tides.SetDataPath(dir.path() + "/");
        tides.ListTideRegions();
    }
};

}  // namespace

TEST(TideRegionFind, EdgesInclusiveFirstBoxWinsOutsideAllIsNone) {
    FindRig rig;
    ASSERT_EQ(rig.tides.TideRegionCount(), 2);
    const struct {
        double lat, lon;
        int16_t region;
    } cases[] = {
        {50.0, -2.0, 1},    {51.0, -1.0, 1},  {50.0, -1.0, 1},  {51.0, -2.0, 1},  // the four corners
        {50.75, -1.25, 1},                                                      // both boxes: the first
        {51.5, -0.5, 2},    {52.0, 0.0, 2},   {50.5, -1.5, 1},                  // the second alone; shared corner
        {49.9999, -1.5, 0}, {51.5, 0.0001, 0}, {53.0, -1.0, 0},
    };
    for (const auto& c : cases) EXPECT_EQ(rig.tides.FindTideRegion(Deg(c.lat, c.lon)), c.region) << c.lat << " " << c.lon;
}

TEST(TideRegionFind, TheFirstBoxAnswersEvenWithoutAStream) {
    FindRig rig;
    float drift = -1, set = -1;
    // In the overlap the first region's model fails: no stream, though the
    // second has one there.
    EXPECT_FALSE(rig.tides.GetTide(Deg(50.75, -1.25), drift, set));
    EXPECT_EQ(drift, 0.0f);
    EXPECT_EQ(set, 0.0f);
    EXPECT_EQ(rig.stream.selected, "Region01.Hdr");
    EXPECT_TRUE(rig.tides.GetTide(Deg(51.5, -0.5), drift, set));
    EXPECT_GT(drift, 0.0f);
    // Outside every box the blank name is selected and the model fails.
    drift = set = -1;
    EXPECT_FALSE(rig.tides.GetTide(Deg(10, 10), drift, set));
    EXPECT_EQ(rig.stream.selected, ".Hdr");
    EXPECT_EQ(drift, 0.0f);
    EXPECT_EQ(set, 0.0f);
}

TEST(TideGetTide, TheModelsIntegersBecomeKnotsAndDegrees) {
    FindRig rig;
    const struct {
        int32_t result, speed, dir;
        bool ok;
        float drift, set;
    } cases[] = {
        {0, 1000, 0, true, 1.944f, 0.0f},       // mm/s read as km/h, 0.54 to knots
        {0, 500, 3599, true, 0.972f, 359.9f},   // tenths of a degree
        {0, 0, 1800, true, 0.0f, 180.0f},       // a still stream is an answer
        {-1, 257, 905, true, 257 * 0.001944f, 90.5f},  // any result below 1 succeeds
        {1, 1000, 900, false, 0.0f, 0.0f},
        {4, 1000, 900, false, 0.0f, 0.0f},
    };
    rig.tides.TideTime = DateTime{2027, 3, 9, 17, 45, 30, 0}.Serial();
    for (const auto& c : cases) {
        auto& r = rig.stream.regions["Region02.Hdr"];
        r.result = c.result;
        r.speed = c.speed;
        r.dir = c.dir;
        float drift = -1, set = -1;
        const int before = rig.stream.selections;
        EXPECT_EQ(rig.tides.GetTide(Deg(51.5, -0.25), drift, set), c.ok) << c.speed;
        EXPECT_FLOAT_EQ(drift, c.drift) << c.speed;
        EXPECT_FLOAT_EQ(set, c.set) << c.dir;
        // The region is selected again before every prediction.
        EXPECT_EQ(rig.stream.selections, before + 1);
    }
    // The position in 1e-7 degree, the instant in its six parts.
    EXPECT_EQ(rig.stream.lastLat, E7(51.5));
    EXPECT_EQ(rig.stream.lastLon, E7(-0.25));
    EXPECT_EQ((std::vector<int32_t>{rig.stream.lastDay, rig.stream.lastMonth, rig.stream.lastYear, rig.stream.lastHour,
                                    rig.stream.lastMinute, rig.stream.lastSecond}),
              (std::vector<int32_t>{9, 3, 2027, 17, 45, 30}));
}
