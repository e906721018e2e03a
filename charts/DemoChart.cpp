#include "charts/DemoChart.h"

#include <GeographicLib/Constants.hpp>
#include <GeographicLib/Math.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unordered_map>
#include <vector>

#include "core/Angles.h"

namespace ombra {

namespace {

using GeographicLib::Math;

constexpr double kPi = 3.14159265358979323846;
const double kE = std::sqrt(GeographicLib::Constants::WGS84_f() * (2 - GeographicLib::Constants::WGS84_f()));

constexpr double kLat0 = 50.0, kLon0 = -12.0;  // island centre
constexpr int kMargin = 70;
constexpr double kMainPixPerDeg = 6000.0;        // 100 pixels a minute of longitude
constexpr double kInsetPixPerDeg = 24000.0;      // four times larger
constexpr double kIslandRadius = 1.25;           // NM
constexpr double kBayAngle = -kPi / 4;           // south-east
constexpr double kBayHalfWidth = 0.46;           // radians either side of the bay's axis

// Palette: every entry a distinct colour, so a painted pixel knows its index.
enum Colour : uint8_t {
    Paper, Deep, T10_20, T5_10, T2_5, T0_2, Drying, Land, LandHigh, Black, ContourLine, Magenta, Red, Green, Count
};
struct PalEntry {
    int r, g, b;
    char kind;
};
const PalEntry kPal[Count] = {
    {252, 252, 250, '-'}, {255, 255, 255, 'S'}, {226, 240, 251, 'S'}, {200, 226, 247, 'S'}, {165, 206, 240, 'S'},
    {120, 178, 228, 'S'}, {170, 200, 150, 'L'}, {246, 224, 166, 'L'}, {234, 206, 140, 'L'}, {0, 0, 0, '-'},
    {96, 120, 160, '-'},  {196, 0, 140, '-'},   {210, 20, 20, '-'},   {0, 150, 60, '-'},
};

uint32_t Argb(Colour c) { return 0xFF000000u | uint32_t(MakeRgb(kPal[c].r, kPal[c].g, kPal[c].b)); }
Rgb RgbOf(Colour c) { return MakeRgb(kPal[c].r, kPal[c].g, kPal[c].b); }

double Psi(double latDeg) { return std::asinh(Math::taupf(std::tan(latDeg * kDegToRad), kE)); }
double LatOfPsi(double psi) { return std::atan(Math::tauf(std::sinh(psi), kE)) / kDegToRad; }

// Local plane of the island: east and north in nautical miles.
void Local(double lat, double lon, double& e, double& n) {
    e = (lon - kLon0) * 60.0 * std::cos(kLat0 * kDegToRad);
    n = (lat - kLat0) * 60.0;
}
void FromLocal(double e, double n, double& lat, double& lon) {
    lat = kLat0 + n / 60.0;
    lon = kLon0 + e / (60.0 * std::cos(kLat0 * kDegToRad));
}

double IslandRadius(double theta) {
    double r = kIslandRadius * (1 + 0.16 * std::sin(3 * theta + 0.7) + 0.09 * std::sin(5 * theta + 2.1) + 0.05 * std::sin(8 * theta + 0.3));
    double d = std::remainder(theta - kBayAngle, 2 * kPi);
    r -= 0.34 * std::exp(-(d / 0.36) * (d / 0.36));
    return r;
}

// Distance from the coast, NM, negative inland (measured along the radius).
double CoastDistance(double e, double n) { return std::hypot(e, n) - IslandRadius(std::atan2(n, e)); }

// Depth in metres (negative: drying, or the height of land) and the
// distance from the coast, in one evaluation.
double DepthLocal(double e, double n, double& s) {
    s = CoastDistance(e, n);
    if (s < 0) return -1.0 - 90.0 * (1 - std::exp(s * 2.2));  // land: height as negative depth
    double d = -1.0 + 12.0 * (1 - std::exp(-s / 0.8)) + 5.5 * s;
    d += 2.5 * std::sin(2.3 * e + 1.1 * n) * std::sin(1.7 * n - 0.6 * e) * std::min(1.0, s / 0.5);
    double re = e - 1.9, rn = n - 1.7;
    d -= 16.0 * std::exp(-(re * re + rn * rn) / 0.12);
    double se = e + 3.2, sn = n + 2.4;  // a bank to the south-west
    d -= 9.0 * std::exp(-(se * se + sn * sn) / 0.8);
    return d;
}
double DepthLocal(double e, double n) {
    double s;
    return DepthLocal(e, n, s);
}

Colour Tint(double s, double d) {
    if (s < 0) return d < -45.0 ? LandHigh : Land;
    if (d < 0) return Drying;
    if (d < 2) return T0_2;
    if (d < 5) return T2_5;
    if (d < 10) return T5_10;
    if (d < 20) return T10_20;
    return Deep;
}

// Contour band: changes between neighbours draw the depth contours.
int Band(double s, double d) {
    if (s < 0) return -2;
    const double levels[] = {0, 2, 5, 10, 20, 50};
    int b = 0;
    for (double l : levels)
        if (d >= l) ++b;
    return b;
}

uint32_t Hash(uint32_t x) {
    x ^= x >> 16;
    x *= 0x7feb352d;
    x ^= x >> 15;
    x *= 0x846ca68b;
    x ^= x >> 16;
    return x;
}

struct Rect {
    int l, t, r, b;
    bool Hits(const Rect& o) const { return l < o.r && o.l < r && t < o.b && o.t < b; }
};

void Headlands(double& ae, double& an, double& be, double& bn) {
    double ta = kBayAngle + kBayHalfWidth, tb = kBayAngle - kBayHalfWidth;
    ae = IslandRadius(ta) * std::cos(ta);
    an = IslandRadius(ta) * std::sin(ta);
    be = IslandRadius(tb) * std::cos(tb);
    bn = IslandRadius(tb) * std::sin(tb);
}

}  // namespace

// ---------------------------------------------------------------------

DemoChart::DemoChart() {
    main_.LatN = 50.0 + 10.0 / 60.0;
    main_.LatS = 49.0 + 50.0 / 60.0;
    main_.LonW = -12.0 - 20.0 / 60.0;
    main_.LonE = -12.0 + 20.0 / 60.0;
    main_.X0 = kMargin;
    main_.Y0 = kMargin;
    main_.PixPerLon = kMainPixPerDeg;
    main_.NorthTop = Psi(main_.LatN);
    double mainH = (Psi(main_.LatN) - Psi(main_.LatS)) * kMainPixPerDeg / kDegToRad;
    width_ = int(std::ceil((main_.LonE - main_.LonW) * kMainPixPerDeg)) + 2 * kMargin;
    height_ = int(std::ceil(mainH)) + 2 * kMargin;

    LatLong h = HarbourEntrance();
    double hl = h.Lat / 3600.0 + 0.12 / 60.0, hn = h.Long / 3600.0 - 0.1 / 60.0;
    inset_.LatN = hl + 0.5 / 60.0;
    inset_.LatS = hl - 0.5 / 60.0;
    inset_.LonW = hn - 0.8 / 60.0;
    inset_.LonE = hn + 0.8 / 60.0;
    inset_.X0 = kMargin + 14;
    inset_.Y0 = kMargin + 14;
    inset_.PixPerLon = kInsetPixPerDeg;
    inset_.NorthTop = Psi(inset_.LatN);
    insetX0_ = int(inset_.X0);
    insetY0_ = int(inset_.Y0);
    insetX1_ = int(std::ceil(inset_.X0 + (inset_.LonE - inset_.LonW) * kInsetPixPerDeg));
    insetY1_ = int(std::ceil(inset_.Y0 + (Psi(inset_.LatN) - Psi(inset_.LatS)) * kInsetPixPerDeg / kDegToRad));
}

LatLong DemoChart::IslandCentre() { return {kLon0 * 3600.0, kLat0 * 3600.0}; }

LatLong DemoChart::HarbourEntrance() {
    double ae, an, be, bn;
    Headlands(ae, an, be, bn);
    double lat, lon;
    FromLocal((ae + be) / 2, (an + bn) / 2, lat, lon);
    return {lon * 3600.0, lat * 3600.0};
}

void DemoChart::BayHeadlands(LatLong& east, LatLong& south) {
    double ae, an, be, bn, lat, lon;
    Headlands(ae, an, be, bn);
    FromLocal(ae, an, lat, lon);
    east = {lon * 3600.0, lat * 3600.0};
    FromLocal(be, bn, lat, lon);
    south = {lon * 3600.0, lat * 3600.0};
}

double DemoChart::DepthAt(const LatLong& pos) {
    double e, n;
    Local(pos.Lat / 3600.0, pos.Long / 3600.0, e, n);
    return DepthLocal(e, n);
}

bool DemoChart::PlanPixel(const PlanFrame& f, double lat, double lon, double& x, double& y) const {
    if (!(std::fabs(lat) < 89)) return false;
    x = f.X0 + (lon - f.LonW) * f.PixPerLon;
    y = f.Y0 + (f.NorthTop - Psi(lat)) * f.PixPerLon / kDegToRad;
    return true;
}

void DemoChart::PlanPosition(const PlanFrame& f, double x, double y, double& lat, double& lon) const {
    lon = f.LonW + (x - f.X0) / f.PixPerLon;
    lat = LatOfPsi(f.NorthTop - (y - f.Y0) * kDegToRad / f.PixPerLon);
}

bool DemoChart::PixelOf(int plan, const LatLong& pos, double& x, double& y) const {
    return PlanPixel(plan == 1 ? inset_ : main_, pos.Lat / 3600.0, pos.Long / 3600.0, x, y);
}

void DemoChart::PaintRegion(Image& img, const PlanFrame& f, int x0, int y0, int x1, int y1) const {
    int w = x1 - x0, h = y1 - y0;
    if (w <= 0 || h <= 0) return;
    std::vector<int8_t> band(size_t(w) * size_t(h));
    std::vector<double> lonOf(static_cast<size_t>(w));
    for (int x = 0; x < w; ++x) lonOf[size_t(x)] = f.LonW + (x0 + x + 0.5 - f.X0) / f.PixPerLon;
    for (int y = 0; y < h; ++y) {
        double lat, lon;
        PlanPosition(f, x0, y0 + y + 0.5, lat, lon);
        for (int x = 0; x < w; ++x) {
            double e, n, s;
            Local(lat, lonOf[size_t(x)], e, n);
            double d = DepthLocal(e, n, s);
            img.at(x0 + x, y0 + y) = Argb(Tint(s, d));
            band[size_t(y) * size_t(w) + size_t(x)] = int8_t(Band(s, d));
        }
    }
    // Contours where the band changes; the coast in black.
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            int b = band[size_t(y) * size_t(w) + size_t(x)];
            int r = x + 1 < w ? band[size_t(y) * size_t(w) + size_t(x) + 1] : b;
            int d = y + 1 < h ? band[size_t(y + 1) * size_t(w) + size_t(x)] : b;
            if (r == b && d == b) continue;
            bool coast = b == -2 || r == -2 || d == -2;
            img.at(x0 + x, y0 + y) = Argb(coast ? Black : ContourLine);
        }
}

