#include "plotter/Plotter.h"

#include "core/Val.h"

namespace ombra {

Plotter::Plotter(PlotterServices s)
    : services(s),
      registry(s.settings, globals.ProductName),
      errors(s.dialogs, globals.ProductName),
      loop(s.clock, *this),
      startup(globals, registry, s.dialogs, s.clock, s.events, *this),
      magVar("", s.clock, s.dialogs),
      deviation("", errors) {}

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
    });
}

// ---- The tick ---------------------------------------------------------------

TickFlags Plotter::Flags() {
    TickFlags f;
    f.GyroUseGyroPort = registry.IsTrue(Key::GyroUseGyroPort);
    f.AISUseGPSPort = registry.IsTrue(Key::AISUseGPSPort);
    f.AISEnable = Val(registry.GetSetting(Key::AISEnable)) != 0.0;
    f.AISTimeout = Val(registry.GetSetting(Key::AISTimeout));
    f.ARPAEnable = Val(registry.GetSetting(Key::ARPAEnable)) != 0.0;
    return f;
}

// Instruments, targets and the vessel are wired here as their modules join
// the plotter; until then each step has nothing to do.
bool Plotter::ReadGPSPort() { return false; }
void Plotter::ReadGyroPort() {}
void Plotter::ReadAISPort() {}
void Plotter::AisTimeout(double) {}
void Plotter::ReadARPAPort() {}
void Plotter::PollTrackingFile() {}
bool Plotter::UpdateVesselPos() { return false; }
bool Plotter::VesselActive() { return false; }
void Plotter::UpdateTargetConsoles() {}
void Plotter::NmeaOutput(bool) {}
void Plotter::AutoscrollCheck() {}
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
void Plotter::LoadCommsSettings() {}
void Plotter::LoadDisplaySettings() { display = LoadDisplayOptions(registry); }
void Plotter::LoadUnitsConsoleAndOverlays() { units.LoadUnits(registry); }
void Plotter::LoadChartFolders() {}
void Plotter::LoadNavObjects() {}
void Plotter::LoadVesselSettings() { deviation.ReadDeviateDat(); }
void Plotter::LoadWaypoints() {}
void Plotter::ApplyPaletteMode(int16_t mode) { PaletteMode = (mode >= 0 && mode <= 2) ? mode : 0; }
void Plotter::ReadLastFileDataStamp() {}
void Plotter::ReadBoatOutline(const std::string&) {}
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
void Plotter::SelectCommandRoute(const std::string&) {}
std::string Plotter::ShowDisclaimer(const std::string& title, const std::string& text) {
    return services.shell.ShowDisclaimer(title, text);
}
void Plotter::OpenChartAt(double, double) {}
void Plotter::StartGPS() {}
void Plotter::OpenChartNumber(const std::string&) {}
void Plotter::EnableMainTimer() { services.shell.EnableMainTimer(); }
void Plotter::ActivateCommandRoute(const std::string&) {}
void Plotter::EndCurrentTool() { globals.CurrentTool = 0; }
void Plotter::StopGPS() {}
void Plotter::CloseStores() {}
void Plotter::CloseChart() {}
void Plotter::EndProcess() {
    exited = true;
    services.shell.EndProcess();
}

}  // namespace ombra
