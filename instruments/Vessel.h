// Vessel: the one vessel, where its position comes from, and the cycle
// that moves it.
//
// Modes (the constants kMode... of Comm.h), and where the position comes from:
//   0 None        nothing; every read-out "N/A"; "Off Line"
//   1 DR          dead reckoning from COG and SOG; "DR" in blue
//   2 GPS         the fix; "DIFF GPS" bright green or "RAW GPS" green
//   3 Connecting  nothing yet; "No GPS Signal" / "Poor GPS signal" in red
//   4 GPS lost    dead reckoning from the last fix; red as for 3
//   5 FILE DR     dead reckoning between reports of FileData\Position.dat
// Active (alarms, track, NMEA output) in 1, 2, 4 and 5 only. Each mode's
// share of the cycle is one function (CycleDR, CycleGPS, ...). While the
// mouse drags the vessel (ChartOps::VesselBeingDragged) the dead-reckoning
// modes leave the position alone and the cycle ends early.
//
// UpdateVesselPos runs on every position sentence and at least once a
// second. It does the mode's work, writes the status and age lines of the
// console, and then, in a fixed order, everything that follows from a new
// position: console rows, targets, track, man overboard, redraw, boundary,
// anchor, arrival and cross-track alarms, cursor and waypoint rows,
// autoscroll marker and log, tide rows, satellite window (InstrumentHooks).
// Its result is the fix's Status (kFixGood 1, kFixInvalid 0, kFixNoData
// -1); in DR and FILE DR the fix is not read and the result is 0. The fix
// is aged (NmeaDecoder::AgeFix) once per cycle that reads it, just before
// reading; the cycle that finds the data run out sees an empty record
// (Status 0). The end-of-cycle hooks get a VesselSnapshot taken after the
// vessel console rows are written.
//
// Faults: every step runs under a guard; a failing step is reported under
// its name and the cycle goes on. The position file is outside input: any
// content is survived (PositionFile.h).
//
// Ownership: VesselModule keeps references to the services of its context
// (VesselContext); they must outlive it.
//
// Time: the clock is seconds since midnight. Dead reckoning runs from
// DRBase at DRStart; an elapsed time that comes out negative has crossed
// midnight and gets a day added, and in DR mode the base itself is moved on
// at midnight so that the track shows no jump. Ages on the age line are
// taken the same way:
//   0 s    the line is blank        59.9 s  "DR Mode Age : 59.9 secs"
//   60 s   "... : 1.0 mins"         7200 s  "... : 2.0 hours"
//
// Units: Pos and DRBase in seconds of arc; COG, CourseWater, Heading in
// degrees true (Heading -1.0 until the first fix); SOG and SpeedWater in
// knots; DRStart and the stamps in seconds since midnight.
#pragma once
#include <cstdint>
#include <string>

#include "core/Types.h"
#include "instruments/ActiveLeg.h"
#include "instruments/Comm.h"
#include "instruments/CommSettings.h"
#include "instruments/Console.h"
#include "instruments/InstrumentHooks.h"
#include "instruments/NmeaDecoder.h"

namespace ombra {

class Clock;
class ErrorReporter;
class Registry;
class Units;
struct Globals;

struct Vessel {
    int16_t Mode = 0;
    std::string Name;
    bool NameDisplay = false;
    LatLong Pos;               // present position (the chart view keeps its pixels)
    double CourseWater = 0.0;  // course through the water; the user's course in DR
    double SpeedWater = 0.0;
    double COG = 0.0;
    double SOG = 0.0;
    double Heading = -1.0;     // -1.0: unknown
    LatLong DRBase;
    float DRStart = 0.0f;      // seconds since midnight at DRBase
    double FixTime = 0.0;      // date-time serials of the last fix
    double FixDate = 0.0;
    bool TrackMode = true;
    bool TrackTimeMode = true;
    float TrackTimeInterval = 5.0f;
    bool TrackCourseMode = true;
    float TrackCourseChange = 10.0f;
    bool TrackDistanceMode = false;
    float TrackDistance = 5.0f;
    bool TrackDisplay = true;
    int16_t TrackColour = 10;
    int16_t TrackLineStyle = 2;
    bool Predictor = false;
    float PredictorTime = 5.0f;  // minutes
};

// Status colours of the mode text.
constexpr Rgb kStatusRed = MakeRgb(255, 0, 0);
constexpr Rgb kStatusGreen = MakeRgb(0, 128, 0);
constexpr Rgb kStatusBrightGreen = MakeRgb(0, 255, 0);
constexpr Rgb kStatusBlue = MakeRgb(0, 0, 255);

struct VesselContext {
    Registry& registry;
    CommSettings& settings;
    NmeaDecoder& decoder;
    Comm& comm;
    Console& console;
    ActiveLeg& leg;
    Units& units;
    Globals& globals;
    Clock& clock;
    ErrorReporter& errors;
    InstrumentHooks& hooks;
    ChartOps& chart;
};

class VesselModule : public VesselModeControl {
public:
    explicit VesselModule(VesselContext c) : c_(c) {}

