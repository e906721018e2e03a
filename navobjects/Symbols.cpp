#include "navobjects/Symbols.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <map>
#include <vector>

#include "core/Paths.h"
#include "core/Val.h"

namespace ombra {

const char* const kSymbolNames[kSymbolCount] = {
    "Circle",          "Square",          "Estimated Position", "Anchorage",      "Marina",
    "Danger",          "Dangerous Wreck", "North Cardinal",     "East Cardinal",  "South Cardinal",
    "West Cardinal",   "Light NE",        "Light SW",           "Light Float",    "Port Pillar",
    "Starboard Pillar", "Safe Water",     "Yellow Buoy",        "Fishing Ground", "Scuba Diving",
    "Diver Down",      "Port",            "Starboard",          "Point",          "Red Circle",
    "Red Square",      "Red Cross",       "North",              "North East",     "East",
    "South East",      "South",           "South West",         "West",           "North West",
    "Alter Course",    "Man Overboard"};

namespace {

constexpr uint32_t kClear = 0x00000000u;
constexpr uint32_t kBlack = 0xFF000000u;
constexpr uint32_t kWhite = 0xFFFFFFFFu;
constexpr uint32_t kRed = 0xFFE00000u;
constexpr uint32_t kGreen = 0xFF00A000u;
constexpr uint32_t kYellow = 0xFFF0D000u;
constexpr uint32_t kMagenta = 0xFFC000C0u;
constexpr uint32_t kBlue = 0xFF0040E0u;
constexpr uint32_t kActive = 0xFFFF2020u;   // the active strip's ink
constexpr uint32_t kHalo = 0xFFFFE040u;     // and its glow

// A small painter on one 16 x 16 cell; pixels outside are dropped.
struct Cell {
    Image img{kSymbolSize, kSymbolSize, kClear};
    void Px(int x, int y, uint32_t c) {
        if (x >= 0 && y >= 0 && x < kSymbolSize && y < kSymbolSize) img.at(x, y) = c;
    }
    void Line(int x0, int y0, int x1, int y1, uint32_t c) {
        int dx = std::abs(x1 - x0), sx = x0 < x1 ? 1 : -1;
        int dy = -std::abs(y1 - y0), sy = y0 < y1 ? 1 : -1;
        int err = dx + dy;
        for (;;) {
            Px(x0, y0, c);
            if (x0 == x1 && y0 == y1) break;
            int e2 = 2 * err;
            if (e2 >= dy) { err += dy; x0 += sx; }
            if (e2 <= dx) { err += dx; y0 += sy; }
        }
    }
    void Thick(int x0, int y0, int x1, int y1, uint32_t c) {
        Line(x0, y0, x1, y1, c);
        Line(x0 + 1, y0, x1 + 1, y1, c);
    }
    void Ring(double r, uint32_t c, double cx = 7, double cy = 7) {
        for (int y = 0; y < kSymbolSize; ++y)
            for (int x = 0; x < kSymbolSize; ++x) {
                double d = std::hypot(x - cx, y - cy);
                if (d > r - 0.75 && d < r + 0.45) Px(x, y, c);
            }
    }
    void Disc(double r, uint32_t c, double cx = 7, double cy = 7) {
        for (int y = 0; y < kSymbolSize; ++y)
            for (int x = 0; x < kSymbolSize; ++x)
                if (std::hypot(x - cx, y - cy) <= r + 0.2) Px(x, y, c);
    }
    void Box(int x0, int y0, int x1, int y1, uint32_t c) {
        Line(x0, y0, x1, y0, c);
        Line(x1, y0, x1, y1, c);
        Line(x1, y1, x0, y1, c);
        Line(x0, y1, x0, y0, c);
    }
    void Fill(int x0, int y0, int x1, int y1, uint32_t c) {
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) Px(x, y, c);
    }
    void Tri(double ax, double ay, double bx, double by, double cx, double cy, uint32_t c) {
        auto side = [](double px, double py, double qx, double qy, double rx, double ry) {
            return (px - rx) * (qy - ry) - (qx - rx) * (py - ry);
        };
        for (int y = 0; y < kSymbolSize; ++y)
            for (int x = 0; x < kSymbolSize; ++x) {
                double d1 = side(x, y, ax, ay, bx, by), d2 = side(x, y, bx, by, cx, cy), d3 = side(x, y, cx, cy, ax, ay);
                bool neg = d1 < 0 || d2 < 0 || d3 < 0, pos = d1 > 0 || d2 > 0 || d3 > 0;
                if (!(neg && pos)) Px(x, y, c);
            }
    }
    // An arrow from the centre towards compass direction `deg`.
    void Arrow(double deg, uint32_t c) {
        double a = deg * 3.14159265358979 / 180.0;
        double ux = std::sin(a), uy = -std::cos(a);
        int tx = int(std::lround(7 + 6 * ux)), ty = int(std::lround(7 + 6 * uy));
        int bx = int(std::lround(7 - 6 * ux)), by = int(std::lround(7 - 6 * uy));
        Thick(bx, by, tx, ty, c);
        double hx = 7 + 1.5 * ux, hy = 7 + 1.5 * uy;
        Tri(7 + 7 * ux, 7 + 7 * uy, hx - 3.5 * uy, hy + 3.5 * ux, hx + 3.5 * uy, hy - 3.5 * ux, c);
    }
    // Draws a one-pixel outline of `c` around everything painted so far,
    // so that a symbol reads on dark and light charts alike.
    void Outline(uint32_t c) {
        Image copy = img;
        for (int y = 0; y < kSymbolSize; ++y)
            for (int x = 0; x < kSymbolSize; ++x) {
                if (copy.at(x, y) != kClear) continue;
                bool near = false;
                for (int dy = -1; dy <= 1 && !near; ++dy)
                    for (int dx = -1; dx <= 1 && !near; ++dx) {
                        int nx = x + dx, ny = y + dy;
                        if (nx >= 0 && ny >= 0 && nx < kSymbolSize && ny < kSymbolSize && copy.at(nx, ny) != kClear &&
                            copy.at(nx, ny) != c)
                            near = true;
                    }
                if (near) img.at(x, y) = c;
            }
    }
};

void Cardinal(Cell& s, bool topUp, bool bottomUp, uint32_t ink) {
    // Two cones on a pillar: black over yellow, as the marks themselves.
    s.Fill(5, 10, 9, 15, kYellow);
    s.Fill(5, 12, 9, 13, kBlack);
    if (topUp) s.Tri(7, 0, 3, 4, 11, 4, ink);
    else s.Tri(3, 0, 11, 0, 7, 4, ink);
    if (bottomUp) s.Tri(7, 5, 3, 9, 11, 9, ink);
    else s.Tri(3, 5, 11, 5, 7, 9, ink);
}

// The colours one strip draws with: the active strip draws its own marks
// in kActive, and its red and green ones too.
struct Inks {
    uint32_t ink, light, red, green;
};

using Art = void (*)(Cell& s, const Inks& k);

void Anchor(Cell& s, const Inks& k) {
    s.Ring(1.5, k.ink, 7, 2); s.Line(7, 4, 7, 13, k.ink); s.Line(4, 6, 10, 6, k.ink);
    s.Line(2, 10, 5, 13, k.ink); s.Line(5, 13, 9, 13, k.ink); s.Line(9, 13, 12, 10, k.ink);
    s.Px(2, 9, k.ink); s.Px(12, 9, k.ink);
}

// Twelve dots on an ellipse of radii rx, ry round the centre.
void DottedRing(Cell& s, double rx, double ry, uint32_t c) {
    for (int i = 0; i < 12; ++i) {
        double a = i * 3.14159265358979 / 6;
        s.Px(int(std::lround(7 + rx * std::cos(a))), int(std::lround(7 + ry * std::sin(a))), c);
    }
}

void SafeWater(Cell& s, const Inks& k) {
    s.Disc(5.5, kWhite);
    for (int x = 2; x <= 12; x += 4)
        for (int y = 0; y < 16; ++y)
            if (std::hypot(x - 7, y - 7) <= 5.7) { s.Px(x, y, kRed); s.Px(x + 1, y, kRed); }
    s.Ring(6, k.ink);
}

void Fish(Cell& s, const Inks& k) {
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            if (std::pow((x - 6) / 5.0, 2) + std::pow((y - 7) / 3.0, 2) <= 1.0) s.Px(x, y, k.ink);
    s.Tri(10, 7, 14, 3, 14, 11, k.ink); s.Px(3, 6, kWhite);
}

void ManOverboard(Cell& s, const Inks& k) {
    s.Ring(6, kRed); s.Ring(5, kWhite); s.Ring(4.2, kRed);
    s.Disc(1.2, k.ink, 7, 4); s.Line(7, 5, 7, 9, k.ink); s.Line(4, 6, 10, 6, k.ink);
    s.Line(7, 9, 5, 12, k.ink); s.Line(7, 9, 9, 12, k.ink);
}

// The art of each symbol, by its number (kSymbolNames has the names).
const Art kArt[kSymbolCount] = {
    [](Cell& s, const Inks& k) { s.Ring(5.5, k.ink); s.Ring(4.5, k.ink); },
    [](Cell& s, const Inks& k) { s.Box(2, 2, 12, 12, k.ink); s.Box(3, 3, 11, 11, k.ink); },
    [](Cell& s, const Inks& k) {  // estimated position: a triangle round a dot
        s.Line(7, 1, 1, 12, k.ink); s.Line(1, 12, 13, 12, k.ink); s.Line(13, 12, 7, 1, k.ink); s.Fill(6, 7, 8, 9, k.ink);
    },
    Anchor,
    [](Cell& s, const Inks& k) {  // marina: a yacht
        s.Tri(7, 1, 7, 10, 12, 10, k.ink); s.Tri(6, 3, 6, 10, 2, 10, k.ink);
        s.Line(1, 12, 13, 12, k.ink); s.Line(2, 13, 12, 13, k.ink);
    },
    [](Cell& s, const Inks& k) {  // danger: a dotted ring round a cross
        DottedRing(s, 6, 6, k.ink);
        s.Line(4, 7, 10, 7, k.ink); s.Line(7, 4, 7, 10, k.ink);
    },
    [](Cell& s, const Inks& k) {  // dangerous wreck: hull and masts in a dotted ring
        DottedRing(s, 6.5, 5, k.ink);
        s.Line(2, 7, 12, 7, k.ink); s.Line(5, 5, 5, 9, k.ink); s.Line(7, 4, 7, 10, k.ink); s.Line(9, 5, 9, 9, k.ink);
    },
    [](Cell& s, const Inks& k) { Cardinal(s, true, true, k.ink); },
    [](Cell& s, const Inks& k) { Cardinal(s, true, false, k.ink); },
    [](Cell& s, const Inks& k) { Cardinal(s, false, false, k.ink); },
    [](Cell& s, const Inks& k) { Cardinal(s, false, true, k.ink); },
    [](Cell& s, const Inks& k) {  // light flare towards the north-east
        s.Tri(7, 7, 14, 1, 11, 0, k.light); s.Tri(7, 7, 15, 3, 14, 1, k.light); s.Disc(1.5, k.ink);
    },
    [](Cell& s, const Inks& k) { s.Tri(7, 7, 0, 13, 3, 14, k.light); s.Tri(7, 7, 0, 13, 1, 11, k.light); s.Disc(1.5, k.ink); },
    [](Cell& s, const Inks& k) {  // light float: hull and flare
        s.Fill(2, 10, 12, 12, k.ink); s.Line(7, 10, 7, 5, k.ink); s.Tri(7, 5, 13, 0, 10, 0, k.light);
    },
    [](Cell& s, const Inks& k) { s.Fill(5, 2, 9, 13, k.red); s.Line(3, 14, 11, 14, k.ink); },
    [](Cell& s, const Inks& k) { s.Fill(5, 2, 9, 13, k.green); s.Line(3, 14, 11, 14, k.ink); },
    SafeWater,
    [](Cell& s, const Inks& k) { s.Disc(5.5, kYellow); s.Ring(6, k.ink); },
    Fish,
    [](Cell& s, const Inks& k) {  // scuba diving: the blue and white flag
        s.Fill(1, 3, 6, 12, kWhite); s.Tri(7, 3, 14, 3, 10, 7, kBlue); s.Tri(7, 12, 14, 12, 10, 8, kBlue);
        s.Fill(7, 3, 9, 12, kBlue); s.Box(1, 3, 14, 12, k.ink);
    },
    [](Cell& s, const Inks& k) {  // diver down: red with a white diagonal
        s.Fill(1, 2, 13, 12, kRed); s.Thick(1, 2, 12, 12, kWhite); s.Box(1, 2, 13, 12, k.ink);
    },
    [](Cell& s, const Inks& k) { s.Fill(4, 3, 10, 12, k.red); s.Box(4, 3, 10, 12, k.ink); },
    [](Cell& s, const Inks& k) { s.Tri(7, 1, 2, 12, 12, 12, k.green); s.Line(2, 13, 12, 13, k.ink); },
    [](Cell& s, const Inks& k) { s.Disc(2.2, k.ink); },
    [](Cell& s, const Inks& k) { s.Disc(5.5, k.red); },
    [](Cell& s, const Inks& k) { s.Fill(2, 2, 12, 12, k.red); },
    [](Cell& s, const Inks& k) { s.Thick(2, 2, 11, 11, k.red); s.Thick(2, 12, 11, 3, k.red); },
    [](Cell& s, const Inks& k) { s.Arrow(0, k.ink); },
    [](Cell& s, const Inks& k) { s.Arrow(45, k.ink); },
    [](Cell& s, const Inks& k) { s.Arrow(90, k.ink); },
    [](Cell& s, const Inks& k) { s.Arrow(135, k.ink); },
    [](Cell& s, const Inks& k) { s.Arrow(180, k.ink); },
    [](Cell& s, const Inks& k) { s.Arrow(225, k.ink); },
    [](Cell& s, const Inks& k) { s.Arrow(270, k.ink); },
    [](Cell& s, const Inks& k) { s.Arrow(315, k.ink); },
    [](Cell& s, const Inks& k) {  // alter course: a bent arrow
        s.Thick(3, 14, 3, 6, k.ink); s.Thick(3, 6, 10, 6, k.ink); s.Tri(14, 6, 10, 2, 10, 10, k.ink);
    },
    ManOverboard,
};

}  // namespace

