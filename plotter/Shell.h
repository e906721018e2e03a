// Shell: what the plotter asks of its window. The Qt main window implements
// it in the program; tests use a recording shell. Nothing here names a
// toolkit type, so the whole start-up and tick run without a window.
#pragma once
#include <string>

#include "alarms/AlarmForm.h"
#include "logbook/LogEntry.h"
#include "navobjects/NavHost.h"
#include "platform/api/DateTime.h"

namespace ombra {

class Shell {
public:
    virtual ~Shell() = default;
    virtual bool ShowSplash() = 0;  // false when none is shown
    virtual void CloseSplash() = 0;
    virtual void CreateMainWindow(const std::string& caption) = 0;
    virtual void ApplyWindowState(int state) = 0;  // 0 normal, 1 minimised, 2 maximised
    virtual void ApplyWindowRect(double left, double top, double width, double height) = 0;
    virtual void BuildMenus() = 0;
    virtual void InitRunMenu(bool ebbline, bool galeline) = 0;
    virtual void LoadCommsForms() = 0;
    virtual void ShowMainWindow() = 0;
    virtual int DisplayColours() = 0;  // -1 above 256
    virtual void ShowColourWarning() = 0;
    virtual std::string ShowDisclaimer(const std::string& title, const std::string& text) = 0;
    virtual void EnableMainTimer() = 0;
    virtual void EndProcess() = 0;
    // The information line: panel 1 messages and prompts, 2 the age line,
    // 3 the GPS status, 4 the chart's depth units, 5 the clock.
    virtual void SetInfoPanel(int panel, const std::string& text) = 0;

    // The chart view's window (what ChartHost passes on): a redraw soon,
    // the painted store to be shown, the warnings bar, the caption and
    // depth units, a chart opened, the list of chart problems changed.
    virtual void ChartRedrawRequested() = 0;
    virtual void ChartPainted() = 0;
    virtual void ChartWarningsChanged() = 0;
    virtual void ChartStatusChanged() = 0;
    virtual void ChartErrorsChanged() = 0;
    // The windows and commands of the navigation objects, once the main
    // window exists; null before it does and after it is gone.
    virtual NavHost* NavWindows() = 0;

    // Window-side events of the instruments; a shell without the windows
    // ignores them.
    virtual void ShowCommDialog(int /*CommDialog*/) {}
    virtual void ShowLostGPS(bool) {}
    virtual void RefreshSatInfo() {}
    virtual void ConsoleChanged() {}
    virtual void SetGPSMenuState(bool) {}
    virtual void SetBusyCursor(bool) {}
    // The chart's palette changed (0 day, 1 twilight, 2 night): the
    // windows around it follow.
    virtual void PaletteChanged(int /*mode*/) {}

    // The alarm windows. ShowAlarm shows (or shows again) one window with its
    // caption and message, sounding the bell when `beep` is set; it is called
    // at every alert, so an unanswered alarm sounds at each position update.
    // A windowed shell returns "" and the answer reaches the alarms module
    // when a button is pressed; a shell that answers at once (a scripted
    // replay) returns the caption of the button it presses. HideAlarm takes
    // the window down.
    virtual std::string ShowAlarm(AlarmForm, const std::string& /*caption*/,
                                  const std::string& /*text*/, bool /*beep*/) {
        return {};
    }
    virtual void HideAlarm(AlarmForm) {}
    // An entry was added to the day's log (after any rollover to a new day).
    virtual void LogEntryAdded(LogEntryKind, const LogEntry&) {}
    // The entry window, modal: true on OK with the navigator's fields copied
    // into the entry. A shell without windows adds no typed entries.
    virtual bool ShowLogEntry(LogEntry&, const DateTime& /*when*/) { return false; }
    // The day's log changed as a whole (another day opened, a new day).
    virtual void LogChanged() {}
};

}  // namespace ombra
