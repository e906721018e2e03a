// The navigation objects drawn by the real chart view over the demo chart:
// the chart engine paints the raster, the view's leg routine draws the
// route and the boundary, the stores draw their symbols, and the pixels of
// the rendered image are checked.
#include <gtest/gtest.h>

#include <cmath>

#include "charts/DemoChart.h"
#include "navmath/RLGC.h"
#include "plotter/DisplayChart.h"
#include "navobjects/NavObjects.h"
#include "platform/chartlib/ImageCanvas.h"
#include "tests/charts/ChartFixture.h"
#include "tests/navobjects/NavFixture.h"

namespace ombra::test {
namespace {

// The engine's image canvas copies images as they are; symbols carry their
// mask in the alpha channel, as the window's canvas honours it, so this
// canvas lays them over the chart the same way.
class MaskedCanvas : public Canvas {
public:
    explicit MaskedCanvas(Image& img) : img_(img), inner_(img) {}
    int Width() const override { return inner_.Width(); }
    int Height() const override { return inner_.Height(); }
    void SetPen(const Pen& p) override { inner_.SetPen(p); }
    void SetBrush(const Brush& b) override { inner_.SetBrush(b); }
    void SetFont(const Font& f) override { inner_.SetFont(f); }
    void SetTextColour(Rgb c) override { inner_.SetTextColour(c); }
    void Line(ChartPoint a, ChartPoint b) override { inner_.Line(a, b); }
    void Polyline(const std::vector<ChartPoint>& p) override { inner_.Polyline(p); }
    void Polygon(const std::vector<ChartPoint>& p) override { inner_.Polygon(p); }
    void PolyBezier(const std::vector<ChartPoint>& p) override { inner_.PolyBezier(p); }
    void Ellipse(const PixelRect& r) override { inner_.Ellipse(r); }
    void Rectangle(const PixelRect& r) override { inner_.Rectangle(r); }
    void FillRect(const PixelRect& r, Rgb c) override { inner_.FillRect(r, c); }
    void Text(ChartPoint at, const std::string& s) override { inner_.Text(at, s); }
    int TextWidth(const std::string& s) override { return inner_.TextWidth(s); }
    int TextHeight() override { return inner_.TextHeight(); }
    void Blit(ChartPoint at, const Image& image) override {
        for (int y = 0; y < image.height; ++y)
            for (int x = 0; x < image.width; ++x) {
                uint32_t p = image.at(x, y);
                int tx = at.x + x, ty = at.y + y;
                if ((p >> 24) != 0 && tx >= 0 && ty >= 0 && tx < img_.width && ty < img_.height) img_.at(tx, ty) = p;
            }
    }
    void SetClip(const PixelRect& r) override { inner_.SetClip(r); }
    void ClearClip() override { inner_.ClearClip(); }

private:
    Image& img_;
    chartlib::ImageCanvas inner_;
};

uint32_t Rgb24(uint32_t p) { return p & 0xFFFFFF; }

// A colour found within `radius` pixels of a point.
bool Near(const Image& img, ChartPoint p, Rgb colour, int radius) {
    for (int dy = -radius; dy <= radius; ++dy)
        for (int dx = -radius; dx <= radius; ++dx) {
            int x = p.x + dx, y = p.y + dy;
            if (x >= 0 && y >= 0 && x < img.width && y < img.height && Rgb24(img.at(x, y)) == colour) return true;
        }
    return false;
}

TEST(RenderedDemoChart, WaypointsRoutesAndBoundariesOverTheChart) {
    ChartWorld cw;
    {
        DemoChart demo;
        Image img(demo.Width(), demo.Height());
        demo.PaintBase(img);
        chartlib::ImageCanvas c(img);
        demo.PaintOverlay(c);
        IndexedChartImage ix;
        std::string why;
        ASSERT_TRUE(demo.ToIndexed(img, ix, why)) << why;
        ASSERT_TRUE(cw.charts.Installer.InstallImage(cw.root.path(), ix, demo.Metadata(), "20240601", demo.SpecialWarnings()).Ok);
    }
    cw.charts.View.SetViewSize(900, 700);
    ASSERT_TRUE(cw.charts.Charts.NewChart("4000"));
    cw.charts.View.ShowHiRes();

    TempDir data;
    Globals globals;
    globals.UserDataPath = data.path() + "/";
    globals.VersionText = "0.1";
    ManualClock clock;
    NoEvents events;
    ScriptedHost host;
    DisplayChart link(cw.charts.View, cw.charts.Legs, cw.library, cw.charts.State, &cw.charts.Charts);
    NavContext ctx{cw.registry, cw.dialogs, cw.errors, cw.units, clock, events, link, host, globals};
    ActiveLeg leg;
    NavObjects nav(ctx, leg);
    RegisterNavLayers(cw.charts.View, nav);
    nav.LoadNavObjects();
    nav.LoadWaypoints();
    cw.dialogs.texts = {"Marks", "Routes", "Areas", "R001", "BA001"};
    nav.waypoints.NewWaypointDB();
    nav.routes.NewRouteDB();
    nav.boundaries.NewBoundaryDB();

    const LatLong centre = DemoChart::IslandCentre();
    LatLong mark = DeadReckon(centre, 200.0, 1.8);
    int16_t w = nav.waypoints.AddWaypoint(AddBy::Mouse, &mark);
    nav.waypoints.At(w)->Icon = 25;  // "Red Square"
    nav.waypoints.At(w)->AlarmRange = -0.5f;
    int16_t r = nav.routes.NewRoute();
    LatLong r1 = DeadReckon(centre, 250.0, 1.9), r2 = DeadReckon(centre, 300.0, 1.9), r3 = DeadReckon(centre, 340.0, 1.9);
    for (const LatLong& p : {r1, r2, r3}) nav.routes.AddRoutePoint(r, p);
    nav.routes.At(r)->Colour = 10;  // "Light Green"
    int16_t b = nav.boundaries.NewBoundary();
    for (double brg : {90.0, 120.0, 150.0}) nav.boundaries.AddBoundaryMark(b, DeadReckon(centre, brg, 1.9));
    nav.boundaries.EndNewBoundary(b);
    nav.boundaries.At(b)->Colour = 13;  // "Light Magenta"
    nav.boundaries.At(b)->Filled = -1;

    ASSERT_TRUE(cw.charts.View.CentreOnPosition(centre));
    Image img(900, 700);
    MaskedCanvas canvas(img);
    cw.charts.View.RedrawNavCanvas(canvas);

    // Every place checked lies inside the view.
    auto screenOf = [&](const LatLong& p) {
        NavPoint np = cw.charts.View.LocatePosition(p);
        EXPECT_TRUE(np.In(0));
        ChartPoint s = cw.charts.View.ChartToScreen(np.Pixel[0]);
        EXPECT_TRUE(s.x >= 10 && s.y >= 10 && s.x < img.width - 10 && s.y < img.height - 10) << s.x << "," << s.y;
        return s;
    };
    // The symbol: its red square on the point, the chart through its mask.
    ChartPoint s = screenOf(mark);
    EXPECT_EQ(Rgb24(img.at(s.x, s.y)), 0xE00000u);
    EXPECT_NE(Rgb24(img.at(s.x - 7, s.y - 7)), 0u);
    EXPECT_NE(Rgb24(img.at(s.x - 7, s.y - 7)), 0xE00000u);
    // Its range ring, half a mile out, in light red.
    double ppm = link.ScreenPixelsPerNM(0);
    ASSERT_GT(ppm, 5.0);
    int ring = int(std::lround(0.5 * ppm));
    EXPECT_TRUE(Near(img, {s.x + ring, s.y}, 0xFF0000u, 2));
    EXPECT_TRUE(Near(img, {s.x, s.y - ring}, 0xFF0000u, 2));
    // The route's legs in light green, half way along each.
    ChartPoint a = screenOf(r1), c = screenOf(r2);
    EXPECT_TRUE(Near(img, {(a.x + c.x) / 2, (a.y + c.y) / 2}, 0x00FF00u, 2));
    // The boundary: its hatch inside, in light magenta, and its sides.
    ChartPoint m1 = screenOf(DeadReckon(centre, 90.0, 1.9)), m2 = screenOf(DeadReckon(centre, 120.0, 1.9)),
               m3 = screenOf(DeadReckon(centre, 150.0, 1.9));
    ChartPoint inside{(m1.x + m2.x + m3.x) / 3, (m1.y + m2.y + m3.y) / 3};
    EXPECT_TRUE(Near(img, inside, 0xFF00FFu, 4));
    EXPECT_TRUE(Near(img, {(m1.x + m2.x) / 2, (m1.y + m2.y) / 2}, 0xFF00FFu, 2));
    // And the island itself is still there, unpainted by any of it.
    ChartPoint land = screenOf(centre);
    EXPECT_FALSE(Near(img, land, 0xFF00FFu, 3));
    EXPECT_TRUE(cw.Messages().empty() || cw.Messages().back().find("Error in") == std::string::npos);
}

}  // namespace
}  // namespace ombra::test
