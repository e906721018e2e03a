// The demo chart, installed and drawn with a vessel on it: pixels of the
// rendered view are checked, and the layers keep their order.
#include <gtest/gtest.h>

#include <cmath>

#include "charts/DemoChart.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "platform/chartlib/ImageCanvas.h"
#include "tests/charts/ChartFixture.h"

namespace ombra::test {
namespace {

struct StillVessel : VesselSource {
    VesselView v;
    bool GetVesselView(VesselView& out) override {
        out = v;
        return true;
    }
};

struct DemoWorld : ChartWorld {
    DemoWorld() {
        DemoChart demo;
        Image img(demo.Width(), demo.Height());
        demo.PaintBase(img);
        chartlib::ImageCanvas c(img);
        demo.PaintOverlay(c);
        IndexedChartImage ix;
        std::string why;
        ok = demo.ToIndexed(img, ix, why) &&
             charts.Installer.InstallImage(root.path(), ix, demo.Metadata(), "20240601", demo.SpecialWarnings()).Ok;
    }
    bool ok = false;
};

DemoWorld& World() {
    static DemoWorld w;  // drawn once for the whole file: it takes a few seconds
    return w;
}

uint32_t Rgb24(uint32_t p) { return p & 0xFFFFFF; }
int Brightness(uint32_t p) { return int((p >> 16) & 255) + int((p >> 8) & 255) + int(p & 255); }

TEST(DemoChart, InstalledWithItsPlansAndChecks) {
    DemoWorld& w = World();
    ASSERT_TRUE(w.ok);
    w.charts.View.SetViewSize(800, 600);
    ASSERT_TRUE(w.charts.Charts.NewChart("4000"));
    const ChartHeader& h = w.charts.State.Header;
    EXPECT_EQ(Trim(h.Plans[1].Title), "Port Ombra");
    EXPECT_EQ(h.SpecialWarnings, "Invented chart for demonstration. NOT FOR NAVIGATION.");
    // The demo area's corners lie on plan 0.
    for (double lat : {49.84, 50.16})
        for (double lon : {-12.32, -11.68})
            EXPECT_TRUE(w.library.IsLatLongInPlan(1, 0, LatLong{lon * 3600, lat * 3600})) << lat << " " << lon;
    // The harbour is on both plans (the inset lies in the far north-west).
    NavPoint harbour = w.charts.View.LocatePosition(DemoChart::HarbourEntrance());
    EXPECT_TRUE(harbour.In(0));
    EXPECT_TRUE(harbour.In(1));
    // The sea test agrees with the invented depths away from the coast;
    // soundings and symbols printed on the sea are not sea, so a few miss.
    int checked = 0, seaMiss = 0;
    for (double lat = 49.9; lat <= 50.1; lat += 0.013)
        for (double lon = -12.1; lon <= -11.9; lon += 0.017) {
            LatLong p{lon * 3600, lat * 3600};
            double d = DemoChart::DepthAt(p);
            if (std::fabs(d) < 3) continue;
            bool sea = w.library.IsPointSea(p);
            EXPECT_FALSE(d < -3 && sea) << lat << " " << lon;
            seaMiss += d > 3 && !sea;
            ++checked;
        }
    EXPECT_GT(checked, 100);
    EXPECT_LT(seaMiss, checked / 10);
}

TEST(DemoChart, RenderedViewShowsIslandSeaAndVessel) {
    DemoWorld& w = World();
    ASSERT_TRUE(w.ok);
    StillVessel vessel;
    vessel.v.Active = true;
    // 3.5 miles south-east of the island's centre, heading north-east.
    vessel.v.Pos = DeadReckon(DemoChart::IslandCentre(), 135.0, 3.5);
    vessel.v.Heading = 45;
    vessel.v.COG = 45;
    vessel.v.SOG = 6;
    vessel.v.Predictor = true;
    vessel.v.PredictorTime = 10;
    vessel.v.Colour = MakeRgb(255, 0, 255);  // a colour the chart does not use
    w.charts.View.SetVesselSource(&vessel);
    w.charts.View.SetViewSize(900, 700);
    ASSERT_TRUE(w.charts.Charts.NewChart("4000"));
    w.charts.View.ShowHiRes();
    // The view opens on the vessel when it is active.
    NavPoint at = w.charts.View.LocatePosition(vessel.v.Pos);
    ASSERT_TRUE(at.In(0));
    ChartPoint vs = w.charts.View.ChartToScreen(at.Pixel[0]);
    EXPECT_NEAR(vs.x, 450, 2);
    EXPECT_NEAR(vs.y, 350, 2);

    // Then centre between the island and the vessel.
    LatLong mid = DeadReckon(DemoChart::IslandCentre(), 135.0, 1.75);
    ASSERT_TRUE(w.charts.View.CentreOnPosition(mid));
    Image img(900, 700);
    chartlib::ImageCanvas canvas(img);
    w.charts.View.RedrawNavCanvas(canvas);

    auto screenOf = [&](const LatLong& p) {
        NavPoint np = w.charts.View.LocatePosition(p);
        EXPECT_TRUE(np.In(0));
        return w.charts.View.ChartToScreen(np.Pixel[0]);
    };
    // The vessel: its colour at its position and along its bow.
    ChartPoint v = screenOf(vessel.v.Pos);
    EXPECT_EQ(Rgb24(img.at(v.x, v.y)), MakeRgb(255, 0, 255));
    EXPECT_EQ(Rgb24(img.at(v.x + 5, v.y - 5)), MakeRgb(255, 0, 255));
    // The predictor: 1 mile to the north-east.
    ChartPoint pe = screenOf(DeadReckon(vessel.v.Pos, 45.0, 1.0));
    bool predictor = false;
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy) predictor = predictor || Rgb24(img.at(pe.x + dx, pe.y + dy)) == MakeRgb(255, 0, 255);
    EXPECT_TRUE(predictor);
    // Land at the island's heart (a hill tint: warm, red above blue), sea
    // two miles east of it (blue at least red).
    ChartPoint land = screenOf(DeadReckon(DemoChart::IslandCentre(), 250.0, 0.5));
    uint32_t lp = img.at(land.x, land.y);
    EXPECT_GT(int((lp >> 16) & 255), int(lp & 255) + 40);
    ChartPoint sea = screenOf(DeadReckon(DemoChart::IslandCentre(), 80.0, 2.6));
    uint32_t sp = img.at(sea.x, sea.y);
    EXPECT_GE(int(sp & 255), int((sp >> 16) & 255));
    EXPECT_TRUE(w.library.IsPointSea(DeadReckon(DemoChart::IslandCentre(), 80.0, 2.6)));
    EXPECT_FALSE(w.library.IsPointSea(DeadReckon(DemoChart::IslandCentre(), 250.0, 0.5)));

