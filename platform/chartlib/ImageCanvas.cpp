#include "platform/chartlib/ImageCanvas.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ombra::chartlib {

namespace {

struct Glyph {
    uint32_t cp;
    uint8_t rows[7];
};

// 5 x 7 glyphs, bit 4 the leftmost column.
const Glyph kGlyphs[] = {
    {' ', {0, 0, 0, 0, 0, 0, 0}},
    {'0', {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E}}, {'1', {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E}},
    {'2', {0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F}}, {'3', {0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E}},
    {'4', {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}}, {'5', {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E}},
    {'6', {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E}}, {'7', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08}},
    {'8', {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}}, {'9', {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C}},
    {'A', {0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}}, {'B', {0x1E, 0x11, 0x11, 0x1E, 0x11, 0x11, 0x1E}},
    {'C', {0x0E, 0x11, 0x10, 0x10, 0x10, 0x11, 0x0E}}, {'D', {0x1C, 0x12, 0x11, 0x11, 0x11, 0x12, 0x1C}},
    {'E', {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x1F}}, {'F', {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x10}},
    {'G', {0x0E, 0x11, 0x10, 0x17, 0x11, 0x11, 0x0F}}, {'H', {0x11, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}},
    {'I', {0x0E, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0E}}, {'J', {0x07, 0x02, 0x02, 0x02, 0x02, 0x12, 0x0C}},
    {'K', {0x11, 0x12, 0x14, 0x18, 0x14, 0x12, 0x11}}, {'L', {0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x1F}},
    {'M', {0x11, 0x1B, 0x15, 0x15, 0x11, 0x11, 0x11}}, {'N', {0x11, 0x11, 0x19, 0x15, 0x13, 0x11, 0x11}},
    {'O', {0x0E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}}, {'P', {0x1E, 0x11, 0x11, 0x1E, 0x10, 0x10, 0x10}},
    {'Q', {0x0E, 0x11, 0x11, 0x11, 0x15, 0x12, 0x0D}}, {'R', {0x1E, 0x11, 0x11, 0x1E, 0x14, 0x12, 0x11}},
    {'S', {0x0F, 0x10, 0x10, 0x0E, 0x01, 0x01, 0x1E}}, {'T', {0x1F, 0x04, 0x04, 0x04, 0x04, 0x04, 0x04}},
    {'U', {0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}}, {'V', {0x11, 0x11, 0x11, 0x11, 0x11, 0x0A, 0x04}},
    {'W', {0x11, 0x11, 0x11, 0x15, 0x15, 0x15, 0x0A}}, {'X', {0x11, 0x11, 0x0A, 0x04, 0x0A, 0x11, 0x11}},
    {'Y', {0x11, 0x11, 0x11, 0x0A, 0x04, 0x04, 0x04}}, {'Z', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x10, 0x1F}},
    {'a', {0x00, 0x00, 0x0E, 0x01, 0x0F, 0x11, 0x0F}}, {'b', {0x10, 0x10, 0x16, 0x19, 0x11, 0x11, 0x1E}},
    {'c', {0x00, 0x00, 0x0E, 0x10, 0x10, 0x11, 0x0E}}, {'d', {0x01, 0x01, 0x0D, 0x13, 0x11, 0x11, 0x0F}},
    {'e', {0x00, 0x00, 0x0E, 0x11, 0x1F, 0x10, 0x0E}}, {'f', {0x06, 0x09, 0x08, 0x1C, 0x08, 0x08, 0x08}},
    {'g', {0x00, 0x0F, 0x11, 0x11, 0x0F, 0x01, 0x0E}}, {'h', {0x10, 0x10, 0x16, 0x19, 0x11, 0x11, 0x11}},
    {'i', {0x04, 0x00, 0x0C, 0x04, 0x04, 0x04, 0x0E}}, {'j', {0x02, 0x00, 0x06, 0x02, 0x02, 0x12, 0x0C}},
    {'k', {0x10, 0x10, 0x12, 0x14, 0x18, 0x14, 0x12}}, {'l', {0x0C, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0E}},
    {'m', {0x00, 0x00, 0x1A, 0x15, 0x15, 0x11, 0x11}}, {'n', {0x00, 0x00, 0x16, 0x19, 0x11, 0x11, 0x11}},
    {'o', {0x00, 0x00, 0x0E, 0x11, 0x11, 0x11, 0x0E}}, {'p', {0x00, 0x00, 0x1E, 0x11, 0x1E, 0x10, 0x10}},
    {'q', {0x00, 0x00, 0x0D, 0x13, 0x0F, 0x01, 0x01}}, {'r', {0x00, 0x00, 0x16, 0x19, 0x10, 0x10, 0x10}},
    {'s', {0x00, 0x00, 0x0E, 0x10, 0x0E, 0x01, 0x1E}}, {'t', {0x08, 0x08, 0x1C, 0x08, 0x08, 0x09, 0x06}},
    {'u', {0x00, 0x00, 0x11, 0x11, 0x11, 0x13, 0x0D}}, {'v', {0x00, 0x00, 0x11, 0x11, 0x11, 0x0A, 0x04}},
    {'w', {0x00, 0x00, 0x11, 0x11, 0x15, 0x15, 0x0A}}, {'x', {0x00, 0x00, 0x11, 0x0A, 0x04, 0x0A, 0x11}},
    {'y', {0x00, 0x00, 0x11, 0x11, 0x0F, 0x01, 0x0E}}, {'z', {0x00, 0x00, 0x1F, 0x02, 0x04, 0x08, 0x1F}},
    {'.', {0, 0, 0, 0, 0, 0x0C, 0x0C}}, {',', {0, 0, 0, 0, 0x0C, 0x04, 0x08}},
    {':', {0, 0x0C, 0x0C, 0, 0x0C, 0x0C, 0}}, {';', {0, 0x0C, 0x0C, 0, 0x0C, 0x04, 0x08}},
    {'-', {0, 0, 0, 0x1F, 0, 0, 0}}, {'+', {0, 0x04, 0x04, 0x1F, 0x04, 0x04, 0}},
    {'/', {0, 0x01, 0x02, 0x04, 0x08, 0x10, 0}}, {'(', {0x02, 0x04, 0x08, 0x08, 0x08, 0x04, 0x02}},
    {')', {0x08, 0x04, 0x02, 0x02, 0x02, 0x04, 0x08}}, {'\'', {0x0C, 0x04, 0x08, 0, 0, 0, 0}},
    {'"', {0x0A, 0x0A, 0x0A, 0, 0, 0, 0}}, {'*', {0, 0x04, 0x15, 0x0E, 0x15, 0x04, 0}},
    {'=', {0, 0, 0x1F, 0, 0x1F, 0, 0}}, {'?', {0x0E, 0x11, 0x01, 0x02, 0x04, 0, 0x04}},
    {'!', {0x04, 0x04, 0x04, 0x04, 0x04, 0, 0x04}}, {'_', {0, 0, 0, 0, 0, 0, 0x1F}},
    {'<', {0x02, 0x04, 0x08, 0x10, 0x08, 0x04, 0x02}}, {'>', {0x08, 0x04, 0x02, 0x01, 0x02, 0x04, 0x08}},
    {'%', {0x18, 0x19, 0x02, 0x04, 0x08, 0x13, 0x03}}, {'&', {0x0C, 0x12, 0x14, 0x08, 0x15, 0x12, 0x0D}},
    {'#', {0x0A, 0x0A, 0x1F, 0x0A, 0x1F, 0x0A, 0x0A}}, {'[', {0x0E, 0x08, 0x08, 0x08, 0x08, 0x08, 0x0E}},
    {']', {0x0E, 0x02, 0x02, 0x02, 0x02, 0x02, 0x0E}}, {0xB0, {0x0C, 0x12, 0x12, 0x0C, 0, 0, 0}},
    {0xB4, {0x02, 0x04, 0, 0, 0, 0, 0}},
};
const uint8_t kBox[7] = {0x1F, 0x11, 0x11, 0x11, 0x11, 0x11, 0x1F};

