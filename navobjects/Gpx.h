// GPX: waypoints, routes and tracks exchanged with other navigation
// programs and with GPS sets, in GPX 1.1 (the Topografix schema), read and
// written with libxml2.
//
// What maps to what:
//   <wpt lat lon>           a Waypoint: <name>, <desc> (or <cmt> when there
//                           is no <desc>), <sym> as a symbol name of the
//                           table ("Anchorage"; a few common names of other
//                           programs too, "Anchor", "Shipwreck"; unknown
//                           names give symbol 0)
//   <rte>                   a Route: <name>, <desc>, <number>, its <rtept>s
//                           as route points
//   <trk>/<trkseg>/<trkpt>  track segments
// What GPX has no element for (label mode, arrival range, attachment, leg
// flags, route colour and display) travels in <extensions> under Ombra's
// own namespace, which other programs ignore:
//   <extensions><ombra:label>3</ombra:label><ombra:range>-0.25</ombra:range></extensions>
//
// Positions are WGS84 degrees in the file, seconds of arc inside (x 3600);
// they are written in fixed notation with 12 decimals (the schema's decimal
// type has no exponent), so a position comes back within 1e-8 seconds of
// arc. A longitude of exactly 180 degrees is written as -180 (the schema
// excludes +180).
//
// Reading survives any input: the parse never reaches the network and
// expands no external entity; a malformed file keeps what could be read
// before the fault and says where (the line); points without a usable
// position are skipped and counted. Names and descriptions are UTF-8; a
// line break inside one becomes a blank, since the store files hold one
// record a line.
//
//   GpxData d;  std::string why;
//   ReadGpx(bytes, d, why);           // false: `why` names the line
//   std::string out = WriteGpx(d);    // validates against gpx.xsd
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "navobjects/Route.h"
#include "navobjects/Tracks.h"
#include "navobjects/Waypoint.h"

namespace ombra {

struct GpxTrack {
    std::string Name;
    std::vector<TrackSegment> Segments;
};

struct GpxData {
    std::vector<Waypoint> Waypoints;  // Number is the place in the file, from 1
    std::vector<Route> Routes;        // Number from <number>, else the place
    std::vector<GpxTrack> Tracks;
    int Skipped = 0;                  // points without a usable position
};

// The namespace of Ombra's extension elements.
extern const char* const kOmbraGpxNamespace;

// Reads GPX 1.1 (and 1.0). False when the file is not whole XML or not
// GPX: `why` names the line; whatever was read before the fault stays in
// `out`.
bool ReadGpx(const std::string& bytes, GpxData& out, std::string& why);
std::string WriteGpx(const GpxData& data);

// The symbol index of a GPX <sym> text; -1 when unknown.
int16_t SymbolFromGpx(const std::string& sym);

// A name or description made fit for a store line and for XML: invalid
// UTF-8 becomes U+FFFD, control characters and line breaks blanks.
std::string CleanText(const std::string& text);

}  // namespace ombra
