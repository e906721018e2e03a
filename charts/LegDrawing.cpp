#include "charts/LegDrawing.h"

#include <cmath>

#include "core/Format.h"
#include "core/Options.h"
#include "core/Rounding.h"
#include "navmath/Deviation.h"
#include "navmath/Geometry.h"
#include "navmath/RLGC.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

namespace {
// The chart number whose great-circle chains are drawn piece by piece
// between their points, the default of LastChartNumber.
const char* const kDefaultChart = "4000    ";

int Mod360(double v) {
    long r = long(RoundEven(v)) % 360;
    return int(r < 0 ? r + 360 : r);
}
}  // namespace

int16_t LegDrawing::PlanCount() const { return state_.IsOpen() ? state_.Header.PlanCount : -1; }

double LegDrawing::ChartAngle(const NavPoint& from, const NavPoint& to, double course, bool& fromPixels) const {
    fromPixels = false;
    int16_t count = PlanCount();
    for (int p = state_.Header.FirstPlan; p <= count; ++p) {
        if (!from.In(size_t(p)) || !to.In(size_t(p))) continue;
        double dx = double(to.Pixel[size_t(p)].x) - from.Pixel[size_t(p)].x;
        double dy = -(double(to.Pixel[size_t(p)].y) - from.Pixel[size_t(p)].y);
        double a;
        if (dx == 0) a = dy >= 0 ? 90.0 : 270.0;
        else {
            a = std::atan(dy / dx) * kRadToDeg;
            if (dx < 0) a += 180.0;
            if (a < 0) a += 360.0;
        }
        fromPixels = true;
        return a;
    }
    return CompassToMath(course);
}

bool LegDrawing::RayToPlanEdge(int16_t plan, ChartPoint start, double angle, double distance, ChartPoint& result) {
    if (plan < 0 || plan > PlanCount()) return false;
    const auto& o = state_.Header.Plans[size_t(plan)].Outline;
    if (o.size() < 3) return false;
    float length = float(lib_.GetPixelsPerNM(plan) * distance);
    size_t n = o.size() - 1;  // element 0 unused
    bool found = false;
    double best = 0;
    for (size_t i = 1; i <= n; ++i) {
        PixelSegment seg{o[i].Pixel, o[i % n + 1].Pixel};
        ChartPoint hit;
        if (!RayHitsSegment(start, angle, length, seg, hit)) continue;
        double d = std::hypot(double(hit.x) - start.x, double(hit.y) - start.y);
        if (!found || d < best) {
            found = true;
            best = d;
            result = hit;
        }
    }
    return found;
}

bool LegDrawing::PlanEdgeCrossing(int16_t plan, int16_t& edge, const LatLong& from, const LatLong& to, LatLong& result) {
    if (plan < 0 || plan > PlanCount()) return false;
    const auto& o = state_.Header.Plans[size_t(plan)].Outline;
    if (o.size() < 3) return false;
    size_t n = o.size() - 1;
    for (size_t i = size_t(std::max<int16_t>(edge, 0)) + 1; i <= n; ++i) {
        const LatLong& a = o[i].Pos;
        const LatLong& b = o[i % n + 1].Pos;
        DoubleSegment seg{a.Long, a.Lat, b.Long, b.Lat};
        LatLong r{0, 0};
        if (SegmentsCross(from, to, seg, r)) {
            edge = int16_t(i);
            result = r;
            return true;
        }
    }
    return false;
}