int DemoChart::MainRight() const { return int(std::lround(main_.X0 + (main_.LonE - main_.LonW) * main_.PixPerLon)); }

void DemoChart::PaintBase(Image& img) const {
    if (img.width != width_ || img.height != height_) img = Image(width_, height_);
    std::fill(img.pixels.begin(), img.pixels.end(), Argb(Paper));
    PaintRegion(img, main_, kMargin, kMargin, MainRight(), height_ - kMargin);
    PaintRegion(img, inset_, insetX0_, insetY0_, insetX1_, insetY1_);
}

// Draws the features of one plan: harbour works and lights, names, and
// soundings. Every text drawn keeps its box, and so do the inset and the
// title block on the main plan, so that soundings keep clear of them.
struct DemoChart::PlanPainter {
    const DemoChart& chart;
    Canvas& c;
    const PlanFrame& f;
    int plan;
    std::vector<Rect> blocked;

    // The places the names are set against.
    struct Marks {
        ChartPoint northHead, southHead;  // the breakwater heads
        ChartPoint lighthouse;
        double quayE, quayN;               // the middle of the quay, NM in the island's plane
    };

    PlanPainter(const DemoChart& d, Canvas& canvas, const PlanFrame& frame, int p);

    // The pixel of a point of the island's plane.
    ChartPoint Px(double e, double n) const;
    // Text at a point (its top-left corner, or its centre), its box kept.
    void Text(ChartPoint at, const std::string& s, int points, Rgb colour, bool centred);

