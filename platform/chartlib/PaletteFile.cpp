#include "platform/chartlib/PaletteFile.h"

#include <algorithm>
#include <cstdio>

#include "core/Val.h"

namespace ombra::chartlib {

namespace {
std::string Fixed(std::string s, size_t n) {
    s.resize(n, ' ');
    return s;
}
bool Hex(std::string_view s, Rgb& out) {
    if (s.size() != 6) return false;
    Rgb v = 0;
    for (char c : s) {
        int d;
        if (c >= '0' && c <= '9') d = c - '0';
        else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
        else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
        else return false;
        v = v * 16 + Rgb(d);
    }
    out = v;
    return true;
}
}  // namespace

std::string ChartFileLine(const std::string& type, const std::string& country, const std::string& number,
                          const std::string& issueDate, const std::string& rest) {
    return Fixed(type, 3) + Fixed(country, 2) + Fixed(number, 8) + Fixed(issueDate, 8) + rest;
}

Rgb Dim(Rgb c, double f) {
    auto ch = [&](int shift) { return int(std::clamp(double((c >> shift) & 255) * f + 0.5, 0.0, 255.0)); };
    return MakeRgb(ch(16), ch(8), ch(0));
}

char GuessKind(Rgb day) {
    int r = int((day >> 16) & 255), g = int((day >> 8) & 255), b = int(day & 255);
    int lo = std::min({r, g, b});
    if (lo >= 120 && b >= r) return 'S';
    if (lo >= 100 && r > b + 20) return 'L';
    return '-';
}

std::string PaletteText(const std::string& fileLine, const std::vector<PaletteColour>& colours) {
    std::string out = fileLine + "\r\n";
    char buf[64];
    for (size_t i = 0; i < colours.size() && i < 256; ++i) {
        const PaletteColour& c = colours[i];
        std::snprintf(buf, sizeof buf, "%zu,%06X,%06X,%06X,%c\r\n", i, unsigned(c.Day & 0xFFFFFF), unsigned(c.Twilight & 0xFFFFFF),
                      unsigned(c.Night & 0xFFFFFF), c.Kind == 'S' || c.Kind == 'L' ? c.Kind : '-');
        out += buf;
    }
    return out;
}

bool ParsePalette(std::string_view text, std::vector<PaletteColour>& colours, std::string& error) {
    colours.clear();
    size_t start = text.find('\n');
    if (start == std::string_view::npos || text.substr(0, 3) != "PAL") {
        error = "not a palette file";
        return false;
    }
    ++start;
    int line = 1;
    while (start < text.size()) {
        size_t e = text.find('\n', start);
        std::string_view l = text.substr(start, e == std::string_view::npos ? std::string_view::npos : e - start);
        start = e == std::string_view::npos ? text.size() : e + 1;
        ++line;
        if (!l.empty() && l.back() == '\r') l.remove_suffix(1);
        if (Trim(l).empty()) continue;
        std::vector<std::string_view> f;
        size_t s = 0;
        while (f.size() < 6) {
            size_t c = l.find(',', s);
            f.push_back(l.substr(s, c == std::string_view::npos ? std::string_view::npos : c - s));
            if (c == std::string_view::npos) break;
            s = c + 1;
        }
        PaletteColour pc;
        if (f.size() != 5 || !IsNumeric(f[0]) || !Hex(f[1], pc.Day) || !Hex(f[2], pc.Twilight) || !Hex(f[3], pc.Night) ||
            f[4].size() != 1) {
            error = "line " + std::to_string(line) + " of the palette cannot be read";
            return false;
        }
        double idx = Val(f[0]);
        if (idx < 0 || idx > 255 || idx != double(int(idx))) {
            error = "line " + std::to_string(line) + " of the palette has an index out of range";
            return false;
        }
        pc.Kind = f[4][0];
        if (colours.size() < size_t(idx) + 1) colours.resize(size_t(idx) + 1);
        colours[size_t(idx)] = pc;
    }
    if (colours.empty()) {
        error = "the palette has no colours";
        return false;
    }
    return true;
}

}  // namespace ombra::chartlib
