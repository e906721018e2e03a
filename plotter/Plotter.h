// Plotter: the one context object. It owns every module and service
// reference, implements the steps of the tick (TickSteps) and of start-up
// and shutdown (StartupSteps) by calling the modules, and is the one place
// where modules are wired together. A test builds a Plotter over fake
// services and a recording shell and drives it; the program builds it over
// Qt services and the main window.
//
// Steps whose modules are not part of the plotter yet do nothing here, each
// in its own function below, so that wiring a module is one edit in one
// place. Windows reach the modules through the accessors below; the joints
// between modules (the hooks of the instruments, the hosts of the chart
// and navigation-object modules, the GPS link, the port table) are private.
#pragma once
#include <memory>
#include <string>

#include "core/ErrorReport.h"
#include "core/MainLoop.h"
#include "core/Options.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "navmath/Deviation.h"
#include "platform/api/ChartLibrary.h"
#include "platform/api/Clock.h"
#include "platform/api/Comms.h"
#include "platform/api/Dialogs.h"
#include "platform/api/SettingsBackend.h"
#include "platform/ais/AisDecoder.h"
#include "platform/comms/PosixComms.h"
#include "instruments/InstrumentDialogs.h"
#include "instruments/Instruments.h"
#include "charts/ChartModule.h"
#include "charts/VesselView.h"
#include "navobjects/NavObjects.h"
#include "plotter/CommGpsLink.h"
#include "plotter/DisplayChart.h"
#include "plotter/PortTable.h"
#include "alarms/AlarmHost.h"
#include "alarms/Alarms.h"
#include "logbook/LogEntry.h"
#include "logbook/Logs.h"
#include "platform/api/TideStream.h"
#include "tides/TideDisplay.h"
#include "tides/PassagePlanner.h"
#include "tides/Tides.h"
#include "targets/Ais.h"
#include "targets/AisDialog.h"
#include "targets/Arpa.h"
#include "targets/TargetPlotHost.h"
#include "targets/Tracked.h"
#include "plotter/Shell.h"
#include "plotter/VariationSource.h"
#include "platform/api/DdeLink.h"
#include "platform/comms/DdeServer.h"
#include "targets/Dde.h"
#include "targets/TargetFinder.h"

