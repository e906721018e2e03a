// A whole instruments subsystem over fake services, for tests: scripted
// ports, a settable clock, scripted dialogs, and hooks that record which
// end-of-cycle steps ran, in order.
#pragma once
#include <string>
#include <vector>

#include "core/ErrorReport.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "instruments/Instruments.h"
#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"

namespace ombra::test {

struct RecordingHooks : InstrumentHooks {
    std::vector<std::string> calls;
    std::vector<std::string> ais;
    std::vector<std::string> arpa;
    bool own = false;
    OwnVesselReport ownReport;
    bool tide = false;
    double set = 0, drift = 0;
    float variation = 0.0f;
    int lostShown = 0, lostHidden = 0;
    void ShowCommDialog(CommDialog d) override { calls.push_back("ShowCommDialog" + std::to_string(int(d))); }
    void DecodeAIS(const std::string& s) override { ais.push_back(s); }
    bool GetOwnVessel(OwnVesselReport& r) override {
        r = ownReport;
        return own;
    }
    void DecodeARPA(std::string_view id, const std::string& s) override { arpa.push_back(std::string(id) + ":" + s); }
    void ClearArpaTargets() override { calls.push_back("ClearArpaTargets"); }
    void ClearActiveTargets() override { calls.push_back("ClearActiveTargets"); }
    void SetGPSMenuState(bool on) override { calls.push_back(on ? "MenuGPSOn" : "MenuGPSOff"); }
    bool TideAtVessel(double& s, double& d) override {
        s = set;
        d = drift;
        return tide;
    }
    float VesselVariation() override { return variation; }
    void LogEvent(int16_t code, const std::string& text) override { calls.push_back("Log" + std::to_string(code) + ":" + text); }
    void AddTrackPoint() override { calls.push_back("AddTrackPoint"); }
    void CloseTrack() override { calls.push_back("CloseTrack"); }
    void AutoLog() override { calls.push_back("AutoLog"); }
    void RefreshTargets() override { calls.push_back("RefreshTargets"); }
    void TrackCheck() override { calls.push_back("TrackCheck"); }
    void ManOverboardReadout() override { calls.push_back("ManOverboard"); }
    void RedrawVessel() override { calls.push_back("RedrawVessel"); }
    void CheckBoundaries(const LatLong&, bool) override { calls.push_back("CheckBoundaries"); }
    void CheckAnchorAlarm(const LatLong&) override { calls.push_back("CheckAnchorAlarm"); }
    void CheckArrivalAlarm() override { calls.push_back("CheckArrivalAlarm"); }
    void CheckXTEAlarm() override { calls.push_back("CheckXTEAlarm"); }
    void RefreshAutoscrollMarker() override { calls.push_back("AutoscrollMarker"); }
    void UpdateLogRunningRecord() override { calls.push_back("LogRunning"); }
    void RefreshSatInfo() override { calls.push_back("SatInfo"); }
    void ShowLostGPS(bool show) override { (show ? lostShown : lostHidden)++; }
};

struct RecordingChart : ChartOps {
    std::vector<std::string> calls;
    ScrollView view;
    bool hasView = false;
    std::vector<LatLong> centres;
    bool ChartOpen() override { return hasView; }
    void CentreOnVessel() override { calls.push_back("CentreOnVessel"); }
    void OpenBestChartAt(const LatLong&) override { calls.push_back("OpenBestChartAt"); }
    bool GetScrollView(ScrollView& v) override {
        v = view;
        return hasView;
    }
    void CentreChartAt(const LatLong& p) override { centres.push_back(p); }
};

struct InstrumentsFixture {
    MemorySettings store;
    Globals globals;
    Registry reg{store, globals.ProductName};
    Units units;
    ManualClock clock;
    NoEvents events;
    ScriptedDialogs dialogs;
    ErrorReporter errors{dialogs, globals.ProductName};
    ScriptedComms ports;
    RecordingHooks hooks;
    RecordingChart chart;
    Instruments ins{{reg, units, globals, clock, events, errors, ports, hooks, chart}};

    explicit InstrumentsFixture(const std::string& appPath = "/nonexistent-ombra-app/") {
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
