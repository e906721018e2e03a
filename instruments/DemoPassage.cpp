#include "instruments/DemoPassage.h"

#include <cmath>
#include <cstdio>

#include "instruments/NmeaText.h"
#include "navmath/RLGC.h"

namespace ombra {

namespace {

constexpr double kPi = 3.14159265358979323846;
const LatLong kIsland{-12.0 * 3600.0, 50.0 * 3600.0};

// Unsigned and two's-complement fields, most significant bit first.
void Put(std::string& bits, int64_t value, int width) {
    for (int i = width - 1; i >= 0; --i) bits.push_back(((uint64_t(value) >> i) & 1u) ? '1' : '0');
}

// Six-bit AIS text: "@"..."_" are 0..31, " "..."?" are 32..63; padded with "@".
void PutText(std::string& bits, const std::string& text, int chars) {
    for (int i = 0; i < chars; ++i) {
        unsigned char c = i < int(text.size()) ? (unsigned char)(text[size_t(i)]) : '@';
        if (c >= 'a' && c <= 'z') c = (unsigned char)(c - 32);
        int v = c >= 64 && c < 96 ? c - 64 : (c >= 32 && c < 64 ? c : 0);
        Put(bits, v, 6);
    }
}

std::string Sentence(const std::string& body) { return "$" + body + "*" + NmeaChecksum(body) + "\r\n"; }

std::string DegMin(double seconds, bool lat) {
    double a = std::fabs(seconds) / 3600.0;
    int d = int(a);
    double m = (a - d) * 60.0;
    if (m >= 59.99995) {
        m = 0.0;
        ++d;
    }
    char buf[32];
    std::snprintf(buf, sizeof buf, lat ? "%02d%07.4f" : "%03d%07.4f", d, m);
    return std::string(buf) + "," + (lat ? (seconds < 0 ? "S" : "N") : (seconds < 0 ? "W" : "E"));
}

std::string Hms(int secondOfDay) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d%02d%02d.00", secondOfDay / 3600 % 24, secondOfDay / 60 % 60, secondOfDay % 60);
    return buf;
}

std::string Fixed(double v, const char* fmt) {
    char buf[32];
    std::snprintf(buf, sizeof buf, fmt, v);
    return buf;
}

struct Ship {
    uint32_t mmsi;
    const char* name;
    const char* callsign;
    uint32_t imo;
    int type;  // 70 cargo, 80 tanker, 30 fishing, 36 sailing
    bool classB;
    LatLong start;
    double course;  // degrees true
    double speed;   // knots
    int offset;     // seconds: staggers the reports
    const char* destination;
    int length, beam;
    double draught;
};

const Ship kShips[] = {
    {235098765, "NORTHERN STAR", "2FNS7", 9387421, 70, false, {-12.30 * 3600.0, 49.90 * 3600.0}, 88.0, 11.0, 2, "ROTTERDAM", 182, 28, 8.4},
    {244123450, "ATLANTIC DAWN", "PBAD3", 9276510, 80, false, {-11.75 * 3600.0, 50.15 * 3600.0}, 181.0, 9.5, 5, "LISBON", 228, 32, 11.2},
    {227345120, "MARIE CLAIRE", "FGMC", 0, 30, false, {-12.18 * 3600.0, 50.09 * 3600.0}, 300.0, 3.5, 8, "CONCARNEAU", 24, 7, 3.1},
    {235555501, "SEA SPRAY", "MSPR9", 0, 36, true, {-12.25 * 3600.0, 49.87 * 3600.0}, 80.0, 6.0, 13, "", 12, 4, 1.9},
};

LatLong ShipAt(const Ship& s, double seconds) { return DeadReckon(s.start, s.course, s.speed, seconds); }

std::string Type1(const Ship& s, const LatLong& p, int second) {
    std::string b;
    Put(b, 1, 6);
    Put(b, 0, 2);
    Put(b, s.mmsi, 30);
    Put(b, s.type == 30 ? 7 : 0, 4);  // engaged in fishing / under way using engine
    Put(b, -128, 8);                   // rate of turn not available
    Put(b, int64_t(std::lround(s.speed * 10.0)), 10);
    Put(b, 1, 1);
    Put(b, int64_t(std::lround(p.Long / 60.0 * 10000.0)), 28);
    Put(b, int64_t(std::lround(p.Lat / 60.0 * 10000.0)), 27);
    Put(b, int64_t(std::lround(s.course * 10.0)), 12);
    Put(b, int64_t(std::lround(s.course)) % 360, 9);
    Put(b, second % 60, 6);
    Put(b, 0, 2);
    Put(b, 0, 3);
    Put(b, 0, 1);
    Put(b, 0, 19);
    return b;
}

std::string Type18(const Ship& s, const LatLong& p, int second) {
    std::string b;
    Put(b, 18, 6);
    Put(b, 0, 2);
    Put(b, s.mmsi, 30);
    Put(b, 0, 8);
    Put(b, int64_t(std::lround(s.speed * 10.0)), 10);
    Put(b, 0, 1);
    Put(b, int64_t(std::lround(p.Long / 60.0 * 10000.0)), 28);
    Put(b, int64_t(std::lround(p.Lat / 60.0 * 10000.0)), 27);
    Put(b, int64_t(std::lround(s.course * 10.0)), 12);
    Put(b, 511, 9);  // heading not available
    Put(b, second % 60, 6);
    Put(b, 0, 2);
    Put(b, 1, 1);  // carrier-sense unit
    Put(b, 0, 1);
    Put(b, 1, 1);
    Put(b, 1, 1);
    Put(b, 0, 1);
    Put(b, 0, 1);
    Put(b, 0, 1);
    Put(b, 0, 20);
    return b;
}

std::string Type5(const Ship& s) {
    std::string b;
    Put(b, 5, 6);
    Put(b, 0, 2);
    Put(b, s.mmsi, 30);
    Put(b, 0, 2);
    Put(b, s.imo, 30);
    PutText(b, s.callsign, 7);
    PutText(b, s.name, 20);
    Put(b, s.type, 8);
    Put(b, s.length * 2 / 3, 9);
    Put(b, s.length - s.length * 2 / 3, 9);
    Put(b, s.beam / 2, 6);
    Put(b, s.beam - s.beam / 2, 6);
    Put(b, 1, 4);   // GPS
    Put(b, 11, 4);  // ETA 24 November 06:00 UTC
    Put(b, 24, 5);
    Put(b, 6, 5);
    Put(b, 0, 6);
    Put(b, int64_t(std::lround(s.draught * 10.0)), 8);
    PutText(b, s.destination, 20);
    Put(b, 0, 1);
    Put(b, 0, 1);
    return b;
}

}  // namespace

