// NavHostRelay: a NavHost that the Plotter owns from the start and that
// hands the window side on to the main window's navigation commands once
// they exist, and the facts of other modules to the functions the Plotter
// sets. Before the window is up, window calls do nothing.
//
//   NavHostRelay relay;
//   relay.vesselActive = [&] { return ins.vessel.VesselActive(); };
//   NavContext ctx{..., relay, ...};   NavObjects nav(ctx, ins.leg);
//   ... later, in the window: relay.windows = &navCommands;
#pragma once
#include <functional>

#include "navobjects/NavHost.h"

namespace ombra {

class NavHostRelay : public NavHost {
public:
    NavHost* windows = nullptr;
    std::function<float(const LatLong&)> variation;
    std::function<double(double)> deviation;
    std::function<bool()> vesselActive;
    std::function<LatLong()> vesselPos;
    std::function<void()> legChanged;

    int TwoChoice(const std::string& t, const std::string& x, const std::string& a, const std::string& b) override {
        return windows ? windows->TwoChoice(t, x, a, b) : 0;
    }
    int ListPick(const std::string& t, const std::vector<std::string>& i, const std::string& b) override {
        return windows ? windows->ListPick(t, i, b) : -1;
    }
    bool WaypointDialog(WaypointDialogRequest& r) override { return windows && windows->WaypointDialog(r); }
    std::string ChooseFolder(const std::string& t, const std::string& p) override {
        return windows ? windows->ChooseFolder(t, p) : "";
    }
    std::string ChooseFile(const std::string& t, const std::string& p, const std::string& n,
                           const std::string& pattern) override {
        return windows ? windows->ChooseFile(t, p, n, pattern) : "";
    }
    void ShowRouteProperties(int16_t r) override {
        if (windows) windows->ShowRouteProperties(r);
    }
    void ShowBoundaryProperties(int16_t b) override {
        if (windows) windows->ShowBoundaryProperties(b);
    }
    bool ShowAttachment(const std::string& p) override { return windows && windows->ShowAttachment(p); }
    void SetStatus(const std::string& t) override {
        if (windows) windows->SetStatus(t);
    }
    void MenuCaptionsChanged() override {
        if (windows) windows->MenuCaptionsChanged();
    }
    void ListsChanged() override {
        if (windows) windows->ListsChanged();
    }
    void SetCursorAt(ChartPoint p) override {
        if (windows) windows->SetCursorAt(p);
    }
    float Variation(const LatLong& p) override { return variation ? variation(p) : 0.0f; }
    double Deviation(double c) override { return deviation ? deviation(c) : 0.0; }
    bool VesselActive() override { return vesselActive && vesselActive(); }
    LatLong VesselPos() override { return vesselPos ? vesselPos() : LatLong{}; }
    void ActiveLegChanged() override {
        if (legChanged) legChanged();
        if (windows) windows->ActiveLegChanged();
    }
};

}  // namespace ombra