std::vector<uint32_t> CodePoints(const std::string& s) {
    std::vector<uint32_t> out;
    for (size_t i = 0; i < s.size();) {
        unsigned char c = static_cast<unsigned char>(s[i]);
        uint32_t cp = c;
        size_t n = 1;
        if (c >= 0xC0 && c < 0xE0 && i + 1 < s.size()) {
            cp = ((c & 0x1Fu) << 6) | (static_cast<unsigned char>(s[i + 1]) & 0x3Fu);
            n = 2;
        } else if (c >= 0xE0 && c < 0xF0 && i + 2 < s.size()) {
            cp = ((c & 0x0Fu) << 12) | ((static_cast<unsigned char>(s[i + 1]) & 0x3Fu) << 6) |
                 (static_cast<unsigned char>(s[i + 2]) & 0x3Fu);
            n = 3;
        } else if (c >= 0xF0) {
            n = std::min<size_t>(4, s.size() - i);
            cp = '?';
        }
        out.push_back(cp);
        i += n;
    }
    return out;
}

// Dash patterns in units of the pen width: on, off, on, off ...
const std::vector<int>& Pattern(PenStyle s) {
    static const std::vector<int> solid{}, dash{6, 3}, dot{1, 2}, dashDot{6, 2, 1, 2}, dashDotDot{6, 2, 1, 2, 1, 2};
    switch (s) {
    case PenStyle::Dash: return dash;
    case PenStyle::Dot: return dot;
    case PenStyle::DashDot: return dashDot;
    case PenStyle::DashDotDot: return dashDotDot;
    default: return solid;
    }
}

}  // namespace

