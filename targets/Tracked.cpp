#include "targets/Tracked.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Val.h"
#include "instruments/Console.h"
#include "navmath/RLGC.h"
#include "navobjects/NavChart.h"
#include "platform/api/DateTime.h"
#include "targets/TargetDrawing.h"
#include "targets/TargetPlotHost.h"

namespace ombra {

namespace {

// The value after a key at the start of `upper` (the line upper-cased), or
// false when the line does not start with it.
bool KeyValue(const std::string& line, const std::string& upper, const char* key, std::string& value) {
    const size_t n = std::char_traits<char>::length(key);
    if (upper.compare(0, n, key) != 0) return false;
    value = line.substr(n);
    return true;
}

// Whole numbers of a date or time part: digits only, at most `width` of them.
bool Part(const std::string& text, int width, int& value) {
    const std::string t = Trim(text);
    if (t.empty() || int(t.size()) > width) return false;
    value = 0;
    for (char c : t) {
        if (c < '0' || c > '9') return false;
        value = value * 10 + (c - '0');
    }
    return true;
}
}  // namespace

double TrackingDate(const std::string& text) {
    const std::string t = Trim(text);
    const size_t s1 = t.find('/');
    const size_t s2 = s1 == std::string::npos ? s1 : t.find('/', s1 + 1);
    if (s2 == std::string::npos) return 0.0;
    const size_t blank = t.find(' ', s2 + 1);
    int day = 0, month = 0, year = 0;
    if (!Part(t.substr(0, s1), 2, day) || !Part(t.substr(s1 + 1, s2 - s1 - 1), 2, month) ||
        !Part(t.substr(s2 + 1, blank == std::string::npos ? std::string::npos : blank - s2 - 1), 4, year))
        return 0.0;
    if (year < 100) year += 2000;
    if (month < 1 || month > 12 || day < 1 || day > 31 || year < 1900) return 0.0;
    double serial = double(calendar::DaysFromCivil(year, month, day) - calendar::kSerialEpoch);
    if (blank == std::string::npos) return serial;
    // The time: h:m or h:m:s, trimmed.
    const std::string time = Trim(t.substr(blank + 1));
    int hms[3] = {0, 0, 0};
    size_t at = 0;
    for (int k = 0; k < 3 && at <= time.size(); ++k) {
        const size_t colon = time.find(':', at);
        const std::string piece = time.substr(at, colon == std::string::npos ? std::string::npos : colon - at);
        if (!Part(piece, 2, hms[k])) return serial;
        if (colon == std::string::npos) break;
        at = colon + 1;
    }
    if (hms[0] > 23 || hms[1] > 59 || hms[2] > 59) return serial;
    return serial + (hms[0] * 3600.0 + hms[1] * 60.0 + hms[2]) / 86400.0;
}

Tracked::Tracked(TargetPlotHost& host, ErrorReporter& errors, Console& console)
    : host_(host), errors_(errors), console_(console) {}

bool Tracked::ReadTrackingFile() {
    bool read = false;
    errors_.Guard("ReadTrackingFile", [&] {
        if (path_.empty()) return;
        std::error_code ec;
        const std::filesystem::path p(path_);
        if (!std::filesystem::is_regular_file(p, ec)) return;
        const auto when = std::filesystem::last_write_time(p, ec);
        if (ec) return;
        const long long stamp =
            std::chrono::duration_cast<std::chrono::nanoseconds>(when.time_since_epoch()).count();
        if (fileRead_ && stamp <= fileDate_) return;
        const auto size = std::filesystem::file_size(p, ec);
        if (ec || size > uintmax_t(kMaxFileBytes)) return;
        std::ifstream in(p, std::ios::binary);
        if (!in) return;
        std::ostringstream text;
        text << in.rdbuf();
        fileDate_ = stamp;
        fileRead_ = true;
        ReadTrackingText(text.str());
        read = true;
        host_.Redraw();
    });
    return read;
}

void Tracked::ReadTrackingText(const std::string& text) {
    struct Report {
        std::string id;
        LatLong pos;
        float speed = 0.0f, heading = 0.0f;
        double date = 0.0;
        std::string posAge;
    };
    bool open = false;
    Report r;
    auto flush = [&] {
        if (!open) return;
        const bool placed = std::isfinite(r.pos.Lat) && std::isfinite(r.pos.Long) &&
                            std::fabs(r.pos.Lat) <= 90.0 * 3600.0 && std::fabs(r.pos.Long) <= 180.0 * 3600.0;
        if (placed) UpdateTrackedTarget(r.id, r.pos, r.speed, r.heading, r.date, r.posAge);
        open = false;
    };
    auto finite = [](double v) { return std::isfinite(v) ? float(std::clamp(v, -1e9, 1e9)) : 0.0f; };
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string upper = UCase(line);
        std::string value;
        if (KeyValue(line, upper, "VESSEL ID:", value)) {
            flush();
            r = Report{};
            r.id = value.substr(std::min(value.size(), value.find_first_not_of(" \t")));
            open = true;
        } else if (KeyValue(line, upper, "LATITUDE:", value)) {
            r.pos.Lat = Val(value) * 3600.0;
        } else if (KeyValue(line, upper, "LONGITUDE:", value)) {
            r.pos.Long = Val(value) * 3600.0;
        } else if (KeyValue(line, upper, "SPEED:", value)) {
            r.speed = finite(Val(value));
        } else if (KeyValue(line, upper, "HEADING:", value)) {
            r.heading = finite(Val(value));
        } else if (KeyValue(line, upper, "POS AGE:", value)) {
            r.posAge = Trim(value);
        } else if (KeyValue(line, upper, "DATE/TIME:", value)) {
            r.date = TrackingDate(value);
        }
    }
    flush();
}

