// The records that NMEA input fills: the last fix, the heading and water
// speed, what GGA adds for display, and the satellites in view.
//
// Units: positions in seconds of arc (Long before Lat, east and north
// positive), courses and headings in degrees true, speeds in knots,
// variation and deviation in degrees east positive. Time and Date are
// date-time serials (days since 30/12/1899, time as the day's fraction);
// Stamp is the ship's clock, seconds since midnight, at the last good fix.
// The 16-bit and 32-bit fields are kept at those widths on purpose: a
// course is whole degrees, a speed a 32-bit float, and both show so in the
// sentences the plotter sends on.
#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "core/Types.h"

namespace ombra {

// GPSFix::Status, which is also the result of a vessel cycle.
constexpr int16_t kFixNoData = -1;  // nothing received (or it ran out)
constexpr int16_t kFixInvalid = 0;  // sentences come, but without a valid fix
constexpr int16_t kFixGood = 1;     // a good fix

struct GPSFix {
    int16_t Status = kFixInvalid;  // kFixGood, kFixInvalid or kFixNoData
    bool Diff = false;    // a differential fix
    double Time = 0.0;    // UTC time of day from the sentence
    double Date = 0.0;    // UTC date (RMC only)
    LatLong Pos;
    int16_t Course = 0;   // course over ground, whole degrees true
    float Speed = 0.0f;   // speed over ground, knots
    double Stamp = 0.0;   // clock at the last good fix, seconds since midnight
};

struct HeadingData {
    float WaterSpeed = 0.0f;     // knots through the water
    float WaterSpeedKmh = 0.0f;  // km/h through the water
    int16_t HeadingMag = 0;      // magnetic heading with deviation, whole degrees
    float Heading = 0.0f;        // true heading
    float Variation = 0.0f;      // east positive
    float Deviation = 0.0f;      // east positive
};

struct GGAExtra {
    int16_t Satellites = 0;
    double HDOP = 0.0;
    double Altitude = 0.0;
    std::string AltitudeUnit;
    double GeoidHeight = 0.0;
    std::string GeoidUnit;
    double DiffAge = 0.0;
    std::string DiffStation;
    double Time = 0.0;  // the UTC time of the last GGA, for the satellite window
};

struct SatRow {
    int16_t PRN = 0;
    int16_t Elevation = 0;
    int16_t Azimuth = 0;
    int16_t SNR = 0;
};

struct SatInfo {
    int16_t SatsInView = 0;
    std::array<SatRow, 12> Sat{};  // rows 1..12 are Sat[0]..Sat[11]
};

// The own vessel as an AIS transponder reports it (AIVDO): degrees, knots,
// degrees true; FixQuality 0 none, 1 GPS, 2 differential.
struct OwnVesselReport {
    double Latitude = 0.0;
    double Longitude = 0.0;
    double Speed = 0.0;
    double Course = 0.0;
    double Heading = 0.0;
    int16_t FixQuality = 0;
};

}  // namespace ombra
