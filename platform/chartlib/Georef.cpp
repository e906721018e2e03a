#include "platform/chartlib/Georef.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "core/Val.h"

namespace ombra::chartlib {

namespace {

constexpr double kCorrectionThreshold = 0.05;  // pixels
constexpr double kProjectionTolerance = 5.0;    // pixels a projection may miss before a polynomial replaces it
constexpr size_t kMaxRefs = 1000;
constexpr size_t kMaxTpsPoints = 200;
constexpr size_t kMaxOutline = 10000;
constexpr double kTpsScale = 1.0 / 1024.0;      // pixels to spline units

// Gaussian elimination with partial pivoting on a square system.
bool SolveLinear(std::vector<std::vector<double>> a, std::vector<double> b, std::vector<double>& x) {
    size_t n = b.size();
    for (size_t c = 0; c < n; ++c) {
        size_t piv = c;
        for (size_t r = c + 1; r < n; ++r)
            if (std::fabs(a[r][c]) > std::fabs(a[piv][c])) piv = r;
        if (std::fabs(a[piv][c]) < 1e-300) return false;
        std::swap(a[c], a[piv]);
        std::swap(b[c], b[piv]);
        for (size_t r = c + 1; r < n; ++r) {
            double f = a[r][c] / a[c][c];
            if (f == 0) continue;
            for (size_t k = c; k < n; ++k) a[r][k] -= f * a[c][k];
            b[r] -= f * b[c];
        }
    }
    x.assign(n, 0);
    for (size_t i = n; i-- > 0;) {
        double s = b[i];
        for (size_t k = i + 1; k < n; ++k) s -= a[i][k] * x[k];
        x[i] = s / a[i][i];
        if (!std::isfinite(x[i])) return false;
    }
    return true;
}

// Least squares by Householder QR: rows of `a` (m x k, m >= k) against b.
bool LeastSquares(std::vector<std::vector<double>> a, std::vector<double> b, std::vector<double>& x) {
    size_t m = a.size();
    if (m == 0) return false;
    size_t k = a[0].size();
    if (m < k) return false;
    for (size_t j = 0; j < k; ++j) {
        double norm = 0;
        for (size_t i = j; i < m; ++i) norm += a[i][j] * a[i][j];
        norm = std::sqrt(norm);
        if (norm < 1e-12) return false;
        double alpha = a[j][j] > 0 ? -norm : norm;
        std::vector<double> v(m, 0);
        for (size_t i = j; i < m; ++i) v[i] = a[i][j];
        v[j] -= alpha;
        double vv = 0;
        for (size_t i = j; i < m; ++i) vv += v[i] * v[i];
        if (vv < 1e-300) continue;
        for (size_t c = j; c < k; ++c) {
            double s = 0;
            for (size_t i = j; i < m; ++i) s += v[i] * a[i][c];
            s = 2 * s / vv;
            for (size_t i = j; i < m; ++i) a[i][c] -= s * v[i];
        }
        double s = 0;
        for (size_t i = j; i < m; ++i) s += v[i] * b[i];
        s = 2 * s / vv;
        for (size_t i = j; i < m; ++i) b[i] -= s * v[i];
    }
    x.assign(k, 0);
    for (size_t i = k; i-- > 0;) {
        double s = b[i];
        for (size_t c = i + 1; c < k; ++c) s -= a[i][c] * x[c];
        if (std::fabs(a[i][i]) < 1e-12) return false;
        x[i] = s / a[i][i];
    }
    return true;
}

std::vector<double> Terms(double u, double v, size_t n) {
    double t[10] = {1, u, v, u * u, u * v, v * v, u * u * u, u * u * v, u * v * v, v * v * v};
    return std::vector<double>(t, t + std::min<size_t>(n, 10));
}

const char* KindName(ProjectionKind k) {
    switch (k) {
    case ProjectionKind::Mercator: return "MERCATOR";
    case ProjectionKind::TransverseMercator: return "TRANSVERSE MERCATOR";
    case ProjectionKind::LambertConformalConic: return "LAMBERT CONFORMAL CONIC";
    case ProjectionKind::Polyconic: return "POLYCONIC";
    case ProjectionKind::Polynomial: return "POLYNOMIAL";
    }
    return "POLYNOMIAL";
}

std::string Num(double v) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    return buf;
}

std::string List(const double* v, size_t n) {
    std::string s;
    for (size_t i = 0; i < n; ++i) {
        if (i) s += ',';
        s += Num(v[i]);
    }
    return s;
}

// Comma-separated numbers; false when any is not a finite number.
bool Numbers(std::string_view text, std::vector<double>& out, size_t maxCount) {
    out.clear();
    size_t start = 0;
    while (start <= text.size()) {
        size_t c = text.find(',', start);
        std::string_view f = text.substr(start, c == std::string_view::npos ? std::string_view::npos : c - start);
        if (!IsNumeric(f)) return false;
        double v = Val(f);
        if (!std::isfinite(v)) return false;
        out.push_back(v);
        if (out.size() > maxCount) return false;
        if (c == std::string_view::npos) break;
        start = c + 1;
    }
    return true;
}

// The mean pixel of reference points (at least one).
void PixelCentre(const std::vector<ReferencePoint>& refs, double& cx, double& cy) {
    cx = cy = 0;
    for (auto& r : refs) {
        cx += r.x;
        cy += r.y;
    }
    cx /= double(refs.size());
    cy /= double(refs.size());
}

}  // namespace

