// The NMEA burst, sentence by sentence and byte by byte, and the console
// rows it reads back.
#include <gtest/gtest.h>

#include "core/Format.h"
#include "instruments/NmeaText.h"
#include "tests/instruments/InstrumentsFixture.h"

using namespace ombra;
using ombra::test::InstrumentsFixture;

namespace {

// A vessel at 50°07.250'N 11°58.500'W, 084.0° at 6.5 knots, fixed at
// 14:05:09 on 23/11/2026; the last GGA as the port gave it.
void SetUpVessel(InstrumentsFixture& f) {
    f.Load();
    Vessel& v = f.V();
    v.Mode = 2;
    v.Pos = LatLong{-(11 * 3600.0 + 58.5 * 60.0), 50 * 3600.0 + 7.25 * 60.0};
    v.COG = 84.0;
    v.SOG = 6.5;
    v.FixTime = (14 * 3600 + 5 * 60 + 9) / 86400.0;
    v.FixDate = DateTime{2026, 11, 23, 0, 0, 0, 0}.Serial();
    f.ins.decoder.LastGGA = "$GPGGA,140509,5007.250,N,01158.500,W,1,08,0.9,12.0,M,50.0,M,,*4C\r\n";
}

// A leg from WP001 (49°30'S 0°30'E) to WP002 (49°45'S 1°15'E): the other
// hemispheres from the vessel; the console rows as the cycle would write them.
void SetUpLeg(InstrumentsFixture& f) {
    ActiveLeg& leg = f.ins.leg;
    leg.Kind = 2;
    leg.Name = "WP002";
    leg.FromName = "WP001";
    leg.From = LatLong{0.5 * 3600.0, -49.5 * 3600.0};
    leg.To = LatLong{1.25 * 3600.0, -49.75 * 3600.0};
    leg.DistanceTo = 12.3456;
    leg.BearingTo = 161.0;
    leg.LegCourse = 118.6;
    leg.AlarmRange = 0.5f;
    leg.PassedPerpendicular = 1;
    leg.GreatCircle = 0;
    auto& row = f.ins.console.LabWP;
    row[4] = "12.346 NM RL";
    row[5] = "1.75 Kts";
    row[9] = "0.25 NM";
    row[10] = "R>>";
}

std::vector<std::string> Lines(const std::string& burst) {
    std::vector<std::string> out;
    size_t at = 0;
    while (at < burst.size()) {
        size_t e = burst.find("\r\n", at);
        out.push_back(burst.substr(at, e - at));
        at = e + 2;
    }
    return out;
}

}  // namespace

TEST(NmeaOutput, DefaultBurstWithoutLeg) {
    InstrumentsFixture f;
    SetUpVessel(f);
    f.hooks.variation = -3.5f;
    std::vector<std::string> want = {
        "$GPVTG,84.0,T,88.0,M,6.5,N,12.0,K",
        "$GPRMC,140509,A,5007.250,N,01158.500,W,6.5,84.0,231126,3.5,W",
        "$GPGLL,5007.250,N,01158.500,W,140509,A",
        "$GPGGAA,140509,5007.250,N,01158.500,W,1,08,0.9,12.0,M,50.0,M,,",
    };
    EXPECT_EQ(Lines(f.ins.output.BuildBurst(1)), want);
    ASSERT_EQ(f.hooks.variationAsked.size(), 1u);
    EXPECT_EQ(f.hooks.variationAsked[0], f.V().Pos);  // at the vessel
    // Not a good fix: status V.
    auto v = Lines(f.ins.output.BuildBurst(0));
    EXPECT_EQ(v[1], "$GPRMC,140509,V,5007.250,N,01158.500,W,6.5,84.0,231126,3.5,W");
    EXPECT_EQ(v[2], "$GPGLL,5007.250,N,01158.500,W,140509,V");
}

// With a leg in the other hemispheres, every sentence, and the RMC and GLL
// of the vessel carrying the leg's hemisphere letters.
TEST(NmeaOutput, AllSentencesWithALegAcrossHemispheres) {
    InstrumentsFixture f;
    SetUpVessel(f);
    SetUpLeg(f);
    f.hooks.variation = 2.0f;
    f.ins.settings.AutopilotSettings = 511 | 4096;
    std::vector<std::string> want = {
        "$GPVTG,84.0,T,82.0,M,6.5,N,12.0,K",
        "$GPRMC,140509,A,5007.250,S,01158.500,E,6.5,84.0,231126,2.0,E",
        "$GPRMB,A,0.25,R,001,002,4945.000,S,00115.000,E,12.3,161.0,1.75,V",
        "$GPWPL,4930.000,S,00030.000,E,001",
        "$GPWPL,4945.000,S,00115.000,E,002",
        "$GPGLL,5007.250,S,01158.500,E,140509,A",
        "$GPGGAA,140509,5007.250,N,01158.500,W,1,08,0.9,12.0,M,50.0,M,,",
        "$GPXTE,A,A,0.25,R,N",
        "$GPBOD,118.6,T,119.0,M,002,001",
        "$GPBWR,140509,4945.000,S,00115.000,E,161.0,T,159.0,M,12.3,N,002",
        "$GPAPB,A,A,0.25,R,N,V,A,119.0,M,002,159.0,M,,",
    };
    EXPECT_EQ(Lines(f.ins.output.BuildBurst(1)), want);
}

