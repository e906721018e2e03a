// Fuzzing sentence intake: whatever bytes a port delivers, the line queue,
// framing, checksum test, field splitting, every decoder, the vessel cycle
// and the NMEA burst built from what was decoded must not crash, read out
// of bounds or hit undefined behaviour.
//
// The first two bytes choose the settings (which sentence gives the
// position, checksums, headings on the GPS port, the vessel's mode, the
// burst's bit set); the rest is the byte stream, cut into lines by the
// port's own queue. Half of the lines are also made into well-framed
// sentences with good checksums, so that the decoders see arbitrary fields
// and not only sentences that fail the checksum.
#include <cstddef>
#include <cstdint>
#include <string>

#include "instruments/NmeaText.h"
#include "instruments/PositionFile.h"
#include "platform/comms/LineQueue.h"
#include "tests/support/InstrumentsRig.h"

namespace {

using namespace ombra;

using Rig = ombra::test::InstrumentsRig<>;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    Rig rig;
    rig.globals.AppPath = "/nonexistent-ombra-fuzz/";
    rig.ins.LoadCommsSettings();
    rig.ins.vessel.LoadVesselSettings();
    CommSettings& s = rig.ins.settings;
    const uint8_t a = data[0], b = data[1];
    s.NMEA_GGA = a & 1;
    s.NMEA_GLL = a & 2;
    s.NMEA_RMC = a & 4;
    s.NMEA_AIVDO = a & 8;
    s.Checksums = a & 16;
    s.GyroUseGPSPort = a & 32;
    s.GyroUseCOG = a & 64;
    s.AISEnable = s.AISUseGPSPort = a & 128;
    s.AutopilotSettings = int32_t(b) * 31;
    rig.ins.vessel.vessel.Mode = int16_t(b % 6);
    s.GyroUseGyroPort = true;
    rig.ins.leg.Kind = int16_t(b & 1);

    std::string_view bytes(reinterpret_cast<const char*>(data + 2), size - 2);
    LineQueue queue(64);
    queue.Append(bytes);
    queue.EndPartial();
    rig.ports.OpenComPort(1, 4800);
    rig.ports.OpenComPort(2, 4800);
    std::string line;
    int n = 0;
    while (queue.Pop(line)) {
        if (n++ % 2 == 1 && !line.empty()) {
            // The same text as a well-framed sentence with a good checksum.
            std::string body = line.substr(1);
            while (!body.empty() && (body.back() == '\n' || body.back() == '\r')) body.pop_back();
            size_t star = body.find('*');
            if (star != std::string::npos) body.erase(star);
            line = std::string(1, line[0] == '!' ? '!' : '$') + body + "*" + NmeaChecksum(body) + "\r\n";
        }
        rig.ports.Feed(1, line);
        rig.ports.Feed(2, line);
        double t;
        ParseTimeOfDay(line, t);
    }
    s.GyroPort = 2;
    s.ARPAPort = 2;
    for (int i = 0; i < 200 && !rig.ports.lines[1].empty(); ++i) {
        rig.ins.comm.ReadGPSPort();
        rig.clock.Advance(0.5);
        rig.ins.vessel.UpdateVesselPos();
    }
    rig.ins.comm.ReadGyroPort();
    rig.ins.vessel.UpdateVesselConsole();
    rig.ins.output.BuildBurst(rig.ins.decoder.Fix.Status);
    return 0;
}