    Vessel vessel;
    float AutoscrollTime = 0.0f;  // minutes ahead kept in view; 0 off
    std::string LastFileDataStamp = "0";
    int16_t ConnectTries = 0;
    int16_t ShownDiff = 0;
    int16_t LostGPSWanted = 0;
    int16_t LostGPSShown = 0;
    // A stream set by hand in the vessel dialog (degrees true, knots), for
    // the tides work to use where it has no model of its own.
    double UserTideSet = 0.0, UserTideDrift = 0.0;

    // Start-up: the record zeroed and the vessel keys read.
    void LoadVesselSettings();
    void ReadLastFileDataStamp();

    int16_t VesselMode() const override { return vessel.Mode; }
    void SetVesselMode(int16_t mode) override;
    bool VesselActive() const { return IsActiveMode(vessel.Mode); }
    static bool IsActiveMode(int16_t m) {
        return m == kModeDR || m == kModeGPS || m == kModeGPSLost || m == kModeFileDR;
    }
    // The vessel as the hooks see it at this moment.
    VesselSnapshot Snapshot() const;

    int16_t UpdateVesselPos();
    // HeadingData after ARPA's age test on the last OSD.
    HeadingData GetHeadingData();
    void CheckLostGPS();
    void AutoscrollCheck();
    // The "Course to Steer" command.
    void CourseToSteerCommand();
    // Dead reckoning from the present position with the user's course
    // (degrees true) and speed (knots) through the water; from a GPS mode
    // the GPS is stopped first. COG and SOG follow, with the tide if the
    // tidal correction is on.
    void EnterDR(double courseTrue, double speed);
    // The navigator puts the vessel at `pos` (the vessel tool, a drag, the
    // chart pop-up): dead reckoning starts again from there, now, with the
    // course and speed it had. From None or FILE DR the mode becomes DR (a
    // caller asks about leaving FILE DR first). In the GPS modes the fix
    // rules and nothing is done: false.
    bool PlaceVessel(const LatLong& pos);

    // The console rows that follow from the vessel and the leg (also the
    // leg's distance, bearing and course), and the cursor and tide rows.
    void UpdateVesselConsole();
    void UpdateWaypointConsole();
    void UpdateCursorConsole();
    void UpdateTideConsole();

    std::string PositionFilePath() const;

private:
    void SetStatus(const std::string& text, Rgb colour);
    void StatusByDiff(bool diff);
    void SetAgeLine(const std::string& prefix, double age);
    void ChartChoice();
    void WaterFromGround(double set, double drift);
    void GroundFromWater(double set, double drift);
    double Elapsed(double now, double since) const;
    // One cycle's working state: the fix it read, what the age line will
    // say, the clock and the tidal stream at its start.
    struct Cycle {
        GPSFix fix{};
        std::string prefix;
        double age = 0.0;
        double now = 0.0;
        bool tide = false;
        double set = 0.0, drift = 0.0;
    };
    // The cycle by mode; each is false when the cycle ends before the age line.
    bool ModeWork(Cycle& c);
    bool CycleNone(Cycle& c);
    bool CycleDR(Cycle& c);
    bool CycleGPS(Cycle& c);
    bool CycleConnecting(Cycle& c);
    bool CycleGPSLost(Cycle& c);
    bool CycleFileDR(Cycle& c);
    // Connecting without a good fix: the prompt, and every 20th try the
    // question whether to go on.
    void StillConnecting(int16_t status);
    // The position, course and times of a good fix taken into the vessel.
    void TakeFix(const GPSFix& fix);
    // The fix for this cycle, aged first; on the cycle that finds the data
    // run out an empty record (Status kFixInvalid).
    GPSFix ReadFix();
    void EndOfCycle();
    std::string AngleText(double trueDegrees) const;

    VesselContext c_;
};

}  // namespace ombra
