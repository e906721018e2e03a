#include "charts/DemoTideRegion.h"

#include <cmath>
#include <complex>
#include <iterator>

#include "charts/DemoChart.h"
#include "core/Angles.h"

namespace ombra {

namespace {

using Phasor = std::complex<double>;  // A e^{-ig}: a component is Re(P e^{i(V+u)})

constexpr int kRows = 81, kCols = 161;  // a quarter minute apart over the chart
constexpr double kSouth = 49.0 + 50.0 / 60.0, kNorth = 50.0 + 10.0 / 60.0;
constexpr double kWest = -12.0 - 20.0 / 60.0, kEast = -12.0 + 20.0 / 60.0;

struct Ellipse {
    const char* name;
    double major, minor;  // m/s
    double phase;         // degrees: the lag of the maximum towards the axis
};
constexpr double kAxis = 60.0;  // bearing of the flood half of the major axis
constexpr Ellipse kOpenSea[] = {{"M2", 0.77, 0.26, 120.0}, {"S2", 0.77 / 3, 0.26 / 3, 169.0}};

constexpr double kRaceOffshore = 0.35;  // NM off each headland point
constexpr double kRaceWidth = 0.45;     // NM, the race's e-folding distance
constexpr double kRaceGain = 1.5;       // extra stream at the heart of a race
constexpr double kBayWidth = 0.4;       // NM
constexpr double kBayShelter = 0.85;    // fraction of the stream the bay's mouth loses
constexpr double kLagPerMile = 0.8;     // degrees eastward

Phasor Lag(double degrees) { return std::polar(1.0, -degrees * kDegToRad); }

// East and north, in nautical miles from the island's centre.
struct Local {
    double e = 0, n = 0;
};
Local ToLocal(const LatLong& p) {
    const LatLong c = DemoChart::IslandCentre();
    return {(p.Long - c.Long) / 60.0 * std::cos(c.Lat / 3600.0 * kDegToRad), (p.Lat - c.Lat) / 60.0};
}
double Gauss(const Local& a, const Local& b, double width) {
    const double de = a.e - b.e, dn = a.n - b.n;
    return std::exp(-(de * de + dn * dn) / (width * width));
}

struct Features {
    Local races[2];
    Local bay;
};
Features FindFeatures() {
    Features f;
    LatLong east, south;
    DemoChart::BayHeadlands(east, south);
    int i = 0;
    for (const LatLong& h : {east, south}) {
        const Local p = ToLocal(h);
        const double r = std::hypot(p.e, p.n), k = (r + kRaceOffshore) / r;
        f.races[i++] = {p.e * k, p.n * k};
    }
    f.bay = ToLocal(DemoChart::HarbourEntrance());
    return f;
}

// How much of the open-sea stream runs at a point of water `depth` metres deep.
double Strength(const Features& f, const Local& p, double depth) {
    const double shoal = depth / (depth + 2.0);
    const double race = 1.0 + kRaceGain * (Gauss(p, f.races[0], kRaceWidth) + Gauss(p, f.races[1], kRaceWidth));
    const double shelter = 1.0 - kBayShelter * Gauss(p, f.bay, kBayWidth);
    return shoal * race * shelter;
}

void Store(const Phasor& p, float& amp, float& phase) {
    amp = float(std::abs(p));
    double g = -std::arg(p) / kDegToRad;
    if (g < 0) g += 360.0;
    phase = float(g);
}

}  // namespace

tide::RegionData DemoTideRegion() {
    tide::RegionData r;
    r.name = "Ile Ombra";
    r.south = kSouth;
    r.west = kWest;
    r.north = kNorth;
    r.east = kEast;
    r.layout = tide::Layout::Grid;
    r.rows = kRows;
    r.cols = kCols;
    for (const Ellipse& c : kOpenSea) r.constituents.push_back(c.name);
    const size_t nodes = size_t(kRows) * size_t(kCols), nk = r.constituents.size();
    r.sea.assign(nodes, 0);
    r.harmonics.assign(nodes * nk, tide::NodeHarmonic{});

    // The open-sea ellipses as east and north phasors: along the axis at the
    // constituent's phase, across it (to the right, so the stream turns
    // clockwise) a quarter period later.
    const double sa = std::sin(kAxis * kDegToRad), ca = std::cos(kAxis * kDegToRad);
    Phasor openEast[std::size(kOpenSea)], openNorth[std::size(kOpenSea)];
    for (size_t k = 0; k < nk; ++k) {
        const Ellipse& c = kOpenSea[k];
        const Phasor along = c.major * Lag(c.phase), across = c.minor * Lag(c.phase + 90.0);
        openEast[k] = along * sa + across * ca;
        openNorth[k] = along * ca - across * sa;
    }

    const Features f = FindFeatures();
    for (int row = 0; row < kRows; ++row) {
        const double lat = kSouth + row * (kNorth - kSouth) / (kRows - 1);
        for (int col = 0; col < kCols; ++col) {
            const double lon = kWest + col * (kEast - kWest) / (kCols - 1);
            const LatLong pos{lon * 3600.0, lat * 3600.0};
            const double depth = DemoChart::DepthAt(pos);
            if (depth < 0) continue;  // land or drying: no stream
            const size_t node = size_t(row) * size_t(kCols) + size_t(col);
            r.sea[node] = 1;
            const Local p = ToLocal(pos);
            const Phasor here = Strength(f, p, depth) * Lag(kLagPerMile * p.e);
            for (size_t k = 0; k < nk; ++k) {
                tide::NodeHarmonic& h = r.harmonics[node * nk + k];
                Store(openEast[k] * here, h.eastAmp, h.eastPhase);
                Store(openNorth[k] * here, h.northAmp, h.northPhase);
            }
        }
    }
    return r;
}

}  // namespace ombra
