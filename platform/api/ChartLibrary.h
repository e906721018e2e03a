// ChartLibrary: the raster chart engine, as the rest of the plotter sees it.
//
// The engine opens one chart at a time (a folder of files named after the
// chart number: header, plans, palette, rasters), paints the part of it in
// view into an Image, and converts between chart pixels and positions plan
// by plan. Everything the plotter knows about raster formats, projections
// and palettes stays behind this interface; the logic of opening, zooming,
// warnings and overlays lives in charts/ and calls only these operations.
//
// Units and conventions.
//   Positions  LatLong, seconds of arc, Long before Lat, east and north
//              positive.
//   Pixels     ChartPoint, full-resolution chart pixels of the whole chart
//              raster, x right and y down, (0, 0) the top-left pixel. Every
//              plan of a chart (the main plan and its insets) lies in this
//              one pixel space, each with its own georeferencing.
//   Plans      16-bit plan numbers, 0 the main plan, up to PlanCount.
//   Datum flag 1: the LatLong given or wanted is WGS84; 0: it is in the
//              plan's own horizontal datum. The plan's shift (minutes of
//              latitude and longitude, chart datum = WGS84 + shift) is
//              applied between the two; a plan without shift data uses none.
//   View       ChartViewState below: which chart pixel is at the top-left of
//              the view, and how many full-resolution chart pixels one
//              screen pixel spans (ViewFactor). PixelSize 128 is one to one,
//              above 128 enlarges (256: one chart pixel is 2 x 2 screen
//              pixels), below reduces.
//
// Failures are values: an operation that cannot answer (no chart open, a
// plan out of range, a position off the projection) returns false and leaves
// its out-argument as it was. Nothing throws across this interface.
//
// Example, the pixel of 50°N 12°W on plan 0 of the open chart:
//   ChartPoint p;
//   if (lib.GetPixelPt(1, 0, LatLong{-12 * 3600.0, 50 * 3600.0}, p)) ...
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/api/Geo.h"

