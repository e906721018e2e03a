// The vessel: modes, the update cycle with its ages and timeouts, dead
// reckoning across midnight, the position file, the console's rows and the
// autoscroll check.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "core/Registry.h"
#include "instruments/PositionFile.h"
#include "navmath/RLGC.h"
#include "tests/instruments/InstrumentsFixture.h"
#include "tests/support/TestSupport.h"

using namespace ombra;
using ombra::test::InstrumentsFixture;
using ombra::test::Sentence;

namespace {

std::string GGA(const std::string& time, const std::string& lat, const std::string& ns, const std::string& lon,
                const std::string& ew, int quality = 1) {
    return Sentence("GPGGA," + time + "," + lat + "," + ns + "," + lon + "," + ew + "," + std::to_string(quality) +
                    ",08,0.9,1.0,M,50.0,M,,");
}

// One tick's worth: read the port, then the vessel cycle.
int16_t Cycle(InstrumentsFixture& f) {
    f.ins.comm.ReadGPSPort();
    return f.ins.vessel.UpdateVesselPos();
}

}  // namespace

// Connecting to GPS, then silence: the fix stays good for GPSDelay, then
// the vessel is lost and dead-reckons from ten seconds before the loss;
// the fix coming back returns it to GPS.
TEST(VesselCycle, ConnectSilenceLostAndBack) {
    InstrumentsFixture f;
    f.Load();
    ASSERT_TRUE(f.ins.comm.StartGPS());
    EXPECT_EQ(f.V().Mode, 3);
    EXPECT_EQ(f.ins.vessel.UpdateVesselPos(), -1);
    EXPECT_EQ(f.ins.console.StatusText, "No GPS Signal");
    EXPECT_EQ(f.ins.console.StatusColour, kStatusRed);

    f.ports.Feed(1, GGA("120000", "5000.000", "N", "01200.000", "W"));
    f.ports.Feed(1, Sentence("GPVTG,090.0,T,,M,6.0,N,,K"));
    EXPECT_EQ(Cycle(f), 1);
    EXPECT_EQ(f.V().Mode, 2);
    EXPECT_EQ(f.ins.console.StatusText, "RAW GPS");
    EXPECT_EQ(f.V().Heading, 0.0);  // no heading sentence yet, GyroUseCOG off
    EXPECT_EQ(f.chart.calls, std::vector<std::string>{"CentreOnVessel"});
    Cycle(f);  // the VTG now
    EXPECT_EQ(Cycle(f), 1);
    EXPECT_EQ(f.V().COG, 90.0);
    EXPECT_EQ(f.V().SOG, 6.0);
    LatLong atLoss = f.V().Pos;

    for (int s = 1; s < 20; ++s) {
        f.clock.Advance(1);
        EXPECT_EQ(Cycle(f), 1) << s;
        EXPECT_EQ(f.V().Mode, 2);
    }
    EXPECT_EQ(f.ins.console.AgeLine, "Position Age : 19.0 secs");
    // The cycle that finds the data run out sees its own empty record: 0.
    f.clock.Advance(1);
    EXPECT_EQ(Cycle(f), 0);
    EXPECT_EQ(f.V().Mode, 4);
    EXPECT_EQ(f.ins.console.StatusText, "Poor GPS signal");
    EXPECT_EQ(f.V().DRStart, float(12 * 3600 + 20 - 10));
    EXPECT_EQ(f.hooks.calls.back(), "Log4:Poor GPS signal.");

    f.clock.Advance(1);
    EXPECT_EQ(Cycle(f), -1);
    EXPECT_EQ(f.V().Mode, 4);
    EXPECT_EQ(f.ins.console.StatusText, "No GPS Signal");
    EXPECT_EQ(f.hooks.lostShown, 1);
    EXPECT_EQ(f.ins.console.AgeLine, "DR Mode Age : 11.0 secs");
    LatLong dr = DeadReckon(atLoss, 90.0, 6.0, 11.0);
    EXPECT_NEAR(f.V().Pos.Long, dr.Long, 1e-9);
    EXPECT_GT(f.V().Pos.Long, atLoss.Long);

    f.ports.Feed(1, GGA("120030", "5000.100", "N", "01159.000", "W", 2));
    EXPECT_EQ(Cycle(f), 1);
    EXPECT_EQ(f.V().Mode, 2);
    EXPECT_EQ(f.ins.console.StatusText, "DIFF GPS");
    EXPECT_EQ(f.ins.console.StatusColour, kStatusBrightGreen);
    EXPECT_EQ(f.hooks.lostHidden, 1);
    EXPECT_EQ(f.ins.console.AgeLine, "");
}

