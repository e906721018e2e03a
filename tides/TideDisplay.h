// TideDisplay: what the navigator sees of the tidal streams.
//
//   - The stream grid: for a chosen instant, a regular grid of the chart
//     canvas (a cell every 50 pixels) filled with the predicted stream at
//     each sea cell, an arrow and its rate. The grid is kept and drawn again
//     at every redraw of the chart, and dropped when another chart opens or
//     the zoom changes (its pixels no longer apply).
//   - The stream at one point of the chart, now (the chart pop-up).
//   - The console's tide values at the vessel, from the model when the
//     navigator asks for it (setting UseProudman), else as set by hand.
//   - Installing regions: a folder of region pairs is copied into the tide
//     data folder; a folder holding a harmonic database (.tcd) becomes a
//     region of its current stations inside the chart in view.
//   - The gate of the stream window: none opens without a region.
//
// The grid works through the model itself, keeping its region selection
// from cell to cell (one selection per region crossed, not one per cell).
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/ErrorReport.h"
#include "platform/api/Canvas.h"
#include "platform/api/Clock.h"
#include "platform/api/Dialogs.h"
#include "platform/api/Geo.h"
#include "tides/Tides.h"

namespace ombra {

class Registry;

// What the stream display asks of the chart and the window around it.
class TideHost {
public:
    virtual ~TideHost() = default;
    // The WGS84 position under a canvas pixel; false with no chart open.
    virtual bool ScreenToTidePoint(int x, int y, LatLong& pos) = 0;
    // Whether a position lies on the open chart's sea colour.
    virtual bool IsPointSea(const LatLong& pos) = 0;
    // A canvas pixel to the full-resolution chart pixel under it, and back.
    virtual ChartPoint ScreenToChart(ChartPoint screen) = 0;
    virtual ChartPoint ChartToScreen(ChartPoint chart) = 0;
    // Names the chart and zoom in view: a grid made under another key is
    // stale.
    virtual std::string ViewKey() = 0;
    // The caption shown while regions are copied ("" clears it).
    virtual void SetStatus(const std::string& text) = 0;
    // The region list changed: the main window's tide commands follow.
    virtual void TideRegionsChanged() = 0;
};

struct TideGridCell {
    int column = 0, row = 0;  // computed cells start at 1
    LatLong pos;              // WGS84
    ChartPoint chartPixel;    // full-resolution chart pixel of the cell
    ChartPoint screen;        // the canvas pixel it was worked out at
    ChartPoint screenOfChart; // the chart pixel on the canvas then (rounded)
    float Set = 0.0f;         // degrees true
    float Drift = 0.0f;       // knots; 0 carries no arrow
};

inline constexpr int kTideGridPitch = 50;
inline constexpr int kTideArrowLength = 20;
// Millimetres a second to knots, read through km/h: 3600 / 1e6 x 0.54.
inline constexpr double kTideMmsToKnots = 0.001944;

class TideDisplay {
public:
    TideDisplay(Tides& tides, Dialogs& dialogs, Clock& clock, Registry& registry, ErrorReporter& errors,
                TideHost& host)
        : tides_(tides), dialogs_(dialogs), clock_(clock), registry_(registry), errors_(errors), host_(host) {}

    // ---- The stream grid ---------------------------------------------------
    // Fills the grid over the canvas for TideTime and draws each arrow.
    void CalcTideGrid(Canvas& canvas);
    // Draws the kept grid again (after a chart redraw); a grid made for
    // another chart or zoom is dropped instead.
    void DrawTideGrid(Canvas& canvas);
    // One cell's arrow at `at` (canvas pixels): nothing for a zero drift.
    static void DrawTideArrow(Canvas& canvas, const TideGridCell& cell, ChartPoint at);
    void ClearTideGrid();
    // The instant of the last grid shown (0 none yet).
    double GridTime() const { return gridTime_; }
    int GridColumns() const { return columns_; }
    int GridRows() const { return rows_; }
    // The cells holding a stream.
    const std::vector<TideGridCell>& Cells() const { return cells_; }

    // Asks for the grid at `when`: it is computed and drawn at the chart's
    // next redraw, over the chart freshly painted.
    void RequestGrid(double when);
    // The chart layer: a pending grid is calculated, a kept one redrawn.
    void DrawLayer(Canvas& canvas);

    // ---- One point ---------------------------------------------------------
    // The stream at `pos` now, in the box "Tidal Stream"; nothing where the
    // model has none.
    void ShowTideAtPoint(const LatLong& pos);

    // ---- The console -------------------------------------------------------
    // Whether the console's tide values come from the model.
    bool UseProudman() const;
    void SetUseProudman(bool on);
    // The stream at the vessel now into the console values; on failure the
    // old values stay. False when the model has never answered.
    bool UpdateConsoleTide(const LatLong& pos, double& set, double& drift);

    // ---- Regions -----------------------------------------------------------
    // The Tides menu's "Install Tidal Data". `chartBox` is the chart in view
    // (south, west, north, east in degrees) for a harmonic database, or
    // null with no chart open.
    void InstallTideSet(const double* chartBox);
    // The gate of the stream window: true when it may open; with no region
    // the navigator is told so.
    bool ShowTideStreamDialog();

private:
    bool CopyRegions(const std::string& folder);
    bool ImportDatabases(const std::string& folder, const double* chartBox, std::string& report);
    std::string NextRegionName() const;

    Tides& tides_;
    Dialogs& dialogs_;
    Clock& clock_;
    Registry& registry_;
    ErrorReporter& errors_;
    TideHost& host_;

    std::vector<TideGridCell> cells_;
    int columns_ = 0, rows_ = 0;
    std::string gridKey_;
    double gridTime_ = 0.0;
    bool pending_ = false;
    double requested_ = 0.0;  // the time of the grid asked for

    bool consoleKnown_ = false;
    double consoleSet_ = 0.0, consoleDrift_ = 0.0;
};

// The stream dialog's texts: "dd/mm/yyyy" and "hh:mm[:ss]". False for a
// date the calendar does not have or a time of day that does not exist.
bool ParseTideDate(const std::string& text, double& serialDay);
bool ParseTideClock(const std::string& text, double& dayFraction);

}  // namespace ombra