namespace ombra {

struct PlotterServices {
    SettingsBackend& settings;
    Dialogs& dialogs;
    Clock& clock;
    Events& events;
    Shell& shell;
    // The ports; when null the plotter opens real ones (serial, network,
    // file replay) through its port table.
    Comms* comms = nullptr;
    // The raster chart engine; when null the plotter uses Ombra's own.
    ChartLibrary* chartLibrary = nullptr;
    // The tidal stream model; when null the plotter uses Ombra's own.
    TideStream* tideStream = nullptr;
    // The data-source link; when null the plotter listens on loopback itself.
    DdeLink* ddeLink = nullptr;
};

class Plotter;

// What the instruments ask of the rest of the plotter: every hook, each
// answered here, those of modules the plotter does not have yet as such.
class PlotterHooks : public InstrumentHooks {
public:
    explicit PlotterHooks(Plotter& p) : p_(p) {}
    void ShowCommDialog(CommDialog dialog) override;
    void DecodeAIS(const std::string& sentence) override;
    bool GetOwnVessel(OwnVesselReport& report) const override;
    void DecodeARPA(std::string_view id, const std::string& sentence) override;
    void ClearArpaTargets() override;
    void ClearActiveTargets() override;
    void SetGPSMenuState(bool gpsOn) override;
    void ArpaHeadingAgeCheck() override;
    void SetInfoLine(InfoPanel panel, const std::string& text) override;
    void SetBusyCursor(bool busy) override;
    bool TideAtVessel(double& set, double& drift) const override;
    bool CourseToSteerLeg(double& course) const override;
    float VariationAt(const LatLong& pos) const override;
    float CompassDeviation(float magneticHeading) const override;
    void EndTrackingAids() override;
    void CloseTrack(const VesselSnapshot& vessel) override;
    void AddTrackPoint(const VesselSnapshot& vessel) override;
    void LogEvent(LogCode code, const std::string& text) override;
    void AutoLog(const VesselSnapshot& vessel) override;
    void RefreshTargets(const VesselSnapshot& vessel) override;
    void TrackCheck(const VesselSnapshot& vessel) override;
    void ManOverboardReadout(const VesselSnapshot& vessel) override;
    void RedrawVessel(const VesselSnapshot& vessel) override;
    void CheckBoundaries(const VesselSnapshot& vessel) override;
    void CheckAnchorAlarm(const VesselSnapshot& vessel) override;
    void CheckArrivalAlarm(const VesselSnapshot& vessel) override;
    void CheckXTEAlarm(const VesselSnapshot& vessel) override;
    void RefreshAutoscrollMarker(const VesselSnapshot& vessel) override;
    void UpdateLogRunningRecord(const VesselSnapshot& vessel) override;
    void RefreshSatInfo(const VesselSnapshot& vessel) override;
    void ShowLostGPS(bool up) override;
    bool CursorPosition(LatLong& pos) const override;
    void ConsoleChanged() override;

private:
    Plotter& p_;
};

// The chart in view and the mouse tools, as the vessel needs them.
class PlotterChartOps : public ChartOps {
public:
    explicit PlotterChartOps(Plotter& p) : p_(p) {}
    bool ChartOpen() const override;
    void PrepareVesselPoint(const LatLong& pos) override;
    void CentreOnVessel(const LatLong& pos) override;
    void OpenBestChartAt(const LatLong& pos) override;
    bool GetScrollView(const LatLong& pos, ScrollView& view) const override;
    void CentreChartAt(const LatLong& pos) override;
    bool VesselBeingDragged() const override;

private:
    Plotter& p_;
};

// The vessel as the chart view draws it.
class PlotterVesselSource : public VesselSource {
public:
    explicit PlotterVesselSource(Plotter& p) : p_(p) {}
    bool GetVesselView(VesselView& view) override;

private:
    Plotter& p_;
};

// The chart module's window side and the deviation card.
class PlotterChartHost : public ChartHost {
public:
    explicit PlotterChartHost(Plotter& p) : p_(p) {}
    void ChartRedrawRequested() override;
    void ChartPainted() override;
    void ChartWarningsChanged() override;
    void ChartStatusChanged() override;
    void ChartBusy(bool busy) override;
    void ChartOpened() override;
    void ChartErrorsChanged() override;
    double CompassDeviation(double magneticCourse) override;

private:
    Plotter& p_;
};

// What the navigation objects ask: windows go to the shell's navigation
// windows once the main window exists (before that a question is
// answered as cancelled), facts to the modules that hold them.
class PlotterNavHost : public NavHost {
public:
    explicit PlotterNavHost(Plotter& p) : p_(p) {}
    int TwoChoice(const std::string& title, const std::string& text, const std::string& first,
                  const std::string& second) override;
    int ListPick(const std::string& title, const std::vector<std::string>& items, const std::string& button) override;
    bool WaypointDialog(WaypointDialogRequest& request) override;
    std::string ChooseFolder(const std::string& title, const std::string& prompt) override;
    std::string ChooseFile(const std::string& title, const std::string& prompt, const std::string& filterName,
                           const std::string& pattern) override;
    void ShowRouteProperties(int16_t route) override;
    void ShowBoundaryProperties(int16_t boundary) override;
    bool ShowAttachment(const std::string& path) override;
    void SetStatus(const std::string& text) override;
    void MenuCaptionsChanged() override;
    void ListsChanged() override;
    void SetCursorAt(ChartPoint screen) override;
    float Variation(const LatLong& pos) override;
    double Deviation(double magneticCourse) override;
    bool VesselActive() override;
    LatLong VesselPos() override;
    bool ConfirmActivation() override;
    int16_t VesselMode() override;
    bool PlaceVessel(const LatLong& pos) override;
    void ActiveLegChanged() override;

private:
    NavHost* Windows();
    Plotter& p_;
};

// What the alarms ask: the vessel and the console from the instruments,
// the activation and the boundaries from the navigation objects, the
// windows from the shell, the man-overboard entries from the log.
class PlotterAlarmHost : public AlarmHost {
public:
    explicit PlotterAlarmHost(Plotter& p) : p_(p) {}
    bool VesselActive() override;
    LatLong VesselPos() override;
    std::string WaypointRow(int index) override;
    bool AutopilotAdvance() override;
    void AutopilotOff() override;
    bool NextPointExists() override;
    void NextRoutePoint() override;
    void DeactivateWaypoint(bool noRedraw) override;
    void DeactivateRoute(bool noRedraw) override;
    void DeactivateAll(bool noRedraw) override;
    void SetActiveLeg(const ActiveLeg& leg) override;
    std::vector<Boundary>* BoundarySlots() override;
    int16_t EditingBoundary() override;
    void AcknowledgeBoundaryAlarm(const std::string& number, const std::string& caption) override;
    std::string ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text, bool beep) override;
    void HideAlarm(AlarmForm form) override;
    bool Confirm(const std::string& text) override;
    void AddLogEntry(LogEntryKind kind) override;
    void Redraw() override;
    void ShowManOverboardReadout(const std::string& text) override;
    void BeginRadiusTool() override;
    void EndRadiusTool() override;

private:
    Plotter& p_;
};

