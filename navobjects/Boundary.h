// Boundary: a closed area of marks, drawn on the chart and watched by the
// boundary alarms, and its file in both historical forms.
//
// A boundary is to its marks what a route is to its points: the marks are
// Waypoint records held inside it, joined in order and closed from the last
// back to the first, each side a rhumb line. One mark is a point with no
// extent (a symbol only, it encloses nothing); two make a line; areas need
// three or more, though nothing forbids fewer.
//
// Display and Filled are 16-bit booleans, -1 true. AlarmOnExit is 0 for an
// alarm on entry, 1 on exit. The four latches belong to the alarms and are
// never stored: after a restart inside an entry boundary the alarm sounds
// again.
//
// File (text records, CR LF):
//   "Ver 2.19"
//   "Alarms"
//   "BA001",1,"Firing range",4,-1,-1,0,12,5     Name, Number, Description,
//   "B1.BM1",1,"",180000,-18000,0,0,0.5,1,0,""   MarkCount, Display, Filled,
//   ...                                          AlarmOnExit, Colour, Pattern;
//                                                then the marks, waypoint lines
// Version 2.17 and older (or a version text under 8 characters) have headers
// of seven values, ending at AlarmOnExit; a file without "Ver" has no
// version and name lines either. A free slot is a header with Number 0.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "navobjects/NavStore.h"
#include "navobjects/Waypoint.h"

namespace ombra {

struct Boundary {
    std::string Name;
    int16_t Number = 0;
    std::string Description;
    int16_t MarkCount = 0;
    int16_t Display = 0;            // -1 drawn and watched
    int16_t Filled = 0;             // -1 hatched
    int16_t AlarmOnExit = 0;        // 0 "Alarm On VesselEntry", 1 "Alarm On Vessel Exit"
    int16_t Colour = 0;             // the 16-colour table
    int16_t Pattern = 0;            // the hatch table
    int16_t VesselEntryLatch = 0, VesselExitLatch = 0, Predictor = 0, PredictorEntryLatch = 0, PredictorExitLatch = 0;
    std::vector<Waypoint> Marks;    // 1..MarkCount at [0..MarkCount-1]

    bool Used() const { return Number != 0; }
    std::vector<Waypoint>& Nodes() { return Marks; }
    const std::vector<Waypoint>& Nodes() const { return Marks; }
    void SyncCount() { MarkCount = int16_t(Marks.size()); }
    // The marks' positions in order, the ring of the polygon test.
    std::vector<LatLong> Ring() const;
};

// The captions of the entry/exit option group.
extern const char* const kBoundaryAlarmModes[2];

std::string BoundaryFileText(const std::string& versionLine, const std::string& dbName,
                             const std::vector<Boundary>& slots);
ReadOutcome ReadBoundaryFile(const std::string& text, std::string& name, std::vector<Boundary>& slots,
                             StoreForm* form = nullptr);

}  // namespace ombra