Image SymbolArt(int icon, bool active) {
    Cell s;
    const Inks inks{active ? kActive : kBlack, active ? kActive : kMagenta, active ? kActive : kRed,
                    active ? kActive : kGreen};
    if (icon >= 0 && icon < kSymbolCount) kArt[icon](s, inks);
    // The active strip glows, so the destination stands out from its kin.
    s.Outline(active ? kHalo : kWhite);
    return s.img;
}

SymbolStrips::SymbolStrips() {
    for (int i = 0; i < kSymbolCount; ++i) {
        normal_[size_t(i)] = SymbolArt(i, false);
        active_[size_t(i)] = SymbolArt(i, true);
    }
}

const Image& SymbolStrips::Cell(int16_t icon, bool active) const {
    size_t i = (icon < 0 || icon >= kSymbolCount) ? 0 : size_t(icon);
    return active ? active_[i] : normal_[i];
}

Image SymbolStrips::Strip(bool active) const {
    Image out(kSymbolSize * kSymbolCount, kSymbolSize, kClear);
    for (int i = 0; i < kSymbolCount; ++i) {
        const Image& c = active ? active_[size_t(i)] : normal_[size_t(i)];
        for (int y = 0; y < kSymbolSize; ++y)
            for (int x = 0; x < kSymbolSize; ++x) out.at(i * kSymbolSize + x, y) = c.at(x, y);
    }
    return out;
}

