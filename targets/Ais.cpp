#include "targets/Ais.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/GenFuncs.h"
#include "core/Registry.h"
#include "navobjects/NavChart.h"
#include "platform/api/Canvas.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kRad = kPi / 180.0;
constexpr Rgb kHeadingColour = MakeRgb(255, 255, 0);
constexpr Rgb kCourseColour = MakeRgb(0, 255, 255);
constexpr Rgb kUnknownColour = MakeRgb(255, 0, 255);
constexpr Rgb kOwnColour = MakeRgb(255, 0, 0);
constexpr double kStopped = 0.1;  // knots
constexpr int kHeadingLine = 18;  // view pixels
constexpr char kCpaCaption[] = "CPA Alarm";

bool Flag(const std::string& text) { return text == "True" || text == "1" || text == "-1"; }

double Number(const std::string& text, double fallback) {
    char* end = nullptr;
    double v = std::strtod(text.c_str(), &end);
    return end == text.c_str() || !std::isfinite(v) ? fallback : v;
}

std::string Fixed(double v, int places) {
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.*f", places, v);
    return buf;
}

// A velocity in knots as east and north components.
void Velocity(double course, double speed, double& east, double& north) {
    east = speed * std::sin(course * kRad);
    north = speed * std::cos(course * kRad);
}

}  // namespace

void AisSettings::Load(const Registry& reg) {
    Labels = Flag(reg.GetSetting(Key::AISLabels));
    CpaAlarm = Flag(reg.GetSetting(Key::AISCpaAlarm));
    CpaRange = std::max(0.0, Number(reg.GetSetting(Key::AISCpaRange), 0.5));
    CpaTime = std::max(0.0, Number(reg.GetSetting(Key::AISCpaTime), 12.0));
}

void AisSettings::Save(Registry& reg) const {
    reg.SaveSetting(Key::AISLabels, Labels ? "True" : "False");
    reg.SaveSetting(Key::AISCpaAlarm, CpaAlarm ? "True" : "False");
    reg.SaveSetting(Key::AISCpaRange, Fixed(CpaRange, 2));
    reg.SaveSetting(Key::AISCpaTime, Fixed(CpaTime, 1));
}

Cpa ClosestApproach(const OwnMotion& own, const LatLong& pos, double course, double speed) {
    Cpa r;
    if (!(speed >= 0.0) || !std::isfinite(speed)) return r;
    if (!(course >= 0.0) && speed >= kStopped) return r;
    // The target's place in miles east and north of the own vessel, on the
    // plane tangent at the middle latitude.
    const double midLat = (own.Pos.Lat + pos.Lat) / 2.0 / 3600.0;
    double dLon = (pos.Long - own.Pos.Long) / 60.0;  // minutes of longitude
    if (dLon > 180.0 * 60.0) dLon -= 360.0 * 60.0;
    if (dLon < -180.0 * 60.0) dLon += 360.0 * 60.0;
    const double x = dLon * std::cos(midLat * kRad);
    const double y = (pos.Lat - own.Pos.Lat) / 60.0;
    double te = 0, tn = 0, oe = 0, on = 0;
    if (speed >= kStopped) Velocity(course, speed, te, tn);
    if (own.SOG > 0.0 && std::isfinite(own.SOG)) Velocity(own.COG, own.SOG, oe, on);
    const double ve = te - oe, vn = tn - on;
    const double v2 = ve * ve + vn * vn;
    r.Known = true;
    r.Range = std::hypot(x, y);
    r.Bearing = std::fmod(std::atan2(x, y) / kRad + 360.0, 360.0);
    const double hours = v2 > 1e-12 ? -(x * ve + y * vn) / v2 : 0.0;
    r.Minutes = hours * 60.0;
    r.Distance = hours > 0.0 ? std::hypot(x + ve * hours, y + vn * hours) : r.Range;
    return r;
}

std::string Ais::DisplayName(const AisTarget& t) {
    std::string name = AisText(t.Name);
    return name.empty() ? AisText(t.MMSI) : name;
}

// ---- The chart ------------------------------------------------------------

