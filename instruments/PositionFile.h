// File position data: another program steers the plotter by dropping a
// small text file, FileData\Position.dat under the install folder.
//
// One value a line, in any order, keys searched anywhere in the line
// without regard to case (text may stand before a key):
//   LATITUDE:   50.0525          decimal degrees, north positive
//   LONGITUDE:  -11.9000         decimal degrees, east positive
//   POS AGE:    5                minutes old: the report's time is the clock
//                                less that, a day added below midnight
//   VESSEL ID:  Alpha            who reports (default "Vestrane")
//   DATE/TIME:  23/11/2026 14:05:09   the report's time of day
// Lines end in LF or CR LF. On a line the keys are tried in this order and
// the first found counts; of POS AGE and DATE/TIME the later line wins;
// with neither, the report is of the clock at the start of the read.
// Numbers are read by their numeric prefix: "LATITUDE: north" is 0.
//
// ReadPositionFile answers 0 when the file gave no position (either
// coordinate missing, or a line it could not read: reported under
// "ReadPositionFile"), 1 for a new report of the same vessel, whose course
// and speed are made good from the last report by rhumb line (two reports
// with the same time are taken as a day apart, not as infinitely fast),
// and 2 for another vessel, which starts afresh with course 0.
//
//   LatLong base; float start = 0; std::string name = "Vestrane"; double cog = 0, sog = 0;
//   ReadPositionFile(path, clock, errors, base, start, name, cog, sog);   // 1 or 2
#pragma once
#include <cstdint>
#include <string>

#include "core/Types.h"

namespace ombra {

class Clock;
class ErrorReporter;

int16_t ReadPositionFile(const std::string& path, Clock& clock, ErrorReporter& errors, LatLong& base, float& start,
                         std::string& name, double& cog, double& sog);

// The file's date-time text: its modification time, to the nanosecond, so
// that each new version of the file is seen; "" when it cannot be read.
std::string FileStampText(const std::string& path);

// The time of day, in seconds, in an ordinary date-time text: "14:05",
// "14:05:09", "23/11/2026 14:05:09", "2026-11-23T14:05:09Z". A date alone
// is midnight. False when there is neither a time nor a date.
bool ParseTimeOfDay(const std::string& text, double& seconds);

}  // namespace ombra
