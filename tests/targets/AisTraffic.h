// Made-up AIS traffic for the load tests and the redraw benchmark: Class A
// position reports (type 1) of `count` vessels scattered over an area, as
// "!AIVDM" sentences with their checksums.
#pragma once
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "instruments/DemoPassage.h"

namespace ombra::test {

struct TrafficVessel {
    uint32_t mmsi;
    double lat, lon;  // degrees
    double course, speed;
};

inline std::vector<TrafficVessel> ScatterVessels(int count, double south, double north, double west, double east,
                                                 unsigned seed = 11) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    std::vector<TrafficVessel> v;
    for (int i = 0; i < count; ++i)
        v.push_back({uint32_t(235000000 + i), south + (north - south) * u(rng), west + (east - west) * u(rng),
                     359.0 * u(rng), 2.0 + 18.0 * u(rng)});
    return v;
}

inline void PutBits(std::string& b, int64_t value, int width) {
    for (int i = width - 1; i >= 0; --i) b += ((uint64_t(value) >> i) & 1) ? '1' : '0';
}

// One position report of `v`; the heading is left unknown for every
// third vessel so that both symbol colours are drawn.
inline std::string PositionSentence(const TrafficVessel& v, int second) {
    std::string b;
    PutBits(b, 1, 6);
    PutBits(b, 0, 2);
    PutBits(b, v.mmsi, 30);
    PutBits(b, 0, 4);
    PutBits(b, -128, 8);
    PutBits(b, int64_t(v.speed * 10.0 + 0.5), 10);
    PutBits(b, 1, 1);
    PutBits(b, int64_t(v.lon * 600000.0), 28);
    PutBits(b, int64_t(v.lat * 600000.0), 27);
    PutBits(b, int64_t(v.course * 10.0 + 0.5), 12);
    PutBits(b, v.mmsi % 3 == 0 ? 511 : int64_t(v.course) % 360, 9);
    PutBits(b, second % 60, 6);
    PutBits(b, 0, 2 + 3 + 1 + 19);
    return AivdmSentences(b, 0, 'A').front();
}

}  // namespace ombra::test
