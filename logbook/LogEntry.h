// The texts of the day's log: an entry (a snapshot of the navigation state
// and the navigator's remarks) and a weather forecast. Every value is the
// text that was shown when it was written; nothing in a log is a number.
#pragma once
#include <array>
#include <string>
#include <string_view>

namespace ombra {

// What caused an entry; the automatic kinds carry their own narrative.
enum class LogEntryKind : short {
    Menu = 0,           // Logs menu or toolbar: the navigator types it
    LogWindow = 1,      // "New" in the day's log window
    AutoLog = 2,        // the automatic position log
    LostGPS = 3,
    PoorGPS = 4,
    RegainedGPS = 5,
    ManOverboard = 6,
    ManOverboardCleared = 7,
    FilePosition = 8,   // a file position data update
};

struct LogEntry {
    std::string Time, Latitude, Longitude, Course, Speed, NextWaypoint, Range, Bearing,
        LogReading, WindSpeed, WindDirection, Barometer, Narrative;

    static constexpr int kFieldCount = 13;
    // The fields in file and column order.
    std::string& Field(int i) { return this->*Members()[size_t(i)]; }
    const std::string& Field(int i) const { return this->*Members()[size_t(i)]; }

private:
    static constexpr std::array<std::string LogEntry::*, kFieldCount> Members() {
        return {&LogEntry::Time,       &LogEntry::Latitude,     &LogEntry::Longitude,
                &LogEntry::Course,     &LogEntry::Speed,        &LogEntry::NextWaypoint,
                &LogEntry::Range,      &LogEntry::Bearing,      &LogEntry::LogReading,
                &LogEntry::WindSpeed,  &LogEntry::WindDirection, &LogEntry::Barometer,
                &LogEntry::Narrative};
    }
};

// The field names, in the same order: column keys and the names tools print.
inline constexpr std::array<std::string_view, LogEntry::kFieldCount> kLogEntryFieldNames = {
    "Time",  "Latitude", "Longitude",  "Course",    "Speed",         "NextWaypoint", "Range",
    "Bearing", "LogReading", "WindSpeed", "WindDirection", "Barometer", "Narrative"};

struct Forecast {
    std::string Time, SeaArea, WindNow, WindLater, Weather, Visibility;
};

}  // namespace ombra
