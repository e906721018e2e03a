#include "navmath/Geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "core/Fault.h"
#include "core/Rounding.h"
#include "navmath/RLGC.h"

namespace ombra {

namespace {

// A 32-bit integer product or sum, or the Overflow fault.
int32_t Checked32(int64_t v) {
    if (v < std::numeric_limits<int32_t>::min() || v > std::numeric_limits<int32_t>::max())
        RaiseFault(faults::Overflow);
    return int32_t(v);
}

// Rounded to a pixel (ties to even); a meeting point of two nearly parallel
// lines can lie far beyond any screen, and is held at the edge of the
// integers rather than failing.
int32_t RoundToPixel(double v) {
    if (std::isnan(v)) return 0;
    constexpr double lo = std::numeric_limits<int32_t>::min(), hi = std::numeric_limits<int32_t>::max();
    return int32_t(std::clamp(RoundEven(v), lo, hi));
}

}  // namespace

int32_t PixelDistance(ChartPoint a, ChartPoint b) {
    const int32_t dx = Checked32(int64_t(b.x) - a.x);
    const int32_t dy = Checked32(int64_t(b.y) - a.y);
    const int32_t sum = Checked32(int64_t(Checked32(int64_t(dx) * dx)) + Checked32(int64_t(dy) * dy));
    return CLng32(std::sqrt(double(sum)));
}

bool RayHitsSegment(ChartPoint start, double angle, float length, const PixelSegment& segment, ChartPoint& result) {
    const double rad = angle * kDegToRad;
    const ChartPoint end{RoundToPixel(start.x + std::cos(rad) * length), RoundToPixel(start.y - std::sin(rad) * length)};
    const double dx = double(end.x) - start.x, dy = double(end.y) - start.y;
    const double ex = double(segment.b.x) - segment.a.x, ey = double(segment.b.y) - segment.a.y;
    const double den = dx * ey - dy * ex;
    if (den == 0.0) {
        result.x = dy == 0.0 ? -1 : 0;
        return false;
    }
    const double sx = double(segment.a.x) - start.x, sy = double(segment.a.y) - start.y;
    const double t = (sx * ey - sy * ex) / den;
    const double u = (sx * dy - sy * dx) / den;
    result.x = RoundToPixel(start.x + t * dx);
    result.y = RoundToPixel(start.y + t * dy);
    return t >= 0.0 && t <= 1.0 && u >= 0.0 && u <= 1.0;
}

bool SegmentsCross(const DoublePoint& p1, const DoublePoint& p2, const DoubleSegment& edge, DoublePoint& result) {
    const double dx = p2.x - p1.x, dy = p2.y - p1.y;
    const double ex = edge.x2 - edge.x1, ey = edge.y2 - edge.y1;
    const double den = dx * ey - dy * ex;
    if (den == 0.0) {
        // The marker looks at the result's own y, not at the leg's.
        result.x = result.y == 0.0 ? -1.0 : 0.0;
        return false;
    }
    const double sx = edge.x1 - p1.x, sy = edge.y1 - p1.y;
    const double t = (sx * ey - sy * ex) / den;
    const double u = (sx * dy - sy * dx) / den;
    result.x = p1.x + t * dx;
    result.y = p1.y + t * dy;
    return t >= 0.0 && t <= 1.0 && u >= 0.0 && u <= 1.0;
}

bool SegmentsCross(const LatLong& p1, const LatLong& p2, const DoubleSegment& edge, LatLong& result) {
    DoublePoint r = ToDoublePoint(result);
    const bool crosses = SegmentsCross(ToDoublePoint(p1), ToDoublePoint(p2), edge, r);
    result = ToLatLong(r);
    return crosses;
}

bool PointNearSegment(ChartPoint a, ChartPoint b, ChartPoint p, float tolerance) {
    // The box around the segment, widened by the tolerance on every side.
    const float maxX = float(std::max(a.x, b.x)), minX = float(std::min(a.x, b.x));
    const float maxY = float(std::max(a.y, b.y)), minY = float(std::min(a.y, b.y));
    if (maxX + tolerance < float(p.x) || minX - tolerance > float(p.x)) return false;
    if (maxY + tolerance < float(p.y) || minY - tolerance > float(p.y)) return false;

    const float vx = float(a.x) - float(p.x), vy = float(a.y) - float(p.y);
    const float wx = float(b.x) - float(a.x), wy = float(b.y) - float(a.y);
    const float ww = wx * wx + wy * wy;
    if (ww < 1e-6f) return false;
    float s = -(vx * wx + wy * vy) / ww;
    s = std::clamp(s, 0.0f, 1.0f);
    const float ox = vx + s * wx, oy = vy + s * wy;
    return std::sqrt(ox * ox + oy * oy) <= tolerance;
}

double AngleBetween(const Vector3& a, const Vector3& b) {
    const double product = (a.x * a.x + a.y * a.y + a.z * a.z) * (b.x * b.x + b.y * b.y + b.z * b.z);
    if (product <= 1e-9) return 0.0;
    const double c = (a.x * b.x + a.y * b.y + a.z * b.z) / std::sqrt(product);
    if (c >= 1.0) return 90.0;
    if (c <= -1.0) return 270.0;
    return std::atan(-c / std::sqrt(1.0 - c * c)) * kRadToDeg;
}

namespace {

// Crossing number of the ray from (x, y) towards +x. The walk starts at the
// vertex of lowest y, which lies on the ring's hull; an edge counts when it
// spans the point's y with one end strictly above and the other at or below,
// so a vertex lying on the ray's line is counted once, never twice.
template <typename P, typename GetX, typename GetY>
bool CrossingTest(double x, double y, const std::vector<P>& ring, GetX gx, GetY gy) {
    const size_t n = ring.size();
    if (n == 0) return false;
    size_t first = 0;
    for (size_t i = 1; i < n; ++i)
        if (gy(ring[i]) < gy(ring[first])) first = i;
    bool inside = false;
    for (size_t k = 0; k < n; ++k) {
        const P& p = ring[(first + k) % n];
        const P& q = ring[(first + k + 1) % n];
        const double py = gy(p), qy = gy(q);
        if ((py > y) != (qy > y)) {
            const double xCross = gx(p) + (y - py) * (gx(q) - gx(p)) / (qy - py);
            if (x < xCross) inside = !inside;
        }
    }
    return inside;
}

}  // namespace

bool PointInPolygon(double x, double y, const std::vector<LatLong>& ring) {
    return CrossingTest(x, y, ring, [](const LatLong& p) { return p.Long; }, [](const LatLong& p) { return p.Lat; });
}

bool PointInPolygon(double x, double y, const std::vector<DoublePoint>& ring) {
    return CrossingTest(x, y, ring, [](const DoublePoint& p) { return p.x; }, [](const DoublePoint& p) { return p.y; });
}

}  // namespace ombra