double EvalPolynomial(const std::vector<double>& c, double u, double v) {
    auto t = Terms(u, v, c.size());
    double s = 0;
    for (size_t i = 0; i < t.size(); ++i) s += c[i] * t[i];
    return s;
}

// ---------------------------------------------------------------------

double ThinPlate::Eval(double x, double y) const {
    x *= kTpsScale;
    y *= kTpsScale;
    double s = a0 + a1 * x + a2 * y;
    for (size_t i = 0; i < px.size(); ++i) {
        double dx = x - px[i], dy = y - py[i];
        double r2 = dx * dx + dy * dy;
        if (r2 > 0) s += w[i] * r2 * std::log(r2);
    }
    return s;
}

bool ThinPlate::Fit(const std::vector<double>& xs, const std::vector<double>& ys, const std::vector<double>& values) {
    size_t n = xs.size();
    px.clear();
    py.clear();
    w.clear();
    if (n < 3 || n > kMaxTpsPoints) return false;
    std::vector<double> sx(n), sy(n);
    for (size_t i = 0; i < n; ++i) {
        sx[i] = xs[i] * kTpsScale;
        sy[i] = ys[i] * kTpsScale;
    }
    std::vector<std::vector<double>> a(n + 3, std::vector<double>(n + 3, 0));
    std::vector<double> b(n + 3, 0);
    for (size_t i = 0; i < n; ++i) {
        for (size_t j = 0; j < n; ++j) {
            double dx = sx[i] - sx[j], dy = sy[i] - sy[j];
            double r2 = dx * dx + dy * dy;
            a[i][j] = r2 > 0 ? r2 * std::log(r2) : 0;
        }
        a[i][n] = a[n][i] = 1;
        a[i][n + 1] = a[n + 1][i] = sx[i];
        a[i][n + 2] = a[n + 2][i] = sy[i];
        b[i] = values[i];
    }
    std::vector<double> sol;
    if (!SolveLinear(a, b, sol)) return false;
    px = sx;
    py = sy;
    w.assign(sol.begin(), sol.begin() + long(n));
    a0 = sol[n];
    a1 = sol[n + 1];
    a2 = sol[n + 2];
    return true;
}

// ---------------------------------------------------------------------

bool PlanGeoref::Model(double lat, double lon, double& mx, double& my) const {
    if (kind_ == ProjectionKind::Polynomial) {
        double u = UnwrapLongitude(lon, lonRef_) - polyLon_, v = lat - polyLat_;
        mx = EvalPolynomial(fx_, u, v);
        my = EvalPolynomial(fy_, u, v);
        return std::isfinite(mx) && std::isfinite(my);
    }
    double e, n;
    if (!proj_.Forward(lat, lon, e, n)) return false;
    mx = inv_[0] + inv_[1] * e + inv_[2] * n;
    my = inv_[3] + inv_[4] * e + inv_[5] * n;
    return std::isfinite(mx) && std::isfinite(my);
}

