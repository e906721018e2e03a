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
constexpr size_t kMaxSlots = 32767;
// The pen of the leg the vessel is on.
const Pen kActivePen{MakeRgb(255, 0, 255), 3, PenStyle::Solid};
}  // namespace

Routes::Routes(NavContext& ctx, const SymbolStrips& symbols)
    : NavStore(ctx, kRouteStore, "InitRoutesData", "OpenRouteDB", "SaveRouteDB"), symbols_(symbols) {}

Route* Routes::At(int16_t slot) { return (slot >= 1 && slot <= Count()) ? &List[size_t(slot - 1)] : nullptr; }

Waypoint* Routes::PointAt(int16_t route, int16_t point) {
    Route* r = At(route);
    if (!r || point < 1 || point > int16_t(r->Points.size())) return nullptr;
    return &r->Points[size_t(point - 1)];
}

std::string Routes::PointName(int16_t route, int16_t index) {
    return "R" + Format(route, "0") + ".WP" + Format(index, "0");
}

void Routes::ClearRecords() {
    List.clear();
    SelectedRoute = SelectedPoint = SelectedLeg = 0;
    ActiveRoute = ActivePoint = 0;
}

std::string Routes::Serialise() { return RouteFileText(HeaderVersion(), CurrentName, List); }

ReadOutcome Routes::Parse(const std::string& text) { return ReadRouteFile(text, CurrentName, List); }

int Routes::RecordCount() const {
    int n = 0;
    for (const Route& r : List) n += r.Used() ? 1 : 0;
    return n;
}

void Routes::AfterLoad() {
    for (Route& r : List) {
        for (Waypoint& p : r.Points) p.MagVar = ctx_.host.Variation(p.Position.Wgs84);
        ComputeLegs(r);
    }
    PrepareNavPoints();
}

void Routes::PrepareNavPoints() {
    for (Route& r : List)
        if (r.Used())
            for (Waypoint& p : r.Points) ctx_.chart.PrepareNavPoint(p.Position);
}

void Routes::Changed() {
    ctx_.host.ListsChanged();
    ctx_.chart.Redraw();
}

int16_t Routes::DefaultLegFlag() const { return ctx_.reg.IsTrue(Key::CoDist4) ? -1 : 0; }

bool Routes::IsActivePoint(int16_t route, int16_t point) const {
    return ActiveRoute != 0 && ActiveRoute == route && ActivePoint == point;
}

Waypoint Routes::NewPoint(int16_t route, int16_t index) const {
    Waypoint wp;
    wp.Name = PointName(route, index);
    wp.Number = index;
    wp.Icon = 0;
    wp.LabelMode = int16_t(Val(ctx_.reg.GetSetting(Key::DisplayTypeRoute)));
    wp.AlarmRange = float(Val(ctx_.reg.GetSetting(Key::WaypointAlarmRange)));
    wp.DatumFlag = 1;
    return wp;
}

int16_t Routes::NewRoute() {
    if (!EnsureOpen()) return 0;
    int16_t slot = 0;
    for (size_t i = 0; i < List.size(); ++i)
        if (!List[i].Used()) {
            slot = int16_t(i + 1);
            break;
        }
    bool appended = false;
    if (slot == 0) {
        if (List.size() >= kMaxSlots) return 0;
        List.emplace_back();
        slot = Count();
        appended = true;
    }
    std::string name = "R" + Format(slot, "000");
    if (!ctx_.dialogs.InputBox("Enter name of new route.", "Route:  " + Format(slot, "000"), name) ||
        Trim(name).empty()) {
        if (appended) List.pop_back();
        return 0;
    }
    Route& r = List[size_t(slot - 1)];
    r = Route{};
    r.Name = name;
    r.Number = slot;
    r.Display = -1;
    r.Colour = 0;
    r.ShowLegText = false;
    SelectedRoute = slot;
    ctx_.host.ListsChanged();
    return slot;
}

void Routes::EndNewRoute(int16_t route) {
    Route* r = At(route);
    if (r && r->Used() && r->Points.empty()) {
        RemoveRoute(route);
        Changed();
    }
}

void Routes::RemoveRoute(int16_t route) {
    if (!At(route)) return;
    if (route < Count()) List[size_t(route - 1)] = Route{};
    else List.pop_back();
    if (SelectedRoute == route) SelectedRoute = SelectedPoint = SelectedLeg = 0;
}