    // A light: a disc and its flare towards the north-east.
    void Light(ChartPoint at, Rgb colour);

    // Breakwaters with their lights, the quay, and the lighthouse on the north point.
    Marks HarbourWorks();
    void Names(const Marks& m);

    // Depths and the coast at a pixel of the plan.
    void AtPixel(double x, double y, double& coast, double& depth) const;

    // A sounding's box may not leave the plan, touch a name or another
    // sounding, or have a corner near the coast or on land.
    bool Clear(const Rect& box, const Rect& area) const;

    // Soundings on a jittered grid, in open water only.
    void Soundings();
};

DemoChart::PlanPainter::PlanPainter(const DemoChart& d, Canvas& canvas, const PlanFrame& frame, int p)
    : chart(d), c(canvas), f(frame), plan(p) {
    if (plan == 0) {
        blocked.push_back({d.insetX0_ - 10, d.insetY0_ - 10, d.insetX1_ + 10, d.insetY1_ + 10});
        blocked.push_back({d.width_ - kMargin - 560, kMargin, d.width_ - kMargin, kMargin + 190});  // title block
    } else {
        blocked.push_back({d.insetX0_, d.insetY0_, d.insetX0_ + 230, d.insetY0_ + 44});  // plan title
    }
}

ChartPoint DemoChart::PlanPainter::Px(double e, double n) const {
    double lat, lon, x = 0, y = 0;
    FromLocal(e, n, lat, lon);
    chart.PlanPixel(f, lat, lon, x, y);
    return ChartPoint{int32_t(std::lround(x)), int32_t(std::lround(y))};
}

