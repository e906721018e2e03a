#include "navobjects/Routes.h"

#include <algorithm>
#include <cmath>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Options.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {
// The pen of the leg the vessel is on.
const Pen kActivePen{MakeRgb(255, 0, 255), 3, PenStyle::Solid};
const ChainWords kRouteWords{"R",
                             ".WP",
                             "R",
                             "Enter name of new route.",
                             "Route:  ",
                             "Route:",
                             "Select Route To Centre On",
                             Key::DisplayTypeRoute,
                             DeleteKind::Route,
                             false};
}  // namespace

Routes::Routes(NavContext& ctx, const SymbolStrips& symbols, ActivePointWatch* watch)
    : PointChainStore(ctx, kRouteStore, "InitRoutesData", "OpenRouteDB", "SaveRouteDB", kRouteWords, symbols),
      watch_(watch) {}

std::string Routes::PointName(int16_t route, int16_t index) { return ChainPointName(kRouteWords, route, index); }

void Routes::ClearRecords() {
    // As for waypoints: closing the database ends the route being followed.
    if (ActiveRoute && watch_) watch_->ActiveRouteDeleted(true);
    PointChainStore::ClearRecords();
    ActiveRoute = ActivePoint = 0;
}

std::string Routes::Serialise() { return RouteFileText(HeaderVersion(), CurrentName, List); }

ReadOutcome Routes::Parse(const std::string& text) { return ReadRouteFile(text, CurrentName, List); }

int16_t Routes::DefaultLegFlag() const { return ctx_.reg.IsTrue(Key::CoDist4) ? -1 : 0; }

bool Routes::IsActivePoint(int16_t route, int16_t point) const {
    return ActiveRoute != 0 && ActiveRoute == route && ActivePoint == point;
}

void Routes::PointInserted(int16_t route, Route& r, size_t at, bool appended) {
    if (appended) {
        // The new last point: the leg from the one before it takes the default kind.
        r.Legs.resize(r.Points.size());
        r.Legs.back() = RouteLeg{};
        if (r.Points.size() >= 2) {
            r.Legs[r.Points.size() - 2].IsGreatCircle = DefaultLegFlag();
            ComputeLeg(r, r.Points.size() - 2);
        }
        return;
    }
    // Inside a leg: both halves keep the kind of the leg that was split.
    RouteLeg half;
    half.IsGreatCircle = r.Legs[at - 1].IsGreatCircle;
    r.Legs.insert(r.Legs.begin() + long(at), half);
    ComputeLeg(r, at - 1);
    ComputeLeg(r, at);
    if (ActiveRoute == route && ActivePoint > int16_t(at)) ++ActivePoint;
}

void Routes::PointErased(int16_t route, Route& r, size_t k) {
    r.Legs.erase(r.Legs.begin() + long(k));
    if (k >= 1) ComputeLeg(r, k - 1);
    if (ActiveRoute == route && ActivePoint > int16_t(k + 1)) --ActivePoint;
}

void Routes::PointMoved(Route& r, size_t k) {
    if (k >= 1) ComputeLeg(r, k - 1);
    ComputeLeg(r, k);
}

bool Routes::MayDeletePoint(int16_t route, int16_t point) {
    if (!IsActivePoint(route, point)) return true;
    ctx_.dialogs.MsgBox("You must de-activate a route point before deleting it.", mb::Exclamation,
                        ctx_.globals.ProductName);
    return false;
}

bool Routes::MayMovePoint(int16_t route, int16_t point) {
    if (!IsActivePoint(route, point)) return true;
    ctx_.dialogs.MsgBox("An active waypoint cannot be moved.\nYou must de-activate it first.", mb::Exclamation,
                        ctx_.globals.ProductName);
    return false;
}

void Routes::ChainGoing(int16_t route) {
    if (ActiveRoute == route && watch_) watch_->ActiveRouteDeleted(true);
}

void Routes::PointEdited(int16_t route, int16_t point, const Waypoint& p) {
    if (IsActivePoint(route, point) && watch_) watch_->ActiveRangeChanged(std::fabs(p.AlarmRange));
}

void Routes::EndNewRoute(int16_t route) {
    Route* r = At(route);
    if (r && r->Used() && r->Points.empty()) {
        RemoveRoute(route);
        Changed();
    }
}

int16_t Routes::AddRoutePointBy(int16_t route, AddBy how) {
    Route* r = At(route);
    if (!r || !r->Used()) return 0;
    if (how == AddBy::GPS && !ctx_.host.VesselActive()) {
        ctx_.dialogs.MsgBox("There is no vessel position to add: no vessel is active.", mb::Exclamation,
                            ctx_.globals.ProductName);
        return 0;
    }
    Waypoint wp = NewNode(route, int16_t(r->Points.size() + 1));
    wp.Position.Wgs84 = how == AddBy::GPS ? ctx_.host.VesselPos() : KeyboardStart(ctx_);
    WaypointDialogRequest req{"New Routepoint", "Route:", r->Name, wp};
    if (!ctx_.host.WaypointDialog(req)) return 0;
    int16_t index = AddRoutePoint(route, req.Record.Position.Wgs84);
    Waypoint* p = PointAt(route, index);
    if (!p) return 0;
    req.Record.Number = index;
    req.Record.Position = p->Position;
    req.Record.MagVar = p->MagVar;
    *p = req.Record;
    Changed();
    return index;
}

