// Sentence intake: the text rules, framing and routing on each port, the
// open procedures and their messages, start and stop, and the Magellan
// handshake.
#include <gtest/gtest.h>

#include "instruments/NmeaText.h"
#include "tests/instruments/InstrumentsFixture.h"

using namespace ombra;
using ombra::test::InstrumentsFixture;
using ombra::test::Sentence;

TEST(NmeaText, ChecksumTest) {
    struct Case {
        const char* sentence;
        bool ok;
    };
    const Case cases[] = {
        {"$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n", true},
        {"$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47", true},
        {"$GPRMC,225446,A,4916.45,N,12311.12,W,000.5,054.7,191194,020.3,E*68\r\n", true},
        {"$GPRMC,225446,A,4916.45,N,12311.12,W,000.5,054.7,191194,020.3,E*69\r\n", false},
        {"$HEHDT,271.5,T*2E\r\n", true},
        {"$HEHDT,271.5,T*2e\r\n", false},  // right value in lower case
        {"$HEHDT,271.5,T\r\n", false},     // no "*"
        {"*HEHDT,271.5,T*2E\r\n", false},  // "*" first
        {"$HEHDT,271.5,T*2", false},       // one digit only
        {"$GPTXT*4F", true},
        {"$GPTXT*4F\r\n", true},
        {"!AIVDM,1,1,,A,13u?etPv2;0n:dDPwUM1U1Cb069D,0*24", true},
        {"", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sentence);
        EXPECT_EQ(ChecksumOK(c.sentence), c.ok);
    }
    EXPECT_EQ(NmeaChecksum("GPTXT"), "4F");  // 0x47 ^ 0x50 ^ 0x54 ^ 0x58 ^ 0x54
    EXPECT_EQ(NmeaChecksum("A"), "41");
    EXPECT_EQ(NmeaChecksum(""), "00");
}