// What the day's log asks: the vessel and the console for an entry's
// snapshot, the entry window and the log's events through the shell, the
// day's track through the track module.
class PlotterLogHost : public LogHost {
public:
    explicit PlotterLogHost(Plotter& p) : p_(p) {}
    bool VesselActive() override;
    void Snapshot(LogEntry& entry) override;
    bool ShowLogEntry(LogEntry& entry, const DateTime& when) override;
    void LogEntryAdded(LogEntryKind kind, const LogEntry& entry) override;
    void LogChanged() override;
    void LoadTrack(const std::string& path, bool record) override;
    void SaveTrack(const std::string& path) override;
    void RecordTrack(const std::string& path) override;
    void SaveTrackSwitched(bool on) override;

private:
    Plotter& p_;
};

// What the stream display asks: the chart in view's pixels, positions and
// sea test, the status line.
class PlotterTideHost : public TideHost {
public:
    explicit PlotterTideHost(Plotter& p) : p_(p) {}
    bool ScreenToTidePoint(int x, int y, LatLong& pos) override;
    bool IsPointSea(const LatLong& pos) override;
    ChartPoint ScreenToChart(ChartPoint screen) override;
    ChartPoint ChartToScreen(ChartPoint chart) override;
    std::string ViewKey() override;
    void SetStatus(const std::string& text) override;
    void TideRegionsChanged() override;

private:
    Plotter& p_;
};

// What the AIS targets ask: the decoder's table, the vessel, the list and
// alarm windows through the shell, the console and the chart's redraw.
class PlotterAisHost : public AisHost {
public:
    explicit PlotterAisHost(Plotter& p) : p_(p) {}
    int16_t TargetCount() override;
    bool Target(int16_t index, AisTarget& target) override;
    void ClearTargets() override;
    bool OwnVessel(OwnMotion& own) override;
    int ListPick(const std::string& title, const std::vector<std::string>& items, const std::string& button) override;
    void ShowCpaAlarm(const std::string& caption, const std::string& text, bool beep) override;
    void HideCpaAlarm() override;
    void ConsoleChanged() override;
    void Redraw() override;

private:
    Plotter& p_;
};

