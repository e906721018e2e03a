// PointChainStore: a store whose records are chains of points in slots.
// A route is a chain of route points, a boundary a chain of marks; both
// keep their chains the way the waypoint store keeps waypoints:
//
//   - a chain lives in slot 1..Count() of List and keeps its number for
//     life; removing one that is not the last frees its slot (Number 0),
//     removing the last shrinks the array; a new chain takes the first
//     free slot, else a new one, at most 32,767;
//   - the points of a chain are Waypoint records held inside it, named
//     after their index ("R3.WP12", "B2.BM7") until the user types a name;
//     a generated name keeps up with its index when points are inserted or
//     deleted before it, a typed name stays as typed;
//   - a point is added at the end, inserted after another, deleted (the
//     last one takes its chain with it), moved (the cursor is put on it and
//     the next click drops it), edited through the waypoint dialog;
//   - a chain is hidden or shown, deleted after a confirmation, centred on
//     (its first point), listed with its points.
//
// What differs between routes and boundaries — words, the dialogs'
// captions, the legs a route keeps beside its points, the destination a
// route point can be — is given by ChainWords and the hooks below, which
// do nothing unless a store overrides them.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Val.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "navobjects/NavStore.h"
#include "navobjects/Waypoint.h"
#include "platform/api/Dialogs.h"

namespace ombra {

class Canvas;
class SymbolStrips;

// The words and captions of one kind of chain.
struct ChainWords {
    const char* chainTag;     // "R": the slot part of a generated point name
    const char* pointTag;     // ".WP": the index part
    const char* newNameTag;   // "R": a new chain's name is this and its slot, "R007"
    const char* namePrompt;   // "Enter name of new route."
    const char* slotCaption;  // "Route:  ": the input box title, before the slot
    const char* dialogLabel;  // "Route:": the waypoint dialog's database label
    const char* centreTitle;  // "Select Route To Centre On"
    Key labelKey;             // the setting that gives a new point's label mode
    DeleteKind deleteKind;    // the confirmation asked before a chain goes
    bool closed;              // the last point joins the first: a point can follow the last
};

// The name a point of chain `slot` gets at `index`: chainTag, slot,
// pointTag, index.
std::string ChainPointName(const ChainWords& words, int16_t slot, int16_t index);
// The first free slot (1-based) of records that know whether they are
// Used(), or 0 when every slot is used.
template <class Record>
int16_t FirstFreeSlot(const std::vector<Record>& records) {
    for (size_t i = 0; i < records.size(); ++i)
        if (!records[i].Used()) return int16_t(i + 1);
    return 0;
}
// The No, Name and Display cells and the position of one point row.
template <class Row>
void FillPointRow(Row& row, const Waypoint& p, size_t index, bool chartDatum) {
    row.No = Format(double(index + 1), "000");
    row.Name = p.Name;
    row.Display = (p.LabelMode >= 0 && p.LabelMode < 4) ? kWaypointLabelModes[p.LabelMode] : "";
    if (chartDatum) LatLongText(row.Latitude, row.Longitude, &p.Position.Local, 0, 1);
    else LatLongText(row.Latitude, row.Longitude, &p.Position.Wgs84, 1, 1);
}

// The chain type gives Used(), Number, Name, Display, a points vector
// through Nodes() and SyncCount() to store its point count.
template <class Chain>
class PointChainStore : public NavStore {
public:
    static constexpr size_t kMaxSlots = 32767;

    PointChainStore(NavContext& ctx, const StoreKind& kind, const char* initName, const char* openName,
                    const char* saveName, const ChainWords& words, const SymbolStrips& symbols)
        : NavStore(ctx, kind, initName, openName, saveName), symbols_(symbols), words_(words) {}

    std::vector<Chain> List;

    int16_t Count() const { return int16_t(List.size()); }
    Chain* At(int16_t slot) { return (slot >= 1 && slot <= Count()) ? &List[size_t(slot - 1)] : nullptr; }
    const Chain* At(int16_t slot) const {
        return (slot >= 1 && slot <= Count()) ? &List[size_t(slot - 1)] : nullptr;
    }
    Waypoint* NodeAt(int16_t slot, int16_t point) {
        Chain* c = At(slot);
        if (!c || point < 1 || point > int16_t(c->Nodes().size())) return nullptr;
        return &c->Nodes()[size_t(point - 1)];
    }

    // Renews every used chain's points for the chart in view.
    void PrepareNavPoints() {
        for (Chain& c : List)
            if (c.Used())
                for (Waypoint& p : c.Nodes()) ctx_.chart.PrepareNavPoint(p.Position);
    }
    // Rows "0003 - Name" of the chains that have points.
    std::vector<std::string> CentreOnItems(std::vector<int16_t>* slotNos = nullptr) const {
        std::vector<std::string> items;
        for (size_t i = 0; i < List.size(); ++i) {
            if (!List[i].Used() || List[i].Nodes().empty()) continue;
            items.push_back(Format(List[i].Number, "0000") + " - " + List[i].Name);
            if (slotNos) slotNos->push_back(int16_t(i + 1));
        }
        return items;
    }

protected:
    // The selection the menus act on: a chain, one of its points, one of its
    // legs or sides. Stores show them under their own names.
    int16_t selChain_ = 0, selPoint_ = 0, selPart_ = 0;

