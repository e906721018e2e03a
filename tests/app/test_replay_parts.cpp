// The pieces of the headless replay: the log's clock, the settings file
// read without Qt (checked against Qt's own reader), the event text, the
// questions answered from the command line, and the arguments.
#include <gtest/gtest.h>

#include <QSettings>
#include <sstream>

#include "app/cli/replay/IniSnapshot.h"
#include "app/cli/replay/Replay.h"
#include "app/cli/replay/ReplayLog.h"
#include "app/cli/replay/ReplayServices.h"
#include "instruments/NmeaText.h"
#include "platform/fake/ManualClock.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {

std::string S(const std::string& body) { return "$" + body + "*" + NmeaChecksum(body) + "\r\n"; }
std::string Gga(const char* t) { return S(std::string("GPGGA,") + t + ",5000.000,N,01200.000,W,1,08,0.9,5.0,M,50.0,M,,"); }
std::string Rmc(const char* t, const char* date) {
    return S(std::string("GPRMC,") + t + ",A,5000.000,N,01200.000,W,6.0,90.0," + date + ",3.0,W");
}
const std::string kVtg = S("GPVTG,090.0,T,,M,6.0,N,11.1,K");

// Seconds after 23/11/2026 00:00 of a serial.
double Since(double serial) { return (serial - DateTime{2026, 11, 23}.Serial()) * 86400.0; }

}  // namespace