TEST(NmeaText, FieldSplitting) {
    struct Case {
        const char* sentence;
        int maxIndex;
        int count;
        std::vector<std::string> fields;  // the first ones
    };
    const Case cases[] = {
        // GLL with its status field, CR LF: the checksum and the empty text
        // between CR and LF are fields 7 and 8.
        {"$GPGLL,4916.45,N,12311.12,W,225444,A*1D\r\n", 8, 8, {"$GPGLL", "4916.45", "N", "12311.12", "W", "225444", "A", "1D", ""}},
        // The old short form counts 6.
        {"$GPGLL,4916.45,N,12311.12,W*31\r\n", 8, 6, {"$GPGLL", "4916.45", "N", "12311.12", "W", "31", ""}},
        // Without a line end the last text has no delimiter and is not a field.
        {"$GPGLL,4916.45,N,12311.12,W,225444,A*1D", 8, 6, {"$GPGLL", "4916.45", "N", "12311.12", "W", "225444", "A"}},
        // Empty fields stay empty; storing stops at the maximum index.
        {"$HEHDT,,T,,,,,,*00\r\n", 4, 4, {"$HEHDT", "", "T", "", ""}},
        {"no delimiter at all", 4, 0, {"", "", "", "", ""}},
        {"$GPVTG,054.7,T\n", 10, 2, {"$GPVTG", "054.7", "T"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sentence);
        NmeaFields f = SplitFields(c.sentence, c.maxIndex);
        EXPECT_EQ(f.count, c.count);
        ASSERT_EQ(f.f.size(), size_t(c.maxIndex) + 1);
        for (size_t i = 0; i < c.fields.size(); ++i) EXPECT_EQ(f[i], c.fields[i]) << "field " << i;
    }
}

TEST(NmeaText, LatitudeLongitudeAndTime) {
    struct Case {
        const char* value;
        const char* hemisphere;
        double seconds;
    };
    const Case cases[] = {
        {"4807.038", "N", 48 * 3600.0 + 7.038 * 60.0},
        {"01131.000", "E", 11 * 3600.0 + 31.0 * 60.0},
        {"4807.038", "S", -(48 * 3600.0 + 7.038 * 60.0)},
        {"12311.12", "W", -(123 * 3600.0 + 11.12 * 60.0)},
        {"4807.038", "s", 48 * 3600.0 + 7.038 * 60.0},  // lower case is not south
        {"4959.7", "N", 49 * 3600.0 + 59.7 * 60.0},     // rounds up to 4960 on the way and still comes right
        {"0000.5", "W", -30.0},
        {"", "N", 0.0},
        {"abc", "N", 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        EXPECT_NEAR(NmeaLatLong(c.value, c.hemisphere), c.seconds, 1e-6);
    }
    EXPECT_THROW(NmeaLatLong("1e12", "N"), Fault);

    double t = 0;
    ASSERT_TRUE(NmeaTime("123519", t));
    EXPECT_NEAR(t * 86400.0, 12 * 3600 + 35 * 60 + 19, 1e-6);
    ASSERT_TRUE(NmeaTime("000001.50", t));
    EXPECT_NEAR(t * 86400.0, 1.5, 1e-6);
    EXPECT_FALSE(NmeaTime("12351", t));
    EXPECT_FALSE(NmeaTime("12:35:19", t));
    double d = 0;
    ASSERT_TRUE(NmeaDate("191194", d));
    EXPECT_EQ(DateTime::FromSerial(d), (DateTime{1994, 11, 19, 0, 0, 0, 0}));
    ASSERT_TRUE(NmeaDate("230326", d));
    EXPECT_EQ(DateTime::FromSerial(d).year, 2026);
    EXPECT_FALSE(NmeaDate("310226", d));  // no 31st of February
    EXPECT_FALSE(NmeaDate("1911940", d));
}

// The GPS port's framing: length, checksum switch, mode, and the early end
// of a read on a position sentence.
TEST(Intake, GPSPortFramingAndRouting) {
    InstrumentsFixture f;
    f.Load();
    ASSERT_EQ(f.ports.OpenComPort(1, 4800), 1);
    f.V().Mode = 2;
    const std::string gga = Sentence("GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,");
    f.ports.Feed(1, "$GPHDT,");              // 7 characters: too short
    f.ports.Feed(1, "$HEHDT,1\r");            // 9 characters: long enough, not a heading (field 2 empty)
    f.ports.Feed(1, "#HEHDT,99.0,T\r\n");     // wrong start
    f.ports.Feed(1, "$HEHDT,45.0,T*00\r\n");  // wrong checksum, Checksums off: processed
    f.ports.Feed(1, gga);
    f.ports.Feed(1, Sentence("HEHDT,90.0,T"));  // after the fix: waits for the next read
    EXPECT_TRUE(f.ins.comm.ReadGPSPort());
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, 45.0f);
    EXPECT_EQ(f.ins.decoder.Fix.Status, 1);
    EXPECT_EQ(f.events.calls, 5);  // events pumped once a sentence read
    EXPECT_EQ(f.ports.lines[1].size(), 1u);
    EXPECT_FALSE(f.ins.comm.ReadGPSPort());
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, 90.0f);

    // With Checksums on, a wrong or lower-case checksum or none drops the sentence.
    f.ins.settings.Checksums = true;
    for (const char* s : {"$HEHDT,10.0,T*00\r\n", "$HEHDT,271.5,T*2e\r\n", "$HEHDT,271.5,T\r\n"}) f.ports.Feed(1, s);
    f.ports.Feed(1, "$HEHDT,271.5,T*2E\r\n");
    f.ins.comm.ReadGPSPort();
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, 271.5f);

    // A closed port is not read at all.
    f.ports.CloseComPort(1);
    f.ports.Feed(1, gga);
    int reads = f.ports.reads;
    EXPECT_FALSE(f.ins.comm.ReadGPSPort());
    EXPECT_EQ(f.ports.reads, reads);
}

