// The plotter as one piece: start-up over fake services, then ticks that
// carry sentences from a port to the vessel, the console and the NMEA
// burst, and the exit sequence that closes the port.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "core/Format.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"
#include "plotter/WindowlessShell.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {
struct RecordingShell : WindowlessShell {
    std::map<int, std::string> panels;
    std::vector<std::string> log;
    int consoleChanges = 0;
    void CreateMainWindow(const std::string& c) override { log.push_back("window " + c); }
    void EnableMainTimer() override { log.push_back("timer"); }
    void EndProcess() override { log.push_back("end"); }
    void SetInfoPanel(int panel, const std::string& text) override { panels[panel] = text; }
    void ConsoleChanged() override { ++consoleChanges; }
    void SetGPSMenuState(bool on) override { log.push_back(on ? "gps menu on" : "gps menu off"); }
    int redraws = 0;
    void ChartRedrawRequested() override { ++redraws; }
    void ChartStatusChanged() override { log.push_back("chart status"); }
};

std::string WithChecksum(const std::string& body) {
    unsigned char sum = 0;
    for (char c : body) sum ^= static_cast<unsigned char>(c);
    char buf[8];
    std::snprintf(buf, sizeof buf, "*%02X\r\n", sum);
    return "$" + body + buf;
}

// The plotter's own chart engine with a count of what the plotter asks of it.
struct CountingChartLibrary : chartlib::OmbraChartLibrary {
    int outlines = 0;
    bool ReadBoatOutline(const std::string& path) override {
        ++outlines;
        return OmbraChartLibrary::ReadBoatOutline(path);
    }
};

struct Harness {
    test::TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    ManualClock clock;
    NoEvents events;
    RecordingShell shell;
    ScriptedComms comms;
    CountingChartLibrary library;
    Plotter plotter{{store, dialogs, clock, events, shell, &comms, &library}};
    Harness() {
        store.Write("Vestrane", "Tarnel", "AutoStartupGPS", "2");  // start the GPS without asking
        store.Write("Vestrane", "Tarnel", "GPSPort", "1");
        clock.now = DateTime{2026, 11, 23, 10, 0, 0, 0};
    }
    bool Start() { return plotter.Start("NOSPLASH", dir / "ombra", dir / "home", ""); }
    // One second of ticks, with `line` fed at its start.
    void Second(const std::string& line) {
        if (!line.empty()) comms.Feed(1, line);
        for (int i = 0; i < 10; ++i) {
            plotter.Tick();
            clock.Advance(0.1);
        }
    }
};
}  // namespace

TEST(Plotter, AFixFromThePortMovesTheVesselAndGoesOutAgainAsNMEA) {
    Harness h;
    ASSERT_TRUE(h.Start());
    EXPECT_EQ(h.comms.opened.count(1), 1u);  // the GPS port is open at 4800
    EXPECT_EQ(h.comms.opened[1], 4800);
    for (int s = 0; s < 5; ++s) {
        char t[16];
        std::snprintf(t, sizeof t, "1000%02d", s);
        h.Second(WithChecksum(std::string("GPGGA,") + t + ",5000.000,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,"));
        h.comms.Feed(1, WithChecksum("GPVTG,090.0,T,,M,6.0,N,11.1,K"));
    }
    const Vessel& v = h.plotter.instruments().vessel.vessel;
    EXPECT_TRUE(h.plotter.VesselActive());
    EXPECT_NEAR(v.Pos.Lat, 50 * 3600.0, 1e-6);
    EXPECT_NEAR(v.Pos.Long, -12 * 3600.0, 1e-6);
    EXPECT_NEAR(v.COG, 90.0, 1e-6);
    EXPECT_NEAR(v.SOG, 6.0, 1e-6);
    EXPECT_EQ(h.plotter.instruments().console.StatusText, "RAW GPS");
    EXPECT_GT(h.shell.consoleChanges, 0);
    // The burst went out on the GPS port, every two seconds at most.
    std::string out = h.comms.Written(1);
    size_t rmc = 0;
    for (size_t p = out.find("$GPRMC"); p != std::string::npos; p = out.find("$GPRMC", p + 1)) ++rmc;
    EXPECT_GE(rmc, 2u);
    EXPECT_LE(rmc, 3u);
    EXPECT_NE(out.find(",5000.000,N,01200.000,W,"), std::string::npos) << out.substr(0, 300);
    EXPECT_EQ(h.shell.panels[5], "10:00");
}

TEST(Plotter, SilenceAfterAFixLosesTheGPSAndTheExitSequenceClosesThePort) {
    Harness h;
    ASSERT_TRUE(h.Start());
    h.Second(WithChecksum("GPGGA,100000,5000.000,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,"));
    ASSERT_EQ(h.plotter.instruments().console.StatusText, "RAW GPS");
    for (int s = 0; s < 25; ++s) h.Second("");  // GPSDelay is 20 s
    EXPECT_NE(h.plotter.instruments().console.StatusText, "RAW GPS");
    EXPECT_TRUE(h.plotter.VesselActive());  // lost GPS dead-reckons on
    h.plotter.Close(0, 0, 0, 800, 600);
    EXPECT_EQ(h.comms.opened.count(1), 0u);
    EXPECT_EQ(h.shell.log.back(), "end");
}