bool PlanGeoref::ModelInverse(double mx, double my, double& lat, double& lon) const {
    if (kind_ == ProjectionKind::Polynomial) {
        double u = EvalPolynomial(gx_, mx, my) - polyLon_;
        double v = EvalPolynomial(gy_, mx, my) - polyLat_;
        for (int i = 0; i < 40; ++i) {
            double x = EvalPolynomial(fx_, u, v), y = EvalPolynomial(fy_, u, v);
            double fx = x - mx, fy = y - my;
            if (std::fabs(fx) < 1e-7 && std::fabs(fy) < 1e-7) break;
            const double h = 1e-7;
            double a = (EvalPolynomial(fx_, u + h, v) - x) / h, b = (EvalPolynomial(fx_, u, v + h) - x) / h;
            double c = (EvalPolynomial(fy_, u + h, v) - y) / h, d = (EvalPolynomial(fy_, u, v + h) - y) / h;
            double det = a * d - b * c;
            if (!std::isfinite(det) || std::fabs(det) < 1e-300) return false;
            u -= (d * fx - b * fy) / det;
            v -= (a * fy - c * fx) / det;
            if (!std::isfinite(u) || !std::isfinite(v)) return false;
        }
        lat = v + polyLat_;
        lon = u + polyLon_;
        if (lon > 180) lon -= 360;
        if (lon < -180) lon += 360;
        return std::fabs(lat) <= 90.0;
    }
    double e = aff_[0] + aff_[1] * mx + aff_[2] * my;
    double n = aff_[3] + aff_[4] * mx + aff_[5] * my;
    return proj_.Reverse(e, n, lat, lon);
}

bool PlanGeoref::ToPixel(double lat, double lon, double& x, double& y) const {
    double mx, my;
    if (!Model(lat, lon, mx, my)) return false;
    double cx = 0, cy = 0;
    if (tpsX_.Active()) {
        cx = tpsX_.Eval(mx, my);
        cy = tpsY_.Eval(mx, my);
    }
    x = mx + cx;
    y = my + cy;
    return true;
}

bool PlanGeoref::ToPosition(double x, double y, double& lat, double& lon) const {
    if (!std::isfinite(x) || !std::isfinite(y)) return false;
    double mx = x, my = y;
    if (tpsX_.Active()) {
        // Solve m + C(m) = p by fixed-point steps; the correction is small
        // and smooth, so a few steps reach a thousandth of a pixel.
        for (int i = 0; i < 30; ++i) {
            double nx = x - tpsX_.Eval(mx, my), ny = y - tpsY_.Eval(mx, my);
            bool done = std::fabs(nx - mx) < 1e-6 && std::fabs(ny - my) < 1e-6;
            mx = nx;
            my = ny;
            if (done) break;
        }
    }
    return ModelInverse(mx, my, lat, lon);
}

double PlanGeoref::PixelsPerNM() const {
    double lat = 0, lon = 0;
    const auto& pts = outline_;
    if (!pts.empty()) {
        double minLat = 90, maxLat = -90, minLon = 1e9, maxLon = -1e9;
        for (auto& p : pts) {
            double lo = UnwrapLongitude(p.second, lonRef_);
            minLat = std::min(minLat, p.first);
            maxLat = std::max(maxLat, p.first);
            minLon = std::min(minLon, lo);
            maxLon = std::max(maxLon, lo);
        }
        lat = (minLat + maxLat) / 2;
        lon = (minLon + maxLon) / 2;
    } else if (!refs_.empty()) {
        for (auto& r : refs_) {
            lat += r.lat;
            lon += UnwrapLongitude(r.lon, lonRef_);
        }
        lat /= double(refs_.size());
        lon /= double(refs_.size());
    }
    double x1, y1, x2, y2;
    if (!ToPixel(lat - 0.5 / 60.0, lon, x1, y1) || !ToPixel(lat + 0.5 / 60.0, lon, x2, y2)) return 0;
    return std::hypot(x2 - x1, y2 - y1);
}