const uint8_t* GlyphRows(uint32_t cp) {
    for (const Glyph& g : kGlyphs)
        if (g.cp == cp) return g.rows;
    if (cp >= 'a' && cp <= 'z') return GlyphRows(cp - 32);
    return kBox;
}

PixelRect ImageCanvas::Bounds() const {
    PixelRect r{0, 0, img_.width, img_.height};
    if (clipOn_) {
        r.left = std::max(r.left, clip_.left);
        r.top = std::max(r.top, clip_.top);
        r.right = std::min(r.right, clip_.right);
        r.bottom = std::min(r.bottom, clip_.bottom);
    }
    return r;
}

void ImageCanvas::SetClip(const PixelRect& clip) {
    clip_ = clip;
    clipOn_ = true;
}

void ImageCanvas::Plot(int x, int y, Rgb c) {
    PixelRect b = Bounds();
    if (x < b.left || y < b.top || x >= b.right || y >= b.bottom) return;
    img_.at(x, y) = 0xFF000000u | (c & 0xFFFFFFu);
}

void ImageCanvas::Span(int y, int x0, int x1, Rgb c) {
    PixelRect b = Bounds();
    if (y < b.top || y >= b.bottom) return;
    x0 = std::max(x0, b.left);
    x1 = std::min(x1, b.right);
    uint32_t v = 0xFF000000u | (c & 0xFFFFFFu);
    for (int x = x0; x < x1; ++x) img_.at(x, y) = v;
}

