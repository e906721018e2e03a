#include "navobjects/Waypoints.h"

#include <cmath>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Val.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/PointChain.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {
constexpr size_t kMaxSlots = 32767;
}

std::string WaypointFileText(const std::string& versionLine, const std::string& dbName,
                             const std::vector<Waypoint>& slots) {
    TextRecordWriter w;
    w.Str(versionLine).EndLine();
    w.Str(dbName).EndLine();
    for (const Waypoint& wp : slots) {
        if (wp.Used()) {
            WriteWaypointFields(w, wp);
        } else {
            Waypoint blank;
            WriteWaypointFields(w, blank);
        }
        w.EndLine();
    }
    return w.Text();
}

ReadOutcome ReadWaypointFile(const std::string& text, std::string& name, std::vector<Waypoint>& slots) {
    slots.clear();
    return ReadStoreFile(text, name, "waypoints", [&slots](TextRecordReader& r, StoreForm, int* at) {
        Waypoint wp;
        RecordLine line(r, 11, at);
        ReadWaypointFields(line, wp);
        slots.push_back(std::move(wp));
    });
}

Waypoints::Waypoints(NavContext& ctx, const SymbolStrips& symbols, ActivePointWatch* watch)
    : NavStore(ctx, kWaypointStore, "InitWayPointData", "OpenWaypointDB", "SaveWaypointDB"),
      symbols_(symbols),
      watch_(watch) {}

Waypoint* Waypoints::At(int16_t slot) {
    return (slot >= 1 && slot <= Count()) ? &List[size_t(slot - 1)] : nullptr;
}
const Waypoint* Waypoints::At(int16_t slot) const {
    return (slot >= 1 && slot <= Count()) ? &List[size_t(slot - 1)] : nullptr;
}

void Waypoints::ClearRecords() {
    // The destination goes with the database that shows it: the vessel
    // never steers to a waypoint that is no longer on the chart.
    if (ActiveIndex && !ActiveIsRoutePoint && watch_) watch_->ActiveWaypointDeleted(true);
    List.clear();
    Selected = 0;
    NewIndex = 0;
    ActiveIndex = 0;
    ActiveIsRoutePoint = false;
}

std::string Waypoints::Serialise() { return WaypointFileText(HeaderVersion(), CurrentName, List); }

ReadOutcome Waypoints::Parse(const std::string& text) { return ReadWaypointFile(text, CurrentName, List); }

int Waypoints::RecordCount() const {
    int n = 0;
    for (const Waypoint& wp : List) n += wp.Used() ? 1 : 0;
    return n;
}

void Waypoints::AfterLoad() {
    for (Waypoint& wp : List) {
        if (!wp.Used()) continue;
        wp.MagVar = ctx_.host.Variation(wp.Position.Wgs84);
    }
    PrepareNavPoints();
}

void Waypoints::PrepareNavPoints() {
    for (Waypoint& wp : List)
        if (wp.Used()) ctx_.chart.PrepareNavPoint(wp.Position);
}

void Waypoints::SetPosition(Waypoint& wp, const LatLong& pos) {
    wp.Position.Wgs84 = pos;
    wp.MagVar = ctx_.host.Variation(pos);
    ctx_.chart.PrepareNavPoint(wp.Position);
}

Waypoint Waypoints::NewRecord(int16_t slot) const {
    Waypoint wp;
    wp.Name = "WP" + Format(slot, "000");
    wp.Number = slot;
    wp.Icon = 0;
    wp.LabelMode = int16_t(ctx_.reg.GetNumber(Key::DisplayTypeWaypoint));
    wp.AlarmRange = float(ctx_.reg.GetNumber(Key::WaypointAlarmRange));
    wp.DatumFlag = 1;
    return wp;
}

int16_t Waypoints::AddWaypoint(AddBy how, const LatLong* clicked) {
    if (!EnsureOpen()) return 0;
    int16_t slot = FirstFreeSlot(List);
    bool appended = false;
    if (slot == 0) {
        if (List.size() >= kMaxSlots) {
            ctx_.dialogs.MsgBox("The waypoint database is full: it holds 32,767 waypoints.", mb::Exclamation,
                                ctx_.globals.ProductName);
            return 0;
        }
        List.emplace_back();
        slot = Count();
        appended = true;
    }
    NewIndex = slot;
    Waypoint rec = NewRecord(slot);
    if (how == AddBy::Mouse) {
        if (clicked) rec.Position.Wgs84 = *clicked;
    } else {
        rec.Position.Wgs84 = how == AddBy::GPS ? ctx_.host.VesselPos() : KeyboardStart(ctx_);
        WaypointDialogRequest req{"New Waypoint", "Database:", CurrentName, rec};
        if (!ctx_.host.WaypointDialog(req)) {
            if (appended) List.pop_back();
            else List[size_t(slot - 1)] = Waypoint{};
            NewIndex = 0;
            return 0;
        }
        rec = req.Record;
        rec.Number = slot;
    }
    SetPosition(rec, rec.Position.Wgs84);
    List[size_t(slot - 1)] = std::move(rec);
    NewIndex = 0;
    ctx_.host.ListsChanged();
    ctx_.chart.Redraw();
    return slot;
}

