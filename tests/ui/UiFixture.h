// What the window tests share: the one QApplication of the binary, made on
// first use and never destroyed (destroyed among the exit-time statics, it
// would tear down input devices whose platform is already gone), and a
// whole plotter behind its Qt shell on an empty settings store, unattended
// (every question answers its default).
#pragma once
#include <QApplication>
#include <string>

#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/qt/QtServices.h"
#include "plotter/Plotter.h"
#include "tests/support/QtApp.h"
#include "tests/support/TestSupport.h"
#include "ui/QtShell.h"

namespace ombra::test {

struct Window {
    TempDir dir;
    MemorySettings store;
    QtDialogs dialogs{true};
    ManualClock clock;
    NoEvents events;
    QtShell shell{dialogs, true};
    Plotter plotter{{store, dialogs, clock, events, shell}};
    Window() {
        App();
        shell.SetPlotter(&plotter);
    }
    bool Start(const std::string& cmd = "NOSPLASH") {
        return plotter.Start(cmd, dir / "ombra", dir / "home", dir / "none");
    }
};

}  // namespace ombra::test