    // Hooks. A point was placed at `at` (0-based; appended when it is the
    // last); a point was taken from `at`; the point at `at` changed place.
    virtual void PointInserted(int16_t, Chain&, size_t, bool) {}
    virtual void PointErased(int16_t, Chain&, size_t) {}
    virtual void PointMoved(Chain&, size_t) {}
    // May the point be deleted / moved now? A refusal tells the user why.
    virtual bool MayDeletePoint(int16_t, int16_t) { return true; }
    virtual bool MayMovePoint(int16_t, int16_t) { return true; }
    // A chain is about to be deleted (by the user, or by losing its last
    // point); a slot was freed or dropped, whatever the reason.
    virtual void ChainGoing(int16_t) {}
    virtual void SlotFreed(int16_t) {}
    // A point was dropped where the move ended.
    virtual void PointDropped(int16_t) {}
    // The edit dialog's caption for a point, and what follows an edit.
    virtual std::string EditCaption(int16_t point) const = 0;
    virtual void PointEdited(int16_t, int16_t, const Waypoint&) {}

    void ClearRecords() override {
        List.clear();
        selChain_ = selPoint_ = selPart_ = 0;
    }
    int RecordCount() const override {
        int n = 0;
        for (const Chain& c : List) n += c.Used() ? 1 : 0;
        return n;
    }
    void AfterLoad() override {
        for (Chain& c : List) {
            for (Waypoint& p : c.Nodes()) p.MagVar = ctx_.host.Variation(p.Position.Wgs84);
            Loaded(c);
        }
        PrepareNavPoints();
    }
    // After a read, for each chain once its points have their variation.
    virtual void Loaded(Chain&) {}

    void Changed() {
        ctx_.host.ListsChanged();
        ctx_.chart.Redraw();
    }

    Waypoint NewNode(int16_t slot, int16_t index) const {
        Waypoint wp;
        wp.Name = ChainPointName(words_, slot, index);
        wp.Number = index;
        wp.Icon = 0;
        wp.LabelMode = int16_t(ctx_.reg.GetNumber(words_.labelKey));
        wp.AlarmRange = float(ctx_.reg.GetNumber(Key::WaypointAlarmRange));
        wp.DatumFlag = 1;
        return wp;
    }

    void Place(Waypoint& p, const LatLong& pos) {
        p.Position.Wgs84 = pos;
        p.MagVar = ctx_.host.Variation(pos);
        ctx_.chart.PrepareNavPoint(p.Position);
    }

    // A new chain in the first free slot, named through the input box, its
    // fields as a default Chain with Display on; 0 when none was made.
    int16_t NewChain() {
        if (!EnsureOpen()) return 0;
        int16_t slot = FirstFreeSlot(List);
        bool appended = false;
        if (slot == 0) {
            if (List.size() >= kMaxSlots) return 0;
            List.emplace_back();
            slot = Count();
            appended = true;
        }
        std::string name = words_.newNameTag + Format(slot, "000");
        if (!ctx_.dialogs.InputBox(words_.namePrompt, words_.slotCaption + Format(slot, "000"), name) ||
            Trim(name).empty()) {
            if (appended) List.pop_back();
            return 0;
        }
        Chain& c = List[size_t(slot - 1)];
        c = Chain{};
        c.Name = name;
        c.Number = slot;
        c.Display = -1;
        selChain_ = slot;
        ctx_.host.ListsChanged();
        return slot;
    }

    // Frees the slot (drops it when it is the last) without asking.
    void RemoveChain(int16_t slot) {
        if (!At(slot)) return;
        if (slot < Count()) List[size_t(slot - 1)] = Chain{};
        else List.pop_back();
        if (selChain_ == slot) selChain_ = selPoint_ = selPart_ = 0;
        SlotFreed(slot);
    }

    // The point after `after` (0 for the first place), at `pos`; its index, or 0.
    int16_t InsertNode(int16_t slot, size_t at, const LatLong& pos) {
        Chain* c = At(slot);
        if (!c) return 0;
        std::vector<Waypoint>& nodes = c->Nodes();
        Waypoint wp = NewNode(slot, int16_t(at + 1));
        Place(wp, pos);
        bool appended = at == nodes.size();
        nodes.insert(nodes.begin() + long(at), std::move(wp));
        Renumber(*c, at + 1, 1);
        PointInserted(slot, *c, at, appended);
        c->SyncCount();
        Changed();
        return int16_t(at + 1);
    }

    int16_t AppendNode(int16_t slot, const LatLong& pos) {
        Chain* c = At(slot);
        if (!c || !c->Used() || c->Nodes().size() >= kMaxSlots) return 0;
        return InsertNode(slot, c->Nodes().size(), pos);
    }