TEST(NmeaOutput, Version15FormsAndIdentifiers) {
    InstrumentsFixture f;
    SetUpVessel(f);
    SetUpLeg(f);
    f.ins.leg.FromName = "R3.WP017";
    f.ins.leg.Name = "R3.WP018";
    f.ins.leg.GreatCircle = 1;
    f.ins.console.LabWP[4] = "0.4 NM";  // within the alarm range: arrived
    f.ins.settings.AutopilotSettings = 1 | 2 | 16 | 32 | 64 | 512 | 2048;
    std::vector<std::string> want = {
        "$GPRMC,140509,A,5007.25,S,01158.50,E,006.5,084.0,231126,000.0,E",
        "$GPRMB,A,0.25,R,017,018,4945.00,S,00115.00,E,012.3,161.0,,A",
        "$GPGLL,5007.25,S,01158.50,E",
        "$GPBOD,118.6,T,119.0,M,018,017",
        "$GPBWC,140509,4945.00,S,00115.00,E,161.0,T,161.0,M,012.3,N,018",
        "$GPAPA,A,A,0.25,R,N,A,A,119.0,M,018",
    };
    EXPECT_EQ(Lines(f.ins.output.BuildBurst(1)), want);
}

TEST(NmeaOutput, WaypointIdentifiers) {
    struct Case {
        const char* from;
        const char* to;
        bool v15;
        const char* origin;
        const char* dest;
    };
    const Case cases[] = {
        {"", "WP012", false, "001", "012"},          // the leg starts at the vessel
        {"000", "WP012", false, "001", "012"},
        {"WP", "WP", false, "001", "002"},
        {"BUOY7", "R1-ABC99", false, "OY7", "C99"},  // text without 512
        {"R3.WP017", "HARBOUR", false, "017", "RBO"},
        {"", "WP012", true, "001", "002"},           // 512: the test on the origin's name decides both
        {"AB", "WP012", true, "001", "002"},
        {"WP5", "WP012", true, "005", "012"},
        {"BUOY7", "R1-ABC99", true, "000", "000"},   // "OY7" and "C99" read as 0
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.from) + " -> " + c.to);
        std::string o, d;
        WaypointIds(c.from, c.to, c.v15, o, d);
        EXPECT_EQ(o, c.origin);
        EXPECT_EQ(d, c.dest);
    }
}

TEST(NmeaOutput, EdgesOfTheBurst) {
    InstrumentsFixture f;
    SetUpVessel(f);
    // 359.6 with no variation: magnetic 360 mod 360.
    f.V().COG = 359.6;
    EXPECT_EQ(Lines(f.ins.output.BuildBurst(1))[0], "$GPVTG,359.6,T,0.0,M,6.5,N,12.0,K");
    // No GGA kept: no repeat even with bit 8; a GGA without its line end.
    f.ins.settings.AutopilotSettings = 8;
    f.ins.decoder.LastGGA.clear();
    EXPECT_EQ(f.ins.output.BuildBurst(1), "");
    f.ins.decoder.LastGGA = "$GPGGA,1*00";
    // 11 characters without a line end: the character 4 from the end is
    // not "*", so 4 characters are kept from the identifier's last letter.
    EXPECT_EQ(f.ins.output.BuildBurst(1), "$GPGGAA,1*\r\n");
    // APB wins over APA; checksums with bit 1024; leg sentences need a leg.
    SetUpLeg(f);
    f.ins.settings.AutopilotSettings = 256 | 2048 | 1024;
    std::string apb = f.ins.output.BuildBurst(1);
    ASSERT_EQ(apb.substr(0, 7), "$GPAPB,");
    std::string body = apb.substr(1, apb.find('*') - 1);
    EXPECT_EQ(apb, "$" + body + "*" + NmeaChecksum(body) + "\r\n");
    EXPECT_TRUE(ChecksumOK(apb));
    f.ins.leg.Kind = 0;
    EXPECT_EQ(f.ins.output.BuildBurst(1), "");
}

// The burst goes out on the GPS port, opening it when it is closed, one
// write a sentence.
TEST(NmeaOutput, SentToTheGPSPort) {
    InstrumentsFixture f;
    SetUpVessel(f);
    f.ins.output.NmeaOutput(1);
    EXPECT_EQ(f.ports.Written(1), f.ins.output.BuildBurst(1));
    EXPECT_EQ(f.ports.opens[1], 1);
    f.ports.CloseComPort(1);
    f.ports.missing.insert(1);
    f.ports.written.clear();
    f.ins.output.NmeaOutput(1);
    EXPECT_EQ(f.ports.Written(1), "");
}

