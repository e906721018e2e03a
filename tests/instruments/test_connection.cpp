// The GPS connection as a navigator lives with it: the output's attempts
// to open a port that will not open, the ports a connection closes when
// the settings moved under it, what connecting leaves on the screen, a
// receiver that sends nothing but void fixes, the tide's part in the
// vessel cycle and the time the output sends.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "navmath/RLGC.h"
#include "tests/instruments/InstrumentsFixture.h"

using namespace ombra;
using ombra::test::InstrumentsFixture;
using ombra::test::Sentence;

namespace {

// A dead-reckoning vessel with a GGA to repeat: four sentences a burst.
void DeadReckoningVessel(InstrumentsFixture& f) {
    f.Load();
    f.V().Mode = kModeDR;
    f.V().Pos = LatLong{-12 * 3600.0, 50 * 3600.0};
    f.V().SOG = 5.0;
    f.ins.decoder.LastGGA = Sentence("GPGGA,120000,5000.000,N,01200.000,W,1,08,0.9,1.0,M,50.0,M,,");
}

int Count(const std::vector<std::string>& v, const std::string& what) {
    int n = 0;
    for (const auto& s : v) n += s == what;
    return n;
}

const char* const kNoPort = "No port selected for GPS input!";
const char* const kCannotOpen =
    "The GPS serial port is already open or does not exist!\n"
    "Check no other programs are using the port, and that your GPS port\n"
    "does not match your mouse connection.";

}  // namespace

