#include "app/cli/replay/Replay.h"

#include <cmath>
#include <ctime>
#include <filesystem>
#include <memory>
#include <ostream>

#include "app/cli/replay/IniSnapshot.h"
#include "app/cli/replay/ReplayLog.h"
#include "app/cli/replay/ReplayServices.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "navobjects/CommonDB.h"
#include "platform/comms/PortAddress.h"
#include "platform/fake/ManualClock.h"
#include "plotter/Plotter.h"

namespace ombra {

namespace {

constexpr const char* kUsage =
    "usage: ombra-cli replay LOG.nmea --home DIR [--waypoints DB] [--routes DB] [--boundaries DB] [--route NAME] "
    "[--answer CAPTION=BUTTON ...]\n";

DateTime Today() {
    std::time_t t = std::time(nullptr);
    std::tm tm{};
    localtime_r(&t, &tm);
    return DateTime{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, 0, 0, 0, 0};
}

// One store's database, opened as Select Database does.
bool OpenStore(NavStore& store, const std::string& wanted, const char* word, ReplayNavWindows& windows,
               std::ostream& err) {
    std::vector<DBEntry> index = ReadIndex(store.IndexPath);
    if (index.empty() && wanted.empty()) return true;
    std::string name = wanted.empty() ? index.front().Name : wanted;
    bool listed = false;
    for (const DBEntry& e : index) listed = listed || e.Name == name;
    if (!listed) {
        err << "ombra-cli replay: no " << word << " database \"" << name << "\" in " << NativePath(store.IndexPath);
        if (!index.empty()) {
            err << " (there are:";
            for (const DBEntry& e : index) err << " \"" << e.Name << "\"";
            err << ")";
        }
        err << "\n";
        return false;
    }
    windows.PickNext(name);
    if (!store.SelectDB() || store.CurrentName != name) {
        err << "ombra-cli replay: the " << word << " database \"" << name << "\" could not be opened\n";
        return false;
    }
    return true;
}

}  // namespace

bool ParseReplayArgs(const std::vector<std::string>& a, ReplayOptions& o, std::ostream& err) {
    auto value = [&](size_t& i, std::string& into) {
        if (i + 1 >= a.size()) return false;
        into = a[++i];
        return true;
    };
    for (size_t i = 0; i < a.size(); ++i) {
        const std::string& w = a[i];
        bool ok = true;
        if (w == "--home") ok = value(i, o.home);
        else if (w == "--waypoints") ok = value(i, o.waypoints);
        else if (w == "--routes") ok = value(i, o.routes);
        else if (w == "--boundaries") ok = value(i, o.boundaries);
        else if (w == "--route") ok = value(i, o.route);
        else if (w == "--answer") {
            // One or more CAPTION=BUTTON after it, up to the next option.
            size_t taken = 0;
            while (i + 1 < a.size() && a[i + 1].rfind("--", 0) != 0 && a[i + 1].find('=') != std::string::npos) {
                const std::string& pair = a[++i];
                size_t eq = pair.rfind('=');
                std::string caption = pair.substr(0, eq), button = pair.substr(eq + 1);
                if (caption.empty() || button.empty()) {
                    err << "ombra-cli replay: --answer wants CAPTION=BUTTON, not \"" << pair << "\"\n" << kUsage;
                    return false;
                }
                o.answers[caption] = button;
                ++taken;
            }
            ok = taken > 0;
        } else if (w.rfind("--", 0) == 0 || !o.log.empty()) {
            err << "ombra-cli replay: unexpected \"" << w << "\"\n" << kUsage;
            return false;
        } else {
            o.log = w;
        }
        if (!ok) {
            err << "ombra-cli replay: " << w << " wants a value\n" << kUsage;
            return false;
        }
    }
    if (o.log.empty() || o.home.empty()) {
        err << kUsage;
        return false;
    }
    return true;
}

int RunReplay(const ReplayOptions& o, std::ostream& out, std::ostream& err, ReplayFigures* figures) {
    namespace fs = std::filesystem;
    std::error_code ec;
    if (!fs::is_directory(o.home, ec)) {
        err << "ombra-cli replay: the home folder " << o.home << " does not exist\n";
        return 2;
    }
    const std::string home = fs::absolute(o.home, ec).lexically_normal().string();
    ReplayLog log;
    std::string why;
    if (!fs::is_regular_file(o.log, ec) || !log.Open(o.log, why)) {
        err << "ombra-cli replay: cannot read the log " << o.log << "\n";
        return 2;
    }
    LogStart start;
    if (!log.FindStart(start, Today())) {
        err << "ombra-cli replay: " << o.log << " holds no position fix with a time (GGA, RMC or GLL)\n";
        return 1;
    }
    if (!start.dated) err << "ombra-cli replay: " << o.log << " has no RMC date; the replay takes today's date\n";

    IniSnapshot settings;
    if (!settings.Load((fs::path(home) / "Vestrane.ini").string(), why)) {
        err << "ombra-cli replay: " << why << "\n";
        return 2;
    }
    // The GPS is the log: it starts without the question, on its port.
    const std::string section = "Tarnel";
    settings.Write("", section, "AutoStartupGPS", "2");
    double port = IsNumeric(settings.Get(section, "GPSPort")) ? Val(settings.Get(section, "GPSPort")) : 1.0;
    if (!settings.Read("", section, "GPSPort")) port = 1.0;  // the program's default
    if (!(port >= 1.0 && port <= 8.0)) port = 1.0;
    const int16_t gpsPort = int16_t(std::lround(port));
    settings.Write("", section, "GPSPort", std::to_string(gpsPort));

    ManualClock clock;
    clock.now = start.when;
    NoEvents events;
    EventSink sink(out, clock);
    ReplayDialogs dialogs(sink, o.answers);
    ReplayShell shell(sink, o.answers);

    // The autopilot: the GPS port's own device, when it is one to write to.
    std::unique_ptr<AutopilotLine> autopilot;
    PortAddress addr = ParsePortAddress(settings.Get(section, "ComPort" + std::to_string(gpsPort)), home + "/");
    if (addr.kind == PortAddress::Kind::Serial && fs::equivalent(addr.path, o.log, ec)) {
        err << "ombra-cli replay: the GPS port's device is the log itself; no NMEA output is written\n";
    } else if (addr.kind == PortAddress::Kind::Serial) {
        autopilot = std::make_unique<AutopilotLine>(sink, addr.path);
        double baud = Val(settings.Get(section, "GPSBaudRate"));
        if (!autopilot->Open(baud > 0 && baud < 1e7 ? int32_t(baud) : 4800, why)) {
            err << "ombra-cli replay: the autopilot port cannot be written: " << why << "\n";
            autopilot.reset();
        }
    }
    ReplayComms comms(log, gpsPort, autopilot.get());

    Plotter plotter({settings, dialogs, clock, events, shell, &comms, nullptr});
    shell.SetPlotter(&plotter);
    if (!plotter.Start("NOSPLASH", home + "/ombra", home, o.sharedData)) {
        err << "ombra-cli replay: the plotter did not start\n";
        return 1;
    }
    shell.WatchMode();

    NavObjects& nav = plotter.nav();
    if (!OpenStore(nav.waypoints, o.waypoints, "waypoint", shell.navWindows(), err) ||
        !OpenStore(nav.routes, o.routes, "route", shell.navWindows(), err) ||
        !OpenStore(nav.boundaries, o.boundaries, "boundary", shell.navWindows(), err))
        return 2;
    int16_t routeSlot = 0;
    if (!o.route.empty()) {
        for (int16_t s = 1; s <= nav.routes.Count() && routeSlot == 0; ++s) {
            const Route* r = nav.routes.At(s);
            if (r && r->Used() && UCase(r->Name) == UCase(o.route)) routeSlot = s;
        }
        if (routeSlot == 0) {
            err << "ombra-cli replay: no route \"" << o.route << "\" in the route database"
                << (nav.routes.IsOpen() ? " \"" + nav.routes.CurrentName + "\"" : std::string(" (none is open)")) << "\n";
            return 2;
        }
    }

    // The main timer: every 100 ms of the log's clock until a second after
    // its last line.
    const double t0 = start.when.Serial();
    long long tick = 0;
    double end = start.lastDue + 1.0 / 86400.0;
    for (;;) {
        ++tick;
        clock.now = DateTime::FromSerial(t0 + tick * 0.1 / 86400.0);
        const double now = clock.now.Serial();
        comms.Deliver(now);
        plotter.Tick();
        shell.WatchMode();
        if (routeSlot != 0 && plotter.VesselActive()) {
            nav.routes.SelectedRoute = routeSlot;
            plotter.ActivateCommandRoute(nav.routes.At(routeSlot)->Name);
            routeSlot = 0;
        }
        if (comms.Drained() && now >= end) break;
        // A port that never drains (nothing here should make one) cannot
        // hold the replay for more than an hour past the log's end.
        if (now > end + 1.0 / 24.0) break;
    }
    plotter.Close(1, 0, 0, 0, 0);
    shell.WatchMode();
    if (figures) {
        figures->ticks = tick;
        figures->lines = comms.Delivered();
        figures->simulatedSeconds = tick * 0.1;
    }
    return 0;
}

}  // namespace ombra
