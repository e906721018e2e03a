// The alarms' host: what the alarms module asks of the plotter, answered by
// the instruments, the navigation objects, the shell and the log.
#include "plotter/Plotter.h"

namespace ombra {

bool PlotterAlarmHost::VesselActive() { return p_.instruments_.vessel.VesselActive(); }
LatLong PlotterAlarmHost::VesselPos() { return p_.instruments_.vessel.vessel.Pos; }
std::string PlotterAlarmHost::WaypointRow(int index) {
    const auto& rows = p_.instruments_.console.LabWP;
    return index >= 0 && size_t(index) < rows.size() ? rows[size_t(index)] : std::string();
}
bool PlotterAlarmHost::AutopilotAdvance() { return p_.instruments_.settings.AutopilotAdvance; }
void PlotterAlarmHost::AutopilotOff() { p_.instruments_.settings.AutopilotActive = false; }
bool PlotterAlarmHost::NextPointExists() { return p_.nav_.activation.NextPointExists(); }
void PlotterAlarmHost::NextRoutePoint() { p_.nav_.activation.NextRoutePoint(); }
void PlotterAlarmHost::DeactivateWaypoint(bool noRedraw) { p_.nav_.activation.DeactivateWaypoint(noRedraw); }
void PlotterAlarmHost::DeactivateRoute(bool noRedraw) { p_.nav_.activation.DeactivateRoute(noRedraw); }
void PlotterAlarmHost::DeactivateAll(bool noRedraw) { p_.nav_.activation.DeactivateAll(noRedraw); }
void PlotterAlarmHost::SetActiveLeg(const ActiveLeg& leg) { p_.nav_.activation.SetActiveLeg(leg); }
std::vector<Boundary>* PlotterAlarmHost::BoundarySlots() {
    return p_.nav_.boundaries.IsOpen() ? &p_.nav_.boundaries.List : nullptr;
}
int16_t PlotterAlarmHost::EditingBoundary() { return p_.nav_.boundaries.EditingBoundary; }
void PlotterAlarmHost::AcknowledgeBoundaryAlarm(const std::string& number, const std::string& caption) {
    p_.nav_.boundaries.AcknowledgeBoundaryAlarm(number, caption);
}
std::string PlotterAlarmHost::ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text,
                                        bool beep) {
    return p_.services_.shell.ShowAlarm(form, caption, text, beep);
}
void PlotterAlarmHost::HideAlarm(AlarmForm form) { p_.services_.shell.HideAlarm(form); }
bool PlotterAlarmHost::Confirm(const std::string& text) {
    return p_.services_.dialogs.MsgBox(text, mb::YesNo | mb::Question | mb::DefaultButton2, p_.globals_.ProductName) == mb::Yes;
}
void PlotterAlarmHost::AddLogEntry(LogEntryKind kind) { p_.AddLogEntry(kind); }
void PlotterAlarmHost::Redraw() { p_.RequestChartRedraw(); }
void PlotterAlarmHost::ShowManOverboardReadout(const std::string& text) { p_.services_.shell.SetInfoPanel(2, text); }
void PlotterAlarmHost::BeginRadiusTool() { p_.nav_.tools.Begin(ToolAlarmRadius); }
void PlotterAlarmHost::EndRadiusTool() {
    if (p_.nav_.tools.Current() == ToolAlarmRadius) p_.nav_.tools.End();
}

void Plotter::RegisterAlarmLayers() {
    charts_.View.RegisterLayer(Layer::AnchorCircle,
                               [this](Canvas& c, const ChartViewState&) { alarms_.DrawAnchorCircle(c, displayChart_); });
    charts_.View.RegisterLayer(Layer::ManOverboard, [this](Canvas& c, const ChartViewState&) {
        alarms_.DrawManOverboard(c, displayChart_, nav_.symbols);
    });
}

}  // namespace ombra
