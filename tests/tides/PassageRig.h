// A passage planner over a tide region written into a temporary folder,
// and routes made from positions in degrees.
#pragma once
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "navmath/RLGC.h"
#include "platform/api/DateTime.h"
#include "platform/fake/ScriptedDialogs.h"
#include "tests/platform/tidestream/TideRigs.h"
#include "tests/support/TestSupport.h"
#include "tides/PassagePlanner.h"

namespace ombra::test {

// The model, counting the predictions asked of it.
struct CountingStream : TideStream {
    HarmonicTideStream inner;
    int predictions = 0;
    int32_t WrapperSetPath(char* p) override { return inner.WrapperSetPath(p); }
    int32_t WrapperSetDataFileName(char* h, char* m) override { return inner.WrapperSetDataFileName(h, m); }
    int32_t WrapperModelDomain(int32_t& a, int32_t& b, int32_t& c, int32_t& d) override {
        return inner.WrapperModelDomain(a, b, c, d);
    }
    int32_t WrapperDoPrediction(int32_t& n, int32_t& la, int32_t& lo, int32_t d, int32_t mo, int32_t y, int32_t h,
                                int32_t mi, int32_t s, int32_t r, int32_t& o1, int32_t& o2, int32_t& o3, int32_t& o4,
                                int32_t& o5) override {
        ++predictions;
        return inner.WrapperDoPrediction(n, la, lo, d, mo, y, h, mi, s, r, o1, o2, o3, o4, o5);
    }
    std::string LastError() const override { return inner.LastError(); }
};

// One constituent's east and north components for a stream running towards
// `towards` degrees true at `speed` m/s, with phase lag `lag`.
inline tide::NodeHarmonic Towards(double towards, double speed, double lag = 0.0) {
    const double e = speed * std::sin(towards * 3.14159265358979323846 / 180.0);
    const double n = speed * std::cos(towards * 3.14159265358979323846 / 180.0);
    // A negative component is the positive one half a cycle later.
    auto part = [&](double v, float& amp, float& phase) {
        amp = float(std::fabs(v));
        phase = float(std::fmod(lag + (v < 0 ? 180.0 : 0.0), 360.0));
    };
    tide::NodeHarmonic h;
    part(e, h.eastAmp, h.eastPhase);
    part(n, h.northAmp, h.northPhase);
    return h;
}

struct PassageRig {
    TempDir dir;
    ScriptedDialogs dialogs;
    ErrorReporter errors{dialogs, "Ombra"};
    CountingStream stream;
    Tides tides{stream, errors};
    PassagePlanner passage{tides};
    Units units;
    // 1 June 2026 10:00, the wanted departure.
    double start = DateTime{2026, 6, 1, 10, 0, 0}.Serial();

    // The whole box (50..51 N, 2..1 W) under one stream of constituent `name`.
    void Stream(const char* name, tide::NodeHarmonic h) {
        tide::RegionData r = UniformGrid({name}, {h});
        std::string err;
        ASSERT_TRUE(tide::SaveRegion(r, dir.path(), "Region01", &err)) << err;
        tides.SetDataPath(dir.path() + "/");
        tides.ListTideRegions();
        ASSERT_EQ(tides.TideRegionCount(), 1);
    }
    // A steady stream: m/s towards a direction.
    void Steady(double towards, double speed) { Stream("Z0", Towards(towards, speed)); }

    // A route through positions in degrees (latitude, longitude).
    static Route MakeRoute(const std::vector<std::pair<double, double>>& pts) {
        Route r;
        r.Number = 1;
        for (auto [lat, lon] : pts) {
            Waypoint w;
            w.Number = int16_t(r.Points.size() + 1);
            w.Position.Wgs84 = LatLong{lon * 3600.0, lat * 3600.0};
            r.Points.push_back(w);
        }
        r.Legs.resize(r.Points.size());
        r.SyncCount();
        ComputeLegs(r);
        return r;
    }
    // Due north from 50.2 N 1.5 W for `miles` (a minute of latitude a mile).
    static Route North(double miles) { return MakeRoute({{50.2, -1.5}, {50.2 + miles / 60.0, -1.5}}); }

    PassageInputs In(float knots, bool useTides = true) const {
        PassageInputs in;
        in.speed = knots;
        in.useTides = useTides;
        in.basis = 1;
        in.start = start;
        return in;
    }
    PassageRefusal Plan(const Route& r, const PassageInputs& in) { return passage.CalcRoute(r, in, units); }
};

inline long long SecondsFrom(double a, double b) { return std::llround((b - a) * 86400.0); }

}  // namespace ombra::test
