// A whole instruments subsystem over fake services, for tests: scripted
// ports (or real ones), a settable clock, scripted dialogs, and hooks that
// record which end-of-cycle steps ran, in order.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "instruments/Instruments.h"
#include "tests/support/InstrumentsRig.h"

namespace ombra::test {

// Every hook answered: the steps a test watches are recorded by name in
// `calls` (the end-of-cycle ones also keep the vessel they were shown in
// `seen`); the queries answer what the test set.
#define OMBRA_RECORD(fn, name) \
    void fn() override { calls.push_back(name); }
#define OMBRA_RECORD_AT(fn, name)                 \
    void fn(const VesselSnapshot& v) override { \
        calls.push_back(name);                    \
        seen.push_back(v);                        \
    }

struct RecordingHooks : InstrumentHooks {
    std::vector<std::string> calls, ais, arpa;
    std::vector<VesselSnapshot> seen;
    bool own = false, tide = false;
    OwnVesselReport ownReport;
    double set = 0, drift = 0;
    float variation = 0.0f;
    mutable std::vector<LatLong> variationAsked;  // where the variation was asked for
    int lostShown = 0, lostHidden = 0;
    std::map<int, std::string> infoLine;  // by panel, the last text shown
    bool busy = false;                    // the hourglass is up
    void ShowCommDialog(CommDialog d) override { calls.push_back("ShowCommDialog" + std::to_string(int(d))); }
    void DecodeAIS(const std::string& s) override { ais.push_back(s); }
    bool GetOwnVessel(OwnVesselReport& r) const override { return r = ownReport, own; }
    void DecodeARPA(std::string_view id, const std::string& s) override { arpa.push_back(std::string(id) + ":" + s); }
    void SetGPSMenuState(bool on) override { calls.push_back(on ? "MenuGPSOn" : "MenuGPSOff"); }
    bool TideAtVessel(double& s, double& d) const override { return s = set, d = drift, tide; }
    float VariationAt(const LatLong& p) const override { return variationAsked.push_back(p), variation; }
    void LogEvent(LogCode code, const std::string& text) override {
        calls.push_back("Log" + std::to_string(int(code)) + ":" + text);
    }
    void ShowLostGPS(bool show) override { (show ? lostShown : lostHidden)++; }
    OMBRA_RECORD(ClearArpaTargets, "ClearArpaTargets")
    OMBRA_RECORD(ClearActiveTargets, "ClearActiveTargets")
    OMBRA_RECORD_AT(AddTrackPoint, "AddTrackPoint")
    OMBRA_RECORD_AT(CloseTrack, "CloseTrack")
    OMBRA_RECORD_AT(AutoLog, "AutoLog")
    OMBRA_RECORD_AT(RefreshTargets, "RefreshTargets")
    OMBRA_RECORD_AT(TrackCheck, "TrackCheck")
    OMBRA_RECORD_AT(ManOverboardReadout, "ManOverboard")
    OMBRA_RECORD_AT(RedrawVessel, "RedrawVessel")
    OMBRA_RECORD_AT(CheckBoundaries, "CheckBoundaries")
    OMBRA_RECORD_AT(CheckAnchorAlarm, "CheckAnchorAlarm")
    OMBRA_RECORD_AT(CheckArrivalAlarm, "CheckArrivalAlarm")
    OMBRA_RECORD_AT(CheckXTEAlarm, "CheckXTEAlarm")
    OMBRA_RECORD_AT(RefreshAutoscrollMarker, "AutoscrollMarker")
    OMBRA_RECORD_AT(UpdateLogRunningRecord, "LogRunning")
    OMBRA_RECORD_AT(RefreshSatInfo, "SatInfo")
    // Answered, not recorded: the windows' and the cursor's side.
    void ArpaHeadingAgeCheck() override {}
    void SetInfoLine(InfoPanel p, const std::string& t) override { infoLine[int(p)] = t; }
    void SetBusyCursor(bool b) override { busy = b; }
    // The course to steer the plotter works out: here the active leg's
    // course, as in slack water.
    bool CourseToSteerLeg(double& c) const override { return steerOk && (c = steer, true); }
    double steer = 0.0;
    bool steerOk = true;
    float CompassDeviation(float) const override { return 0.0f; }
    void EndTrackingAids() override {}
    bool CursorPosition(LatLong&) const override { return false; }
    void ConsoleChanged() override {}
};

struct RecordingChart : ChartOps {
    std::vector<std::string> calls;
    ScrollView view;
    bool hasView = false;
    bool dragging = false;  // the mouse is placing the vessel
    std::vector<LatLong> centres;
    bool ChartOpen() const override { return hasView; }
    void PrepareVesselPoint(const LatLong&) override {}
    void CentreOnVessel(const LatLong&) override { calls.push_back("CentreOnVessel"); }
    void OpenBestChartAt(const LatLong&) override { calls.push_back("OpenBestChartAt"); }
    bool GetScrollView(const LatLong&, ScrollView& v) const override { return v = view, hasView; }
    void CentreChartAt(const LatLong& p) override { centres.push_back(p); }
    bool VesselBeingDragged() const override { return dragging; }
};
#undef OMBRA_RECORD
#undef OMBRA_RECORD_AT

// The subsystem over `ports`, or over `live` when given.
struct InstrumentsFixture : InstrumentsRig<RecordingHooks, RecordingChart> {
    explicit InstrumentsFixture(const std::string& appPath = "/nonexistent-ombra-app/", Comms* comms = nullptr)
        : InstrumentsRig(comms) {
        globals.AppPath = appPath;
        clock.SetTime(12, 0, 0);
    }
    void Load() {
        ins.LoadCommsSettings();
        ins.vessel.LoadVesselSettings();
    }
    Vessel& V() { return ins.vessel.vessel; }
    // One "$" sentence straight to the decoder its identifier routes to,
    // whatever the settings, split and reported as the intake does.
    DecodeResult Decode(const std::string& sentence);
    // The fix as the vessel cycle reads it: aged, then read; `out` is left
    // alone on the call that finds the data run out.
    void ReadFix(GPSFix& out);
    // Every text a message box showed, in order.
    std::vector<std::string> Messages() const {
        std::vector<std::string> m;
        for (const auto& a : dialogs.asked)
            if (a.kind == "MsgBox") m.push_back(a.text);
        return m;
    }
};

// A sentence with its checksum and CR LF: Sentence("GPHDT,1.0,T").
std::string Sentence(const std::string& body);

}  // namespace ombra::test
