// The stream display's host: the chart in view answers for pixels,
// positions and the sea test; the grid is a layer of the chart.
#include <cmath>

#include "plotter/Plotter.h"

namespace ombra {

// The position under a canvas pixel; off every plan, the chart's main plan
// answers.
bool PlotterTideHost::ScreenToTidePoint(int x, int y, LatLong& pos) {
    Display& view = p_.charts_.View;
    if (!p_.charts_.State.IsOpen()) return false;
    if (view.ScreenToPosition({x, y}, pos)) return true;
    const ChartPoint c = view.ScreenToChart({x, y});
    return p_.chartLibrary_.PixelToPosition(1, p_.charts_.State.Header.FirstPlan, c.x, c.y, pos);
}
bool PlotterTideHost::IsPointSea(const LatLong& pos) { return p_.chartLibrary_.IsPointSea(pos); }
ChartPoint PlotterTideHost::ScreenToChart(ChartPoint s) { return p_.charts_.View.ScreenToChart(s); }
ChartPoint PlotterTideHost::ChartToScreen(ChartPoint c) { return p_.charts_.View.ChartToScreen(c); }
std::string PlotterTideHost::ViewKey() {
    const Display& view = p_.charts_.View;
    return p_.charts_.State.CurrentChartPath + "|" + std::to_string(view.PixelSize) + "|" +
           (view.ShowingLoRes() ? "L" : "H");
}
void PlotterTideHost::SetStatus(const std::string& text) { p_.navHost_.SetStatus(text); }
void PlotterTideHost::TideRegionsChanged() { p_.RequestChartRedraw(); }

void Plotter::RegisterTideLayer() {
    charts_.View.RegisterLayer(Layer::TideGrid, [this](Canvas& c, const ChartViewState&) { tideDisplay_.DrawLayer(c); });
}

void Plotter::ShowTideStreams(double when) {
    tideDisplay_.RequestGrid(when);
    RequestChartRedraw();
}

void Plotter::InstallTideSet() {
    // The box of the chart in view, degrees south, west, north, east.
    double box[4];
    const ChartViewState& v = charts_.View.View();
    LatLong a, b;
    const bool haveBox = charts_.State.IsOpen() && v.Width > 0 && v.Height > 0 &&
                         tideHost_.ScreenToTidePoint(0, 0, a) && tideHost_.ScreenToTidePoint(v.Width, v.Height, b);
    if (haveBox) {
        box[0] = std::min(a.Lat, b.Lat) / 3600.0;
        box[1] = std::min(a.Long, b.Long) / 3600.0;
        box[2] = std::max(a.Lat, b.Lat) / 3600.0;
        box[3] = std::max(a.Long, b.Long) / 3600.0;
    }
    tideDisplay_.InstallTideSet(haveBox ? box : nullptr);
}

}  // namespace ombra