// What the radar and tracked targets ask: own position and the console's
// texts from the instruments, the list dialog from the navigation windows,
// the zoom from the chart view.
class PlotterTargetHost : public TargetPlotHost {
public:
    explicit PlotterTargetHost(Plotter& p) : p_(p) {}
    bool OwnPosition(LatLong& pos) override;
    std::string PositionText(const LatLong& pos) override;
    std::string AngleText(double trueDegrees) override;
    std::string DistanceText(double miles, const char* picture) override;
    std::string SpeedText(double knots, const char* picture) override;
    void ConsoleChanged() override;
    void Redraw() override;
    int ListPick(const std::string& title, const std::vector<std::string>& rows) override;
    void CentreChartOn(const LatLong& pos) override;

private:
    Plotter& p_;
};

// What the data-source link's targets ask: the chart, the questions, the
// console.
class PlotterDdeHost : public DdeHost {
public:
    explicit PlotterDdeHost(Plotter& p) : p_(p) {}
    bool ChartLoaded() override;
    void Message(const std::string& title, const std::string& text) override;
    bool AskYesNo(const std::string& title, const std::string& text) override;
    void ZoomTo(const LatLong& pos) override;
    void Redraw() override;
    void ConsoleChanged() override;

private:
    Plotter& p_;
};

// The targets under a click, of every kind the plotter holds.
class PlotterTargetFinder : public TargetFinder {
public:
    explicit PlotterTargetFinder(Plotter& p) : p_(p) {}
    std::vector<FoundTarget> FindTargets(ChartPoint screen, bool all) override;
    void SelectTarget(const FoundTarget& target) override;

private:
    Plotter& p_;
};

class Plotter : public TickSteps, public StartupSteps {
public:
    explicit Plotter(PlotterServices services);
    ~Plotter() override;

    // Runs the entry sequence; false when the program is to end at once.
    bool Start(const std::string& commandLine, const std::string& exePath, const std::string& installFolder,
               const std::string& sharedData);
    // The main window's close: placement, then the exit sequence.
    void Close(int windowState, double left, double top, double width, double height);
    // One tick of the 100 ms timer; the data-source link is drained after
    // it (never inside a tick that is pumping events).
    void Tick() {
        loop_.MainTimer_Timer();
        ServiceDdeLink();
    }
    // The Options dialog's confirm, with its values.
    void ApplyOptions(const OptionsValues& values);
    // True once the exit sequence has run.
    bool Exited() const { return exited_; }

    // ---- What the windows work on ----------------------------------------
    // The modules a window shows or edits. The wiring between them (hooks,
    // hosts, links, the port table) stays inside the plotter.
    const PlotterServices& services() const { return services_; }
    Globals& globals() { return globals_; }
    Registry& registry() { return registry_; }
    ErrorReporter& errors() { return errors_; }
    Units& units() { return units_; }
    VariationSource& magVar() { return magVar_; }
    Deviation& deviation() { return deviation_; }
    ChartModule& charts() { return charts_; }
    Instruments& instruments() { return instruments_; }
    NavObjects& nav() { return nav_; }
    // The day's log book.
    Logs& logs() { return logs_; }
    // The host the navigation objects' windows and commands report to, and
    // the GPS port as the waypoint and route export uses it.
    NavHost& navHost() { return navHost_; }
    GpsLink& gpsLink() { return gpsLink_; }
    // The alarms: their windows' buttons (Press), the anchor commands of
    // the chart pop-up and man overboard.
    Alarms& alarms() { return alarms_; }
    // The tide regions and the stream at a point.
    Tides& tides() { return tides_; }
    // The stream grid, the stream at a point, the console's tide values,
    // installing regions.
    TideDisplay& tideDisplay() { return tideDisplay_; }
    // The stream window's OK: the grid for `when` over the chart.
    void ShowTideStreams(double when);
    // Tides > Install Tidal Data; a harmonic database takes the stations of
    // the chart in view.
    void InstallTideSet();
    // The passage planner of the route window.
    PassagePlanner& passage() { return passage_; }
    // The AIS targets: the list window, the console's target, the pop-up.
    Ais& aisTargets() { return aisTargets_; }
    // The radar's ARPA targets and the tracking service's vessels.
    Arpa& arpa() { return arpa_; }
    Tracked& tracked() { return tracked_; }
    // The data-source link's targets (the DDE menu and its windows), and
    // the targets of every kind under a click.
    Dde& dde() { return dde_; }
    TargetFinder& targetFinder() { return targetFinder_; }

