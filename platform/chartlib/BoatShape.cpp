#include "platform/chartlib/BoatShape.h"

#include <algorithm>
#include <cmath>

#include "core/Angles.h"
#include "core/Val.h"

namespace ombra::chartlib {

BoatShape DefaultBoat() {
    return BoatShape{{{0, 8.5}, {2.1, 4}, {2.0, -3}, {1.4, -3.5}, {-1.4, -3.5}, {-2.0, -3}, {-2.1, 4}}};
}

bool ParseBoatOutline(std::string_view text, BoatShape& shape, std::string& error) {
    BoatShape s;
    size_t start = 0;
    int line = 0;
    while (start < text.size()) {
        size_t e = text.find('\n', start);
        std::string l = Trim(text.substr(start, e == std::string_view::npos ? std::string_view::npos : e - start));
        start = e == std::string_view::npos ? text.size() : e + 1;
        ++line;
        if (l.empty() || l[0] == '#' || l[0] == '!') continue;
        if (UCase(l).rfind("LENGTH", 0) == 0) continue;
        size_t c = l.find(',');
        if (c == std::string::npos || !IsNumeric(l.substr(0, c)) || !IsNumeric(l.substr(c + 1))) {
            error = "line " + std::to_string(line) + " is not a point \"x,y\"";
            return false;
        }
        double x = Val(l.substr(0, c)), y = Val(l.substr(c + 1));
        if (!std::isfinite(x) || !std::isfinite(y) || std::fabs(x) > 500 || std::fabs(y) > 500) {
            error = "line " + std::to_string(line) + " lies too far from the vessel";
            return false;
        }
        if (s.Points.size() >= 500) {
            error = "the outline has more than 500 points";
            return false;
        }
        s.Points.emplace_back(x, y);
    }
    if (s.Points.size() < 3) {
        error = "the outline has fewer than 3 points";
        return false;
    }
    shape = std::move(s);
    return true;
}

std::vector<ChartPoint> BoatPolygon(const BoatShape& shape, ChartPoint at, double screenAngle, double pixelsPerMetre) {
    double minY = 1e9, maxY = -1e9;
    for (auto& p : shape.Points) {
        minY = std::min(minY, p.second);
        maxY = std::max(maxY, p.second);
    }
    double length = std::max(maxY - minY, 0.1);
    double ppm = std::isfinite(pixelsPerMetre) && pixelsPerMetre > 0 ? pixelsPerMetre : 0;
    if (length * ppm < kMinBoatPixels) ppm = kMinBoatPixels / length;
    ppm = std::min(ppm, 4000.0 / length);
    double a = screenAngle * kDegToRad, c = std::cos(a), s = std::sin(a);
    std::vector<ChartPoint> out;
    for (auto& p : shape.Points) {
        double x = p.first * ppm, y = p.second * ppm;
        out.push_back({int32_t(std::lround(at.x + x * c + y * s)), int32_t(std::lround(at.y + x * s - y * c))});
    }
    return out;
}

}  // namespace ombra::chartlib