TEST(ReplayLog, EachLineComesAtTheTimeOfTheLastGoodFixBeforeIt) {
    struct Case {
        const char* what;
        std::vector<std::string> lines;
        double start;                // seconds after 23/11/2026 00:00
        std::vector<double> due;     // of each line handed over
    };
    std::string bad = Gga("100005");
    bad[bad.size() - 4] ^= 1;  // a checksum digit damaged
    const Case cases[] = {
        {"plain", {Gga("100000"), kVtg, Rmc("100001", "231126"), Gga("100002")}, 36000, {36000, 36000, 36001, 36002}},
        {"lines before the first fix come with it", {kVtg, kVtg, Gga("100000.50")}, 36000.5, {36000.5, 36000.5, 36000.5}},
        {"a damaged or impossible time moves nothing",
         {Rmc("100000", "231126"), bad, Gga("256000"), Gga("1000x1"), Gga("100001")}, 36000, {36000, 36000, 36000, 36000, 36001}},
        {"midnight: the next day", {Rmc("235959", "231126"), Gga("000001")}, 86399, {86399, 86401}},
        {"the first RMC after midnight counts back a day", {Gga("235958"), Rmc("000002", "241126")}, 86398, {86398, 86402}},
        {"a late sentence comes at once", {Gga("100010"), Gga("100002"), Gga("100011")}, 36010, {36010, 36010, 36011}},
        {"a run over 255 bytes is skipped whole", {Gga("100000"), std::string(300, 'A') + "\r\n", Gga("100001")}, 36000, {36000, 36001}},
        {"the last line without its line end", {Rmc("100000", "231126"), "$GPVTG,1"}, 36000, {36000, 36000}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        test::TempDir dir;
        std::string text;
        for (const std::string& l : c.lines) text += l;
        test::WriteFile(dir / "log.nmea", text);
        ReplayLog log;
        std::string why;
        ASSERT_TRUE(log.Open(dir / "log.nmea", why)) << why;
        LogStart start;
        ASSERT_TRUE(log.FindStart(start, DateTime{2026, 11, 23}));
        EXPECT_NEAR(Since(start.when.Serial()), c.start, 1e-3);
        std::vector<double> due;
        LogLine line;
        while (log.Next(line)) due.push_back(Since(line.due));
        ASSERT_EQ(due.size(), c.due.size());
        for (size_t i = 0; i < due.size(); ++i) EXPECT_NEAR(due[i], c.due[i], 1e-3) << "line " << i;
    }
}

TEST(ReplayLog, TheDayComesFromRmcElseFromTheFallbackAndAFixIsNeeded) {
    test::TempDir dir;
    ReplayLog log;
    std::string why;
    LogStart start;
    test::WriteFile(dir / "a.nmea", Gga("120000") + Rmc("120001", "010327"));
    ASSERT_TRUE(log.Open(dir / "a.nmea", why));
    ASSERT_TRUE(log.FindStart(start, DateTime{2026, 11, 23}));
    EXPECT_TRUE(start.dated);
    EXPECT_EQ(start.when, (DateTime{2027, 3, 1, 12, 0, 0, 0}));
    EXPECT_EQ(start.fixes, 2);

    test::WriteFile(dir / "b.nmea", Gga("120000") + kVtg);
    ASSERT_TRUE(log.Open(dir / "b.nmea", why));
    ASSERT_TRUE(log.FindStart(start, DateTime{2026, 11, 23, 17, 3, 2, 0}));
    EXPECT_FALSE(start.dated);
    EXPECT_EQ(start.when, (DateTime{2026, 11, 23, 12, 0, 0, 0}));

    test::WriteFile(dir / "c.nmea", kVtg + "garbage\r\n" + std::string("\0\xff$GPGGA,", 10));
    ASSERT_TRUE(log.Open(dir / "c.nmea", why));
    EXPECT_FALSE(log.FindStart(start, DateTime{2026, 11, 23}));
    EXPECT_FALSE(log.Open(dir / "missing.nmea", why));
}

TEST(IniSnapshot, ReadsTheSettingsFileAsQtDoes) {
    // Each value line as a navigator or the program might have written it.
    const char* const values[] = {
        "plain value  ", "\"quoted, with comma\"", "a,b", "x ; a note", "C:\\\\dir\\\\f", "\"esc\\\"q\\tT\"",
        " spaced ", "@String(xx)", "@@at", "\"\"", "", "file:///p/x.nmea?rate=10&loop=0", "\"semi;colon\"",
        "q\\\"uote", "d\xc3\xa9g", "tab\\there", "\\x41\\102", "/dev/ttyUSB0",
    };
    std::string text = "; a comment\nTop=1\n[Tarnel]\n";
    for (size_t i = 0; i < std::size(values); ++i) text += "K" + std::to_string(i) + "=" + values[i] + "\n";
    text += "Coast%20Linestyle=3\nK0=again\nLong=first \\\nsecond\n[Ebbline]\nEbblineDir=/e\n";
    test::TempDir dir;
    test::WriteFile(dir / "Vestrane.ini", text);
    IniSnapshot mine;
    std::string why;
    ASSERT_TRUE(mine.Load(dir / "Vestrane.ini", why)) << why;
    QSettings qt(QString::fromStdString(dir / "Vestrane.ini"), QSettings::IniFormat);
    QStringList keys = qt.allKeys();
    ASSERT_GE(keys.size(), qsizetype(std::size(values)));
    for (const QString& k : keys) {
        std::string full = k.toStdString();
        size_t slash = full.find('/');
        std::string section = slash == std::string::npos ? "General" : full.substr(0, slash);
        std::string key = slash == std::string::npos ? full : full.substr(slash + 1);
        EXPECT_EQ(mine.Get(section, key), qt.value(k).toString().toStdString()) << full;
    }
    EXPECT_FALSE(mine.Read("Vestrane", "Tarnel", "Missing"));
    // Writes stay in memory.
    mine.Write("Vestrane", "Tarnel", "K1", "changed");
    EXPECT_EQ(mine.Get("Tarnel", "K1"), "changed");
    EXPECT_EQ(test::ReadFile(dir / "Vestrane.ini"), text);
}

TEST(ReplayEvents, JsonTextEscapesWhatJsonCannotHold) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain", "\"plain\""},
        {"a \"q\" \\ b", "\"a \\\"q\\\" \\\\ b\""},
        {"line\r\n\t\x01", "\"line\\r\\n\\t\\u0001\""},
        {"d\xc3\xa9g", "\"d\xc3\xa9g\""},          // UTF-8 kept
        {"d\xe9g", "\"d\\u00e9g\""},               // a Latin-1 byte escaped
        {"\xc3", "\"\\u00c3\""},                   // a cut sequence
        {"\xed\xa0\x80", "\"\\u00ed\\u00a0\\u0080\""},  // a surrogate is not UTF-8
    };
    for (const auto& [in, want] : cases) {
        std::string out;
        AppendJsonString(out, in);
        EXPECT_EQ(out, want);
    }
    EXPECT_EQ(EventLine(DateTime{2026, 11, 23, 9, 5, 7, 40}, "mode").Add("mode", 2LL).Add("beep", true).Text(),
              "{\"time\":\"2026-11-23T09:05:07.040\",\"event\":\"mode\",\"mode\":2,\"beep\":true}\n");
}

