// Chart: opening a chart, and moving to a chart of another scale.
//
// NewChart(number) opens the chart of that number:
//   1. its ".HDR" under the chart root ("Cannot find " and the path when it
//      is not there; the open chart stays); the catalogue's sub-folder from
//      "ReadMe.CDV" beside the root
//   2. the catalogue record, with outlines (nothing opens without one)
//   3. the chart checks: a wrong issue date answered Yes opens the chart
//      marked out of date, No stops
//   4. the header, the plans, the notes
//   5. the chart library's OpenChart (a refusal leaves the old chart open)
//   6. pixel size 128, plan outlines in pixels, the low-resolution raster
//      as the current raster, the setting LastChartNumber, the starting
//      view (the vessel's pixel when the vessel is active), the raster shown
// Any fault is reported under "NewChart" and the mouse pointer is normal
// again.
//
// ZoomOutChart and ZoomInChart look up the charts at the view's centre and
// open the installed one whose scale is the next smaller (out) or larger
// (in) than the current plan's, keeping the view's centre; when there is
// none: "There are no charts of a suitable scale curently installed." under
// "Chart Scale Out" (that title serves both directions).
//
// Units: positions in seconds of arc, north and east positive; plans are
// numbered 0 to PlanCount. A Chart refers to (and does not own) the
// library, dialogs, reporter, registry, state, catalogue, checks and
// display it is given; they must outlive it. The open chart's facts live in
// the ChartState, which the queries below only read.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

#include "charts/ChartCat.h"
#include "charts/ChartChecks.h"
#include "charts/ChartHost.h"
#include "charts/ChartState.h"
#include "charts/Display.h"

namespace ombra {

class ChartLibrary;
class Dialogs;
class ErrorReporter;
class Registry;

// What the chart details window shows of a plan.
struct ChartDetails {
    std::string ChartNumber, Title, PlanTitle, Country, EditionDate, Scale, Datum, DepthUnits, DepthDatum;
    std::string ShiftLat, ShiftLong, ShiftSource, SpecialWarnings;
    int16_t Plan = 0, PlanCount = 0;
};

class Chart {
public:
    Chart(ChartLibrary& library, Dialogs& dialogs, ErrorReporter& errors, Registry& registry, const std::string& productName,
          ChartState& state, ChartCat& cat, ChartChecks& checks, Display& display, ChartHost& host);

    // Opens a chart as told above; true when it is open. On false the
    // chart open before (if any) stays open and the reason has been shown
    // (an empty number is passed over without one).
    bool NewChart(const std::string& chartNumber);
    void ZoomOutChart();
    void ZoomInChart();
    // The installed chart at a position with the smallest scale
    // denominator (the first candidate when none qualifies); opened and
    // centred on the position, in seconds of arc (WGS84). False when no
    // installed chart covers it or it does not open.
    bool OpenChartAt(double latSeconds, double lonSeconds);
    // Opens a chart keeping the view: with a chart already open, the
    // raster shown (full or low resolution) stays and so does the place at
    // the view's centre when the new chart covers it; the first chart
    // opened shows its full raster at the starting view. True when open.
    bool OpenKeepingView(const std::string& chartNumber);
    void CloseChart();
    void QuickCheck();

    bool ChartIsOpen() const { return state_.IsOpen(); }
    WGS84Shift GetWGS84(int16_t plan) const;
    int16_t GetPlanCount() const { return state_.Header.PlanCount; }
    int16_t GetFirstPlan() const { return state_.Header.FirstPlan; }
    int16_t GetCurrentPlan() const { return state_.CurrentPlan; }
    void SetCurrentPlan(int16_t plan) { state_.CurrentPlan = plan; }
    int16_t GetPixelZoom() const { return display_.PixelSize; }
    void ResetPixelZoom() { display_.ResetPixelZoom(); }
    // Whether a chart's header is on this system, under the chart root.
    bool IsInstalled(const std::string& number) const;
    // The details of a plan of the open chart; a plan out of range gives
    // the current plan's. Empty when no chart is open.
    ChartDetails Details(int16_t plan) const;
    // The chart's notes, for the "&Notes" window.
    std::string NotesText() const;


private:
    void ZoomChart(bool out);
    std::string CatalogueSubFolder() const;

    ChartLibrary& lib_;
    Dialogs& dialogs_;
    ErrorReporter& errors_;
    Registry& registry_;
    const std::string& productName_;
    ChartState& state_;
    ChartCat& cat_;
    ChartChecks& checks_;
    Display& display_;
    ChartHost& host_;
};

}  // namespace ombra
