// Georef: how the pixels of one chart plan relate to positions.
//
// The usual plan is a projection (Projection.h) followed by an affine map:
//     (east, north) = A (x, y)          projected metres from pixels
// fitted by least squares to the plan's reference points, as chart agents
// and GDAL fit them, so that a Mercator chart maps the same here as in any
// other reader. Where a chart gives no usable projection, the map is a
// polynomial in longitude and latitude (of order 1 to 3), the chart's own
// WPX/WPY coefficients when they agree with its reference points, or one
// fitted here.
//
// Reference points are the chart's word. When the model misses any of them
// by more than 0.05 pixel, a thin-plate spline of the residuals is added in
// pixel space, so that the map passes through every reference point; it is
// smooth and tends to the model away from the points. A plain Mercator chart
// with exact reference points needs none.
//
// Both directions are one map: position to pixel is the model (plus the
// correction), and pixel to position solves it back (the affine inverted,
// the projection reversed; the correction by fixed-point steps; the
// polynomial by Newton's method), so a round trip returns to the same pixel
// within a thousandth.
//
// Units: degrees in the plan's own datum, east and north positive; pixels of
// the whole chart raster, x right, y down, as the reference points count
// them (a reference point at (0, 0) is the top-left pixel).
//
// The text form (the georeferencing lines of a plan file) is KEY=value
// lines; see docs/chart-formats.md. Reading it trusts nothing.
//
//   PlanGeoref g;  std::string why;
//   g.Fit(source, why);            // from a KAP's REF/ lines and PR=
//   double x, y;  g.ToPixel(50.05, -12.12, x, y);
#pragma once
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/api/ChartLibrary.h"
#include "platform/chartlib/Projection.h"

namespace ombra::chartlib {

// A thin-plate spline in the plane: f(p) = a0 + a1 x + a2 y + sum w_i U(|p - p_i|).
struct ThinPlate {
    std::vector<double> px, py, w;
    double a0 = 0, a1 = 0, a2 = 0;
    bool Active() const { return !px.empty(); }
    double Eval(double x, double y) const;
    bool Fit(const std::vector<double>& xs, const std::vector<double>& ys, const std::vector<double>& values);
};

class PlanGeoref {
public:
    bool Fit(const PlanGeorefSource& src, std::string& message);
    std::string ToText() const;
    bool FromText(std::string_view text, std::string& message);

    bool ToPixel(double lat, double lon, double& x, double& y) const;
    bool ToPosition(double x, double y, double& lat, double& lon) const;
    // Full-resolution pixels to one nautical mile (a minute of latitude)
    // at the middle of the plan.
    double PixelsPerNM() const;
    // The largest miss at a reference point, in pixels.
    double MaxRefError() const;

    ProjectionKind Kind() const { return kind_; }
    const std::vector<std::pair<double, double>>& Outline() const { return outline_; }  // lat, lon
    const std::vector<ReferencePoint>& Refs() const { return refs_; }
    double ReferenceLongitude() const { return lonRef_; }
    bool HasShift() const { return hasShift_; }
    double ShiftLatSeconds() const { return shiftLat_; }  // chart datum = WGS84 + shift
    double ShiftLonSeconds() const { return shiftLon_; }
    bool UsesCorrection() const { return tpsX_.Active(); }
    void SetOutline(std::vector<std::pair<double, double>> outline) { outline_ = std::move(outline); }

private:
    bool Model(double lat, double lon, double& mx, double& my) const;
    bool ModelInverse(double mx, double my, double& lat, double& lon) const;
    bool FitProjection(const PlanGeorefSource& src, std::string& message);
    bool FitPolynomial(const PlanGeorefSource& src, std::string& message);
    void FitCorrection();
    bool Finish(std::string& message);
    // inv_ from aff_; false, leaving inv_ alone, when aff_ has no inverse.
    bool InvertAffine();
    // Reads the text form line by line; see Georef.cpp.
    struct TextReader;

    ProjectionKind kind_ = ProjectionKind::Mercator;
    Projection proj_;
    double aff_[6] = {0, 1, 0, 0, 0, 1};  // east = a0 + a1 x + a2 y; north = a3 + a4 x + a5 y
    double inv_[6] = {0, 1, 0, 0, 0, 1};  // x = b0 + b1 e + b2 n; y = b3 + b4 e + b5 n
    double polyLon_ = 0, polyLat_ = 0;    // polynomial centre
    std::vector<double> fx_, fy_;         // pixel from (lon - polyLon, lat - polyLat)
    std::vector<double> gx_, gy_;         // (lon, lat) from pixel: Newton's first guess
    ThinPlate tpsX_, tpsY_;
    std::vector<ReferencePoint> refs_;
    std::vector<std::pair<double, double>> outline_;
    double lonRef_ = 0;
    bool hasShift_ = false;
    double shiftLat_ = 0, shiftLon_ = 0;
};

// The polynomial terms 1, u, v, u², uv, v², u³, u²v, uv², v³ (as many as
// there are coefficients, at most 10).
double EvalPolynomial(const std::vector<double>& c, double u, double v);

}  // namespace ombra::chartlib
