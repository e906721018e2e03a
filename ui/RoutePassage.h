// The route window's passage tab wired to the plotter: the planner, the
// clock, the vessel and the route's active point, the course unit of the
// results, the busy pointer and the chart's redraw.
#pragma once

namespace ombra {

class FrmRoute;
class Plotter;

void AttachPlotterPassage(FrmRoute& form, Plotter& plotter);

}  // namespace ombra