TEST(Intake, RoutingTableFollowsTheSettings) {
    struct Case {
        const char* what;
        void (*set)(CommSettings&);
        const char* sentence;
        bool accepted;
        bool position;
    };
    const Case cases[] = {
        {"GGA by default", [](CommSettings&) {}, "$GPGGA,1,4807.0,N,01131.0,E,1,08*00\r\n", true, true},
        {"GLL needs NMEA_GLL", [](CommSettings&) {}, "$GPGLL,4916.45,N,12311.12,W*00\r\n", false, false},
        {"GLL with NMEA_GLL", [](CommSettings& s) { s.NMEA_GLL = true; }, "$GPGLL,4916.45,N,12311.12,W*00\r\n", true, true},
        {"RMC always, a position", [](CommSettings& s) { s.NMEA_GGA = false; }, "$GPRMC,1,V,,,,,,,,,*00\r\n", true, true},
        {"VTG with GGA", [](CommSettings&) {}, "$GPVTG,054.7,T,,M,5.5,N*00\r\n", true, false},
        {"VTG not with RMC", [](CommSettings& s) { s.NMEA_GGA = false; s.NMEA_RMC = true; }, "$GPVTG,054.7,T*00\r\n", false, false},
        {"HDT with GyroUseGPSPort", [](CommSettings&) {}, "$HEHDT,1.0,T*00\r\n", true, false},
        {"HDT without", [](CommSettings& s) { s.GyroUseGPSPort = false; }, "$HEHDT,1.0,T*00\r\n", false, false},
        {"HDG without", [](CommSettings& s) { s.GyroUseGPSPort = false; }, "$HCHDG,1.0,,,,*00\r\n", false, false},
        {"GSV always", [](CommSettings& s) { s.GyroUseGPSPort = false; s.NMEA_GGA = false; }, "$GPGSV,1,1,00*00\r\n", true, false},
        {"unknown identifier", [](CommSettings&) {}, "$GPZDA,1,2,3*00\r\n", false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        InstrumentsFixture f;
        f.Load();
        f.V().Mode = 3;
        c.set(f.ins.settings);
        DecodeOutcome o;
        bool position = f.ins.comm.HandleGPSSentence(c.sentence, &o);
        EXPECT_EQ(o.accepted, c.accepted);
        EXPECT_EQ(position, c.position);
    }
}

// With the vessel off only the Magellan reply is looked at; AIS sentences
// go to the AIS decoder as the settings say, AIVDO gives a fix.
TEST(Intake, ModeNoneAndAisOnTheGPSPort) {
    InstrumentsFixture f;
    f.Load();
    EXPECT_FALSE(f.ins.comm.HandleGPSSentence(Sentence("GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,")));
    EXPECT_EQ(f.ins.decoder.Fix.Status, 0);
    EXPECT_FALSE(f.ins.decoder.FixReceiving);
    f.ins.comm.HandleGPSSentence("$PMGNCSM,6E*1F\r\n");
    EXPECT_EQ(f.ins.comm.CommsReply, "6E*1F");

    const std::string vdm = "!AIVDM,1,1,,A,13u?etPv2;0n:dDPwUM1U1Cb069D,0*24\r\n";
    const std::string vdo = "!AIVDO,1,1,,,B5NJ;PP005l4ot5Isbl03wsUkP06,0*76\r\n";
    f.V().Mode = 2;
    f.ins.comm.HandleGPSSentence(vdm);
    EXPECT_TRUE(f.hooks.ais.empty());  // AIS not on the GPS port
    f.ins.settings.AISUseGPSPort = f.ins.settings.AISEnable = true;
    f.ins.comm.HandleGPSSentence(vdm);
    EXPECT_EQ(f.hooks.ais.size(), 1u);
    f.ins.comm.HandleGPSSentence("!AIVDM,1\r\n");  // 8 characters and CR LF: 10, but not an AIS sentence
    EXPECT_EQ(f.hooks.ais.size(), 2u);            // framing only tests the length; the decoder refuses it

    // Our own transponder: a position only with NMEA_AIVDO, and only when
    // the AIS decoder has an own-vessel report.
    EXPECT_FALSE(f.ins.comm.HandleGPSSentence(vdo));
    f.ins.settings.NMEA_AIVDO = true;
    EXPECT_FALSE(f.ins.comm.HandleGPSSentence(vdo));
    f.hooks.own = true;
    f.hooks.ownReport = OwnVesselReport{50.1, -12.2, 6.5, 359.6, 10.0, 2};
    EXPECT_TRUE(f.ins.comm.HandleGPSSentence(vdo));
    const GPSFix& fix = f.ins.decoder.Fix;
    EXPECT_EQ(fix.Status, 1);
    EXPECT_TRUE(fix.Diff);
    EXPECT_DOUBLE_EQ(fix.Pos.Lat, 50.1 * 3600.0);
    EXPECT_DOUBLE_EQ(fix.Pos.Long, -12.2 * 3600.0);
    EXPECT_EQ(fix.Course, 360);
    EXPECT_FLOAT_EQ(fix.Speed, 6.5f);
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, 10.0f);
    f.hooks.ownReport.FixQuality = 0;
    f.ins.comm.HandleGPSSentence(vdo);
    EXPECT_EQ(fix.Status, 0);
}

