// The rig that tests, benchmarks and fuzz targets build their worlds on:
// every platform service as a fake (settings in memory, scripted dialogs,
// a clock that moves only when told, no events), and the core services over
// them. It needs no test framework, so benchmarks and fuzz targets link it
// as the tests do.
#pragma once
#include "core/ErrorReport.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"

namespace ombra::test {

struct FakePlatform {
    MemorySettings settings;
    Globals globals;
    Registry reg{settings, globals.ProductName};
    Units units;
    ManualClock clock;
    NoEvents events;
    ScriptedDialogs dialogs;
    ErrorReporter errors{dialogs, globals.ProductName};
};

}  // namespace ombra::test
