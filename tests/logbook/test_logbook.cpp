// The day's log on its own: the file byte for byte against hand-written
// files, the reader on damaged files, entries, rollover, older days and
// the autolog, over a host that records what the log asks of it.
#include <gtest/gtest.h>

#include "core/Paths.h"
#include "logbook/Logs.h"
#include "tests/support/Rig.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

const std::string kBlankDay =
    "#2026-11-23#,\"\",\"\"\r\n"
    "\"\",\"\",\"\",\"\",\"\"\r\n"
    "0,60\r\n"
    "\"\",\"\",\"\",\"\",\"\"\r\n"
    "\"\",\"\",\"\",\"\",\"\"\r\n"
    "0,0\r\n";

// A day with one entry and one forecast, as the plotter writes it.
const std::string kOneEntry =
    "#2026-11-20#,\"Tarnel\",\"Vestrane\"\r\n"
    "\"3\",\"1204.5\",\"09:30\",\"40 L\",\"120 L\"\r\n"
    "1,30\r\n"
    "\"Tarnel\",\"04:12\",\"10:25\",\"16:40\",\"22:51\"\r\n"
    "\"Dover\",\"03:02\",\"09:15\",\"15:31\",\"21:44\"\r\n"
    "1,1\r\n"
    "\"10:00:00\",\"50 00.000 N\",\"012 00.000 W\"\r\n"
    "\"090.0 °T\",\"6.0 kn\",\"WP1\"\r\n"
    "\"2.50 NM\",\"045.0 °T\",\"1234\"\r\n"
    "\"15\",\"SW\",\"1012\",\"Reefed, wind rising\"\r\n"
    "\"06:00\"\r\n\"Plymouth\"\r\n\"SW 5\"\r\n\"W 6\"\r\n\"Rain\"\r\n\"Moderate\"\r\n";

struct Host : LogHost {
    bool active = true;
    bool answer = true;           // the entry window's OK
    std::string typed = "typed";  // what the navigator types as narrative
    std::vector<std::pair<int, std::string>> added;
    std::vector<std::string> track;  // "load <file> <record>", "save <file>", "record <file>"
    int changed = 0;
    bool VesselActive() override { return active; }
    void Snapshot(LogEntry& e) override {
        e.Latitude = "50 00.000 N";
        e.Longitude = "012 00.000 W";
        e.Course = "090.0 °T";
        e.Speed = "6.0 kn";
        e.NextWaypoint = "None";
        e.Range = e.Bearing = "N/A";
    }
    bool ShowLogEntry(LogEntry& e, const DateTime&) override {
        if (answer) e.Narrative = typed;
        return answer;
    }
    void LogEntryAdded(LogEntryKind k, const LogEntry& e) override { added.emplace_back(int(k), e.Narrative); }
    void LogChanged() override { ++changed; }
    static std::string Name(const std::string& p) { return p.substr(p.find_last_of("\\/") + 1); }
    void LoadTrack(const std::string& p, bool rec) override { track.push_back("load " + Name(p) + (rec ? " 1" : " 0")); }
    void SaveTrack(const std::string& p) override { track.push_back("save " + Name(p)); }
    void RecordTrack(const std::string& p) override { track.push_back("record " + (p.empty() ? "-" : Name(p))); }
    void SaveTrackSwitched(bool on) override { track.push_back(on ? "switched on" : "switched off"); }
};

struct LogRig {
    test::FakePlatform fake;
    test::TempDir dir;
    Host host;
    Logs logs{fake.errors, fake.dialogs, fake.clock, host};
    LogRig(int hour = 12) {
        fake.clock.now = DateTime{2026, 11, 23, hour, 0, 0, 0};
        WriteFolder();
    }
    void WriteFolder() { MakeFolder(dir / "Logs"); }
    std::string File(const std::string& name) const { return dir / ("Logs/" + name); }
    void Init() { logs.InitLogs(dir.path()); }
    std::vector<std::string> Errors() const {
        std::vector<std::string> out;
        for (const auto& a : fake.dialogs.asked) out.push_back(a.text);
        return out;
    }
};

}  // namespace

