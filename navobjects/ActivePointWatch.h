// ActivePointWatch: what the waypoint and route stores tell the activation
// about the point the vessel is steering to.
//
// The stores edit and delete records; the activation (Activation) owns the
// ActiveLeg that steers to one of them. When the navigator deletes the
// active waypoint or the active route, the activation ends first; when the
// active point's arrival range is edited, the leg takes the new range at
// once. A store built without a watch (a tool that only reads or converts
// files) has no active point to report.
#pragma once

namespace ombra {

class ActivePointWatch {
public:
    virtual ~ActivePointWatch() = default;
    // The active waypoint, or a point of the active route, or the active
    // route itself, is about to be deleted, or its database closed. `noRedraw` is true when the
    // caller redraws the chart itself afterwards.
    virtual void ActiveWaypointDeleted(bool noRedraw) = 0;
    virtual void ActiveRouteDeleted(bool noRedraw) = 0;
    // The active point's arrival range was edited: nautical miles, >= 0.
    virtual void ActiveRangeChanged(float range) = 0;
};

}  // namespace ombra