double PlanGeoref::MaxRefError() const {
    double worst = 0;
    for (const auto& r : refs_) {
        double x, y;
        if (!ToPixel(r.lat, r.lon, x, y)) return 1e9;
        worst = std::max(worst, std::hypot(x - r.x, y - r.y));
    }
    return worst;
}

// ---------------------------------------------------------------------

bool PlanGeoref::FitProjection(const PlanGeorefSource& src, std::string& message) {
    ProjectionParams pp;
    pp.Kind = src.Projection;
    pp.CentralMeridian = src.Projection == ProjectionKind::Mercator ? std::round(lonRef_) : src.CentralMeridian;
    pp.StandardParallel1 = src.StandardParallel1;
    pp.StandardParallel2 = src.StandardParallel2;
    if (!proj_.Init(pp)) {
        message = "the chart's projection parameters make no projection";
        return false;
    }
    // Projected metres from pixels, least squares in centred, scaled pixels.
    double cx, cy;
    PixelCentre(refs_, cx, cy);
    double s = 0;
    for (auto& r : refs_) s = std::max({s, std::fabs(r.x - cx), std::fabs(r.y - cy)});
    if (s <= 0) {
        message = "the chart's reference points all lie on one pixel";
        return false;
    }
    std::vector<std::vector<double>> a;
    std::vector<double> be, bn;
    for (auto& r : refs_) {
        double e, no;
        if (!proj_.Forward(r.lat, r.lon, e, no)) {
            message = "a reference point lies outside the chart's projection";
            return false;
        }
        a.push_back({1.0, (r.x - cx) / s, (r.y - cy) / s});
        be.push_back(e);
        bn.push_back(no);
    }
    std::vector<double> ce, cn;
    if (!LeastSquares(a, be, ce) || !LeastSquares(a, bn, cn)) {
        message = "the chart's reference points lie on one line";
        return false;
    }
    aff_[1] = ce[1] / s;
    aff_[2] = ce[2] / s;
    aff_[0] = ce[0] - aff_[1] * cx - aff_[2] * cy;
    aff_[4] = cn[1] / s;
    aff_[5] = cn[2] / s;
    aff_[3] = cn[0] - aff_[4] * cx - aff_[5] * cy;
    if (!InvertAffine()) {
        message = "the chart's reference points give no usable scale";
        return false;
    }
    kind_ = src.Projection;
    return true;
}

bool PlanGeoref::InvertAffine() {
    double det = aff_[1] * aff_[5] - aff_[2] * aff_[4];
    if (!std::isfinite(det) || std::fabs(det) < 1e-12) return false;
    inv_[1] = aff_[5] / det;
    inv_[2] = -aff_[2] / det;
    inv_[4] = -aff_[4] / det;
    inv_[5] = aff_[1] / det;
    inv_[0] = -(inv_[1] * aff_[0] + inv_[2] * aff_[3]);
    inv_[3] = -(inv_[4] * aff_[0] + inv_[5] * aff_[3]);
    return true;
}

bool PlanGeoref::FitPolynomial(const PlanGeorefSource& src, std::string& message) {
    kind_ = ProjectionKind::Polynomial;
    size_t n = refs_.size();
    // The chart's own coefficients first, when they agree with its points.
    if (src.Wpx.size() >= 3 && src.Wpy.size() >= 3) {
        polyLon_ = polyLat_ = 0;
        fx_ = src.Wpx;
        fy_ = src.Wpy;
        bool good = true;
        for (auto& r : refs_) {
            double x = EvalPolynomial(fx_, UnwrapLongitude(r.lon, lonRef_), r.lat);
            double y = EvalPolynomial(fy_, UnwrapLongitude(r.lon, lonRef_), r.lat);
            if (!(std::hypot(x - r.x, y - r.y) < 10.0)) good = false;
        }
        if (good) return true;
    }
    size_t terms = n >= 12 ? 10 : n >= 6 ? 6 : 3;
    double cLon = 0, cLat = 0;
    for (auto& r : refs_) {
        cLon += UnwrapLongitude(r.lon, lonRef_);
        cLat += r.lat;
    }
    polyLon_ = cLon / double(n);
    polyLat_ = cLat / double(n);
    double span = 0;
    for (auto& r : refs_)
        span = std::max({span, std::fabs(UnwrapLongitude(r.lon, lonRef_) - polyLon_), std::fabs(r.lat - polyLat_)});
    if (span <= 0) {
        message = "the chart's reference points all lie at one position";
        return false;
    }
    // Fit in scaled unknowns, then fold the scale into the coefficients.
    std::vector<std::vector<double>> a;
    std::vector<double> bx, by;
    for (auto& r : refs_) {
        a.push_back(Terms((UnwrapLongitude(r.lon, lonRef_) - polyLon_) / span, (r.lat - polyLat_) / span, terms));
        bx.push_back(r.x);
        by.push_back(r.y);
    }
    std::vector<double> cx, cy;
    while (true) {
        if (LeastSquares(a, bx, cx) && LeastSquares(a, by, cy)) break;
        if (terms == 3) {
            message = "the chart's reference points lie on one line";
            return false;
        }
        terms = terms == 10 ? 6 : 3;
        for (auto& row : a) row.resize(terms);
    }
    const int power[10] = {0, 1, 1, 2, 2, 2, 3, 3, 3, 3};
    for (size_t i = 0; i < terms; ++i) {
        double f = std::pow(span, -power[i]);
        cx[i] *= f;
        cy[i] *= f;
    }
    fx_ = cx;
    fy_ = cy;
    return true;
}

