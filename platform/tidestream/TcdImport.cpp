#include "platform/tidestream/TcdImport.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/wait.h>
#include <tcd.h>
#include <unistd.h>

#include "platform/tidestream/TideAstronomy.h"

namespace ombra::tide {
namespace {

constexpr double kKnot = 1852.0 / 3600.0;  // m/s

double Fold(double d) {
    d = std::fmod(d, 360.0);
    return d < 0 ? d + 360.0 : d;
}

struct Candidate {
    double lat, lon, depth;
    std::string name;
    double meridianHours;
    std::vector<std::pair<int, double>> amp;  // model constituent, knots (signed for Z0)
    std::vector<double> epoch;
    double flood;  // degrees true
};

// libtcd keeps one open database; this closes it on every way out.
struct OpenDb {
    bool ok;
    explicit OpenDb(const std::string& path) {
        std::string p = path;
        ok = open_tide_db(p.data());
    }
    ~OpenDb() {
        if (ok) close_tide_db();
    }
};

}  // namespace

double DepthInName(const std::string& name) {
    std::string low = name;
    for (char& c : low) c = char(std::tolower(static_cast<unsigned char>(c)));
    const size_t at = low.find("depth");
    if (at == std::string::npos) return 0;
    const char* p = low.c_str() + at + 5;
    while (*p == ' ') ++p;
    char* end = nullptr;
    const double v = std::strtod(p, &end);
    if (end == p || !std::isfinite(v)) return 0;
    while (*end == ' ') ++end;
    return *end == 'm' ? v / 0.3048 : v;
}

namespace {

std::optional<RegionData> ImportHere(const std::string& tcdPath, const TcdBox& box,
                                     const std::string& name, double radiusNm,
                                     TcdImportReport& report, std::string* error) {
    auto fail = [&](std::string why) {
        if (error) *error = std::move(why);
        return std::nullopt;
    };
    if (!(box.south < box.north && box.west < box.east && box.south >= -90 && box.north <= 90 &&
          box.west >= -180 && box.east <= 180))
        return fail("the box is not south < north, west < east in degrees");
    OpenDb db(tcdPath);
    if (!db.ok) return fail("cannot read " + tcdPath + " as a tide database");
    const DB_HEADER_PUBLIC h = get_tide_db_header();
    // The database's constituents as the model knows them.
    std::vector<int> known(h.constituents, -1);
    for (unsigned i = 0; i < h.constituents; ++i) {
        const char* n = get_constituent(int(i));
        if (auto k = n ? FindConstituent(n) : std::nullopt) known[i] = *k;
    }
    std::set<std::string> dropped;
    std::map<std::pair<double, double>, Candidate> atPlace;
    auto rec = std::make_unique<TIDE_RECORD>();
    for (unsigned i = 0; i < h.number_of_records; ++i) {
        TIDE_STATION_HEADER sh;
        if (!get_partial_tide_record(int(i), &sh)) continue;
        if (!(sh.latitude >= box.south && sh.latitude <= box.north && sh.longitude >= box.west &&
              sh.longitude <= box.east))
            continue;
        if (sh.record_type != REFERENCE_STATION) {
            ++report.subordinate;
            continue;
        }
        if (read_tide_record(int(i), rec.get()) < 0) continue;
        const char* unitsName = get_level_units(rec->level_units);
        const std::string units = unitsName ? unitsName : "";
        if (units == "knots^2") {
            ++report.hydraulic;
            continue;
        }
        if (units != "knots") {
            ++report.heightOnly;
            continue;
        }
        if (rec->max_direction < 0 || rec->max_direction > 360) {
            ++report.noDirection;
            continue;
        }
        Candidate c;
        c.lat = sh.latitude;
        c.lon = sh.longitude;
        c.name = sh.name;
        c.depth = DepthInName(c.name);
        const int z = rec->zone_offset;
        c.meridianHours = (z < 0 ? -1 : 1) * (std::abs(z) / 100 + (std::abs(z) % 100) / 60.0);
        c.flood = rec->max_direction;
        c.amp.push_back({*FindConstituent("Z0"), rec->datum_offset});
        c.epoch.push_back(0);
        for (unsigned k = 0; k < h.constituents && k < MAX_CONSTITUENTS; ++k) {
            if (rec->amplitude[k] <= 0) continue;
            if (known[k] < 0) {
                if (const char* n = get_constituent(int(k))) dropped.insert(n);
                continue;
            }
            c.amp.push_back({known[k], rec->amplitude[k]});
            c.epoch.push_back(rec->epoch[k]);
        }
        auto [it, fresh] = atPlace.try_emplace({c.lat, c.lon}, c);
        if (!fresh) {
            ++report.deeperBin;
            if (c.depth < it->second.depth) it->second = c;
        }
    }
    if (atPlace.empty()) return fail("no tidal-current station in the box can make a stream");
    report.droppedConstituents.assign(dropped.begin(), dropped.end());

    RegionData r;
    r.name = name;
    r.south = box.south;
    r.west = box.west;
    r.north = box.north;
    r.east = box.east;
    r.layout = Layout::Stations;
    r.radiusNm = radiusNm;
    // The region's constituents: every one some station carries, in the model's order.
    std::set<int> used;
    for (const auto& [place, c] : atPlace)
        for (const auto& [k, a] : c.amp) used.insert(k);
    std::map<int, size_t> column;
    for (int k : used) {
        column[k] = r.constituents.size();
        r.constituents.push_back(Table()[size_t(k)].name);
    }
    if (r.constituents.size() > kMaxConstituents) return fail("the stations carry more than 64 constituents");
    r.timeOffsetMinutes = int(std::lround(atPlace.begin()->second.meridianHours * 60));
    const size_t nk = r.constituents.size();
    for (const auto& [place, c] : atPlace) {
        r.stations.push_back({c.lat, c.lon, c.name});
        r.sea.push_back(1);
        const size_t base = r.harmonics.size();
        r.harmonics.resize(base + nk);
        const double se = std::sin(c.flood * 3.14159265358979323846 / 180.0);
        const double cn = std::cos(c.flood * 3.14159265358979323846 / 180.0);
        for (size_t j = 0; j < c.amp.size(); ++j) {
            const auto [k, a] = c.amp[j];
            // Epochs on the station's meridian to Greenwich lags.
            const double g = c.epoch[j] - Table()[size_t(k)].speed * c.meridianHours;
            const double east = a * kKnot * se, north = a * kKnot * cn;
            NodeHarmonic& nh = r.harmonics[base + column[k]];
            nh.eastAmp = float(std::fabs(east));
            nh.eastPhase = float(Fold(g + (east < 0 ? 180 : 0)));
            nh.northAmp = float(std::fabs(north));
            nh.northPhase = float(Fold(g + (north < 0 ? 180 : 0)));
        }
        ++report.used;
    }
    return r;
}

bool WriteAll(int fd, const std::string& s) {
    size_t at = 0;
    while (at < s.size()) {
        const ssize_t n = write(fd, s.data() + at, s.size() - at);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        at += size_t(n);
    }
    return true;
}

}  // namespace

// libtcd trusts its file: a damaged database can stop it with an assertion.
// So the database is read in a child process, which hands back the region's
// two files and the counts through a pipe, and whatever becomes of the
// child, the caller gets a region or a reason.
std::optional<RegionData> RegionFromTcd(const std::string& tcdPath, const TcdBox& box,
                                        const std::string& name, double radiusNm,
                                        TcdImportReport& report, std::string* error) {
    auto fail = [&](std::string why) {
        if (error) *error = std::move(why);
        return std::nullopt;
    };
    int fds[2];
    if (pipe(fds) != 0) return fail("cannot start the database reader");
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        close(fds[0]);
        close(fds[1]);
        return fail("cannot start the database reader");
    }
    if (child == 0) {
        close(fds[0]);
        // The child dies plainly on a fault, and cannot hang for ever.
        for (int sig : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGALRM}) std::signal(sig, SIG_DFL);
        alarm(120);
        TcdImportReport rep;
        std::string why;
        auto r = ImportHere(tcdPath, box, name, radiusNm, rep, &why);
        std::string msg;
        if (r) {
            msg = "OK\n" + std::to_string(rep.used) + " " + std::to_string(rep.subordinate) + " " +
                  std::to_string(rep.heightOnly) + " " + std::to_string(rep.hydraulic) + " " +
                  std::to_string(rep.noDirection) + " " + std::to_string(rep.deeperBin) + "\n";
            for (const auto& c : rep.droppedConstituents) msg += c + " ";
            const std::string hdr = HeaderText(*r);
            msg += "\n" + std::to_string(hdr.size()) + "\n" + hdr + HarmonicsBytes(*r);
        } else {
            msg = "ERR\n" + why;
        }
        _exit(WriteAll(fds[1], msg) ? 0 : 3);
    }
    close(fds[1]);
    std::string got;
    char buf[65536];
    for (;;) {
        const ssize_t n = read(fds[0], buf, sizeof buf);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        got.append(buf, size_t(n));
    }
    close(fds[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return fail("the database " + tcdPath + " is damaged: its reader stopped" +
                    (WIFSIGNALED(status) ? " (signal " + std::to_string(WTERMSIG(status)) + ")" : ""));
    if (got.rfind("ERR\n", 0) == 0) return fail(got.substr(4));
    // OK, counts, dropped constituents, header length, header, harmonics.
    std::vector<std::string> lines;
    size_t at = 0;
    for (int i = 0; i < 4; ++i) {
        const size_t e = got.find('\n', at);
        if (e == std::string::npos) return fail("the database reader answered nothing usable");
        lines.push_back(got.substr(at, e - at));
        at = e + 1;
    }
    const size_t hdrLen = std::strtoul(lines[3].c_str(), nullptr, 10);
    if (lines[0] != "OK" || hdrLen > got.size() - at) return fail("the database reader answered nothing usable");
    std::string why;
    auto r = ParseRegion(std::string_view(got).substr(at, hdrLen), std::string_view(got).substr(at + hdrLen), &why);
    if (!r) return fail("the database gave an unusable region: " + why);
    TcdImportReport rep;
    std::sscanf(lines[1].c_str(), "%d %d %d %d %d %d", &rep.used, &rep.subordinate, &rep.heightOnly,
                &rep.hydraulic, &rep.noDirection, &rep.deeperBin);
    std::string word;
    for (char c : lines[2] + " ") {
        if (c != ' ') word += c;
        else if (!word.empty()) rep.droppedConstituents.push_back(std::exchange(word, {}));
    }
    report = rep;
    return r;
}

}  // namespace ombra::tide
