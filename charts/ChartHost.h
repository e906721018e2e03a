// ChartHost: what the chart module asks of the program around it.
//
// The chart module opens, draws and checks charts on its own; the window
// that shows the view, the caption and the warnings bar, and the compass
// deviation card belong to others. The plotter implements this interface
// and passes each call on to whoever owns the answer, so no window and no
// other module ever sets a callback inside the chart module.
//
// Every call is made on the user-interface thread; none may re-enter the
// chart module's drawing (a redraw is asked for, not done, in
// RedrawRequested).
#pragma once

namespace ombra {

class ChartHost {
public:
    virtual ~ChartHost() = default;

    // The view changed (scroll, zoom, another chart or plan, a palette, a
    // moved object): RedrawNavCanvas is to run soon. Many requests before
    // that redraw make one redraw.
    virtual void ChartRedrawRequested() = 0;
    // The off-screen store has been painted by RedrawNavCanvas: show it.
    virtual void ChartPainted() = 0;
    // The set of safety warnings changed: the warnings bar is refilled
    // from Display::WarningText.
    virtual void ChartWarningsChanged() = 0;
    // Title, scale, datum or depth units changed: caption and info line.
    virtual void ChartStatusChanged() = 0;
    // A chart is being opened (true) or the opening ended (false): the
    // mouse pointer shows busy in between.
    virtual void ChartBusy(bool busy) = 0;
    // A chart was opened: the lists and captions that name it follow.
    virtual void ChartOpened() = 0;
    // The catalogue's list of chart problems (ChartCat::ChartErrors) changed.
    virtual void ChartErrorsChanged() = 0;
    // The compass deviation, degrees (east positive), for a magnetic
    // course in degrees [0, 360): compass-mode leg labels add it.
    virtual double CompassDeviation(double magneticCourse) = 0;
};

// The host of a program with no window (the command-line tools, the
// benchmarks): the caller draws when it wants a picture, so redraw requests
// and notices have nobody to reach, and there is no deviation card.
class WindowlessChartHost : public ChartHost {
public:
    void ChartRedrawRequested() override {}
    void ChartPainted() override {}
    void ChartWarningsChanged() override {}
    void ChartStatusChanged() override {}
    void ChartBusy(bool) override {}
    void ChartOpened() override {}
    void ChartErrorsChanged() override {}
    double CompassDeviation(double) override { return 0.0; }
};

}  // namespace ombra