TEST(ReplayDialogs, AnAnswerByTitlePressesThatButtonIfTheBoxHasIt) {
    struct Case {
        int style;
        const char* answer;  // "" none
        int reply;
        const char* told;
    };
    const Case cases[] = {
        {mb::YesNo | mb::DefaultButton2, "", mb::No, "No"},
        {mb::YesNo | mb::DefaultButton2, "Yes", mb::Yes, "Yes"},
        {mb::YesNo, "yes", mb::Yes, "Yes"},
        {mb::OKOnly, "Yes", mb::OK, "OK"},
        {mb::YesNoCancel | mb::DefaultButton3, "", mb::Cancel, "Cancel"},
        {mb::RetryCancel, "Cancel", mb::Cancel, "Cancel"},
    };
    for (const Case& c : cases) {
        ManualClock clock;
        std::ostringstream out;
        EventSink sink(out, clock);
        Answers answers;
        if (*c.answer) answers["Tarnel"] = c.answer;
        ReplayDialogs d(sink, answers);
        EXPECT_EQ(d.MsgBox("Connect?", c.style, "Tarnel"), c.reply) << c.style << " " << c.answer;
        EXPECT_NE(out.str().find(std::string("\"answer\":\"") + c.told + "\""), std::string::npos) << out.str();
    }
}

TEST(ReplayArgs, TheInterfaceAsNavigatorsTypeIt) {
    struct Case {
        std::vector<std::string> args;
        bool ok;
        size_t answers;
    };
    const Case cases[] = {
        {{"log.nmea", "--home", "h"}, true, 0},
        {{"log.nmea", "--home", "h", "--routes", "R", "--route", "ROUND ISLAND", "--answer", "Waypoint Arrival=Yes",
          "XTE Alarm=OK", "--waypoints", "W", "--boundaries", "B"},
         true, 2},
        {{"--answer", "Vessel Entry=OK", "--home", "h", "log.nmea"}, true, 1},
        {{"log.nmea"}, false, 0},
        {{"--home", "h"}, false, 0},
        {{"log.nmea", "--home"}, false, 0},
        {{"log.nmea", "--home", "h", "--answer"}, false, 0},
        {{"log.nmea", "--home", "h", "--answer", "=Yes"}, false, 0},
        {{"log.nmea", "other.nmea", "--home", "h"}, false, 0},
        {{"log.nmea", "--home", "h", "--speed", "2"}, false, 0},
    };
    for (const Case& c : cases) {
        ReplayOptions o;
        std::ostringstream err;
        EXPECT_EQ(ParseReplayArgs(c.args, o, err), c.ok) << c.args.size() << " " << err.str();
        if (c.ok) EXPECT_EQ(o.answers.size(), c.answers);
        else EXPECT_FALSE(err.str().empty());
    }
}

TEST(ReplayReaders, SurviveAnyBytes) {
    // Random bytes and a real log cut and corrupted at random: the readers
    // end, the log's times never run backwards, the settings read somehow.
    std::string real;
    for (int s = 0; s < 40; ++s) {
        char t[16];
        std::snprintf(t, sizeof t, "2359%02d", s);
        real += Gga(t) + Rmc(t, "231126") + kVtg;
    }
    uint32_t seed = 12345;
    auto next = [&] { return seed = seed * 1664525u + 1013904223u; };
    test::TempDir dir;
    for (int round = 0; round < 200; ++round) {
        std::string bytes;
        if (round % 2) {
            bytes = real;
            for (int k = 0; k < 20; ++k) bytes[next() % bytes.size()] = char(next() >> 24);
            bytes.resize(next() % bytes.size());
        } else {
            bytes.resize(next() % 2000);
            for (char& c : bytes) c = "$,*\r\n=[]\"\\;0123456789GPRMCGGA@%"[next() % 34];
        }
        IniSnapshot ini;
        ini.LoadText(bytes);
        test::WriteFile(dir / "log.nmea", bytes);
        ReplayLog log;
        std::string why;
        ASSERT_TRUE(log.Open(dir / "log.nmea", why));
        LogStart start;
        if (!log.FindStart(start, DateTime{2026, 11, 23})) continue;
        double last = start.when.Serial() - 1e-9;
        LogLine line;
        size_t lines = 0;
        while (log.Next(line)) {
            EXPECT_GE(line.due, last);
            EXPECT_LE(line.bytes.size(), 255u);
            last = line.due;
            ASSERT_LT(++lines, bytes.size() + 2);
        }
        EXPECT_LE(last, start.lastDue + 1e-9);
    }
}
