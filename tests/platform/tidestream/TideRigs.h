// Regions made by the tests, and the service driven through its buffers.
#pragma once
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "platform/tidestream/HarmonicTideStream.h"
#include "platform/tidestream/TideRegion.h"

namespace ombra::test {

// A grid region whose every node carries the same harmonics.
inline tide::RegionData UniformGrid(std::vector<std::string> constituents,
                                    std::vector<tide::NodeHarmonic> h, int rows = 3, int cols = 3) {
    tide::RegionData r;
    r.name = "Test";
    r.south = 50;
    r.west = -2;
    r.north = 51;
    r.east = -1;
    r.constituents = std::move(constituents);
    r.layout = tide::Layout::Grid;
    r.rows = rows;
    r.cols = cols;
    r.sea.assign(size_t(rows * cols), 1);
    for (int n = 0; n < rows * cols; ++n) r.harmonics.insert(r.harmonics.end(), h.begin(), h.end());
    return r;
}

struct Prediction {
    int32_t result = -1, east = 0, north = 0, nodes = 0, speed = 0, dir = 0;
};

struct StreamRig {
    HarmonicTideStream stream;

    int32_t Path(const std::string& p) {
        char buf[TideStream::NameBufferSize] = {};
        std::strncpy(buf, p.c_str(), sizeof buf - 1);
        return stream.WrapperSetPath(buf);
    }
    int32_t Select(const std::string& base) { return Select(base + ".Hdr", base + ".Hrm"); }
    int32_t Select(const std::string& hdr, const std::string& hrm) {
        char a[TideStream::NameBufferSize] = {}, b[TideStream::NameBufferSize] = {};
        std::strncpy(a, hdr.c_str(), sizeof a - 1);
        std::strncpy(b, hrm.c_str(), sizeof b - 1);
        return stream.WrapperSetDataFileName(a, b);
    }
    Prediction At(double lat, double lon, int y, int mo, int d, int h, int mi, int s = 0) {
        Prediction p;
        int32_t one = 1, la = int32_t(std::lround(lat * 1e7)), lo = int32_t(std::lround(lon * 1e7));
        p.result = stream.WrapperDoPrediction(one, la, lo, d, mo, y, h, mi, s, 0, p.east, p.north,
                                              p.nodes, p.speed, p.dir);
        return p;
    }
};

}  // namespace ombra::test

#include <fstream>
#include <map>

#include "tests/support/TestSupport.h"

namespace ombra::test {

// XTide's own V0+u and f per constituent and year (tests/data/reference/tide).
struct XtideYear {
    double v0u, f;
};
inline std::map<std::pair<std::string, int>, XtideYear> XtideAstronomy() {
    std::map<std::pair<std::string, int>, XtideYear> out;
    std::ifstream in(SharedData("tide/xtide-astronomy-2020-2035.txt"));
    std::string name;
    int year;
    XtideYear y;
    while (in >> name >> year >> y.v0u >> y.f) out[{name, year}] = y;
    return out;
}

}  // namespace ombra::test