TEST(LogFile, HandWrittenFilesReadAndWriteBackByteForByte) {
    for (const std::string* text : {&kBlankDay, &kOneEntry}) {
        DayLog day;
        LogReadOutcome r = ReadLogText(*text, day);
        ASSERT_TRUE(r.whole) << r.fault;
        EXPECT_EQ(LogFileText(day), *text);
    }
    DayLog day;
    ASSERT_TRUE(ReadLogText(kOneEntry, day).whole);
    EXPECT_EQ(test::SplitLines(kBlankDay).size(), 6u);
    EXPECT_EQ(day.Header.LogDate, (DateTime{2026, 11, 20}));
    EXPECT_EQ(day.Header.AutoInterval, 30);
    EXPECT_EQ(day.Header.PortTide[5], "Dover");
    ASSERT_EQ(day.Entries.size(), 1u);
    EXPECT_EQ(day.Entries[0].Narrative, "Reefed, wind rising");
    EXPECT_EQ(day.Entries[0].Barometer, "1012");
    ASSERT_EQ(day.Forecasts.size(), 1u);
    EXPECT_EQ(day.Forecasts[0].Visibility, "Moderate");
}

// No escape for a double quote: what follows the quote up to the comma is
// dropped and every later field moves one place on; a line break inside
// quotes belongs to the value, and a missing line shifts what follows.
TEST(LogFile, CountedFieldsWithQuotesLineBreaksAndMissingLines) {
    DayLog day;
    day.Header.LogDate = DateTime{2026, 11, 23};
    for (int i = 0; i < 2; ++i) {
        LogEntry& e = day.Entries.emplace_back();
        for (int f = 0; f < LogEntry::kFieldCount; ++f) e.Field(f) = "e" + std::to_string(i) + "f" + std::to_string(f);
    }
    day.Entries[0].Narrative = "say \"stop, now\" twice";
    DayLog back;
    ASSERT_TRUE(ReadLogText(LogFileText(day), back).whole);
    ASSERT_EQ(back.Entries.size(), 2u);
    EXPECT_EQ(back.Entries[0].Narrative, "say ");
    EXPECT_EQ(back.Entries[1].Time, "now\" twice\"");
    EXPECT_EQ(back.Entries[1].Latitude, "e1f0");
    EXPECT_EQ(back.Entries[1].Narrative, "e1f11");

    std::string broken = kOneEntry;
    broken.replace(broken.find("Reefed, wind"), 12, "Reefed,\r\nwind");
    ASSERT_TRUE(ReadLogText(broken, back).whole);
    EXPECT_EQ(back.Entries[0].Narrative, "Reefed,\r\nwind rising");
    EXPECT_EQ(back.Forecasts[0].Time, "06:00");

    std::string missing = kOneEntry;
    missing.erase(missing.find("\"3\","), missing.find("1,30") - missing.find("\"3\","));
    LogReadOutcome r = ReadLogText(missing, back);
    EXPECT_FALSE(r.whole);  // the header ran into the numbers
    EXPECT_EQ(back.Header.NumCrew, "1");
}

