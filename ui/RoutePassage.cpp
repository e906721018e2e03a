#include "ui/RoutePassage.h"

#include "navmath/Deviation.h"
#include "plotter/Plotter.h"
#include "ui/FrmRoute.h"

namespace ombra {

void AttachPlotterPassage(FrmRoute& f, Plotter& p) {
    const int16_t route = f.RouteIndex();
    PassageLinks l;
    l.passage = &p.passage();
    l.dialogs = &p.services().dialogs;
    l.title = p.globals().ProductName;
    l.now = [&p] { return p.services().clock.Now().Serial(); };
    l.vessel = [&p](LatLong& pos) {
        if (!p.instruments().vessel.VesselActive()) return false;
        pos = p.instruments().vessel.vessel.Pos;
        return true;
    };
    l.activePoint = [&p, route] {
        const Routes& r = p.nav().routes;
        return r.ActiveRoute == route ? r.ActivePoint : int16_t(0);
    };
    // A course to steer in the navigator's course unit, with the variation
    // at the point the leg leaves (the first point for a leg from the vessel).
    l.shownCourse = [&p, route](double course, int leg) {
        const Route* r = p.nav().routes.At(route);
        const int16_t mode = p.units().AngleUnit;
        const size_t at = leg > 0 ? size_t(leg - 1) : 0;
        const double var = r && at < r->Points.size() ? r->Points[at].MagVar : 0.0;
        const double dev = mode == 2 ? p.deviation().DeviationFor(float(ShownCourse(course, 1, var, 0))) : 0.0;
        return ShownCourse(course, mode, var, dev);
    };
    l.busy = [&p](bool busy) { p.services().shell.SetBusyCursor(busy); };
    l.redraw = [&p] { p.RequestChartRedraw(); };
    f.AttachPassage(std::move(l));
}

}  // namespace ombra
