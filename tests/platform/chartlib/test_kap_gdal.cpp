// KAP charts read by Ombra against GDAL's BSB driver: the same pixel
// indices, the same colours, and the same mapping within half a pixel on
// Mercator charts; on every projection the reference points are met.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "core/Paths.h"
#include "core/Val.h"
#include "platform/chartlib/ImageFile.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/chartlib/PaletteFile.h"
#include "tests/platform/chartlib/KapWriter.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

using chartlib::OmbraChartLibrary;

std::vector<std::vector<std::string>> Table(const std::string& file) {
    std::ifstream f(std::string(OMBRA_TEST_DATA) + "/charts/" + file);
    std::vector<std::vector<std::string>> rows;
    std::string line;
    while (std::getline(f, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream s(line);
        std::vector<std::string> row;
        std::string w;
        while (s >> w) row.push_back(w);
        rows.push_back(row);
    }
    return rows;
}

// Converts a KAP into the engine's files at dir/CHART.* and opens it, as an
// installation would, with the plan file the plotter writes around the
// engine's georeferencing.
bool ImportAndOpen(OmbraChartLibrary& lib, const std::string& kap, const std::string& dir, ImportedChart& chart,
                   std::string& why) {
    std::string base = dir + "/CHART";
    chart.Number = "CHART";
    chart.IssueDate = "20240101";
    if (!lib.ImportKap(kap, base, chart, why, {})) return false;
    WriteFile(base + ".P00", "PLN  CHART   20240101  Plan 0\r\n0" + std::string(250, ' ') + "\r\n" + chart.Plans[0].GeorefText);
    int16_t layout[5] = {0, 1, 0, 0, 0};
    std::string tag;
    if (lib.OpenChart(base + ".HDR", layout, "", tag) != 0) {
        why = lib.LastError();
        return false;
    }
    return lib.ReadChart(base + ".CHR", 0);
}

std::vector<std::pair<double, double>> GdalTransform(const std::string& kap, const std::vector<std::pair<double, double>>& px) {
    std::string input;
    for (auto& p : px) input += std::to_string(p.first) + " " + std::to_string(p.second) + "\n";
    RunResult r = test::Run({"gdaltransform", "-t_srs", "EPSG:4326", kap}, input);
    std::vector<std::pair<double, double>> out;
    std::istringstream s(r.out);
    double lon, lat, z;
    while (s >> lon >> lat >> z) out.emplace_back(lat, lon);
    return out;
}

KapShape ShapeOf(const std::vector<std::string>& row) {
    KapShape s;
    s.Name = row[0];
    s.Width = int(Val(row[1]));
    s.Height = int(Val(row[2]));
    s.Bits = int(Val(row[3]));
    s.LatN = Val(row[4]);
    s.LatS = Val(row[5]);
    s.LonW = Val(row[6]);
    s.LonE = Val(row[7]);
    s.Projection = row[8];
    s.Index = row[9] == "yes";
    s.RowsFromOne = row[10] == "1";
    s.Continuation = row[11] == "yes";
    s.ExtraRefs = int(Val(row[12]));
    return s;
}

TEST(KapAgainstGdal, IndicesColoursAndMappingAgree) {
    auto rows = Table("kap_cases.txt");
    ASSERT_GE(rows.size(), 10u);
    for (const auto& row : rows) {
        SCOPED_TRACE(row[0]);
        TempDir dir;
        KapShape shape = ShapeOf(row);
        std::string kap = dir / (row[0] + ".KAP");
        WriteFile(kap, WriteKap(shape));

        OmbraChartLibrary lib;
        ImportedChart chart;
        std::string why;
        ASSERT_TRUE(ImportAndOpen(lib, kap, dir.path(), chart, why)) << why;

        // Pixel indices, byte for byte.
        std::vector<uint8_t> ours;
        int w = 0, h = 0;
        ASSERT_TRUE(lib.FullRasterIndices(ours, w, h));
        ASSERT_EQ(w, shape.Width);
        ASSERT_EQ(h, shape.Height);
        std::string raw = dir / "gdal.raw";
        RunResult g = test::Run({"gdal_translate", "-q", "-of", "ENVI", kap, raw});
        ASSERT_EQ(g.exitCode, 0) << g.err;
        std::string theirs = ReadFile(raw);
        ASSERT_EQ(theirs.size(), ours.size());
        size_t differ = 0;
        for (size_t i = 0; i < ours.size(); ++i) differ += uint8_t(theirs[i]) != ours[i];
        EXPECT_EQ(differ, 0u);

        // The exported colours, against GDAL's expansion through its colour table.
        Image exported;
        ASSERT_TRUE(lib.ExportFullRaster(exported, 0));
        std::string ppm = dir / "gdal.ppm";
        g = test::Run({"gdal_translate", "-q", "-of", "PNM", "-expand", "rgb", kap, ppm});
        ASSERT_EQ(g.exitCode, 0) << g.err;
        Image gdalRgb;
        ASSERT_TRUE(chartlib::DecodePpm(ReadFile(ppm), gdalRgb));
        ASSERT_EQ(gdalRgb.pixels.size(), exported.pixels.size());
        size_t colourDiffer = 0;
        for (size_t i = 0; i < exported.pixels.size(); ++i) colourDiffer += (exported.pixels[i] & 0xFFFFFF) != (gdalRgb.pixels[i] & 0xFFFFFF);
        EXPECT_EQ(colourDiffer, 0u);

        // Mapping: GDAL's position of pixels across the chart comes back to
        // the same pixel here.
        std::vector<std::pair<double, double>> px;
        for (int i = 0; i <= 6; ++i)
            for (int j = 0; j <= 6; ++j) px.emplace_back((shape.Width - 1) * i / 6.0 + 0.25, (shape.Height - 1) * j / 6.0 + 0.75);
        auto geo = GdalTransform(kap, px);
        ASSERT_EQ(geo.size(), px.size());
        double worst = 0;
        for (size_t i = 0; i < px.size(); ++i) {
            double x, y;
            ASSERT_TRUE(lib.PositionToPixel(1, 0, LatLong{geo[i].second * 3600.0, geo[i].first * 3600.0}, x, y));
            worst = std::max(worst, std::hypot(x - px[i].first, y - px[i].second));
        }
        EXPECT_LT(worst, 0.5);
    }
}

TEST(KapAgainstGdal, SampleChartOfTheSharedData) {
    TempDir dir;
    std::string kap = SharedData("kap/SAMPLE1.KAP");
    OmbraChartLibrary lib;
    ImportedChart chart;
    std::string why;
    ASSERT_TRUE(ImportAndOpen(lib, kap, dir.path(), chart, why)) << why;
    EXPECT_EQ(chart.Number, "CHART");  // the caller's number wins over NU=
    ImportedChart inspected;
    ASSERT_TRUE(lib.InspectKap(kap, inspected, why));
    EXPECT_EQ(inspected.Number, "9801");
    EXPECT_EQ(inspected.Title, "TEST HARBOUR");
    EXPECT_EQ(inspected.Plans[0].Scale, "25000");
    EXPECT_EQ(inspected.Plans[0].HorizDatum, "WGD");
    EXPECT_EQ(inspected.Plans[0].DepthUnits, "1");
    EXPECT_EQ(inspected.Plans[0].DepthDatum, "11");

    std::vector<uint8_t> ours;
    int w, h;
    ASSERT_TRUE(lib.FullRasterIndices(ours, w, h));
    RunResult g = test::Run({"gdal_translate", "-q", "-of", "ENVI", kap, dir / "s.raw"});
    ASSERT_EQ(g.exitCode, 0);
    std::string theirs = ReadFile(dir / "s.raw");
    ASSERT_EQ(theirs.size(), ours.size());
    EXPECT_TRUE(std::equal(ours.begin(), ours.end(), theirs.begin(), [](uint8_t a, char b) { return a == uint8_t(b); }));

    // The night palette is the file's NGT table.
    lib.ModifySystemPalette(2);
    EXPECT_EQ(lib.PaletteColourOf(0), MakeRgb(9, 22, 13));
    lib.ModifySystemPalette(0);
    EXPECT_EQ(lib.PaletteColourOf(0), MakeRgb(37, 91, 53));

    // Reference point 5 of the file.
    double x, y;
    ASSERT_TRUE(lib.PositionToPixel(1, 0, LatLong{-12.1244147157 * 3600, 50.0503034562 * 3600}, x, y));
    EXPECT_NEAR(x, 150, 0.01);
    EXPECT_NEAR(y, 66, 0.01);
}

TEST(KapProjections, ReferencePointsAreMetAndMappingRoundTrips) {
    auto rows = Table("kap_projections.txt");
    ASSERT_GE(rows.size(), 5u);
    for (const auto& row0 : rows) {
        // Projection names have blanks: the numeric columns are the last 9.
        std::vector<std::string> row = row0;
        size_t n = row.size();
        std::string proj;
        for (size_t i = 3; i + 8 < n; ++i) proj += (proj.empty() ? "" : " ") + row[i];
        SCOPED_TRACE(row[0] + " " + proj);
        KapShape s;
        s.Name = row[0];
        s.Width = int(Val(row[1]));
        s.Height = int(Val(row[2]));
        s.Projection = proj;
        s.CentralMeridian = Val(row[n - 9]);
        s.Parallel1 = Val(row[n - 8]);
        s.Parallel2 = Val(row[n - 7]);
        s.LatN = Val(row[n - 6]);
        s.LatS = Val(row[n - 5]);
        s.LonW = Val(row[n - 4]);
        s.LonE = Val(row[n - 3]);
        s.RefNoise = Val(row[n - 2]);
        s.ExtraRefs = int(Val(row[n - 1]));
        TempDir dir;
        std::string kap = dir / "P.KAP";
        WriteFile(kap, WriteKap(s));
        OmbraChartLibrary lib;
        ImportedChart chart;
        std::string why;
        ASSERT_TRUE(ImportAndOpen(lib, kap, dir.path(), chart, why)) << why;
        for (const KapRefOut& r : KapRefs(s)) {
            double x, y;
            ASSERT_TRUE(lib.PositionToPixel(1, 0, LatLong{r.lon * 3600, r.lat * 3600}, x, y));
            EXPECT_LT(std::hypot(x - r.x, y - r.y), 0.5) << r.x << "," << r.y;
        }
        for (int i = 0; i <= 8; ++i)
            for (int j = 0; j <= 8; ++j) {
                double px = (s.Width - 1) * i / 8.0, py = (s.Height - 1) * j / 8.0, x, y;
                LatLong pos;
                ASSERT_TRUE(lib.PixelToPosition(1, 0, px, py, pos));
                ASSERT_TRUE(lib.PositionToPixel(1, 0, pos, x, y));
                EXPECT_LT(std::hypot(x - px, y - py), 0.1);
            }
    }
}

}  // namespace
}  // namespace ombra::test
