// ombra-cli replay: the whole plotter over a recorded instrument log, on
// the log's own clock, telling what happened as JSON lines (see
// app/cli/replay/Replay.h).
#include <filesystem>
#include <iostream>

#include "app/cli/CliCommand.h"
#include "app/cli/replay/Replay.h"

#ifndef OMBRA_SHIPPED_DATA
#define OMBRA_SHIPPED_DATA ""
#endif

namespace ombra::cli {
namespace {

// The shipped data beside an installed program, else the source tree's.
std::string SharedData() {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        fs::path installed = exe.parent_path() / ".." / "share" / "ombra" / "install";
        if (fs::is_directory(installed, ec)) return fs::canonical(installed, ec).string();
    }
    return OMBRA_SHIPPED_DATA;
}

int RunReplayCommand(const CliArgs& args, std::ostream& out, std::ostream& err) {
    ReplayOptions o;
    if (!ParseReplayArgs(args, o, err)) return 2;
    o.sharedData = SharedData();
    int rc = RunReplay(o, out, err);
    out.flush();
    return rc;
}

CliRegistration reg{{"replay",
                     "replay LOG.nmea --home DIR [--waypoints DB] [--routes DB] [--boundaries DB] [--route NAME] "
                     "[--answer CAPTION=BUTTON ...]   run the plotter over a log, events as JSON lines",
                     RunReplayCommand}};

}  // namespace
}  // namespace ombra::cli
