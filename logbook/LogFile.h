// The day's log file: one plain text file a calendar day, "yyyymmdd.log"
// in the Logs folder of the user's data.
//
// Values are separated by commas, each line ends with CR LF. Strings stand
// in double quotes and a double quote inside a string is written as it is,
// with no escape; integers are decimal, the date is #yyyy-mm-dd#. Lines:
//
//   1  LogDate, CurrentPort, DestinationPort          #2026-11-23#,"Tarnel","Vestrane"
//   2  NumCrew, EngineHours, ETD, Fuel, Water
//   3  AutoLog (0 or 1), AutoInterval (minutes)        1,60
//   4  PortTide 0..4   (name, HW, LW, HW, LW)
//   5  PortTide 5..9   (the second port)
//   6  EntryCount, ForecastCount
//   then four lines an entry: Time, Latitude, Longitude / Course, Speed,
//   NextWaypoint / Range, Bearing, LogReading / WindSpeed, WindDirection,
//   Barometer, Narrative; then one line a forecast field, six a forecast.
//
// A day with no entries is six lines. The reader takes the values back by
// counting fields, not lines: a quoted value runs to the next double quote,
// across line breaks, and whatever follows its closing quote up to the next
// comma or line end is dropped. So a narrative holding `say "stop, now"`
// comes back as "say " and throws the fields after it one place out: the
// format has no escape and keeps that behaviour, as old logs were read.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "logbook/LogEntry.h"
#include "platform/api/DateTime.h"

namespace ombra {

struct LogHeader {
    DateTime LogDate;  // the day of the file; 30/12/1899 while no log is kept
    std::string CurrentPort, DestinationPort, NumCrew, EngineHours, ETD, Fuel, Water;
    int16_t AutoLog = 0;        // 0 or 1
    int32_t AutoInterval = 60;  // minutes
    std::array<std::string, 10> PortTide;  // 0..4 the local port, 5..9 the constant port
};

// The whole of one day: header, entries and forecasts (their counts are the
// sizes of the lists).
struct DayLog {
    LogHeader Header;
    std::vector<LogEntry> Entries;
    std::vector<Forecast> Forecasts;
};

// The file's bytes for `day`.
std::string LogFileText(const DayLog& day);

struct LogReadOutcome {
    bool whole = true;
    int line = 0;        // where the read stopped, 1-based
    std::string fault;   // why, as the error report shows it
};

// Reads `text` into `day`, replacing what it held. A short or damaged file
// stops the read with a fault; what was read before it stays in `day` (a
// partly read entry or forecast included). Never allocates by the counts
// in the file beyond what the text can hold.
LogReadOutcome ReadLogText(std::string_view text, DayLog& day);

// "yyyymmdd", the file name of a day without its extension.
std::string LogBaseName(const DateTime& day);
// The day of a file name "yyyymmdd..." (characters 1-4 year, 5-6 month,
// 7-8 day); false when they do not make a date.
bool LogDateFromName(std::string_view name, DateTime& day);

inline bool SameDay(const DateTime& a, const DateTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

}  // namespace ombra
