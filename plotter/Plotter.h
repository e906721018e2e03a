// Plotter: the one context object. It owns every module and service
// reference, implements the steps of the tick (TickSteps) and of start-up
// and shutdown (StartupSteps) by calling the modules, and is the one place
// where modules are wired together. A test builds a Plotter over fake
// services and a recording shell and drives it; the program builds it over
// Qt services and the main window.
//
// Steps whose modules are not part of the plotter yet do nothing here, each
// in its own function below, so that wiring a module is one edit in one
// place.
#pragma once
#include <memory>
#include <string>

#include "core/ErrorReport.h"
#include "core/Options.h"
#include "core/MainLoop.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "navmath/Deviation.h"
#include "navmath/MagVar.h"
#include "instruments/Instruments.h"
#include "charts/ChartModule.h"
#include "charts/VesselView.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "navobjects/CommGpsLink.h"
#include "navobjects/DisplayChart.h"
#include "navobjects/NavHostRelay.h"
#include "navobjects/NavObjects.h"
#include "platform/ais/AisDecoder.h"
#include "platform/api/Comms.h"
#include "platform/comms/PortTable.h"
#include "platform/comms/PosixComms.h"
#include "plotter/Shell.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"
#include "platform/api/SettingsBackend.h"

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

class Plotter : public TickSteps, public StartupSteps {
public:
    explicit Plotter(PlotterServices services);
    ~Plotter() override;

    // Runs the entry sequence; false when the program is to end at once.
    bool Start(const std::string& commandLine, const std::string& exePath, const std::string& installFolder,
               const std::string& sharedData);
    // The main window's close: placement, then the exit sequence.
    void Close(int windowState, double left, double top, double width, double height);
    // One tick of the 100 ms timer.
    void Tick() { loop.MainTimer_Timer(); }
    // The Options dialog's confirm, with its values.
    void ApplyOptions(const OptionsValues& values);

    PlotterServices services;
    Globals globals;
    Registry registry;
    ErrorReporter errors;
    Units units;
    MainLoop loop;
    Startup startup;
    MagVar magVar;
    Deviation deviation;
    PortTable portTable;
    std::unique_ptr<PosixComms> posixComms;
    Comms& comms;
    AisDecoder ais;
    chartlib::OmbraChartLibrary chartLibrary;
    ChartModule charts;
    PlotterHooks hooks;
    PlotterChartOps chartOps;
    PlotterVesselSource vesselSource;
    Instruments instruments;
    // The navigation objects: the three stores, tracks, dividers, activation.
    NavHostRelay navRelay;
    DisplayChart displayChart;
    NavContext navCtx;
    NavObjects nav;
    CommGpsLink gpsLink;
    // The status of the last vessel cycle (1 fix, 0 poor, -1 none): the
    // NMEA burst's status letters come from it.
    int16_t lastStatus = 0;
    bool exited = false;

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

    // Display settings read at start-up.
    DisplayOptions display;
    // Asks the chart view for a redraw at the window's next turn.
    void RequestChartRedraw() {
        if (charts.View.RedrawRequested) charts.View.RedrawRequested();
    }
    // The cursor over the chart, for the console's cursor rows.
    bool cursorOnChart = false;
    LatLong cursorPos;
    int16_t PaletteMode = 0;
};

}  // namespace ombra
