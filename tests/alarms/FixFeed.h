// A fix a second from a scripted GPS port, for the tests that sail a
// plotter: positions near 50°N 5°W, given as minutes of latitude north of
// 50°N and nautical miles east of 5°W.
#pragma once
#include <cmath>
#include <cstdio>
#include <string>

#include "platform/comms/ScriptedComms.h"
#include "platform/fake/ManualClock.h"
#include "plotter/Plotter.h"

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

// VTG and GGA for second `n` of the passage, then a second of ticks.
inline void FeedFix(ScriptedComms& comms, Plotter& plotter, ManualClock& clock, int n, const LatLong& p,
                    double cog, double sog) {
    char vtg[64], gga[128];
    std::snprintf(vtg, sizeof vtg, "GPVTG,%05.1f,T,,M,%.1f,N,,K", cog, sog);
    std::snprintf(gga, sizeof gga, "GPGGA,10%02d%02d,%s,N,%s,W,1,08,0.9,5.0,M,50.0,M,,", n / 60 % 60, n % 60,
                  NmeaAngle(p.Lat / 3600.0, 2).c_str(), NmeaAngle(p.Long / 3600.0, 3).c_str());
    comms.Feed(1, Sentence(vtg));
    comms.Feed(1, Sentence(gga));
    for (int i = 0; i < 10; ++i) {
        plotter.Tick();
        clock.Advance(0.1);
    }
}

}  // namespace ombra::test
