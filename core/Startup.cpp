#include "core/Startup.h"

#include <cerrno>
#include <filesystem>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"

namespace ombra {

CommandLine ParseCommandLine(const std::string& line) {
    CommandLine c;
    std::string u = UCase(line);
    c.NoSplash = u.find("NOSPLASH") != std::string::npos;
    size_t lat = u.find("LAT=");
    size_t lon = u.find("LON=");
    if (lat != std::string::npos && lon != std::string::npos) {
        c.HasLatLon = true;
        c.CommandLat = Val(std::string_view(u).substr(lat + 4)) * 3600.0;
        c.CommandLon = Val(std::string_view(u).substr(lon + 4)) * 3600.0;
    }
    size_t r = u.find("ROUTE=");
    if (r != std::string::npos) {
        c.HasRoute = true;
        size_t q1 = u.find('"', r + 6);
        if (q1 != std::string::npos) {
            size_t q2 = u.find('"', q1 + 1);
            if (q2 != std::string::npos && q2 > q1 + 1) c.CommandRoute = u.substr(q1 + 1, q2 - q1 - 1);
        }
    }
    return c;
}

namespace {
bool StartsWithKey(const std::string& arg, std::string_view key) {
    return arg.size() >= key.size() && UCase(arg.substr(0, key.size())) == key;
}
bool IsKey(const std::string& arg) {
    return StartsWithKey(arg, "NOSPLASH") || StartsWithKey(arg, "LAT=") || StartsWithKey(arg, "LON=") ||
           StartsWithKey(arg, "ROUTE=");
}
}  // namespace

std::string CommandLineFromArgs(const std::vector<std::string>& args) {
    std::string line;
    auto add = [&](const std::string& word) {
        if (!line.empty()) line += ' ';
        line += word;
    };
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (!StartsWithKey(a, "ROUTE=") || a.find('"') != std::string::npos) {
            add(a);
            continue;
        }
        std::string name = a.substr(6);
        // The words after it up to the next key belong to the name.
        while (i + 1 < args.size() && !IsKey(args[i + 1])) {
            const std::string& next = args[++i];
            if (!name.empty() && !next.empty()) name += ' ';
            name += next;
        }
        add(a.substr(0, 6) + (name.empty() ? std::string() : "\"" + name + "\""));
    }
    return line;
}

std::string DisclaimerText(const std::string& productName) {
    return "Note that " + productName +
           " is an aid to navigation, and should not be used as the sole means of navigation at sea.\n"
           "When used at SEA the program is only to be used by persons competent to carry out navigation by "
           "traditional means.\n"
           "If you accept the above please press the accept button, otherwise select the cancel button which will "
           "close down and exit the program.\n";
}

void ProvisionInstallFolder(const std::string& sharedData, const std::string& appPath) {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path src(NativePath(sharedData));
    if (sharedData.empty() || !fs::is_directory(src, ec)) return;
    fs::path dst(NativePath(appPath));
    for (auto it = fs::recursive_directory_iterator(src, ec); !ec && it != fs::recursive_directory_iterator();
         it.increment(ec)) {
        fs::path rel = fs::relative(it->path(), src, ec);
        if (ec) break;
        std::string target = ResolvePath((dst / rel).string());
        if (it->is_directory(ec)) {
            MakeFolder(target);
        } else if (it->is_regular_file(ec) && !FileExists(target)) {
            auto bytes = ReadWholeFile(it->path().string());
            if (bytes) SaveFileAtomic(target, *bytes);
        }
    }
}

void Startup::ReportStartupError(int code, int systemError) {
    dialogs_.MsgBox("Error in startup sequence:\nCode: " + std::to_string(code) + "\nAPI32 RC: " +
                        std::to_string(systemError) + "\nLast Statement: " + g_.StartupStage,
                    mb::OKOnly | mb::Critical, g_.ProductName);
}

template <typename F>
void Startup::Step(F&& f) {
    if (exited_) return;
    errno = 0;
    try {
        f();
    } catch (...) {
        int sys = errno;
        ReportStartupError(ErrorReporter::CurrentFaultNumber(), sys);
    }
}

