// The console: the read-outs beside the chart, as text.
//
// The console is a model before it is a panel: the rows are computed here,
// in the logic, and the panel (ui/ConsolePanel) only paints them. Other
// parts read rows back as text on purpose, so what they act on is exactly
// what the navigator sees: the NMEA burst reads the waypoint rows 4 (range),
// 5 (made-good speed), 9 (cross-track distance) and 10 (side mark); the
// arrival and cross-track alarms read rows 4 and 9. A row with no value
// reads "N/A".
//
// Frames and rows (index: caption):
//   Navigation Status  GenLabel 49 the mode text, 50 the age line
//   Vessel             LabVessel 0 Lat, 1 Long, 2 Course, 3 Speed, 4 COG, 5 SOG, 6 Hdg
//   Vessel - Cursor    LabCursor 0 Lat, 1 Long, 2 Brg, 3 Rng
//   Active Waypoint    LabWP 0 Name, 1 Lat, 2 Long, 3 Brg, 4 Rng, 5 VMG, 6 TTG,
//                      7 ETA time, 8 ETA date, 9 XTE, 10 side mark, 11 Steer
//   Tide               LabTide 0 Set, 1 Drift
//   AIS, ARPA, Tracking and DDE targets: rows their own modules fill.
//
// Cross-track side, with A the leg's course (as a 32-bit float) and B the
// bearing to the destination: the vessel is left of the track ("R>>", steer
// right) when the bearing lies clockwise of the course. A leg course of 350
// with a bearing of 10 gives 20 degrees and "R>>"; a distance off below
// 0.005 miles is on track, ">><<".
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/Types.h"

namespace ombra {

class Registry;

struct ConsoleFrameRows {
    const char* frame;
    std::vector<const char*> captions;
};

class Console {
public:
    Console();

    // Navigation Status.
    std::string StatusText = "Off Line";
    Rgb StatusColour = 0;
    std::string AgeLine;
    // GenLabel(49) and GenLabel(50), by their old numbers.
    const std::string& GenLabel(int index) const { return index == 49 ? StatusText : AgeLine; }

    std::array<std::string, 7> LabVessel;
    std::array<std::string, 4> LabCursor;
    std::array<std::string, 12> LabWP;
    std::array<std::string, 2> LabTide;
    std::array<std::string, 22> LabAIS;  // the target's rows, then CPA and TCPA
    std::array<std::string, 7> LabARPA;
    std::array<std::string, 4> LabTarget;
    std::array<std::string, 4> LabDDE;
    std::string WPFrameCaption = "No Active Waypoint";
    // The AIS frame is shown while a target is chosen for it.
    bool AISFrameOn = false;

    // Which rows are shown, from the Console* keys.
    bool Visible = true;
    std::array<bool, 7> ShowVessel{};
    std::array<bool, 4> ShowCursor{};
    std::array<bool, 12> ShowWP{};
    std::array<bool, 2> ShowTide{};
    std::array<bool, 22> ShowAIS{};
    std::array<bool, 7> ShowARPA{};
    std::array<bool, 4> ShowDDE{};

    void LoadConsoleSettings(const Registry& reg);
    void SaveConsoleSettings(Registry& reg) const;

    // Every vessel, cursor, waypoint and tide row "N/A".
    void AllNotAvailable();
    void WaypointNotAvailable();

    // The captions of each frame's rows, in row order.
    static const std::vector<ConsoleFrameRows>& Frames();
};

// The cross-track angle and side mark for a leg course and a bearing
// (degrees), and the distance off for a range: see the header comment.
struct CrossTrack {
    double angle = 0.0;
    double distance = 0.0;  // nautical miles, never negative
    std::string mark;
};
CrossTrack CrossTrackOf(double legCourse, double bearingTo, double distanceTo);

// Course through the water that makes good `track` (degrees true) at
// `speed` knots through the water against a stream setting `set` at
// `drift` knots. False when the stream is too strong to make the track.
bool CourseToSteer(double track, double speed, double set, double drift, double& course);

}  // namespace ombra
