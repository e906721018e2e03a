// The readers of the object stores' files, on any bytes: waypoint, route
// and boundary databases, track files, index files and the symbol strips.
// Whatever a reader keeps must write back in the present form and read
// again whole, to the same records.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "navobjects/Boundary.h"
#include "navobjects/CommonDB.h"
#include "navobjects/Route.h"
#include "navobjects/Symbols.h"
#include "navobjects/Tracks.h"
#include "navobjects/Waypoints.h"

using namespace ombra;

static void Check(bool ok) {
    if (!ok) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    {
        std::string name = "index";
        std::vector<Waypoint> slots;
        ReadWaypointFile(text, name, slots);
        std::string again = WaypointFileText("Ver 2.19", name, slots), name2;
        std::vector<Waypoint> back;
        Check(ReadWaypointFile(again, name2, back).whole);
        Check(back.size() == slots.size());
    }
    {
        std::string name = "index";
        std::vector<Route> routes;
        ReadRouteFile(text, name, routes);
        for (Route& r : routes) ComputeLegs(r);
        std::string again = RouteFileText("Ver 2.19", name, routes), name2;
        std::vector<Route> back;
        Check(ReadRouteFile(again, name2, back).whole);
        Check(back.size() == routes.size());
    }
    {
        std::string name = "index";
        std::vector<Boundary> slots;
        ReadBoundaryFile(text, name, slots);
        std::string again = BoundaryFileText("Ver 2.19", name, slots), name2;
        std::vector<Boundary> back;
        Check(ReadBoundaryFile(again, name2, back).whole);
        Check(back.size() == slots.size());
    }
    {
        std::vector<TrackSegment> track;
        ReadTrackText(text, track);
        std::vector<TrackSegment> back;
        Check(ReadTrackText(TrackFileText("2.19", track), back).whole);
        Check(back.size() == track.size());
    }
    {
        int bad = 0;
        std::vector<DBEntry> entries = ParseIndexText(text, &bad);
        std::string again;
        for (const DBEntry& e : entries) again += IndexLine(e);
        Check(ParseIndexText(again, &bad).size() == entries.size());
    }
    {
        SymbolStrips s;
        std::string why;
        s.Parse(text, &why);
        Check(s.Cell(5, true).width == 16);
    }
    return 0;
}
