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
#include <cmath>
#include <iostream>

#include "app/cli/CliCommand.h"
#include "charts/DemoTideRegion.h"
#include "platform/tidestream/TcdImport.h"

namespace ombra::cli {
namespace {

int Usage(std::ostream& err) {
    err << "usage: ombra-cli tide build-region --tcd FILE --box S W N E --out DIR/RegionNN"
           " [--name NAME] [--radius NM]\n";
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

int RunTide(const CliArgs& a, std::ostream& out, std::ostream& err) {
    if (!a.empty() && a[0] == "build-region") return BuildRegion(a, out, err);
    if (!a.empty() && a[0] == "make-demo") return MakeDemo(a, out, err);
    return Usage(err);
}

CliRegistration reg{{"tide", "tide build-region --tcd FILE --box S W N E --out DIR/RegionNN [--name NAME] [--radius NM]"
                                "\n  tide make-demo --out DIR/RegionNN", RunTide}};

}  // namespace
}  // namespace ombra::cli
