#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/Fault.h"
#include "core/Paths.h"
#include "core/Startup.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/support/TestSupport.h"

using namespace ombra;

namespace {
// Every step logs its name and the stage text in force when it ran.
struct Steps : StartupSteps {
    Globals* g = nullptr;
    std::vector<std::string> log;
    std::string disclaimerReply = "Accept";
    int colours = -1;
    std::string failIn;  // a step that raises a fault
    void L(const std::string& s) {
        log.push_back(s);
        if (s == failIn) throw Fault(5, "Invalid procedure call or argument");
    }
    void SaveSystemPalette() override { L("SaveSystemPalette"); }
    void RestoreSystemPalette() override { L("RestoreSystemPalette"); }
    bool ShowSplash() override { L("ShowSplash"); return true; }
    void CloseSplash() override { L("CloseSplash"); }
    void LoadCommsSettings() override { L("LoadCommsSettings"); }
    void LoadDisplaySettings() override { L("LoadDisplaySettings [" + g->StartupStage + "]"); }
    void LoadUnitsConsoleAndOverlays() override { L("LoadUnits [" + g->StartupStage + "]"); }
    void LoadChartFolders() override { L("LoadChartFolders [" + g->StartupStage + "]"); }
    void LoadNavObjects() override { L("LoadNavObjects [" + g->StartupStage + "]"); }
    void LoadVesselSettings() override { L("LoadVesselSettings [" + g->StartupStage + "]"); }
    void LoadWaypoints() override { L("LoadWaypoints [" + g->StartupStage + "]"); }
    void ApplyPaletteMode(int16_t m) override { L("ApplyPaletteMode " + std::to_string(m) + " [" + g->StartupStage + "]"); }
    void ReadLastFileDataStamp() override { L("ReadLastFileDataStamp"); }
    void ReadBoatOutline(const std::string& p) override { L("ReadBoatOutline " + p.substr(p.size() - 15)); }
    void InitialiseData() override { L("InitialiseData [" + g->StartupStage + "]"); }
    void InitialiseControls() override { L("InitialiseControls [" + g->StartupStage + "]"); }
    void CreateMainWindow(const std::string& c) override { L("CreateMainWindow " + c); }
    void ApplyWindowState(int s) override { L("ApplyWindowState " + std::to_string(s)); }
    void ApplyWindowRect(double l, double t, double w, double h) override {
        L("ApplyWindowRect " + std::to_string(int(l)) + "," + std::to_string(int(t)) + "," + std::to_string(int(w)) +
          "," + std::to_string(int(h)));
    }
    void BuildMenus() override { L("BuildMenus [" + g->StartupStage + "]"); }
    void InitRunMenu(bool e, bool gl) override { L(std::string("InitRunMenu ") + (e ? "E" : "-") + (gl ? "G" : "-")); }
    void LoadCommsForms() override { L("LoadCommsForms [" + g->StartupStage + "]"); }
    void ShowMainWindow() override { L("ShowMainWindow [" + g->StartupStage + "]"); }
    int DisplayColours() override { L("DisplayColours"); return colours; }
    void ShowColourWarning() override { L("ShowColourWarning"); }
    void SelectCommandRoute(const std::string& r) override { L("SelectCommandRoute " + r); }
    std::string ShowDisclaimer(const std::string& title, const std::string&) override {
        L("ShowDisclaimer " + title);
        return disclaimerReply;
    }
    void OpenChartAt(double lat, double lon) override {
        L("OpenChartAt " + std::to_string(int(lat)) + " " + std::to_string(int(lon)));
    }
    void StartGPS() override { L("StartGPS"); }
    void OpenChartNumber(const std::string& n) override { L("OpenChartNumber [" + n + "]"); }
    void EnableMainTimer() override { L("EnableMainTimer"); }
    void ActivateCommandRoute(const std::string& r) override { L("ActivateCommandRoute " + r); }
    void EndCurrentTool() override { L("EndCurrentTool"); }
    void StopGPS() override { L("StopGPS"); }
    void CloseStores() override { L("CloseStores"); }
    void CloseChart() override { L("CloseChart"); }
    void EndProcess() override { L("EndProcess"); }

