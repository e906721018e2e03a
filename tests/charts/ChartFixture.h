// Charts made for tests: flat-coloured Mercator plans placed where a test
// wants them in one raster, installed through the real installer, with the
// services (scripted dialogs, memory settings) the chart modules need.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "charts/ChartModule.h"
#include "core/ErrorReport.h"
#include "core/Registry.h"
#include "core/Units.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {

struct FixturePlan {
    double LatN, LatS, LonW, LonE;  // the plan's area, degrees
    int X0, Y0, X1, Y1;             // where it lies in the raster, pixels
    std::string Title = "Plan";
    std::string Scale = "50000";
    bool Shift = true;
    uint8_t Colour = 1;             // palette index painted over the plan
};

struct FixtureChart {
    std::string Number = "1234A";
    std::string Title = "TEST CHART";
    int Width = 1000, Height = 800;
    std::vector<FixturePlan> Plans;  // plan 0 first
};

// A plan of the whole raster over 49°50'N-50°10'N, 12°20'W-11°40'W.
FixtureChart DefaultFixture();

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

// Everything the chart modules need, over a temporary chart root.
struct ChartWorld {
    ChartWorld();
    TempDir root;
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors{dialogs, product};
    MemorySettings settings;
    Registry registry{settings, product};
    Units units;
    chartlib::OmbraChartLibrary library;
    RecordingChartHost host;
    ChartModule charts{library, dialogs, errors, registry, product, units, host};

    // Installs a fixture chart; false with the message in `why`.
    bool Install(const FixtureChart& chart, const std::string& issueDate = "20240601", std::string* why = nullptr);
    std::string HeaderPath(const std::string& number) const;
    // Message boxes asked so far, word for word.
    std::vector<std::string> Messages() const;
};

// Installs a fixture chart under a chart root through a module's installer
// (a plotter's, say); false with the message in `why`.
bool InstallFixtureChart(ChartModule& charts, const std::string& root, const FixtureChart& chart,
                         const std::string& issueDate = "20240601", std::string* why = nullptr);

// Rewrites columns 14-21 of a file's first line.
void SetIssueDate(const std::string& path, const std::string& date);

}  // namespace ombra::test
