// Installing a 4000 x 3000 4-bit KAP next to GDAL's decode of the same file
// (`gdal_translate -of ENVI`, run as a child process). The paired benchmark
// runs both in each iteration, one after the other, so that a load that
// comes and goes on the machine falls on both alike; its counters give the
// wall and CPU seconds of each and their ratios. Target: ratio <= 1.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "bench/charts/BenchInstaller.h"
#include "tests/platform/chartlib/KapWriter.h"

namespace ombra {
namespace {

namespace fs = std::filesystem;

// A chart-like sheet: tints in wide bands (depth areas and land), contour
// lines, and a sprinkle of soundings and text.
int SheetPixel(int x, int y) {
    int area = ((x / 211) + (y / 157) + (x * 3 + y * 5) / 1733) % 5;
    if ((x + 3 * y) % 389 < 2 || (5 * x - y + 100000) % 613 < 2) return 9;  // lines
    unsigned h = unsigned(x) * 2654435761u ^ unsigned(y) * 40503u;
    if ((h >> 7) % 97 == 0) return 10 + int((h >> 3) % 5);  // soundings, text
    return 1 + area;
}

struct Sheet {
    fs::path dir, kap, envi;
    Sheet() {
        dir = fs::temp_directory_path() / "ombra-bench-install";
        fs::create_directories(dir);
        kap = dir / "4242.KAP";
        envi = dir / "out.envi";
        test::KapShape s;
        s.Name = "BENCH SHEET";
        s.Number = "4242";
        s.Width = 4000;
        s.Height = 3000;
        s.Bits = 4;
        s.Pixel = SheetPixel;
        std::ofstream(kap, std::ios::binary) << test::WriteKap(s);
    }
};

Sheet& TheSheet() {
    static Sheet s;
    return s;
}

double ChildCpuSeconds() {
    rusage u{};
    ::getrusage(RUSAGE_CHILDREN, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) * 1e-6;
}
double SelfCpuSeconds() {
    rusage u{};
    ::getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) * 1e-6;
}
double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool RunGdal() {
    const Sheet& s = TheSheet();
    std::string cmd = "gdal_translate -q -of ENVI '" + s.kap.string() + "' '" + s.envi.string() + "' >/dev/null 2>&1";
    return std::system(cmd.c_str()) == 0;
}

bool RunInstall() {
    const Sheet& s = TheSheet();
    std::string root = (s.dir / "root").string();
    bench::BenchInstaller b;
    return b.inst.InstallKap(root, s.kap.string(), "20240601", {}).Ok;
}

void BM_GdalTranslateDecode_4000x3000(benchmark::State& state) {
    TheSheet();
    for (auto _ : state)
        if (!RunGdal()) state.SkipWithError("gdal_translate failed (is gdal-bin installed?)");
}
BENCHMARK(BM_GdalTranslateDecode_4000x3000)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_InstallKap_4000x3000(benchmark::State& state) {
    TheSheet();
    for (auto _ : state)
        if (!RunInstall()) state.SkipWithError("install failed");
}
BENCHMARK(BM_InstallKap_4000x3000)->Unit(benchmark::kMillisecond)->UseRealTime();

// Both, alternating; counters in seconds an iteration and the ratios
// install / gdal (wall, and CPU of every thread or process involved).
void BM_InstallVsGdal_4000x3000(benchmark::State& state) {
    TheSheet();
    double gWall = 0, gCpu = 0, iWall = 0, iCpu = 0;
    bool gdalFirst = true;
    for (auto _ : state) {
        auto gdal = [&] {
            double t0 = Now(), c0 = ChildCpuSeconds();
            if (!RunGdal()) state.SkipWithError("gdal_translate failed");
            gWall += Now() - t0;
            gCpu += ChildCpuSeconds() - c0;
        };
        auto install = [&] {
            double t0 = Now(), c0 = SelfCpuSeconds();
            if (!RunInstall()) state.SkipWithError("install failed");
            iWall += Now() - t0;
            iCpu += SelfCpuSeconds() - c0;
        };
        if (gdalFirst) gdal(), install();
        else install(), gdal();
        gdalFirst = !gdalFirst;
    }
    const double n = double(state.iterations());
    state.counters["gdal_wall_s"] = gWall / n;
    state.counters["gdal_cpu_s"] = gCpu / n;
    state.counters["install_wall_s"] = iWall / n;
    state.counters["install_cpu_s"] = iCpu / n;
    state.counters["ratio_wall"] = gWall > 0 ? iWall / gWall : 0;
    state.counters["ratio_cpu"] = gCpu > 0 ? iCpu / gCpu : 0;
}
BENCHMARK(BM_InstallVsGdal_4000x3000)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(10);

}  // namespace
}  // namespace ombra
