// NMEA output: the burst of sentences the plotter sends on the GPS port,
// at most every two seconds while the vessel is active, for an autopilot
// or a repeater on the same line. The plotter talks as "GP" whatever the
// source of its position.
//
// Which sentences go is one bit set, AutopilotSettings (default 511):
//   1 RMC   2 GLL   4 VTG   8 GGA (the last received, repeated)
//   16 RMB  32 BWC/BWR  64 BOD  128 XTE  256 APB  2048 APA  4096 WPL
//   512  the NMEA 1.5 forms: numbers "000.0", minutes with two places,
//        GLL without time and status, RMB without its VMG field, numeric
//        waypoint identifiers
//   1024 a checksum on every sentence
// in the fixed order VTG, RMC, RMB, WPL, GLL, GGA, XTE, BOD, BWx, APx. The
// sentences that need a leg go only while one is active.
//
// The burst keeps some oddities that equipment on the line has been set up
// against, and they are to stay:
//   - the hemisphere letters are shared: once a leg's point has been
//     formatted, RMC and GLL carry the vessel's numbers with the point's
//     letters (a leg in the other hemisphere shows it);
//   - the GGA repeat begins "$GPGGAA,": the received text is cut from the
//     last letter of its identifier;
//   - the destination identifier under bit 512 is tested on the length of
//     the origin's name, not its own;
//   - the cross-track, arrival and VMG values are read back from the
//     console's waypoint rows as the navigator sees them.
//
//   $GPVTG,84.0,T,88,M,22.4,N,41.5,K
//   $GPRMC,123519,A,4807.038,N,01131.000,E,22.4,84.0,230394,3.1,W
#pragma once
#include <cstdint>
#include <string>

#include "core/Types.h"

namespace ombra {

class Comm;
struct CommSettings;
class Console;
class Dialogs;
class Units;
class InstrumentHooks;
class NmeaDecoder;
struct ActiveLeg;
struct Vessel;

class NmeaOut {
public:
    NmeaOut(const Vessel& vessel, const ActiveLeg& leg, const Console& console, const Units& units,
            const CommSettings& settings, const NmeaDecoder& decoder, InstrumentHooks& hooks, Comm& comm)
        : vessel_(vessel), leg_(leg), console_(console), units_(units), settings_(settings), decoder_(decoder),
          hooks_(hooks), comm_(comm) {}

    // One burst; `status` is the result of the vessel cycle (1 gives "A").
    void NmeaOutput(int16_t status);
    // The same burst as text, without sending it (for tests and tools).
    std::string BuildBurst(int16_t status);

private:
    // The leg's fields as the leg sentences (RMB, XTE, BOD, BWC, APB) write them.
    struct LegText {
        std::string XTE, Side, Arrived, Perpendicular, OriginId, DestId, VMG, DestLat, DestLon;
    };
    LegText LegFields();
    void NmeaPosition(const LatLong& pos);
    void End(std::string& burst, const std::string& sentence) const;

    const Vessel& vessel_;
    const ActiveLeg& leg_;
    const Console& console_;
    const Units& units_;
    const CommSettings& settings_;
    const NmeaDecoder& decoder_;
    InstrumentHooks& hooks_;
    Comm& comm_;
    bool v15_ = false;
    std::string LatText, NS, LonText, EW;
};

// The three-character waypoint identifiers of a leg, by the rules of the
// burst (see the header comment): {OriginId, DestId}.
void WaypointIds(const std::string& FromName, const std::string& Name, bool v15, std::string& OriginId,
                 std::string& DestId);

// The two autopilot warnings; true to go on.
bool ConfirmActivateWithAutopilot(bool AutopilotActive, Dialogs& dialogs, const std::string& productName);
bool ConfirmAutopilotOn(bool legActive, Dialogs& dialogs, const std::string& productName);

}  // namespace ombra
