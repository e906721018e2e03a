// GPX and the stores on disk: a GPX file made into new databases of a
// user data root, and the databases of a root gathered into one GPX file.
// The command line (ombra-cli gpx) and the menus of the stores use these.
//
// Import: the file's waypoints become a new waypoint database, its routes
// a new route database, both named after the file ("Solent.gpx" gives
// "Solent", or "Solent (2)" when that name is taken), and its tracks one
// track file, "<root>/Tracks/Solent.trk" (segments kept, tracks one after
// another). Nothing is written for a kind the file does not hold. Every
// file is written atomically and only then entered in its index.
//
// Export: every database of the root, or the ones named, in index order:
// waypoints as <wpt>, routes as <rte>.
#pragma once
#include <string>
#include <vector>

#include "navobjects/CommonDB.h"
#include "navobjects/Gpx.h"

namespace ombra {

struct GpxImportResult {
    std::string WaypointDb, RouteDb, TrackFile;  // what was made; "" none
    size_t Waypoints = 0, Routes = 0, TrackPoints = 0;
    int Skipped = 0;
    std::string Warning;  // a damaged file: what was kept, and where it stopped
};

// `dataRoot` is the user data root (holding Waypoint, Routes, Tracks);
// `version` the program's version for the file headers. False with `why`
// when nothing could be imported.
bool ImportGpxFile(const std::string& gpxPath, const std::string& dataRoot, const std::string& version,
                   GpxImportResult& result, std::string& why);

// Gathers the named databases (all when the lists are empty) into `data`.
// False with `why` naming a database that is not in its index, or a file
// that cannot be read.
bool GatherDatabases(const std::string& dataRoot, const std::vector<std::string>& waypointDbs,
                     const std::vector<std::string>& routeDbs, GpxData& data, std::string& why);

// A new database written into a store folder: the file first, then its
// index line. `kind` gives the folder and extension.
bool WriteNewDatabase(const std::string& dataRoot, const StoreKind& kind, const std::string& name,
                      const std::string& fileText, DBEntry& made, std::string& why);

}  // namespace ombra
