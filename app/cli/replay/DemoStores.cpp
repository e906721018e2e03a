#include "app/cli/replay/DemoStores.h"

#include <cmath>

#include "core/Format.h"
#include "core/Paths.h"
#include "instruments/DemoPassage.h"
#include "navmath/RLGC.h"
#include "navobjects/CommonDB.h"
#include "navobjects/GpxStores.h"
#include "charts/DemoChart.h"
#include "navobjects/Waypoints.h"

namespace ombra {

namespace {

constexpr const char* kStoreVersion = "Ver 2.19";
constexpr int kPointEvery = 500;  // seconds of the passage between route points
constexpr float kArrivalRange = -0.3f;  // three cables, ring drawn

const char* const kPointNotes[] = {
    "West of the harbour approach", "South-west of the island", "Off the west cliffs",  "West of the island",
    "North-west point",             "North of the island",      "North-east point",     "Off the east shore",
    "East of the island",           "East of the harbour",      "South-east of the island", "Back at the start",
};
}  // namespace

Waypoint StoreWaypoint(int16_t slot, const std::string& name, const std::string& description, const LatLong& pos,
                       float alarmRange) {
    Waypoint w;
    w.Name = name;
    w.Number = slot;
    w.Description = description;
    w.Position.Wgs84 = pos;
    w.Icon = 1;
    w.LabelMode = 1;
    w.AlarmRange = alarmRange;
    w.DatumFlag = 1;
    return w;
}

Boundary RingBoundary(int16_t slot, const std::string& name, const LatLong& centre, double radius, int marks) {
    Boundary b;
    b.Name = name;
    b.Number = slot;
    b.Display = -1;
    b.Filled = -1;
    b.AlarmOnExit = 0;
    b.Colour = 12;
    b.Pattern = 5;
    for (int i = 0; i < marks; ++i) {
        LatLong p = DeadReckon(centre, 360.0 * i / marks, radius, 3600.0);
        b.Marks.push_back(StoreWaypoint(int16_t(i + 1), "B" + std::to_string(slot) + ".BM" + std::to_string(i + 1), "", p, 0.0f));
    }
    b.SyncCount();
    return b;
}

DemoStores MakeDemoStores() {
    DemoStores d;
    d.route.Name = kDemoRoute;
    d.route.Number = 1;
    d.route.Description = "Clockwise round the island, 4 miles off";
    d.route.Display = -1;
    d.route.Colour = 9;
    d.route.ShowLegText = true;
    const int lap = DemoPassageSeconds();
    int16_t n = 0;
    for (int t = kPointEvery; t < lap; t += kPointEvery) {
        ++n;
        const LatLong p = DemoPassagePosition(t);
        const std::string id = "WP" + Format(n, "000");
        const char* note = size_t(n) <= std::size(kPointNotes) ? kPointNotes[n - 1] : "";
        d.route.Points.push_back(StoreWaypoint(n, "R1." + id, note, p, kArrivalRange));
        d.route.Legs.push_back(RouteLeg{});
        d.pointSeconds.push_back(t);
    }
    d.route.SyncCount();
    ComputeLegs(d.route);
    // A firing range across the passage between the sixth and seventh points,
    // a diamond two miles across: entering it raises the boundary alarm.
    const LatLong centre = DemoPassagePosition(3300);
    Boundary b = RingBoundary(1, "FIRING RANGE", centre, 0.75 * std::sqrt(2.0), 4);
    b.Description = "No entry while the range flags fly";
    d.noGo = b;
    // The waypoints are marks of their own, apart from the route's points,
    // so that no two labels are written over each other: the island's summit
    // and the middle of the firing range to keep clear of.
    d.waypoints.push_back(StoreWaypoint(1, "ISLAND", "Summit of the island", DemoChart::IslandCentre(), kArrivalRange));
    d.waypoints.push_back(StoreWaypoint(2, "RANGE", "Firing range, keep clear", centre, kArrivalRange));
    return d;
}

bool WriteStoreOnce(const std::string& dataRoot, const StoreKind& kind, const std::string& name, const std::string& text,
                    std::string& why, bool* wrote) {
    if (wrote) *wrote = false;
    const std::string index = WithTrailingSlash(dataRoot) + kind.folder + "\\vst00000." + kind.extension;
    for (const DBEntry& e : ReadIndex(index))
        if (e.Name == name) return true;
    DBEntry made;
    if (!WriteNewDatabase(dataRoot, kind, name, text, made, why)) return false;
    if (wrote) *wrote = true;
    return true;
}

bool WriteDemoStores(const std::string& dataRoot, std::string& why, std::vector<std::string>* written) {
    const DemoStores d = MakeDemoStores();
    struct Item {
        const StoreKind& kind;
        std::string text;
    };
    const Item items[] = {
        {kWaypointStore, WaypointFileText(kStoreVersion, kDemoDatabase, d.waypoints)},
        {kRouteStore, RouteFileText(kStoreVersion, kDemoDatabase, {d.route})},
        {kBoundaryStore, BoundaryFileText(kStoreVersion, kDemoDatabase, {d.noGo})},
    };
    for (const Item& it : items) {
        bool wrote = false;
        if (!WriteStoreOnce(dataRoot, it.kind, kDemoDatabase, it.text, why, &wrote)) return false;
        if (wrote && written) written->push_back(std::string(it.kind.word) + " database \"" + kDemoDatabase + "\"");
    }
    return true;
}

}  // namespace ombra