TEST(Plotter, CompassCoursesOnTheConsoleTakeVariationAndTheDeviationCard) {
    Harness h;
    ASSERT_TRUE(h.Start());
    h.plotter.magVar().SetDatPath(test::SourcePath("data/install/dat"));
    h.Second(WithChecksum("GPGGA,100000,5000.000,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,"));
    h.comms.Feed(1, WithChecksum("GPVTG,090.0,T,,M,6.0,N,11.1,K"));
    h.Second(WithChecksum("GPGGA,100001,5000.000,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,"));
    ASSERT_NEAR(h.plotter.instruments().vessel.vessel.COG, 90.0, 1e-9);
    float var = h.plotter.magVar().MagneticVariation(h.plotter.instruments().vessel.vessel.Pos);
    EXPECT_LT(var, -1.0f);  // west of Ireland the variation is a few degrees west
    h.plotter.deviation().DeviationTable.fill(2.5f);
    struct Case { int16_t unit; double want; const char* mark; } cases[] = {
        {0, 90.0, "°T"}, {1, 90.0 - var, "°M"}, {2, 90.0 - var + 2.5, "°C"}};
    for (auto& c : cases) {
        h.plotter.units().AngleUnit = c.unit;
        h.plotter.instruments().vessel.UpdateVesselConsole();
        EXPECT_EQ(h.plotter.instruments().console.LabVessel[4], Format(c.want, "000.0") + " " + c.mark) << c.unit;
    }
}

TEST(Plotter, TheChartEngineItIsGivenAndTheWindowHearOfTheVessel) {
    Harness h;
    ASSERT_TRUE(h.Start());
    // Start-up read the vessel outline through the engine it was given.
    EXPECT_EQ(h.library.outlines, 1);
    // A fix redraws the vessel: the chart host passes the request to the window.
    int before = h.shell.redraws;
    h.Second(WithChecksum("GPGGA,100000,5000.000,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,"));
    EXPECT_GT(h.shell.redraws, before);
}

