// RLGC: rhumb lines and great circles, the one place where two positions
// become a course and a distance, and a position, a course and a distance
// become a new position.
//
// Units and signs. Positions are LatLong records in seconds of arc (degrees
// x 3600), Long before Lat, east and north positive; a whole circle is
// 1,296,000 seconds and longitude runs from -648,000 to +648,000. Courses
// are degrees true, 0 <= course < 360, clockwise from north. Distances are
// nautical miles of 1852 m. The "mathematical" angle of the pixel geometry
// is degrees anticlockwise from east (x right, y up).
//
// Two ways of measuring a leg:
//   CourseDistanceRL  the rhumb line (constant course), on the WGS84
//                     ellipsoid, exactly (GeographicLib's Rhumb).
//   CourseDistanceGC  the geodesic, the "great circle" of the ellipsoid:
//                     its initial course and its length (GeographicLib's
//                     Geodesic).
// Equal positions give course 0 and distance 0. Longitudes are taken modulo
// 360 degrees, so a leg from 179°E to 179°W is 2 degrees of longitude long,
// across the antimeridian, never 358 the other way. A latitude beyond a pole
// (only dead reckoning across a pole makes one) is taken at the pole.
//
// One way of moving along a leg:
//   DeadReckon        mid-latitude sailing on a sphere where a minute of
//                     arc is a nautical mile. It is the plotter's only
//                     dead-reckoning routine; its answer is what a navigator
//                     working the traverse table by hand gets, and is kept
//                     as such (it is not the ellipsoidal rhumb line: the two
//                     differ by up to half a percent in distance).
//
// Worked example: from 10°E on the equator, course 090 for 60 miles:
//   LatLong p;
//   DeadReckon(p, LatLong{36000.0, 0.0}, 90.0, 60.0, 3600.0);
//   // p.Long == 39600 (11°E), p.Lat == 0 (to 1e-9 seconds)
//   double c, d;
//   CourseDistanceRL(LatLong{36000.0, 0.0}, p, c, d);
//   // c == 90, d == 60.108 (the ellipsoid's equator is longer than a
//   // minute-a-mile sphere's)
#pragma once
#include <cmath>
#include <cstdint>
#include <vector>

#include "core/Angles.h"
#include "core/Types.h"

namespace ombra {

// Seconds of arc in a half and a whole circle of longitude.
constexpr double kHalfCircleSeconds = 648000.0;
constexpr double kWholeCircleSeconds = 1296000.0;

// Rhumb-line course (degrees true, 0 <= c < 360) and distance (nautical
// miles) from `from` to `to` on the WGS84 ellipsoid.
void CourseDistanceRL(const LatLong& from, const LatLong& to, double& course, double& distance);
// Great-circle (geodesic) initial course and distance on WGS84.
void CourseDistanceGC(const LatLong& from, const LatLong& to, double& course, double& distance);
// CourseDistanceRL when `isGreatCircle` is 0, CourseDistanceGC otherwise:
// route legs pass their own RL/GC flag.
void CourseDistance(int16_t isGreatCircle, const LatLong& from, const LatLong& to, double& course, double& distance);

// The position reached from `from` by mid-latitude sailing, in 64-bit
// arithmetic. `course` in degrees true; `distance / 60 * scale` is the run
// in seconds of arc, so `scale` 3600 takes `distance` in nautical miles, and
// a speed in knots with `scale` = the seconds run gives the position after
// that run. Latitude is not limited; longitude is brought back once into
// -648,000..648,000 (exactly 648,000 stays positive).
void DeadReckon(LatLong& result, const LatLong& from, double course, double distance, double scale);
inline LatLong DeadReckon(const LatLong& from, double course, double distance, double scale = 3600.0) {
    LatLong r;
    DeadReckon(r, from, course, distance, scale);
    return r;
}

// The arcsine as atan(x / sqrt(1 - x^2)); +-1 give +-pi/2 through an
// infinite quotient.
double ArcSine(double x);
// a / sqrt(1 - e2 sinLat^2), the ellipsoid's radius of curvature in the
// prime vertical; 0 when the term under the root is negative (a guard for
// absurd arguments, the one guard of this module).
double PrimeVerticalRadius(double a, double e2, double sinLat);

// The position at `distance` metres along `azimuth` (radians, clockwise from
// north) from `from`, on WGS84, by a closed-form series good for radar
// ranges. Here `from` and `result` hold radians (Long, Lat), not seconds.
// It turns an ARPA target's range and bearing into a position.
void GeodesicDirect(const LatLong& from, float distance, float azimuth, LatLong& result);

// Compass degrees (clockwise from north) to mathematical degrees
// (anticlockwise from east) and back; the two maps are the same one,
// a -> 90 - a folded into 0..360. Exact for 0, 90, 180 and 270; other
// values go through sine, cosine and an arctangent.
double CompassToMath(double compass);
double MathToCompass(double math);

// An angle in degrees folded into [0, 360).
inline double Fold360(double a) {
    a = std::fmod(a, 360.0);
    return a < 0.0 ? a + 360.0 : a;
}

// Splitting a great circle for drawing: a leg is cut about every 60 miles,
// into at most 10 pieces. Pieces = round(distance / 60), ties to even, plus
// one, at most 10: 30 miles -> 1, 90 -> 3, 2000 -> 10.
constexpr int kMaxGreatCircleSegments = 10;
int GreatCircleSegments(double distance);

// The chain of positions along the great circle from `from` to `to`,
// numbered 0 (from) to n (to), where n = GreatCircleSegments(distance).
// Each inner point is dead-reckoned from the one before by distance / n
// along a course that is taken afresh, by CourseDistanceGC, from each point
// to `to`; the first course is `course`. `course` and `distance` are the
// leg's own, as CourseDistanceGC gives them. Equal ends make no chain.
std::vector<LatLong> GreatCircleChain(const LatLong& from, const LatLong& to, double course, double distance);
// The same, measuring the leg first.
std::vector<LatLong> GreatCircleChain(const LatLong& from, const LatLong& to);

}  // namespace ombra
