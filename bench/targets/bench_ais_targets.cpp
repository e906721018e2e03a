// A full redraw of a 1920 x 1080 view with 300 AIS targets on it (names
// on, course and heading lines), against the same redraw without them: the
// difference is the AIS layer's share of the redraw budget (5 ms for the
// AIS, ARPA and link targets together). The targets come from the decoder's
// table through the module's host, as in the program.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "core/Paths.h"
#include "navobjects/NavChart.h"
#include "platform/ais/AisDecoder.h"
#include "platform/chartlib/ImageCanvas.h"
#include "plotter/DisplayChart.h"
#include "targets/Ais.h"
#include "tests/support/ChartRig.h"
#include "tests/support/Rig.h"
#include "tests/targets/AisTraffic.h"

namespace ombra {
namespace {

struct DecoderHost : AisHost {
    AisDecoder& d;
    explicit DecoderHost(AisDecoder& decoder) : d(decoder) {}
    int16_t TargetCount() override { return d.GetNoAisTargets(); }
    bool Target(int16_t i, AisTarget& t) override { return d.GetAisTarget(i, t) != 0; }
    void ClearTargets() override { d.ClearAis(); }
    bool OwnVessel(OwnMotion&) override { return false; }
    int ListPick(const std::string&, const std::vector<std::string>&, const std::string&) override { return -1; }
    void ShowCpaAlarm(const std::string&, const std::string&, bool) override {}
    void HideCpaAlarm() override {}
    void ConsoleChanged() override {}
    void Redraw() override {}
};

// A 4000 x 3000 chart of plain bands over 49.5-50.5N, 13-11W.
std::string ChartRoot() {
    static std::string root = [] {
        std::string r = (std::filesystem::temp_directory_path() / "ombra-bench-ais").string();
        std::filesystem::remove_all(r);
        test::ChartRig rig;
        IndexedChartImage img;
        img.Width = 4000;
        img.Height = 3000;
        img.Pixels.resize(size_t(img.Width) * size_t(img.Height));
        for (int y = 0; y < img.Height; ++y)
            for (int x = 0; x < img.Width; ++x) img.Pixels[size_t(y) * size_t(img.Width) + size_t(x)] = uint8_t((x / 97 + y / 61) % 6);
        for (int i = 0; i < 8; ++i)
            img.Palette.push_back({MakeRgb(30 * i, 255 - 20 * i, 200), MakeRgb(15 * i, 120, 100), MakeRgb(5 * i, 30, 25), i < 4 ? 'S' : 'L'});
        PlanGeorefSource p;
        p.Projection = ProjectionKind::Mercator;
        p.Refs = {{0, 0, 50.5, -13.0}, {3999.0, 0, 50.5, -11.0}, {0, 2999.0, 49.5, -13.0}, {3999.0, 2999.0, 49.5, -11.0}};
        p.HasShift = true;
        img.Plans.push_back(p);
        ImportedChart meta;
        meta.Number = "8100";
        meta.Title = "BENCH AIS";
        meta.Plans.resize(1);
        meta.Plans[0].Scale = "50000";
        rig.charts.Installer.InstallImage(r, img, meta, "20240601");
        return r;
    }();
    return root;
}

struct World : test::ChartRig {
    test::FakePlatform f;
    AisDecoder decoder{f.clock};
    DecoderHost host{decoder};
    Ais ais{f.reg, host};
    DisplayChart link{charts.View, charts.Legs, library, charts.State, &charts.Charts};
    Image target{1920, 1080};
    chartlib::ImageCanvas canvas{target};
    explicit World(int targets) {
        charts.SetRoot(ChartRoot());
        charts.View.SetViewSize(1920, 1080);
        if (!charts.Charts.NewChart("8100")) throw std::runtime_error("NewChart");
        charts.View.ShowHiRes();
        charts.View.CentreOnPixel(2000, 1500);
        LatLong nw, se;
        charts.View.ScreenToPosition({0, 0}, nw);
        charts.View.ScreenToPosition({1919, 1079}, se);
        for (const auto& v : test::ScatterVessels(targets, se.Lat / 3600, nw.Lat / 3600, nw.Long / 3600, se.Long / 3600))
            decoder.DecodeAIS(test::PositionSentence(v, 0));
        ais.Settings.Labels = true;
        charts.View.RegisterLayer(Layer::AisTargets, [this](Canvas& c, const ChartViewState&) { ais.Draw(c, link, library); });
        charts.View.RegisterPreparer([this] { ais.ChartChanged(); });
        charts.View.RedrawNavCanvas(canvas);
    }
};

void BM_Redraw_1920x1080(benchmark::State& state) {
    World w(int(state.range(0)));
    for (auto _ : state) {
        w.charts.View.RedrawNavCanvas(w.canvas);
        benchmark::DoNotOptimize(w.target.pixels.data());
    }
    state.counters["targets"] = double(w.decoder.GetNoAisTargets());
}
BENCHMARK(BM_Redraw_1920x1080)->Arg(0)->Arg(300)->Unit(benchmark::kMillisecond);

// The AIS layer alone, over the last redraw, without and with names.
void BM_AisLayer_300(benchmark::State& state) {
    World w(300);
    w.ais.Settings.Labels = state.range(0) != 0;
    for (auto _ : state) {
        w.ais.Draw(w.canvas, w.link, w.library);
        benchmark::DoNotOptimize(w.target.pixels.data());
    }
}
BENCHMARK(BM_AisLayer_300)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ombra
