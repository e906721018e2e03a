#include "navobjects/Boundaries.h"

#include <cmath>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Units.h"
#include "core/Val.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "navobjects/NavHost.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {
constexpr size_t kMaxSlots = 32767;
}

Boundaries::Boundaries(NavContext& ctx, const SymbolStrips& symbols)
    : NavStore(ctx, kBoundaryStore, "InitBoundaries", "OpenBoundaryDB", "SaveBoundaryDB"), symbols_(symbols) {}

Boundary* Boundaries::At(int16_t slot) { return (slot >= 1 && slot <= Count()) ? &List[size_t(slot - 1)] : nullptr; }

Waypoint* Boundaries::MarkAt(int16_t boundary, int16_t mark) {
    Boundary* b = At(boundary);
    if (!b || mark < 1 || mark > int16_t(b->Marks.size())) return nullptr;
    return &b->Marks[size_t(mark - 1)];
}

std::string Boundaries::MarkName(int16_t boundary, int16_t index) {
    return "B" + Format(boundary, "0") + ".BM" + Format(index, "0");
}

void Boundaries::ClearRecords() {
    List.clear();
    SelectedBoundary = SelectedMark = SelectedSide = 0;
    EditingBoundary = 0;
}

std::string Boundaries::Serialise() { return BoundaryFileText(HeaderVersion(), CurrentName, List); }
ReadOutcome Boundaries::Parse(const std::string& text) { return ReadBoundaryFile(text, CurrentName, List); }

int Boundaries::RecordCount() const {
    int n = 0;
    for (const Boundary& b : List) n += b.Used() ? 1 : 0;
    return n;
}

void Boundaries::AfterLoad() {
    for (Boundary& b : List)
        for (Waypoint& m : b.Marks) m.MagVar = ctx_.host.Variation(m.Position.Wgs84);
    PrepareNavPoints();
}

void Boundaries::PrepareNavPoints() {
    for (Boundary& b : List)
        if (b.Used())
            for (Waypoint& m : b.Marks) ctx_.chart.PrepareNavPoint(m.Position);
}

void Boundaries::Changed() {
    ctx_.host.ListsChanged();
    ctx_.chart.Redraw();
}

Waypoint Boundaries::NewMark(int16_t boundary, int16_t index) const {
    Waypoint wp;
    wp.Name = MarkName(boundary, index);
    wp.Number = index;
    wp.LabelMode = int16_t(Val(ctx_.reg.GetSetting(Key::DisplayTypeBoundary)));
    wp.AlarmRange = float(Val(ctx_.reg.GetSetting(Key::WaypointAlarmRange)));
    wp.DatumFlag = 1;
    return wp;
}

int16_t Boundaries::NewBoundary() {
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
    std::string name = "BA" + Format(slot, "000");
    if (!ctx_.dialogs.InputBox("Enter name of new boundary.", "Boundary:  " + Format(slot, "000"), name) ||
        Trim(name).empty()) {
        if (appended) List.pop_back();
        return 0;
    }
    Boundary& b = List[size_t(slot - 1)];
    b = Boundary{};
    b.Name = name;
    b.Number = slot;
    b.Display = -1;
    b.Filled = 0;
    b.AlarmOnExit = 0;
    b.Colour = 0;
    b.Pattern = 0;
    SelectedBoundary = slot;
    EditingBoundary = slot;
    ctx_.host.ListsChanged();
    return slot;
}

void Boundaries::EndNewBoundary(int16_t boundary) {
    if (EditingBoundary == boundary) EditingBoundary = 0;
    Boundary* b = At(boundary);
    if (b && b->Used() && b->Marks.empty()) RemoveBoundary(boundary);
    Changed();
}

void Boundaries::RemoveBoundary(int16_t boundary) {
    if (!At(boundary)) return;
    if (boundary < Count()) List[size_t(boundary - 1)] = Boundary{};
    else List.pop_back();
    if (SelectedBoundary == boundary) SelectedBoundary = SelectedMark = SelectedSide = 0;
    if (EditingBoundary == boundary) EditingBoundary = 0;
}

int16_t Boundaries::AddBoundaryMark(int16_t boundary, const LatLong& pos) {
    Boundary* b = At(boundary);
    if (!b || !b->Used() || b->Marks.size() >= kMaxSlots) return 0;
    int16_t index = int16_t(b->Marks.size() + 1);
    Waypoint m = NewMark(boundary, index);
    m.Position.Wgs84 = pos;
    m.MagVar = ctx_.host.Variation(pos);
    ctx_.chart.PrepareNavPoint(m.Position);
    b->Marks.push_back(std::move(m));
    b->MarkCount = int16_t(b->Marks.size());
    Changed();
    return index;
}

