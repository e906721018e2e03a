#include "tests/navobjects/NavFixture.h"

#include "navmath/Deviation.h"

#include <cmath>
#include <sstream>

#include "core/Format.h"
#include "navmath/RLGC.h"

namespace ombra::test {

ChartPoint FakeChart::Pixel(const LatLong& p) const {
    return {int(std::lround((p.Long - originLong) / scale)), int(std::lround((originLat - p.Lat) / scale))};
}

void FakeChart::PrepareNavPoint(NavPoint& p) {
    p.InPlan.assign(size_t(PanelCount()), 0);
    p.Pixel.assign(size_t(PanelCount()), ChartPoint{});
    p.Local = LatLong{p.Wgs84.Long + 3.0, p.Wgs84.Lat - 2.0};  // a chart datum 3" east, 2" south
    if (inset && p.Wgs84.Long >= insetMin.Long && p.Wgs84.Long <= insetMax.Long && p.Wgs84.Lat >= insetMin.Lat &&
        p.Wgs84.Lat <= insetMax.Lat) {
        // The inset sits at chart pixels from (5000, 0), four times the detail.
        p.InPlan[1] = 1;
        p.Pixel[1] = {5000 + int(std::lround((p.Wgs84.Long - insetMin.Long) / (scale / 4))),
                      int(std::lround((insetMax.Lat - p.Wgs84.Lat) / (scale / 4)))};
    } else {
        p.InPlan[0] = 1;
        p.Pixel[0] = Pixel(p.Wgs84);
    }
}

bool FakeChart::ScreenToPosition(ChartPoint s, LatLong& out) {
    if (!open) return false;
    out = LatLong{originLong + s.x * scale, originLat - s.y * scale};
    return true;
}

void FakeChart::Piece(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label) {
    // One panel that holds both ends draws the leg; the label sits at its middle.
    for (size_t p = 0; p < from.InPlan.size() && p < to.InPlan.size(); ++p) {
        if (!from.InPlan[p] || !to.InPlan[p]) continue;
        ChartPoint a = ToScreen(from.Pixel[p]), b = ToScreen(to.Pixel[p]);
        c.Line(a, b);
        if (!label.empty()) c.Text({(a.x + b.x) / 2, (a.y + b.y) / 2}, label);
        return;
    }
}

void FakeChart::DrawRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, bool labelWanted, int16_t courseMode,
                              double variation) {
    double course, dist;
    CourseDistanceRL(from.Wgs84, to.Wgs84, course, dist);
    std::string label;
    if (labelWanted) {
        if (courseMode == 1) label = Format(ShownCourse(course, 1, variation, 0.0), "000") + " °M ";
        else label = Format(course, "000") + " °T ";
        label += Format(dist, "0.000") + " NM RL";
    }
    legs.push_back({"RL", from.Wgs84, to.Wgs84, label, labelWanted});
    Piece(c, from, to, label);
}

void FakeChart::DrawPlainRhumbLine(Canvas& c, const NavPoint& from, const NavPoint& to, const std::string& label) {
    legs.push_back({"Plain", from.Wgs84, to.Wgs84, label, !label.empty()});
    Piece(c, from, to, label);
}

void FakeChart::DrawGreatCircle(Canvas& c, const NavPoint& from, const NavPoint& to, double, double,
                                const std::string& label) {
    legs.push_back({"GC", from.Wgs84, to.Wgs84, label, !label.empty()});
    Piece(c, from, to, label);
}

bool FakeChart::HitLeg(const NavPoint& from, const NavPoint& to, bool, ChartPoint s, float tolerance) {
    for (size_t p = 0; p < from.InPlan.size() && p < to.InPlan.size(); ++p) {
        if (!from.InPlan[p] || !to.InPlan[p]) continue;
        ChartPoint a = ToScreen(from.Pixel[p]), b = ToScreen(to.Pixel[p]);
        double dx = b.x - a.x, dy = b.y - a.y, len2 = dx * dx + dy * dy;
        if (len2 == 0) return false;
        double t = std::clamp(((s.x - a.x) * dx + (s.y - a.y) * dy) / len2, 0.0, 1.0);
        return std::hypot(a.x + t * dx - s.x, a.y + t * dy - s.y) <= tolerance;
    }
    return false;
}

std::vector<std::string> NavWorld::Messages() const {
    std::vector<std::string> out;
    for (const auto& a : dialogs.asked)
        if (a.kind == "MsgBox") out.push_back(a.text);
    return out;
}

std::vector<std::string> NavWorld::Errors() const {
    std::vector<std::string> out;
    for (const std::string& m : Messages())
        if (m.rfind("Error in '", 0) == 0) out.push_back(m);
    return out;
}

std::string NavData(const std::string& rel) { return ReadFile(std::string(OMBRA_TEST_DATA) + "/navobjects/" + rel); }

std::vector<std::string> NavCases(const std::string& rel) {
    std::istringstream in(NavData(rel));
    std::vector<std::string> out;
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != '#') out.push_back(line);
    return out;
}

}  // namespace ombra::test