void PlanGeoref::FitCorrection() {
    tpsX_ = ThinPlate{};
    tpsY_ = ThinPlate{};
    if (refs_.size() < 3 || refs_.size() > kMaxTpsPoints) return;
    std::vector<double> mx, my, rx, ry;
    double worst = 0;
    for (auto& r : refs_) {
        double x, y;
        if (!Model(r.lat, r.lon, x, y)) return;
        mx.push_back(x);
        my.push_back(y);
        rx.push_back(r.x - x);
        ry.push_back(r.y - y);
        worst = std::max(worst, std::hypot(r.x - x, r.y - y));
    }
    if (worst <= kCorrectionThreshold) return;
    ThinPlate tx, ty;
    if (tx.Fit(mx, my, rx) && ty.Fit(mx, my, ry)) {
        tpsX_ = tx;
        tpsY_ = ty;
    }
}

bool PlanGeoref::Fit(const PlanGeorefSource& src, std::string& message) {
    refs_ = src.Refs;
    outline_.clear();
    for (const auto& q : src.Outline)  // a border point that is no position is left out
        if (std::isfinite(q.first) && std::isfinite(q.second) && std::fabs(q.first) <= 90 && std::fabs(q.second) <= 360 &&
            outline_.size() < kMaxOutline)
            outline_.push_back(q);
    hasShift_ = src.HasShift;
    shiftLat_ = src.ShiftLatSeconds;
    shiftLon_ = src.ShiftLonSeconds;
    tpsX_ = ThinPlate{};
    tpsY_ = ThinPlate{};
    if (refs_.size() < 3) {
        message = "the chart has fewer than three reference points";
        return false;
    }
    if (refs_.size() > kMaxRefs) {
        message = "the chart has too many reference points";
        return false;
    }
    for (auto& r : refs_)
        if (!std::isfinite(r.x) || !std::isfinite(r.y) || !std::isfinite(r.lat) || !std::isfinite(r.lon) ||
            std::fabs(r.lat) > 90 || std::fabs(r.lon) > 360) {
            message = "a reference point of the chart is not a position";
            return false;
        }
    lonRef_ = refs_[0].lon;
    if (lonRef_ > 180) lonRef_ -= 360;
    bool projected = false;
    if (src.Projection != ProjectionKind::Polynomial) {
        std::string why;
        if (FitProjection(src, why)) {
            tpsX_ = ThinPlate{};
            double worst = MaxRefError();
            projected = worst <= kProjectionTolerance;
        }
    }
    if (!projected && !FitPolynomial(src, message)) return false;
    FitCorrection();
    return Finish(message);
}

