// NMEA decoding: recorded logs against their expected records (through
// ombra-cli nmea, as a navigator would run it), the decoders' edge cases,
// and the ageing of the fix.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>

#include "tests/instruments/InstrumentsFixture.h"
#include "tests/support/TestSupport.h"

using namespace ombra;
using ombra::test::InstrumentsFixture;
using ombra::test::Sentence;

namespace {

// One flat JSON line (strings, numbers, booleans) as key -> value text.
std::map<std::string, std::string> Flat(const std::string& line) {
    static const std::regex pair(R"re("(\w+)":("[^"]*"|[^,}]*))re");
    std::map<std::string, std::string> out;
    EXPECT_TRUE(!line.empty() && line.front() == '{') << line;
    for (std::sregex_iterator i(line.begin(), line.end(), pair), e; i != e; ++i) out[(*i)[1]] = (*i)[2];
    return out;
}

// Every key of the expected record, the same in the one decoded.
void ExpectSameRecord(const std::string& want, const std::string& got) {
    auto g = Flat(got);
    for (const auto& [key, value] : Flat(want)) {
        SCOPED_TRACE(key);
        ASSERT_TRUE(g.count(key)) << got;
        if (value[0] == '"' || value == "true" || value == "false" || value == "null") {
            EXPECT_EQ(g[key], value);
        } else {
            double a = std::stod(value);
            EXPECT_NEAR(std::stod(g[key]), a, 1e-6 * std::max(1.0, std::fabs(a)));
        }
    }
}

}  // namespace

// Every log in tests/data/instruments/nmea against its expected records.
TEST(DecodingLogs, CliMatchesExpectedRecords) {
    std::filesystem::path dir = std::string(OMBRA_TEST_DATA) + "/instruments/nmea";
    int logs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        if (entry.path().extension() != ".nmea") continue;
        ++logs;
        SCOPED_TRACE(entry.path().filename().string());
        auto run = test::Run({test::CliPath(), "nmea", entry.path().string()});
        ASSERT_EQ(run.exitCode, 0) << run.err;
        auto got = test::SplitLines(run.out);
        auto want = test::SplitLines(test::ReadFile(std::filesystem::path(entry.path()).replace_extension(".jsonl").string()));
        ASSERT_EQ(got.size(), want.size()) << run.out;
        for (size_t i = 0; i < want.size(); ++i) {
            SCOPED_TRACE("record " + std::to_string(i + 1));
            ExpectSameRecord(want[i], got[i]);
        }
    }
    EXPECT_GT(logs, 0);
}

