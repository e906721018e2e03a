// The radar's ARPA targets as they reach the plotter: sentences on the ARPA
// port, taken by the tick, into the table; the silence message; and
// `ombra-cli arpa` on a log.
#include <gtest/gtest.h>

#include <cmath>

#include "core/Val.h"
#include "navmath/RLGC.h"
#include "tests/targets/RadarFeed.h"

using namespace ombra;
using test::P;

namespace {
using Radar = test::RadarSailing<>;
}  // namespace

// Each case is a run of sentences for one target and what its slot holds
// afterwards; the table is the one the tick filled from the port.
TEST(ArpaTargets, SentencesThroughThePortFillTheTable) {
    struct Case {
        const char* what;
        std::vector<std::string> sentences;
        int slot;            // the slot looked at
        const char* name;    // "" a free slot
        double range;        // nautical miles
        bool stale;
        bool error;          // a bounds error was reported
    } cases[] = {
        {"target 0 is out of range", {Radar::Ttm("00", "1.0", "N", "", "T")}, 0, "", 0.0, false, true},
        {"target 101 is the last slot", {Radar::Ttm("101", "1.0", "N", "", "T")}, 100, "T#101", 1.0, false, false},
        {"target 102 is out of range", {Radar::Ttm("102", "1.0", "N", "", "T")}, 100, "", 0.0, false, true},
        {"kilometres", {Radar::Ttm("03", "10", "K", "", "T")}, 2, "T#03", 5.3995680809021, false, false},
        {"statute miles", {Radar::Ttm("03", "10", "S", "", "T")}, 2, "T#03", 8.689525127410889, false, false},
        {"nautical miles", {Radar::Ttm("03", "10", "N", "", "T")}, 2, "T#03", 10.0, false, false},
        {"an unknown unit", {Radar::Ttm("03", "10", "X", "", "T")}, 2, "T#03", 10.0, false, false},
        {"a range that is no number", {Radar::Ttm("03", "far", "N", "", "T")}, 2, "T#03", 0.0, false, false},
        {"a number that is no number", {Radar::Ttm("A3", "1.0", "N", "", "T")}, 2, "", 0.0, false, false},
        {"empty status frees", {Radar::Ttm("03", "1.0", "N", "", "T"), Radar::Ttm("03", "1.0", "N", "", "")}, 2, "",
         1.0, true, false},
        {"lost frees", {Radar::Ttm("03", "1.0", "N", "TUG", "T"), Radar::Ttm("03", "2.0", "N", "TUG", "L")}, 2, "", 1.0,
         true, false},
        {"the radar's name is kept", {Radar::Ttm("03", "1.0", "N", "TUG", "T"), Radar::Ttm("03", "2.0", "N", "", "T")}, 2,
         "TUG", 2.0, false, false},
        {"a later name replaces the automatic one",
         {Radar::Ttm("03", "1.0", "N", "", "T"), Radar::Ttm("03", "2.0", "N", " PILOT ", "T")}, 2, "PILOT", 2.0, false,
         false},
        {"a radar name is not replaced",
         {Radar::Ttm("03", "1.0", "N", "TUG", "T"), Radar::Ttm("03", "2.0", "N", "BARGE", "T")}, 2, "TUG", 2.0, false,
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Radar h;
        ASSERT_TRUE(h.Start());
        for (const std::string& s : c.sentences) {
            h.Radar(s);
            h.At(P(0));
        }
        const ArpaTarget& t = h.plotter.arpa().Targets[size_t(c.slot)];
        EXPECT_EQ(t.Name, c.name);
        EXPECT_NEAR(t.Range, c.range, 1e-5);
        EXPECT_EQ(t.Stale, c.stale);
        EXPECT_EQ(h.Asked("DecodeTTM"), c.error ? 1u : 0u);
    }
}

TEST(ArpaTargets, StatusAcquiringUnitsOfSpeedAndCpaAndOwnHeading) {
    Radar h;
    h.Set("GyroUseGPSPort", "True");  // the port passes OSD on with heading from the GPS port
    ASSERT_TRUE(h.Start());
    h.Radar("RATTM,07,2.0,310.5,R,20,095.0,T,1.5,-3.5,K,,Q,,103000.00,A");
    h.Radar("RAOSD,212.5,A,210.0,P,12.0,P,,,N");
    h.Radar("RAOSD,100.0,V,210.0,P,12.0,P,,,N");  // not valid: ignored
    h.At(P(0));
    const ArpaTarget& t = h.plotter.arpa().Targets[6];
    EXPECT_EQ(t.Name, "T#07");
    EXPECT_EQ(t.Acquiring, 1);
    EXPECT_NEAR(t.Speed, 20 * 0.53995680809021, 1e-5);
    EXPECT_NEAR(t.CPA, 1.5 * 0.53995680809021, 1e-5);
    EXPECT_FLOAT_EQ(t.TCPA, -3.5f);
    EXPECT_FLOAT_EQ(t.Bearing, 310.5f);
    EXPECT_EQ(t.BearingRef, "R");
    EXPECT_EQ(t.CourseRef, "T");
    EXPECT_DOUBLE_EQ(h.plotter.arpa().ArpaHeading, 212.5);
    EXPECT_EQ(h.plotter.arpa().ArpaCount, 6);
}

// The target lies along the geodesic from own ship: compared with a rhumb
// line run the same way, which over two miles differs by far less than a
// metre.
TEST(ArpaTargets, PlacedFromOwnShipByRangeAndBearing) {
    Radar h;
    ASSERT_TRUE(h.Start());
    for (double bearing : {0.0, 90.0, 225.0}) {
        char b[16];
        std::snprintf(b, sizeof b, "%05.1f", bearing);
        h.Radar(Radar::Ttm("01", "2.0", "N", "", "T", b));
        h.At(P(0));
        ASSERT_TRUE(h.plotter.arpa().PlaceArpaTarget(0));
        const LatLong at = h.plotter.arpa().Targets[0].Point.Wgs84;
        double course = 0.0, distance = 0.0;
        CourseDistanceRL(h.plotter.instruments().vessel.vessel.Pos, at, course, distance);
        EXPECT_NEAR(distance, 2.0, 0.002) << bearing;
        EXPECT_NEAR(std::remainder(course - bearing, 360.0), 0.0, 0.05) << bearing;
    }
}

// Silence after data: one message, the targets stale, the console "N/A";
// not again until data has come back and stopped again.
TEST(ArpaTargets, TimeoutMessageOnceUntilDataReturns) {
    Radar h(5);
    ASSERT_TRUE(h.Start());
    for (int s = 0; s < 8; ++s) h.At(P(0));
    EXPECT_EQ(h.Asked("No ARPA information"), 0u) << "no data came yet";
    for (int round = 1; round <= 2; ++round) {
        h.Radar(Radar::Ttm("04", "1.5", "N", "", "T"));
        h.At(P(0));
        EXPECT_FALSE(h.plotter.arpa().Targets[3].Stale);
        for (int s = 0; s < 3; ++s) h.At(P(0));
        EXPECT_EQ(h.Asked("No ARPA information"), size_t(round - 1));
        for (int s = 0; s < 10; ++s) h.At(P(0));
        EXPECT_EQ(h.Asked("No ARPA information has been received\nduring the specified timeout period."),
                  size_t(round));
        EXPECT_TRUE(h.plotter.arpa().Targets[3].Stale);
        EXPECT_EQ(h.plotter.instruments().console.LabARPA[2], "N/A");
    }
}

// The timeout of 0 and ARPA input off never ask.
TEST(ArpaTargets, NoTimeoutWhenOffOrZero) {
    for (const char* enable : {"0", "1"}) {
        Radar h(0);
        h.Set("ARPAEnable", enable);
        ASSERT_TRUE(h.Start());
        h.Radar(Radar::Ttm("04", "1.5", "N", "", "T"));
        for (int s = 0; s < 30; ++s) h.At(P(0));
        EXPECT_EQ(h.Asked("No ARPA information"), 0u);
        EXPECT_EQ(h.plotter.arpa().Targets[3].Name.empty(), *enable == '0') << "read only with input on";
    }
}

// ombra-cli arpa: a line per accepted TTM or OSD, the slot's fields in
// nautical miles; bad checksums, other sentences and target 0 print nothing.
TEST(ArpaCli, OneJsonLinePerAcceptedSentence) {
    std::string log = test::Sentence(Radar::Ttm("03", "10", "K", "", "Q")) + "$RATTM,03,1,045,T*00\r\n" +
                      test::Sentence("GPGGA,100000,5000.000,N,00500.000,W,1,08,0.9,5.0,M,50.0,M,,") +
                      test::Sentence(Radar::Ttm("00", "1", "N", "", "T")) +
                      test::Sentence(Radar::Ttm("03", "2", "S", "TUG", "T")) +
                      test::Sentence("RAOSD,212.5,A,210.0,P,12.0,P,,,N") + test::Sentence(Radar::Ttm("03", "2", "N", "", "L"));
    test::RunResult r = test::Run({test::CliPath(), "arpa", "-"}, log);
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const std::vector<std::string> lines = test::SplitLines(r.out);
    ASSERT_EQ(lines.size(), 4u) << r.out;
    auto number = [](const std::string& line, const std::string& key) {
        size_t at = line.find("\"" + key + "\":");
        return at == std::string::npos ? -1.0 : Val(line.substr(at + key.size() + 3));
    };
    auto has = [](const std::string& line, const std::string& text) { return line.find(text) != std::string::npos; };
    EXPECT_TRUE(has(lines[0], "\"sentence\":\"$RATTM,03,10,")) << lines[0];
    EXPECT_TRUE(has(lines[0], "\"slot\":2,\"Name\":\"T#03\""));
    EXPECT_NEAR(number(lines[0], "Range"), 5.3995680809021, 1e-5);
    EXPECT_EQ(number(lines[0], "Acquiring"), 1.0);
    EXPECT_TRUE(has(lines[1], "\"Name\":\"TUG\""));
    EXPECT_NEAR(number(lines[1], "Range"), 2 * 0.8689525127410889, 1e-5);
    EXPECT_NEAR(number(lines[1], "Speed"), 10 * 0.8689525127410889, 1e-5);
    EXPECT_TRUE(has(lines[1], "\"Stale\":false"));
    EXPECT_EQ(number(lines[2], "ArpaHeading"), 212.5);
    EXPECT_TRUE(has(lines[3], "\"Name\":\"\"") && has(lines[3], "\"Stale\":true"));
    EXPECT_TRUE(has(r.err, ":4: target number out of range")) << r.err;
}