    // ---- Commands of the windows that reach across modules ---------------
    // The chart centred on the vessel (Vessel > Centre on Vessel).
    void CentreOnVessel();
    // The vessel dialog's confirm: false when a value was refused.
    bool ApplyVesselDialog(const VesselDialogValues& values);
    // The cursor over the chart (the console's cursor rows): whether it is
    // on a plan, and the WGS84 position under it.
    void SetChartCursor(bool onPlan, const LatLong& pos);
    // View > Labels (0 each object's own, 1 forced on, 2 forced off) and
    // View > Route Icons (forced off or not).
    void SetLabelMode(int16_t mode);
    int16_t LabelMode() const { return charts_.Legs.LabelMode; }
    void SetRouteIconsOff(bool off);
    bool RouteIconsOff() const { return displayChart_.routeIconsOff; }
    // The palette in use: 0 day, 1 twilight (dusk), 2 night.
    int16_t PaletteMode() const { return paletteMode_; }
    // Asks the chart view for a redraw at the window's next turn.
    void RequestChartRedraw() { services_.shell.ChartRedrawRequested(); }
    // Adds an entry of the given kind to the day's log. `text` is the
    // identifier that stands in front of a file position update's narrative.
    void AddLogEntry(LogEntryKind kind, const std::string& text = {});
    // AIS: "Centre on AIS Target..." (the list), one target centred from
    // the target list, the pop-up's target under a view pixel, and the AIS
    // Settings dialog's values and its OK.
    void CentreOnAisTarget() { aisTargets_.CentreOnTarget(displayChart_); }
    bool CentreOnAisTarget(int16_t index);
    int16_t AisTargetAt(ChartPoint screen) const { return aisTargets_.HitTarget(screen); }
    AisDialogValues AisDialog() const;
    void ApplyAisDialog(const AisDialogValues& values);

    // TickSteps
    TickFlags Flags() override;
    bool ReadGPSPort() override;
    void ReadGyroPort() override;
    void ReadAISPort() override;
    void AisTimeout(double seconds) override;
    void ReadARPAPort() override;
    void PollTrackingFile() override;
    bool UpdateVesselPos() override;
    bool VesselActive() override;
    void UpdateTargetConsoles() override;
    void NmeaOutput(bool newFix) override;
    void AutoscrollCheck() override;
    void ShowClock(const std::string& text) override;

