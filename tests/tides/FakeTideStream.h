// A stream model answering from a table, for the exact integer cases: each
// region name has a box and one answer for every point in it; every call
// is counted and the last prediction's arguments kept.
#pragma once
#include <cstring>
#include <map>
#include <string>

#include "platform/api/DateTime.h"
#include "platform/api/Geo.h"
#include "platform/api/TideStream.h"

namespace ombra::test {

struct FakeTideStream : TideStream {
    struct Region {
        int32_t longMax, longMin, latMax, latMin;  // 1e-7 degree
        int32_t result = 0, speed = 0, dir = 0;    // the answer at every point
    };
    std::map<std::string, Region> regions;  // by header name, "Region01.Hdr"
    std::string selected;
    int selections = 0, predictions = 0;
    int32_t lastLat = 0, lastLon = 0, lastDay = 0, lastMonth = 0, lastYear = 0, lastHour = 0, lastMinute = 0,
            lastSecond = 0;

    int32_t WrapperSetPath(char*) override { return 0; }
    int32_t WrapperSetDataFileName(char* hdr, char*) override {
        ++selections;
        selected = hdr;
        return regions.count(selected) ? 0 : 1;
    }
    int32_t WrapperModelDomain(int32_t& longMax, int32_t& longMin, int32_t& latMax, int32_t& latMin) override {
        const Region& r = regions.at(selected);
        longMax = r.longMax;
        longMin = r.longMin;
        latMax = r.latMax;
        latMin = r.latMin;
        return 0;
    }
    int32_t WrapperDoPrediction(int32_t&, int32_t& lat, int32_t& lon, int32_t day, int32_t month, int32_t year,
                                int32_t hour, int32_t minute, int32_t second, int32_t, int32_t&, int32_t&, int32_t&,
                                int32_t& out4, int32_t& out5) override {
        ++predictions;
        lastLat = lat;
        lastLon = lon;
        lastDay = day;
        lastMonth = month;
        lastYear = year;
        lastHour = hour;
        lastMinute = minute;
        lastSecond = second;
        auto it = regions.find(selected);
        if (it == regions.end()) return 1;
        const Region& r = it->second;
        if (lat > r.latMax || lat < r.latMin || lon > r.longMax || lon < r.longMin) return 3;
        out4 = r.speed;
        out5 = r.dir;
        return r.result;
    }
    std::string LastError() const override { return {}; }
};

// Degrees to the model's units.
inline int32_t E7(double degrees) { return int32_t(degrees * 1e7 + (degrees < 0 ? -0.5 : 0.5)); }
inline LatLong Deg(double lat, double lon) { return {lon * 3600.0, lat * 3600.0}; }

}  // namespace ombra::test
