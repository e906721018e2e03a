// ombra-cli passage: a passage plan at the desk.
//
//   ombra-cli passage --home DIR --route NAME --speed KN
//                     --depart "YYYY-MM-DD HH:MM" [--no-tides] [--best]
//
// The plotter starts over the home (its settings are read, never written,
// and the GPS is not started), the route is taken from the open route
// database (the last one used, else the first of the index) and planned at
// KN knots from the departure, through the tide regions of the home's data
// folder unless --no-tides. Prints one JSON object: per leg "leg" (the
// number of the point it leaves; 0 the leg from the vessel), "distance",
// "course", "cts", "departure", "arrival", "tide_set", "tide_drift"; then
// "arrival", "total_time" ("dd, hh, mm"), "tidal_gain" and
// "total_distance"; a plan with a leg that cannot be made says "N/A" in
// the totals and "failed": true. With --best the 24 departures instead:
// "rows" (departure, arrival, duration in minutes, failed) and "best_row"
// (0 none).
//
// Exit status: 0 a plan (even a failed one); 1 the plotter did not start;
// 2 a usage error, a missing home or route.
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>

#include "app/cli/CliCommand.h"
#include "app/cli/replay/IniSnapshot.h"
#include "app/cli/replay/ReplayServices.h"
#include "core/Format.h"
#include "core/GenFuncs.h"
#include "core/Val.h"
#include "navobjects/CommonDB.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"
#include "plotter/WindowlessShell.h"

