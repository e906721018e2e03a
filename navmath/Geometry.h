// Geometry: plane geometry on plain numbers, with no knowledge of charts.
//
// It serves the clipping of legs at plan borders (a ray or a leg against a
// border edge), the selection of a line under the cursor (a point near a
// segment) and the boundary alarm (a point in a ring).
//
// Two planes are in use:
//   pixels       ChartPoint, 32-bit integers, x right and y DOWN; angles
//                are "mathematical" degrees, anticlockwise from east as the
//                eye sees the screen, so a ray at 90 goes up the screen
//                (y decreases).
//   doubles      DoublePoint, x and y as 64-bit floats: a LatLong's Long
//                and Lat in seconds of arc (east and north positive, no
//                wrap at the antimeridian: a ring across 180° must be given
//                in continuous longitudes), or pixels kept in doubles.
//
// The arithmetic, its 32-bit integer squares, its rounding ties-to-even and
// its odd markers are those the rest of the plotter was built against and
// are kept as they are: a parallel ray leaves -1 or 0 in result.x, and
// AngleBetween answers 90 and 270 for (anti)parallel vectors.
//
// Worked example: a ray from (0,0) at 0° for 100 pixels meets the segment
// (50,-10)-(50,10) at (50,0):
//   ChartPoint hit;
//   RayHitsSegment({0,0}, 0.0, 100.0f, {{50,-10},{50,10}}, hit);   // true, hit == {50,0}
#pragma once
#include <cstdint>
#include <vector>

#include "core/Types.h"

namespace ombra {

struct PixelSegment {
    ChartPoint a;
    ChartPoint b;
};

struct DoublePoint {
    double x = 0.0;
    double y = 0.0;
    friend bool operator==(const DoublePoint&, const DoublePoint&) = default;
};
inline DoublePoint ToDoublePoint(const LatLong& p) { return {p.Long, p.Lat}; }
inline LatLong ToLatLong(const DoublePoint& p) { return {p.x, p.y}; }

// An edge of a plan border in doubles: (x1, y1) to (x2, y2).
struct DoubleSegment {
    double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;
};

struct Vector3 {
    double x = 0.0, y = 0.0, z = 0.0;
};

// The distance between two pixels, rounded to a whole number (ties to
// even). The squares are 32-bit integers: a difference too large for one
// raises the Overflow fault (only on-screen distances belong here).
int32_t PixelDistance(ChartPoint a, ChartPoint b);

// Whether the ray from `start` along `angle` (mathematical degrees) for
// `length` pixels meets `segment`; `result` is where the two lines meet,
// rounded to pixels, whether or not they meet within both pieces. Ends
// count as meeting. For parallel lines the answer is false and result.x is
// -1 when the ray is level (no change in y), 0 otherwise.
bool RayHitsSegment(ChartPoint start, double angle, float length, const PixelSegment& segment, ChartPoint& result);

// Whether the leg p1-p2 crosses `edge`; `result` is where their lines meet,
// unrounded. Ends count. For parallel lines the answer is false and
// result.x becomes -1 when result.y (as passed in) is zero, else 0.
bool SegmentsCross(const DoublePoint& p1, const DoublePoint& p2, const DoubleSegment& edge, DoublePoint& result);
bool SegmentsCross(const LatLong& p1, const LatLong& p2, const DoubleSegment& edge, LatLong& result);

// The hit test of a line: whether `p` lies within `tolerance` pixels of the
// segment a-b (32-bit float arithmetic). A segment of no length is never
// hit, even with the cursor on it.
bool PointNearSegment(ChartPoint a, ChartPoint b, ChartPoint p, float tolerance);

// The angle between two 3-vectors, in the quadrant form its callers use:
// -asin(cos angle) in degrees for the general case, 90 when they point the
// same way, 270 when opposite, 0 when either is (nearly) of no length.
double AngleBetween(const Vector3& a, const Vector3& b);

// Whether (x, y) lies inside the closed ring (the boundary alarm's test).
// A ring of no vertices contains nothing; a point exactly on an edge may
// fall either way. The LatLong form takes x as Long and y as Lat.
bool PointInPolygon(double x, double y, const std::vector<LatLong>& ring);
bool PointInPolygon(double x, double y, const std::vector<DoublePoint>& ring);

}  // namespace ombra