bool PlanGeoref::Finish(std::string& message) {
    // Polynomial inverses start from an affine guess of position from pixel.
    if (kind_ == ProjectionKind::Polynomial) {
        std::vector<std::vector<double>> a;
        std::vector<double> blon, blat;
        double cx, cy;
        PixelCentre(refs_, cx, cy);
        for (auto& r : refs_) {
            a.push_back({1.0, r.x - cx, r.y - cy});
            blon.push_back(UnwrapLongitude(r.lon, lonRef_));
            blat.push_back(r.lat);
        }
        std::vector<double> gl, ga;
        if (!LeastSquares(a, blon, gl) || !LeastSquares(a, blat, ga)) {
            message = "the chart's reference points lie on one line";
            return false;
        }
        gx_ = {gl[0] - gl[1] * cx - gl[2] * cy, gl[1], gl[2]};
        gy_ = {ga[0] - ga[1] * cx - ga[2] * cy, ga[1], ga[2]};
    }
    if (MaxRefError() > 0.5) {
        message = "the chart's reference points do not agree with one another";
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------

std::string PlanGeoref::ToText() const {
    std::ostringstream o;
    o << "GEOREF=1\r\n";
    o << "PROJECTION=" << KindName(kind_) << "\r\n";
    const ProjectionParams& p = proj_.Params();
    o << "PARAMETERS=" << Num(p.CentralMeridian) << "," << Num(p.StandardParallel1) << "," << Num(p.StandardParallel2) << "\r\n";
    o << "LONREF=" << Num(lonRef_) << "\r\n";
    if (kind_ == ProjectionKind::Polynomial) {
        o << "POLYCENTRE=" << Num(polyLon_) << "," << Num(polyLat_) << "\r\n";
        o << "POLYX=" << List(fx_.data(), fx_.size()) << "\r\n";
        o << "POLYY=" << List(fy_.data(), fy_.size()) << "\r\n";
        o << "SEEDX=" << List(gx_.data(), gx_.size()) << "\r\n";
        o << "SEEDY=" << List(gy_.data(), gy_.size()) << "\r\n";
    } else {
        o << "AFFINE=" << List(aff_, 6) << "\r\n";
    }
    if (tpsX_.Active()) {
        for (size_t i = 0; i < tpsX_.px.size(); ++i)
            o << "TPSPOINT=" << Num(tpsX_.px[i]) << "," << Num(tpsX_.py[i]) << "," << Num(tpsX_.w[i]) << "," << Num(tpsY_.w[i])
              << "\r\n";
        o << "TPSAFFINE=" << Num(tpsX_.a0) << "," << Num(tpsX_.a1) << "," << Num(tpsX_.a2) << "," << Num(tpsY_.a0) << ","
          << Num(tpsY_.a1) << "," << Num(tpsY_.a2) << "\r\n";
    }
    for (auto& r : refs_) o << "REF=" << Num(r.x) << "," << Num(r.y) << "," << Num(r.lat) << "," << Num(r.lon) << "\r\n";
    for (auto& q : outline_) o << "PLY=" << Num(q.first) << "," << Num(q.second) << "\r\n";
    if (hasShift_) o << "SHIFT=" << Num(shiftLat_) << "," << Num(shiftLon_) << "\r\n";
    else o << "SHIFT=NONE\r\n";
    o << "END\r\n";
    return o.str();
}

// The text form is read one KEY=value line at a time, each key by its row
// of kRows: the row's reader takes the value and fills the georeference,
// and a value it refuses fails the whole text with the row's message.
// Unknown keys are passed over; "END" (or the end of the text) closes it,
// and Complete then checks that the lines read make one usable map.
struct PlanGeoref::TextReader {
    PlanGeoref& g;
    ProjectionParams params;
    bool sawGeoref = false, sawProjection = false, sawAffine = false, sawPoly = false, tpsAffine = false;

    using Read = bool (TextReader::*)(std::string_view value);
    struct Row {
        std::string_view key;
        Read read;
        const char* failure;
    };
    static const Row kRows[];

    // Exactly `count` comma-separated finite numbers.
    static bool Exactly(std::string_view value, size_t count, std::vector<double>& v);

    bool Version(std::string_view value);
    bool ProjectionName(std::string_view value);
    bool Parameters(std::string_view value);
    bool LongitudeReference(std::string_view value);
    bool Affine(std::string_view value);
    bool PolynomialCentre(std::string_view value);
    // Three to ten coefficients.
    bool Coefficients(std::string_view value, std::vector<double>& into);
    bool PolynomialX(std::string_view value) { return Coefficients(value, g.fx_); }
    bool PolynomialY(std::string_view value) { return Coefficients(value, g.fy_); }
    bool SeedX(std::string_view value) { return Coefficients(value, g.gx_); }
    bool SeedY(std::string_view value) { return Coefficients(value, g.gy_); }
    // One point of the correction: its place and its weights in x and in y.
    bool CorrectionPoint(std::string_view value);
    bool CorrectionAffine(std::string_view value);
    bool ReferencePoint(std::string_view value);
    bool BorderPoint(std::string_view value);
    // "NONE", or the shift in seconds of latitude and longitude.
    bool Shift(std::string_view value);

    // False, with `message`, when a line is refused or the text runs on too long.
    bool ReadLines(std::string_view text, std::string& message);

    // The lines read make a usable map: the map of its kind is whole, and
    // a projected map has a projection and an affine that can be inverted.
    bool Complete(std::string& message);
};

bool PlanGeoref::TextReader::Exactly(std::string_view value, size_t count, std::vector<double>& v) {
    return Numbers(value, v, count) && v.size() == count;
}

bool PlanGeoref::TextReader::Version(std::string_view value) {
    sawGeoref = true;
    return Val(value) == 1;
}

bool PlanGeoref::TextReader::ProjectionName(std::string_view value) {
    sawProjection = true;
    for (ProjectionKind k : {ProjectionKind::Mercator, ProjectionKind::TransverseMercator,
                             ProjectionKind::LambertConformalConic, ProjectionKind::Polyconic, ProjectionKind::Polynomial})
        if (value == KindName(k)) {
            g.kind_ = k;
            return true;
        }
    return false;
}

bool PlanGeoref::TextReader::Parameters(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 3, v)) return false;
    params.CentralMeridian = v[0];
    params.StandardParallel1 = v[1];
    params.StandardParallel2 = v[2];
    return true;
}