// The 20th failed connect cycle asks; Yes counts again from 0, No stops.
TEST(VesselCycle, ConnectTriesAsk) {
    InstrumentsFixture f;
    f.Load();
    f.ins.comm.StartGPS();
    f.dialogs.replies = {mb::Yes, mb::No};
    for (int i = 1; i <= 19; ++i) Cycle(f);
    EXPECT_TRUE(f.Messages().empty());
    EXPECT_EQ(f.ins.vessel.ConnectTries, 19);
    Cycle(f);
    ASSERT_EQ(f.Messages().size(), 1u);
    EXPECT_EQ(f.Messages()[0], "No GPS signal is being recieved,\nDo you wish to keep trying.");
    EXPECT_EQ(f.ins.vessel.ConnectTries, 0);
    EXPECT_EQ(f.V().Mode, 3);
    for (int i = 1; i <= 20; ++i) Cycle(f);
    EXPECT_EQ(f.Messages().size(), 2u);
    EXPECT_EQ(f.V().Mode, 0);
    EXPECT_EQ(f.ports.ComPortStatus(1), 0);
}

TEST(VesselCycle, AgeLineTexts) {
    struct Case {
        double age;
        const char* text;
    };
    const Case cases[] = {
        {0.0, ""},
        {0.04, "DR Mode Age : 0.0 secs"},
        {59.9, "DR Mode Age : 59.9 secs"},
        {60.0, "DR Mode Age : 1.0 mins"},
        {3599.0, "DR Mode Age : 60.0 mins"},
        {3600.0, "DR Mode Age : 1.0 hours"},
        {7200.0, "DR Mode Age : 2.0 hours"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.age);
        InstrumentsFixture f;
        f.Load();
        f.ins.vessel.SetVesselMode(1);
        f.V().DRStart = float(f.clock.Timer() - c.age);
        f.ins.vessel.UpdateVesselPos();
        EXPECT_EQ(f.ins.console.AgeLine, c.text);
    }
}

// In DR across midnight the base moves on, so the position runs on without
// a jump; the age line stays right.
TEST(VesselCycle, DeadReckoningAcrossMidnight) {
    InstrumentsFixture f;
    f.Load();
    f.clock.SetTime(23, 59, 50);
    f.ins.vessel.SetVesselMode(1);
    EXPECT_EQ(f.ins.console.StatusText, "DR");
    EXPECT_EQ(f.ins.console.StatusColour, kStatusBlue);
    Vessel& v = f.V();
    v.DRBase = LatLong{-12.0 * 3600.0, 50.0 * 3600.0};
    v.DRStart = float(f.clock.Timer());
    v.COG = 45.0;
    v.SOG = 10.0;
    LatLong last = v.DRBase;
    double lastStep = -1;
    for (int s = 0; s < 20; ++s) {
        f.clock.Advance(1);
        f.ins.vessel.UpdateVesselPos();
        double step = std::hypot(v.Pos.Lat - last.Lat, v.Pos.Long - last.Long);
        if (lastStep >= 0) {
            EXPECT_NEAR(step, lastStep, 0.05) << "second " << s;
        }
        lastStep = step;
        last = v.Pos;
    }
    EXPECT_EQ(f.clock.now.hour, 0);
    EXPECT_LT(v.DRStart, 100.0f);  // the base was moved at midnight
    LatLong straight = DeadReckon(LatLong{-12.0 * 3600.0, 50.0 * 3600.0}, 45.0, 10.0, 20.0);
    EXPECT_NEAR(v.Pos.Lat, straight.Lat, 0.05);
    EXPECT_EQ(f.ins.console.AgeLine, "DR Mode Age : 10.0 secs");
    // Dragging the vessel: the cycle ends at once.
    f.chart.dragging = true;
    f.hooks.calls.clear();
    f.ins.vessel.UpdateVesselPos();
    EXPECT_TRUE(f.hooks.calls.empty());
    EXPECT_EQ(f.ins.console.AgeLine, "");
}

