// ombra: the chart plotter.
//
//   ombra [NOSPLASH] [LAT=deg LON=deg ROUTE="NAME"] [--screenshot FILE [--after SECONDS]]
//
// A route name with blanks works as a shell or a desktop launcher passes it
// (ROUTE="HARBOUR APPROACH", "ROUTE=HARBOUR APPROACH"): see
// CommandLineFromArgs.
//
// With --screenshot the plotter starts as usual, answers the disclaimer
// with Accept and every start-up question with its default button, runs for
// the given seconds (3 by default), writes a PNG of the main window and
// leaves through the exit sequence. Where there is no display it runs on
// Qt's offscreen platform, so the picture shows what a navigator would see.
//
// OMBRA_HOME, when set, holds the settings file and stands for the install
// folder, so a demonstration or a test never touches a user's own setup.
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "core/Startup.h"
#include "plotter/Plotter.h"
#include "platform/qt/QtServices.h"
#include "ui/FrmMain.h"
#include "ui/QtShell.h"

#ifndef OMBRA_SHIPPED_DATA
#define OMBRA_SHIPPED_DATA ""
#endif

using namespace ombra;

namespace {
std::string InstallFolder() {
    QByteArray home = qgetenv("OMBRA_HOME");
    if (!home.isEmpty()) return QDir(QString::fromLocal8Bit(home)).absolutePath().toStdString() + "/";
    QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir(data).filePath("Vestrane").toStdString() + "/";
}

// The shipped data beside an installed program, else the source tree's.
std::string SharedData(const char* argv0) {
    QFileInfo exe(QString::fromLocal8Bit(argv0));
    QString installed = exe.absoluteDir().filePath("../share/ombra/install");
    if (QDir(installed).exists()) return QDir(installed).absolutePath().toStdString();
    return OMBRA_SHIPPED_DATA;
}
}  // namespace

int main(int argc, char** argv) {
    std::string screenshot;
    double after = 3.0;
    // The plotter's own words, as the shell or the launcher split them.
    std::vector<std::string> words;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--screenshot" && i + 1 < argc) {
            screenshot = argv[++i];
        } else if (a == "--after" && i + 1 < argc) {
            after = std::atof(argv[++i]);
        } else {
            words.push_back(a);
        }
    }
    const std::string commandLine = CommandLineFromArgs(words);
    bool noDisplay = qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && (noDisplay || !screenshot.empty()))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication app(argc, argv);
    bool unattended = !screenshot.empty();
    QtDialogs dialogs(unattended);
    IniSettings settings;
    SystemClock clock;
    QtEvents events;
    QtShell shell(dialogs, unattended);
    Plotter plotter({settings, dialogs, clock, events, shell});
    shell.SetPlotter(&plotter);

    if (unattended) {
        QTimer::singleShot(int(after * 1000), [&] {
            if (FrmMain* w = shell.Main()) {
                if (!w->grab().save(QString::fromStdString(screenshot), "PNG"))
                    std::cerr << "ombra: could not write " << screenshot << "\n";
                else
                    std::cout << "ombra: screenshot written to " << screenshot << "\n";
                w->close();
            } else {
                QCoreApplication::quit();
            }
        });
    }
    std::string exe = QFileInfo(QString::fromLocal8Bit(argv[0])).absoluteFilePath().toStdString();
    if (!plotter.Start(commandLine, exe, InstallFolder(), SharedData(argv[0]))) return 0;
    if (shell.Ended()) return 0;
    return app.exec();
}