    bool Has(const std::string& s) const { return std::find(log.begin(), log.end(), s) != log.end(); }
    long Index(const std::string& s) const { return std::find(log.begin(), log.end(), s) - log.begin(); }
};

struct StartRun {
    test::TempDir dir;
    MemorySettings store;
    Globals g;
    Registry reg{store, g.ProductName};
    ScriptedDialogs dialogs;
    ManualClock clock;
    NoEvents events;
    Steps steps;
    Startup startup{g, reg, dialogs, clock, events, steps};
    StartRun() { steps.g = &g; }
    bool Main(const std::string& cmd = "") {
        return startup.Main(cmd, dir.path() + "/bin/ombra", dir.path() + "/home", dir.path() + "/shipped");
    }
    std::string Get(const char* key) { return store.values[{"Vestrane", "Tarnel", key}]; }
};
}  // namespace

TEST(CommandLine, KeysAnywhereInAnyCase) {
    struct Case {
        const char* line;
        bool noSplash, latLon;
        double lat, lon;
        bool hasRoute;
        const char* route;
    } cases[] = {
        {"", false, false, 0, 0, false, ""},
        {"nosplash", true, false, 0, 0, false, ""},
        {"xNoSplashx", true, false, 0, 0, false, ""},
        {"LAT=50.5", false, false, 0, 0, false, ""},  // LAT= alone has no effect
        {"lon=-12 lat=50.25", false, true, 50.25 * 3600, -12 * 3600, false, ""},
        {"LAT=abc LON=1", false, true, 0, 3600, false, ""},
        {"ROUTE=\"Harbour Approach\"", false, false, 0, 0, true, "HARBOUR APPROACH"},
        {"ROUTE=\"\"", false, false, 0, 0, true, ""},
        {"ROUTE=\"open", false, false, 0, 0, true, ""},
        {"ROUTE=noquotes", false, false, 0, 0, true, ""},
        {"LAT=50 LON=-12 ROUTE=\"R1\" NOSPLASH", true, true, 50 * 3600, -12 * 3600, true, "R1"},
        {"route= \"x\" \"y\"", false, false, 0, 0, true, "X"},
    };
    for (auto& c : cases) {
        CommandLine r = ParseCommandLine(c.line);
        EXPECT_EQ(r.NoSplash, c.noSplash) << c.line;
        EXPECT_EQ(r.HasLatLon, c.latLon) << c.line;
        EXPECT_DOUBLE_EQ(r.CommandLat, c.lat) << c.line;
        EXPECT_DOUBLE_EQ(r.CommandLon, c.lon) << c.line;
        EXPECT_EQ(r.HasRoute, c.hasRoute) << c.line;
        EXPECT_EQ(r.CommandRoute, c.route) << c.line;
        EXPECT_EQ(r.LaunchedForRoute(), c.latLon && c.hasRoute) << c.line;
    }
}

// The program's own arguments, as a shell or a desktop launcher hands them
// over (quotes already removed), make the line that ParseCommandLine reads.
TEST(CommandLine, ArgumentsKeepARouteNameWithBlanks) {
    struct Case {
        std::vector<std::string> args;
        const char* route;  // what the joined line yields
        bool launchedForRoute;
    } cases[] = {
        // ombra LAT=50 LON=-12 ROUTE="HARBOUR APPROACH": the shell drops the quotes.
        {{"LAT=50", "LON=-12", "ROUTE=HARBOUR APPROACH"}, "HARBOUR APPROACH", true},
        // Exec=ombra "ROUTE=Harbour Approach" nosplash in a launcher.
        {{"ROUTE=Harbour Approach", "nosplash", "LAT=1", "LON=2"}, "HARBOUR APPROACH", true},
        // A one-word name.
        {{"LAT=50", "LON=-12", "route=R1"}, "R1", true},
        // Unquoted in the shell: the name runs on until the next key.
        {{"ROUTE=HARBOUR", "APPROACH", "LAT=50", "LON=-12"}, "HARBOUR APPROACH", true},
        // ROUTE= "HARBOUR APPROACH": the name is the next argument.
        {{"LAT=50", "LON=-12", "ROUTE=", "HARBOUR APPROACH"}, "HARBOUR APPROACH", true},
        // Quotes that reached the program (escaped in the shell) are kept as typed.
        {{"LAT=50", "LON=-12", "ROUTE=\"A B\""}, "A B", true},
        // ROUTE= with nothing after it names no route.
        {{"LAT=50", "LON=-12", "ROUTE="}, "", true},
        {{"nosplash"}, "", false},
        {{}, "", false},
    };
    for (auto& c : cases) {
        std::string line = CommandLineFromArgs(c.args);
        CommandLine r = ParseCommandLine(line);
        EXPECT_EQ(r.CommandRoute, c.route) << line;
        EXPECT_EQ(r.LaunchedForRoute(), c.launchedForRoute) << line;
    }
    CommandLine r = ParseCommandLine(CommandLineFromArgs({"nosplash", "LAT=50.5", "LON=-1.25", "ROUTE=X Y"}));
    EXPECT_TRUE(r.NoSplash);
    EXPECT_DOUBLE_EQ(r.CommandLat, 50.5 * 3600);
    EXPECT_DOUBLE_EQ(r.CommandLon, -1.25 * 3600);
}

