// Route: an ordered list of route points and the legs between them, and
// the route file in its four historical forms.
//
// Route points are Waypoint records held inside the route (a route never
// refers to the waypoint store). Leg i leaves point i; the last leg entry
// exists and is unused, so a route of one point has one (unused) leg.
// Distance and Course of a leg are always computed (CourseDistance with the
// leg's own flag: 0 rhumb line, non-zero great circle), never read.
//
// File (text records, CR LF), the present form:
//   "Ver 2.19"
//   "Passages"
//   "R001",1,"Out of harbour",3,-1,#TRUE#,12        header: Name, Number,
//   "R1.WP1",1,"",180000,-18000,0,1,0.5,1,0,"",0     Description, PointCount,
//   "R1.WP2",2,"",180600,-17400,0,1,0.5,1,0,"",-1    Display, ShowLegText,
//   "R1.WP3",3,"",181200,-17400,0,1,0.5,1,0,"",0     Colour; then the points:
//                                                    a waypoint line and the
//                                                    flag of the leg leaving it
// A free route slot is a header with Number 0 and no points:
//   "",0,"",0,0,#FALSE#,0
//
// Older forms are read by the first value of the file:
//   no "Ver"                      oldest: no version or name lines, headers of
//                                 six values (no Colour), points of eleven
//                                 values, then one line a leg with its flag
//   shorter than 8, or <= 2.17    old: the same after version and name lines
//   exactly 2.18                  headers of seven values, points of eleven,
//                                 leg flag lines after the points
//   anything else                 the present form
// Every route is saved in the present form.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "navobjects/NavStore.h"
#include "navobjects/Waypoint.h"

namespace ombra {

struct RouteLeg {
    double Distance = 0.0;        // nautical miles
    double Course = 0.0;          // degrees true; the initial course of a GC leg
    int16_t IsGreatCircle = 0;    // 0 rhumb line
};

struct Route {
    std::string Name;
    int16_t Number = 0;           // slot from 1; 0 a free slot
    std::string Description;
    int16_t PointCount = 0;
    int16_t Display = 0;          // -1 drawn
    int16_t Colour = 0;           // the 16-colour table
    bool ShowLegText = false;     // "Display Leg Dist && Brg"
    std::vector<Waypoint> Points; // 1..PointCount at [0..PointCount-1]
    std::vector<RouteLeg> Legs;   // as many as Points

    bool Used() const { return Number != 0; }
    double TotalDistance() const;
    std::vector<Waypoint>& Nodes() { return Points; }
    const std::vector<Waypoint>& Nodes() const { return Points; }
    void SyncCount() { PointCount = int16_t(Points.size()); }
};

// The whole text of a route file in the present form.
std::string RouteFileText(const std::string& versionLine, const std::string& dbName, const std::vector<Route>& routes);
// Reads a route file in any of its forms; `name` gets the header's name
// (left as it is for the oldest form). Routes read before a fault are
// kept (a route cut short is dropped). Colours outside 0..16 read as 0.
// Leg distances and courses are not computed here.
ReadOutcome ReadRouteFile(const std::string& text, std::string& name, std::vector<Route>& routes,
                          StoreForm* form = nullptr);

// Recomputes Distance and Course of leg `i` (0-based) from point i to i+1;
// the last leg is left at zero.
void ComputeLeg(Route& r, size_t i);
void ComputeLegs(Route& r);

}  // namespace ombra
