#include "instruments/Instruments.h"

#include "core/Registry.h"

namespace ombra {

Instruments::Instruments(InstrumentServices s)
    : decoder(settings, s.clock),
      comm(s.comms, settings, decoder, vessel, s.hooks, s.clock, s.events, s.errors),
      vessel(VesselContext{s.registry, settings, decoder, comm, console, leg, s.units, s.globals, s.clock, s.errors, s.hooks,
                           s.chart}),
      output(vessel.vessel, leg, console, s.units, settings, decoder, s.hooks, comm),
      s_(s) {}

void Instruments::LoadCommsSettings() { settings.Load(s_.registry); }

void Instruments::LoadConsoleSettings() { console.LoadConsoleSettings(s_.registry); }

}  // namespace ombra
