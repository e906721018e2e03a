// Tracked targets: vessels reported by a tracking service in a text file.
//
// The service writes "FileData\Tracking.dat" under the user's data folder;
// the plotter reads it again whenever its date changes. Each vessel is a
// block of "KEY: value" lines (keys in any case, CR LF or LF line ends):
//
//   VESSEL ID: PILOT 7
//   LATITUDE: 50.0512          degrees, north positive
//   LONGITUDE: -11.9034        degrees, east positive
//   SPEED: 8.5                 knots
//   HEADING: 212               degrees
//   POS AGE: 2 min
//   DATE/TIME: 23/11/2026 10:15:30
//
// "VESSEL ID:" starts the next vessel; the one before goes to the table
// then, the last at the end of the file. Lines with other keys are skipped.
// A date that is not day/month/year reads as no date at all (0), so the
// position is still taken but no speed is derived from it.
//
// The table has 101 slots, found by id; a vessel not seen before takes the
// first free slot. A report with the same date as the last one of that
// vessel changes nothing (Unchanged); otherwise the course and speed made
// good between the two positions are derived (rhumb line, the course cut to
// two decimals). Vessels stay in the table for the run even when a later
// file leaves them out.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "charts/NavPoint.h"
#include "core/Types.h"

namespace ombra {

class Canvas;
class ChartLibrary;
class Console;
class ErrorReporter;
class NavChart;
class TargetPlotHost;

struct TrackedTarget {
    std::string VesselId;  // blank: a free slot
    NavPoint Position;
    NavPoint LastPosition;
    double PositionDate = -1.0;  // serial date of the report; -1 when new
    double PreviousDate = 0.0;
    float Speed = 0.0f;    // reported, knots
    float Heading = 0.0f;  // reported, degrees
    std::string PosAge;
    float DerivedCourse = 0.0f;  // rhumb course between the last two positions
    float DerivedSpeed = 0.0f;   // knots between them
    int16_t Unchanged = 0;       // 1 when the last read brought nothing new
};

// The serial date of "day/month/year time" ("23/11/2026 10:15:30"), or 0
// when the text is not such a date.
double TrackingDate(const std::string& text);

class Tracked {
public:
    static constexpr int kSlots = 101;
    static constexpr Rgb kColour = MakeRgb(0, 150, 200);  // the symbols and names
    // Files larger than this are not a tracking service's and are not read.
    static constexpr long long kMaxFileBytes = 4 << 20;

    Tracked(TargetPlotHost& host, ErrorReporter& errors, Console& console);

    std::array<TrackedTarget, kSlots> Targets;
    int16_t TargetCount = 0;  // slots 0 .. TargetCount - 1 have been used
    int ActiveTarget = -1;    // the console's vessel, -1 none

    // The file the tracking service writes.
    void SetFilePath(const std::string& path) { path_ = path; }
    const std::string& FilePath() const { return path_; }
    // The tick's poll: reads the file when its date is newer than the one
    // read last. True when it was read.
    bool ReadTrackingFile();
    // The file's text, as ReadTrackingFile reads it.
    void ReadTrackingText(const std::string& text);
    void UpdateTrackedTarget(const std::string& id, const LatLong& position, float speed, float heading,
                             double date, const std::string& posAge);

    void DrawTrackedTargets(Canvas& canvas, NavChart& chart, ChartLibrary& library);
    void UpdateTrackedConsole();
    // "Select Target To Centre On": "Default Vessel" centres on own ship,
    // a vessel becomes the console's and the chart zooms to it.
    void CentreOnTrackedTarget();
    std::vector<std::string> TargetRows(std::vector<int>* slots = nullptr) const;

private:
    TargetPlotHost& host_;
    ErrorReporter& errors_;
    Console& console_;
    std::string path_;
    bool fileRead_ = false;
    long long fileDate_ = 0;  // the file clock's count of the file last read
};

}  // namespace ombra
