// One stream prediction, as the plotter asks for it (select the region,
// then predict), on a 200x200-node grid region of ten constituents and on a
// region of 500 scattered stations, at points and instants that change.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>

#include "platform/tidestream/HarmonicTideStream.h"
#include "platform/tidestream/TideRegion.h"

namespace {

using namespace ombra;

const std::vector<std::string> kTen = {"M2", "S2", "N2", "K2", "K1", "O1", "P1", "Q1", "M4", "MS4"};

std::string Folder() {
    static const std::string dir = [] {
        char t[] = "/tmp/bench-tide-XXXXXX";
        if (!mkdtemp(t)) std::abort();
        const std::string d = t;
        tide::RegionData g;
        g.name = "Grid";
        g.south = 50;
        g.west = -2;
        g.north = 51;
        g.east = -1;
        g.constituents = kTen;
        g.rows = g.cols = 200;
        g.sea.assign(200 * 200, 1);
        for (size_t n = 0; n < 200 * 200; ++n)
            for (size_t k = 0; k < kTen.size(); ++k)
                g.harmonics.push_back({0.1f * float(k + 1), float(n % 360), 0.05f * float(k + 1), float((n * 7) % 360)});
        tide::RegionData s = g;
        s.layout = tide::Layout::Stations;
        s.radiusNm = 6;
        s.sea.assign(500, 1);
        s.harmonics.resize(500 * kTen.size());
        for (int i = 0; i < 500; ++i) s.stations.push_back({50 + (i % 25) / 25.0, -2 + (i / 25) / 20.0, ""});
        std::string err;
        if (!tide::SaveRegion(g, d, "Region01", &err) || !tide::SaveRegion(s, d, "Region02", &err)) std::abort();
        static const std::string keep = d;
        std::atexit([] { std::error_code ec; std::filesystem::remove_all(keep, ec); });
        return d + "/";
    }();
    return dir;
}

void Predict(benchmark::State& state, const char* base) {
    HarmonicTideStream ts;
    char path[100] = {}, hdr[100] = {}, hrm[100] = {};
    std::strncpy(path, Folder().c_str(), 99);
    ts.WrapperSetPath(path);
    std::string h = std::string(base) + ".Hdr", m = std::string(base) + ".Hrm";
    std::strcpy(hdr, h.c_str());
    std::strcpy(hrm, m.c_str());
    if (ts.WrapperSetDataFileName(hdr, hrm) != 0) state.SkipWithError(ts.LastError().c_str());
    int i = 0, failed = 0;
    for (auto _ : state) {
        std::strcpy(hdr, h.c_str());  // the caller's fresh buffers, every time
        std::strcpy(hrm, m.c_str());
        ts.WrapperSetDataFileName(hdr, hrm);
        int32_t one = 1, lat = 500000000 + (i * 7919) % 10000000, lon = -20000000 + (i * 104729) % 10000000;
        int32_t o1, o2, o3, o4, o5;
        failed += ts.WrapperDoPrediction(one, lat, lon, 1 + i % 28, 1 + i % 12, 2026, i % 24, i % 60, 0, 0,
                                         o1, o2, o3, o4, o5) != 0;
        benchmark::DoNotOptimize(o4);
        ++i;
    }
    state.counters["failed"] = failed;
}

void BM_TidePredictionGrid200x200(benchmark::State& state) { Predict(state, "Region01"); }
BENCHMARK(BM_TidePredictionGrid200x200);

void BM_TidePrediction500Stations(benchmark::State& state) { Predict(state, "Region02"); }
BENCHMARK(BM_TidePrediction500Stations);

}  // namespace
