// ImageCanvas: a Canvas that paints straight into an Image, with no window
// system: the chart view of "chart render", the demo chart's drawing, and
// the pictures tests look at pixel by pixel.
//
// It draws without anti-aliasing, so every pixel it touches takes exactly
// the pen's or brush's colour (the demo chart relies on that to turn its
// picture back into palette indices). Lines are Bresenham lines thickened
// to the pen's width; dashes are counted along the line. Polygons fill by
// the even-odd rule at pixel centres. Text is a 5 x 7 bitmap font in cells
// of 6 x 9 pixels at 8 points, scaled by whole steps for larger sizes; it
// knows printable ASCII and the degree and acute marks of position text.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "platform/api/Canvas.h"

namespace ombra::chartlib {

class ImageCanvas : public Canvas {
public:
    explicit ImageCanvas(Image& target) : img_(target) {}
    int Width() const override { return img_.width; }
    int Height() const override { return img_.height; }
    void SetPen(const Pen& pen) override { pen_ = pen; }
    void SetBrush(const Brush& brush) override { brush_ = brush; }
    void SetFont(const Font& font) override { font_ = font; }
    void SetTextColour(Rgb colour) override { text_ = colour; }
    void Line(ChartPoint from, ChartPoint to) override;
    void Polyline(const std::vector<ChartPoint>& points) override;
    void Polygon(const std::vector<ChartPoint>& points) override;
    void PolyBezier(const std::vector<ChartPoint>& points) override;
    void Ellipse(const PixelRect& bounds) override;
    void Rectangle(const PixelRect& bounds) override;
    void FillRect(const PixelRect& bounds, Rgb colour) override;
    void Text(ChartPoint at, const std::string& utf8) override;
    int TextWidth(const std::string& utf8) override;
    int TextHeight() override;
    void Blit(ChartPoint at, const Image& image) override;
    void SetClip(const PixelRect& clip) override;
    void ClearClip() override { clipOn_ = false; }

    // Filling a ring given in doubles (sub-pixel vertices), with a colour.
    void FillPolygonF(const std::vector<std::pair<double, double>>& points, Rgb colour);

private:
    void Plot(int x, int y, Rgb c);
    void Span(int y, int x0, int x1, Rgb c);  // x1 exclusive
    void Stroke(ChartPoint a, ChartPoint b, int& dashPos);
    int Scale() const;
    PixelRect Bounds() const;

    Image& img_;
    Pen pen_;
    Brush brush_;
    Font font_;
    Rgb text_ = 0;
    PixelRect clip_;
    bool clipOn_ = false;
};

// The rows of a glyph of the bitmap font (7 rows, 5 bits, bit 4 leftmost)
// for a Unicode code point.
const uint8_t* GlyphRows(uint32_t codePoint);

}  // namespace ombra::chartlib
