// Ais: the vessels heard on AIS, on the chart, in the console and in the
// target list, with their closest approach to the own vessel.
//
// The targets themselves live in the decoder's table (platform/ais); this
// module reads them through its host, one slot at a time, and keeps only
// what it needs between redraws: each target's prepared chart point, the
// target chosen for the console (ActiveTarget, a slot of the table, -1 for
// none) and the targets the closest-approach alarm has already told of.
//
// On the chart (Draw, the AisTargets layer) a target is a triangle pointed
// along its heading (yellow), else its course over ground (cyan), else up
// (magenta, nothing known); our own transponder's record is red. A moving
// target with a known course has a course line of six minutes' run, and a
// known heading a short heading line. With Settings.Labels the name (the
// MMSI when the name is blank) stands beside the symbol.
//
// Closest approach (Cpa) takes both vessels on straight courses at steady
// speeds over a plane tangent at the own vessel: good to a few metres over
// the ranges at which it matters. A target whose speed is not known has no
// closest approach; a target going slower than a tenth of a knot counts as
// stopped even without a course.
//
// The alarm (Settings.CpaAlarm, off until the navigator turns it on) is
// raised once for a target whose closest approach comes within CpaRange
// miles within CpaTime minutes; it is not raised again for that target
// until it has left those limits (or the table). The window comes down by
// its OK or when no target is within the limits any more.
#pragma once
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "charts/NavPoint.h"
#include "targets/AisHost.h"

namespace ombra {

class Canvas;
class ChartLibrary;
class NavChart;
class Registry;

struct AisSettings {
    bool Labels = false;       // AISLabels, "Display Names"
    bool CpaAlarm = false;     // AISCpaAlarm
    double CpaRange = 0.5;     // AISCpaRange, NM
    double CpaTime = 12.0;     // AISCpaTime, minutes
    void Load(const Registry& reg);
    void Save(Registry& reg) const;
};

// The closest point of approach of a target to the own vessel.
struct Cpa {
    bool Known = false;
    double Range = 0.0;  // NM, now
    double Bearing = 0.0;  // degrees true from the own vessel, now
    double Distance = 0.0;  // NM at the closest point (the range now when opening)
    double Minutes = 0.0;  // until the closest point; negative when already past (opening)
    bool Closing() const { return Known && Minutes > 0.0; }
};

// `speed` negative means not known; `course` negative not known.
Cpa ClosestApproach(const OwnMotion& own, const LatLong& pos, double course, double speed);

// One row of the target list: a slot of the table with its static and
// voyage data and its closest approach.
struct AisRow {
    int16_t Index = 0;
    std::string Name;  // the MMSI when the name is blank
    std::string MMSI, CallSign, Type, Status, Length, Width, Destination, ETA;
    bool Own = false;
    LatLong Pos;                       // seconds of arc
    double Course = -1, Heading = -1;  // as the record has them
    Cpa Approach;
};

enum class AisSort { Slot, Name, Range, Cpa, Tcpa };

class Ais {
public:
    static constexpr size_t kConsoleRows = 22;
    static constexpr double kCourseLineMinutes = 6.0;

    Ais(Registry& reg, AisHost& host) : reg_(reg), host_(host) {}

    AisSettings Settings;
    int16_t ActiveTarget = -1;

    void LoadSettings() { Settings.Load(reg_); }

    // ---- The chart ----
    void Draw(Canvas& c, NavChart& chart, ChartLibrary& library);
    // After another chart opens: every point is prepared again at the next draw.
    void ChartChanged() { ++chartGeneration_; }
    // The target whose symbol lies within `tolerance` view pixels of
    // `screen` (the nearest), or -1; as last drawn.
    int16_t HitTarget(ChartPoint screen, int tolerance = 10) const;
    // The pop-up's caption for a target: "AIS - " and its name.
    std::string PopupCaption(int16_t index);

    // ---- The console ----
    // Chooses the target the console shows (-1 none) and fills its rows.
    void SetActiveTarget(int16_t index);
    // Fills the rows of the active target: its texts, its position in the
    // user's format, CPA and TCPA; "N/A" throughout when it is gone.
    void UpdateConsole(std::array<std::string, kConsoleRows>& rows);

    // ---- The tick ----
    // The alarm check over every target, once a vessel cycle.
    void CheckCpaAlarm();
    // The alarm window's OK: down until another target comes within limits.
    void AcknowledgeCpaAlarm();
    bool CpaAlarmShowing() const { return alarmShowing_; }

    // ---- The list ----
    std::vector<AisRow> Rows(AisSort by);
    // "Select AIS Target To Centre On": the list of targets; the chosen one
    // is centred on the chart and becomes the console's.
    void CentreOnTarget(NavChart& chart);
    // Centres the chart on one target; false when it is gone.
    bool CentreOn(NavChart& chart, int16_t index);
    // "Clear ALL": the table emptied, the console's target and the alarm dropped.
    void ClearAll();

    // The name as the chart and the lists show it.
    static std::string DisplayName(const AisTarget& t);

private:
    struct Drawn {
        double lat = 0, lon = 0;
        unsigned generation = 0;
        NavPoint point;
        ChartPoint screen{};
        bool shown = false;
    };
    Registry& reg_;
    AisHost& host_;
    unsigned chartGeneration_ = 1;
    std::vector<Drawn> drawn_;  // by slot, 1-based (slot 0 unused)
    std::map<std::string, bool> alarmed_;  // MMSIs told of, still within the limits
    bool alarmShowing_ = false;
};

}  // namespace ombra
