#include "plotter/Plotter.h"

#include <cmath>

#include "core/GenFuncs.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "navobjects/CommonDB.h"
#include "plotter/AisBridge.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/tidestream/HarmonicTideStream.h"

namespace ombra {

Plotter::Plotter(PlotterServices s)
    : services_(s),
      registry_(s.settings, globals_.ProductName),
      errors_(s.dialogs, globals_.ProductName),
      loop_(s.clock, *this),
      startup_(globals_, registry_, s.dialogs, s.clock, s.events, *this),
      magVar_("", s.clock, s.dialogs),
      deviation_("", errors_),
      portTable_(registry_, ""),
      posixComms_(s.comms ? nullptr : std::make_unique<PosixComms>(portTable_)),
      comms_(s.comms ? *s.comms : *posixComms_),
      ais_(s.clock),
      ownChartLibrary_(s.chartLibrary ? nullptr : std::make_unique<chartlib::OmbraChartLibrary>()),
      chartLibrary_(s.chartLibrary ? *s.chartLibrary : *ownChartLibrary_),
      chartHost_(*this),
      charts_(chartLibrary_, s.dialogs, errors_, registry_, globals_.ProductName, units_, chartHost_),
      hooks_(*this),
      chartOps_(*this),
      vesselSource_(*this),
      instruments_({registry_, units_, globals_, s.clock, s.events, errors_, comms_, hooks_, chartOps_}),
      navHost_(*this),
      displayChart_(charts_.View, charts_.Legs, chartLibrary_, charts_.State, &charts_.Charts),
      navCtx_{registry_, s.dialogs, errors_, units_, s.clock, s.events, displayChart_, navHost_, globals_},
      nav_(navCtx_, instruments_.leg),
      gpsLink_(instruments_.comm),
      alarmHost_(*this),
      alarms_(registry_, units_, errors_, instruments_.leg, alarmHost_),
      logHost_(*this),
      logs_(errors_, s.dialogs, s.clock, logHost_),
      ownTideStream_(s.tideStream ? nullptr : std::make_unique<HarmonicTideStream>()),
      tides_(s.tideStream ? *s.tideStream : *ownTideStream_, errors_),
      tideHost_(*this),
      tideDisplay_(tides_, s.dialogs, s.clock, registry_, errors_, tideHost_),
      aisHost_(*this),
      aisTargets_(registry_, aisHost_),
      targetHost_(*this),
      arpa_(targetHost_, errors_, s.clock, instruments_.console),
      tracked_(targetHost_, errors_, instruments_.console),
      ownDdeLink_(s.ddeLink ? nullptr : std::make_unique<DdeServer>()),
      ddeLink_(s.ddeLink ? *s.ddeLink : *ownDdeLink_),
      ddeHost_(*this),
      dde_(registry_, ddeLink_, ddeHost_, errors_, globals_.ProductName),
      targetFinder_(*this) {
    RegisterNavLayers(charts_.View, nav_);
    RegisterAlarmLayers();
    RegisterTideLayer();
    RegisterPassageLayer();
    RegisterAisLayers();
    RegisterDdeLayer();
    RegisterTargetLayers();
}

// ---- The chart module's window side ------------------------------------------

void PlotterChartHost::ChartRedrawRequested() { p_.services_.shell.ChartRedrawRequested(); }
void PlotterChartHost::ChartPainted() { p_.services_.shell.ChartPainted(); }
void PlotterChartHost::ChartWarningsChanged() { p_.services_.shell.ChartWarningsChanged(); }
void PlotterChartHost::ChartStatusChanged() { p_.services_.shell.ChartStatusChanged(); }
void PlotterChartHost::ChartBusy(bool busy) { p_.services_.shell.SetBusyCursor(busy); }
void PlotterChartHost::ChartOpened() { p_.services_.shell.ChartStatusChanged(); }
void PlotterChartHost::ChartErrorsChanged() { p_.services_.shell.ChartErrorsChanged(); }
// Compass labels on legs take the deviation card.
double PlotterChartHost::CompassDeviation(double h) { return double(p_.deviation_.DeviationFor(float(h))); }

// ---- What the navigation objects ask -------------------------------------------

NavHost* PlotterNavHost::Windows() { return p_.services_.shell.NavWindows(); }
int PlotterNavHost::TwoChoice(const std::string& t, const std::string& x, const std::string& a, const std::string& b) {
    NavHost* w = Windows();
    return w ? w->TwoChoice(t, x, a, b) : 0;
}
int PlotterNavHost::ListPick(const std::string& t, const std::vector<std::string>& i, const std::string& b) {
    NavHost* w = Windows();
    return w ? w->ListPick(t, i, b) : -1;
}
bool PlotterNavHost::WaypointDialog(WaypointDialogRequest& r) {
    NavHost* w = Windows();
    return w && w->WaypointDialog(r);
}
std::string PlotterNavHost::ChooseFolder(const std::string& t, const std::string& p) {
    NavHost* w = Windows();
    return w ? w->ChooseFolder(t, p) : std::string();
}
std::string PlotterNavHost::ChooseFile(const std::string& t, const std::string& p, const std::string& n,
                                       const std::string& pattern) {
    NavHost* w = Windows();
    return w ? w->ChooseFile(t, p, n, pattern) : std::string();
}
void PlotterNavHost::ShowRouteProperties(int16_t r) {
    if (NavHost* w = Windows()) w->ShowRouteProperties(r);
}
void PlotterNavHost::ShowBoundaryProperties(int16_t b) {
    if (NavHost* w = Windows()) w->ShowBoundaryProperties(b);
}
bool PlotterNavHost::ShowAttachment(const std::string& path) {
    NavHost* w = Windows();
    return w && w->ShowAttachment(path);
}
void PlotterNavHost::SetStatus(const std::string& t) {
    if (NavHost* w = Windows()) w->SetStatus(t);
}
void PlotterNavHost::MenuCaptionsChanged() {
    if (NavHost* w = Windows()) w->MenuCaptionsChanged();
}
void PlotterNavHost::ListsChanged() {
    if (NavHost* w = Windows()) w->ListsChanged();
}
void PlotterNavHost::SetCursorAt(ChartPoint screen) {
    if (NavHost* w = Windows()) w->SetCursorAt(screen);
}
float PlotterNavHost::Variation(const LatLong& pos) { return p_.magVar_.MagneticVariation(pos); }
double PlotterNavHost::Deviation(double h) { return double(p_.deviation_.DeviationFor(float(h))); }
bool PlotterNavHost::VesselActive() { return p_.instruments_.vessel.VesselActive(); }
LatLong PlotterNavHost::VesselPos() { return p_.instruments_.vessel.vessel.Pos; }
// The autopilot output's warning, whichever window or tool activates.
bool PlotterNavHost::ConfirmActivation() {
    return ConfirmActivateWithAutopilot(p_.instruments_.settings.AutopilotActive, p_.services_.dialogs,
                                        p_.globals_.ProductName);
}
int16_t PlotterNavHost::VesselMode() { return p_.instruments_.vessel.vessel.Mode; }
bool PlotterNavHost::PlaceVessel(const LatLong& pos) { return p_.instruments_.vessel.PlaceVessel(pos); }
void PlotterNavHost::ActiveLegChanged() {
    p_.instruments_.vessel.UpdateWaypointConsole();
    p_.services_.shell.ConsoleChanged();
    if (NavHost* w = Windows()) w->ActiveLegChanged();
}

// ---- What the instruments ask ------------------------------------------------

void PlotterHooks::ShowCommDialog(CommDialog dialog) { p_.services_.shell.ShowCommDialog(int(dialog)); }
void PlotterHooks::DecodeAIS(const std::string& sentence) { p_.ais_.DecodeAIS(sentence); }
bool PlotterHooks::GetOwnVessel(OwnVesselReport& report) const { return OwnVesselFromAis(p_.ais_, report); }
// The port has framed the sentence; the ARPA module takes TTM and OSD.
void PlotterHooks::DecodeARPA(std::string_view, const std::string& sentence) {
    p_.arpa_.ArpaPoll(sentence, p_.instruments_.settings.Checksums);
}
void PlotterHooks::ClearArpaTargets() { p_.arpa_.ClearArpaTargets(); }
// The AIS console's target is dropped.
void PlotterHooks::ClearActiveTargets() { p_.aisTargets_.SetActiveTarget(-1); }
void PlotterHooks::SetGPSMenuState(bool gpsOn) { p_.services_.shell.SetGPSMenuState(gpsOn); }
// The heading's age test is the radar's silence test.
void PlotterHooks::ArpaHeadingAgeCheck() { p_.arpa_.CheckTimeout(); }
void PlotterHooks::SetInfoLine(InfoPanel panel, const std::string& text) {
    p_.services_.shell.SetInfoPanel(int(panel), text);
}
void PlotterHooks::SetBusyCursor(bool busy) { p_.services_.shell.SetBusyCursor(busy); }
// The stream at the vessel: from the model when the navigator asks for it
// (the last value it gave stays where it has none), else the set and drift
// entered in the vessel dialog, when there is a drift.
bool PlotterHooks::TideAtVessel(double& set, double& drift) const {
    if (p_.tideDisplay_.UseProudman())
        return p_.tideDisplay_.UpdateConsoleTide(p_.instruments_.vessel.vessel.Pos, set, drift);
    const VesselModule& v = p_.instruments_.vessel;
    if (v.UserTideDrift == 0.0) return false;
    set = v.UserTideSet;
    drift = v.UserTideDrift;
    return true;
}
float PlotterHooks::VariationAt(const LatLong& pos) const { return p_.magVar_.MagneticVariation(pos); }
float PlotterHooks::CompassDeviation(float magneticHeading) const { return p_.deviation_.DeviationFor(magneticHeading); }
// With the vessel off line nothing steers: whatever destination is active,
// waypoint or route point, is dropped and the chart loses its leg.
void PlotterHooks::EndTrackingAids() {
    if (p_.nav_.activation.Leg().Kind != 0) p_.nav_.activation.DeactivateAll(false);
}
void PlotterHooks::CloseTrack(const VesselSnapshot& vessel) {
    AddTrackPoint(vessel);
    p_.nav_.tracks.StartSegment();
}
void PlotterHooks::AddTrackPoint(const VesselSnapshot& vessel) {
    p_.nav_.tracks.AddTrackPoint(vessel.Pos, vessel.COG);
    p_.nav_.tracks.SaveIfDue();
}
void PlotterHooks::LogEvent(LogCode code, const std::string& text) {
    p_.AddLogEntry(LogEntryKind(code), text);
    // A new vessel in the position file: the old one's alarms go down.
    if (code == LogCode::NewFileVessel) p_.alarms_.ClearAlarmForms();
}
void PlotterHooks::AutoLog(const VesselSnapshot&) { p_.logs_.AutoLogTick(); }
// Not present yet: the targets module (AIS and ARPA) refreshes against the vessel.
void PlotterHooks::RefreshTargets(const VesselSnapshot&) {}
void PlotterHooks::TrackCheck(const VesselSnapshot& vessel) {
    if (!p_.nav_.tracks.TrackCheck(vessel.Pos, vessel.COG, vessel.Time)) return;
    p_.RequestChartRedraw();
    p_.nav_.tracks.SaveIfDue();
}
void PlotterHooks::ManOverboardReadout(const VesselSnapshot& vessel) { p_.alarms_.ManOverboardReadout(vessel.Pos); }
void PlotterHooks::RedrawVessel(const VesselSnapshot&) { p_.RequestChartRedraw(); }
// The boundaries are watched at the vessel and, with the predictor shown,
// at the far end of its line: COG for PredictorTime minutes at SOG.
void PlotterHooks::CheckBoundaries(const VesselSnapshot& vessel) {
    const Vessel& v = p_.instruments_.vessel.vessel;
    PredictorLine predictor;
    predictor.InUse = vessel.Predictor;
    predictor.End = DeadReckon(vessel.Pos, vessel.COG, vessel.SOG * double(v.PredictorTime) / 60.0);
    p_.alarms_.CheckBoundaries(vessel.Pos, predictor);
}
void PlotterHooks::CheckAnchorAlarm(const VesselSnapshot& vessel) { p_.alarms_.CheckAnchorAlarm(vessel.Pos); }
void PlotterHooks::CheckArrivalAlarm(const VesselSnapshot&) { p_.alarms_.CheckArrivalAlarm(); }
void PlotterHooks::CheckXTEAlarm(const VesselSnapshot&) { p_.alarms_.CheckXTEAlarm(); }
// Not present yet: the chart view draws no autoscroll marker.
void PlotterHooks::RefreshAutoscrollMarker(const VesselSnapshot&) {}
// The log's running record is the day's track beside it: whatever was
// recorded, by the track check or a turn, is on disk within a minute.
void PlotterHooks::UpdateLogRunningRecord(const VesselSnapshot&) { p_.nav_.tracks.SaveIfDue(); }
void PlotterHooks::RefreshSatInfo(const VesselSnapshot&) { p_.services_.shell.RefreshSatInfo(); }
void PlotterHooks::ShowLostGPS(bool up) { p_.services_.shell.ShowLostGPS(up); }
bool PlotterHooks::CursorPosition(LatLong& pos) const {
    if (!p_.cursorOnChart_) return false;
    pos = p_.cursorPos_;
    return true;
}
void PlotterHooks::ConsoleChanged() { p_.services_.shell.ConsoleChanged(); }

// ---- What the day's log asks ---------------------------------------------------

bool PlotterLogHost::VesselActive() { return p_.instruments_.vessel.VesselActive(); }
void PlotterLogHost::Snapshot(LogEntry& e) {
    const Console& c = p_.instruments_.console;
    e.Latitude = c.LabVessel[0];
    e.Longitude = c.LabVessel[1];
    e.Course = c.LabVessel[2];
    e.Speed = c.LabVessel[3];
    if (p_.nav_.activation.Leg().Kind != 0) {
        e.NextWaypoint = c.LabWP[0];
        e.Range = c.LabWP[4];
        e.Bearing = c.LabWP[3];
    } else {
        e.NextWaypoint = "None";
        e.Range = "N/A";
        e.Bearing = "N/A";
    }
}
bool PlotterLogHost::ShowLogEntry(LogEntry& e, const DateTime& when) {
    return p_.services_.shell.ShowLogEntry(e, when);
}
void PlotterLogHost::LogEntryAdded(LogEntryKind kind, const LogEntry& e) {
    p_.services_.shell.LogEntryAdded(kind, e);
}
void PlotterLogHost::SaveTrackSwitched(bool on) {
    p_.registry_.SaveSetting(Key::LogSaveTrack, on ? "True" : "False");
}
void PlotterLogHost::LogChanged() { p_.services_.shell.LogChanged(); }
void PlotterLogHost::LoadTrack(const std::string& path, bool record) {
    Tracks& t = p_.nav_.tracks;
    if (!t.FileName.empty()) t.SaveTrackFile();
    t.ReadTrackFile(path);
    if (!record) t.FileName.clear();
}
void PlotterLogHost::SaveTrack(const std::string& path) {
    p_.nav_.tracks.FileName = path;
    p_.nav_.tracks.SaveTrackFile();
}
void PlotterLogHost::RecordTrack(const std::string& path) { p_.nav_.tracks.FileName = path; }

// ---- The chart as the vessel needs it ------------------------------------------

bool PlotterChartOps::ChartOpen() const { return p_.charts_.Charts.ChartIsOpen(); }
void PlotterChartOps::PrepareVesselPoint(const LatLong&) { p_.RequestChartRedraw(); }
void PlotterChartOps::CentreOnVessel(const LatLong& pos) {
    if (ChartOpen()) p_.charts_.View.CentreOnPosition(pos);
}
void PlotterChartOps::OpenBestChartAt(const LatLong& pos) { p_.charts_.Charts.OpenChartAt(pos.Lat, pos.Long); }
void PlotterChartOps::CentreChartAt(const LatLong& pos) {
    if (ChartOpen()) p_.charts_.View.CentreOnPosition(pos);
}
bool PlotterChartOps::GetScrollView(const LatLong& pos, ScrollView& v) const {
    if (!ChartOpen()) return false;
    Display& d = p_.charts_.View;
    const ChartViewState& s = d.View();
    if (d.DisplayedPlan < 0 || s.ViewFactor <= 0.0) return false;
    NavPoint np = d.LocatePosition(pos);
    size_t plan = size_t(d.DisplayedPlan);
    if (plan >= np.Pixel.size() || plan >= np.InPlan.size() || np.InPlan[plan] == 0) return false;
    ChartPoint screen = d.ChartToScreen(np.Pixel[plan]);
    v.PixelsPerNM = p_.chartLibrary_.GetPixelsPerNM(d.DisplayedPlan) / s.ViewFactor;
    v.Width = s.Width;
    v.Height = s.Height;
    v.VesselX = screen.x;
    v.VesselY = screen.y;
    return true;
}
bool PlotterChartOps::VesselBeingDragged() const { return p_.nav_.tools.Current() == ToolVessel; }

bool PlotterVesselSource::GetVesselView(VesselView& out) {
    const VesselModule& m = p_.instruments_.vessel;
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
    return startup_.Main(commandLine, exePath, installFolder, sharedData);
}

void Plotter::Close(int windowState, double left, double top, double width, double height) {
    if (exited_) return;
    // Placement first: a normal window keeps its rectangle, a maximised one
    // only its state, a minimised one nothing.
    if (windowState == 0) {
        registry_.SaveSetting(Key::WindowState, "0");
        registry_.SaveSetting(Key::WindowLeft, NumberText(left));
        registry_.SaveSetting(Key::WindowTop, NumberText(top));
        registry_.SaveSetting(Key::WindowWidth, NumberText(width));
        registry_.SaveSetting(Key::WindowHeight, NumberText(height));
    } else if (windowState == 2) {
        registry_.SaveSetting(Key::WindowState, "2");
    }
    startup_.ExitSequence();
}

void Plotter::ApplyOptions(const OptionsValues& values) {
    errors_.Guard("FrmOptions", [&] {
        SaveOptions(registry_, units_, values);
        display_ = LoadDisplayOptions(registry_);
        globals_.ForceWGS84Datum = values.ForceWGS84;
        instruments_.vessel.AutoscrollTime = float(registry_.GetNumber(Key::AutoscrollTime));
        alarms_.SettingsChanged();
        // Everything shown in units is shown again in the new ones now, not
        // at the next vessel cycle (there is none while no vessel is active).
        instruments_.vessel.UpdateVesselConsole();
        instruments_.vessel.UpdateCursorConsole();
        instruments_.vessel.UpdateWaypointConsole();
        services_.shell.ConsoleChanged();
        navHost_.ListsChanged();
        if (cursorOnChart_) SetChartCursor(true, cursorPos_);
        else services_.shell.SetInfoPanel(3, "");
        RequestChartRedraw();
    });
}

void Plotter::SetLabelMode(int16_t mode) {
    charts_.Legs.LabelMode = (mode >= 0 && mode <= 2) ? mode : 0;
    RequestChartRedraw();
}

void Plotter::SetRouteIconsOff(bool off) {
    displayChart_.routeIconsOff = off;
    RequestChartRedraw();
}

void Plotter::CentreOnVessel() { chartOps_.CentreOnVessel(instruments_.vessel.vessel.Pos); }

bool Plotter::ApplyVesselDialog(const VesselDialogValues& values) {
    const std::string nameBefore = instruments_.vessel.vessel.Name;
    const int16_t before = instruments_.vessel.vessel.Mode;
    bool ok = ombra::ApplyVesselDialog(instruments_.vessel, registry_, units_, hooks_, services_.dialogs,
                                       globals_.ProductName, values);
    // Another vessel: the alarms of the one before go down.
    if (ok && instruments_.vessel.vessel.Name != nameBefore) alarms_.ClearAlarmForms();
    // Dead reckoning from nothing has no position of its own: it starts at
    // the middle of the chart in view, and the vessel tool is started so
    // that a click puts the vessel where the navigator knows it to be. With
    // no chart open it starts where the last view was, if there was one.
    if (!ok || before != 0 || instruments_.vessel.vessel.Mode != 1) return ok;
    if (charts_.Charts.ChartIsOpen()) {
        instruments_.vessel.PlaceVessel(charts_.View.ViewCentre());
        nav_.tools.Begin(ToolVessel);
    } else if (LatLong last; LastViewCentre(last)) {
        instruments_.vessel.PlaceVessel(last);
    }
    return ok;
}

void Plotter::AddLogEntry(LogEntryKind kind, const std::string& text) { logs_.AddLogEntry(kind, text); }

// The position under the cursor in the chart's own datum, as its
// graticule reads ("*" when the plan has no shift to WGS84), or in WGS84
// when all coordinates are to be shown in WGS84.
std::string Plotter::CursorText(const LatLong& wgs84) {
    std::string lat, lon;
    if (globals_.ForceWGS84Datum) {
        LatLongText(lat, lon, &wgs84, 1, 1);
    } else {
        NavPoint np = charts_.View.LocatePosition(wgs84);
        const auto& plans = charts_.State.Header.Plans;
        bool shift = true;
        for (size_t p = 0; p < np.InPlan.size() && p < plans.size(); ++p)
            if (np.InPlan[p]) {
                shift = plans[p].HasShift;
                break;
            }
        LatLongText(lat, lon, &np.Local, 0, 1, shift);
    }
    return lat + "  " + lon;
}

void Plotter::SetChartCursor(bool onPlan, const LatLong& pos) {
    cursorOnChart_ = onPlan;
    cursorPos_ = pos;
    // The active position display: the cursor's position on the
    // information line, and the console's cursor rows, as the mouse moves,
    // with a vessel or without one (a passage is planned ashore too).
    if (!display_.ActiveCoord) return;
    services_.shell.SetInfoPanel(3, onPlan ? CursorText(pos) : std::string());
    if (!onPlan) return;
    instruments_.vessel.UpdateCursorConsole();
    services_.shell.ConsoleChanged();
}

// ---- The tick ---------------------------------------------------------------

TickFlags Plotter::Flags() {
    const CommSettings& s = instruments_.settings;
    TickFlags f;
    f.GyroUseGyroPort = s.GyroUseGyroPort;
    f.AISUseGPSPort = s.AISUseGPSPort;
    f.AISEnable = s.AISEnable;
    f.AISTimeout = s.AISTimeout;
    f.ARPAEnable = s.ARPAEnable;
    return f;
}

bool Plotter::ReadGPSPort() { return instruments_.comm.ReadGPSPort(); }
void Plotter::ReadGyroPort() { instruments_.comm.ReadGyroPort(); }
void Plotter::ReadAISPort() { instruments_.comm.ReadAISPort(); }
void Plotter::AisTimeout(double seconds) { ais_.AisTimeout(seconds); }
void Plotter::ReadARPAPort() {
    instruments_.comm.ReadARPAPort();
    arpa_.CheckTimeout();
}
void Plotter::PollTrackingFile() { tracked_.ReadTrackingFile(); }
bool Plotter::UpdateVesselPos() {
    lastStatus_ = instruments_.vessel.UpdateVesselPos();
    return lastStatus_ != 0;
}
bool Plotter::VesselActive() { return instruments_.vessel.VesselActive(); }
// The AIS and ARPA consoles; the tracked vessel's follows each read of its file.
void Plotter::UpdateTargetConsoles() {
    UpdateAisTargets();
    arpa_.UpdateArpaConsole();
}
// The burst takes the 16-bit status of the last cycle, not just "a fix".
void Plotter::NmeaOutput(bool) { instruments_.output.NmeaOutput(lastStatus_); }
void Plotter::AutoscrollCheck() { instruments_.vessel.AutoscrollCheck(); }
void Plotter::ShowClock(const std::string& text) { services_.shell.SetInfoPanel(5, text); }

// ---- Start-up and shutdown --------------------------------------------------

// Palettes belong to 8-bit displays; a true-colour desktop has no system
// palette to save or restore.
void Plotter::FoldersFixed() {
    magVar_.SetDatPath(globals_.AppDatPath);
    // The deviation card lives in the user's data root.
    deviation_.SetDataPath(globals_.UserDataPath);
    // Tide regions live in the user's "Dat\" folder.
    tides_.SetDataPath(NativePath(globals_.UserDataPath + "Dat\\"));
    // The tracking service writes its vessels into the user's "FileData\".
    tracked_.SetFilePath(NativePath(globals_.UserDataPath + "FileData\\Tracking.dat"));
}

void Plotter::SaveSystemPalette() {}
void Plotter::RestoreSystemPalette() {}
bool Plotter::ShowSplash() { return services_.shell.ShowSplash(); }
void Plotter::CloseSplash() { services_.shell.CloseSplash(); }
void Plotter::LoadCommsSettings() {
    portTable_.SetBaseFolder(globals_.AppPath);
    instruments_.LoadCommsSettings();
    aisTargets_.LoadSettings();
    arpa_.LoadSettings(registry_);
    dde_.LoadSettings();
    dde_.ConsoleRows(instruments_.console.LabDDE);
}
void Plotter::LoadDisplaySettings() { display_ = LoadDisplayOptions(registry_); }
void Plotter::LoadUnitsConsoleAndOverlays() {
    units_.LoadUnits(registry_);
    instruments_.LoadConsoleSettings();
}
void Plotter::LoadChartFolders() {
    charts_.SetRoot(globals_.MainDataPath);
    charts_.View.SetVesselSource(&vesselSource_);
}
// The databases open at the last exit come back, by name; one deleted
// meanwhile is not reopened.
void Plotter::ReopenStore(NavStore& store, Key key) {
    std::string name = registry_.GetSetting(key);
    if (name.empty() || store.IndexPath.empty()) return;
    for (const DBEntry& e : ReadIndex(store.IndexPath)) {
        if (e.Name != name || !FileExists(store.Folder + e.File)) continue;
        store.CurrentName = e.Name;
        store.CurrentFile = e.File;
        store.OpenDB();
        return;
    }
}
void Plotter::LoadNavObjects() {
    nav_.LoadNavObjects();
    // The day's log, and its track as the one recorded into.
    logs_.SaveTrack = !registry_.IsFalse(Key::LogSaveTrack);
    logs_.InitLogs(globals_.UserDataPath);
    tides_.ListTideRegions();
    ReopenStore(nav_.boundaries, Key::LastBoundaryDatabase);
    ReopenStore(nav_.routes, Key::LastRouteDatabase);
}
void Plotter::LoadVesselSettings() {
    instruments_.vessel.LoadVesselSettings();
    deviation_.ReadDeviateDat();
}
void Plotter::LoadWaypoints() {
    nav_.LoadWaypoints();
    ReopenStore(nav_.waypoints, Key::LastWaypointDatabase);
}
void Plotter::ApplyPaletteMode(int16_t mode) {
    paletteMode_ = (mode >= 0 && mode <= 2) ? mode : 0;
    charts_.View.SetPaletteMode(paletteMode_);
    services_.shell.PaletteChanged(paletteMode_);
}
void Plotter::ReadLastFileDataStamp() { instruments_.vessel.ReadLastFileDataStamp(); }
void Plotter::ReadBoatOutline(const std::string& path) { chartLibrary_.ReadBoatOutline(path); }
void Plotter::InitialiseData() {
    alarms_.LoadSettings();
    alarms_.ClearAlarmForms();
}
void Plotter::InitialiseControls() {}
void Plotter::CreateMainWindow(const std::string& caption) { services_.shell.CreateMainWindow(caption); }
void Plotter::ApplyWindowState(int state) { services_.shell.ApplyWindowState(state); }
void Plotter::ApplyWindowRect(double l, double t, double w, double h) { services_.shell.ApplyWindowRect(l, t, w, h); }
void Plotter::BuildMenus() { services_.shell.BuildMenus(); }
void Plotter::InitRunMenu(bool e, bool g) { services_.shell.InitRunMenu(e, g); }
void Plotter::LoadCommsForms() { services_.shell.LoadCommsForms(); }
void Plotter::ShowMainWindow() { services_.shell.ShowMainWindow(); }
int Plotter::DisplayColours() { return services_.shell.DisplayColours(); }
void Plotter::ShowColourWarning() { services_.shell.ShowColourWarning(); }
void Plotter::SelectCommandRoute(const std::string& route) { nav_.SelectCommandRoute(route); }
std::string Plotter::ShowDisclaimer(const std::string& title, const std::string& text) {
    return services_.shell.ShowDisclaimer(title, text);
}
void Plotter::OpenChartAt(double lat, double lon) { charts_.Charts.OpenChartAt(lat, lon); }
void Plotter::StartGPS() { instruments_.comm.StartGPS(); }
void Plotter::OpenChartNumber(const std::string& number) {
    if (charts_.Charts.OpenKeepingView(number)) RestoreView();
}

// At exit the view of the open chart is kept; the next start that reopens
// that chart (the last one) shows the same place at the same zoom. A
// vessel's first fix then still moves the view to the vessel.
void Plotter::RememberView() {
    if (!charts_.Charts.ChartIsOpen()) return;
    const LatLong c = charts_.View.ViewCentre();
    // Written only when changed, as the other keys of the exit.
    auto remember = [&](Key key, const std::string& value) {
        if (registry_.GetSetting(key) != value) registry_.SaveSetting(key, value);
    };
    remember(Key::LastViewLat, NumberText(c.Lat));
    remember(Key::LastViewLong, NumberText(c.Long));
    remember(Key::LastViewPixelSize, NumberText(double(charts_.View.PixelSize)));
    remember(Key::LastViewLoRes, charts_.View.ShowingLoRes() ? "True" : "False");
}

bool Plotter::LastViewCentre(LatLong& centre) const {
    const std::string lat = registry_.GetSetting(Key::LastViewLat), lon = registry_.GetSetting(Key::LastViewLong);
    if (!IsNumeric(lat) || !IsNumeric(lon)) return false;
    centre = {Val(lon), Val(lat)};
    return std::fabs(centre.Lat) <= 90 * 3600.0 && std::fabs(centre.Long) <= 180 * 3600.0;
}

void Plotter::RestoreView() {
    LatLong centre;
    if (!LastViewCentre(centre)) return;
    if (registry_.IsTrue(Key::LastViewLoRes)) charts_.View.ShowLoRes();
    const double size = registry_.GetNumber(Key::LastViewPixelSize);
    if (size >= 16 && size <= 1024) charts_.View.SetPixelSize(int16_t(size));
    charts_.View.CentreOnPosition(centre);  // off the chart: its own starting view stays
}
void Plotter::EnableMainTimer() { services_.shell.EnableMainTimer(); }
void Plotter::ActivateCommandRoute(const std::string& route) { nav_.ActivateCommandRoute(route); }
void Plotter::EndCurrentTool() {
    nav_.EndCurrentTool();
    globals_.CurrentTool = 0;
}
void Plotter::StopGPS() { instruments_.comm.StopGPS(); }
void Plotter::CloseStores() {
    // Written only when changed: an exit with nothing new writes no settings.
    auto remember = [&](Key key, const std::string& name) {
        if (registry_.GetSetting(key) != name) registry_.SaveSetting(key, name);
    };
    remember(Key::LastWaypointDatabase, nav_.waypoints.CurrentName);
    remember(Key::LastRouteDatabase, nav_.routes.CurrentName);
    remember(Key::LastBoundaryDatabase, nav_.boundaries.CurrentName);
    logs_.SaveLog();
    nav_.tracks.SaveTrackFile();
    nav_.CloseStores();
}
void Plotter::CloseChart() {
    RememberView();
    charts_.Charts.CloseChart();
}
void Plotter::EndProcess() {
    exited_ = true;
    services_.shell.EndProcess();
}

}  // namespace ombra
