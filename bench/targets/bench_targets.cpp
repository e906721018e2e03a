// The radar's targets on a full-screen chart: a 1920 x 1080 view of a chart
// whose tiles are already decoded, redrawn whole (the chart, then the
// layers) without targets and with 50 named ARPA targets around own ship,
// and the ARPA layer alone. Target: the whole redraw with targets under 5 ms.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "bench/charts/BenchInstaller.h"
#include "core/Format.h"
#include "instruments/Console.h"
#include "instruments/NmeaText.h"
#include "platform/chartlib/ImageCanvas.h"
#include "platform/fake/ManualClock.h"
#include "plotter/DisplayChart.h"
#include "targets/Arpa.h"
#include "targets/TargetPlotHost.h"
#include "tests/support/ChartRig.h"

namespace ombra {
namespace {

constexpr int kWidth = 4000, kHeight = 3000;

// A chart of tinted bands over 49°30'N..50°30'N, 13°W..11°W.
std::string ChartRoot() {
    static std::string root = [] {
        std::string r = (std::filesystem::temp_directory_path() / "ombra-bench-targets").string();
        std::error_code ec;
        if (std::filesystem::exists(r + "/raschts/081/8100/8100.HDR", ec)) return r;
        std::filesystem::remove_all(r, ec);
        IndexedChartImage img;
        img.Width = kWidth;
        img.Height = kHeight;
        img.Pixels.resize(size_t(kWidth) * kHeight);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) img.Pixels[size_t(y) * kWidth + size_t(x)] = uint8_t((x / 97 + y / 61) % 6);
        for (int i = 0; i < 8; ++i)
            img.Palette.push_back({MakeRgb(30 * i, 255 - 20 * i, 200), MakeRgb(15 * i, 120, 100), MakeRgb(5 * i, 30, 25), i < 4 ? 'S' : 'L'});
        PlanGeorefSource p;
        p.Projection = ProjectionKind::Mercator;
        p.Refs = {{0, 0, 50.5, -13.0}, {kWidth - 1.0, 0, 50.5, -11.0}, {0, kHeight - 1.0, 49.5, -13.0},
                  {kWidth - 1.0, kHeight - 1.0, 49.5, -11.0}};
        p.HasShift = true;
        img.Plans.push_back(p);
        ImportedChart meta;
        meta.Number = "8100";
        meta.Title = "BENCH";
        meta.Plans.resize(1);
        meta.Plans[0].Scale = "50000";
        bench::BenchInstaller b;
        b.inst.InstallImage(r, img, meta, "20240601");
        return r;
    }();
    return root;
}

// Own ship at the middle of the chart; console texts plain.
struct Host : TargetPlotHost {
    bool OwnPosition(LatLong& pos) override {
        pos = {-12.0 * 3600.0, 50.0 * 3600.0};
        return true;
    }
    std::string PositionText(const LatLong&) override { return "pos"; }
    std::string AngleText(double a) override { return Format(a, "000.0"); }
    std::string DistanceText(double m, const char* picture) override { return Format(m, picture); }
    std::string SpeedText(double k, const char* picture) override { return Format(k, picture); }
    void ConsoleChanged() override {}
    void Redraw() override {}
    int ListPick(const std::string&, const std::vector<std::string>&) override { return -1; }
    void CentreChartOn(const LatLong&) override {}
};

struct World : test::ChartRig {
    ManualClock clock;
    Console console;
    Host host;
    Arpa arpa{host, errors, clock, console};
    DisplayChart link{charts.View, charts.Legs, library, charts.State, &charts.Charts};
    Image target{1920, 1080};
    chartlib::ImageCanvas canvas{target};

    explicit World(int targets) {
        charts.SetRoot(ChartRoot());
        charts.View.SetViewSize(1920, 1080);
        charts.Charts.NewChart("8100");
        charts.View.ShowHiRes();
        charts.View.CentreOnPosition({-12.0 * 3600.0, 50.0 * 3600.0});
        arpa.Settings.Enable = true;
        arpa.Settings.Labels = true;
        // Targets spread over the view: ranges 0.5 to 5.4 miles, every bearing.
        for (int i = 0; i < targets; ++i) {
            const std::string body = "RATTM," + Format(i + 1, "00") + "," + Format(0.5 + 0.1 * i, "0.00") + "," +
                                     Format(i * 47 % 360, "000.0") + ",T,12.0," + Format(i * 83 % 360, "000.0") +
                                     ",T,0.5,12.0,N,,T,,103000.00,A";
            arpa.ArpaPoll("$" + body + "*" + NmeaChecksum(body), true);
        }
        charts.View.RegisterLayer(Layer::ArpaObjects, [this](Canvas& c, const ChartViewState&) {
            arpa.DrawArpaObjects(c, link, library);
        });
        charts.View.RedrawNavCanvas(canvas);  // tiles decoded once
    }
};

void BM_RedrawWithoutTargets_1920x1080(benchmark::State& state) {
    World w(0);
    for (auto _ : state) {
        w.charts.View.RedrawNavCanvas(w.canvas);
        benchmark::DoNotOptimize(w.target.pixels.data());
    }
}
BENCHMARK(BM_RedrawWithoutTargets_1920x1080)->Unit(benchmark::kMillisecond);

void BM_RedrawWith50Arpa_1920x1080(benchmark::State& state) {
    World w(50);
    for (auto _ : state) {
        w.charts.View.RedrawNavCanvas(w.canvas);
        benchmark::DoNotOptimize(w.target.pixels.data());
    }
}
BENCHMARK(BM_RedrawWith50Arpa_1920x1080)->Unit(benchmark::kMillisecond);

// The ARPA layer alone: placement, preparation, symbols and names.
void BM_DrawArpaObjects50(benchmark::State& state) {
    World w(50);
    for (auto _ : state) {
        w.arpa.DrawArpaObjects(w.canvas, w.link, w.library);
        benchmark::DoNotOptimize(w.target.pixels.data());
    }
}
BENCHMARK(BM_DrawArpaObjects50)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace ombra
