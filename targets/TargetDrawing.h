// The drawing shared by the radar and tracked targets: a target symbol of
// the chart library at every plan of the open chart that shows the point,
// its course line turned with the chart's north there, and a label beside
// it (none when `label` is empty).
#pragma once
#include <cstdint>
#include <string>

#include "charts/NavPoint.h"
#include "core/Types.h"

namespace ombra {

class Canvas;
class ChartLibrary;
class NavChart;

void DrawTargetSymbol(Canvas& canvas, NavChart& chart, ChartLibrary& library, const NavPoint& point,
                      double courseTrue, int16_t kind, Rgb colour, const std::string& label);

}  // namespace ombra
