// Hooks for the instruments without a plotter around them: the command
// line's decoder, the benchmarks, the fuzzer. There is no chart, window,
// log, track, AIS or ARPA decoder, so every hook answers "nothing here":
// a query returns false (its out-arguments untouched) or zero, a step does
// nothing. A host that has any of these modules derives and overrides
// just those hooks, and says so in its own class.
#pragma once
#include <string>
#include <string_view>

#include "instruments/InstrumentHooks.h"

namespace ombra {

class HeadlessHooks : public InstrumentHooks {
public:
    void ShowCommDialog(CommDialog) override {}
    void DecodeAIS(const std::string&) override {}
    bool GetOwnVessel(OwnVesselReport&) const override { return false; }
    void DecodeARPA(std::string_view, const std::string&) override {}
    void ClearArpaTargets() override {}
    void ClearActiveTargets() override {}
    void SetGPSMenuState(bool) override {}
    void ArpaHeadingAgeCheck() override {}
    void SetInfoLine(InfoPanel, const std::string&) override {}
    void SetBusyCursor(bool) override {}
    bool TideAtVessel(double&, double&) const override { return false; }
    bool CourseToSteerLeg(double&) const override { return false; }
    float VariationAt(const LatLong&) const override { return 0.0f; }
    float CompassDeviation(float) const override { return 0.0f; }
    void EndTrackingAids() override {}
    void CloseTrack(const VesselSnapshot&) override {}
    void AddTrackPoint(const VesselSnapshot&) override {}
    void LogEvent(LogCode, const std::string&) override {}
    void AutoLog(const VesselSnapshot&) override {}
    void RefreshTargets(const VesselSnapshot&) override {}
    void TrackCheck(const VesselSnapshot&) override {}
    void ManOverboardReadout(const VesselSnapshot&) override {}
    void RedrawVessel(const VesselSnapshot&) override {}
    void CheckBoundaries(const VesselSnapshot&) override {}
    void CheckAnchorAlarm(const VesselSnapshot&) override {}
    void CheckArrivalAlarm(const VesselSnapshot&) override {}
    void CheckXTEAlarm(const VesselSnapshot&) override {}
    void RefreshAutoscrollMarker(const VesselSnapshot&) override {}
    void UpdateLogRunningRecord(const VesselSnapshot&) override {}
    void RefreshSatInfo(const VesselSnapshot&) override {}
    void ShowLostGPS(bool) override {}
    bool CursorPosition(LatLong&) const override { return false; }
    void ConsoleChanged() override {}
};

// No chart is open and the mouse drags nothing.
class HeadlessChart : public ChartOps {
public:
    bool ChartOpen() const override { return false; }
    void PrepareVesselPoint(const LatLong&) override {}
    void CentreOnVessel(const LatLong&) override {}
    void OpenBestChartAt(const LatLong&) override {}
    bool GetScrollView(const LatLong&, ScrollView&) const override { return false; }
    void CentreChartAt(const LatLong&) override {}
    bool VesselBeingDragged() const override { return false; }
};

}  // namespace ombra
