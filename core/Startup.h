// Start-up and shutdown: the entry sequence Main and the one way out.
//
// Main runs once. It fixes the folders (InitGlobals), reads the command
// line, loads each module's settings in a fixed order, brings up the main
// window, asks the disclaimer, opens the starting chart or asks to connect
// the GPS, and enables the main timer last, so that no port is polled while
// settings load. The sequence is a table of stages (Startup.cpp), each with
// the stage text it leaves behind. Each stage runs under the start-up
// handler: a failing stage is reported with the text of the last stage
// completed and Main carries on with the next one, leaving a partly working
// plotter, never a dead one.
//
// Folders on this system. The old plotter lived in a fixed install folder;
// here the install folder (AppPath) is a per-user folder:
//     $OMBRA_HOME/                when OMBRA_HOME is set (tests, the demo)
//     $XDG_DATA_HOME/Vestrane/    otherwise (~/.local/share/Vestrane/)
// unless the program runs under a wholly upper-case name, when it is the
// program's own folder (the old rule, kept). Paths are kept in the
// program's backslash form ("...\dat\") and mapped to "/" when a file is
// touched (core/Paths.h).
//
// Command line: the whole line, upper-cased, searched for NOSPLASH, LAT=,
// LON= and ROUTE="NAME". LAT= and LON= count only together; the program is
// "launched for a route" only when all three are present.
//
//   ombra LAT=50.05 LON=-12.1 ROUTE="HARBOUR APPROACH" nosplash
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/Registry.h"

namespace ombra {

class Clock;
class Dialogs;
class Events;

struct CommandLine {
    bool NoSplash = false;
    bool HasLatLon = false;     // both LAT= and LON= present
    double CommandLat = 0.0;    // seconds of arc
    double CommandLon = 0.0;
    bool HasRoute = false;      // ROUTE= present
    std::string CommandRoute;   // upper case; empty unless quoted with at least one character
    bool LaunchedForRoute() const { return HasLatLon && HasRoute; }
};

CommandLine ParseCommandLine(const std::string& line);

// The line ParseCommandLine reads, from the program's own arguments as a
// shell or a desktop launcher passes them: quotes already stripped, so
// ROUTE="HARBOUR APPROACH" arrives as the one argument ROUTE=HARBOUR
// APPROACH. The route's name is put back in quotes: it is the rest of the
// ROUTE= argument, else the next argument when ROUTE= stands alone, and it
// runs on over further arguments until one that is a key (NOSPLASH, LAT=,
// LON=, ROUTE=), so that an unquoted ROUTE=HARBOUR APPROACH works too. A
// name that still carries its quotes is left as it is.
std::string CommandLineFromArgs(const std::vector<std::string>& args);

// Process-wide start-up state.
struct Globals {
    std::string AppPath;        // with trailing backslash
    std::string MainDataPath;   // no trailing backslash
    std::string UserDataPath;   // with trailing backslash
    std::string UserDatPath, SeafishPath, GPSYPath, AppDatPath, EbblinePath, HelpFile;
    std::string ProductName = "Tarnel";
    std::string VersionText;
    std::string StartupStage;
    double CommandLat = 0.0, CommandLon = 0.0;
    std::string CommandRoute;
    int16_t CurrentTool = 0;
    bool ForceWGS84Datum = false;
    bool SkipGPSPrompt = false;
};

// What Main asks of the modules and the window. The Plotter context
// implements it; tests script it.
class StartupSteps {
public:
    virtual ~StartupSteps() = default;
    virtual void SaveSystemPalette() = 0;
    // The folders are fixed (InitGlobals has run): modules that keep files
    // learn where they live.
    virtual void FoldersFixed() {}
    virtual void RestoreSystemPalette() = 0;
    // True when a splash screen is on show.
    virtual bool ShowSplash() = 0;
    virtual void CloseSplash() = 0;
    // Each module loads its own settings, in this order, before any window
    // is made.
    virtual void LoadCommsSettings() = 0;
    virtual void LoadDisplaySettings() = 0;
    virtual void LoadUnitsConsoleAndOverlays() = 0;
    virtual void LoadChartFolders() = 0;
    virtual void LoadNavObjects() = 0;   // alarms, boundaries, tracks, logs, routes
    virtual void LoadVesselSettings() = 0;
    virtual void LoadWaypoints() = 0;    // symbols, waypoint database, tooltips
    virtual void ApplyPaletteMode(int16_t mode) = 0;
    virtual void ReadLastFileDataStamp() = 0;
    virtual void ReadBoatOutline(const std::string& path) = 0;
    virtual void InitialiseData() = 0;
    virtual void InitialiseControls() = 0;
    // The main window is made, placed, given its menus and shown.
    virtual void CreateMainWindow(const std::string& caption) = 0;
    virtual void ApplyWindowState(int state) = 0;
    virtual void ApplyWindowRect(double left, double top, double width, double height) = 0;
    virtual void BuildMenus() = 0;
    virtual void InitRunMenu(bool ebblineInstalled, bool galelineInstalled) = 0;
    virtual void LoadCommsForms() = 0;
    virtual void ShowMainWindow() = 0;
    // -1 when the display has more than 256 colours.
    virtual int DisplayColours() = 0;
    virtual void ShowColourWarning() = 0;
    virtual void SelectCommandRoute(const std::string& route) = 0;
    // The disclaimer's reply: "Accept" or "Cancel".
    virtual std::string ShowDisclaimer(const std::string& title, const std::string& text) = 0;
    // The installed chart at a position with the smallest scale
    // denominator; empty when none. Opens it and refreshes the lists.
    virtual void OpenChartAt(double lat, double lon) = 0;
    virtual void StartGPS() = 0;
    virtual void OpenChartNumber(const std::string& number) = 0;
    virtual void EnableMainTimer() = 0;
    virtual void ActivateCommandRoute(const std::string& route) = 0;
    // Exit sequence.
    virtual void EndCurrentTool() = 0;
    virtual void StopGPS() = 0;
    virtual void CloseStores() = 0;  // waypoints, routes, boundaries, then the log
    virtual void CloseChart() = 0;
    virtual void EndProcess() = 0;
};

// The text of the disclaimer, for a product name.
std::string DisclaimerText(const std::string& productName);

class Startup {
public:
    Startup(Globals& g, Registry& reg, Dialogs& dialogs, Clock& clock, Events& events, StartupSteps& steps)
        : g_(g), reg_(reg), dialogs_(dialogs), clock_(clock), events_(events), steps_(steps) {}