TEST(Intake, OpenFailuresNameTheInput) {
    struct Case {
        bool (Comm::*open)();
        void (*port)(CommSettings&, int16_t);
        const char* noPort;
        const char* failed;
        int dialog;
    };
    const Case cases[] = {
        {&Comm::OpenGPSPort, [](CommSettings& s, int16_t p) { s.GPSPort = p; }, "No port selected for GPS input!",
         "The GPS serial port is already open or does not exist!\nCheck no other programs are using the port, and that your GPS port\ndoes not match your mouse connection.",
         int(CommDialog::GPS)},
        {&Comm::OpenAISPort, [](CommSettings& s, int16_t p) { s.AISPort = p; }, "No port selected for AIS input!",
         "The AIS serial port is already open or does not exist!\nCheck no other programs are using the port, and that your ARPA port\ndoes not match your mouse connection.",
         int(CommDialog::AIS)},
        {&Comm::OpenARPAPort, [](CommSettings& s, int16_t p) { s.ARPAPort = p; }, "No port selected for ARPA input!",
         "The ARPA serial port is already open or does not exist!\nCheck no other programs are using the port, and that your ARPA port\ndoes not match your mouse connection.",
         int(CommDialog::ARPA)},
        {&Comm::OpenGyroPort, [](CommSettings& s, int16_t p) { s.GyroPort = p; }, "No port selected for Gyro input!",
         "The Gyro serial port is already open or does not exist!\nCheck no other programs are using the port, and that your Gyro port\ndoes not match your mouse connection.",
         int(CommDialog::Gyro)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.noPort);
        InstrumentsFixture f;
        f.Load();
        c.port(f.ins.settings, 0);
        EXPECT_FALSE((f.ins.comm.*c.open)());
        c.port(f.ins.settings, 5);
        f.ports.missing.insert(5);
        EXPECT_FALSE((f.ins.comm.*c.open)());
        ASSERT_EQ(f.dialogs.asked.size(), 2u);
        EXPECT_EQ(f.dialogs.asked[0].text, c.noPort);
        EXPECT_EQ(f.dialogs.asked[1].text, c.failed);
        EXPECT_EQ(f.dialogs.asked[1].style, mb::OKOnly | mb::Exclamation);
        EXPECT_EQ(f.dialogs.asked[1].title, "Tarnel");
        ASSERT_EQ(f.hooks.calls.size(), 1u);
        EXPECT_EQ(f.hooks.calls[0], "ShowCommDialog" + std::to_string(c.dialog));
    }
}

