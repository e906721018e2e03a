// What the instruments ask of the rest of the plotter.
//
// The intake, the vessel cycle and the NMEA output are complete in
// themselves, but the road of a fix goes on into modules that live
// elsewhere: the AIS and ARPA decoders, the chart view, the track, the
// alarms, the log and the windows. They are reached through the two
// interfaces below. Every hook is pure: whoever hosts the instruments (the
// Plotter context) answers each one explicitly, even if only to say that
// its module is not there yet. Tools without a plotter (the command line,
// the benchmarks) use HeadlessHooks.h, which says so for all of them.
//
// Conventions for every hook:
//   positions    LatLong in seconds of arc, east and north positive
//   angles       degrees, true unless named magnetic, in [0, 360)
//   speeds       knots
//   time         the ship's clock, seconds since midnight, [0, 86400)
//   ownership    arguments are borrowed for the call; a hook keeps no
//                pointer or reference to them
//   faults       a hook may raise; the vessel cycle runs each end-of-cycle
//                step under its own guard, so one failing step is reported
//                and the others still run
//
// The order in which the vessel cycle calls the end-of-cycle steps is fixed
// in VesselModule::UpdateVesselPos, not here.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "core/Types.h"
#include "instruments/NmeaRecords.h"

namespace ombra {

// The settings dialogs the intake may open; the numbers are the shell's.
enum class CommDialog { GPS, Gyro, AIS, ARPA, Autopilot, SatInfo, Test };

// The panels of the main window's information line the instruments write.
enum class InfoPanel : int {
    Prompt = 1,  // tool prompts and "Connecting to GPS, please wait."
    Detail = 2,  // the second panel, cleared when dead reckoning starts or the fix is lost
};

// The events the instruments write to the log, by the log's own codes.
enum class LogCode : int16_t {
    LostGPS = 3,        // "Lost GPS signal."
    PoorGPS = 4,        // "Poor GPS signal."
    RegainedGPS = 5,    // "Regained GPS signal."
    NewFileVessel = 8,  // a new vessel name in the position file; the text is the name
};

// What the autoscroll check needs of the chart in view: the view in
// screen pixels and the vessel's pixel in it.
struct ScrollView {
    double PixelsPerNM = 0.0;  // screen pixels per nautical mile, > 0 when valid
    int Width = 0, Height = 0;
    double VesselX = 0.0, VesselY = 0.0;  // pixels from the view's top left
};

// The vessel as the steps after a move see it: a copy taken when the step
// is called, so a hook never reaches back into the vessel.
struct VesselSnapshot {
    LatLong Pos;           // seconds of arc
    double COG = 0.0;      // degrees true
    double SOG = 0.0;      // knots
    double Heading = -1.0; // degrees true; -1.0 unknown
    int16_t Mode = 0;      // the vessel mode (Vessel.h)
    bool Active = false;   // in a mode whose position is good for alarms, track, output
    bool Predictor = false;  // the course predictor is shown
    double Time = 0.0;     // the ship's clock, seconds since midnight
};

class InstrumentHooks {
public:
    virtual ~InstrumentHooks() = default;

    // ---- Intake ----
    // "No port selected": opens the settings dialog for that input.
    virtual void ShowCommDialog(CommDialog dialog) = 0;
    // The AIS decoder (its own module) takes one "!" sentence as it came.
    virtual void DecodeAIS(const std::string& sentence) = 0;
    // The own vessel from the last AIVDO; false (and `report` untouched)
    // when there is none.
    virtual bool GetOwnVessel(OwnVesselReport& report) const = 0;
    // The ARPA decoder: "TTM", and "OSD" when GyroUseGPSPort, from the ARPA
    // port; `id` is the three-letter identifier.
    virtual void DecodeARPA(std::string_view id, const std::string& sentence) = 0;
    // StartGPS empties the ARPA table; StopGPS ends the AIS and ARPA
    // active-target selections.
    virtual void ClearArpaTargets() = 0;
    virtual void ClearActiveTargets() = 0;
    // The menu: GPS mode on or off (entries that make no sense with a GPS).
    virtual void SetGPSMenuState(bool gpsOn) = 0;
    // GetHeadingData's age test on the last OSD (ARPA's own state).
    virtual void ArpaHeadingAgeCheck() = 0;

