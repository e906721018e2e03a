#include "tides/PassagePlanner.h"

#include <algorithm>
#include <cmath>

#include "core/Format.h"
#include "navmath/RLGC.h"
#include "navobjects/NavChart.h"

namespace ombra {

namespace {

constexpr double kDeg = 3.14159265358979323846 / 180.0;

// Dates are reckoned in whole seconds, as calendar addition does.
long long WholeSeconds(double serial) { return std::llround(serial * 86400.0); }
double SerialOf(long long seconds) { return double(seconds) / 86400.0; }
// `serial` plus `seconds`, the seconds rounded to a whole number (half to
// even).
double AddSeconds(double serial, double seconds) {
    return SerialOf(WholeSeconds(serial) + (long long)std::nearbyint(seconds));
}
long long FloorDiv(long long a, long long b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }
// Whole minutes from `a` to `b`: the minute boundaries crossed.
long long MinutesBetween(double a, double b) { return FloorDiv(WholeSeconds(b), 60) - FloorDiv(WholeSeconds(a), 60); }
long long SecondsBetween(double a, double b) { return WholeSeconds(b) - WholeSeconds(a); }

// A whole number of degrees, half to even, folded into 0..359.
long RoundedMod360(double degrees) {
    long r = std::lrint(degrees) % 360;
    return r < 0 ? r + 360 : r;
}

std::string DateAndTime(double serial) {
    const DateTime t = DateTime::FromSerial(serial);
    return FormatDate(t, "Short Date") + "  " + FormatDate(t, "Short Time");
}

struct Sample {
    float set = 0.0f, drift = 0.0f;
};

// Watches that the vessel closes the leg's end: over every 25 hours of
// stepping (a whole tidal day) the distance to go must shrink by a tenth of
// a mile, else she is held and the leg cannot be made.
class Headway {
public:
    Headway(double start, double distance) : since_(start), best_(distance) {}
    bool Lost(double now, double distance) {
        if ((now - since_) * 24.0 < 25.0) return false;
        if (distance > best_ - 0.1) return true;
        since_ = now;
        best_ = distance;
        return false;
    }

private:
    double since_, best_;
};

}  // namespace

bool HasPassed(double bearing, double course) {
    double d = std::max(bearing, course) - std::min(bearing, course);
    if (d > 180.0) d = 360.0 - d;
    return d >= 90.0;
}

void AddTide(float& set1, float& rate1, float set2, float rate2) {
    if (rate1 == 0.0f) {
        set1 = set2;
        rate1 = rate2;
    } else if (set2 == set1) {
        rate1 += rate2;
    } else if (std::fabs(set1 - set2) == 180.0f) {
        if (rate1 <= rate2) {
            set1 = set2;
            rate1 = rate2 - rate1;
        } else {
            rate1 = rate1 - rate2;
        }
    } else {
        const double x = rate1 * std::sin(set1 * kDeg) + rate2 * std::sin(set2 * kDeg);
        const double y = rate1 * std::cos(set1 * kDeg) + rate2 * std::cos(set2 * kDeg);
        const double r = std::sqrt(x * x + y * y);
        const double c = r > 0.0 ? (x * std::sin(set1 * kDeg) + y * std::cos(set1 * kDeg)) / r : 1.0;
        double a;
        if (c >= 1.0) a = 0.0;
        else if (c <= -1.0) a = 180.0;
        else a = (std::atan(-c / std::sqrt(1.0 - c * c)) + 2.0 * std::atan(1.0)) / kDeg;
        const long k = RoundedMod360(double(set2) - set1 + 360.0);
        set1 = float(k >= 180 ? RoundedMod360(set1 - a + 360.0) : RoundedMod360(set1 + a + 360.0));
        rate1 = float(r);
    }
}

bool CanStem(double course, float run, float set, float tide, double* cts) {
    if (run == 0.0f) return false;
    const double s = std::sin((set - course) * kDeg);
    const double q = s == 0.0 ? 0.0 : s * tide / run;
    if (q >= 1.0 || q <= -1.0) return false;
    const double a = q == 0.0 && tide > run ? 90.0 : std::fabs(std::atan(q / std::sqrt(1.0 - q * q)) / kDeg);
    const double d = std::fabs(set - course);
    if (d != 180.0) {
        const double t = d <= 180.0 ? a + d : 360.0 - d + a;
        if (t >= 180.0) return false;
    } else if (tide >= run) {
        return false;
    }
    if (cts) {
        const long k = RoundedMod360(set - course + 360.0);
        *cts = double(k >= 180 ? RoundedMod360(a + course + 360.0) : RoundedMod360(course - a + 360.0));
    }
    return true;
}

std::string PassageSpanText(long long m) {
    const double part = double(m) / 1440.0;
    const float days = part >= 0.0 ? float(std::floor(part)) : 0.0f;
    const float hours = float(std::floor((part - days) * 24.0));
    const float minutes = float(((part - days) * 24.0 - hours) * 60.0);
    return Format(days, "00") + ", " + Format(hours, "00") + ", " + Format(double(minutes) + 0.005, "00");
}

void PassagePlanner::SetPassageState(int16_t state) {
    state_ = state;
    if (state != 0) return;
    for (auto& t : PassageTrack) t.clear();
    VesselLeg = -1;
}

bool PassagePlanner::CalcPassageLeg(const LatLong& from, const LatLong& to, double& distance, double& course, float speed,
                             double start, double& arrival, float& cts, bool quiet, int16_t& tideSet,
                             float& tideDistance, std::vector<LatLong>* track) {
    const float hours = 1.0f / speed;
    const float minutes = hours * 60.0f;
    const float mileSecs = 60.0f * minutes;
    const float tenthSecs = 60.0f * minutes / 10.0f;
    const float tenthClock = minutes / 10.0f * 60.0f;
    const double working = course;
    LatLong pos = from;
    double t = start;
    tides_.TideTime = start;

    auto sample = [&](const LatLong& at, double when) {
        Sample s;
        tides_.TideTime = when;
        float drift = 0.0f, set = 0.0f;
        if (tides_.GetTide(at, drift, set) && useTides_) s = {set, drift};
        return s;
    };
    auto step = [&](const LatLong& p, double dir, const Sample& s, double secs) {
        LatLong a = DeadReckon(p, dir, speed, secs);
        return DeadReckon(a, s.set, s.drift, secs);
    };

    // Index 0 unused; the upper bound grows by one with each sample.
    std::vector<Sample> mile(2), tenth(2);
    int mileCount = 0, rawTenth = 0;
    double bearing = 0.0, left = 0.0;
    if (distance >= 2.0) {
        CourseDistanceRL(pos, to, bearing, left);
        Headway headway(t, left);
        LatLong keptPos = pos;
        double keptT = t;
        for (int i = 1;; ++i) {
            if (HasPassed(bearing, working)) {
                mileCount = std::max(i - 2, 0);
                pos = keptPos;
                t = keptT;
                break;
            }
            if (headway.Lost(t, left)) {
                state_ = 0;
                return false;
            }
            mile[size_t(i)] = sample(pos, t);
            keptPos = pos;
            keptT = t;
            pos = step(pos, working, mile[size_t(i)], mileSecs);
            CourseDistanceRL(pos, to, bearing, left);
            t = AddSeconds(t, mileSecs);
            tides_.TideTime = t;
            mile.resize(size_t(i) + 2);
        }
    }
    CourseDistanceRL(pos, to, bearing, left);
    Headway headway(t, left);
    for (int j = 1;; ++j) {
        // The bearing tested is the one taken before the last move: one
        // tenth more is run than the count says.
        if (HasPassed(bearing, working)) {
            rawTenth = j - 2;
            break;
        }
        if (headway.Lost(t, left)) {
            state_ = 0;
            return false;
        }
        tenth[size_t(j)] = sample(pos, t);
        CourseDistanceRL(pos, to, bearing, left);
        pos = step(pos, working, tenth[size_t(j)], tenthSecs);
        t = AddSeconds(t, tenthClock);
        tides_.TideTime = t;
        tenth.resize(size_t(j) + 2);
    }
    const int tenthCount = std::max(rawTenth, 0);
    arrival = t;
    if (quiet) {
        state_ = 3;
        return true;
    }

    // The tide met, in miles: a mile step's rate times the hours of a mile,
    // a tenth's times a tenth of that. The loop counters' last values count
    // the run through the water.
    const float mileScale = hours, tenthScale = minutes / 600.0f;
    auto sum = [](const std::vector<Sample>& s, float scale, float& set, float& rate) {
        set = s[1].set;
        rate = s[1].drift * scale;
        const int ub = int(s.size()) - 1;
        for (int i = 2; i <= ub - 2; ++i) AddTide(set, rate, s[size_t(i)].set, s[size_t(i)].drift * scale);
        return ub - 2 >= 2 ? ub - 1 : 2;
    };
    float set1 = 0.0f, rate1 = 0.0f, set2 = 0.0f, rate2 = 0.0f;
    const int n1 = sum(mile, mileScale, set1, rate1);
    const int n2 = rawTenth != 0 ? sum(tenth, tenthScale, set2, rate2) : 0;
    AddTide(set1, rate1, set2, rate2);
    const float set = set1;
    tideDistance = rate1;

    // Steer for the end moved back by the whole tide.
    const float turned = (set + 180.0f + 360.0f) / 360.0f;
    const float back = (turned - std::floor(turned)) * 360.0f;
    const LatLong aim = DeadReckon(to, back, tideDistance, 3600.0);
    double aimCourse = 0.0, aimDistance = 0.0;
    CourseDistanceRL(from, aim, aimCourse, aimDistance);
    cts = float(aimCourse);

    const float run = (float(n1) * hours + float(n2) * (hours / 10.0f)) * speed;
    if (!CanStem(course, run, set, tideDistance)) {
        state_ = 0;
        return false;
    }
    tideSet = int16_t(std::nearbyint(set));

    if (tideDistance == 0.0f) {
        if (track) *track = {from, to};
        arrival = AddSeconds(start, distance / speed * 3600.0);
        state_ = 1;
        return true;
    }
    if (track) {
        track->assign(1, from);
        LatLong p = from;
        for (int i = 1; i <= mileCount; ++i) track->push_back(p = step(p, cts, mile[size_t(i)], mileSecs));
        const int tenths = tenthCount ? tenthCount - 1 : 0;
        for (int j = 1; j <= tenths && size_t(j) < tenth.size(); ++j)
            track->push_back(p = step(p, cts, tenth[size_t(j)], tenthSecs));
        track->push_back(to);
    }
    state_ = 1;
    return true;
}

PassagePlanner::Run PassagePlanner::RunPlan(const Route& route, const PassageInputs& in, double departure, bool quiet) {
    Run out;
    const auto& pts = route.Points;
    const int n = int(pts.size());
    double running = departure;
    TotalDistance = 0.0;
    std::vector<LatLong> track;
    auto keep = [&](int leg, double distance, double course, float cts, double arrival, int16_t set, float tide) {
        PassageLeg& l = Legs[size_t(leg)];
        l.Distance = distance;
        l.Course = course;
        l.CTS = cts;
        l.Arrival = arrival;
        l.TideSet = set;
        const long long minutes = MinutesBetween(l.Departure, l.Arrival);
        const double hours = double(minutes) / 60.0;
        l.TideDrift = hours <= 0.0 ? 0.0f : float(tide / hours);
        if (!quiet) PassageTrack[size_t(leg)] = track;
        running = arrival;
    };

    int first = 1;
    const int k = in.activePoint;
    if (in.useVesselPos && k > 0 && k <= n) {
        for (int i = 1; i < k; ++i) Legs[size_t(i)].CTS = -1.0;
        // The leg from the vessel to the active point stands in for the
        // leg that reaches that point.
        double course = 0.0, distance = 0.0, arrival = 0.0;
        float cts = 0.0f, tide = 0.0f;
        int16_t set = 0;
        CourseDistanceRL(in.vesselPos, pts[size_t(k - 1)].Position.Wgs84, course, distance);
        TotalDistance += distance;
        Legs[size_t(k - 1)].Departure = running;
        PassageLegIndex = int16_t(k - 1);
        track.clear();
        if (!CalcPassageLeg(in.vesselPos, pts[size_t(k - 1)].Position.Wgs84, distance, course, PassageSpeed, running,
                            arrival, cts, quiet, set, tide, &track) ||
            state_ == 0) {
            // Marked at the leg's index, not the run's.
            out.failed = true;
            out.mark = k - 1;
            return out;
        }
        keep(k - 1, distance, course, cts, arrival, set, tide);
        VesselLeg = k - 1;
        first = k;
    }
    for (int i = first; i < n; ++i) {
        const RouteLeg& leg = route.Legs[size_t(i - 1)];
        Legs[size_t(i)].Departure = running;
        double distance = leg.Distance, course = leg.Course, arrival = 0.0;
        float cts = 0.0f, tide = 0.0f;
        int16_t set = 0;
        TotalDistance += distance;
        PassageLegIndex = int16_t(i);
        track.clear();
        if (!CalcPassageLeg(pts[size_t(i - 1)].Position.Wgs84, pts[size_t(i)].Position.Wgs84, distance, course,
                            PassageSpeed, running, arrival, cts, quiet, set, tide, &track) ||
            state_ == 0) {
            out.failed = true;
            return out;
        }
        keep(i, distance, course, cts, arrival, set, tide);
    }
    out.arrival = running;
    return out;
}

PassageRefusal PassagePlanner::CalcRoute(const Route& route, const PassageInputs& in, const Units& units,
                                  const std::function<void(int)>& gauge) {
    const size_t n = std::max<size_t>(route.Points.size(), 1);
    Legs.assign(n, PassageLeg{});
    Legs[0].CTS = -1.0;
    PassageTrack.assign(n, {});
    PassageStart = in.basis == 0 ? in.now : in.start;
    SetPassageState(0);
    if (in.useVesselPos && in.activePoint <= 0)
        return {"Cannot Calculate From Vessel Without an Active Route Point.", "ChkUseCurrVesPos"};
    PassageSpeed = in.speed;
    useTides_ = in.useTides;
    if (in.bestDeparture) {
        BestDeparture(route, in, gauge);
        return {};
    }

    const Run run = RunPlan(route, in, PassageStart, false);
    TxtTotalDistance = units.ToDisplay(UnitKind::Distance, float(TotalDistance), "0.00") + " " +
                       units.UnitText(UnitKind::Distance);
    if (run.failed) {
        TxtArrDate = TxtArrTime = TxtTotTime = TxtTidalGain = "N/A";
    } else {
        const DateTime last = DateTime::FromSerial(run.arrival);
        TxtArrDate = FormatDate(last, "Short Date");
        TxtArrTime = FormatDate(last, "hh:mm:ss");
        TxtTotTime = PassageSpanText(MinutesBetween(PassageStart, run.arrival));
        const double s = double(SecondsBetween(PassageStart, run.arrival));
        const double w = TotalDistance / PassageSpeed * 3600.0;
        TidalGain = w > 0.0 ? float((1.0 - s / w) * 100.0) : 0.0f;
        BestGain[0] = TidalGain;
        TxtTidalGain = Format(TidalGain, "##0");
    }
    BestRow = 0;
    return {};
}

void PassagePlanner::BestDeparture(const Route& route, const PassageInputs& in, const std::function<void(int)>& gauge) {
    TxtArrDate = TxtArrTime = TxtTotTime = TxtTidalGain = "N/A";
    BestDepartureTime.fill(0.0);
    BestArrivalTime.fill(0.0);
    BestDuration.fill(0.0f);
    BestGain.fill(0.0f);
    BestFailed.fill(false);
    BestRow = 0;
    BestDepartureTime[0] = AddSeconds(PassageStart, -13.0 * 3600.0);
    for (int row = 1; row <= 24; ++row) {
        BestDepartureTime[size_t(row)] = AddSeconds(BestDepartureTime[size_t(row - 1)], 3600.0);
        if (gauge) gauge(row);
        Legs.assign(Legs.size(), PassageLeg{});
        Legs[0].CTS = -1.0;
        const Run run = RunPlan(route, in, BestDepartureTime[size_t(row)], true);
        if (run.failed) {
            const int mark = run.mark < 0 ? row : run.mark;
            if (mark >= 0 && mark <= 24) BestFailed[size_t(mark)] = true;
        } else {
            const double s = double(SecondsBetween(BestDepartureTime[size_t(row)], run.arrival));
            const double w = TotalDistance / PassageSpeed * 3600.0;
            BestGain[0] = w > 0.0 ? float((1.0 - s / w) * 100.0) : 0.0f;
        }
        if (BestFailed[size_t(row)]) continue;
        if (!run.failed) {
            BestDuration[size_t(row)] = float(MinutesBetween(BestDepartureTime[size_t(row)], run.arrival));
            BestArrivalTime[size_t(row)] = run.arrival;
            if (row == 1) BestDuration[0] = BestDuration[1];
        }
        // Strictly below: among equal durations the earliest wins, and row 1
        // itself never becomes the best row.
        if (BestDuration[size_t(row)] < BestDuration[0]) {
            BestDuration[0] = BestDuration[size_t(row)];
            BestRow = int16_t(row);
        }
    }
    for (auto& t : PassageTrack) t.clear();
    state_ = 2;
}

PassageTable PassagePlanner::ShowPassageResults(int16_t state, const Units& units,
                                         const std::function<double(double, int)>& shown) const {
    PassageTable table;
    if (state == 1) {
        table.headings = {"Leg", "CTS (" + units.UnitText(UnitKind::Angle) + ")", "Arrival", "Tide Set (°T)",
                          "Tide Drift (" + units.UnitText(UnitKind::Speed) + ")"};
        for (size_t i = 0; i < Legs.size(); ++i) {
            const PassageLeg& l = Legs[i];
            if (l.CTS == -1.0) continue;
            const std::string leg = int(i) == VesselLeg ? "Vessel - " + Format(double(i + 1), "0")
                                                        : Format(double(i), "0") + " - " + Format(double(i + 1), "0");
            table.rows.push_back({leg, Format(shown ? shown(l.CTS, int(i)) : l.CTS, "000"), DateAndTime(l.Arrival),
                                  Format(l.TideSet, "000"), units.ToDisplay(UnitKind::Speed, l.TideDrift, "##0.0")});
        }
    } else if (state == 2) {
        table.headings = {"Departure Time", "Arrival Time", "Duration (dd,hh,mm)"};
        for (size_t row = 1; row <= 24; ++row) {
            const bool failed = BestFailed[row];
            table.rows.push_back({DateAndTime(BestDepartureTime[row]),
                                  failed ? "N/A" : DateAndTime(BestArrivalTime[row]),
                                  failed ? "N/A" : PassageSpanText((long long)BestDuration[row])});
        }
    }
    return table;
}

void PassagePlanner::DrawPassage(Canvas& canvas, NavChart& chart, Rgb colour) const {
    if (state_ != 1 || !chart.ChartOpen()) return;
    canvas.SetPen({colour, 2, PenStyle::Solid});
    for (const auto& leg : PassageTrack) {
        if (leg.size() < 2) continue;
        std::vector<NavPoint> pts(leg.size());
        for (size_t i = 0; i < leg.size(); ++i) {
            pts[i].Wgs84 = leg[i];
            chart.PrepareNavPoint(pts[i]);
        }
        // Each panel draws the pieces of the track that lie on it.
        for (int16_t panel = 0; panel < chart.PanelCount(); ++panel) {
            std::vector<ChartPoint> line;
            auto flush = [&] {
                if (line.size() >= 2) canvas.Polyline(line);
                line.clear();
            };
            for (const NavPoint& p : pts) {
                if (p.In(size_t(panel)) && size_t(panel) < p.Pixel.size()) line.push_back(chart.ToScreen(p.Pixel[size_t(panel)]));
                else flush();
            }
            flush();
        }
    }
}

}  // namespace ombra
