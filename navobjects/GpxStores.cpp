#include "navobjects/GpxStores.h"

#include "core/Paths.h"
#include "navobjects/Boundary.h"
#include "navobjects/Waypoints.h"

namespace ombra {

namespace {

std::string Folder(const std::string& root, const char* name) { return WithTrailingSlash(root) + name + "\\"; }

std::string BaseName(const std::string& path) {
    size_t slash = path.find_last_of("\\/");
    std::string n = path.substr(slash == std::string::npos ? 0 : slash + 1);
    size_t dot = n.find_last_of('.');
    if (dot != std::string::npos && dot > 0) n.erase(dot);
    return n.empty() ? std::string("Imported") : n;
}

}  // namespace

bool WriteNewDatabase(const std::string& dataRoot, const StoreKind& kind, const std::string& name,
                      const std::string& fileText, DBEntry& made, std::string& why) {
    std::string folder = Folder(dataRoot, kind.folder);
    if (!MakeFolder(folder)) {
        why = "cannot make the folder " + NativePath(folder);
        return false;
    }
    std::string index = folder + "vst00000." + kind.extension;
    if (!FileExists(index) && !SaveFileAtomic(index, "", &why)) return false;
    made.Name = name;
    made.File = FirstFreeDBFileName(index);
    if (!SaveFileAtomic(folder + made.File, fileText, &why)) return false;
    if (!AppendIndex(index, made)) {
        why = "cannot write the index " + NativePath(index);
        return false;
    }
    return true;
}

bool ImportGpxFile(const std::string& gpxPath, const std::string& dataRoot, const std::string& version,
                   GpxImportResult& result, std::string& why) {
    result = GpxImportResult{};
    std::string err;
    auto bytes = ReadWholeFile(ResolvePath(gpxPath), &err);
    if (!bytes) {
        why = NativePath(gpxPath) + ": " + (err.empty() ? std::string("cannot be read") : err);
        return false;
    }
    GpxData data;
    std::string fault;
    if (!ReadGpx(*bytes, data, fault)) {
        if (data.Waypoints.empty() && data.Routes.empty() && data.Tracks.empty()) {
            why = NativePath(gpxPath) + ", " + fault;
            return false;
        }
        result.Warning = NativePath(gpxPath) + ", " + fault + "; what was read before it is imported";
    }
    result.Skipped = data.Skipped;
    const std::string base = BaseName(gpxPath);
    const std::string head = "Ver " + StoreVersionText(version);
    if (!data.Waypoints.empty()) {
        std::string index = Folder(dataRoot, kWaypointStore.folder) + "vst00000.way";
        std::string name = FreeDBName(index, base);
        DBEntry made;
        if (!WriteNewDatabase(dataRoot, kWaypointStore, name, WaypointFileText(head, name, data.Waypoints), made, why))
            return false;
        result.WaypointDb = name;
        result.Waypoints = data.Waypoints.size();
    }
    if (!data.Routes.empty()) {
        std::string index = Folder(dataRoot, kRouteStore.folder) + "vst00000.rte";
        std::string name = FreeDBName(index, base);
        DBEntry made;
        if (!WriteNewDatabase(dataRoot, kRouteStore, name, RouteFileText(head, name, data.Routes), made, why))
            return false;
        result.RouteDb = name;
        result.Routes = data.Routes.size();
    }
    std::vector<TrackSegment> segments;
    for (GpxTrack& t : data.Tracks)
        for (TrackSegment& s : t.Segments)
            if (!s.Points.empty()) {
                result.TrackPoints += s.Points.size();
                segments.push_back(std::move(s));
            }
    if (!segments.empty()) {
        std::string folder = Folder(dataRoot, "Tracks");
        if (!MakeFolder(folder)) {
            why = "cannot make the folder " + NativePath(folder);
            return false;
        }
        std::string file = folder + base + ".trk";
        for (int k = 2; FileExists(file); ++k) file = folder + base + " (" + std::to_string(k) + ").trk";
        if (!SaveFileAtomic(file, TrackFileText(StoreVersionText(version), segments), &why)) return false;
        result.TrackFile = NativePath(file);
    }
    if (result.WaypointDb.empty() && result.RouteDb.empty() && result.TrackFile.empty()) {
        why = NativePath(gpxPath) + ": no waypoints, routes or tracks";
        return false;
    }
    return true;
}

bool GatherDatabases(const std::string& dataRoot, const std::vector<std::string>& waypointDbs,
                     const std::vector<std::string>& routeDbs, GpxData& data, std::string& why) {
    auto gather = [&](const StoreKind& kind, const std::vector<std::string>& wanted, auto&& add) {
        std::string folder = Folder(dataRoot, kind.folder);
        std::vector<DBEntry> entries = ReadIndex(folder + "vst00000." + kind.extension);
        std::vector<DBEntry> chosen;
        if (wanted.empty()) {
            chosen = entries;
        } else {
            for (const std::string& n : wanted) {
                bool found = false;
                for (const DBEntry& e : entries)
                    if (e.Name == n) {
                        chosen.push_back(e);
                        found = true;
                        break;
                    }
                if (!found) {
                    why = std::string("no ") + kind.word + " database called \"" + n + "\" in " +
                          NativePath(folder + "vst00000." + kind.extension);
                    return false;
                }
            }
        }
        for (const DBEntry& e : chosen) {
            std::string err;
            auto text = ReadWholeFile(ResolvePath(folder + e.File), &err);
            if (!text) {
                why = NativePath(folder + e.File) + ": " + (err.empty() ? std::string("cannot be read") : err);
                return false;
            }
            add(*text, e);
        }
        return true;
    };
    bool ok = gather(kWaypointStore, waypointDbs, [&](const std::string& text, const DBEntry& e) {
        std::string name = e.Name;
        std::vector<Waypoint> list;
        ReadWaypointFile(text, name, list);
        for (Waypoint& w : list)
            if (w.Used()) data.Waypoints.push_back(std::move(w));
    });
    if (!ok) return false;
    return gather(kRouteStore, routeDbs, [&](const std::string& text, const DBEntry& e) {
        std::string name = e.Name;
        std::vector<Route> list;
        ReadRouteFile(text, name, list);
        for (Route& r : list)
            if (r.Used()) data.Routes.push_back(std::move(r));
    });
}

}  // namespace ombra
