// Per-call costs of the navigation mathematics that every position of every
// database and every tick goes through. Targets: a magnetic variation from
// the cached model of the year under 2 microseconds; course and distance
// cheap enough to recompute every leg of a route on load.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "navmath/Deviation.h"
#include "navmath/Geometry.h"
#include "navmath/MagVar.h"
#include "navmath/RLGC.h"
#include "platform/fake/ManualClock.h"

using namespace ombra;

namespace {

// Positions spread over the world, so no branch or cache is always warm.
std::vector<LatLong> Positions(int n) {
    std::vector<LatLong> v;
    for (int i = 0; i < n; ++i) {
        const double lat = -80.0 + 160.0 * ((i * 37) % n) / n;
        const double lon = -180.0 + 360.0 * ((i * 61) % n) / n;
        v.push_back({lon * 3600.0, lat * 3600.0});
    }
    return v;
}

void BM_MagneticVariationCached(benchmark::State& state) {
    ManualClock clock;
    MagVar mv(OMBRA_SOURCE_DIR "/data/install/dat");
    const double year = clock.Now().year;
    const auto pos = Positions(1024);
    if (mv.VariationForYear(pos[0], year) == 0.0f) state.SkipWithError("coefficient files not found");
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(mv.VariationForYear(pos[i++ & 1023], double(clock.Now().year)));
    }
}
BENCHMARK(BM_MagneticVariationCached);

void BM_LoadModel(benchmark::State& state) {
    MagVar mv(OMBRA_SOURCE_DIR "/data/install/dat");
    MagModel m;
    for (auto _ : state) benchmark::DoNotOptimize(mv.LoadModel(2017.0, m));
}
BENCHMARK(BM_LoadModel)->Unit(benchmark::kMicrosecond);

// One leg per iteration, between positions half the table apart.
template <void (*CourseDistance)(const LatLong&, const LatLong&, double&, double&)>
void BM_CourseDistance(benchmark::State& state) {
    const auto pos = Positions(1024);
    size_t i = 0;
    double c, d;
    for (auto _ : state) {
        CourseDistance(pos[i & 1023], pos[(i + 511) & 1023], c, d);
        benchmark::DoNotOptimize(d);
        ++i;
    }
}
BENCHMARK(BM_CourseDistance<CourseDistanceRL>)->Name("BM_CourseDistanceRL");
BENCHMARK(BM_CourseDistance<CourseDistanceGC>)->Name("BM_CourseDistanceGC");

void BM_CourseDistanceShortLegs(benchmark::State& state) {
    // Route legs and the active leg are tens of miles, not oceans.
    const auto pos = Positions(1024);
    std::vector<LatLong> near;
    for (const auto& p : pos) near.push_back({p.Long + 1800.0, p.Lat + 1200.0});
    size_t i = 0;
    double c, d;
    for (auto _ : state) {
        CourseDistance(int16_t(i & 1), pos[i & 1023], near[i & 1023], c, d);
        benchmark::DoNotOptimize(d);
        ++i;
    }
}
BENCHMARK(BM_CourseDistanceShortLegs);

void BM_DeadReckon(benchmark::State& state) {
    const auto pos = Positions(1024);
    size_t i = 0;
    LatLong r;
    for (auto _ : state) {
        DeadReckon(r, pos[i & 1023], double(i % 360), 12.5, 3600.0);
        benchmark::DoNotOptimize(r);
        ++i;
    }
}
BENCHMARK(BM_DeadReckon);

void BM_GreatCircleChain2000Miles(benchmark::State& state) {
    const LatLong from{-10.0 * 3600, 50.0 * 3600}, to{-60.0 * 3600, 40.0 * 3600};
    for (auto _ : state) benchmark::DoNotOptimize(GreatCircleChain(from, to));
}
BENCHMARK(BM_GreatCircleChain2000Miles);

void BM_PointInPolygon64(benchmark::State& state) {
    std::vector<LatLong> ring;
    for (int i = 0; i < 64; ++i) {
        const double a = i * 2 * 3.14159265358979 / 64;
        const double r = (i % 2 ? 1800.0 : 3600.0);
        ring.push_back({r * std::cos(a), r * std::sin(a)});
    }
    double x = -4000;
    for (auto _ : state) {
        benchmark::DoNotOptimize(PointInPolygon(x, 100.0, ring));
        x = x > 4000 ? -4000 : x + 7.0;
    }
}
BENCHMARK(BM_PointInPolygon64);

void BM_DeviationFor(benchmark::State& state) {
    DeviationCard card{};
    for (int i = 0; i < kDeviationEntries; ++i) card[size_t(i)] = float(i % 7) - 3.0f;
    float h = 0.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(DeviationFor(card, h));
        h = h >= 359.0f ? 0.0f : h + 0.7f;
    }
}
BENCHMARK(BM_DeviationFor);

}  // namespace
