// The astronomy of harmonic tide prediction: the mean longitudes of the moon
// and sun and their perigees and the moon's node, and from them each
// constituent's equilibrium argument V, nodal phase u and node factor f.
//
// Constituents are written as Doodson multiples of the mean solar hour
// angle T, the moon's mean longitude s, the sun's h, the lunar perigee p,
// the negated node N' = -N and the solar perigee p1, plus a constant phase,
// and a nodal rule. Compound constituents (M4, MS4, MK3...) are sums of
// their parents' arguments, with f the product of their factors.
#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombra::tide {

// Days from 2000-01-01 12:00 (J2000.0) of a civil date and time (UTC).
double DaysFromJ2000(int year, int month, int day, int hour, int minute, double second);

struct AstroArgs {
    double T, s, h, p, N, p1;  // degrees, folded into [0, 360)
};
AstroArgs ArgsAt(double daysFromJ2000);

// The nodal quantities of the lunar orbit, in degrees, for a node N.
struct Nodal {
    double I, nu, xi, nuPrime, twoNuSecond;
    double P;  // p - xi, for L2
};
Nodal NodalAt(const AstroArgs& a);

struct Constituent {
    std::string name;
    double speed = 0;  // degrees per mean solar hour
    // Doodson multiples of T, s, h, p, N', p1 and a constant in degrees
    // (for a compound, the sums over its parents).
    int d[6] = {0, 0, 0, 0, 0, 0};
    double phase = 0;
    // Parents for a compound constituent: (index in Table(), multiple).
    std::vector<std::pair<int, int>> parts;
    int rule = 0;  // nodal rule for a simple constituent
};

// Every constituent the model knows, simple ones first.
const std::vector<Constituent>& Table();
// Index in Table() by name (case-insensitive), or nothing.
std::optional<int> FindConstituent(std::string_view name);

// Equilibrium argument V (no nodal phase) of constituent i, degrees [0,360).
double EquilibriumArg(int i, const AstroArgs& a);
// Node factor f and nodal phase u (degrees) of constituent i.
struct NodeCorrection {
    double f = 1, u = 0;
};
NodeCorrection NodeFactor(int i, const Nodal& n);

// The figures for a year, as tide tables give them: V0+u at the start of the
// year (00:00 UTC, 1 January, Greenwich), u and f for the middle of the year.
struct YearFigures {
    double v0u;  // degrees [0,360)
    double f;
};
YearFigures ForYear(int i, int year);

}  // namespace ombra::tide