// The reader on damaged files: a clear fault with its line, what was read
// kept, and nothing allocated by a count the text cannot hold.
TEST(LogFile, DamagedFilesStopWithAFaultAndKeepWhatWasRead) {
    struct Case {
        const char* name;
        std::string text;
        std::string fault;
        int line;
        size_t entries;
    } cases[] = {
        {"empty", "", "Input past end of file", 1, 0},
        {"short header", kBlankDay.substr(0, 40), "Input past end of file", 3, 0},
        {"no date", "\"x\",\"a\",\"b\"\r\n", "Type mismatch", 1, 0},
        {"huge count", kBlankDay.substr(0, kBlankDay.size() - 5) + "32767,32767\r\n\"1\",\"2\"\r\n",
         "Input past end of file", 8, 1},
        {"count overflows", kBlankDay.substr(0, kBlankDay.size() - 5) + "99999,0\r\n", "Overflow", 6, 0},
        {"negative count", kBlankDay.substr(0, kBlankDay.size() - 5) + "-3,0\r\n", "Subscript out of range", 6, 0},
        {"unclosed quote", kOneEntry.substr(0, kOneEntry.find("Reefed")) + "Reefed", "Input past end of file", 10, 1},
        {"binary", std::string("\0\xff\x1a\"#,,\r\r\n", 10), "Type mismatch", 1, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        DayLog day;
        LogReadOutcome r = ReadLogText(c.text, day);
        EXPECT_FALSE(r.whole);
        EXPECT_NE(r.fault.find(c.fault), std::string::npos) << r.fault;
        EXPECT_EQ(r.line, c.line);
        EXPECT_EQ(day.Entries.size(), c.entries);
    }
    DayLog day;
    ReadLogText(kOneEntry.substr(0, kOneEntry.find("1,1")), day);
    EXPECT_EQ(day.Header.CurrentPort, "Tarnel");
    EXPECT_EQ(day.Header.PortTide[9], "21:44");
}

TEST(LogFile, FileNamesAreDays) {
    DateTime d;
    EXPECT_TRUE(LogDateFromName("20261123.log", d));
    EXPECT_EQ(d, (DateTime{2026, 11, 23}));
    EXPECT_EQ(LogBaseName(d), "20261123");
    for (const char* bad : {"2026113.log", "20261332.log", "notes.log", "2026-11-23.log"})
        EXPECT_FALSE(LogDateFromName(bad, d)) << bad;
}

TEST(Logs, ANewDaySavesSixLinesAndTodaysFileOpensAtStart) {
    LogRig rig;
    rig.Init();
    EXPECT_FALSE(rig.logs.LogInUse());
    rig.logs.SaveLog();  // nothing in use: nothing written
    EXPECT_FALSE(FileExists(rig.File("20261123.log")));
    rig.logs.NewLog();
    rig.logs.SaveLog();
    EXPECT_EQ(test::ReadFile(rig.File("20261123.log")), kBlankDay);
    EXPECT_EQ(rig.host.track.back(), "save 20261123.trk");

    LogRig again;
    test::WriteFile(again.File("20261123.log"), kOneEntry);
    again.Init();
    EXPECT_TRUE(again.logs.LogInUse());
    EXPECT_EQ(again.logs.Day.Entries.size(), 1u);
    // The content's date rules: today's name held the 20th, which is not
    // today, so its track is read but not recorded into...
    EXPECT_EQ(again.host.track.back(), "load 20261120.trk 0");
    // ...and a save goes to the 20th's name, leaving the file opened alone.
    again.logs.Day.Header.CurrentPort = "Harbour";
    again.logs.SaveLog();
    EXPECT_EQ(test::ReadFile(again.File("20261123.log")), kOneEntry);
    EXPECT_NE(test::ReadFile(again.File("20261120.log")).find("\"Harbour\""), std::string::npos);
}

TEST(Logs, OlderDaysOpenReadOnlyAndNeverWithAVesselActive) {
    LogRig rig;
    test::WriteFile(rig.File("20261120.log"), kOneEntry);
    test::WriteFile(rig.File("20261123.log"), kBlankDay);
    rig.Init();
    rig.host.active = true;
    rig.logs.OpenOlderLog();
    ASSERT_EQ(rig.fake.dialogs.asked.size(), 1u);
    EXPECT_EQ(rig.fake.dialogs.asked[0].text, "Older logbook cannot be opened with a currently active vessel");
    EXPECT_FALSE(rig.logs.OlderLog());

    rig.host.active = false;
    rig.fake.dialogs.picks = {0};
    rig.logs.OpenOlderLog();
    EXPECT_EQ(rig.fake.dialogs.asked.back().text, "Log Files");
    EXPECT_TRUE(rig.logs.OlderLog());
    EXPECT_FALSE(rig.logs.LogIsToday());
    EXPECT_EQ(rig.logs.Day.Header.CurrentPort, "Tarnel");
    EXPECT_EQ(rig.host.track.back(), "load 20261120.trk 0");
    rig.logs.Day.Header.CurrentPort = "Changed";
    rig.logs.SaveLog();
    EXPECT_EQ(test::ReadFile(rig.File("20261120.log")), kOneEntry);
    // The next entry brings today's log back, and goes there.
    rig.host.active = true;
    rig.logs.AddLogEntry(LogEntryKind::PoorGPS);
    EXPECT_TRUE(rig.logs.LogIsToday());
    ASSERT_EQ(rig.logs.Day.Entries.size(), 1u);
    EXPECT_EQ(test::ReadFile(rig.File("20261120.log")), kOneEntry);
}

TEST(Logs, DamagedFileIsReportedUnderOpenLogAndKeptAside) {
    LogRig rig;
    const std::string cut = kOneEntry.substr(0, kOneEntry.find("\"15\""));
    test::WriteFile(rig.File("20261123.log"), cut);
    rig.Init();
    ASSERT_FALSE(rig.Errors().empty());
    EXPECT_EQ(rig.Errors()[0].rfind("Error in 'OpenLog'", 0), 0u) << rig.Errors()[0];
    EXPECT_EQ(rig.logs.Day.Entries.size(), 1u);
    EXPECT_EQ(rig.logs.Day.Entries[0].LogReading, "1234");
    EXPECT_EQ(test::ReadFile(rig.File("20261123.log.damaged")), cut);
}

TEST(Logs, EntriesCarryTheSnapshotAndTheirKindsNarrative) {
    struct Case {
        LogEntryKind kind;
        std::string text, narrative;
        bool answer;
        size_t stored;
    } cases[] = {
        {LogEntryKind::AutoLog, "", "AutoLog Position.", true, 1},
        {LogEntryKind::LostGPS, "", "Lost GPS signal.", true, 1},
        {LogEntryKind::PoorGPS, "", "Poor GPS signal.", true, 1},
        {LogEntryKind::RegainedGPS, "", "Regained GPS signal.", true, 1},
        {LogEntryKind::ManOverboard, "", "Man overboard condition.", true, 1},
        {LogEntryKind::ManOverboardCleared, "", "Man overboard condition cleared.", true, 1},
        {LogEntryKind::FilePosition, "BOAT7", "BOAT7File position data updated for ID:", true, 1},
        {LogEntryKind(9), "", "", true, 1},
        {LogEntryKind::Menu, "", "typed", true, 1},
        {LogEntryKind::LogWindow, "", "typed", false, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(int(c.kind));
        LogRig rig;
        rig.Init();
        rig.fake.clock.now = DateTime{2026, 11, 23, 14, 5, 9, 0};
        rig.host.answer = c.answer;
        rig.logs.AddLogEntry(c.kind, c.text);
        ASSERT_EQ(rig.logs.Day.Entries.size(), c.stored);
        if (!c.stored) continue;
        const LogEntry& e = rig.logs.Day.Entries[0];
        EXPECT_EQ(e.Narrative, c.narrative);
        EXPECT_EQ(e.Time, "14:05:09");
        EXPECT_EQ(e.Latitude, "50 00.000 N");
        EXPECT_EQ(e.NextWaypoint, "None");
        EXPECT_EQ(rig.host.added.back(), std::make_pair(int(c.kind), c.narrative));
    }
    LogRig rig;
    rig.Init();
    rig.host.active = false;
    rig.logs.AddLogEntry(LogEntryKind::Menu);
    rig.logs.AddLogEntry(LogEntryKind::LostGPS);
    EXPECT_FALSE(rig.logs.LogInUse());
    EXPECT_TRUE(rig.host.added.empty());
}

// Entries fall on whole multiples of the interval from midnight.
TEST(Logs, AutoLogFallsOnMultiplesOfTheIntervalFromMidnight) {
    struct Case {
        int h, m, s, ms;
        int16_t autoLog;
        int32_t interval;
        size_t entries;
    } cases[] = {
        {0, 0, 0, 0, 1, 60, 1},    {0, 30, 0, 0, 1, 60, 0},  {0, 30, 0, 0, 1, 30, 1},
        {0, 59, 59, 600, 1, 60, 1}, {1, 0, 0, 499, 1, 60, 1}, {1, 0, 0, 500, 1, 60, 0},
        {13, 0, 0, 0, 0, 60, 0},   {13, 7, 0, 0, 1, 1, 1},   {13, 7, 1, 0, 1, 1, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.h) + ":" + std::to_string(c.m) + ":" + std::to_string(c.s));
        LogRig rig;
        rig.Init();
        rig.logs.NewLog();
        rig.logs.Day.Header.AutoLog = c.autoLog;
        rig.logs.Day.Header.AutoInterval = c.interval;
        rig.fake.clock.now = DateTime{2026, 11, 23, c.h, c.m, c.s, c.ms};
        rig.logs.AutoLogTick();
        EXPECT_EQ(rig.logs.Day.Entries.size(), c.entries);
        EXPECT_TRUE(rig.Errors().empty());
    }
    LogRig rig;
    rig.Init();
    rig.logs.NewLog();
    rig.logs.Day.Header.AutoLog = 1;
    rig.logs.Day.Header.AutoInterval = 0;
    rig.logs.AutoLogTick();
    rig.logs.AutoLogTick();
    ASSERT_EQ(rig.Errors().size(), 2u);
    EXPECT_EQ(rig.Errors()[0], "Error in 'AutoLogTick'\nDivision by zero");
}

TEST(Logs, RolloverSavesTheOldDayAndStartsTheNew) {
    LogRig rig(23);
    rig.Init();
    rig.logs.AddLogEntry(LogEntryKind::PoorGPS);
    ASSERT_TRUE(rig.logs.LogIsToday());
    rig.fake.clock.now = DateTime{2026, 11, 24, 0, 0, 1, 0};
    rig.logs.AddLogEntry(LogEntryKind::LostGPS);
    EXPECT_EQ(rig.logs.Day.Header.LogDate, (DateTime{2026, 11, 24}));
    ASSERT_EQ(rig.logs.Day.Entries.size(), 1u);
    EXPECT_EQ(rig.logs.Day.Entries[0].Narrative, "Lost GPS signal.");
    const std::string old = test::ReadFile(rig.File("20261123.log"));
    EXPECT_NE(old.find("Poor GPS signal."), std::string::npos);
    EXPECT_EQ(old.find("Lost GPS"), std::string::npos);
    // The old day's track was saved under its name, the new day records anew.
    EXPECT_EQ(rig.host.track.back(), "load 20261124.trk 1");
}