    // ---- Vessel cycle ----
    virtual void SetInfoLine(InfoPanel panel, const std::string& text) = 0;
    virtual void SetBusyCursor(bool busy) = 0;
    // The tidal stream at the vessel when the tidal correction is on: `set`
    // degrees true, `drift` knots. False (both untouched) when it is off.
    virtual bool TideAtVessel(double& set, double& drift) const = 0;
    // The course to steer (degrees true) for the active leg with the tide;
    // false when it cannot be made or there is no tide model.
    virtual bool CourseToSteerLeg(double& course) const = 0;
    // Magnetic variation at `pos` (the vessel's position), degrees east
    // positive, [-180, 180].
    virtual float VariationAt(const LatLong& pos) const = 0;
    // The compass deviation for a magnetic heading (degrees), degrees east
    // positive, from the deviation card; 0 without one.
    virtual float CompassDeviation(float magneticHeading) const = 0;
    // Mode None: end the active route's tracking aids; close the track with
    // a last point (the vessel was active and TrackMode on).
    virtual void EndTrackingAids() = 0;
    virtual void CloseTrack(const VesselSnapshot& vessel) = 0;
    // A sharp turn: a track point at the vessel as it was before the turn.
    virtual void AddTrackPoint(const VesselSnapshot& vessel) = 0;
    virtual void LogEvent(LogCode code, const std::string& text) = 0;

    // ---- End of cycle, in the cycle's order ----
    virtual void AutoLog(const VesselSnapshot& vessel) = 0;
    virtual void RefreshTargets(const VesselSnapshot& vessel) = 0;
    // Only while the vessel is active.
    virtual void TrackCheck(const VesselSnapshot& vessel) = 0;
    virtual void ManOverboardReadout(const VesselSnapshot& vessel) = 0;
    virtual void RedrawVessel(const VesselSnapshot& vessel) = 0;
    // The boundary alarm; with the predictor on it looks ahead as well.
    virtual void CheckBoundaries(const VesselSnapshot& vessel) = 0;
    virtual void CheckAnchorAlarm(const VesselSnapshot& vessel) = 0;
    // These two only with an active leg.
    virtual void CheckArrivalAlarm(const VesselSnapshot& vessel) = 0;
    virtual void CheckXTEAlarm(const VesselSnapshot& vessel) = 0;
    virtual void RefreshAutoscrollMarker(const VesselSnapshot& vessel) = 0;
    virtual void UpdateLogRunningRecord(const VesselSnapshot& vessel) = 0;
    virtual void RefreshSatInfo(const VesselSnapshot& vessel) = 0;

    // ---- Windows ----
    // FrmLostGPS up (true) or down (false).
    virtual void ShowLostGPS(bool up) = 0;
    // The chart cursor's position; false (and `pos` untouched) when the
    // mouse is not over the chart.
    virtual bool CursorPosition(LatLong& pos) const = 0;
    // The console changed: the panel repaints from the model.
    virtual void ConsoleChanged() = 0;
};

// The chart in view and the mouse over it, as the vessel needs them.
class ChartOps {
public:
    virtual ~ChartOps() = default;
    virtual bool ChartOpen() const = 0;
    // Refresh the vessel's pixel positions in the panels of the chart in
    // view (its NavPoint), after the vessel moved to `pos`.
    virtual void PrepareVesselPoint(const LatLong& pos) = 0;
    // Keep the view and centre it on the vessel at `pos`.
    virtual void CentreOnVessel(const LatLong& pos) = 0;
    // Open the installed chart at `pos` with the smallest scale denominator
    // and show the vessel on it.
    virtual void OpenBestChartAt(const LatLong& pos) = 0;
    // The view for the autoscroll check, with the vessel at `pos`; false
    // (and `view` untouched) without a chart or with the vessel outside it.
    virtual bool GetScrollView(const LatLong& pos, ScrollView& view) const = 0;
    // Move the view so that its centre is at `pos`.
    virtual void CentreChartAt(const LatLong& pos) = 0;
    // The user is dragging the vessel with the mouse to place it: the
    // cycle leaves the position alone meanwhile.
    virtual bool VesselBeingDragged() const = 0;
};

}  // namespace ombra