void DemoChart::PlanPainter::Text(ChartPoint at, const std::string& s, int points, Rgb colour, bool centred) {
    c.SetFont({"DejaVu Sans", points, false});
    c.SetTextColour(colour);
    int w = c.TextWidth(s), h = c.TextHeight();
    ChartPoint tl = centred ? ChartPoint{at.x - w / 2, at.y - h / 2} : at;
    c.Text(tl, s);
    blocked.push_back({tl.x - 4, tl.y - 4, tl.x + w + 4, tl.y + h + 4});
}

void DemoChart::PlanPainter::Light(ChartPoint at, Rgb colour) {
    c.SetPen({colour, 1, PenStyle::Solid});
    c.SetBrush({colour, BrushStyle::Solid});
    int r = plan == 0 ? 3 : 6;
    c.Ellipse({at.x - r, at.y - r, at.x + r + 1, at.y + r + 1});
    c.SetPen({RgbOf(Magenta), plan == 0 ? 2 : 3, PenStyle::Solid});
    c.Line({at.x + r, at.y - r}, {at.x + 4 * r, at.y - 4 * r});
}

DemoChart::PlanPainter::Marks DemoChart::PlanPainter::HarbourWorks() {
    const double scale = f.PixPerLon / kMainPixPerDeg;  // 1 on the main plan, 4 on the inset
    double ae, an, be, bn;
    Headlands(ae, an, be, bn);
    double ahE = ae + 0.42 * (be - ae), ahN = an + 0.42 * (bn - an);
    double bhE = be + 0.36 * (ae - be), bhN = bn + 0.36 * (an - bn);
    c.SetPen({RgbOf(Black), std::max(2, int(3 * scale)), PenStyle::Solid});
    c.Line(Px(ae + 0.02 * (ae - be), an + 0.02 * (an - bn)), Px(ahE, ahN));
    c.Line(Px(be + 0.02 * (be - ae), bn + 0.02 * (bn - an)), Px(bhE, bhN));
    Light(Px(ahE, ahN), RgbOf(Green));
    Light(Px(bhE, bhN), RgbOf(Red));

    Marks m;
    m.northHead = Px(ahE, ahN);
    m.southHead = Px(bhE, bhN);
    m.quayE = 0.80 * std::cos(kBayAngle);
    m.quayN = 0.80 * std::sin(kBayAngle);
    double te = -std::sin(kBayAngle) * 0.10, tn = std::cos(kBayAngle) * 0.10;
    c.SetPen({RgbOf(Black), std::max(2, int(2 * scale)), PenStyle::Solid});
    c.Line(Px(m.quayE - te, m.quayN - tn), Px(m.quayE + te, m.quayN + tn));

    double lt = kPi / 2 - 0.1;
    double le = (IslandRadius(lt) - 0.05) * std::cos(lt), ln = (IslandRadius(lt) - 0.05) * std::sin(lt);
    ChartPoint lh = Px(le, ln);
    c.SetPen({RgbOf(Black), 1, PenStyle::Solid});
    c.SetBrush({RgbOf(Black), BrushStyle::Solid});
    c.Polygon({{lh.x, lh.y - 7}, {lh.x + 4, lh.y + 4}, {lh.x - 4, lh.y + 4}});
    Light(lh, RgbOf(Magenta));
    m.lighthouse = lh;
    return m;
}