void Routes::ReverseRoute(int16_t route) {
    Route* r = At(route);
    if (!r || !r->Used() || r->Points.size() < 2) return;
    size_t n = r->Points.size();
    std::vector<int16_t> flags(n, 0);
    for (size_t j = 0; j + 1 < n; ++j) flags[j] = r->Legs[n - 2 - j].IsGreatCircle;
    std::reverse(r->Points.begin(), r->Points.end());
    for (size_t j = 0; j < n; ++j) {
        r->Points[j].Number = int16_t(j + 1);
        r->Legs[j] = RouteLeg{};
        r->Legs[j].IsGreatCircle = flags[j];
    }
    ComputeLegs(*r);
    if (ActiveRoute == route && ActivePoint > 0) ActivePoint = int16_t(n + 1 - size_t(ActivePoint));
    Changed();
}

void Routes::SwapLegKind(int16_t route, int16_t leg) {
    Route* r = At(route);
    if (!r || leg < 1 || leg >= int16_t(r->Points.size())) return;
    RouteLeg& l = r->Legs[size_t(leg - 1)];
    l.IsGreatCircle = l.IsGreatCircle ? 0 : -1;
    ComputeLeg(*r, size_t(leg - 1));
    Changed();
}

void Routes::DrawRoutes(Canvas& c) {
    ctx_.errors.Guard("DrawRoutes", [&] {
        if (!ctx_.chart.ChartOpen() || !IsOpen()) return;
        DisplayOptions display = LoadDisplayOptions(ctx_.reg);
        int16_t courseMode = ctx_.units.AngleUnit;
        bool icons = !ctx_.chart.RouteIconsOff();
        for (size_t ri = 0; ri < List.size(); ++ri) {
            Route& r = List[ri];
            if (!r.Used() || !r.Display) continue;
            int16_t slot = int16_t(ri + 1);
            Pen pen{TableColour(r.Colour), 2, PenStyle::Solid};
            for (size_t i = 0; i + 1 < r.Points.size(); ++i) {
                bool ahead = ActiveRoute == slot && ActivePoint == int16_t(i + 2);
                c.SetPen(ahead ? kActivePen : pen);
                const Waypoint& a = r.Points[i];
                const Waypoint& b = r.Points[i + 1];
                const RouteLeg& leg = r.Legs[i];
                if (leg.IsGreatCircle) {
                    // A great circle's label is wanted as a rhumb line's is:
                    // by the route, or forced on from the View menu.
                    std::string label;
                    if (r.ShowLegText || ctx_.chart.LabelOverride() == 1) {
                        double dev = courseMode == 2 ? ctx_.host.Deviation(ShownCourse(leg.Course, 1, a.MagVar, 0)) : 0.0;
                        label = LegLabel(leg.Course, leg.Distance, courseMode, a.MagVar, dev, ctx_.units,
                                         display.RangeFormat(), " GC");
                    }
                    ctx_.chart.DrawGreatCircle(c, a.Position, b.Position, leg.Course, leg.Distance, label);
                } else {
                    ctx_.chart.DrawRhumbLine(c, a.Position, b.Position, r.ShowLegText, courseMode, a.MagVar);
                }
            }
            for (size_t i = 0; i < r.Points.size(); ++i) {
                PointStyle style;
                style.icon = icons;
                style.active = ActiveRoute == slot && ActivePoint == int16_t(i + 1);
                style.selected = SelectedRoute == slot && SelectedPoint == int16_t(i + 1) && ctx_.globals.CurrentTool != 0;
                DrawPoint(c, ctx_.chart, symbols_, r.Points[i], style);
            }
        }
    });
}

std::vector<RouteRow> Routes::Rows() const {
    std::vector<RouteRow> rows;
    for (size_t i = 0; i < List.size(); ++i) {
        const Route& r = List[i];
        if (!r.Used()) continue;
        RouteRow row;
        row.Slot = int16_t(i + 1);
        row.No = Format(r.Number, "000");
        row.Name = r.Name;
        row.Display = r.Display ? "Yes" : "No";
        row.Active = ActiveRoute == int16_t(i + 1) ? "Yes" : "No";
        rows.push_back(row);
    }
    return rows;
}

std::vector<RoutePointRow> Routes::PointRows(int16_t route, bool chartDatum) const {
    std::vector<RoutePointRow> rows = NodeRows<RoutePointRow>(route, chartDatum);
    for (size_t i = 0; i < rows.size(); ++i)
        rows[i].Active = ActiveRoute == route && ActivePoint == int16_t(i + 1) ? "Yes" : "No";
    return rows;
}

std::vector<RouteLegRow> Routes::LegRows(int16_t route) {
    std::vector<RouteLegRow> rows;
    Route* r = At(route);
    if (!r) return rows;
    DisplayOptions display = LoadDisplayOptions(ctx_.reg);
    int16_t mode = ctx_.units.AngleUnit;
    for (size_t i = 0; i + 1 < r->Points.size(); ++i) {
        const RouteLeg& l = r->Legs[i];
        double var = r->Points[i].MagVar;
        double dev = mode == 2 ? ctx_.host.Deviation(ShownCourse(l.Course, 1, var, 0)) : 0.0;
        RouteLegRow row;
        row.Leg = Format(double(i + 1), "0") + " - " + Format(double(i + 2), "0");
        row.Kind = l.IsGreatCircle ? "GC" : "RL";
        row.Bearing = Format(ShownCourse(l.Course, mode, var, dev), "000") + ctx_.units.UnitText(UnitKind::Angle);
        row.Range = ctx_.units.ToDisplay(UnitKind::Distance, float(l.Distance), display.RangeFormat()) + " " +
                    ctx_.units.UnitText(UnitKind::Distance);
        rows.push_back(row);
    }
    return rows;
}

}  // namespace ombra
