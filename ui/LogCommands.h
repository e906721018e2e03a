// The log book's side of the main window: the Logs menu, the day's window
// (FrmLog, modeless, so the autolog and GPS events go on behind it and
// appear in it as they come) and the entry window. QtShell owns one of
// these once FrmMain exists.
//
// Menu rules: with no log in use there is nothing to view or write into
// ("View Current Log" and "New Log Entry" wait for "New Log" or "Open Log",
// or for the first automatic entry of the day); with today's log in use
// "New Log" is off, since it would start the day again.
#pragma once
#include <QPointer>

#include "logbook/LogEntry.h"
#include "platform/api/DateTime.h"

namespace ombra {

class FrmLog;
class FrmMain;
class Plotter;

class LogCommands {
public:
    LogCommands(FrmMain& main, Plotter& plotter);
    void Bind();
    // The menu's enabled entries, from the state of the log.
    void UpdateMenu();
    void ViewLog();
    // The shell's events.
    bool ShowLogEntry(LogEntry& entry, const DateTime& when);
    void EntryAdded();
    void LogChanged();
    // The day's window while it is open.
    FrmLog* Window() const;

private:
    FrmMain& main_;
    Plotter& p_;
    QPointer<FrmLog> log_;
};

}  // namespace ombra