bool LegDrawing::PieceOnPlan(int16_t p, const NavPoint& from, const NavPoint& to, double angle, double distance,
                             LegPiece& piece) {
    bool fi = from.In(size_t(p)), ti = to.In(size_t(p));
    piece.plan = p;
    if (fi && ti) {
        piece.a = from.Pixel[size_t(p)];
        piece.b = to.Pixel[size_t(p)];
        return true;
    }
    if (fi) {
        ChartPoint edge;
        if (!RayToPlanEdge(p, from.Pixel[size_t(p)], angle, distance, edge)) return false;
        piece.a = from.Pixel[size_t(p)];
        piece.b = edge;
        return true;
    }
    if (ti) {
        ChartPoint edge;
        if (!RayToPlanEdge(p, to.Pixel[size_t(p)], Mod360(angle + 180.0), distance, edge)) return false;
        piece.a = edge;
        piece.b = to.Pixel[size_t(p)];
        return true;
    }
    int16_t edge = 0;
    LatLong c1, c2;
    if (!PlanEdgeCrossing(p, edge, from.Local, to.Local, c1)) return false;
    if (!PlanEdgeCrossing(p, edge, from.Local, to.Local, c2)) return false;
    // Keep the leg's order: the crossing nearer `from` first.
    auto d2 = [&](const LatLong& c) { return std::pow(c.Lat - from.Local.Lat, 2) + std::pow(c.Long - from.Local.Long, 2); };
    if (d2(c2) < d2(c1)) std::swap(c1, c2);
    return lib_.GetPixelPt(0, p, c1, piece.a) && lib_.GetPixelPt(0, p, c2, piece.b);
}

std::vector<LegPiece> LegDrawing::Pieces(const NavPoint& from, const NavPoint& to, double& course, double& distance) {
    std::vector<LegPiece> out;
    lib_.CourseDistanceRL(from.Wgs84, to.Wgs84, course, distance);
    bool fromPixels;
    double angle = ChartAngle(from, to, course, fromPixels);
    if (fromPixels) course = MathToCompass(angle);
    for (int p = state_.Header.FirstPlan; p <= PlanCount(); ++p) {
        LegPiece piece;
        if (PieceOnPlan(int16_t(p), from, to, angle, distance, piece)) out.push_back(piece);
    }
    return out;
}

std::string LegDrawing::RhumbLabel(double course, double distance, int16_t courseMode, double variation) const {
    const int16_t mode = (courseMode == 1 || courseMode == 2) ? courseMode : 0;
    const double deviation = mode == 2 ? host_.CompassDeviation(double(MagneticCourse(course, float(variation)))) : 0.0;
    return Format(ShownCourse(course, mode, variation, deviation), "000") + " " + CourseMark(mode) + " " +
           units_.ToDisplay(UnitKind::Distance, float(distance), (registry_ ? LoadDisplayOptions(*registry_).RangeFormat() : "0.000")) + " " +
           units_.UnitText(UnitKind::Distance) + " RL";
}

void LegDrawing::DrawLabel(Canvas& c, const LegPiece& piece, const std::string& label) {
    ChartPoint a = display_.ChartToScreen(piece.a), b = display_.ChartToScreen(piece.b);
    ChartPoint mid{int32_t((int64_t(a.x) + b.x) / 2), int32_t((int64_t(a.y) + b.y) / 2)};
    int tw = c.TextWidth(label), th = c.TextHeight();
    int w = tw + 4, h = th + 4;
    Rgb bg = Display::OverlayColour(1, display_.PaletteMode);
    c.SetPen({bg, 1, PenStyle::Solid});
    c.SetBrush({bg, BrushStyle::Solid});
    c.Rectangle({mid.x - w / 2, mid.y - h / 2, mid.x - w / 2 + w, mid.y - h / 2 + h});
    c.SetTextColour(Display::OverlayColour(0, display_.PaletteMode));
    c.Text({mid.x - tw / 2, mid.y - th / 2}, label);
}

void LegDrawing::DrawPieces(Canvas& c, const std::vector<LegPiece>& pieces, const std::string& label, bool wantLabel) {
    for (const LegPiece& p : pieces) c.Line(display_.ChartToScreen(p.a), display_.ChartToScreen(p.b));
    if (LabelMode == 2 || !(LabelMode == 1 || wantLabel) || label.empty()) return;
    const ChartViewState& v = display_.View();
    double vw = v.Width * v.ViewFactor, vh = v.Height * v.ViewFactor;
    const LegPiece* best = nullptr;
    long bestLen = -1;
    for (const LegPiece& p : pieces) {
        double mx = (double(p.a.x) + p.b.x) / 2 - v.OriginX, my = (double(p.a.y) + p.b.y) / 2 - v.OriginY;
        if (mx < 0 || my < 0 || mx >= vw || my >= vh) continue;
        double dx = double(p.b.x) - p.a.x, dy = double(p.b.y) - p.a.y;
        long len = long(std::sqrt(dx * dx + dy * dy));
        if (len > bestLen) {
            bestLen = len;
            best = &p;
        }
    }
    if (best) DrawLabel(c, *best, label);
}

