// Waypoints: the open waypoint database, its records, and what the
// navigator does with them: add (by mouse, keyboard or GPS), edit, delete,
// move, list, centre on, and draw.
//
// Records live in slots 1..Count() of List (List[slot - 1]). A slot keeps
// its number for life: deleting a waypoint that is not the last frees its
// slot (Number 0, an empty record written as such in the file), so later
// waypoints keep their numbers and names; deleting the last slot shrinks
// the array. A new waypoint takes the first free slot, else a new one.
//
// File (text records, CR LF; see Waypoint.h for the line):
//   "Ver 2.19"
//   "Solent marks"
//   "WP001",1,"",182700,-4860,0,1,-0.5,1,0,""
//   "",0,"",0,0,0,0,0,0,0,""                       <- slot 2, free
//   "WP003",3,"Nab Tower",182400.25,-3408,5,3,0.5,1,0,""
// A file whose first value lacks "Ver" is of the old form: records from
// line 1, and the database keeps the name the index gave it.
//
// At most 32,767 slots (16-bit indices). Positions WGS84, seconds of arc;
// MagVar is computed on load and at each change of position, never stored.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "navobjects/ActivePointWatch.h"
#include "navobjects/NavStore.h"
#include "navobjects/Waypoint.h"

namespace ombra {

class Canvas;
class SymbolStrips;

enum class AddBy { Mouse, Keyboard, GPS };

// One row of FrmWayPointDB or of the centre-on list.
struct WaypointRow {
    int16_t Slot = 0;
    std::string No;          // Number as "000"
    std::string Name;
    std::string Latitude;
    std::string Longitude;
};

class Waypoints : public NavStore {
public:
    // `watch` hears of edits to the active waypoint; none in a tool.
    Waypoints(NavContext& ctx, const SymbolStrips& symbols, ActivePointWatch* watch = nullptr);

    std::vector<Waypoint> List;
    int16_t Selected = 0;      // the waypoint menus act on; 0 none
    int16_t NewIndex = 0;      // the slot being added
    int16_t ActiveIndex = 0;   // the destination; 0 none
    bool ActiveIsRoutePoint = false;

    int16_t Count() const { return int16_t(List.size()); }
    // Slot 1..Count(); nullptr outside.
    Waypoint* At(int16_t slot);
    const Waypoint* At(int16_t slot) const;

    void InitWayPointData() { InitData(); }
    void ClearWaypoints() { ClearAll(); }
    void OpenWaypointDB() { OpenDB(); }
    bool SaveWaypointDB() { return SaveDB(); }
    void CloseWaypointDB() { CloseDB(); }
    void NewWaypointDB() { NewDB(); }
    bool SelectWaypointDB() { return SelectDB(); }
    void DeleteWaypointDB() { DeleteDB(); }
    void ImportWaypointDB() { ImportDB(); }
    void ExportWaypointDB() { ExportDB(); }

    // Adds a waypoint; `clicked` is the position of a mouse click. Returns
    // the slot, or 0 when nothing was added.
    int16_t AddWaypoint(AddBy how, const LatLong* clicked = nullptr);
    // Frees or drops a slot without asking (the store's own step).
    void RemoveSlot(int16_t slot);
    // "Edit Way Point": true on OK.
    bool EditWaypoint(int16_t slot);
    // After the confirmation; de-activates first when it is the destination.
    bool DeleteWaypoint(int16_t slot);
    // True when the move may start (the tool then waits for a click);
    // an active waypoint is refused with a message.
    bool MoveWaypoint(int16_t slot);
    // The click that ends a move.
    void DropWaypoint(int16_t slot, const LatLong& pos);
    // Sets a record's position: variation and chart pixels renewed.
    void SetPosition(Waypoint& wp, const LatLong& pos);

    void DrawWayPoints(Canvas& c);
    // Renews every used slot's NavPoint for the chart in view.
    void PrepareNavPoints();

    // FrmWayPointDB rows; `chartDatum` shows the chart's LatLong.
    std::vector<WaypointRow> Rows(bool chartDatum) const;
    // "Select Waypoint To Centre On": rows "0001 - WP001".
    std::vector<std::string> CentreOnItems(std::vector<int16_t>* slots = nullptr) const;
    void CentreOnWaypoint();

    // A blank record with the defaults of a new waypoint in `slot`.
    Waypoint NewRecord(int16_t slot) const;


protected:
    void ClearRecords() override;
    std::string Serialise() override;
    ReadOutcome Parse(const std::string& text) override;
    void AfterLoad() override;
    int RecordCount() const override;
    const char* RecordWord() const override { return "waypoints"; }

private:
    const SymbolStrips& symbols_;
    ActivePointWatch* watch_;
};

// The whole text of a waypoint file.
std::string WaypointFileText(const std::string& versionLine, const std::string& dbName,
                             const std::vector<Waypoint>& slots);
// Reads a waypoint file; `name` gets the header's database name (left as
// it is for the old form). Records read before a fault are kept.
ReadOutcome ReadWaypointFile(const std::string& text, std::string& name, std::vector<Waypoint>& slots);

}  // namespace ombra