bool PlanGeoref::TextReader::LongitudeReference(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 1, v) || std::fabs(v[0]) > 360) return false;
    g.lonRef_ = v[0];
    return true;
}

bool PlanGeoref::TextReader::Affine(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 6, v)) return false;
    std::copy(v.begin(), v.end(), g.aff_);
    sawAffine = true;
    return true;
}

bool PlanGeoref::TextReader::PolynomialCentre(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 2, v)) return false;
    g.polyLon_ = v[0];
    g.polyLat_ = v[1];
    return true;
}

bool PlanGeoref::TextReader::Coefficients(std::string_view value, std::vector<double>& into) {
    std::vector<double> v;
    if (!Numbers(value, v, 10) || v.size() < 3) return false;
    into = std::move(v);
    sawPoly = true;
    return true;
}

bool PlanGeoref::TextReader::CorrectionPoint(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 4, v) || g.tpsX_.px.size() >= kMaxTpsPoints) return false;
    for (ThinPlate* t : {&g.tpsX_, &g.tpsY_}) {
        t->px.push_back(v[0]);
        t->py.push_back(v[1]);
    }
    g.tpsX_.w.push_back(v[2]);
    g.tpsY_.w.push_back(v[3]);
    return true;
}

bool PlanGeoref::TextReader::CorrectionAffine(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 6, v)) return false;
    g.tpsX_.a0 = v[0];
    g.tpsX_.a1 = v[1];
    g.tpsX_.a2 = v[2];
    g.tpsY_.a0 = v[3];
    g.tpsY_.a1 = v[4];
    g.tpsY_.a2 = v[5];
    tpsAffine = true;
    return true;
}

bool PlanGeoref::TextReader::ReferencePoint(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 4, v) || g.refs_.size() >= kMaxRefs || std::fabs(v[2]) > 90 || std::fabs(v[3]) > 360)
        return false;
    g.refs_.push_back({v[0], v[1], v[2], v[3]});
    return true;
}

bool PlanGeoref::TextReader::BorderPoint(std::string_view value) {
    std::vector<double> v;
    if (!Exactly(value, 2, v) || g.outline_.size() >= kMaxOutline || std::fabs(v[0]) > 90 || std::fabs(v[1]) > 360)
        return false;
    g.outline_.emplace_back(v[0], v[1]);
    return true;
}

