// A plotter sailing on fake services, its GPS port fed a fix a second, for
// the tests of the alarms: positions near 50°N 5°W, given as minutes of
// latitude north of 50°N and nautical miles east of 5°W, and routes and
// boundaries made through the stores as the menus make them.
#pragma once
#include <cmath>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "platform/fake/MemorySettings.h"
#include "platform/fake/ScriptedDialogs.h"
#include "plotter/Plotter.h"
#include "tests/support/TestSupport.h"

namespace ombra::test {

inline LatLong P(double north, double east = 0.0) {
    double lat = 50.0 + north / 60.0;
    double lon = -5.0 + east / 60.0 / std::cos(lat * M_PI / 180.0);
    return LatLong{lon * 3600.0, lat * 3600.0};
}

inline std::string Sentence(const std::string& body) {
    unsigned char sum = 0;
    for (char c : body) sum ^= static_cast<unsigned char>(c);
    char buf[8];
    std::snprintf(buf, sizeof buf, "*%02X\r\n", sum);
    return "$" + body + buf;
}

inline std::string NmeaAngle(double degrees, int width) {
    double a = std::fabs(degrees);
    int d = int(a);
    char buf[32];
    std::snprintf(buf, sizeof buf, "%0*d%07.4f", width, d, (a - d) * 60.0);
    return buf;
}

struct Sailing {
    TempDir dir;
    MemorySettings store;
    ScriptedDialogs dialogs;
    ManualClock clock;
    NoEvents events;
    ScriptedComms comms;
    Plotter plotter;
    int second = 0;
    int16_t route = 0;

    explicit Sailing(Shell& shell) : plotter({store, dialogs, clock, events, shell, &comms}) {
        Set("AutoStartupGPS", "2");
        Set("GPSPort", "1");
        clock.now = DateTime{2026, 11, 23, 10, 0, 0, 0};
    }
    void Set(const char* key, const char* value) { store.Write("Vestrane", "Tarnel", key, value); }
    bool Start() { return plotter.Start("NOSPLASH", dir / "ombra", dir / "home", ""); }
    // VTG and GGA at `p`, then a second of ticks.
    void At(const LatLong& p, double cog = 0.0, double sog = 6.0) {
        char vtg[64], gga[128];
        std::snprintf(vtg, sizeof vtg, "GPVTG,%05.1f,T,,M,%.1f,N,,K", cog, sog);
        std::snprintf(gga, sizeof gga, "GPGGA,10%02d%02d,%s,N,%s,W,1,08,0.9,5.0,M,50.0,M,,", second / 60 % 60,
                      second % 60, NmeaAngle(p.Lat / 3600.0, 2).c_str(), NmeaAngle(p.Long / 3600.0, 3).c_str());
        ++second;
        comms.Feed(1, Sentence(vtg));
        comms.Feed(1, Sentence(gga));
        for (int i = 0; i < 10; ++i) {
            plotter.Tick();
            clock.Advance(0.1);
        }
    }
    // A route north along 5°W through the given latitudes (minutes above
    // 50°N), activated from its first point with the vessel at 50°N.
    void SailRoute(std::vector<double> points) {
        At(P(0));
        ASSERT_TRUE(plotter.VesselActive());
        NavObjects& nav = plotter.nav();
        dialogs.texts = {"Passage", "R001"};
        nav.routes.NewRouteDB();
        route = nav.routes.NewRoute();
        ASSERT_NE(route, 0);
        for (double n : points) nav.routes.AddRoutePoint(route, P(n));
        nav.routes.EndNewRoute(route);
        ASSERT_TRUE(nav.activation.ActivateRoute(route, 0));
    }
    // A boundary of four marks, `south` to `north` minutes above 50°N and
    // half a mile either side of 5°W.
    int16_t Area(const char* name, double south, double north, int16_t onExit) {
        Boundaries& b = plotter.nav().boundaries;
        if (!b.IsOpen()) {
            dialogs.texts = {"Areas"};
            b.NewBoundaryDB();
        }
        dialogs.texts = {name};
        int16_t slot = b.NewBoundary();
        for (LatLong m : {P(south, -0.5), P(south, 0.5), P(north, 0.5), P(north, -0.5)}) b.AddBoundaryMark(slot, m);
        b.EndNewBoundary(slot);
        b.At(slot)->AlarmOnExit = onExit;
        return slot;
    }
    // A leg to a waypoint `north` minutes up, as activating it leaves it.
    void Steer(const char* name, double north, float range) {
        ActiveLeg leg;
        leg.Name = name;
        leg.Kind = 1;
        leg.To = P(north);
        leg.From = plotter.instruments().vessel.vessel.Pos;
        leg.AlarmRange = range;
        leg.Armed = -1;
        plotter.nav().waypoints.ActiveIndex = 1;
        plotter.nav().activation.SetActiveLeg(leg);
    }
    const ActiveLeg& Leg() { return plotter.instruments().leg; }
    std::string Row(int i) { return plotter.instruments().console.LabWP[size_t(i)]; }
    std::string PointName(int16_t point) {
        return Activation::ShortName(plotter.nav().routes.PointAt(route, point)->Name);
    }
};

}  // namespace ombra::test
