// A whole instruments subsystem on the fake platform: scripted ports (or
// live ones when given), and the hooks and chart operations it reports to,
// plain by default or recording for tests.
#pragma once
#include "instruments/Instruments.h"
#include "platform/comms/ScriptedComms.h"
#include "tests/support/Rig.h"

namespace ombra::test {

template <class Hooks = InstrumentHooks, class Chart = ChartOps>
struct InstrumentsRig : FakePlatform {
    explicit InstrumentsRig(Comms* comms = nullptr) : live(comms) {}
    ScriptedComms ports;
    Hooks hooks;
    Chart chart;
    Comms* live;
    Instruments ins{{reg, units, globals, clock, events, errors, live ? *live : ports, hooks, chart}};
};

}  // namespace ombra::test