    // Into leg or side `part` (between points part and part + 1; after the
    // last for the closing side of a closed chain).
    int16_t InsertIntoPart(int16_t slot, int16_t part, const LatLong& pos) {
        Chain* c = At(slot);
        if (!c || !c->Used()) return 0;
        int16_t n = int16_t(c->Nodes().size());
        int16_t last = words_.closed ? n : int16_t(n - 1);
        if (part < 1 || part > last || c->Nodes().size() >= kMaxSlots) return 0;
        return InsertNode(slot, size_t(part), pos);
    }

    bool DeleteNode(int16_t slot, int16_t point) {
        Chain* c = At(slot);
        if (!c || !NodeAt(slot, point)) return false;
        if (!MayDeletePoint(slot, point)) return false;
        size_t k = size_t(point - 1);
        c->Nodes().erase(c->Nodes().begin() + long(k));
        Renumber(*c, k, -1);
        PointErased(slot, *c, k);
        c->SyncCount();
        if (selChain_ == slot) selPoint_ = 0;
        if (c->Nodes().empty()) {
            ChainGoing(slot);
            RemoveChain(slot);
        }
        Changed();
        return true;
    }

    // The cursor is put on the point; the next click drops it.
    bool MoveNode(int16_t slot, int16_t point) {
        Waypoint* p = NodeAt(slot, point);
        if (!p) return false;
        if (!MayMovePoint(slot, point)) {
            selPoint_ = 0;
            return false;
        }
        selChain_ = slot;
        selPoint_ = point;
        int plan = p->Position.FirstPlanShown();
        if (plan >= 0) ctx_.host.SetCursorAt(ctx_.chart.ToScreen(p->Position.Pixel[size_t(plan)]));
        return true;
    }

    void DropNode(int16_t slot, int16_t point, const LatLong& pos) {
        Waypoint* p = NodeAt(slot, point);
        if (!p) return;
        Place(*p, pos);
        PointMoved(*At(slot), size_t(point - 1));
        selPoint_ = 0;
        PointDropped(slot);
        Changed();
    }

    bool EditNode(int16_t slot, int16_t point) {
        Chain* c = At(slot);
        Waypoint* p = NodeAt(slot, point);
        if (!c || !p) return false;
        WaypointDialogRequest req{EditCaption(point), words_.dialogLabel, c->Name, *p};
        if (!ctx_.host.WaypointDialog(req)) return false;
        p = NodeAt(slot, point);  // the dialog may have run a tick
        if (!p) return false;
        Waypoint rec = req.Record;
        rec.Number = p->Number;
        bool moved = !(rec.Position.Wgs84 == p->Position.Wgs84);
        if (moved) {
            rec.MagVar = ctx_.host.Variation(rec.Position.Wgs84);
            ctx_.chart.PrepareNavPoint(rec.Position);
        }
        *p = std::move(rec);
        if (moved) PointMoved(*c, size_t(point - 1));
        PointEdited(slot, point, *p);
        Changed();
        return true;
    }

    // After the confirmation.
    bool DeleteChain(int16_t slot) {
        Chain* c = At(slot);
        if (!c || !c->Used()) return false;
        if (!ConfirmDelete(words_.deleteKind, ctx_.dialogs, ctx_.globals.ProductName)) return false;
        ChainGoing(slot);
        RemoveChain(slot);
        Changed();
        return true;
    }

    // "&Hide" / "&Display".
    void ToggleDisplay(int16_t slot) {
        Chain* c = At(slot);
        if (!c || !c->Used()) return;
        c->Display = c->Display ? 0 : -1;
        Changed();
    }

    void CentreOnChain() {
        std::vector<int16_t> slotNos;
        std::vector<std::string> items = CentreOnItems(&slotNos);
        int pick = ctx_.host.ListPick(words_.centreTitle, items, "Select");
        if (pick < 0 || pick >= int(slotNos.size())) return;
        ctx_.chart.CentreOn(List[size_t(slotNos[size_t(pick)] - 1)].Nodes().front().Position.Wgs84);
    }

    template <class Row>
    std::vector<Row> NodeRows(int16_t slot, bool chartDatum) const {
        std::vector<Row> rows;
        const Chain* c = At(slot);
        if (!c) return rows;
        const std::vector<Waypoint>& nodes = c->Nodes();
        for (size_t i = 0; i < nodes.size(); ++i) {
            Row row;
            // "Display all coordinates in WGS-84 Datum" overrides the list's choice.
            FillPointRow(row, nodes[i], i, chartDatum && !ctx_.globals.ForceWGS84Datum);
            rows.push_back(std::move(row));
        }
        return rows;
    }

    const SymbolStrips& symbols_;

private:
    // Points from `from` on moved by `shift`: their numbers follow their
    // places, and their names too while generated.
    void Renumber(Chain& c, size_t from, int shift) {
        std::vector<Waypoint>& nodes = c.Nodes();
        for (size_t j = from; j < nodes.size(); ++j) {
            int16_t now = int16_t(j + 1), was = int16_t(int(j) + 1 - shift);
            Waypoint& p = nodes[j];
            if (p.Name == ChainPointName(words_, c.Number, was)) p.Name = ChainPointName(words_, c.Number, now);
            p.Number = now;
        }
    }

    const ChainWords words_;
};

}  // namespace ombra