int16_t Routes::AddRoutePoint(int16_t route, const LatLong& pos) {
    Route* r = At(route);
    if (!r || !r->Used() || r->Points.size() >= kMaxSlots) return 0;
    int16_t index = int16_t(r->Points.size() + 1);
    Waypoint wp = NewPoint(route, index);
    wp.Position.Wgs84 = pos;
    wp.MagVar = ctx_.host.Variation(pos);
    ctx_.chart.PrepareNavPoint(wp.Position);
    r->Points.push_back(std::move(wp));
    r->Legs.resize(r->Points.size());
    r->Legs.back() = RouteLeg{};
    if (r->Points.size() >= 2) {
        r->Legs[r->Points.size() - 2].IsGreatCircle = DefaultLegFlag();
        ComputeLeg(*r, r->Points.size() - 2);
    }
    r->PointCount = int16_t(r->Points.size());
    Changed();
    return index;
}

int16_t Routes::AddRoutePointBy(int16_t route, AddBy how) {
    Route* r = At(route);
    if (!r || !r->Used()) return 0;
    Waypoint wp = NewPoint(route, int16_t(r->Points.size() + 1));
    if (how == AddBy::GPS && VesselPosition) wp.Position.Wgs84 = VesselPosition();
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

void Routes::Renumber(Route& r, size_t from, int shift) {
    int16_t route = r.Number;
    for (size_t j = from; j < r.Points.size(); ++j) {
        int16_t now = int16_t(j + 1), was = int16_t(int(j) + 1 - shift);
        Waypoint& p = r.Points[j];
        if (p.Name == PointName(route, was)) p.Name = PointName(route, now);
        p.Number = now;
    }
}

int16_t Routes::InsertRoutePoint(int16_t route, int16_t leg, const LatLong& pos) {
    Route* r = At(route);
    if (!r || !r->Used() || leg < 1 || leg >= int16_t(r->Points.size()) || r->Points.size() >= kMaxSlots) return 0;
    size_t at = size_t(leg);  // 0-based place of the new point
    Waypoint wp = NewPoint(route, int16_t(at + 1));
    wp.Position.Wgs84 = pos;
    wp.MagVar = ctx_.host.Variation(pos);
    ctx_.chart.PrepareNavPoint(wp.Position);
    int16_t flag = r->Legs[at - 1].IsGreatCircle;
    r->Points.insert(r->Points.begin() + long(at), std::move(wp));
    RouteLeg nl;
    nl.IsGreatCircle = flag;
    r->Legs.insert(r->Legs.begin() + long(at), nl);
    Renumber(*r, at + 1, 1);
    ComputeLeg(*r, at - 1);
    ComputeLeg(*r, at);
    r->PointCount = int16_t(r->Points.size());
    if (ActiveRoute == route && ActivePoint > int16_t(at)) ++ActivePoint;
    Changed();
    return int16_t(at + 1);
}

bool Routes::DeleteRoutePoint(int16_t route, int16_t point) {
    Route* r = At(route);
    if (!r || !PointAt(route, point)) return false;
    if (IsActivePoint(route, point)) {
        ctx_.dialogs.MsgBox("You must de-activate a route point before deleting it.", mb::Exclamation,
                            ctx_.globals.ProductName);
        return false;
    }
    size_t k = size_t(point - 1);
    r->Points.erase(r->Points.begin() + long(k));
    r->Legs.erase(r->Legs.begin() + long(k));
    Renumber(*r, k, -1);
    if (k >= 1) ComputeLeg(*r, k - 1);
    r->PointCount = int16_t(r->Points.size());
    if (ActiveRoute == route && ActivePoint > point) --ActivePoint;
    if (SelectedRoute == route) SelectedPoint = 0;
    if (r->Points.empty()) {
        if (ActiveRoute == route && OnDeactivate) OnDeactivate(true);
        RemoveRoute(route);
    }
    Changed();
    return true;
}

bool Routes::MoveRoutePoint(int16_t route, int16_t point) {
    Waypoint* p = PointAt(route, point);
    if (!p) return false;
    if (IsActivePoint(route, point)) {
        ctx_.dialogs.MsgBox("An active waypoint cannot be moved.\nYou must de-activate it first.", mb::Exclamation,
                            ctx_.globals.ProductName);
        SelectedPoint = 0;
        return false;
    }
    SelectedRoute = route;
    SelectedPoint = point;
    int plan = p->Position.FirstPlanShown();
    if (plan >= 0) ctx_.host.SetCursorAt(ctx_.chart.ToScreen(p->Position.Pixel[size_t(plan)]));
    return true;
}

void Routes::DropRoutePoint(int16_t route, int16_t point, const LatLong& pos) {
    Waypoint* p = PointAt(route, point);
    if (!p) return;
    p->Position.Wgs84 = pos;
    p->MagVar = ctx_.host.Variation(pos);
    ctx_.chart.PrepareNavPoint(p->Position);
    Route& r = *At(route);
    if (point >= 2) ComputeLeg(r, size_t(point - 2));
    ComputeLeg(r, size_t(point - 1));
    SelectedPoint = 0;
    Changed();
}

bool Routes::EditRoutePoint(int16_t route, int16_t point) {
    Route* r = At(route);
    Waypoint* p = PointAt(route, point);
    if (!r || !p) return false;
    WaypointDialogRequest req{"Edit Way Point", "Route:", r->Name, *p};
    if (!ctx_.host.WaypointDialog(req)) return false;
    p = PointAt(route, point);
    if (!p) return false;
    Waypoint rec = req.Record;
    rec.Number = p->Number;
    bool moved = !(rec.Position.Wgs84 == p->Position.Wgs84);
    if (moved) {
        rec.MagVar = ctx_.host.Variation(rec.Position.Wgs84);
        ctx_.chart.PrepareNavPoint(rec.Position);
    }
    *p = std::move(rec);
    if (moved) {
        if (point >= 2) ComputeLeg(*r, size_t(point - 2));
        ComputeLeg(*r, size_t(point - 1));
    }
    if (IsActivePoint(route, point) && OnActiveRange) OnActiveRange(std::fabs(p->AlarmRange));
    Changed();
    return true;
}

bool Routes::DeleteRoute(int16_t route) {
    Route* r = At(route);
    if (!r || !r->Used()) return false;
    if (!ConfirmDelete(DeleteKind::Route, ctx_.dialogs, ctx_.globals.ProductName)) return false;
    if (ActiveRoute == route && OnDeactivate) OnDeactivate(true);
    RemoveRoute(route);
    Changed();
    return true;
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

void Routes::DisplayRoute(int16_t route) {
    Route* r = At(route);
    if (!r || !r->Used()) return;
    r->Display = r->Display ? 0 : -1;
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
                    std::string label;
                    if (r.ShowLegText) {
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

std::vector<std::string> Routes::CentreOnItems(std::vector<int16_t>* slots) const {
    std::vector<std::string> items;
    for (size_t i = 0; i < List.size(); ++i) {
        if (!List[i].Used() || List[i].Points.empty()) continue;
        items.push_back(Format(List[i].Number, "0000") + " - " + List[i].Name);
        if (slots) slots->push_back(int16_t(i + 1));
    }
    return items;
}

void Routes::CentreOnRoute() {
    std::vector<int16_t> slots;
    std::vector<std::string> items = CentreOnItems(&slots);
    int pick = ctx_.host.ListPick("Select Route To Centre On", items, "Select");
    if (pick < 0 || pick >= int(slots.size())) return;
    ctx_.chart.CentreOn(List[size_t(slots[size_t(pick)] - 1)].Points.front().Position.Wgs84);
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
    std::vector<RoutePointRow> rows;
    if (route < 1 || route > Count()) return rows;
    const Route& r = List[size_t(route - 1)];
    for (size_t i = 0; i < r.Points.size(); ++i) {
        const Waypoint& p = r.Points[i];
        RoutePointRow row;
        row.No = Format(double(i + 1), "000");
        row.Name = p.Name;
        row.Display = (p.LabelMode >= 0 && p.LabelMode < 4) ? kWaypointLabelModes[p.LabelMode] : "";
        row.Active = ActiveRoute == route && ActivePoint == int16_t(i + 1) ? "Yes" : "No";
        if (chartDatum) LatLongText(row.Latitude, row.Longitude, &p.Position.Local, 0, 1);
        else LatLongText(row.Latitude, row.Longitude, &p.Position.Wgs84, 1, 1);
        rows.push_back(row);
    }
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
