#include "plotter/DisplayChart.h"

namespace ombra {

void DisplayChart::PrepareNavPoint(NavPoint& p) {
    if (!state_.IsOpen()) {
        p.InPlan.clear();
        p.Pixel.clear();
        return;
    }
    LatLong wgs = p.Wgs84;
    p = display_.LocatePosition(wgs);
    p.Wgs84 = wgs;
}

int16_t DisplayChart::PanelCount() { return state_.IsOpen() ? int16_t(state_.Header.PlanCount + 1) : int16_t(0); }

double DisplayChart::ScreenPixelsPerNM(int16_t panel) {
    double factor = display_.ViewFactor();
    if (factor <= 0.0) return 0.0;
    return double(lib_.GetPixelsPerNM(panel)) / factor;
}

bool DisplayChart::HitLeg(const NavPoint& from, const NavPoint& to, bool greatCircle, ChartPoint screen,
                          float tolerance) {
    if (!state_.IsOpen()) return false;
    ChartPoint pixel = display_.ScreenToChart(screen);
    float chartTolerance = tolerance * display_.ViewFactor();
    for (int16_t plan = 0; plan < PanelCount(); ++plan) {
        bool hit = false;
        if (greatCircle) legs_.HitGreatCircle(hit, plan, from, to, pixel, chartTolerance);
        else legs_.HitRhumbLine(hit, plan, from, to, pixel, chartTolerance);
        if (hit) return true;
    }
    return false;
}

void DisplayChart::CentreOn(const LatLong& wgs84) {
    if (state_.IsOpen() && display_.CentreOnPosition(wgs84)) return;
    if (chart_) chart_->OpenChartAt(wgs84.Lat, wgs84.Long);
}

void DisplayChart::Redraw() {
    display_.RequestRedraw();
}

}  // namespace ombra

#include "navobjects/NavObjects.h"

namespace ombra {

void RegisterNavLayers(Display& display, NavObjects& nav) {
    display.RegisterLayer(Layer::Waypoints, [&nav](Canvas& c, const ChartViewState&) { nav.DrawWaypointLayer(c); });
    display.RegisterLayer(Layer::Routes, [&nav](Canvas& c, const ChartViewState&) { nav.DrawRouteLayer(c); });
    display.RegisterLayer(Layer::Boundaries, [&nav](Canvas& c, const ChartViewState&) { nav.DrawBoundaryLayer(c); });
    display.RegisterLayer(Layer::Dividers, [&nav](Canvas& c, const ChartViewState&) { nav.DrawDividerLayer(c); });
    display.RegisterLayer(Layer::Tracks, [&nav](Canvas& c, const ChartViewState&) { nav.DrawTrackLayer(c); });
    display.RegisterPreparer([&nav] { nav.PrepareNavPoints(); });
}

}  // namespace ombra
