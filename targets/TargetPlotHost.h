// TargetPlotHost: what the radar (ARPA) and tracked-target tables ask of the
// program around them. The plotter answers from the vessel, the units, the
// chart view and the windows; a test answers with a recording host.
#pragma once
#include <string>
#include <vector>

#include "core/Types.h"

namespace ombra {

class TargetPlotHost {
public:
    virtual ~TargetPlotHost() = default;
    // The own vessel's position, when she is active (GPS or dead reckoning).
    virtual bool OwnPosition(LatLong& pos) = 0;
    // Console texts in the navigator's units: a position as "lat  long", a
    // true angle as true, magnetic or compass, a distance (miles) and a
    // speed (knots) with a number picture and the unit.
    virtual std::string PositionText(const LatLong& pos) = 0;
    virtual std::string AngleText(double trueDegrees) = 0;
    virtual std::string DistanceText(double miles, const char* picture) = 0;
    virtual std::string SpeedText(double knots, const char* picture) = 0;
    // The console's rows changed; the chart wants drawing again.
    virtual void ConsoleChanged() = 0;
    virtual void Redraw() = 0;
    // The list dialog ("OK" and "Cancel"): the chosen row, or -1.
    virtual int ListPick(const std::string& title, const std::vector<std::string>& rows) = 0;
    // Zooms the chart to a position, opening a chart that holds it when the
    // one in view does not.
    virtual void CentreChartOn(const LatLong& pos) = 0;
};

}  // namespace ombra
