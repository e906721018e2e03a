// A shell with no window: no splash, the disclaimer accepted, one colour
// depth above 256, and every window event let pass. The headless replay and
// the tests that run a plotter without a window start from it and keep
// what they want to watch.
#pragma once
#include <string>

#include "plotter/Shell.h"

namespace ombra {

class WindowlessShell : public Shell {
public:
    bool ShowSplash() override { return false; }
    void CloseSplash() override {}
    void CreateMainWindow(const std::string&) override {}
    void ApplyWindowState(int) override {}
    void ApplyWindowRect(double, double, double, double) override {}
    void BuildMenus() override {}
    void InitRunMenu(bool, bool) override {}
    void LoadCommsForms() override {}
    void ShowMainWindow() override {}
    int DisplayColours() override { return -1; }
    void ShowColourWarning() override {}
    std::string ShowDisclaimer(const std::string&, const std::string&) override { return "Accept"; }
    void EnableMainTimer() override {}
    void EndProcess() override {}
    void SetInfoPanel(int, const std::string&) override {}
    void ChartRedrawRequested() override {}
    void ChartPainted() override {}
    void ChartWarningsChanged() override {}
    void ChartStatusChanged() override {}
    void ChartErrorsChanged() override {}
    NavHost* NavWindows() override { return nullptr; }
};

}  // namespace ombra
