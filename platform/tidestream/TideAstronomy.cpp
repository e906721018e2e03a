#include "platform/tidestream/TideAstronomy.h"

#include <cctype>
#include <cmath>

namespace ombra::tide {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kRad = kPi / 180.0;

double Fold(double deg) {
    double r = std::fmod(deg, 360.0);
    return r < 0 ? r + 360.0 : r;
}

// Days since 1970-01-01 of a proleptic Gregorian date (Hinnant's method).
long DaysFromCivil(long y, unsigned m, unsigned d) {
    y -= m <= 2;
    const long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = unsigned(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + long(doe) - 719468;
}

// Rates of T, s, h, p, N' and p1 in degrees per mean solar hour.
constexpr double kRates[6] = {15.0, 0.5490165, 0.0410686, 0.0046418, 0.0022064, 0.0000020};

enum Rule { None, Mm, Mf, O1, J1, OO1, M2, K1, K2, L2, M3 };

std::vector<Constituent> Build() {
    struct Simple {
        const char* name;
        int d[6];
        double phase;
        Rule rule;
    };
    // Schureman's arguments: T the mean sun's hour angle (180 at midnight).
    const Simple simple[] = {
        {"Z0", {0, 0, 0, 0, 0, 0}, 0, None},     // the mean, held still
        {"SA", {0, 0, 1, 0, 0, 0}, 0, None},     {"SSA", {0, 0, 2, 0, 0, 0}, 0, None},
        {"MM", {0, 1, 0, -1, 0, 0}, 0, Mm},      {"MF", {0, 2, 0, 0, 0, 0}, 0, Mf},
        {"2Q1", {1, -4, 1, 2, 0, 0}, 90, O1},    {"Q1", {1, -3, 1, 1, 0, 0}, 90, O1},
        {"RHO1", {1, -3, 3, -1, 0, 0}, 90, O1},  {"O1", {1, -2, 1, 0, 0, 0}, 90, O1},
        {"P1", {1, 0, -1, 0, 0, 0}, 90, None},   {"S1", {1, 0, 0, 0, 0, 0}, 0, None},
        {"K1", {1, 0, 1, 0, 0, 0}, -90, K1},     {"J1", {1, 1, 1, -1, 0, 0}, -90, J1},
        {"OO1", {1, 2, 1, 0, 0, 0}, -90, OO1},   {"2N2", {2, -4, 2, 2, 0, 0}, 0, M2},
        {"MU2", {2, -4, 4, 0, 0, 0}, 0, M2},     {"N2", {2, -3, 2, 1, 0, 0}, 0, M2},
        {"NU2", {2, -3, 4, -1, 0, 0}, 0, M2},    {"M2", {2, -2, 2, 0, 0, 0}, 0, M2},
        {"LDA2", {2, -1, 0, 1, 0, 0}, 180, M2},  {"L2", {2, -1, 2, -1, 0, 0}, 180, L2},
        {"T2", {2, 0, -1, 0, 0, 1}, 0, None},    {"S2", {2, 0, 0, 0, 0, 0}, 0, None},
        {"R2", {2, 0, 1, 0, 0, -1}, 180, None},  {"K2", {2, 0, 2, 0, 0, 0}, 0, K2},
        {"M3", {3, -3, 3, 0, 0, 0}, 0, M3},
    };
    std::vector<Constituent> out;
    for (const Simple& s : simple) {
        Constituent c;
        c.name = s.name;
        for (int k = 0; k < 6; ++k) {
            c.d[k] = s.d[k];
            c.speed += s.d[k] * kRates[k];
        }
        c.phase = s.phase;
        c.rule = s.rule;
        out.push_back(c);
    }
    auto idx = [&](const char* n) {
        for (size_t i = 0; i < out.size(); ++i)
            if (out[i].name == n) return int(i);
        return -1;
    };
    struct Compound {
        const char* name;
        std::vector<std::pair<const char*, int>> parts;
    };
    const Compound compound[] = {
        {"MSF", {{"S2", 1}, {"M2", -1}}},  {"2SM2", {{"S2", 2}, {"M2", -1}}},
        {"MK3", {{"M2", 1}, {"K1", 1}}},   {"2MK3", {{"M2", 2}, {"K1", -1}}},
        {"MN4", {{"M2", 1}, {"N2", 1}}},   {"M4", {{"M2", 2}}},
        {"MS4", {{"M2", 1}, {"S2", 1}}},   {"MK4", {{"M2", 1}, {"K2", 1}}},
        {"S4", {{"S2", 2}}},               {"M6", {{"M2", 3}}},
        {"2MS6", {{"M2", 2}, {"S2", 1}}},  {"2MN6", {{"M2", 2}, {"N2", 1}}},
        {"S6", {{"S2", 3}}},               {"M8", {{"M2", 4}}},
    };
    for (const Compound& k : compound) {
        Constituent c;
        c.name = k.name;
        for (auto [n, m] : k.parts) {
            const int i = idx(n);
            c.parts.push_back({i, m});
            c.speed += m * out[size_t(i)].speed;
            for (int d = 0; d < 6; ++d) c.d[d] += m * out[size_t(i)].d[d];
            c.phase += m * out[size_t(i)].phase;
        }
        out.push_back(c);
    }
    return out;
}

}  // namespace

double DaysFromJ2000(int year, int month, int day, int hour, int minute, double second) {
    const long days = DaysFromCivil(year, unsigned(month), unsigned(day)) - 10957;  // 2000-01-01
    return double(days) - 0.5 + (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
}

AstroArgs ArgsAt(double d) {
    // Schureman's polynomials, in Julian centuries from 1899-12-31 12:00 of
    // ephemeris time, which runs about 69 s ahead of the clock these years.
    const double t = (d + 69.0 / 86400.0 + 36525.0) / 36525.0, t2 = t * t, t3 = t2 * t;
    AstroArgs a;
    a.T = Fold(360.0 * (d - std::floor(d)));  // the mean sun's hour angle: 0 at noon
    a.s = Fold(270.434164 + 481267.8831 * t - 0.001133 * t2 + 0.0000019 * t3);
    a.h = Fold(279.696678 + 36000.768925 * t + 0.0003025 * t2);
    a.p = Fold(334.329556 + 4069.0340333 * t - 0.010325 * t2 - 0.0000125 * t3);
    a.N = Fold(259.183275 - 1934.142008 * t + 0.002078 * t2 + 0.0000022 * t3);
    a.p1 = Fold(281.220833 + 1.719175 * t + 0.000453 * t2 + 0.000003 * t3);
    return a;
}

Nodal NodalAt(const AstroArgs& a) {
    const double w = 23.452 * kRad, i = 5.145 * kRad;
    double N = a.N > 180 ? a.N - 360 : a.N;
    N *= kRad;
    Nodal n;
    const double cosI = std::cos(i) * std::cos(w) - std::sin(i) * std::sin(w) * std::cos(N);
    n.I = std::acos(cosI) / kRad;
    const double ta = std::tan(N / 2);
    const double A = std::atan(std::cos((w - i) / 2) / std::cos((w + i) / 2) * ta);
    const double B = std::atan(std::sin((w - i) / 2) / std::sin((w + i) / 2) * ta);
    n.xi = (N - (A + B)) / kRad;
    n.nu = (A - B) / kRad;
    const double I = n.I * kRad, nu = n.nu * kRad;
    n.nuPrime = std::atan2(std::sin(2 * I) * std::sin(nu), std::sin(2 * I) * std::cos(nu) + 0.3347) / kRad;
    const double s2 = std::sin(I) * std::sin(I);
    n.twoNuSecond = std::atan2(s2 * std::sin(2 * nu), s2 * std::cos(2 * nu) + 0.0727) / kRad;
    n.P = a.p - n.xi;
    return n;
}

const std::vector<Constituent>& Table() {
    static const std::vector<Constituent> table = Build();
    return table;
}

std::optional<int> FindConstituent(std::string_view name) {
    const auto& t = Table();
    for (size_t i = 0; i < t.size(); ++i) {
        const std::string& n = t[i].name;
        if (n.size() != name.size()) continue;
        bool same = true;
        for (size_t k = 0; k < n.size() && same; ++k)
            same = std::toupper(static_cast<unsigned char>(name[k])) == n[k];
        if (same) return int(i);
    }
    return std::nullopt;
}

double EquilibriumArg(int i, const AstroArgs& a) {
    const Constituent& c = Table()[size_t(i)];
    const double args[6] = {a.T, a.s, a.h, a.p, -a.N, a.p1};
    double v = c.phase;
    for (int k = 0; k < 6; ++k) v += c.d[k] * args[k];
    return Fold(v);
}

NodeCorrection NodeFactor(int i, const Nodal& n) {
    const Constituent& c = Table()[size_t(i)];
    NodeCorrection r;
    if (!c.parts.empty()) {
        for (auto [p, m] : c.parts) {
            const NodeCorrection q = NodeFactor(p, n);
            r.f *= std::pow(q.f, std::abs(m));
            r.u += m * q.u;
        }
        return r;
    }
    const double I = n.I * kRad, nu = n.nu * kRad;
    const double sI = std::sin(I), s2I = std::sin(2 * I);
    const double ch = std::cos(I / 2), sh = std::sin(I / 2);
    switch (c.rule) {
    case Mm: r.f = (2.0 / 3.0 - sI * sI) / 0.5021; break;
    case Mf: r.f = sI * sI / 0.1578; r.u = -2 * n.xi; break;
    case O1: r.f = sI * ch * ch / 0.3800; r.u = 2 * n.xi - n.nu; break;
    case J1: r.f = s2I / 0.7214; r.u = -n.nu; break;
    case OO1: r.f = sI * sh * sh / 0.0164; r.u = -2 * n.xi - n.nu; break;
    case M2: r.f = std::pow(ch, 4) / 0.9154; r.u = 2 * n.xi - 2 * n.nu; break;
    case K1:
        r.f = std::sqrt(0.8965 * s2I * s2I + 0.6001 * s2I * std::cos(nu) + 0.1006);
        r.u = -n.nuPrime;
        break;
    case K2:
        r.f = std::sqrt(19.0444 * std::pow(sI, 4) + 2.7702 * sI * sI * std::cos(2 * nu) + 0.0981);
        r.u = -n.twoNuSecond;
        break;
    case L2: {
        const double t2 = std::pow(std::tan(I / 2), 2);
        const double P = n.P * kRad;
        const double invRa = std::sqrt(1 - 12 * t2 * std::cos(2 * P) + 36 * t2 * t2);
        const double R = std::atan2(std::sin(2 * P), 1 / (6 * t2) - std::cos(2 * P)) / kRad;
        r.f = std::pow(ch, 4) / 0.9154 * invRa;
        r.u = 2 * n.xi - 2 * n.nu - R;
        break;
    }
    case M3: r.f = std::pow(ch, 6) / 0.8758; r.u = 3 * n.xi - 3 * n.nu; break;
    default: break;
    }
    return r;
}

YearFigures ForYear(int i, int year) {
    const double start = DaysFromJ2000(year, 1, 1, 0, 0, 0);
    const double end = DaysFromJ2000(year + 1, 1, 1, 0, 0, 0);
    const NodeCorrection nc = NodeFactor(i, NodalAt(ArgsAt((start + end) / 2)));
    return {Fold(EquilibriumArg(i, ArgsAt(start)) + nc.u), nc.f};
}

}  // namespace ombra::tide