TEST(Intake, StartAndStopGPS) {
    InstrumentsFixture f;
    f.Load();
    // A failed open leaves the mode as it was.
    f.ports.missing.insert(1);
    EXPECT_FALSE(f.ins.comm.StartGPS());
    EXPECT_EQ(f.V().Mode, 0);
    f.ports.missing.clear();

    CommSettings& s = f.ins.settings;
    s.ARPAEnable = true;
    s.ARPAPort = 3;
    s.GyroUseGyroPort = true;
    s.GyroPort = 4;
    s.AISEnable = true;
    s.AISPort = 5;
    f.ins.decoder.Fix.Status = 1;
    f.ins.decoder.FixReceiving = true;
    ASSERT_TRUE(f.ins.comm.StartGPS());
    EXPECT_EQ(f.V().Mode, 3);
    EXPECT_EQ(f.ins.decoder.Fix.Status, 0);
    EXPECT_FALSE(f.ins.decoder.FixReceiving);
    for (int16_t p : {1, 3, 4, 5}) EXPECT_EQ(f.ports.ComPortStatus(p), 1) << p;
    EXPECT_EQ(f.ports.opened[1], 4800);
    // Already connected: nothing happens.
    EXPECT_FALSE(f.ins.comm.StartGPS());
    EXPECT_EQ(f.ports.opens[1], 2);

    f.V().Mode = 2;
    f.V().COG = 123.0;
    f.V().SOG = 6.0;
    f.ins.comm.StopGPS();
    EXPECT_EQ(f.V().Mode, 0);
    EXPECT_EQ(f.V().COG, 0.0);
    EXPECT_EQ(f.V().SOG, 0.0);
    for (int16_t p : {1, 3, 4, 5}) EXPECT_EQ(f.ports.ComPortStatus(p), 0) << p;
    EXPECT_EQ(f.ins.console.StatusText, "Off Line");
    EXPECT_EQ(f.ins.console.LabVessel[0], "N/A");
    std::vector<std::string> want = {"ClearArpaTargets", "MenuGPSOn", "ClearActiveTargets", "CloseTrack", "MenuGPSOff"};
    EXPECT_EQ(f.hooks.calls, want);
}

// The other ports: the gyro port takes headings only while a mode is on,
// the ARPA port hands TTM (and OSD with the gyro on the GPS port) to the
// target decoder, the AIS port hands "!" sentences over whole.
TEST(Intake, GyroARPAAndAISPorts) {
    InstrumentsFixture f;
    f.Load();
    CommSettings& s = f.ins.settings;
    s.GyroUseGyroPort = true;
    s.GyroPort = 4;
    s.ARPAPort = 3;
    s.AISPort = 5;
    s.AISEnable = true;
    for (int16_t p : {3, 4, 5}) f.ports.OpenComPort(p, 4800);
    f.ports.Feed(4, Sentence("HEHDT,12.5,T"));
    f.ins.comm.ReadGyroPort();
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, 0.0f);  // mode None
    f.V().Mode = 1;
    f.ports.Feed(4, Sentence("HEHDT,12.5,T"));
    f.ports.Feed(4, Sentence("GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,"));
    f.ports.Feed(4, Sentence("IIVHW,,T,,M,6.5,N,12.0,K"));
    f.ins.comm.ReadGyroPort();
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, 12.5f);
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.WaterSpeed, 6.5f);
    EXPECT_EQ(f.ins.decoder.Fix.Status, 0);  // no positions from the gyro port

    f.ports.Feed(3, Sentence("RATTM,01,2.5,45.0,T,10.0,180.0,T,0.5,6.0,N,SHIP,T,,"));
    f.ports.Feed(3, Sentence("RAOSD,35.0,A,,,,,,,,,"));
    f.ports.Feed(3, "$RATTM\n");  // 7 characters: too short
    f.ports.Feed(3, Sentence("RAXXX,1"));
    f.ins.comm.ReadARPAPort();
    ASSERT_EQ(f.hooks.arpa.size(), 2u);
    EXPECT_EQ(f.hooks.arpa[0].substr(0, 4), "TTM:");
    EXPECT_EQ(f.hooks.arpa[1].substr(0, 4), "OSD:");
    s.GyroUseGPSPort = false;
    f.ports.Feed(3, Sentence("RAOSD,35.0,A,,,,,,,,,"));
    f.ins.comm.ReadARPAPort();
    EXPECT_EQ(f.hooks.arpa.size(), 2u);

    f.ports.Feed(5, "!AIVDM,1,1,,A,13u?etPv2;0n:dDPwUM1U1Cb069D,0*24\r\n");
    f.ports.Feed(5, "!AIVDM,1");  // 8 characters
    f.ports.Feed(5, "$GPGGA,123519,4807.038,N*00\r\n");
    f.ins.comm.ReadAISPort();
    EXPECT_EQ(f.hooks.ais.size(), 1u);
}

