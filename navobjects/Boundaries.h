// Boundaries: the open boundary database ("Alarm" in its dialogs), the
// editing of its boundaries and marks, and their drawing.
//
// A boundary is made by NewBoundary (a name, then marks placed with the
// boundary tool until a double click ends it; a boundary left without
// marks is removed). Mark names follow their index as route points do:
// "B2.BM7" is mark 7 of boundary 2.
//
// Drawing, for each used and displayed boundary: every side a rhumb line
// without a label in the boundary's colour; when Filled, the ring filled
// with its hatch on a transparent background, in every panel that holds
// all of its marks (a ring that crosses a panel edge is not filled in the
// panels that hold only part of it); then the marks as waypoints.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "navobjects/Boundary.h"
#include "navobjects/PointChain.h"
#include "navobjects/Waypoints.h"

namespace ombra {

class Canvas;
class SymbolStrips;

struct BoundaryRow {
    int16_t Slot = 0;
    std::string No, Name, Display, Alarm;
};
struct BoundaryMarkRow {
    std::string No, Name, Display, Latitude, Longitude;
};

class Boundaries : public PointChainStore<Boundary> {
public:
    Boundaries(NavContext& ctx, const SymbolStrips& symbols);

    int16_t& SelectedBoundary = selChain_;
    int16_t& SelectedMark = selPoint_;
    int16_t& SelectedSide = selPart_;
    // The boundary whose marks are being placed or edited: not watched.
    int16_t EditingBoundary = 0;

    Waypoint* MarkAt(int16_t boundary, int16_t mark) { return NodeAt(boundary, mark); }

    void InitBoundaries() { InitData(); }
    void OpenBoundaryDB() { OpenDB(); }
    bool SaveBoundaryDB() { return SaveDB(); }
    void CloseBoundaryDB() { CloseDB(); }
    void NewBoundaryDB() { NewDB(); }
    bool SelectBoundaryDB() { return SelectDB(); }
    void DeleteBoundaryDB() { DeleteDB(); }
    void ImportBoundaryDB() { ImportDB(); }
    void ExportBoundaryDB() { ExportDB(); }

    int16_t NewBoundary();
    void EndNewBoundary(int16_t boundary);
    int16_t AddBoundaryMark(int16_t boundary, const LatLong& pos) { return AppendNode(boundary, pos); }
    // A mark inserted into side `side` (between marks side and side + 1,
    // or after the last for the closing side).
    int16_t InsertBoundaryMark(int16_t boundary, int16_t side, const LatLong& pos) {
        return InsertIntoPart(boundary, side, pos);
    }
    bool DeleteBoundaryMark(int16_t boundary, int16_t mark) { return DeleteNode(boundary, mark); }
    bool MoveBoundaryMark(int16_t boundary, int16_t mark);
    void DropBoundaryMark(int16_t boundary, int16_t mark, const LatLong& pos) { DropNode(boundary, mark, pos); }
    // FrmWayPoint for a mark: "Boundary Mark 3", "Boundary:".
    bool EditBoundaryMark(int16_t boundary, int16_t mark) { return EditNode(boundary, mark); }
    bool DeleteBoundary(int16_t boundary) { return DeleteChain(boundary); }
    void RemoveBoundary(int16_t boundary) { RemoveChain(boundary); }
    void DisplayBoundary(int16_t boundary) { ToggleDisplay(boundary); }
    // The OK of a boundary alarm form: sets the latch its caption names.
    void AcknowledgeBoundaryAlarm(const std::string& number, const std::string& caption);

    void DrawBoundaries(Canvas& c);
    void CentreOnBoundary() { CentreOnChain(); }
    std::vector<BoundaryRow> Rows() const;
    std::vector<BoundaryMarkRow> MarkRows(int16_t boundary, bool chartDatum) const {
        return NodeRows<BoundaryMarkRow>(boundary, chartDatum);
    }

    static std::string MarkName(int16_t boundary, int16_t index);

protected:
    void ClearRecords() override;
    std::string Serialise() override;
    ReadOutcome Parse(const std::string& text) override;
    const char* RecordWord() const override { return "boundaries"; }

    // Marks are deleted after "Confirm deletion" like any other object.
    bool MayDeletePoint(int16_t, int16_t) override;
    void SlotFreed(int16_t boundary) override;
    void PointDropped(int16_t boundary) override;
    std::string EditCaption(int16_t mark) const override { return "Boundary Mark " + Format(mark, "0"); }
};

}  // namespace ombra