TEST(Startup, ADefaultStartRunsEveryStepInOrder) {
    StartRun r;
    ASSERT_TRUE(r.Main());
    std::vector<std::string> want = {
        "SaveSystemPalette", "ShowSplash", "LoadCommsSettings", "LoadDisplaySettings [Comms]",
        "LoadUnits [Display]", "LoadChartFolders [Chartzoom]", "LoadNavObjects [Chart catalogues]",
        "LoadVesselSettings [Nav Objects]", "LoadWaypoints [Vessel]", "ApplyPaletteMode 0 [ToolTips]",
        "ReadLastFileDataStamp", "ReadBoatOutline \\Dat\\Vessel.CSV", "InitialiseData [Initialising Data]",
        "InitialiseControls [Initialising Controls]", "CreateMainWindow Vestrane Tarnel", "ApplyWindowState 2",
        "BuildMenus [frmMain]", "InitRunMenu --", "LoadCommsForms [InitRunMenu]", "ShowMainWindow [Comms forms]",
        "CloseSplash", "DisplayColours", "ShowDisclaimer Tarnel", "EnableMainTimer"};
    EXPECT_EQ(r.steps.log, want);
    EXPECT_EQ(r.clock.sleptMs, 2500);
    EXPECT_EQ(r.g.VersionText, "0.1");
    EXPECT_EQ(r.g.StartupStage, "Comms forms");
    // The GPS question, with No as its default the first time.
    ASSERT_EQ(r.dialogs.asked.size(), 1u);
    EXPECT_EQ(r.dialogs.asked[0].text, "Do you want to connect to your GPS set now.");
    EXPECT_EQ(r.dialogs.asked[0].title, "Tarnel");
    EXPECT_EQ(r.dialogs.asked[0].style, mb::YesNo | mb::Question | mb::DefaultButton2);
    EXPECT_EQ(r.reg.GetSetting(Key::InitialSelect), "256");
}

TEST(Startup, FoldersAtFirstRunAndAfter) {
    StartRun r;
    r.Main("NOSPLASH");
    std::string app = r.dir.path() + "/home\\";  // the folder as given, with the program's separator
    EXPECT_EQ(r.g.AppPath, app);
    EXPECT_EQ(r.g.AppDatPath, app + "dat\\");
    EXPECT_EQ(r.g.EbblinePath, app + "Ebbline\\");
    EXPECT_EQ(r.g.HelpFile, app + "Ombra.hlp");
    EXPECT_TRUE(FolderExists(app + "dat"));
    // Empty paths become the install folder and are stored; the shared one without its final separator.
    EXPECT_EQ(r.Get("MainDataPath"), r.dir.path() + "/home");
    EXPECT_EQ(r.Get("UserDataPath"), app);
    EXPECT_EQ(r.g.UserDatPath, app + "Dat\\");
    EXPECT_EQ(r.g.SeafishPath, app + "SeaFish\\");
    EXPECT_EQ(r.g.GPSYPath, app + "GPSY\\");
    EXPECT_EQ(r.clock.sleptMs, 0);  // no splash, no pause

    StartRun again;
    again.store.Write("Vestrane", "Tarnel", "MainDataPath", "C:\\Charts\\");
    again.store.Write("Vestrane", "Tarnel", "UserDataPath", "/data/user");
    again.Main("NOSPLASH");
    EXPECT_EQ(again.Get("MainDataPath"), "C:\\Charts");
    EXPECT_EQ(again.g.MainDataPath, "C:\\Charts");
    EXPECT_EQ(again.g.UserDataPath, "/data/user\\");
    EXPECT_EQ(again.g.UserDatPath, "/data/user\\Dat\\");
}

