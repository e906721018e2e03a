// ChartModule: the chart subsystem in one piece, for the Plotter to own.
//
//   ChartModule charts(library, dialogs, errors, registry, productName, units, host);
//   charts.SetRoot(globals.MainDataPath);       // the chart root
//   charts.Charts.NewChart("4000");             // open
//   charts.View.RedrawNavCanvas(canvas);        // draw
//
// State is the open chart; Cat the catalogue; Checks the chart checks;
// View the chart view (Display); Charts opening and zoom (Chart);
// Installer chart maintenance; Legs the drawing of legs for the overlays.
// What the module tells the program around it (redraws, the caption, the
// warnings bar, the busy pointer) goes to the ChartHost it is built with.
#pragma once
#include <string>

#include "charts/Chart.h"
#include "charts/ChartCat.h"
#include "charts/ChartChecks.h"
#include "charts/ChartInstall.h"
#include "charts/ChartState.h"
#include "charts/Display.h"
#include "charts/LegDrawing.h"

namespace ombra {

class ChartModule {
public:
    ChartModule(ChartLibrary& library, Dialogs& dialogs, ErrorReporter& errors, Registry& registry,
                const std::string& productName, const Units& units, ChartHost& host)
        : Library(library),
          Cat(dialogs, errors, productName, &host),
          Checks(dialogs, errors, productName),
          View(library, dialogs, errors, registry, productName, State, host),
          Charts(library, dialogs, errors, registry, productName, State, Cat, Checks, View, host),
          Installer(library, Cat),
          Legs(View, library, State, units, host, &registry) {}

    void SetRoot(const std::string& root) { State.Root = root; }
    const std::string& Root() const { return State.Root; }

    ChartLibrary& Library;
    ChartState State;
    ChartCat Cat;
    ChartChecks Checks;
    Display View;
    Chart Charts;
    ChartInstaller Installer;
    LegDrawing Legs;
};

}  // namespace ombra
