#include "charts/DeviationCurve.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/Val.h"

namespace ombra {

namespace {
constexpr int kMarginLeft = 44, kMarginRight = 18, kMarginTop = 26, kMarginBottom = 36;
}

int DeviationCurveLayout::X(double heading) const {
    return plot.left + int(std::lround(heading / 360.0 * (plot.right - plot.left)));
}

int DeviationCurveLayout::Y(double deviation) const {
    const double half = (plot.bottom - plot.top) / 2.0;
    return zeroY - int(std::lround(deviation / fullScale * half));
}

DeviationCurveLayout LayoutDeviationCurve(const DeviationCard& table, int width, int height) {
    DeviationCurveLayout L;
    L.plot = {kMarginLeft, kMarginTop, std::max(kMarginLeft + 36, width - kMarginRight),
              std::max(kMarginTop + 20, height - kMarginBottom)};
    L.zeroY = (L.plot.top + L.plot.bottom) / 2;
    float largest = 0.0f;
    for (float v : table)
        if (std::isfinite(v)) largest = std::max(largest, std::fabs(v));
    L.fullScale = std::max(1.0f, std::ceil(std::min(largest, 180.0f)));

    std::vector<double> px, py;
    for (int i = 0; i < kDeviationEntries; ++i) {
        const float v = std::isfinite(table[size_t(i)]) ? std::clamp(table[size_t(i)], -L.fullScale, L.fullScale) : 0.0f;
        L.points.push_back({L.X(i * 10.0), L.Y(v)});
        px.push_back(L.points.back().x);
        py.push_back(L.points.back().y);
    }
    // A Catmull-Rom spline through the entries as cubic Bezier spans: the
    // control points of span i-(i+1) lie a sixth of the neighbours' chord
    // away from each end, so the curve passes through every entry with a
    // continuous tangent. The ends take their own point as the missing
    // neighbour.
    auto at = [&](const std::vector<double>& v, int i) { return v[size_t(std::clamp(i, 0, kDeviationEntries - 1))]; };
    auto pixel = [](double x, double y) { return ChartPoint{int(std::lround(x)), int(std::lround(y))}; };
    L.bezier.push_back(L.points[0]);
    for (int i = 0; i + 1 < kDeviationEntries; ++i) {
        L.bezier.push_back(pixel(at(px, i) + (at(px, i + 1) - at(px, i - 1)) / 6.0,
                                 at(py, i) + (at(py, i + 1) - at(py, i - 1)) / 6.0));
        L.bezier.push_back(pixel(at(px, i + 1) - (at(px, i + 2) - at(px, i)) / 6.0,
                                 at(py, i + 1) - (at(py, i + 2) - at(py, i)) / 6.0));
        L.bezier.push_back(L.points[size_t(i) + 1]);
    }
    return L;
}

void DrawDeviationCurve(Canvas& device, const DeviationCard& table) {
    const DeviationCurveLayout L = LayoutDeviationCurve(table, device.Width(), device.Height());
    const std::string degree = "°";
    const int th = device.TextHeight();

    device.FillRect({0, 0, device.Width(), device.Height()}, MakeRgb(255, 255, 255));
    device.SetTextColour(MakeRgb(0, 0, 0));
    // Axes: the heading along the zero line, the deviation up the left.
    device.SetPen({MakeRgb(0, 0, 0), 1, PenStyle::Solid});
    device.Line({L.plot.left, L.plot.top}, {L.plot.left, L.plot.bottom});
    device.Line({L.plot.left, L.zeroY}, {L.plot.right, L.zeroY});
    device.Line({L.plot.left - 3, L.plot.top}, {L.plot.left + 3, L.plot.top});
    device.Line({L.plot.left - 3, L.plot.bottom}, {L.plot.left + 3, L.plot.bottom});
    device.SetPen({MakeRgb(160, 160, 160), 1, PenStyle::Dot});
    for (int h = 90; h <= 360; h += 90) device.Line({L.X(h), L.plot.top}, {L.X(h), L.plot.bottom});

    auto textCentred = [&](int x, int y, const std::string& s) { device.Text({x - device.TextWidth(s) / 2, y}, s); };
    auto textRight = [&](int x, int y, const std::string& s) { device.Text({x - device.TextWidth(s), y}, s); };
    for (int h = 90; h <= 360; h += 90) textCentred(L.X(h), L.plot.bottom + 3, std::to_string(h) + degree);
    textRight(L.plot.left - 5, L.zeroY - th / 2, "0");
    const std::string scale = NumberText(L.fullScale) + degree;
    textRight(L.plot.left - 5, L.plot.top - th / 2, scale);
    textRight(L.plot.left - 5, L.plot.bottom - th / 2, "-" + scale);
    device.Text({L.plot.left + 6, std::max(2, L.plot.top - th - 6)}, "Deviation");
    textCentred((L.plot.left + L.plot.right) / 2, device.Height() - th - 3, "Heading");

    device.SetPen({MakeRgb(200, 0, 0), 2, PenStyle::Solid});
    device.PolyBezier(L.bezier);
}

}  // namespace ombra
