// NMEA decoding: the fields of one framed sentence in, the shared records
// GPSFix, HeadingData, GGAExtra and SatInfo out.
//
// Routing. One table maps each identifier to its decoder, the highest
// field index it reads (the sentence is split that far, once, by the
// intake), the last field that must be there for the sentence to carry
// anything, the setting that lets it through, and whether it counts as a
// position sentence or a heading the gyro port takes:
//
//   id   split  needs  let through by                 kind
//   GGA   16     6     NMEA_GGA                       position
//   GLL    8     4     NMEA_GLL                       position
//   RMC   13     2     always (NMEA_RMC: takes the position)   position
//   VTG   10     2     NMEA_GGA or NMEA_GLL
//   GSV   21     2     always
//   HDT    4     2     GyroUseGPSPort                 heading
//   HDG    7     1     GyroUseGPSPort                 heading
//   VHW   10     2     GyroUseGPSPort                 heading
//
// A sentence that stops before its needed field carries nothing to
// decode; what its mere arrival means is the table's "short" step: a GGA
// or GLL so cut is an invalid fix, an RMC without its status still says
// the receiver talks (and restarts the VTG watch), a VTG still counts as
// seen, and the others change nothing.
//
// Contract of every decoder: the fields are those of SplitFields (index 0
// the "$GPxxx" field, missing fields empty). A field that is not a number
// leaves the value as it was; no text makes a decoder raise. A number too
// large for its field (a course of 1e9) is a fault of that one statement:
// it is recorded in the result under the decoder's name (the caller
// reports it) and the decoder carries on with its next statement. The
// decoders never show anything themselves; the result says what changed
// and what the caller has to tell the user.
//
// Reception state and ages. LastGoodTime and LastBadTime are the clock
// rounded to a whole second at the last good and the last invalid fix;
// ages are (now + 86400 - then) mod 86400, so an age taken just after
// midnight is a few seconds, not minus a day. AgeFix, called once a cycle,
// applies GPSDelay (20 by default): a good fix stays good for 20 s of
// silence; an invalid one within the last 10 s turns it to 0; after that
// the fix is -1 (no data), reception must start again, and AgeFix says
// so. GetGPSFix only reads.
//
//   NmeaDecoder d(settings, clock);
//   NmeaFields f = SplitFields(gga, NmeaDecoder::FindRoute("GGA")->maxField);
//   DecodeResult r = d.DecodeGGA(f, gga);   // r.changed & kFixChanged
//   d.Fix.Status == 1, d.Fix.Pos.Lat == 173222.28, d.Fix.Pos.Long == 41460.0
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/CommSettings.h"
#include "instruments/NmeaRecords.h"
#include "instruments/NmeaText.h"

namespace ombra {

class Clock;

// What one sentence changed, as bit flags in DecodeResult::changed.
enum DecodeChange : uint8_t {
    kFixChanged = 1,       // Fix: status, position or time
    kCourseSpeed = 2,      // Fix.Course or Fix.Speed
    kHeadingChanged = 4,   // HeadingData
    kSatellites = 8,       // SatInfo
    kGGAChanged = 16,      // GGAExtra
    kReception = 32,       // only the reception state (FixReceiving, the VTG watch)
};

// The result of one decoder on one sentence.
struct DecodeResult {
    uint8_t changed = 0;              // DecodeChange flags
    bool vtgMissing = false;          // the VTG warning is due (GLL without VTG for over 300 s)
    const char* decoder = nullptr;    // the name faults are reported under
    std::vector<std::string> faults;  // one description per statement that faulted
};

// What the routing made of a sentence.
struct DecodeOutcome {
    bool known = false;     // the identifier has a decoder
    bool accepted = false;  // its condition let it through and it ran
    bool position = false;  // it counts as a position sentence
    bool tooShort = false;  // it stopped before its needed field: only its arrival counted
};

class NmeaDecoder {
public:
    NmeaDecoder(const CommSettings& settings, Clock& clock) : settings_(settings), clock_(clock) {}

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

    // One line of the routing table.
    struct Route {
        const char* id;
        int16_t maxField;  // split this far
        int16_t minField;  // the sentence carries nothing without this field
        DecodeResult (NmeaDecoder::*decode)(const NmeaFields& fields, const std::string& sentence);
        DecodeResult (NmeaDecoder::*onShort)();  // null: a short sentence changes nothing
        bool (*allowed)(const CommSettings& settings);
        bool position;  // a position sentence: the GPS read ends on it
        bool heading;   // the gyro port takes it always
    };
    // The route of a three-letter identifier; null when none.
    static const Route* FindRoute(std::string_view id);
    // Runs a route on the fields of its sentence (split to route.maxField):
    // the decoder, or the short step when the needed field is missing.
    DecodeResult Run(const Route& route, const NmeaFields& fields, const std::string& sentence);

    // The decoders, each on the fields of its own sentence. GGA keeps the
    // whole sentence (LastGGA) for the NMEA output.
    DecodeResult DecodeGGA(const NmeaFields& f, const std::string& sentence);
    DecodeResult DecodeGLL(const NmeaFields& f, const std::string& sentence = {});
    DecodeResult DecodeRMC(const NmeaFields& f, bool usePosition);
    DecodeResult DecodeVTG(const NmeaFields& f, const std::string& sentence = {});
    DecodeResult DecodeHDT(const NmeaFields& f, const std::string& sentence = {});
    DecodeResult DecodeHDG(const NmeaFields& f, const std::string& sentence = {});
    DecodeResult DecodeVHW(const NmeaFields& f, const std::string& sentence = {});
    DecodeResult DecodeGSV(const NmeaFields& f, const std::string& sentence = {});
    // The own vessel from an AIVDO report (degrees, knots, degrees true).
    DecodeResult TakeOwnVessel(const OwnVesselReport& r);

    // StartGPS's reset: an all-zero fix, both reception flags cleared.
    void ClearFix();
    // Applies GPSDelay to the fix (see the header comment): a stale good fix
    // becomes 0 or -1. True on the one call that finds the data run out
    // (the fix is then -1 and reception has stopped).
    bool AgeFix();
    // The fix as it stands: Status -1 in `out` when nothing is being
    // received, else the whole record. Never changes the fix.
    void GetGPSFix(GPSFix& out) const;

    // The clock rounded to a whole second, as the ages use it.
    int32_t NowSeconds() const;
    static int32_t AgeOf(int32_t now, int32_t then) { return ((now + 86400 - then) % 86400 + 86400) % 86400; }

private:
    DecodeResult DecodeRMCRouted(const NmeaFields& f, const std::string&) { return DecodeRMC(f, settings_.NMEA_RMC); }
    // The short steps: what a sentence too short to decode still means.
    DecodeResult NoFixIn();
    DecodeResult RMCWithoutStatus();
    DecodeResult VTGWithoutCourse();
    void InvalidFix();
    void GoodFixNow();
    // Runs one statement of a decoder: a fault is recorded in `r` and the
    // decoder goes on with the next statement.
    template <typename F>
    static void Step(DecodeResult& r, F&& statement);

    const CommSettings& settings_;
    Clock& clock_;
};

}  // namespace ombra
