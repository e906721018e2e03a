#include "plotter/Plotter.h"

#include "core/Val.h"
#include "plotter/AisBridge.h"

namespace ombra {

Plotter::Plotter(PlotterServices s)
    : services(s),
      registry(s.settings, globals.ProductName),
      errors(s.dialogs, globals.ProductName),
      loop(s.clock, *this),
      startup(globals, registry, s.dialogs, s.clock, s.events, *this),
      magVar("", s.clock, s.dialogs),
      deviation("", errors),
      portTable(registry, ""),
      posixComms(s.comms ? nullptr : std::make_unique<PosixComms>(portTable)),
      comms(s.comms ? *s.comms : *posixComms),
      ais(s.clock),
      charts(chartLibrary, s.dialogs, errors, registry, globals.ProductName, units),
      hooks(*this),
      chartOps(*this),
      vesselSource(*this),
      instruments({registry, units, globals, s.clock, s.events, errors, comms, hooks, chartOps}),
      displayChart(charts.View, charts.Legs, chartLibrary, charts.State, &charts.Charts),
      navCtx{registry, s.dialogs, errors, units, s.clock, s.events, displayChart, navRelay, globals},
      nav(navCtx, instruments.leg),
      gpsLink(instruments.comm) {
    navRelay.variation = [this](const LatLong& p) { return magVar.MagneticVariation(p); };
    navRelay.deviation = [this](double h) { return double(deviation.DeviationFor(float(h))); };
    navRelay.vesselActive = [this] { return instruments.vessel.VesselActive(); };
    navRelay.vesselPos = [this] { return instruments.vessel.vessel.Pos; };
    navRelay.legChanged = [this] {
        instruments.vessel.UpdateWaypointConsole();
        services.shell.ConsoleChanged();
    };
    RegisterNavLayers(charts.View, nav);
    // Compass labels on legs take the deviation card.
    charts.Legs.Deviation = [this](double h) { return double(deviation.DeviationFor(float(h))); };
}

// ---- What the instruments ask ------------------------------------------------

void PlotterHooks::ShowCommDialog(CommDialog d) { p_.services.shell.ShowCommDialog(int(d)); }
void PlotterHooks::DecodeAIS(const std::string& sentence) { p_.ais.DecodeAIS(sentence); }
bool PlotterHooks::GetOwnVessel(OwnVesselReport& r) { return OwnVesselFromAis(p_.ais, r); }
void PlotterHooks::SetGPSMenuState(bool on) { p_.services.shell.SetGPSMenuState(on); }
void PlotterHooks::SetInfoLine(int panel, const std::string& text) { p_.services.shell.SetInfoPanel(panel, text); }
void PlotterHooks::SetBusyCursor(bool busy) { p_.services.shell.SetBusyCursor(busy); }
float PlotterHooks::VesselVariation() { return p_.magVar.MagneticVariation(p_.instruments.vessel.vessel.Pos); }
float PlotterHooks::CompassDeviation(float h) { return p_.deviation.DeviationFor(h); }
void PlotterHooks::ShowLostGPS(bool up) { p_.services.shell.ShowLostGPS(up); }
void PlotterHooks::RefreshSatInfo() { p_.services.shell.RefreshSatInfo(); }
void PlotterHooks::ConsoleChanged() { p_.services.shell.ConsoleChanged(); }
void PlotterHooks::RedrawVessel() { p_.RequestChartRedraw(); }
void PlotterHooks::TrackCheck() {
    const Vessel& v = p_.instruments.vessel.vessel;
    if (p_.nav.tracks.TrackCheck(v.Pos, v.COG, p_.services.clock.Timer())) p_.RequestChartRedraw();
}
void PlotterHooks::AddTrackPoint() {
    const Vessel& v = p_.instruments.vessel.vessel;
    p_.nav.tracks.AddTrackPoint(v.Pos, v.COG);
}
void PlotterHooks::CloseTrack() {
    AddTrackPoint();
    p_.nav.tracks.StartSegment();
}
bool PlotterHooks::CursorPosition(LatLong& pos) {
    if (!p_.cursorOnChart) return false;
    pos = p_.cursorPos;
    return true;
}

// ---- The chart as the vessel needs it ------------------------------------------

bool PlotterChartOps::ChartOpen() { return p_.charts.Charts.ChartIsOpen(); }
void PlotterChartOps::PrepareVesselPoint(const LatLong&) { p_.RequestChartRedraw(); }
void PlotterChartOps::CentreOnVessel() {
    if (ChartOpen()) p_.charts.View.CentreOnPosition(p_.instruments.vessel.vessel.Pos);
}
void PlotterChartOps::OpenBestChartAt(const LatLong& pos) { p_.charts.Charts.OpenChartAt(pos.Lat, pos.Long); }
void PlotterChartOps::CentreChartAt(const LatLong& pos) {
    if (ChartOpen()) p_.charts.View.CentreOnPosition(pos);
}
bool PlotterChartOps::GetScrollView(ScrollView& v) {
    if (!ChartOpen()) return false;
    Display& d = p_.charts.View;
    const ChartViewState& s = d.View();
    if (d.DisplayedPlan < 0 || s.ViewFactor <= 0.0) return false;
    NavPoint np = d.LocatePosition(p_.instruments.vessel.vessel.Pos);
    size_t plan = size_t(d.DisplayedPlan);
    if (plan >= np.Pixel.size() || plan >= np.InPlan.size() || np.InPlan[plan] == 0) return false;
    ChartPoint screen = d.ChartToScreen(np.Pixel[plan]);
    v.PixelsPerNM = p_.chartLibrary.GetPixelsPerNM(d.DisplayedPlan) / s.ViewFactor;
    v.Width = s.Width;
    v.Height = s.Height;
    v.VesselX = screen.x;
    v.VesselY = screen.y;
    return true;
}

bool PlotterVesselSource::GetVesselView(VesselView& out) {
    const VesselModule& m = p_.instruments.vessel;
    const Vessel& v = m.vessel;
    out.Active = m.VesselActive();
    if (!out.Active) return false;
    out.Pos = v.Pos;
    out.Heading = v.Heading;
    out.COG = v.COG;
    out.SOG = v.SOG;
    out.Predictor = v.Predictor;
    out.PredictorTime = v.PredictorTime;
    out.Name = v.Name;
    out.NameDisplay = v.NameDisplay;
    // Green on a GPS fix, red when it is lost, blue dead reckoning.
    out.Colour = v.Mode == 2 ? MakeRgb(0, 160, 0) : v.Mode == 4 ? MakeRgb(200, 0, 0) : MakeRgb(0, 0, 200);
    return true;
}

Plotter::~Plotter() = default;

bool Plotter::Start(const std::string& commandLine, const std::string& exePath, const std::string& installFolder,
                    const std::string& sharedData) {
    return startup.Main(commandLine, exePath, installFolder, sharedData);
}

void Plotter::Close(int windowState, double left, double top, double width, double height) {
    if (exited) return;
    // Placement first: a normal window keeps its rectangle, a maximised one
    // only its state, a minimised one nothing.
    if (windowState == 0) {
        registry.SaveSetting(Key::WindowState, "0");
        registry.SaveSetting(Key::WindowLeft, NumberText(left));
        registry.SaveSetting(Key::WindowTop, NumberText(top));
        registry.SaveSetting(Key::WindowWidth, NumberText(width));
        registry.SaveSetting(Key::WindowHeight, NumberText(height));
    } else if (windowState == 2) {
        registry.SaveSetting(Key::WindowState, "2");
    }
    startup.ExitSequence();
}

void Plotter::ApplyOptions(const OptionsValues& values) {
    errors.Guard("FrmOptions", [&] {
        SaveOptions(registry, units, values);
        display = LoadDisplayOptions(registry);
        instruments.vessel.AutoscrollTime = float(registry.GetNumber(Key::AutoscrollTime));
    });
}

// ---- The tick ---------------------------------------------------------------

TickFlags Plotter::Flags() {
    const CommSettings& s = instruments.settings;
    TickFlags f;
    f.GyroUseGyroPort = s.GyroUseGyroPort;
    f.AISUseGPSPort = s.AISUseGPSPort;
    f.AISEnable = s.AISEnable;
    f.AISTimeout = s.AISTimeout;
    f.ARPAEnable = s.ARPAEnable;
    return f;
}

bool Plotter::ReadGPSPort() { return instruments.comm.ReadGPSPort(); }
void Plotter::ReadGyroPort() { instruments.comm.ReadGyroPort(); }
void Plotter::ReadAISPort() { instruments.comm.ReadAISPort(); }
void Plotter::AisTimeout(double seconds) { ais.AisTimeout(seconds); }
void Plotter::ReadARPAPort() { instruments.comm.ReadARPAPort(); }
// Tracked targets arrive with their own module; until then there is no file to poll.
void Plotter::PollTrackingFile() {}
bool Plotter::UpdateVesselPos() {
    lastStatus = instruments.vessel.UpdateVesselPos();
    return lastStatus != 0;
}
bool Plotter::VesselActive() { return instruments.vessel.VesselActive(); }
// The target consoles arrive with the targets' module.
void Plotter::UpdateTargetConsoles() {}
// The burst takes the 16-bit status of the last cycle, not just "a fix".
void Plotter::NmeaOutput(bool) { instruments.output.NmeaOutput(lastStatus); }
void Plotter::AutoscrollCheck() { instruments.vessel.AutoscrollCheck(); }
void Plotter::ShowClock(const std::string& text) { services.shell.SetInfoPanel(5, text); }

// ---- Start-up and shutdown --------------------------------------------------

// Palettes belong to 8-bit displays; a true-colour desktop has no system
// palette to save or restore.
void Plotter::FoldersFixed() {
    magVar.SetDatPath(globals.AppDatPath);
    // The deviation card lives in the user's data root.
    deviation.SetDataPath(globals.UserDataPath);
}

void Plotter::SaveSystemPalette() {}
void Plotter::RestoreSystemPalette() {}
bool Plotter::ShowSplash() { return services.shell.ShowSplash(); }
void Plotter::CloseSplash() { services.shell.CloseSplash(); }
void Plotter::LoadCommsSettings() {
    portTable.SetBaseFolder(globals.AppPath);
    instruments.LoadCommsSettings();
}
void Plotter::LoadDisplaySettings() { display = LoadDisplayOptions(registry); }
void Plotter::LoadUnitsConsoleAndOverlays() {
    units.LoadUnits(registry);
    instruments.LoadConsoleSettings();
}
void Plotter::LoadChartFolders() {
    charts.SetRoot(globals.MainDataPath);
    charts.View.SetVesselSource(&vesselSource);
}
void Plotter::LoadNavObjects() { nav.LoadNavObjects(); }
void Plotter::LoadVesselSettings() {
    instruments.vessel.LoadVesselSettings();
    deviation.ReadDeviateDat();
}
void Plotter::LoadWaypoints() { nav.LoadWaypoints(); }
void Plotter::ApplyPaletteMode(int16_t mode) {
    PaletteMode = (mode >= 0 && mode <= 2) ? mode : 0;
    charts.View.SetPaletteMode(PaletteMode);
}
void Plotter::ReadLastFileDataStamp() { instruments.vessel.ReadLastFileDataStamp(); }
void Plotter::ReadBoatOutline(const std::string& path) { chartLibrary.ReadBoatOutline(path); }
void Plotter::InitialiseData() {}
void Plotter::InitialiseControls() {}
void Plotter::CreateMainWindow(const std::string& caption) { services.shell.CreateMainWindow(caption); }
void Plotter::ApplyWindowState(int state) { services.shell.ApplyWindowState(state); }
void Plotter::ApplyWindowRect(double l, double t, double w, double h) { services.shell.ApplyWindowRect(l, t, w, h); }
void Plotter::BuildMenus() { services.shell.BuildMenus(); }
void Plotter::InitRunMenu(bool e, bool g) { services.shell.InitRunMenu(e, g); }
void Plotter::LoadCommsForms() { services.shell.LoadCommsForms(); }
void Plotter::ShowMainWindow() { services.shell.ShowMainWindow(); }
int Plotter::DisplayColours() { return services.shell.DisplayColours(); }
void Plotter::ShowColourWarning() { services.shell.ShowColourWarning(); }
void Plotter::SelectCommandRoute(const std::string& route) { nav.SelectCommandRoute(route); }
std::string Plotter::ShowDisclaimer(const std::string& title, const std::string& text) {
    return services.shell.ShowDisclaimer(title, text);
}
void Plotter::OpenChartAt(double lat, double lon) { charts.Charts.OpenChartAt(lat, lon); }
void Plotter::StartGPS() { instruments.comm.StartGPS(); }
void Plotter::OpenChartNumber(const std::string& number) { charts.Charts.NewChart(number); }
void Plotter::EnableMainTimer() { services.shell.EnableMainTimer(); }
void Plotter::ActivateCommandRoute(const std::string& route) { nav.ActivateCommandRoute(route); }
void Plotter::EndCurrentTool() {
    nav.EndCurrentTool();
    globals.CurrentTool = 0;
}
void Plotter::StopGPS() { instruments.comm.StopGPS(); }
void Plotter::CloseStores() { nav.CloseStores(); }
void Plotter::CloseChart() { charts.Charts.CloseChart(); }
void Plotter::EndProcess() {
    exited = true;
    services.shell.EndProcess();
}

}  // namespace ombra
