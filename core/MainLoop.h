// The heartbeat of the plotter: MainTimer_Timer, run every 100 ms on the
// user-interface thread.
//
// One tick, in this order: poll the GPS port; the gyro port (if it has its
// own); the AIS port and the ageing of AIS targets (if AIS has its own port
// and is enabled); the ARPA port (if enabled); the target tracking file.
// Then the vessel cycle, on a new position sentence or after one second at
// the latest: UpdateVesselPos and, while a vessel is active, the target
// consoles, the NMEA burst (at most every 2 s) and the autoscroll check (at
// most every 5 s). Last, the clock on the information line.
//
// Times are seconds since midnight. Cadences compare |now - last|, so when
// the clock wraps to 0 at midnight every cadence fires on the next tick
// instead of waiting a day. Busy guards against re-entry: long work pumps
// events, and a tick arriving inside a tick returns at once.
//
// The loop knows nothing of the modules: it calls them through TickSteps,
// which the Plotter context implements.
#pragma once
#include <string>

namespace ombra {

class Clock;

struct TickFlags {
    bool GyroUseGyroPort = false;
    bool AISUseGPSPort = false;
    bool AISEnable = false;
    double AISTimeout = 300.0;
    bool ARPAEnable = false;
};

class TickSteps {
public:
    virtual ~TickSteps() = default;
    virtual TickFlags Flags() = 0;
    virtual bool ReadGPSPort() = 0;          // true on a decoded position sentence
    virtual void ReadGyroPort() = 0;
    virtual void ReadAISPort() = 0;
    virtual void AisTimeout(double seconds) = 0;
    virtual void ReadARPAPort() = 0;
    virtual void PollTrackingFile() = 0;
    virtual bool UpdateVesselPos() = 0;      // its result replaces NewFix
    virtual bool VesselActive() = 0;         // DR, GPS, GPS lost or FILE DR
    virtual void UpdateTargetConsoles() = 0; // ARPA, then AIS
    virtual void NmeaOutput(bool newFix) = 0;
    virtual void AutoscrollCheck() = 0;
    virtual void ShowClock(const std::string& text) = 0;  // InfoLine panel 5
};

class MainLoop {
public:
    MainLoop(Clock& clock, TickSteps& steps) : clock_(clock), steps_(steps) {}

    void MainTimer_Timer();

    // The handler's private state, visible for the window and for tests.
    double NmeaOutTime = 0.0;
    double ScrollTime = 0.0;
    double VesselTime = 0.0;
    bool Busy = false;

private:
    Clock& clock_;
    TickSteps& steps_;
};

}  // namespace ombra
