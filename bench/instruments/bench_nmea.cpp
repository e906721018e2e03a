// NMEA intake and decoding, in sentences a second on one core: a line as
// the port queue hands it over, through framing, the checksum test, field
// splitting and the decoder, into the fix record. The input is the
// demonstration passage (GGA, RMC, VTG, HDT and AIS), as on a busy GPS port.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "instruments/DemoPassage.h"
#include "platform/comms/LineQueue.h"
#include "tests/support/InstrumentsRig.h"

namespace ombra {
namespace {

std::vector<std::string> PassageLines() {
    static const std::vector<std::string> lines = [] {
        std::vector<std::string> out;
        std::string log = DemoPassageLog();
        size_t at = 0;
        while (at < log.size() && out.size() < 20000) {
            size_t lf = log.find('\n', at);
            out.push_back(log.substr(at, lf - at + 1));
            at = lf + 1;
        }
        return out;
    }();
    return lines;
}

struct Rig : test::InstrumentsRig<> {
    Rig(bool checksums) {
        ins.LoadCommsSettings();
        ins.settings.Checksums = checksums;
        ins.vessel.vessel.Mode = 2;
    }
};

// One sentence per iteration, framing to fix record.
void BM_IntakeAndDecode(benchmark::State& state) {
    Rig rig(state.range(0) != 0);
    const auto& lines = PassageLines();
    size_t i = 0, positions = 0;
    for (auto _ : state) {
        positions += rig.ins.comm.HandleGPSSentence(lines[i]);
        if (++i == lines.size()) i = 0;
    }
    benchmark::DoNotOptimize(positions);
    state.SetItemsProcessed(int64_t(state.iterations()));
    state.SetLabel(state.range(0) ? "checksums on" : "checksums off");
}
BENCHMARK(BM_IntakeAndDecode)->Arg(0)->Arg(1);

// The whole road from bytes on the wire: the port's line queue cutting the
// stream into lines, then ReadGPSPort draining it as the tick does.
void BM_BytesToFix(benchmark::State& state) {
    Rig rig(true);
    const auto& lines = PassageLines();
    std::string stream;
    for (size_t k = 0; k < 400; ++k) stream += lines[k];
    LineQueue queue(1024);
    rig.ports.OpenComPort(1, 4800);
    int64_t sentences = 0;
    for (auto _ : state) {
        queue.Append(stream);
        std::string line;
        while (queue.Pop(line)) {
            rig.ports.Feed(1, line);
            ++sentences;
        }
        while (!rig.ports.lines[1].empty()) rig.ins.comm.ReadGPSPort();
    }
    state.SetItemsProcessed(sentences);
}
BENCHMARK(BM_BytesToFix);

// One vessel cycle and one NMEA burst, as the tick runs them on each fix.
void BM_CycleAndBurst(benchmark::State& state) {
    Rig rig(false);
    const auto& lines = PassageLines();
    for (size_t k = 0; k < 8; ++k) rig.ins.comm.HandleGPSSentence(lines[k]);
    for (auto _ : state) {
        int16_t status = rig.ins.vessel.UpdateVesselPos();
        benchmark::DoNotOptimize(rig.ins.output.BuildBurst(status));
    }
    state.SetItemsProcessed(int64_t(state.iterations()));
}
BENCHMARK(BM_CycleAndBurst);

}  // namespace
}  // namespace ombra