TEST(Startup, AWhollyUpperCaseProgramNameUsesItsOwnFolder) {
    StartRun r;
    r.startup.InitGlobals(r.dir.path() + "/bin/OMBRA", r.dir.path() + "/home");
    EXPECT_EQ(r.g.AppPath, r.dir.path() + "/bin\\");
    r.startup.InitGlobals(r.dir.path() + "/bin/Ombra", r.dir.path() + "/home");
    EXPECT_EQ(r.g.AppPath, r.dir.path() + "/home\\");
}

TEST(Startup, ShippedDataIsCopiedWithoutOverwritingTheUsersFiles) {
    StartRun r;
    test::WriteFile(r.dir / "shipped/dat/IGRF25.DAT", "new coefficients");
    test::WriteFile(r.dir / "shipped/Dat/Vessel.CSV", "shipped outline");
    test::WriteFile(r.dir / "home/Dat/Vessel.CSV", "my own outline");
    r.Main("NOSPLASH");
    // "dat" and "Dat" are one folder: the file joins the user's existing one.
    EXPECT_EQ(test::ReadFile(ResolvePath(r.dir / "home/dat/IGRF25.DAT")), "new coefficients");
    EXPECT_EQ(test::ReadFile(r.dir / "home/Dat/Vessel.CSV"), "my own outline");
}

TEST(Startup, DisclaimerCancelRunsTheExitSequence) {
    StartRun r;
    r.steps.disclaimerReply = "Cancel";
    EXPECT_FALSE(r.Main("NOSPLASH"));
    long d = r.steps.Index("ShowDisclaimer Tarnel");
    std::vector<std::string> tail(r.steps.log.begin() + d + 1, r.steps.log.end());
    std::vector<std::string> want = {"EndCurrentTool", "StopGPS", "CloseStores", "CloseChart", "RestoreSystemPalette",
                                     "EndProcess"};
    EXPECT_EQ(tail, want);
    EXPECT_FALSE(r.steps.Has("EnableMainTimer"));
    EXPECT_TRUE(r.dialogs.asked.empty());  // no GPS question after a refusal
    // Any reply but the literal "Accept" refuses.
    StartRun odd;
    odd.steps.disclaimerReply = "accept";
    EXPECT_FALSE(odd.Main("NOSPLASH"));
}

TEST(Startup, TheGPSQuestionDefaultsToTheLastAnswer) {
    StartRun r;
    r.dialogs.replies = {mb::Yes};
    r.Main("NOSPLASH");
    EXPECT_TRUE(r.steps.Has("StartGPS"));
    EXPECT_EQ(r.reg.GetSetting(Key::InitialSelect), "0");
    EXPECT_LT(r.steps.Index("StartGPS"), r.steps.Index("EnableMainTimer"));

    // Next start: Yes is the default; answering No makes No the default again.
    StartRun next;
    next.store = r.store;
    next.dialogs.replies = {mb::No};
    next.Main("NOSPLASH");
    EXPECT_EQ(next.dialogs.asked[0].style, mb::YesNo | mb::Question | mb::DefaultButton1);
    EXPECT_FALSE(next.steps.Has("StartGPS"));
    EXPECT_EQ(next.reg.GetSetting(Key::InitialSelect), "256");
}

