// The tides through the plotter: the console's tide rows and the course
// through the water filled from the model at each vessel update, the hand
// set stream when the model is not asked, and the command line's region
// list and predictions over a home.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "platform/fake/ScriptedDialogs.h"
#include "plotter/WindowlessShell.h"
#include "tests/alarms/FixFeed.h"
#include "tests/platform/tidestream/TideRigs.h"
#include "tides/Tides.h"

using namespace ombra;
using namespace ombra::test;

namespace {

// A steady stream of 0.5 m/s towards the east over 49.5N-50.5N, 5.5W-4.5W,
// round the waters the fixes come from.
tide::RegionData EastGoingRegion() {
    auto r = UniformGrid({"Z0"}, {{0.5f, 0, 0.0f, 0}});
    r.south = 49.5;
    r.north = 50.5;
    r.west = -5.5;
    r.east = -4.5;
    return r;
}

struct TideVoyage {
    WindowlessShell shell;
    Sailing s{shell};
    TideVoyage(bool useModel) {
        std::filesystem::create_directories(s.dir / "home/Dat");
        std::string why;
        EXPECT_TRUE(tide::SaveRegion(EastGoingRegion(), s.dir / "home/Dat", "Region01", &why)) << why;
        if (!useModel) s.Set("UseProudman", "False");
    }
    const Console& console() { return s.plotter.instruments().console; }
};

}  // namespace

TEST(TideConsole, TheVesselCycleTakesTheStreamFromTheModel) {
    TideVoyage model(true);
    ASSERT_TRUE(model.s.Start());
    ASSERT_EQ(model.s.plotter.tides().TideRegionCount(), 1);
    model.s.At(P(0), 0.0, 6.0);
    model.s.At(P(0.1), 0.0, 6.0);
    // The same rows as a stream set by hand to what the model gives there.
    Tides& tides = model.s.plotter.tides();
    float drift = 0, set = 0;
    ASSERT_TRUE(tides.GetTide(P(0.1), drift, set));
    EXPECT_NEAR(set, 90.0, 0.1);
    EXPECT_NEAR(drift, 0.972, 0.001);
    TideVoyage byHand(false);
    ASSERT_TRUE(byHand.s.Start());
    byHand.s.plotter.instruments().vessel.UserTideSet = set;
    byHand.s.plotter.instruments().vessel.UserTideDrift = drift;
    byHand.s.At(P(0.1), 0.0, 6.0);
    EXPECT_EQ(model.console().LabTide, byHand.console().LabTide);
    EXPECT_NE(model.console().LabTide[0], "N/A");
    // Made good north at 6 knots with the stream setting east: the vessel
    // heads west of north through the water, and is faster through it.
    const Vessel& v = model.s.plotter.instruments().vessel.vessel;
    EXPECT_NEAR(v.CourseWater, 360.0 - std::atan2(drift, 6.0) * 180.0 / M_PI, 0.2);
    EXPECT_NEAR(v.SpeedWater, std::hypot(6.0, drift), 0.05);

    // Out of the region the model has no stream: the last one stands.
    const auto before = model.console().LabTide;
    model.s.At(P(45), 0.0, 6.0);
    EXPECT_EQ(model.console().LabTide, before);
}

TEST(TideConsole, WithoutTheModelTheStreamIsTheOneSetByHand) {
    TideVoyage v(false);
    ASSERT_TRUE(v.s.Start());
    v.s.At(P(0), 0.0, 6.0);
    EXPECT_EQ(v.console().LabTide[0], "N/A");  // neither a model nor a stream by hand
    const Vessel& vessel = v.s.plotter.instruments().vessel.vessel;
    EXPECT_DOUBLE_EQ(vessel.CourseWater, vessel.COG);
}

TEST(TideCli, RegionsAndPredictionsOfAHome) {
    TempDir home;
    std::filesystem::create_directories(home / "Dat");
    std::string why;
    ASSERT_TRUE(tide::SaveRegion(EastGoingRegion(), home / "Dat", "Region01", &why)) << why;
    auto r2 = UniformGrid({"M2", "S2"}, {{1.2f, 40, 0.8f, 130}, {0.4f, 80, 0.3f, 170}});
    ASSERT_TRUE(tide::SaveRegion(r2, home / "Dat", "Region02", &why)) << why;

    RunResult list = test::Run({CliPath(), "tide", "regions", "--home", home.path()});
    ASSERT_EQ(list.exitCode, 0) << list.err;
    EXPECT_EQ(SplitLines(list.out), (std::vector<std::string>{"1 Region01 49.500000 -5.500000 50.500000 -4.500000",
                                                              "2 Region02 50.000000 -2.000000 51.000000 -1.000000"}));

    RunResult run = test::Run({CliPath(), "tide", "predict", "50.4", "-1.3", "2026-11-25 10:00", "--home", home.path(),
                         "--hours", "1", "--step", "20"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto lines = SplitLines(run.out);
    ASSERT_EQ(lines.size(), 4u);
    // Each line holds exactly what the module gives for that time.
    ScriptedDialogs dialogs;
    ErrorReporter errors(dialogs, "Ombra");
    HarmonicTideStream stream;
    Tides tides(stream, errors);
    tides.SetDataPath(home / "Dat/");
    tides.ListTideRegions();
    const char* times[] = {"10:00:00", "10:20:00", "10:40:00", "11:00:00"};
    for (size_t k = 0; k < 4; ++k) {
        tides.TideTime = DateTime{2026, 11, 25, 10, 0, 0, 0}.Serial() + double(k) * 20 / 1440;
        float drift = 0, set = 0;
        ASSERT_TRUE(tides.GetTide(LatLong{-1.3 * 3600, 50.4 * 3600}, drift, set));
        const std::string& line = lines[k];
        EXPECT_EQ(line.substr(0, 39), std::string("{\"time\":\"2026-11-25 ") + times[k] + "\",\"ok\":true") << line;
        // The numbers read back as the very floats the module gave.
        EXPECT_EQ(std::stof(line.substr(line.find("\"set\":") + 6)), set) << line;
        EXPECT_EQ(std::stof(line.substr(line.find("\"drift\":") + 8)), drift) << line;
        EXPECT_NE(line.find("\"region\":\"Region02\"}"), std::string::npos) << line;
    }

    // Where no region answers, and what is refused.
    RunResult none = test::Run({CliPath(), "tide", "predict", "10", "10", "2026-11-25 10:00:30", "--home", home.path()});
    EXPECT_EQ(none.out, "{\"time\":\"2026-11-25 10:00:30\",\"ok\":false,\"region\":null}\n");
    for (std::vector<std::string> bad : {std::vector<std::string>{"predict", "50", "-1", "2026-02-30 10:00", "--home", home.path()},
                                         {"predict", "95", "-1", "2026-02-03 10:00", "--home", home.path()},
                                         {"predict", "50", "-1", "2026-02-03 10:00", "--home", home.path(), "--step", "0"},
                                         {"predict", "50", "-1", "2026-02-03 10:00"},
                                         {"regions", "--home", home / "missing"}}) {
        bad.insert(bad.begin(), {CliPath(), "tide"});
        EXPECT_EQ(test::Run(bad).exitCode, 2) << bad[3];
    }
}
