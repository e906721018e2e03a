#include "alarms/Alarms.h"

#include <cmath>
#include <vector>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Registry.h"
#include "core/Units.h"
#include "core/Val.h"
#include "instruments/ActiveLeg.h"
#include "navmath/Geometry.h"
#include "navmath/RLGC.h"
#include "navobjects/Boundary.h"
#include "navobjects/NavChart.h"
#include "navobjects/Symbols.h"
#include "platform/api/Canvas.h"

namespace ombra {

namespace {
constexpr const char* kArrivalCaption = "Waypoint Arrival";
constexpr const char* kXTECaption = "XTE Alarm";
constexpr const char* kAnchorCaption = "Anchor Alarm";
constexpr const char* kAnchorText = "You have moved outside the area of your anchor alarm";
constexpr Rgb kAlarmRed = MakeRgb(220, 0, 0);
}  // namespace

void AlarmSettings::Load(const Registry& reg) {
    WaypointAlarmOn = !reg.IsFalse(Key::WaypointAlarmStatus);
    WaypointAlarmRange = float(reg.GetNumber(Key::WaypointAlarmRange));
    XTEAlarmOn = !reg.IsFalse(Key::XTEAlarmStatus);
    XTEAlarmRange = float(reg.GetNumber(Key::XTEAlarmRange));
    PredictorAlarmOn = reg.IsTrue(Key::PredictorAlarmStatus);
    Silent = reg.IsTrue(Key::AlarmSilent);
}

Alarms::Alarms(Registry& reg, Units& units, ErrorReporter& errors, ActiveLeg& leg, AlarmHost& host)
    : reg_(reg), units_(units), errors_(errors), leg_(leg), host_(host) {}

void Alarms::LoadSettings() { Settings.Load(reg_); }

// ---- Windows -------------------------------------------------------------------

void Alarms::Alert(AlarmForm form, const std::string& caption, const std::string& text) {
    AlarmWindow& w = forms_[size_t(form)];
    w.Caption = caption;
    w.Message = text;
    w.Visible = true;
    std::string answer = host_.ShowAlarm(form, caption, text, !Settings.Silent);
    if (!answer.empty()) Press(form, answer);
}

void Alarms::Unload(AlarmForm form) {
    AlarmWindow& w = forms_[size_t(form)];
    w.Tag.clear();
    if (!w.Visible) return;
    w.Visible = false;
    host_.HideAlarm(form);
}

void Alarms::Press(AlarmForm form, const std::string& buttonCaption) {
    AlarmWindow& w = forms_[size_t(form)];
    if (!w.Visible) return;  // a window already down has no buttons
    // The boundary window's tag names the boundary whose event it shows.
    if (form == AlarmForm::Boundary) host_.AcknowledgeBoundaryAlarm(w.Tag, w.Caption);
    w.Tag = buttonCaption;
    w.Visible = false;
    host_.HideAlarm(form);
}

void Alarms::ClearAlarmForms() {
    WaypointAlarmShowing = false;
    XTEAlarmTripped = XTEAlarmShowing = false;
    AnchorTripped = AnchorShowing = false;
    for (AlarmForm f : {AlarmForm::Arrival, AlarmForm::CrossTrack, AlarmForm::Anchor, AlarmForm::Boundary}) Unload(f);
}

// ---- Boundaries ------------------------------------------------------------------

void Alarms::BoundaryAlert(const std::string& number, const std::string& caption, const std::string& text) {
    forms_[size_t(AlarmForm::Boundary)].Tag = number;
    Alert(AlarmForm::Boundary, caption, text);
}

void Alarms::CheckBoundaries(const LatLong& pos, const PredictorLine& predictor) {
    std::vector<Boundary>* slots = host_.BoundarySlots();
    if (!slots) return;
    const int16_t editing = host_.EditingBoundary();
    for (size_t i = 0; i < slots->size(); ++i) {
        Boundary& b = (*slots)[i];
        if (b.Number <= 0 || !b.Display || int16_t(i + 1) == editing) continue;
        const std::vector<LatLong> ring = b.Ring();
        const std::string number = Format(double(b.Number), "0");
        if (PointInPolygon(pos.Long, pos.Lat, ring)) {
            b.VesselExitLatch = 0;
            if (b.AlarmOnExit == 0 && !b.VesselEntryLatch)
                BoundaryAlert(number, "Vessel Entry", "You have entered boundary alarm " + b.Name);
        } else {
            b.VesselEntryLatch = 0;
            if (b.AlarmOnExit == 1 && !b.VesselExitLatch)
                BoundaryAlert(number, "Vessel Exit", "You have left boundary alarm " + b.Name);
        }
        if (!Settings.PredictorAlarmOn || !predictor.InUse) continue;
        if (PointInPolygon(predictor.End.Long, predictor.End.Lat, ring)) {
            b.PredictorExitLatch = 0;
            if (b.AlarmOnExit == 0 && !b.PredictorEntryLatch)
                BoundaryAlert(number, "Predictor Entry", "Your predictor line has entered boundary alarm " + b.Name);
        } else {
            b.PredictorEntryLatch = 0;
            if (b.AlarmOnExit == 1 && !b.PredictorExitLatch)
                BoundaryAlert(number, "Predictor Exit", "Your predictor line has left boundary alarm " + b.Name);
        }
    }
}

// ---- Anchor ------------------------------------------------------------------------

void Alarms::CheckAnchorAlarm(const LatLong& pos) {
    if (!AnchorSet) return;
    double course = 0.0, d = 0.0;
    CourseDistanceRL(AnchorPos, pos, course, d);
    const bool inside = !(d > AnchorRadius);
    if (!AnchorTripped) {
        if (inside) return;
        AnchorTripped = AnchorShowing = true;
        Alert(AlarmForm::Anchor, kAnchorCaption, kAnchorText);
    } else if (AnchorShowing) {
        if (inside) {
            AnchorTripped = AnchorShowing = false;
            Unload(AlarmForm::Anchor);
        } else if (forms_[size_t(AlarmForm::Anchor)].Tag.empty()) {
            Alert(AlarmForm::Anchor, kAnchorCaption, kAnchorText);
        } else {
            AnchorShowing = false;
        }
    } else if (inside) {
        AnchorTripped = false;
    }
}

void Alarms::SetAnchor() {
    errors_.Guard("SetAnchor", [&] {
        if (!host_.VesselActive()) return;
        AnchorPos = host_.VesselPos();
        AnchorSet = true;
        AnchorTripped = AnchorShowing = false;
        Unload(AlarmForm::Anchor);
        if (!(AnchorRadius > 0.0)) AnchorRadius = kDefaultAnchorRadius;
        host_.BeginRadiusTool();
        host_.Redraw();
    });
}

void Alarms::ClearAnchor() {
    errors_.Guard("ClearAnchor", [&] {
        AnchorSet = false;
        AnchorTripped = AnchorShowing = false;
        Unload(AlarmForm::Anchor);
        host_.EndRadiusTool();
        host_.Redraw();
    });
}

void Alarms::StartAnchorRadius() {
    if (AnchorSet) host_.BeginRadiusTool();
}

void Alarms::SetAnchorRadius(const LatLong& point) {
    errors_.Guard("SetAnchorRadius", [&] {
        if (!AnchorSet) return;
        double course = 0.0, d = 0.0;
        CourseDistanceRL(host_.VesselPos(), point, course, d);
        AnchorRadius = d;
        host_.Redraw();
    });
}

void Alarms::FixAnchorRadius(const LatLong& point) {
    SetAnchorRadius(point);
    host_.EndRadiusTool();
}

// ---- Arrival -------------------------------------------------------------------------

bool Alarms::PassedPerpendicular(double bearingTo, double legCourse) {
    double d = bearingTo > legCourse ? bearingTo - legCourse : legCourse - bearingTo;
    if (d > 180.0) d = 360.0 - d;
    return d >= 90.0;
}

bool Alarms::PassedPerpendicular() {
    const bool passed = PassedPerpendicular(leg_.BearingTo, leg_.LegCourse);
    leg_.PassedPerpendicular = passed ? -1 : 0;
    return passed;
}

// The range as the console shows it (any unit) against the range in NM.
bool Alarms::ArrivalTrigger() {
    const bool passed = PassedPerpendicular();
    const bool inRange = !(Val(host_.WaypointRow(4)) > double(leg_.AlarmRange));
    return inRange || passed;
}

void Alarms::ArrivalAlert() {
    std::string text;
    if (leg_.PassedPerpendicular) {
        text = "You have passed the perpendicular for " + leg_.Name + ".";
    } else {
        text = "You are now within " + units_.ToDisplay(UnitKind::Distance, leg_.AlarmRange, "0.00") +
               units_.UnitText(UnitKind::Distance) + " of " + leg_.Name + ".";
    }
    text += "\n";
    text += leg_.Kind == 2 && host_.NextPointExists() ? "Do you wish to activate the next waypoint in this route."
                                                      : "Do you wish to de-activate this waypoint.";
    Alert(AlarmForm::Arrival, kArrivalCaption, text);
}

void Alarms::CheckArrivalAlarm() {
    if (!Settings.WaypointAlarmOn || !leg_.Armed) return;
    // Advance mode: along the route without a word.
    if (leg_.Kind == 2 && host_.NextPointExists() && host_.AutopilotAdvance()) {
        if (ArrivalTrigger()) host_.NextRoutePoint();
        return;
    }
    if (!WaypointAlarmShowing) {
        if (!ArrivalTrigger()) return;
        WaypointAlarmShowing = true;
        forms_[size_t(AlarmForm::Arrival)].Tag.clear();
        ArrivalAlert();
        return;
    }
    if (!ArrivalTrigger()) {  // the vessel moved back out
        WaypointAlarmShowing = false;
        Unload(AlarmForm::Arrival);
        return;
    }
    const std::string answer = forms_[size_t(AlarmForm::Arrival)].Tag;
    if (answer.empty()) {
        ArrivalAlert();
        return;
    }
    const bool yes = answer == "Yes";
    if (leg_.Kind == 1) {
        if (yes) host_.DeactivateWaypoint(false);
        else leg_.Armed = 0;
    } else if (leg_.Kind == 2 && host_.NextPointExists()) {
        if (yes) host_.NextRoutePoint();
        else leg_.Armed = 0;
    } else if (leg_.Kind == 2) {
        if (yes) host_.DeactivateRoute(false);
        else leg_.Armed = 0;
    }
    Unload(AlarmForm::Arrival);
    WaypointAlarmShowing = false;
}

// ---- Cross track ---------------------------------------------------------------------

// The console's cross-track row ends in a blank and a two-letter unit.
double Alarms::CrossTrackValue() {
    std::string row = host_.WaypointRow(9);
    return Val(row.size() > 3 ? std::string_view(row).substr(0, row.size() - 3) : std::string_view());
}

void Alarms::CheckXTEAlarm() {
    if (!Settings.XTEAlarmOn) return;
    const double x = CrossTrackValue();
    const double range = double(Settings.XTEAlarmRange);
    auto alert = [&] { Alert(AlarmForm::CrossTrack, kXTECaption, "You are " + host_.WaypointRow(9) + " off track."); };
    if (!XTEAlarmTripped) {
        if (x < range) return;
        XTEAlarmTripped = XTEAlarmShowing = true;
        alert();
    } else if (!XTEAlarmShowing) {
        if (x < range) XTEAlarmTripped = false;  // back within range: armed again
    } else if (x < range) {
        XTEAlarmTripped = XTEAlarmShowing = false;
        Unload(AlarmForm::CrossTrack);
    } else if (!forms_[size_t(AlarmForm::CrossTrack)].Tag.empty()) {
        XTEAlarmShowing = false;
        Unload(AlarmForm::CrossTrack);
    } else {
        alert();
    }
}

// ---- Man overboard ---------------------------------------------------------------------

void Alarms::ManOverboard() {
    errors_.Guard("ManOverboard", [&] {
        if (!host_.VesselActive()) return;
        if (!MobSet) {
            host_.AutopilotOff();
            host_.DeactivateAll(true);
            const LatLong here = host_.VesselPos();
            ActiveLeg leg;
            leg.Name = "MOB";
            leg.Kind = 1;
            leg.To = leg.From = here;
            leg.AlarmRange = 0.0f;
            leg.Armed = 0;  // no arrival alarm on the way back to the mark
            leg.GreatCircle = reg_.IsTrue(Key::CoDist2) ? 1 : 0;
            MobSet = true;
            MobPos = here;
            host_.SetActiveLeg(leg);
            host_.AddLogEntry(LogEntryKind::ManOverboard);
            host_.Redraw();
            return;
        }
        if (!host_.Confirm("Confirm clearing of Man overboard condition")) return;
        // The destination goes only if it is still the mark's.
        if (leg_.Kind == 1 && leg_.Name == "MOB" && leg_.To == MobPos) host_.DeactivateWaypoint(true);
        MobSet = false;
        host_.ShowManOverboardReadout("");
        host_.AddLogEntry(LogEntryKind::ManOverboardCleared);
        host_.Redraw();
    });
}

void Alarms::ManOverboardReadout(const LatLong& vesselPos) {
    if (!MobSet) return;
    double course = 0.0, d = 0.0;
    CourseDistanceRL(vesselPos, MobPos, course, d);
    host_.ShowManOverboardReadout("MOB " + Format(course, "000") + "°T " +
                                  units_.ToDisplay(UnitKind::Distance, float(d), "0.00") + " " +
                                  units_.UnitText(UnitKind::Distance));
}

// ---- Chart layers ----------------------------------------------------------------------

void Alarms::DrawAnchorCircle(Canvas& c, NavChart& chart) const {
    if (!AnchorSet || !chart.ChartOpen()) return;
    NavPoint p;
    p.Wgs84 = AnchorPos;
    chart.PrepareNavPoint(p);
    for (size_t k = 0; k < p.InPlan.size() && k < p.Pixel.size(); ++k) {
        if (!p.In(k)) continue;
        const ChartPoint s = chart.ToScreen(p.Pixel[k]);
        const double r = std::min(AnchorRadius * chart.ScreenPixelsPerNM(int16_t(k)), 1e5);
        const int ri = int(std::lround(r));
        c.SetPen({kAlarmRed, 2, PenStyle::Dash});
        c.SetBrush({kAlarmRed, BrushStyle::Null});
        c.Ellipse({s.x - ri, s.y - ri, s.x + ri + 1, s.y + ri + 1});
        c.SetPen({kAlarmRed, 2, PenStyle::Solid});
        c.Line({s.x - 5, s.y}, {s.x + 6, s.y});
        c.Line({s.x, s.y - 5}, {s.x, s.y + 6});
    }
}

void Alarms::DrawManOverboard(Canvas& c, NavChart& chart, const SymbolStrips& symbols) const {
    if (!MobSet || !chart.ChartOpen()) return;
    NavPoint p;
    p.Wgs84 = MobPos;
    chart.PrepareNavPoint(p);
    for (size_t k = 0; k < p.InPlan.size() && k < p.Pixel.size(); ++k) {
        if (!p.In(k)) continue;
        const ChartPoint s = chart.ToScreen(p.Pixel[k]);
        c.Blit({s.x - kSymbolCentre, s.y - kSymbolCentre}, symbols.Cell(kManOverboardSymbol, true));
        c.SetTextColour(kAlarmRed);
        c.SetFont({"DejaVu Sans", 9, true});
        c.Text({s.x + kSymbolSize - kSymbolCentre + 2, s.y - kSymbolCentre}, "MOB");
        c.SetFont(Font{});  // the layers after this one start from the plain font
    }
}

}  // namespace ombra