namespace ombra::cli {
namespace {

const char* const kUsage =
    "usage: ombra-cli passage --home DIR --route NAME --speed KN --depart \"YYYY-MM-DD HH:MM\" [--no-tides] [--best]\n";

std::string When(double serial) { return FormatDate(DateTime::FromSerial(serial), "yyyy-mm-dd hh:nn:ss"); }

std::string Quoted(const std::string& s) {
    std::string out;
    AppendJsonString(out, s);
    return out;
}

std::string Number(double v, const char* picture) { return std::isfinite(v) ? Format(v, picture) : "null"; }

int RunPassage(const CliArgs& a, std::ostream& out, std::ostream& err) {
    std::string home, routeName, speedText, departText;
    bool noTides = false, best = false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i] == "--no-tides") noTides = true;
        else if (a[i] == "--best") best = true;
        else if (i + 1 >= a.size()) return err << kUsage, 2;
        else if (a[i] == "--home") home = a[++i];
        else if (a[i] == "--route") routeName = a[++i];
        else if (a[i] == "--speed") speedText = a[++i];
        else if (a[i] == "--depart") departText = a[++i];
        else return err << kUsage, 2;
    }
    DateTime depart;
    int n = 0;
    if (home.empty() || routeName.empty() || !IsNumeric(speedText) || !(Val(speedText) > 0) ||
        std::sscanf(departText.c_str(), "%d-%d-%d %d:%d%n", &depart.year, &depart.month, &depart.day, &depart.hour,
                    &depart.minute, &n) != 5 ||
        size_t(n) != departText.size() || !IsValidDate(depart.year, depart.month, depart.day) || depart.hour > 23 ||
        depart.hour < 0 || depart.minute > 59 || depart.minute < 0)
        return err << kUsage, 2;

    namespace fs = std::filesystem;
    std::error_code ec;
    if (!fs::is_directory(home, ec)) {
        err << "ombra-cli passage: the home folder " << home << " does not exist\n";
        return 2;
    }
    home = fs::absolute(home, ec).lexically_normal().string();
    IniSnapshot settings;
    std::string why;
    if (!settings.Load((fs::path(home) / "Vestrane.ini").string(), why)) {
        err << "ombra-cli passage: " << why << "\n";
        return 2;
    }
    settings.Write("", "Tarnel", "AutoStartupGPS", "1");
    settings.Write("", "Tarnel", "AutoStartupChart", "False");
    ManualClock clock;
    clock.now = depart;
    NoEvents events;
    ScriptedDialogs dialogs;
    WindowlessShell shell;
    Plotter plotter({settings, dialogs, clock, events, shell});
    if (!plotter.Start("NOSPLASH", home + "/ombra", home, "")) {
        err << "ombra-cli passage: the plotter did not start\n";
        return 1;
    }
    Routes& routes = plotter.nav().routes;
    if (!routes.IsOpen()) {
        const std::vector<DBEntry> index = ReadIndex(routes.IndexPath);
        if (!index.empty()) {
            routes.CurrentName = index.front().Name;
            routes.CurrentFile = index.front().File;
            routes.OpenDB();
        }
    }
    int16_t slot = 0;
    for (int16_t s = 1; s <= routes.Count() && slot == 0; ++s)
        if (const Route* r = routes.At(s); r && r->Used() && UCase(r->Name) == UCase(routeName)) slot = s;
    if (slot == 0) {
        err << "ombra-cli passage: no route \"" << routeName << "\" in the route database"
            << (routes.IsOpen() ? " \"" + routes.CurrentName + "\"" : std::string(" (none is open)")) << "\n";
        plotter.Close(1, 0, 0, 0, 0);
        return 2;
    }

    PassageInputs in;
    in.speed = float(Val(speedText));
    in.useTides = !noTides;
    in.basis = 1;
    in.start = depart.Serial();
    in.now = in.start;
    in.bestDeparture = best;
    PassagePlanner& p = plotter.passage();
    p.PassageRoute = slot;
    p.CalcRoute(*routes.At(slot), in, plotter.units());

    std::string o = "{\"route\":" + Quoted(routes.At(slot)->Name);
    if (best) {
        o += ",\"rows\":[";
        for (size_t row = 1; row <= 24; ++row) {
            if (row > 1) o += ",";
            const bool failed = p.BestFailed[row];
            o += "{\"row\":" + std::to_string(row) + ",\"departure\":" + Quoted(When(p.BestDepartureTime[row])) +
                 ",\"arrival\":" + (failed ? "null" : Quoted(When(p.BestArrivalTime[row]))) +
                 ",\"duration\":" + (failed ? "null" : Number(p.BestDuration[row], "0")) +
                 ",\"total_time\":" + Quoted(failed ? "N/A" : PassageSpanText((long long)p.BestDuration[row])) +
                 ",\"failed\":" + (failed ? "true" : "false") + "}";
        }
        o += "],\"best_row\":" + std::to_string(p.BestRow) + "}";
    } else {
        const bool failed = p.TxtArrDate == "N/A";
        o += ",\"legs\":[";
        bool firstLeg = true;
        for (size_t i = 0; i < p.Legs.size(); ++i) {
            const PassageLeg& l = p.Legs[i];
            if (l.CTS == -1.0 || (i > 0 && l.Arrival == 0.0)) continue;
            if (!firstLeg) o += ",";
            firstLeg = false;
            o += "{\"leg\":" + std::to_string(int(i) == p.VesselLeg ? 0 : int(i)) +
                 ",\"distance\":" + Number(l.Distance, "0.000") + ",\"course\":" + Number(l.Course, "0.0") +
                 ",\"cts\":" + Number(l.CTS, "0.0") + ",\"departure\":" + Quoted(When(l.Departure)) +
                 ",\"arrival\":" + Quoted(When(l.Arrival)) + ",\"tide_set\":" + std::to_string(l.TideSet) +
                 ",\"tide_drift\":" + Number(l.TideDrift, "0.00") + "}";
        }
        o += "],\"arrival\":" + Quoted(failed ? "N/A" : When(p.Legs.back().Arrival)) +
             ",\"total_time\":" + Quoted(p.TxtTotTime) +
             ",\"tidal_gain\":" + (failed ? "\"N/A\"" : Number(p.TidalGain, "0.0")) +
             ",\"total_distance\":" + Number(p.TotalDistance, "0.000") + ",\"failed\":" + (failed ? "true" : "false") +
             "}";
    }
    out << o << "\n";
    plotter.Close(1, 0, 0, 0, 0);
    return 0;
}

CliRegistration reg{{"passage", "passage --home DIR --route NAME --speed KN --depart \"YYYY-MM-DD HH:MM\" [--no-tides] [--best]",
                     RunPassage}};

}  // namespace
}  // namespace ombra::cli
