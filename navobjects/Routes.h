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

#include "navobjects/NavStore.h"
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

class Routes : public NavStore {
public:
    Routes(NavContext& ctx, const SymbolStrips& symbols);

    std::vector<Route> List;
    int16_t SelectedRoute = 0, SelectedPoint = 0, SelectedLeg = 0;
    int16_t ActiveRoute = 0, ActivePoint = 0;

    int16_t Count() const { return int16_t(List.size()); }
    Route* At(int16_t slot);
    Waypoint* PointAt(int16_t route, int16_t point);

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
    int16_t NewRoute();
    // The route tool ended: a route without points is removed.
    void EndNewRoute(int16_t route);
    // A point at the end: by mouse at `pos`; by keyboard or GPS through the
    // dialog ("New Routepoint", "Route:"). The new point's index, or 0.
    int16_t AddRoutePoint(int16_t route, const LatLong& pos);
    int16_t AddRoutePointBy(int16_t route, AddBy how);
    // A point inserted into leg `leg` (between points leg and leg + 1).
    int16_t InsertRoutePoint(int16_t route, int16_t leg, const LatLong& pos);
    bool DeleteRoutePoint(int16_t route, int16_t point);
    bool MoveRoutePoint(int16_t route, int16_t point);
    void DropRoutePoint(int16_t route, int16_t point, const LatLong& pos);
    bool EditRoutePoint(int16_t route, int16_t point);
    // After the confirmation "Confirm deletion of route.".
    bool DeleteRoute(int16_t route);
    // Removes a route's slot without asking.
    void RemoveRoute(int16_t route);
    void ReverseRoute(int16_t route);
    // "&Hide" / "&Display".
    void DisplayRoute(int16_t route);
    // The RL/GC cell of FrmRoute's leg list.
    void SwapLegKind(int16_t route, int16_t leg);

    void DrawRoutes(Canvas& c);
    void PrepareNavPoints();
    void CentreOnRoute();
    std::vector<std::string> CentreOnItems(std::vector<int16_t>* slots = nullptr) const;

    std::vector<RouteRow> Rows() const;
    std::vector<RoutePointRow> PointRows(int16_t route, bool chartDatum) const;
    std::vector<RouteLegRow> LegRows(int16_t route);

    // The name a point of `route` gets at `index`: "R3.WP12".
    static std::string PointName(int16_t route, int16_t index);

    std::function<void(bool noRedraw)> OnDeactivate;
    std::function<void(float range)> OnActiveRange;
    std::function<LatLong()> VesselPosition;

protected:
    void ClearRecords() override;
    std::string Serialise() override;
    ReadOutcome Parse(const std::string& text) override;
    void AfterLoad() override;
    int RecordCount() const override;
    const char* RecordWord() const override { return "routes"; }

private:
    Waypoint NewPoint(int16_t route, int16_t index) const;
    int16_t DefaultLegFlag() const;
    void Renumber(Route& r, size_t from, int shift);
    void Changed();
    bool IsActivePoint(int16_t route, int16_t point) const;
    const SymbolStrips& symbols_;
};

}  // namespace ombra
