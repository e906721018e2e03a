// Fuzzing the radar's sentences: whatever lines the ARPA port delivers, TTM
// and OSD decoding, the placement of every target from own ship, the
// console, the centring list and the silence test must not crash, read out
// of bounds or hit undefined behaviour. Every line goes in twice: as it
// came, and framed with a good checksum as a TTM or OSD, so that the
// decoders see arbitrary fields and not only sentences that fail the test.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/ErrorReport.h"
#include "fuzz/FuzzTargetHost.h"
#include "instruments/Console.h"
#include "instruments/NmeaText.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ScriptedDialogs.h"
#include "targets/Arpa.h"

using namespace ombra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    ManualClock clock;
    ScriptedDialogs dialogs;
    ErrorReporter errors(dialogs, "fuzz");
    Console console;
    fuzz::TargetHost host;
    Arpa arpa(host, errors, clock, console);
    arpa.Settings.Enable = true;
    arpa.Settings.Delay = data[0] % 8;
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    size_t start = 0;
    int n = 0;
    while (start <= bytes.size()) {
        size_t end = bytes.find('\n', start);
        if (end == std::string::npos) end = bytes.size();
        const std::string line = bytes.substr(start, end - start);
        start = end + 1;
        arpa.ArpaPoll(line, (n & 1) != 0);
        const std::string body = std::string(n % 3 ? "RATTM," : "RAOSD,") + line;
        arpa.ArpaPoll("$" + body + "*" + NmeaChecksum(body), true);
        arpa.ActiveTarget = int(unsigned(n * 37) % 103) - 1;
        for (int slot = 0; slot <= arpa.ArpaCount; ++slot) arpa.PlaceArpaTarget(slot);
        arpa.UpdateArpaConsole();
        clock.Advance(1.5);
        arpa.CheckTimeout();
        ++n;
    }
    arpa.CentreOnArpaTarget();
    return 0;
}