// The end of a cycle runs its steps in their order; alarms about a leg
// only with a leg.
TEST(VesselCycle, EndOfCycleOrder) {
    InstrumentsFixture f;
    f.Load();
    f.ins.vessel.SetVesselMode(1);
    f.hooks.calls.clear();
    f.ins.vessel.UpdateVesselPos();
    std::vector<std::string> want = {"AutoLog",          "RefreshTargets",   "TrackCheck",       "ManOverboard", "RedrawVessel",
                                     "CheckBoundaries",  "CheckAnchorAlarm", "AutoscrollMarker", "LogRunning",   "SatInfo"};
    EXPECT_EQ(f.hooks.calls, want);
    f.ins.leg.Kind = 1;
    f.hooks.calls.clear();
    f.ins.vessel.UpdateVesselPos();
    want.insert(want.begin() + 7, {"CheckArrivalAlarm", "CheckXTEAlarm"});
    EXPECT_EQ(f.hooks.calls, want);
    // Mode None: nothing runs; Connecting without a fix: nothing runs.
    f.ins.vessel.SetVesselMode(0);
    f.hooks.calls.clear();
    f.ins.vessel.UpdateVesselPos();
    f.ins.vessel.SetVesselMode(3);
    f.ins.vessel.UpdateVesselPos();
    EXPECT_TRUE(f.hooks.calls.empty());
}

TEST(VesselCycle, ModeChangesAndStart) {
    InstrumentsFixture f;
    f.reg.SaveSetting(Key::VesselName, "Kittiwake");
    f.reg.SaveSetting(Key::VesselPredictorTime, "7.5");
    f.reg.SaveSetting(Key::AutoscrollTime, "3");
    f.Load();
    Vessel& v = f.V();
    EXPECT_EQ(v.Name, "Kittiwake");
    EXPECT_EQ(v.Heading, -1.0);
    EXPECT_EQ(v.PredictorTime, 7.5f);
    EXPECT_EQ(f.ins.vessel.AutoscrollTime, 3.0f);
    EXPECT_TRUE(v.TrackMode);
    EXPECT_FALSE(f.ins.vessel.VesselActive());
    for (int16_t m : {1, 2, 4, 5}) {
        f.ins.vessel.SetVesselMode(m);
        EXPECT_TRUE(f.ins.vessel.VesselActive()) << m;
    }
    f.ins.vessel.SetVesselMode(3);
    EXPECT_FALSE(f.ins.vessel.VesselActive());
    f.ins.vessel.SetVesselMode(9);  // not a mode: nothing
    EXPECT_EQ(v.Mode, 3);
    f.ins.vessel.SetVesselMode(5);
    EXPECT_EQ(f.ins.console.StatusText, "FILE DR");
}

// The position file: its presence switches to FILE DR from any mode (None
// too); reports of the same vessel make good course and speed.
TEST(PositionFileMode, EntersAndDeadReckons) {
    test::TempDir app;
    InstrumentsFixture f(app.path() + "/");
    f.Load();
    std::string file = app / "FileData/Position.dat";
    test::WriteFile(file, "LATITUDE: 50.0\r\nLONGITUDE: -12.0\r\nVESSEL ID: Alpha\r\n");
    f.ins.vessel.UpdateVesselPos();
    EXPECT_EQ(f.V().Mode, 5);
    EXPECT_EQ(f.V().Name, "Alpha");
    EXPECT_EQ(f.chart.calls, std::vector<std::string>{"CentreOnVessel"});
    EXPECT_EQ(f.hooks.calls.front(), "Log8:Alpha");
    EXPECT_NE(f.reg.GetSetting(Key::LastFileDataStamp), "0");

    // A minute later the vessel reports one mile north.
    f.clock.Advance(60);
    test::WriteFile(file, "LATITUDE: " + std::to_string(50.0 + 1.0 / 60.0) + "\nLONGITUDE: -12.0\nVESSEL ID: Alpha\n");
    f.ins.vessel.UpdateVesselPos();
    EXPECT_NEAR(f.V().COG, 0.0, 1e-6);
    EXPECT_NEAR(f.V().SOG, 60.0, 0.5);  // one mile in a minute (the ellipsoid's mile is a little short of a minute)
    f.clock.Advance(30);
    f.ins.vessel.UpdateVesselPos();
    EXPECT_NEAR(f.V().Pos.Lat, (50.0 + 1.0 / 60.0) * 3600.0 + 30.0, 0.5);
    // The file gone: the mode stays and the vessel goes on.
    std::filesystem::remove(file);
    f.clock.Advance(30);
    f.ins.vessel.UpdateVesselPos();
    EXPECT_EQ(f.V().Mode, 5);
    EXPECT_NEAR(f.V().Pos.Lat, (50.0 + 1.0 / 60.0) * 3600.0 + 60.0, 0.5);
}