std::string SymbolStrips::Text() const {
    // Codes for the colours in use, in order of first appearance.
    const char* codes = ".KWRGYMBabcdefghijklmnopqrstuvwxyz0123456789";
    std::map<uint32_t, char> code;
    std::string body;
    for (int s = 0; s < 2; ++s) {
        Image strip = Strip(s == 1);
        body += s == 0 ? "strip normal\n" : "strip active\n";
        for (int y = 0; y < strip.height; ++y) {
            for (int x = 0; x < strip.width; ++x) {
                uint32_t c = strip.at(x, y);
                if ((c >> 24) == 0) c = 0;
                auto it = code.find(c);
                if (it == code.end()) {
                    char k = code.size() < 45 ? codes[code.size()] : '?';
                    if (c == 0) k = '.';
                    it = code.emplace(c, k).first;
                }
                body += it->second;
            }
            body += '\n';
        }
    }
    std::string head = "OMBRA-SYMBOLS 1\nsize 16 count 37\n";
    std::vector<std::pair<char, uint32_t>> byCode;
    for (auto& [c, k] : code) byCode.push_back({k, c});
    std::sort(byCode.begin(), byCode.end());
    for (auto& [k, c] : byCode) {
        char line[32];
        std::snprintf(line, sizeof line, "colour %c %08x\n", k, c);
        head += line;
    }
    return head + body;
}