TEST(Startup, StartupOptionsDecideGPSAndChart) {
    struct Case { const char* autoGPS; const char* autoChart; const char* last; bool asked, gps; const char* chart; } cases[] = {
        {"1", "False", nullptr, false, false, nullptr},
        {"1", "True", nullptr, false, false, "OpenChartNumber [4000    ]"},
        {"1", "True", "", false, false, nullptr},
        {"1", "TRUE", "1234A", false, false, nullptr},
        {"2", "True", "1234A", false, true, nullptr},   // a GPS start takes the place of the chart
        {"7", "False", nullptr, false, true, nullptr},  // any other value means Yes
        {"0", "True", "1234A", true, false, "OpenChartNumber [1234A]"},
    };
    for (auto& c : cases) {
        StartRun r;
        r.reg.SaveSetting(Key::AutoStartupGPS, c.autoGPS);
        r.reg.SaveSetting(Key::AutoStartupChart, c.autoChart);
        if (c.last) r.reg.SaveSetting(Key::LastChartNumber, c.last);
        r.dialogs.replies = {mb::No};
        r.Main("NOSPLASH");
        EXPECT_EQ(!r.dialogs.asked.empty(), c.asked) << c.autoGPS;
        EXPECT_EQ(r.steps.Has("StartGPS"), c.gps) << c.autoGPS;
        bool opened = false;
        for (auto& l : r.steps.log) opened |= l.starts_with("OpenChartNumber");
        EXPECT_EQ(opened, c.chart != nullptr) << c.autoGPS << " " << c.autoChart;
        if (c.chart) {
            EXPECT_TRUE(r.steps.Has(c.chart)) << c.chart;
        }
    }
}

TEST(Startup, LaunchedForARouteSkipsTheGPSQuestion) {
    StartRun r;
    r.Main("LAT=50.5 LON=-12 ROUTE=\"approach\" NOSPLASH");
    EXPECT_TRUE(r.dialogs.asked.empty());
    EXPECT_EQ(r.g.CommandRoute, "APPROACH");
    EXPECT_EQ(r.g.CommandLat, 50.5 * 3600);
    long sel = r.steps.Index("SelectCommandRoute APPROACH");
    long dis = r.steps.Index("ShowDisclaimer Tarnel");
    long open = r.steps.Index("OpenChartAt 181800 -43200");
    long timer = r.steps.Index("EnableMainTimer");
    long act = r.steps.Index("ActivateCommandRoute APPROACH");
    EXPECT_LT(sel, dis);
    EXPECT_LT(dis, open);
    EXPECT_LT(open, timer);
    EXPECT_EQ(act, timer + 1);
    // A route without a position is no launch for a route.
    StartRun half;
    half.Main("ROUTE=\"approach\" NOSPLASH");
    EXPECT_FALSE(half.steps.Has("SelectCommandRoute APPROACH"));
    EXPECT_FALSE(half.steps.Has("ActivateCommandRoute APPROACH"));
    EXPECT_EQ(half.dialogs.asked.size(), 1u);
}

TEST(Startup, WindowPlacementNeedsAllFourNumbers) {
    struct Case { const char *l, *t, *w, *h, *state; bool rect; } cases[] = {
        {"10", "20", "800", "600", "0", true},
        {"-1", "20", "800", "600", "0", false},
        {"10", "20", "800", "-1", "2", false},
        {"-1.0", "-1", "-1", "-1", "1", false},
        {"0", "0", "1024", "768", "2", true},
    };
    for (auto& c : cases) {
        StartRun r;
        r.reg.SaveSetting(Key::WindowLeft, c.l);
        r.reg.SaveSetting(Key::WindowTop, c.t);
        r.reg.SaveSetting(Key::WindowWidth, c.w);
        r.reg.SaveSetting(Key::WindowHeight, c.h);
        r.reg.SaveSetting(Key::WindowState, c.state);
        r.Main("NOSPLASH");
        bool rect = false;
        for (auto& l : r.steps.log) rect |= l.starts_with("ApplyWindowRect");
        EXPECT_EQ(rect, c.rect) << c.l << " " << c.h;
        EXPECT_TRUE(r.steps.Has(std::string("ApplyWindowState ") + c.state));
    }
}

