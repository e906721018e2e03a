// MouseTools: what a click on the chart does (the value CurrentTool), the
// prompt each tool shows in the first panel of InfoLine, the hit test that
// finds the object under the cursor, and the pop-up commands of each.
//
// Tools (CurrentTool values; 0 is the plain pointer; 1 and 11 belong to
// the chart view and the anchor alarm and are listed for their prompts
// only):
//    1 drag chart            "Drag chart while holding left mouse button down"
//    2 new waypoint          "Single Click on chart to add new Waypoint"
//    3 append waypoint       "Single Click on chart to append new Waypoint."
//    4 dividers              "Single Click on first Point followed by the second Point"
//    5 boundary              "Single Click chart for each Boundary Point, double click to end"
//    6 route                 "Single Click on each Route Point double click to end"
//    7 move route point      "Single Click to Drop Route Point in new position"
//    8 vessel                "Single Click on chart to place Vessel"
//    9 move waypoint         "Single Click to Drop Waypoint in new position"
//   10 move boundary mark    "Single Click to Drop Boundary Mark in new position"
//   11 alarm radius          "Single Click to Set Alarm Radius"
//   12 move divider          "Single Click to Drop Divider Line in new position"
//   14 move range-bearing    "Single Click to Drop Range Bearing Line in new position"
//   16 range-bearing line    "Single Click on chart to place Range Bearing Line"
// While tool 14 or 16 is on, only the vector being moved or placed is drawn.
// The vessel (tool 8) is placed by a click after Vessel > Place Vessel, by
// the chart pop-up's "Place Vessel Here", or dragged: the left button held
// on the vessel in dead reckoning picks it up, it follows the cursor (the
// dead reckoning waits meanwhile) and is put down where the button is let
// go, once "Do you wish to move this Vessel." is answered Yes (No puts it
// back). Leaving FILE DR is asked first ("Do you wish to cancel FILE DR
// mode."); in the GPS modes the fix places the vessel and the tool is not
// offered.
// A tool ends on completion, on the command that selects another, and at
// exit; a route or boundary being placed is then finished (removed when it
// has no point), a divider or vector half placed is dropped.
//
// Hit test precedence, top first, as the layers lie: vectors, dividers,
// boundary marks, route points, waypoints (points within 8 pixels), then
// boundary sides and route legs (within 4 pixels).
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/Types.h"
#include "charts/NavPoint.h"
#include "navobjects/NavStore.h"

namespace ombra {

class Waypoints;
class Routes;
class Boundaries;
class Dividers;
class Vectors;
class Activation;

enum Tool : int16_t {
    ToolPointer = 0,
    ToolDragChart = 1,
    ToolNewWaypoint = 2,
    ToolAppendWaypoint = 3,
    ToolDividers = 4,
    ToolBoundary = 5,
    ToolRoute = 6,
    ToolMoveRoutePoint = 7,
    ToolVessel = 8,
    ToolMoveWaypoint = 9,
    ToolMoveBoundaryMark = 10,
    ToolAlarmRadius = 11,
    ToolMoveDivider = 12,
    ToolMoveRBL = 14,
    ToolRBL = 16,
};

// The prompt of a tool; "" for the pointer and unknown values.
std::string ToolPrompt(int16_t tool);

enum class HitKind { None, Waypoint, RoutePoint, RouteLeg, BoundaryMark, BoundarySide, Divider, Vector };

struct Hit {
    HitKind Kind = HitKind::None;
    int16_t Index = 0;   // waypoint slot, route, boundary, divider or vector
    int16_t Part = 0;    // point, leg, mark or side within it
    LatLong Position;    // the position under the cursor
};

struct PopupEntry {
    std::string Command;  // what RunPopup takes
    std::string Caption;  // with "&" for the access key
};

class MouseTools {
public:
    MouseTools(NavContext& ctx, Waypoints& wp, Routes& rt, Boundaries& bd, Dividers& dv, Vectors& vc,
               Activation& act)
        : ctx_(ctx), wp_(wp), rt_(rt), bd_(bd), dv_(dv), vc_(vc), act_(act) {}

    static constexpr float kPointTolerance = 8.0f;
    static constexpr float kLineTolerance = 4.0f;

    int16_t Current() const;
    // Starts a tool: CurrentTool set, the prompt shown. `index` and `part`
    // name the object a move or append works on.
    void Begin(int16_t tool, int16_t index = 0, int16_t part = 0);
    // Ends the current tool as if the user chose the pointer.
    void End();

    // The mouse on the chart, in view pixels; true when a tool used it.
    bool Click(ChartPoint screen);
    bool DoubleClick(ChartPoint screen);
    void Move(ChartPoint screen);
    // The left button let go; true when a tool used it (a dragged vessel).
    bool Release(ChartPoint screen);

    // The vessel tool: whether the vessel may be placed by hand now (not in
    // a GPS mode), and Vessel > Place Vessel, which asks about FILE DR and
    // starts tool 8.
    bool CanPlaceVessel();
    void PlaceVessel();

    // Menu commands that start tools.
    void NewWaypointByMouse() { Begin(ToolNewWaypoint); }
    void CreateRoute();
    void CreateBoundary();
    void StartDividers() { Begin(ToolDividers); }
    void StartRBL() { Begin(ToolRBL); }

    Hit HitTest(ChartPoint screen);
    std::vector<PopupEntry> Popup(const Hit& hit);
    void RunPopup(const Hit& hit, const std::string& command);

    // Whether the vector layer shows only the selected vector now.
    bool VectorsRestricted() const;

private:
    void RunWaypointCommand(int16_t waypoint, const std::string& command);
    void AddWaypointToRoute(int16_t waypoint);
    bool PointNear(const NavPoint& p, ChartPoint screen, float tolerance);
    // The FILE DR question, when in FILE DR; false when the answer is No.
    bool LeaveFileDR();
    bool GrabVessel(ChartPoint screen);
    NavContext& ctx_;
    Waypoints& wp_;
    Routes& rt_;
    Boundaries& bd_;
    Dividers& dv_;
    Vectors& vc_;
    Activation& act_;
    int16_t index_ = 0, part_ = 0;
    bool placing_ = false;   // a divider or vector's first end is down
    bool dragging_ = false;  // the vessel is carried by the mouse (tool 8)
    LatLong dragFrom_;       // where the carried vessel was picked up
    ChartPoint pressedAt_;   // and the view pixel of the press
};

}  // namespace ombra
