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
    // Built before the stores it watches, so that they can report to it.
    Activation activation;
    Waypoints waypoints;
    Routes routes;
    Boundaries boundaries;
    Tracks tracks;
    Dividers dividers;
    Vectors vectors;
    MouseTools tools;

    // At start-up, with the other modules' settings: the boundary store,
    // tracks, the route store.
    void LoadNavObjects();
    // At start-up, after the vessel's settings: the symbol strips
    // ("dat\WPSymbols.txt" of the install, the built-in ones when it is
    // missing or damaged) and the waypoint store.
    void LoadWaypoints();
    // At start-up for a route named on the command line, before the
    // disclaimer: the route database holding a route of that name
    // (upper case, as the command line gives it) is opened and the route
    // selected; a waypoint database of the same name is opened too.
    bool SelectCommandRoute(const std::string& route);
    // At start-up for a route, the last thing once the main timer runs:
    // the selected route activated.
    bool ActivateCommandRoute(const std::string& route);
    // On exit, the current tool ends first; the stores close after the GPS
    // stops.
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
