#include "navobjects/MouseTools.h"

#include <cmath>

#include "core/GenFuncs.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "navobjects/Activation.h"
#include "navobjects/Boundaries.h"
#include "navobjects/CommonWP.h"
#include "navobjects/Dividers.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/Routes.h"
#include "navobjects/Waypoints.h"
#include "platform/api/Dialogs.h"

namespace ombra {

std::string ToolPrompt(int16_t tool) {
    switch (tool) {
        case ToolDragChart: return "Drag chart while holding left mouse button down";
        case ToolNewWaypoint: return "Single Click on chart to add new Waypoint";
        case ToolAppendWaypoint: return "Single Click on chart to append new Waypoint.";
        case ToolDividers: return "Single Click on first Point followed by the second Point";
        case ToolBoundary: return "Single Click chart for each Boundary Point, double click to end";
        case ToolRBL: return "Single Click on chart to place Range Bearing Line";
        case ToolRoute: return "Single Click on each Route Point double click to end";
        case ToolMoveRoutePoint: return "Single Click to Drop Route Point in new position";
        case ToolVessel: return "Single Click on chart to place Vessel";
        case ToolMoveWaypoint: return "Single Click to Drop Waypoint in new position";
        case ToolMoveBoundaryMark: return "Single Click to Drop Boundary Mark in new position";
        case ToolMoveRBL: return "Single Click to Drop Range Bearing Line in new position";
        case ToolAlarmRadius: return "Single Click to Set Alarm Radius";
        case ToolMoveDivider: return "Single Click to Drop Divider Line in new position";
        default: return "";
    }
}

int16_t MouseTools::Current() const { return ctx_.globals.CurrentTool; }

bool MouseTools::VectorsRestricted() const { return Current() == ToolMoveRBL || Current() == ToolRBL; }

void MouseTools::Begin(int16_t tool, int16_t index, int16_t part) {
    if (Current() != ToolPointer) End();
    ctx_.globals.CurrentTool = tool;
    index_ = index;
    part_ = part;
    placing_ = false;
    ctx_.host.SetStatus(ToolPrompt(tool));
}

void MouseTools::End() {
    int16_t tool = Current();
    ctx_.globals.CurrentTool = ToolPointer;
    switch (tool) {
        case ToolRoute: rt_.EndNewRoute(index_); break;
        case ToolBoundary: bd_.EndNewBoundary(index_); break;
        case ToolDividers:
            if (placing_) dv_.Cancel();
            break;
        case ToolRBL:
            if (placing_) vc_.Cancel();
            break;
        case ToolMoveBoundaryMark: bd_.EditingBoundary = 0; break;
        case ToolMoveWaypoint: wp_.Selected = 0; break;
        case ToolMoveRoutePoint: rt_.SelectedPoint = 0; break;
        case ToolVessel:
            // A drag broken off puts the vessel back where it was.
            if (dragging_) ctx_.host.PlaceVessel(dragFrom_);
            break;
        default: break;
    }
    placing_ = false;
    dragging_ = false;
    index_ = part_ = 0;
    if (tool != ToolPointer) {
        ctx_.host.SetStatus("");
        ctx_.chart.Redraw();
    }
}

void MouseTools::CreateRoute() {
    int16_t r = rt_.NewRoute();
    if (r) Begin(ToolRoute, r);
}

void MouseTools::CreateBoundary() {
    int16_t b = bd_.NewBoundary();
    if (b) Begin(ToolBoundary, b);
}

bool MouseTools::CanPlaceVessel() {
    int16_t m = ctx_.host.VesselMode();
    return m == 0 || m == 1 || m == 5;
}

bool MouseTools::LeaveFileDR() {
    if (ctx_.host.VesselMode() != 5) return true;
    return ctx_.dialogs.MsgBox("Do you wish to cancel FILE DR mode.", mb::YesNo | mb::Question,
                               ctx_.globals.ProductName) == mb::Yes;
}

void MouseTools::PlaceVessel() {
    if (!CanPlaceVessel() || !LeaveFileDR()) return;
    Begin(ToolVessel);
}

bool MouseTools::GrabVessel(ChartPoint screen) {
    int16_t m = ctx_.host.VesselMode();
    if ((m != 1 && m != 5) || !ctx_.chart.ChartOpen()) return false;
    NavPoint at;
    at.Wgs84 = ctx_.host.VesselPos();
    ctx_.chart.PrepareNavPoint(at);
    if (!PointNear(at, screen, kPointTolerance) || !LeaveFileDR()) return false;
    Begin(ToolVessel);
    dragging_ = true;
    dragFrom_ = at.Wgs84;
    pressedAt_ = screen;
    return true;
}

bool MouseTools::Release(ChartPoint screen) {
    if (Current() != ToolVessel || !dragging_) return false;
    // A click on the vessel that did not move it asks nothing.
    const bool moved = std::hypot(double(screen.x - pressedAt_.x), double(screen.y - pressedAt_.y)) > 2.0;
    LatLong pos;
    if (moved && ctx_.chart.ScreenToPosition(screen, pos) &&
        ConfirmMove(MoveKind::Vessel, ctx_.dialogs, ctx_.globals.ProductName)) {
        ctx_.host.PlaceVessel(pos);
        dragging_ = false;
    }
    End();  // still dragging: put back
    return true;
}

bool MouseTools::Click(ChartPoint screen) {
    int16_t tool = Current();
    if (tool == ToolPointer) return GrabVessel(screen);
    LatLong pos;
    if (!ctx_.chart.ScreenToPosition(screen, pos)) return false;
    switch (tool) {
        case ToolVessel:
            if (dragging_) return true;
            End();
            ctx_.host.PlaceVessel(pos);
            return true;
        case ToolNewWaypoint:
            End();
            wp_.AddWaypoint(AddBy::Mouse, &pos);
            return true;
        case ToolAppendWaypoint:
        case ToolRoute:
            rt_.AddRoutePoint(index_, pos);
            return true;
        case ToolBoundary:
            bd_.AddBoundaryMark(index_, pos);
            return true;
        case ToolDividers:
            if (!placing_) {
                dv_.Begin(pos);
                placing_ = true;
            } else {
                dv_.Finish(pos);
                placing_ = false;
                End();
            }
            return true;
        case ToolRBL:
            if (!placing_) {
                vc_.Begin(pos, ctx_.reg.IsTrue(Key::CoDist3));
                placing_ = true;
            } else {
                vc_.Finish(pos);
                placing_ = false;
                End();
            }
            return true;
        case ToolMoveRoutePoint: {
            int16_t r = index_, p = part_;
            index_ = part_ = 0;
            rt_.DropRoutePoint(r, p, pos);
            End();
            return true;
        }
        case ToolMoveWaypoint: {
            int16_t w = index_;
            wp_.DropWaypoint(w, pos);
            End();
            return true;
        }
        case ToolMoveBoundaryMark: {
            int16_t b = index_, m = part_;
            bd_.DropBoundaryMark(b, m, pos);
            End();
            return true;
        }
        case ToolMoveDivider:
            dv_.MoveTo(index_, pos);
            End();
            return true;
        case ToolMoveRBL:
            vc_.MoveTo(index_, pos);
            End();
            return true;
        default:
            return false;  // the chart view's and the vessel's own tools
    }
}

bool MouseTools::DoubleClick(ChartPoint screen) {
    int16_t tool = Current();
    if (tool == ToolRoute || tool == ToolAppendWaypoint || tool == ToolBoundary) {
        End();
        return true;
    }
    return Click(screen);
}

void MouseTools::Move(ChartPoint screen) {
    if (!placing_ && !dragging_) return;
    LatLong pos;
    if (!ctx_.chart.ScreenToPosition(screen, pos)) return;
    if (dragging_ && Current() == ToolVessel) {
        ctx_.host.PlaceVessel(pos);
        return;
    }
    if (Current() == ToolDividers) dv_.Follow(pos);
    else if (Current() == ToolRBL) vc_.Follow(pos);
}

bool MouseTools::PointNear(const NavPoint& p, ChartPoint screen, float tolerance) {
    for (size_t k = 0; k < p.InPlan.size() && k < p.Pixel.size(); ++k) {
        if (!p.InPlan[k]) continue;
        ChartPoint s = ctx_.chart.ToScreen(p.Pixel[k]);
        if (std::hypot(double(s.x - screen.x), double(s.y - screen.y)) <= tolerance) return true;
    }
    return false;
}

Hit MouseTools::HitTest(ChartPoint screen) {
    Hit h;
    ctx_.chart.ScreenToPosition(screen, h.Position);
    if (!ctx_.chart.ChartOpen()) return h;
    auto found = [&](HitKind k, size_t index, size_t part) {
        h.Kind = k;
        h.Index = int16_t(index);
        h.Part = int16_t(part);
        return h;
    };
    // Points, top layer first.
    for (size_t i = vc_.List.size(); i-- > 0;) {
        const Vector& v = vc_.List[i];
        if (v.State == 2 && (PointNear(v.From, screen, kPointTolerance) || PointNear(v.To, screen, kPointTolerance) ||
                             ctx_.chart.HitLeg(v.From, v.To, v.GreatCircle != 0, screen, kLineTolerance)))
            return found(HitKind::Vector, i + 1, 0);
    }
    for (size_t i = dv_.List.size(); i-- > 0;) {
        const Divider& d = dv_.List[i];
        if (d.State == 2 && (PointNear(d.A, screen, kPointTolerance) || PointNear(d.B, screen, kPointTolerance) ||
                             ctx_.chart.HitLeg(d.A, d.B, true, screen, kLineTolerance)))
            return found(HitKind::Divider, i + 1, 0);
    }
    if (bd_.IsOpen())
        for (size_t b = 0; b < bd_.List.size(); ++b) {
            const Boundary& x = bd_.List[b];
            if (!x.Used() || !x.Display) continue;
            for (size_t m = 0; m < x.Marks.size(); ++m)
                if (PointNear(x.Marks[m].Position, screen, kPointTolerance)) return found(HitKind::BoundaryMark, b + 1, m + 1);
        }
    if (rt_.IsOpen())
        for (size_t r = 0; r < rt_.List.size(); ++r) {
            const Route& x = rt_.List[r];
            if (!x.Used() || !x.Display) continue;
            for (size_t p = 0; p < x.Points.size(); ++p)
                if (PointNear(x.Points[p].Position, screen, kPointTolerance)) return found(HitKind::RoutePoint, r + 1, p + 1);
        }
    if (wp_.IsOpen())
        for (size_t i = 0; i < wp_.List.size(); ++i)
            if (wp_.List[i].Used() && PointNear(wp_.List[i].Position, screen, kPointTolerance))
                return found(HitKind::Waypoint, i + 1, 0);
    // Lines.
    if (bd_.IsOpen())
        for (size_t b = 0; b < bd_.List.size(); ++b) {
            const Boundary& x = bd_.List[b];
            size_t n = x.Marks.size();
            if (!x.Used() || !x.Display || n < 2) continue;
            for (size_t s = 0; s < (n == 2 ? 1 : n); ++s)
                if (ctx_.chart.HitLeg(x.Marks[s].Position, x.Marks[(s + 1) % n].Position, false, screen, kLineTolerance))
                    return found(HitKind::BoundarySide, b + 1, s + 1);
        }
    if (rt_.IsOpen())
        for (size_t r = 0; r < rt_.List.size(); ++r) {
            const Route& x = rt_.List[r];
            if (!x.Used() || !x.Display) continue;
            for (size_t l = 0; l + 1 < x.Points.size(); ++l)
                if (ctx_.chart.HitLeg(x.Points[l].Position, x.Points[l + 1].Position, x.Legs[l].IsGreatCircle != 0, screen,
                                      kLineTolerance))
                    return found(HitKind::RouteLeg, r + 1, l + 1);
        }
    return h;
}

std::vector<PopupEntry> MouseTools::Popup(const Hit& hit) {
    std::vector<PopupEntry> e;
    switch (hit.Kind) {
        case HitKind::Waypoint: {
            const Waypoint* w = wp_.At(hit.Index);
            bool active = wp_.ActiveIndex == hit.Index;
            e = {{"properties", "&Properties"},
                 {"activate", active ? "&De-activate" : "&Activate"},
                 {"move", "&Move"},
                 {"delete", "&Delete"},
                 {"addtoroute", "Add to &Route"},
                 {"attach", "Set A&ttachment..."}};
            if (w && !w->Attachment.empty()) e.push_back({"viewattachment", "&View Attachment"});
            break;
        }
        case HitKind::RoutePoint: {
            bool active = rt_.ActiveRoute == hit.Index && rt_.ActivePoint == hit.Part;
            e = {{"properties", "&Properties"},
                 {"activate", active ? "&De-activate" : "&Activate"},
                 {"move", "&Move"},
                 {"delete", "&Delete"}};
            break;
        }
        case HitKind::RouteLeg: {
            const Route* r = rt_.At(hit.Index);
            bool gc = r && hit.Part >= 1 && size_t(hit.Part) <= r->Legs.size() && r->Legs[size_t(hit.Part - 1)].IsGreatCircle;
            e = {{"properties", "&Properties"},
                 {"display", r && r->Display ? "&Hide" : "&Display"},
                 {"delete", "&Delete"},
                 {"reverse", "&Reverse"},
                 {"insert", "&Insert Route Point"},
                 {"append", "A&ppend Route Points"},
                 {"appendkeyboard", "Append Point by &Keyboard"},
                 {"appendgps", "Append Point by GP&S"},
                 {"activate", rt_.ActiveRoute == hit.Index ? "De-&activate Route" : "&Activate Route"},
                 {"legkind", gc ? "Make Leg Rhumb &Line" : "Make Leg &Great Circle"}};
            break;
        }
        case HitKind::BoundaryMark:
            e = {{"properties", "&Properties"}, {"move", "&Move"}, {"delete", "&Delete"}};
            break;
        case HitKind::BoundarySide: {
            const Boundary* b = bd_.At(hit.Index);
            e = {{"properties", "&Properties"},
                 {"display", b && b->Display ? "&Hide" : "&Display"},
                 {"delete", "&Delete"},
                 {"insert", "&Insert Boundary Mark"}};
            break;
        }
        case HitKind::Divider: e = {{"move", "&Move"}, {"delete", "&Delete"}}; break;
        case HitKind::Vector: {
            bool gc = hit.Index >= 1 && size_t(hit.Index) <= vc_.List.size() && vc_.List[size_t(hit.Index - 1)].GreatCircle;
            e = {{"move", "&Move"}, {"delete", "&Delete"}, {"kind", gc ? "&Rhumb Line" : "&Great Circle"}};
            break;
        }
        case HitKind::None:
            e = {{"newwaypoint", "New &Waypoint Here"}, {"dividers", "&Dividers"}, {"rbl", "&RBL"}};
            if (CanPlaceVessel()) e.push_back({"placevessel", "Place &Vessel Here"});
            break;
    }
    return e;
}

// A waypoint's commands. "Add to Route" appends the waypoint to the
// selected route, or to one picked from the list when none is selected; the
// new route point takes the waypoint's record but keeps its own number,
// position and variation.
void MouseTools::RunWaypointCommand(int16_t i, const std::string& c) {
    wp_.Selected = i;
    if (c == "properties") wp_.EditWaypoint(i);
    else if (c == "activate") {
        if (wp_.ActiveIndex == i) act_.DeactivateWaypoint(false);
        else act_.ActivateWaypoint(i);
    } else if (c == "move") {
        if (wp_.MoveWaypoint(i)) Begin(ToolMoveWaypoint, i);
    } else if (c == "delete") wp_.DeleteWaypoint(i);
    else if (c == "addtoroute") AddWaypointToRoute(i);
    else if (c == "attach") {
        if (Waypoint* w = wp_.At(i)) w->Attachment = PickAttachment(ctx_.host, w->Attachment);
    } else if (c == "viewattachment") {
        if (const Waypoint* w = wp_.At(i)) ShowAttachment(ctx_.host, ctx_.dialogs, ctx_.globals.ProductName, w->Attachment);
    }
}

void MouseTools::AddWaypointToRoute(int16_t i) {
    int16_t r = rt_.SelectedRoute;
    if (!rt_.At(r) || !rt_.At(r)->Used()) {
        std::vector<int16_t> slots;
        std::vector<std::string> items = rt_.CentreOnItems(&slots);
        int pick = ctx_.host.ListPick("Add to Route", items, "Select");
        r = (pick >= 0 && pick < int(slots.size())) ? slots[size_t(pick)] : 0;
    }
    const Waypoint* w = wp_.At(i);
    if (!r || !w) return;
    int16_t n = rt_.AddRoutePoint(r, w->Position.Wgs84);
    if (Waypoint* q = rt_.PointAt(r, n)) {
        NavPoint keep = q->Position;
        float var = q->MagVar;
        *q = *w;
        q->Number = n;
        q->Position = keep;
        q->MagVar = var;
    }
}

void MouseTools::RunPopup(const Hit& hit, const std::string& c) {
    const int16_t i = hit.Index, p = hit.Part;
    switch (hit.Kind) {
        case HitKind::Waypoint: RunWaypointCommand(i, c); break;
        case HitKind::RoutePoint:
            rt_.SelectedRoute = i;
            rt_.SelectedPoint = p;
            if (c == "properties") rt_.EditRoutePoint(i, p);
            else if (c == "activate") {
                if (rt_.ActiveRoute == i && rt_.ActivePoint == p) act_.DeactivateRoute(false);
                else act_.ActivateRoute(i, p);
            } else if (c == "move") {
                if (rt_.MoveRoutePoint(i, p)) Begin(ToolMoveRoutePoint, i, p);
            } else if (c == "delete") rt_.DeleteRoutePoint(i, p);
            break;
        case HitKind::RouteLeg:
            rt_.SelectedRoute = i;
            rt_.SelectedLeg = p;
            if (c == "properties") ctx_.host.ShowRouteProperties(i);
            else if (c == "display") rt_.DisplayRoute(i);
            else if (c == "delete") rt_.DeleteRoute(i);
            else if (c == "reverse") rt_.ReverseRoute(i);
            else if (c == "insert") rt_.InsertRoutePoint(i, p, hit.Position);
            else if (c == "append") Begin(ToolAppendWaypoint, i);
            else if (c == "appendkeyboard") rt_.AddRoutePointBy(i, AddBy::Keyboard);
            else if (c == "appendgps") rt_.AddRoutePointBy(i, AddBy::GPS);
            else if (c == "activate") {
                if (rt_.ActiveRoute == i) act_.DeactivateRoute(false);
                else act_.ActivateRoute(i, 0);
            } else if (c == "legkind") rt_.SwapLegKind(i, p);
            break;
        case HitKind::BoundaryMark:
            bd_.SelectedBoundary = i;
            bd_.SelectedMark = p;
            if (c == "properties") bd_.EditBoundaryMark(i, p);
            else if (c == "move") {
                if (bd_.MoveBoundaryMark(i, p)) Begin(ToolMoveBoundaryMark, i, p);
            } else if (c == "delete") bd_.DeleteBoundaryMark(i, p);
            break;
        case HitKind::BoundarySide:
            bd_.SelectedBoundary = i;
            bd_.SelectedSide = p;
            if (c == "properties") ctx_.host.ShowBoundaryProperties(i);
            else if (c == "display") bd_.DisplayBoundary(i);
            else if (c == "delete") bd_.DeleteBoundary(i);
            else if (c == "insert") bd_.InsertBoundaryMark(i, p, hit.Position);
            break;
        case HitKind::Divider:
            dv_.Selected = i;
            if (c == "move") Begin(ToolMoveDivider, i);
            else if (c == "delete") dv_.Delete(i);
            break;
        case HitKind::Vector:
            vc_.Selected = i;
            if (c == "move") Begin(ToolMoveRBL, i);
            else if (c == "delete") vc_.Delete(i);
            else if (c == "kind") vc_.ToggleKind(i);
            break;
        case HitKind::None:
            if (c == "newwaypoint") wp_.AddWaypoint(AddBy::Mouse, &hit.Position);
            else if (c == "dividers") StartDividers();
            else if (c == "rbl") StartRBL();
            else if (c == "placevessel" && CanPlaceVessel() && LeaveFileDR()) {
                End();
                ctx_.host.PlaceVessel(hit.Position);
            }
            break;
    }
}

}  // namespace ombra
