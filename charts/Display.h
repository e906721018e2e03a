// Display: the chart view, what lies on it, and its safety warnings.
//
// The view shows the open chart's raster (through the chart library) with
// every overlay over it in a fixed order; the chart lies under all, later
// layers over earlier ones:
//
//   Waypoints, Routes, Boundaries, Seafish, Dividers, AnchorCircle, Tracks,
//   Vessel, ManOverboard, ArpaObjects, AisTargets, TrackedTargets,
//   DdeObjects, CoastData, TideGrid, Passage, Gpsy
//
// Modules register their drawing for a slot (RegisterLayer); a redraw
// (RedrawNavCanvas) paints the raster into the off-screen store, copies it
// to the canvas, calls the layers in slot order (and in order of
// registration within a slot), then asks the window to show the result.
// A layer decides itself whether it is shown (a menu's "&Display", the
// track display flag). The vessel layer is the view's own (VesselView.h).
//
// Coordinates. Overlays keep full-resolution chart pixels in NavPoints
// (LocatePosition); ChartToScreen turns them into the canvas's pixels.
// PixelSize 128 shows one chart pixel a screen pixel; 256 enlarges twice,
// 64 reduces twice. ViewFactor is the chart pixels one screen pixel spans:
// 128 / PixelSize on the full raster, (second / first resolution number)
// / (PixelSize / 128) on the low-resolution ".LOR".
//
// Warnings (WarningTexts, WarningCount): codes 1 no WGS84 shift, 2 the
// low-resolution raster at PixelSize 128, 4 pixel zoom, 5 out of date;
// 0 clears all, -2 and -4 clear one. WarningsChanged fires when the count
// goes from 0 to 1 or 1 to 0 (the window shows or hides its bar) and
// whenever the texts change.
//
// Everything runs on the user-interface thread; RedrawBusy keeps a redraw
// from re-entering from the timer.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "charts/ChartHost.h"
#include "charts/ChartState.h"
#include "charts/NavPoint.h"
#include "charts/VesselView.h"
#include "platform/api/Canvas.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

class Dialogs;
class ErrorReporter;
class Registry;

enum class Layer : int {
    Waypoints = 0, Routes, Boundaries, Seafish, Dividers, AnchorCircle, Tracks, Vessel, ManOverboard,
    ArpaObjects, AisTargets, TrackedTargets, DdeObjects, CoastData, TideGrid, Passage, Gpsy, Count_
};

using LayerDraw = std::function<void(Canvas& canvas, const ChartViewState& view)>;

class Display {
public:
    Display(ChartLibrary& library, Dialogs& dialogs, ErrorReporter& errors, Registry& registry, const std::string& productName,
            ChartState& state, ChartHost& host);

    // --- The window --------------------------------------------------------
    void SetViewSize(int width, int height);
    const ChartViewState& View() const { return view_; }
    // Asks the host for a redraw soon (ChartHost::ChartRedrawRequested).
    void RequestRedraw();

    // --- Drawing -----------------------------------------------------------
    void RedrawNavCanvas(Canvas& canvas);
    // Registers a drawing routine; returns its id for UnregisterLayer.
    int RegisterLayer(Layer slot, LayerDraw draw);
    void UnregisterLayer(int id);
    // Routines that prepare their NavPoints again after a chart opens.
    int RegisterPreparer(std::function<void()> prepare);
    void UnregisterPreparer(int id);
    void PreparePoints();
    bool RedrawBusy = false;
    // The off-screen store of the last redraw (PicNavStore).
    const Image& Store() const { return store_; }

    // --- Positions and pixels ----------------------------------------------
    NavPoint LocatePosition(const LatLong& wgs84);
    NavPoint LocateChartPosition(const LatLong& local);
    ChartPoint ChartToScreen(ChartPoint chartPixel) const;
    ChartPoint ScreenToChart(ChartPoint screen) const;
    // The WGS84 position under a screen pixel; false off every plan.
    bool ScreenToPosition(ChartPoint screen, LatLong& pos);
    // The topmost plan whose outline holds a chart pixel; -1 none.
    int16_t PlanAtPixel(ChartPoint chartPixel);
    LatLong ViewCentre();
    void CentreOnPixel(double chartX, double chartY);
    // Centres on a WGS84 position; false when no plan holds it.
    bool CentreOnPosition(const LatLong& wgs84);

