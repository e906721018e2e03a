#include "core/MainLoop.h"

#include <cmath>

#include "core/Format.h"
#include "platform/api/Clock.h"

namespace ombra {

void MainLoop::MainTimer_Timer() {
    if (Busy) return;
    Busy = true;
    // Each step reports its own faults; this guard only makes sure that a
    // fault escaping a step can never leave Busy set and stop the heartbeat.
    try {
        TickFlags f = steps_.Flags();
        bool NewFix = steps_.ReadGPSPort();
        if (f.GyroUseGyroPort) steps_.ReadGyroPort();
        if (!f.AISUseGPSPort && f.AISEnable) {
            steps_.ReadAISPort();
            steps_.AisTimeout(f.AISTimeout);
        }
        if (f.ARPAEnable) steps_.ReadARPAPort();
        steps_.PollTrackingFile();

        double T = clock_.Timer();
        if (NewFix || std::fabs(T - VesselTime) >= 1.0) {
            NewFix = steps_.UpdateVesselPos();
            if (steps_.VesselActive()) {
                steps_.UpdateTargetConsoles();
                double now = clock_.Timer();
                if (std::fabs(now - NmeaOutTime) >= 2.0 || NmeaOutTime == 0.0) {
                    NmeaOutTime = now;
                    steps_.NmeaOutput(NewFix);
                }
                now = clock_.Timer();
                if (std::fabs(now - ScrollTime) >= 5.0 || ScrollTime == 0.0) {
                    ScrollTime = now;
                    steps_.AutoscrollCheck();
                }
            }
            VesselTime = clock_.Timer();
        }
        steps_.ShowClock(FormatDate(clock_.Now(), "Short Time"));
    } catch (...) {
    }
    Busy = false;
}

}  // namespace ombra
