// ombra-cli replay end to end: the demo passage with the demo databases,
// replayed in-process and through the binary, its events read back as
// JSON. The alarm and log cases need the alarms and logbook modules in the
// plotter and say so when they are not there.
#include <gtest/gtest.h>

#include <GeographicLib/Rhumb.hpp>
#include <cmath>
#include <fcntl.h>
#include <map>
#include <pty.h>
#include <unistd.h>
#include <set>
#include <sstream>

#include "app/cli/replay/DemoStores.h"
#include "app/cli/replay/Replay.h"
#include "core/Paths.h"
#include "instruments/DemoPassage.h"
#include "navmath/Geometry.h"
#include "plotter/Plotter.h"
#include "tests/platform/ais/JsonLite.h"
#include "tests/support/TestSupport.h"

using namespace ombra;
using test::Json;

namespace {

const std::string kDemoLog = test::SourcePath("data/demo/ombra-demo.nmea");

struct Event {
    std::string time, event;
    Json json;
    std::string Str(const char* key) const {
        const Json* m = json.Member(key);
        return m ? m->text : std::string();
    }
    long long Num(const char* key) const {
        const Json* m = json.Member(key);
        return m ? (long long)m->number : -1;
    }
};

struct Replayed {
    int status = -1;
    std::vector<Event> events;
    std::string err;
    // The events of a name (and of one window, when `form` is given).
    std::vector<const Event*> Of(const std::string& name, const std::string& form = "") const {
        std::vector<const Event*> v;
        for (const Event& e : events)
            if (e.event == name && (form.empty() || e.Str("form") == form)) v.push_back(&e);
        return v;
    }
};

Replayed Replay(const std::string& home, std::vector<std::string> extra, const std::string& logPath = kDemoLog) {
    std::vector<std::string> args{logPath, "--home", home};
    args.insert(args.end(), extra.begin(), extra.end());
    ReplayOptions o;
    std::ostringstream out, err;
    Replayed r;
    if (!ParseReplayArgs(args, o, err)) {
        r.status = 2;
        r.err = err.str();
        return r;
    }
    r.status = RunReplay(o, out, err);
    r.err = err.str();
    for (const std::string& line : test::SplitLines(out.str())) {
        if (line.empty()) continue;
        Event e;
        e.json = test::JsonReader::Parse(line);
        e.time = e.Str("time");
        e.event = e.Str("event");
        r.events.push_back(std::move(e));
    }
    return r;
}

// A home with the demo databases and the settings given.
struct Home {
    test::TempDir dir;
    Home() {
        std::string why;
        EXPECT_TRUE(WriteDemoStores(dir.path(), why)) << why;
    }
    void Settings(const std::string& ini) { test::WriteFile(dir / "Vestrane.ini", "[Tarnel]\n" + ini); }
    std::string path() const { return dir.path(); }
};

// The demo log's fixes by their time text "hhmmss".
std::map<std::string, std::pair<double, double>> LogFixes() {
    std::map<std::string, std::pair<double, double>> fixes;
    for (const std::string& line : test::SplitLines(test::ReadFile(kDemoLog))) {
        if (line.rfind("$GPGGA,", 0) != 0) continue;
        std::vector<std::string> f;
        std::stringstream ss(line);
        for (std::string x; std::getline(ss, x, ',');) f.push_back(x);
        double lat = std::stod(f[2].substr(0, 2)) + std::stod(f[2].substr(2)) / 60.0;
        double lon = std::stod(f[4].substr(0, 3)) + std::stod(f[4].substr(3)) / 60.0;
        fixes[f[1].substr(0, 6)] = {f[3] == "S" ? -lat : lat, f[5] == "W" ? -lon : lon};
    }
    return fixes;
}

std::vector<std::string> Fields(const std::string& sentence) {
    std::vector<std::string> f;
    std::stringstream ss(sentence.substr(0, sentence.find('*')));
    for (std::string x; std::getline(ss, x, ',');) f.push_back(x);
    return f;
}

double DegMin(const std::string& v, const std::string& hemi, int degDigits) {
    double d = std::stod(v.substr(0, size_t(degDigits))) + std::stod(v.substr(size_t(degDigits))) / 60.0;
    return hemi == "S" || hemi == "W" ? -d : d;
}

}  // namespace

