// The AIS targets' host: the decoder's table, the vessel, the windows
// through the shell; and the AIS layer and the AIS Settings dialog.
#include "plotter/Plotter.h"

namespace ombra {

int16_t PlotterAisHost::TargetCount() { return p_.ais_.GetNoAisTargets(); }
bool PlotterAisHost::Target(int16_t index, AisTarget& target) { return p_.ais_.GetAisTarget(index, target) != 0; }
void PlotterAisHost::ClearTargets() { p_.ais_.ClearAis(); }
bool PlotterAisHost::OwnVessel(OwnMotion& own) {
    const VesselModule& v = p_.instruments_.vessel;
    if (!v.VesselActive()) return false;
    own.Pos = v.vessel.Pos;
    own.COG = v.vessel.COG;
    own.SOG = v.vessel.SOG;
    return true;
}
int PlotterAisHost::ListPick(const std::string& title, const std::vector<std::string>& items, const std::string& button) {
    return p_.navHost_.ListPick(title, items, button);
}
void PlotterAisHost::ShowCpaAlarm(const std::string& caption, const std::string& text, bool beep) {
    p_.services_.shell.ShowAlarm(AlarmForm::Cpa, caption, text, beep && !p_.alarms_.Settings.Silent);
}
void PlotterAisHost::HideCpaAlarm() { p_.services_.shell.HideAlarm(AlarmForm::Cpa); }
void PlotterAisHost::ConsoleChanged() {
    auto& console = p_.instruments_.console;
    console.AISFrameOn = p_.aisTargets_.ActiveTarget > 0;
    p_.aisTargets_.UpdateConsole(console.LabAIS);
    p_.services_.shell.ConsoleChanged();
}
void PlotterAisHost::Redraw() { p_.RequestChartRedraw(); }

void Plotter::RegisterAisLayers() {
    charts_.View.RegisterLayer(Layer::AisTargets,
                               [this](Canvas& c, const ChartViewState&) { aisTargets_.Draw(c, displayChart_, chartLibrary_); });
    charts_.View.RegisterPreparer([this] { aisTargets_.ChartChanged(); });
}

// With AIS on the GPS port the tick has no AIS step of its own, so the
// targets age here, once a vessel cycle.
void Plotter::UpdateAisTargets() {
    const CommSettings& s = instruments_.settings;
    if (s.AISEnable && s.AISUseGPSPort) ais_.AisTimeout(s.AISTimeout);
    if (aisTargets_.ActiveTarget > 0) aisHost_.ConsoleChanged();
    aisTargets_.CheckCpaAlarm();
    if (s.AISEnable && ais_.GetNoAisTargets() > 0) RequestChartRedraw();
}

bool Plotter::CentreOnAisTarget(int16_t index) {
    if (!aisTargets_.CentreOn(displayChart_, index)) return false;
    aisTargets_.SetActiveTarget(index);
    return true;
}

AisDialogValues Plotter::AisDialog() const {
    return LoadAisDialog(registry_, instruments_.settings, aisTargets_.Settings);
}

void Plotter::ApplyAisDialog(const AisDialogValues& values) {
    SaveAisDialog(registry_, instruments_.settings, aisTargets_.Settings, values);
    RequestChartRedraw();
}

}  // namespace ombra
