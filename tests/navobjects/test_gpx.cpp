// GPX exchange: what is written validates against the GPX 1.1 schema,
// what matters round-trips, odd and hostile files are survived, and the
// command line makes databases byte for byte as the stores write them.
#include <cmath>
#include <sstream>

#include "core/Paths.h"
#include "navobjects/GpxStores.h"
#include "navobjects/Symbols.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

// xmllint's verdict on a file against the shared GPX 1.1 schema.
::testing::AssertionResult ValidGpx(const std::string& path) {
    RunResult r = test::Run({"xmllint", "--noout", "--nonet", "--schema", SharedData("gpx/gpx.xsd"), path});
    if (r.exitCode == 0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << r.err;
}

Waypoint Point(const std::string& name, const std::string& desc, double lat, double lon, int16_t icon) {
    Waypoint w;
    w.Name = name;
    w.Description = desc;
    w.Number = 1;
    w.Position.Wgs84 = LatLong{lon, lat};
    w.Icon = icon;
    w.LabelMode = 3;
    w.AlarmRange = -0.25f;
    w.DatumFlag = 1;
    return w;
}

TEST(Gpx, WrittenFilesValidateAndRoundTrip) {
    TempDir dir;
    GpxData d;
    d.Waypoints = {Point("Nab, east side", "Tower \"N\" <&> ok", 181800.123456789, -4500.987654321, 5),
                   Point("Île d'Ouessant — Créac'h", "", -120000.5, 648000.0, 36),
                   Point("Ågårdsbugten", "Bugt i Østersøen", 200000, 36000, 23)};
    d.Waypoints[1].Attachment = "/home/skipper/Pictures/créac'h.bmp";
    Route r;
    r.Name = "Cross, night";
    r.Number = 4;
    r.Description = "via Casquets";
    r.Display = -1;
    r.Colour = 12;
    r.ShowLegText = true;
    r.Points = {Point("R4.WP1", "", 180000, -3600, 0), Point("R4.WP2", "", 176400, -9000, 35)};
    r.Legs.resize(2);
    r.Legs[0].IsGreatCircle = -1;
    r.PointCount = 2;
    d.Routes = {r};
    GpxTrack t;
    t.Name = "Day";
    t.Segments.resize(2);
    for (int i = 0; i < 3; ++i) {
        NavPoint p;
        p.Wgs84 = LatLong{-3600.0 - i * 10.5, 180000.0 + i * 7.25};
        t.Segments[size_t(i % 2)].Points.push_back(p);
    }
    d.Tracks = {t};
    std::string file = dir / "out.gpx";
    WriteFile(file, WriteGpx(d));
    EXPECT_TRUE(ValidGpx(file));

    GpxData back;
    std::string why;
    ASSERT_TRUE(ReadGpx(ReadFile(file), back, why)) << why;
    ASSERT_EQ(back.Waypoints.size(), 3u);
    for (size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(d.Waypoints[i].Name);
        const Waypoint &a = d.Waypoints[i], &b = back.Waypoints[i];
        EXPECT_EQ(b.Name, a.Name);
        EXPECT_EQ(b.Description, a.Description);
        EXPECT_EQ(b.Icon, a.Icon);
        EXPECT_EQ(b.LabelMode, a.LabelMode);
        EXPECT_FLOAT_EQ(b.AlarmRange, a.AlarmRange);
        EXPECT_NEAR(b.Position.Wgs84.Lat, a.Position.Wgs84.Lat, 1e-8);
        // 180 degrees east is written as 180 west: the same meridian.
        double dl = std::fmod(b.Position.Wgs84.Long - a.Position.Wgs84.Long + 1296000.0 * 2, 1296000.0);
        EXPECT_NEAR(std::min(dl, 1296000.0 - dl), 0.0, 1e-8);
    }
    EXPECT_EQ(back.Waypoints[1].Attachment, d.Waypoints[1].Attachment);
    ASSERT_EQ(back.Routes.size(), 1u);
    EXPECT_EQ(back.Routes[0].Name, "Cross, night");
    EXPECT_EQ(back.Routes[0].Description, "via Casquets");
    EXPECT_EQ(back.Routes[0].Colour, 12);
    EXPECT_TRUE(back.Routes[0].ShowLegText);
    ASSERT_EQ(back.Routes[0].Points.size(), 2u);
    EXPECT_EQ(back.Routes[0].Legs[0].IsGreatCircle, -1);
    EXPECT_EQ(back.Routes[0].Points[1].Icon, 35);
    ASSERT_EQ(back.Tracks.size(), 1u);
    ASSERT_EQ(back.Tracks[0].Segments.size(), 2u);
    EXPECT_EQ(back.Tracks[0].Segments[0].Points.size(), 2u);
    EXPECT_NEAR(back.Tracks[0].Segments[1].Points[0].Wgs84.Long, -3610.5, 1e-8);
}

TEST(Gpx, TextIsMadeFitForLinesAndXml) {
    EXPECT_EQ(CleanText("one\r\ntwo\tthree"), "one  two three");
    EXPECT_EQ(CleanText("ok \xC3\xA9 \xFF \xC3"), "ok \xC3\xA9 \xEF\xBF\xBD \xEF\xBF\xBD");
    EXPECT_EQ(CleanText("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");  // a surrogate
    EXPECT_EQ(SymbolFromGpx("anchorage"), 3);
    EXPECT_EQ(SymbolFromGpx("Shipwreck"), 6);
    EXPECT_EQ(SymbolFromGpx("Waypoint"), 0);
    EXPECT_EQ(SymbolFromGpx("Geocache"), -1);
}

TEST(Gpx, OddAndHostileFiles) {
    std::vector<std::string> cases = NavCases("gpx/cases.txt");
    EXPECT_EQ(cases.size(), 5u);
    for (const std::string& line : cases) {
        std::istringstream f(line);
        std::string file, word;
        int whole = 0, kept = 0, skipped = 0;
        f >> file >> whole >> kept >> skipped >> word;
        SCOPED_TRACE(file);
        GpxData d;
        std::string why;
        EXPECT_EQ(ReadGpx(NavData("gpx/" + file), d, why), whole == 1) << why;
        EXPECT_EQ(int(d.Waypoints.size()), kept);
        EXPECT_EQ(d.Skipped, skipped);
        if (!whole) {
            EXPECT_TRUE(Has(why, word)) << why;
        }
        for (const Waypoint& w : d.Waypoints) {
            EXPECT_EQ(w.Name.find("aaaa"), std::string::npos);       // no entity expansion
            EXPECT_EQ(w.Description.find("root:"), std::string::npos);  // no external entity
        }
    }
    // The GPX 1.0 file: the other program's symbol name is understood.
    GpxData d;
    std::string why;
    ReadGpx(NavData("gpx/gpx10.gpx"), d, why);
    ASSERT_FALSE(d.Waypoints.empty()) << why;
    EXPECT_EQ(d.Waypoints[0].Icon, 6);
    EXPECT_DOUBLE_EQ(d.Waypoints[0].Position.Wgs84.Lat, -120600.0);
}

TEST(GpxCli, ImportMakesDatabasesAsTheStoresWriteThemAndExportGathersThem) {
    TempDir data;
    std::string gpx = data / "small.gpx";
    WriteFile(gpx, NavData("gpx/small.gpx"));
    RunResult r = test::Run({CliPath(), "gpx", "import", gpx, "--data", data.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(Has(r.out, "waypoints: 2 into database \"small\"") && Has(r.out, "skipped: 1")) << r.out;
    EXPECT_EQ(ReadFile(data / "Waypoint/vst00001.way"), NavData("gpx/small.way"));
    EXPECT_EQ(ReadFile(data / "Waypoint/vst00000.way"), "\"small\",\"vst00001.way\"\r\n");
    EXPECT_EQ(ReadFile(data / "Routes/vst00001.rte"), NavData("gpx/small.rte"));
    EXPECT_EQ(ReadFile(data / "Routes/vst00000.rte"), "\"small\",\"vst00001.rte\"\r\n");
    EXPECT_EQ(ReadFile(data / "Tracks/small.trk"), NavData("gpx/small.trk"));
    // Again: the name is taken, so the second import is "small (2)".
    r = test::Run({CliPath(), "gpx", "import", gpx, "--data", data.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(ReadFile(data / "Waypoint/vst00000.way"),
              "\"small\",\"vst00001.way\"\r\n\"small (2)\",\"vst00002.way\"\r\n");
    EXPECT_TRUE(FileExists(data / "Tracks/small (2).trk"));

    // Export: every database into one valid file, or the ones named.
    WriteFile(data / "Other.gpx",
              "<gpx version=\"1.1\" creator=\"t\" xmlns=\"http://www.topografix.com/GPX/1/1\">"
              "<wpt lat=\"10\" lon=\"20\"><name>Elsewhere</name></wpt></gpx>");
    ASSERT_EQ(test::Run({CliPath(), "gpx", "import", data / "Other.gpx", "--data", data.path()}).exitCode, 0);

    RunResult all = test::Run({CliPath(), "gpx", "export", "--data", data.path(), "--out", data / "all.gpx"});
    ASSERT_EQ(all.exitCode, 0) << all.err;
    EXPECT_TRUE(ValidGpx(data / "all.gpx"));
    GpxData d;
    std::string why;
    ASSERT_TRUE(ReadGpx(ReadFile(data / "all.gpx"), d, why)) << why;
    ASSERT_EQ(d.Waypoints.size(), 5u);
    EXPECT_EQ(d.Waypoints[1].Name, "Île Vierge");
    EXPECT_EQ(d.Waypoints[0].Description, "Tower \"N\"");
    EXPECT_EQ(d.Waypoints[0].Icon, 5);
    EXPECT_EQ(d.Waypoints[4].Name, "Elsewhere");
    EXPECT_EQ(d.Routes.size(), 2u);

    RunResult one = test::Run({CliPath(), "gpx", "export", "--data", data.path(), "--out", data / "one.gpx",
                         "--waypoint-db", "Other"});
    ASSERT_EQ(one.exitCode, 0) << one.err;
    ReadGpx(ReadFile(data / "one.gpx"), d, why);
    EXPECT_EQ(d.Waypoints.size(), 1u);
    EXPECT_TRUE(d.Routes.empty());

    RunResult missing = test::Run({CliPath(), "gpx", "export", "--data", data.path(), "--out", data / "x.gpx",
                             "--route-db", "Nowhere"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(Has(missing.err, "no Route database called \"Nowhere\"")) << missing.err;
    EXPECT_FALSE(FileExists(data / "x.gpx"));
    EXPECT_EQ(test::Run({CliPath(), "gpx", "export", "--data", data.path()}).exitCode, 2);
}

}  // namespace
}  // namespace ombra::test