void LegDrawing::DrawRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, bool label, int16_t courseMode,
                               double variation) {
    if (!state_.IsOpen()) return;
    double course, distance;
    std::vector<LegPiece> pieces = Pieces(from, to, course, distance);
    DrawPieces(c, pieces, RhumbLabel(course, distance, courseMode, variation), label);
}

void LegDrawing::DrawPlainRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label) {
    if (!state_.IsOpen()) return;
    double course, distance;
    DrawPieces(c, Pieces(from, to, course, distance), label, !label.empty());
}

std::vector<NavPoint> LegDrawing::GreatCircleNavChain(const NavPoint& from, const NavPoint& to, double course, double distance) {
    std::vector<NavPoint> chain;
    if (from.Wgs84.Lat == to.Wgs84.Lat && from.Wgs84.Long == to.Wgs84.Long) return chain;
    std::vector<LatLong> pts = GreatCircleChain(from.Wgs84, to.Wgs84, course, distance);
    if (pts.size() < 2) return chain;
    chain.push_back(from);
    for (size_t i = 1; i + 1 < pts.size(); ++i) chain.push_back(display_.LocatePosition(pts[i]));
    chain.push_back(to);
    return chain;
}

void LegDrawing::DrawGreatCircle(Canvas& c, const NavPoint& from, const NavPoint& to, double course, double distance,
                                 const std::string& label) {
    if (!state_.IsOpen()) return;
    DrawSegmentChain(c, GreatCircleNavChain(from, to, course, distance), label);
}

void LegDrawing::DrawSegmentChain(Canvas& c, const std::vector<NavPoint>& chain, const std::string& label) {
    if (!state_.IsOpen() || chain.size() < 2) return;
    std::vector<LegPiece> pieces;
    bool direct = state_.Header.ChartNumber == kDefaultChart;
    for (size_t i = 0; i + 1 < chain.size(); ++i) {
        const NavPoint& a = chain[i];
        const NavPoint& b = chain[i + 1];
        if (direct) {
            // Drawn as they come: point to point on the first plan showing both.
            for (int p = state_.Header.FirstPlan; p <= PlanCount(); ++p)
                if (a.In(size_t(p)) && b.In(size_t(p))) {
                    pieces.push_back({a.Pixel[size_t(p)], b.Pixel[size_t(p)], int16_t(p)});
                    break;
                }
            continue;
        }
        double course, distance;
        for (const LegPiece& piece : Pieces(a, b, course, distance)) pieces.push_back(piece);
    }
    DrawPieces(c, pieces, label, !label.empty());
}

bool LegDrawing::HitRhumbLine(bool& result, int16_t plan, const NavPoint& from, const NavPoint& to, ChartPoint pixel,
                              float tolerance) {
    result = false;
    if (!state_.IsOpen() || plan < 0 || plan > PlanCount()) return false;
    double course, distance;
    lib_.CourseDistanceRL(from.Wgs84, to.Wgs84, course, distance);
    bool fromPixels;
    double angle = ChartAngle(from, to, course, fromPixels);
    LegPiece piece;
    if (PieceOnPlan(plan, from, to, angle, distance, piece)) result = PointNearSegment(piece.a, piece.b, pixel, tolerance);
    return result;
}

bool LegDrawing::HitSegmentChain(bool& result, int16_t plan, const std::vector<NavPoint>& chain, ChartPoint pixel,
                                 float tolerance) {
    result = false;
    for (size_t i = 0; i + 1 < chain.size() && !result; ++i) HitRhumbLine(result, plan, chain[i], chain[i + 1], pixel, tolerance);
    return result;
}

bool LegDrawing::HitGreatCircle(bool& result, int16_t plan, const NavPoint& from, const NavPoint& to, ChartPoint pixel,
                                float tolerance) {
    result = false;
    if (!state_.IsOpen()) return false;
    double course, distance;
    lib_.CourseDistanceGC(from.Wgs84, to.Wgs84, course, distance);
    return HitSegmentChain(result, plan, GreatCircleNavChain(from, to, course, distance), pixel, tolerance);
}

}  // namespace ombra
