// BoatShape: the vessel's outline, from "Dat\Vessel.CSV".
//
// The file is text, one point a line, "x,y" in metres from the vessel's
// reference point (where the position is measured: the GPS antenna), x to
// starboard and y forward. Lines that begin with "#" or "!" are comments;
// a line "LENGTH,n" is optional and only documents the hull. The points
// make one closed outline, at least 3 and at most 500 of them, each within
// 500 metres of the reference point. A 12-metre yacht:
//
//   # Ombra vessel outline
//   0,8.5
//   2.1,4
//   2.0,-3
//   1.4,-3.5
//   -1.4,-3.5
//   -2.0,-3
//   -2.1,4
//
// Drawing. At the chart's scale the outline is drawn true to size; when
// that would be smaller than 24 screen pixels bow to stern it is drawn at
// 24, so the vessel is always seen. The bow points along the heading on
// the screen (degrees clockwise from screen up).
#pragma once
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/api/Canvas.h"

namespace ombra::chartlib {

struct BoatShape {
    std::vector<std::pair<double, double>> Points;  // x starboard, y forward, metres
};

bool ParseBoatOutline(std::string_view text, BoatShape& shape, std::string& error);
BoatShape DefaultBoat();
// The outline's screen points for a position, angle and scale.
std::vector<ChartPoint> BoatPolygon(const BoatShape& shape, ChartPoint at, double screenAngle, double pixelsPerMetre);
constexpr int kMinBoatPixels = 24;

}  // namespace ombra::chartlib
