// The GPX reader on any bytes. What it keeps must write as GPX that reads
// again whole, with as many waypoints, routes and tracks.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "navobjects/Gpx.h"

using namespace ombra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    GpxData d;
    std::string why;
    ReadGpx(bytes, d, why);
    for (Route& r : d.Routes) r.Number = r.Number ? r.Number : 1;
    GpxData back;
    if (!ReadGpx(WriteGpx(d), back, why)) std::abort();
    if (back.Waypoints.size() != d.Waypoints.size() || back.Routes.size() != d.Routes.size() ||
        back.Tracks.size() != d.Tracks.size())
        std::abort();
    return 0;
}
