#include "tests/charts/ChartFixture.h"

#include <GeographicLib/Constants.hpp>
#include <GeographicLib/Math.hpp>

#include <cmath>

#include "charts/ChartHeader.h"
#include "core/Angles.h"
#include "core/Paths.h"

namespace ombra::test {

namespace {
const double kE = std::sqrt(GeographicLib::Constants::WGS84_f() * (2 - GeographicLib::Constants::WGS84_f()));
double Psi(double lat) { return std::asinh(GeographicLib::Math::taupf(std::tan(lat * kDegToRad), kE)); }
}  // namespace

FixtureChart DefaultFixture() {
    FixtureChart c;
    c.Plans.push_back({50 + 10 / 60.0, 49 + 50 / 60.0, -12 - 20 / 60.0, -12 + 20 / 60.0, 0, 0, c.Width, c.Height, "Main plan"});
    return c;
}

ChartWorld::ChartWorld() { charts.SetRoot(root.path()); }

bool ChartWorld::Install(const FixtureChart& chart, const std::string& issueDate, std::string* why) {
    return InstallFixtureChart(charts, root.path(), chart, issueDate, why);
}

bool InstallFixtureChart(ChartModule& charts, const std::string& root, const FixtureChart& chart,
                         const std::string& issueDate, std::string* why) {
    IndexedChartImage img;
    img.Width = chart.Width;
    img.Height = chart.Height;
    img.Pixels.assign(size_t(chart.Width) * size_t(chart.Height), 0);
    img.Palette = {{MakeRgb(250, 250, 250), MakeRgb(120, 120, 120), MakeRgb(20, 20, 20), '-'},
                   {MakeRgb(255, 255, 255), MakeRgb(140, 140, 140), MakeRgb(30, 30, 40), 'S'},
                   {MakeRgb(240, 220, 160), MakeRgb(130, 120, 90), MakeRgb(40, 35, 20), 'L'},
                   {MakeRgb(200, 226, 247), MakeRgb(110, 120, 130), MakeRgb(25, 30, 40), 'S'},
                   {MakeRgb(0, 0, 0), MakeRgb(20, 20, 20), MakeRgb(150, 150, 150), '-'}};
    ImportedChart meta;
    meta.Number = chart.Number;
    meta.Title = chart.Title;
    meta.Country = "GB";
    for (const FixturePlan& p : chart.Plans) {
        for (int y = std::max(0, p.Y0); y < std::min(chart.Height, p.Y1); ++y)
            for (int x = std::max(0, p.X0); x < std::min(chart.Width, p.X1); ++x)
                img.Pixels[size_t(y) * size_t(chart.Width) + size_t(x)] = p.Colour;
        PlanGeorefSource s;
        s.Projection = ProjectionKind::Mercator;
        double pn = Psi(p.LatN), ps = Psi(p.LatS);
        for (double fx : {0.0, 0.5, 1.0})
            for (double fy : {0.0, 0.5, 1.0}) {
                double lat = std::atan(GeographicLib::Math::tauf(std::sinh(pn - fy * (pn - ps)), kE)) * kRadToDeg;
                s.Refs.push_back({p.X0 + fx * (p.X1 - p.X0), p.Y0 + fy * (p.Y1 - p.Y0), lat, p.LonW + fx * (p.LonE - p.LonW)});
            }
        s.Outline = {{p.LatN, p.LonW}, {p.LatN, p.LonE}, {p.LatS, p.LonE}, {p.LatS, p.LonW}};
        s.HasShift = p.Shift;
        img.Plans.push_back(s);
        ImportedPlan& ip = meta.Plans.emplace_back();
        ip.Title = p.Title;
        ip.Scale = p.Scale;
        ip.HorizDatum = "WGD";
        ip.DepthUnits = "1";
        ip.DepthDatum = "11";
    }
    InstallResult r = charts.Installer.InstallImage(root, img, meta, issueDate, "Test warnings");
    if (why) *why = r.Message;
    return r.Ok;
}

std::string ChartWorld::HeaderPath(const std::string& number) const {
    return NativePath(WithTrailingSlash(root.path()) + ChartHeaderPath(number));
}

std::vector<std::string> ChartWorld::Messages() const {
    std::vector<std::string> out;
    for (auto& a : dialogs.asked)
        if (a.kind == "MsgBox") out.push_back(a.text);
    return out;
}

void SetIssueDate(const std::string& path, const std::string& date) {
    std::string text = ReadFile(path);
    text.replace(13, 8, date);
    WriteFile(path, text);
}

}  // namespace ombra::test
