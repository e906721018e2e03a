// libFuzzer target: the BSB/KAP reader, from the header to the last row,
// and the georeferencing fitted to whatever reference points it finds.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/chartlib/Georef.h"
#include "platform/chartlib/KapReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace ombra::chartlib;
    KapLimits limits;
    limits.MaxPixels = 1 << 22;  // a fuzzed file may not claim more than 4 million pixels
    limits.MaxSide = 8192;
    KapReader r;
    if (!r.Open(std::string(reinterpret_cast<const char*>(data), size), limits)) return 0;
    const KapHeader& h = r.Header();
    std::vector<uint8_t> row(size_t(h.Width));
    for (int y = 0; y < h.Height; ++y)
        if (!r.NextRow(row.data())) break;
    ombra::PlanGeorefSource src;
    src.Projection = ombra::ProjectionKind::Mercator;
    for (const KapRef& k : h.Refs) src.Refs.push_back({k.x, k.y, k.lat, k.lon});
    src.Outline = h.Outline;
    src.Wpx = h.Wpx;
    src.Wpy = h.Wpy;
    for (auto kind : {ombra::ProjectionKind::Mercator, ombra::ProjectionKind::Polynomial}) {
        src.Projection = kind;
        PlanGeoref g;
        std::string why;
        if (!g.Fit(src, why)) continue;
        double x, y, lat, lon;
        if (g.ToPosition(h.Width / 2.0, h.Height / 2.0, lat, lon)) g.ToPixel(lat, lon, x, y);
        PlanGeoref back;
        back.FromText(g.ToText(), why);
    }
    return 0;
}
