#include "navobjects/NavObjects.h"

#include "core/Paths.h"
#include "core/Startup.h"
#include "core/Val.h"
#include "navobjects/NavHost.h"

namespace ombra {

NavObjects::NavObjects(NavContext& c, ActiveLeg& leg)
    : ctx(c),
      activation(c, waypoints, routes, leg),
      waypoints(c, symbols, &activation),
      routes(c, symbols, &activation),
      boundaries(c, symbols),
      tracks(c),
      dividers(c),
      vectors(c),
      tools(c, waypoints, routes, boundaries, dividers, vectors, activation) {
}

void NavObjects::LoadNavObjects() {
    boundaries.InitBoundaries();
    tracks.InitTracks();
    routes.InitRoutesData();
}

void NavObjects::LoadWaypoints() {
    std::string dat = ctx.globals.AppDatPath.empty() ? WithTrailingSlash(ctx.globals.AppPath) + "dat\\"
                                                     : WithTrailingSlash(ctx.globals.AppDatPath);
    SymbolFileProblem.clear();
    std::string why;
    if (!symbols.Load(dat + "WPSymbols.txt", &why)) SymbolFileProblem = NativePath(dat + "WPSymbols.txt") + ": " + why;
    waypoints.InitWayPointData();
}

bool NavObjects::SelectCommandRoute(const std::string& route) {
    if (route.empty()) return false;
    for (const DBEntry& e : ReadIndex(routes.IndexPath)) {
        auto text = ReadWholeFile(ResolvePath(routes.Folder + e.File));
        if (!text) continue;
        std::string name = e.Name;
        std::vector<Route> list;
        ReadRouteFile(*text, name, list);
        for (size_t i = 0; i < list.size(); ++i) {
            if (!list[i].Used() || UCase(list[i].Name) != UCase(route)) continue;
            routes.SaveDB();
            routes.ClearAll();
            routes.CurrentName = e.Name;
            routes.CurrentFile = e.File;
            routes.OpenDB();
            routes.SelectedRoute = int16_t(i + 1);
            for (const DBEntry& w : ReadIndex(waypoints.IndexPath))
                if (w.Name == e.Name) {
                    waypoints.SaveDB();
                    waypoints.ClearAll();
                    waypoints.CurrentName = w.Name;
                    waypoints.CurrentFile = w.File;
                    waypoints.OpenDB();
                    break;
                }
            ctx.host.MenuCaptionsChanged();
            return true;
        }
    }
    return false;
}

bool NavObjects::ActivateCommandRoute(const std::string& route) {
    const Route* r = routes.At(routes.SelectedRoute);
    if (!r || UCase(r->Name) != UCase(route)) return false;
    if (!activation.ActivateRoute(routes.SelectedRoute, 0)) return false;
    ctx.host.ShowRouteProperties(routes.SelectedRoute);
    return true;
}

void NavObjects::CloseStores() {
    waypoints.CloseDB();
    routes.CloseDB();
    boundaries.CloseDB();
}

void NavObjects::PrepareNavPoints() {
    waypoints.PrepareNavPoints();
    routes.PrepareNavPoints();
    boundaries.PrepareNavPoints();
    tracks.PrepareTrackPoints();
    dividers.PrepareNavPoints();
    vectors.PrepareNavPoints();
}

void NavObjects::DrawDividerLayer(Canvas& c) {
    dividers.DrawDividers(c);
    vectors.DrawVectors(c, tools.VectorsRestricted());
}

}  // namespace ombra
