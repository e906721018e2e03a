// Navigation mathematics from the command line, in the manner of
// GeographicLib's RhumbSolve, GeodSolve and MagneticField: decimal degrees
// in, one line of numbers out, nine decimals.
//
//   ombra-cli course rl 50.05 -12.1 51.47 -2.61   -> "COURSE DISTANCE" (degrees true, nautical miles)
//   ombra-cli course gc 50.05 -12.1 51.47 -2.61
//   ombra-cli dr 0 10 90 60                         -> "LAT LON" (decimal degrees): "0.000000000 11.000000000"
//   ombra-cli magvar -53.16 -70.91 1950             -> variation in degrees, east positive
//   ombra-cli magvar --dat FOLDER 50 -1 2026.5       (the folder of the DGRF/IGRF files)
//
// A malformed argument is named on stderr and the exit code is 2.
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <ostream>
#include <string>
#include <system_error>

#include "app/cli/CliCommand.h"
#include "core/Paths.h"
#include "core/Val.h"
#include "navmath/MagVar.h"
#include "navmath/RLGC.h"

namespace ombra::cli {
namespace {

constexpr int kUsageError = 2;

// A whole argument as a finite number, or false.
bool ParseNumber(const std::string& text, double& value) {
    const std::string t = Trim(text);
    if (t.empty() || !IsNumeric(t)) return false;
    const char* first = t.data();
    if (*first == '+') ++first;
    auto [end, ec] = std::from_chars(first, t.data() + t.size(), value);
    return ec == std::errc() && end == t.data() + t.size() && std::isfinite(value);
}

bool ParseRanged(const std::string& text, const char* name, double lo, double hi, double& value, std::ostream& err) {
    if (!ParseNumber(text, value)) {
        err << "ombra-cli: " << name << " '" << text << "' is not a number\n";
        return false;
    }
    if (value < lo || value > hi) {
        err << "ombra-cli: " << name << " " << text << " is outside " << lo << " to " << hi << "\n";
        return false;
    }
    return true;
}

bool ParsePosition(const std::string& lat, const std::string& lon, LatLong& pos, std::ostream& err) {
    double la = 0, lo = 0;
    if (!ParseRanged(lat, "latitude", -90.0, 90.0, la, err)) return false;
    if (!ParseRanged(lon, "longitude", -180.0, 180.0, lo, err)) return false;
    pos = LatLong{lo * 3600.0, la * 3600.0};
    return true;
}

std::ostream& Fixed9(std::ostream& out) { return out << std::fixed << std::setprecision(9); }

// A value that prints as zero prints without a sign.
double Shown(double v) { return std::fabs(v) < 5e-10 ? 0.0 : v; }

int RunCourse(const CliArgs& a, std::ostream& out, std::ostream& err) {
    if (a.size() != 5 || (a[0] != "rl" && a[0] != "gc")) {
        err << "usage: ombra-cli course rl|gc LAT1 LON1 LAT2 LON2\n";
        return kUsageError;
    }
    LatLong from, to;
    if (!ParsePosition(a[1], a[2], from, err) || !ParsePosition(a[3], a[4], to, err)) return kUsageError;
    double course = 0, distance = 0;
    CourseDistance(a[0] == "gc" ? 1 : 0, from, to, course, distance);
    Fixed9(out) << Shown(course) << " " << Shown(distance) << "\n";
    return 0;
}

int RunDeadReckon(const CliArgs& a, std::ostream& out, std::ostream& err) {
    if (a.size() != 4) {
        err << "usage: ombra-cli dr LAT LON COURSE DIST\n";
        return kUsageError;
    }
    LatLong from;
    double course = 0, distance = 0;
    if (!ParsePosition(a[0], a[1], from, err)) return kUsageError;
    if (!ParseRanged(a[2], "course", -360.0, 720.0, course, err)) return kUsageError;
    if (!ParseRanged(a[3], "distance", -21600.0, 21600.0, distance, err)) return kUsageError;
    LatLong p;
    DeadReckon(p, from, course, distance, 3600.0);
    Fixed9(out) << Shown(p.Lat / 3600.0) << " " << Shown(p.Long / 3600.0) << "\n";
    return 0;
}

// The coefficient folder: --dat, else the program's install folder
// ($OMBRA_HOME or ~/.local/share/Vestrane, its "dat" folder), else the
// shipped files of a build inside the source tree.
std::string FindDatFolder() {
    std::vector<std::string> candidates;
    if (const char* home = std::getenv("OMBRA_HOME"); home && *home) candidates.push_back(std::string(home) + "/dat");
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
        candidates.push_back(std::string(xdg) + "/Vestrane/dat");
    else if (const char* h = std::getenv("HOME"); h && *h)
        candidates.push_back(std::string(h) + "/.local/share/Vestrane/dat");
    std::error_code ec;
    auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        for (auto dir = exe.parent_path(); !dir.empty() && dir != dir.root_path(); dir = dir.parent_path())
            candidates.push_back((dir / "data/install/dat").string());
    }
    for (const auto& c : candidates) {
        if (FileExists(c + "/" + MagVar::CoefficientFileName(MagVar::kLastEpoch))) return c;
    }
    return candidates.empty() ? std::string("dat") : candidates.front();
}

int RunMagVar(const CliArgs& args, std::ostream& out, std::ostream& err) {
    CliArgs a = args;
    std::string dat;
    if (a.size() >= 2 && a[0] == "--dat") {
        dat = a[1];
        a.erase(a.begin(), a.begin() + 2);
    }
    if (a.size() != 3) {
        err << "usage: ombra-cli magvar [--dat FOLDER] LAT LON YEAR\n";
        return kUsageError;
    }
    LatLong pos;
    double year = 0;
    if (!ParsePosition(a[0], a[1], pos, err)) return kUsageError;
    if (!ParseRanged(a[2], "year", MagVar::kFirstEpoch, MagVar::kLastEpoch + MagVar::kForecastYears, year, err))
        return kUsageError;
    if (dat.empty()) dat = FindDatFolder();
    MagVar magVar(dat);
    MagVarError error = MagVarError::None;
    const double v = magVar.DeclinationForYear(pos, year, &error);
    if (error != MagVarError::None) {
        err << "ombra-cli: " << kMagVarErrorTitle << ": " << MagVarErrorText(error) << "\n";
        err << "ombra-cli: coefficient folder: " << dat << "\n";
        return 1;
    }
    Fixed9(out) << Shown(v) << "\n";
    return 0;
}

CliRegistration regCourse{{"course", "course rl|gc LAT1 LON1 LAT2 LON2   course (degrees true) and distance (miles)",
                           RunCourse}};
CliRegistration regDr{{"dr", "dr LAT LON COURSE DIST                dead-reckoned position (decimal degrees)",
                       RunDeadReckon}};
CliRegistration regMagVar{{"magvar", "magvar [--dat FOLDER] LAT LON YEAR   magnetic variation (degrees, east positive)",
                           RunMagVar}};

}  // namespace
}  // namespace ombra::cli