    // `exePath` is the program's own path; `installFolder` the per-user
    // install folder; `sharedData` where the shipped data lies (its files
    // are copied into AppPath when missing; an empty or missing folder
    // copies nothing). Returns false when the program is to end: the
    // disclaimer was not accepted and the exit sequence has run. A fault in
    // a stage never escapes: it is reported through `dialogs` and the next
    // stage runs. Main may run again on the same object; each run starts
    // from a fresh command line.
    bool Main(const std::string& commandLine, const std::string& exePath, const std::string& installFolder,
              const std::string& sharedData);
    // Fixes the folders in Globals from the program's name and the stored
    // data paths, storing the install folder for an empty path. Faults are
    // reported, never thrown.
    void InitGlobals(const std::string& exePath, const std::string& installFolder);
    // The exit sequence: the current tool ends, the GPS stops, the stores
    // and the chart close, the palette comes back, and EndProcess is called
    // last. A fault in one part is reported and the next part runs. Runs at
    // most once per Main.
    void ExitSequence();

    // The version numbers joined by ".".
    int VersionMajor = 0, VersionMinor = 1;

private:
    // One stage of the start-up sequence. `before`, when set, is the stage
    // text while `run` works; `after`, when set, the text once `run` has
    // returned true (false: the stage's work was skipped).
    struct Stage {
        const char* before;
        bool (Startup::*run)();
        const char* after;
    };
    static const Stage kStages[];
    // What Main was given, for the stages.
    struct Launch {
        std::string commandLine, exePath, installFolder, sharedData;
    };

    // Runs one stage under the start-up handler.
    template <typename F>
    void Step(F&& f);
    void ReportStartupError(int code, int systemError);

    // A stage that is one call of the start-up steps.
    template <void (StartupSteps::*F)()>
    bool Call() {
        (steps_.*F)();
        return true;
    }
    bool SavePalette();
    bool FixFolders();
    bool ProvisionFolders();
    bool ReadCommandLine();
    bool KeepCommandLine();
    bool LoadComms();
    bool ApplyPalette();
    bool ReadBoatOutline();
    bool PauseForSplash();
    bool CreateMainWindow();
    bool PlaceMainWindow();
    bool BuildMenus();
    bool ShowMainWindow();
    bool WarnOfFewColours();
    bool SelectCommandRoute();
    bool AskDisclaimer();
    bool LetEventsRun();
    bool DecideGPSPrompt();
    bool StartGPSOrChart();
    bool ActivateCommandRoute();

    Globals& g_;
    Registry& reg_;
    Dialogs& dialogs_;
    Clock& clock_;
    Events& events_;
    StartupSteps& steps_;
    bool exited_ = false;
    // State one stage leaves for a later one, reset by each Main.
    Launch launch_;
    CommandLine cmd_;
    bool splashShown_ = false;
    bool windowMade_ = false;
    bool declined_ = false;
};

// Copies the shipped data files (recursively) that the install folder does
// not have yet; a user's own edited files are never overwritten.
void ProvisionInstallFolder(const std::string& sharedData, const std::string& appPath);

}  // namespace ombra