void Boundaries::Renumber(Boundary& b, size_t from, int shift) {
    for (size_t j = from; j < b.Marks.size(); ++j) {
        int16_t now = int16_t(j + 1), was = int16_t(int(j) + 1 - shift);
        Waypoint& m = b.Marks[j];
        if (m.Name == MarkName(b.Number, was)) m.Name = MarkName(b.Number, now);
        m.Number = now;
    }
}

int16_t Boundaries::InsertBoundaryMark(int16_t boundary, int16_t side, const LatLong& pos) {
    Boundary* b = At(boundary);
    if (!b || !b->Used() || side < 1 || side > int16_t(b->Marks.size()) || b->Marks.size() >= kMaxSlots) return 0;
    size_t at = size_t(side);  // after mark `side`; the closing side appends
    Waypoint m = NewMark(boundary, int16_t(at + 1));
    m.Position.Wgs84 = pos;
    m.MagVar = ctx_.host.Variation(pos);
    ctx_.chart.PrepareNavPoint(m.Position);
    b->Marks.insert(b->Marks.begin() + long(at), std::move(m));
    Renumber(*b, at + 1, 1);
    b->MarkCount = int16_t(b->Marks.size());
    Changed();
    return int16_t(at + 1);
}

bool Boundaries::DeleteBoundaryMark(int16_t boundary, int16_t mark) {
    Boundary* b = At(boundary);
    if (!b || !MarkAt(boundary, mark)) return false;
    if (!ConfirmDelete(DeleteKind::Other, ctx_.dialogs, ctx_.globals.ProductName)) return false;
    size_t k = size_t(mark - 1);
    b->Marks.erase(b->Marks.begin() + long(k));
    Renumber(*b, k, -1);
    b->MarkCount = int16_t(b->Marks.size());
    if (SelectedBoundary == boundary) SelectedMark = 0;
    if (b->Marks.empty()) RemoveBoundary(boundary);
    Changed();
    return true;
}

bool Boundaries::MoveBoundaryMark(int16_t boundary, int16_t mark) {
    Waypoint* m = MarkAt(boundary, mark);
    if (!m) return false;
    SelectedBoundary = boundary;
    SelectedMark = mark;
    EditingBoundary = boundary;
    int plan = m->Position.FirstPlanShown();
    if (plan >= 0) ctx_.host.SetCursorAt(ctx_.chart.ToScreen(m->Position.Pixel[size_t(plan)]));
    return true;
}

void Boundaries::DropBoundaryMark(int16_t boundary, int16_t mark, const LatLong& pos) {
    Waypoint* m = MarkAt(boundary, mark);
    if (!m) return;
    m->Position.Wgs84 = pos;
    m->MagVar = ctx_.host.Variation(pos);
    ctx_.chart.PrepareNavPoint(m->Position);
    SelectedMark = 0;
    if (EditingBoundary == boundary) EditingBoundary = 0;
    Changed();
}

bool Boundaries::EditBoundaryMark(int16_t boundary, int16_t mark) {
    Boundary* b = At(boundary);
    Waypoint* m = MarkAt(boundary, mark);
    if (!b || !m) return false;
    WaypointDialogRequest req{"Boundary Mark " + Format(mark, "0"), "Boundary:", b->Name, *m};
    if (!ctx_.host.WaypointDialog(req)) return false;
    m = MarkAt(boundary, mark);
    if (!m) return false;
    Waypoint rec = req.Record;
    rec.Number = m->Number;
    if (!(rec.Position.Wgs84 == m->Position.Wgs84)) {
        rec.MagVar = ctx_.host.Variation(rec.Position.Wgs84);
        ctx_.chart.PrepareNavPoint(rec.Position);
    }
    *m = std::move(rec);
    Changed();
    return true;
}

bool Boundaries::DeleteBoundary(int16_t boundary) {
    Boundary* b = At(boundary);
    if (!b || !b->Used()) return false;
    if (!ConfirmDelete(DeleteKind::Other, ctx_.dialogs, ctx_.globals.ProductName)) return false;
    RemoveBoundary(boundary);
    Changed();
    return true;
}

void Boundaries::DisplayBoundary(int16_t boundary) {
    Boundary* b = At(boundary);
    if (!b || !b->Used()) return;
    b->Display = b->Display ? 0 : -1;
    Changed();
}