// Bursts every two seconds with no usable port: one attempt at the port a
// burst, one message until something changes.
TEST(OutputPort, OneAttemptABurstAndOneMessageUntilSomethingChanges) {
    struct Case {
        const char* name;
        int16_t port;
        bool missing;
        const char* message;
        int settingsDialogs;  // the GPS settings dialog, shown after "no port"
        int opensAPort;       // attempts on the port over three bursts
    } cases[] = {
        {"no port selected", 0, false, kNoPort, 1, 0},
        {"port that will not open", 1, true, kCannotOpen, 0, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        InstrumentsFixture f;
        DeadReckoningVessel(f);
        f.ins.settings.GPSPort = c.port;
        if (c.missing) f.ports.missing.insert(c.port);
        for (int burst = 0; burst < 3; ++burst) f.ins.output.NmeaOutput(1);
        EXPECT_EQ(f.Messages(), std::vector<std::string>{c.message});
        EXPECT_EQ(Count(f.hooks.calls, "ShowCommDialog0"), c.settingsDialogs);
        EXPECT_EQ(f.ports.opens[c.port], c.opensAPort);
        EXPECT_EQ(f.ports.Written(c.port), "");
    }
}

TEST(OutputPort, AChangeOrAnOpenPortInBetweenIsToldAgain) {
    InstrumentsFixture f;
    DeadReckoningVessel(f);
    f.ins.settings.GPSPort = 1;
    f.ports.missing = {1, 2};
    struct Step {
        const char* name;
        void (*change)(InstrumentsFixture&);
        size_t messages;  // in all, after two bursts
        bool written;
    } steps[] = {
        {"first failure", [](InstrumentsFixture&) {}, 1, false},
        {"same again", [](InstrumentsFixture&) {}, 1, false},
        {"another rate", [](InstrumentsFixture& f) { f.ins.settings.GPSBaudRate = 9600; }, 2, false},
        {"another port", [](InstrumentsFixture& f) { f.ins.settings.GPSPort = 2; }, 3, false},
        {"no port at all", [](InstrumentsFixture& f) { f.ins.settings.GPSPort = 0; }, 4, false},
        {"the port comes", [](InstrumentsFixture& f) { f.ins.settings.GPSPort = 2, f.ports.missing.clear(); }, 4, true},
        {"and goes",
         [](InstrumentsFixture& f) {
             f.ports.CloseComPort(2);
             f.ports.missing.insert(2);
         },
         5, false},
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(s.name);
        s.change(f);
        f.ports.written.clear();
        f.ins.output.NmeaOutput(1);
        f.ins.output.NmeaOutput(1);
        ASSERT_EQ(f.Messages().size(), s.messages);
        EXPECT_EQ(!f.ports.Written(f.ins.settings.GPSPort).empty(), s.written);
    }
    EXPECT_EQ(f.Messages().back(), kCannotOpen);
}

// The port settings changed while connected: stopping closes the ports
// the connection opened, not the ones the settings name now.
TEST(Connection, StopClosesWhatWasOpenedWhateverTheSettingsSayNow) {
    struct Case {
        const char* name;
        void (*change)(CommSettings&);
    } cases[] = {
        {"nothing changed", [](CommSettings&) {}},
        {"GPS port", [](CommSettings& s) { s.GPSPort = 7; }},
        {"GPS port to none", [](CommSettings& s) { s.GPSPort = 0; }},
        {"gyro port", [](CommSettings& s) { s.GyroPort = 8; }},
        {"gyro from the GPS port now", [](CommSettings& s) { s.GyroUseGyroPort = false, s.GyroUseGPSPort = true; }},
        {"ARPA port", [](CommSettings& s) { s.ARPAPort = 9; }},
        {"AIS port", [](CommSettings& s) { s.AISPort = 10; }},
        {"AIS on the GPS port now", [](CommSettings& s) { s.AISUseGPSPort = true; }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        InstrumentsFixture f;
        f.Load();
        CommSettings& s = f.ins.settings;
        s.GPSPort = 1;
        s.GyroUseCOG = false, s.GyroUseGyroPort = true, s.GyroPort = 3;
        s.ARPAEnable = true, s.ARPAPort = 4;
        s.AISEnable = true, s.AISUseGPSPort = false, s.AISPort = 5;
        ASSERT_TRUE(f.ins.comm.StartGPS());
        EXPECT_EQ(f.ports.opened.size(), 4u);
        EXPECT_TRUE(f.ins.comm.Connected());
        c.change(s);
        f.ins.comm.StopGPS();
        EXPECT_TRUE(f.ports.opened.empty()) << f.ports.opened.begin()->first;
        EXPECT_FALSE(f.ins.comm.Connected());
        EXPECT_EQ(f.V().Mode, kModeNone);
    }
}

// Connecting puts up the prompt and the hourglass; every way out of it
// takes them down.
TEST(Connection, ThePromptAndHourglassGoWithTheConnection) {
    struct Case {
        const char* name;
        void (*end)(InstrumentsFixture&);
        int16_t mode;
    } cases[] = {
        {"GPS off", [](InstrumentsFixture& f) { f.ins.comm.StopGPS(); }, kModeNone},
        {"no to keep trying",
         [](InstrumentsFixture& f) {
             f.dialogs.replies = {mb::No};
             for (int i = 0; i < 20; ++i) f.ins.vessel.UpdateVesselPos();
         },
         kModeNone},
        {"dead reckoning chosen", [](InstrumentsFixture& f) { f.ins.vessel.SetVesselMode(kModeDR); }, kModeDR},
        {"file dead reckoning", [](InstrumentsFixture& f) { f.ins.vessel.SetVesselMode(kModeFileDR); }, kModeFileDR},
        {"a fix", [](InstrumentsFixture& f) {
             f.ports.Feed(1, Sentence("GPGGA,120000,5000.000,N,01200.000,W,1,08,0.9,1.0,M,50.0,M,,"));
             f.ins.comm.ReadGPSPort();
             f.ins.vessel.UpdateVesselPos();
         },
         kModeGPS},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        InstrumentsFixture f;
        f.Load();
        f.ins.settings.GPSPort = 1;
        ASSERT_TRUE(f.ins.comm.StartGPS());
        f.ins.vessel.UpdateVesselPos();
        f.ins.vessel.UpdateVesselPos();
        ASSERT_EQ(f.hooks.infoLine[int(InfoPanel::Prompt)], "Connecting to GPS, please wait.");
        ASSERT_TRUE(f.hooks.busy);
        c.end(f);
        EXPECT_EQ(f.V().Mode, c.mode);
        EXPECT_EQ(f.hooks.infoLine[int(InfoPanel::Prompt)], "");
        EXPECT_FALSE(f.hooks.busy);
        if (c.mode == kModeNone) {
            EXPECT_EQ(f.ins.vessel.ConnectTries, 0);
        }
    }
}

// A receiver that is on but has no fix sends GGA with quality 0: the
// vessel says "Poor GPS signal" for as long as they come, whether it was
// still connecting or had a fix before, and never takes their position.
TEST(Connection, VoidFixesKeepSayingPoorSignal) {
    const std::string voidGGA = Sentence("GPGGA,120000,0000.000,N,00000.000,E,0,00,,,M,,M,,");
    struct Case {
        const char* name;
        bool fixFirst;
        int16_t modeAfter;
    } cases[] = {
        {"while connecting", false, kModeConnecting},
        {"after a fix", true, kModeGPSLost},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        InstrumentsFixture f;
        f.Load();
        f.ins.settings.GPSPort = 1;
        ASSERT_TRUE(f.ins.comm.StartGPS());
        LatLong fixed{};
        if (c.fixFirst) {
            f.ports.Feed(1, Sentence("GPGGA,120000,5000.000,N,01200.000,W,1,08,0.9,1.0,M,50.0,M,,"));
            f.ins.comm.ReadGPSPort();
            ASSERT_EQ(f.ins.vessel.UpdateVesselPos(), 1);
            fixed = f.V().Pos;
        }
        // One void GGA a second for far longer than GPSDelay.
        for (int s = 1; s <= 60; ++s) {
            f.clock.Advance(1);
            f.ports.Feed(1, voidGGA);
            f.ins.comm.ReadGPSPort();
            EXPECT_EQ(f.ins.vessel.UpdateVesselPos(), 0) << s;
            EXPECT_EQ(f.ins.console.StatusText, "Poor GPS signal") << s;
            EXPECT_EQ(f.ins.console.StatusColour, kStatusRed) << s;
        }
        EXPECT_EQ(f.V().Mode, c.modeAfter);
        if (c.fixFirst) {
            EXPECT_EQ(Count(f.hooks.calls, "Log4:Poor GPS signal."), 1);
            EXPECT_NE(f.V().Pos.Lat, 0.0);  // dead reckoning from the fix, not the void position
            EXPECT_NEAR(f.V().Pos.Lat, fixed.Lat, 1.0);
        }
    }
}

// The tide path of the cycle: with a stream set, the course and speed
// through the water are the ground track less the stream, and in dead
// reckoning the ground track is the water track plus the stream.
TEST(TideAtVessel, WaterAndGroundTracksDifferByTheStream) {
    struct Case {
        const char* name;
        double cog, sog;   // over the ground
        double set, drift; // the stream
        double cw, sw;     // through the water
    } cases[] = {
        {"stream from astern", 0.0, 7.0, 0.0, 2.0, 0.0, 5.0},
        {"stream on the nose", 0.0, 3.0, 180.0, 2.0, 0.0, 5.0},
        {"southgoing stream, heading east", 90.0 + std::atan2(2.0, 5.0) * 180.0 / M_PI, std::hypot(5.0, 2.0), 180.0,
         2.0, 90.0, 5.0},
        {"northgoing stream, heading west", 270.0 + std::atan2(2.0, 5.0) * 180.0 / M_PI, std::hypot(5.0, 2.0), 0.0,
         2.0, 270.0, 5.0},
        {"no stream", 123.0, 4.0, 45.0, 0.0, 123.0, 4.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        // GPS: the fix gives the ground track, the cycle the water track.
        {
            InstrumentsFixture f;
            f.Load();
            f.ins.settings.GPSPort = 1;
            f.hooks.tide = true, f.hooks.set = c.set, f.hooks.drift = c.drift;
            ASSERT_TRUE(f.ins.comm.StartGPS());
            char vtg[64];
            std::snprintf(vtg, sizeof vtg, "GPVTG,%.0f,T,,M,%.4f,N,,K", std::round(c.cog), c.sog);
            f.ports.Feed(1, Sentence("GPGGA,120000,5000.000,N,01200.000,W,1,08,0.9,1.0,M,50.0,M,,"));
            f.ins.comm.ReadGPSPort();
            f.ins.vessel.UpdateVesselPos();  // connected
            f.ports.Feed(1, Sentence(vtg));
            f.ports.Feed(1, Sentence("GPGGA,120001,5000.000,N,01200.000,W,1,08,0.9,1.0,M,50.0,M,,"));
            f.clock.Advance(1);
            f.ins.comm.ReadGPSPort();
            f.ins.comm.ReadGPSPort();
            ASSERT_EQ(f.ins.vessel.UpdateVesselPos(), 1);
            ASSERT_EQ(f.V().Mode, kModeGPS);
            // The fix carries whole degrees: compare against the rounded course.
            const double cog = std::round(c.cog) * M_PI / 180.0;
            const double e = c.sog * std::sin(cog) - c.drift * std::sin(c.set * M_PI / 180.0);
            const double n = c.sog * std::cos(cog) - c.drift * std::cos(c.set * M_PI / 180.0);
            EXPECT_NEAR(f.V().SpeedWater, std::hypot(e, n), 1e-3);
            EXPECT_NEAR(f.V().SpeedWater, c.sw, 0.05);
            double cw = std::fmod(std::atan2(e, n) * 180.0 / M_PI + 360.0, 360.0);
            EXPECT_NEAR(std::remainder(f.V().CourseWater - cw, 360.0), 0.0, 1e-3);
            EXPECT_NEAR(std::remainder(f.V().CourseWater - c.cw, 360.0), 0.0, 1.0);
        }
        // DR: the water track set by hand gives the ground track.
        {
            InstrumentsFixture f;
            f.Load();
            f.hooks.tide = true, f.hooks.set = c.set, f.hooks.drift = c.drift;
            f.V().Mode = kModeDR;
            f.V().CourseWater = c.cw;
            f.V().SpeedWater = c.sw;
            f.V().DRStart = float(f.clock.Timer());
            f.ins.vessel.UpdateVesselPos();
            EXPECT_NEAR(f.V().SOG, c.sog, 1e-6);
            EXPECT_NEAR(std::remainder(f.V().COG - c.cog, 360.0), 0.0, 1e-6);
        }
    }
}

// Fractional seconds in a received time are not rounded on the way out:
// the output's time field is the second the fix was in.
TEST(OutputTime, FractionsOfASecondAreCutNotRounded) {
    struct Case {
        const char* field;
        const char* sent;
    } cases[] = {
        {"123519", "123519"}, {"123519.4", "123519"}, {"123519.6", "123519"},
        {"123559.99", "123559"}, {"235959.7", "235959"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.field);
        InstrumentsFixture f;
        f.Load();
        f.ins.settings.NMEA_GGA = false, f.ins.settings.NMEA_RMC = true;
        f.V().Mode = kModeGPS;
        f.ins.decoder.ClearFix();
        f.Decode(Sentence(std::string("GPRMC,") + c.field + ",A,5000.000,N,01200.000,W,5.0,90.0,231126,,"));
        f.V().FixTime = f.ins.decoder.Fix.Time;
        const std::string burst = f.ins.output.BuildBurst(1);
        EXPECT_NE(burst.find(std::string("$GPRMC,") + c.sent + ",A,"), std::string::npos) << burst;
    }
}
