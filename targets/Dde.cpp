#include "targets/Dde.h"

#include <cmath>
#include <cstdlib>

#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Val.h"
#include "navmath/RLGC.h"

namespace ombra {

namespace {

// A whole field as a finite number; false for anything else ("", "1x", "nan").
bool Number(const std::string& field, double& out) {
    std::string t = Trim(field);
    if (t.empty()) return false;
    char* end = nullptr;
    out = std::strtod(t.c_str(), &end);
    return end == t.c_str() + t.size() && std::isfinite(out);
}

std::vector<std::string> Fields(const std::string& text) {
    std::vector<std::string> f;
    size_t start = 0;
    for (;;) {
        size_t comma = text.find(',', start);
        f.push_back(text.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
        if (comma == std::string::npos) return f;
        start = comma + 1;
    }
}

const Rgb kTargetColour = MakeRgb(160, 0, 160);
const Rgb kErrorColour = MakeRgb(220, 0, 0);
constexpr int kSymbolRadius = 6;
constexpr int kHeadingLength = 18;

}  // namespace

std::string DdeKeyword(const std::string& command) { return UCase(Trim(command.substr(0, command.find(',')))); }

bool ParseDdePosition(const std::string& command, DdePosition& out) {
    std::vector<std::string> f = Fields(command);
    if (f.size() < 7) return false;
    double slot = 0;
    if (!Number(f[1], slot) || slot < 0 || slot >= Dde::kSlots || slot != std::floor(slot)) return false;
    if (!Number(f[2], out.lat) || !Number(f[3], out.lon) || !Number(f[4], out.speed) || !Number(f[5], out.course))
        return false;
    if (std::fabs(out.lat) > 90.0 || std::fabs(out.lon) > 180.0 || out.speed < 0.0) return false;
    out.slot = int(slot);
    out.course = std::fmod(out.course, 360.0);
    if (out.course < 0.0) out.course += 360.0;
    out.name = Trim(f[6]);
    if (out.name.empty()) return false;
    out.error = command.back() == '1';
    return true;
}

Dde::Dde(Registry& registry, DdeLink& link, DdeHost& host, ErrorReporter& errors, const std::string& productName)
    : registry_(registry), link_(link), host_(host), errors_(errors), productName_(productName) {}

void Dde::LoadSettings() {
    DdeSettings s;
    s.Interval = registry_.GetNumber(Key::DDEInterval);
    s.Labels = !registry_.IsFalse(Key::DDELabels);
    s.Predictors = registry_.IsTrue(Key::DDEPredictors);
    s.PTime = registry_.GetNumber(Key::DDEPTime);
    s.ParseErrors = !registry_.IsFalse(Key::DDEParseErrors);
    s.ActiveTarget = int(registry_.GetNumber(Key::DDEActiveTarget));
    double port = registry_.GetNumber(Key::DDEPort);
    s.Port = port >= 1 && port <= 65535 ? uint16_t(port) : DdeSettings{}.Port;
    if (s.Interval < 1.0) s.Interval = 1.0;
    if (s.PTime < 0.0) s.PTime = 0.0;
    if (s.ActiveTarget < 0 || s.ActiveTarget >= kSlots) s.ActiveTarget = 0;
    settings_ = s;
    if (registry_.IsTrue(Key::DDEOnline) && !link_.Listening()) SetOnline(true);
}

bool Dde::ApplySettings(const DdeSettings& in) {
    DdeSettings s = in;
    s.Interval = std::max(1.0, s.Interval);
    s.PTime = std::max(0.0, s.PTime);
    if (s.ActiveTarget < 0 || s.ActiveTarget >= kSlots) s.ActiveTarget = 0;
    if (s.Port == 0) s.Port = DdeSettings{}.Port;
    const bool moved = s.Port != settings_.Port;
    settings_ = s;
    registry_.SaveSetting(Key::DDEInterval, NumberText(s.Interval));
    registry_.SaveSetting(Key::DDELabels, s.Labels ? "True" : "False");
    registry_.SaveSetting(Key::DDEPredictors, s.Predictors ? "True" : "False");
    registry_.SaveSetting(Key::DDEPTime, NumberText(s.PTime));
    registry_.SaveSetting(Key::DDEParseErrors, s.ParseErrors ? "True" : "False");
    registry_.SaveSetting(Key::DDEActiveTarget, std::to_string(s.ActiveTarget));
    registry_.SaveSetting(Key::DDEPort, std::to_string(s.Port));
    bool ok = true;
    if (moved && link_.Listening()) ok = SetOnline(true);
    host_.ConsoleChanged();
    host_.Redraw();
    return ok;
}

bool Dde::SetOnline(bool on) {
    if (!on) {
        link_.Stop();
        LinkClosed(0);
        registry_.SaveSetting(Key::DDEOnline, "False");
        return true;
    }
    if (link_.Listening() && link_.Port() == settings_.Port) return true;
    if (link_.Listening()) LinkClosed(0);
    const bool ok = link_.Listen(settings_.Port);
    registry_.SaveSetting(Key::DDEOnline, ok ? "True" : "False");
    if (!ok) host_.Message(Title(), "The DDE link could not be put on line:\n" + link_.LastError());
    return ok;
}

void Dde::LinkOpen() {
    link_.SetDataBuffer("READY");
    if (state_ == State::Closed) state_ = State::Ready;
}

void Dde::LinkClosed(int sourcesLeft) {
    if (sourcesLeft > 0) return;
    state_ = State::Closed;
    enabled_ = false;
}

void Dde::LinkExecute(const std::string& command) {
    errors_.Guard("LinkExecute", [&] {
        const std::string keyword = DdeKeyword(command);
        if (keyword == "BEGINTRANS") {
            link_.SetDataBuffer("GO");
            state_ = State::Running;
            enabled_ = true;
            if (!host_.ChartLoaded())
                host_.Message(Title(), "    DDE Data source has requested communication.\n"
                                       "Data will be available when you have loaded a chart.");
        } else if (keyword == "ENDTRANS") {
            state_ = State::Ready;
            enabled_ = false;
            link_.SetDataBuffer("READY");
            host_.Message(Title(), "The DDE link has been closed down by the data source.");
        } else if (keyword == "POSITION") {
            if (state_ == State::Running && enabled_ && !Position(command)) ParseFailed();
        } else if (state_ == State::Running && enabled_) {
            ParseFailed();  // a source in a transfer sends only what it knows
        }
    });
}

bool Dde::Position(const std::string& command) {
    DdePosition p;
    if (!ParseDdePosition(command, p)) return false;
    DdeTarget& t = targets_[size_t(p.slot)];
    t.Name = p.name;
    t.Speed = p.speed;
    t.Course = p.course;
    t.Point = {p.lon * 3600.0, p.lat * 3600.0};
    targetCount_ = std::max(targetCount_, p.slot + 1);
    if (p.slot == settings_.ActiveTarget) host_.ConsoleChanged();
    if (!p.error) {
        t.Error = false;
        return true;
    }
    if (t.Error) return true;
    t.Error = true;
    if (host_.AskYesNo(Title(), "'" + t.Name + "' has reported an error!\nZoom to target?")) host_.ZoomTo(t.Point);
    return true;
}

void Dde::ParseFailed() {
    if (++parseFailures_ < kParseFailuresToAsk) return;
    parseFailures_ = 0;
    if (!settings_.ParseErrors) return;
    if (!host_.AskYesNo(Title(), "A number of errors have occurred during DDE parsing.\n                Keep trying?"))
        enabled_ = false;
}

void Dde::Service(double now) {
    if (busy_) return;  // a question is open and pumping events
    busy_ = true;
    DdeEvent e;
    // A bounded number a tick: a flooding source cannot hold the tick.
    for (int n = 0; n < 500 && link_.Poll(e); ++n) {
        if (e.kind == DdeEvent::Kind::Opened) LinkOpen();
        else if (e.kind == DdeEvent::Kind::Closed) LinkClosed(e.sources);
        else LinkExecute(e.command);
    }
    // tmrUpdateDDE: |now - last| so that midnight fires it rather than stalls it.
    if (enabled_ && (lastRedraw_ < 0.0 || std::fabs(now - lastRedraw_) >= settings_.Interval)) {
        lastRedraw_ = now;
        host_.Redraw();
    }
    busy_ = false;
}

void Dde::Draw(Canvas& c, NavChart& chart) const {
    if (!chart.ChartOpen()) return;
    c.SetFont({"DejaVu Sans", 8, false});
    for (const DdeTarget& t : targets_) {
        if (t.Name.empty()) continue;
        NavPoint p;
        p.Wgs84 = t.Point;
        chart.PrepareNavPoint(p);
        NavPoint end;
        if (settings_.Predictors) {
            end.Wgs84 = DeadReckon(t.Point, t.Course, t.Speed * settings_.PTime / 60.0);
            chart.PrepareNavPoint(end);
        }
        const Rgb colour = t.Error ? kErrorColour : kTargetColour;
        for (size_t k = 0; k < p.InPlan.size() && k < p.Pixel.size(); ++k) {
            if (!p.In(k)) continue;
            const ChartPoint s = chart.ToScreen(p.Pixel[k]);
            c.SetPen({colour, 2});
            c.SetBrush(Brush{});
            c.Ellipse({s.x - kSymbolRadius, s.y - kSymbolRadius, s.x + kSymbolRadius, s.y + kSymbolRadius});
            const double rad = t.Course * M_PI / 180.0;
            c.Line(s, {s.x + int(std::lround(std::sin(rad) * kHeadingLength)),
                       s.y - int(std::lround(std::cos(rad) * kHeadingLength))});
            if (settings_.Predictors && k < end.Pixel.size()) {
                c.SetPen({colour, 1, PenStyle::Dash});
                c.Line(s, chart.ToScreen(end.Pixel[k]));
            }
            if (settings_.Labels) {
                c.SetTextColour(colour);
                c.Text({s.x + kSymbolRadius + 3, s.y - kSymbolRadius - c.TextHeight()}, t.Name);
            }
        }
    }
    c.SetFont(Font{});
}

void Dde::ConsoleRows(std::array<std::string, 4>& rows) const {
    const DdeTarget& t = targets_[size_t(settings_.ActiveTarget)];
    if (t.Name.empty()) {
        rows.fill("N/A");
        return;
    }
    std::string lat, lon;
    LatLongText(lat, lon, &t.Point, 1, 1);
    rows[0] = t.Name;
    rows[1] = lat + " " + lon;
    rows[2] = Format(t.Speed, "##0.0");
    rows[3] = Format(t.Course, "##0.0");
}

std::vector<int> Dde::TargetsNear(NavChart& chart, ChartPoint screen, int radius) const {
    std::vector<int> near;
    if (!chart.ChartOpen()) return near;
    for (int i = 0; i < kSlots; ++i) {
        const DdeTarget& t = targets_[size_t(i)];
        if (t.Name.empty()) continue;
        NavPoint p;
        p.Wgs84 = t.Point;
        chart.PrepareNavPoint(p);
        for (size_t k = 0; k < p.InPlan.size() && k < p.Pixel.size(); ++k) {
            if (!p.In(k)) continue;
            const ChartPoint s = chart.ToScreen(p.Pixel[k]);
            if (std::abs(s.x - screen.x) <= radius && std::abs(s.y - screen.y) <= radius) {
                near.push_back(i);
                break;
            }
        }
    }
    return near;
}

std::vector<int> Dde::NamedTargets() const {
    std::vector<int> named;
    for (int i = 0; i < kSlots; ++i)
        if (!targets_[size_t(i)].Name.empty()) named.push_back(i);
    return named;
}

void Dde::SelectTarget(int slot) {
    if (slot < 0 || slot >= kSlots || targets_[size_t(slot)].Name.empty()) return;
    settings_.ActiveTarget = slot;
    registry_.SaveSetting(Key::DDEActiveTarget, std::to_string(slot));
    host_.ConsoleChanged();
    if (host_.ChartLoaded()) host_.ZoomTo(targets_[size_t(slot)].Point);
}

}  // namespace ombra
