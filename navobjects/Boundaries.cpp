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
const ChainWords kBoundaryWords{"B",
                                ".BM",
                                "BA",
                                "Enter name of new boundary.",
                                "Boundary:  ",
                                "Boundary:",
                                "Select Boundary To Centre On",
                                Key::DisplayTypeBoundary,
                                DeleteKind::Other,
                                true};
}  // namespace

Boundaries::Boundaries(NavContext& ctx, const SymbolStrips& symbols)
    : PointChainStore(ctx, kBoundaryStore, "InitBoundaries", "OpenBoundaryDB", "SaveBoundaryDB", kBoundaryWords,
                      symbols) {}

std::string Boundaries::MarkName(int16_t boundary, int16_t index) {
    return ChainPointName(kBoundaryWords, boundary, index);
}

void Boundaries::ClearRecords() {
    PointChainStore::ClearRecords();
    EditingBoundary = 0;
}

std::string Boundaries::Serialise() { return BoundaryFileText(HeaderVersion(), CurrentName, List); }
ReadOutcome Boundaries::Parse(const std::string& text) { return ReadBoundaryFile(text, CurrentName, List); }

bool Boundaries::MayDeletePoint(int16_t, int16_t) {
    return ConfirmDelete(DeleteKind::Other, ctx_.dialogs, ctx_.globals.ProductName);
}

void Boundaries::SlotFreed(int16_t boundary) {
    if (EditingBoundary == boundary) EditingBoundary = 0;
}

void Boundaries::PointDropped(int16_t boundary) {
    if (EditingBoundary == boundary) EditingBoundary = 0;
}

int16_t Boundaries::NewBoundary() {
    int16_t slot = NewChain();
    if (slot) EditingBoundary = slot;
    return slot;
}

void Boundaries::EndNewBoundary(int16_t boundary) {
    if (EditingBoundary == boundary) EditingBoundary = 0;
    Boundary* b = At(boundary);
    if (b && b->Used() && b->Marks.empty()) RemoveBoundary(boundary);
    Changed();
}

bool Boundaries::MoveBoundaryMark(int16_t boundary, int16_t mark) {
    if (!MoveNode(boundary, mark)) return false;
    EditingBoundary = boundary;
    return true;
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

}  // namespace ombra
