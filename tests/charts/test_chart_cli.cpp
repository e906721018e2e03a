// ombra-cli chart: installing real KAP files, asking pixels and positions,
// exporting and rendering, refusing bad files without touching anything.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <sstream>
#include <tuple>

#include "core/Val.h"
#include "platform/chartlib/ImageFile.h"
#include "tests/platform/chartlib/KapWriter.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

RunResult Cli(const std::vector<std::string>& args) {
    std::vector<std::string> argv{CliPath(), "chart"};
    argv.insert(argv.end(), args.begin(), args.end());
    return Run(argv);
}

TEST(ChartCli, InstallAskExportRemove) {
    TempDir root;
    std::string kap = SharedData("kap/SAMPLE1.KAP");
    RunResult r = Cli({"install", kap, "--root", root.path(), "--date", "20240601"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "9801\n");

    r = Cli({"list", "--root", root.path()});
    EXPECT_NE(r.out.find("9801"), std::string::npos);
    EXPECT_NE(r.out.find("TEST HARBOUR"), std::string::npos);
    r = Cli({"info", "9801", "--root", root.path()});
    EXPECT_NE(r.out.find("Raster 300 x 200"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Mercator, 5 reference points"), std::string::npos) << r.out;

    // Reference point 5: pixel 150, 66.
    r = Cli({"pixel", "9801", "0", "50.0503034562", "-12.1244147157", "--root", root.path()});
    EXPECT_EQ(r.out, "150 66\n") << r.err;
    r = Cli({"position", "9801", "0", "150", "66", "--root", root.path()});
    double lat = 0, lon = 0;
    std::istringstream(r.out) >> lat >> lon;
    EXPECT_NEAR(lat, 50.0503034562, 1e-7);
    EXPECT_NEAR(lon, -12.1244147157, 1e-7);
    r = Cli({"pixel", "9801", "0", "50.0", "-12.0", "--root", root.path(), "--exact"});
    RunResult g = test::Run({"gdaltransform", "-i", "-t_srs", "EPSG:4326", kap}, "-12.0 50.0\n");
    double x = 0, y = 0, gx = 0, gy = 0;
    std::istringstream(r.out) >> x >> y;
    std::istringstream(g.out) >> gx >> gy;
    EXPECT_NEAR(x, gx, 0.5);
    EXPECT_NEAR(y, gy, 0.5);

    // Export: the day colours of every pixel, as GDAL expands them.
    r = Cli({"export", "9801", "--plan", "0", "--out", root / "e.ppm", "--root", root.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    g = test::Run({"gdal_translate", "-q", "-of", "PNM", "-expand", "rgb", kap, root / "g.ppm"});
    ASSERT_EQ(g.exitCode, 0);
    Image ours, theirs;
    ASSERT_TRUE(chartlib::DecodePpm(ReadFile(root / "e.ppm"), ours));
    ASSERT_TRUE(chartlib::DecodePpm(ReadFile(root / "g.ppm"), theirs));
    EXPECT_EQ(ours.pixels, theirs.pixels);

    // Render: a PNG others can read, the size asked.
    r = Cli({"render", "9801", "--plan", "0", "--centre", "50.03", "-12.1", "--size", "320x240", "--out", root / "v.png", "--root",
             root.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    g = test::Run({"gdalinfo", root / "v.png"});
    EXPECT_NE(g.out.find("Size is 320, 240"), std::string::npos) << g.out;

    r = Cli({"remove", "9801", "--root", root.path()});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(Cli({"list", "--root", root.path()}).out.find("9801"), std::string::npos);
    r = Cli({"pixel", "9801", "0", "50", "-12", "--root", root.path()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("not installed"), std::string::npos);
}

TEST(ChartCli, BadFilesChangeNothingInstalled) {
    TempDir root;
    ASSERT_EQ(Cli({"install", SharedData("kap/SAMPLE1.KAP"), "--root", root.path()}).exitCode, 0);
    std::string ptr = ReadFile(root / "ChartCat/Chart.PTR");
    std::string cat = ReadFile(root / "ChartCat/Chart.CAT");
    KapShape shape;
    shape.Number = "6000";
    std::string good = WriteKap(shape);
    struct Bad {
        std::string name, bytes, message;
    } bad[] = {
        {"cut.kap", good.substr(0, good.size() / 2), "truncated"},
        {"empty.kap", "", "not a BSB/KAP chart"},
        {"text.kap", "hello world\n", "not a BSB/KAP chart"},
    };
    for (const Bad& b : bad) {
        WriteFile(root / b.name, b.bytes);
        RunResult r = Cli({"install", root / b.name, "--root", root.path()});
        EXPECT_EQ(r.exitCode, 1) << b.name;
        EXPECT_NE(r.err.find(b.message), std::string::npos) << b.name << ": " << r.err;
        EXPECT_EQ(r.out, "");
    }
    EXPECT_EQ(ReadFile(root / "ChartCat/Chart.PTR"), ptr);
    EXPECT_EQ(ReadFile(root / "ChartCat/Chart.CAT"), cat);
    EXPECT_FALSE(std::filesystem::exists(root / "raschts/060"));
    // The staging folder is gone too.
    for (auto& e : std::filesystem::recursive_directory_iterator(root / "raschts"))
        EXPECT_NE(e.path().filename().string()[0], '.') << e.path();
    // A missing file is named.
    RunResult r = Cli({"install", root / "nothere.kap", "--root", root.path()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("nothere.kap"), std::string::npos);
}

TEST(ChartCli, NumbersFromFileNamesAndSeveralAtOnce) {
    TempDir root;
    KapShape a;
    a.OmitNumber = true;
    KapShape b;
    b.Number = "5501";
    std::tie(b.LatN, b.LatS, b.LonW, b.LonE) = std::make_tuple(-33.70, -33.95, 151.15, 151.45);
    WriteFile(root / "us5ma11m.kap", WriteKap(a));
    WriteFile(root / "b.kap", WriteKap(b));
    RunResult r = Cli({"install", root / "us5ma11m.kap", root / "b.kap", "--root", root.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "US5MA11M\n5501\n");
    // Found by number in its folder, and by position through the catalogue.
    EXPECT_TRUE(std::filesystem::exists(root / "raschts/005/US5MA11M/US5MA11M.HDR"));
    EXPECT_TRUE(std::filesystem::exists(root / "raschts/055/5501/5501.HDR"));
    EXPECT_TRUE(std::filesystem::exists(root / "ChartCat/SE/33S151E.PTR"));
    // Installing again replaces the chart; the catalogue keeps one pointer.
    r = Cli({"install", root / "b.kap", "--root", root.path(), "--date", "20250102"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    std::string ptr = ReadFile(root / "ChartCat/Chart.PTR");
    EXPECT_EQ(ptr.find("5501"), ptr.rfind("5501"));
    EXPECT_EQ(ReadFile(root / "raschts/055/5501/5501.HDR").substr(13, 8), "20250102");
}

TEST(ChartCli, DemoChartAndUsage) {
    TempDir root;
    RunResult r = Cli({"make-demo", "--root", root.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "4000\n");
    EXPECT_EQ(Cli({"verify", "4000", "--root", root.path()}).exitCode, 0);
    r = Cli({"export", "4000", "--plan", "1", "--out", root / "p1.ppm", "--root", root.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    Image inset;
    ASSERT_TRUE(chartlib::DecodePpm(ReadFile(root / "p1.ppm"), inset));
    EXPECT_GT(inset.width, 500);
    EXPECT_LT(inset.width, 800);
    // Usage errors.
    EXPECT_EQ(Cli({}).exitCode, 2);
    EXPECT_EQ(Cli({"frobnicate"}).exitCode, 2);
    EXPECT_EQ(Cli({"pixel", "4000", "0", "north", "-12"}).exitCode, 2);
    EXPECT_EQ(Cli({"render", "4000", "--size", "0x9", "--out", "x.png"}).exitCode, 2);
    EXPECT_EQ(Cli({"install", "--root"}).exitCode, 2);
}

// Each option refused with its own message and the usage status; an option
// whose values are short says how many it needs (and, for most, what it wants).
TEST(ChartCli, OptionsRefusedWithTheirMessages) {
    struct Case {
        std::vector<std::string> args;
        std::string err;
    } cases[] = {
        {{"list", "--root"}, "--root needs 1 value\n"},
        {{"list", "--out"}, "--out needs 1 value\n"},
        {{"list", "--date"}, "--date needs 1 value\n"},
        {{"list", "--date", "2024061"}, "--date wants YYYYMMDD\n"},
        {{"list", "--date", "2024O601"}, "--date wants YYYYMMDD\n"},
        {{"list", "--size"}, "--size needs 1 value\n"},
        {{"list", "--size", "800x0"}, "--size wants WxH, each 1 to 8000\n"},
        {{"list", "--size", "8001x10"}, "--size wants WxH, each 1 to 8000\n"},
        {{"list", "--size", "80*10"}, "--size wants WxH, each 1 to 8000\n"},
        {{"list", "--plan"}, "--plan needs 1 value\n--plan wants a plan number\n"},
        {{"list", "--plan", "100"}, "--plan wants a plan number\n"},
        {{"list", "--plan", "-1"}, "--plan wants a plan number\n"},
        {{"list", "--centre", "50"}, "--centre needs 2 values\n--centre wants LAT LON in degrees\n"},
        {{"list", "--center", "91", "0"}, "--centre wants LAT LON in degrees\n"},
        {{"list", "--centre", "50", "-181"}, "--centre wants LAT LON in degrees\n"},
        {{"list", "--pixel-size", "15"}, "--pixel-size wants 16 to 1024\n"},
        {{"list", "--pixel-size", "1025"}, "--pixel-size wants 16 to 1024\n"},
        {{"list", "--palette", "3"}, "--palette wants 0, 1 or 2\n"},
        {{"list", "--palette"}, "--palette needs 1 value\n--palette wants 0, 1 or 2\n"},
        {{"list", "--vessel", "50", "-12"}, "--vessel needs 3 values\n--vessel wants LAT LON HEADING [SOG COG]\n"},
        {{"list", "--vessel", "50", "-12", "north"}, "--vessel wants LAT LON HEADING [SOG COG]\n"},
        {{"list", "--predictor", "soon"}, "--predictor wants minutes\n"},
        {{"list", "--lores", "--bogus"}, "unknown option --bogus\n"},
    };
    for (const Case& c : cases) {
        RunResult r = Cli(c.args);
        std::string expected;
        for (size_t s = 0, e; s < c.err.size(); s = e + 1) {
            e = c.err.find('\n', s);
            expected += "ombra-cli chart: " + c.err.substr(s, e - s + 1);
        }
        EXPECT_EQ(r.exitCode, 2) << c.args[1];
        EXPECT_EQ(r.err, expected) << c.args[1];
        EXPECT_EQ(r.out, "");
    }
}

// Options take their values wherever they stand; the vessel takes SOG and
// COG only when both are numbers, and what follows stays an argument.
TEST(ChartCli, OptionValuesAndPositionals) {
    TempDir root;
    ASSERT_EQ(Cli({"make-demo", "--root", root.path()}).exitCode, 0);
    RunResult r = Cli({"--exact", "pixel", "4000", "--root", root.path(), "0", "50", "-12.0123457"});
    EXPECT_EQ(r.exitCode, 2) << "the subcommand comes first";
    r = Cli({"pixel", "4000", "--root", root.path(), "0", "50.01", "--exact", "-12.0123457"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    std::istringstream xy(r.out);
    double x, y;
    ASSERT_TRUE(xy >> x >> y);
    EXPECT_NE(x, std::floor(x)) << "--exact prints the fraction";
    r = Cli({"render", "4000", "--root", root.path(), "--vessel", "50", "-12", "45", "5", "--out", root / "v.png"});
    EXPECT_EQ(r.exitCode, 2) << "a lone SOG is an extra argument";
    r = Cli({"render", "4000", "--root", root.path(), "--vessel", "50", "-12", "45", "5", "90", "--size", "64x48", "--out",
             root / "v.png"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    for (const char* q : {"pixel", "position"}) {
        r = Cli({q, "4000", "7", "1", "1", "--root", root.path()});
        EXPECT_EQ(r.exitCode, 1) << q;
        EXPECT_EQ(r.err, std::string("ombra-cli chart: the ") + (q == std::string("pixel") ? "position" : "pixel") +
                             " cannot be mapped on plan 7\n");
    }
}

}  // namespace
}  // namespace ombra::test