void Ais::Draw(Canvas& c, NavChart& chart, ChartLibrary& library) {
    const int16_t count = host_.TargetCount();
    if (drawn_.size() < size_t(count) + 1) drawn_.resize(size_t(count) + 1);
    for (auto& d : drawn_) d.shown = false;
    if (!chart.ChartOpen()) return;
    AisTarget t{};
    for (int16_t i = 1; i <= count; ++i) {
        if (!host_.Target(i, t)) continue;
        Drawn& d = drawn_[size_t(i)];
        if (d.generation != chartGeneration_ || d.lat != t.Latitude || d.lon != t.Longitude) {
            d.point = NavPoint{};
            d.point.Wgs84 = LatLong{t.Longitude * 3600.0, t.Latitude * 3600.0};
            chart.PrepareNavPoint(d.point);
            d.lat = t.Latitude;
            d.lon = t.Longitude;
            d.generation = chartGeneration_;
        }
        const int plan = d.point.FirstPlanShown();
        if (plan < 0 || size_t(plan) >= d.point.Pixel.size()) continue;
        const ChartPoint s = chart.ToScreen(d.point.Pixel[size_t(plan)]);
        if (s.x < -100 || s.y < -100 || s.x > c.Width() + 100 || s.y > c.Height() + 100) continue;
        d.screen = s;
        d.shown = true;

        double direction = 0.0;
        Rgb colour = kUnknownColour;
        if (t.Heading >= 0.0) {
            direction = t.Heading;
            colour = kHeadingColour;
        } else if (t.Course >= 0.0) {
            direction = t.Course;
            colour = kCourseColour;
        }
        if (t.OwnVessel == 1) colour = kOwnColour;

        if (t.Course >= 0.0 && t.Speed >= kStopped) {
            const double px = t.Speed * kCourseLineMinutes / 60.0 * chart.ScreenPixelsPerNM(int16_t(plan));
            if (px >= 1.0 && std::isfinite(px)) {
                const double len = std::min(px, 4000.0);
                c.SetPen({colour, 1, PenStyle::Dash});
                c.Line(s, {int32_t(std::lround(s.x + len * std::sin(t.Course * kRad))),
                           int32_t(std::lround(s.y - len * std::cos(t.Course * kRad)))});
            }
        }
        if (t.Heading >= 0.0) {
            c.SetPen({colour, 1, PenStyle::Solid});
            c.Line(s, {int32_t(std::lround(s.x + kHeadingLine * std::sin(t.Heading * kRad))),
                       int32_t(std::lround(s.y - kHeadingLine * std::cos(t.Heading * kRad)))});
        }
        library.DrawTarget(c, s, direction, 0, colour);
        if (Settings.Labels) {
            c.SetTextColour(colour);
            c.Text({s.x + 10, s.y - 14}, DisplayName(t));
        }
    }
}

int16_t Ais::HitTarget(ChartPoint screen, int tolerance) const {
    int16_t best = -1;
    double bestDistance = double(tolerance) + 0.5;
    for (size_t i = 1; i < drawn_.size(); ++i) {
        if (!drawn_[i].shown) continue;
        double d = std::hypot(double(drawn_[i].screen.x - screen.x), double(drawn_[i].screen.y - screen.y));
        if (d <= bestDistance) {
            bestDistance = d;
            best = int16_t(i);
        }
    }
    return best;
}

std::string Ais::PopupCaption(int16_t index) {
    AisTarget t{};
    if (!host_.Target(index, t)) return "AIS - ";
    return "AIS - " + DisplayName(t);
}

// ---- The console ----------------------------------------------------------

void Ais::SetActiveTarget(int16_t index) {
    ActiveTarget = index > 0 ? index : -1;
    host_.ConsoleChanged();
}

void Ais::UpdateConsole(std::array<std::string, kConsoleRows>& rows) {
    if (ActiveTarget < 0) return;
    AisTarget t{};
    if (!host_.Target(ActiveTarget, t)) {
        rows.fill("N/A");
        return;
    }
    rows[0] = AisText(t.MMSI);
    rows[1] = AisText(t.IMO);
    rows[2] = AisText(t.CallSign);
    rows[3] = AisText(t.Name);
    rows[4] = AisText(t.Type);
    rows[5] = AisText(t.Status);
    rows[6] = AisText(t.Update);
    const LatLong pos{t.Longitude * 3600.0, t.Latitude * 3600.0};
    LatLongText(rows[7], rows[8], &pos, 1, 1);
    rows[9] = AisText(t.Accuracy);
    rows[10] = AisText(t.Nav);
    rows[11] = AisText(t.Length);
    rows[12] = AisText(t.Width);
    rows[13] = AisText(t.COG);
    rows[14] = AisText(t.SOG);
    rows[15] = AisText(t.Gyro);
    rows[16] = AisText(t.ROT);
    rows[17] = AisText(t.Draft);
    rows[18] = AisText(t.Destination);
    rows[19] = AisText(t.ETA);
    OwnMotion own;
    Cpa a;
    if (t.OwnVessel != 1 && host_.OwnVessel(own)) a = ClosestApproach(own, pos, t.Course, t.Speed);
    if (!a.Known) {
        rows[20] = rows[21] = "N/A";
    } else {
        rows[20] = Fixed(a.Distance, 2) + " NM";
        rows[21] = a.Closing() ? Fixed(a.Minutes, 1) + " min" : "Opening";
    }
}

// ---- The alarm ------------------------------------------------------------

