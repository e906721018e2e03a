// Plans: the main plan and the insets of a chart.
//
// Each plan has its own scale, datums and WGS84 shift; all position logic
// is done plan by plan. The plan's record is the first line of the text
// that the chart library's DecryptPlanFile gives for its ".Pnn" file, cut
// by fixed columns (1-based):
//
//   1 plan number, 2 flag, 3-102 title, 103-104 code, 105-134, 135-147,
//   148-159 kept, 160-167 scale, 168-215 four kept fields, 216-218 datum
//   code, 219 flag, 220 depth units code, 221-222 depth datum code,
//   223-225 flags, 226-232 shift of latitude, 233-239 shift of longitude,
//   240-245 and 246-251 the shift's source.
//
// The shift is a sign and minutes: "+0.0500" in ShiftLat means satellite
// (WGS84) positions move 0.05 minutes north to agree with the chart;
// "9999999" means the plan has no shift data. A plan's outline comes from
// the catalogue and gets its pixels once the chart is open.
//
// Plans are numbered 0 (the main plan) to PlanCount; a chart whose
// catalogue says it has no main plan (FirstPlan 1) has a plan 0 that is
// only a title, with no file.
//
// Units. Positions (LatLong) are seconds of arc, north and east positive;
// pixels (ChartPoint) are the chart's full-resolution pixels, x right and
// y down from the top-left pixel. Fields marked with a number are kept
// blank-padded to that many characters; Title is trimmed.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Types.h"

namespace ombra {

class ChartLibrary;
class ErrorReporter;
struct ChartHeader;

// The shift of a plan as the chart details show it; see ChartPlan.
struct WGS84Shift {
    bool HasShift = false;
    std::string ShiftLat;         // 7
    std::string ShiftLong;        // 7
    std::string ShiftSourceLat;   // 6
    std::string ShiftSourceLong;  // 6
};

// A corner of a plan's border: the position (seconds of arc, in the
// chart's datum) and its pixel, which is only valid once the chart is open.
struct PlanOutlinePoint {
    LatLong Pos;
    ChartPoint Pixel;
};

// One plan's record, a plain value owned by the ChartHeader that holds it.
struct ChartPlan {
    int16_t PlanNumberInFile = 0;
    int16_t PlanFlag = 0;
    std::string Title;
    std::string Code;        // 2
    std::string Field7;      // 30
    std::string Field5;      // 13
    std::string Field6;      // 12
    std::string Scale;       // 10, the natural scale's denominator as text ("   50000")
    std::string Field1, Field2, Field3, Field4;  // 12 each
    std::string HorizDatum;  // 3
    std::string Flag1;       // 1
    std::string DepthUnits;  // 1
    std::string DepthDatum;  // 2
    std::string Flag2;       // 1
    std::string Flag3;       // 2
    bool HasShift = false;   // false exactly when ShiftLat is "9999999"
    std::string ShiftLat, ShiftLong, ShiftSourceLat, ShiftSourceLong;  // 7, 7, 6, 6
    std::vector<PlanOutlinePoint> Outline;  // element 0 unused
};

// Cuts a plan record (the text up to its first CR or LF) into `plan` by the
// columns above; columns past its end read as blanks or 0, so any text is
// accepted. The Outline is left as it is.
void ParsePlanRecord(std::string_view record, ChartPlan& plan);
// The record of a plan, as chart installation writes it, with no line end:
// the plan number and flag clamped to one digit 0..9, the scale right-aligned
// in 8 columns, every text cut or padded to its columns.
std::string FormatPlanRecord(const ChartPlan& plan);
// Fills header.Plans[first..] from the plan files beside `headerPath`
// (".P00", ".P01", ...), through the library's DecryptPlanFile; `first` is
// 1, and plan 0 takes the chart's title, when header.FirstPlan is not 0. A
// plan whose file gives no text stays blank. A fault is reported under
// "ReadPlanFiles" and gives false; the plans read before it are kept.
bool ReadPlanFiles(const std::string& headerPath, ChartHeader& header, ChartLibrary& library, ErrorReporter& errors);

// The shift labels of the chart details: the minutes after the sign, then
// " minutes of latitude North" for a leading "+" and South otherwise
// ("0.0500 minutes of latitude North"); likewise East or West. "N/A" when the
// plan has no shift.
std::string ShiftLatText(const ChartPlan& plan);
std::string ShiftLongText(const ChartPlan& plan);
// The natural scale's denominator (50000 for 1:50 000); 0 when the Scale
// text is not a number.
double PlanScale(const ChartPlan& plan);
// "1:25000" (the format "#########" behind "1:").
std::string ScaleText(const ChartPlan& plan);

}  // namespace ombra
