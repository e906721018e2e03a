// The chart's side of the main window: the chart view in the middle, the
// caption with scale and datum, the depth units on the information line,
// the warnings bar, the cursor read-out, and the Chart and View menus.
#pragma once

namespace ombra {

class ChartArea;
class FrmChartErrors;
class FrmMain;
class Plotter;

class ChartCommands {
public:
    ChartCommands(FrmMain& main, Plotter& plotter);
    void Bind();
    ChartArea* Area() const { return area_; }
    // The chart module's notices, passed on by the shell.
    void StatusChanged();
    void WarningsChanged();
    void ChartErrorsChanged();

private:
    void Palette(int mode);
    void BindAutoScroll();
    void BindLabels();
    float lastAutoscroll_ = 0.0f;
    FrmMain& main_;
    Plotter& p_;
    ChartArea* area_ = nullptr;
    FrmChartErrors* errors_ = nullptr;
};

}  // namespace ombra
