// A whole instruments subsystem over fake services, for tests: scripted
// ports (or real ones), a settable clock, scripted dialogs, and hooks that
// record which end-of-cycle steps ran, in order.
#pragma once
#include <string>
#include <vector>

#include "instruments/Instruments.h"
#include "tests/support/InstrumentsRig.h"

namespace ombra::test {

#define OMBRA_RECORD(fn, name) \
    void fn() override { calls.push_back(name); }

struct RecordingHooks : InstrumentHooks {
    std::vector<std::string> calls, ais, arpa;
    bool own = false, tide = false;
    OwnVesselReport ownReport;
    double set = 0, drift = 0;
    float variation = 0.0f;
    int lostShown = 0, lostHidden = 0;
    void ShowCommDialog(CommDialog d) override { calls.push_back("ShowCommDialog" + std::to_string(int(d))); }
    void DecodeAIS(const std::string& s) override { ais.push_back(s); }
    bool GetOwnVessel(OwnVesselReport& r) override { return r = ownReport, own; }
    void DecodeARPA(std::string_view id, const std::string& s) override { arpa.push_back(std::string(id) + ":" + s); }
    void SetGPSMenuState(bool on) override { calls.push_back(on ? "MenuGPSOn" : "MenuGPSOff"); }
    bool TideAtVessel(double& s, double& d) override { return s = set, d = drift, tide; }
    float VesselVariation() override { return variation; }
    void LogEvent(int16_t code, const std::string& text) override { calls.push_back("Log" + std::to_string(code) + ":" + text); }
    void CheckBoundaries(const LatLong&, bool) override { calls.push_back("CheckBoundaries"); }
    void CheckAnchorAlarm(const LatLong&) override { calls.push_back("CheckAnchorAlarm"); }
    void ShowLostGPS(bool show) override { (show ? lostShown : lostHidden)++; }
    OMBRA_RECORD(ClearArpaTargets, "ClearArpaTargets")
    OMBRA_RECORD(ClearActiveTargets, "ClearActiveTargets")
    OMBRA_RECORD(AddTrackPoint, "AddTrackPoint")
    OMBRA_RECORD(CloseTrack, "CloseTrack")
    OMBRA_RECORD(AutoLog, "AutoLog")
    OMBRA_RECORD(RefreshTargets, "RefreshTargets")
    OMBRA_RECORD(TrackCheck, "TrackCheck")
    OMBRA_RECORD(ManOverboardReadout, "ManOverboard")
    OMBRA_RECORD(RedrawVessel, "RedrawVessel")
    OMBRA_RECORD(CheckArrivalAlarm, "CheckArrivalAlarm")
    OMBRA_RECORD(CheckXTEAlarm, "CheckXTEAlarm")
    OMBRA_RECORD(RefreshAutoscrollMarker, "AutoscrollMarker")
    OMBRA_RECORD(UpdateLogRunningRecord, "LogRunning")
    OMBRA_RECORD(RefreshSatInfo, "SatInfo")
};

struct RecordingChart : ChartOps {
    std::vector<std::string> calls;
    ScrollView view;
    bool hasView = false;
    std::vector<LatLong> centres;
    bool ChartOpen() override { return hasView; }
    OMBRA_RECORD(CentreOnVessel, "CentreOnVessel")
    void OpenBestChartAt(const LatLong&) override { calls.push_back("OpenBestChartAt"); }
    bool GetScrollView(ScrollView& v) override { return v = view, hasView; }
    void CentreChartAt(const LatLong& p) override { centres.push_back(p); }
};
#undef OMBRA_RECORD

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
