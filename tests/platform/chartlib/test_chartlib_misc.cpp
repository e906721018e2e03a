// Palette files, the vessel outline, the software canvas and picture files,
// and the engine's refusals when a chart's files are missing.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/chartlib/BoatShape.h"
#include "platform/chartlib/ImageCanvas.h"
#include "platform/chartlib/ImageFile.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/chartlib/PaletteFile.h"
#include "platform/fake/RecordingCanvas.h"
#include "tests/platform/chartlib/KapWriter.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {
namespace {

using namespace chartlib;

TEST(PaletteFile, RoundTripAndDamage) {
    std::vector<PaletteColour> pal(3);
    pal[0] = {MakeRgb(255, 255, 255), MakeRgb(140, 140, 140), MakeRgb(40, 0, 0), 'S'};
    pal[2] = {MakeRgb(1, 2, 3), MakeRgb(4, 5, 6), MakeRgb(7, 8, 9), 'L'};
    std::string text = PaletteText(ChartFileLine("PAL", "GB", "1234A", "20240601", "  x"), pal);
    EXPECT_EQ(text.substr(13, 8), "20240601");  // the issue date at columns 14-21
    std::vector<PaletteColour> back;
    std::string why;
    ASSERT_TRUE(ParsePalette(text, back, why)) << why;
    ASSERT_EQ(back.size(), 3u);
    EXPECT_EQ(back[0].Night, MakeRgb(40, 0, 0));
    EXPECT_EQ(back[0].Kind, 'S');
    EXPECT_EQ(back[2].Twilight, MakeRgb(4, 5, 6));
    EXPECT_EQ(back[1].Day, 0u);  // a missing index paints black
    const char* bad[] = {"", "XYZ\r\n0,FFFFFF,FFFFFF,FFFFFF,S\r\n", "PAL\r\n0,FFFFFF,FFFFFF,FFFFF,S\r\n",
                         "PAL\r\n256,FFFFFF,FFFFFF,FFFFFF,S\r\n", "PAL\r\n1,FFFFFF,FFFFFF,FFFFFF\r\n", "PAL\r\n\r\n",
                         "PAL\r\n-1,FFFFFF,FFFFFF,FFFFFF,S\r\n"};
    for (const char* b : bad) EXPECT_FALSE(ParsePalette(b, back, why)) << b;
}

TEST(BoatShape, OutlineFileAndDrawingSize) {
    BoatShape s;
    std::string why;
    ASSERT_TRUE(ParseBoatOutline("# yacht\nLENGTH,12\n0,8\n2,-4\n-2,-4\n", s, why)) << why;
    EXPECT_EQ(s.Points.size(), 3u);
    EXPECT_FALSE(ParseBoatOutline("0,8\n2,-4\n", s, why));
    EXPECT_NE(why.find("fewer than 3"), std::string::npos);
    EXPECT_FALSE(ParseBoatOutline("0,8\nbow\n2,-4\n-2,-4\n", s, why));
    EXPECT_NE(why.find("line 2"), std::string::npos);
    EXPECT_FALSE(ParseBoatOutline("0,8\n2,-4\n-2,9999\n", s, why));

    ASSERT_TRUE(ParseBoatOutline("0,8\n2,-4\n-2,-4\n", s, why));
    // Tiny at the chart's scale: drawn 24 pixels long, bow up for heading 0.
    auto p = BoatPolygon(s, {100, 100}, 0, 0.01);
    EXPECT_EQ(p[0], (ChartPoint{100, 84}));
    EXPECT_EQ(p[1].y - p[0].y, 24);
    // True to size when large enough; heading 90 puts the bow to the right.
    p = BoatPolygon(s, {100, 100}, 90, 5.0);
    EXPECT_EQ(p[0], (ChartPoint{140, 100}));
}

TEST(ImageCanvas, PixelsWhereTheyBelong) {
    Image img(40, 30, 0xFFFFFFFFu);
    ImageCanvas c(img);
    c.SetPen({MakeRgb(255, 0, 0), 1, PenStyle::Solid});
    c.Line({2, 2}, {12, 2});
    EXPECT_EQ(img.at(2, 2) & 0xFFFFFF, MakeRgb(255, 0, 0));
    EXPECT_EQ(img.at(12, 2) & 0xFFFFFF, MakeRgb(255, 0, 0));
    EXPECT_EQ(img.at(13, 2) & 0xFFFFFF, 0xFFFFFFu);
    c.SetBrush({MakeRgb(0, 0, 255), BrushStyle::Solid});
    c.SetPen({0, 1, PenStyle::Null});
    c.Polygon({{20, 10}, {30, 10}, {30, 20}, {20, 20}});
    EXPECT_EQ(img.at(25, 15) & 0xFFFFFF, MakeRgb(0, 0, 255));
    EXPECT_EQ(img.at(19, 15) & 0xFFFFFF, 0xFFFFFFu);
    // Clipping holds drawing inside.
    c.SetClip({0, 0, 10, 10});
    c.FillRect({0, 0, 40, 30}, MakeRgb(0, 255, 0));
    EXPECT_EQ(img.at(9, 9) & 0xFFFFFF, MakeRgb(0, 255, 0));
    EXPECT_EQ(img.at(10, 10) & 0xFFFFFF, 0xFFFFFFu);
    c.ClearClip();
    // Text paints in the text colour, 6 pixels a character at 8 points.
    c.SetTextColour(MakeRgb(1, 2, 3));
    EXPECT_EQ(c.TextWidth("45°T"), 24);
    Image t(30, 12, 0xFFFFFFFFu);
    ImageCanvas tc(t);
    tc.SetTextColour(MakeRgb(1, 2, 3));
    tc.Text({0, 0}, "I");
    int painted = 0;
    for (uint32_t p : t.pixels) painted += (p & 0xFFFFFF) == MakeRgb(1, 2, 3);
    EXPECT_EQ(painted, 3 + 5 + 3);  // the serifed I of the bitmap font
    // Wild coordinates cost nothing and paint nothing outside.
    c.Line({-2000000000, 5}, {2000000000, 5});
}

TEST(ImageFile, PngIsReadByOtherSoftware) {
    TempDir dir;
    Image img(17, 9);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 17; ++x) img.at(x, y) = 0xFF000000u | MakeRgb(x * 15, y * 28, (x * y) % 256);
    std::string why;
    ASSERT_TRUE(WriteImageFile(dir / "a.png", img, why)) << why;
    RunResult r = test::Run({"gdal_translate", "-q", "-of", "PNM", dir / "a.png", dir / "a.ppm"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    Image back;
    ASSERT_TRUE(DecodePpm(ReadFile(dir / "a.ppm"), back));
    EXPECT_EQ(back.pixels, img.pixels);
    EXPECT_FALSE(WriteImageFile(dir / "a.bmp", img, why));
}

TEST(OmbraChartLibrary, OpenRefusalsKeepThePreviousChart) {
    TempDir dir;
    KapShape shape;
    WriteFile(dir / "C.KAP", WriteKap(shape));
    OmbraChartLibrary lib;
    ImportedChart chart;
    chart.Number = "C";
    std::string why;
    ASSERT_TRUE(lib.ImportKap(dir / "C.KAP", dir / "C", chart, why, {})) << why;
    std::string plan = "PLN  C       20240101\r\n0" + std::string(250, ' ') + "\r\n" + chart.Plans[0].GeorefText;
    WriteFile(dir / "C.P00", plan);
    int16_t layout[5] = {0, 1, 0, 0, 0};
    std::string tag;
    ASSERT_EQ(lib.OpenChart(dir / "C.HDR", layout, "", tag), 0) << lib.LastError();
    EXPECT_EQ(tag, "OMB");
    ASSERT_TRUE(lib.ReadChart(dir / "C.LOR", 0));
    EXPECT_TRUE(lib.RasterInfo().LowRes);
    EXPECT_EQ(lib.RasterInfo().ResolutionSecond, 2);
    EXPECT_TRUE(lib.CheckCRC(dir / "C.CHI"));
    EXPECT_TRUE(lib.CheckCRC(dir / "C.LOR"));

    // A second chart, broken in turn in each of its files.
    std::filesystem::create_directory(dir / "D");
    for (const char* f : {"C.HDR", "C.P00", "C.PAL", "C.CHI", "C.CHR", "C.LOI", "C.LOR"})
        if (std::filesystem::exists(dir / f)) std::filesystem::copy_file(dir / f, dir / ("D/" + std::string(f)));
    struct Case {
        const char* remove;
        int16_t code;
    } cases[] = {{"C.P00", 1}, {"C.PAL", 2}, {"C.CHI", 3}};
    for (const Case& c : cases) {
        std::filesystem::copy(dir / ("D/" + std::string(c.remove)), dir / ("D/keep"), std::filesystem::copy_options::overwrite_existing);
        std::filesystem::remove(dir / ("D/" + std::string(c.remove)));
        EXPECT_EQ(lib.OpenChart(dir / "D/C.HDR", layout, "", tag), c.code) << c.remove;
        EXPECT_FALSE(lib.LastError().empty());
        // The first chart is still the one that maps.
        ChartPoint pt;
        EXPECT_TRUE(lib.GetPixelPt(1, 0, LatLong{-12.1 * 3600, 50.0 * 3600}, pt));
        std::filesystem::rename(dir / "D/keep", dir / ("D/" + std::string(c.remove)));
    }
    // A plan file that is not one.
    WriteFile(dir / "D/C.P00", "HELLO\r\n");
    EXPECT_EQ(lib.OpenChart(dir / "D/C.HDR", layout, "", tag), 1);
    EXPECT_EQ(lib.DecryptPlanFile(dir / "D/C.P00"), "");
    // Damaged raster: CheckCRC says so.
    std::string chr = ReadFile(dir / "C.CHR");
    chr[20] = char(chr[20] ^ 1);
    WriteFile(dir / "C.CHR", chr);
    EXPECT_FALSE(lib.CheckCRC(dir / "C.CHR"));
}

TEST(OmbraChartLibrary, BoatAndTargetsDraw) {
    OmbraChartLibrary lib;
    RecordingCanvas rc;
    lib.DrawBoat(rc, {50, 50}, 30, 0.0, MakeRgb(0, 160, 0));
    auto polys = rc.Of("Polygon");
    ASSERT_EQ(polys.size(), 1u);
    EXPECT_EQ(polys[0].brush.colour, MakeRgb(0, 160, 0));
    EXPECT_EQ(polys[0].points.size(), DefaultBoat().Points.size());
    TempDir dir;
    WriteFile(dir / "Vessel.CSV", "0,10\n3,-5\n-3,-5\n");
    ASSERT_TRUE(lib.ReadBoatOutline(dir / "Vessel.CSV"));
    lib.DrawBoat(rc, {50, 50}, 0, 0.0, 0);
    EXPECT_EQ(rc.Of("Polygon").back().points.size(), 3u);
    WriteFile(dir / "Bad.CSV", "nonsense\n");
    EXPECT_FALSE(lib.ReadBoatOutline(dir / "Bad.CSV"));
    lib.DrawBoat(rc, {50, 50}, 0, 0.0, 0);
    EXPECT_EQ(rc.Of("Polygon").back().points.size(), 3u);  // the good outline stays
    lib.DrawTarget(rc, {10, 10}, 0, 0, MakeRgb(255, 0, 0));
    lib.DrawTarget(rc, {10, 10}, 0, 1, MakeRgb(255, 0, 0));
    EXPECT_EQ(rc.Of("Ellipse").size(), 1u);
}

}  // namespace
}  // namespace ombra::test
