#include "targets/TargetDrawing.h"

#include <cmath>

#include "core/Angles.h"
#include "navobjects/NavChart.h"
#include "platform/api/Canvas.h"
#include "platform/api/ChartLibrary.h"

namespace ombra {

void DrawTargetSymbol(Canvas& canvas, NavChart& chart, ChartLibrary& library, const NavPoint& point,
                      double courseTrue, int16_t kind, Rgb colour, const std::string& label) {
    for (size_t plan = 0; plan < point.InPlan.size() && plan < point.Pixel.size(); ++plan) {
        if (!point.In(plan)) continue;
        const ChartPoint at = chart.ToScreen(point.Pixel[plan]);
        // Where north lies on the screen here: a point a minute of arc
        // north, on the same plan (charts are not all north up).
        NavPoint north;
        north.Wgs84 = {point.Wgs84.Long, point.Wgs84.Lat + 60.0};
        chart.PrepareNavPoint(north);
        double northAngle = 0.0;
        if (north.In(plan) && plan < north.Pixel.size()) {
            const ChartPoint n = chart.ToScreen(north.Pixel[plan]);
            if (n.x != at.x || n.y != at.y) northAngle = std::atan2(double(n.x - at.x), -double(n.y - at.y)) * kRadToDeg;
        }
        library.DrawTarget(canvas, at, courseTrue + northAngle, kind, colour);
        if (!label.empty()) {
            canvas.SetTextColour(colour);
            canvas.Text({at.x + 9, at.y - 18}, label);
        }
    }
}

}  // namespace ombra