bool PlanGeoref::TextReader::Shift(std::string_view value) {
    if (value == "NONE") {
        g.hasShift_ = false;
        return true;
    }
    std::vector<double> v;
    if (!Exactly(value, 2, v) || std::fabs(v[0]) > 36000 || std::fabs(v[1]) > 36000) return false;
    g.hasShift_ = true;
    g.shiftLat_ = v[0];
    g.shiftLon_ = v[1];
    return true;
}

bool PlanGeoref::TextReader::Complete(std::string& message) {
    auto fail = [&](const char* why) {
        message = why;
        return false;
    };
    if (!sawGeoref || !sawProjection) return fail("the plan has no georeferencing");
    if (g.tpsX_.Active() && (!tpsAffine || g.tpsX_.px.size() < 3)) return fail("the plan's correction is damaged");
    if (g.kind_ == ProjectionKind::Polynomial) {
        if (!sawPoly || g.fx_.empty() || g.fy_.empty() || g.gx_.size() != 3 || g.gy_.size() != 3)
            return fail("the plan's polynomial is incomplete");
        return true;
    }
    if (!sawAffine) return fail("the plan's affine map is missing");
    params.Kind = g.kind_;
    if (!g.proj_.Init(params)) return fail("the plan's projection parameters make no projection");
    if (!g.InvertAffine()) return fail("the plan's affine map cannot be inverted");
    return true;
}

const PlanGeoref::TextReader::Row PlanGeoref::TextReader::kRows[] = {
    {"GEOREF", &TextReader::Version, "the plan's georeferencing has an unknown version"},
    {"PROJECTION", &TextReader::ProjectionName, "the plan names an unknown projection"},
    {"PARAMETERS", &TextReader::Parameters, "the plan's projection parameters are damaged"},
    {"LONREF", &TextReader::LongitudeReference, "the plan's reference longitude is damaged"},
    {"AFFINE", &TextReader::Affine, "the plan's affine map is damaged"},
    {"POLYCENTRE", &TextReader::PolynomialCentre, "the plan's polynomial centre is damaged"},
    {"POLYX", &TextReader::PolynomialX, "the plan's polynomial is damaged"},
    {"POLYY", &TextReader::PolynomialY, "the plan's polynomial is damaged"},
    {"SEEDX", &TextReader::SeedX, "the plan's polynomial is damaged"},
    {"SEEDY", &TextReader::SeedY, "the plan's polynomial is damaged"},
    {"TPSPOINT", &TextReader::CorrectionPoint, "the plan's correction is damaged"},
    {"TPSAFFINE", &TextReader::CorrectionAffine, "the plan's correction is damaged"},
    {"REF", &TextReader::ReferencePoint, "a reference point of the plan is damaged"},
    {"PLY", &TextReader::BorderPoint, "the plan's border is damaged"},
    {"SHIFT", &TextReader::Shift, "the plan's datum shift is damaged"},
};

bool PlanGeoref::TextReader::ReadLines(std::string_view text, std::string& message) {
    size_t start = 0;
    int lines = 0;
    while (start < text.size()) {
        size_t e = text.find('\n', start);
        std::string_view line = text.substr(start, e == std::string_view::npos ? std::string_view::npos : e - start);
        start = e == std::string_view::npos ? text.size() : e + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (++lines > 50000) {
            message = "the plan's georeferencing is too long";
            return false;
        }
        size_t eq = line.find('=');
        if (eq == std::string_view::npos) {
            if (line == "END") break;
            continue;
        }
        const std::string_view key = line.substr(0, eq);
        for (const Row& row : kRows) {
            if (row.key != key) continue;
            if (!(this->*row.read)(line.substr(eq + 1))) {
                message = row.failure;
                return false;
            }
            break;
        }
    }
    return true;
}

bool PlanGeoref::FromText(std::string_view text, std::string& message) {
    *this = PlanGeoref{};
    TextReader reader{*this, {}};
    return reader.ReadLines(text, message) && reader.Complete(message);
}

}  // namespace ombra::chartlib
