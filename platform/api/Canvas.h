// Canvas: a device to draw on, in pixels of that device (x right, y down).
//
// Every overlay of the chart view, the deviation curve, the printouts draw
// through this one interface. The program's canvas paints with QPainter on a
// window, an off-screen image or a printer page; tests use a recording
// canvas that keeps each call, so a test can check which pieces were drawn
// with which pen, and where.
//
// Pens and brushes are set, then used, as on the old device contexts:
//   c.SetPen({MakeRgb(255,0,0), 2, PenStyle::Solid});
//   c.Line({10,10}, {100,40});
#pragma once
#include <string>
#include <vector>

#include "platform/api/Geo.h"

namespace ombra {

enum class PenStyle { Solid = 0, Dash = 1, Dot = 2, DashDot = 3, DashDotDot = 4, Null = 5 };
enum class BrushStyle { Solid = 0, Null = 1, Horizontal = 2, Vertical = 3, FDiagonal = 4, BDiagonal = 5, Cross = 6, DiagCross = 7 };

struct Pen {
    Rgb colour = 0;
    int width = 1;
    PenStyle style = PenStyle::Solid;
    friend bool operator==(const Pen&, const Pen&) = default;
};

struct Brush {
    Rgb colour = 0;
    BrushStyle style = BrushStyle::Null;
    friend bool operator==(const Brush&, const Brush&) = default;
};

struct Font {
    std::string family = "DejaVu Sans";
    int pointSize = 8;
    bool bold = false;
    friend bool operator==(const Font&, const Font&) = default;
};

struct PixelRect {
    int left = 0, top = 0, right = 0, bottom = 0;  // right and bottom exclusive
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

class Canvas {
public:
    virtual ~Canvas() = default;
    virtual int Width() const = 0;
    virtual int Height() const = 0;
    virtual void SetPen(const Pen& pen) = 0;
    virtual void SetBrush(const Brush& brush) = 0;
    virtual void SetFont(const Font& font) = 0;
    virtual void SetTextColour(Rgb colour) = 0;
    virtual void Line(ChartPoint from, ChartPoint to) = 0;
    virtual void Polyline(const std::vector<ChartPoint>& points) = 0;
    virtual void Polygon(const std::vector<ChartPoint>& points) = 0;
    // Cubic Bezier curves: the first point, then three points a segment.
    virtual void PolyBezier(const std::vector<ChartPoint>& points) = 0;
    virtual void Ellipse(const PixelRect& bounds) = 0;
    virtual void Rectangle(const PixelRect& bounds) = 0;
    virtual void FillRect(const PixelRect& bounds, Rgb colour) = 0;
    // Text with its top-left corner at `at`.
    virtual void Text(ChartPoint at, const std::string& utf8) = 0;
    virtual int TextWidth(const std::string& utf8) = 0;
    virtual int TextHeight() = 0;
    // Copies an image with its top-left at `at`.
    virtual void Blit(ChartPoint at, const Image& image) = 0;
    virtual void SetClip(const PixelRect& clip) = 0;
    virtual void ClearClip() = 0;
};

}  // namespace ombra
