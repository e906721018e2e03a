// NMEA decoding: framed sentences in, the shared records GPSFix,
// HeadingData, GGAExtra and SatInfo out.
//
// The decoders only store; what the values mean for the vessel is decided
// by the update cycle (Vessel.h). One table maps each identifier to its
// decoder, the highest field index it reads, the setting that lets it
// through and whether it counts as a position sentence:
//
//   GGA 16  NMEA_GGA                 position
//   GLL  8  NMEA_GLL                 position
//   RMC 13  always (NMEA_RMC: takes the position)   position
//   VTG 10  NMEA_GGA or NMEA_GLL
//   GSV 21  always
//   HDT  4, HDG 7, VHW 10  GyroUseGPSPort (the gyro port takes them always)
//
// A field that is not a number leaves the value as it was; invalid text
// never raises. A number too large for its field (a course of 1e9) is a
// fault of that one statement: it is reported under the decoder's name and
// the decoder carries on with its next statement.
//
// Reception state and ages. LastGoodTime and LastBadTime are the clock
// rounded to a whole second at the last good and the last invalid fix;
// GetGPSFix ages them as (now + 86400 - then) mod 86400, so an age taken
// just after midnight is a few seconds, not minus a day. With GPSDelay 20:
// a good fix stays good for 20 s of silence; an invalid one within the last
// 10 s turns it to 0; after that the fix is -1 (no data) and reception must
// start again.
//
//   NmeaDecoder d(settings, clock, errors);
//   d.Decode("GGA", "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n");
//   d.Fix.Status == 1, d.Fix.Pos.Lat == 173222.28, d.Fix.Pos.Long == 41460.0
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "instruments/CommSettings.h"
#include "instruments/NmeaRecords.h"
#include "instruments/NmeaText.h"

namespace ombra {

class Clock;
class ErrorReporter;

struct DecodeOutcome {
    bool known = false;     // the identifier has a decoder
    bool accepted = false;  // its condition let it through and it ran
    bool position = false;  // it counts as a position sentence
};

class NmeaDecoder {
public:
    NmeaDecoder(const CommSettings& settings, Clock& clock, ErrorReporter& errors)
        : settings_(settings), clock_(clock), errors_(errors) {}

    // The shared records.
    GPSFix Fix;
    HeadingData Heading;
    GGAExtra GGA;
    SatInfo Sats;

    // Reception state.
    bool FixReceiving = false;
    int32_t LastGoodTime = 0;
    int32_t LastBadTime = 0;
    bool VTGSeen = false;
    int32_t VTGWatchStart = 0;
    std::string LastGGA;

    // Routes a GPS-port sentence by its three-letter identifier.
    DecodeOutcome Decode(std::string_view id, const std::string& sentence);
    // The gyro port's own routing: heading sentences only, always taken.
    DecodeOutcome DecodeHeading(std::string_view id, const std::string& sentence);

    void DecodeGGA(const std::string& sentence);
    void DecodeGLL(const std::string& sentence);
    void DecodeRMC(const std::string& sentence, bool UsePosition);
    void DecodeVTG(const std::string& sentence);
    void DecodeHDT(const std::string& sentence);
    void DecodeHDG(const std::string& sentence);
    void DecodeVHW(const std::string& sentence);
    void DecodeGSV(const std::string& sentence);
    // The own vessel from an AIVDO report.
    void TakeOwnVessel(const OwnVesselReport& r);

    // StartGPS's reset: an all-zero fix, both reception flags cleared.
    void ClearFix();
    // The fix as the update cycle sees it (see the header comment). `out`
    // is left alone on the call that finds the data run out.
    void GetGPSFix(GPSFix& out);

    // The clock rounded to a whole second, as the ages use it.
    int32_t NowSeconds();
    static int32_t AgeOf(int32_t now, int32_t then) { return ((now + 86400 - then) % 86400 + 86400) % 86400; }

private:
    using Handler = void (NmeaDecoder::*)(const std::string&);
    struct Route {
        const char* id;
        int16_t maxField;
        Handler decode;
        bool (*allowed)(const CommSettings&);
        bool position;
    };
    static const Route kRoutes[];

    void DecodeRMCRouted(const std::string& s) { DecodeRMC(s, settings_.NMEA_RMC); }
    void InvalidFix();
    // Runs one statement of a decoder: a fault is reported under `name`
    // and the decoder goes on with the next statement.
    template <typename F>
    void Step(const char* name, F&& statement);

    const CommSettings& settings_;
    Clock& clock_;
    ErrorReporter& errors_;
};

}  // namespace ombra
