// QtShell: the plotter's window side in the program. It creates FrmMain
// when start-up asks for it, shows the splash, the disclaimer and the
// colour warning, runs MainTimer, and binds the menu commands to the
// plotter. In an unattended run (--screenshot) every question answers its
// default and the disclaimer is accepted.
#pragma once
#include <memory>

#include "plotter/Shell.h"

namespace ombra {

class FrmMain;
class InstrumentCommands;
class ChartCommands;
class NavObjectCommands;
class AlarmCommands;
class TargetCommands;
class DdeCommands;
class LogCommands;
class TideCommands;
class AisCommands;
class FrmSplash;
class Plotter;
class QtDialogs;

class QtShell : public Shell {
public:
    QtShell(QtDialogs& dialogs, bool unattended);
    ~QtShell() override;
    void SetPlotter(Plotter* plotter) { plotter_ = plotter; }
    FrmMain* Main() const { return main_.get(); }
    bool Ended() const { return ended_; }

    bool ShowSplash() override;
    void CloseSplash() override;
    void CreateMainWindow(const std::string& caption) override;
    void ApplyWindowState(int state) override;
    void ApplyWindowRect(double left, double top, double width, double height) override;
    void BuildMenus() override;
    void InitRunMenu(bool ebbline, bool galeline) override;
    void LoadCommsForms() override;
    void ShowMainWindow() override;
    int DisplayColours() override;
    void ShowColourWarning() override;
    std::string ShowDisclaimer(const std::string& title, const std::string& text) override;
    void EnableMainTimer() override;
    void EndProcess() override;
    void SetInfoPanel(int panel, const std::string& text) override;
    void ShowCommDialog(int which) override;
    void ShowLostGPS(bool up) override;
    void RefreshSatInfo() override;
    void ConsoleChanged() override;
    void SetGPSMenuState(bool on) override;
    void SetBusyCursor(bool busy) override;
    void PaletteChanged(int mode) override;
    void ChartRedrawRequested() override;
    void ChartPainted() override;
    void ChartWarningsChanged() override;
    void ChartStatusChanged() override;
    void ChartErrorsChanged() override;
    NavHost* NavWindows() override;
    std::string ShowAlarm(AlarmForm form, const std::string& caption, const std::string& text, bool beep) override;
    void HideAlarm(AlarmForm form) override;
    AlarmCommands* Alarms() const { return alarms_.get(); }
    DdeCommands* Dde() const { return dde_.get(); }
    void LogEntryAdded(LogEntryKind kind, const LogEntry& entry) override;
    bool ShowLogEntry(LogEntry& entry, const DateTime& when) override;
    void LogChanged() override;
    LogCommands* Logs() const { return logs_.get(); }
    TideCommands* Tides() const { return tides_.get(); }
    AisCommands* Ais() const { return ais_.get(); }

    // The Options command: end any tool, fill the dialog, run it, save.
    void RunOptions();

private:
    QtDialogs& dialogs_;
    bool unattended_;
    Plotter* plotter_ = nullptr;
    std::unique_ptr<FrmMain> main_;
    std::unique_ptr<FrmSplash> splash_;
    std::unique_ptr<InstrumentCommands> instruments_;
    std::unique_ptr<ChartCommands> charts_;
    std::unique_ptr<NavObjectCommands> nav_;
    std::unique_ptr<AlarmCommands> alarms_;
    std::unique_ptr<DdeCommands> dde_;
    std::unique_ptr<LogCommands> logs_;
    std::unique_ptr<TideCommands> tides_;
    std::unique_ptr<AisCommands> ais_;
    // Where the chart was last clicked: the pop-up's AIS target.
    ChartPoint lastClick_{};
    std::unique_ptr<TargetCommands> targets_;
    bool busyCursor_ = false;
    int windowState_ = 2;
    bool hasRect_ = false;
    bool ended_ = false;
};

}  // namespace ombra