// Reading from standard input, and a file that cannot be read.
TEST(DecodingLogs, CliInputs) {
    auto run = test::Run({test::CliPath(), "nmea", "-"}, Sentence("HEHDT,12.0,T") + "junk\n" + Sentence("HEHDT,13.0,T"));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(test::SplitLines(run.out).size(), 2u);
    run = test::Run({test::CliPath(), "nmea", "/nonexistent/file.nmea"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot read"), std::string::npos);
    EXPECT_EQ(test::Run({test::CliPath(), "nmea"}).exitCode, 2);
}

TEST(Decoders, GLLForms) {
    struct Case {
        const char* sentence;
        int16_t status;
        double lat;
    };
    const Case cases[] = {
        {"$GPGLL,4916.45,N,12311.12,W,225444,A*1D\r\n", 1, 49 * 3600.0 + 16.45 * 60.0},
        {"$GPGLL,4916.45,N,12311.12,W,225444,V*0A\r\n", 0, 0.0},   // status form, void
        {"$GPGLL,4916.45,N,12311.12,W*31\r\n", 1, 49 * 3600.0 + 16.45 * 60.0},
        {"$GPGLL,4916.45,N,,W*00\r\n", 0, 0.0},                    // short form, no longitude
        {"$GPGLL,4916.45,N,12311.12,W,225444,A,A*00\r\n", 1, 49 * 3600.0 + 16.45 * 60.0},  // NMEA 2.3
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sentence);
        InstrumentsFixture f;
        f.Load();
        f.Decode(c.sentence);
        EXPECT_EQ(f.ins.decoder.Fix.Status, c.status);
        EXPECT_NEAR(f.ins.decoder.Fix.Pos.Lat, c.lat, 1e-6);
        EXPECT_TRUE(f.ins.decoder.FixReceiving);
    }
}

// GLL without VTG for more than five minutes warns at each fix after that.
TEST(Decoders, GLLWithoutVTGWarns) {
    InstrumentsFixture f;
    f.Load();
    const std::string gll = "$GPGLL,4916.45,N,12311.12,W,225444,A*1D\r\n";
    f.Decode(gll);
    f.clock.Advance(300);
    f.Decode(gll);
    EXPECT_TRUE(f.Messages().empty());
    f.clock.Advance(1);
    f.Decode(gll);
    ASSERT_EQ(f.Messages().size(), 1u);
    EXPECT_EQ(f.Messages()[0], "You are not recieving VTG sentences, your COG and SOG values are not accurate.");
    EXPECT_EQ(f.dialogs.asked[0].style & 0xF0, mb::Critical);
    f.Decode("$GPVTG,054.7,T,034.4,M,005.5,N,010.2,K*48\r\n");
    f.clock.Advance(400);
    f.Decode(gll);
    EXPECT_EQ(f.Messages().size(), 1u);
}

TEST(Decoders, RMCTakesThePositionOnlyWhenAsked) {
    InstrumentsFixture f;
    f.Load();
    f.ins.settings.NMEA_RMC = true;
    NmeaDecoder& d = f.ins.decoder;
    f.Decode("$GPRMC,225446,A,4916.45,N,12311.12,W,000.5,054.7,191194,020.3,E*68\r\n");
    EXPECT_EQ(d.Fix.Status, 1);
    EXPECT_NEAR(d.Fix.Pos.Long, -(123 * 3600.0 + 11.12 * 60.0), 1e-6);
    LatLong before = d.Fix.Pos;
    f.Decode("$GPRMC,225447,A,,N,,W,000.5,054.7,191194,020.3,E*00\r\n");  // empty numbers leave it
    EXPECT_EQ(d.Fix.Pos, before);
    f.Decode("$GPRMC,225448,V,5000.00,N,00100.00,W,,,191194,,*00\r\n");
    EXPECT_EQ(d.Fix.Status, 0);
    EXPECT_EQ(d.Fix.Pos, before);
    EXPECT_EQ(d.LastBadTime, 12 * 3600);
}

TEST(Decoders, GSVFillsTheTable) {
    InstrumentsFixture f;
    NmeaDecoder& d = f.ins.decoder;
    f.Decode("$GPGSV,3,1,11,03,03,111,00,04,15,270,00,06,01,010,00,13,06,292,00*74\r\n");
    f.Decode("$GPGSV,3,3,11,22,42,067,42,24,14,311,43,27,05,244,00,,,,*4D\r\n");
    EXPECT_EQ(d.Sats.SatsInView, 11);
    EXPECT_EQ(d.Sats.Sat[3].PRN, 13);
    EXPECT_EQ(d.Sats.Sat[3].Azimuth, 292);
    EXPECT_EQ(d.Sats.Sat[8].PRN, 22);
    EXPECT_EQ(d.Sats.Sat[9].SNR, 43);
    EXPECT_EQ(d.Sats.Sat[11].PRN, 0);
    // An empty field keeps the old number; message 4 is ignored.
    f.Decode("$GPGSV,3,1,11,03,,111,,04,15,270,00,06,01,010,00,13,06,292,00*00\r\n");
    EXPECT_EQ(d.Sats.Sat[0].Elevation, 3);
    f.Decode("$GPGSV,4,4,14,31,10,100,20*00\r\n");
    for (const SatRow& r : d.Sats.Sat) EXPECT_NE(r.PRN, 31);
    f.Decode("$GPGSV,3,x,11*00\r\n");
    EXPECT_EQ(d.Sats.SatsInView, 11);
}

// A number too large for its field is reported once under the decoder's
// name, and the rest of the sentence is still taken.
TEST(Decoders, OverflowIsReportedAndDecodingGoesOn) {
    InstrumentsFixture f;
    f.Load();
    f.Decode("$GPGGA,123519,4807.038,N,01131.000,E,1,99999,0.9,545.4,M,46.9,M,,*00\r\n");
    ASSERT_EQ(f.Messages().size(), 1u);
    EXPECT_EQ(f.Messages()[0], "Error in 'DecodeGGA'\nOverflow");
    EXPECT_EQ(f.ins.decoder.Fix.Status, 1);
    EXPECT_DOUBLE_EQ(f.ins.decoder.GGA.HDOP, 0.9);
    f.Decode("$GPVTG,1e9,T,,M,7.5,N*00\r\n");
    EXPECT_EQ(f.Messages().size(), 2u);
    EXPECT_FLOAT_EQ(f.ins.decoder.Fix.Speed, 7.5f);
}

// GetGPSFix with GPSDelay 20: a good fix lasts 20 s of silence; an invalid
// fix in the last 10 s turns it to 0; then -1, and the caller's record is
// left as it was on that one call.
TEST(Decoders, GetGPSFixAges) {
    InstrumentsFixture f;
    f.Load();
    NmeaDecoder& d = f.ins.decoder;
    GPSFix out;
    f.ReadFix(out);
    EXPECT_EQ(out.Status, -1);

    f.Decode(Sentence("GPGGA,120000,5000.000,N,01200.000,W,1,08,0.9,1,M,1,M,,"));
    struct Step {
        double advance;
        int16_t status;
    };
    const Step steps[] = {{0, 1}, {19, 1}, {1, -99}, {1, -1}};
    for (const Step& s : steps) {
        f.clock.Advance(s.advance);
        GPSFix o;
        o.Status = -99;
        f.ReadFix(o);
        EXPECT_EQ(o.Status, s.status) << "after " << s.advance;
    }
    EXPECT_FALSE(d.FixReceiving);

    // An invalid sentence within half the delay spoils a stale good fix.
    f.Decode(Sentence("GPGGA,120100,5000.000,N,01200.000,W,1,08,0.9,1,M,1,M,,"));
    f.clock.Advance(15);
    f.Decode(Sentence("GPGGA,120115,,,,,0,00,,,M,,M,,"));
    d.Fix.Status = 1;  // as if a good sentence had come between
    f.clock.Advance(6);
    GPSFix o;
    f.ReadFix(o);
    EXPECT_EQ(o.Status, 0);
}

// Ages are taken across midnight: a fix just before it is fresh just after.
TEST(Decoders, GetGPSFixAcrossMidnight) {
    InstrumentsFixture f;
    f.Load();
    f.clock.SetTime(23, 59, 55);
    f.Decode(Sentence("GPGGA,235955,5000.000,N,01200.000,W,1,08,0.9,1,M,1,M,,"));
    f.clock.Advance(10);
    EXPECT_EQ(f.clock.now.hour, 0);
    GPSFix o;
    f.ReadFix(o);
    EXPECT_EQ(o.Status, 1);
    f.clock.Advance(15);
    f.ReadFix(o);
    EXPECT_EQ(o.Status, 1);  // the caller's record as it was: this call found the data run out
    EXPECT_EQ(f.ins.decoder.Fix.Status, -1);
}

namespace {

// Everything a decoder may change, as text, so two decoders' states can be
// compared whole.
std::string State(const NmeaDecoder& d) {
    std::ostringstream o;
    const GPSFix& f = d.Fix;
    o << f.Status << ' ' << f.Diff << ' ' << f.Time << ' ' << f.Date << ' ' << f.Pos.Lat << ' ' << f.Pos.Long << ' '
      << f.Course << ' ' << f.Speed << ' ' << f.Stamp << " | " << d.Heading.Heading << ' ' << d.Heading.HeadingMag << ' '
      << d.Heading.Variation << ' ' << d.Heading.Deviation << ' ' << d.Heading.WaterSpeed << ' ' << d.Heading.WaterSpeedKmh
      << " | " << d.GGA.Satellites << ' ' << d.GGA.HDOP << ' ' << d.Sats.SatsInView << ' ' << d.Sats.Sat[0].PRN << " | "
      << d.FixReceiving << ' ' << d.LastGoodTime << ' ' << d.LastBadTime << ' ' << d.VTGSeen << ' ' << d.VTGWatchStart
      << ' ' << d.LastGGA;
    return o.str();
}

// A sentence cut before its comma number `commas` + 1 (0: the identifier
// alone), with and without its line end.
std::string Cut(const std::string& body, int commas, bool lineEnd) {
    size_t at = body.find(',');
    for (int i = 0; i < commas && at != std::string::npos; ++i) at = body.find(',', at + 1);
    std::string s = "$" + (at == std::string::npos ? body : body.substr(0, at));
    return s + (lineEnd ? "*00\r\n" : "*00");
}

}  // namespace

// The intake refuses a sentence that stops before its needed field, and
// what it does instead is exactly what the decoder would have done with
// the empty fields: for every identifier, every cut, both line ends.
TEST(Decoders, ShortSentencesAsTheDecoderWouldTakeThem) {
    const char* bodies[] = {
        "GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,",
        "GPGLL,4916.45,N,12311.12,W,225444,A",
        "GPRMC,225446,A,4916.45,N,12311.12,W,000.5,054.7,191194,020.3,E",
        "GPVTG,054.7,T,034.4,M,005.5,N,010.2,K",
        "GPGSV,3,1,11,03,03,111,00,04,15,270,00,06,01,010,00,13,06,292,00",
        "HEHDT,271.5,T",
        "HCHDG,98.3,0.0,E,12.6,W",
        "VWVHW,045.0,T,030.0,M,5.5,N,10.2,K",
    };
    int shortOnes = 0;
    for (const char* body : bodies) {
        const NmeaDecoder::Route* route = NmeaDecoder::FindRoute(std::string_view(body).substr(2, 3));
        ASSERT_NE(route, nullptr) << body;
        for (int commas = 0; commas <= 20; ++commas) {
            for (bool lineEnd : {true, false}) {
                const std::string s = Cut(body, commas, lineEnd);
                SCOPED_TRACE(s);
                InstrumentsFixture routed, direct;
                for (InstrumentsFixture* f : {&routed, &direct}) {
                    f->Load();
                    f->ins.settings.NMEA_RMC = true;
                    f->Decode(Sentence("GPGGA,120000,5000.000,N,01200.000,W,1,08,0.9,1,M,1,M,,"));
                    f->clock.Advance(3);
                }
                NmeaFields fields = SplitFields(s, route->maxField);
                shortOnes += fields.count < route->minField;
                routed.ins.decoder.Run(*route, fields, s);
                (direct.ins.decoder.*route->decode)(fields, s);
                EXPECT_EQ(State(routed.ins.decoder), State(direct.ins.decoder));
            }
        }
    }
    EXPECT_GT(shortOnes, 20);  // the cuts did reach below every needed field
}

// What each decoder says it changed, and that nothing it finds is shown
// by the decoder itself: the faults and the VTG warning are the caller's.
TEST(Decoders, ResultsSayWhatChanged) {
    struct Case {
        const char* sentence;
        uint8_t changed;
        size_t faults;
    };
    const Case cases[] = {
        {"$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*00\r\n", kFixChanged | kGGAChanged | kReception, 0},
        {"$GPGGA,123519,,,,,0,00,,,M,,M,,*00\r\n", kFixChanged | kReception, 0},
        {"$GPGGA,123519,4807.038,N,01131.000,E,1,99999,0.9,545.4,M,46.9,M,,*00\r\n", kFixChanged | kGGAChanged | kReception, 1},
        {"$GPRMC,225446,A,4916.45,N,12311.12,W,000.5,054.7,191194,020.3,E*00\r\n", kFixChanged | kCourseSpeed | kReception, 0},
        {"$GPRMC,225446,V,,,,,,,191194,,*00\r\n", kFixChanged | kReception, 0},
        {"$GPRMC,225446*00\r\n", kReception, 0},
        {"$GPVTG,1e9,T,,M,7.5,N*00\r\n", kCourseSpeed | kReception, 1},
        {"$HEHDT,271.5,T*00\r\n", kHeadingChanged, 0},
        {"$HEHDT,271.5,M*00\r\n", 0, 0},
        {"$GPGSV,3,1,11,03,03,111,00*00\r\n", kSatellites, 0},
        {"$GPGSV,4,4,14,31,10,100,20*00\r\n", 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sentence);
        InstrumentsFixture f;
        f.Load();
        f.ins.settings.NMEA_RMC = true;
        const std::string s = c.sentence;
        const NmeaDecoder::Route* route = NmeaDecoder::FindRoute(std::string_view(s).substr(3, 3));
        DecodeResult r = f.ins.decoder.Run(*route, SplitFields(s, route->maxField), s);
        EXPECT_EQ(int(r.changed), int(c.changed));
        ASSERT_EQ(r.faults.size(), c.faults);
        if (c.faults) {
            EXPECT_EQ(r.faults[0], "Overflow");
        }
        EXPECT_TRUE(f.Messages().empty());
    }
}

// GLL without VTG: the decoder only flags the warning; the intake shows it.
TEST(Decoders, VTGWarningShownByTheIntake) {
    InstrumentsFixture f;
    f.Load();
    f.ins.settings.NMEA_GLL = true;
    f.V().Mode = 2;
    const std::string gll = "$GPGLL,4916.45,N,12311.12,W,225444,A*1D\r\n";
    const NmeaDecoder::Route* route = NmeaDecoder::FindRoute("GLL");
    EXPECT_FALSE(f.ins.decoder.Run(*route, SplitFields(gll, route->maxField), gll).vtgMissing);
    f.clock.Advance(301);
    EXPECT_TRUE(f.ins.decoder.Run(*route, SplitFields(gll, route->maxField), gll).vtgMissing);
    EXPECT_TRUE(f.Messages().empty());
    EXPECT_TRUE(f.ins.comm.HandleGPSSentence(gll));
    ASSERT_EQ(f.Messages().size(), 1u);
    EXPECT_EQ(f.Messages()[0], "You are not recieving VTG sentences, your COG and SOG values are not accurate.");
}

// Reading the fix never ages it: only AgeFix does, once, and says so.
TEST(Decoders, ReadingDoesNotAge) {
    InstrumentsFixture f;
    f.Load();
    NmeaDecoder& d = f.ins.decoder;
    f.Decode(Sentence("GPGGA,120000,5000.000,N,01200.000,W,1,08,0.9,1,M,1,M,,"));
    f.clock.Advance(100);
    GPSFix o;
    for (int i = 0; i < 3; ++i) {
        d.GetGPSFix(o);
        EXPECT_EQ(o.Status, 1);
    }
    EXPECT_TRUE(d.AgeFix());
    EXPECT_FALSE(d.AgeFix());  // already run out: nothing more to age
    d.GetGPSFix(o);
    EXPECT_EQ(o.Status, -1);
}
