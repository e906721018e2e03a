// What the data-source link's module asks of the plotter, the chart layer
// it draws in, and the finder over the target tables the plotter holds.
#include "plotter/Plotter.h"

#include <cstdlib>

namespace ombra {

bool PlotterDdeHost::ChartLoaded() { return p_.charts_.Charts.ChartIsOpen(); }
void PlotterDdeHost::Message(const std::string& title, const std::string& text) {
    p_.services_.dialogs.MsgBox(text, mb::OKOnly | mb::Information, title);
}
bool PlotterDdeHost::AskYesNo(const std::string& title, const std::string& text) {
    return p_.services_.dialogs.MsgBox(text, mb::YesNo | mb::Question, title) == mb::Yes;
}
void PlotterDdeHost::ZoomTo(const LatLong& pos) { p_.displayChart_.CentreOn(pos); }
void PlotterDdeHost::Redraw() { p_.RequestChartRedraw(); }
void PlotterDdeHost::ConsoleChanged() {
    p_.dde_.ConsoleRows(p_.instruments_.console.LabDDE);
    p_.services_.shell.ConsoleChanged();
}

namespace {

// Whether a position is drawn within `radius` pixels of a point of the view.
bool NearOnScreen(NavChart& chart, const LatLong& wgs84, ChartPoint screen, int radius) {
    if (!chart.ChartOpen()) return false;
    NavPoint p;
    p.Wgs84 = wgs84;
    chart.PrepareNavPoint(p);
    for (size_t k = 0; k < p.InPlan.size() && k < p.Pixel.size(); ++k) {
        if (!p.In(k)) continue;
        const ChartPoint s = chart.ToScreen(p.Pixel[k]);
        if (std::abs(s.x - screen.x) <= radius && std::abs(s.y - screen.y) <= radius) return true;
    }
    return false;
}

constexpr int kFindRadius = 8;

}  // namespace

// Every kind of target the plotter holds, link targets first, then AIS,
// radar and tracked vessels; each row names its kind where the name alone
// could be any of them.
std::vector<FoundTarget> PlotterTargetFinder::FindTargets(ChartPoint screen, bool all) {
    std::vector<FoundTarget> found;
    const Dde& dde = p_.dde_;
    const std::vector<int> slots = all ? dde.NamedTargets() : dde.TargetsNear(p_.displayChart_, screen, kFindRadius);
    for (int slot : slots)
        found.push_back({"DDE", slot, dde.Targets()[size_t(slot)].Name + " - " + std::to_string(slot)});

    const int16_t hit = all ? int16_t(0) : p_.aisTargets_.HitTarget(screen);
    for (int16_t i = 1, n = p_.aisHost_.TargetCount(); i <= n; ++i) {
        if (!all && i != hit) continue;
        AisTarget t{};
        if (!p_.aisHost_.Target(i, t)) continue;
        std::string name = AisText(t.Name);
        if (name.empty()) name = AisText(t.MMSI);
        found.push_back({"AIS", i, "AIS " + name + " - " + std::to_string(i)});
    }
    for (int slot = 0; slot < Arpa::kSlots; ++slot) {
        const ArpaTarget& t = p_.arpa_.Targets[size_t(slot)];
        if (t.Name.empty() || !(all || NearOnScreen(p_.displayChart_, t.Point.Wgs84, screen, kFindRadius))) continue;
        found.push_back({"ARPA", slot, "ARPA " + t.Name + " - " + std::to_string(slot)});
    }
    for (int slot = 0; slot < p_.tracked_.TargetCount && slot < Tracked::kSlots; ++slot) {
        const TrackedTarget& t = p_.tracked_.Targets[size_t(slot)];
        if (t.VesselId.empty() || !(all || NearOnScreen(p_.displayChart_, t.Position.Wgs84, screen, kFindRadius)))
            continue;
        found.push_back({"Tracked", slot, t.VesselId + " - " + std::to_string(slot)});
    }
    return found;
}

// The pick becomes its module's console target and the chart is centred on it.
void PlotterTargetFinder::SelectTarget(const FoundTarget& target) {
    const int i = target.index;
    if (target.kind == "DDE") {
        p_.dde_.SelectTarget(i);
    } else if (target.kind == "AIS") {
        p_.aisTargets_.SetActiveTarget(int16_t(i));
        p_.aisTargets_.CentreOn(p_.displayChart_, int16_t(i));
    } else if (target.kind == "ARPA" && i >= 0 && i < Arpa::kSlots && !p_.arpa_.Targets[size_t(i)].Name.empty()) {
        p_.arpa_.ActiveTarget = i;
        p_.arpa_.UpdateArpaConsole();
        if (p_.displayChart_.ChartOpen()) p_.displayChart_.CentreOn(p_.arpa_.Targets[size_t(i)].Point.Wgs84);
    } else if (target.kind == "Tracked" && i >= 0 && i < p_.tracked_.TargetCount && i < Tracked::kSlots) {
        p_.tracked_.ActiveTarget = i;
        p_.tracked_.UpdateTrackedConsole();
        if (p_.displayChart_.ChartOpen()) p_.displayChart_.CentreOn(p_.tracked_.Targets[size_t(i)].Position.Wgs84);
    }
}

void Plotter::RegisterDdeLayer() {
    charts_.View.RegisterLayer(Layer::DdeObjects,
                               [this](Canvas& c, const ChartViewState&) { dde_.Draw(c, displayChart_); });
}

void Plotter::ServiceDdeLink() {
    if (!loop_.Busy) dde_.Service(services_.clock.Timer());
}

}  // namespace ombra