TEST(DemoStores, TheRouteFollowsThePassageAndTheFiringRangeLiesAcrossIt) {
    const DemoStores d = MakeDemoStores();
    ASSERT_GE(d.route.Points.size(), 8u);
    const auto& rhumb = GeographicLib::Rhumb::WGS84();
    auto deg = [](const LatLong& p) { return std::pair{p.Lat / 3600.0, p.Long / 3600.0}; };
    // Each point: the passage passes through it, well inside its range;
    // each leg: the passage bows off it less than the default XTE range.
    for (size_t i = 0; i < d.route.Points.size(); ++i) {
        auto [plat, plon] = deg(d.route.Points[i].Position.Wgs84);
        auto [vlat, vlon] = deg(DemoPassagePosition(d.pointSeconds[i]));
        double s = 0, azi = 0;
        rhumb.Inverse(vlat, vlon, plat, plon, s, azi);
        EXPECT_LT(s / 1852.0, 0.01) << "point " << i + 1;
        EXPECT_LE(std::fabs(d.route.Points[i].AlarmRange), 0.5f);
        if (i == 0) continue;
        auto [alat, alon] = deg(d.route.Points[i - 1].Position.Wgs84);
        double legS = 0, legAzi = 0, worst = 0;
        rhumb.Inverse(alat, alon, plat, plon, legS, legAzi);
        for (double t = d.pointSeconds[i - 1]; t <= d.pointSeconds[i]; t += 10) {
            auto [tlat, tlon] = deg(DemoPassagePosition(t));
            double ts = 0, tazi = 0;
            rhumb.Inverse(alat, alon, tlat, tlon, ts, tazi);
            worst = std::max(worst, std::fabs(ts * std::sin((tazi - legAzi) * M_PI / 180.0)) / 1852.0);
        }
        EXPECT_LT(worst, 0.3) << "leg " << i << " to " << i + 1;
    }
    // Some fix of the passage lies inside the firing range, the first not.
    std::vector<LatLong> ring = d.noGo.Ring();
    auto inside = [&](double t) {
        LatLong p = DemoPassagePosition(t);
        return PointInPolygon(p.Long, p.Lat, ring);
    };
    EXPECT_FALSE(inside(0));
    bool entered = false;
    for (int t = 0; t < DemoPassageSeconds() && !entered; t += 5) entered = inside(t);
    EXPECT_TRUE(entered);

    // Written once: a second run leaves the index as it is.
    test::TempDir dir;
    std::string why;
    std::vector<std::string> written;
    ASSERT_TRUE(WriteDemoStores(dir.path(), why, &written)) << why;
    EXPECT_EQ(written.size(), 3u);
    const std::string index = test::ReadFile(dir / "Routes/vst00000.rte");
    written.clear();
    ASSERT_TRUE(WriteDemoStores(dir.path(), why, &written));
    EXPECT_TRUE(written.empty());
    EXPECT_EQ(test::ReadFile(dir / "Routes/vst00000.rte"), index);
}

