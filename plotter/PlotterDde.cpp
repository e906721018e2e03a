// What the data-source link's module asks of the plotter, the chart layer
// it draws in, and the finder over the target tables the plotter holds.
#include "plotter/Plotter.h"

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

std::vector<FoundTarget> PlotterTargetFinder::FindTargets(ChartPoint screen, bool all) {
    std::vector<FoundTarget> found;
    const Dde& dde = p_.dde_;
    const std::vector<int> slots = all ? dde.NamedTargets() : dde.TargetsNear(p_.displayChart_, screen, 8);
    for (int slot : slots)
        found.push_back({"DDE", slot, dde.Targets()[size_t(slot)].Name + " - " + std::to_string(slot)});
    return found;
}

void PlotterTargetFinder::SelectTarget(const FoundTarget& target) {
    if (target.kind == "DDE") p_.dde_.SelectTarget(target.index);
}

void Plotter::RegisterDdeLayer() {
    charts_.View.RegisterLayer(Layer::DdeObjects,
                               [this](Canvas& c, const ChartViewState&) { dde_.Draw(c, displayChart_); });
}

void Plotter::ServiceDdeLink() {
    if (!loop_.Busy) dde_.Service(services_.clock.Timer());
}

}  // namespace ombra