void ImageCanvas::Stroke(ChartPoint a, ChartPoint b, int& dashPos) {
    if (pen_.style == PenStyle::Null) return;
    int w = std::max(1, pen_.width);
    const std::vector<int>& pat = Pattern(pen_.style);
    int period = 0;
    for (int p : pat) period += p * w;
    // Lines far outside the picture are cut to it first, so a wild
    // coordinate costs nothing.
    const double lim = 1e5;
    if (std::abs(double(a.x)) > lim || std::abs(double(a.y)) > lim || std::abs(double(b.x)) > lim || std::abs(double(b.y)) > lim) {
        double t0 = 0, t1 = 1, dx = double(b.x) - a.x, dy = double(b.y) - a.y;
        auto clipT = [&](double p, double q) {
            if (p == 0) return q >= 0;
            double r = q / p;
            if (p < 0) t0 = std::max(t0, r);
            else t1 = std::min(t1, r);
            return t0 <= t1;
        };
        double x0 = -2.0 * w, y0 = -2.0 * w, x1 = img_.width + 2.0 * w, y1 = img_.height + 2.0 * w;
        if (!clipT(-dx, a.x - x0) || !clipT(dx, x1 - a.x) || !clipT(-dy, a.y - y0) || !clipT(dy, y1 - a.y)) return;
        ChartPoint na{int32_t(std::lround(a.x + t0 * dx)), int32_t(std::lround(a.y + t0 * dy))};
        ChartPoint nb{int32_t(std::lround(a.x + t1 * dx)), int32_t(std::lround(a.y + t1 * dy))};
        a = na;
        b = nb;
    }
    int x = a.x, y = a.y;
    int dx = std::abs(b.x - a.x), sx = a.x < b.x ? 1 : -1;
    int dy = -std::abs(b.y - a.y), sy = a.y < b.y ? 1 : -1;
    int err = dx + dy;
    int half = (w - 1) / 2;
    while (true) {
        bool on = true;
        if (period > 0) {
            int p = dashPos % period, acc = 0;
            for (size_t i = 0; i < pat.size(); ++i) {
                acc += pat[i] * w;
                if (p < acc) {
                    on = i % 2 == 0;
                    break;
                }
            }
        }
        ++dashPos;
        if (on) {
            if (w == 1) Plot(x, y, pen_.colour);
            else
                for (int yy = y - half; yy < y - half + w; ++yy) Span(yy, x - half, x - half + w, pen_.colour);
        }
        if (x == b.x && y == b.y) break;
        int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y += sy;
        }
    }
}

void ImageCanvas::Line(ChartPoint from, ChartPoint to) {
    int dash = 0;
    Stroke(from, to, dash);
}

void ImageCanvas::Polyline(const std::vector<ChartPoint>& points) {
    int dash = 0;
    for (size_t i = 1; i < points.size(); ++i) Stroke(points[i - 1], points[i], dash);
}

void ImageCanvas::FillPolygonF(const std::vector<std::pair<double, double>>& pts, Rgb colour) {
    if (pts.size() < 3) return;
    PixelRect b = Bounds();
    double minY = 1e18, maxY = -1e18;
    for (auto& p : pts) {
        minY = std::min(minY, p.second);
        maxY = std::max(maxY, p.second);
    }
    int y0 = std::max(b.top, int(std::floor(minY))), y1 = std::min(b.bottom - 1, int(std::ceil(maxY)));
    std::vector<double> xs;
    for (int y = y0; y <= y1; ++y) {
        double cy = y + 0.5;
        xs.clear();
        for (size_t i = 0, j = pts.size() - 1; i < pts.size(); j = i++) {
            double ay = pts[j].second, by = pts[i].second;
            if ((ay <= cy && by > cy) || (by <= cy && ay > cy)) {
                double t = (cy - ay) / (by - ay);
                xs.push_back(pts[j].first + t * (pts[i].first - pts[j].first));
            }
        }
        std::sort(xs.begin(), xs.end());
        for (size_t k = 0; k + 1 < xs.size(); k += 2) {
            double l = std::max(xs[k], double(b.left) - 1.0), r = std::min(xs[k + 1], double(b.right) + 1.0);
            int xa = int(std::ceil(l - 0.5)), xb = int(std::ceil(r - 0.5));
            if (xb > xa) Span(y, xa, xb, colour);
        }
    }
}

void ImageCanvas::Polygon(const std::vector<ChartPoint>& points) {
    if (points.empty()) return;
    if (brush_.style != BrushStyle::Null) {
        std::vector<std::pair<double, double>> f;
        for (auto& p : points) f.emplace_back(p.x + 0.5, p.y + 0.5);
        FillPolygonF(f, brush_.colour);
    }
    std::vector<ChartPoint> ring = points;
    ring.push_back(points.front());
    Polyline(ring);
}

void ImageCanvas::PolyBezier(const std::vector<ChartPoint>& p) {
    if (p.size() < 4) return;
    std::vector<ChartPoint> flat{p[0]};
    for (size_t i = 0; i + 3 < p.size(); i += 3) {
        for (int k = 1; k <= 16; ++k) {
            double t = k / 16.0, u = 1 - t;
            double x = u * u * u * p[i].x + 3 * u * u * t * p[i + 1].x + 3 * u * t * t * p[i + 2].x + t * t * t * p[i + 3].x;
            double y = u * u * u * p[i].y + 3 * u * u * t * p[i + 1].y + 3 * u * t * t * p[i + 2].y + t * t * t * p[i + 3].y;
            flat.push_back({int32_t(std::lround(x)), int32_t(std::lround(y))});
        }
    }
    Polyline(flat);
}