void DemoChart::PlanPainter::Names(const Marks& m) {
    if (plan == 0) {
        Text(Px(0.1, 0.15), "ILE OMBRA", 24, RgbOf(Black), true);
        Text({m.lighthouse.x + 16, m.lighthouse.y - 18}, "Fl(2)15s52m18M", 8, RgbOf(Magenta), false);
        Text(Px(0.1, -0.25), "Port Ombra", 8, RgbOf(Black), true);
        Text(Px(2.25, 2.1), "Ombra Reef", 8, RgbOf(Black), false);
        Text(Px(-3.2, -2.0), "Sud Bank", 8, RgbOf(Black), true);
    } else {
        Text({m.northHead.x + 20, m.northHead.y - 30}, "Fl.G.3s", 12, RgbOf(Green), false);
        Text({m.southHead.x + 20, m.southHead.y - 30}, "Fl.R.3s", 12, RgbOf(Red), false);
        Text(Px(m.quayE - 0.05, m.quayN + 0.09), "Quay", 12, RgbOf(Black), true);
        Text(Px(0.25, -0.45), "PORT OMBRA", 16, RgbOf(Black), true);
    }
}

void DemoChart::PlanPainter::AtPixel(double x, double y, double& coast, double& depth) const {
    double lat, lon, e, n;
    chart.PlanPosition(f, x, y, lat, lon);
    Local(lat, lon, e, n);
    depth = DepthLocal(e, n, coast);
}

bool DemoChart::PlanPainter::Clear(const Rect& box, const Rect& area) const {
    if (box.l < area.l || box.t < area.t || box.r > area.r || box.b > area.b) return false;
    for (auto& b : blocked)
        if (b.Hits(box)) return false;
    for (int k = 0; k < 4; ++k) {
        double coast, depth;
        AtPixel(k % 2 ? box.r : box.l, k / 2 ? box.b : box.t, coast, depth);
        if (coast < 0.03 || depth < 0) return false;
    }
    return true;
}

