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

// What a store reader keeps from `text`, written back in the present form,
// must read again whole to as many records.
template <class Record, class Read, class Write>
static void RoundTrip(const std::string& text, Read read, Write write) {
    std::string name = "index", name2;
    std::vector<Record> kept, back;
    read(text, name, kept);
    Check(read(write("Ver 2.19", name, kept), name2, back).whole);
    Check(back.size() == kept.size());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    RoundTrip<Waypoint>(text, ReadWaypointFile, WaypointFileText);
    RoundTrip<Route>(
        text,
        [](const std::string& t, std::string& n, std::vector<Route>& v) {
            ReadOutcome o = ReadRouteFile(t, n, v);
            for (Route& r : v) ComputeLegs(r);
            return o;
        },
        RouteFileText);
    RoundTrip<Boundary>(
        text, [](const std::string& t, std::string& n, std::vector<Boundary>& v) { return ReadBoundaryFile(t, n, v); },
        BoundaryFileText);
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
