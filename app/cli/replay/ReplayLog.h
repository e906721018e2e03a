// A recorded instrument log as a replay reads it: line by line, each line
// with the moment a recorder on the chart table received it.
//
// Times come from the log itself. A position sentence (GGA, RMC, GLL) that
// passes its checksum (when it has one) and carries a real time of day
// "hhmmss[.ss]" sets the time of itself and of every line after it up to
// the next such sentence; lines before the first one come at the first
// fix. The day is the date of the first RMC (or, with no RMC in the log,
// the day given to Start), counted back over any midnight between the
// first fix and that RMC; after the first fix a day passes each time the
// time of day falls back by more than twelve hours. A time that falls back
// less than that (a late or repeated sentence) comes at once: the replayed
// clock never runs backwards.
//
// Lines are handed over as the file holds them, CR LF included; a run of
// more than 255 bytes without a line end is no sentence and is skipped
// whole, as a port skips it. Any bytes at all may stand in the file.
//
//   ReplayLog log;
//   if (!log.Open("passage.nmea", why)) ...
//   LogStart s;  log.FindStart(s, fallbackDay);
//   LogLine line;
//   while (log.Next(line)) ...   // line.bytes, line.due (date-time serial)
#pragma once
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/api/DateTime.h"

namespace ombra {

struct LogLine {
    std::string bytes;
    double due = 0.0;  // date-time serial
};

struct LogStart {
    DateTime when;        // the first fix, on its day
    bool dated = false;   // the day came from an RMC
    long long fixes = 0;  // timed position sentences in the whole log
    double lastDue = 0.0; // the serial of the last timed sentence
};

// The time of day of a timed position sentence, in seconds, and its RMC
// date as a date serial (`date` < 0 when it has none); false when the line
// is not one or its checksum or time is wrong.
bool SentenceTime(std::string_view line, double& secondsOfDay, double& date);

class ReplayLog {
public:
    ReplayLog() = default;
    ~ReplayLog();
    ReplayLog(const ReplayLog&) = delete;
    ReplayLog& operator=(const ReplayLog&) = delete;

    bool Open(const std::string& path, std::string& why);
    // Reads the whole log once for its first fix and its day; false when
    // it holds no timed position sentence. Rewinds for Next.
    bool FindStart(LogStart& start, const DateTime& fallbackDay);
    // The next line with its due time; false at the end of the log.
    bool Next(LogLine& line);
    // The due time of the next line without taking it; false at the end.
    bool PeekDue(double& due);

private:
    bool ReadRaw(std::string& line);
    void Rewind();
    double DueOf(const std::string& line);

    std::FILE* f_ = nullptr;
    char buf_[65536];
    size_t len_ = 0, pos_ = 0;
    bool eof_ = false;
    // The clock of the lines.
    double day_ = 0.0;       // date serial of the current day
    double lastTod_ = -1.0;  // seconds of day of the last timed sentence
    double lastDue_ = 0.0;
    double startDue_ = 0.0;
    bool havePeek_ = false;
    LogLine peek_;
};

}  // namespace ombra