namespace ombra {

class Canvas;

// What the display hands the engine about the view.
struct ChartViewState {
    int Width = 0;             // screen pixels
    int Height = 0;
    double OriginX = 0.0;      // full-resolution chart pixel at the view's top-left corner
    double OriginY = 0.0;
    double ViewFactor = 1.0;   // full-resolution chart pixels per screen pixel
    int16_t PixelSize = 128;   // 128 one to one
};

// Screen and chart pixels of a view. A screen pixel sx covers chart x from
// OriginX + sx * ViewFactor to OriginX + (sx + 1) * ViewFactor.
inline double ScreenToChartX(const ChartViewState& v, double sx) { return v.OriginX + sx * v.ViewFactor; }
inline double ScreenToChartY(const ChartViewState& v, double sy) { return v.OriginY + sy * v.ViewFactor; }
inline double ChartToScreenX(const ChartViewState& v, double cx) { return (cx - v.OriginX) / v.ViewFactor; }
inline double ChartToScreenY(const ChartViewState& v, double cy) { return (cy - v.OriginY) / v.ViewFactor; }

// The raster that ReadChart has loaded.
struct ChartRasterInfo {
    bool Loaded = false;
    bool LowRes = false;       // the ".LOR" is shown
    int Width = 0;             // full-resolution size of the chart
    int Height = 0;
    int ResolutionFirst = 1;   // low-resolution pixels ...
    int ResolutionSecond = 1;  // ... to this many full-resolution pixels (per axis)
};

// ---------------------------------------------------------------------
// Chart maintenance: what a source chart brings, and what an import gives
// back so that the plotter can write the header, plan lines, notes and
// catalogue entries of the new chart.

enum class ProjectionKind : int16_t {
    Mercator = 0,
    TransverseMercator = 1,
    LambertConformalConic = 2,
    Polyconic = 3,
    Polynomial = 4,  // no usable projection: polynomials in longitude and latitude
};

// A reference point: a pixel of the whole chart raster and its position
// (degrees, in the plan's own datum).
struct ReferencePoint {
    double x = 0.0, y = 0.0;
    double lat = 0.0, lon = 0.0;
};

// How one plan's pixels relate to positions, as a source chart states it.
struct PlanGeorefSource {
    ProjectionKind Projection = ProjectionKind::Mercator;
    double CentralMeridian = 0.0;   // degrees; Mercator may leave it 0
    double LatitudeOfOrigin = 0.0;  // degrees (transverse Mercator, polyconic)
    double StandardParallel1 = 0.0; // degrees (Lambert)
    double StandardParallel2 = 0.0;
    double ScaleFactor = 1.0;       // transverse Mercator
    std::vector<ReferencePoint> Refs;
    // Polynomial coefficients of a source that brings them (BSB WPX, WPY,
    // PWX, PWY): up to 10 each, in the order 1, u, v, u², uv, v², u³, u²v,
    // uv², v³, where (u, v) is (lon, lat) in degrees for WPX/WPY and (x, y)
    // in pixels for PWX/PWY.
    std::vector<double> Wpx, Wpy, Pwx, Pwy;
    // The plan's border, degrees (lat, lon) in its own datum, in order.
    std::vector<std::pair<double, double>> Outline;
    // Datum shift to WGS84 in seconds of arc (WGS84 = chart datum + shift).
    bool HasShift = false;
    double ShiftLatSeconds = 0.0, ShiftLonSeconds = 0.0;
};

// One colour of a chart palette in its three lights.
struct PaletteColour {
    Rgb Day = 0, Twilight = 0, Night = 0;
    char Kind = '-';  // 'S' sea, 'L' land, '-' other; IsPointSea's answer
};

// An indexed raster made by the plotter itself (the demo chart).
struct IndexedChartImage {
    int Width = 0, Height = 0;
    std::vector<uint8_t> Pixels;             // Width * Height palette indices, row by row
    std::vector<PaletteColour> Palette;      // at most 256
    std::vector<PlanGeorefSource> Plans;     // plan 0 first
};

// What an import learnt, plan by plan, for the plotter's own files.
struct ImportedPlan {
    std::string Title;
    std::string Scale;             // natural scale denominator, digits ("25000"), or ""
    std::string HorizDatum;        // 3-letter datum code ("WGD")
    std::string DepthUnits;        // 1-character depth units code ("1" metres)
    std::string DepthDatum;        // 2-character tidal level code ("11")
    std::string ShiftLat;          // 7 characters, "+0.0000" (minutes) or "9999999"
    std::string ShiftLong;         // 7 characters
    std::vector<LatLong> Outline;  // chart datum, seconds of arc
    std::string GeorefText;        // the engine's lines of the plan file, after its record
};

struct ImportedChart {
    // In: the chart number, country and file issue date (YYYYMMDD) to stamp
    // on the engine's files; an empty number or country is taken from the
    // source where it has one.
    std::string Number;
    std::string IssueDate;
    std::string Title;
    std::string EditionDate;   // YYYYMMDD or ""
    std::string Country;       // 2-character code or ""
    int Width = 0, Height = 0;
    int ColourCount = 0;
    std::vector<ImportedPlan> Plans;  // plan 0 first
    std::vector<std::string> Notes;   // lines for the chart's notes file
};

// Called now and then during a long import with a fraction done (0..1);
// returning false cancels the import.
using ImportProgress = std::function<bool(double)>;

class ChartLibrary {
public:
    virtual ~ChartLibrary() = default;

    // --- The open chart ---------------------------------------------------
    // Makes the chart whose ".HDR" lies at `headerPath` current. `layout`
    // holds PlanCount, LayoutA, LayoutB, LayoutC, LayoutD; `reference3` is
    // the header's Reference3 and `libraryTag` the engine's working field,
    // which it fills. 0 on success; any other value leaves the chart that
    // was current (if any) current.
    virtual int16_t OpenChart(const std::string& headerPath, const int16_t layout[5], const std::string& reference3,
                              std::string& libraryTag) = 0;
    // Loads the raster file (".CHR" or ".LOR" of the open chart) with the
    // palette of `paletteMode` (0 day, 1 twilight, 2 night).
    virtual bool ReadChart(const std::string& rasterPath, int16_t paletteMode) = 0;
    virtual ChartRasterInfo RasterInfo() const = 0;
    // Sets the pixel size, keeping the chart pixel at the view's centre.
    virtual void SetPixelSize(ChartViewState& view, int16_t pixelSize) = 0;
    // Paints the view into `store` (resized to the view). Quality 3 samples
    // every chart pixel a screen pixel covers when reducing; 1 takes one.
    virtual void RedrawChart(Image& store, const ChartViewState& view, int16_t quality) = 0;
    // Forgets the open chart.
    virtual void CloseChart() = 0;