TEST(Replay, TheDemoPassageWithTheRouteActivatesItAtTheFirstFixAndSavesTheTrack) {
    Home home;
    Replayed r = Replay(home.path(), {"--route", "round island"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto modes = r.Of("mode");
    ASSERT_GE(modes.size(), 3u);
    EXPECT_EQ(modes[0]->Str("name"), "Connecting");
    EXPECT_EQ(modes[1]->Str("name"), "GPS");
    EXPECT_EQ(modes[1]->time, "2026-11-23T10:00:00.100");  // the first tick reads the first fix
    EXPECT_EQ(modes.back()->Str("name"), "None");           // the exit stops the GPS
    auto act = r.Of("activate");
    ASSERT_FALSE(act.empty());
    EXPECT_EQ(act[0]->Str("kind"), "route");
    EXPECT_EQ(act[0]->Str("name"), "ROUND ISLAND");
    EXPECT_EQ(act[0]->Str("point"), "WP001");
    EXPECT_EQ(act[0]->time, modes[1]->time);
    // The clock ran to a second past the last fix (11:40:07).
    EXPECT_EQ(r.events.back().time, "2026-11-23T11:40:08.000");
    // The exit saved the track of the passage: the day's track beside its log.
    const std::string track = "Logs/20261123.trk";
    EXPECT_GT(test::SplitLines(test::ReadFile(home.dir / track)).size(), 20u) << track;
}

TEST(Replay, AutopilotSentencesMatchRhumbBearingAndDistanceAtTheSameFixes) {
    Home home;
    home.Settings("GPSPort=1\nComPort1=" + (home.dir / "autopilot.nmea") + "\nAutopilotSettings=" +
                  std::to_string(1 | 16 | 32 | 128 | 256) + "\n");
    Replayed r = Replay(home.path(), {"--route", "ROUND ISLAND"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto out = r.Of("nmea_out");
    ASSERT_GT(out.size(), 1000u);
    // What was printed is what the port received.
    std::string written;
    for (const Event* e : out) written += e->Str("sentence") + "\r\n";
    EXPECT_EQ(test::ReadFile(home.dir / "autopilot.nmea"), written);

    const auto fixes = LogFixes();
    const DemoStores d = MakeDemoStores();
    const auto& rhumb = GeographicLib::Rhumb::WGS84();
    std::string fixTime;
    int checked = 0;
    for (const Event* e : out) {
        const std::vector<std::string> f = Fields(e->Str("sentence"));
        if (f[0] == "$GPRMC") fixTime = f[1];  // the burst's own fix
        if (f[0] != "$GPRMB" && f[0] != "$GPBWR") continue;
        ASSERT_TRUE(fixes.count(fixTime)) << fixTime;
        auto [vlat, vlon] = fixes.at(fixTime);
        // The destination: the route's point, by its identifier.
        const bool rmb = f[0] == "$GPRMB";
        const std::string id = rmb ? f[5] : f[12];
        const size_t point = size_t(std::stoi(id)) - 1;
        ASSERT_LT(point, d.route.Points.size());
        const LatLong to = d.route.Points[point].Position.Wgs84;
        double s = 0, azi = 0;
        rhumb.Inverse(vlat, vlon, to.Lat / 3600.0, to.Long / 3600.0, s, azi);
        const double nm = s / 1852.0, brg = std::fmod(azi + 360.0, 360.0);
        const double gotLat = rmb ? DegMin(f[6], f[7], 2) : DegMin(f[2], f[3], 2);
        const double gotLon = rmb ? DegMin(f[8], f[9], 3) : DegMin(f[4], f[5], 3);
        const double gotBrg = std::stod(rmb ? f[11] : f[6]);
        const double gotNm = std::stod(f[10]);  // RMB range, BWR distance
        EXPECT_NEAR(gotLat, to.Lat / 3600.0, 0.001 / 60 + 1e-9) << e->time;
        EXPECT_NEAR(gotLon, to.Long / 3600.0, 0.001 / 60 + 1e-9) << e->time;
        EXPECT_NEAR(gotNm, nm, 0.051) << e->time << " " << e->Str("sentence");
        double db = std::fabs(gotBrg - brg);
        EXPECT_LT(std::min(db, 360.0 - db), nm > 0.2 ? 0.06 : 1.0) << e->time << " " << e->Str("sentence");
        ++checked;
    }
    EXPECT_GT(checked, 1000);
}

TEST(Replay, ArrivalAlarmsAtEachPointAndYesAdvancesThroughTheRoute) {
    const size_t points = MakeDemoStores().route.Points.size();
    Home home;
    // Unanswered, the first point's window stays up and sounds at each fix.
    Replayed quiet = Replay(home.path(), {"--route", "ROUND ISLAND"});
    ASSERT_EQ(quiet.status, 0) << quiet.err;
    auto alarms = quiet.Of("alarm", "Waypoint Arrival");
    ASSERT_GT(alarms.size(), 10u);
    for (const Event* a : alarms) {
        EXPECT_NE(a->Str("text").find("WP001"), std::string::npos) << a->Str("text");
        EXPECT_TRUE(a->json.Member("beep")->boolean);
    }
    EXPECT_EQ(quiet.Of("activate").size(), 1u);

    Home home2;
    Replayed yes = Replay(home2.path(), {"--route", "ROUND ISLAND", "--answer", "Waypoint Arrival=Yes"});
    ASSERT_EQ(yes.status, 0) << yes.err;
    auto act = yes.Of("activate");
    ASSERT_EQ(act.size(), points);
    for (size_t i = 0; i < points; ++i) EXPECT_EQ(act[i]->Num("index"), (long long)i + 1);
    // Each point raised its alarm once, answered at once, before the next leg.
    auto up = yes.Of("alarm", "Waypoint Arrival");
    ASSERT_EQ(up.size(), points);
    for (size_t i = 0; i < points; ++i) {
        char id[24];
        std::snprintf(id, sizeof id, "WP%03zu", i + 1);
        EXPECT_NE(up[i]->Str("text").find(id), std::string::npos) << up[i]->Str("text");
        if (i + 1 < points) {
            EXPECT_LE(up[i]->time, act[i + 1]->time);
        }
    }
    EXPECT_EQ(yes.Of("alarm_closed", "Waypoint Arrival").size(), points);
    // The last point's Yes drops the route before the log ends.
    auto off = yes.Of("deactivate");
    ASSERT_FALSE(off.empty());
    EXPECT_LT(off[0]->time, "2026-11-23T11:40:08.000");
    EXPECT_GE(off[0]->time, up.back()->time);
}

TEST(Replay, TheFiringRangeRaisesTheBoundaryAlarm) {
    Home home;
    Replayed r = Replay(home.path(), {"--answer", "Vessel Entry=OK"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto alarms = r.Of("alarm", "Vessel Entry");
    ASSERT_EQ(alarms.size(), 1u);  // answered, it stays quiet until the vessel leaves
    EXPECT_NE(alarms[0]->Str("text").find("FIRING RANGE"), std::string::npos);
}

TEST(Replay, TheAutologWritesTheDaysLogOnMultiplesOfItsInterval) {
    Home home;
    // The day's log as the navigator left it: autolog on, every 10 minutes.
    MakeFolder(home.dir / "Logs");
    test::WriteFile(home.dir / "Logs/20261123.log",
                    "#2026-11-23#,\"\",\"\"\r\n\"\",\"\",\"\",\"\",\"\"\r\n1,10\r\n\"\",\"\",\"\",\"\",\"\"\r\n"
                    "\"\",\"\",\"\",\"\",\"\"\r\n0,0\r\n");
    Replayed r = Replay(home.path(), {});
    ASSERT_EQ(r.status, 0) << r.err;
    std::set<std::string> minutes;
    for (const Event* e : r.Of("log_entry")) {
        if (e->Num("kind") != 2) continue;
        std::string hhmm = e->time.substr(11, 5);
        EXPECT_EQ(hhmm.back(), '0') << e->time;
        minutes.insert(hhmm);
        EXPECT_FALSE(e->Str("Latitude").empty());
    }
    for (const char* m : {"10:10", "10:20", "10:30", "10:40", "10:50", "11:00", "11:10", "11:20", "11:30", "11:40"})
        EXPECT_TRUE(minutes.count(m)) << m;
    EXPECT_NE(test::ReadFile(home.dir / "Logs/20261123.log").find("AutoLog Position."), std::string::npos);
}

TEST(Replay, DamagedLinesAreSkippedAsThePortSkipsThem) {
    Home home;
    home.Settings("Checksums=True\nGPSPort=1\nComPort1=" + (home.dir / "ap.nmea") + "\n");
    // Ten minutes of the passage, then the same with damage between its lines.
    std::vector<std::string> lines = test::SplitLines(test::ReadFile(kDemoLog));
    std::string clean, damaged;
    int n = 0;
    for (const std::string& l : lines) {
        if (l.empty()) continue;
        if (++n > 2400) break;
        clean += l + "\n";
        damaged += l + "\n";
        if (n % 97 == 0) {
            std::string bad = l;
            bad[7] = bad[7] == '1' ? '2' : '1';  // a changed digit: the checksum fails
            damaged += bad + "\n";
        }
        if (n % 131 == 0) damaged += std::string("\0\xff\x01$GPGGA,235959,9", 15) + "\n";
        if (n % 211 == 0) damaged += l.substr(0, l.size() / 2) + "\n";  // cut short
        if (n % 307 == 0) damaged += std::string(400, '$') + "\n";
    }
    test::WriteFile(home.dir / "clean.nmea", clean);
    test::WriteFile(home.dir / "damaged.nmea", damaged);
    Replayed a = Replay(home.path(), {}, home.dir / "clean.nmea");
    Replayed b = Replay(home.path(), {}, home.dir / "damaged.nmea");
    ASSERT_EQ(a.status, 0) << a.err;
    ASSERT_EQ(b.status, 0) << b.err;
    ASSERT_GT(a.Of("nmea_out").size(), 100u);
    ASSERT_EQ(a.events.size(), b.events.size());
    for (size_t i = 0; i < a.events.size(); ++i) {
        EXPECT_EQ(a.events[i].time, b.events[i].time);
        EXPECT_EQ(a.events[i].Str("sentence"), b.events[i].Str("sentence")) << a.events[i].time;
    }
}

TEST(Replay, WhatIsMissingGivesAMessageAndStatusTwo) {
    Home home;
    struct Case {
        const char* what;
        std::vector<std::string> args;
        const char* says;
    };
    const std::string h = home.path();
    const Case cases[] = {
        {"no home", {kDemoLog, "--home", h + "/nowhere"}, "does not exist"},
        {"no log", {h + "/none.nmea", "--home", h}, "cannot read the log"},
        {"unknown waypoint database", {kDemoLog, "--home", h, "--waypoints", "Solent"}, "no waypoint database \"Solent\""},
        {"unknown route database", {kDemoLog, "--home", h, "--routes", "Solent"}, "no route database \"Solent\""},
        {"unknown boundary database", {kDemoLog, "--home", h, "--boundaries", "X"}, "no boundary database \"X\""},
        {"unknown route", {kDemoLog, "--home", h, "--route", "ROUND ROCKALL"}, "no route \"ROUND ROCKALL\""},
        {"usage", {kDemoLog}, "usage: ombra-cli replay"},
    };
    for (const Case& c : cases) {
        std::vector<std::string> argv{test::CliPath(), "replay"};
        argv.insert(argv.end(), c.args.begin(), c.args.end());
        test::RunResult r = test::Run(argv);
        EXPECT_EQ(r.exitCode, 2) << c.what;
        EXPECT_NE(r.err.find(c.says), std::string::npos) << c.what << ": " << r.err;
    }
}

TEST(Replay, TheOutputGoesToAPtyAsWrittenAndNeverIntoTheLog) {
    // Twelve seconds of the passage.
    std::string part;
    int n = 0;
    for (const std::string& l : test::SplitLines(test::ReadFile(kDemoLog)))
        if (!l.empty() && ++n <= 55) part += l + "\n";
    Home home;
    test::WriteFile(home.dir / "short.nmea", part);

    int master = -1, slave = -1;
    char name[256] = {};
    ASSERT_EQ(openpty(&master, &slave, name, nullptr, nullptr), 0);
    home.Settings("GPSPort=1\nComPort1=" + std::string(name) + "\n");
    Replayed r = Replay(home.path(), {"--route", "ROUND ISLAND"}, home.dir / "short.nmea");
    ASSERT_EQ(r.status, 0) << r.err;
    std::string printed;
    for (const Event* e : r.Of("nmea_out")) {
        EXPECT_EQ(e->Str("port"), name);
        printed += e->Str("sentence") + "\r\n";
    }
    ASSERT_GT(printed.size(), 200u);
    ::fcntl(master, F_SETFL, O_NONBLOCK);
    std::string got;
    char buf[4096];
    for (ssize_t k; (k = ::read(master, buf, sizeof buf)) > 0;) got.append(buf, size_t(k));
    EXPECT_EQ(got, printed);
    ::close(slave);
    ::close(master);

    // A GPS port whose device is the log itself is not written.
    home.Settings("GPSPort=1\nComPort1=" + (home.dir / "short.nmea") + "\n");
    r = Replay(home.path(), {}, home.dir / "short.nmea");
    ASSERT_EQ(r.status, 0);
    EXPECT_TRUE(r.Of("nmea_out").empty());
    EXPECT_EQ(test::ReadFile(home.dir / "short.nmea"), part);
}
