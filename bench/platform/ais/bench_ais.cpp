// AIS decoding speed in sentences a second on one core, over gpsd's sample
// corpus (every message type, single and multi-part), decoded again and
// again: into the target table as the plotter does, into JSON as ombra-cli
// does, and framing and joining alone.
#include <benchmark/benchmark.h>

#include <fstream>
#include <string>
#include <vector>

#include "platform/ais/AisDecoder.h"
#include "platform/ais/AisJson.h"
#include "platform/fake/ManualClock.h"

namespace {

const std::vector<std::string>& Corpus() {
    static const std::vector<std::string> lines = [] {
        std::vector<std::string> out;
        std::ifstream f(std::string(OMBRA_SHARED_DATA) + "/ais/sample.aivdm", std::ios::binary);
        std::string line;
        while (std::getline(f, line))
            if (!line.empty() && line[0] == '!') out.push_back(line);
        return out;
    }();
    return lines;
}

void BM_AisDecodeIntoTargetTable(benchmark::State& state) {
    const auto& lines = Corpus();
    ombra::ManualClock clock;
    ombra::AisDecoder ais(clock);
    for (auto _ : state) {
        for (const auto& line : lines) ais.DecodeAIS(line);
        benchmark::DoNotOptimize(ais.GetNoAisTargets());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(lines.size()));
    state.counters["targets"] = ais.GetNoAisTargets();
}
BENCHMARK(BM_AisDecodeIntoTargetTable);

void BM_AisDecodeToJson(benchmark::State& state) {
    const auto& lines = Corpus();
    ombra::AisJsonStream stream;
    std::string out;
    for (auto _ : state) {
        for (const auto& line : lines) {
            out.clear();
            stream.Feed(line, out);
            benchmark::DoNotOptimize(out.data());
        }
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(lines.size()));
}
BENCHMARK(BM_AisDecodeToJson);

void BM_AisFramingAndJoining(benchmark::State& state) {
    const auto& lines = Corpus();
    ombra::AisReader reader;
    ombra::AisPayload payload;
    for (auto _ : state) {
        for (const auto& line : lines) benchmark::DoNotOptimize(reader.Feed(line, 0.0, payload));
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(lines.size()));
}
BENCHMARK(BM_AisFramingAndJoining);

}  // namespace
