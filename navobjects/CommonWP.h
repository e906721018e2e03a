// CommonWP: what waypoints, route points and boundary marks share, since
// all three are Waypoint records: how one is drawn on the chart, the
// waypoint dialog's rules, attachments, and the colour and hatch tables of
// the routes and boundaries drawn with them.
//
// Drawing a point, for each panel of the chart that shows it:
//   1. the range ring, when AlarmRange is negative: a circle of radius
//      |AlarmRange| nautical miles at the panel's scale and the zoom, light
//      red (colour 12), one pixel, no fill;
//   2. the symbol's 16 x 16 cell with its top-left 7 pixels up and left of
//      the point (the active strip for the destination);
//   3. the label by LabelMode: the name, the position ("50° 07.250 ´N" and
//      the longitude below it), or both, beside the symbol on a transparent
//      background.
//
//   DrawPoint(canvas, chart, symbols, wp, {.active = true});
#pragma once
#include <cstdint>
#include <string>

#include "navmath/Deviation.h"
#include "core/Types.h"
#include "navobjects/Waypoint.h"
#include "platform/api/Canvas.h"

namespace ombra {

class NavChart;
class SymbolStrips;
class Dialogs;
class Units;
class NavHost;

// The 16-colour table, "Black" (0) to "Bright White" (15).
constexpr int kColourCount = 16;
extern const char* const kColourNames[kColourCount];
Rgb TableColour(int16_t index);  // an index outside 0..15 gives black

// The hatch table of boundaries, in Pattern order.
constexpr int kHatchCount = 6;
extern const char* const kHatchNames[kHatchCount];
BrushStyle HatchStyle(int16_t pattern);  // outside 0..5: Horizontal

struct PointStyle {
    bool active = false;       // the active strip
    bool icon = true;          // false: no symbol (route icons forced off)
    bool selected = false;     // drawn with a selection box (being edited)
};

// Draws `wp` wherever its NavPoint shows.
void DrawPoint(Canvas& c, NavChart& chart, const SymbolStrips& symbols, const Waypoint& wp, const PointStyle& style);
// The label lines of a point for its LabelMode (and the chart's override).
std::vector<std::string> PointLabel(const Waypoint& wp, int16_t labelOverride);

// The label of a leg: course "000" (ShownCourse), a blank and the mark
// ("°T", "°M" or "°C"), a blank, the distance in the current unit with its
// abbreviation, and the suffix (" RL", " GC"):  "045 °T 12.300 NM GC".
std::string LegLabel(double course, double distance, int16_t courseMode, double variation, double deviation,
                     const Units& units, const char* rangeFormat, const char* suffix);

// The fields of FrmWayPoint, as text, and the rules of its OK button.
struct WaypointFields {
    std::string Name, Description;
    std::string LatText, LonText;
    bool PositionEdited = false;   // any edit in the two position boxes
    int16_t Icon = 0;
    int16_t LabelMode = 0;
    std::string RangeText;         // |AlarmRange| in the current distance unit, "0.000"
    bool ShowRange = false;        // "Show Alarm Range"
};
WaypointFields FieldsOf(const Waypoint& wp, const Units& units);
// Applies the fields to `wp`. False (with the message shown by the
// position routine) when the position text is invalid: the dialog stays.
bool AcceptFields(const WaypointFields& f, Waypoint& wp, const Units& units, Dialogs& dialogs,
                  const std::string& productName);

// The attachment commands: the chooser ("Select attachment file", "BMP",
// "*.bmp") gives a path or "" (which leaves the stored one); the viewer
// shows the bitmap or "An error occurred trying to load the attachment".
std::string PickAttachment(NavHost& host, const std::string& current);
void ShowAttachment(NavHost& host, Dialogs& dialogs, const std::string& productName, const std::string& path);

}  // namespace ombra
