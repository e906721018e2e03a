// ombra-cli gpx: waypoint, route and track exchange in GPX 1.1.
//
//   ombra-cli gpx import FILE.gpx --data DIR
//       the file's waypoints become a new waypoint database of DIR, its
//       routes a new route database (both named after the file), its
//       tracks a track file in DIR/Tracks
//   ombra-cli gpx export --data DIR --out FILE.gpx [--waypoint-db NAME]... [--route-db NAME]...
//       every waypoint and route database of DIR, or the ones named
#include <iostream>

#include "app/cli/CliCommand.h"
#include "core/Paths.h"
#include "navobjects/GpxStores.h"

namespace ombra::cli {
namespace {

constexpr const char* kVersion = "2.19";

int Usage(std::ostream& err) {
    err << "usage: ombra-cli gpx import FILE.gpx --data DIR\n"
           "       ombra-cli gpx export --data DIR --out FILE.gpx [--waypoint-db NAME]... [--route-db NAME]...\n";
    return 2;
}

int Import(const CliArgs& a, std::ostream& out, std::ostream& err) {
    std::string file, data;
    for (size_t i = 1; i < a.size(); ++i) {
        if (a[i] == "--data" && i + 1 < a.size()) data = a[++i];
        else if (file.empty() && a[i].rfind("--", 0) != 0) file = a[i];
        else return Usage(err);
    }
    if (file.empty() || data.empty()) return Usage(err);
    GpxImportResult r;
    std::string why;
    if (!ImportGpxFile(file, data, kVersion, r, why)) {
        err << "ombra-cli gpx import: " << why << "\n";
        return 1;
    }
    if (!r.Warning.empty()) err << "ombra-cli gpx import: " << r.Warning << "\n";
    if (!r.WaypointDb.empty()) out << "waypoints: " << r.Waypoints << " into database \"" << r.WaypointDb << "\"\n";
    if (!r.RouteDb.empty()) out << "routes: " << r.Routes << " into database \"" << r.RouteDb << "\"\n";
    if (!r.TrackFile.empty()) out << "track points: " << r.TrackPoints << " into " << r.TrackFile << "\n";
    if (r.Skipped) out << "skipped: " << r.Skipped << " points without a usable position\n";
    return 0;
}

int Export(const CliArgs& a, std::ostream& out, std::ostream& err) {
    std::string data, file;
    std::vector<std::string> wps, rts;
    for (size_t i = 1; i < a.size(); ++i) {
        if (i + 1 >= a.size()) return Usage(err);
        if (a[i] == "--data") data = a[++i];
        else if (a[i] == "--out") file = a[++i];
        else if (a[i] == "--waypoint-db") wps.push_back(a[++i]);
        else if (a[i] == "--route-db") rts.push_back(a[++i]);
        else return Usage(err);
    }
    if (data.empty() || file.empty()) return Usage(err);
    // Naming only route databases exports no waypoint database, and the
    // other way round; naming none exports everything.
    bool onlyRoutes = wps.empty() && !rts.empty(), onlyWaypoints = rts.empty() && !wps.empty();
    GpxData d;
    std::string why;
    if (!GatherDatabases(data, wps, rts, d, why)) {
        err << "ombra-cli gpx export: " << why << "\n";
        return 1;
    }
    if (onlyRoutes) d.Waypoints.clear();
    if (onlyWaypoints) d.Routes.clear();
    if (!SaveFileAtomic(file, WriteGpx(d), &why)) {
        err << "ombra-cli gpx export: " << NativePath(file) << ": " << why << "\n";
        return 1;
    }
    out << "waypoints: " << d.Waypoints.size() << ", routes: " << d.Routes.size() << " into " << file << "\n";
    return 0;
}

int RunGpx(const CliArgs& a, std::ostream& out, std::ostream& err) {
    if (a.empty()) return Usage(err);
    if (a[0] == "import") return Import(a, out, err);
    if (a[0] == "export") return Export(a, out, err);
    return Usage(err);
}

CliRegistration reg{{"gpx", "gpx import FILE.gpx --data DIR | gpx export --data DIR --out FILE.gpx [--waypoint-db NAME] [--route-db NAME]", RunGpx}};

}  // namespace
}  // namespace ombra::cli