TEST(NmeaOutput, AutopilotWarnings) {
    ScriptedDialogs d;
    d.replies = {mb::No, mb::Yes};
    EXPECT_TRUE(ConfirmActivateWithAutopilot(false, d, "Tarnel"));
    EXPECT_FALSE(ConfirmActivateWithAutopilot(true, d, "Tarnel"));
    EXPECT_TRUE(ConfirmAutopilotOn(true, d, "Tarnel"));
    ASSERT_EQ(d.asked.size(), 2u);
    EXPECT_EQ(d.asked[0].text,
              "Autopilot output is enabled.\nActivating a waypoint may cause a significant course change.\nAre you sure you wish to "
              "continue.");
    EXPECT_EQ(d.asked[1].text,
              "There is an active waypoint.\nActivating autopilot output may cause a significant course change.\nAre you sure you "
              "wish to continue.");
    EXPECT_EQ(d.asked[0].style, mb::YesNo | mb::Question);
}

TEST(ConsoleRows, CrossTrackSides) {
    struct Case {
        double leg, bearing, distance;
        double angle;
        const char* mark;
    };
    const Case cases[] = {
        {350, 10, 10, 20, "R>>"},
        {10, 350, 10, 20, "L<<"},
        {90, 100, 10, 10, "R>>"},
        {100, 90, 10, 10, "L<<"},
        {90, 90, 10, 0, ">><<"},
        {90, 90.0229, 10, 0.0229, ">><<"},  // 0.004 miles off: on track
        {90, 90.0344, 10, 0.0344, "R>>"},   // 0.006 miles off
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.leg) + "/" + std::to_string(c.bearing));
        CrossTrack x = CrossTrackOf(c.leg, c.bearing, c.distance);
        EXPECT_NEAR(x.angle, c.angle, 1e-9);
        EXPECT_EQ(x.mark, c.mark);
    }
}

// The waypoint rows of a vessel making towards the mark, then sailing away.
TEST(ConsoleRows, WaypointRows) {
    InstrumentsFixture f;
    f.Load();
    Vessel& v = f.V();
    v.Mode = 1;
    v.Pos = LatLong{-12.0 * 3600.0, 50.0 * 3600.0};
    v.COG = 0.0;
    v.SOG = 6.0;
    ActiveLeg& leg = f.ins.leg;
    leg.Kind = 1;
    leg.Name = "NORTH";
    leg.From = v.Pos;
    leg.To = LatLong{-12.0 * 3600.0, 50.1 * 3600.0};
    f.ins.vessel.UpdateVesselConsole();
    auto& row = f.ins.console.LabWP;
    EXPECT_EQ(f.ins.console.WPFrameCaption, "Active Waypoint");
    EXPECT_EQ(row[0], "NORTH");
    EXPECT_EQ(row[3], "000.0 °T RL");
    EXPECT_EQ(row[4], Format(leg.DistanceTo, "0.000") + " NM RL");
    EXPECT_NEAR(leg.DistanceTo, 6.0, 0.02);
    EXPECT_EQ(row[5], "6.00 Kts");
    EXPECT_EQ(row[6].substr(0, 7), "0d 01h ");
    EXPECT_EQ(row[10], ">><<");
    EXPECT_EQ(row[11], "000.0 °T");
    // Sailing away: VMG below 0 and no time to go.
    v.COG = 180.0;
    f.ins.vessel.UpdateVesselConsole();
    EXPECT_EQ(row[5], "-6.00 Kts");
    EXPECT_EQ(row[6], "N/A");
    EXPECT_EQ(row[7], "N/A");
    EXPECT_EQ(row[8], "N/A");
    // No leg: the frame says so.
    leg.Kind = 0;
    f.ins.vessel.UpdateWaypointConsole();
    EXPECT_EQ(f.ins.console.WPFrameCaption, "No Active Waypoint");
    EXPECT_EQ(row[4], "N/A");
}

TEST(ConsoleRows, CourseToSteer) {
    struct Case {
        double track, speed, set, drift;
        bool ok;
        double course;
    };
    const Case cases[] = {
        {90, 6, 0, 0, true, 90},
        // A 3-knot stream setting east is stemmed at 5 knots by steering
        // 36.87 degrees west of the track (the 3-4-5 triangle).
        {0, 5, 90, 3, true, 360 - 36.869897645844},
        {0, 2, 90, 3, false, 0},                     // the stream is stronger than the vessel
        {0, 5, 180, 6, false, 0},                    // dead foul and stronger: no way forward
        {0, 0, 0, 0, false, 0},
    };
    for (const Case& c : cases) {
        double course = -1;
        EXPECT_EQ(CourseToSteer(c.track, c.speed, c.set, c.drift, course), c.ok);
        if (c.ok) {
            EXPECT_NEAR(course, c.course, 1e-9);
        }
    }
}
