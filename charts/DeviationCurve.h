// DeviationCurve: the compass deviation card drawn as a curve, for the card
// window and its printout.
//
// The layout is worked out first (pure pixels, testable without a device),
// then drawn on any Canvas: axes, heading marks every 90°, the scale in
// degrees, and a smooth curve through the card's 37 entries.
//
//   DrawDeviationCurve(canvas, deviation.DeviationTable);
#pragma once
#include <vector>

#include "core/Types.h"
#include "navmath/Deviation.h"
#include "platform/api/Canvas.h"

namespace ombra {

// The deviation curve of the card form, laid out for a canvas of a size:
// heading 0..360 along x, deviation up the y axis (west up), symmetric
// about the zero line, full scale the largest deviation rounded up to a
// whole degree (at least 1).
struct DeviationCurveLayout {
    PixelRect plot;                   // the area of the axes
    int zeroY = 0;                    // the zero line
    float fullScale = 1.0f;           // degrees at the top (and, negated, the bottom)
    std::vector<ChartPoint> points;   // the 37 entries
    std::vector<ChartPoint> bezier;   // PolyBezier's points: the first entry, then 3 a span
    int X(double heading) const;      // pixel of a heading
    int Y(double deviation) const;    // pixel of a deviation
};

DeviationCurveLayout LayoutDeviationCurve(const DeviationCard& table, int width, int height);

// Draws the card: axes with "0", "90°", "180°", "270°", "360°", the titles
// "Deviation" and "Heading", the scale in "°", and the curve through the 37
// entries by PolyBezier.
void DrawDeviationCurve(Canvas& device, const DeviationCard& table);

}  // namespace ombra
