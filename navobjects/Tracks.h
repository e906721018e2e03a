// Tracks: where the vessel has been, recorded as it goes and drawn as line
// pieces on the chart.
//
// A track is a list of segments, each a list of points; a new segment
// begins whenever recording restarts, so no line is drawn across a gap.
// A point is added, with each new vessel position while recording is on
// (VesselTrackMode), when any one of three conditions holds:
//   time      at least VesselTrackTimeInterval minutes since the last
//             point (with VesselTrackTimeMode), across midnight too;
//   course    the course differs from the one at the last point by at least
//             VesselTrackCourseChange degrees, the short way round (with
//             VesselTrackCourseMode): 355 and 5 differ by 10;
//   distance  at least VesselTrackDistance nautical miles from the last
//             point by the rhumb line (with VesselTrackDistanceMode).
// The first point of a segment is always taken.
//
// The .trk file (text records, CR LF), positions latitude first:
//   "0.1"                  the program's version; must be numeric
//   -999999,-999999        a new segment
//   180000,-18000          a point: Lat, Long, seconds of arc
//   180012.5,-17990
// A file whose first value is not numeric is not a track file: it reads as
// an empty track, without a word. A damaged file keeps the points read
// before the fault, is reported by file and line, and is not overwritten
// by a save unless the user agrees.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "charts/NavPoint.h"
#include "navobjects/NavStore.h"
#include "platform/api/Canvas.h"

namespace ombra {

class Canvas;

struct TrackSegment {
    int16_t Header = 0;
    std::vector<NavPoint> Points;
};

std::string TrackFileText(const std::string& version, const std::vector<TrackSegment>& track);
ReadOutcome ReadTrackText(const std::string& text, std::vector<TrackSegment>& track);

// The pen styles of VesselTrackLineStyle, in order.
PenStyle TrackLineStyle(int16_t index);

class Tracks {
public:
    explicit Tracks(NavContext& ctx) : ctx_(ctx) {}

    std::vector<TrackSegment> Track;
    std::string FileName;   // the .trk being recorded, a full path; "" none
    std::string Folder;     // "<data root>\Tracks\"

    void InitTracks();
    // Saves the current file when points were added since the last save and
    // at least kSaveEvery seconds have passed, so that a crash loses at most
    // that much. A damaged file is left for the save at exit, which asks.
    static constexpr double kSaveEvery = 60.0;
    bool SaveIfDue();
    // Reads a track file (a full path) and makes it the current one.
    void ReadTrackFile(const std::string& path);
    // Rewrites the current file; false when skipped or failed.
    bool SaveTrackFile();
    // Recording restarts: the next point opens a new segment.
    void StartSegment() { newSegment_ = true; }
    // Appends a point to the last segment (made when there is none).
    void AddTrackPoint(const LatLong& pos, double course = 0.0);
    // The three conditions, at each vessel position; true when a point
    // was added. `now` is the clock's seconds since midnight.
    bool TrackCheck(const LatLong& pos, double course, double now);
    void ClearTrack();

    void DrawTracks(Canvas& c);
    void PrepareTrackPoints();
    size_t PointCount() const;
    bool Damaged() const { return damaged_; }

private:
    NavContext& ctx_;
    bool newSegment_ = true;
    bool havePoint_ = false;
    double lastTime_ = 0.0, lastCourse_ = 0.0;
    LatLong lastPos_;
    bool damaged_ = false;
    int damagedLine_ = 0;
    bool unsaved_ = false;   // points added since the file was read or saved
    double lastSave_ = 0.0;  // the clock's seconds since midnight
};

}  // namespace ombra
