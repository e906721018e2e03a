// Activation: the one destination the vessel steers to, a waypoint or a
// point of a route, and the shared ActiveLeg record that says so.
//
// The record (instruments/ActiveLeg.h) is read by the vessel cycle, the
// console, the NMEA output and the alarms; only this module and the
// console's refresh write it. States: none (Kind 0), waypoint (Kind 1),
// route point (Kind 2); nothing of it is saved.
//
// Activating a waypoint needs a chart and an active vessel (without either
// nothing happens); it drops an active route first. The leg starts at the
// vessel, with no FromName. Activating a route (or one of its points, by
// hand) needs an active vessel ("You have no active vessel. Routes cannot
// be activated."), drops an active waypoint without a redraw, and starts
// its first leg from the vessel too. Either asks the host first
// (ConfirmActivation: the autopilot warning) and a refusal changes nothing;
// moving on along the route does not ask. The name is the point's without its
// route prefix: "R3.WP12" steers to "WP12".
//
// NextRoutePoint moves along the route: the new leg runs from the point
// just reached to the next, so the cross-track error is measured against
// the planned track, not from wherever the vessel was.
//
//   act.ActivateRoute(2, 0);     // route 2 from its first point
//   act.NextRoutePoint();        // leg WP1 -> WP2
//   act.DeactivateRoute(false);  // Kind 0, chart redrawn
#pragma once
#include <cstdint>
#include <string>

#include "instruments/ActiveLeg.h"
#include "navobjects/ActivePointWatch.h"
#include "navobjects/NavStore.h"

namespace ombra {

class Waypoints;
class Routes;
struct Waypoint;

class Activation : public ActivePointWatch {
public:
    Activation(NavContext& ctx, Waypoints& waypoints, Routes& routes, ActiveLeg& leg);

    // What the stores report of the active point (ActivePointWatch).
    void ActiveWaypointDeleted(bool noRedraw) override;
    void ActiveRouteDeleted(bool noRedraw) override;
    void ActiveRangeChanged(float range) override;

    bool ActivateWaypoint(int16_t index);
    void DeactivateWaypoint(bool noRedraw);
    // `point` 0 takes the route's first point.
    bool ActivateRoute(int16_t route, int16_t point);
    void DeactivateRoute(bool noRedraw);
    bool NextRoutePoint();
    bool NextPointExists() const;
    // Stores the record and has the console refreshed.
    void SetActiveLeg(const ActiveLeg& leg);
    // An edited range of the destination, at once.
    void UpdateActiveRange(float range);
    // Whatever is active, dropped (the man-overboard start, the exit).
    void DeactivateAll(bool noRedraw);

    const ActiveLeg& Leg() const { return leg_; }

    // "R3.WP12" -> "WP12"; a name without "." stays.
    static std::string ShortName(const std::string& name);

private:
    void Fill(ActiveLeg& leg, const Waypoint& to, const LatLong& from, const std::string& fromName);
    NavContext& ctx_;
    Waypoints& waypoints_;
    Routes& routes_;
    ActiveLeg& leg_;
};

}  // namespace ombra