void ImageCanvas::Ellipse(const PixelRect& r) {
    double cx = (double(r.left) + r.right - 1) / 2.0, cy = (double(r.top) + r.bottom - 1) / 2.0;
    double rx = (double(r.right) - r.left - 1) / 2.0, ry = (double(r.bottom) - r.top - 1) / 2.0;
    if (rx < 0 || ry < 0) return;
    PixelRect b = Bounds();
    if (brush_.style != BrushStyle::Null) {
        for (int y = std::max(r.top, b.top); y < std::min(r.bottom, b.bottom); ++y) {
            double dy = ry > 0 ? (y - cy) / ry : 0;
            if (std::fabs(dy) > 1) continue;
            double half = rx * std::sqrt(1 - dy * dy);
            Span(y, int(std::ceil(cx - half)), int(std::floor(cx + half)) + 1, brush_.colour);
        }
    }
    int n = int(std::clamp((rx + ry) * 2, 8.0, 720.0));
    std::vector<ChartPoint> ring;
    for (int i = 0; i <= n; ++i) {
        double a = 2 * M_PI * i / n;
        ring.push_back({int32_t(std::lround(cx + rx * std::cos(a))), int32_t(std::lround(cy + ry * std::sin(a)))});
    }
    Polyline(ring);
}

void ImageCanvas::Rectangle(const PixelRect& r) {
    PixelRect b = Bounds();
    if (brush_.style != BrushStyle::Null)
        for (int y = std::max(r.top, b.top); y < std::min(r.bottom, b.bottom); ++y) Span(y, r.left, r.right, brush_.colour);
    if (r.right > r.left && r.bottom > r.top)
        Polyline({{r.left, r.top}, {r.right - 1, r.top}, {r.right - 1, r.bottom - 1}, {r.left, r.bottom - 1}, {r.left, r.top}});
}

void ImageCanvas::FillRect(const PixelRect& r, Rgb colour) {
    PixelRect b = Bounds();
    for (int y = std::max(r.top, b.top); y < std::min(r.bottom, b.bottom); ++y) Span(y, r.left, r.right, colour);
}

int ImageCanvas::Scale() const { return std::max(1, (font_.pointSize + 4) / 8); }

void ImageCanvas::Text(ChartPoint at, const std::string& utf8) {
    int s = Scale();
    int x = at.x;
    for (uint32_t cp : CodePoints(utf8)) {
        const uint8_t* rows = GlyphRows(cp);
        for (int r = 0; r < 7; ++r)
            for (int c = 0; c < 5; ++c)
                if (rows[r] & (0x10 >> c)) {
                    for (int k = 0; k < s; ++k) {
                        int yy = at.y + s + r * s + k;
                        Span(yy, x + c * s, x + c * s + s + (font_.bold ? 1 : 0), text_);
                    }
                }
        x += 6 * s;
    }
}

int ImageCanvas::TextWidth(const std::string& utf8) { return int(CodePoints(utf8).size()) * 6 * Scale(); }
int ImageCanvas::TextHeight() { return 9 * Scale(); }

void ImageCanvas::Blit(ChartPoint at, const Image& image) {
    PixelRect b = Bounds();
    int y0 = std::max(b.top, at.y), y1 = std::min(b.bottom, at.y + image.height);
    int x0 = std::max(b.left, at.x), x1 = std::min(b.right, at.x + image.width);
    if (x1 <= x0) return;
    for (int y = y0; y < y1; ++y) {
        const uint32_t* src = image.pixels.data() + size_t(y - at.y) * size_t(image.width) + size_t(x0 - at.x);
        std::copy(src, src + (x1 - x0), img_.pixels.data() + size_t(y) * size_t(img_.width) + size_t(x0));
    }
}

}  // namespace ombra::chartlib