void DemoChart::PlanPainter::Soundings() {
    const int small = plan == 0 ? 8 : 12;
    const int step = plan == 0 ? 100 : 110;
    const Rect area = plan == 0 ? Rect{kMargin, kMargin, chart.width_ - kMargin, chart.height_ - kMargin}
                                : Rect{chart.insetX0_, chart.insetY0_, chart.insetX1_, chart.insetY1_};
    c.SetFont({"DejaVu Sans", small, false});
    int th = c.TextHeight();
    for (int gy = area.t + step / 2; gy < area.b - th; gy += step)
        for (int gx = area.l + step / 2; gx < area.r - 30; gx += step) {
            uint32_t hsh = Hash(uint32_t(gx) * 73856093u ^ uint32_t(gy) * 19349663u ^ uint32_t(plan));
            int sx = gx + int(hsh % 41) - 20, sy = gy + int((hsh >> 8) % 41) - 20;
            double coast, d;
            AtPixel(sx + 0.5, sy + 0.5, coast, d);
            if (coast < 0.06 || d < 0.3) continue;
            char buf[16];
            if (d < 10) std::snprintf(buf, sizeof buf, "%.1f", std::floor(d * 10) / 10);
            else std::snprintf(buf, sizeof buf, "%d", int(d));
            int w = c.TextWidth(buf);
            Rect box{sx - w / 2 - 2, sy - th / 2 - 2, sx + w / 2 + 2, sy + th / 2 + 2};
            if (Clear(box, area)) Text({sx, sy}, buf, small, RgbOf(Black), true);
        }
}

void DemoChart::DrawPlanFeatures(Canvas& c, const PlanFrame& f, int plan) const {
    PlanPainter p(*this, c, f, plan);
    PlanPainter::Marks marks = p.HarbourWorks();
    p.Names(marks);
    p.Soundings();
}

void DemoChart::DrawCompassRose(Canvas& c) const {
    double lat, lon, x = 0, y = 0;
    FromLocal(-7.5, -5.8, lat, lon);
    PlanPixel(main_, lat, lon, x, y);
    ChartPoint o{int32_t(x), int32_t(y)};
    c.SetBrush({0, BrushStyle::Null});
    c.SetPen({RgbOf(Magenta), 2, PenStyle::Solid});
    c.Ellipse({o.x - 110, o.y - 110, o.x + 111, o.y + 111});
    c.SetPen({RgbOf(Magenta), 1, PenStyle::Solid});
    c.Ellipse({o.x - 80, o.y - 80, o.x + 81, o.y + 81});
    for (int deg = 0; deg < 360; deg += 5) {
        double a = deg * kDegToRad;
        int inner = deg % 30 == 0 ? 92 : deg % 10 == 0 ? 100 : 104;
        c.Line({o.x + int32_t(std::lround(std::sin(a) * inner)), o.y - int32_t(std::lround(std::cos(a) * inner))},
               {o.x + int32_t(std::lround(std::sin(a) * 110)), o.y - int32_t(std::lround(std::cos(a) * 110))});
    }
    c.SetBrush({RgbOf(Magenta), BrushStyle::Solid});
    c.Polygon({{o.x, o.y - 78}, {o.x + 9, o.y}, {o.x, o.y + 78}, {o.x - 9, o.y}});
    c.Polygon({{o.x - 78, o.y}, {o.x, o.y - 9}, {o.x + 78, o.y}, {o.x, o.y + 9}});
    c.SetFont({"DejaVu Sans", 8, false});
    c.SetTextColour(RgbOf(Magenta));
    c.Text({o.x - 2, o.y - 132}, "N");
    c.Text({o.x - 70, o.y + 40}, "VAR 4 30'W 2024");
}

void DemoChart::DrawTitleBlock(Canvas& c) const {
    int l = width_ - kMargin - 540, t = kMargin + 14;
    c.SetPen({RgbOf(Black), 2, PenStyle::Solid});
    c.SetBrush({RgbOf(Deep), BrushStyle::Solid});
    c.Rectangle({l, t, l + 526, t + 166});
    c.SetTextColour(RgbOf(Black));
    c.SetFont({"DejaVu Sans", 16, false});
    c.Text({l + 16, t + 14}, "ILE OMBRA AND APPROACHES");
    c.SetFont({"DejaVu Sans", 8, false});
    const char* lines[] = {"Invented chart for demonstrating the plotter", "NOT FOR NAVIGATION",
                           "Depths and heights in metres, depths below LAT", "Mercator projection, WGS 84 datum",
                           "Scale 1:50 000 at latitude 50 00'N", "Chart 4000   Edition 2024"};
    for (int i = 0; i < 6; ++i) c.Text({l + 16, t + 50 + i * 18}, lines[i]);
}

