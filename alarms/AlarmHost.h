// AlarmHost: what the alarms ask of the program around them.
//
// The checks read the vessel, the console's waypoint rows (they act on the
// text the navigator sees, not on the numbers behind it), the boundary store
// and the activation of the navigation objects; they raise their windows
// and write the man-overboard entries of the log. The plotter implements
// this over its modules and its shell; tests implement it over a plotter.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "alarms/AlarmForm.h"
#include "core/Types.h"
#include "logbook/LogEntry.h"

namespace ombra {

struct ActiveLeg;
struct Boundary;

// The far end of the vessel's predictor line, when the predictor is shown.
struct PredictorLine {
    bool InUse = false;
    LatLong End;
};

class AlarmHost {
public:
    virtual ~AlarmHost() = default;

    // ---- The vessel and the console ----
    virtual bool VesselActive() = 0;
    virtual LatLong VesselPos() = 0;
    // A row of the console's waypoint frame (4 the range, 9 the cross-track
    // distance), as shown.
    virtual std::string WaypointRow(int index) = 0;
    // The setting AutopilotAdvance is non-zero.
    virtual bool AutopilotAdvance() = 0;
    // Man overboard turns the autopilot output off before it steers.
    virtual void AutopilotOff() = 0;

    // ---- Activation ----
    virtual bool NextPointExists() = 0;
    virtual void NextRoutePoint() = 0;
    virtual void DeactivateWaypoint(bool noRedraw) = 0;
    virtual void DeactivateRoute(bool noRedraw) = 0;
    // Drops whatever is active, waypoint or route.
    virtual void DeactivateAll(bool noRedraw) = 0;
    // Stores a leg that is no stored waypoint (the man-overboard point).
    virtual void SetActiveLeg(const ActiveLeg& leg) = 0;

    // ---- Boundaries ----
    // The slots of the open boundary database; null when none is open.
    virtual std::vector<Boundary>* BoundarySlots() = 0;
    // The boundary whose marks are being placed or edited (0: none).
    virtual int16_t EditingBoundary() = 0;
    virtual void AcknowledgeBoundaryAlarm(const std::string& number, const std::string& caption) = 0;

    // ---- Windows, chart and log ----
    // Shows an alarm window; a non-empty answer is a button pressed at once.
    virtual std::string ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text, bool beep) = 0;
    virtual void HideAlarm(AlarmForm form) = 0;
    // A Yes/No question; true on Yes.
    virtual bool Confirm(const std::string& text) = 0;
    virtual void AddLogEntry(LogEntryKind kind) = 0;
    virtual void Redraw() = 0;
    // The man-overboard read-out on the information line ("" clears it).
    virtual void ShowManOverboardReadout(const std::string& text) = 0;
    // The mouse tool of the alarm radius starts or ends.
    virtual void BeginRadiusTool() = 0;
    virtual void EndRadiusTool() = 0;
};

}  // namespace ombra
