#include "core/Options.h"

#include "core/Registry.h"
#include "core/Val.h"

namespace ombra {

const char* const kGPSStartOptions[3] = {"Prompt For GPS Mode", "Do Not Start GPS", "Start GPS"};
const char* const kLabelOptions[4] = {"No Label", "Name Only", "Position Only", "Name and Position"};

namespace {
const Key kCoDist[4] = {Key::CoDist1, Key::CoDist2, Key::CoDist3, Key::CoDist4};

int16_t LabelMode(const Registry& reg, Key k) {
    double v = reg.GetNumber(k);
    return (v >= 0 && v <= 3) ? int16_t(v) : 0;
}
}  // namespace

DisplayOptions LoadDisplayOptions(const Registry& reg) {
    DisplayOptions d;
    d.ZoomRect = reg.IsTrue(Key::ZoomRect);
    d.ActiveCoord = reg.IsTrue(Key::ActiveCoord);
    d.RangeDP = reg.GetNumber(Key::RangeDP) == 2 ? 2 : 3;
    for (int i = 0; i < 4; ++i) d.CoDist[i] = reg.IsTrue(kCoDist[i]);
    d.DisplayTypeWaypoint = LabelMode(reg, Key::DisplayTypeWaypoint);
    d.DisplayTypeRoute = LabelMode(reg, Key::DisplayTypeRoute);
    d.DisplayTypeBoundary = LabelMode(reg, Key::DisplayTypeBoundary);
    return d;
}

std::string RangeTextForUnit(const std::string& storedNM, int16_t distanceUnit) {
    Units u;
    u.DistanceUnit = distanceUnit;
    return u.ToDisplay(UnitKind::Distance, float(Val(storedNM)), "0.00");
}

std::string StoredRangeFromText(const std::string& typed, int16_t distanceUnit) {
    Units u;
    u.DistanceUnit = distanceUnit;
    float v = float(Val(Replace(typed, ",", ".")));
    u.FromDisplay(UnitKind::Distance, v);
    return NumberText(v);
}

OptionsValues LoadOptions(const Registry& reg, const Units& units) {
    OptionsValues v;
    DisplayOptions d = LoadDisplayOptions(reg);
    v.DistanceUnit = units.DistanceUnit;
    v.SpeedUnit = units.SpeedUnit;
    v.AngleUnit = units.AngleUnit;
    v.ShowZoomRect = d.ZoomRect;
    v.ActiveCoordDisplay = d.ActiveCoord;
    v.RangeDP = d.RangeDP;
    for (int i = 0; i < 4; ++i) v.GreatCircle[i] = d.CoDist[i];
    v.DefWaypointLabel = d.DisplayTypeWaypoint;
    v.DefRouteLabel = d.DisplayTypeRoute;
    v.DefBoundaryLabel = d.DisplayTypeBoundary;
    v.WaypointArrival = reg.IsTrue(Key::WaypointAlarmStatus);
    v.WPAlarmRangeText = RangeTextForUnit(reg.GetSetting(Key::WaypointAlarmRange), units.DistanceUnit);
    v.XTE = reg.IsTrue(Key::XTEAlarmStatus);
    v.XTEAlarmRangeText = RangeTextForUnit(reg.GetSetting(Key::XTEAlarmRange), units.DistanceUnit);
    v.PredictorTriggers = reg.IsTrue(Key::PredictorAlarmStatus);
    v.SilentAlarms = reg.IsTrue(Key::AlarmSilent);
    v.AutoscrollText = reg.GetSetting(Key::AutoscrollTime);
    double g = reg.GetNumber(Key::AutoStartupGPS);
    v.GPSStartOpt = (g >= 0 && g <= 2) ? int16_t(g) : 0;
    v.AutoChart = reg.IsTrue(Key::AutoStartupChart);
    v.ForceWGS84 = reg.IsTrue(Key::ForceWGS84Datum);
    return v;
}

void SaveOptions(Registry& reg, Units& units, const OptionsValues& v) {
    // Display.
    reg.SaveSetting(Key::ZoomRect, BoolText(v.ShowZoomRect));
    reg.SaveSetting(Key::ActiveCoord, BoolText(v.ActiveCoordDisplay));
    reg.SaveSetting(Key::RangeDP, v.RangeDP == 2 ? "2" : "3");
    reg.SaveSetting(Key::DisplayTypeWaypoint, std::to_string(v.DefWaypointLabel));
    reg.SaveSetting(Key::DisplayTypeRoute, std::to_string(v.DefRouteLabel));
    reg.SaveSetting(Key::DisplayTypeBoundary, std::to_string(v.DefBoundaryLabel));
    // Alarms: ranges typed in the dialog's unit, stored in nautical miles.
    reg.SaveSetting(Key::WaypointAlarmStatus, BoolText(v.WaypointArrival));
    reg.SaveSetting(Key::WaypointAlarmRange, StoredRangeFromText(v.WPAlarmRangeText, v.DistanceUnit));
    reg.SaveSetting(Key::XTEAlarmStatus, BoolText(v.XTE));
    reg.SaveSetting(Key::XTEAlarmRange, StoredRangeFromText(v.XTEAlarmRangeText, v.DistanceUnit));
    reg.SaveSetting(Key::PredictorAlarmStatus, BoolText(v.PredictorTriggers));
    reg.SaveSetting(Key::AlarmSilent, BoolText(v.SilentAlarms));
    // Course-distance choices.
    for (int i = 0; i < 4; ++i) reg.SaveSetting(kCoDist[i], BoolText(v.GreatCircle[i]));
    // Start-up.
    reg.SaveSetting(Key::AutoscrollTime, NumberText(float(Val(Replace(v.AutoscrollText, ",", ".")))));
    reg.SaveSetting(Key::AutoStartupGPS, std::to_string(v.GPSStartOpt));
    reg.SaveSetting(Key::AutoStartupChart, BoolText(v.AutoChart));
    reg.SaveSetting(Key::ForceWGS84Datum, BoolText(v.ForceWGS84));
    // Units last.
    units.DistanceUnit = v.DistanceUnit;
    units.SpeedUnit = v.SpeedUnit;
    units.AngleUnit = v.AngleUnit;
    units.SaveUnits(reg);
}

}  // namespace ombra
