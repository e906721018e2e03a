// The chart modules over the chart library, with the services they need
// as fakes (scripted dialogs, settings in memory) and a chart host that
// records what the module reports, for tests and benchmarks.
#pragma once
#include <functional>
#include <string>

#include "charts/ChartModule.h"
#include "core/ErrorReport.h"
#include "core/Registry.h"
#include "core/Units.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"

namespace ombra::test {

// A chart host for tests: each call goes to the function a test sets, and
// the redraw requests are counted.
struct RecordingChartHost : ChartHost {
    std::function<void()> redraw, painted, warnings, status, opened, errors;
    std::function<void(bool)> busy;
    std::function<double(double)> deviation;
    int redrawRequests = 0;
    void ChartRedrawRequested() override {
        ++redrawRequests;
        if (redraw) redraw();
    }
    void ChartPainted() override { if (painted) painted(); }
    void ChartWarningsChanged() override { if (warnings) warnings(); }
    void ChartStatusChanged() override { if (status) status(); }
    void ChartBusy(bool on) override { if (busy) busy(on); }
    void ChartOpened() override { if (opened) opened(); }
    void ChartErrorsChanged() override { if (errors) errors(); }
    double CompassDeviation(double magnetic) override { return deviation ? deviation(magnetic) : 0.0; }
};

struct ChartRig {
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors{dialogs, product};
    MemorySettings settings;
    Registry registry{settings, product};
    Units units;
    chartlib::OmbraChartLibrary library;
    RecordingChartHost host;
    ChartModule charts{library, dialogs, errors, registry, product, units, host};
};

}  // namespace ombra::test
