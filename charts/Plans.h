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

struct WGS84Shift {
    bool HasShift = false;
    std::string ShiftLat;         // 7
    std::string ShiftLong;        // 7
    std::string ShiftSourceLat;   // 6
    std::string ShiftSourceLong;  // 6
};

struct PlanOutlinePoint {
    LatLong Pos;
    ChartPoint Pixel;
};

struct ChartPlan {
    int16_t PlanNumberInFile = 0;
    int16_t PlanFlag = 0;
    std::string Title;
    std::string Code;        // 2
    std::string Field7;      // 30
    std::string Field5;      // 13
    std::string Field6;      // 12
    std::string Scale;       // 10
    std::string Field1, Field2, Field3, Field4;  // 12 each
    std::string HorizDatum;  // 3
    std::string Flag1;       // 1
    std::string DepthUnits;  // 1
    std::string DepthDatum;  // 2
    std::string Flag2;       // 1
    std::string Flag3;       // 2
    bool HasShift = false;
    std::string ShiftLat, ShiftLong, ShiftSourceLat, ShiftSourceLong;
    std::vector<PlanOutlinePoint> Outline;  // element 0 unused
};

// Cuts a plan record (the first line of the plan text) into `plan`.
void ParsePlanRecord(std::string_view record, ChartPlan& plan);
// The record of a plan, as chart installation writes it.
std::string FormatPlanRecord(const ChartPlan& plan);
// Reads every plan's file through the library; reports under "ReadPlanFiles".
bool ReadPlanFiles(const std::string& headerPath, ChartHeader& header, ChartLibrary& library, ErrorReporter& errors);

// The shift labels of the chart details: "0.0500 minutes of latitude North".
std::string ShiftLatText(const ChartPlan& plan);
std::string ShiftLongText(const ChartPlan& plan);
// The numeric scale of a plan, 0 when its text is not a number.
double PlanScale(const ChartPlan& plan);
// "1:25000" (the format "#########" behind "1:").
std::string ScaleText(const ChartPlan& plan);

}  // namespace ombra