std::string ArmourAis(const std::string& bits, int& fill) {
    fill = int((6 - bits.size() % 6) % 6);
    std::string padded = bits + std::string(size_t(fill), '0');
    std::string out;
    for (size_t i = 0; i + 6 <= padded.size(); i += 6) {
        int v = 0;
        for (size_t k = 0; k < 6; ++k) v = v * 2 + (padded[i + k] == '1');
        out.push_back(char(v < 40 ? v + 48 : v + 56));
    }
    return out;
}

std::vector<std::string> AivdmSentences(const std::string& bits, int sequence, char channel) {
    int fill = 0;
    std::string payload = ArmourAis(bits, fill);
    size_t parts = (payload.size() + 59) / 60;
    std::vector<std::string> out;
    for (size_t i = 0; i < parts; ++i) {
        bool last = i + 1 == parts;
        std::string body = "AIVDM," + std::to_string(parts) + "," + std::to_string(i + 1) + "," +
                           (parts > 1 ? std::to_string(sequence % 10) : std::string()) + "," + channel + "," +
                           payload.substr(i * 60, 60) + "," + std::to_string(last ? fill : 0);
        out.push_back("!" + body + "*" + NmeaChecksum(body) + "\r\n");
    }
    return out;
}

namespace {
// Two targets the vessel's radar tracks: the first it never names, the
// second it names "FERRY". Each is reported every 3 seconds while within 12
// miles (acquiring for its first three reports), and once as lost when it
// goes out of range; own heading goes out in OSD every 3 seconds.
struct RadarTarget {
    int number;
    const char* name;
    LatLong start;
    double course, speed;  // degrees true, knots
    int offset;            // seconds: staggers the reports
};
const RadarTarget kRadarTargets[] = {
    {1, "", {-11.80 * 3600.0, 49.90 * 3600.0}, 250.0, 6.0, 1},
    {2, "FERRY", {-12.20 * 3600.0, 50.12 * 3600.0}, 100.0, 12.0, 2},
};
constexpr double kRadarRange = 12.0;

// East and north components (knots) of a course and speed.
void Velocity(double course, double speed, double& east, double& north) {
    east = speed * std::sin(course * kDegToRad);
    north = speed * std::cos(course * kDegToRad);
}

std::string RadarSentences(int t, int now, const LatLong& own, double cog, double sog, double heading,
                           std::vector<int>& reports) {
    std::string out;
    if (t % 3 == 0) out += Sentence("RAOSD," + Fixed(heading, "%.1f") + ",A," + Fixed(cog, "%.1f") + ",P," +
                                    Fixed(sog, "%.1f") + ",P,,,N");
    for (const RadarTarget& r : kRadarTargets) {
        if ((t + r.offset) % 3 != 0) continue;
        const LatLong at = DeadReckon(r.start, r.course, r.speed, double(t));
        double bearing = 0.0, range = 0.0;
        CourseDistanceRL(own, at, bearing, range);
        int& count = reports[size_t(r.number)];
        const std::string head = "RATTM," + Fixed(r.number, "%02.0f") + ",";
        if (range > kRadarRange) {
            if (count > 0) out += Sentence(head + Fixed(range, "%.2f") + "," + Fixed(bearing, "%.1f") + ",T,,,T,,,N," +
                                           r.name + ",L,," + Hms(now) + ",A");
            count = 0;
            continue;
        }
        // Closest approach by relative motion on the plane of the chart.
        double oe, on, te, tn;
        Velocity(cog, sog, oe, on);
        Velocity(r.course, r.speed, te, tn);
        const double pe = range * std::sin(bearing * kDegToRad), pn = range * std::cos(bearing * kDegToRad);
        const double ve = te - oe, vn = tn - on, vv = ve * ve + vn * vn;
        double tcpa = vv > 1e-9 ? -(pe * ve + pn * vn) / vv : 0.0;  // hours
        if (tcpa < 0.0) tcpa = 0.0;
        const double cpa = std::hypot(pe + ve * tcpa, pn + vn * tcpa);
        out += Sentence(head + Fixed(range, "%.2f") + "," + Fixed(bearing, "%.1f") + ",T," + Fixed(r.speed, "%.1f") + "," +
                        Fixed(r.course, "%.1f") + ",T," + Fixed(cpa, "%.2f") + "," + Fixed(tcpa * 60.0, "%.1f") + ",N," +
                        r.name + "," + (count < 3 ? "Q" : "T") + ",," + Hms(now) + ",A");
        ++count;
    }
    return out;
}

constexpr double kDemoSpeed = 16.0;  // knots
constexpr double kMeanRadius = 4.25;
}  // namespace