void DemoChart::DrawInsetFrame(Canvas& c) const {
    c.SetBrush({0, BrushStyle::Null});
    c.SetPen({RgbOf(Black), 3, PenStyle::Solid});
    c.Rectangle({insetX0_ - 1, insetY0_ - 1, insetX1_ + 1, insetY1_ + 1});
    c.SetBrush({RgbOf(Deep), BrushStyle::Solid});
    c.SetPen({RgbOf(Black), 1, PenStyle::Solid});
    c.Rectangle({insetX0_ + 2, insetY0_ + 2, insetX0_ + 226, insetY0_ + 42});
    c.SetTextColour(RgbOf(Black));
    c.SetFont({"DejaVu Sans", 8, false});
    c.Text({insetX0_ + 10, insetY0_ + 8}, "A  PORT OMBRA");
    c.Text({insetX0_ + 10, insetY0_ + 24}, "Scale 1:12 500");
}

// Ticks a minute of longitude along the top and bottom, labelled every five.
void DemoChart::DrawLongitudeScale(Canvas& c, int bottom) const {
    for (int m = 0; m <= 40; ++m) {
        double lon = main_.LonW + m / 60.0, x = 0, y = 0;
        PlanPixel(main_, main_.LatN, lon, x, y);
        int xi = int(std::lround(x)), len = m % 5 == 0 ? 12 : 6;
        c.Line({xi, kMargin - len}, {xi, kMargin});
        c.Line({xi, bottom}, {xi, bottom + len});
        if (m % 5 == 0) {
            int total = int(std::lround(-lon * 60));
            char buf[32];
            std::snprintf(buf, sizeof buf, "%d\xC2\xB0%02d'W", total / 60, total % 60);
            int w = c.TextWidth(buf);
            c.Text({xi - w / 2, kMargin - 34}, buf);
            c.Text({xi - w / 2, bottom + 18}, buf);
        }
    }
}

// Ticks a minute of latitude along the left and right, labelled every five.
void DemoChart::DrawLatitudeScale(Canvas& c, int right) const {
    for (int m = 0; m <= 20; ++m) {
        double lat = main_.LatS + m / 60.0, x = 0, y = 0;
        PlanPixel(main_, lat, main_.LonW, x, y);
        int yi = int(std::lround(y)), len = m % 5 == 0 ? 12 : 6;
        c.Line({kMargin - len, yi}, {kMargin, yi});
        c.Line({right, yi}, {right + len, yi});
        if (m % 5 == 0) {
            int total = int(std::lround(lat * 60));
            char buf[32];
            std::snprintf(buf, sizeof buf, "%d\xC2\xB0%02d'N", total / 60, total % 60);
            c.Text({2, yi - 20}, buf);
            c.Text({right + 14, yi - 20}, buf);
        }
    }
}

void DemoChart::DrawBorder(Canvas& c) const {
    const int right = MainRight(), bottom = height_ - kMargin;
    c.SetBrush({0, BrushStyle::Null});
    c.SetPen({RgbOf(Black), 2, PenStyle::Solid});
    c.Rectangle({kMargin - 1, kMargin - 1, right + 1, bottom + 1});
    c.SetPen({RgbOf(Black), 1, PenStyle::Solid});
    c.Rectangle({kMargin - 12, kMargin - 12, right + 12, bottom + 12});
    c.SetFont({"DejaVu Sans", 8, false});
    c.SetTextColour(RgbOf(Black));
    DrawLongitudeScale(c, bottom);
    DrawLatitudeScale(c, right);
}

