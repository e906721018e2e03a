// The chart view's costs: opening a 10000 x 8000 chart (the engine's open,
// and the whole NewChart with its catalogue and checks), and redrawing a
// 1920 x 1080 view whose tiles are already decoded (the redraw of every
// pan, zoom step and vessel move). Targets: open under 200 ms, redraw
// under 5 ms.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

#include "bench/charts/BenchInstaller.h"
#include "core/Paths.h"
#include "platform/chartlib/ImageCanvas.h"
#include "tests/support/ChartRig.h"

namespace ombra {
namespace {

constexpr int kWidth = 10000, kHeight = 8000;

// A chart of bands and patches with some speckle: about as compressible as
// a real chart (large areas of one tint, lines and text).
struct BigChart {
    std::string root;
    BigChart() {
        root = (std::filesystem::temp_directory_path() / "ombra-bench-charts").string();
        std::error_code ec;
        if (std::filesystem::exists(root + "/raschts/080/8000/8000.HDR", ec)) return;
        std::filesystem::remove_all(root, ec);
        IndexedChartImage img;
        img.Width = kWidth;
        img.Height = kHeight;
        img.Pixels.resize(size_t(kWidth) * kHeight);
        std::mt19937 rng(7);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                int band = ((x / 97 + y / 61) + (x * y / 4096) % 3) % 6;
                if ((rng() & 1023) == 0) band = 7;  // soundings and lines
                img.Pixels[size_t(y) * kWidth + size_t(x)] = uint8_t(band);
            }
        for (int i = 0; i < 8; ++i)
            img.Palette.push_back({MakeRgb(30 * i, 255 - 20 * i, 200), MakeRgb(15 * i, 120, 100), MakeRgb(5 * i, 30, 25), i < 4 ? 'S' : 'L'});
        PlanGeorefSource p;
        p.Projection = ProjectionKind::Mercator;
        p.Refs = {{0, 0, 50.5, -13.0}, {kWidth - 1.0, 0, 50.5, -11.0}, {0, kHeight - 1.0, 49.5, -13.0},
                  {kWidth - 1.0, kHeight - 1.0, 49.5, -11.0}};
        p.HasShift = true;
        img.Plans.push_back(p);
        ImportedChart meta;
        meta.Number = "8000";
        meta.Title = "BENCH";
        meta.Plans.resize(1);
        meta.Plans[0].Scale = "50000";
        bench::BenchInstaller b;
        b.inst.InstallImage(root, img, meta, "20240601");
    }
};

BigChart& Chart() {
    static BigChart c;
    return c;
}

void BM_EngineOpen_10000x8000(benchmark::State& state) {
    std::string hdr = NativePath(Chart().root + "/raschts/080/8000/8000.HDR");
    int16_t layout[5] = {0, 1, 0, 0, 0};
    for (auto _ : state) {
        chartlib::OmbraChartLibrary lib;
        std::string tag;
        if (lib.OpenChart(hdr, layout, "", tag) != 0 || !lib.ReadChart(ChartFilePath(hdr, "CHR"), 0)) state.SkipWithError("open");
        benchmark::DoNotOptimize(lib.RasterInfo());
    }
}
BENCHMARK(BM_EngineOpen_10000x8000)->Unit(benchmark::kMillisecond);

struct World : test::ChartRig {
    World() {
        charts.SetRoot(Chart().root);
        charts.View.SetViewSize(1920, 1080);
    }
    // The big chart open at full resolution (or at `pixelSize`), centred.
    void OpenCentred(int16_t pixelSize = 0) {
        charts.Charts.NewChart("8000");
        charts.View.ShowHiRes();
        if (pixelSize) charts.View.SetPixelSize(pixelSize);
        charts.View.CentreOnPixel(5000, 4000);
    }
};

void BM_NewChart_10000x8000(benchmark::State& state) {
    Chart();
    for (auto _ : state) {
        World w;
        if (!w.charts.Charts.NewChart("8000")) state.SkipWithError("NewChart");
    }
}
BENCHMARK(BM_NewChart_10000x8000)->Unit(benchmark::kMillisecond);

// The first view at full resolution: every tile decoded from the file.
void BM_RedrawCold_1920x1080(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        World w;
        w.OpenCentred();
        Image store;
        state.ResumeTiming();
        w.library.RedrawChart(store, w.charts.View.View(), 3);
        benchmark::DoNotOptimize(store.pixels.data());
    }
}
BENCHMARK(BM_RedrawCold_1920x1080)->Unit(benchmark::kMillisecond);

// Redraws from cached tiles: the engine's paint alone, and the whole
// RedrawNavCanvas (paint, copy to the canvas, layers, vessel).
void BM_RedrawCached_1920x1080(benchmark::State& state) {
    World w;
    w.OpenCentred();
    Image store;
    w.library.RedrawChart(store, w.charts.View.View(), 3);
    for (auto _ : state) {
        w.library.RedrawChart(store, w.charts.View.View(), 3);
        benchmark::DoNotOptimize(store.pixels.data());
    }
}
BENCHMARK(BM_RedrawCached_1920x1080)->Unit(benchmark::kMillisecond);

void BM_RedrawNavCanvasCached_1920x1080(benchmark::State& state) {
    World w;
    w.OpenCentred();
    Image target(1920, 1080);
    chartlib::ImageCanvas canvas(target);
    w.charts.View.RedrawNavCanvas(canvas);
    for (auto _ : state) {
        w.charts.View.RedrawNavCanvas(canvas);
        benchmark::DoNotOptimize(target.pixels.data());
    }
}
BENCHMARK(BM_RedrawNavCanvasCached_1920x1080)->Unit(benchmark::kMillisecond);

// Pixel zoom out (PixelSize 64): each screen pixel samples 2 x 2 chart pixels.
void BM_RedrawCachedReduced_1920x1080(benchmark::State& state) {
    World w;
    w.OpenCentred(64);
    w.library.SetTileCacheCapacity(1024);
    Image store;
    w.library.RedrawChart(store, w.charts.View.View(), 3);
    for (auto _ : state) {
        w.library.RedrawChart(store, w.charts.View.View(), 3);
        benchmark::DoNotOptimize(store.pixels.data());
    }
}
BENCHMARK(BM_RedrawCachedReduced_1920x1080)->Unit(benchmark::kMillisecond);

// Every pixel size the view offers, on the full-resolution raster (arg 0 =
// 0) and the low-resolution one (1), redrawn from cached tiles with the
// quality the view asks for. Target: every one under 5 ms.
void BM_RedrawCachedZoom_1920x1080(benchmark::State& state) {
    const bool low = state.range(0) != 0;
    const int16_t pixelSize = int16_t(state.range(1));
    World w;
    w.charts.Charts.NewChart("8000");
    if (low) w.charts.View.ShowLoRes();
    else w.charts.View.ShowHiRes();
    w.charts.View.SetPixelSize(pixelSize);
    w.charts.View.CentreOnPixel(5000, 4000);
    const int16_t quality = pixelSize > 32 ? 3 : 1;
    Image store;
    w.library.RedrawChart(store, w.charts.View.View(), quality);
    for (auto _ : state) {
        w.library.RedrawChart(store, w.charts.View.View(), quality);
        benchmark::DoNotOptimize(store.pixels.data());
    }
    state.SetLabel(std::string(low ? "LOR" : "CHR") + " pixel size " + std::to_string(pixelSize));
}
BENCHMARK(BM_RedrawCachedZoom_1920x1080)
    ->ArgsProduct({{0, 1}, {16, 32, 64, 128, 256, 512, 1024}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ombra
