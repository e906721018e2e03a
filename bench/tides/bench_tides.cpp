// The tides module's costs: one GetTide as the console and the planner ask
// for it (find the region, select it, predict, convert), and the stream grid
// of a full-screen canvas (1920x1080: 39 x 22 cells), both on a region of
// 200x200 grid nodes and ten constituents.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "platform/tidestream/HarmonicTideStream.h"
#include "platform/tidestream/TideRegion.h"
#include "core/Registry.h"
#include "tides/TideDisplay.h"

namespace {

using namespace ombra;

std::string Folder() {
    static const std::string dir = [] {
        char t[] = "/tmp/bench-tides-XXXXXX";
        if (!mkdtemp(t)) std::abort();
        const std::vector<std::string> ten = {"M2", "S2", "N2", "K2", "K1", "O1", "P1", "Q1", "M4", "MS4"};
        tide::RegionData g;
        g.name = "Grid";
        g.south = 50;
        g.west = -2;
        g.north = 51;
        g.east = -1;
        g.constituents = ten;
        g.rows = g.cols = 200;
        g.sea.assign(200 * 200, 1);
        for (size_t n = 0; n < 200 * 200; ++n)
            for (size_t k = 0; k < ten.size(); ++k)
                g.harmonics.push_back({0.1f * float(k + 1), float(n % 360), 0.05f * float(k + 1), float((n * 7) % 360)});
        std::string err;
        if (!tide::SaveRegion(g, t, "Region01", &err)) std::abort();
        static const std::string keep = t;
        std::atexit([] { std::error_code ec; std::filesystem::remove_all(keep, ec); });
        return keep + "/";
    }();
    return dir;
}

// A canvas that draws nothing, so the grid's own cost is measured.
struct NullCanvas : Canvas {
    int w, h;
    NullCanvas(int width, int height) : w(width), h(height) {}
    int Width() const override { return w; }
    int Height() const override { return h; }
    void SetPen(const Pen&) override {}
    void SetBrush(const Brush&) override {}
    void SetFont(const Font&) override {}
    void SetTextColour(Rgb) override {}
    void Line(ChartPoint, ChartPoint) override {}
    void Polyline(const std::vector<ChartPoint>&) override {}
    void Polygon(const std::vector<ChartPoint>&) override {}
    void PolyBezier(const std::vector<ChartPoint>&) override {}
    void Ellipse(const PixelRect&) override {}
    void Rectangle(const PixelRect&) override {}
    void FillRect(const PixelRect&, Rgb) override {}
    void Text(ChartPoint, const std::string&) override {}
    int TextWidth(const std::string& s) override { return int(s.size()) * 6; }
    int TextHeight() override { return 12; }
    void Blit(ChartPoint, const Image&) override {}
    void SetClip(const PixelRect&) override {}
    void ClearClip() override {}
};

// The view spans the region: a pixel is 1/1920 degree across, 1/1080 down;
// one cell in seven is land.
struct ViewHost : TideHost {
    bool ScreenToTidePoint(int x, int y, LatLong& pos) override {
        pos = {(-2 + x / 1920.0) * 3600, (51 - y / 1080.0) * 3600};
        return true;
    }
    bool IsPointSea(const LatLong& pos) override { return int(pos.Long * 7 + pos.Lat) % 7 != 0; }
    ChartPoint ScreenToChart(ChartPoint s) override { return s; }
    ChartPoint ChartToScreen(ChartPoint c) override { return c; }
    std::string ViewKey() override { return "view"; }
    void SetStatus(const std::string&) override {}
    void TideRegionsChanged() override {}
};

struct World {
    ScriptedDialogs dialogs;
    MemorySettings store;
    Registry registry{store, "Tarnel"};
    ErrorReporter errors{dialogs, "Ombra"};
    ManualClock clock;
    HarmonicTideStream stream;
    Tides tides{stream, errors};
    ViewHost host;
    TideDisplay display{tides, dialogs, clock, registry, errors, host};
    World() {
        tides.SetDataPath(Folder());
        tides.ListTideRegions();
        tides.TideTime = DateTime{2026, 11, 25, 12, 0, 0, 0}.Serial();
    }
};

void BM_GetTideGrid200x200(benchmark::State& state) {
    World w;
    int i = 0, failed = 0;
    for (auto _ : state) {
        const LatLong p{(-2 + (i * 7919 % 10000) / 1e4) * 3600, (50 + (i * 104729 % 10000) / 1e4) * 3600};
        w.tides.TideTime += 1.0 / 1440;
        float drift, set;
        failed += !w.tides.GetTide(p, drift, set);
        benchmark::DoNotOptimize(drift);
        ++i;
    }
    state.counters["failed"] = failed;
}
BENCHMARK(BM_GetTideGrid200x200);

void BM_StreamGrid1920x1080(benchmark::State& state) {
    World w;
    NullCanvas canvas(1920, 1080);
    for (auto _ : state) {
        w.tides.TideTime += 1.0 / 24;
        w.display.CalcTideGrid(canvas);
        benchmark::DoNotOptimize(w.display.Cells().data());
    }
    state.counters["arrows"] = double(w.display.Cells().size());
}
BENCHMARK(BM_StreamGrid1920x1080)->Unit(benchmark::kMillisecond);

}  // namespace
