// Fuzzing the AIS decoder: whatever bytes arrive, no crash, no read out of
// bounds, no undefined behaviour, and the table stays consistent.
//
// The first byte picks how the rest is read:
//   even  lines of raw text, as a serial port might deliver them (framing,
//         checksum and joining are what is tested);
//   odd   chunks turned into well-framed sentences with good checksums, so
//         that the message tables, the JSON writer and the target table see
//         arbitrary payloads of every type and length.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/ais/AisDecoder.h"
#include "platform/ais/AisJson.h"
#include "platform/fake/ManualClock.h"

namespace {

using namespace ombra;

char Armour(uint8_t b) {
    const unsigned v = b & 63u;
    return char(v < 40 ? v + 48 : v + 56);
}

// A sentence from one chunk: byte 0 gives the part count and number, byte 1
// the fill bits, channel, own/other and sequence id; the rest is payload.
std::string MakeSentence(const uint8_t* p, size_t n) {
    const int count = 1 + (p[0] & 3);
    const int number = 1 + ((p[0] >> 2) & 3) % count;
    const int fill = p[1] % 6;
    const char channel = "AB12"[(p[1] >> 3) & 3];
    const bool own = p[1] & 0x20;
    std::string body = own ? "AIVDO," : "AIVDM,";
    body += std::to_string(count) + "," + std::to_string(number) + ",";
    if (count > 1) body += char('0' + ((p[1] >> 6) & 3));
    body += ",";
    body += channel;
    body += ",";
    for (size_t i = 2; i < n; ++i) body += Armour(p[i]);
    body += "," + std::to_string(number == count ? fill : 0);
    unsigned sum = 0;
    for (char c : body) sum ^= static_cast<unsigned char>(c);
    char tail[8];
    std::snprintf(tail, sizeof tail, "*%02X", sum);
    return "!" + body + tail;
}

void Exercise(AisDecoder& ais, AisJsonStream& stream, ManualClock& clock, std::string_view line, uint8_t knob) {
    ais.DecodeAIS(line);
    std::string json;
    stream.Feed(line, json);
    if (knob % 7 == 0) clock.Advance(knob);
    if (knob % 11 == 0) ais.AisTimeout(knob * 3.0);
    AisTarget t;
    (void)ais.GetOwnVessel(t);
    const int16_t n = ais.GetNoAisTargets();
    for (int16_t i = 0; i <= n + 1; ++i) {
        if (ais.GetAisTarget(i, t)) {
            // A target handed out has a position a chart can hold.
            if (!(t.Latitude >= -90.0 && t.Latitude <= 90.0 && t.Longitude >= -180.0 && t.Longitude <= 180.0))
                __builtin_trap();
        }
        (void)ais.GetAisTargetHeading(i);
        (void)ais.IsOwnVessel(i);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    ManualClock clock;
    AisDecoder ais(clock);
    AisJsonStream stream;
    const uint8_t mode = data[0];
    ++data;
    --size;
    if ((mode & 1) == 0) {
        size_t from = 0;
        for (size_t i = 0; i <= size; ++i) {
            if (i == size || data[i] == '\n') {
                const std::string_view line(reinterpret_cast<const char*>(data) + from, i - from);
                Exercise(ais, stream, clock, line, uint8_t(i));
                from = i + 1;
            }
        }
    } else {
        // Chunks of up to 90 bytes, each prefixed by its length.
        size_t i = 0;
        while (i + 2 < size) {
            const size_t n = std::min<size_t>(2 + data[i] % 90, size - i);
            if (n < 2) break;
            Exercise(ais, stream, clock, MakeSentence(data + i, n), data[i]);
            i += n;
        }
    }
    ais.ClearAis();
    return 0;
}