    // --- Mapping ----------------------------------------------------------
    virtual bool GetLatLong(int16_t datumFlag, int16_t plan, LatLong& pos, const ChartPoint& pt) = 0;
    virtual bool GetPixelPt(int16_t datumFlag, int16_t plan, const LatLong& pos, ChartPoint& pt) = 0;
    // The same without rounding to whole pixels.
    virtual bool PixelToPosition(int16_t datumFlag, int16_t plan, double x, double y, LatLong& pos) = 0;
    virtual bool PositionToPixel(int16_t datumFlag, int16_t plan, const LatLong& pos, double& x, double& y) = 0;
    // Full-resolution pixels to a nautical mile at the plan's scale; 0 when
    // no chart is open.
    virtual float GetPixelsPerNM(int16_t plan) = 0;
    // Whether a WGS84 position lies on sea colour of the open chart.
    virtual bool IsPointSea(const LatLong& pos) = 0;
    virtual bool IsLatLongInPlan(int16_t datumFlag, int16_t plan, const LatLong& pos) = 0;
    virtual bool IsChartPtInPlan(int16_t plan, const ChartPoint& pt) = 0;

    // --- Palette ----------------------------------------------------------
    // A true-colour desktop has no system palette; these keep the mode the
    // engine paints with.
    virtual void SaveSystemPalette() = 0;
    virtual void RestoreSystemPalette() = 0;
    virtual void ModifySystemPalette(int16_t paletteMode) = 0;
    // The colour a palette index paints with now (for tests and legends).
    virtual Rgb PaletteColourOf(int index) const = 0;

    // --- Symbols ----------------------------------------------------------
    // Loads the vessel outline ("Dat\Vessel.CSV"); false keeps the built-in
    // shape.
    virtual bool ReadBoatOutline(const std::string& path) = 0;
    // Draws the vessel at a screen point, its bow along `screenAngle`
    // (degrees clockwise from screen up), at `pixelsPerMetre` (the outline
    // is never drawn smaller than a readable symbol).
    virtual void DrawBoat(Canvas& canvas, ChartPoint at, double screenAngle, double pixelsPerMetre, Rgb colour) = 0;
    // Draws a target symbol: kind 0 an AIS triangle, 1 an ARPA circle, 2 a
    // tracked-target square; `screenAngle` as for DrawBoat.
    virtual void DrawTarget(Canvas& canvas, ChartPoint at, double screenAngle, int16_t kind, Rgb colour) = 0;

    // --- Course and distance (no chart needed) ----------------------------
    virtual void CourseDistanceRL(const LatLong& from, const LatLong& to, double& course, double& distance) = 0;
    virtual void CourseDistanceGC(const LatLong& from, const LatLong& to, double& course, double& distance) = 0;

    // --- Files ------------------------------------------------------------
    // The plan record and georeferencing of a plan file (everything after
    // its file line); "" when the file is missing or not a plan file.
    virtual std::string DecryptPlanFile(const std::string& planPath) = 0;
    // Verifies a raster file against its stored checksums (".CHI" with
    // ".CHR", ".LOI" with ".LOR"; either name of the pair may be given).
    virtual bool CheckCRC(const std::string& path) = 0;

    // --- Chart maintenance ------------------------------------------------
    // Reads a BSB/KAP header without decoding the raster.
    virtual bool InspectKap(const std::string& kapPath, ImportedChart& chart, std::string& message) = 0;
    // Converts a BSB/KAP chart into the engine's files at `basePath` (the
    // chart's path without extension): rasters, palette and georeferencing.
    // On failure nothing is left at `basePath` and `message` says why.
    virtual bool ImportKap(const std::string& kapPath, const std::string& basePath, ImportedChart& chart,
                           std::string& message, const ImportProgress& progress) = 0;
    // The same for a raster the plotter drew itself. `chart` comes in with
    // its plans' titles and codes, and goes out with outlines and georef.
    virtual bool ImportImage(const IndexedChartImage& image, const std::string& basePath, ImportedChart& chart,
                             std::string& message) = 0;
};

}  // namespace ombra
