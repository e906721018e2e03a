#include "platform/fake/RecordingCanvas.h"

namespace ombra {

void RecordingCanvas::Add(const char* op, std::vector<ChartPoint> pts) {
    Call c;
    c.op = op;
    c.points = std::move(pts);
    c.pen = pen_;
    c.brush = brush_;
    c.font = font_;
    c.textColour = textColour_;
    calls.push_back(std::move(c));
}

void RecordingCanvas::FillRect(const PixelRect& r, Rgb colour) {
    Add("FillRect", {{r.left, r.top}, {r.right, r.bottom}});
    calls.back().brush = Brush{colour, BrushStyle::Solid};
}

void RecordingCanvas::Text(ChartPoint at, const std::string& utf8) {
    Add("Text", {at});
    calls.back().text = utf8;
}

void RecordingCanvas::Blit(ChartPoint at, const Image& image) {
    Add("Blit", {at, {at.x + image.width, at.y + image.height}});
}

std::vector<RecordingCanvas::Call> RecordingCanvas::Of(const std::string& op) const {
    std::vector<Call> out;
    for (const Call& c : calls)
        if (c.op == op) out.push_back(c);
    return out;
}

}  // namespace ombra
