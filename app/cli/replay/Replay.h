// The headless replay: the whole plotter, started as the program starts,
// run over a recorded instrument log on a clock taken from the log's own
// fix times, as fast as it will go, telling what happened as JSON lines
// (ReplayServices.h lists the events).
//
//   ombra-cli replay LOG.nmea --home DIR [--waypoints DB] [--routes DB]
//       [--boundaries DB] [--route NAME] [--answer CAPTION=BUTTON ...]
//
// DIR is an OMBRA_HOME: its Vestrane.ini and data folders are used as the
// plotter uses them, except that the settings file is never written and
// the GPS always starts, on its port (port 1 when none is set), without
// the start-up question: the GPS is the log. The NMEA output goes to the
// device of the GPS port when that is a path (a serial device, a pty or a
// file, started afresh); a file://, tcp:// or udp:// device takes none.
// Every other port opens and stays silent.
//
// The clock starts at the log's first fix, before the plotter starts, and
// the main timer runs every 100 ms of it until a second after the last
// line of the log; a line comes to the GPS port when the clock reaches its
// time (ReplayLog.h). The three stores open the database named, else the
// first of their index, through the database menus' own selection; with
// --route that route of the open route database is activated, as the
// command line's ROUTE= does, once the vessel is active. --answer presses
// BUTTON of the alarm window with that caption each time it shows, and
// answers a message box or question with that title; boxes without an
// answer take their default button and alarm windows stay up. At the end
// the program's exit sequence runs, which saves what it saves.
//
// Exit status: 0 done; 1 a log without one timed position fix; 2 a usage
// error, or a missing home, log, database or route (with a message).
#pragma once
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace ombra {

struct ReplayOptions {
    std::string log, home;
    std::string waypoints, routes, boundaries;  // "" the first of the index
    std::string route;
    std::map<std::string, std::string> answers;  // caption or title -> button
    std::string sharedData;                     // shipped data for a fresh home
};

// Reads the command's arguments; false with a message on `err`.
bool ParseReplayArgs(const std::vector<std::string>& args, ReplayOptions& options, std::ostream& err);

struct ReplayFigures {
    long long ticks = 0;
    long long lines = 0;
    double simulatedSeconds = 0.0;
};

int RunReplay(const ReplayOptions& options, std::ostream& out, std::ostream& err, ReplayFigures* figures = nullptr);

}  // namespace ombra
