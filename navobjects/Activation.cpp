#include "navobjects/Activation.h"

#include <cmath>

#include "core/Registry.h"
#include "core/Startup.h"
#include "navmath/RLGC.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/Routes.h"
#include "navobjects/Waypoints.h"
#include "platform/api/Dialogs.h"

namespace ombra {

Activation::Activation(NavContext& ctx, Waypoints& waypoints, Routes& routes, ActiveLeg& leg)
    : ctx_(ctx), waypoints_(waypoints), routes_(routes), leg_(leg) {}

void Activation::ActiveWaypointDeleted(bool noRedraw) { DeactivateWaypoint(noRedraw); }
void Activation::ActiveRouteDeleted(bool noRedraw) { DeactivateRoute(noRedraw); }
void Activation::ActiveRangeChanged(float range) { UpdateActiveRange(range); }

std::string Activation::ShortName(const std::string& name) {
    size_t dot = name.find('.');
    return dot == std::string::npos ? name : name.substr(dot + 1);
}

void Activation::Fill(ActiveLeg& leg, const Waypoint& to, const LatLong& from, const std::string& fromName) {
    leg.To = to.Position.Wgs84;
    leg.From = from;
    leg.FromName = fromName;
    leg.AlarmRange = std::fabs(to.AlarmRange);
    leg.Armed = -1;
    leg.PassedPerpendicular = 0;
    // The vessel cycle keeps these current; they start right, so the
    // console and the NMEA burst are correct before the next fix.
    bool gc = ctx_.reg.IsTrue(Key::CoDist2);
    leg.GreatCircle = gc ? 1 : 0;
    double c = 0, d = 0;
    CourseDistance(leg.GreatCircle, from, leg.To, c, d);
    leg.LegCourse = c;
    LatLong vessel = ctx_.host.VesselPos();
    CourseDistance(leg.GreatCircle, vessel, leg.To, c, d);
    leg.BearingTo = c;
    leg.DistanceTo = d;
}

void Activation::SetActiveLeg(const ActiveLeg& leg) {
    leg_ = leg;
    ctx_.host.ActiveLegChanged();
}

bool Activation::ActivateWaypoint(int16_t index) {
    const Waypoint* wp = waypoints_.At(index);
    if (!wp || !wp->Used() || !ctx_.chart.ChartOpen() || !ctx_.host.VesselActive()) return false;
    if (!ctx_.host.ConfirmActivation()) return false;
    if (routes_.ActiveRoute != 0) DeactivateRoute(true);
    waypoints_.ActiveIndex = index;
    waypoints_.ActiveIsRoutePoint = false;
    ActiveLeg leg;
    leg.Name = wp->Name;
    leg.Kind = 1;
    Fill(leg, *wp, ctx_.host.VesselPos(), "");
    SetActiveLeg(leg);
    ctx_.chart.Redraw();
    return true;
}

void Activation::DeactivateWaypoint(bool noRedraw) {
    waypoints_.ActiveIndex = 0;
    waypoints_.ActiveIsRoutePoint = false;
    SetActiveLeg(ActiveLeg{});
    if (!noRedraw) ctx_.chart.Redraw();
}

bool Activation::ActivateRoute(int16_t route, int16_t point) {
    Route* r = routes_.At(route);
    if (!r || !r->Used() || r->Points.empty()) return false;
    if (!ctx_.host.VesselActive()) {
        ctx_.dialogs.MsgBox("You have no active vessel. Routes cannot be activated.", mb::Exclamation,
                            ctx_.globals.ProductName);
        return false;
    }
    if (!ctx_.host.ConfirmActivation()) return false;
    if (waypoints_.ActiveIndex != 0) DeactivateWaypoint(true);
    if (point < 1 || point > int16_t(r->Points.size())) point = 1;
    routes_.ActiveRoute = route;
    routes_.ActivePoint = point;
    const Waypoint& to = r->Points[size_t(point - 1)];
    ActiveLeg leg;
    leg.Name = ShortName(to.Name);
    leg.Kind = 2;
    Fill(leg, to, ctx_.host.VesselPos(), "");
    SetActiveLeg(leg);
    ctx_.chart.Redraw();
    return true;
}

void Activation::DeactivateRoute(bool noRedraw) {
    routes_.ActiveRoute = 0;
    routes_.ActivePoint = 0;
    SetActiveLeg(ActiveLeg{});
    if (!noRedraw) ctx_.chart.Redraw();
}

bool Activation::NextPointExists() const {
    const Route* r = routes_.ActiveRoute ? routes_.At(routes_.ActiveRoute) : nullptr;
    return r && routes_.ActivePoint < int16_t(r->Points.size());
}

bool Activation::NextRoutePoint() {
    if (!NextPointExists()) return false;
    Route& r = *routes_.At(routes_.ActiveRoute);
    const Waypoint& from = r.Points[size_t(routes_.ActivePoint - 1)];
    ++routes_.ActivePoint;
    const Waypoint& to = r.Points[size_t(routes_.ActivePoint - 1)];
    ActiveLeg leg = leg_;
    leg.Name = ShortName(to.Name);
    leg.Kind = 2;
    Fill(leg, to, from.Position.Wgs84, ShortName(from.Name));
    SetActiveLeg(leg);
    ctx_.chart.Redraw();
    return true;
}

void Activation::UpdateActiveRange(float range) {
    if (leg_.Kind == 0) return;
    leg_.AlarmRange = std::fabs(range);
    ctx_.host.ActiveLegChanged();
}

void Activation::DeactivateAll(bool noRedraw) {
    if (waypoints_.ActiveIndex) DeactivateWaypoint(true);
    if (routes_.ActiveRoute) DeactivateRoute(true);
    if (!noRedraw) ctx_.chart.Redraw();
}

}  // namespace ombra
