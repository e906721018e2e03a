// A canvas that records every call instead of painting, so tests can check
// which pieces were drawn, with which pen and brush, and where.
#pragma once
#include <string>
#include <vector>

#include "platform/api/Canvas.h"

namespace ombra {

class RecordingCanvas : public Canvas {
public:
    struct Call {
        std::string op;                  // "Line", "Polyline", "Polygon", "PolyBezier", "Ellipse", ...
        std::vector<ChartPoint> points;  // the call's points (rectangles: top-left, bottom-right)
        std::string text;                // Text's string
        Pen pen;
        Brush brush;
        Font font;
        Rgb textColour = 0;
    };

    RecordingCanvas(int width = 800, int height = 600) : width_(width), height_(height) {}
    int Width() const override { return width_; }
    int Height() const override { return height_; }
    void SetPen(const Pen& pen) override { pen_ = pen; }
    void SetBrush(const Brush& brush) override { brush_ = brush; }
    void SetFont(const Font& font) override { font_ = font; }
    void SetTextColour(Rgb colour) override { textColour_ = colour; }
    void Line(ChartPoint from, ChartPoint to) override { Add("Line", {from, to}); }
    void Polyline(const std::vector<ChartPoint>& p) override { Add("Polyline", p); }
    void Polygon(const std::vector<ChartPoint>& p) override { Add("Polygon", p); }
    void PolyBezier(const std::vector<ChartPoint>& p) override { Add("PolyBezier", p); }
    void Ellipse(const PixelRect& r) override { Add("Ellipse", {{r.left, r.top}, {r.right, r.bottom}}); }
    void Rectangle(const PixelRect& r) override { Add("Rectangle", {{r.left, r.top}, {r.right, r.bottom}}); }
    void FillRect(const PixelRect& r, Rgb colour) override;
    void Text(ChartPoint at, const std::string& utf8) override;
    // A fixed-pitch guess: 6 pixels a byte, 12 high, so layouts are testable.
    int TextWidth(const std::string& utf8) override { return int(utf8.size()) * 6; }
    int TextHeight() override { return 12; }
    void Blit(ChartPoint at, const Image& image) override;
    void SetClip(const PixelRect& clip) override { Add("SetClip", {{clip.left, clip.top}, {clip.right, clip.bottom}}); }
    void ClearClip() override { Add("ClearClip", {}); }

    // Calls of one kind.
    std::vector<Call> Of(const std::string& op) const;
    std::vector<Call> calls;

private:
    void Add(const char* op, std::vector<ChartPoint> pts);
    int width_, height_;
    Pen pen_;
    Brush brush_;
    Font font_;
    Rgb textColour_ = 0;
};

}  // namespace ombra
