// Charts made for tests: flat-coloured Mercator plans placed where a test
// wants them in one raster, installed through the real installer, with the
// services (scripted dialogs, memory settings) the chart modules need.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChartRig.h"
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

// Everything the chart modules need, over a temporary chart root.
struct ChartWorld : ChartRig {
    ChartWorld();
    TempDir root;

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
