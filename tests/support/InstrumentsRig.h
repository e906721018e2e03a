// A whole instruments subsystem on the fake platform: scripted ports (or
// live ones when given), and the hooks and chart operations it reports to,
// the headless ones by default or recording ones for tests.
#pragma once
#include "instruments/HeadlessHooks.h"
#include "instruments/Instruments.h"
#include "platform/comms/ScriptedComms.h"
#include "tests/support/Rig.h"

namespace ombra::test {

template <class Hooks = HeadlessHooks, class Chart = HeadlessChart>
struct InstrumentsRig : FakePlatform {
    explicit InstrumentsRig(Comms* comms = nullptr) : live(comms) {}
    ScriptedComms ports;
    Hooks hooks;
    Chart chart;
    Comms* live;
    Instruments ins{{reg, units, globals, clock, events, errors, live ? *live : ports, hooks, chart}};
};

}  // namespace ombra::test