void Startup::InitGlobals(const std::string& exePath, const std::string& installFolder) {
    ErrorReporter errors(dialogs_, g_.ProductName);
    errors.Guard("InitGlobals", [&] {
        g_.ProductName = "Tarnel";
        namespace fs = std::filesystem;
        std::string base = fs::path(exePath).stem().string();
        bool upper = !base.empty() && base == UCase(base) && base != LCase(base);
        if (upper) {
            g_.AppPath = WithTrailingSlash(fs::path(exePath).parent_path().string());
        } else {
            g_.AppPath = WithTrailingSlash(installFolder);
            MakeFolder(g_.AppPath);
        }
        reg_.SetAppPath(g_.AppPath);
        g_.HelpFile = g_.AppPath + "Ombra.hlp";
        g_.EbblinePath = g_.AppPath + "Ebbline\\";
        g_.AppDatPath = g_.AppPath + "dat\\";
        MakeFolder(g_.AppPath + "dat");
        g_.ForceWGS84Datum = reg_.GetSetting(Key::ForceWGS84Datum) != "False";
        g_.MainDataPath = reg_.GetSetting(Key::MainDataPath);
        if (g_.MainDataPath.empty()) {
            g_.MainDataPath = g_.AppPath;
            reg_.SaveSetting(Key::MainDataPath, g_.MainDataPath);
        }
        if (!g_.MainDataPath.empty() && (g_.MainDataPath.back() == '\\' || g_.MainDataPath.back() == '/')) {
            g_.MainDataPath.pop_back();
            reg_.SaveSetting(Key::MainDataPath, g_.MainDataPath);
        }
        g_.UserDataPath = reg_.GetSetting(Key::UserDataPath);
        if (g_.UserDataPath.empty()) {
            g_.UserDataPath = g_.AppPath;
            reg_.SaveSetting(Key::UserDataPath, g_.UserDataPath);
        }
        g_.UserDataPath = WithTrailingSlash(g_.UserDataPath);
        g_.UserDatPath = g_.UserDataPath + "Dat\\";
        g_.SeafishPath = g_.UserDataPath + "SeaFish\\";
        g_.GPSYPath = g_.UserDataPath + "GPSY\\";
    });
}

// The start-up sequence, one row a stage: the stage text in force while it
// runs (when the row sets one), what it does, and the stage text once it
// has run. A stage whose work is skipped (a start without the splash
// screen) keeps the text in force.
const Startup::Stage Startup::kStages[] = {
    {nullptr, &Startup::SavePalette, nullptr},
    {nullptr, &Startup::FixFolders, nullptr},
    {nullptr, &Startup::ProvisionFolders, nullptr},
    {nullptr, &Startup::Call<&StartupSteps::FoldersFixed>, nullptr},
    {nullptr, &Startup::ReadCommandLine, "Splash Screen"},
    {nullptr, &Startup::KeepCommandLine, nullptr},
    {nullptr, &Startup::LoadComms, "Comms"},
    {nullptr, &Startup::Call<&StartupSteps::LoadDisplaySettings>, "Display"},
    {nullptr, &Startup::Call<&StartupSteps::LoadUnitsConsoleAndOverlays>, "Chartzoom"},
    {nullptr, &Startup::Call<&StartupSteps::LoadChartFolders>, "Chart catalogues"},
    {nullptr, &Startup::Call<&StartupSteps::LoadNavObjects>, "Nav Objects"},
    {nullptr, &Startup::Call<&StartupSteps::LoadVesselSettings>, "Vessel"},
    {nullptr, &Startup::Call<&StartupSteps::LoadWaypoints>, "ToolTips"},
    {nullptr, &Startup::ApplyPalette, nullptr},
    {nullptr, &Startup::ReadBoatOutline, nullptr},
    {"Initialising Data", &Startup::Call<&StartupSteps::InitialiseData>, nullptr},
    {"Initialising Controls", &Startup::Call<&StartupSteps::InitialiseControls>, "Loading Forms"},
    {nullptr, &Startup::PauseForSplash, nullptr},
    {nullptr, &Startup::CreateMainWindow, "frmMain"},
    {nullptr, &Startup::PlaceMainWindow, nullptr},
    {nullptr, &Startup::BuildMenus, "InitRunMenu"},
    {nullptr, &Startup::Call<&StartupSteps::LoadCommsForms>, "Comms forms"},
    {nullptr, &Startup::ShowMainWindow, nullptr},
    {nullptr, &Startup::WarnOfFewColours, nullptr},
    {nullptr, &Startup::SelectCommandRoute, nullptr},
    {nullptr, &Startup::AskDisclaimer, nullptr},
    {nullptr, &Startup::LetEventsRun, nullptr},
    {nullptr, &Startup::DecideGPSPrompt, nullptr},
    {nullptr, &Startup::StartGPSOrChart, nullptr},
    {nullptr, &Startup::Call<&StartupSteps::EnableMainTimer>, nullptr},
    {nullptr, &Startup::ActivateCommandRoute, nullptr},
};

