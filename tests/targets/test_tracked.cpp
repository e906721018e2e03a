// The tracking service's vessels: the file under the user's data folder,
// read by the tick when its date changes, into the tracked-target table.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/api/DateTime.h"
#include "tests/targets/RadarFeed.h"

using namespace ombra;
using test::P;

namespace {

using Sailing = test::RadarSailing<>;

std::string Report(const std::string& id, const LatLong& p, const std::string& date, const std::string& eol = "\r\n") {
    char lat[32], lon[32];
    std::snprintf(lat, sizeof lat, "%.6f", p.Lat / 3600.0);
    std::snprintf(lon, sizeof lon, "%.6f", p.Long / 3600.0);
    return "VESSEL ID: " + id + eol + "Latitude: " + lat + eol + "LONGITUDE: " + lon + eol + "SPEED: 7.5" + eol +
           "HEADING: 123" + eol + "POS AGE: 2 min" + eol + "REMARK: ignored" + eol + "DATE/TIME: " + date + eol;
}

double Serial(int d, int m, int y, int hh, int mm, int ss) { return DateTime{y, m, d, hh, mm, ss, 0}.Serial(); }

struct Tracking : Sailing {
    // Writes the file with a date newer than any before, then a second of ticks.
    void Publish(const std::string& text) {
        namespace fs = std::filesystem;
        const fs::path path(plotter.tracked().FilePath());
        fs::create_directories(path.parent_path());
        test::WriteFile(path.string(), text);
        fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::seconds(++stamp));
        At(P(0));
    }
    int stamp = 0;
    const TrackedTarget& Slot(int i) { return plotter.tracked().Targets[size_t(i)]; }
};

}  // namespace

TEST(TrackedTargets, TheFileIsReadByTheTickWhenItsDateChanges) {
    Tracking h;
    ASSERT_TRUE(h.Start());
    h.At(P(0));
    EXPECT_EQ(h.plotter.tracked().TargetCount, 0) << "no file, nothing read";
    h.Publish(Report("PILOT 7", P(1), "23/11/2026 10:00:00") + Report("  FISHER", P(2, 1), "23/11/2026 10:00:00"));
    ASSERT_EQ(h.plotter.tracked().TargetCount, 2);
    EXPECT_EQ(h.Slot(0).VesselId, "PILOT 7");
    EXPECT_EQ(h.Slot(1).VesselId, "FISHER") << "the id is trimmed on the left";
    EXPECT_NEAR(h.Slot(1).Position.Wgs84.Lat, P(2, 1).Lat, 0.01);
    EXPECT_NEAR(h.Slot(1).Position.Wgs84.Long, P(2, 1).Long, 0.01);
    EXPECT_FLOAT_EQ(h.Slot(0).Speed, 7.5f);
    EXPECT_FLOAT_EQ(h.Slot(0).Heading, 123.0f);
    EXPECT_EQ(h.Slot(0).PosAge, "2 min");
    EXPECT_DOUBLE_EQ(h.Slot(0).PositionDate, Serial(23, 11, 2026, 10, 0, 0));

    // The same date on the file: not read again, whatever it now holds.
    namespace fs = std::filesystem;
    const fs::path path(h.plotter.tracked().FilePath());
    const auto when = fs::last_write_time(path);
    test::WriteFile(path.string(), Report("PILOT 7", P(1.5), "23/11/2026 10:30:00"));
    fs::last_write_time(path, when);
    h.At(P(0));
    EXPECT_NEAR(h.Slot(0).Position.Wgs84.Lat, P(1).Lat, 0.01);

    // Newer: half an hour later a mile further north: north at 2 knots. A
    // vessel the file no longer lists stays.
    h.Publish(Report("PILOT 7", P(2), "23/11/2026 10:30:00"));
    EXPECT_EQ(h.plotter.tracked().TargetCount, 2);
    EXPECT_EQ(h.Slot(1).VesselId, "FISHER");
    EXPECT_NEAR(h.Slot(0).DerivedSpeed, 2.0, 0.01);
    EXPECT_NEAR(std::remainder(h.Slot(0).DerivedCourse, 360.0), 0.0, 0.01);
    EXPECT_DOUBLE_EQ(h.Slot(0).PreviousDate, Serial(23, 11, 2026, 10, 0, 0));
}

// The file's edge cases, each read into a fresh table.
TEST(TrackedTargets, FileEdgeCases) {
    struct Case {
        const char* what;
        std::string text;
        int count;             // slots used
        double lat;            // slot 0's latitude, minutes north of 50°N
        int16_t unchanged;     // slot 0
        double date;           // slot 0's date
        float derivedSpeed;    // slot 0
    } cases[] = {
        {"same id twice, same date",
         Report("ALPHA", P(1), "23/11/2026 10:00:00") + Report("ALPHA", P(3), "23/11/2026 10:00:00"), 1, 1.0, 1,
         Serial(23, 11, 2026, 10, 0, 0), 0.0f},
        {"same id twice, an hour apart",
         Report("ALPHA", P(1), "23/11/2026 10:00:00") + Report("ALPHA", P(4), "23/11/2026 11:00"), 1, 4.0, 0,
         Serial(23, 11, 2026, 11, 0, 0), 3.0f},
        {"LF line ends", Report("ALPHA", P(1), "23/11/2026 10:00:00", "\n") + Report("BRAVO", P(2), "1/2/26 9:05", "\n"),
         2, 1.0, 0, Serial(23, 11, 2026, 10, 0, 0), 0.0f},
        {"a one-slash date reads as no date", Report("ALPHA", P(1), "23/11 10:00:00"), 1, 1.0, 0, 0.0, 0.0f},
        {"a later report dated earlier derives no speed",
         Report("ALPHA", P(1), "23/11/2026 10:00:00") + Report("ALPHA", P(2), "22/11/2026 10:00:00"), 1, 2.0, 0,
         Serial(22, 11, 2026, 10, 0, 0), 0.0f},
        {"a position off the globe is not taken",
         "VESSEL ID: ALPHA\nLATITUDE: 95\nLONGITUDE: 1e999\nDATE/TIME: 23/11/2026 10:00:00\n", 0, 0.0, 0, -1.0, 0.0f},
        {"no vessel id, nothing", "LATITUDE: 50\nLONGITUDE: -5\n\r\n\n", 0, 0.0, 0, -1.0, 0.0f},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Tracking h;
        ASSERT_TRUE(h.Start());
        h.Publish(c.text);
        EXPECT_EQ(h.plotter.tracked().TargetCount, c.count);
        EXPECT_EQ(h.Slot(0).Unchanged, c.unchanged);
        EXPECT_DOUBLE_EQ(h.Slot(0).PositionDate, c.date);
        EXPECT_NEAR(h.Slot(0).DerivedSpeed, c.derivedSpeed, 0.01);
        if (c.count > 0) {
            EXPECT_NEAR(h.Slot(0).Position.Wgs84.Lat, P(c.lat).Lat, 0.01);
        }
    }
}

// The table holds 101 vessels; the 102nd is dropped, the others stay put.
TEST(TrackedTargets, TheTableHoldsOneHundredAndOneVessels) {
    Tracking h;
    ASSERT_TRUE(h.Start());
    std::string text;
    for (int i = 0; i < 102; ++i) text += Report("V" + std::to_string(i), P(i * 0.01), "23/11/2026 10:00:00", "\n");
    h.Publish(text);
    EXPECT_EQ(h.plotter.tracked().TargetCount, Tracked::kSlots);
    EXPECT_EQ(h.Slot(100).VesselId, "V100");
}
