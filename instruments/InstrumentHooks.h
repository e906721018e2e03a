// What the instruments ask of the rest of the plotter.
//
// The intake, the vessel cycle and the NMEA output are complete in
// themselves, but the road of a fix goes on into modules that live
// elsewhere: the AIS and ARPA decoders, the chart view, the track, the
// alarms, the log and the windows. They are reached through the two
// interfaces below, which the Plotter context implements. Every call has a
// harmless default, so a plotter without (say) a log yet simply leaves that
// step out, and tests override only what they watch.
//
// The order in which the vessel cycle calls the end-of-cycle steps is fixed
// in Vessel::UpdateVesselPos, not here.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "core/Types.h"
#include "instruments/NmeaRecords.h"

namespace ombra {

enum class CommDialog { GPS, Gyro, AIS, ARPA, Autopilot, SatInfo, Test };

// What the autoscroll check needs of the chart in view: the view in
// screen pixels and the vessel's pixel in it.
struct ScrollView {
    double PixelsPerNM = 0.0;  // screen pixels per nautical mile
    int Width = 0, Height = 0;
    double VesselX = 0.0, VesselY = 0.0;
};

class InstrumentHooks {
public:
    virtual ~InstrumentHooks() = default;

    // ---- Intake ----
    // "No port selected": the settings dialog for that input.
    virtual void ShowCommDialog(CommDialog) {}
    // The AIS decoder (its own module): one "!" sentence; and the own
    // vessel from the last AIVDO, true when there is one.
    virtual void DecodeAIS(const std::string&) {}
    virtual bool GetOwnVessel(OwnVesselReport&) { return false; }
    // The ARPA decoder: "TTM", and "OSD" when GyroUseGPSPort, from the ARPA port.
    virtual void DecodeARPA(std::string_view, const std::string&) {}
    // StartGPS empties the ARPA table; StopGPS ends the AIS and ARPA
    // active-target selections.
    virtual void ClearArpaTargets() {}
    virtual void ClearActiveTargets() {}
    // The menu: GPS mode on or off (entries that make no sense with a GPS).
    virtual void SetGPSMenuState(bool) {}
    // GetHeadingData's age test on the last OSD (ARPA's own state).
    virtual void ArpaHeadingAgeCheck() {}

    // ---- Vessel cycle ----
    // InfoLine panels 1 and 2 of the main window.
    virtual void SetInfoLine(int, const std::string&) {}
    virtual void SetBusyCursor(bool) {}
    // The tidal stream at the vessel when the tidal correction is on:
    // set (degrees true) and drift (knots). False when it is off.
    virtual bool TideAtVessel(double&, double&) { return false; }
    // The course to steer for the active leg with the tide (steer row);
    // false when it cannot be made or there is no tide model.
    virtual bool CourseToSteerLeg(double&) { return false; }
    // Magnetic variation at the vessel, degrees east positive.
    virtual float VesselVariation() { return 0.0f; }
    // The compass deviation for a magnetic heading, degrees, from the card.
    virtual float CompassDeviation(float /*magneticHeading*/) { return 0.0f; }
    // Mode None: end the active route's tracking aids; close the track
    // with a last point (the vessel was active and TrackMode on).
    virtual void EndTrackingAids() {}
    virtual void CloseTrack() {}
    virtual void AddTrackPoint() {}
    // Log events: 3 "Lost GPS signal.", 4 "Poor GPS signal.", 8 a new
    // vessel in the position file.
    virtual void LogEvent(int16_t, const std::string&) {}
    // End of cycle, in the cycle's order.
    virtual void AutoLog() {}
    virtual void RefreshTargets() {}
    virtual void TrackCheck() {}
    virtual void ManOverboardReadout() {}
    virtual void RedrawVessel() {}
    virtual void CheckBoundaries(const LatLong&, bool) {}
    virtual void CheckAnchorAlarm(const LatLong&) {}
    virtual void CheckArrivalAlarm() {}
    virtual void CheckXTEAlarm() {}
    virtual void RefreshAutoscrollMarker() {}
    virtual void UpdateLogRunningRecord() {}
    virtual void RefreshSatInfo() {}
    // FrmLostGPS up (true) or down (false).
    virtual void ShowLostGPS(bool) {}
    // The chart cursor's position, when the mouse is over the chart.
    virtual bool CursorPosition(LatLong&) { return false; }
    // The console changed: the panel repaints from the model.
    virtual void ConsoleChanged() {}
};

// The chart in view, as the vessel needs it.
class ChartOps {
public:
    virtual ~ChartOps() = default;
    virtual bool ChartOpen() { return false; }
    // Refresh the vessel's pixel positions in the panels of the chart in
    // view (its NavPoint), after Vessel.Pos moved.
    virtual void PrepareVesselPoint(const LatLong&) {}
    // Keep the view and centre it on the vessel.
    virtual void CentreOnVessel() {}
    // Open the installed chart at the position with the smallest scale
    // denominator and show the vessel on it.
    virtual void OpenBestChartAt(const LatLong&) {}
    // The view for the autoscroll check; false without a chart.
    virtual bool GetScrollView(ScrollView&) { return false; }
    // Move the view so that its centre is at the position.
    virtual void CentreChartAt(const LatLong&) {}
};

}  // namespace ombra
