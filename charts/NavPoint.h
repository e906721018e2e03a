// NavPoint: a position prepared for the chart in view.
//
// Every object drawn on the chart (waypoints, route points, boundary marks,
// the ends of dividers and vectors, the vessel) keeps its position in this
// form, so that a redraw costs no projection: the WGS84 position, the same
// place in the chart's own datum, and for each plan of the open chart
// whether the point is shown on that plan and its full-resolution chart
// pixel there. A point lies on one plan only, the most detailed that holds
// it (later plans lie over earlier ones).
//
// The cache is stale whenever another chart opens: Display::LocatePosition
// fills it again (Display calls the registered preparers after each open).
//
//   NavPoint p = display.LocatePosition(LatLong{-12 * 3600.0, 50 * 3600.0});
//   if (p.InPlan.size() > 1 && p.InPlan[1]) draw at p.Pixel[1] ...
#pragma once
#include <cstdint>
#include <vector>

#include "core/Types.h"

namespace ombra {

struct NavPoint {
    LatLong Wgs84;
    LatLong Local;                  // the chart's datum
    std::vector<int16_t> InPlan;    // 0 .. PlanCount; -1 true, 0 false
    std::vector<ChartPoint> Pixel;  // 0 .. PlanCount
    bool In(size_t plan) const { return plan < InPlan.size() && InPlan[plan] != 0; }
    // The first plan that shows the point, or -1.
    int FirstPlanShown() const {
        for (size_t i = 0; i < InPlan.size(); ++i)
            if (InPlan[i]) return int(i);
        return -1;
    }
};

}  // namespace ombra