TEST(Startup, ColourWarningOnceOnPoorDisplays) {
    struct Case { int colours; const char* stored; bool warned; const char* after; } cases[] = {
        {256, "0", true, "1"}, {16, "0", true, "1"}, {256, "1", false, "1"}, {-1, "1", false, "0"}, {-1, "0", false, "0"},
    };
    for (auto& c : cases) {
        StartRun r;
        r.steps.colours = c.colours;
        r.reg.SaveSetting(Key::ColourWarning, c.stored);
        r.Main("NOSPLASH");
        EXPECT_EQ(r.steps.Has("ShowColourWarning"), c.warned) << c.colours << " " << c.stored;
        EXPECT_EQ(r.reg.GetSetting(Key::ColourWarning), c.after);
    }
}

TEST(Startup, AFailingStepIsReportedWithTheLastStageAndStartUpGoesOn) {
    StartRun r;
    r.steps.failIn = "LoadVesselSettings [Nav Objects]";
    EXPECT_TRUE(r.Main("NOSPLASH"));
    ASSERT_GE(r.dialogs.asked.size(), 2u);
    EXPECT_EQ(r.dialogs.asked[0].text,
              "Error in startup sequence:\nCode: 5\nAPI32 RC: 0\nLast Statement: Nav Objects");
    EXPECT_EQ(r.dialogs.asked[0].title, "Tarnel");
    EXPECT_TRUE(r.steps.Has("LoadWaypoints [Nav Objects]"));  // the stage was not reached, the next step ran
    EXPECT_TRUE(r.steps.Has("EnableMainTimer"));
}

TEST(Startup, AFailingStageLeavesTheStageTextBeforeItAndSkipsOnlyWhatDependsOnIt) {
    struct Case {
        const char* cmd;
        const char* failIn;
        const char* lastStage;  // as the report gives it
        const char* skipped;    // a step that must not run after the failure
        const char* ran;        // a later step that must still run
    } cases[] = {
        // Without the splash screen no stage text is set before the settings load.
        {"NOSPLASH", "LoadCommsSettings", "", "LoadDisplaySettings [Comms]", "LoadDisplaySettings []"},
        {"", "ShowSplash", "", "CloseSplash", "LoadDisplaySettings [Comms]"},
        {"NOSPLASH", "InitialiseData [Initialising Data]", "Initialising Data", nullptr,
         "InitialiseControls [Initialising Controls]"},
        {"NOSPLASH", "InitialiseControls [Initialising Controls]", "Initialising Controls", nullptr,
         "BuildMenus [frmMain]"},
        // No window, so nothing to place; the menus still come.
        {"NOSPLASH", "CreateMainWindow Vestrane Tarnel", "Loading Forms", "ApplyWindowState 2",
         "BuildMenus [Loading Forms]"},
        {"NOSPLASH", "BuildMenus [frmMain]", "frmMain", "InitRunMenu --", "LoadCommsForms [frmMain]"},
    };
    for (auto& c : cases) {
        StartRun r;
        r.steps.failIn = c.failIn;
        EXPECT_TRUE(r.Main(c.cmd)) << c.failIn;
        ASSERT_FALSE(r.dialogs.asked.empty()) << c.failIn;
        EXPECT_EQ(r.dialogs.asked[0].text,
                  std::string("Error in startup sequence:\nCode: 5\nAPI32 RC: 0\nLast Statement: ") + c.lastStage)
            << c.failIn;
        if (c.skipped) {
            EXPECT_FALSE(r.steps.Has(c.skipped)) << c.failIn;
        }
        EXPECT_TRUE(r.steps.Has(c.ran)) << c.failIn;
        EXPECT_TRUE(r.steps.Has("EnableMainTimer")) << c.failIn;
    }
    // A failed splash screen is not waited for.
    StartRun r;
    r.steps.failIn = "ShowSplash";
    r.Main();
    EXPECT_EQ(r.clock.sleptMs, 0);
}

TEST(Startup, DisclaimerTextIsExact) {
    EXPECT_EQ(DisclaimerText("Tarnel"),
              "Note that Tarnel is an aid to navigation, and should not be used as the sole means of navigation at "
              "sea.\nWhen used at SEA the program is only to be used by persons competent to carry out navigation by "
              "traditional means.\nIf you accept the above please press the accept button, otherwise select the "
              "cancel button which will close down and exit the program.\n");
}