// Going off line ends whatever the vessel was steering to: the leg, and
// the store's mark of the active waypoint or route point.
TEST(Plotter, GoingOffLineEndsTheActiveLeg) {
    struct Case {
        const char* name;
        int16_t kind;  // 1 waypoint, 2 route point
        void (*off)(Harness&);
    } cases[] = {
        {"route point, GPS off", 2, [](Harness& h) { h.plotter.StopGPS(); }},
        {"waypoint, GPS off", 1, [](Harness& h) { h.plotter.StopGPS(); }},
        {"route point, no to keep trying", 2,
         [](Harness& h) {
             h.dialogs.replies = {mb::No};
             for (int s = 0; s < 60 && h.plotter.instruments().comm.Connected(); ++s) h.Second("");
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Harness h;
        ASSERT_TRUE(h.Start());
        NavObjects& nav = h.plotter.nav();
        ActiveLeg leg;
        leg.Kind = c.kind;
        leg.Name = "WP1";
        leg.To = LatLong{-12 * 3600.0, 50.1 * 3600.0};
        if (c.kind == 1) {
            nav.waypoints.ActiveIndex = 1;
        } else {
            nav.routes.ActiveRoute = 1;
            nav.routes.ActivePoint = 1;
        }
        nav.activation.SetActiveLeg(leg);
        ASSERT_EQ(h.plotter.instruments().leg.Kind, c.kind);
        c.off(h);
        EXPECT_EQ(h.plotter.instruments().vessel.vessel.Mode, kModeNone);
        EXPECT_EQ(h.plotter.instruments().leg.Kind, 0);
        EXPECT_EQ(nav.waypoints.ActiveIndex, 0);
        EXPECT_EQ(nav.routes.ActiveRoute, 0);
        EXPECT_EQ(nav.routes.ActivePoint, 0);
    }
}

// Dead reckoning with a GPS port that will not open: the NMEA output
// tries the port once a burst and says so once, not once a sentence.
TEST(Plotter, DeadReckoningWithoutAPortSaysSoOnce) {
    Harness h;
    h.comms.missing.insert(1);
    ASSERT_TRUE(h.Start());
    const size_t atStart = h.dialogs.asked.size();  // StartGPS told of the port
    h.plotter.instruments().vessel.SetVesselMode(kModeDR);
    h.comms.opens.clear();
    for (int s = 0; s < 10; ++s) h.Second("");
    size_t boxes = 0;
    for (size_t i = atStart; i < h.dialogs.asked.size(); ++i) boxes += h.dialogs.asked[i].kind == "MsgBox";
    EXPECT_EQ(boxes, 1u);
    EXPECT_GE(h.comms.opens[1], 4);  // a burst every two seconds, one attempt each
    EXPECT_LE(h.comms.opens[1], 6);
}

namespace {
// A plotter over the same settings and home as `h`, as at the next start.
struct Restart {
    Plotter plotter;
    explicit Restart(Harness& h) : plotter({h.store, h.dialogs, h.clock, h.events, h.shell, &h.comms, &h.library}) {}
    bool Start(Harness& h) { return plotter.Start("NOSPLASH", h.dir / "ombra", h.dir / "home", ""); }
};

// A fix each second, zig-zagging so that every course change adds a track point.
void ZigZag(Harness& h, int seconds) {
    for (int s = 0; s < seconds; ++s) {
        char body[96];
        std::snprintf(body, sizeof body, "GPGGA,10%02d%02d,5000.%03d,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,", s / 60,
                      s % 60, s);
        h.Second(WithChecksum(body));
        h.comms.Feed(1, WithChecksum(s % 2 ? "GPVTG,090.0,T,,M,6.0,N,11.1,K" : "GPVTG,000.0,T,,M,6.0,N,11.1,K"));
    }
}

size_t PointsInFile(const std::string& path) {
    auto text = ReadWholeFile(ResolvePath(path));
    if (!text) return 0;
    std::vector<TrackSegment> track;
    ReadTrackText(*text, track);
    size_t n = 0;
    for (const TrackSegment& s : track) n += s.Points.size();
    return n;
}
}  // namespace

TEST(Plotter, TheRecordedTrackIsSavedAsItGrowsAndComesBackAtTheNextStart) {
    Harness h;
    ASSERT_TRUE(h.Start());
    const Tracks& tracks = h.plotter.nav().tracks;
    ASSERT_FALSE(tracks.FileName.empty());
    ZigZag(h, 30);
    ASSERT_GT(tracks.PointCount(), 10u);
    // Within the first minute nothing need be on disk yet; a few minutes on,
    // a crash (no exit sequence) would still leave most of the track.
    ZigZag(h, 150);
    size_t held = tracks.PointCount();
    size_t onDisk = PointsInFile(tracks.FileName);
    EXPECT_GT(onDisk, 0u);
    // Two points a second here: the file lags by a minute at most.
    EXPECT_GE(onDisk + 2 * size_t(Tracks::kSaveEvery) + 2, held) << "on disk " << onDisk << " of " << held;
    // The exit sequence (which closes the track with a last point) writes it whole.
    h.plotter.Close(0, 0, 0, 800, 600);
    held = tracks.PointCount();
    EXPECT_EQ(PointsInFile(tracks.FileName), held);

    Restart next(h);
    ASSERT_TRUE(next.Start(h));
    EXPECT_EQ(next.plotter.nav().tracks.PointCount(), held);
    EXPECT_EQ(next.plotter.nav().tracks.FileName, tracks.FileName);
}

TEST(Plotter, TheLastDatabasesAreReopenedAtTheNextStart) {
    Harness h;
    ASSERT_TRUE(h.Start());
    NavObjects& nav = h.plotter.nav();
    struct Case {
        const char* what;
        NavStore& (*store)(NavObjects&);
        const char* name;
    } cases[] = {
        {"waypoints", [](NavObjects& n) -> NavStore& { return n.waypoints; }, "Solent marks"},
        {"routes", [](NavObjects& n) -> NavStore& { return n.routes; }, "Channel crossing"},
        {"boundaries", [](NavObjects& n) -> NavStore& { return n.boundaries; }, "Shoals"},
    };
    // Two databases of each kind: the second one opened is the one to come back.
    for (auto& c : cases) {
        NavStore& s = c.store(nav);
        for (std::string name : {std::string("Other"), std::string(c.name)}) {
            s.SaveDB();
            s.ClearAll();
            s.CurrentName = name;
            ASSERT_TRUE(s.SaveDB()) << c.what;
        }
    }
    h.plotter.Close(0, 0, 0, 800, 600);
    for (auto& c : cases) EXPECT_FALSE(c.store(nav).IsOpen()) << c.what;

    Restart next(h);
    ASSERT_TRUE(next.Start(h));
    for (auto& c : cases) {
        NavStore& s = c.store(next.plotter.nav());
        EXPECT_EQ(s.CurrentName, c.name) << c.what;
        EXPECT_FALSE(s.CurrentFile.empty()) << c.what;
    }
    // A database deleted meanwhile is simply not reopened.
    next.plotter.Close(0, 0, 0, 800, 600);
    std::filesystem::remove_all(ResolvePath(next.plotter.nav().waypoints.Folder));
    Restart third(h);
    ASSERT_TRUE(third.Start(h));
    EXPECT_FALSE(third.plotter.nav().waypoints.IsOpen());
    EXPECT_EQ(third.plotter.nav().routes.CurrentName, "Channel crossing");
}