// The Magellan handshake: HANDON is sent until the reply echoes its
// checksum; HANDOFF and "$$" on closing.
TEST(Intake, MagellanHandshake) {
    InstrumentsFixture f;
    f.Load();
    f.ins.settings.WPMode = 2;
    static int answered;
    answered = 0;
    f.ports.onWrite = [](ScriptedComms& self, int16_t port, const std::string& bytes) {
        if (bytes.find("HANDON") == std::string::npos) return;
        // The first try is answered wrongly, the second rightly.
        self.Feed(port, ++answered == 1 ? "$PMGNCSM,00\r\n" : "$PMGNCSM," + NmeaChecksum("PMGNCMD,HANDON") + "\r\n");
    };
    ASSERT_TRUE(f.ins.comm.OpenGPSPort());
    const std::string on = "$PMGNCMD,HANDON*" + NmeaChecksum("PMGNCMD,HANDON") + "\r\n\r\n";
    EXPECT_EQ(f.ports.Written(1), on + on);
    EXPECT_EQ(answered, 2);

    f.ports.written.clear();
    f.ins.comm.CloseGPSPort();
    EXPECT_EQ(f.ports.Written(1), "$PMGNCMD,HANDOFF*" + NmeaChecksum("PMGNCMD,HANDOFF") + "\r\n\r\n" + "\r\n$$");
    EXPECT_EQ(f.ports.ComPortStatus(1), 0);

    // No answer at all: it gives up after 20 seconds of the clock.
    f.ports.onWrite = nullptr;
    f.ports.written.clear();
    double before = f.clock.Timer();
    ASSERT_TRUE(f.ins.comm.OpenGPSPort());
    double waited = f.clock.Timer() - before;
    EXPECT_GE(waited, 20.0);
    EXPECT_LT(waited, 22.0);
}

TEST(Intake, PortTester) {
    InstrumentsFixture f;
    Comm& c = f.ins.comm;
    c.TestPort = 0;
    EXPECT_FALSE(c.OpenTestPort());
    c.TestPort = 6;
    f.ports.missing.insert(6);
    EXPECT_FALSE(c.OpenTestPort());
    EXPECT_FALSE(c.TestPortOpen);
    std::vector<std::string> want = {"No port selected for input test!",
                                     "The serial port is already open or does not exist!\nCheck no other programs are using "
                                     "the port, and that your Serial port\ndoes not match your mouse connection."};
    EXPECT_EQ(f.Messages(), want);
    f.ports.missing.clear();
    c.TestBaudRate = 38400;
    ASSERT_TRUE(c.OpenTestPort());
    EXPECT_EQ(f.ports.opened[6], 38400);
    f.ports.Feed(6, "$GPGGA,1\r\n");
    f.ports.Feed(6, "anything at all");
    EXPECT_EQ(c.ReadTestPort(), (std::vector<std::string>{"$GPGGA,1", "anything at all"}));
    c.CloseTestPort();
    EXPECT_EQ(f.ports.ComPortStatus(6), 0);
}

// A flood on a port is taken a bounded number of lines a tick; the rest
// waits for the next tick, nothing is lost.
TEST(Intake, FloodIsTakenInTickSizedPieces) {
    InstrumentsFixture f;
    f.Load();
    f.V().Mode = 2;
    f.ports.OpenComPort(1, 4800);
    for (int i = 0; i < Comm::MaxLinesPerRead + 100; ++i) f.ports.Feed(1, Sentence("HEHDT," + std::to_string(i) + ".0,T"));
    f.ins.comm.ReadGPSPort();
    EXPECT_EQ(f.ports.lines[1].size(), 100u);
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, float(Comm::MaxLinesPerRead - 1));
    f.ins.comm.ReadGPSPort();
    EXPECT_TRUE(f.ports.lines[1].empty());
    EXPECT_FLOAT_EQ(f.ins.decoder.Heading.Heading, float(Comm::MaxLinesPerRead + 99));
}
