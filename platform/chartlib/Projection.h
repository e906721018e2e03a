// Projection: the map projections raster charts are drawn on, on the WGS84
// ellipsoid.
//
// A chart plan is a projection followed by an affine map from projected
// metres to pixels, so only the shape of the projection matters here:
// false eastings, scale factors at the origin and the latitude of origin
// shift or scale the projected plane and are taken up by the affine fit.
// What does matter:
//   Mercator                 nothing (any central meridian; the one of the
//                            plan is used so that a chart across 180° stays
//                            continuous)
//   transverse Mercator      the central meridian
//   Lambert conformal conic  the central meridian and the two standard
//                            parallels
//   polyconic                the central meridian
// Angles are degrees, east and north positive; projected coordinates are
// metres, easting and northing. GeographicLib supplies transverse Mercator
// and Lambert; Mercator is the closed form through the conformal latitude,
// and the polyconic is Snyder's ellipsoidal form with a Newton inverse.
//
//   Projection p;  p.Init({ProjectionKind::Mercator, -12.0});
//   double e, n;   p.Forward(50.0, -12.0, e, n);   // e == 0, n == 6413524.6
#pragma once
#include <memory>

#include "platform/api/ChartLibrary.h"

namespace GeographicLib {
class TransverseMercator;
class LambertConformalConic;
}  // namespace GeographicLib

namespace ombra::chartlib {

struct ProjectionParams {
    ProjectionKind Kind = ProjectionKind::Mercator;
    double CentralMeridian = 0.0;
    double StandardParallel1 = 0.0;
    double StandardParallel2 = 0.0;
};

class Projection {
public:
    Projection();
    ~Projection();
    Projection(const Projection& o);
    Projection& operator=(const Projection& o);

    // False when the parameters make no projection (Lambert with equal
    // parallels of opposite sign, a polynomial kind).
    bool Init(const ProjectionParams& p);
    const ProjectionParams& Params() const { return p_; }
    // False outside the projection's domain (a pole on Mercator).
    bool Forward(double lat, double lon, double& east, double& north) const;
    bool Reverse(double east, double north, double& lat, double& lon) const;

private:
    ProjectionParams p_;
    std::unique_ptr<GeographicLib::TransverseMercator> tm_;
    std::unique_ptr<GeographicLib::LambertConformalConic> lcc_;
};

// Longitude brought within 180 degrees of `reference`.
double UnwrapLongitude(double lon, double reference);

}  // namespace ombra::chartlib