void Boundaries::AcknowledgeBoundaryAlarm(const std::string& number, const std::string& caption) {
    if (!IsNumeric(number)) return;
    Boundary* b = At(int16_t(Val(number)));
    if (!b) return;
    if (caption == "Vessel Entry") b->VesselEntryLatch = -1;
    else if (caption == "Vessel Exit") b->VesselExitLatch = -1;
    else if (caption == "Predictor Entry") b->PredictorEntryLatch = -1;
    else if (caption == "Predictor Exit") b->PredictorExitLatch = -1;
}

void Boundaries::DrawBoundaries(Canvas& c) {
    ctx_.errors.Guard("DrawBoundaries", [&] {
        if (!ctx_.chart.ChartOpen() || !IsOpen()) return;
        int16_t panels = ctx_.chart.PanelCount();
        for (size_t bi = 0; bi < List.size(); ++bi) {
            const Boundary& b = List[bi];
            if (!b.Used() || !b.Display) continue;
            Rgb colour = TableColour(b.Colour);
            c.SetPen({colour, 1, PenStyle::Solid});
            c.SetBrush({colour, BrushStyle::Null});
            size_t n = b.Marks.size();
            if (n >= 2) {
                size_t sides = n == 2 ? 1 : n;
                for (size_t i = 0; i < sides; ++i)
                    ctx_.chart.DrawRhumbLine(c, b.Marks[i].Position, b.Marks[(i + 1) % n].Position, false,
                                             ctx_.units.AngleUnit, b.Marks[i].MagVar);
            }
            if (b.Filled && n >= 3) {
                for (int16_t p = 0; p < panels; ++p) {
                    std::vector<ChartPoint> ring;
                    for (const Waypoint& m : b.Marks) {
                        if (!m.Position.In(size_t(p)) || size_t(p) >= m.Position.Pixel.size()) break;
                        ring.push_back(ctx_.chart.ToScreen(m.Position.Pixel[size_t(p)]));
                    }
                    if (ring.size() != n) continue;
                    c.SetPen({colour, 1, PenStyle::Solid});
                    c.SetBrush({colour, HatchStyle(b.Pattern)});
                    c.Polygon(ring);
                }
                c.SetBrush({colour, BrushStyle::Null});
            }
            for (size_t i = 0; i < n; ++i) {
                PointStyle style;
                style.selected = EditingBoundary == int16_t(bi + 1) && SelectedMark == int16_t(i + 1);
                DrawPoint(c, ctx_.chart, symbols_, b.Marks[i], style);
            }
        }
    });
}

std::vector<std::string> Boundaries::CentreOnItems(std::vector<int16_t>* slots) const {
    std::vector<std::string> items;
    for (size_t i = 0; i < List.size(); ++i) {
        if (!List[i].Used() || List[i].Marks.empty()) continue;
        items.push_back(Format(List[i].Number, "0000") + " - " + List[i].Name);
        if (slots) slots->push_back(int16_t(i + 1));
    }
    return items;
}

void Boundaries::CentreOnBoundary() {
    std::vector<int16_t> slots;
    std::vector<std::string> items = CentreOnItems(&slots);
    int pick = ctx_.host.ListPick("Select Boundary To Centre On", items, "Select");
    if (pick < 0 || pick >= int(slots.size())) return;
    ctx_.chart.CentreOn(List[size_t(slots[size_t(pick)] - 1)].Marks.front().Position.Wgs84);
}

std::vector<BoundaryRow> Boundaries::Rows() const {
    std::vector<BoundaryRow> rows;
    for (size_t i = 0; i < List.size(); ++i) {
        const Boundary& b = List[i];
        if (!b.Used()) continue;
        rows.push_back({int16_t(i + 1), Format(b.Number, "000"), b.Name, b.Display ? "Yes" : "No",
                        b.AlarmOnExit == 1 ? "Exit" : "Entry"});
    }
    return rows;
}

std::vector<BoundaryMarkRow> Boundaries::MarkRows(int16_t boundary, bool chartDatum) const {
    std::vector<BoundaryMarkRow> rows;
    if (boundary < 1 || boundary > Count()) return rows;
    const Boundary& b = List[size_t(boundary - 1)];
    for (size_t i = 0; i < b.Marks.size(); ++i) {
        const Waypoint& m = b.Marks[i];
        BoundaryMarkRow row;
        row.No = Format(double(i + 1), "000");
        row.Name = m.Name;
        row.Display = (m.LabelMode >= 0 && m.LabelMode < 4) ? kWaypointLabelModes[m.LabelMode] : "";
        if (chartDatum) LatLongText(row.Latitude, row.Longitude, &m.Position.Local, 0, 1);
        else LatLongText(row.Latitude, row.Longitude, &m.Position.Wgs84, 1, 1);
        rows.push_back(row);
    }
    return rows;
}

}  // namespace ombra