bool Startup::Main(const std::string& commandLine, const std::string& exePath, const std::string& installFolder,
                   const std::string& sharedData) {
    exited_ = false;
    launch_ = {commandLine, exePath, installFolder, sharedData};
    cmd_ = CommandLine{};
    splashShown_ = false;
    windowMade_ = false;
    declined_ = false;
    for (const Stage& stage : kStages) {
        Step([&] {
            if (stage.before) g_.StartupStage = stage.before;
            if ((this->*stage.run)() && stage.after) g_.StartupStage = stage.after;
        });
        if (declined_) {
            ExitSequence();
            return false;
        }
    }
    return !exited_;
}

bool Startup::SavePalette() {
    steps_.SaveSystemPalette();
    g_.CurrentTool = 0;
    return true;
}

bool Startup::FixFolders() {
    InitGlobals(launch_.exePath, launch_.installFolder);
    return true;
}

bool Startup::ProvisionFolders() {
    ProvisionInstallFolder(launch_.sharedData, g_.AppPath);
    return true;
}

bool Startup::ReadCommandLine() {
    cmd_ = ParseCommandLine(launch_.commandLine);
    if (cmd_.NoSplash) return false;
    splashShown_ = steps_.ShowSplash();
    return true;
}

bool Startup::KeepCommandLine() {
    if (cmd_.HasLatLon) {
        g_.CommandLat = cmd_.CommandLat;
        g_.CommandLon = cmd_.CommandLon;
    }
    g_.CommandRoute = cmd_.CommandRoute;
    events_.DoEvents();
    return true;
}

bool Startup::LoadComms() {
    g_.VersionText = Format(VersionMajor, "0") + "." + Format(VersionMinor, "0");
    steps_.LoadCommsSettings();
    return true;
}

bool Startup::ApplyPalette() {
    steps_.ApplyPaletteMode(int16_t(reg_.GetNumber(Key::PaletteMode)));
    steps_.ReadLastFileDataStamp();
    return true;
}

bool Startup::ReadBoatOutline() {
    steps_.ReadBoatOutline(g_.AppPath + "Dat\\Vessel.CSV");
    return true;
}

// The pause keeps the splash screen readable; with no splash there is
// nothing to read and the navigator is not kept waiting.
bool Startup::PauseForSplash() {
    if (splashShown_) clock_.Sleep(2500);
    return true;
}

bool Startup::CreateMainWindow() {
    steps_.CreateMainWindow("Vestrane " + g_.ProductName);
    windowMade_ = true;
    return true;
}

// The stored state always; the stored rectangle only when all four numbers
// are set (-1 is "never stored"). Nothing when the window was not made.
bool Startup::PlaceMainWindow() {
    if (!windowMade_) return false;
    double l = reg_.GetNumber(Key::WindowLeft);
    double t = reg_.GetNumber(Key::WindowTop);
    double w = reg_.GetNumber(Key::WindowWidth);
    double h = reg_.GetNumber(Key::WindowHeight);
    int state = int(reg_.GetNumber(Key::WindowState));
    steps_.ApplyWindowState(state);
    if (l != -1.0 && t != -1.0 && w != -1.0 && h != -1.0) steps_.ApplyWindowRect(l, t, w, h);
    return true;
}

