// Program options: the values behind the Options dialog, read from and
// written to the settings in one place.
//
// The dialog shows alarm ranges in the distance unit chosen on the dialog
// itself; they are stored in nautical miles. A range typed with a comma as
// its decimal mark ("0,5") is accepted: the comma becomes a point before the
// number is read. On confirm the groups are saved in the order display,
// alarms, course-distance choices, start-up, units.
//
// Contract:
//   - Loading never writes and accepts any stored text: a label mode out of
//     0..3 reads as 0 (no label), a GPS start option out of 0..2 as 0
//     (prompt), a range decimal setting other than 2 as 3, and a boolean
//     only as true when its text is exactly "True".
//   - A typed range or autoscroll time that is not a number is stored as
//     "0"; nothing typed is refused here (the dialog does not validate).
//   - The values hold copies; nothing here keeps a reference to the
//     registry or the units passed in.
//
//   OptionsValues v = LoadOptions(reg, units);
//   v.WPAlarmRangeText = "0,5";  SaveOptions(reg, units, v);   // stores "0.5"
#pragma once
#include <cstdint>
#include <string>

#include "core/Units.h"

namespace ombra {

class Registry;

// Display settings the rest of the program reads; the defaults are those of
// a first run.
struct DisplayOptions {
    bool ZoomRect = true;
    bool ActiveCoord = true;
    int16_t RangeDP = 3;
    bool CoDist[4] = {false, false, false, false};  // true: great circle
    int16_t DisplayTypeWaypoint = 1, DisplayTypeRoute = 1, DisplayTypeBoundary = 0;
    // The range format for RangeDP: "0.000" or "0.00".
    const char* RangeFormat() const { return RangeDP == 2 ? "0.00" : "0.000"; }
};

DisplayOptions LoadDisplayOptions(const Registry& reg);

struct OptionsValues {
    int16_t DistanceUnit = 0, SpeedUnit = 0, AngleUnit = 0;
    bool ShowZoomRect = true, ActiveCoordDisplay = true;
    int16_t RangeDP = 3;
    bool GreatCircle[4] = {false, false, false, false};  // vessel-cursor, vessel-waypoint, RBL, routes default
    int16_t DefWaypointLabel = 1, DefRouteLabel = 1, DefBoundaryLabel = 0;
    bool WaypointArrival = true;
    std::string WPAlarmRangeText;   // in the dialog's distance unit
    bool XTE = true;
    std::string XTEAlarmRangeText;  // in the dialog's distance unit
    bool PredictorTriggers = false;
    bool SilentAlarms = false;      // alarm windows without the bell (night passages)
    std::string AutoscrollText;     // minutes
    int16_t GPSStartOpt = 0;        // 0 prompt, 1 do not start, 2 start
    bool AutoChart = false;
    bool ForceWGS84 = false;
};

// Fills the dialog's values from the settings; ranges in `units`' current
// distance unit with two decimals ("0.50").
OptionsValues LoadOptions(const Registry& reg, const Units& units);
// A stored range in nautical miles as text in `distanceUnit`, two decimals;
// a stored text that is no number shows "0.00".
std::string RangeTextForUnit(const std::string& storedNM, int16_t distanceUnit);
// A typed range in `distanceUnit` as the stored text in nautical miles; a
// comma is read as the decimal point, and text that is no number gives "0".
std::string StoredRangeFromText(const std::string& typed, int16_t distanceUnit);
// Saves in the dialog's order and makes `units` the chosen units (unit
// codes out of 0..2 are stored as unit 0).
void SaveOptions(Registry& reg, Units& units, const OptionsValues& v);

// Captions of the choices, as the dialog shows them.
extern const char* const kGPSStartOptions[3];
extern const char* const kLabelOptions[4];

}  // namespace ombra
