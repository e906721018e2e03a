// DemoChart: chart 4000, "Ile Ombra and Approaches", an invented island for
// trying the plotter without a real chart.
//
// The chart covers 49°50'N to 50°10'N, 12°20'W to 11°40'W on Mercator
// (WGS84, no datum shift), 1:50 000, 4000 pixels across inside a margin.
// The island, about 2.5 NM across, is centred on 50°00'N 12°00'W; its
// harbour, Port Ombra, lies in a bay on its south-east side behind two
// breakwaters. Depths are in metres, tinted at 2, 5, 10 and 20 metres with
// contours at 2, 5, 10, 20 and 50, with soundings, a reef to the north-east,
// a lighthouse on the north point, a compass rose and the border graduated
// in minutes. Plan 1, "Port Ombra", is the harbour at 1:12 500, inset in
// the north-west corner of the sheet (far from the waters of the demo
// passage, which circles the island 3 NM and more from its centre).
//
// Drawing goes in three steps so that the chart's pixels are exact palette
// colours: PaintBase fills the tints, contours and coast pixel by pixel;
// PaintOverlay draws text, symbols and lines through a Canvas that does no
// anti-aliasing (the engine's image canvas); ToIndexed turns each colour
// back into its palette index and adds the plans' georeferencing.
//
//   DemoChart demo;
//   Image img(demo.Width(), demo.Height());
//   demo.PaintBase(img);  chartlib::ImageCanvas c(img);  demo.PaintOverlay(c);
//   IndexedChartImage ix;  demo.ToIndexed(img, ix, why);
//   installer.InstallImage(root, ix, demo.Metadata(), "20240601", demo.SpecialWarnings());
#pragma once
#include <string>

#include "core/Types.h"
#include "platform/api/Canvas.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

class DemoChart {
public:
    static constexpr const char* Number = "4000";
    DemoChart();

    int Width() const { return width_; }
    int Height() const { return height_; }
    void PaintBase(Image& image) const;
    void PaintOverlay(Canvas& canvas) const;
    bool ToIndexed(const Image& image, IndexedChartImage& out, std::string& error) const;
    ImportedChart Metadata() const;
    std::string SpecialWarnings() const;

    // Facts of the invented world, for tests and the demo passage.
    static LatLong IslandCentre();   // 50°00'N 12°00'W
    static LatLong HarbourEntrance();
    // The two headlands either side of the harbour bay, east then south.
    static void BayHeadlands(LatLong& east, LatLong& south);
    // Depth in metres at a position: negative on land and drying ground.
    static double DepthAt(const LatLong& pos);
    // Pixel of a position on plan 0 or 1 (the drawing's own mapping).
    bool PixelOf(int plan, const LatLong& pos, double& x, double& y) const;

private:
    struct PlanFrame {
        double LatN, LatS, LonW, LonE;  // degrees
        double X0, Y0;                  // pixel of the north-west corner
        double PixPerLon;               // pixels a degree of longitude
        double NorthTop;                // Mercator northing (radians) of LatN
    };
    bool PlanPixel(const PlanFrame& f, double lat, double lon, double& x, double& y) const;
    void PlanPosition(const PlanFrame& f, double x, double y, double& lat, double& lon) const;
    void PaintRegion(Image& image, const PlanFrame& f, int x0, int y0, int x1, int y1) const;
    void DrawPlanFeatures(Canvas& c, const PlanFrame& f, int plan) const;
    // One plan's features; defined with the drawing.
    struct PlanPainter;
    // The right edge of the main plan's neat line, in pixels.
    int MainRight() const;
    void DrawCompassRose(Canvas& c) const;
    void DrawTitleBlock(Canvas& c) const;
    void DrawInsetFrame(Canvas& c) const;
    // The neat line and the border graduated in minutes of longitude and latitude.
    void DrawBorder(Canvas& c) const;
    void DrawLongitudeScale(Canvas& c, int bottom) const;
    void DrawLatitudeScale(Canvas& c, int right) const;

    int width_ = 0, height_ = 0;
    PlanFrame main_{}, inset_{};
    int insetX0_ = 0, insetY0_ = 0, insetX1_ = 0, insetY1_ = 0;  // inset frame in pixels
};

}  // namespace ombra