bool Startup::BuildMenus() {
    steps_.BuildMenus();
    steps_.InitRunMenu(FileExists(g_.AppPath + "Ebbline\\EBBLINE.EXE"), FileExists(g_.AppPath + "Galeline\\Galeline.exe"));
    return true;
}

bool Startup::ShowMainWindow() {
    steps_.ShowMainWindow();
    if (splashShown_) steps_.CloseSplash();
    return true;
}

// A display of 256 colours or fewer is warned of once; the mark is cleared
// again on a better display so that a later poor one warns anew.
bool Startup::WarnOfFewColours() {
    int colours = steps_.DisplayColours();
    bool warned = reg_.GetNumber(Key::ColourWarning) != 0.0;
    bool few = colours != -1 && colours <= 256;
    if (!warned && few) {
        steps_.ShowColourWarning();
        reg_.SaveSetting(Key::ColourWarning, "1");
    } else if (warned && !few) {
        reg_.SaveSetting(Key::ColourWarning, "0");
    }
    return true;
}

bool Startup::SelectCommandRoute() {
    if (cmd_.LaunchedForRoute()) steps_.SelectCommandRoute(g_.CommandRoute);
    return true;
}

bool Startup::AskDisclaimer() {
    std::string reply = steps_.ShowDisclaimer(g_.ProductName, DisclaimerText(g_.ProductName));
    if (reply != "Accept") declined_ = true;
    return true;
}

bool Startup::LetEventsRun() {
    events_.DoEvents();
    return true;
}

bool Startup::DecideGPSPrompt() {
    g_.SkipGPSPrompt = cmd_.LaunchedForRoute();
    return true;
}

// Launched for a route, the chart at the command line's position opens and
// nothing is asked. Otherwise the GPS starts or not as the start-up option
// says, or as the navigator answers (the question's default button is the
// last answer); without the GPS, the last chart may open.
bool Startup::StartGPSOrChart() {
    if (g_.SkipGPSPrompt) {
        steps_.OpenChartAt(g_.CommandLat, g_.CommandLon);
        return true;
    }
    int initial = int(reg_.GetNumber(Key::InitialSelect));
    int autoGPS = int(reg_.GetNumber(Key::AutoStartupGPS));
    bool yes;
    if (autoGPS == 0) {
        yes = dialogs_.MsgBox("Do you want to connect to your GPS set now.",
                              mb::YesNo | mb::Question | (initial == 256 ? mb::DefaultButton2 : mb::DefaultButton1),
                              g_.ProductName) == mb::Yes;
    } else {
        yes = autoGPS != 1;
    }
    if (yes) {
        if (initial == 256) reg_.SaveSetting(Key::InitialSelect, "0");
        steps_.StartGPS();
    } else {
        if (initial == 0) reg_.SaveSetting(Key::InitialSelect, "256");
        std::string last = reg_.GetSetting(Key::LastChartNumber);
        if (reg_.GetSetting(Key::AutoStartupChart) == "True" && !last.empty()) steps_.OpenChartNumber(last);
    }
    return true;
}

bool Startup::ActivateCommandRoute() {
    if (!g_.CommandRoute.empty() && cmd_.LaunchedForRoute()) steps_.ActivateCommandRoute(g_.CommandRoute);
    return true;
}

void Startup::ExitSequence() {
    if (exited_) return;
    ErrorReporter errors(dialogs_, g_.ProductName);
    errors.Guard("ExitSequence", [&] { steps_.EndCurrentTool(); });
    g_.CurrentTool = 0;
    errors.Guard("ExitSequence", [&] { steps_.StopGPS(); });
    errors.Guard("ExitSequence", [&] { steps_.CloseStores(); });
    errors.Guard("ExitSequence", [&] { steps_.CloseChart(); });
    errors.Guard("ExitSequence", [&] { steps_.RestoreSystemPalette(); });
    exited_ = true;
    steps_.EndProcess();
}

}  // namespace ombra
