// A target host for the fuzzers: own ship at 50°N 5°W, every text plain.
#pragma once
#include <string>
#include <vector>

#include "core/Format.h"
#include "core/Val.h"
#include "targets/TargetPlotHost.h"

namespace ombra::fuzz {

struct TargetHost : TargetPlotHost {
    bool OwnPosition(LatLong& pos) override {
        pos = {-5.0 * 3600.0, 50.0 * 3600.0};
        return true;
    }
    std::string PositionText(const LatLong& p) override { return NumberText(p.Lat) + " " + NumberText(p.Long); }
    std::string AngleText(double a) override { return Format(a, "000.0"); }
    std::string DistanceText(double m, const char* picture) override { return Format(m, picture); }
    std::string SpeedText(double k, const char* picture) override { return Format(k, picture); }
    void ConsoleChanged() override {}
    void Redraw() override {}
    int ListPick(const std::string&, const std::vector<std::string>& rows) override { return int(rows.size()) - 1; }
    void CentreChartOn(const LatLong&) override {}
};

}  // namespace ombra::fuzz