void Tracked::UpdateTrackedTarget(const std::string& id, const LatLong& position, float speed, float heading,
                                  double date, const std::string& posAge) {
    int slot = -1, blank = -1;
    for (int i = 0; i < TargetCount && i < kSlots; ++i) {
        const std::string& v = Targets[size_t(i)].VesselId;
        if (v.empty()) {
            if (blank < 0) blank = i;
        } else if (v == id) {
            slot = i;
            break;
        }
    }
    if (slot < 0) {
        if (blank >= 0) {
            slot = blank;
        } else if (TargetCount < kSlots) {
            slot = TargetCount++;
        } else {
            return;
        }
        Targets[size_t(slot)] = TrackedTarget{};
    }
    TrackedTarget& t = Targets[size_t(slot)];
    if (date == t.PositionDate) {
        t.Unchanged = 1;
        return;
    }
    t.Unchanged = 0;
    t.Position = NavPoint{};
    t.Position.Wgs84 = position;
    if (t.PositionDate == -1.0) {
        t.DerivedCourse = 0.0f;
        t.DerivedSpeed = 0.0f;
    } else {
        double course = 0.0, distance = 0.0;
        CourseDistanceRL(t.LastPosition.Wgs84, position, course, distance);
        course = std::trunc(course * 100.0) / 100.0;
        course = std::fmod(course, 360.0);
        if (course < 0.0) course += 360.0;
        t.DerivedCourse = float(course);
        t.DerivedSpeed = date > t.PositionDate ? float(distance / ((date - t.PositionDate) * 86400.0 / 3600.0)) : 0.0f;
    }
    t.LastPosition = t.Position;
    t.PreviousDate = t.PositionDate;
    t.PositionDate = date;
    t.VesselId = id;
    t.Speed = speed;
    t.Heading = heading;
    t.PosAge = posAge;
    if (slot == ActiveTarget) UpdateTrackedConsole();
}

void Tracked::DrawTrackedTargets(Canvas& canvas, NavChart& chart, ChartLibrary& library) {
    errors_.Guard("DrawTarget", [&] {
        if (!chart.ChartOpen()) return;
        for (int slot = 0; slot < TargetCount && slot < kSlots; ++slot) {
            TrackedTarget& t = Targets[size_t(slot)];
            if (t.VesselId.empty()) continue;
            chart.PrepareNavPoint(t.Position);
            DrawTargetSymbol(canvas, chart, library, t.Position, t.Heading, 2, kColour, t.VesselId);
        }
    });
}

void Tracked::UpdateTrackedConsole() {
    auto& rows = console_.LabTarget;
    if (ActiveTarget < 0 || ActiveTarget >= TargetCount || Targets[size_t(ActiveTarget)].VesselId.empty()) {
        rows.fill("N/A");
    } else {
        const TrackedTarget& t = Targets[size_t(ActiveTarget)];
        rows[0] = t.VesselId;
        rows[1] = host_.PositionText(t.Position.Wgs84);
        rows[2] = host_.SpeedText(t.Speed, "##0.00");
        rows[3] = Format(t.Heading, "##0.0") + "\xC2\xB0";
    }
    host_.ConsoleChanged();
}

std::vector<std::string> Tracked::TargetRows(std::vector<int>* slots) const {
    std::vector<std::string> rows{"Default Vessel"};
    if (slots) *slots = {-1};
    for (int i = 0; i < TargetCount && i < kSlots; ++i) {
        if (Targets[size_t(i)].VesselId.empty()) continue;
        rows.push_back(Targets[size_t(i)].VesselId + " - " + std::to_string(i));
        if (slots) slots->push_back(i);
    }
    return rows;
}

void Tracked::CentreOnTrackedTarget() {
    errors_.Guard("CentreOnTrackedTarget", [&] {
        std::vector<int> slots;
        const std::vector<std::string> rows = TargetRows(&slots);
        const int pick = host_.ListPick("Select Target To Centre On", rows);
        if (pick < 0 || size_t(pick) >= slots.size()) return;
        LatLong at;
        if (slots[size_t(pick)] < 0) {
            if (!host_.OwnPosition(at)) return;
        } else {
            ActiveTarget = slots[size_t(pick)];
            UpdateTrackedConsole();
            at = Targets[size_t(ActiveTarget)].Position.Wgs84;
        }
        host_.CentreChartOn(at);
    });
}

}  // namespace ombra
