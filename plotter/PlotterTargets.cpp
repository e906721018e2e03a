// The targets' host: what the ARPA and tracked-target modules ask of the
// plotter, answered by the vessel, the units, the navigation windows and
// the chart view; and their drawing in the chart's layers.
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "navmath/RLGC.h"
#include "plotter/Plotter.h"

namespace ombra {

bool PlotterTargetHost::OwnPosition(LatLong& pos) {
    if (!p_.instruments_.vessel.VesselActive()) return false;
    pos = p_.instruments_.vessel.vessel.Pos;
    return true;
}
std::string PlotterTargetHost::PositionText(const LatLong& pos) {
    std::string lat, lon;
    LatLongText(lat, lon, &pos, 1, 1);
    return lat + "  " + lon;
}
// True, magnetic (with the variation at the vessel) or compass (with the
// card's deviation as well), as the vessel's own rows show angles.
std::string PlotterTargetHost::AngleText(double trueDegrees) {
    double a = trueDegrees;
    const LatLong at = p_.instruments_.vessel.vessel.Pos;
    if (p_.units_.AngleUnit != 0) a = Fold360(a - double(p_.magVar_.MagneticVariation(at)));
    if (p_.units_.AngleUnit == 2) a = Fold360(a + double(p_.deviation_.DeviationFor(float(a))));
    return Format(a, "000.0") + " " + p_.units_.UnitText(UnitKind::Angle);
}
std::string PlotterTargetHost::DistanceText(double miles, const char* picture) {
    return p_.units_.ToDisplay(UnitKind::Distance, float(miles), picture) + " " + p_.units_.UnitText(UnitKind::Distance);
}
std::string PlotterTargetHost::SpeedText(double knots, const char* picture) {
    return p_.units_.ToDisplay(UnitKind::Speed, float(knots), picture) + " " + p_.units_.UnitText(UnitKind::Speed);
}
void PlotterTargetHost::ConsoleChanged() { p_.services_.shell.ConsoleChanged(); }
void PlotterTargetHost::Redraw() { p_.RequestChartRedraw(); }
int PlotterTargetHost::ListPick(const std::string& title, const std::vector<std::string>& rows) {
    return p_.navHost_.ListPick(title, rows, "OK");
}
void PlotterTargetHost::CentreChartOn(const LatLong& pos) { p_.displayChart_.CentreOn(pos); }

void Plotter::RegisterTargetLayers() {
    charts_.View.RegisterLayer(Layer::ArpaObjects, [this](Canvas& c, const ChartViewState&) {
        arpa_.DrawArpaObjects(c, displayChart_, chartLibrary_);
    });
    charts_.View.RegisterLayer(Layer::TrackedTargets, [this](Canvas& c, const ChartViewState&) {
        tracked_.DrawTrackedTargets(c, displayChart_, chartLibrary_);
    });
}

}  // namespace ombra
