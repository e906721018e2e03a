// ChartCat: the chart catalogue, the index of every chart on this system.
//
// It lies in "ChartCat\" under the chart root (in a sub-folder of it when
// "ReadMe.CDV" beside the root names one at its column 13), and says what
// the latest issue of each file of a chart should be, holds the outlines of
// every chart and plan, and answers which charts cover a position.
//
//   Chart.PTR   one line a chart: number in columns 1-8, and in the last 8
//               characters the byte offset (from 0) of its record in Chart.CAT
//   Chart.CAT   records of 4 lines: the chart's facts in fixed columns; its
//               outline; pointers to its plans' records in Plan.CAT; the
//               plans' 9-character references
//   Plan.CAT    records of 2 lines: the plan's facts; its outline
//   NE\ NW\ SE\ SW\   grid files, one a whole degree of latitude and
//               longitude: "50N012W.PTR" lists the charts that reach into
//               50°N-51°N, 12°W-13°W (see docs/chart-formats.md)
//
// Outlines are cells of 17 characters: a latitude "sDDMMmmm" and a
// longitude "sDDDMMmmm", minutes with thousandths: "+5000000-01200000" is
// 50°00.000'N 12°00.000'W, in seconds of arc (180000, -43200). Only a
// leading "-" makes a value negative.
//
// Files are opened and closed for each question; nothing is cached, so a
// catalogue changed by an installation is seen at once. Every reader is
// bounded by the bytes it finds and never trusts a count or an offset.
//
// Units: positions (LatLong) in seconds of arc, north and east positive;
// scales as the denominator of the natural scale, as text. Fields marked
// with a number are kept blank-padded to that many characters. Entries and
// plans are plain values owned by the caller; a ChartCat holds only its
// sub-folder and the list of chart errors, and refers to (does not own)
// the dialogs and error reporter it is given, which must outlive it.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "charts/ChartHost.h"
#include "core/Types.h"

namespace ombra {

class Dialogs;
class ErrorReporter;

struct ChartCatPlan {
    std::string PlanLabel;    // 2
    std::string ChartNumber;  // 8
    std::string IssueDate;    // 8: expected issue date of this plan's notes file
    int16_t PlanNumber = 0;
    std::string Scale;        // 10
    std::string Title;        // 100
    std::vector<LatLong> Outline;
};

struct ChartCatEntry {
    int16_t FirstPlan = 0;
    std::string Country;          // 2
    std::string ChartNumber;      // 8
    std::string HeaderIssueDate;  // 8: expected date of ".HDR", ".PAL", plan files
    std::string EditionDate;      // 8
    std::string NotesIssueDate;   // 8: expected date of ".N00"
    std::string IssueDate2;       // 8
    std::string Code;             // 5
    std::string Title;            // 100
    std::string LatestNM;         // 9: notice number (4), year (5)
    int16_t PlanCount = 0;
    std::string Scale;            // 10
    std::string Value2;           // 10
    int16_t Flag = 0;
    std::string Date3, Date4;     // 8 each
    std::vector<LatLong> Outline;
    std::vector<ChartCatPlan> Plans;  // plans 1 .. PlanCount, as the record lists them
    std::vector<std::string> PlanNames;
};

// The outline of plan `plan` in an entry: plan 0 the chart's, another the
// plan whose PlanNumber it is, else the plan-th plan of the record. Null
// when there is none; the pointer lives as long as the entry.
const std::vector<LatLong>* PlanOutlineOf(const ChartCatEntry& entry, int plan);

// Coordinate cells. A cell is read from its columns whatever they hold:
// blanks and letters count 0, and only a leading "-" makes it negative, so
// any text gives a (perhaps meaningless) finite number of seconds of arc.
double ParseLatCell(std::string_view cell8);
double ParseLonCell(std::string_view cell9);
// The cells of a value in seconds of arc, rounded to a thousandth of a
// minute: "+5000000" and "-01200000". A value that is no number writes as 0;
// one too large for the degrees' digits is cut to the cell's width.
std::string FormatLatCell(double seconds);
std::string FormatLonCell(double seconds);
// Cells of 17 characters, as many as the line holds (its length / 17,
// rounded half to even; a short last cell reads its missing columns as
// blanks), at most 20000.
std::vector<LatLong> ParseOutlineLine(std::string_view line);
std::string FormatOutlineLine(const std::vector<LatLong>& outline);

// Parsing the catalogue's lines (no I/O, no messages, any text accepted:
// columns past a line's end read as blanks or 0), shared by the reader and
// the fuzz target. The Line1 parsers overwrite only the fields of that line.
void ParseChartCatLine1(std::string_view line, ChartCatEntry& entry);
void ParsePlanCatLine1(std::string_view line, ChartCatPlan& plan);
// Byte offsets (from 0) into Plan.CAT from cells of 9 characters, at most
// 100; a cell that is no usable offset gives -1.
std::vector<int64_t> ParsePlanPointers(std::string_view line3);
// The plans' 9-character references, at most 100.
std::vector<std::string> ParsePlanNames(std::string_view line4);

// The grid file of a position: quadrant folder and file name, from the
// whole degrees toward zero: {"NW", "50N012W.PTR"}. Degrees are held to
// 90 and 180; the position must be a number.
struct GridCell {
    std::string Quadrant;
    std::string FileName;
    int LatDegrees = 0;   // whole degrees, toward zero
    int LonDegrees = 0;
    bool North = true, East = true;
};
GridCell GridCellOf(const LatLong& position);

// Row data of the chart manager's list.
struct ChartManInfo {
    std::string ChartNumber, Title, Scale, EditionDate, LatestNM;
    int16_t PlanCount = 0;
};

class ChartCat {
public:
    // `host` hears of changes to ChartErrors; a tool that reads the
    // catalogue on its own passes none.
    ChartCat(Dialogs& dialogs, ErrorReporter& errors, const std::string& productName, ChartHost* host = nullptr)
        : dialogs_(dialogs), errors_(errors), productName_(productName), host_(host) {}

