// The AIS target record: what the plotter knows of one station heard on
// AIS, in the fixed 364-byte layout that crosses the boundary between the
// navigation logic and the AIS library.
//
// Numbers are 64-bit floats in degrees (north and east positive) and knots:
//   Latitude, Longitude  the last valid position; 0 until one is heard.
//   Speed                knots over ground, negative when not available.
//   Course               degrees true over ground, negative when not available.
//   Heading              degrees true, negative when not available.
// Everything else is text for the console, in 8-bit fixed fields padded with
// blanks; AisText() reads one back trimmed. The texts, for a Class A vessel:
//
//   MMSI "371798000"  IMO "9134270"  CallSign "3FOF8"  Name "EVER DIADEM"
//   Type "Cargo - all ships of this type"  Status "Under way using engine"
//   Update "14:05:09" (the clock when last heard)  Accuracy "High" or "Low"
//   Nav "GPS" (the position fixing device)  Length "295 m"  Width "32 m"
//   SOG "12.3 kn"  COG "224.0"  Gyro "215"  ROT "+12" (degrees a minute,
//   + to starboard; "Fast R", "Fast L")  Draft "12.2 m"
//   Destination "NEW YORK"  ETA "15/05 14:00" (day/month, UTC)
//
// "N/A" stands where the station said a value is not available, a blank
// where it has not said. MMSI is always nine digits: coast stations' start
// "00", groups' "0". OwnVessel is 1 for the record of our own transponder
// (AIVDO). In the own-vessel record given by AisDecoder::GetOwnVessel, Spare
// carries the fix quality: 0 no valid position, 1 a position, 2 a position of
// high accuracy (the transponder's position accuracy flag, normally set with
// a differential fix).
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ombra {

#pragma pack(push, 1)
struct AisTarget {
    char MMSI[16];
    char IMO[16];
    char CallSign[8];
    char Name[24];
    double Latitude;
    double Longitude;
    double Speed;
    double Course;
    double Heading;
    char Type[80];
    char Status[32];
    char Update[24];
    char Accuracy[8];
    char Nav[16];
    char Length[8];
    char Width[8];
    char SOG[8];
    char COG[8];
    char Gyro[8];
    char ROT[8];
    char Draft[8];
    char Destination[24];
    char ETA[16];
    int16_t OwnVessel;
    int16_t Spare;
};
#pragma pack(pop)

static_assert(sizeof(AisTarget) == 364, "AisTarget is the 364-byte library record");
static_assert(offsetof(AisTarget, Latitude) == 64 && offsetof(AisTarget, Type) == 104 &&
                  offsetof(AisTarget, Status) == 184 && offsetof(AisTarget, Destination) == 320 &&
                  offsetof(AisTarget, ETA) == 344 && offsetof(AisTarget, OwnVessel) == 360 &&
                  offsetof(AisTarget, Spare) == 362,
              "AisTarget fields keep their library offsets");

// A record with every text blank and every number "not known".
AisTarget BlankAisTarget();

// Stores text in a fixed field: cut to the field's size, padded with blanks.
template <size_t N>
void SetAisText(char (&field)[N], std::string_view text) {
    size_t i = 0;
    for (; i < N && i < text.size(); ++i) field[i] = text[i];
    for (; i < N; ++i) field[i] = ' ';
}

// Reads a fixed field back, without the blanks and NULs around it.
template <size_t N>
std::string AisText(const char (&field)[N]) {
    size_t end = 0;
    while (end < N && field[end] != '\0') ++end;
    size_t from = 0;
    while (from < end && field[from] == ' ') ++from;
    while (end > from && field[end - 1] == ' ') --end;
    return std::string(field + from, end - from);
}

struct AisMessage;

// What one message did to a record.
struct AisApplied {
    bool describes = false;  // the message is about this station (a position, static or voyage report)
    bool position = false;   // it gave a valid position
};

// Brings a record up to date from one decoded message: the numbers, the
// console texts and `Update` (the time text given). Messages that are not
// about a station (binary messages, acknowledgements...) change nothing.
AisApplied ApplyAisMessage(const AisMessage& m, AisTarget& t, std::string_view updateTime);

}  // namespace ombra
