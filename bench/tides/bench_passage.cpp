// Best departure: 24 plans of a 300-mile route of ten 30-mile legs at 6
// knots, with tides, over a 200x200-node grid region of ten constituents
// that covers the route. One iteration is the whole search, as "Calc" with
// "Calc Best Departure Time" runs it.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "core/ErrorReport.h"
#include "platform/api/DateTime.h"
#include "platform/fake/ScriptedDialogs.h"
#include "platform/tidestream/HarmonicTideStream.h"
#include "platform/tidestream/TideRegion.h"
#include "tides/PassagePlanner.h"

namespace {

using namespace ombra;

const std::vector<std::string> kTen = {"M2", "S2", "N2", "K2", "K1", "O1", "P1", "Q1", "M4", "MS4"};

std::string Folder() {
    static const std::string dir = [] {
        char t[] = "/tmp/bench-passage-XXXXXX";
        if (!mkdtemp(t)) std::abort();
        tide::RegionData g;
        g.name = "Channel";
        g.south = 47;
        g.west = -10;
        g.north = 54;
        g.east = -3;
        g.constituents = kTen;
        g.rows = g.cols = 200;
        g.sea.assign(200 * 200, 1);
        // Streams up to about 1.5 knots whose phase turns across the region.
        for (size_t n = 0; n < 200 * 200; ++n)
            for (size_t k = 0; k < kTen.size(); ++k)
                g.harmonics.push_back({0.3f / float(k + 1), float((n / 200) % 360), 0.4f / float(k + 1),
                                       float((n % 200 + 90) % 360)});
        std::string why;
        if (!tide::SaveRegion(g, t, "Region01", &why)) std::abort();
        return std::string(t) + "/";
    }();
    return dir;
}

// Ten legs of 30 miles, zigzagging north.
Route ThreeHundredMiles() {
    Route r;
    r.Number = 1;
    double lat = 48.0, lon = -7.0;
    for (int i = 0; i <= 10; ++i) {
        Waypoint w;
        w.Number = int16_t(i + 1);
        w.Position.Wgs84 = LatLong{lon * 3600.0, lat * 3600.0};
        r.Points.push_back(w);
        // 30 miles at 020 or 340 alternately.
        const double c = (i % 2 ? 340.0 : 20.0) * 3.14159265358979323846 / 180.0;
        lat += 30.0 * std::cos(c) / 60.0;
        lon += 30.0 * std::sin(c) / 60.0 / std::cos(lat * 3.14159265358979323846 / 180.0);
    }
    r.Legs.resize(r.Points.size());
    r.SyncCount();
    ComputeLegs(r);
    return r;
}

void BM_BestDeparture(benchmark::State& state) {
    ScriptedDialogs dialogs;
    ErrorReporter errors(dialogs, "Ombra");
    HarmonicTideStream stream;
    Tides tides(stream, errors);
    tides.SetDataPath(Folder());
    tides.ListTideRegions();
    if (tides.TideRegionCount() != 1) state.SkipWithError("region not listed");
    PassagePlanner passage(tides);
    Units units;
    const Route route = ThreeHundredMiles();
    PassageInputs in;
    in.speed = 6.0f;
    in.useTides = true;
    in.basis = 1;
    in.start = DateTime{2026, 6, 1, 10, 0, 0}.Serial();
    in.bestDeparture = true;
    for (auto _ : state) {
        passage.CalcRoute(route, in, units);
        benchmark::DoNotOptimize(passage.BestRow);
    }
    state.counters["route_nm"] = route.TotalDistance();
    state.counters["best_row"] = passage.BestRow;
}
BENCHMARK(BM_BestDeparture)->Unit(benchmark::kMillisecond);

}  // namespace
