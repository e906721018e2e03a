// Fuzzing the tracking service's file: whatever its text, the reader, the
// table of 101 vessels with the course and speed derived between reports,
// the console and the centring list must not crash, read out of bounds or
// hit undefined behaviour.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/ErrorReport.h"
#include "fuzz/FuzzTargetHost.h"
#include "instruments/Console.h"
#include "platform/fake/ScriptedDialogs.h"
#include "targets/Tracked.h"

using namespace ombra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ScriptedDialogs dialogs;
    ErrorReporter errors(dialogs, "fuzz");
    Console console;
    fuzz::TargetHost host;
    Tracked tracked(host, errors, console);
    const std::string text(reinterpret_cast<const char*>(data), size);
    // Read twice, as a service rewriting the file would have it read.
    tracked.ReadTrackingText(text);
    tracked.ReadTrackingText(text);
    tracked.ActiveTarget = size > 0 ? data[0] % 103 - 1 : -1;
    tracked.UpdateTrackedConsole();
    tracked.CentreOnTrackedTarget();
    TrackingDate(text);
    return 0;
}
