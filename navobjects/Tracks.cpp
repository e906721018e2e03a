#include "navobjects/Tracks.h"

#include <cmath>

#include "core/ErrorReport.h"
#include "core/Paths.h"
#include "core/Registry.h"
#include "core/Startup.h"
#include "core/Val.h"
#include "navmath/RLGC.h"
#include "navobjects/CommonWP.h"
#include "navobjects/NavChart.h"
#include "navobjects/Waypoint.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"

namespace ombra {

namespace {
constexpr double kMarker = -999999.0;
}

PenStyle TrackLineStyle(int16_t index) {
    static const PenStyle styles[5] = {PenStyle::Solid, PenStyle::Dash, PenStyle::Dot, PenStyle::DashDot,
                                       PenStyle::DashDotDot};
    return (index < 0 || index > 4) ? PenStyle::Solid : styles[index];
}

std::string TrackFileText(const std::string& version, const std::vector<TrackSegment>& track) {
    TextRecordWriter w;
    w.Str(IsNumeric(version) ? version : std::string("0")).EndLine();
    for (const TrackSegment& s : track) {
        w.Num(int64_t(kMarker)).Num(int64_t(kMarker)).EndLine();
        for (const NavPoint& p : s.Points) w.Num(p.Wgs84.Lat).Num(p.Wgs84.Long).EndLine();
    }
    return w.Text();
}

ReadOutcome ReadTrackText(const std::string& text, std::vector<TrackSegment>& track) {
    track.clear();
    TextRecordReader r(text);
    int at = 0;
    try {
        if (r.AtEnd()) return {};
        std::string first = r.ReadString();
        if (!IsNumeric(first)) return {};  // not a track file: nothing, silently
        while (!r.AtEnd()) {
            RecordLine line(r, 2, &at);
            double lat = line.Num();
            double lon = line.Num();
            if (lat == kMarker && lon == kMarker) {
                track.emplace_back();
                continue;
            }
            if (track.empty()) track.emplace_back();
            NavPoint p;
            p.Wgs84 = LatLong{lon, lat};
            track.back().Points.push_back(std::move(p));
        }
    } catch (const std::exception& e) {
        return {false, at > 0 ? at : r.Line(), e.what()};
    }
    return {};
}

void Tracks::InitTracks() {
    ctx_.errors.Guard("InitTracks", [&] {
        std::string root = ctx_.globals.UserDataPath;
        while (!root.empty() && (root.back() == '\\' || root.back() == '/')) root.pop_back();
        Folder = root + "\\Tracks\\";
        if (!MakeFolder(Folder)) RaiseFault(faults::PathNotFound);
    });
}

bool Tracks::SaveIfDue() {
    if (!unsaved_ || damaged_ || FileName.empty()) return false;
    double now = ctx_.clock.Timer();
    double since = now - lastSave_;
    if (since < 0) since += 86400.0;  // across midnight
    if (since < kSaveEvery) return false;
    return SaveTrackFile();
}

void Tracks::ClearTrack() {
    Track.clear();
    newSegment_ = true;
    havePoint_ = false;
    damaged_ = false;
    unsaved_ = false;
}

void Tracks::ReadTrackFile(const std::string& path) {
    ClearTrack();
    FileName = path;
    ctx_.errors.Guard("ReadTrackFile", [&] {
        auto text = ReadWholeFile(ResolvePath(path));
        if (!text) return;  // no file: an empty track
        ReadOutcome r = ReadTrackText(*text, Track);
        if (!r.whole) {
            damaged_ = true;
            damagedLine_ = r.line;
            ctx_.errors.ReportError("ReadTrackFile", r.fault + "\nFile: " + NativePath(ResolvePath(path)) + ", line " +
                                                         std::to_string(r.line) + ".\nThe " +
                                                         std::to_string(PointCount()) +
                                                         " track points read before that line are kept. The file "
                                                         "will not be overwritten unless you agree when it is saved.");
        }
    });
    PrepareTrackPoints();
    ctx_.chart.Redraw();
}

bool Tracks::SaveTrackFile() {
    bool saved = false;
    ctx_.errors.Guard("SaveTrackFile", [&] {
        if (FileName.empty()) return;
        if (damaged_) {
            std::string q = "The file " + NativePath(ResolvePath(FileName)) +
                            " could not be read whole when it was opened (line " + std::to_string(damagedLine_) +
                            ").\nSaving replaces it with the " + std::to_string(PointCount()) +
                            " track points now held.\n\nDo you wish to replace the file?";
            if (ctx_.dialogs.MsgBox(q, mb::YesNo | mb::Exclamation | mb::DefaultButton2, ctx_.globals.ProductName) !=
                mb::Yes)
                return;
        }
        std::string why;
        if (!SaveFileAtomic(FileName, TrackFileText(ctx_.globals.VersionText, Track), &why))
            throw Fault(faults::PathFileAccess, why + " (" + NativePath(FileName) + ")");
        damaged_ = false;
        unsaved_ = false;
        lastSave_ = ctx_.clock.Timer();
        saved = true;
    });
    return saved;
}

void Tracks::AddTrackPoint(const LatLong& pos, double course) {
    if (Track.empty() || newSegment_) {
        Track.emplace_back();
        newSegment_ = false;
    }
    NavPoint p;
    p.Wgs84 = pos;
    ctx_.chart.PrepareNavPoint(p);
    Track.back().Points.push_back(std::move(p));
    havePoint_ = true;
    unsaved_ = true;
    lastPos_ = pos;
    lastCourse_ = course;
    lastTime_ = ctx_.clock.Timer();
}

bool Tracks::TrackCheck(const LatLong& pos, double course, double now) {
    if (!ctx_.reg.IsTrue(Key::VesselTrackMode)) return false;
    bool add = !havePoint_ || newSegment_;
    if (!add && ctx_.reg.IsTrue(Key::VesselTrackTimeMode)) {
        double age = now - lastTime_;
        if (age < 0) age += 86400.0;  // across midnight
        add = age >= ctx_.reg.GetNumber(Key::VesselTrackTimeInterval) * 60.0;
    }
    if (!add && ctx_.reg.IsTrue(Key::VesselTrackCourseMode)) {
        double d = std::fabs(course - lastCourse_);
        d = std::fmod(d, 360.0);
        if (d > 180.0) d = 360.0 - d;
        add = d >= ctx_.reg.GetNumber(Key::VesselTrackCourseChange);
    }
    if (!add && ctx_.reg.IsTrue(Key::VesselTrackDistanceMode)) {
        double c, dist;
        CourseDistanceRL(lastPos_, pos, c, dist);
        add = dist >= ctx_.reg.GetNumber(Key::VesselTrackDistance);
    }
    if (!add) return false;
    AddTrackPoint(pos, course);
    lastTime_ = now;
    return true;
}

size_t Tracks::PointCount() const {
    size_t n = 0;
    for (const TrackSegment& s : Track) n += s.Points.size();
    return n;
}

void Tracks::PrepareTrackPoints() {
    for (TrackSegment& s : Track)
        for (NavPoint& p : s.Points) ctx_.chart.PrepareNavPoint(p);
}

void Tracks::DrawTracks(Canvas& c) {
    ctx_.errors.Guard("DrawTracks", [&] {
        if (!ctx_.chart.ChartOpen() || !ctx_.reg.IsTrue(Key::VesselTrackDisplay)) return;
        Pen pen{TableColour(int16_t(ctx_.reg.GetNumber(Key::VesselTrackColour))), 1,
                TrackLineStyle(int16_t(ctx_.reg.GetNumber(Key::VesselTrackLineStyle)))};
        for (const TrackSegment& s : Track)
            for (size_t i = 0; i + 1 < s.Points.size(); ++i) {
                c.SetPen(pen);
                ctx_.chart.DrawRhumbLine(c, s.Points[i], s.Points[i + 1], false, 0, 0.0);
            }
    });
}

}  // namespace ombra
