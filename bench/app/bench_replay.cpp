// ombra-cli replay of the 100-minute demo passage, as a navigator would run
// it before sailing: the route round the island active from the first fix,
// the autolog every minute, a boundary of 200 marks across the passage, the
// NMEA output going to a file, every event printed. The figure is how many
// times faster than real time the replay runs (counter "x_realtime", and
// "x_realtime_cpu" on the process's CPU time, the figure for a core of its
// own on a busy machine); target: at least 2000 on one core, the whole
// passage under 3 s.
#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <unistd.h>

#include "app/cli/replay/DemoStores.h"
#include "app/cli/replay/Replay.h"
#include "core/Paths.h"
#include "instruments/DemoPassage.h"
#include "navobjects/CommonDB.h"
#include "tests/support/Rig.h"

namespace ombra {
namespace {

// Counts the bytes printed and keeps none.
class CountingBuf : public std::streambuf {
public:
    long long bytes = 0;

protected:
    int overflow(int c) override {
        ++bytes;
        return c;
    }
    std::streamsize xsputn(const char*, std::streamsize n) override {
        bytes += n;
        return n;
    }
};

struct BenchHome {
    std::string path;
    BenchHome() {
        path = (std::filesystem::temp_directory_path() / ("ombra-bench-replay-" + std::to_string(::getpid()))).string();
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path + "/Logs");
        std::string why;
        if (!WriteDemoStores(path, why)) throw std::runtime_error(why);
        // 200 marks round a circle of a mile about a point of the passage.
        Boundary ring = RingBoundary(1, "RING OF 200", DemoPassagePosition(2400), 1.0, 200);
        if (!WriteStoreOnce(path, kBoundaryStore, "Bench Ring", BoundaryFileText("Ver 2.19", "Bench Ring", {ring}), why))
            throw std::runtime_error(why);
        std::ofstream(path + "/Vestrane.ini") << "[Tarnel]\nGPSPort=1\nComPort1=" << path << "/autopilot.nmea\n";
        // The day's log: autolog on, every minute.
        std::ofstream(path + "/Logs/20261123.log", std::ios::binary)
            << "#2026-11-23#,\"\",\"\"\r\n\"\",\"\",\"\",\"\",\"\"\r\n1,1\r\n\"\",\"\",\"\",\"\",\"\"\r\n"
               "\"\",\"\",\"\",\"\",\"\"\r\n0,0\r\n";
    }
    ~BenchHome() { std::filesystem::remove_all(path); }
};

void BM_ReplayDemoPassage(benchmark::State& state) {
    BenchHome home;
    ReplayOptions o;
    o.log = std::string(OMBRA_SOURCE_DIR) + "/data/demo/ombra-demo.nmea";
    o.home = home.path;
    o.boundaries = "Bench Ring";
    o.route = kDemoRoute;
    o.answers["Waypoint Arrival"] = "Yes";
    o.answers["Vessel Entry"] = "OK";
    o.sharedData = std::string(OMBRA_SOURCE_DIR) + "/data/install";
    CountingBuf buf;
    std::ostream out(&buf);
    std::ostringstream err;
    ReplayFigures f;
    double seconds = 0, cpu = 0;
    for (auto _ : state) {
        auto t0 = std::chrono::steady_clock::now();
        std::clock_t c0 = std::clock();
        int rc = RunReplay(o, out, err, &f);
        cpu += double(std::clock() - c0) / CLOCKS_PER_SEC;
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
        if (rc != 0) state.SkipWithError(err.str().c_str());
    }
    // Against the wall clock, and against the process's CPU time (user and
    // system), which is what one core of its own would take.
    state.counters["x_realtime"] = f.simulatedSeconds * double(state.iterations()) / seconds;
    state.counters["x_realtime_cpu"] = f.simulatedSeconds * double(state.iterations()) / cpu;
    state.counters["ticks"] = double(f.ticks);
    state.counters["lines"] = double(f.lines);
    state.counters["MB_out"] = double(buf.bytes) / double(state.iterations()) / 1e6;
}
BENCHMARK(BM_ReplayDemoPassage)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace
}  // namespace ombra
