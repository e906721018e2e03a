// ARPA: the radar's tracked targets.
//
// A radar with automatic plotting reports each target it tracks in a TTM
// sentence (number, range and bearing from own ship, the target's course
// and speed, its closest approach) and own heading in OSD. This module keeps
// a table of 101 slots (slot = the radar's target number - 1), places each
// target on the chart from own position along the geodesic, draws it as a
// circle with its course line and, if wanted, its name, fills the console's
// "ARPA - Active Target" frame and notices when the radar falls silent.
//
//   $RATTM,03,2.50,045.0,T,12.0,180.0,T,0.8,11.5,N,TUG,T,,103000.00,A*hh
//     -> slot 2: "TUG" 2.5 miles at 045 T, 12 knots on 180 T, CPA 0.8 in 11.5 min
//
// Fields are split at ",", then "*", CR and LF, empty ones kept (17 for TTM,
// 11 for OSD). Status "L" (lost) or no status frees the slot; "Q" marks a
// target still being acquired. A slot the radar has not named is called
// "T#" and its number ("T#03"); a name the radar gives later replaces such
// a name, and a name the radar gave is kept when later sentences leave the
// name field empty. Range, speed and CPA come in statute miles ("S"),
// kilometres ("K") or nautical miles ("N") and are kept in nautical miles
// (and knots); any other unit letter leaves them as sent.
//
// Silence: when ARPA input is on, a timeout is set and no TTM has come for
// that many seconds after data was coming, every target turns stale, the
// console shows "N/A" and one message says so; it is not repeated until
// data returns.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "charts/NavPoint.h"
#include "core/Types.h"

namespace ombra {

class Canvas;
class ChartLibrary;
class Clock;
class Console;
class ErrorReporter;
class NavChart;
class Registry;
class TargetPlotHost;

struct ArpaTarget {
    std::string Name;  // empty: a free slot
    NavPoint Point;    // placed from own ship on each drawing
    float Range = 0.0f;    // nautical miles
    float Bearing = 0.0f;  // degrees from own ship
    std::string BearingRef;  // "T" or "R"
    float Speed = 0.0f;      // knots
    float Course = 0.0f;     // degrees
    std::string CourseRef;
    float CPA = 0.0f;   // nautical miles
    float TCPA = 0.0f;  // minutes
    int16_t Acquiring = 0;
    bool Stale = false;
};

struct ArpaSettings {
    bool Enable = false;  // ARPAEnable
    bool Labels = false;  // ARPALabels: names beside the symbols
    int32_t Delay = 20;   // ARPADelay: the silence timeout, seconds (0 none)
};

// What a sentence given to ArpaPoll became.
enum class ArpaTaken { Nothing, Target, Heading };

class Arpa {
public:
    static constexpr int kSlots = 101;
    static constexpr Rgb kColour = MakeRgb(255, 140, 0);  // the symbols and names
    static constexpr const char* kTimeoutMessage =
        "No ARPA information has been received\nduring the specified timeout period.";

    Arpa(TargetPlotHost& host, ErrorReporter& errors, Clock& clock, Console& console);

    ArpaSettings Settings;
    std::array<ArpaTarget, kSlots> Targets;
    double ArpaHeading = 0.0;  // own heading from the last valid OSD
    int32_t ArpaLastData = 0;  // seconds since midnight of the last TTM
    bool ArpaTimedOut = false;
    int16_t ArpaCount = -1;    // the highest slot used this run
    int ActiveTarget = -1;     // the console's target, -1 none

    void LoadSettings(const Registry& reg);

    // One sentence from the ARPA port: "$" first, the checksum right when
    // `checksums` asks for it, then TTM to DecodeTTM and OSD (with ARPA
    // input on) to DecodeOSD. `slot` is the slot a TTM touched.
    ArpaTaken ArpaPoll(const std::string& sentence, bool checksums, int* slot = nullptr);
    // The slot touched (filled or freed), or -1 when the sentence was dropped.
    int DecodeTTM(const std::string& sentence);
    bool DecodeOSD(const std::string& sentence);

    // The target's position from own ship's (false without a vessel).
    bool PlaceArpaTarget(int slot);
    void DrawArpaObjects(Canvas& canvas, NavChart& chart, ChartLibrary& library);
    void UpdateArpaConsole();
    // "Select ARPA Target To Centre On": the chosen target becomes the
    // console's and the chart zooms to it.
    void CentreOnArpaTarget();
    // A new connection starts with an empty table.
    void ClearArpaTargets();
    // Once a tick: the silence test. True when it timed out just now.
    bool CheckTimeout();

    // The list rows of the centring dialog: name, " - ", slot as "0000".
    std::vector<std::string> TargetRows() const;

private:
    TargetPlotHost& host_;
    ErrorReporter& errors_;
    Clock& clock_;
    Console& console_;
    bool receiving_ = false;  // data came since start or since the last timeout
};

// The " ARPA Settings" dialog's values, as typed.
struct ArpaDialogValues {
    bool Enable = false;  // ChkARPAEnable
    std::string Port, Device, BaudRate, Delay;
    bool Names = false;   // ChkARPANames
};
struct CommSettings;
ArpaDialogValues LoadArpaDialog(const Registry& reg, const CommSettings& comm, const ArpaSettings& arpa);
// Stores the values: the port and rate for the connection (the rate is the
// AIS port's too), input, names and timeout for the module. A rate outside
// 1200..57600 becomes 4800; a timeout that is not a number of seconds, 20.
void SaveArpaDialog(Registry& reg, CommSettings& comm, ArpaSettings& arpa, const ArpaDialogValues& v);

// Converts a TTM distance or speed to nautical miles or knots by its unit letter.
float ArpaToNautical(float value, const std::string& unit);

}  // namespace ombra
