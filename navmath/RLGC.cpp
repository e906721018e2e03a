#include "navmath/RLGC.h"

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/Rhumb.hpp>
#include <algorithm>
#include <cmath>

#include "core/Rounding.h"

namespace ombra {

namespace {

constexpr double kMetresPerMile = 1852.0;

// Seconds of arc to the degrees GeographicLib takes; a latitude past a pole
// is held at the pole so that a position dead-reckoned over the top still
// measures instead of giving NaN.
double LatDegrees(const LatLong& p) { return std::clamp(p.Lat / 3600.0, -90.0, 90.0); }
double LongDegrees(const LatLong& p) { return p.Long / 3600.0; }

// An azimuth of (-180, 180] to a course of [0, 360), with no negative zero.
double CourseFromAzimuth(double azimuth) {
    double c = azimuth < 0.0 ? azimuth + 360.0 : azimuth;
    if (c >= 360.0) c -= 360.0;
    return c == 0.0 ? 0.0 : c;
}

}  // namespace

void CourseDistanceRL(const LatLong& from, const LatLong& to, double& course, double& distance) {
    if (from == to) {
        course = 0.0;
        distance = 0.0;
        return;
    }
    double s12 = 0.0, azi12 = 0.0;
    GeographicLib::Rhumb::WGS84().Inverse(LatDegrees(from), LongDegrees(from), LatDegrees(to), LongDegrees(to), s12,
                                          azi12);
    distance = s12 / kMetresPerMile;
    course = distance == 0.0 ? 0.0 : CourseFromAzimuth(azi12);
}

void CourseDistanceGC(const LatLong& from, const LatLong& to, double& course, double& distance) {
    if (from == to) {
        course = 0.0;
        distance = 0.0;
        return;
    }
    double s12 = 0.0, azi1 = 0.0, azi2 = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(LatDegrees(from), LongDegrees(from), LatDegrees(to), LongDegrees(to),
                                             s12, azi1, azi2);
    distance = s12 / kMetresPerMile;
    course = distance == 0.0 ? 0.0 : CourseFromAzimuth(azi1);
}

void CourseDistance(int16_t isGreatCircle, const LatLong& from, const LatLong& to, double& course,
                    double& distance) {
    if (isGreatCircle == 0)
        CourseDistanceRL(from, to, course, distance);
    else
        CourseDistanceGC(from, to, course, distance);
}

void DeadReckon(LatLong& result, const LatLong& from, double course, double distance, double scale) {
    const double c = course * kDegToRad;
    const double dLat = distance / 60.0 * scale * std::cos(c);
    const double departure = distance / 60.0 * scale * std::sin(c);
    const double midLat = ((dLat / 3600.0) / 2.0 + from.Lat / 3600.0) * kDegToRad;
    const double dLong = departure / std::cos(midLat);
    double lon = from.Long + dLong;
    if (lon > kHalfCircleSeconds)
        lon -= kWholeCircleSeconds;
    else if (lon < -kHalfCircleSeconds)
        lon += kWholeCircleSeconds;
    result.Lat = from.Lat + dLat;
    result.Long = lon;
}

double ArcSine(double x) { return std::atan(x / std::sqrt(1.0 - x * x)); }

double PrimeVerticalRadius(double a, double e2, double sinLat) {
    const double t = 1.0 - e2 * sinLat * sinLat;
    if (t < 0.0) return 0.0;
    return a / std::sqrt(t);
}

void GeodesicDirect(const LatLong& from, float distance, float azimuth, LatLong& result) {
    // WGS84: semi-major axis, first and second eccentricity squared, 1 + e'^2.
    constexpr double a = 6378137.0;
    constexpr double e2 = 0.0066943799901413165;
    constexpr double ep2 = 0.006739496742276434;
    constexpr double onePlusEp2 = 1.0067394967422765;

    const double s = std::sin(from.Lat);
    const double N = PrimeVerticalRadius(a, e2, s);
    const double delta = double(distance) / N;
    const double c = std::cos(from.Lat) * std::cos(double(azimuth));
    const double r1 = -ep2 * c * c;
    const double r2 = (1.0 - r1) * 3.0 * ep2 * s * c;
    const double A = ((r1 + 1.0) * r1 - r2 * 0.25 * (r2 + 1.0) * delta) * delta * delta;
    const double eps = (1.0 - A / 6.0) * delta;
    const double F = 1.0 - (r2 * eps / 6.0 + r1 * 0.5) * eps * eps;
    const double sinPsi = std::cos(eps) * s + std::sin(eps) * c;
    const double psi = ArcSine(sinPsi);
    const double sec = 1.0 / std::cos(psi);
    result.Lat = std::atan((sinPsi - F * e2 * s) * onePlusEp2 * sec);
    result.Long = from.Long + ArcSine(std::sin(double(azimuth)) * std::sin(eps) * sec);
}

namespace {

// 90 - a folded into 0..360, exact on the quadrant points.
double QuarterTurnMirror(double a) {
    if (a == 0.0) return 90.0;
    if (a == 90.0) return 0.0;
    if (a == 180.0) return 270.0;
    if (a == 270.0) return 180.0;
    const double r = a * kDegToRad;
    // Mirroring about the 45° line swaps the sine and the cosine.
    double m = std::atan2(std::cos(r), std::sin(r)) * kRadToDeg;
    if (m < 0.0) m += 360.0;
    if (m >= 360.0) m -= 360.0;
    return m;
}

}  // namespace

double CompassToMath(double compass) { return QuarterTurnMirror(compass); }
double MathToCompass(double math) { return QuarterTurnMirror(math); }

int GreatCircleSegments(double distance) {
    const double pieces = RoundEven(distance / 60.0) + 1.0;
    if (!(pieces <= kMaxGreatCircleSegments)) return kMaxGreatCircleSegments;  // NaN too
    return pieces < 1.0 ? 1 : int(pieces);
}

std::vector<LatLong> GreatCircleChain(const LatLong& from, const LatLong& to, double course, double distance) {
    std::vector<LatLong> chain;
    if (from.Lat == to.Lat && from.Long == to.Long) return chain;
    const int n = GreatCircleSegments(distance);
    const double step = distance / n;
    chain.resize(size_t(n) + 1);
    chain[0] = from;
    chain[size_t(n)] = to;
    double c = course;
    for (int i = 0; i <= n - 2; ++i) {
        DeadReckon(chain[size_t(i) + 1], chain[size_t(i)], c, step, 3600.0);
        double unusedDistance = 0.0;
        CourseDistanceGC(chain[size_t(i) + 1], to, c, unusedDistance);
    }
    return chain;
}

std::vector<LatLong> GreatCircleChain(const LatLong& from, const LatLong& to) {
    double course = 0.0, distance = 0.0;
    CourseDistanceGC(from, to, course, distance);
    return GreatCircleChain(from, to, course, distance);
}

}  // namespace ombra