TEST(PositionFileMode, ReadPositionFileCases) {
    struct Case {
        const char* what;
        std::string text;
        int16_t result;
        double lat, lon;
        const char* name;
        float start;  // the report's time, seconds since midnight
    };
    const float noon = 12 * 3600.0f;
    const Case cases[] = {
        {"only a latitude", "LATITUDE: 50.5\n", 0, 0, 0, "Previous", 0},
        {"defaults", "latitude: 50.5\nlongitude: -12.25\n", 2, 50.5, -12.25, "Vestrane", noon},
        {"keys anywhere, any case", "Pos LaTiTuDe:50.5\r\n\r\nxx LONGITUDE: -12.25\r\n", 2, 50.5, -12.25, "Vestrane", noon},
        {"vessel id trimmed in front", "VESSEL ID:    Alpha\nLATITUDE: 1\nLONGITUDE: 2\n", 2, 1, 2, "Alpha", noon},
        {"pos age", "LATITUDE: 1\nLONGITUDE: 2\npos age: 5\n", 2, 1, 2, "Vestrane", noon - 300},
        {"date/time", "LATITUDE: 1\nLONGITUDE: 2\nDATE/TIME: 23/11/2026 14:05:09\n", 2, 1, 2, "Vestrane", 14 * 3600 + 5 * 60 + 9},
        {"later time line wins", "DATE/TIME: 14:05:09\nPOS AGE: 1\nLATITUDE: 1\nLONGITUDE: 2\n", 2, 1, 2, "Vestrane", noon - 60},
        {"bad text reads 0", "LATITUDE: north\nLONGITUDE: 2\n", 2, 0, 2, "Vestrane", noon},
        {"bad date is a failed line", "LATITUDE: 1\nLONGITUDE: 2\nDATE/TIME: never\n", 0, 0, 0, "Previous", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        test::TempDir dir;
        InstrumentsFixture f;
        test::WriteFile(dir / "Position.dat", c.text);
        LatLong base;
        float start = 0;
        std::string name = "Previous";  // every report here is of a new vessel
        double cog = 5, sog = 7;
        int16_t r = ReadPositionFile(dir / "Position.dat", f.clock, f.errors, base, start, name, cog, sog);
        EXPECT_EQ(r, c.result);
        EXPECT_EQ(name, c.name);
        EXPECT_NEAR(base.Lat, c.lat * 3600.0, 1e-6);
        EXPECT_NEAR(base.Long, c.lon * 3600.0, 1e-6);
        EXPECT_EQ(start, c.start);
        EXPECT_EQ(cog, c.result == 2 ? 0.0 : 5.0);
        EXPECT_EQ(sog, 7.0);  // a new vessel keeps the old speed
        EXPECT_EQ(f.Messages().size(), std::string(c.what) == "bad date is a failed line" ? 1u : 0u);
    }
}

TEST(PositionFileMode, MadeGoodSpeedRules) {
    test::TempDir dir;
    InstrumentsFixture f;
    std::string path = dir / "Position.dat";
    LatLong base{-12.0 * 3600.0, 50.0 * 3600.0};
    std::string name = "Alpha";
    double cog = 0, sog = 0;
    // The same place again: speed 0.
    float start = 43000.0f;
    test::WriteFile(path, "VESSEL ID: Alpha\nLATITUDE: 50\nLONGITUDE: -12\n");
    EXPECT_EQ(ReadPositionFile(path, f.clock, f.errors, base, start, name, cog, sog), 1);
    EXPECT_EQ(sog, 0.0);
    // Two reports at the same time: taken as a day apart.
    test::WriteFile(path, "VESSEL ID: Alpha\nLATITUDE: 50.4\nLONGITUDE: -12\n");
    start = 43200.0f;
    EXPECT_EQ(ReadPositionFile(path, f.clock, f.errors, base, start, name, cog, sog), 1);
    double c = 0, d = 0;
    CourseDistanceRL(LatLong{-12.0 * 3600.0, 50.0 * 3600.0}, LatLong{-12.0 * 3600.0, 50.4 * 3600.0}, c, d);
    EXPECT_NEAR(sog, d / 24.0, 1e-9);
    // Five minutes of age at one minute past midnight is 86160 s.
    f.clock.SetTime(0, 1, 0);
    test::WriteFile(path, "VESSEL ID: Alpha\nLATITUDE: 50.4\nLONGITUDE: -12\npos age: 5\n");
    ReadPositionFile(path, f.clock, f.errors, base, start, name, cog, sog);
    EXPECT_EQ(start, 86160.0f);
}

// The autoscroll check: the run ahead kept in view, the chart moved when it
// leaves, the time cut when the view cannot hold it, and turned off when
// not even a minute fits.
TEST(Autoscroll, KeepsTheRunAheadInView) {
    InstrumentsFixture f;
    f.Load();
    f.ins.vessel.SetVesselMode(1);
    f.V().Pos = LatLong{-12.0 * 3600.0, 50.0 * 3600.0};
    f.V().COG = 90.0;
    f.V().SOG = 10.0;  // 1/6 mile a minute: 16.7 pixels at 100 a mile
    f.chart.hasView = true;
    f.chart.view = ScrollView{100.0, 800, 600, 400.0, 300.0};
    f.ins.vessel.AutoscrollTime = 0.0f;
    f.ins.vessel.AutoscrollCheck();
    EXPECT_TRUE(f.chart.centres.empty());  // off

    f.ins.vessel.AutoscrollTime = 10.0f;  // 167 pixels ahead
    f.ins.vessel.AutoscrollCheck();
    EXPECT_TRUE(f.chart.centres.empty());  // in view
    f.chart.view.VesselX = 700.0;
    f.ins.vessel.AutoscrollCheck();
    ASSERT_EQ(f.chart.centres.size(), 1u);
    // The new centre lies east of the vessel, 80% of the half-width ahead: 3.2 miles.
    LatLong want = DeadReckon(f.V().Pos, 90.0, 3.2, 3600.0);
    EXPECT_NEAR(f.chart.centres[0].Long, want.Long, 1e-6);
    EXPECT_NEAR(f.chart.centres[0].Lat, want.Lat, 1e-6);
    EXPECT_TRUE(f.Messages().empty());

    f.ins.vessel.AutoscrollTime = 30.0f;  // 500 pixels: more than the 400 to the edge
    f.ins.vessel.AutoscrollCheck();
    ASSERT_EQ(f.Messages().size(), 1u);
    EXPECT_EQ(f.Messages()[0],
              "The current Autoscroll time is too large for\nyour current chart scale & vessel speed\n(The display would "
              "redraw too frequently\nThe Autoscroll time has been changed to\nthe current optimum setting of 24 minutes.");
    EXPECT_EQ(f.ins.vessel.AutoscrollTime, 24.0f);
    EXPECT_EQ(f.reg.GetSetting(Key::AutoscrollTime), "24");

    f.V().SOG = 300.0;  // 500 pixels a minute
    f.ins.vessel.AutoscrollCheck();
    ASSERT_EQ(f.Messages().size(), 2u);
    EXPECT_EQ(f.Messages()[1], "The Autoscroll option has been turned off\nbecause you are moving too fast");
    EXPECT_EQ(f.ins.vessel.AutoscrollTime, 0.0f);
    EXPECT_EQ(f.reg.GetSetting(Key::AutoscrollTime), "0");
}

// Course to steer: its questions and answers.
TEST(CourseToSteer, Command) {
    InstrumentsFixture f;
    f.Load();
    f.ins.vessel.CourseToSteerCommand();
    ASSERT_EQ(f.Messages().size(), 1u);
    EXPECT_EQ(f.Messages()[0], "There is no active waypoint.");
    f.ins.leg.Kind = 1;
    f.ins.leg.Name = "BUOY";
    f.ins.leg.BearingTo = 0.0;
    f.V().SOG = 5.0;
    f.hooks.tide = true;
    f.hooks.set = 90.0;
    f.hooks.drift = 3.0;
    f.dialogs.replies = {mb::Yes, mb::OK};
    f.ins.vessel.CourseToSteerCommand();
    ASSERT_EQ(f.Messages().size(), 3u);
    EXPECT_EQ(f.Messages()[1].substr(0, 32), "Do you wish to use these values:");
    EXPECT_NE(f.Messages()[1].find("Tide Set 090 °T"), std::string::npos);
    EXPECT_EQ(f.Messages()[2], "Waypoint: BUOY\nCourse to steer:   323 °T");
    f.hooks.drift = 6.0;
    f.ins.vessel.CourseToSteerCommand();
    EXPECT_EQ(f.Messages().back(), "Waypoint: BUOY\nCannot make this course");
}

// While the mouse drags the vessel, neither dead-reckoning mode moves it
// and the cycle ends before the age line and the end-of-cycle steps.
TEST(VesselCycle, DraggedVesselStaysPut) {
    for (int16_t mode : {kModeDR, kModeGPSLost}) {
        SCOPED_TRACE(mode);
        InstrumentsFixture f;
        f.Load();
        f.V().Mode = mode;
        f.V().DRBase = f.V().Pos = LatLong{-5.0 * 3600.0, 50.0 * 3600.0};
        f.V().COG = 90.0;
        f.V().SOG = 10.0;
        f.V().DRStart = float(f.clock.Timer());
        f.clock.Advance(60);
        f.ins.console.AgeLine = "stale";
        f.chart.dragging = true;
        f.hooks.calls.clear();
        f.ins.vessel.UpdateVesselPos();
        EXPECT_EQ(f.V().Pos, (LatLong{-5.0 * 3600.0, 50.0 * 3600.0}));
        EXPECT_EQ(f.ins.console.AgeLine, "");
        EXPECT_TRUE(f.hooks.calls.empty());
        f.chart.dragging = false;
        f.ins.vessel.UpdateVesselPos();
        EXPECT_GT(f.V().Pos.Long, -5.0 * 3600.0);  // moving east again
        EXPECT_EQ(f.ins.console.AgeLine, "DR Mode Age : 1.0 mins");
    }
}

// The steps after a move see the vessel as it stands after it, and a turn's
// track point the vessel as it was before the turn.
TEST(VesselCycle, HooksSeeTheVesselSnapshot) {
    InstrumentsFixture f;
    f.Load();
    ASSERT_TRUE(f.ins.comm.StartGPS());
    f.ports.Feed(1, Sentence("GPRMC,120000,A,5000.000,N,01200.000,W,6.0,090.0,191194,,"));
    f.ins.settings.NMEA_RMC = true;
    f.ins.comm.ReadGPSPort();
    f.ins.vessel.UpdateVesselPos();
    ASSERT_EQ(f.V().Mode, kModeGPS);
    const LatLong before = f.V().Pos;
    f.clock.Advance(1);
    f.hooks.calls.clear();
    f.hooks.seen.clear();
    f.ports.Feed(1, Sentence("GPRMC,120001,A,5000.100,N,01200.000,W,7.0,180.0,191194,,"));
    f.ins.comm.ReadGPSPort();
    f.ins.vessel.UpdateVesselPos();
    ASSERT_FALSE(f.hooks.calls.empty());
    ASSERT_EQ(f.hooks.calls[0], "AddTrackPoint");
    ASSERT_EQ(f.hooks.seen.size(), f.hooks.calls.size());
    EXPECT_EQ(f.hooks.seen[0].Pos, before);
    EXPECT_EQ(f.hooks.seen[0].COG, 90.0);
    for (size_t i = 1; i < f.hooks.seen.size(); ++i) {
        SCOPED_TRACE(f.hooks.calls[i]);
        const VesselSnapshot& v = f.hooks.seen[i];
        EXPECT_EQ(v.Pos, f.V().Pos);
        EXPECT_EQ(v.COG, 180.0);
        EXPECT_EQ(v.SOG, 7.0);
        EXPECT_EQ(v.Mode, kModeGPS);
        EXPECT_TRUE(v.Active);
        EXPECT_EQ(v.Time, f.clock.Timer());
    }
    EXPECT_NE(f.V().Pos, before);
}
