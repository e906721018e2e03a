// NavObjects: the whole navigation-object subsystem as one object for the
// Plotter context to own: the three stores, the symbols, tracks, dividers
// and vectors, activation and the mouse tools, wired to one another.
//
//   NavObjects nav(ctx, instruments.leg);
//   nav.LoadNavObjects();       // start-up step "Nav Objects"
//   nav.LoadWaypoints();        // start-up step "ToolTips"
//   RegisterNavLayers(display, nav);   // DisplayChart.h
//   ...
//   nav.EndCurrentTool();  nav.CloseStores();   // exit sequence
#pragma once
#include <string>

#include "instruments/ActiveLeg.h"
#include "navobjects/Activation.h"
#include "navobjects/Boundaries.h"
#include "navobjects/Dividers.h"
#include "navobjects/MouseTools.h"
#include "navobjects/Routes.h"
#include "navobjects/Symbols.h"
#include "navobjects/Tracks.h"
#include "navobjects/Waypoints.h"

namespace ombra {

class NavObjects {
public:
    NavObjects(NavContext& ctx, ActiveLeg& leg);

    NavContext& ctx;
    SymbolStrips symbols;
    Waypoints waypoints;
    Routes routes;
    Boundaries boundaries;
    Tracks tracks;
    Dividers dividers;
    Vectors vectors;
    Activation activation;
    MouseTools tools;

    // Start-up, step 5.5: the boundary store, tracks, the route store.
    void LoadNavObjects();
    // Start-up, step 5.7: the symbol strips ("dat\WPSymbols.txt" of the
    // install, the built-in ones when it is missing or damaged) and the
    // waypoint store.
    void LoadWaypoints();
    // Start-up, step 13: the route database holding a route of that name
    // (upper case, as the command line gives it) is opened and the route
    // selected; a waypoint database of the same name is opened too.
    bool SelectCommandRoute(const std::string& route);
    // Start-up, step 18: the selected route activated.
    bool ActivateCommandRoute(const std::string& route);
    // Exit, step 1 and 3.
    void EndCurrentTool() { tools.End(); }
    void CloseStores();

    // After a chart opens: every NavPoint prepared again.
    void PrepareNavPoints();
    // The chart layers.
    void DrawWaypointLayer(Canvas& c) { waypoints.DrawWayPoints(c); }
    void DrawRouteLayer(Canvas& c) { routes.DrawRoutes(c); }
    void DrawBoundaryLayer(Canvas& c) { boundaries.DrawBoundaries(c); }
    void DrawDividerLayer(Canvas& c);
    void DrawTrackLayer(Canvas& c) { tracks.DrawTracks(c); }

    // Why the shipped symbol file was not used ("" when it was).
    std::string SymbolFileProblem;
};

}  // namespace ombra
