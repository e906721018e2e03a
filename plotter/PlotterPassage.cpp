// The passage planner's joints: its track drawn over the chart in the
// planned route's colour, and the console's course to steer through the
// stream at the vessel.
#include "plotter/Plotter.h"

#include "navobjects/CommonWP.h"

namespace ombra {

void Plotter::RegisterPassageLayer() {
    charts_.View.RegisterLayer(Layer::Passage, [this](Canvas& c, const ChartViewState&) {
        const Route* r = nav_.routes.At(passage_.PassageRoute);
        passage_.DrawPassage(c, displayChart_, TableColour(r ? r->Colour : 0));
    });
}

// The active leg's course to steer with the stream at the vessel (none
// when the tidal correction is off) at her speed through the water, or over
// the ground when that is not known; in whole degrees.
bool PlotterHooks::CourseToSteerLeg(double& course) const {
    const ActiveLeg& leg = p_.instruments_.leg;
    if (leg.Kind == 0) return false;
    double set = 0.0, drift = 0.0;
    if (!TideAtVessel(set, drift)) set = drift = 0.0;
    const Vessel& v = p_.instruments_.vessel.vessel;
    const double speed = v.SpeedWater > 0.0 ? v.SpeedWater : v.SOG;
    return CanStem(leg.BearingTo, float(speed), float(set), float(drift), &course);
}

}  // namespace ombra