    // --- Plans -------------------------------------------------------------
    int16_t DisplayedPlan = -1;
    void SelectPlan(int16_t plan);
    // The "Plans" command: the list of plans, and the view moved to the one chosen.
    void ShowPlansList();
    // The view to the middle of a plan's outline, at PixelSize 128.
    void MoveToPlan(int16_t plan);

    // --- Raster, zoom, palette ---------------------------------------------
    int16_t PixelSize = 128;
    int16_t PaletteMode = 0;
    float ViewFactor() const;
    // Reads the current raster (CurrentChartPath) and shows it.
    void ShowRaster();
    void ShowHiRes();   // the ".CHR"
    void ShowLoRes();   // the ".LOR", in the middle of a view it does not fill
    bool ShowingLoRes() const;
    void SetPixelSize(int16_t pixelSize);
    void PixelZoomIn();   // doubles, at most 1024
    void PixelZoomOut();  // halves, at least 16
    void ResetPixelZoom();
    void SetPaletteMode(int16_t mode);
    // The overlay colour of a kind in a palette mode (0 black/white/dim, 1-2 white/dim/black).
    static Rgb OverlayColour(int kind, int paletteMode);

    // --- Mouse -------------------------------------------------------------
    void ScrollBy(int dxScreen, int dyScreen);
    void BeginDrag(ChartPoint screen);
    void DragTo(ChartPoint screen);
    void EndDrag();
    bool Dragging() const { return dragging_; }
    // Wheel steps of pixel zoom about a screen point (positive enlarges).
    void WheelZoom(int steps, ChartPoint screen);
    // On a zoomed-out view (the low-resolution raster, or a pixel zoom
    // below one to one): the screen rectangle that the full chart at one
    // to one would show, centred on a screen point. False on any other view.
    bool ZoomArea(ChartPoint screen, PixelRect& area) const;
    // Zooms in to that area: the full chart, one to one, centred there.
    void ZoomInAt(ChartPoint screen);

    // --- Scale bar ---------------------------------------------------------
    // The longest round length (1, 2 or 5 times a power of ten, nautical
    // miles) that fits in `maxPixels` of the screen at the view's zoom on
    // the displayed plan, and its length in screen pixels. False when no
    // chart is open or the plan has no scale.
    bool ScaleBar(int maxPixels, double& nm, int& pixels) const;

    // --- Warnings ----------------------------------------------------------
    void ChartWarning(int16_t code);
    int16_t WarningCount() const { return warningCount_; }
    bool WarningSet(int code) const { return code >= 0 && code < 6 && flags_[code]; }
    std::vector<std::string> WarningTexts() const;
    std::string WarningText() const;  // the texts joined for one panel
    static std::string PixelZoomFactorText(int16_t pixelSize);
    // Codes 2 and 4 after the raster is shown.
    void AfterRasterDisplay();

    // --- Status texts ------------------------------------------------------
    std::string ScaleCaption() const;       // "Scale 1:50000"
    std::string DatumCaption() const;       // "Datum: World Geodetic System 1984"
    std::string DepthUnitsCaption() const;  // "METRES"

    // --- Vessel ------------------------------------------------------------
    void SetVesselSource(VesselSource* source) { vessel_ = source; }
    bool VesselView(ombra::VesselView& out);
    void DrawVessel(Canvas& canvas);

    // --- Chart opening (called by Chart) -----------------------------------
    // After a chart opens: PixelSize 128, displayed plan cleared, the view
    // at its start, the raster read and shown.
    void StartView();
    void ClearView();

private:
    void StatusUpdate();
    void AfterScroll();
    void SetWarningText(int code);
    void CentreSmallRaster();

    ChartLibrary& lib_;
    Dialogs& dialogs_;
    ErrorReporter& errors_;
    Registry& registry_;
    const std::string& productName_;
    ChartState& state_;
    ChartHost& host_;
    ChartViewState view_;
    Image store_;
    struct LayerEntry {
        int id;
        Layer slot;
        LayerDraw draw;
    };
    std::vector<LayerEntry> layers_;
    std::vector<std::pair<int, std::function<void()>>> preparers_;
    int nextId_ = 1;
    bool flags_[6] = {};
    std::string texts_[6];
    int16_t warningCount_ = 0;
    bool dragging_ = false;
    // A centre was chosen while the view had no size (its origin holds it).
    bool centrePending_ = false;
    ChartPoint dragFrom_;
    double dragOriginX_ = 0, dragOriginY_ = 0;
    VesselSource* vessel_ = nullptr;
};

}  // namespace ombra
