// Logs: the day's log book. It keeps one day's header, entries and
// forecasts in memory, writes them to "<data>\Logs\yyyymmdd.log" (LogFile.h)
// and keeps the day's track beside it as "yyyymmdd.trk".
//
// Today's log is opened at start-up when its file exists; otherwise no log
// is in use until the navigator starts one or the first entry of the day
// starts it. An entry is only ever written with a vessel active, and each
// one first rolls the log over to the new day if midnight has passed: the
// old day is saved, today's file is opened if there is one, else a new day
// begins. An older day can be opened to read (not while a vessel is
// active); nothing is saved while it is shown, and the next entry brings
// today's log back.
//
// The day's track is the file the track module records into: today's
// ".trk" is read with today's log and saved with it (when "Save track file
// to disk" is ticked) as well as every minute while points come in, so a
// crash loses at most a minute of it.
//
// Automatic entries fall on multiples of the autolog interval counted from
// midnight, checked at each vessel update: the whole second of the clock
// must divide by the interval. An interval of 0 is reported as a division
// by zero each time it is checked.
#pragma once
#include <string>
#include <vector>

#include "core/ErrorReport.h"
#include "logbook/LogEntry.h"
#include "logbook/LogFile.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"

namespace ombra {

// What the log asks of the program around it.
class LogHost {
public:
    virtual ~LogHost() = default;
    virtual bool VesselActive() = 0;
    // Fills Latitude .. Bearing (the first eight fields but Time) with the
    // navigation state as the console shows it now: position, course and
    // speed; the active point's name, range and bearing, or "None", "N/A".
    virtual void Snapshot(LogEntry& entry) = 0;
    // The entry window (modal): true on OK, with the navigator's five
    // fields copied into `entry`.
    virtual bool ShowLogEntry(LogEntry& entry, const DateTime& when) = 0;
    // An entry was stored (after any rollover).
    virtual void LogEntryAdded(LogEntryKind kind, const LogEntry& entry) = 0;
    // The day shown changed (another day, a new day, a rollover).
    virtual void LogChanged() = 0;
    // The track: the one recorded so far is saved to its own file, then
    // `path` is read (no file: an empty track); `record` makes it the file
    // that new points are saved into.
    virtual void LoadTrack(const std::string& path, bool record) = 0;
    // Writes the track held now to `path` and records into it from now on.
    virtual void SaveTrack(const std::string& path) = 0;
    // New points are saved into `path` from now on; "" saves them nowhere.
    virtual void RecordTrack(const std::string& path) = 0;
    // The navigator switched the saving of the day's track on or off.
    virtual void SaveTrackSwitched(bool on) = 0;
};

class Logs {
public:
    Logs(ErrorReporter& errors, Dialogs& dialogs, Clock& clock, LogHost& host)
        : errors_(errors), dialogs_(dialogs), clock_(clock), host_(host) {}

    DayLog Day;
    // "Save track  file to disk" on the day's window.
    bool SaveTrack = true;
    // The entry the day's window shows selected, 0-based; -1 none.
    int Selected = -1;

    // The folder, "<user data>\Logs\", made when missing; today's log and
    // track when they exist.
    void InitLogs(const std::string& userDataPath);
    // Writes the day's file, and today's track when wanted. Idle while an
    // older day is shown or no log is in use.
    void SaveLog();
    // Reads a log file (a full path) into the day; false when it could not
    // be read whole (what was read stays, the fault is reported).
    bool OpenLog(const std::string& path);
    // Saves the day in use, then starts a blank one for today.
    void NewLog();
    // The Logs menu's "Open Log": refused with a vessel active; a pick
    // among the files of the folder, by date.
    void OpenOlderLog();
    // Back to today's log: its file when there is one, else a new day.
    void OpenTodaysLog();
    // True when the day in use is today's (and not a day opened to read).
    bool LogIsToday();
    bool LogInUse() const { return inUse_; }
    bool OlderLog() const { return older_; }

    // Adds an entry of `kind`. The navigator's kinds (0, 1) go through the
    // entry window; the automatic ones carry their narrative. `text` is the
    // identifier in front of a file position update's narrative.
    void AddLogEntry(LogEntryKind kind, const std::string& text = {});
    // The automatic position log, at each vessel update.
    void AutoLogTick();
    // The entry's first fields as the navigation stands now.
    LogEntry SnapshotEntry();
    // Edits the entry at `index` (0-based) through the entry window.
    bool EditEntry(int index);
    void DeleteEntry(int index);
    // A forecast row whose time is now, "hh:mm"; its index.
    int NewForecast();
    void DeleteForecast(int index);
    // The window's "Save track" box: today's track follows it at once.
    void SetSaveTrack(bool on);

    const std::string& Folder() const { return folder_; }
    std::string PathOf(const DateTime& day, const char* extension) const;
    // The narrative an automatic entry carries.
    static std::string Narrative(LogEntryKind kind, const std::string& text);

private:
    void StoreEntry(LogEntryKind kind, LogEntry& e);
    void ReadDay(const std::string& path);

    ErrorReporter& errors_;
    Dialogs& dialogs_;
    Clock& clock_;
    LogHost& host_;
    std::string folder_;
    bool inUse_ = false;
    bool older_ = false;
};

}  // namespace ombra