bool SymbolStrips::Parse(const std::string& text, std::string* why) {
    auto fail = [&](int line, const std::string& what) {
        if (why) *why = "line " + std::to_string(line) + ": " + what;
        return false;
    };
    std::vector<std::string> lines;
    size_t b = 0;
    while (b < text.size() && lines.size() < 100) {
        size_t e = text.find('\n', b);
        if (e == std::string::npos) e = text.size();
        std::string l = text.substr(b, e - b);
        if (!l.empty() && l.back() == '\r') l.pop_back();
        lines.push_back(l);
        if (e == text.size()) break;
        b = e + 1;
    }
    size_t n = 0;
    if (n >= lines.size() || Trim(lines[n]) != "OMBRA-SYMBOLS 1") return fail(1, "not a symbol file");
    ++n;
    if (n >= lines.size() || Trim(lines[n]) != "size 16 count 37") return fail(2, "expected \"size 16 count 37\"");
    ++n;
    std::map<char, uint32_t> colours;
    while (n < lines.size() && lines[n].rfind("colour ", 0) == 0) {
        const std::string& l = lines[n];
        if (l.size() != 17 || l[8] != ' ') return fail(int(n + 1), "a colour line is \"colour C AARRGGBB\"");
        uint32_t v = 0;
        for (size_t i = 9; i < 17; ++i) {
            char c = l[i];
            int d = (c >= '0' && c <= '9') ? c - '0' : (c >= 'a' && c <= 'f') ? c - 'a' + 10 : (c >= 'A' && c <= 'F') ? c - 'A' + 10 : -1;
            if (d < 0) return fail(int(n + 1), "a colour is eight hexadecimal digits");
            v = v * 16 + uint32_t(d);
        }
        colours[l[7]] = v;
        ++n;
    }
    std::array<Image, kSymbolCount> strips[2];
    for (int s = 0; s < 2; ++s) {
        const char* head = s == 0 ? "strip normal" : "strip active";
        if (n >= lines.size() || Trim(lines[n]) != head) return fail(int(n + 1), std::string("expected \"") + head + "\"");
        ++n;
        for (int i = 0; i < kSymbolCount; ++i) strips[s][size_t(i)] = Image(kSymbolSize, kSymbolSize, 0);
        for (int y = 0; y < kSymbolSize; ++y, ++n) {
            if (n >= lines.size()) return fail(int(n + 1), "the strip ends early");
            const std::string& row = lines[n];
            if (row.size() != size_t(kSymbolSize * kSymbolCount)) return fail(int(n + 1), "a row is 592 codes");
            for (int x = 0; x < kSymbolSize * kSymbolCount; ++x) {
                auto it = colours.find(row[size_t(x)]);
                if (it == colours.end()) return fail(int(n + 1), std::string("unknown code '") + row[size_t(x)] + "'");
                strips[s][size_t(x / kSymbolSize)].at(x % kSymbolSize, y) = it->second;
            }
        }
    }
    normal_ = strips[0];
    active_ = strips[1];
    return true;
}

bool SymbolStrips::Load(const std::string& path, std::string* why) {
    std::string err;
    auto text = ReadWholeFile(ResolvePath(path), &err);
    if (!text) {
        if (why) *why = err.empty() ? "cannot be read" : err;
        return false;
    }
    if (text->size() > 200000) {
        if (why) *why = "too large for a symbol file";
        return false;
    }
    return Parse(*text, why);
}

}  // namespace ombra
