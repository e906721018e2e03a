// DisplayChart: the chart view of the charts module (Display, LegDrawing,
// Chart) as the navigation objects see it (NavChart). It lives in the
// plotter because it joins two modules that know nothing of each other.
//
// Plans are the panels; a NavPoint is prepared by Display::LocatePosition;
// view pixels come from Display::ChartToScreen, and a nautical mile in view
// pixels is the plan's GetPixelsPerNM divided by the view factor. Hit tests
// go through LegDrawing on every plan, with the tolerance turned from view
// pixels into chart pixels. Centring opens the best chart at the position
// when the open one does not hold it.
//
//   DisplayChart link(display, legs, library, chartState, &chart);
//   NavObjects nav({..., link, ...});
#pragma once
#include "charts/Chart.h"
#include "charts/ChartState.h"
#include "charts/Display.h"
#include "charts/LegDrawing.h"
#include "navobjects/NavChart.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

class DisplayChart : public NavChart {
public:
    DisplayChart(Display& display, LegDrawing& legs, ChartLibrary& library, ChartState& state, Chart* chart = nullptr)
        : display_(display), legs_(legs), lib_(library), state_(state), chart_(chart) {}

    // The "Route &Icons" menu: Force Off hides the symbols of route points.
    bool routeIconsOff = false;

    bool ChartOpen() override { return state_.IsOpen(); }
    void PrepareNavPoint(NavPoint& p) override;
    int16_t PanelCount() override;
    ChartPoint ToScreen(ChartPoint chartPixel) override { return display_.ChartToScreen(chartPixel); }
    double ScreenPixelsPerNM(int16_t panel) override;
    bool ScreenToPosition(ChartPoint screen, LatLong& wgs84) override { return display_.ScreenToPosition(screen, wgs84); }
    void DrawRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, bool labelWanted, int16_t courseMode,
                       double variation) override {
        legs_.DrawRhumbLine(c, from, to, labelWanted, courseMode, variation);
    }
    void DrawPlainRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label) override {
        legs_.DrawPlainRhumbLine(c, from, to, label);
    }
    void DrawGreatCircle(Canvas& c, const NavPoint& from, const NavPoint& to, double course, double distance,
                         const std::string& label) override {
        legs_.DrawGreatCircle(c, from, to, course, distance, label);
    }
    bool HitLeg(const NavPoint& from, const NavPoint& to, bool greatCircle, ChartPoint screen, float tolerance) override;
    void CentreOn(const LatLong& wgs84) override;
    LatLong ViewCentre() override { return display_.ViewCentre(); }
    bool CanZoom() override { return state_.IsOpen(); }
    void Redraw() override;
    Rgb LabelColour() override { return Display::OverlayColour(0, display_.PaletteMode); }
    int16_t LabelOverride() override { return legs_.LabelMode; }
    bool RouteIconsOff() override { return routeIconsOff; }

private:
    Display& display_;
    LegDrawing& legs_;
    ChartLibrary& lib_;
    ChartState& state_;
    Chart* chart_;
};

}  // namespace ombra

namespace ombra {
class NavObjects;
// Registers the drawing of the navigation objects in the view's layers
// (Waypoints, Routes, Boundaries, Dividers with the vectors, Tracks) and
// their point preparation after each chart opens.
void RegisterNavLayers(Display& display, NavObjects& nav);
}  // namespace ombra
