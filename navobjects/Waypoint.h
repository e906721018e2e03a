// Waypoint: the record of a waypoint, and also of every route point and
// boundary mark, with its line in the store files.
//
// A waypoint is a named position with a symbol, a label choice, an arrival
// range and an optional bitmap attachment. Positions are WGS84, seconds of
// arc, east and north positive; AlarmRange is nautical miles and its SIGN
// says whether the range ring is drawn: negative means shown, so -0.25 is a
// quarter-mile ring that is drawn and 0.25 the same range, not drawn.
// Number is the record's slot in its array, from 1; a record with Number 0
// is a free slot, kept so that the numbers of later records do not move.
//
// One line of a store file holds the eleven values, latitude before
// longitude, the position in full 64-bit precision and the range as a
// 32-bit float:
//
//   "WP003",3,"Off the breakwater",180900.5,-16200,3,1,-0.25,1,0,""<CR><LF>
//
// Route files add a twelfth value, the leg flag. A free slot is written as
//   "",0,"",0,0,0,0,0,0,0,""
//
// Reading is by counted values, but a line that holds fewer or more values
// than its record is an error that names the line: a hand edit that lost a
// comma must not shift every later record by one value.
#pragma once
#include <cstdint>
#include <string>

#include "core/TextRecord.h"
#include "charts/NavPoint.h"

namespace ombra {

struct Waypoint {
    std::string Name;
    int16_t Number = 0;
    std::string Description;
    NavPoint Position;
    float MagVar = 0.0f;        // degrees east positive at Position; never stored
    int16_t Icon = 0;           // 0..36, the symbol table
    int16_t LabelMode = 0;      // 0 none, 1 name, 2 position, 3 name & position
    float AlarmRange = 0.0f;    // nautical miles; negative: ring shown
    int16_t DatumFlag = 0;      // position mode of the position text; 1 for a new point
    int16_t Reserved = 0;
    std::string Attachment;     // full path of a bitmap, or ""

    bool Used() const { return Number != 0; }
};

// The label choices, in LabelMode order.
extern const char* const kWaypointLabelModes[4];

// Reads the values of one line-shaped record and checks the line's shape:
// the first value starts the record, the last ends its line (or the file),
// and no value in between ends a line. A broken line raises fault 62 with
// its line number in the description.
class RecordLine {
public:
    // `track` (if given) is kept at the line of the record being read, for
    // the reader's report when a value faults.
    RecordLine(TextRecordReader& r, int fields, int* track = nullptr) : r_(r), left_(fields), track_(track) {}
    std::string Str();
    double Num();
    float Float() { return float(Num()); }
    int16_t Int16();
    bool Bool();
    int Line() const { return line_; }

private:
    void Check();
    TextRecordReader& r_;
    int left_;
    int line_ = 0;
    int* track_;
};

// Writes the eleven values of the record (without ending the line).
void WriteWaypointFields(TextRecordWriter& w, const Waypoint& wp);
// Reads the eleven values into `wp` (the position's panels are left empty).
void ReadWaypointFields(RecordLine& line, Waypoint& wp);

// The version text the store files carry after "Ver ". The readers of
// Parts of the plotter's history classify files by it (no version or one
// below 2.18 is old, 2.18 has its leg flags apart), so a program version
// that would read back as an older form is written as "2.19", the first
// version of the present form.
std::string StoreVersionText(const std::string& programVersion);

// How the first value of a store file places it in the history.
enum class StoreForm { NoHeader, Old, V218, Current };
StoreForm ClassifyStoreHeader(const std::string& firstValue);

}  // namespace ombra