void DemoChart::PaintOverlay(Canvas& c) const {
    // Main plan features, kept inside its neat line and off the inset.
    c.SetClip({kMargin, kMargin, MainRight(), height_ - kMargin});
    DrawPlanFeatures(c, main_, 0);
    DrawCompassRose(c);
    DrawTitleBlock(c);
    c.ClearClip();

    // Inset: its features, then its frame and title.
    c.SetClip({insetX0_, insetY0_, insetX1_, insetY1_});
    DrawPlanFeatures(c, inset_, 1);
    c.ClearClip();
    DrawInsetFrame(c);

    DrawBorder(c);
}

bool DemoChart::ToIndexed(const Image& img, IndexedChartImage& out, std::string& error) const {
    if (img.width != width_ || img.height != height_) {
        error = "the picture is not the demo chart's size";
        return false;
    }
    std::unordered_map<uint32_t, uint8_t> index;
    for (int i = 0; i < Count; ++i) index[Argb(Colour(i))] = uint8_t(i);
    out = IndexedChartImage{};
    out.Width = width_;
    out.Height = height_;
    out.Pixels.resize(img.pixels.size());
    for (size_t i = 0; i < img.pixels.size(); ++i) {
        auto it = index.find(img.pixels[i] | 0xFF000000u);
        if (it == index.end()) {
            error = "a pixel of the demo chart has a colour outside its palette";
            return false;
        }
        out.Pixels[i] = it->second;
    }
    for (int i = 0; i < Count; ++i) {
        PaletteColour pc;
        pc.Day = RgbOf(Colour(i));
        pc.Kind = kPal[i].kind;
        pc.Twilight = MakeRgb(kPal[i].r * 55 / 100, kPal[i].g * 55 / 100, kPal[i].b * 55 / 100);
        pc.Night = MakeRgb(kPal[i].r * 18 / 100, kPal[i].g * 18 / 100, kPal[i].b * 20 / 100);
        out.Palette.push_back(pc);
    }
    // Lines and text stay readable at night: light on dark.
    out.Palette[Black].Twilight = MakeRgb(20, 20, 20);
    out.Palette[Black].Night = MakeRgb(150, 150, 150);
    out.Palette[ContourLine].Night = MakeRgb(60, 80, 120);
    out.Palette[Magenta].Night = MakeRgb(130, 40, 110);

    for (const PlanFrame* f : {&main_, &inset_}) {
        PlanGeorefSource s;
        s.Projection = ProjectionKind::Mercator;
        s.CentralMeridian = kLon0;
        for (double fy : {0.0, 0.5, 1.0})
            for (double fx : {0.0, 0.5, 1.0}) {
                double lat = f->LatN + (f->LatS - f->LatN) * fy, lon = f->LonW + (f->LonE - f->LonW) * fx, x, y;
                PlanPixel(*f, lat, lon, x, y);
                s.Refs.push_back({x, y, lat, lon});
            }
        s.Outline = {{f->LatN, f->LonW}, {f->LatN, f->LonE}, {f->LatS, f->LonE}, {f->LatS, f->LonW}};
        s.HasShift = true;
        out.Plans.push_back(s);
    }
    return true;
}

ImportedChart DemoChart::Metadata() const {
    ImportedChart m;
    m.Number = Number;
    m.Title = "ILE OMBRA AND APPROACHES";
    m.EditionDate = "20240601";
    m.Country = "GB";
    m.Plans.resize(2);
    m.Plans[0].Title = "Ile Ombra and Approaches";
    m.Plans[0].Scale = "50000";
    m.Plans[1].Title = "Port Ombra";
    m.Plans[1].Scale = "12500";
    for (auto& p : m.Plans) {
        p.HorizDatum = "WGD";
        p.DepthUnits = "1";
        p.DepthDatum = "11";
    }
    m.Notes = {"Ile Ombra and its waters are invented: this chart exists to demonstrate the plotter.",
               "Depths are in metres below Lowest Astronomical Tide; heights in metres above MHWS.",
               "Positions are referred to WGS 84; no shift is needed for satellite positions.",
               "Ombra Reef, 2.5 miles north-east of the island, dries."};
    return m;
}

std::string DemoChart::SpecialWarnings() const { return "Invented chart for demonstration. NOT FOR NAVIGATION."; }

}  // namespace ombra
