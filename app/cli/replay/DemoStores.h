// The navigation objects of the demonstration: a waypoint database, a
// route database with a route round the island that the demo passage
// (instruments/DemoPassage.h) follows, and a boundary database with a
// no-go area that the passage crosses, all named "Demo Island" and written
// by the stores' own writers into a data root.
//
// The route's points are positions of the passage itself, every 500
// seconds of it, so a replay of the passage arrives at each in turn: a
// point's arrival range is 0.3 miles, and the passage runs through the
// point. Between two points the passage bows away from the straight leg by
// less than the default cross-track alarm range (0.3 miles), and the turn
// onto the next leg at the arrival range stays inside it too.
#pragma once
#include <string>
#include <vector>

#include "core/Types.h"
#include "navobjects/Boundary.h"
#include "navobjects/Route.h"

namespace ombra {

inline constexpr const char* kDemoDatabase = "Demo Island";
inline constexpr const char* kDemoRoute = "ROUND ISLAND";

struct DemoStores {
    std::vector<Waypoint> waypoints;
    Route route;
    Boundary noGo;
    std::vector<double> pointSeconds;  // when the passage passes each route point
};

DemoStores MakeDemoStores();

// A waypoint record of a store: `slot` from 1, a name-label, the range.
Waypoint StoreWaypoint(int16_t slot, const std::string& name, const std::string& description, const LatLong& pos,
                       float alarmRange);

// A closed ring of `marks` marks about `centre`, `radius` miles, alarm on entry.
Boundary RingBoundary(int16_t slot, const std::string& name, const LatLong& centre, double radius, int marks);

// Writes the three databases into `dataRoot` (the folder holding
// Waypoint, Routes and Boundaries). A database of that name already in its
// index is left as it is. False with `why` when a file could not be written.
bool WriteDemoStores(const std::string& dataRoot, std::string& why, std::vector<std::string>* written = nullptr);

// One database in a store of `dataRoot`, unless one of that name is there.
bool WriteStoreOnce(const std::string& dataRoot, const StoreKind& kind, const std::string& name, const std::string& text,
                    std::string& why, bool* wrote = nullptr);

}  // namespace ombra
