// PassagePlanner: the passage planner. It turns a route into a timed plan through
// the tidal stream: for every leg the course to steer, the arrival and the
// tide met on the way; for the whole route the arrival, the time on passage
// and the tidal gain. With best departure it plans 24 departures an hour
// apart round the wanted time and marks the quickest.
//
// A leg is worked by stepping the vessel along the leg's course, a mile at a
// time while more than a mile is left and then a tenth of a mile at a time,
// each step run through the water at the plan's speed and then carried by
// the stream sampled at its start. The streams met are summed (AddTide) and
// the course to steer is the course from the leg's start to its end moved
// back by the whole tide. Arithmetic is that of the plotter's tables: sets
// and rates in 32-bit floats, each partial sum's direction rounded to a
// whole degree, times in whole seconds, durations in whole minutes.
//
// Two things a navigator should know of the stepping: the tenth steps run
// one tenth past the point where the end was passed, so an arrival lies up
// to two tenths of a mile's time beyond the true crossing; and a stream that
// holds the vessel so that she makes no headway over a whole tidal day
// (25 hours) fails the leg, as a stream she cannot stem does.
//
// Dates are date serials (days since 30/12/1899, the time of day as the
// fraction), the form of Tides::TideTime.
#pragma once
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/Types.h"
#include "core/Units.h"
#include "navobjects/NavChart.h"
#include "navobjects/Route.h"
#include "tides/Tides.h"

namespace ombra {

struct PassageLeg {
    double Distance = 0.0;  // rhumb distance, nautical miles
    double Course = 0.0;    // degrees true
    int16_t Flag = 0;
    double CTS = 0.0;       // course to steer, degrees true; -1 a leg the plan does not cover
    double Departure = 0.0, Arrival = 0.0;
    int16_t TideSet = 0;    // whole degrees true
    float TideDrift = 0.0f; // mean rate over the leg, knots
};

// Whether a bearing to the leg's end has swung 90 degrees or more off the
// leg's course: the end has been passed.
bool HasPassed(double bearing, double course);
// Adds the stream (set2, rate2) to (set1, rate1); the new direction is
// rounded to a whole degree.
void AddTide(float& set1, float& rate1, float set2, float rate2);
// Whether a course can be made good through a tide: `run` is the distance
// (or speed) through the water, `tide` the tide's distance (or rate) setting
// towards `set`. When `cts` is given it receives the course to steer in
// whole degrees.
bool CanStem(double course, float run, float set, float tide, double* cts = nullptr);

// The choices of the passage tab.
struct PassageInputs {
    float speed = 0.0f;          // knots
    bool useTides = true;        // "Calc using Tides"
    int16_t basis = 0;           // 0 the present time, 1 the given departure
    double start = 0.0;          // the given departure
    double now = 0.0;            // the present time
    bool useVesselPos = false;   // "Use Vessel Position as First WP"
    bool bestDeparture = false;  // "Calc Best Departure Time"
    bool vesselActive = false;
    LatLong vesselPos;
    int16_t activePoint = 0;     // the active point of this route, 0 none
};

// A refusal of the plan: the text for the message box and the control that
// takes the focus after it; empty when the plan was made.
struct PassageRefusal {
    std::string text, focus;
    explicit operator bool() const { return !text.empty(); }
};

// A table of results: its headings and rows of texts.
struct PassageTable {
    std::vector<std::string> headings;
    std::vector<std::vector<std::string>> rows;
};

// "dd, hh, mm" for a span of whole minutes (days 0 when it is negative).
std::string PassageSpanText(long long minutes);

class PassagePlanner {
public:
    explicit PassagePlanner(Tides& tides) : tides_(tides) {}

    // The plan for `route` from the tab's choices; the four texts below say
    // "N/A" when a leg could not be made. With best departure the 24 rows
    // are filled instead. `gauge` hears the row being worked (1..24).
    PassageRefusal CalcRoute(const Route& route, const PassageInputs& in, const Units& units,
                             const std::function<void(int)>& gauge = {});
    // One leg from `from` to `to` leaving at `start`; false when it cannot be
    // made. Quiet (a best-departure row) stops at the arrival: no tide sum, no
    // course to steer, no track. `track` receives the ground track.
    bool CalcPassageLeg(const LatLong& from, const LatLong& to, double& distance, double& course, float speed,
                        double start, double& arrival, float& cts, bool quiet, int16_t& tideSet, float& tideDistance,
                        std::vector<LatLong>* track = nullptr);

    // 0 no plan, 1 a plan stands and its track is drawn, 2 a best-departure
    // table stands, 3 a leg was worked inside a best-departure run. Setting
    // 0 drops the results.
    int16_t PassageState() const { return state_; }
    void SetPassageState(int16_t state);

    // The results list: state 1 the legs, state 2 the departures. `shown`
    // turns a true course at a leg into the course unit the navigator chose.
    PassageTable ShowPassageResults(int16_t state, const Units& units,
                                    const std::function<double(double trueCourse, int leg)>& shown = {}) const;
    // The track of every leg, for the chart, while a plan stands.
    void DrawPassage(Canvas& canvas, NavChart& chart, Rgb colour) const;

    // The outputs of the tab.
    std::string TxtArrDate, TxtArrTime, TxtTotTime, TxtTidalGain, TxtTotalDistance;
    // By leg index: leg i leaves point i (1-based); index 0 holds the leg
    // from the vessel to the first point when that is where she starts.
    std::vector<PassageLeg> Legs;
    std::vector<std::vector<LatLong>> PassageTrack;
    int VesselLeg = -1;          // the leg run from the vessel, or -1
    int16_t PassageRoute = 0;    // the route planned, for its colour
    float PassageSpeed = 0.0f;
    double PassageStart = 0.0;
    int16_t PassageLegIndex = 0;
    float TidalGain = 0.0f;
    double TotalDistance = 0.0;

    // Best departure, rows 1..24; element 0 is the base time, the smallest
    // duration so far and the last plan's gain.
    std::array<double, 25> BestDepartureTime{}, BestArrivalTime{};
    std::array<float, 25> BestDuration{}, BestGain{};
    std::array<bool, 25> BestFailed{};
    int16_t BestRow = 0;

private:
    struct Run {
        bool failed = false;
        int mark = -1;  // where the failure is marked: -1 the run itself
        double arrival = 0.0;
    };
    Run RunPlan(const Route& route, const PassageInputs& in, double departure, bool quiet);
    void BestDeparture(const Route& route, const PassageInputs& in, const std::function<void(int)>& gauge);

    Tides& tides_;
    int16_t state_ = 0;
    bool useTides_ = true;
};

}  // namespace ombra