void Ais::CheckCpaAlarm() {
    if (!Settings.CpaAlarm) {
        alarmed_.clear();
        if (alarmShowing_) {
            alarmShowing_ = false;
            host_.HideCpaAlarm();
        }
        return;
    }
    OwnMotion own;
    const bool haveOwn = host_.OwnVessel(own);
    for (auto& [mmsi, within] : alarmed_) within = false;
    std::string newcomer;
    const int16_t count = host_.TargetCount();
    AisTarget t{};
    for (int16_t i = 1; haveOwn && i <= count; ++i) {
        if (!host_.Target(i, t) || t.OwnVessel == 1) continue;
        Cpa a = ClosestApproach(own, LatLong{t.Longitude * 3600.0, t.Latitude * 3600.0}, t.Course, t.Speed);
        if (!a.Known || !a.Closing() || a.Distance > Settings.CpaRange || a.Minutes > Settings.CpaTime) continue;
        const std::string mmsi = AisText(t.MMSI);
        auto it = alarmed_.find(mmsi);
        if (it != alarmed_.end()) {
            it->second = true;
            continue;
        }
        alarmed_[mmsi] = true;
        if (!newcomer.empty()) newcomer += "\n";
        newcomer += DisplayName(t) + ": CPA " + Fixed(a.Distance, 2) + " NM in " + Fixed(a.Minutes, 1) + " min";
    }
    std::erase_if(alarmed_, [](const auto& e) { return !e.second; });
    if (!newcomer.empty()) {
        alarmShowing_ = true;
        host_.ShowCpaAlarm(kCpaCaption, newcomer, true);
    } else if (alarmShowing_ && alarmed_.empty()) {
        alarmShowing_ = false;
        host_.HideCpaAlarm();
    }
}

void Ais::AcknowledgeCpaAlarm() {
    if (!alarmShowing_) return;
    alarmShowing_ = false;
    host_.HideCpaAlarm();
}

// ---- The list -------------------------------------------------------------

std::vector<AisRow> Ais::Rows(AisSort by) {
    std::vector<AisRow> rows;
    OwnMotion own;
    const bool haveOwn = host_.OwnVessel(own);
    const int16_t count = host_.TargetCount();
    AisTarget t{};
    for (int16_t i = 1; i <= count; ++i) {
        if (!host_.Target(i, t)) continue;
        AisRow r;
        r.Index = i;
        r.Name = DisplayName(t);
        r.MMSI = AisText(t.MMSI);
        r.CallSign = AisText(t.CallSign);
        r.Type = AisText(t.Type);
        r.Status = AisText(t.Status);
        r.Length = AisText(t.Length);
        r.Width = AisText(t.Width);
        r.Destination = AisText(t.Destination);
        r.ETA = AisText(t.ETA);
        r.Own = t.OwnVessel == 1;
        r.Pos = LatLong{t.Longitude * 3600.0, t.Latitude * 3600.0};
        r.Course = t.Course;
        r.Heading = t.Heading;
        if (haveOwn && !r.Own)
            r.Approach = ClosestApproach(own, LatLong{t.Longitude * 3600.0, t.Latitude * 3600.0}, t.Course, t.Speed);
        rows.push_back(std::move(r));
    }
    // Targets without the figure sorted on go last, in slot order.
    auto known = [](const AisRow& r) { return r.Approach.Known; };
    auto tcpa = [](const AisRow& r) { return r.Approach.Closing() ? r.Approach.Minutes : 1e300; };
    switch (by) {
        case AisSort::Slot: break;
        case AisSort::Name:
            std::stable_sort(rows.begin(), rows.end(), [](const AisRow& a, const AisRow& b) { return a.Name < b.Name; });
            break;
        case AisSort::Range:
        case AisSort::Cpa:
            std::stable_sort(rows.begin(), rows.end(), [&](const AisRow& a, const AisRow& b) {
                if (known(a) != known(b)) return known(a);
                if (!known(a)) return false;
                return by == AisSort::Range ? a.Approach.Range < b.Approach.Range
                                            : a.Approach.Distance < b.Approach.Distance;
            });
            break;
        case AisSort::Tcpa:
            std::stable_sort(rows.begin(), rows.end(), [&](const AisRow& a, const AisRow& b) { return tcpa(a) < tcpa(b); });
            break;
    }
    return rows;
}

void Ais::CentreOnTarget(NavChart& chart) {
    if (!chart.ChartOpen()) return;
    std::vector<std::string> items;
    const int16_t count = host_.TargetCount();
    AisTarget t{};
    for (int16_t i = 1; i <= count; ++i) {
        if (!host_.Target(i, t)) continue;
        char number[8];
        std::snprintf(number, sizeof number, "%04d", int(i));
        items.push_back(DisplayName(t) + " - " + number);
    }
    int pick = host_.ListPick("Select AIS Target To Centre On", items, "OK");
    if (pick < 0 || size_t(pick) >= items.size()) return;
    const std::string& row = items[size_t(pick)];
    int16_t index = int16_t(std::atoi(row.substr(row.size() - 4).c_str()));
    if (CentreOn(chart, index)) SetActiveTarget(index);
}

bool Ais::CentreOn(NavChart& chart, int16_t index) {
    AisTarget t{};
    if (!chart.ChartOpen() || !host_.Target(index, t)) return false;
    chart.CentreOn(LatLong{t.Longitude * 3600.0, t.Latitude * 3600.0});
    return true;
}

void Ais::ClearAll() {
    host_.ClearTargets();
    drawn_.clear();
    alarmed_.clear();
    if (alarmShowing_) {
        alarmShowing_ = false;
        host_.HideCpaAlarm();
    }
    host_.ConsoleChanged();
    host_.Redraw();
}

}  // namespace ombra