    // Night: the same view, much darker; the setting is kept.
    int day = 0;
    for (uint32_t p : img.pixels) day += Brightness(p) > 600;
    w.charts.View.SetPaletteMode(2);
    w.charts.View.RedrawNavCanvas(canvas);
    int night = 0;
    for (uint32_t p : img.pixels) night += Brightness(p) > 600;
    EXPECT_GT(day, int(img.pixels.size() / 2));
    EXPECT_LT(night, int(img.pixels.size() / 50));
    EXPECT_EQ(w.registry.GetSetting(Key::PaletteMode), "2");
    w.charts.View.SetPaletteMode(0);
    w.charts.View.SetVesselSource(nullptr);
}

TEST(DemoChart, LayersDrawInTheirOrderOverTheChart) {
    DemoWorld& w = World();
    ASSERT_TRUE(w.ok);
    StillVessel vessel;
    vessel.v.Active = true;
    vessel.v.Pos = DeadReckon(DemoChart::IslandCentre(), 100.0, 4.0);
    vessel.v.Heading = 0;
    vessel.v.Colour = MakeRgb(255, 0, 255);
    w.charts.View.SetVesselSource(&vessel);
    w.charts.View.SetViewSize(400, 300);
    ASSERT_TRUE(w.charts.Charts.NewChart("4000"));
    w.charts.View.ShowHiRes();
    std::vector<std::string> order;
    auto square = [&](Rgb colour, int half, const char* name) {
        return [&, colour, half, name](Canvas& c, const ChartViewState&) {
            order.push_back(name);
            c.FillRect({200 - half, 150 - half, 200 + half, 150 + half}, colour);
        };
    };
    int passage = w.charts.View.RegisterLayer(Layer::Passage, square(MakeRgb(1, 2, 3), 2, "passage"));
    int wp = w.charts.View.RegisterLayer(Layer::Waypoints, square(MakeRgb(7, 7, 7), 40, "waypoints"));
    int ais = w.charts.View.RegisterLayer(Layer::AisTargets, square(MakeRgb(9, 9, 9), 1, "ais"));
    Image img(400, 300);
    chartlib::ImageCanvas canvas(img);
    w.charts.View.RedrawNavCanvas(canvas);
    EXPECT_EQ(order, (std::vector<std::string>{"waypoints", "ais", "passage"}));
    EXPECT_EQ(Rgb24(img.at(200, 150)), MakeRgb(1, 2, 3));   // the passage on top
    EXPECT_EQ(Rgb24(img.at(200, 140)), MakeRgb(255, 0, 255));  // the vessel over the waypoints
    EXPECT_EQ(Rgb24(img.at(170, 170)), MakeRgb(7, 7, 7));   // the waypoints over the chart
    // ChartPainted ends every redraw; a redraw cannot re-enter itself.
    int refreshed = 0;
    w.host.painted = [&] {
        ++refreshed;
        w.charts.View.RedrawNavCanvas(canvas);
    };
    w.charts.View.RedrawNavCanvas(canvas);
    EXPECT_EQ(refreshed, 1);
    w.host.painted = nullptr;
    // Unregistered layers are gone; a second redraw decodes no tile anew.
    for (int id : {passage, wp, ais}) w.charts.View.UnregisterLayer(id);
    size_t cached = w.library.CachedTiles();
    order.clear();
    w.charts.View.RedrawNavCanvas(canvas);
    EXPECT_TRUE(order.empty());
    EXPECT_EQ(w.library.CachedTiles(), cached);
    w.charts.View.SetVesselSource(nullptr);
}

TEST(DemoChart, DraggingAndScrollingMoveTheView) {
    DemoWorld& w = World();
    ASSERT_TRUE(w.ok);
    w.charts.View.SetViewSize(400, 300);
    ASSERT_TRUE(w.charts.Charts.NewChart("4000"));
    w.charts.View.ShowHiRes();
    w.charts.View.CentreOnPosition(DemoChart::IslandCentre());
    LatLong before = w.charts.View.ViewCentre();
    w.charts.View.BeginDrag({100, 100});
    w.charts.View.DragTo({150, 100});
    w.charts.View.EndDrag();
    LatLong after = w.charts.View.ViewCentre();
    EXPECT_LT(after.Long, before.Long);  // dragging the chart east shows what lies west
    EXPECT_NEAR(after.Lat, before.Lat, 1);
    w.charts.View.ScrollBy(0, -100);
    EXPECT_GT(w.charts.View.ViewCentre().Lat, after.Lat);
    // The wheel zooms about the cursor: the position under it stays.
    LatLong under;
    ASSERT_TRUE(w.charts.View.ScreenToPosition({300, 200}, under));
    w.charts.View.WheelZoom(1, {300, 200});
    EXPECT_EQ(w.charts.View.PixelSize, 256);
    LatLong still;
    ASSERT_TRUE(w.charts.View.ScreenToPosition({300, 200}, still));
    EXPECT_NEAR(still.Lat, under.Lat, 0.5);
    EXPECT_NEAR(still.Long, under.Long, 0.5);
    EXPECT_TRUE(w.charts.View.WarningSet(4));
    // Scrolling the centre onto the inset selects its plan.
    w.charts.View.ResetPixelZoom();
    const auto& o = w.charts.State.Header.Plans[1].Outline;
    w.charts.View.CentreOnPixel((o[1].Pixel.x + o[3].Pixel.x) / 2.0, (o[1].Pixel.y + o[3].Pixel.y) / 2.0);
    EXPECT_EQ(w.charts.View.DisplayedPlan, 1);
    EXPECT_EQ(w.charts.View.ScaleCaption(), "Scale 1:12500");
}

}  // namespace
}  // namespace ombra::test
