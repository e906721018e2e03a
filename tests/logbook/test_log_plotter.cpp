// The log in the running plotter: GPS events and the autolog reach the
// day's log from the vessel cycle, and midnight rolls the log to the new
// day's file before the first entry after it is stored.
#include <gtest/gtest.h>

#include <cstdio>

#include "core/Paths.h"
#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"
#include "plotter/WindowlessShell.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {
struct LogShell : WindowlessShell {
    std::vector<std::string> entries;  // "<date of the day> <kind> <time> <narrative>"
    Plotter* p = nullptr;
    void LogEntryAdded(LogEntryKind k, const LogEntry& e) override {
        entries.push_back(LogBaseName(p->logs().Day.Header.LogDate) + " " + std::to_string(int(k)) + " " + e.Time +
                          " " + e.Narrative);
    }
};

std::string Gga(const DateTime& t) {
    char body[128];
    std::snprintf(body, sizeof body, "GPGGA,%02d%02d%02d,5000.000,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,", t.hour,
                  t.minute, t.second);
    unsigned char sum = 0;
    for (const char* c = body; *c; ++c) sum ^= static_cast<unsigned char>(*c);
    char out[160];
    std::snprintf(out, sizeof out, "$%s*%02X\r\n", body, sum);
    return out;
}

struct Rig {
    test::TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    ManualClock clock;
    NoEvents events;
    LogShell shell;
    ScriptedComms comms;
    Plotter plotter{{store, dialogs, clock, events, shell, &comms}};
    Rig() {
        store.Write("Vestrane", "Tarnel", "AutoStartupGPS", "2");
        store.Write("Vestrane", "Tarnel", "GPSPort", "1");
        clock.now = DateTime{2026, 11, 23, 23, 59, 30, 0};
        shell.p = &plotter;
    }
    void Second(bool fix) {
        if (fix) comms.Feed(1, Gga(clock.now));
        for (int i = 0; i < 10; ++i) {
            plotter.Tick();
            clock.Advance(0.1);
        }
    }
    std::string LogFile(const char* name) { return NativePath(ResolvePath(plotter.logs().Folder() + name)); }
};
}  // namespace

TEST(LogInThePlotter, MidnightRollsTheLogOverBeforeTheFirstEntryOfTheNewDay) {
    Rig rig;
    ASSERT_TRUE(rig.plotter.Start("NOSPLASH", rig.dir / "ombra", rig.dir / "home", ""));
    Logs& logs = rig.plotter.logs();
    logs.NewLog();
    logs.Day.Header.AutoLog = 1;
    logs.Day.Header.AutoInterval = 60;
    while (rig.clock.now.minute == 59 && rig.clock.now.second < 50) rig.Second(true);
    ASSERT_TRUE(rig.plotter.VesselActive());
    // Silence: the fix goes some twenty seconds on, after midnight.
    for (int s = 0; s < 30 && rig.shell.entries.size() < 2; ++s) rig.Second(false);
    rig.Second(true);  // and comes back
    ASSERT_EQ(rig.shell.entries.size(), 3u);
    EXPECT_EQ(rig.shell.entries[0], "20261124 2 00:00:00 AutoLog Position.");
    // The first cycle after the fix runs out finds it poor.
    EXPECT_EQ(rig.shell.entries[1].substr(0, 17), "20261124 4 00:00:") << rig.shell.entries[1];
    EXPECT_NE(rig.shell.entries[1].find("Poor GPS signal."), std::string::npos);
    EXPECT_NE(rig.shell.entries[2].find("Regained GPS signal."), std::string::npos);
    // The old day was saved, with nothing of the new one in it.
    const std::string old = test::ReadFile(rig.LogFile("20261123.log"));
    EXPECT_EQ(test::SplitLines(old).size(), 6u);
    EXPECT_NE(old.find("\r\n1,60\r\n"), std::string::npos);
    // Both days' tracks are on disk before any exit: the old one saved at
    // the rollover, the new one within a minute of its first point.
    EXPECT_TRUE(FileExists(rig.LogFile("20261123.trk")));
    for (int s = 0; s < 70; ++s) rig.Second(true);
    EXPECT_GE(test::SplitLines(test::ReadFile(rig.LogFile("20261124.trk"))).size(), 3u);
    // The exit saves today's log and its track beside it.
    rig.plotter.Close(0, 0, 0, 800, 600);
    const std::string today = test::ReadFile(rig.LogFile("20261124.log"));
    EXPECT_EQ(today.substr(0, 12), "#2026-11-24#");
    EXPECT_NE(today.find("\r\n3,0\r\n"), std::string::npos);
    EXPECT_NE(today.find("\"50° 00.000 ´N\",\"12° 00.000 ´W\""), std::string::npos) << today;
    EXPECT_TRUE(FileExists(rig.LogFile("20261124.trk")));
}

// With no vessel active nothing is logged, whatever asks.
TEST(LogInThePlotter, NoVesselNoEntry) {
    Rig rig;
    rig.store.Write("Vestrane", "Tarnel", "AutoStartupGPS", "0");
    ASSERT_TRUE(rig.plotter.Start("NOSPLASH", rig.dir / "ombra", rig.dir / "home", ""));
    ASSERT_FALSE(rig.plotter.VesselActive());
    for (LogEntryKind k : {LogEntryKind::Menu, LogEntryKind::AutoLog, LogEntryKind::LostGPS})
        rig.plotter.AddLogEntry(k);
    EXPECT_TRUE(rig.shell.entries.empty());
    EXPECT_FALSE(rig.plotter.logs().LogInUse());
}
