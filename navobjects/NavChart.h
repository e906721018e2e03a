// NavChart: the chart view as the navigation objects see it.
//
// The stores, the track and the measuring lines draw themselves over the
// chart in view and take positions from mouse clicks; everything they need
// of the view is here, so that they build and are tested without a chart
// engine. The chart view implements it over the chart library (panel
// mapping, GetPixelsPerNM, the rhumb-line and great-circle drawing of the
// leg routines); tests use a plain linear view.
//
// Coordinates. A NavPoint's Pixel is a full-resolution chart pixel of the
// whole chart raster; ToScreen turns it into a pixel of the view (the
// canvas handed to the Draw... routines), applying the view's origin and
// zoom. Positions are WGS84 LatLong, seconds of arc, east and north
// positive. Ranges are nautical miles; ScreenPixelsPerNM already includes
// the zoom ("GetPixelsPerNM of the panel divided by the zoom factor").
//
// The leg routines draw a leg across every panel that shows a part of it
// and place its label on the longest piece in view, so that a rhumb line
// from a point in an inset to a point in the main plan is drawn in both.
//
//   NavPoint a, b;  ...prepared...
//   chart.DrawRhumbLine(canvas, a, b, true, 0, -2.5);   // label "045 °T 12.3 NM RL"
#pragma once
#include <cstdint>
#include <string>

#include "core/Types.h"
#include "charts/NavPoint.h"
#include "platform/api/Canvas.h"

namespace ombra {

class NavChart {
public:
    virtual ~NavChart() = default;

    // Whether a chart is open at all; without one nothing is drawn.
    virtual bool ChartOpen() = 0;
    // Fills the datum and panel fields of `p` from p.Wgs84 for the chart in view.
    virtual void PrepareNavPoint(NavPoint& p) = 0;
    // Panels (plans) of the chart in view, numbered 0 .. PanelCount() - 1.
    virtual int16_t PanelCount() = 0;
    // A full-resolution chart pixel as a pixel of the view.
    virtual ChartPoint ToScreen(ChartPoint chartPixel) = 0;
    // View pixels to a nautical mile in a panel; 0 when unknown.
    virtual double ScreenPixelsPerNM(int16_t panel) = 0;
    // The WGS84 position under a view pixel; false off the chart.
    virtual bool ScreenToPosition(ChartPoint screen, LatLong& wgs84) = 0;

    // The leg routines of the chart view. `courseMode` 0 true, 1 magnetic,
    // 2 compass; `variation` degrees, east positive, at the leg's start.
    virtual void DrawRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, bool labelWanted, int16_t courseMode,
                               double variation) = 0;
    virtual void DrawPlainRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label) = 0;
    virtual void DrawGreatCircle(Canvas& c, const NavPoint& from, const NavPoint& to, double course, double distance,
                                 const std::string& label) = 0;
    // Whether a view pixel lies within `tolerance` pixels of the visible
    // part of a leg (HitRhumbLine / HitGreatCircle over every panel).
    virtual bool HitLeg(const NavPoint& from, const NavPoint& to, bool greatCircle, ChartPoint screen,
                        float tolerance) = 0;

    // Centres the view on a position, opening a suitable chart if needed.
    virtual void CentreOn(const LatLong& wgs84) = 0;
    // The WGS84 position at the centre of the view (the last one shown
    // while no chart is open).
    virtual LatLong ViewCentre() = 0;
    // Whether the zoom buttons of the lists may be used (a chart is open
    // and the zoom mode allows it).
    virtual bool CanZoom() = 0;
    // Repaints the chart and its overlays.
    virtual void Redraw() = 0;

    // Presentation: the colour of labels and the menus that force labels
    // and route icons. LabelOverride: 0 as each object says, 1 force on,
    // 2 force off.
    virtual Rgb LabelColour() = 0;
    virtual int16_t LabelOverride() = 0;
    virtual bool RouteIconsOff() = 0;
};

}  // namespace ombra
