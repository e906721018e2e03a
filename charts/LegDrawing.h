// LegDrawing: rhumb lines and great circles on the chart view, cut at the
// borders of the chart's plans, with their labels, and the hit tests that
// find a leg under the cursor.
//
// A leg is drawn plan by plan (from the chart's first plan to its last, as
// later plans lie over earlier ones). On each plan it is one straight piece
// between chart pixels:
//   both ends shown on the plan   from one end's pixel to the other's
//   only `from` shown             from its pixel along the leg's direction
//                                 to the plan's border (RayToPlanEdge)
//   only `to` shown               the same from `to`, backwards; the piece
//                                 keeps the leg's order
//   neither                       between the two border edges the leg
//                                 crosses in latitude and longitude
//                                 (PlanEdgeCrossing, twice), if it does
// The direction on the chart is measured between the pixels of the first
// plan that shows both ends (so the label agrees with what the plan shows),
// else it is the rhumb-line course.
//
// Angles: courses in degrees true; the "mathematical" angle of the pixel
// geometry is anticlockwise from east with y up the screen (navmath
// Geometry.h). Pieces are in full-resolution chart pixels; drawing turns
// them into the view's pixels.
//
// Labels: only when LabelMode is not 2 (force off) and LabelMode is 1
// (force on) or the caller asks. The longest piece whose middle lies in the
// view carries "045 °T 2.500 NM RL" in a filled box (two places of the
// distance with RangeDP 2); in magnetic mode the course is (course -
// variation + 360) rounded, mod 360, with "°M", in compass mode that plus
// the deviation with "°C" (navmath ShownCourse, as every course text). Great circles are split about every
// 60 miles (navmath GreatCircleChain) and drawn as a chain of pieces.
//
//   LegDrawing legs(display, library, units);
//   canvas.SetPen({colour, 2, PenStyle::Solid});
//   legs.DrawRhumbLine(canvas, from, to, true, 0, 0.0);
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "charts/Display.h"
#include "charts/NavPoint.h"
#include "core/Units.h"
#include "platform/api/Canvas.h"

namespace ombra {

class ChartLibrary;
class Registry;

struct LegPiece {
    ChartPoint a, b;  // chart pixels, in the leg's order
    int16_t plan = 0;
};

class LegDrawing {
public:
    // `registry` gives RangeDP, the places of the distance in labels; none: 3.
    LegDrawing(Display& display, ChartLibrary& library, const ChartState& state, const Units& units, ChartHost& host,
               const Registry* registry = nullptr)
        : display_(display), lib_(library), state_(state), units_(units), host_(host), registry_(registry) {}

    int16_t LabelMode = 0;                         // 0 default, 1 force on, 2 force off

    void DrawRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, bool label, int16_t courseMode, double variation);
    void DrawPlainRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label);
    void DrawGreatCircle(Canvas& c, const NavPoint& from, const NavPoint& to, double course, double distance,
                         const std::string& label);
    void DrawSegmentChain(Canvas& c, const std::vector<NavPoint>& chain, const std::string& label);

    // Where a ray from a pixel inside the plan first meets its border;
    // `distance` nautical miles (the ray is that long in the plan's pixels).
    bool RayToPlanEdge(int16_t plan, ChartPoint start, double angle, double distance, ChartPoint& result);
    // The next border edge after `edge` (edges numbered from 1) that the leg
    // crosses in latitude and longitude (chart datum); true with its index.
    bool PlanEdgeCrossing(int16_t plan, int16_t& edge, const LatLong& from, const LatLong& to, LatLong& result);
    // Whether a chart pixel lies within `tolerance` chart pixels of the
    // visible piece of the leg on the plan.
    bool HitRhumbLine(bool& result, int16_t plan, const NavPoint& from, const NavPoint& to, ChartPoint pixel, float tolerance);
    bool HitGreatCircle(bool& result, int16_t plan, const NavPoint& from, const NavPoint& to, ChartPoint pixel,
                        float tolerance);
    bool HitSegmentChain(bool& result, int16_t plan, const std::vector<NavPoint>& chain, ChartPoint pixel, float tolerance);

    // The pieces of a leg on every plan (as drawn), and its label text.
    std::vector<LegPiece> Pieces(const NavPoint& from, const NavPoint& to, double& course, double& distance);
    std::string RhumbLabel(double course, double distance, int16_t courseMode, double variation) const;
    // The chain of a great circle, each point prepared for the view.
    std::vector<NavPoint> GreatCircleNavChain(const NavPoint& from, const NavPoint& to, double course, double distance);

private:
    bool PieceOnPlan(int16_t plan, const NavPoint& from, const NavPoint& to, double angle, double distance, LegPiece& piece);
    double ChartAngle(const NavPoint& from, const NavPoint& to, double course, bool& fromPixels) const;
    void DrawPieces(Canvas& c, const std::vector<LegPiece>& pieces, const std::string& label, bool wantLabel);
    void DrawLabel(Canvas& c, const LegPiece& piece, const std::string& label);
    int16_t PlanCount() const;

    Display& display_;
    ChartLibrary& lib_;
    const ChartState& state_;
    const Units& units_;
    ChartHost& host_;
    const Registry* registry_;
};

}  // namespace ombra
