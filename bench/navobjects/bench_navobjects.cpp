// The navigation objects' costs that a navigator feels: opening and saving
// a full waypoint database (32,767 slots, with the magnetic variation of
// every point from the IGRF files shipped in data/install/dat), redrawing
// 1000 waypoints and 50 routes of 50 points (the overlay work: symbols,
// rings, labels, legs handed to the chart's leg routine), and importing a
// GPX file of 6000 waypoints.
//
// Targets: load under 150 ms, save under 100 ms, redraw under 5 ms, GPX
// import well under a second.
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>

#include "core/Format.h"
#include "core/Paths.h"
#include "navmath/MagVar.h"
#include "navobjects/Gpx.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/NavObjects.h"
#include "tests/support/Rig.h"

namespace ombra {
namespace {

// A plain Mercator-free chart: one panel, 10 pixels a minute, whose leg
// routine draws one line and its label, as the chart view does for a leg
// that lies in one plan.
class PlainChart : public NavChart {
public:
    bool ChartOpen() override { return true; }
    void PrepareNavPoint(NavPoint& p) override {
        p.InPlan.assign(1, -1);
        p.Pixel.assign(1, ChartPoint{int((p.Wgs84.Long + 6 * 3600.0) / 6.0), int((51 * 3600.0 - p.Wgs84.Lat) / 6.0)});
    }
    int16_t PanelCount() override { return 1; }
    ChartPoint ToScreen(ChartPoint c) override { return c; }
    double ScreenPixelsPerNM(int16_t) override { return 10.0; }
    bool ScreenToPosition(ChartPoint, LatLong&) override { return false; }
    LatLong ViewCentre() override { return {}; }
    void DrawRhumbLine(Canvas& c, const NavPoint& a, const NavPoint& b, bool label, int16_t, double) override {
        c.Line(a.Pixel[0], b.Pixel[0]);
        if (label) c.Text(a.Pixel[0], "045 °T 12.300 NM RL");
    }
    void DrawPlainRhumbLine(Canvas& c, const NavPoint& a, const NavPoint& b, const std::string&) override {
        c.Line(a.Pixel[0], b.Pixel[0]);
    }
    void DrawGreatCircle(Canvas& c, const NavPoint& a, const NavPoint& b, double, double, const std::string&) override {
        c.Line(a.Pixel[0], b.Pixel[0]);
    }
    bool HitLeg(const NavPoint&, const NavPoint&, bool, ChartPoint, float) override { return false; }
    void CentreOn(const LatLong&) override {}
    bool CanZoom() override { return true; }
    void Redraw() override {}
    Rgb LabelColour() override { return 0; }
    int16_t LabelOverride() override { return 0; }
    bool RouteIconsOff() override { return false; }
};

// A canvas that only counts, so the figure is the overlay logic's own.
class CountingCanvas : public Canvas {
public:
    long calls = 0;
    int Width() const override { return 1600; }
    int Height() const override { return 1200; }
    void SetPen(const Pen&) override { ++calls; }
    void SetBrush(const Brush&) override { ++calls; }
    void SetFont(const Font&) override { ++calls; }
    void SetTextColour(Rgb) override { ++calls; }
    void Line(ChartPoint, ChartPoint) override { ++calls; }
    void Polyline(const std::vector<ChartPoint>&) override { ++calls; }
    void Polygon(const std::vector<ChartPoint>&) override { ++calls; }
    void PolyBezier(const std::vector<ChartPoint>&) override { ++calls; }
    void Ellipse(const PixelRect&) override { ++calls; }
    void Rectangle(const PixelRect&) override { ++calls; }
    void FillRect(const PixelRect&, Rgb) override { ++calls; }
    void Text(ChartPoint, const std::string&) override { ++calls; }
    int TextWidth(const std::string& s) override { return int(s.size()) * 6; }
    int TextHeight() override { return 12; }
    void Blit(ChartPoint, const Image&) override { ++calls; }
    void SetClip(const PixelRect&) override { ++calls; }
    void ClearClip() override { ++calls; }
};

class VariationHost : public NavHost {
public:
    VariationHost(MagVar& m, Clock& c) : magVar(m), clock(c) {}
    float Variation(const LatLong& p) override { return magVar.VariationForYear(p, double(clock.Now().year)); }
    MagVar& magVar;
    Clock& clock;
};

struct World : test::FakePlatform {
    std::string root = (std::filesystem::temp_directory_path() / "ombra-bench-navobjects").string();
    PlainChart chart;
    MagVar magVar{std::string(OMBRA_SOURCE_DIR) + "/data/install/dat/"};
    VariationHost host{magVar, clock};
    NavContext ctx{reg, dialogs, errors, units, clock, events, chart, host, globals};
    ActiveLeg leg;
    NavObjects nav{ctx, leg};
    World() {
        std::filesystem::remove_all(root);
        globals.UserDataPath = root + "/";
        globals.VersionText = "0.1";
        nav.LoadNavObjects();
        nav.LoadWaypoints();
    }
    ~World() { std::filesystem::remove_all(root); }
};

void Fill(Waypoints& wp, int n) {
    wp.List.resize(size_t(n));
    for (int i = 0; i < n; ++i) {
        Waypoint& x = wp.List[size_t(i)];
        x.Number = int16_t(i + 1);
        x.Name = "WP" + Format(i + 1, "00000");
        x.Description = "Mark " + std::to_string(i);
        x.Position.Wgs84 = LatLong{-18000.0 + (i % 181) * 60.0, 180000.0 + (i / 181) * 20.0};
        x.Icon = int16_t(i % 37);
        x.LabelMode = int16_t(i % 4);
        x.AlarmRange = (i % 3) ? 0.5f : -0.3f;
        x.DatumFlag = 1;
    }
}

void BM_LoadWaypoints32767(benchmark::State& state) {
    World w;
    w.dialogs.texts.push_back("Full");
    w.nav.waypoints.NewWaypointDB();
    Fill(w.nav.waypoints, 32767);
    w.nav.waypoints.SaveWaypointDB();
    std::string file = w.nav.waypoints.CurrentFile;
    for (auto _ : state) {
        w.nav.waypoints.ClearAll();
        w.nav.waypoints.CurrentName = "Full";
        w.nav.waypoints.CurrentFile = file;
        w.nav.waypoints.OpenWaypointDB();
        benchmark::DoNotOptimize(w.nav.waypoints.List.data());
    }
    if (w.nav.waypoints.Count() != 32767 || w.nav.waypoints.At(32767)->MagVar == 0.0f) state.SkipWithError("not loaded whole");
}
BENCHMARK(BM_LoadWaypoints32767)->Unit(benchmark::kMillisecond);

void BM_SaveWaypoints32767(benchmark::State& state) {
    World w;
    w.dialogs.texts.push_back("Full");
    w.nav.waypoints.NewWaypointDB();
    Fill(w.nav.waypoints, 32767);
    for (auto _ : state) w.nav.waypoints.SaveWaypointDB();
}
BENCHMARK(BM_SaveWaypoints32767)->Unit(benchmark::kMillisecond);

void BM_Redraw1000Waypoints50Routes(benchmark::State& state) {
    World w;
    w.dialogs.texts = {"Marks", "Passages"};
    w.nav.waypoints.NewWaypointDB();
    Fill(w.nav.waypoints, 1000);
    w.nav.waypoints.PrepareNavPoints();
    w.nav.routes.NewRouteDB();
    for (int r = 1; r <= 50; ++r) {
        w.dialogs.texts.push_back("R" + Format(r, "000"));
        int16_t slot = w.nav.routes.NewRoute();
        for (int p = 0; p < 50; ++p)
            w.nav.routes.AddRoutePoint(slot, LatLong{-18000.0 + p * 90.0, 178000.0 + r * 70.0 + (p % 2) * 30.0});
        w.nav.routes.At(slot)->ShowLegText = r % 2 == 0;
        w.nav.routes.At(slot)->Colour = int16_t(r % 16);
    }
    CountingCanvas c;
    for (auto _ : state) {
        w.nav.DrawWaypointLayer(c);
        w.nav.DrawRouteLayer(c);
    }
    state.counters["calls"] = double(c.calls) / double(state.iterations());
}
BENCHMARK(BM_Redraw1000Waypoints50Routes)->Unit(benchmark::kMillisecond);

void BM_GpxImport6000(benchmark::State& state) {
    GpxData d;
    for (int i = 0; i < 6000; ++i) {
        Waypoint x;
        x.Number = 1;
        x.Name = "Marque " + std::to_string(i) + ", côte";
        x.Description = "Description " + std::to_string(i);
        x.Position.Wgs84 = LatLong{-18000.0 + i * 0.7, 180000.0 + i * 0.3};
        x.Icon = int16_t(i % 37);
        d.Waypoints.push_back(x);
    }
    std::string bytes = WriteGpx(d);
    for (auto _ : state) {
        GpxData back;
        std::string why;
        if (!ReadGpx(bytes, back, why) || back.Waypoints.size() != 6000) state.SkipWithError("not read whole");
        std::string text = WaypointFileText("Ver 2.19", "Imported", back.Waypoints);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
}
BENCHMARK(BM_GpxImport6000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ombra
