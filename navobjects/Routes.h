// Routes: the open route database and the editing of its routes.
//
// A route is made by NewRoute (a name, then points placed with the route
// tool until the tool ends; a route left without points is removed).
// Points are added at the end, inserted into a leg, deleted, moved;
// a route is reversed, hidden or shown, deleted. Generated point names
// follow their index: "R3.WP12" is point 12 of route 3, and keeps up with
// its index when points are inserted or deleted before it; a typed name
// stays as typed. Every change recomputes the legs it touches.
//
// The destination (ActiveRoute, ActivePoint) is guarded: its point cannot
// be deleted or moved until it is de-activated.
//
// Routes are drawn in their colour, RL legs through the chart's rhumb-line
// routine and GC legs through its great-circle routine (label " GC"), then
// their points like waypoints, first to last.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "navobjects/ActivePointWatch.h"
#include "navobjects/PointChain.h"
#include "navobjects/Route.h"
#include "navobjects/Waypoints.h"

namespace ombra {

class Canvas;
class SymbolStrips;

struct RoutePointRow {
    std::string No, Name, Display, Active, Latitude, Longitude;
};
struct RouteLegRow {
    std::string Leg, Kind, Bearing, Range;
};
struct RouteRow {
    int16_t Slot = 0;
    std::string No, Name, Display, Active;
};

class Routes : public PointChainStore<Route> {
public:
    // `watch` hears of edits to the active route; none in a tool.
    Routes(NavContext& ctx, const SymbolStrips& symbols, ActivePointWatch* watch = nullptr);

    int16_t& SelectedRoute = selChain_;
    int16_t& SelectedPoint = selPoint_;
    int16_t& SelectedLeg = selPart_;
    int16_t ActiveRoute = 0, ActivePoint = 0;

    Waypoint* PointAt(int16_t route, int16_t point) { return NodeAt(route, point); }

    void InitRoutesData() { InitData(); }
    void OpenRouteDB() { OpenDB(); }
    bool SaveRouteDB() { return SaveDB(); }
    void CloseRouteDB() { CloseDB(); }
    void NewRouteDB() { NewDB(); }
    bool SelectRouteDB() { return SelectDB(); }
    void DeleteRouteDB() { DeleteDB(); }
    void ImportRouteDB() { ImportDB(); }
    void ExportRouteDB() { ExportDB(); }

    // A new route in the first free slot, named through the input box;
    // 0 when none was made. The route tool then places its points.
    int16_t NewRoute() { return NewChain(); }
    // The route tool ended: a route without points is removed.
    void EndNewRoute(int16_t route);
    // A point at the end: by mouse at `pos`; by keyboard or GPS through the
    // dialog ("New Routepoint", "Route:"), which opens at KeyboardStart or
    // at the vessel (by GPS, refused while no vessel is active). The new
    // point's index, or 0.
    int16_t AddRoutePoint(int16_t route, const LatLong& pos) { return AppendNode(route, pos); }
    int16_t AddRoutePointBy(int16_t route, AddBy how);
    // A point inserted into leg `leg` (between points leg and leg + 1).
    int16_t InsertRoutePoint(int16_t route, int16_t leg, const LatLong& pos) { return InsertIntoPart(route, leg, pos); }
    bool DeleteRoutePoint(int16_t route, int16_t point) { return DeleteNode(route, point); }
    bool MoveRoutePoint(int16_t route, int16_t point) { return MoveNode(route, point); }
    void DropRoutePoint(int16_t route, int16_t point, const LatLong& pos) { DropNode(route, point, pos); }
    bool EditRoutePoint(int16_t route, int16_t point) { return EditNode(route, point); }
    // After the confirmation "Confirm deletion of route.".
    bool DeleteRoute(int16_t route) { return DeleteChain(route); }
    // Removes a route's slot without asking.
    void RemoveRoute(int16_t route) { RemoveChain(route); }
    void ReverseRoute(int16_t route);
    // "&Hide" / "&Display".
    void DisplayRoute(int16_t route) { ToggleDisplay(route); }
    // The RL/GC cell of FrmRoute's leg list.
    void SwapLegKind(int16_t route, int16_t leg);

    void DrawRoutes(Canvas& c);
    void CentreOnRoute() { CentreOnChain(); }

    std::vector<RouteRow> Rows() const;
    std::vector<RoutePointRow> PointRows(int16_t route, bool chartDatum) const;
    std::vector<RouteLegRow> LegRows(int16_t route);

    // The name a point of `route` gets at `index`: "R3.WP12".
    static std::string PointName(int16_t route, int16_t index);


protected:
    void ClearRecords() override;
    std::string Serialise() override;
    ReadOutcome Parse(const std::string& text) override;
    const char* RecordWord() const override { return "routes"; }

    void Loaded(Route& r) override { ComputeLegs(r); }
    void PointInserted(int16_t route, Route& r, size_t at, bool appended) override;
    void PointErased(int16_t route, Route& r, size_t at) override;
    void PointMoved(Route& r, size_t at) override;
    bool MayDeletePoint(int16_t route, int16_t point) override;
    bool MayMovePoint(int16_t route, int16_t point) override;
    void ChainGoing(int16_t route) override;
    std::string EditCaption(int16_t) const override { return "Edit Way Point"; }
    void PointEdited(int16_t route, int16_t point, const Waypoint& p) override;

private:
    int16_t DefaultLegFlag() const;
    bool IsActivePoint(int16_t route, int16_t point) const;
    ActivePointWatch* watch_;
};

}  // namespace ombra