// One lap, rounded to whole seconds, so that the log ends where it began.
int DemoPassageSeconds() { return int(std::lround(2.0 * kPi * kMeanRadius / kDemoSpeed * 3600.0)); }

LatLong DemoPassagePosition(double t) {
    const int lap = DemoPassageSeconds();
    double theta = 2.0 * kPi * t / lap;  // bearing from the island, clockwise
    double radius = kMeanRadius + 0.25 * std::sin(3.0 * theta);
    return DeadReckon(kIsland, std::fmod(theta * kRadToDeg + 200.0, 360.0), radius, 3600.0);
}

std::string DemoPassageLog() {
    const int lap = DemoPassageSeconds();
    const int startOfDay = 10 * 3600;  // 10:00:00 UTC, 23 November 2026
    auto vesselAt = [](double t) { return DemoPassagePosition(t); };
    std::string log;
    log.reserve(size_t(lap) * 300);
    int sequence = 0;
    std::vector<int> radarReports(3, 0);
    for (int t = 0; t < lap; ++t) {
        int now = startOfDay + t;
        LatLong p = vesselAt(t);
        double cog = 0.0, dist = 0.0;
        CourseDistanceRL(vesselAt(t - 0.5), vesselAt(t + 0.5), cog, dist);
        double sog = dist * 3600.0;
        double heading = std::fmod(cog + 2.0 * std::sin(t / 37.0) + 360.0, 360.0);
        std::string lat = DegMin(p.Lat, true), lon = DegMin(p.Long, false);
        log += Sentence("GPGGA," + Hms(now) + "," + lat + "," + lon + ",1,09,0.9,2.1,M,52.3,M,,");
        log += Sentence("GPRMC," + Hms(now) + ",A," + lat + "," + lon + "," + Fixed(sog, "%.1f") + "," +
                        Fixed(cog, "%.1f") + ",231126,3.2,W");
        log += Sentence("GPVTG," + Fixed(cog, "%.1f") + ",T," + Fixed(std::fmod(cog + 3.2, 360.0), "%.1f") + ",M," +
                        Fixed(sog, "%.1f") + ",N," + Fixed(sog * 1.852, "%.1f") + ",K");
        log += Sentence("HEHDT," + Fixed(heading, "%.1f") + ",T");
        for (const Ship& s : kShips) {
            int phase = t + s.offset;
            if (phase % (s.classB ? 30 : 10) == 0) {
                std::string bits = s.classB ? Type18(s, ShipAt(s, t), now) : Type1(s, ShipAt(s, t), now);
                for (const std::string& line : AivdmSentences(bits, 0, phase % 20 == 0 ? 'A' : 'B')) log += line;
            }
            if (!s.classB && phase % 360 == 180) {
                for (const std::string& line : AivdmSentences(Type5(s), sequence++, 'A')) log += line;
            }
        }
        log += RadarSentences(t, now, p, cog, sog, heading, radarReports);
    }
    return log;
}

}  // namespace ombra