void Waypoints::RemoveSlot(int16_t slot) {
    if (!At(slot)) return;
    if (slot < Count()) List[size_t(slot - 1)] = Waypoint{};
    else List.pop_back();
    if (Selected == slot) Selected = 0;
}

bool Waypoints::EditWaypoint(int16_t slot) {
    Waypoint* wp = At(slot);
    if (!wp || !wp->Used()) return false;
    WaypointDialogRequest req{"Edit Way Point", "Database:", CurrentName, *wp};
    if (!ctx_.host.WaypointDialog(req)) return false;
    wp = At(slot);  // the dialog may have run a tick; the slot stays
    if (!wp) return false;
    Waypoint rec = req.Record;
    rec.Number = wp->Number;
    SetPosition(rec, rec.Position.Wgs84);
    *wp = std::move(rec);
    if (ActiveIndex == slot && !ActiveIsRoutePoint && watch_) watch_->ActiveRangeChanged(std::fabs(wp->AlarmRange));
    ctx_.host.ListsChanged();
    ctx_.chart.Redraw();
    return true;
}

bool Waypoints::DeleteWaypoint(int16_t slot) {
    const Waypoint* wp = At(slot);
    if (!wp || !wp->Used()) return false;
    if (!ConfirmDelete(DeleteKind::Waypoint, ctx_.dialogs, ctx_.globals.ProductName)) return false;
    if (ActiveIndex == slot && !ActiveIsRoutePoint && watch_) watch_->ActiveWaypointDeleted(true);
    RemoveSlot(slot);
    ctx_.chart.Redraw();
    ctx_.host.ListsChanged();
    return true;
}

bool Waypoints::MoveWaypoint(int16_t slot) {
    Waypoint* wp = At(slot);
    if (!wp || !wp->Used()) return false;
    if (ActiveIndex == slot && !ActiveIsRoutePoint) {
        ctx_.dialogs.MsgBox("An active waypoint cannot be moved.\nYou must de-activate it first.", mb::Exclamation,
                            ctx_.globals.ProductName);
        Selected = 0;
        return false;
    }
    Selected = slot;
    const NavPoint& np = wp->Position;
    for (size_t p = 0; p < np.InPlan.size() && p < np.Pixel.size(); ++p)
        if (np.InPlan[p]) {
            ctx_.host.SetCursorAt(ctx_.chart.ToScreen(np.Pixel[p]));
            break;
        }
    return true;
}

void Waypoints::DropWaypoint(int16_t slot, const LatLong& pos) {
    Waypoint* wp = At(slot);
    if (!wp || !wp->Used()) return;
    SetPosition(*wp, pos);
    Selected = 0;
    ctx_.host.ListsChanged();
    ctx_.chart.Redraw();
}

void Waypoints::DrawWayPoints(Canvas& c) {
    ctx_.errors.Guard("DrawWayPoints", [&] {
        if (!ctx_.chart.ChartOpen() || !IsOpen() || List.empty()) return;
        for (size_t i = 0; i < List.size(); ++i) {
            const Waypoint& wp = List[i];
            if (!wp.Used()) continue;
            int16_t slot = int16_t(i + 1);
            PointStyle style;
            style.active = ActiveIndex == slot && !ActiveIsRoutePoint;
            DrawPoint(c, ctx_.chart, symbols_, wp, style);
        }
    });
}

std::vector<WaypointRow> Waypoints::Rows(bool chartDatum) const {
    std::vector<WaypointRow> rows;
    for (size_t i = 0; i < List.size(); ++i) {
        const Waypoint& wp = List[i];
        if (!wp.Used()) continue;
        WaypointRow r;
        r.Slot = int16_t(i + 1);
        r.No = Format(wp.Number, "000");
        r.Name = wp.Name;
        // "Display all coordinates in WGS-84 Datum" overrides the list's choice.
        if (chartDatum && !ctx_.globals.ForceWGS84Datum) LatLongText(r.Latitude, r.Longitude, &wp.Position.Local, 0, 1);
        else LatLongText(r.Latitude, r.Longitude, &wp.Position.Wgs84, 1, 1);
        rows.push_back(std::move(r));
    }
    return rows;
}

std::vector<std::string> Waypoints::CentreOnItems(std::vector<int16_t>* slots) const {
    std::vector<std::string> items;
    for (size_t i = 0; i < List.size(); ++i) {
        if (!List[i].Used()) continue;
        items.push_back(Format(List[i].Number, "0000") + " - " + List[i].Name);
        if (slots) slots->push_back(int16_t(i + 1));
    }
    return items;
}

void Waypoints::CentreOnWaypoint() {
    std::vector<int16_t> slots;
    std::vector<std::string> items = CentreOnItems(&slots);
    int pick = ctx_.host.ListPick("Select Waypoint To Centre On", items, "Select");
    if (pick < 0 || pick >= int(slots.size())) return;
    ctx_.chart.CentreOn(List[size_t(slots[size_t(pick)] - 1)].Position.Wgs84);
}

}  // namespace ombra