    // StartupSteps
    void FoldersFixed() override;
    void SaveSystemPalette() override;
    void RestoreSystemPalette() override;
    bool ShowSplash() override;
    void CloseSplash() override;
    void LoadCommsSettings() override;
    void LoadDisplaySettings() override;
    void LoadUnitsConsoleAndOverlays() override;
    void LoadChartFolders() override;
    void LoadNavObjects() override;
    void LoadVesselSettings() override;
    void LoadWaypoints() override;
    void ApplyPaletteMode(int16_t mode) override;
    void ReadLastFileDataStamp() override;
    void ReadBoatOutline(const std::string& path) override;
    void InitialiseData() override;
    void InitialiseControls() override;
    void CreateMainWindow(const std::string& caption) override;
    void ApplyWindowState(int state) override;
    void ApplyWindowRect(double left, double top, double width, double height) override;
    void BuildMenus() override;
    void InitRunMenu(bool ebblineInstalled, bool galelineInstalled) override;
    void LoadCommsForms() override;
    void ShowMainWindow() override;
    int DisplayColours() override;
    void ShowColourWarning() override;
    void SelectCommandRoute(const std::string& route) override;
    std::string ShowDisclaimer(const std::string& title, const std::string& text) override;
    void OpenChartAt(double lat, double lon) override;
    void StartGPS() override;
    void OpenChartNumber(const std::string& number) override;
    void EnableMainTimer() override;
    void ActivateCommandRoute(const std::string& route) override;
    void EndCurrentTool() override;
    void StopGPS() override;
    void CloseStores() override;
    void CloseChart() override;
    void EndProcess() override;

private:
    void ReopenStore(NavStore& store, Key key);
    // The anchor circle and the man-overboard mark in the chart's layers.
    void RegisterAlarmLayers();
    // The stream grid in the chart's layers.
    void RegisterTideLayer();
    // The planned passage's track in the chart's layers.
    void RegisterPassageLayer();
    // The AIS targets in the chart's layers.
    void RegisterAisLayers();
    // Once a vessel cycle: the console's AIS rows and the closest-approach alarm.
    void UpdateAisTargets();
    // The ARPA and tracked targets in the chart's layers.
    void RegisterTargetLayers();
    // The link's targets on the chart, and the link drained on the tick.
    void RegisterDdeLayer();
    void ServiceDdeLink();
    // The cursor's position as the information line shows it.
    std::string CursorText(const LatLong& wgs84);
    // The view at exit, kept for the next start, and put back.
    void RememberView();
    void RestoreView();
    bool LastViewCentre(LatLong& centre) const;
    friend class PlotterHooks;
    friend class PlotterChartOps;
    friend class PlotterVesselSource;
    friend class PlotterChartHost;
    friend class PlotterNavHost;
    friend class PlotterAlarmHost;
    friend class PlotterLogHost;
    friend class PlotterTideHost;
    friend class PlotterAisHost;
    friend class PlotterTargetHost;
    friend class PlotterDdeHost;
    friend class PlotterTargetFinder;

    PlotterServices services_;
    Globals globals_;
    Registry registry_;
    ErrorReporter errors_;
    Units units_;
    MainLoop loop_;
    Startup startup_;
    VariationSource magVar_;
    Deviation deviation_;
    PortTable portTable_;
    std::unique_ptr<PosixComms> posixComms_;
    Comms& comms_;
    AisDecoder ais_;
    // The chart engine: the one the services name, else Ombra's own.
    std::unique_ptr<ChartLibrary> ownChartLibrary_;
    ChartLibrary& chartLibrary_;
    PlotterChartHost chartHost_;
    ChartModule charts_;
    PlotterHooks hooks_;
    PlotterChartOps chartOps_;
    PlotterVesselSource vesselSource_;
    Instruments instruments_;
    // The navigation objects: the three stores, tracks, dividers, activation.
    PlotterNavHost navHost_;
    DisplayChart displayChart_;
    NavContext navCtx_;
    NavObjects nav_;
    CommGpsLink gpsLink_;
    PlotterAlarmHost alarmHost_;
    Alarms alarms_;
    // The day's log book.
    PlotterLogHost logHost_;
    Logs logs_;
    // The tidal stream model: the one the services name, else Ombra's own.
    std::unique_ptr<TideStream> ownTideStream_;
    Tides tides_;
    PlotterTideHost tideHost_;
    TideDisplay tideDisplay_;
    PassagePlanner passage_{tides_};
    // The AIS targets over the decoder's table.
    PlotterAisHost aisHost_;
    Ais aisTargets_;
    // The radar's targets and the tracked vessels.
    PlotterTargetHost targetHost_;
    Arpa arpa_;
    Tracked tracked_;
    // The data-source link and its targets.
    std::unique_ptr<DdeServer> ownDdeLink_;
    DdeLink& ddeLink_;
    PlotterDdeHost ddeHost_;
    Dde dde_;
    PlotterTargetFinder targetFinder_;
    // The status of the last vessel cycle (1 fix, 0 poor, -1 none): the
    // NMEA burst's status letters come from it.
    int16_t lastStatus_ = 0;
    bool exited_ = false;
    // Display settings read at start-up.
    DisplayOptions display_;
    // The cursor over the chart, for the console's cursor rows.
    bool cursorOnChart_ = false;
    LatLong cursorPos_;
    int16_t paletteMode_ = 0;
};

}  // namespace ombra
