// The chart modules over the chart library, with the services they need
// as fakes (scripted dialogs, settings in memory), for tests and benchmarks.
#pragma once
#include <string>

#include "charts/ChartModule.h"
#include "core/ErrorReport.h"
#include "core/Registry.h"
#include "core/Units.h"
#include "platform/chartlib/OmbraChartLibrary.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"

namespace ombra::test {

struct ChartRig {
    ScriptedDialogs dialogs;
    std::string product = "Tarnel";
    ErrorReporter errors{dialogs, product};
    MemorySettings settings;
    Registry registry{settings, product};
    Units units;
    chartlib::OmbraChartLibrary library;
    ChartModule charts{library, dialogs, errors, registry, product, units};
};

}  // namespace ombra::test
