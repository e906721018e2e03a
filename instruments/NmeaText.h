// The text rules every NMEA 0183 sentence goes through, in and out.
//
// A sentence as it comes off the wire:
//   $GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47<CR><LF>
//   ^ start  ^ talker "GP" (ignored) and identifier "GGA" at characters 4-6
// Character positions in comments are 1-based, as navigators count them.
//
// Checksum: the exclusive-or of every byte between "$" and "*", written as
// two upper-case hexadecimal digits after the "*". The test is exact: a
// lower-case "*4f" fails even when its value is right, and a sentence with
// no "*", or with "*" as its first character, fails.
//
// Fields: the next delimiter is the next ",", or failing that the next "*",
// the next CR, the next LF. So the checksum and the empty text between CR
// and LF are fields too, which is what makes the field counts of each
// sentence come out as they do (GLL with its status field counts 8). Index
// 0 is "$GPGGA" itself; fields past the end are empty strings.
//
// Positions: "ddmm.mmm" / "dddmm.mmm" become seconds of arc, negated for
// an upper-case "S" or "W" only:
//   NmeaLatLong("4807.038", "N") == 48*3600 + 7.038*60 == 173222.28
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombra {

// Two upper-case hexadecimal digits of the exclusive-or of `body`.
std::string NmeaChecksum(std::string_view body);
// The checksum test of an incoming sentence ("$..." or "!...").
bool ChecksumOK(std::string_view sentence);

struct NmeaFields {
    std::vector<std::string> f;  // maxIndex + 1 entries, index 0 the identifier field
    int count = 0;               // the index of the last field stored (0 when none)
    const std::string& operator[](size_t i) const { return f[i]; }
};
NmeaFields SplitFields(std::string_view sentence, int maxIndex);

// Seconds of arc from an NMEA degrees-and-minutes field and its hemisphere.
// Raises Overflow for numbers too large to be a position.
double NmeaLatLong(const std::string& value, const std::string& hemisphere);
// A time field "hhmmss[.ss]" as a day fraction (the date-time serial form);
// false when the field is shorter than 6 characters or not numeric.
bool NmeaTime(const std::string& field, double& serial);
// A date field "ddmmyy" as a date serial; false unless it is 6 digits of a
// real date. Years 80-99 are 1980-1999, 00-79 are 2000-2079.
bool NmeaDate(const std::string& field, double& serial);

}  // namespace ombra
