// ombra-cli tide: tidal stream regions.
//
//   ombra-cli tide build-region --tcd FILE --box S W N E --out DIR/RegionNN
//                               [--name NAME] [--radius NM]
//       the tidal-current reference stations of a .tcd harmonic database
//       (XTide's) inside the box, in degrees, become a region of scattered
//       stations, DIR/RegionNN.Hdr and .Hrm; a station's stream reaches
//       --radius nautical miles (10 unless given). Prints what was used and
//       what was skipped, and why.
//
//   ombra-cli tide make-demo --out DIR/RegionNN
//       the streams round the island of the demo chart (DemoTideRegion),
//       DIR/RegionNN.Hdr and .Hrm.
//
//   ombra-cli tide regions --home DIR
//       the regions of the home's tide data folder, as the plotter lists
//       them: one line each, "index name south west north east" (degrees).
//
//   ombra-cli tide predict LAT LON "YYYY-MM-DD HH:MM[:SS]" --home DIR
//                          [--hours H --step MIN]
//       the stream at a position (degrees) from that time, every MIN minutes
//       (60 unless given) for H hours (0: that time alone), one JSON line a
//       time: {"time", "ok": true, "set" degrees true, "drift" knots,
//       "region"} or {"time", "ok": false, "region"} where the model has no
//       stream. The values are the tides module's, as the console shows them.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>

#include "app/cli/CliCommand.h"
#include "charts/DemoTideRegion.h"
#include "app/cli/replay/IniSnapshot.h"
#include "core/ErrorReport.h"
#include "core/Format.h"
#include "core/Paths.h"
#include "platform/tidestream/HarmonicTideStream.h"
#include "platform/tidestream/TcdImport.h"
#include "tides/Tides.h"

