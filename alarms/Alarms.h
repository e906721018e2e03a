// Alarms: the arrival, cross-track, anchor and boundary alarms, the anchor
// watch and man overboard.
//
// After each accepted position the vessel cycle runs the checks in a fixed
// order: CheckBoundaries, CheckAnchorAlarm, then with an active leg
// CheckArrivalAlarm and, if the leg is still active, CheckXTEAlarm. Each is
// a short step: an alarm is a modeless window and a beep, and a check that
// finds its window still unanswered sounds again at the next update. The
// windows are never modal, so a check learns the navigator's answer from
// the window's tag: a button stores its own caption there and hides the
// window (Press). Unloading a window takes it down and empties its tag;
// hiding keeps the tag.
//
// What the checks read is what the navigator reads. The arrival range test
// takes the number at the start of the console's range row, in whatever
// distance unit it is shown, and compares it with the leg's alarm range in
// nautical miles: with kilometres shown and a range of 0.5 it trips at
// 0.5 km. The cross-track value is the console's cross-track row without
// its last three characters (the blank and the unit). A row that does not
// start with a number reads 0.
//
// The vessel has passed the perpendicular at the destination when the
// bearing to it differs from the leg's course by 90 degrees or more
// (exactly 90 counts): leg 090, bearing 180 has passed; 179.9 has not;
// leg 010, bearing 350 differ by 20.
//
// Latches: the cross-track alarm and the anchor alarm, once answered, stay
// silent until the vessel is back inside its range, and only then re-arm.
// A boundary's four events (vessel entry and exit, predictor entry and
// exit) each sound at every update until acknowledged, and once
// acknowledged stay silent until the vessel (or the predictor's end) has
// left that state. Nothing is re-armed by a clock.
//
// Settings (read at start-up and again when Program Options writes them): WaypointAlarmStatus
// and XTEAlarmStatus are on unless stored as "False"; PredictorAlarmStatus
// is on only as "True"; AlarmSilent "True" keeps the windows but not the bell.
#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "alarms/AlarmForm.h"
#include "alarms/AlarmHost.h"
#include "core/Types.h"

namespace ombra {

class Registry;
class Units;
class ErrorReporter;
class Canvas;
class NavChart;
class SymbolStrips;
struct ActiveLeg;

struct AlarmSettings {
    bool WaypointAlarmOn = true;
    float WaypointAlarmRange = 0.5f;   // default range of new points, NM
    bool XTEAlarmOn = true;
    float XTEAlarmRange = 0.3f;        // NM
    bool PredictorAlarmOn = false;
    bool Silent = false;               // no bell with the windows

    void Load(const Registry& reg);
};

// One alarm window as the checks see it.
struct AlarmWindow {
    bool Visible = false;
    std::string Caption;
    std::string Message;
    std::string Tag;  // the answer (a button's caption); "" unanswered
};

class Alarms {
public:
    Alarms(Registry& reg, Units& units, ErrorReporter& errors, ActiveLeg& leg, AlarmHost& host);

    AlarmSettings Settings;
    bool WaypointAlarmShowing = false;
    bool XTEAlarmTripped = false, XTEAlarmShowing = false;

    bool AnchorSet = false, AnchorTripped = false, AnchorShowing = false;
    LatLong AnchorPos;
    double AnchorRadius = 0.0;  // NM

    bool MobSet = false;
    LatLong MobPos;

    // Start-up: the settings read, every window down.
    void LoadSettings();
    // The settings changed (Program Options): re-read them.
    void SettingsChanged() { Settings.Load(reg_); }

    // ---- The checks, in the cycle's order ----
    void CheckBoundaries(const LatLong& vesselPos, const PredictorLine& predictor);
    void CheckAnchorAlarm(const LatLong& vesselPos);
    void CheckArrivalAlarm();
    void CheckXTEAlarm();
    // Stores and returns whether the vessel is beyond the perpendicular.
    bool PassedPerpendicular();
    static bool PassedPerpendicular(double bearingTo, double legCourse);

    // At start-up and on a change of vessel: showing and tripped flags
    // cleared, every window unloaded.
    void ClearAlarmForms();

    // ---- The windows ----
    const AlarmWindow& Window(AlarmForm form) const { return forms_[size_t(form)]; }
    // A button of a window: its caption becomes the tag and the window hides.
    // The boundary window's OK acknowledges the event it shows.
    void Press(AlarmForm form, const std::string& buttonCaption);

    // ---- The anchor, from the chart pop-up ----
    // The anchor at the vessel; the radius tool starts so that the circle
    // follows the mouse until a click fixes it.
    void SetAnchor();
    void ClearAnchor();
    // The radius tool again, for an anchor already set.
    void StartAnchorRadius();
    // The radius as the rhumb-line distance from the vessel to `point`: on
    // each move of the mouse while the tool is on, and at the click.
    void SetAnchorRadius(const LatLong& point);
    // The click that ends the radius tool.
    void FixAnchorRadius(const LatLong& point);

    // ---- Man overboard ----
    void ManOverboard();
    // At each update while the mark is set: bearing and range to it.
    void ManOverboardReadout(const LatLong& vesselPos);

    // ---- Chart layers ----
    void DrawAnchorCircle(Canvas& c, NavChart& chart) const;
    void DrawManOverboard(Canvas& c, NavChart& chart, const SymbolStrips& symbols) const;

    static constexpr int16_t kManOverboardSymbol = 36;
    static constexpr double kDefaultAnchorRadius = 0.1;  // NM, until the navigator sets one

private:
    bool ArrivalTrigger();
    void ArrivalAlert();
    void Alert(AlarmForm form, const std::string& caption, const std::string& text);
    void Unload(AlarmForm form);
    void BoundaryAlert(const std::string& number, const std::string& caption, const std::string& text);
    double CrossTrackValue();

    Registry& reg_;
    Units& units_;
    ErrorReporter& errors_;
    ActiveLeg& leg_;
    AlarmHost& host_;
    std::array<AlarmWindow, 4> forms_;
};

}  // namespace ombra
