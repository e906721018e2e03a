#include "logbook/Logs.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "core/Fault.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "core/Val.h"

namespace ombra {

namespace {
// The most entries or forecasts a day's file can count.
constexpr size_t kMaxRows = 32767;
}  // namespace

std::string Logs::PathOf(const DateTime& day, const char* extension) const {
    return folder_ + LogBaseName(day) + extension;
}

void Logs::InitLogs(const std::string& userDataPath) {
    errors_.Guard("InitLogs", [&] {
        std::string root = userDataPath;
        while (!root.empty() && (root.back() == '\\' || root.back() == '/')) root.pop_back();
        folder_ = root + "\\Logs\\";
        if (!MakeFolder(folder_)) RaiseFault(faults::PathNotFound);
        const DateTime today = clock_.Now();
        if (FileExists(PathOf(today, ".log"))) {
            ReadDay(PathOf(today, ".log"));
        } else {
            // No log yet today: the header stays blank until one begins, and
            // the day's track is recorded meanwhile.
            Day = DayLog{};
            inUse_ = false;
            host_.LoadTrack(PathOf(today, ".trk"), SaveTrack);
        }
        older_ = false;
    });
}

void Logs::ReadDay(const std::string& path) {
    OpenLog(path);
    inUse_ = true;
    Selected = Day.Entries.empty() ? -1 : 0;
    const std::string track = PathOf(Day.Header.LogDate, ".trk");
    host_.LoadTrack(track, SaveTrack && SameDay(Day.Header.LogDate, clock_.Now()));
    host_.LogChanged();
}

bool Logs::OpenLog(const std::string& path) {
    bool whole = false;
    errors_.Guard("OpenLog", [&] {
        std::string why;
        auto text = ReadWholeFile(ResolvePath(path), &why);
        if (!text) throw Fault(faults::FileNotFound, why.empty() ? "File not found" : why);
        LogReadOutcome r = ReadLogText(*text, Day);
        if (r.whole) {
            whole = true;
            return;
        }
        // What was read stays; the file as it was is kept beside the one
        // the next save writes, so nothing of it is lost.
        const std::string keep = path + ".damaged";
        bool kept = FileExists(keep) || SaveFileAtomic(keep, *text);
        throw Fault(faults::InputPastEnd,
                    r.fault + "\nFile: " + NativePath(ResolvePath(path)) + ", line " + std::to_string(r.line) +
                        ".\nThe " + std::to_string(Day.Entries.size()) + " entries and " +
                        std::to_string(Day.Forecasts.size()) + " forecasts read before that line are kept" +
                        (kept ? "; the file as it was is kept as " + NativePath(keep) + "." : "."));
    });
    return whole;
}

void Logs::SaveLog() {
    errors_.Guard("SaveLog", [&] {
        if (older_ || !inUse_) return;
        const std::string path = PathOf(Day.Header.LogDate, ".log");
        std::string why;
        if (!SaveFileAtomic(path, LogFileText(Day), &why))
            throw Fault(faults::PathFileAccess, why + " (" + NativePath(path) + ")");
        if (SaveTrack && SameDay(Day.Header.LogDate, clock_.Now())) host_.SaveTrack(PathOf(Day.Header.LogDate, ".trk"));
    });
}

void Logs::NewLog() {
    SaveLog();
    Day = DayLog{};
    const DateTime now = clock_.Now();
    Day.Header.LogDate = DateTime{now.year, now.month, now.day, 0, 0, 0, 0};
    Day.Header.AutoInterval = 60;
    Selected = -1;
    inUse_ = true;
    older_ = false;
    host_.LoadTrack(PathOf(now, ".trk"), SaveTrack);
    host_.LogChanged();
}

void Logs::OpenTodaysLog() {
    const std::string today = PathOf(clock_.Now(), ".log");
    if (!FileExists(today)) {
        NewLog();
        return;
    }
    SaveLog();
    older_ = false;
    ReadDay(today);
}

bool Logs::LogIsToday() { return inUse_ && !older_ && SameDay(Day.Header.LogDate, clock_.Now()); }

void Logs::OpenOlderLog() {
    if (host_.VesselActive()) {
        dialogs_.MsgBox("Older logbook cannot be opened with a currently active vessel", 0, errors_.ProductName());
        return;
    }
    std::vector<DateTime> days;
    std::vector<std::string> items;
    bool listed = errors_.Guard("OpenOlderLog", [&] {
        std::error_code ec;
        std::vector<std::string> names;
        for (const auto& de : std::filesystem::directory_iterator(ResolvePath(folder_), ec)) {
            std::string name = de.path().filename().string();
            if (name.size() > 4 && LCase(name.substr(name.size() - 4)) == ".log") names.push_back(name);
        }
        std::sort(names.begin(), names.end());
        for (const std::string& n : names) {
            DateTime d;
            // A name that is not a day cannot be listed.
            if (!LogDateFromName(n, d)) throw Fault(faults::TypeMismatch, "Type mismatch (" + n + ")");
            days.push_back(d);
            items.push_back(FormatDate(d, "Long Date"));
        }
    });
    if (!listed) return;
    int pick = dialogs_.PickFromList("Log Files", items, -1);
    if (pick < 0 || size_t(pick) >= days.size()) return;
    SaveLog();
    const std::string path = PathOf(days[size_t(pick)], ".log");
    ReadDay(path);
    // The day opened is read-only unless it is today's.
    older_ = !SameDay(Day.Header.LogDate, clock_.Now());
    host_.LogChanged();
}

LogEntry Logs::SnapshotEntry() {
    LogEntry e;
    e.Time = FormatDate(clock_.Now(), "Long Time");
    host_.Snapshot(e);
    return e;
}

std::string Logs::Narrative(LogEntryKind kind, const std::string& text) {
    switch (kind) {
        case LogEntryKind::AutoLog: return "AutoLog Position.";
        case LogEntryKind::LostGPS: return "Lost GPS signal.";
        case LogEntryKind::PoorGPS: return "Poor GPS signal.";
        case LogEntryKind::RegainedGPS: return "Regained GPS signal.";
        case LogEntryKind::ManOverboard: return "Man overboard condition.";
        case LogEntryKind::ManOverboardCleared: return "Man overboard condition cleared.";
        case LogEntryKind::FilePosition: return text + "File position data updated for ID:";
        default: return {};
    }
}

void Logs::StoreEntry(LogEntryKind kind, LogEntry& e) {
    if (Day.Entries.size() >= kMaxRows) RaiseFault(faults::Overflow);
    Day.Entries.push_back(e);
    if (kind == LogEntryKind::Menu || kind == LogEntryKind::LogWindow) Selected = int(Day.Entries.size()) - 1;
    host_.LogEntryAdded(kind, Day.Entries.back());
}

void Logs::AddLogEntry(LogEntryKind kind, const std::string& text) {
    errors_.Guard("AddLogEntry", [&] {
        if (!host_.VesselActive()) return;
        LogEntry e = SnapshotEntry();
        if (!inUse_ || older_ || !SameDay(Day.Header.LogDate, clock_.Now())) OpenTodaysLog();
        if (kind == LogEntryKind::Menu || kind == LogEntryKind::LogWindow) {
            if (!host_.ShowLogEntry(e, clock_.Now())) return;
        } else {
            e.Narrative = Narrative(kind, text);
            e.LogReading.clear();
            e.WindSpeed.clear();
            e.WindDirection.clear();
            e.Barometer.clear();
        }
        StoreEntry(kind, e);
    });
}

void Logs::AutoLogTick() {
    errors_.Guard("AutoLogTick", [&] {
        if (Day.Header.AutoLog == 0) return;
        const long long second = std::llround(clock_.Timer());
        const long long every = (long long)Day.Header.AutoInterval * 60;
        if (every == 0) RaiseFault(faults::DivisionByZero);
        if (second % every == 0) AddLogEntry(LogEntryKind::AutoLog);
    });
}

bool Logs::EditEntry(int index) {
    if (index < 0 || size_t(index) >= Day.Entries.size()) return false;
    LogEntry e = Day.Entries[size_t(index)];
    // The window names the entry's own day and time.
    DateTime when = Day.Header.LogDate;
    int h = 0, m = 0, sec = 0;
    if (std::sscanf(e.Time.c_str(), "%d:%d:%d", &h, &m, &sec) >= 2 && h >= 0 && h < 24 && m >= 0 && m < 60) {
        when.hour = h;
        when.minute = m;
    }
    if (!host_.ShowLogEntry(e, when)) return false;
    Day.Entries[size_t(index)] = e;
    return true;
}

void Logs::DeleteEntry(int index) {
    if (index < 0 || size_t(index) >= Day.Entries.size()) return;
    Day.Entries.erase(Day.Entries.begin() + index);
    if (Selected >= int(Day.Entries.size())) Selected = int(Day.Entries.size()) - 1;
}

int Logs::NewForecast() {
    if (Day.Forecasts.size() >= kMaxRows) return -1;
    Forecast f;
    f.Time = FormatDate(clock_.Now(), "hh:nn");
    Day.Forecasts.push_back(f);
    return int(Day.Forecasts.size()) - 1;
}

void Logs::DeleteForecast(int index) {
    if (index < 0 || size_t(index) >= Day.Forecasts.size()) return;
    Day.Forecasts.erase(Day.Forecasts.begin() + index);
}

void Logs::SetSaveTrack(bool on) {
    if (on == SaveTrack) return;
    SaveTrack = on;
    host_.SaveTrackSwitched(on);
    if (!LogIsToday() && inUse_) return;
    if (on) host_.SaveTrack(PathOf(clock_.Now(), ".trk"));
    else host_.RecordTrack({});
}

}  // namespace ombra
