// Program options: the values behind the Options dialog, read from and
// written to the settings in one place.
//
// The dialog shows alarm ranges in the distance unit chosen on the dialog
// itself; they are stored in nautical miles. A range typed with a comma as
// its decimal mark ("0,5") is accepted: the comma becomes a point before the
// number is read. On confirm the groups are saved in the order display,
// alarms, course-distance choices, start-up, units.
//
//   OptionsValues v = LoadOptions(reg, units);
//   v.WPAlarmRangeText = "0,5";  SaveOptions(reg, units, v);   // stores "0.5"
#pragma once
#include <cstdint>
#include <string>

#include "core/Units.h"

namespace ombra {

class Registry;

// Display settings the rest of the program reads.
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
    std::string AutoscrollText;     // minutes
    int16_t GPSStartOpt = 0;        // 0 prompt, 1 do not start, 2 start
    bool AutoChart = false;
    bool ForceWGS84 = false;
};

// Fills the dialog's values from the settings; ranges in the current unit.
OptionsValues LoadOptions(const Registry& reg, const Units& units);
// A stored range in nautical miles as text in `distanceUnit`.
std::string RangeTextForUnit(const std::string& storedNM, int16_t distanceUnit);
// A typed range in `distanceUnit` as the stored text in nautical miles.
std::string StoredRangeFromText(const std::string& typed, int16_t distanceUnit);
// Saves in the dialog's order and makes `units` the chosen units.
void SaveOptions(Registry& reg, Units& units, const OptionsValues& v);

// Captions of the choices, as the dialog shows them.
extern const char* const kGPSStartOptions[3];
extern const char* const kLabelOptions[4];

}  // namespace ombra
