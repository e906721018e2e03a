// Instruments: the whole of the instruments subsystem as one object, with
// its modules wired to each other, for the Plotter context to own.
//
//   comm      ports, framing, routing (Comm.h)
//   decoder   GPSFix, HeadingData, GGAExtra, SatInfo (NmeaDecoder.h)
//   vessel    the vessel record, modes and the update cycle (Vessel.h)
//   output    the NMEA burst (NmeaOutput.h)
//   console   the console rows (Console.h)
//   leg       the active leg (ActiveLeg.h), written by route activation
//
// The plotter hands in its services, the comms implementation, and its
// implementations of InstrumentHooks and ChartOps.
//
//   Instruments ins({registry, units, globals, clock, events, errors, comms, hooks, chart});
//   ins.LoadCommsSettings();  ins.vessel.LoadVesselSettings();
//   ins.comm.StartGPS();
//   // each tick:  bool fix = ins.comm.ReadGPSPort(); int16_t s = ins.vessel.UpdateVesselPos();
#pragma once
#include "instruments/ActiveLeg.h"
#include "instruments/Comm.h"
#include "instruments/CommSettings.h"
#include "instruments/Console.h"
#include "instruments/NmeaDecoder.h"
#include "instruments/NmeaOutput.h"
#include "instruments/Vessel.h"

namespace ombra {

class Comms;
class Registry;
class Units;
class Clock;
class Events;
class ErrorReporter;
struct Globals;

struct InstrumentServices {
    Registry& registry;
    Units& units;
    Globals& globals;
    Clock& clock;
    Events& events;
    ErrorReporter& errors;
    Comms& comms;
    InstrumentHooks& hooks;
    ChartOps& chart;
};

class Instruments {
public:
    explicit Instruments(InstrumentServices s);

    // The communication settings (start-up step "Comms") and the console
    // rows' visibility (step "Chartzoom").
    void LoadCommsSettings();
    void LoadConsoleSettings();

    CommSettings settings;
    ActiveLeg leg;
    Console console;
    NmeaDecoder decoder;
    Comm comm;
    VesselModule vessel;
    NmeaOut output;

private:
    InstrumentServices s_;
};

}  // namespace ombra