namespace ombra::cli {
namespace {

int Usage(std::ostream& err) {
    err << "usage: ombra-cli tide build-region --tcd FILE --box S W N E --out DIR/RegionNN"
           " [--name NAME] [--radius NM]\n"
           "       ombra-cli tide make-demo --out DIR/RegionNN\n"
           "       ombra-cli tide regions --home DIR\n"
           "       ombra-cli tide predict LAT LON \"YYYY-MM-DD HH:MM[:SS]\" --home DIR [--hours H --step MIN]\n";
    return 2;
}

bool Number(const std::string& s, double& v) {
    char* end = nullptr;
    v = std::strtod(s.c_str(), &end);
    return !s.empty() && end && *end == '\0' && std::isfinite(v);
}

int BuildRegion(const CliArgs& a, std::ostream& out, std::ostream& err) {
    std::string tcd, target, name;
    double box[4] = {}, radius = 10;
    bool haveBox = false;
    for (size_t i = 1; i < a.size(); ++i) {
        if (a[i] == "--box" && i + 4 < a.size()) {
            for (int k = 0; k < 4; ++k)
                if (!Number(a[i + 1 + size_t(k)], box[k])) return Usage(err);
            haveBox = true;
            i += 4;
        } else if (i + 1 >= a.size()) {
            return Usage(err);
        } else if (a[i] == "--tcd") {
            tcd = a[++i];
        } else if (a[i] == "--out") {
            target = a[++i];
        } else if (a[i] == "--name") {
            name = a[++i];
        } else if (a[i] == "--radius") {
            if (!Number(a[++i], radius) || radius <= 0 || radius > 500) return Usage(err);
        } else {
            return Usage(err);
        }
    }
    if (tcd.empty() || target.empty() || !haveBox) return Usage(err);
    const size_t slash = target.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
    const std::string base = slash == std::string::npos ? target : target.substr(slash + 1);
    if (base.empty()) return Usage(err);
    if (name.empty()) name = base;
    tide::TcdImportReport report;
    std::string why;
    auto region = tide::RegionFromTcd(tcd, {box[0], box[1], box[2], box[3]}, name, radius, report, &why);
    if (!region) {
        err << "ombra-cli tide build-region: " << why << "\n";
        return 1;
    }
    if (!tide::SaveRegion(*region, folder, base, &why)) {
        err << "ombra-cli tide build-region: " << why << "\n";
        return 1;
    }
    out << "stations: " << report.used << " into " << target << ".Hdr/.Hrm\n"
        << "constituents: " << region->constituents.size() << "\n"
        << "time offset: " << region->timeOffsetMinutes << " minutes\n"
        << "skipped: " << report.subordinate << " subordinate, " << report.heightOnly
        << " height only, " << report.hydraulic << " hydraulic, " << report.noDirection
        << " without flood direction, " << report.deeperBin << " deeper bins\n";
    if (!report.droppedConstituents.empty()) {
        out << "constituents left out:";
        for (const auto& c : report.droppedConstituents) out << " " << c;
        out << "\n";
    }
    return 0;
}

// DIR/RegionNN into the folder (with its separator, "." when none) and the base name.
bool SplitTarget(const std::string& target, std::string& folder, std::string& base) {
    const size_t slash = target.find_last_of('/');
    folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
    base = slash == std::string::npos ? target : target.substr(slash + 1);
    return !base.empty();
}

int MakeDemo(const CliArgs& a, std::ostream& out, std::ostream& err) {
    std::string folder, base, why;
    if (a.size() != 3 || a[1] != "--out" || !SplitTarget(a[2], folder, base)) {
        err << "usage: ombra-cli tide make-demo --out DIR/RegionNN\n";
        return 2;
    }
    const tide::RegionData region = DemoTideRegion();
    if (!tide::SaveRegion(region, folder, base, &why)) {
        err << "ombra-cli tide make-demo: " << why << "\n";
        return 1;
    }
    size_t sea = 0;
    for (uint8_t s : region.sea) sea += s;
    out << region.name << ": " << region.rows << " x " << region.cols << " nodes, " << sea
        << " at sea, into " << a[2] << ".Hdr/.Hrm\n";
    return 0;
}

// Messages of the tides module (a region refused, say) go to the error
// stream; every question answers its default.
class StreamDialogs : public Dialogs {
public:
    explicit StreamDialogs(std::ostream& err) : err_(err) {}
    int MsgBox(const std::string& text, int style, const std::string&) override {
        err_ << "ombra-cli tide: " << text << "\n";
        const int buttons = style & 15;
        return buttons == mb::YesNo || buttons == mb::YesNoCancel ? mb::Yes : mb::OK;
    }
    bool InputBox(const std::string&, const std::string&, std::string&) override { return false; }
    int PickFromList(const std::string&, const std::vector<std::string>&, int) override { return -1; }
    std::string OpenFileName(const std::string&, const std::string&, const std::string&) override { return {}; }
    std::string SaveFileName(const std::string&, const std::string&, const std::string&) override { return {}; }
    std::string FolderName(const std::string&, const std::string&) override { return {}; }

private:
    std::ostream& err_;
};

// The home's tide regions, listed as the plotter lists them at start-up:
// the user data folder of the home's settings (the home itself unless they
// name another) with "Dat" behind it.
struct HomeTides {
    StreamDialogs dialogs;
    ErrorReporter errors;
    HarmonicTideStream stream;
    Tides tides;
    explicit HomeTides(std::ostream& err) : dialogs(err), errors(dialogs, "ombra-cli"), tides(stream, errors) {}
    bool Open(const std::string& home, std::ostream& err) {
        namespace fs = std::filesystem;
        std::error_code ec;
        if (!fs::is_directory(home, ec)) {
            err << "ombra-cli tide: the home folder " << home << " does not exist\n";
            return false;
        }
        IniSnapshot ini;
        std::string why, data = WithTrailingSlash(fs::absolute(home, ec).lexically_normal().string());
        if (ini.Load((fs::path(home) / "Vestrane.ini").string(), why)) {
            const std::string own = ini.Get("Tarnel", "UserDataPath");
            if (!own.empty()) data = WithTrailingSlash(NativePath(own));
        }
        tides.SetDataPath(data + "Dat/");
        tides.ListTideRegions();
        return true;
    }
};

// Options of the form --name VALUE; false on any other word.
bool Options(const CliArgs& a, size_t from, std::map<std::string, std::string>& opts) {
    for (size_t i = from; i < a.size(); i += 2) {
        if (a[i].rfind("--", 0) != 0 || i + 1 >= a.size()) return false;
        opts[a[i]] = a[i + 1];
    }
    return true;
}

// Shortest text that reads back as the same float.
std::string Shortest(float v) {
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, r.ptr);
}

std::string JsonText(const std::string& s) {
    std::string o = "\"";
    for (char c : s) {
        if (c == '"' || c == '\\') o += '\\';
        if (static_cast<unsigned char>(c) < 0x20) {
            char esc[8];
            std::snprintf(esc, sizeof esc, "\\u%04x", c);
            o += esc;
        } else {
            o += c;
        }
    }
    return o + "\"";
}

int RegionsUsage(std::ostream& err) {
    err << "usage: ombra-cli tide regions --home DIR\n";
    return 2;
}

int Regions(const CliArgs& a, std::ostream& out, std::ostream& err) {
    std::map<std::string, std::string> opts;
    if (!Options(a, 1, opts) || !opts.count("--home") || opts.size() != 1) return RegionsUsage(err);
    HomeTides home(err);
    if (!home.Open(opts["--home"], err)) return 2;
    const auto& list = home.tides.TideRegions();
    for (size_t i = 1; i < list.size(); ++i) {
        const TideRegion& r = list[i];
        char box[128];
        std::snprintf(box, sizeof box, "%.6f %.6f %.6f %.6f", r.LatMin / 3600.0, r.LongMin / 3600.0,
                      r.LatMax / 3600.0, r.LongMax / 3600.0);
        out << i << " " << r.Name << " " << box << "\n";
    }
    return 0;
}

int PredictUsage(std::ostream& err) {
    err << "usage: ombra-cli tide predict LAT LON \"YYYY-MM-DD HH:MM[:SS]\" --home DIR [--hours H --step MIN]\n";
    return 2;
}

// "YYYY-MM-DD HH:MM[:SS]" as a date serial.
bool ParseWhen(const std::string& s, double& serial) {
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, sec = 0, used = 0;
    const int n = std::sscanf(s.c_str(), "%4d-%2d-%2d %2d:%2d%n", &y, &mo, &d, &h, &mi, &used);
    if (n < 5) return false;
    if (size_t(used) < s.size()) {
        int more = 0;
        if (std::sscanf(s.c_str() + used, ":%2d%n", &sec, &more) < 1 || size_t(used + more) != s.size()) return false;
    }
    if (!IsValidDate(y, mo, d) || h > 23 || mi > 59 || sec > 59 || h < 0 || mi < 0 || sec < 0) return false;
    DateTime t;
    t.year = y;
    t.month = mo;
    t.day = d;
    t.hour = h;
    t.minute = mi;
    t.second = sec;
    serial = t.Serial();
    return true;
}

int Predict(const CliArgs& a, std::ostream& out, std::ostream& err) {
    double lat = 0, lon = 0, start = 0, hours = 0, step = 60;
    std::map<std::string, std::string> opts;
    if (a.size() < 4 || !Number(a[1], lat) || !Number(a[2], lon) || !ParseWhen(a[3], start) ||
        !Options(a, 4, opts) || !opts.count("--home"))
        return PredictUsage(err);
    for (const auto& [k, v] : opts) {
        if (k == "--hours") {
            if (!Number(v, hours) || hours < 0 || hours > 24 * 366) return PredictUsage(err);
        } else if (k == "--step") {
            if (!Number(v, step) || step < 1.0 / 60.0 || step > 24 * 60 * 366) return PredictUsage(err);
        } else if (k != "--home") {
            return PredictUsage(err);
        }
    }
    if (std::fabs(lat) > 90 || std::fabs(lon) > 180) return PredictUsage(err);
    HomeTides home(err);
    if (!home.Open(opts["--home"], err)) return 2;
    const LatLong pos{lon * 3600.0, lat * 3600.0};
    const int16_t index = home.tides.FindTideRegion(pos);
    const std::string region = index > 0 ? JsonText(home.tides.TideRegions()[size_t(index)].Name) : "null";
    const long long steps = std::llround(std::floor(hours * 60.0 / step + 1e-9));
    for (long long k = 0; k <= steps; ++k) {
        const double when = start + k * step * 60.0 / 86400.0;
        home.tides.TideTime = when;
        float drift = 0, set = 0;
        const bool ok = home.tides.GetTide(pos, drift, set);
        out << "{\"time\":\"" << FormatDate(DateTime::FromSerial(when), "yyyy-mm-dd hh:nn:ss") << "\",\"ok\":"
            << (ok ? "true" : "false");
        if (ok) out << ",\"set\":" << Shortest(set) << ",\"drift\":" << Shortest(drift);
        out << ",\"region\":" << region << "}\n";
    }
    return 0;
}

int RunTide(const CliArgs& a, std::ostream& out, std::ostream& err) {
    if (!a.empty() && a[0] == "build-region") return BuildRegion(a, out, err);
    if (!a.empty() && a[0] == "make-demo") return MakeDemo(a, out, err);
    if (!a.empty() && a[0] == "regions") return Regions(a, out, err);
    if (!a.empty() && a[0] == "predict") return Predict(a, out, err);
    return Usage(err);
}

CliRegistration reg{{"tide", "tide build-region --tcd FILE --box S W N E --out DIR/RegionNN [--name NAME] [--radius NM] | "
                     "tide make-demo --out DIR/RegionNN | "
                     "tide regions --home DIR | tide predict LAT LON \"YYYY-MM-DD HH:MM[:SS]\" --home DIR "
                     "[--hours H --step MIN]",
                     RunTide}};

}  // namespace
}  // namespace ombra::cli
