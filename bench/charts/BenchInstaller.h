// A chart installer over the real chart library, its questions answered
// unattended: what the chart benchmarks install their sheets with.
#pragma once
#include <string>

#include "charts/ChartInstall.h"
#include "core/ErrorReport.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/fake/ScriptedDialogs.h"

namespace ombra::bench {

struct BenchInstaller {
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors{dialogs, product};
    chartlib::OmbraChartLibrary lib;
    ChartCat cat{dialogs, errors, product};
    ChartInstaller inst{lib, cat};
};

}  // namespace ombra::bench
