#include "platform/chartlib/Projection.h"

#include <GeographicLib/Constants.hpp>
#include <GeographicLib/LambertConformalConic.hpp>
#include <GeographicLib/Math.hpp>
#include <GeographicLib/TransverseMercator.hpp>

#include <cmath>

#include "core/Angles.h"

namespace ombra::chartlib {

namespace {

using GeographicLib::Math;

const double kA = GeographicLib::Constants::WGS84_a();
const double kF = GeographicLib::Constants::WGS84_f();
const double kE2 = kF * (2 - kF);
const double kE = std::sqrt(kE2);

// Meridian arc from the equator (Snyder 3-21).
double MeridianArc(double phi) {
    double e4 = kE2 * kE2, e6 = e4 * kE2;
    return kA * ((1 - kE2 / 4 - 3 * e4 / 64 - 5 * e6 / 256) * phi - (3 * kE2 / 8 + 3 * e4 / 32 + 45 * e6 / 1024) * std::sin(2 * phi) +
                 (15 * e4 / 256 + 45 * e6 / 1024) * std::sin(4 * phi) - (35 * e6 / 3072) * std::sin(6 * phi));
}

// Ellipsoidal polyconic with the origin on the equator (Snyder 18-1..18-7).
void PolyconicForward(double lat, double dlon, double& x, double& y) {
    double phi = lat * kDegToRad, lam = dlon * kDegToRad;
    if (std::fabs(phi) < 1e-12) {
        x = kA * lam;
        y = 0;
        return;
    }
    double s = std::sin(phi);
    double n = kA / std::sqrt(1 - kE2 * s * s);
    double e = lam * s;
    double cot = std::cos(phi) / s;
    x = n * cot * std::sin(e);
    y = MeridianArc(phi) + n * cot * (1 - std::cos(e));
}

}  // namespace

double UnwrapLongitude(double lon, double reference) {
    if (!std::isfinite(lon) || !std::isfinite(reference)) return lon;
    return reference + std::remainder(lon - reference, 360.0);
}

Projection::Projection() = default;
Projection::~Projection() = default;
Projection::Projection(const Projection& o) { *this = o; }
Projection& Projection::operator=(const Projection& o) {
    if (this != &o) Init(o.p_);
    return *this;
}

bool Projection::Init(const ProjectionParams& p) {
    p_ = p;
    tm_.reset();
    lcc_.reset();
    switch (p.Kind) {
    case ProjectionKind::Mercator:
    case ProjectionKind::Polyconic:
        return std::isfinite(p.CentralMeridian);
    case ProjectionKind::TransverseMercator:
        if (!std::isfinite(p.CentralMeridian)) return false;
        tm_ = std::make_unique<GeographicLib::TransverseMercator>(kA, kF, 1.0);
        return true;
    case ProjectionKind::LambertConformalConic:
        if (!std::isfinite(p.CentralMeridian) || !std::isfinite(p.StandardParallel1) || !std::isfinite(p.StandardParallel2) ||
            std::fabs(p.StandardParallel1) >= 89.9 || std::fabs(p.StandardParallel2) >= 89.9 ||
            (p.StandardParallel1 * p.StandardParallel2 < 0 && std::fabs(p.StandardParallel1 + p.StandardParallel2) < 1e-6))
            return false;
        try {
            lcc_ = std::make_unique<GeographicLib::LambertConformalConic>(kA, kF, p.StandardParallel1, p.StandardParallel2, 1.0);
        } catch (...) {
            return false;
        }
        return true;
    case ProjectionKind::Polynomial:
        return false;
    }
    return false;
}

bool Projection::Forward(double lat, double lon, double& east, double& north) const {
    if (!std::isfinite(lat) || !std::isfinite(lon) || std::fabs(lat) > 90.0) return false;
    double dlon = UnwrapLongitude(lon, p_.CentralMeridian) - p_.CentralMeridian;
    switch (p_.Kind) {
    case ProjectionKind::Mercator: {
        if (std::fabs(lat) >= 89.5) return false;
        double tau = std::tan(lat * kDegToRad);
        east = kA * dlon * kDegToRad;
        north = kA * std::asinh(Math::taupf(tau, kE));
        return true;
    }
    case ProjectionKind::TransverseMercator: {
        if (!tm_ || std::fabs(dlon) > 60.0) return false;
        double g, k;
        tm_->Forward(0.0, lat, dlon, east, north, g, k);
        return std::isfinite(east) && std::isfinite(north);
    }
    case ProjectionKind::LambertConformalConic: {
        if (!lcc_) return false;
        double g, k;
        lcc_->Forward(0.0, lat, dlon, east, north, g, k);
        return std::isfinite(east) && std::isfinite(north);
    }
    case ProjectionKind::Polyconic:
        if (std::fabs(dlon) > 90.0) return false;
        PolyconicForward(lat, dlon, east, north);
        return std::isfinite(east) && std::isfinite(north);
    case ProjectionKind::Polynomial:
        return false;
    }
    return false;
}

bool Projection::Reverse(double east, double north, double& lat, double& lon) const {
    if (!std::isfinite(east) || !std::isfinite(north)) return false;
    double la = 0, dlo = 0;
    switch (p_.Kind) {
    case ProjectionKind::Mercator: {
        double tau = Math::tauf(std::sinh(north / kA), kE);
        la = std::atan(tau) / kDegToRad;
        dlo = east / kA / kDegToRad;
        break;
    }
    case ProjectionKind::TransverseMercator: {
        if (!tm_) return false;
        double g, k;
        tm_->Reverse(0.0, east, north, la, dlo, g, k);
        break;
    }
    case ProjectionKind::LambertConformalConic: {
        if (!lcc_) return false;
        double g, k;
        lcc_->Reverse(0.0, east, north, la, dlo, g, k);
        break;
    }
    case ProjectionKind::Polyconic: {
        // Newton's method on the forward form, from the spherical guess.
        la = north / kA / kDegToRad;
        double c = std::cos(la * kDegToRad);
        dlo = std::fabs(c) > 1e-6 ? east / (kA * c) / kDegToRad : 0.0;
        for (int i = 0; i < 30; ++i) {
            double x, y;
            PolyconicForward(la, dlo, x, y);
            double fx = x - east, fy = y - north;
            if (std::fabs(fx) < 1e-6 && std::fabs(fy) < 1e-6) break;
            const double h = 1e-6;
            double x1, y1, x2, y2;
            PolyconicForward(la + h, dlo, x1, y1);
            PolyconicForward(la, dlo + h, x2, y2);
            double a = (x1 - x) / h, b = (x2 - x) / h, cc = (y1 - y) / h, d = (y2 - y) / h;
            double det = a * d - b * cc;
            if (std::fabs(det) < 1e-12) return false;
            la -= (d * fx - b * fy) / det;
            dlo -= (a * fy - cc * fx) / det;
            if (!std::isfinite(la) || !std::isfinite(dlo) || std::fabs(la) > 90) return false;
        }
        break;
    }
    case ProjectionKind::Polynomial:
        return false;
    }
    if (!std::isfinite(la) || !std::isfinite(dlo)) return false;
    lat = la;
    lon = dlo + p_.CentralMeridian;
    if (lon > 180.0) lon -= 360.0;
    if (lon < -180.0) lon += 360.0;
    return true;
}

}  // namespace ombra::chartlib