    // The sub-folder of "ChartCat\" that "ReadMe.CDV" names ("" none).
    void SetSubFolder(const std::string& sub) { sub_ = sub; }
    const std::string& SubFolder() const { return sub_; }
    // "ChartCat\" under the root, with the sub-folder.
    std::string CatalogueFolder(const std::string& root) const;

    // Offset + 1 of the chart's record in Chart.CAT, or 0 when the
    // catalogue or the chart is missing: with `reportMissing` the reason
    // joins ChartErrors (and ChartErrorsChanged fires), else it is shown in
    // a message box. Faults go to the reporter under "FindChartPointer".
    int64_t FindChartPointer(const std::string& root, const std::string& chartNumber, bool reportMissing);
    // Reads the record at `offset` (offset + 1, as FindChartPointer gives
    // it) with its plans; outlines only when asked. A plan whose pointer
    // leads nowhere is left out. False, with `entry` unchanged, when
    // Chart.CAT is missing (a message box says so) or the offset lies
    // outside it (reported under "ReadChartCatEntry").
    bool ReadChartCatEntry(const std::string& root, int64_t offset, ChartCatEntry& entry, bool wantOutlines);
    // Columns 148-156 of the chart's record; "" when it has none.
    std::string GetLatestNM(const std::string& root, const std::string& chartNumber);
    // The charts whose outline (or a plan's) holds the position (seconds
    // of arc, WGS84), from the position's grid file; {"None found"} when
    // none does. Each name is the number in 8 characters, a blank, the
    // title, ":" and the scale. A grid line whose offset or number does not
    // match the catalogue is passed over.
    void ChartSelectFromLL(const std::string& root, const LatLong& position, std::vector<std::string>& names);
    // The chart manager's row of a chart; false when it is not catalogued.
    bool GetChartCatChartManInfo(const std::string& root, const std::string& chartNumber, ChartManInfo& info);

    // The list of FrmChartErrors (texts of charts the catalogue lacks).
    std::vector<std::string> ChartErrors;

private:
    Dialogs& dialogs_;
    ErrorReporter& errors_;
    const std::string& productName_;
    ChartHost* host_;
    std::string sub_;
};

// The text from column 13 of the first line of "readme.cdv" at `path`.
std::string ReadCDInfo(const std::string& path);

// The number of a catalogue name ("1234A    TITLE:25000" -> "1234A") and
// its scale (the text behind the last ":", 999999999 without one).
std::string NameChartNumber(const std::string& name);
double NameScale(const std::string& name);

}  // namespace ombra
