// AisHost: what the AIS targets module asks of the program around it. The
// plotter answers from the AIS decoder's table, the vessel, the shell's
// windows and the chart view; tests answer with a table of their own.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/Types.h"
#include "platform/ais/AisTarget.h"

namespace ombra {

// The own vessel's motion, for closest approach.
struct OwnMotion {
    LatLong Pos;        // seconds of arc
    double COG = 0.0;   // degrees true
    double SOG = 0.0;   // knots
};

class AisHost {
public:
    virtual ~AisHost() = default;
    // The decoder's table: slots 1..TargetCount(); Target is false for an
    // empty slot or a station with no position yet.
    virtual int16_t TargetCount() = 0;
    virtual bool Target(int16_t index, AisTarget& target) = 0;
    // Empties the decoder's table.
    virtual void ClearTargets() = 0;
    // The vessel's position and motion; false while it has none worth a
    // closest approach (off line, no fix).
    virtual bool OwnVessel(OwnMotion& own) = 0;
    // A list to choose from; the index picked, -1 for none.
    virtual int ListPick(const std::string& title, const std::vector<std::string>& items, const std::string& button) = 0;
    // The closest-approach alarm window (modeless): shown, or taken down.
    virtual void ShowCpaAlarm(const std::string& caption, const std::string& text, bool beep) = 0;
    virtual void HideCpaAlarm() = 0;
    // The console's AIS rows changed, or the frame is to be shown or hidden.
    virtual void ConsoleChanged() = 0;
    // The chart is to be repainted.
    virtual void Redraw() = 0;
};

}  // namespace ombra
